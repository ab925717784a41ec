#include "mccommon/MCVarList.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "mccommon/MCMissingValue.h"
#include "mccommon/MCVarEncoder.h"
#include "mccommon/MCVariable.h"

namespace {

using MCMTD_NAMESPACE::IMCVarEncoder;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCMV::gMissingValue;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

constexpr IMCVariable::VariableRole kInput = IMCVariable::kRoleInput;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void ExpectUntouched(const MCVarList& list, unsigned int size, const std::string& rule) {
  EXPECT_EQ(list.Size(), size) << rule;
  EXPECT_EQ(list.GetVarAt(static_cast<int>(size)), nullptr) << rule;
}

TEST(MCVarList, StartsEmpty) {
  MCVarList list;
  EXPECT_EQ(list.Size(), 0u);
  EXPECT_EQ(list.GetVarAt(0), nullptr);
  EXPECT_EQ(list.GetEncoderAt(0), nullptr);
  EXPECT_EQ(list.FindVar("x"), -1);
}

TEST(MCVarList, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<MCVarList>);
  EXPECT_FALSE(std::is_copy_assignable_v<MCVarList>);
}

TEST(MCVarList, AddsNumericCategoriesWithLabels) {
  MCVarList list;
  ASSERT_EQ(list.AddCatVar("g", "Grade", Numbers{3, 1, 3}, Texts{"a", "b", "c"}, kInput), 0);
  const MCVariable* variable = list.GetStoredVar(0);
  EXPECT_EQ(variable->GetKind(), 2);
  EXPECT_EQ(variable->GetName(), "g");
  EXPECT_EQ(variable->GetLabel(), "Grade");
  EXPECT_EQ(variable->GetRole(), kInput);
  EXPECT_EQ(variable->GetCategorySet()->GetNumbers(), (Numbers{3, 1, 3}));
  EXPECT_EQ(variable->GetCategorySet()->GetLabels(), (Texts{"a", "b", "c"}));
}

TEST(MCVarList, AddsNumericCategoriesWithoutLabels) {
  MCVarList list;
  ASSERT_EQ(list.AddCatVar("g", "", Numbers{1, 2}, IMCVariable::kRoleTarget), 0);
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 2);
  EXPECT_EQ(list.GetVarAt(0)->GetRole(), IMCVariable::kRoleTarget);
  EXPECT_EQ(list.GetVarAt(0)->GetNCategories(), 2);
  EXPECT_EQ(list.GetVarAt(0)->GetCategorySet()->GetValueText(1), "2");
  EXPECT_TRUE(list.GetStoredVar(0)->GetCategorySet()->GetLabels().empty());
}

TEST(MCVarList, AddsTextCategoriesWithLabels) {
  MCVarList list;
  ASSERT_EQ(list.AddCatVar("s", "Sex", Texts{"m", "f"}, Texts{"male", "female"}, kInput), 0);
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 3);
  EXPECT_EQ(list.GetVarAt(0)->GetCategorySet()->GetValueText(0), "m");
  EXPECT_EQ(list.GetStoredVar(0)->GetCategorySet()->GetLabelText(0), "male");
}

TEST(MCVarList, AddsTextCategoriesWithoutLabels) {
  MCVarList list;
  ASSERT_EQ(list.AddCatVar("s", "", Texts{"m", "f"}, kInput), 0);
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 3);
  EXPECT_EQ(list.GetStoredVar(0)->GetCategorySet()->GetTexts(), (Texts{"m", "f"}));
  EXPECT_TRUE(list.GetStoredVar(0)->GetCategorySet()->GetLabels().empty());
}

TEST(MCVarList, AddsCategoricalVariablesWithoutCategories) {
  MCVarList list;
  EXPECT_EQ(list.AddCatVar("a", "", Numbers{}, Texts{}, kInput), 0);
  EXPECT_EQ(list.AddCatVar("b", "", Texts{}, kInput), 1);
  EXPECT_EQ(list.GetVarAt(0)->GetNCategories(), 0);
  EXPECT_NE(list.GetVarAt(1)->GetCategorySet(), nullptr);
}

TEST(MCVarList, ACategoricalVariableKeepsRoleThreeAndIsNoWeight) {
  MCVarList list;
  ASSERT_EQ(list.AddCatVar("c", "", Numbers{1}, IMCVariable::kRoleFrequencyWeight), 0);
  EXPECT_EQ(list.GetVarAt(0)->GetRole(), IMCVariable::kRoleFrequencyWeight);
  EXPECT_FALSE(list.GetStoredVar(0)->IsWeight());
  EXPECT_EQ(list.SetWeightVar("w", "", IMCVariable::kRoundNearest), 1);
}

