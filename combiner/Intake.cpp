// How a model gets in: as the first one, which gives the frame, or as a later one, which is merged.
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLString.hpp>

#include "combiner/CombinerState.h"
#include "mcxprsutil/MCPMMLTags.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "xml/StatusCodes.h"
#include "xml/Utf16Name.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using XERCES_CPP_NAMESPACE::DOMDocument;
using XERCES_CPP_NAMESPACE::DOMElement;
using XERCES_CPP_NAMESPACE::DOMNamedNodeMap;
using XERCES_CPP_NAMESPACE::DOMNode;
using XERCES_CPP_NAMESPACE::XMLString;

constexpr unsigned int kNotInList = 0xFFFFFFFF;

std::string AttributeText(const DOMElement& element, const std::string& name) {
  return ToUTF8(GetAttribute(element, name.c_str()));
}

std::string InQuotes(const std::string& text) { return '"' + text + '"'; }

// What the parser said, behind a reason; it may have said nothing.
std::string InBrackets(const std::string& text) { return text.empty() ? "" : " (" + text + ")"; }

std::size_t CountModels(const DOMElement& pmml, const std::vector<std::string>& model_names) {
  std::size_t count = 0;
  for (const DOMElement* child = GetFirstChildElmt(pmml, nullptr); child != nullptr;
       child = GetNextSiblingElmt(*child, nullptr)) {
    if (FindXStrInList(child->getTagName(), model_names) != kNotInList) ++count;
  }
  return count;
}

void CompareVersions(const DOMElement& pmml, const DOMElement* combined, MergeFindings& findings) {
  if (combined == nullptr) return;
  const std::string here = AttributeText(pmml, MCPMMLTags::XML_ATT_VERSION);
  const std::string first = AttributeText(*combined, MCPMMLTags::XML_ATT_VERSION);
  if (here != first) findings.VersionDiffers(here, first);
}

// A merge finds fields within fields and values within values at any depth, and copies each with
// all that it holds: where they are nested, what is recorded and copied grows with their number
// times the levels. No dictionary has reason to nest them at all.
constexpr int kDeepestField = 16;

bool IsFieldOrValue(const DOMNode& node) {
  const DOMElement* element = AsElement(node, nullptr);
  return element != nullptr && (TagNameEquals(*element, MCPMMLTags::XML_ELE_DATAFIELD.c_str()) ||
                                TagNameEquals(*element, MCPMMLTags::XML_ELE_VALUE.c_str()));
}

// True if more than kDeepestField of the "DataField" and "Value" elements below `root` are nested.
bool NestsFields(const DOMNode& root) {
  int level = 0;
  for (const DOMNode* node = root.getFirstChild(); node != nullptr;) {
    level += IsFieldOrValue(*node);
    if (level > kDeepestField) return true;
    if (node->getFirstChild() != nullptr) {
      node = node->getFirstChild();
      continue;
    }
    while (node != &root && node->getNextSibling() == nullptr) {
      level -= IsFieldOrValue(*node);
      node = node->getParentNode();
    }
    if (node == &root) return false;
    level -= IsFieldOrValue(*node);
    node = node->getNextSibling();
  }
  return false;
}

// Copied names take their prefixes along, but not what these stand for.
void CompareNamespaces(const DOMElement& pmml, const DOMElement* combined,
                       MergeFindings& findings) {
  if (combined == nullptr) return;
  const Utf16Name xmlns(MCPMMLTags::XML_ATT_XMLNS.c_str());
  const DOMNamedNodeMap* attributes = pmml.getAttributes();
  for (XMLSize_t i = 0; i < attributes->getLength(); ++i) {
    const DOMNode& declaration = *attributes->item(i);
    if (!XMLString::startsWith(declaration.getNodeName(), xmlns.Get())) continue;
    const std::string name = ToUTF8(declaration.getNodeName());
    if (name != MCPMMLTags::XML_ATT_XMLNS && name[MCPMMLTags::XML_ATT_XMLNS.size()] != ':')
      continue;
    const XMLCh* there = GetAttribute(*combined, name.c_str());
    const std::string here = ToUTF8(declaration.getNodeValue());
    if (there == nullptr) {
      findings.NamespaceMissing(name, here);
    } else if (!XStrEqualsUTF8Str(there, here.c_str())) {
      findings.NamespaceDiffers(name, here, ToUTF8(there));
    }
  }
}

}  // namespace

