// The parts of a PMML document, and the empty frame of the combined one.
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "combiner/CombinerState.h"
#include "combiner/DirectCopy.h"
#include "combiner/DomTree.h"
#include "mcxprsutil/MCPMMLTags.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::DOMDocument;
using XERCES_CPP_NAMESPACE::DOMElement;
using XERCES_CPP_NAMESPACE::DOMImplementation;
using XERCES_CPP_NAMESPACE::DOMImplementationRegistry;
using XERCES_CPP_NAMESPACE::DOMNode;
using XERCES_CPP_NAMESPACE::XMLPlatformUtils;

DOMElement* ChildOf(const DOMNode* parent, const std::string& name) {
  return parent == nullptr ? nullptr : GetFirstChildElmt(*parent, name.c_str());
}

// The serializer calls itself for every level; down to this one the 2 MiB of a usual thread will
// do.
constexpr int kDeepestCarelessLevel = 10000;

// The number of nodes that a node is nested in: the root element is on level 1.
int LevelOf(const DOMNode& node) {
  int level = 0;
  const DOMNode* parent = node.getParentNode();
  for (; parent != nullptr; parent = parent->getParentNode()) ++level;
  return level;
}

void ReportCopy(const CopyNotes& notes, const DOMNode& copy, MergeFindings& findings) {
  for (const std::string& entity : notes.entities) findings.EntityUndeclared(entity);
  if (notes.lacks_defaults) findings.DefaultsLost();
  if (notes.n_levels > kDeepestCarelessLevel - LevelOf(copy)) {
    findings.TooDeep(kDeepestCarelessLevel);
  }
}

}  // namespace

void MCXSplitPMMLCombiner::InitStandardPMMLModels() {
  using namespace MCXPrsUtilTags;
  // "MiningModel" comes first on purpose: one that stands beside another model is found, and
  // refused.
  for (const std::string& name :
       {XML_ELE_MiningModel, XML_ELE_AssociationModel, XML_ELE_ClusteringModel,
        XML_ELE_GeneralRegressionModel, XML_ELE_NaiveBayesModel, XML_ELE_NeuralNetwork,
        XML_ELE_RegressionModel, XML_ELE_RuleSetModel, XML_ELE_SequenceModel,
        XML_ELE_SupportVectorMachineModel, XML_ELE_TextModel, XML_ELE_TimeSeriesModel,
        XML_ELE_TreeModel}) {
    state_->standard_models.push_back(name);
  }
}

DOMElement* MCXSplitPMMLCombiner::GetPMML(const DOMDocument* d) const {
  return ChildOf(d, MCPMMLTags::XML_ELE_PMMLMODEL);
}

DOMElement* MCXSplitPMMLCombiner::GetStandardModel(const DOMElement* pmml) const {
  for (const std::string& name : state_->standard_models) {
    if (DOMElement* model = ChildOf(pmml, name)) return model;
  }
  return nullptr;
}

DOMElement* MCXSplitPMMLCombiner::GetDataDict(const DOMElement* pmml) const {
  return ChildOf(pmml, MCPMMLTags::XML_ELE_DATADICTIONARY);
}

DOMElement* MCXSplitPMMLCombiner::GetTransDict(const DOMElement* pmml) const {
  return ChildOf(pmml, MCPMMLTags::XML_ELE_TRANSDICT);
}

DOMElement* MCXSplitPMMLCombiner::GetMiningSchema(const DOMElement* model) const {
  if (state_->doc == nullptr) return nullptr;
  return ChildOf(model, MCPMMLTags::XML_ELE_MININGSCHEMA);
}

MCCommon::MCStatus MCXSplitPMMLCombiner::IsMiningModel(const DOMElement* model) const {
  if (model == nullptr) return MCCommon::MCStatus();
  const bool is_mining_model = TagNameEquals(*model, MCXPrsUtilTags::XML_ELE_MiningModel.c_str());
  return is_mining_model ? Failure(kIsMiningModel) : MCCommon::MCStatus();
}

DOMDocument* MCXSplitPMMLCombiner::CreateEmptyMiningModel(bool& created) {
  created = false;
  if (state_->doc != nullptr) return state_->doc;
  DOMImplementation* implementation =
      DOMImplementationRegistry::getDOMImplementation(ToUTF16("Core").data());
  if (implementation == nullptr) return nullptr;
  state_->doc =
      implementation->createDocument(nullptr, nullptr, nullptr, XMLPlatformUtils::fgMemoryManager);
  created = true;
  return state_->doc;
}

DOMNode* MCXSplitPMMLCombiner::CopyTo(const DOMNode* source, DOMNode* dest, bool deep) {
  if (source == nullptr || dest == nullptr || state_->doc == nullptr) return nullptr;
  CopyNotes notes;
  DOMNode* copy = CopyNode(*state_->doc, *source, deep, &notes);
  if (copy == nullptr || AppendOrRelease(*dest, copy) == nullptr) return nullptr;
  ReportCopy(notes, *copy, state_->findings);
  return copy;
}

DOMElement* MCXSplitPMMLCombiner::AppendNew(DOMNode* parent, const std::string& name) {
  if (parent == nullptr || state_->doc == nullptr) return nullptr;
  DOMElement* element = CreateElement(*state_->doc, name.c_str());
  if (element == nullptr || AppendOrRelease(*parent, element) == nullptr) return nullptr;
  return element;
}

DOMElement* MCXSplitPMMLCombiner::CopyPMML(const DOMElement* pmml, bool deep) {
  return static_cast<DOMElement*>(CopyTo(pmml, state_->doc, deep));
}

DOMNode* MCXSplitPMMLCombiner::CopyHeader(const DOMElement* pmml, DOMNode* dest, bool deep) {
  return CopyTo(ChildOf(pmml, MCPMMLTags::XML_ELE_HEADER), dest, deep);
}

DOMNode* MCXSplitPMMLCombiner::CopyDataDict(const DOMElement* pmml, DOMNode* dest, bool deep) {
  return CopyTo(GetDataDict(pmml), dest, deep);
}

DOMNode* MCXSplitPMMLCombiner::CopyMiningSchema(const DOMElement* model, DOMNode* dest, bool deep) {
  return CopyTo(GetMiningSchema(model), dest, deep);
}

DOMElement* MCXSplitPMMLCombiner::CreateMiningModel(DOMNode* parent, const std::string& name) {
  if (name.empty()) return nullptr;
  DOMElement* model = AppendNew(parent, MCXPrsUtilTags::XML_ELE_MiningModel);
  if (model == nullptr) return nullptr;
  SetAttribute(*model, MCPMMLTags::XML_ATT_FUNCTIONNAME.c_str(), state_->function_name.c_str());
  return model;
}

DOMElement* MCXSplitPMMLCombiner::CreateSegmentation(DOMNode* parent) {
  DOMElement* segmentation = AppendNew(parent, MCXPrsUtilTags::XML_ELE_Segmentation);
  if (segmentation == nullptr) return nullptr;
  SetAttribute(*segmentation, MCXPrsUtilTags::XML_ATT_MultipleModelMethod.c_str(),
               MCXPrsUtilTags::XML_ATT_SelectFirst.c_str());
  return segmentation;
}

}  // namespace MCXPrsUtil
