// FillTransDict of the settings reader: what is its own. See MCSettingsParser_fields_test.cpp for
// the rest.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SettingsFields.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCSettingsParser;
using Texts = std::vector<std::string>;

// The interval within an extension: the same margins, and the rules of the two places.

class SettingsTransDict : public testing::TestWithParam<SettingsFieldCase> {};

TEST_P(SettingsTransDict, MakesTheCalls) { ExpectCalls(kDerivedFields, GetParam()); }

INSTANTIATE_TEST_SUITE_P(InnerMargins, SettingsTransDict,
                         testing::ValuesIn(RangeCases("<Extension>", "</Extension>")));
INSTANTIATE_TEST_SUITE_P(
    InnerIntervals, SettingsTransDict,
    testing::Values(
        SettingsFieldCase{"an extension that is a bound as well",
                          SettingsField("double", "continuous",
                                        "<Extension name='invalidRangeLower' value='5'>"
                                        "<Interval leftMargin='0' rightMargin='10'/></Extension>"),
                          {"AddContVar(f||0..10|role 4|false -1)", "SetInvalidRange(0|5..MAX)",
                           "SetDataType(0|2)"}},
        SettingsFieldCase{"an extension whose value is no number",
                          SettingsField("double", "continuous",
                                        "<Extension name='invalidRangeLower' value='x'>"
                                        "<Interval leftMargin='0' rightMargin='10'/></Extension>"),
                          {"AddContVar(f||0..10|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsFieldCase{"an extension of another name and extender",
                          SettingsField("double", "continuous",
                                        "<Extension extender='x' name='y' value='1'> t<z/>"
                                        "<Interval leftMargin='0' rightMargin='10'/></Extension>"),
                          {"AddContVar(f||0..10|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsFieldCase{"only the first interval of an extension",
                          SettingsField("double", "continuous",
                                        "<Extension><Interval leftMargin='1'/>"
                                        "<Interval leftMargin='x'/></Extension>"),
                          {"AddContVar(f||1..MAX|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsFieldCase{"an interval deeper in an extension is none",
                          SettingsField("double", "continuous",
                                        "<Extension><Extension><Interval leftMargin='x'/>"
                                        "</Extension></Extension>"),
                          {"AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsFieldCase{
            "an extension without an interval keeps the range",
            SettingsField("double", "continuous", "<Interval leftMargin='3'/><Extension/>"),
            {"AddContVar(f||3..MAX|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsFieldCase{"the last of both places counts: within",
                          SettingsField("double", "continuous",
                                        "<Interval leftMargin='1' rightMargin='2'/><Extension>"
                                        "<Interval rightMargin='7'/></Extension>"),
                          {"AddContVar(f||MIN..7|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsFieldCase{"the last of both places counts: direct",
                          SettingsField("double", "continuous",
                                        "<Extension><Interval rightMargin='7'/></Extension>"
                                        "<Interval leftMargin='1' rightMargin='2'/>"),
                          {"AddContVar(f||1..2|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsFieldCase{"extensions of a text field are not looked at",
                          SettingsField("string", "continuous",
                                        "<Extension><Interval leftMargin='x'/></Extension>"),
                          {"AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(0|3)"}}));

class SettingsTransDictFailures : public testing::TestWithParam<SettingsFailureCase> {};

TEST_P(SettingsTransDictFailures, EndTheFillAndKeepWhatWasAdded) {
  ExpectFailure(kDerivedFields, GetParam());
}

INSTANTIATE_TEST_SUITE_P(InnerMargins, SettingsTransDictFailures,
                         testing::ValuesIn(RangeFailures("<Extension>", "</Extension>")));
INSTANTIATE_TEST_SUITE_P(
    BoundAndBadInterval, SettingsTransDictFailures,
    testing::Values(SettingsFailureCase{
        "the bound does not save the interval",
        SettingsField("double", "continuous",
                      "<Extension name='invalidRangeLower' value='1'><Interval leftMargin='x'/>"
                      "</Extension><Interval leftMargin='1'/>"),
        109}));

// The dictionary as a whole.

TEST(SettingsTransDictFill, WithoutTransformationDictionaryNothingIsAdded) {
  MCSettingsParser reader;
  ASSERT_TRUE(ParseText(reader, kDataFields.document("<DataField/>")).IsOK());
  RecordingVarList list;
  EXPECT_EQ(reader.FillTransDict(list), MCStatus());
  EXPECT_TRUE(list.calls.empty());
}

TEST(SettingsTransDictFill, DiscretisationsMakeNoBins) {
  const SettingsFillResult result = FillSettings(
      kDerivedFields,
      "<FIELD name='f' dataType='double' optype='continuous'><Discretize field='f'>" +
          Bin("binValue='a'", "leftMargin='0' rightMargin='10'") +
          Bin("binValue='b'", "leftMargin='10' rightMargin='20'") + "</Discretize></FIELD>");
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, (Texts{"AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}));
}

TEST(SettingsTransDictFill, AppendsToTheDataFields) {
  MCSettingsParser reader;
  const std::string data = "<DataField name='f' dataType='double' optype='continuous'/>";
  const std::string derived = "<DerivedField name='g' dataType='string' optype='x'/>" +
                              OfKind(kDerivedFields, SettingsField("integer", "continuous"));
  ASSERT_TRUE(ParseText(reader, Pmml(data, TransDict(derived) + BuildTask(""))).IsOK());
  RecordingVarList list;
  ASSERT_TRUE(reader.FillVarList(list, false).IsOK());
  EXPECT_TRUE(reader.FillTransDict(list).IsOK());
  EXPECT_EQ(ResultOf(MCStatus(), list).calls,
            (Texts{"AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)",
                   "AddCatVar(g||none|labels none|role 4)", "SetDataType(1|3)",
                   "AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(2|1)"}))
      << "a known name is the list's business";

  MCMTD_NAMESPACE::MCVarList refusing;
  ASSERT_TRUE(reader.FillVarList(refusing, false).IsOK());
  EXPECT_EQ(reader.FillTransDict(refusing), Error(111));
  EXPECT_EQ(refusing.Size(), 2u) << "what came before the refusal stays";
}

}  // namespace