TEST(MCVarList, AddsContinuousVariablesWithoutARange) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar("x", "Size", kInput), 0);
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 1);
  EXPECT_EQ(list.GetVarAt(0)->GetLabel(), "Size");
  EXPECT_EQ(list.GetVarAt(0)->GetNCategories(), 0);
  EXPECT_EQ(list.GetVarAt(0)->GetCategorySet(), nullptr);
  EXPECT_FALSE(list.GetStoredVar(0)->HasRange());
}

TEST(MCVarList, AddsContinuousVariablesWithARange) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar("x", "", -1.5, 8, kInput, true, 5), 0);
  const MCVariable* variable = list.GetStoredVar(0);
  EXPECT_TRUE(variable->HasRange());
  EXPECT_EQ(variable->GetMinimum(), -1.5);
  EXPECT_EQ(variable->GetMaximum(), 8);
  EXPECT_TRUE(variable->GetRangeFlag());
  EXPECT_EQ(variable->GetRangeCount(), 5);
  EXPECT_TRUE(variable->GetCutPoints().empty());
  EXPECT_FALSE(variable->IsBinned());
}

TEST(MCVarList, AddsContinuousVariablesWithCutPoints) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar("x", "", 0, 20, Numbers{10, 15}, true, kInput), 0);
  const MCVariable* variable = list.GetStoredVar(0);
  EXPECT_TRUE(variable->HasRange());
  EXPECT_EQ(variable->GetMinimum(), 0);
  EXPECT_EQ(variable->GetMaximum(), 20);
  EXPECT_EQ(variable->GetCutPoints(), (Numbers{10, 15}));
  EXPECT_TRUE(variable->IsBinned());
  EXPECT_FALSE(variable->GetRangeFlag());
  EXPECT_EQ(variable->GetRangeCount(), -1);
}

TEST(MCVarList, TheWeightIsContinuousWithRoleThree) {
  MCVarList list;
  ASSERT_EQ(list.SetWeightVar("w", "Weight", IMCVariable::kRoundNearest), 0);
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 1);
  EXPECT_EQ(list.GetVarAt(0)->GetLabel(), "Weight");
  EXPECT_EQ(list.GetVarAt(0)->GetRole(), IMCVariable::kRoleFrequencyWeight);
  EXPECT_TRUE(list.GetStoredVar(0)->IsWeight());
  EXPECT_EQ(list.GetStoredVar(0)->GetRounding(), IMCVariable::kRoundNearest);
}

TEST(MCVarList, RefusesASecondWeight) {
  MCVarList list;
  ASSERT_EQ(list.SetWeightVar("w", "", IMCVariable::kRoundNone), 0);
  EXPECT_EQ(list.SetWeightVar("v", "", IMCVariable::kRoundNone), -1);
  ExpectUntouched(list, 1, "second weight");
  EXPECT_EQ(list.FindVar("v"), -1);
  EXPECT_EQ(list.AddContVar("v", "", kInput), 1);
}

TEST(MCVarList, ARefusedWeightIsNoWeight) {
  MCVarList list;
  EXPECT_EQ(list.SetWeightVar("", "", IMCVariable::kRoundNone), -1);
  EXPECT_EQ(list.SetWeightVar("w", "", IMCVariable::kRoundNone), 0);
}

// Every form of add, under one name, with nothing else to refuse.
std::vector<int> AddByEveryForm(MCVarList& list, const std::string& name) {
  return {list.AddCatVar(name, "l", Numbers{1}, Texts{"one"}, kInput),
          list.AddCatVar(name, "l", Numbers{1}, kInput),
          list.AddCatVar(name, "l", Texts{"a"}, Texts{"A"}, kInput),
          list.AddCatVar(name, "l", Texts{"a"}, kInput),
          list.AddContVar(name, "l", kInput),
          list.AddContVar(name, "l", 0, 1, kInput, true, 2),
          list.AddContVar(name, "l", 0, 2, Numbers{1}, true, kInput),
          list.SetWeightVar(name, "l", IMCVariable::kRoundNearest)};
}

TEST(MCVarList, EveryFormRefusesAnEmptyName) {
  MCVarList list;
  for (const int index : AddByEveryForm(list, "")) EXPECT_EQ(index, -1);
  ExpectUntouched(list, 0, "empty name");
}

TEST(MCVarList, EveryFormRefusesANameTheListHolds) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar("x", "first", kInput), 0);
  for (const int index : AddByEveryForm(list, "x")) EXPECT_EQ(index, -1);
  ExpectUntouched(list, 1, "name taken");
  EXPECT_EQ(list.GetVarAt(0)->GetLabel(), "first");
}

