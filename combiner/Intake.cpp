// How a model gets in: as the first one, which gives the frame, or as a later one, which is merged.
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "combiner/CombinerState.h"
#include "mcxprsutil/MCPMMLTags.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using XERCES_CPP_NAMESPACE::DOMDocument;
using XERCES_CPP_NAMESPACE::DOMElement;

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

}  // namespace

MCStatus MCXSplitPMMLCombiner::AddModel(const std::string& path,
                                        const std::vector<std::string>& values) {
  if (path.empty() || values.empty()) return state_->status;
  state_->findings.SetSource(path);
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
  if (reader.IsWellFormed()) return status;
  state_->findings.KeptOut("it is not well-formed XML" + InBrackets(reader.GetParseError()));
  return Failure(kParseFailed);
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
  const DOMElement* pmml = GetPMML(src);
  const DOMElement* model = GetStandardModel(pmml);
  if (MCStatus status = GetFunctionNameAtt(model, state.function_name); !status.IsOK()) {
    ReportRefusedModel(status, model);
    return status;
  }
  ReportParts(pmml, model);
  DOMElement* root = CopyPMML(pmml, false);
  CopyHeader(pmml, root, true);
  state.data_dict = CopyDataDict(pmml, root, true);
  DOMElement* mining_model = CreateMiningModel(root, state.function_name);
  state.mining_schema = CopyMiningSchema(model, mining_model, true);
  if (state.data_dict == nullptr || state.mining_schema == nullptr) {
    state.findings.SplitFieldsLeftOut();
  }
  InsertSplitVarsToMiningModel(state.data_dict, state.mining_schema);
  state.segmentation = CreateSegmentation(mining_model);
  if (state.segmentation == nullptr) state.findings.NoSegment("its functionName is empty");
  InsertSegment(state.segmentation, model, GetTransDict(pmml), values);
  return MCStatus();
}

MCStatus MCXSplitPMMLCombiner::MergeModelToMiningModel(DOMDocument* src,
                                                       const std::vector<std::string>& values) {
  State& state = *state_;
  if (src == nullptr || values.empty()) return MCStatus();
  const DOMElement* pmml = GetPMML(src);
  const DOMElement* model = GetStandardModel(pmml);
  if (MCStatus status = IsConsistentFunctionName(model); !status.IsOK()) {
    ReportRefusedModel(status, model);
    return status;
  }
  ReportParts(pmml, model);
  UpdateDataDict(GetDataDict(pmml), state.data_dict);
  UpdateMiningSchema(GetMiningSchema(model), state.mining_schema);
  if (state.segmentation == nullptr) {
    state.findings.KeptOut(
        "the combined document has no Segmentation, as its first model was "
        "refused or is incomplete");
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

void MCXSplitPMMLCombiner::ReportParts(const DOMElement* pmml, const DOMElement* model) {
  MergeFindings& findings = state_->findings;
  if (pmml == nullptr) return;
  const std::size_t n_models = CountModels(*pmml, state_->standard_models);
  if (n_models > 1) findings.SeveralModels(n_models, ToUTF8(model->getTagName()));
  if (state_->doc != nullptr) {
    CompareVersions(*pmml, state_->doc->getDocumentElement(), findings);
  }
  if (GetDataDict(pmml) == nullptr) findings.NoDictionary();
  if (model != nullptr && GetMiningSchema(model) == nullptr) findings.NoSchema();
}

}  // namespace MCXPrsUtil
