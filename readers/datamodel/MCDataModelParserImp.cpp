#include "readers/datamodel/MCDataModelParserImp.h"

#include <sstream>
#include <utility>

#include "readers/DomParse.h"
#include "readers/DomWalk.h"
#include "readers/Names.h"
#include "readers/datamodel/DataModelVarList.h"
#include "xml/Platform.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;

MCDataModelParserImp::MCDataModelParserImp()
    : parser_(StartParser()), platform_started_(parser_ != nullptr) {
  if (!platform_started_) status_ = Failure(kPlatformFailed);
}

MCDataModelParserImp::~MCDataModelParserImp() {
  if (!platform_started_) return;
  document_.reset();  // before the platform goes: it lives in the platform's memory
  parser_.reset();
  StopPlatform();
}

// Lets nothing out: with a text there is no stream of the caller's whose exceptions could be his
// business, and a lack of memory is one more reason for which there is no document.
MCStatus MCDataModelParserImp::ParseToDOM(const std::string& text) {
  ForgetDocument();
  if (!platform_started_) return status_;
  try {
    std::istringstream in(text);
    status_ = TakeDocument(ParseDocument(parser_, in));
  } catch (...) {
    status_ = Failure(kParseFailed);
  }
  if (!status_.IsOK()) ForgetDocument();
  return status_;
}

MCStatus MCDataModelParserImp::FillVarList(MCVarList& list, bool inputRoleFlag, bool rangeFlag,
                                           int rangeCount) const {
  if (!status_.IsOK()) return status_;
  if (document_ == nullptr) return Failure(kNoDocument);
  return AddDataModelFields(*fields_, inputRoleFlag, rangeFlag ? rangeCount : 0, list);
}

MCStatus MCDataModelParserImp::GetStatus() const { return status_; }

// A malformed document is judged by the part of it that was read before it is refused as malformed:
// 105 and 113 tell a caller more than 104 does.
MCStatus MCDataModelParserImp::TakeDocument(ParsedDocument parsed) {
  if (!parsed.status.IsOK()) return parsed.status;
  document_ = std::move(parsed.document);
  root_ = document_->getDocumentElement();
  if (root_ == nullptr || !IsNamed(*root_, names::kDataModel)) return Failure(kWrongRoot);
  fields_ = FirstChild(*root_, names::kDataModelFields);
  if (fields_ == nullptr) return Failure(kChildMissing);
  return parsed.well_formed ? MCStatus() : Failure(kParseFailed);
}

void MCDataModelParserImp::ForgetDocument() {
  root_ = nullptr;
  fields_ = nullptr;
  document_.reset();
}

}  // namespace MCXPrsUtil