MCStatus MCXSplitPMMLCombiner::AddModel(const std::string& path,
                                        const std::vector<std::string>& values) {
  if (path.empty() || values.empty()) return state_->status;
  const FindingsSource source(state_->findings, path);
  state_->status = MCStatus();
  if (state_->var_list.Size() != values.size()) {
    state_->findings.KeptOut("the number of its split values is " + std::to_string(values.size()) +
                             ", that of the split variables " +
                             std::to_string(state_->var_list.Size()));
    state_->status = Failure(kSplitValuesMismatch);
    return state_->status;
  }
  MCXMLReadWrite reader;
  state_->status = ReadModelFile(path, reader);
  if (state_->status.IsOK()) {
    state_->status = ParseSplitModelXML(reader.GetDocument(), reader, values);
  }
  return state_->status;
}

// The reader accepts a file that breaks off, with what stood before the break. Half a model must
// not be merged.
MCStatus MCXSplitPMMLCombiner::ReadModelFile(const std::string& path, MCXMLReadWrite& reader) {
  const MCStatus status = reader.ParseToDOM(path);
  if (!status.IsOK()) {
    state_->findings.KeptOut("it cannot be read" + InBrackets(reader.GetXercesMessage()));
    return status;
  }
  if (!reader.IsWellFormed()) {
    state_->findings.KeptOut("it is not well-formed XML" + InBrackets(reader.GetParseError()));
    return Failure(kParseFailed);
  }
  const DOMElement* dictionary = GetDataDict(GetPMML(reader.GetDocument()));
  if (dictionary != nullptr && NestsFields(*dictionary)) {
    state_->findings.KeptOut("its DataDictionary nests DataField and Value elements deeper than " +
                             std::to_string(kDeepestField) + " levels");
    return Failure(kParseFailed);
  }
  return status;
}

MCStatus MCXSplitPMMLCombiner::ParseSplitModelXML(DOMDocument* src, const MCXMLReadWrite&,
                                                  const std::vector<std::string>& values) {
  if (src == nullptr) return MCStatus();
  bool is_first = false;
  CreateEmptyMiningModel(is_first);
  return is_first ? FillCommonToMiningModel(src, values) : MergeModelToMiningModel(src, values);
}

MCStatus MCXSplitPMMLCombiner::FillCommonToMiningModel(DOMDocument* src,
                                                       const std::vector<std::string>& values) {
  State& state = *state_;
  if (state.doc == nullptr || src == nullptr) return MCStatus();
  // There is a first model already, and all that is known of it must stay.
  if (state.doc->getDocumentElement() != nullptr) return MCStatus();
  const DOMElement* pmml = GetPMML(src);
  const DOMElement* model = GetStandardModel(pmml);
  ReportModelCount(pmml, model);
  if (MCStatus status = GetFunctionNameAtt(model, state.function_name); !status.IsOK()) {
    ReportRefusedModel(status, model);
    return status;
  }
  if (state.data_fields.HasExported()) state.findings.CombinerUsedAgain();
  ReportParts(pmml, model);
  DOMElement* root = CopyPMML(pmml, false);
  CopyHeader(pmml, root, true);
  state.data_dict = CopyDataDict(pmml, root, true);
  DOMElement* mining_model = CreateMiningModel(root, state.function_name);
  state.mining_schema = CopyMiningSchema(model, mining_model, true);
  const bool has_parts = state.data_dict != nullptr && state.mining_schema != nullptr;
  if (mining_model != nullptr && !has_parts) {
    state.findings.SplitFieldsLeftOut(state.data_dict != nullptr, state.mining_schema != nullptr);
  }
  InsertSplitVarsToMiningModel(state.data_dict, state.mining_schema);
  state.segmentation = CreateSegmentation(mining_model);
  if (state.segmentation == nullptr) {
    state.findings.NoSegment(
        "its functionName is empty, so the combined document has no "
        "MiningModel");
  }
  InsertSegment(state.segmentation, model, GetTransDict(pmml), values);
  return MCStatus();
}

