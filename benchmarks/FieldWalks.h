/// Reading the fields of data models and settings by hand: the floors of those readers.
#ifndef BENCHMARKS_FIELDWALKS_H_
#define BENCHMARKS_FIELDWALKS_H_

#include <mccommon/MCVarList.h>

#include <string>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
XERCES_CPP_NAMESPACE_END

namespace bench {

// All of them know the XML library, have their names ready in UTF-16, keep one transcoder, and
// trust the document.

/// Adds one variable per Field of a data model; continuous ones get their range in `rangeCount`
/// parts.
void WalkDataModel(const xercesc::DOMDocument& document, int rangeCount,
                   MCMTD_NAMESPACE::MCVarList& list);

/// Adds one variable per DataField of a settings document.
void WalkSettingsFields(const xercesc::DOMDocument& document, MCMTD_NAMESPACE::MCVarList& list);

/// Adds one variable per DerivedField of a settings document.
void WalkSettingsDerivedFields(const xercesc::DOMDocument& document,
                               MCMTD_NAMESPACE::MCVarList& list);

/// What Describe() of DictionaryWalk.h gives, and the range, data type and weight of each variable.
std::string DescribeWithRanges(MCMTD_NAMESPACE::MCVarList& list);

}  // namespace bench

#endif  // BENCHMARKS_FIELDWALKS_H_
