// The parameters that name variables.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "SettingsText.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCSettingsParser;
using Names = std::vector<std::string>;

const char kAB[] = "<ListValue><Value value='a'/><Value value='b'/></ListValue>";

// A role parameter, read into an output that holds "x".
struct NamesCase {
  const char* rule;
  std::string attributes;
  std::string content;
  MCStatus status;
  Names after;
  friend void PrintTo(const NamesCase& test, std::ostream* out) { *out << test.rule; }
};

// Lists where "isList" decides.

struct RoleList {
  const char* parameter;
  MCStatus (MCSettingsParser::*get)(Names&) const;
};

const RoleList kRoleLists[] = {
    {"ContPredictors", &MCSettingsParser::GetContPredictors},
    {"CatPredictors", &MCSettingsParser::GetCatPredictors},
    {"ContResponses", &MCSettingsParser::GetContResponseVars},
    {"CatResponses", &MCSettingsParser::GetCatResponseVars},
};

class VariableList : public testing::TestWithParam<NamesCase> {};

TEST_P(VariableList, IsReadUnderItsNameAndByEveryRole) {
  const NamesCase& test = GetParam();
  for (const RoleList& role : kRoleLists) {
    const auto reader = ReaderOf(Parameter(role.parameter, test.attributes, test.content));
    Names names = {"x"};
    EXPECT_EQ((reader.get()->*role.get)(names), test.status) << role.parameter;
    EXPECT_EQ(names, test.after) << role.parameter;
    names = {"x"};
    EXPECT_EQ(reader->GetVariables(role.parameter, names), test.status) << role.parameter;
    EXPECT_EQ(names, test.after) << role.parameter;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Parameters, VariableList,
    testing::Values(
        NamesCase{"a list", "isList='true'", kAB, {}, {"a", "b"}},
        NamesCase{"an empty name is skipped",
                  "isList='true'",
                  List("<Value value='a'/><Value value=''/><Value value='c'/>"),
                  {},
                  {"a", "c"}},
        NamesCase{"the list wins over the value where it is declared",
                  "isList='true' value='v'",
                  kAB,
                  {},
                  {"a", "b"}},
        NamesCase{"a declared list without a list", "isList='true'", "", Error(122), {}},
        NamesCase{"not even a value helps it", "isList='true' value='v'", "", Error(122), {}},
        NamesCase{"a declared list without entries", "isList='true'", List(" <X/>"), {}, {}},
        NamesCase{"the first list counts", "isList='true'", List("") + kAB, {}, {}},
        NamesCase{"an entry without a value ends the walk",
                  "isList='true'",
                  List("<Value value='a'/><Value/><Value value='b'/>"),
                  Error(108),
                  {"a"}},
        NamesCase{"a single value", "value='v'", "", {}, {"v"}},
        NamesCase{"a single value beyond ASCII", "value='\u00E4'", "", {}, {"\u00E4"}},
        NamesCase{"an empty single value", "value=''", "", {}, {}},
        NamesCase{"a list that is not declared is not looked at", "value='v'", kAB, {}, {"v"}},
        NamesCase{"nor does it stand in for a value", "", kAB, Error(108), {}},
        NamesCase{"isList false", "isList='false' value='v'", kAB, {}, {"v"}},
        NamesCase{"isList is case-sensitive", "isList='TRUE' value='v'", kAB, {}, {"v"}},
        NamesCase{"isList takes no digit", "isList='1'", kAB, Error(108), {}},
        NamesCase{"isList empty", "isList=''", kAB, Error(108), {}},
        NamesCase{"neither value nor list", "", "", Error(108), {}}));

// Lists that are string arrays: "isList" does not matter to them.

struct RoleArray {
  const char* parameter;
  MCStatus (MCSettingsParser::*get)(Names&) const;
};

const RoleArray kRoleArrays[] = {
    {"inputs", &MCSettingsParser::GetPredictors},
    {"target", &MCSettingsParser::GetTargetVars},
};

class VariableArray : public testing::TestWithParam<NamesCase> {};

TEST_P(VariableArray, IsReadByPredictorsAndTargets) {
  const NamesCase& test = GetParam();
  for (const RoleArray& role : kRoleArrays) {
    const auto reader = ReaderOf(Parameter(role.parameter, test.attributes, test.content));
    Names names = {"x"};
    EXPECT_EQ((reader.get()->*role.get)(names), test.status) << role.parameter;
    EXPECT_EQ(names, test.after) << role.parameter;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Parameters, VariableArray,
    testing::Values(
        NamesCase{"a list", "", kAB, {}, {"a", "b"}},
        NamesCase{"a list that denies it", "isList='false' value='v'", kAB, {}, {"a", "b"}},
        NamesCase{"a single value", "value='v'", "", {}, {"v"}},
        NamesCase{
            "a single value that claims to be a list", "isList='true' value='v'", "", {}, {"v"}},
        NamesCase{
            "an empty name is skipped", "", List("<Value value=''/><Value value='b'/>"), {}, {"b"}},
        NamesCase{"neither value nor list", "isList='true'", "", NotGiven(123), {}},
        NamesCase{"a list without entries", "", List(""), NotGiven(123), {}},
        NamesCase{"an entry without a value",
                  "",
                  List("<Value value='a'/><Value/>"),
                  NotGiven(123),
                  {"a"}}));

// One name.

struct NameCase {
  const char* rule;
  std::string attributes;
  std::string content;
  MCStatus status;
  std::string after;
  friend void PrintTo(const NameCase& test, std::ostream* out) { *out << test.rule; }
};

class SingleVariable : public testing::TestWithParam<NameCase> {};

TEST_P(SingleVariable, IsReadUnderItsNameAndAsFrequencyWeight) {
  const NameCase& test = GetParam();
  const auto reader = ReaderOf(Parameter("FrequencyWeightVar", test.attributes, test.content));
  std::string name = "x";
  EXPECT_EQ(reader->GetFrequencyWeight(name), test.status);
  EXPECT_EQ(name, test.after);
  name = "x";
  EXPECT_EQ(reader->GetVariables("FrequencyWeightVar", name), test.status);
  EXPECT_EQ(name, test.after);
}

INSTANTIATE_TEST_SUITE_P(
    Parameters, SingleVariable,
    testing::Values(NameCase{"a value", "value='w'", "", {}, "w"},
                    NameCase{"an empty value", "value=''", "", {}, ""},
                    NameCase{"a value beyond ASCII", "value='\u4E2D'", "", {}, "\u4E2D"},
                    NameCase{"a value of a declared list", "isList='true' value='w'", kAB, {}, "w"},
                    NameCase{"a list", "isList='true'", kAB, Error(121), "x"},
                    NameCase{"a declared list without a list", "isList='true'", "", Error(121),
                             "x"},
                    NameCase{"a list that is not declared", "", kAB, Error(108), "x"},
                    NameCase{"isList is case-sensitive", "isList='True'", kAB, Error(108), "x"},
                    NameCase{"no value", "", "", Error(108), "x"}));

// Look-up.

TEST(SettingsRoles, AbsentRoleIs120AndLeavesTheOutput) {
  const auto reader = ReaderOf("");
  Names names = {"x"};
  for (const RoleList& role : kRoleLists) {
    EXPECT_EQ((reader.get()->*role.get)(names), NotGiven(120)) << role.parameter;
  }
  for (const RoleArray& role : kRoleArrays) {
    EXPECT_EQ((reader.get()->*role.get)(names), NotGiven(120)) << role.parameter;
  }
  EXPECT_EQ(names, Names{"x"});
  std::string name = "x";
  EXPECT_EQ(reader->GetFrequencyWeight(name), NotGiven(120));
  EXPECT_EQ(name, "x");
}

TEST(SettingsRoles, EachReadsItsOwnParameter) {
  std::string parameters = Parameter("FrequencyWeightVar", "value='weight'");
  for (const RoleList& role : kRoleLists) {
    parameters += Parameter(role.parameter, std::string("value='") + role.parameter + "'");
  }
  for (const RoleArray& role : kRoleArrays) {
    parameters += Parameter(role.parameter, std::string("value='") + role.parameter + "'");
  }
  const auto reader = ReaderOf(parameters);
  Names names;
  for (const RoleList& role : kRoleLists) {
    EXPECT_TRUE((reader.get()->*role.get)(names).IsOK());
    EXPECT_EQ(names, Names{role.parameter});
  }
  for (const RoleArray& role : kRoleArrays) {
    EXPECT_TRUE((reader.get()->*role.get)(names).IsOK());
    EXPECT_EQ(names, Names{role.parameter});
  }
  std::string weight;
  EXPECT_TRUE(reader->GetFrequencyWeight(weight).IsOK());
  EXPECT_EQ(weight, "weight");
}

TEST(SettingsRoles, AreNotFoundInGroups) {
  std::string parameters = Parameter("FrequencyWeightVar", "value='v'");
  for (const RoleList& role : kRoleLists) parameters += Parameter(role.parameter, "value='v'");
  for (const RoleArray& role : kRoleArrays) parameters += Parameter(role.parameter, "value='v'");
  const auto reader = ReaderOf(Group("g", parameters));
  Names names = {"x"};
  for (const RoleList& role : kRoleLists) {
    EXPECT_EQ((reader.get()->*role.get)(names), NotGiven(120)) << role.parameter;
  }
  for (const RoleArray& role : kRoleArrays) {
    EXPECT_EQ((reader.get()->*role.get)(names), NotGiven(120)) << role.parameter;
  }
  EXPECT_EQ(names, Names{"x"});
  std::string name = "x";
  EXPECT_EQ(reader->GetFrequencyWeight(name), NotGiven(120));
  EXPECT_EQ(name, "x");
}

TEST(SettingsRoles, FirstOfANameCounts) {
  const auto reader = ReaderOf(Parameter("CatPredictors", "isList='true'") +
                               Parameter("CatPredictors", "value='v'"));
  Names names;
  EXPECT_EQ(reader->GetCatPredictors(names), Error(122));
}

}  // namespace
