#include "mccommon/MCVariable.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <string>
#include <vector>

#include "mccommon/MCMissingValue.h"

namespace {

using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCCategorySet;
using MCMTD_NAMESPACE::MCRange;
using MCMTD_NAMESPACE::MCVariable;
using MCMV::gMissingValue;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

MCRange Range(double minimum, double maximum) { return {minimum, maximum, false, -1, {}, false}; }

MCVariable Plain() { return MCVariable("age", "Age in years", IMCVariable::kRoleInput); }

TEST(IMCVariable, EnumeratorsKeepTheirNumbers) {
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoleNone), 0);
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoleIdentifier), 1);
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoleTarget), 2);
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoleFrequencyWeight), 3);
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoleInput), 4);
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoleDeclaredInput), 5);
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoundNone), 0);
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoundDown), 1);
  EXPECT_EQ(static_cast<int>(IMCVariable::kRoundNearest), 2);
}

TEST(MCCategorySet, NumericValuesReadAsText) {
  const MCCategorySet set(Numbers{1, 2.5, 100000, 1}, {});
  EXPECT_TRUE(set.IsNumeric());
  EXPECT_EQ(set.Size(), 4);
  EXPECT_EQ(set.GetValueText(0), "1");
  EXPECT_EQ(set.GetValueText(1), "2.5");
  EXPECT_EQ(set.GetValueText(2), "100000");
  EXPECT_EQ(set.GetValueText(3), "1");
  EXPECT_EQ(set.GetNumbers(), (Numbers{1, 2.5, 100000, 1}));
  EXPECT_TRUE(set.GetTexts().empty());
}

TEST(MCCategorySet, TextValuesReadAsTheyAre) {
  const MCCategorySet set(Texts{"m", "", "f"}, {});
  EXPECT_FALSE(set.IsNumeric());
  EXPECT_EQ(set.Size(), 3);
  EXPECT_EQ(set.GetValueText(0), "m");
  EXPECT_EQ(set.GetValueText(1), "");
  EXPECT_EQ(set.GetValueText(2), "f");
  EXPECT_EQ(set.GetTexts(), (Texts{"m", "", "f"}));
  EXPECT_TRUE(set.GetNumbers().empty());
}

TEST(MCCategorySet, LabelsFollowTheValues) {
  const MCCategorySet set(Texts{"m", "f"}, {"male", "female"});
  EXPECT_EQ(set.GetLabelText(0), "male");
  EXPECT_EQ(set.GetLabelText(1), "female");
  EXPECT_EQ(set.GetLabels(), (Texts{"male", "female"}));
  EXPECT_EQ(MCCategorySet(Texts{"m"}, {}).GetLabelText(0), "");
}

TEST(MCCategorySet, OutsideTheSetTextsAreEmpty) {
  const MCCategorySet texts(Texts{"m", "f"}, {"male", "female"});
  const MCCategorySet numbers(Numbers{1}, {"one"});
  for (const int index : {-1, 2, INT_MAX, INT_MIN}) {
    EXPECT_EQ(texts.GetValueText(index), "");
    EXPECT_EQ(texts.GetLabelText(index), "");
    EXPECT_EQ(numbers.GetValueText(index), "");
    EXPECT_EQ(numbers.GetLabelText(index), "");
  }
  EXPECT_EQ(MCCategorySet(Numbers{}, {}).GetValueText(0), "");
}

TEST(MCVariable, ContinuousWithoutARange) {
  const MCVariable variable = Plain();
  EXPECT_EQ(variable.GetName(), "age");
  EXPECT_EQ(variable.GetLabel(), "Age in years");
  EXPECT_EQ(variable.GetRole(), IMCVariable::kRoleInput);
  EXPECT_EQ(variable.GetKind(), 1);
  EXPECT_TRUE(variable.IsContinuous());
  EXPECT_EQ(variable.GetNCategories(), 0);
  EXPECT_EQ(variable.GetCategorySet(), nullptr);
  EXPECT_FALSE(variable.HasRange());
  EXPECT_FALSE(variable.HasMinimum());
  EXPECT_FALSE(variable.HasMaximum());
  EXPECT_EQ(variable.GetMinimum(), gMissingValue);
  EXPECT_EQ(variable.GetMaximum(), gMissingValue);
  EXPECT_FALSE(variable.GetRangeFlag());
  EXPECT_EQ(variable.GetRangeCount(), -1);
  EXPECT_TRUE(variable.GetCutPoints().empty());
  EXPECT_FALSE(variable.IsBinned());
  EXPECT_FALSE(variable.IsWeight());
  EXPECT_EQ(variable.GetRounding(), IMCVariable::kRoundNone);
}

