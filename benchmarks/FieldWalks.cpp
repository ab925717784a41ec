#include "FieldWalks.h"

#include <mccommon/MCFormat.h>
#include <mccommon/MCVariable.h>

#include <array>
#include <limits>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "BareText.h"
#include "BareXerces.h"
#include "DictionaryWalk.h"

namespace bench {
namespace {

using MCMTD_NAMESPACE::IMCVarEncoder;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVariable;
using MCMTD_NAMESPACE::MCVarList;
using xercesc::DOMElement;
using xercesc::XMLString;

struct Values {
  std::vector<double> numbers;
  std::vector<std::string> texts;
  std::vector<std::string> labels;
};

struct Range {
  double lower = std::numeric_limits<double>::lowest();
  double upper = std::numeric_limits<double>::max();
};

// What the two formats have in common.
class Walker {
 public:
  explicit Walker(MCVarList& list) : list_(list) {}

 protected:
  std::string Text(const DOMElement& element, const XMLCh* name) const {
    return toUtf8_(element.getAttribute(name));
  }

  void AppendValue(const DOMElement& element, const XMLCh* labelName, bool text,
                   Values& values) const {
    if (text) {
      values.texts.push_back(Text(element, u"value"));
    } else {
      values.numbers.push_back(NumberAttribute(element, u"value"));
    }
    if (const auto* label = element.getAttributeNode(labelName))
      values.labels.push_back(toUtf8_(label->getValue()));
  }

  template <class Items>
  int AddCategorical(const std::string& name, const std::string& label, const Items& items,
                     const Values& values, IMCVariable::VariableRole role) const {
    if (values.labels.size() == items.size())
      return list_.AddCatVar(name, label, items, values.labels, role);
    return list_.AddCatVar(name, label, items, role);
  }

  MCVarList& list_;
  Utf8Maker toUtf8_;
};

class DataModelWalker : Walker {
 public:
  DataModelWalker(MCVarList& list, int rangeCount) : Walker(list), range_count_(rangeCount) {}

  void ReadField(const DOMElement& field) const {
    const std::string name = Text(field, u"name");
    const std::string label = Text(field, u"displayLabel");
    const bool text = XMLString::equals(field.getAttribute(u"storage"), u"string");
    const IMCVariable::VariableRole role = Role(field.getAttribute(u"role"));
    Values values;
    Range range;
    ReadChildren(field, text, values, range);
    if (XMLString::equals(field.getAttribute(u"measure"), u"continuous")) {
      AddContinuous(name, label, range, role);
    } else if (text) {
      AddCategorical(name, label, values.texts, values, role);
    } else {
      AddCategorical(name, label, values.numbers, values, role);
    }
  }

 private:
  static IMCVariable::VariableRole Role(const XMLCh* word) {
    if (XMLString::equals(word, u"input")) return IMCVariable::kRoleInput;
    if (XMLString::equals(word, u"target")) return IMCVariable::kRoleTarget;
    return IMCVariable::kRoleFrequencyWeight;
  }

  void ReadChildren(const DOMElement& field, bool text, Values& values, Range& range) const {
    for (const DOMElement* child = field.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
      if (HasName(*child, u"Values")) {
        ReadValues(*child, text, values);
      } else if (HasName(*child, u"Range")) {
        range = {NumberAttribute(*child, u"minValue"), NumberAttribute(*child, u"maxValue")};
      }
    }
  }

  void ReadValues(const DOMElement& parent, bool text, Values& values) const {
    for (const DOMElement* child = parent.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
      if (HasName(*child, u"Value")) AppendValue(*child, u"displayLabel", text, values);
    }
  }

  void AddContinuous(const std::string& name, const std::string& label, const Range& range,
                     IMCVariable::VariableRole role) const {
    if (role == IMCVariable::kRoleFrequencyWeight) {
      list_.SetWeightVar(name, label, IMCVariable::kRoundNearest);
    } else {
      list_.AddContVar(name, label, range.lower, range.upper, role, true, range_count_);
    }
  }

  int range_count_;
};

struct DataTypeCode {
  const XMLCh* word;
  int code;
};

constexpr std::array<DataTypeCode, 3> kDataTypeCodes = {
    {{u"string", 3}, {u"double", 2}, {u"integer", 1}}};

class SettingsWalker : Walker {
 public:
  explicit SettingsWalker(MCVarList& list) : Walker(list) {}

