// What the combining program makes of split values, its arguments and manifests.
#include "SplitVariables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RunProgram.h"
#include "SplitManifest.h"

namespace {

using examples::AddSplitVariables;
using examples::InputError;
using examples::IsPlainNumber;
using examples::ParseSplitArgument;
using examples::ReadManifest;
using examples::SplitModel;
using MCMTD_NAMESPACE::MCVarList;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_examples::TemporaryFolder;
using Texts = std::vector<std::string>;

std::vector<SplitModel> ModelsFor(const Texts& values) {
  std::vector<SplitModel> models;
  for (const std::string& value : values) models.push_back({{value}, "m.pmml"});
  return models;
}

Texts CategoriesOf(const MCVarList& list, int index) {
  Texts texts;
  const auto* variable = list.GetVarAt(index);
  for (int i = 0; i < variable->GetNCategories(); ++i) {
    texts.push_back(variable->GetCategorySet()->GetValueText(i));
  }
  return texts;
}

template <class Operation>
std::string InputErrorOf(Operation operation) {
  try {
    operation();
  } catch (const InputError& error) {
    return error.what();
  }
  return "no error";
}

TEST(SplitVariables, PlainNumbersAreThoseOfJson) {
  for (const char* text : {"0", "-0", "5", "-12", "1.0", "0.5", "1e3", "1E+3", "2.5e-10"}) {
    EXPECT_TRUE(IsPlainNumber(text)) << text;
  }
  for (const char* text : {"", "-", "+1", "007", "-01", ".5", "5.", "1e", "1e+", "0x10", " 1", "1 ",
                           "1,5", "inf", "nan", "-inf", "1e999", "1-2"}) {
    EXPECT_FALSE(IsPlainNumber(text)) << text;
  }
}

TEST(SplitVariables, NumbersMakeANumericVariableInFirstSeenOrder) {
  MCVarList list;
  EXPECT_THAT(AddSplitVariables({"month"}, ModelsFor({"9", "5", "9", "7"}), {}, list),
              ElementsAre());
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 2);
  EXPECT_THAT(CategoriesOf(list, 0), ElementsAre("9", "5", "7"));
}

TEST(SplitVariables, OneTextMakesATextVariable) {
  MCVarList list;
  (void)AddSplitVariables({"v"}, ModelsFor({"1", "007", "1"}), {}, list);
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 3);
  EXPECT_THAT(CategoriesOf(list, 0), ElementsAre("1", "007"));
}

TEST(SplitVariables, EveryVariableIsJudgedByItself) {
  MCVarList list;
  (void)AddSplitVariables({"a", "b"}, {{{"1", "x"}, "m"}, {{"2", "y"}, "n"}}, {}, list);
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 2);
  EXPECT_EQ(list.GetVarAt(1)->GetKind(), 3);
}

TEST(SplitVariables, TextCanBeAskedForAndLabelsGiven) {
  MCVarList list;
  examples::SplitVariableOptions options;
  options.textVariables = {"v"};
  options.labels = {{"v", "The label"}};
  EXPECT_THAT(AddSplitVariables({"v"}, ModelsFor({"1.0", "1"}), options, list), ElementsAre());
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 3);
  EXPECT_EQ(list.GetVarAt(0)->GetLabel(), "The label");
  EXPECT_THAT(CategoriesOf(list, 0), ElementsAre("1.0", "1"));
}

TEST(SplitVariables, ANumberWrittenInAnotherWayIsTold) {
  MCVarList list;
  EXPECT_THAT(AddSplitVariables({"v"}, ModelsFor({"1.0", "2.50", "3"}), {}, list),
              ElementsAre(HasSubstr("v: as a number \"1.0\" becomes the category \"1\", while the "
                                    "predicate keeps \"1.0\" (and so for 1 more value).")));
  EXPECT_THAT(CategoriesOf(list, 0), ElementsAre("1", "2.5", "3"));
}

TEST(SplitVariables, TheSameNumberTwiceIsTold) {
  MCVarList list;
  EXPECT_THAT(AddSplitVariables({"v"}, ModelsFor({"1", "1.0"}), {}, list),
              ElementsAre(HasSubstr("\"1\" and \"1.0\" are the same number"),
                          HasSubstr("\"1.0\" becomes the category \"1\"")));
  EXPECT_THAT(CategoriesOf(list, 0), ElementsAre("1"));
}

