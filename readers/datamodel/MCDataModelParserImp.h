// What is behind MCDataModelParser; the operations are described there.
#ifndef MCXPRSUTIL_READERS_DATAMODEL_MCDATAMODELPARSERIMP_H
#define MCXPRSUTIL_READERS_DATAMODEL_MCDATAMODELPARSERIMP_H

#include <memory>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "mccommon/MCStatus.h"
#include "mccommon/MCVarList.h"
#include "xml/DocumentParser.h"
#include "xml/XercesPtr.h"

namespace MCXPrsUtil {

struct ParsedDocument;

class MCDataModelParserImp {
 public:
  MCDataModelParserImp();
  virtual ~MCDataModelParserImp();

  MCDataModelParserImp(const MCDataModelParserImp&) = delete;
  MCDataModelParserImp& operator=(const MCDataModelParserImp&) = delete;

  MCCommon::MCStatus ParseToDOM(const std::string& text);
  MCCommon::MCStatus FillVarList(MCMTD_NAMESPACE::MCVarList& list, bool inputRoleFlag,
                                 bool rangeFlag, int rangeCount) const;
  MCCommon::MCStatus GetStatus() const;

 private:
  MCCommon::MCStatus TakeDocument(ParsedDocument parsed);
  void ForgetDocument();

  // Invariant: unless the status is OK after a parse, document and elements are null.

  MCCommon::MCStatus status_;
  // Null if the construction failed, and after a parse that did not leave it as new (malformed,
  // thrown out of, or XML 1.1): the next parse makes another.
  std::unique_ptr<DocumentParser> parser_;
  XercesPtr<XERCES_CPP_NAMESPACE::DOMDocument> document_;
  const XERCES_CPP_NAMESPACE::DOMElement* root_ = nullptr;
  const XERCES_CPP_NAMESPACE::DOMElement* fields_ = nullptr;
  const bool platform_started_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_DATAMODEL_MCDATAMODELPARSERIMP_H
