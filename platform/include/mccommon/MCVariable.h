/// @file
/// The variable that MCVarList holds, with everything that was set on it.
#ifndef MCCOMMON_MCVARIABLE_H
#define MCCOMMON_MCVARIABLE_H

#include <optional>
#include <string>
#include <vector>

#include "mccommon/IMCVariable.h"
#include "mccommon/MCExport.h"

namespace MCMTD_NAMESPACE {

/// The values and labels of a categorical variable, in the order in which they were given.
///
/// Values are kept exactly as given, repeated ones included: positions mean something to callers.
class MCCOMMON_EXPORT MCCategorySet final : public IMCCategorySet {
 public:
  /// Numeric categories. `labels` is empty, or has one entry per value.
  MCCategorySet(std::vector<double> values, std::vector<std::string> labels);

  /// Text categories. `labels` is empty, or has one entry per value.
  MCCategorySet(std::vector<std::string> values, std::vector<std::string> labels);

  // Declared because the destructor is: without them every move would be a deep copy.
  MCCategorySet(const MCCategorySet&) = default;
  MCCategorySet(MCCategorySet&&) noexcept = default;
  MCCategorySet& operator=(const MCCategorySet&) = default;
  MCCategorySet& operator=(MCCategorySet&&) noexcept = default;
  ~MCCategorySet() override;

  std::string GetValueText(int index) const override;

  /// The label of the category at `index` (from 0); empty without labels and outside the set.
  std::string GetLabelText(int index) const;

  /// The number of categories.
  int Size() const;

  bool IsNumeric() const { return numeric_; }

  /// The values of a numeric set; empty for a text set.
  const std::vector<double>& GetNumbers() const { return numbers_; }

  /// The values of a text set; empty for a numeric set.
  const std::vector<std::string>& GetTexts() const { return texts_; }

  /// One label per value; empty when the variable was added without labels.
  const std::vector<std::string>& GetLabels() const { return labels_; }

 private:
  bool numeric_;
  std::vector<double> numbers_;
  std::vector<std::string> texts_;
  std::vector<std::string> labels_;
};

/// The range of a continuous variable.
struct MCRange {
  double minimum;          ///< MCMV::gMissingValue or the most negative finite double: open below.
  double maximum;          ///< MCMV::gMissingValue or the largest finite double: open above.
  bool rangeFlag = false;  ///< The application is to cut the range into `rangeCount` parts.
  int rangeCount = -1;     ///< -1 where no number of parts was given.
  std::vector<double> cutPoints;  ///< Ascending, strictly inside; n of them make n + 1 bins.
  bool binned = false;            ///< The values are to be binned at the cut points.
};

/// A variable and everything that was set on it.
///
/// MCVarList makes these and checks what goes in; the constructors take their arguments as they
/// are, so that an application with a list of its own can use the class too. Several threads may
/// read one variable, or one category set, while none changes it.
class MCCOMMON_EXPORT MCVariable final : public IMCVariable {
 public:
  /// What GetKind() returns.
  enum Kind { kContinuous = 1, kCategoricalNumeric = 2, kCategoricalText = 3 };

  /// A continuous variable without a range.
  MCVariable(std::string name, std::string label, VariableRole role);

  /// A continuous variable with a range.
  MCVariable(std::string name, std::string label, MCRange range, VariableRole role);

  /// A categorical variable.
  MCVariable(std::string name, std::string label, MCCategorySet categories, VariableRole role);

  /// A frequency weight: continuous, without a range, role kRoleFrequencyWeight.
  MCVariable(std::string name, std::string label, WRoundingOption rounding);

  // Declared because the destructor is: without them every move would be a deep copy.
  MCVariable(const MCVariable&) = default;
  MCVariable(MCVariable&&) noexcept = default;
  MCVariable& operator=(const MCVariable&) = default;
  MCVariable& operator=(MCVariable&&) noexcept = default;
  ~MCVariable() override;

  const std::string& GetName() const override;
  const std::string& GetLabel() const override;
  int GetKind() const override;
  int GetValueFormat() const override;
  VariableRole GetRole() const override;
  int GetNCategories() const override;
  const MCCategorySet* GetCategorySet() const override;
  int GetDataType() const override;
  void SetDataType(int code) override;

  bool IsContinuous() const { return !categories_.has_value(); }

  /// True when the variable was added with a range, an open one included. Without one the accessors
  /// below give the values of an open range that nothing divides: missing, false, -1, empty.
  bool HasRange() const { return has_range_; }

  /// True when the range has a lower end: neither missing nor the most negative finite double.
  bool HasMinimum() const;

  /// True when the range has an upper end: neither missing nor the largest finite double.
  bool HasMaximum() const;

  /// The lower end exactly as given.
  double GetMinimum() const { return range_.minimum; }

  /// The upper end exactly as given.
  double GetMaximum() const { return range_.maximum; }

  bool GetRangeFlag() const { return range_.rangeFlag; }
  int GetRangeCount() const { return range_.rangeCount; }

  /// The points that divide the range into bins, without its two ends.
  const std::vector<double>& GetCutPoints() const { return range_.cutPoints; }

  bool IsBinned() const { return range_.binned; }

  /// True when the variable was made as the list's frequency weight; role 3 alone does not say so.
  bool IsWeight() const { return rounding_.has_value(); }

  /// How the weight is rounded; kRoundNone for a variable that is no weight.
  WRoundingOption GetRounding() const { return rounding_.value_or(kRoundNone); }

 private:
  std::string name_;
  std::string label_;
  VariableRole role_;
  int data_type_ = 0;
  bool has_range_ = false;
  MCRange range_;
  std::optional<MCCategorySet> categories_;
  std::optional<WRoundingOption> rounding_;
};

}  // namespace MCMTD_NAMESPACE

#endif  // MCCOMMON_MCVARIABLE_H