MCStatus MCXSplitPMMLCombiner::MergeModelToMiningModel(DOMDocument* src,
                                                       const std::vector<std::string>& values) {
  State& state = *state_;
  if (src == nullptr || values.empty()) return MCStatus();
  const DOMElement* pmml = GetPMML(src);
  const DOMElement* model = GetStandardModel(pmml);
  ReportModelCount(pmml, model);
  if (MCStatus status = IsConsistentFunctionName(model); !status.IsOK()) {
    ReportRefusedModel(status, model);
    return status;
  }
  ReportParts(pmml, model);
  UpdateDataDict(GetDataDict(pmml), state.data_dict);
  UpdateMiningSchema(GetMiningSchema(model), state.mining_schema);
  if (state.segmentation == nullptr) {
    const bool has_merged = state.data_dict != nullptr && GetDataDict(pmml) != nullptr;
    state.findings.NoSegmentation(has_merged);
  } else if (model == nullptr) {
    state.findings.NoSegment("it has no model element that can be combined");
  }
  InsertSegment(state.segmentation, model, GetTransDict(pmml), values);
  return MCStatus();
}

MCStatus MCXSplitPMMLCombiner::GetFunctionNameAtt(const DOMElement* model, std::string& out) {
  if (MCStatus status = IsMiningModel(model); !status.IsOK()) return status;
  if (model == nullptr) return Failure(kAttributeMissing);
  const XMLCh* name = GetAttribute(*model, MCPMMLTags::XML_ATT_FUNCTIONNAME.c_str());
  if (name == nullptr) return Failure(kAttributeMissing);
  out = ToUTF8(name);
  return MCStatus();
}

MCStatus MCXSplitPMMLCombiner::IsConsistentFunctionName(const DOMElement* model) {
  if (model == nullptr || state_->function_name.empty()) return MCStatus();
  std::string name;
  if (MCStatus status = GetFunctionNameAtt(model, name); !status.IsOK()) return status;
  return name == state_->function_name ? MCStatus() : Failure(kFunctionNameDiffers);
}

void MCXSplitPMMLCombiner::ReportRefusedModel(MCStatus refusal, const DOMElement* model) {
  MergeFindings& findings = state_->findings;
  if (model == nullptr) {
    findings.KeptOut("it has no model element that can be combined");
  } else if (refusal.GetCode() == kIsMiningModel) {
    findings.KeptOut("it is a MiningModel itself");
  } else if (refusal.GetCode() == kAttributeMissing) {
    findings.KeptOut("its " + ToUTF8(model->getTagName()) + " has no functionName");
  } else {
    const std::string name = AttributeText(*model, MCPMMLTags::XML_ATT_FUNCTIONNAME);
    findings.KeptOut("its functionName is " + InQuotes(name) + ", that of the first model " +
                     InQuotes(state_->function_name));
  }
}

void MCXSplitPMMLCombiner::ReportModelCount(const DOMElement* pmml, const DOMElement* model) {
  if (pmml == nullptr || model == nullptr) return;
  const std::size_t count = CountModels(*pmml, state_->standard_models);
  if (count > 1) state_->findings.SeveralModels(count, ToUTF8(model->getTagName()));
}

void MCXSplitPMMLCombiner::ReportParts(const DOMElement* pmml, const DOMElement* model) {
  MergeFindings& findings = state_->findings;
  if (pmml == nullptr) return;
  if (state_->doc != nullptr) {
    CompareVersions(*pmml, state_->doc->getDocumentElement(), findings);
    CompareNamespaces(*pmml, state_->doc->getDocumentElement(), findings);
  }
  if (GetDataDict(pmml) == nullptr) findings.NoDictionary();
  if (model != nullptr && GetMiningSchema(model) == nullptr) findings.NoSchema();
}

}  // namespace MCXPrsUtil
