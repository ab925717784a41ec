// The fields of a data model as a variable list.
#ifndef MCXPRSUTIL_READERS_DATAMODEL_DATAMODELVARLIST_H
#define MCXPRSUTIL_READERS_DATAMODEL_DATAMODELVARLIST_H

#include <xercesc/dom/DOMElement.hpp>

#include "mccommon/MCStatus.h"
#include "mccommon/MCVarList.h"

namespace MCXPrsUtil {

// Appends a variable per "Field" of a "Fields" element; see MCDataModelParser::FillVarList. Below
// two, `rangeCount` means that ranges are not passed on.
MCCommon::MCStatus AddDataModelFields(const XERCES_CPP_NAMESPACE::DOMElement& fields,
                                      bool inputRoleFlag, int rangeCount,
                                      MCMTD_NAMESPACE::MCVarList& list);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_DATAMODEL_DATAMODELVARLIST_H
