#include "mcxprsutil/MCPMMLParser.h"

#include <utility>
#include <xercesc/dom/DOM.hpp>

#include "readers/DomParse.h"
#include "readers/DomWalk.h"
#include "readers/Names.h"
#include "readers/pmml/Discretisations.h"
#include "xml/Platform.h"
#include "xml/StatusCodes.h"
#include "xml/Utf16Name.h"

namespace MCXPrsUtil {

using MCCommon::MCStatus;
using XERCES_CPP_NAMESPACE::DOMElement;

MCPMMLParser::MCPMMLParser() : parser_(StartParser()), platform_started_(parser_ != nullptr) {
  if (!platform_started_) status_ = Failure(kPlatformFailed);
}

MCPMMLParser::~MCPMMLParser() {
  if (!platform_started_) return;
  document_.reset();  // before the platform goes: it lives in the platform's memory
  parser_.reset();
  StopPlatform();
}

// The status says "failed" while the parse is under way, so that an exception that passes leaves it
// behind.
MCStatus MCPMMLParser::ParseToDOM(std::istream& in) {
  ForgetDocument();
  xerces_message_.clear();
  if (!platform_started_) return status_;

  status_ = Failure(kParseFailed);
  status_ = ParseDocument(in);
  if (status_.IsOK()) status_ = FindDictionaries();
  if (!status_.IsOK()) ForgetDocument();
  return status_;
}

MCStatus MCPMMLParser::GetStatus() const { return status_; }

DOMElement* MCPMMLParser::GetRootElement() const { return root_; }

bool MCPMMLParser::SetModelElmt(const DOMElement& model) {
  if (!status_.IsOK() || document_ == nullptr) return false;
  model_element_ = &model;
  return true;
}

std::string MCPMMLParser::GetXercesMessage() const { return xerces_message_; }

bool MCPMMLParser::SetBinsFrTransDict(const std::string& name, std::vector<double>& cutPoints,
                                      std::vector<std::string>& binValues) const {
  const Utf16Name field(name.c_str());  // first of all: the name may be one of the old bin values
  cutPoints.clear();
  binValues.clear();
  if (transformation_dictionary_ == nullptr) return false;
  const DOMElement* discretize = FindDiscretize(*transformation_dictionary_, field.Get());
  if (discretize == nullptr) return false;
  ReadBins(*discretize, cutPoints, binValues);
  return true;
}

// A malformed document is refused before anything in it is looked at.
MCStatus MCPMMLParser::ParseDocument(std::istream& in) {
  ParsedDocument parsed = MCXPrsUtil::ParseDocument(parser_, in);
  xerces_message_ = std::move(parsed.message);
  if (!parsed.status.IsOK()) return parsed.status;
  if (!parsed.well_formed) return Failure(kParseFailed);
  document_ = std::move(parsed.document);
  return MCStatus();
}

MCStatus MCPMMLParser::FindDictionaries() {
  root_ = document_->getDocumentElement();
  if (root_ == nullptr || !IsNamed(*root_, names::kPMML)) return Failure(kWrongRoot);
  data_dictionary_ = FirstChild(*root_, names::kDataDictionary);
  if (data_dictionary_ == nullptr) return Failure(kNoDataDictionary);
  transformation_dictionary_ = FirstChild(*root_, names::kTransformationDictionary);
  return MCStatus();
}

void MCPMMLParser::ForgetDocument() {
  root_ = nullptr;
  data_dictionary_ = nullptr;
  transformation_dictionary_ = nullptr;
  model_element_ = nullptr;
  document_.reset();
}

}  // namespace MCXPrsUtil