TEST(MCVarList, NamesAreComparedByteByByte) {
  MCVarList list;
  EXPECT_EQ(list.AddContVar("x", "", kInput), 0);
  EXPECT_EQ(list.AddContVar("X", "", kInput), 1);
  EXPECT_EQ(list.AddContVar("x ", "", kInput), 2);
  EXPECT_EQ(list.AddContVar(std::string("x\0y", 3), "", kInput), 3);
  EXPECT_EQ(list.AddContVar("\xc3\xa9", "", kInput), 4);
  EXPECT_EQ(list.AddContVar("e\xcc\x81", "", kInput), 5);
  EXPECT_EQ(list.FindVar(std::string("x\0y", 3)), 3);
}

TEST(MCVarList, RefusesAnotherNumberOfLabelsThanValues) {
  MCVarList list;
  EXPECT_EQ(list.AddCatVar("a", "", Numbers{1, 2}, Texts{"one"}, kInput), -1);
  EXPECT_EQ(list.AddCatVar("a", "", Numbers{1}, Texts{"one", "two"}, kInput), -1);
  EXPECT_EQ(list.AddCatVar("a", "", Numbers{1}, Texts{}, kInput), -1);
  EXPECT_EQ(list.AddCatVar("a", "", Texts{"1", "2"}, Texts{"one"}, kInput), -1);
  EXPECT_EQ(list.AddCatVar("a", "", Texts{}, Texts{"one"}, kInput), -1);
  ExpectUntouched(list, 0, "label count");
  EXPECT_EQ(list.AddContVar("a", "", kInput), 0);
}

TEST(MCVarList, ChecksTheEndsOfARange) {
  const struct {
    const char* rule;
    double minimum;
    double maximum;
    bool accepted;
  } rows[] = {
      {"ascending", 0, 1, true},
      {"one point", 3, 3, true},
      {"all finite numbers", -DBL_MAX, DBL_MAX, true},
      {"missing minimum: open below", gMissingValue, 0, true},
      {"missing maximum: open above", 0, gMissingValue, true},
      {"open on both sides", gMissingValue, gMissingValue, true},
      {"open below a number lower than the missing one", gMissingValue, -DBL_MAX, true},
      {"minimum above maximum", 1, 0, false},
      {"NaN minimum", kNaN, 1, false},
      {"NaN maximum", 0, kNaN, false},
      {"infinite minimum", -kInfinity, 1, false},
      {"infinite maximum", 0, kInfinity, false},
  };
  for (const auto& row : rows) {
    MCVarList list;
    const int expected = row.accepted ? 0 : -1;
    EXPECT_EQ(list.AddContVar("x", "", row.minimum, row.maximum, kInput, false, -1), expected)
        << row.rule;
    EXPECT_EQ(list.AddContVar("y", "", row.minimum, row.maximum, Numbers{}, true, kInput),
              row.accepted ? 1 : -1)
        << row.rule;
    ExpectUntouched(list, row.accepted ? 2 : 0, row.rule);
    EXPECT_EQ(list.FindVar("x"), expected) << row.rule;
  }
}

TEST(MCVarList, ChecksCutPoints) {
  const struct {
    const char* rule;
    double minimum;
    double maximum;
    Numbers cutPoints;
    bool accepted;
  } rows[] = {
      {"one inside", 0, 20, {10}, true},
      {"ascending inside", 0, 20, {5, 10, 15}, true},
      {"above an open end of readers", -DBL_MAX, 10, {-1e308, 0}, true},
      {"below a missing end", 0, gMissingValue, {1, 1e308}, true},
      {"above a missing end", gMissingValue, 0, {-1e308, -1}, true},
      {"on the minimum", 0, 20, {0, 10}, false},
      {"below the minimum", 0, 20, {-1, 10}, false},
      {"on the maximum", 0, 20, {10, 20}, false},
      {"above the maximum", 0, 20, {10, 21}, false},
      {"repeated", 0, 20, {10, 10}, false},
      {"descending", 0, 20, {10, 5}, false},
      {"NaN", 0, 20, {kNaN}, false},
      {"NaN last", 0, 20, {10, kNaN}, false},
      {"infinite", 0, gMissingValue, {1, kInfinity}, false},
      {"minus infinity", gMissingValue, 1, {-kInfinity}, false},
      {"missing", -DBL_MAX, 1, {gMissingValue}, false},
      {"none fits into one point", 3, 3, {3}, false},
  };
  for (const auto& row : rows) {
    MCVarList list;
    EXPECT_EQ(list.AddContVar("x", "", row.minimum, row.maximum, row.cutPoints, true, kInput),
              row.accepted ? 0 : -1)
        << row.rule;
    ExpectUntouched(list, row.accepted ? 1 : 0, row.rule);
  }
}

