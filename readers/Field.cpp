#include "readers/Field.h"

#include <cstddef>

#include "mccommon/IMCVarEncoder.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "readers/DomWalk.h"
#include "readers/Names.h"
#include "xml/AttributeText.h"
#include "xml/NumberText.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVarEncoder;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using XERCES_CPP_NAMESPACE::DOMElement;

void Clear(ValueLists& lists) {
  lists.numbers.clear();
  lists.texts.clear();
  lists.labels.clear();
}

const DataType* FindDataType(const DataType* types, const XMLCh* word) {
  for (; types->word != nullptr; ++types) {
    if (SameText(types->word, word)) return types;
  }
  return nullptr;
}

template <class Value>
int AddCategories(const Field& field, const std::vector<Value>& values, MCVarList& list) {
  const std::vector<std::string>& labels = field.valid.labels;
  return labels.size() == values.size()
             ? list.AddCatVar(field.name, field.label, values, labels, field.role)
             : list.AddCatVar(field.name, field.label, values, field.role);
}

// A first label "0" marks bins that are merely numbered: those labels say nothing.
bool HasBinLabels(const Field& field) {
  return IsBinned(field) && field.binLabels.size() == field.cutPoints.size() - 1 &&
         field.binLabels.front() != "0";
}

template <class Value>
void DeclareMissing(const std::vector<Value>& values, const std::vector<std::string>& labels,
                    IMCVarEncoder& encoder) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    encoder.AddMissingValue(values[i], i < labels.size() ? labels[i] : std::string());
  }
}

}  // namespace

void Field::Clear() {
  name.clear();
  label.clear();
  role = IMCVariable::kRoleNone;
  content = Content::kNumbers;
  dataTypeCode = 0;
  continuous = false;
  range = Range();
  MCXPrsUtil::Clear(valid);
  MCXPrsUtil::Clear(missing);
  invalidRange = Range();
  cutPoints.clear();
  binLabels.clear();
}

MCStatus ReadHeading(const DOMElement& element, const FieldDialect& dialect, Field& field) {
  if (const XMLCh* label = AttributeText(element, dialect.label)) field.label = ToUTF8(label);

  const XMLCh* word = AttributeText(element, dialect.dataType);
  if (word == nullptr) return Failure(kAttributeMissing);
  const DataType* type = FindDataType(dialect.types, word);
  if (type == nullptr) return Failure(kAttributeInvalid);
  field.content = type->content;
  field.dataTypeCode = type->code;

  const XMLCh* measure = AttributeText(element, dialect.measure);
  if (measure == nullptr) return Failure(kAttributeMissing);
  field.continuous = SameText(measure, names::kContinuous);
  return MCStatus();
}

void AppendValue(const DOMElement& value, const FieldDialect& dialect, Content content,
                 ValueLists& lists) {
  if (const XMLCh* text = AttributeText(value, names::kValueText)) {
    double number = 0;
    if (content == Content::kTexts) {
      lists.texts.push_back(ToUTF8(text));
    } else if (ParseDouble(text, number)) {
      lists.numbers.push_back(number);
    }
  }
  if (const XMLCh* label = AttributeText(value, dialect.valueLabel)) {
    lists.labels.push_back(ToUTF8(label));
  }
}

int AddCategorical(const Field& field, MCVarList& list) {
  return field.content == Content::kTexts ? AddCategories(field, field.valid.texts, list)
                                          : AddCategories(field, field.valid.numbers, list);
}

bool IsBinned(const Field& field) { return field.cutPoints.size() >= 3; }

int AddBinned(const Field& field, MCVarList& list) {
  const std::vector<double>& cuts = field.cutPoints;
  const std::vector<double> inner(cuts.begin() + 1, cuts.end() - 1);
  return list.AddContVar(field.name, field.label, cuts.front(), cuts.back(), inner, true,
                         field.role);
}

MCStatus DeclareAtEncoder(const Field& field, int index, MCVarList& list) {
  const ValueLists& missing = field.missing;
  const bool hasBinLabels = HasBinLabels(field);
  // Texts mean nothing to a continuous variable, even where its data type is text.
  const bool hasTexts = !field.continuous && !missing.texts.empty();
  const bool hasRange = !field.invalidRange.IsOpen();

  IMCVarEncoder* encoder = list.GetEncoderAt(index);
  if (!hasBinLabels && !hasTexts && !hasRange && missing.numbers.empty()) return MCStatus();
  if (encoder == nullptr) return Failure(kVariableRefused);

  if (hasBinLabels) encoder->SetBinLabels(field.binLabels);
  DeclareMissing(missing.numbers, missing.labels, *encoder);
  if (hasTexts) DeclareMissing(missing.texts, missing.labels, *encoder);
  if (hasRange) encoder->SetInvalidRange(field.invalidRange.lower, field.invalidRange.upper);
  return MCStatus();
}

}  // namespace MCXPrsUtil
