// The segments of the combined document and the declarations of the split variables.
#include <algorithm>
#include <unordered_set>
#include <xercesc/dom/DOMElement.hpp>

#include "combiner/CombinerState.h"
#include "combiner/DomTree.h"
#include "mcxprsutil/MCPMMLTags.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::DOMElement;
using XERCES_CPP_NAMESPACE::DOMNode;

void Set(DOMElement& element, const std::string& name, const std::string& value) {
  SetAttribute(element, name.c_str(), value.c_str());
}

// What CopyTransDictToLocal() leaves behind.
void ReportLostTransformations(const DOMElement& dictionary, MergeFindings& findings) {
  std::unordered_set<std::string> told;
  for (const DOMElement* child = GetFirstChildElmt(dictionary, nullptr); child != nullptr;
       child = GetNextSiblingElmt(*child, nullptr)) {
    if (TagNameEquals(*child, MCPMMLTags::XML_ELE_DERIVEDFIELD.c_str())) continue;
    const std::string name = ToUTF8(child->getTagName());
    if (told.insert(name).second) findings.TransformationLost(name);
  }
}

bool IsWellFormedUTF8(const std::string& text) {
  return text.empty() || text.front() == 0 || ToUTF16(text.c_str()).front() != 0;
}

// True if well-formed UTF-8 text holds a character that no XML 1.0 document can hold: a control
// other than tab, line feed and carriage return, U+FFFE or U+FFFF.
bool HasUnwritableCharacter(const std::string& text) {
  for (const XMLCh unit : ToUTF16(text.c_str())) {
    if (unit == 0) break;
    const bool is_space = unit == 0x09 || unit == 0x0A || unit == 0x0D;
    if ((unit < 0x20 && !is_space) || unit >= 0xFFFE) return true;
  }
  return false;
}

bool IsUnwritable(const SplitVariable& variable) {
  return HasUnwritableCharacter(variable.name) || HasUnwritableCharacter(variable.label) ||
         std::any_of(variable.values.begin(), variable.values.end(), HasUnwritableCharacter);
}

}  // namespace

void MCXSplitPMMLCombiner::InsertSplitVarsToMiningModel(DOMNode* dict, DOMNode* schema) {
  if (dict == nullptr || schema == nullptr) return;
  DOMElement* dict_element = AsElement(*dict, nullptr);
  DOMElement* schema_element = AsElement(*schema, nullptr);
  ReportFirstFields(*dict, schema_element);
  const auto count = static_cast<int>(state_->var_list.Size());
  for (int i = 0; i < count; ++i) {
    InsertDataFieldElem(dict_element, i);
    InsertMiningFieldElem(schema_element, i);
  }
  for (DOMElement* field : DescendantElements(*dict, MCPMMLTags::XML_ELE_DATAFIELD)) {
    RecordDataField(*field);
  }
  UpdateNumOfDataFields(dict, state_->data_fields.GetNNames());
  for (const DOMElement* field : ChildElements(*schema, MCPMMLTags::XML_ELE_MININGFIELD)) {
    RecordMiningField(*field);
  }
}

void MCXSplitPMMLCombiner::ReportFirstFields(const DOMNode& dict, const DOMElement* schema) {
  MergeFindings& findings = state_->findings;
  std::vector<DOMNode*> nodes;
  std::vector<std::string> data_names;
  EnumDataFields(&dict, nodes, data_names);
  if (nodes.size() > data_names.size()) {
    findings.UnnamedFields("dictionary", nodes.size() - data_names.size());
  }
  std::vector<const DOMElement*> elements;
  std::vector<std::string> mining_names;
  ReadNamesOfMiningFields(schema, elements, mining_names);
  const std::unordered_set<std::string> in_dictionary(data_names.begin(), data_names.end());
  const std::unordered_set<std::string> in_schema(mining_names.begin(), mining_names.end());
  for (const SplitVariable& variable : state_->split_variables) {
    if (in_dictionary.count(variable.name) != 0) {
      findings.SplitVariableDeclared(variable.name, "dictionary");
    }
    if (in_schema.count(variable.name) != 0) {
      findings.SplitVariableDeclared(variable.name, "schema");
    }
  }
}

void MCXSplitPMMLCombiner::InsertDataFieldElem(DOMElement* dict, int pos) {
  const SplitVariable* variable = SplitVariableAt(pos);
  if (variable == nullptr) return;
  DOMElement* field = AppendNew(dict, MCPMMLTags::XML_ELE_DATAFIELD);
  if (field == nullptr) return;
  if (IsUnwritable(*variable)) state_->findings.DeclarationUnwritable(variable->name);
  Set(*field, MCPMMLTags::XML_ATT_NAME, variable->name);
  Set(*field, MCPMMLTags::XML_ATT_DISPLAYNAME, variable->label);
  Set(*field, MCPMMLTags::XML_ATT_OPTYPE, variable->optype);
  Set(*field, MCPMMLTags::XML_ATT_DATATYPE, variable->data_type);
  for (const std::string& text : variable->values) {
    DOMElement* value = AppendNew(field, MCPMMLTags::XML_ELE_VALUE);
    if (value != nullptr) Set(*value, MCPMMLTags::XML_ATT_VALUE, text);
  }
}

