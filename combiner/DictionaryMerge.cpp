// The data dictionary and the mining schema of the combined document.
#include <string_view>
#include <unordered_map>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "combiner/CombinerState.h"
#include "combiner/DomTree.h"
#include "mcxprsutil/MCPMMLTags.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace MCXPrsUtil {

// A "DataField" of a source dictionary.
struct SourceField {
  const XERCES_CPP_NAMESPACE::DOMElement& element;
  const XMLCh* name;     // never null
  std::size_t position;  // among all fields of that dictionary
};

namespace {

using XERCES_CPP_NAMESPACE::DOMElement;
using XERCES_CPP_NAMESPACE::DOMNode;

// Appends `elements` to `nodes`, and the attribute of each that has it to `texts`.
void AppendWithAttribute(const std::vector<DOMElement*>& elements, const std::string& attribute,
                         std::vector<DOMNode*>& nodes, std::vector<std::string>& texts) {
  const AttributeReader reader(attribute);
  for (DOMElement* element : elements) {
    nodes.push_back(element);
    const XMLCh* text = reader.Of(*element);
    if (text != nullptr) texts.push_back(ToUTF8(text));
  }
}

// Appends the children named `name` that have a "name", and these names.
void AppendNamedChildren(const DOMElement* parent, const std::string& name,
                         std::vector<const DOMElement*>& elements,
                         std::vector<std::string>& names) {
  if (parent == nullptr) return;
  const AttributeReader reader(MCPMMLTags::XML_ATT_NAME);
  for (const DOMElement* child : ChildElements(*parent, name)) {
    const XMLCh* text = reader.Of(*child);
    if (text == nullptr) continue;
    elements.push_back(child);
    names.push_back(ToUTF8(text));
  }
}

// Looks texts up in a list that does not change meanwhile. Splits of one data source list their
// values alike, so most texts are found one behind the other, without a conversion.
class ValueLookup {
 public:
  explicit ValueLookup(const std::vector<std::string>& values) : values_(values) {}

  bool Contains(const XMLCh* text) {
    if (next_ < values_.size() && XStrEqualsUTF8Str(text, values_[next_].c_str())) {
      ++next_;
      return true;
    }
    return Find(ToUTF8(text));
  }

 private:
  bool Find(const std::string& text) {
    if (positions_.empty()) {
      for (std::size_t i = 0; i < values_.size(); ++i) positions_.emplace(values_[i], i);
    }
    const auto entry = positions_.find(text);
    if (entry == positions_.end()) return false;
    next_ = entry->second + 1;
    return true;
  }

  const std::vector<std::string>& values_;
  std::unordered_map<std::string_view, std::size_t> positions_;
  std::size_t next_ = 0;
};

// The "Value" elements of a field whose text is not in `recorded`. A text that the field has twice
// is here twice, and so gets into the output twice: that is how a merge works.
std::vector<const DOMElement*> NewValues(const DOMElement& field,
                                         const std::vector<std::string>& recorded) {
  std::vector<const DOMElement*> found;
  const AttributeReader reader(MCPMMLTags::XML_ATT_VALUE);
  ValueLookup known(recorded);
  DescendantWalk walk(field, MCPMMLTags::XML_ELE_VALUE);
  while (const DOMElement* value = walk.Next()) {
    const XMLCh* text = reader.Of(*value);
    if (text != nullptr && !known.Contains(text)) found.push_back(value);
  }
  return found;
}

bool HasValues(const DOMElement& field) {
  return DescendantWalk(field, MCPMMLTags::XML_ELE_VALUE).Next() != nullptr;
}

void CompareType(const SourceField& field, const std::string& attribute,
                 const std::string& combined, MergeFindings& findings) {
  const XMLCh* here = GetAttribute(field.element, attribute.c_str());
  if (XStrEqualsUTF8Str(here, combined.c_str())) return;
  findings.TypeDiffers(ToUTF8(field.name), attribute, ToUTF8(here), combined);
}

void CompareTypes(const SourceField& field, const OutputField& combined, MergeFindings& findings) {
  if (combined.node == nullptr) return;
  CompareType(field, MCPMMLTags::XML_ATT_OPTYPE, combined.optype, findings);
  CompareType(field, MCPMMLTags::XML_ATT_DATATYPE, combined.data_type, findings);
}

void ReportRepeats(const SourceField& field, const std::vector<std::string>& added,
                   MergeFindings& findings) {
  std::unordered_map<std::string_view, int> counts;
  for (const std::string& text : added) {
    if (++counts[text] == 2) findings.ValueAddedAgain(ToUTF8(field.name), text);
  }
}

}  // namespace

