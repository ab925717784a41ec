// The data dictionary and the mining schema of the combined document.
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLString.hpp>

#include "combiner/CombinerState.h"
#include "combiner/DomTree.h"
#include "mcxprsutil/MCPMMLTags.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "xml/Utf16Name.h"

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
using XERCES_CPP_NAMESPACE::XMLString;

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

// Looks texts up among the values of a field, which do not change meanwhile. Splits of one data
// source list their values alike, so most texts are found one behind the other, without a
// conversion.
class ValueLookup {
 public:
  explicit ValueLookup(OutputField& field) : values_(field.values), index_(field.values_index) {}

  bool Contains(const XMLCh* text) {
    if (next_ < values_.size() && XStrEqualsUTF8Str(text, values_[next_].c_str())) {
      ++next_;
      return true;
    }
    return Find(ToUTF8(text));
  }

 private:
  bool Find(const std::string& text) {
    const std::size_t position = index_.PositionIn(values_, text);
    if (position == values_.size()) return false;
    next_ = position + 1;
    return true;
  }

  const std::vector<std::string>& values_;
  TextIndex& index_;
  std::size_t next_ = 0;
};

// The elements of a "DataField" that a merge looks at, at any depth.
struct FieldContent {
  std::vector<const DOMElement*> values;
  std::vector<const DOMElement*> intervals;
};

FieldContent ContentOf(const DOMNode& field) {
  FieldContent content;
  const Utf16Name value(MCPMMLTags::XML_ELE_VALUE.c_str());
  const Utf16Name interval(MCPMMLTags::XML_ELE_INTERVAL.c_str());
  DescendantWalk walk(field);
  while (const DOMElement* element = walk.Next()) {
    const XMLCh* name = element->getTagName();
    if (XMLString::equals(name, value.Get())) {
      content.values.push_back(element);
    } else if (XMLString::equals(name, interval.Get())) {
      content.intervals.push_back(element);
    }
  }
  return content;
}

std::string AttributeText(const DOMElement& element, const std::string& name) {
  return ToUTF8(GetAttribute(element, name.c_str()));
}

// What the intervals say, as one text; equal intervals give equal texts.
std::string TextOfIntervals(const std::vector<const DOMElement*>& intervals) {
  std::string text;
  for (const DOMElement* interval : intervals) {
    text += AttributeText(*interval, MCPMMLTags::XML_ATT_CLOSURE) + ' ' +
            AttributeText(*interval, MCPMMLTags::XML_ATT_LEFTMARGIN) + ' ' +
            AttributeText(*interval, MCPMMLTags::XML_ATT_RIGHTMARGIN) + ';';
  }
  return text;
}

// An attribute that may be left out, in which case it reads as `otherwise`.
std::string TextOr(const DOMElement& element, const std::string& name, const char* otherwise) {
  const XMLCh* text = GetAttribute(element, name.c_str());
  return text == nullptr ? otherwise : ToUTF8(text);
}

// What PMML says of a "Value" without "property" and of a "MiningField" without "usageType".
constexpr char kDefaultProperty[] = "valid";
constexpr char kDefaultUsage[] = "active";

void RecordProperty(const DOMElement& value, OutputField& field) {
  const XMLCh* property = GetAttribute(value, MCPMMLTags::XML_ATT_PROPERTY.c_str());
  if (property == nullptr) return;
  field.properties.emplace(AttributeText(value, MCPMMLTags::XML_ATT_VALUE), ToUTF8(property));
}

// The "Value" elements whose text is not recorded for `field`. A text that is there twice is found
// twice, and so gets into the output twice: that is how a merge works.
std::vector<const DOMElement*> NewValues(const std::vector<const DOMElement*>& values,
                                         OutputField& field) {
  std::vector<const DOMElement*> found;
  const AttributeReader reader(MCPMMLTags::XML_ATT_VALUE);
  ValueLookup known(field);
  for (const DOMElement* value : values) {
    const XMLCh* text = reader.Of(*value);
    if (text != nullptr && !known.Contains(text)) found.push_back(value);
  }
  return found;
}

void CompareType(const SourceField& field, const std::string& attribute,
                 const std::string& combined, MergeFindings& findings) {
  const XMLCh* here = GetAttribute(field.element, attribute.c_str());
  if (XStrEqualsUTF8Str(here, combined.c_str())) return;
  findings.TypeDiffers(ToUTF8(field.name), attribute, ToUTF8(here), combined);
}

// True for most values: nothing says that they have a "property", here or in the combined field. A
// value with a single attribute has none, which needs no look-up.
bool HasPlainProperty(const DOMElement& value, const OutputField& combined) {
  if (!combined.properties.empty()) return false;
  return value.getAttributes()->getLength() < 2 ||
         GetAttribute(value, MCPMMLTags::XML_ATT_PROPERTY.c_str()) == nullptr;
}

// Tells the first value that the combined field has with another "property".
void CompareProperties(const SourceField& field, const std::vector<const DOMElement*>& values,
                       OutputField& combined, MergeFindings& findings) {
  for (const DOMElement* value : values) {
    if (HasPlainProperty(*value, combined)) continue;
    const std::string text = AttributeText(*value, MCPMMLTags::XML_ATT_VALUE);
    const std::size_t n_values = combined.values.size();
    if (combined.values_index.PositionIn(combined.values, text) == n_values) continue;
    const std::string here = TextOr(*value, MCPMMLTags::XML_ATT_PROPERTY, kDefaultProperty);
    const auto known = combined.properties.find(text);
    const std::string there = known == combined.properties.end() ? kDefaultProperty : known->second;
    if (here == there) continue;
    findings.PropertyDiffers(ToUTF8(field.name), text, here, there);
    return;
  }
}