void MCXSplitPMMLCombiner::InsertMiningFieldElem(DOMElement* schema, int pos) {
  const SplitVariable* variable = SplitVariableAt(pos);
  if (variable == nullptr) return;
  DOMElement* field = AppendNew(schema, MCPMMLTags::XML_ELE_MININGFIELD);
  if (field == nullptr) return;
  Set(*field, MCPMMLTags::XML_ATT_MININGFIELDNAME, variable->name);
  Set(*field, MCPMMLTags::XML_ATT_MININGFIELDUSE, MCPMMLTags::XML_VAL_MININGFIELDACT);
}

// Where the list lacks a variable, the described ones move up; the last positions have none then.
const SplitVariable* MCXSplitPMMLCombiner::SplitVariableAt(int pos) const {
  const std::vector<SplitVariable>& variables = state_->split_variables;
  if (pos < 0 || static_cast<std::size_t>(pos) >= variables.size()) return nullptr;
  return &variables[static_cast<std::size_t>(pos)];
}

DOMNode* MCXSplitPMMLCombiner::InsertSegment(DOMNode* segmentation, const DOMElement* model,
                                             const DOMElement* transDict,
                                             const std::vector<std::string>& values) {
  if (model == nullptr || values.empty()) return nullptr;
  DOMElement* segment = AppendNew(segmentation, MCXPrsUtilTags::XML_ELE_Segment);
  if (segment == nullptr) return nullptr;
  ReportSegment(values);
  InsertPredicate(segment, values);
  auto* copy = static_cast<DOMElement*>(CopyTo(model, segment, true));
  CopyTransDictToLocal(transDict, copy);
  ++state_->n_models;
  return segment;
}

void MCXSplitPMMLCombiner::ReportSegment(const std::vector<std::string>& values) {
  TestedTexts texts;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::string name = GetSplitVarName(static_cast<int>(i));
    const bool is_tested = !name.empty() && !values[i].empty();
    texts.push_back(is_tested ? TestedTexts::value_type(ReportSplitValue(name, values[i]))
                              : std::nullopt);
    if (!is_tested && !name.empty()) state_->findings.SplitValueEmpty(name, values.size() == 1);
  }
  state_->findings.CheckRepeatedSegment(texts);
}

// Returns the text that the predicate gets.
std::string MCXSplitPMMLCombiner::ReportSplitValue(const std::string& variable,
                                                   const std::string& value) {
  MergeFindings& findings = state_->findings;
  std::string written = value.substr(0, value.find('\0'));
  if (written.size() < value.size()) findings.SplitValueCut(variable);
  if (!IsWellFormedUTF8(written)) {
    findings.SplitValueMalformed(variable);
    return std::string();
  }
  if (HasUnwritableCharacter(written)) findings.SplitValueUnwritable(variable);
  const auto known = state_->split_categories.find(variable);
  if (known != state_->split_categories.end() && known->second.count(value) == 0) {
    findings.SplitValueUnknown(variable, written);
  }
  return written;
}

DOMNode* MCXSplitPMMLCombiner::InsertPredicate(DOMNode* segment,
                                               const std::vector<std::string>& values) {
  if (values.size() == 1) return InsertSimplePredicate(segment, 0, values.front());
  return InsertCompoundPredicate(segment, values);
}

DOMElement* MCXSplitPMMLCombiner::InsertSimplePredicate(DOMNode* parent, int pos,
                                                        const std::string& value) {
  const std::string name = GetSplitVarName(pos);
  if (value.empty() || name.empty()) return nullptr;
  DOMElement* predicate = AppendNew(parent, MCXPrsUtilTags::XML_ELE_SimplePredicate);
  if (predicate == nullptr) return nullptr;
  Set(*predicate, MCPMMLTags::XML_ATT_FIELD, name);
  Set(*predicate, MCXPrsUtilTags::XML_ATT_Operator, MCXPrsUtilTags::XML_ATT_Equal);
  Set(*predicate, MCPMMLTags::XML_ATT_VALUE, value);
  return predicate;
}

DOMElement* MCXSplitPMMLCombiner::InsertCompoundPredicate(DOMNode* parent,
                                                          const std::vector<std::string>& values) {
  if (values.size() < 2) return nullptr;
  DOMElement* predicate = AppendNew(parent, MCXPrsUtilTags::XML_ELE_CompoundPredicate);
  if (predicate == nullptr) return nullptr;
  Set(*predicate, MCXPrsUtilTags::XML_ATT_BooleanOperator, MCXPrsUtilTags::XML_ATT_And);
  for (std::size_t i = 0; i < values.size(); ++i) {
    InsertSimplePredicate(predicate, static_cast<int>(i), values[i]);
  }
  return predicate;
}

DOMElement* MCXSplitPMMLCombiner::CopyTransDictToLocal(const DOMElement* transDict,
                                                       DOMElement* model) {
  if (transDict == nullptr || model == nullptr) return nullptr;
  const std::string& local_name = MCXPrsUtilTags::XML_ELE_LocalTransformations;
  const bool has_local = GetFirstChildElmt(*model, local_name.c_str()) != nullptr;
  // The order is on purpose: last, although PMML's schema puts it before the model's body.
  DOMElement* local = AppendNew(model, local_name);
  if (local == nullptr) return nullptr;
  state_->findings.LocalTransformationsLast();
  if (has_local) state_->findings.LocalTransformationsTwice();
  for (const DOMElement* field : ChildElements(*transDict, MCPMMLTags::XML_ELE_DERIVEDFIELD)) {
    CopyTo(field, local, true);
  }
  ReportLostTransformations(*transDict, state_->findings);
  return local;
}

}  // namespace MCXPrsUtil