void MCXSplitPMMLCombiner::EnumDataFields(const DOMNode* dict, std::vector<DOMNode*>& nodes,
                                          std::vector<std::string>& names) const {
  if (dict == nullptr) return;
  AppendWithAttribute(DescendantElements(*dict, MCPMMLTags::XML_ELE_DATAFIELD),
                      MCPMMLTags::XML_ATT_NAME, nodes, names);
}

void MCXSplitPMMLCombiner::EnumValuesOfDataField(const DOMNode* field, std::vector<DOMNode*>& nodes,
                                                 std::vector<std::string>& texts) const {
  if (field == nullptr) return;
  AppendWithAttribute(DescendantElements(*field, MCPMMLTags::XML_ELE_VALUE),
                      MCPMMLTags::XML_ATT_VALUE, nodes, texts);
}

void MCXSplitPMMLCombiner::ReadNamesOfMiningFields(const DOMElement* schema,
                                                   std::vector<const DOMElement*>& elems,
                                                   std::vector<std::string>& names) const {
  AppendNamedChildren(schema, MCPMMLTags::XML_ELE_MININGFIELD, elems, names);
}

void MCXSplitPMMLCombiner::ReadNamesOfDataFields(const DOMElement* dict,
                                                 std::vector<const DOMElement*>& elems,
                                                 std::vector<std::string>& names) const {
  AppendNamedChildren(dict, MCPMMLTags::XML_ELE_DATAFIELD, elems, names);
}

DOMNode* MCXSplitPMMLCombiner::InsertDataField(const DOMNode* field, DOMNode* dict) {
  DOMNode* copy = CopyTo(field, dict, true);
  if (copy != nullptr) RecordDataField(*copy);
  return copy;
}

void MCXSplitPMMLCombiner::RecordDataField(DOMNode& field) {
  const auto text_of = [&field](const std::string& attribute) {
    return ToUTF8(GetAttribute(field, attribute.c_str()));
  };
  OutputField record;
  record.node = &field;
  const XMLCh* name = GetAttribute(field, MCPMMLTags::XML_ATT_NAME.c_str());
  if (name != nullptr) record.name = ToUTF8(name);
  record.optype = text_of(MCPMMLTags::XML_ATT_OPTYPE);
  record.data_type = text_of(MCPMMLTags::XML_ATT_DATATYPE);
  std::vector<DOMNode*> nodes;
  EnumValuesOfDataField(&field, nodes, record.values);
  state_->data_fields.Append(std::move(record));
}

DOMNode* MCXSplitPMMLCombiner::InsertValueOfDataField(const DOMNode* value, DOMNode* field,
                                                      std::vector<std::string>& list) {
  DOMNode* copy = CopyTo(value, field, true);
  if (copy == nullptr) return nullptr;
  const XMLCh* text = GetAttribute(*copy, MCPMMLTags::XML_ATT_VALUE.c_str());
  if (text != nullptr) list.push_back(ToUTF8(text));
  return copy;
}

DOMNode* MCXSplitPMMLCombiner::InsertMiningField(const DOMNode* field, DOMNode* schema) {
  DOMNode* copy = CopyTo(field, schema, true);
  if (copy == nullptr) return nullptr;
  const XMLCh* name = GetAttribute(*copy, MCPMMLTags::XML_ATT_MININGFIELDNAME.c_str());
  if (name != nullptr) state_->mining_fields.Append(ToUTF8(name));
  return copy;
}

void MCXSplitPMMLCombiner::UpdateNumOfDataFields(DOMNode* dict, int n) {
  if (dict == nullptr || n < 0) return;
  DOMElement* element = AsElement(*dict, nullptr);
  if (element == nullptr) return;
  SetAttribute(*element, MCPMMLTags::XML_ATT_NUMBEROFFIELDS.c_str(), static_cast<double>(n));
}