  void ReadField(const DOMElement& field) const {
    const std::string name = Text(field, u"name");
    const std::string label = Text(field, u"displayName");
    const int type = DataType(field.getAttribute(u"dataType"));
    const bool text = type == kDataTypeCodes[0].code;
    Values valid;
    Values missing;
    Range range;
    ReadChildren(field, text, valid, missing, range);
    const auto role = IMCVariable::kRoleInput;
    const bool continuous = XMLString::equals(field.getAttribute(u"optype"), u"continuous");
    const int index = continuous
                          ? list_.AddContVar(name, label, range.lower, range.upper, role, false, -1)
                      : text ? AddCategorical(name, label, valid.texts, valid, role)
                             : AddCategorical(name, label, valid.numbers, valid, role);
    DeclareMissing(missing, *list_.GetEncoderAt(index));
    list_.GetVarAt(index)->SetDataType(type);
  }

 private:
  static int DataType(const XMLCh* word) {
    for (const DataTypeCode& type : kDataTypeCodes) {
      if (XMLString::equals(word, type.word)) return type.code;
    }
    return 0;
  }

  void ReadChildren(const DOMElement& field, bool text, Values& valid, Values& missing,
                    Range& range) const {
    for (const DOMElement* child = field.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
      if (HasName(*child, u"Value")) {
        const XMLCh* property = child->getAttribute(u"property");
        const bool isValid = *property == 0 || XMLString::equals(property, u"valid");
        AppendValue(*child, u"displayValue", text, isValid ? valid : missing);
      } else if (HasName(*child, u"Interval")) {
        range = ReadInterval(*child);
      } else if (HasName(*child, u"Extension")) {
        if (const DOMElement* interval = ChildNamed(*child, u"Interval"))
          range = ReadInterval(*interval);
      }
    }
  }

  static Range ReadInterval(const DOMElement& interval) {
    return {NumberAttribute(interval, u"leftMargin"), NumberAttribute(interval, u"rightMargin")};
  }

  static void DeclareMissing(const Values& missing, IMCVarEncoder& encoder) {
    const auto label = [&](std::size_t i) {
      return i < missing.labels.size() ? missing.labels[i] : std::string();
    };
    for (std::size_t i = 0; i < missing.numbers.size(); ++i)
      encoder.AddMissingValue(missing.numbers[i], label(i));
    for (std::size_t i = 0; i < missing.texts.size(); ++i)
      encoder.AddMissingValue(missing.texts[i], label(i));
  }
};

template <class FieldWalker>
void WalkFields(const xercesc::DOMDocument& document, const XMLCh* parent, const XMLCh* name,
                const FieldWalker& walker) {
  const DOMElement& fields = *ChildNamed(*document.getDocumentElement(), parent);
  for (const DOMElement* field = fields.getFirstElementChild(); field != nullptr;
       field = field->getNextElementSibling()) {
    if (HasName(*field, name)) walker.ReadField(*field);
  }
}

std::string Number(double value) { return MCXML_NAMESPACE::Format(value, false, nullptr); }

}  // namespace

void WalkDataModel(const xercesc::DOMDocument& document, int rangeCount, MCVarList& list) {
  WalkFields(document, u"Fields", u"Field", DataModelWalker(list, rangeCount));
}

void WalkSettingsFields(const xercesc::DOMDocument& document, MCVarList& list) {
  WalkFields(document, u"DataDictionary", u"DataField", SettingsWalker(list));
}

void WalkSettingsDerivedFields(const xercesc::DOMDocument& document, MCVarList& list) {
  WalkFields(document, u"TransformationDictionary", u"DerivedField", SettingsWalker(list));
}

std::string DescribeWithRanges(MCVarList& list) {
  std::string text = Describe(list);
  for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
    const MCVariable& variable = *list.GetStoredVar(i);
    text += variable.GetName() + " type " + std::to_string(variable.GetDataType()) + " range " +
            Number(variable.GetMinimum()) + ".." + Number(variable.GetMaximum()) + " parts " +
            std::to_string(variable.GetRangeCount()) + (variable.GetRangeFlag() ? " cut" : "") +
            (variable.IsWeight() ? " weight" : "") + "\n";
  }
  return text;
}

}  // namespace bench
