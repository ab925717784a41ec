// The look-up of parameters and groups, their types, and the single values.
#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <xercesc/dom/DOMElement.hpp>

#include "SettingsText.h"
#include "mccommon/MCMissingValue.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCSettingsParser;

constexpr double kLargest = std::numeric_limits<double>::max();

// Single values: `attributes` and `content` of one parameter, the status, and the output after it.
template <class Value>
struct ValueCase {
  const char* rule;
  std::string attributes;
  std::string content;
  MCStatus status;
  Value preset;
  Value after;
  friend void PrintTo(const ValueCase& test, std::ostream* out) { *out << test.rule; }
};

template <class Value>
void CheckValue(const ValueCase<Value>& test) {
  const auto reader = ReaderOf(Parameter("p", test.attributes, test.content));
  Value value = test.preset;
  EXPECT_EQ(reader->GetParameter("p", value), test.status);
  EXPECT_EQ(value, test.after);
}

using BoolCase = ValueCase<bool>;
class BoolParameter : public testing::TestWithParam<BoolCase> {};
TEST_P(BoolParameter, IsRead) { CheckValue(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Values, BoolParameter,
    testing::Values(
        BoolCase{"true", "value='true'", "", {}, false, true},
        BoolCase{"false", "value='false'", "", {}, true, false},
        BoolCase{"upper case", "value='TRUE'", "", Error(109), false, false},
        BoolCase{"upper case leaves true", "value='FALSE'", "", Error(109), true, true},
        BoolCase{"capitalised", "value='True'", "", Error(109), false, false},
        BoolCase{"the digit one", "value='1'", "", Error(109), false, false},
        BoolCase{"the digit zero", "value='0'", "", Error(109), true, true},
        BoolCase{"white space", "value=' true'", "", Error(109), false, false},
        BoolCase{"a longer word", "value='trues'", "", Error(109), false, false},
        BoolCase{"empty", "value=''", "", Error(109), true, true},
        BoolCase{"a list", "", List("<Value value='true'/>"), Error(121), true, true},
        BoolCase{"an empty list", "", List(""), Error(121), true, true},
        BoolCase{"neither value nor list", "", "<X/>", NotGiven(123), true, true},
        BoolCase{"a value beside a list", "value='false'", List(""), {}, true, false},
        BoolCase{"another declared type", "type='double' value='true'", "", {}, false, true}));

using DoubleCase = ValueCase<double>;
class DoubleParameter : public testing::TestWithParam<DoubleCase> {};
TEST_P(DoubleParameter, IsRead) { CheckValue(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Values, DoubleParameter,
    testing::Values(
        DoubleCase{"a fraction", "value='-2.5'", "", {}, 9, -2.5},
        DoubleCase{"an exponent", "value='1e3'", "", {}, 9, 1000},
        DoubleCase{"white space around it", "value=' 5 '", "", {}, 9, 5},
        DoubleCase{"the largest", "value='1.7976931348623157e308'", "", {}, 9, kLargest},
        DoubleCase{"NaN is the missing value", "value='NaN'", "", {}, 9, MCMV::gMissingValue},
        DoubleCase{"an infinity", "value='INF'", "", Error(109), 9, 9},
        DoubleCase{"beyond the largest", "value='1e400'", "", Error(109), 9, 9},
        DoubleCase{"a word", "value='five'", "", Error(109), 9, 9},
        DoubleCase{"number and word", "value='5x'", "", Error(109), 9, 9},
        DoubleCase{"a decimal comma", "value='5,5'", "", Error(109), 9, 9},
        DoubleCase{"empty", "value=''", "", Error(109), 9, 9},
        DoubleCase{"a list", "", List("<Value value='1'/>"), Error(121), 9, 9},
        DoubleCase{"neither value nor list", "type='double'", "", NotGiven(123), 9, 9},
        DoubleCase{"another declared type", "type='string' value='1.5'", "", {}, 9, 1.5}));

using IntCase = ValueCase<int>;
class IntParameter : public testing::TestWithParam<IntCase> {};
TEST_P(IntParameter, IsRead) { CheckValue(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Values, IntParameter,
    testing::Values(IntCase{"positive", "value='42'", "", {}, 9, 42},
                    IntCase{"zero", "value='0'", "", {}, 9, 0},
                    IntCase{"negative zero", "value='-0'", "", {}, 9, 0},
                    IntCase{"a sign and white space", "value=' +7 '", "", {}, 9, 7},
                    IntCase{"the largest int", "value='2147483647'", "", {}, 9, 2147483647},
                    IntCase{"a negative number is stored and refused", "value='-3'", "", Error(109),
                            9, -3},
                    IntCase{"minus one", "value='-1'", "", Error(109), 9, -1},
                    IntCase{"the lowest int", "value='-2147483648'", "", Error(109), 9,
                            std::numeric_limits<int>::min()},
                    IntCase{"beyond the largest int", "value='2147483648'", "", Error(109), 9, 9},
                    IntCase{"2 to the power of 32", "value='4294967296'", "", Error(109), 9, 9},
                    IntCase{"below the lowest int", "value='-2147483649'", "", Error(109), 9, 9},
                    IntCase{"a fraction", "value='1.5'", "", Error(109), 9, 9},
                    IntCase{"a whole number with a point", "value='1.0'", "", Error(109), 9, 9},
                    IntCase{"a word", "value='one'", "", Error(109), 9, 9},
                    IntCase{"a sign alone", "value='-'", "", Error(109), 9, 9},
                    IntCase{"empty", "value=''", "", Error(109), 9, 9},
                    IntCase{"a list", "", List("<Value value='1'/>"), Error(121), 9, 9},
                    IntCase{"neither value nor list", "", "", NotGiven(123), 9, 9},
                    IntCase{"another declared type", "type='boolean' value='1'", "", {}, 9, 1}));

using StringCase = ValueCase<std::string>;
class StringParameter : public testing::TestWithParam<StringCase> {};
TEST_P(StringParameter, IsRead) { CheckValue(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Values, StringParameter,
    testing::Values(
        StringCase{"a word", "value='abc'", "", {}, "x", "abc"},
        StringCase{"white space stays", "value='  a b '", "", {}, "x", "  a b "},
        StringCase{"empty", "value=''", "", {}, "x", ""},
        StringCase{
            "beyond ASCII", "value='&#xE4;\u4E2D&#x1F600;'", "", {}, "x", "\u00E4\u4E2D\U0001F600"},
        StringCase{"a list", "", List("<Value value='a'/>"), Error(121), "x", "x"},
        StringCase{"neither value nor list", "", "text", NotGiven(123), "x", "x"},
        StringCase{"a deeper list is none", "", "<X>" + List("") + "</X>", NotGiven(123), "x", "x"},
        StringCase{"an integer", "type='integer' value='5'", "", {}, "x", "5"},
        StringCase{"an enum", "type='enum' value='red'", "", {}, "x", "red"},
        StringCase{"a field name", "type='fieldName' value='age'", "", {}, "x", "age"},
        StringCase{
            "a value beside a list", "value='a'", List("<Value value='b'/>"), {}, "x", "a"}));

// Types.

struct TypeCase {
  const char* attributes;
  MCSettingsParser::ParameterType type;
  int code;
};

TEST(SettingsTypes, FollowTheDeclaration) {
  const TypeCase cases[] = {
      {"type='string'", MCSettingsParser::ParamString, 0},
      {"type='double'", MCSettingsParser::ParamDouble, 1},
      {"type='integer'", MCSettingsParser::ParamInteger, 2},
      {"type='boolean'", MCSettingsParser::ParamBoolean, 3},
      {"type='enum'", MCSettingsParser::ParamEnum, 4},
      {"type='fieldName'", MCSettingsParser::ParamFieldName, 5},
      {"type='float'", MCSettingsParser::ParamUnknown, 6},
      {"type='String'", MCSettingsParser::ParamUnknown, 6},
      {"type='fieldname'", MCSettingsParser::ParamUnknown, 6},
      {"type='strings'", MCSettingsParser::ParamUnknown, 6},
      {"type=' string'", MCSettingsParser::ParamUnknown, 6},
      {"type=''", MCSettingsParser::ParamUnknown, 6},
      {"", MCSettingsParser::ParamUnknown, 6},
      {"value='string'", MCSettingsParser::ParamUnknown, 6},
  };
  for (const TypeCase& test : cases) {
    const auto reader = ReaderOf(Parameter("p", test.attributes));
    EXPECT_EQ(reader->GetParameterType("p"), test.type) << test.attributes;
    EXPECT_EQ(reader->GetParameterType("p"), test.code) << test.attributes;
  }
}

TEST(SettingsTypes, AreUnknownWithoutTheParameter) {
  const auto reader = ReaderOf(Group("g", Parameter("p", "type='double'")));
  EXPECT_EQ(reader->GetParameterType("p"), MCSettingsParser::ParamUnknown);
  EXPECT_EQ(reader->GetParameterType("g"), MCSettingsParser::ParamUnknown);
  EXPECT_EQ(reader->GetParameterType("p", reader->GetComplexParameter("g")),
            MCSettingsParser::ParamDouble);
}

// Look-up.

std::string Text(const MCSettingsParser& reader, const char* name, void* scope = nullptr) {
  std::string value;
  const MCStatus status = reader.GetParameter(name, value, scope);
  return status.IsOK() ? value : std::to_string(status.GetCode());
}

TEST(SettingsLookUp, MissingParameterKeepsThePresetOfEveryType) {
  const auto reader = ReaderOf(Parameter("p", "value='1'"));
  bool flag = true;
  double number = 1.5;
  int count = 3;
  std::string text = "preset";
  EXPECT_EQ(reader->GetParameter("q", flag), NotGiven(120));
  EXPECT_EQ(reader->GetParameter("q", number), NotGiven(120));
  EXPECT_EQ(reader->GetParameter("q", count), NotGiven(120));
  EXPECT_EQ(reader->GetParameter("q", text), NotGiven(120));
  EXPECT_TRUE(flag);
  EXPECT_EQ(number, 1.5);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(text, "preset");
}

TEST(SettingsLookUp, FirstOfANameCounts) {
  const auto reader = ReaderOf(Parameter("p", "value='1'") + Parameter("p", "value='2'") +
                               Parameter("q", "") + Parameter("q", "value='3'"));
  EXPECT_EQ(Text(*reader, "p"), "1");
  EXPECT_EQ(Text(*reader, "q"), "123") << "though the second has a value";
}

TEST(SettingsLookUp, ParametersWithoutANameArePassedOver) {
  const auto reader = ReaderOf("<Parameter value='0'/><Parameter Name='p' value='1'/>" +
                               Parameter("p", "value='2'"));
  EXPECT_EQ(Text(*reader, "p"), "2");
  EXPECT_EQ(Text(*reader, ""), "120") << "no name is not the empty name";
}

TEST(SettingsLookUp, OtherElementsAreNoParameters) {
  const auto reader =
      ReaderOf("<parameter name='p' value='1'/><Param name='p' value='2'/>" + Group("p", "") +
               "<MatrixParmeter name='p' value='3'/>" +
               "<Parameters name='p' value='4'/>text<!-- c -->" + Parameter("p", "value='5'"));
  EXPECT_EQ(Text(*reader, "p"), "5");
}

TEST(SettingsLookUp, NamesAreComparedExactly) {
  const auto reader = ReaderOf(Parameter("Depth", "value='1'"));
  EXPECT_EQ(Text(*reader, "Depth"), "1");
  for (const char* other : {"depth", "Dept", "Depths", " Depth", ""}) {
    EXPECT_EQ(Text(*reader, other), "120") << other;
  }
}

TEST(SettingsLookUp, NamesOfEveryKindAreFound) {
  const std::string names[] = {"",
                               " ",
                               "a b",
                               "\u00E4",
                               "\u4E2D\u6587",
                               "\U0001F600",
                               std::string(63, 'n'),
                               std::string(64, 'n'),
                               std::string(2000, 'n'),
                               std::string(2000, 'n') + "\u00E4"};
  std::string parameters;
  for (const std::string& name : names) {
    parameters += Parameter(name, "value='" + std::to_string(name.size()) + "'");
  }
  const auto reader = ReaderOf(parameters);
  for (const std::string& name : names) {
    EXPECT_EQ(Text(*reader, name.c_str()), std::to_string(name.size())) << name;
  }
}

TEST(SettingsLookUp, MalformedNameCountsAsTheEmptyOne) {
  EXPECT_EQ(Text(*ReaderOf(Parameter("p", "value='1'")), "p\xff"), "120");
  EXPECT_EQ(Text(*ReaderOf(Parameter("", "value='1'")), "p\xff"), "1");
}

TEST(SettingsLookUp, NothingHasANullName) {
  const auto reader = ReaderOf(Parameter("", "value='1' type='double'") + Group("", "") +
                               "<MatrixParmeter name=''/>");
  EXPECT_EQ(Text(*reader, nullptr), "120");
  EXPECT_EQ(reader->GetParameterType(nullptr), MCSettingsParser::ParamUnknown);
  EXPECT_EQ(reader->GetComplexParameter(nullptr), nullptr);
  std::vector<std::string> texts = {"x"};
  EXPECT_EQ(reader->GetArray(nullptr, texts), NotGiven(120));
  EXPECT_EQ(reader->GetVariables(nullptr, texts), NotGiven(120));
  EXPECT_EQ(texts, std::vector<std::string>{"x"});
  std::vector<std::vector<int>> rows;
  EXPECT_EQ(reader->GetMatrix(nullptr, rows), NotGiven(120));
  std::string text = "x";
  EXPECT_EQ(reader->GetVariables(nullptr, text), NotGiven(120));
  EXPECT_EQ(text, "x");
}

TEST(SettingsLookUp, NullNameDoesNotHideTheFailureOfTheParse) {
  MCSettingsParser reader;
  EXPECT_EQ(Text(reader, nullptr), "107");
  EXPECT_FALSE(ParseText(reader, "<PMML/>").IsOK());
  EXPECT_EQ(Text(reader, nullptr), "106");
}

TEST(SettingsLookUp, NameMayLieInTheOutput) {
  const auto reader = ReaderOf(Parameter("p", "value='q'"));
  std::string text = "p";
  EXPECT_TRUE(reader->GetParameter(text.c_str(), text).IsOK());
  EXPECT_EQ(text, "q");
  std::vector<std::string> texts = {"p"};
  EXPECT_TRUE(reader->GetArray(texts[0].c_str(), texts).IsOK());
  EXPECT_EQ(texts, std::vector<std::string>{"q"});
}

// Groups and scopes.

const char kNested[] =
    "<Parameter name='p' value='top'/>"
    "<ComplexParameter name='g'>"
    "  <Parameter name='p' value='in g'/><Parameter name='only' value='g'/>"
    "  <ComplexParameter name='h'><Parameter name='p' value='in h'/></ComplexParameter>"
    "</ComplexParameter>"
    "<ComplexParameter name='g'><Parameter name='p' value='second g'/></ComplexParameter>";

TEST(SettingsGroups, AreScopesOfTheirOwn) {
  const auto reader = ReaderOf(kNested);
  EXPECT_EQ(Text(*reader, "p"), "top");
  EXPECT_EQ(Text(*reader, "only"), "120") << "only the children of the scope are searched";
  void* group = reader->GetComplexParameter("g");
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(Text(*reader, "p", group), "in g") << "the first group of the name";
  EXPECT_EQ(Text(*reader, "only", group), "g");
  EXPECT_EQ(reader->GetComplexParameter("h"), nullptr);
  void* inner = reader->GetComplexParameter("h", group);
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(Text(*reader, "p", inner), "in h");
  EXPECT_EQ(Text(*reader, "only", inner), "120") << "nor is what surrounds it";
}

// `top` and `inner` as they are written in the document, and as they are read.
template <class Value>
void CheckScopes(const char* top, const Value& top_value, const char* inner,
                 const Value& inner_value) {
  const std::string at_top = "value='" + std::string(top) + "'";
  const std::string inside = "value='" + std::string(inner) + "'";
  const auto reader = ReaderOf(Parameter("p", at_top) +
                               Group("g", Parameter("p", inside) + Parameter("only", inside)) +
                               Group("h", Parameter("elsewhere", inside)));
  void* group = reader->GetComplexParameter("g");
  ASSERT_NE(group, nullptr);
  const struct {
    const char* name;
    void* scope;
    MCStatus status;
    Value preset;
    Value after;
  } cases[] = {
      {"p", nullptr, {}, inner_value, top_value},
      {"p", group, {}, top_value, inner_value},
      {"only", nullptr, NotGiven(120), top_value, top_value},
      {"only", group, {}, top_value, inner_value},
      {"elsewhere", nullptr, NotGiven(120), top_value, top_value},
      {"elsewhere", group, NotGiven(120), top_value, top_value},
  };
  for (const auto& test : cases) {
    Value value = test.preset;
    EXPECT_EQ(reader->GetParameter(test.name, value, test.scope), test.status) << test.name;
    EXPECT_EQ(value, test.after) << test.name;
  }
}

TEST(SettingsGroups, ScopesHoldForValuesOfEveryType) {
  CheckScopes("true", true, "false", false);
  CheckScopes("1.5", 1.5, "-2", -2.0);
  CheckScopes("3", 3, "4", 4);
  CheckScopes("a", std::string("a"), "b", std::string("b"));
}

TEST(SettingsGroups, NestToAnyDepth) {
  constexpr int kDepth = 200;
  std::string parameters = Parameter("p", "value='deep'");
  for (int i = 0; i < kDepth; ++i) parameters = Group("g", parameters);
  const auto reader = ReaderOf(parameters);
  void* scope = nullptr;
  for (int i = 0; i < kDepth; ++i) {
    EXPECT_EQ(Text(*reader, "p", scope), "120");
    scope = reader->GetComplexParameter("g", scope);
    ASSERT_NE(scope, nullptr);
  }
  EXPECT_EQ(Text(*reader, "p", scope), "deep");
  EXPECT_EQ(reader->GetComplexParameter("g", scope), nullptr);
}

TEST(SettingsGroups, AreFoundByTheirTagAndName) {
  const auto reader = ReaderOf("<ComplexParameter/>" + Parameter("g", "value='1'") +
                               "<complexParameter name='g'/><MatrixParmeter name='g'/>");
  EXPECT_EQ(reader->GetComplexParameter("g"), nullptr);
  EXPECT_EQ(reader->GetComplexParameter(""), nullptr);
}

TEST(SettingsGroups, AnyElementIsAScope) {
  const auto reader = ReaderOf(kNested);
  xercesc::DOMElement* root = reader->GetRootElement();
  EXPECT_EQ(Text(*reader, "p", root), "120");
  auto* task = MCXPrsUtil::GetFirstChildElmt(*root, "MiningBuildTask");
  auto* extension = MCXPrsUtil::GetFirstChildElmt(*task, "Extension");
  auto* parameters = MCXPrsUtil::GetFirstChildElmt(*extension, "Parameters");
  EXPECT_EQ(Text(*reader, "p", parameters), "top") << "which is the scope of the document";
}

TEST(SettingsGroups, ScopeIsTheElementItself) {
  const auto reader = ReaderOf(kNested);
  auto* group = static_cast<xercesc::DOMElement*>(reader->GetComplexParameter("g"));
  ASSERT_NE(group, nullptr);
  EXPECT_TRUE(MCXPrsUtil::TagNameEquals(*group, "ComplexParameter"));
}

TEST(SettingsGroups, OfAnotherReaderIsAScopeToo) {
  const auto other = ReaderOf(kNested);
  const auto reader = ReaderOf("");
  EXPECT_EQ(Text(*reader, "p", other->GetComplexParameter("g")), "in g");
}

}  // namespace