void MCXSplitPMMLCombiner::UpdateDataDict(const DOMElement* src, DOMNode* out) {
  if (src == nullptr || out == nullptr) return;
  const AttributeReader reader(MCPMMLTags::XML_ATT_NAME);
  DescendantWalk walk(*src, MCPMMLTags::XML_ELE_DATAFIELD);
  std::size_t position = 0;
  std::size_t n_unnamed = 0;
  bool order_told = false;
  // Field by field, so that the nodes of one are still in the cache when its values are merged.
  for (; const DOMElement* field = walk.Next(); ++position) {
    if (const XMLCh* name = reader.Of(*field)) {
      MergeDataField({*field, name, position}, *out, order_told);
    } else {
      ++n_unnamed;
    }
  }
  if (n_unnamed > 0) state_->findings.UnnamedFields("dictionary", n_unnamed);
  UpdateNumOfDataFields(out, state_->data_fields.GetNNames());
}

void MCXSplitPMMLCombiner::MergeDataField(const SourceField& field, DOMNode& dict,
                                          bool& order_told) {
  MergeFindings& findings = state_->findings;
  const OutputField* there = state_->data_fields.At(field.position);
  if (there != nullptr && there->name && XStrEqualsUTF8Str(field.name, there->name->c_str())) {
    CompareTypes(field, *there, findings);
    MergeValues(field);
    return;
  }
  const std::string name = ToUTF8(field.name);
  const OutputField* same_name = state_->data_fields.Find(name);
  if (same_name == nullptr) {
    InsertDataField(&field.element, &dict);
    return;
  }
  CompareTypes(field, *same_name, findings);
  // The position decides where the values go, not the name, on purpose: dictionaries of splits list
  // their fields in the same order. That these two do not is told.
  const std::vector<std::string> added = MergeValues(field);
  if (there == nullptr || there->node == nullptr) return;
  const std::string name_there = there->name.value_or(std::string());
  if (HasValues(field.element)) {
    findings.ValuesWentElsewhere(name, field.position, name_there, added);
  } else if (!order_told) {
    findings.OrderDiffers(name, field.position, name_there);
  }
  order_told = true;
}

// Returns the texts that were added to the combined field at the position of the source field.
std::vector<std::string> MCXSplitPMMLCombiner::MergeValues(const SourceField& field) {
  OutputField* there = state_->data_fields.At(field.position);
  if (there == nullptr || there->node == nullptr) {
    if (HasValues(field.element)) {
      state_->findings.ValuesNotMerged(ToUTF8(field.name), field.position, there != nullptr);
    }
    return {};
  }
  const auto n_before = static_cast<std::ptrdiff_t>(there->values.size());
  // All new values are found before the first is added: see NewValues().
  for (const DOMElement* value : NewValues(field.element, there->values)) {
    InsertValueOfDataField(value, there->node, there->values);
  }
  std::vector<std::string> added(there->values.begin() + n_before, there->values.end());
  ReportRepeats(field, added, state_->findings);
  return added;
}

// A schema whose names stand in the combined one as one run adds nothing. Neither does any other
// schema whose names are all known, so looking each name up is enough.
void MCXSplitPMMLCombiner::UpdateMiningSchema(const DOMElement* src, DOMNode* out) {
  if (src == nullptr || out == nullptr) return;
  const std::vector<DOMElement*> fields = ChildElements(*src, MCPMMLTags::XML_ELE_MININGFIELD);
  const AttributeReader reader(MCPMMLTags::XML_ATT_MININGFIELDNAME);
  std::size_t n_unnamed = 0;
  for (std::size_t k = 0; k < fields.size(); ++k) {
    const XMLCh* name = reader.Of(*fields[k]);
    if (name == nullptr) {
      ++n_unnamed;
    } else if (!state_->mining_fields.Contains(name, k)) {
      InsertMiningField(fields[k], out);
    }
  }
  if (n_unnamed > 0) state_->findings.UnnamedFields("schema", n_unnamed);
}

}  // namespace MCXPrsUtil