// Compares a field with what was recorded of the first one that has its name.
void CompareWithFirst(const SourceField& field, const FieldContent& content, OutputField& first,
                      MergeFindings& findings) {
  if (first.node == nullptr) return;
  CompareType(field, MCPMMLTags::XML_ATT_OPTYPE, first.optype, findings);
  CompareType(field, MCPMMLTags::XML_ATT_DATATYPE, first.data_type, findings);
  if (first.is_split_variable) {
    findings.SplitVariableDeclaredLater(ToUTF8(field.name), "dictionary");
  }
  if (TextOfIntervals(content.intervals) != first.intervals) {
    findings.IntervalsDiffer(ToUTF8(field.name));
  }
  const bool has_values = !content.values.empty();
  if (has_values != first.had_values) findings.ValuesOnOneSide(ToUTF8(field.name), has_values);
  CompareProperties(field, content.values, first, findings);
}

void CompareMiningField(const DOMElement& field, const OutputName& combined,
                        MergeFindings& findings) {
  if (combined.is_exported) return;
  if (combined.is_split_variable) findings.SplitVariableDeclaredLater(combined.name, "schema");
  const XMLCh* here = GetAttribute(field, MCPMMLTags::XML_ATT_MININGFIELDUSE.c_str());
  if (XStrEqualsUTF8Str(here, combined.usage.c_str())) return;
  const std::string usage = here == nullptr ? kDefaultUsage : ToUTF8(here);
  if (usage != combined.usage) findings.UsageDiffers(combined.name, usage, combined.usage);
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
  record.is_split_variable = record.name && state_->IsSplitVariable(*record.name);
  const FieldContent content = ContentOf(field);
  const AttributeReader reader(MCPMMLTags::XML_ATT_VALUE);
  for (const DOMElement* value : content.values) {
    RecordProperty(*value, record);
    if (const XMLCh* text = reader.Of(*value)) record.values.push_back(ToUTF8(text));
  }
  record.had_values = !content.values.empty();
  record.intervals = TextOfIntervals(content.intervals);
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
  if (const DOMElement* element = AsElement(*copy, nullptr)) RecordMiningField(*element);
  return copy;
}

void MCXSplitPMMLCombiner::RecordMiningField(const DOMElement& field) {
  const XMLCh* name = GetAttribute(field, MCPMMLTags::XML_ATT_MININGFIELDNAME.c_str());
  if (name == nullptr) return;
  OutputName record;
  record.name = ToUTF8(name);
  record.usage = TextOr(field, MCPMMLTags::XML_ATT_MININGFIELDUSE, kDefaultUsage);
  record.is_split_variable = state_->IsSplitVariable(record.name);
  state_->mining_fields.Append(std::move(record));
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
  OutputField* there = state_->data_fields.At(field.position);
  const bool is_same =
      there != nullptr && there->name && XStrEqualsUTF8Str(field.name, there->name->c_str());
  const bool is_first = is_same && there->node != nullptr && !there->is_repeat;
  OutputField* first = is_first ? there : state_->data_fields.Find(ToUTF8(field.name));
  if (first == nullptr) {
    InsertDataField(&field.element, &dict);
    return;
  }
  const FieldContent content = ContentOf(field.element);
  CompareWithFirst(field, content, *first, findings);
  // The position decides where the values go, not the name, on purpose: dictionaries of splits list
  // their fields in the same order. Where these two do not, that is told.
  const std::vector<std::string> added = MergeValues(field, content.values);
  if (is_same || there == nullptr || there->node == nullptr) return;
  if (!content.values.empty()) {
    findings.ValuesWentElsewhere(ToUTF8(field.name), field.position, there->name, added);
  } else if (!order_told) {
    findings.OrderDiffers(ToUTF8(field.name), field.position, there->name);
  }
  order_told = true;
}

// Returns the texts that were added to the combined field at the position of the source field.
std::vector<std::string> MCXSplitPMMLCombiner::MergeValues(
    const SourceField& field, const std::vector<const DOMElement*>& values) {
  OutputField* there = state_->data_fields.At(field.position);
  if (there == nullptr || there->node == nullptr) {
    if (!values.empty()) {
      state_->findings.ValuesNotMerged(ToUTF8(field.name), field.position, there != nullptr);
    }
    return {};
  }
  const auto n_before = static_cast<std::ptrdiff_t>(there->values.size());
  // All new values are found before the first is added: see NewValues().
  for (const DOMElement* value : NewValues(values, *there)) {
    InsertValueOfDataField(value, there->node, there->values);
    RecordProperty(*value, *there);
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
    } else if (const OutputName* known = state_->mining_fields.Find(name, k)) {
      CompareMiningField(*fields[k], *known, state_->findings);
    } else {
      InsertMiningField(fields[k], out);
    }
  }
  if (n_unnamed > 0) state_->findings.UnnamedFields("schema", n_unnamed);
}

}  // namespace MCXPrsUtil
