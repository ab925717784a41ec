// What the combiner makes of the variable list.
#include <sstream>

#include "combiner/CombinerTest.h"

namespace {

using combiner_test::FakeVariable;
using combiner_test::FakeVarList;
using combiner_test::kOK;
using MCXPrsUtil::MCXSplitPMMLCombiner;

constexpr auto kRole = static_cast<MCMTD_NAMESPACE::IMCVariable::VariableRole>(0);

class CombinerSplitVariables : public combiner_test::CombinerTest {
 protected:
  FakeVarList list_;
};

TEST_F(CombinerSplitVariables, GetSplitVariableInfoTranslatesKindAndFormat) {
  const struct {
    const char* rule;
    int kind;
    int format;
    const char* optype;
    const char* data_type;
  } kRows[] = {
      {"continuous", 1, 0, "continuous", "double"},
      {"categorical numbers", 2, 0, "categorical", "double"},
      {"categorical texts", 3, 0, "categorical", "string"},
      {"an unknown kind keeps both", 4, 0, "kept", "kept"},
      {"kind 0 keeps both", 0, 0, "kept", "kept"},
      {"continuous integers", 1, 1, "continuous", "integer"},
      {"categorical integers", 2, 1, "categorical", "integer"},
      {"texts of integer format", 3, 1, "categorical", "integer"},
      {"an unknown kind of integer format", 9, 1, "kept", "integer"},
      {"another format is no integer", 1, 2, "continuous", "double"},
  };
  MCXSplitPMMLCombiner combiner(list_);
  for (const auto& row : kRows) {
    FakeVariable variable("v", row.kind);
    variable.value_format = row.format;
    std::string name = "old", label = "old", optype = "kept", data_type = "kept";
    EXPECT_TRUE(combiner.GetSplitVariableInfo(&variable, name, label, optype, data_type));
    EXPECT_EQ(name, "v") << row.rule;
    EXPECT_EQ(label, "Label of v") << row.rule;
    EXPECT_EQ(optype, row.optype) << row.rule;
    EXPECT_EQ(data_type, row.data_type) << row.rule;
  }
}

TEST_F(CombinerSplitVariables, GetSplitVariableInfoOfNullTouchesNothing) {
  MCXSplitPMMLCombiner combiner(list_);
  std::string name = "a", label = "b", optype = "c", data_type = "d";
  EXPECT_FALSE(combiner.GetSplitVariableInfo(nullptr, name, label, optype, data_type));
  EXPECT_EQ(name + label + optype + data_type, "abcd");
}

TEST_F(CombinerSplitVariables, GetSplitVarNameIsEmptyWhereThereIsNone) {
  list_.Add("first", {});
  list_.AddNull();
  list_.Add("third", {});
  const MCXSplitPMMLCombiner combiner(list_);
  EXPECT_EQ(combiner.GetSplitVarName(0), "first");
  EXPECT_EQ(combiner.GetSplitVarName(1), "");
  EXPECT_EQ(combiner.GetSplitVarName(2), "third");
  EXPECT_EQ(combiner.GetSplitVarName(3), "");
  EXPECT_EQ(combiner.GetSplitVarName(-1), "");
}

TEST_F(CombinerSplitVariables, IsEqualValuesLooksAtAllVariablesTogether) {
  list_.Add("sex", {"f", "m"});
  list_.Add("age", {"1", "2"});
  const MCXSplitPMMLCombiner combiner(list_);
  EXPECT_EQ(combiner.IsEqualValues({"f", "1"}).GetCode(), kOK);
  EXPECT_EQ(combiner.IsEqualValues({"2", "m"}).GetCode(), kOK) << "at each other's position";
  EXPECT_EQ(combiner.IsEqualValues({"m", "m", "m"}).GetCode(), kOK);
  EXPECT_EQ(combiner.IsEqualValues({}).GetCode(), kOK);
  EXPECT_EQ(combiner.IsEqualValues({"f", "3"}), MCCommon::MCStatus(126, false));
  EXPECT_EQ(combiner.IsEqualValues({"F"}).GetCode(), 126);
  EXPECT_EQ(combiner.IsEqualValues({""}).GetCode(), 126);
  EXPECT_EQ(combiner.IsEqualValues({"1.0"}).GetCode(), 126);
}

TEST_F(CombinerSplitVariables, NumericCategoriesCountByTheirText) {
  MCMTD_NAMESPACE::MCVarList list;
  ASSERT_EQ(list.AddCatVar("size", "", std::vector<double>{1, 2.5}, kRole), 0);
  const MCXSplitPMMLCombiner combiner(list);
  EXPECT_EQ(combiner.IsEqualValues({"1", "2.5"}).GetCode(), kOK);
  EXPECT_EQ(combiner.IsEqualValues({"1.0"}).GetCode(), 126);
}

TEST_F(CombinerSplitVariables, ACountOfZeroOrLessOrNoSetGivesNoCategories) {
  list_.Add("a", {"x"});
  list_.variables.back()->n_categories = -3;
  list_.Add("b", {"y"});
  list_.variables.back()->n_categories = 0;
  list_.Add("c", {"z"});
  list_.variables.back()->has_set = false;
  const MCXSplitPMMLCombiner combiner(list_);
  for (const char* value : {"x", "y", "z"}) {
    EXPECT_EQ(combiner.IsEqualValues({value}).GetCode(), 126) << value;
  }
}

TEST_F(CombinerSplitVariables, InitSplitVarMetadataAppends) {
  list_.Add("a", {"x"});
  MCXSplitPMMLCombiner combiner(list_);
  FakeVarList more;
  more.Add("b", {"y"});
  combiner.InitSplitVarMetadata(more);
  EXPECT_EQ(combiner.IsEqualValues({"x", "y"}).GetCode(), kOK);
  EXPECT_EQ(combiner.GetSplitVarName(1), "") << "names come from the list of the constructor";
}

TEST_F(CombinerSplitVariables, ANewCombinerIsOkAndHasNothing) {
  const MCXSplitPMMLCombiner combiner(list_);
  EXPECT_TRUE(combiner.GetStatus().IsOK());
  EXPECT_EQ(combiner.GetNModels(), 0);
  EXPECT_TRUE(combiner.GetDiagnostics().empty());
}

TEST_F(CombinerSplitVariables, DisplayWritesNothing) {
  list_.Add("a", {"x"});
  const MCXSplitPMMLCombiner combiner(list_);
  std::ostringstream out;
  combiner.Display(out);
  EXPECT_EQ(out.str(), "");
}

}  // namespace