TEST(MCVariable, ContinuousWithARange) {
  const MCVariable variable("x", "", MCRange{0, 10, true, 4, {2, 5}, true},
                            IMCVariable::kRoleTarget);
  EXPECT_EQ(variable.GetKind(), MCVariable::kContinuous);
  EXPECT_TRUE(variable.HasRange());
  EXPECT_TRUE(variable.HasMinimum());
  EXPECT_TRUE(variable.HasMaximum());
  EXPECT_EQ(variable.GetMinimum(), 0);
  EXPECT_EQ(variable.GetMaximum(), 10);
  EXPECT_TRUE(variable.GetRangeFlag());
  EXPECT_EQ(variable.GetRangeCount(), 4);
  EXPECT_EQ(variable.GetCutPoints(), (Numbers{2, 5}));
  EXPECT_TRUE(variable.IsBinned());
}

TEST(MCVariable, ExtremeAndMissingEndsAreOpen) {
  const struct {
    double minimum;
    double maximum;
    bool hasMinimum;
    bool hasMaximum;
  } rows[] = {
      {-DBL_MAX, DBL_MAX, false, false}, {gMissingValue, gMissingValue, false, false},
      {0, DBL_MAX, true, false},         {gMissingValue, 0, false, true},
      {DBL_MIN, 1, true, true},
  };
  for (const auto& row : rows) {
    const MCVariable variable("x", "", Range(row.minimum, row.maximum), IMCVariable::kRoleInput);
    EXPECT_TRUE(variable.HasRange());
    EXPECT_EQ(variable.HasMinimum(), row.hasMinimum) << row.minimum;
    EXPECT_EQ(variable.HasMaximum(), row.hasMaximum) << row.maximum;
    EXPECT_EQ(variable.GetMinimum(), row.minimum);
    EXPECT_EQ(variable.GetMaximum(), row.maximum);
  }
}

TEST(MCVariable, Categorical) {
  const MCVariable numeric("grade", "", MCCategorySet(Numbers{1, 2}, {"good", "fair"}),
                           IMCVariable::kRoleNone);
  EXPECT_EQ(numeric.GetKind(), 2);
  EXPECT_FALSE(numeric.IsContinuous());
  EXPECT_EQ(numeric.GetNCategories(), 2);
  ASSERT_NE(numeric.GetCategorySet(), nullptr);
  EXPECT_EQ(numeric.GetCategorySet()->GetValueText(1), "2");
  EXPECT_EQ(numeric.GetCategorySet()->GetLabelText(1), "fair");
  EXPECT_FALSE(numeric.HasRange());

  const MCVariable text("sex", "", MCCategorySet(Texts{"m"}, {}), IMCVariable::kRoleNone);
  EXPECT_EQ(text.GetKind(), 3);
  EXPECT_EQ(text.GetNCategories(), 1);
}

TEST(MCVariable, CategoricalWithoutCategoriesIsStillCategorical) {
  const MCVariable variable("sex", "", MCCategorySet(Texts{}, {}), IMCVariable::kRoleNone);
  EXPECT_EQ(variable.GetKind(), 3);
  EXPECT_EQ(variable.GetNCategories(), 0);
  EXPECT_NE(variable.GetCategorySet(), nullptr);
}

TEST(MCVariable, Weight) {
  const MCVariable variable("w", "Weight", IMCVariable::kRoundNearest);
  EXPECT_TRUE(variable.IsWeight());
  EXPECT_EQ(variable.GetRounding(), IMCVariable::kRoundNearest);
  EXPECT_EQ(variable.GetRole(), IMCVariable::kRoleFrequencyWeight);
  EXPECT_EQ(variable.GetKind(), 1);
  EXPECT_FALSE(variable.HasRange());
}

TEST(MCVariable, DataTypeIsWhatWasSetLast) {
  MCVariable variable = Plain();
  EXPECT_EQ(variable.GetDataType(), 0);
  variable.SetDataType(6);
  variable.SetDataType(-7);
  EXPECT_EQ(variable.GetDataType(), -7);
}

TEST(MCVariable, OnlyDataTypeOneMeansIntegers) {
  MCVariable variable = Plain();
  EXPECT_EQ(variable.GetValueFormat(), 0);
  for (const int code : {-1, 0, 1, 2, 3, 4, 5, 6}) {
    variable.SetDataType(code);
    EXPECT_EQ(variable.GetValueFormat(), code == 1 ? 1 : 0) << code;
  }
}

TEST(MCVariable, ACopyOwnsItsCategories) {
  const MCVariable first("grade", "", MCCategorySet(Numbers{1, 2}, {}), IMCVariable::kRoleNone);
  const MCVariable second(first);
  EXPECT_NE(second.GetCategorySet(), first.GetCategorySet());
  EXPECT_EQ(second.GetCategorySet()->GetNumbers(), (Numbers{1, 2}));
}

}  // namespace