TEST(SplitVariables, NamesThatCannotBeAreRefused) {
  const auto add = [](const Texts& names, const examples::SplitVariableOptions& options) {
    MCVarList list;
    (void)AddSplitVariables(names, {{Texts(names.size(), "1"), "m"}}, options, list);
  };
  EXPECT_EQ(InputErrorOf([&] { add({"a", "a"}, {}); }), "the split variable \"a\" is named twice");
  EXPECT_EQ(InputErrorOf([&] { add({""}, {}); }), "a split variable has an empty name");
  EXPECT_EQ(InputErrorOf([&] {
              add({"a"}, {{{"b", "x"}}, {}});
            }),
            "--label: \"b\" is no split variable");
  EXPECT_EQ(InputErrorOf([&] { add({"a"}, {{}, {"c"}}); }), "--text: \"c\" is no split variable");
}

TEST(SplitArgument, ValuesEndAtTheFirstEqualsSignOutsideQuotes) {
  const SplitModel plain = ParseSplitArgument("North,1=a=b.pmml", {"r", "n"});
  EXPECT_THAT(plain.values, ElementsAre("North", "1"));
  EXPECT_EQ(plain.path, "a=b.pmml");
  const SplitModel quoted = ParseSplitArgument(R"("a=b","say ""x"", y"=m.pmml)", {"r", "n"});
  EXPECT_THAT(quoted.values, ElementsAre("a=b", "say \"x\", y"));
}

TEST(SplitArgument, SaysWhatIsWrong) {
  const struct {
    const char* argument;
    const char* text;
  } cases[] = {
      {"1", "1: no \"=\" between the split values and the path"},
      {"1,2=m", "1,2=m: 1 split values are needed (v), and here are 2"},
      {"=m", "=m: the value of v is empty"},
      {"1=", "1=: the model's path is empty"},
      {"\"1=m", "\"1=m: a quote is not closed"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(InputErrorOf([&] { ParseSplitArgument(c.argument, {"v"}); }), c.text);
  }
}

TEST(Manifest, NamesItsVariablesAndPathsRelativeToIt) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("m.csv", "a,\"b,c\",model\n1,x,one.pmml\n2,y,/two.pmml\n");
  Texts variables;
  const auto models = ReadManifest(file, variables);
  EXPECT_THAT(variables, ElementsAre("a", "b,c"));
  ASSERT_EQ(models.size(), 2U);
  EXPECT_THAT(models[0].values, ElementsAre("1", "x"));
  EXPECT_EQ(models[0].path, folder.Path("one.pmml"));
  EXPECT_EQ(models[1].path, "/two.pmml");
}

TEST(Manifest, GivesValuesInTheOrderThatIsAskedFor) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("m.csv", "a,b,model\n1,x,one.pmml\n");
  Texts variables = {"b", "a"};
  EXPECT_THAT(ReadManifest(file, variables).front().values, ElementsAre("x", "1"));
}

TEST(Manifest, SaysWhatIsWrong) {
  const TemporaryFolder folder;
  const struct {
    const char* content;
    Texts variables;
    const char* text;
  } cases[] = {
      {"", {}, ": the manifest is empty"},
      {"a,model\n", {}, ": the manifest names no model"},
      {"a,file\n1,x\n", {}, ":1: the header must name the split variables"},
      {"model\nx\n", {}, ":1: the header must name the split variables"},
      {"a,model\n1\n", {}, ":2: 2 columns are needed, and here are 1"},
      {"a,model\n1,2,x\n", {}, ":2: 2 columns are needed, and here are 3"},
      {"a,model\n\n,x\n", {}, ":3: the value of a is empty"},
      {"a,model\n1,\n", {}, ":2: the model's path is empty"},
      {"a,model\n\"1,x\n", {}, ":2: a quote is not closed"},
      {"a,model\n1,x\n", {"b"}, ": there is no column \"b\"; the columns are a"},
      {"a,b,model\n1,2,x\n", {"a"}, ": --by names 1 of the split variables a, b"},
  };
  for (const auto& c : cases) {
    const std::string file = folder.Write("m.csv", c.content);
    Texts variables = c.variables;
    EXPECT_THAT(InputErrorOf([&] { ReadManifest(file, variables); }), HasSubstr(file + c.text));
  }
}

TEST(Manifest, ThatCannotBeReadIsTold) {
  const TemporaryFolder folder;
  Texts variables;
  EXPECT_THAT(InputErrorOf([&] { ReadManifest(folder.Path("no.csv"), variables); }),
              HasSubstr("no.csv: cannot be opened: No such file"));
  EXPECT_THAT(InputErrorOf([&] { ReadManifest(folder.Path(), variables); }),
              HasSubstr("this is a folder"));
}

}  // namespace
