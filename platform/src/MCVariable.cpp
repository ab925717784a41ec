#include "mccommon/MCVariable.h"

#include <cfloat>
#include <utility>

#include "mccommon/MCFormat.h"
#include "mccommon/MCMissingValue.h"

namespace MCMTD_NAMESPACE {
namespace {

template <class T>
const T* ElementAt(const std::vector<T>& elements, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= elements.size()) return nullptr;
  return &elements[static_cast<std::size_t>(index)];
}

MCRange OpenRange() {
  MCRange range;
  range.minimum = MCMV::gMissingValue;
  range.maximum = MCMV::gMissingValue;
  return range;
}

}  // namespace

MCCategorySet::MCCategorySet(std::vector<double> values, std::vector<std::string> labels)
    : numeric_(true), numbers_(std::move(values)), labels_(std::move(labels)) {}

MCCategorySet::MCCategorySet(std::vector<std::string> values, std::vector<std::string> labels)
    : numeric_(false), texts_(std::move(values)), labels_(std::move(labels)) {}

MCCategorySet::~MCCategorySet() = default;

std::string MCCategorySet::GetValueText(int index) const {
  if (const double* number = ElementAt(numbers_, index)) {
    return MCXML_NAMESPACE::Format(*number, false, nullptr);
  }
  const std::string* text = ElementAt(texts_, index);
  return text != nullptr ? *text : std::string();
}

std::string MCCategorySet::GetLabelText(int index) const {
  const std::string* label = ElementAt(labels_, index);
  return label != nullptr ? *label : std::string();
}

int MCCategorySet::Size() const {
  return static_cast<int>(numeric_ ? numbers_.size() : texts_.size());
}

MCVariable::MCVariable(std::string name, std::string label, VariableRole role)
    : name_(std::move(name)), label_(std::move(label)), role_(role), range_(OpenRange()) {}

MCVariable::MCVariable(std::string name, std::string label, MCRange range, VariableRole role)
    : name_(std::move(name)),
      label_(std::move(label)),
      role_(role),
      has_range_(true),
      range_(std::move(range)) {}

MCVariable::MCVariable(std::string name, std::string label, MCCategorySet categories,
                       VariableRole role)
    : name_(std::move(name)),
      label_(std::move(label)),
      role_(role),
      range_(OpenRange()),
      categories_(std::move(categories)) {}

MCVariable::MCVariable(std::string name, std::string label, WRoundingOption rounding)
    : name_(std::move(name)),
      label_(std::move(label)),
      role_(kRoleFrequencyWeight),
      range_(OpenRange()),
      rounding_(rounding) {}

MCVariable::~MCVariable() = default;

const std::string& MCVariable::GetName() const { return name_; }

const std::string& MCVariable::GetLabel() const { return label_; }

int MCVariable::GetKind() const {
  if (IsContinuous()) return kContinuous;
  return categories_->IsNumeric() ? kCategoricalNumeric : kCategoricalText;
}

int MCVariable::GetValueFormat() const {
  constexpr int kIntegerDataType = 1;
  return data_type_ == kIntegerDataType ? 1 : 0;
}

IMCVariable::VariableRole MCVariable::GetRole() const { return role_; }

int MCVariable::GetNCategories() const { return IsContinuous() ? 0 : categories_->Size(); }

const MCCategorySet* MCVariable::GetCategorySet() const {
  return IsContinuous() ? nullptr : &*categories_;
}

int MCVariable::GetDataType() const { return data_type_; }

void MCVariable::SetDataType(int code) { data_type_ = code; }

bool MCVariable::HasMinimum() const {
  return range_.minimum != MCMV::gMissingValue && range_.minimum != -DBL_MAX;
}

bool MCVariable::HasMaximum() const {
  return range_.maximum != MCMV::gMissingValue && range_.maximum != DBL_MAX;
}

}  // namespace MCMTD_NAMESPACE