TEST(MCVarList, ARefusedNameCanBeAddedProperly) {
  MCVarList list;
  EXPECT_EQ(list.AddContVar("x", "", 1, 0, kInput, false, -1), -1);
  EXPECT_EQ(list.AddContVar("x", "", 0, 1, kInput, false, -1), 0);
}

TEST(MCVarList, OutsideTheListThereIsNothing) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar("x", "", kInput), 0);
  const MCVarList& constList = list;
  for (const int index : {-1, 1, INT_MAX, INT_MIN}) {
    EXPECT_EQ(list.GetVarAt(index), nullptr) << index;
    EXPECT_EQ(constList.GetVarAt(index), nullptr) << index;
    EXPECT_EQ(list.GetEncoderAt(index), nullptr) << index;
    EXPECT_EQ(list.GetStoredVar(index), nullptr) << index;
    EXPECT_EQ(list.GetStoredEncoder(index), nullptr) << index;
  }
}

TEST(MCVarList, AllAccessorsGiveTheSameVariable) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar("x", "", kInput), 0);
  const MCVarList& constList = list;
  EXPECT_EQ(list.GetVarAt(0), constList.GetVarAt(0));
  EXPECT_EQ(list.GetVarAt(0), list.GetStoredVar(0));
  EXPECT_EQ(list.GetEncoderAt(0), list.GetStoredEncoder(0));
  list.GetVarAt(0)->SetDataType(1);
  EXPECT_EQ(constList.GetVarAt(0)->GetValueFormat(), 1);
}

TEST(MCVarList, EveryVariableHasItsOwnEncoder) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar("x", "", kInput), 0);
  ASSERT_EQ(list.AddContVar("y", "", kInput), 1);
  list.GetEncoderAt(0)->AddMissingValue(99, "none");
  list.GetEncoderAt(1)->SetBinLabels({"a"});
  EXPECT_EQ(list.GetStoredEncoder(0)->GetMissingNumbers().size(), 1u);
  EXPECT_TRUE(list.GetStoredEncoder(0)->GetBinLabels().empty());
  EXPECT_TRUE(list.GetStoredEncoder(1)->GetMissingNumbers().empty());
  EXPECT_EQ(list.GetStoredEncoder(1)->GetBinLabels(), Texts{"a"});
}

TEST(MCVarList, PointersStayGoodWhileItGrows) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar("first", "", kInput), 0);
  IMCVariable* const variable = list.GetVarAt(0);
  IMCVarEncoder* const encoder = list.GetEncoderAt(0);
  for (int i = 1; i < 1000; ++i) {
    ASSERT_EQ(list.AddContVar("x" + std::to_string(i), "", kInput), i);
  }
  EXPECT_EQ(list.GetVarAt(0), variable);
  EXPECT_EQ(list.GetEncoderAt(0), encoder);
  EXPECT_EQ(variable->GetName(), "first");
}

TEST(MCVarList, HoldsAWideDictionary) {
  constexpr int kWidth = 50000;
  MCVarList list;
  for (int i = 0; i < kWidth; ++i) {
    ASSERT_EQ(list.AddContVar("variable_with_a_long_name_" + std::to_string(i), "", kInput), i);
  }
  EXPECT_EQ(list.Size(), static_cast<unsigned int>(kWidth));
  for (int i = 0; i < kWidth; ++i) {
    const std::string name = "variable_with_a_long_name_" + std::to_string(i);
    ASSERT_EQ(list.FindVar(name), i);
    ASSERT_EQ(list.GetVarAt(i)->GetName(), name);
    ASSERT_EQ(list.AddContVar(name, "", kInput), -1);
  }
}

TEST(MCVarList, ArgumentsMayBelongToTheListItself) {
  MCVarList list;
  ASSERT_EQ(list.AddCatVar("s", "", Texts{"name", "label"}, Texts{"a", "b"}, kInput), 0);
  const auto* set = list.GetStoredVar(0)->GetCategorySet();
  ASSERT_EQ(list.AddCatVar(set->GetTexts()[0], set->GetTexts()[1], set->GetTexts(),
                           set->GetLabels(), kInput),
            1);
  EXPECT_EQ(list.GetVarAt(1)->GetName(), "name");
  EXPECT_EQ(list.GetVarAt(1)->GetCategorySet()->GetValueText(1), "label");
}

}  // namespace
