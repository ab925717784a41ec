#include "DictionaryWalk.h"

#include <mccommon/MCFormat.h>
#include <mccommon/MCVarEncoder.h>
#include <mccommon/MCVariable.h>

#include <vector>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLString.hpp>

#include "BareXerces.h"

namespace bench {
namespace {

using MCMTD_NAMESPACE::IMCVarEncoder;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using xercesc::DOMElement;
using xercesc::XMLString;

constexpr auto kRole = static_cast<IMCVariable::VariableRole>(4);

struct Values {
  std::vector<double> numbers;
  std::vector<std::string> texts;
  std::vector<std::string> labels;
};

DOMElement* FindChild(const DOMElement& parent, const XMLCh* name) {
  DOMElement* child = parent.getFirstElementChild();
  while (child != nullptr && !XMLString::equals(child->getTagName(), name))
    child = child->getNextElementSibling();
  return child;
}

double ReadNumber(const DOMElement& element) {
  return xercesc::XMLDouble(element.getAttribute(u"value")).getValue();
}

template <class Texts>
int AddCategorical(MCVarList& list, const std::string& name, const std::string& label,
                   const Texts& texts, const std::vector<std::string>& labels) {
  if (labels.size() == texts.size()) return list.AddCatVar(name, label, texts, labels, kRole);
  return list.AddCatVar(name, label, texts, kRole);
}

template <class Texts>
void DeclareMissing(IMCVarEncoder& encoder, const Texts& texts,
                    const std::vector<std::string>& labels) {
  for (std::size_t i = 0; i < texts.size(); ++i)
    encoder.AddMissingValue(texts[i], i < labels.size() ? labels[i] : std::string());
}

class Walker {
 public:
  explicit Walker(MCVarList& list) : list_(list) {}

  void ReadField(const DOMElement& field) const {
    const std::string name = toUtf8_(field.getAttribute(u"name"));
    const std::string label = toUtf8_(field.getAttribute(u"displayName"));
    const bool text = XMLString::equals(field.getAttribute(u"dataType"), u"string");
    const bool continuous = XMLString::equals(field.getAttribute(u"optype"), u"continuous");
    Values valid;
    Values missing;
    for (const DOMElement* child = field.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
      if (XMLString::equals(child->getTagName(), u"Value")) ReadValue(*child, text, valid, missing);
    }
    const int index = continuous ? list_.AddContVar(name, label, kRole)
                      : text     ? AddCategorical(list_, name, label, valid.texts, valid.labels)
                                 : AddCategorical(list_, name, label, valid.numbers, valid.labels);
    IMCVarEncoder& encoder = *list_.GetEncoderAt(index);
    if (text) {
      DeclareMissing(encoder, missing.texts, missing.labels);
    } else {
      DeclareMissing(encoder, missing.numbers, missing.labels);
    }
  }

 private:
  void ReadValue(const DOMElement& element, bool text, Values& valid, Values& missing) const {
    const XMLCh* property = element.getAttribute(u"property");
    Values& values = *property == 0 || XMLString::equals(property, u"valid") ? valid : missing;
    if (text) {
      values.texts.push_back(toUtf8_(element.getAttribute(u"value")));
    } else {
      values.numbers.push_back(ReadNumber(element));
    }
    if (const auto* label = element.getAttributeNode(u"displayValue"))
      values.labels.push_back(toUtf8_(label->getValue()));
  }

  MCVarList& list_;
  Utf8Maker toUtf8_;
};

std::string Number(double value) { return MCXML_NAMESPACE::Format(value, false, nullptr); }

std::string DescribeCategories(const MCMTD_NAMESPACE::MCVariable& variable) {
  std::string text;
  const auto* categories = variable.GetCategorySet();
  for (int i = 0; categories != nullptr && i < variable.GetNCategories(); ++i)
    text += " " + categories->GetValueText(i) + "=" + categories->GetLabelText(i);
  return text;
}

std::string DescribeEncoder(const MCMTD_NAMESPACE::MCVarEncoder& encoder) {
  std::string text;
  for (const auto& missing : encoder.GetMissingNumbers())
    text += " missing " + Number(missing.value) + "=" + missing.label;
  for (const auto& missing : encoder.GetMissingTexts())
    text += " missing " + missing.value + "=" + missing.label;
  if (encoder.HasInvalidRange())
    text +=
        " invalid " + Number(encoder.GetInvalidLower()) + ".." + Number(encoder.GetInvalidUpper());
  return text;
}

}  // namespace

void WalkDictionary(const xercesc::DOMDocument& document, MCVarList& list) {
  const Walker walker(list);
  const DOMElement* dictionary = FindChild(*document.getDocumentElement(), u"DataDictionary");
  for (const DOMElement* field = dictionary->getFirstElementChild(); field != nullptr;
       field = field->getNextElementSibling()) {
    if (XMLString::equals(field->getTagName(), u"DataField")) walker.ReadField(*field);
  }
}

std::string Describe(MCVarList& list) {
  std::string text;
  for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
    const auto& variable = dynamic_cast<MCMTD_NAMESPACE::MCVariable&>(*list.GetVarAt(i));
    const auto& encoder = dynamic_cast<MCMTD_NAMESPACE::MCVarEncoder&>(*list.GetEncoderAt(i));
    text += variable.GetName() + " (" + variable.GetLabel() + ") kind " +
            std::to_string(variable.GetKind()) + " role " + std::to_string(variable.GetRole()) +
            DescribeCategories(variable) + DescribeEncoder(encoder) + "\n";
  }
  return text;
}

}  // namespace bench
