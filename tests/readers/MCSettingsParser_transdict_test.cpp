// FillTransDict of the settings reader: which calls the variable list gets.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SettingsFieldCases.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCSettingsParser;
using Texts = std::vector<std::string>;
using Fields = DerivedFields;

class SettingsTransDict : public testing::TestWithParam<SettingsFieldCase> {};

TEST_P(SettingsTransDict, MakesTheCalls) {
  const SettingsFillResult result = FillSettings<Fields>(GetParam().fields);
  EXPECT_TRUE(result.status.IsOK()) << GetParam().rule << ": " << result.status.GetCode();
  EXPECT_EQ(result.calls, GetParam().calls) << GetParam().rule;
}

INSTANTIATE_TEST_SUITE_P(Heading, SettingsTransDict, testing::ValuesIn(HeadingCases()));
INSTANTIATE_TEST_SUITE_P(DataTypes, SettingsTransDict, testing::ValuesIn(DataTypeCases()));
INSTANTIATE_TEST_SUITE_P(Values, SettingsTransDict, testing::ValuesIn(ValueCases()));
INSTANTIATE_TEST_SUITE_P(InvalidRange, SettingsTransDict, testing::ValuesIn(InvalidRangeCases()));
INSTANTIATE_TEST_SUITE_P(Intervals, SettingsTransDict, testing::ValuesIn(IntervalCases()));
INSTANTIATE_TEST_SUITE_P(Margins, SettingsTransDict, testing::ValuesIn(RangeCases()));

// The interval within an extension: the same margins, and the rules of the two places.
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
  const SettingsFillResult result =
      FillSettings<Fields>(SettingsField("double", "continuous", "", "before") + GetParam().field +
                           "<FIELD/>" + SettingsField("double", "continuous", "", "after"));
  EXPECT_EQ(result.status, Error(GetParam().code)) << GetParam().rule;
  EXPECT_EQ(result.calls,
            (Texts{"AddContVar(before||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}))
      << GetParam().rule;
}

INSTANTIATE_TEST_SUITE_P(Headings, SettingsTransDictFailures, testing::ValuesIn(HeadingFailures()));
INSTANTIATE_TEST_SUITE_P(Margins, SettingsTransDictFailures, testing::ValuesIn(RangeFailures()));
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

TEST(SettingsTransDictOrder, DeclaresAtTheEncoderThenSetsTheDataType) {
  RecordingVarList list;
  list.next_index = 40;
  const SettingsFillResult result = FillSettings<Fields>(
      SettingsField("integer", "continuous",
                    "<Extension name='invalidRangeLower' value='90'/>"
                    "<Value value='99' property='missing' displayValue='None'/>") +
          SettingsField("string", "x", "", "g"),
      list);
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.all_calls,
            (Texts{"AddContVar(f||-MAX..MAX|role 4|false -1)", "GetEncoderAt(40)",
                   "AddMissingValue(40|99|'None')", "SetInvalidRange(40|90..MAX)", "GetVarAt(40)",
                   "SetDataType(40|1)", "AddCatVar(g||none|labels none|role 4)", "GetEncoderAt(41)",
                   "GetVarAt(41)", "SetDataType(41|3)"}));
}

TEST(SettingsTransDictOrder, RefusalOfEveryKindGives111AndEndsTheFill) {
  const std::string labelled = "<Value value='1' displayValue='A'/>";
  const std::string missing = "<Value value='9' property='missing'/>";
  for (const std::string& refused :
       {SettingsField("double", "continuous", missing), SettingsField("double", "x", missing),
        SettingsField("double", "x", labelled), SettingsField("string", "x", missing),
        SettingsField("string", "x", labelled)}) {
    RecordingVarList list;
    list.refuse_at = 1;
    const SettingsFillResult result =
        FillSettings<Fields>(SettingsField("double", "continuous", "", "before") + refused +
                                 SettingsField("double", "continuous", "", "after"),
                             list);
    EXPECT_EQ(result.status, Error(111)) << refused;
    EXPECT_EQ(list.Size(), 1u);
    EXPECT_EQ(result.all_calls.size(), 5u) << "nothing is declared, no other field is tried";
  }
}

TEST(SettingsTransDictOrder, VariableThatTheListDoesNotGiveBackGives111) {
  RecordingVarList list;
  list.has_variables = false;
  const SettingsFillResult result =
      FillSettings<Fields>(SettingsField("string", "x", "<Value value='a' property='missing'/>") +
                               SettingsField("double", "x", "", "g"),
                           list);
  EXPECT_EQ(result.status, Error(111));
  EXPECT_EQ(result.all_calls, (Texts{"AddCatVar(f||none|labels none|role 4)", "GetEncoderAt(0)",
                                     "AddMissingValue(0|'a'|'')", "GetVarAt(0)"}));
}

TEST(SettingsTransDictOrder, MissingEncoderMattersOnlyIfThereIsSomethingToDeclare) {
  const std::string missing = "<Value value='9' property='missing'/>";
  const struct {
    std::string field;
    int code;
  } cases[] = {
      {SettingsField("double", "continuous", "<Interval leftMargin='1'/>"), 0},
      {SettingsField("string", "x", "<Value value='a'/>"), 0},
      {SettingsField("string", "continuous", missing), 0},
      {SettingsField("double", "continuous", missing), 111},
      {SettingsField("double", "x", missing), 111},
      {SettingsField("string", "x", missing), 111},
      {SettingsField("double", "continuous", "<Extension name='invalidRangeLower' value='1'/>"),
       111},
  };
  for (const auto& [field, code] : cases) {
    RecordingVarList list;
    list.has_encoders = false;
    const SettingsFillResult result = FillSettings<Fields>(field, list);
    EXPECT_EQ(result.status, MCStatus(code, false)) << field;
    EXPECT_EQ(list.Size(), 1u) << "the variable stays";
    EXPECT_EQ(result.all_calls.size(), code == 0 ? 4u : 2u) << "no data type after a failure";
  }
}

TEST(SettingsTransDictOrder, FillBeforeAnyParseGives107) {
  const MCSettingsParser reader;
  RecordingVarList list;
  EXPECT_EQ(Fields::Fill(reader, list), Error(107));
  EXPECT_EQ(reader.GetStatus(), MCStatus());
  EXPECT_TRUE(list.calls.empty());
}

TEST(SettingsTransDictOrder, FailedParseIsToldAgainAndTheListStays) {
  const std::string field = OfKind<Fields>(SettingsField("double", "continuous"));
  const struct {
    std::string text;
    int code;
  } cases[] = {{"<PMML", 104},
               {"<DataModel/>", 105},
               {"<PMML/>", 106},
               {Pmml(field, TransDict(field)), 119}};
  for (const auto& [text, code] : cases) {
    MCSettingsParser reader;
    ASSERT_EQ(ParseText(reader, text), Error(code)) << text;
    RecordingVarList list;
    EXPECT_EQ(Fields::Fill(reader, list), Error(code)) << text;
    EXPECT_TRUE(list.calls.empty());
  }
}

TEST(SettingsTransDictOrder, AppendsAtEveryCallAndLeavesTheStatusAlone) {
  MCSettingsParser reader;
  const std::string fields = SettingsField("double", "continuous") + "<FIELD/>";
  ASSERT_TRUE(ParseText(reader, Fields::Document(OfKind<Fields>(fields))).IsOK());
  RecordingVarList list;
  EXPECT_EQ(Fields::Fill(reader, list), Error(108));
  EXPECT_EQ(Fields::Fill(reader, list), Error(108));
  EXPECT_EQ(list.Size(), 2u);
  EXPECT_EQ(reader.GetStatus(), MCStatus());
}

TEST(SettingsTransDictOrder, ExceptionOfTheListPasses) {
  MCSettingsParser reader;
  const std::string fields = SettingsField("double", "continuous");
  ASSERT_TRUE(ParseText(reader, Fields::Document(OfKind<Fields>(fields))).IsOK());
  RecordingVarList list;
  list.throws_on_add = true;
  EXPECT_THROW((void)Fields::Fill(reader, list), int);
  list.throws_on_add = false;
  EXPECT_TRUE(Fields::Fill(reader, list).IsOK());
}

// Documents name a weight variable by a parameter; the fill takes no notice of it.
TEST(SettingsTransDictOrder, NoFieldBecomesTheWeight) {
  const std::string field = OfKind<Fields>(SettingsField("double", "continuous", "", "w"));
  MCSettingsParser reader;
  ASSERT_TRUE(
      ParseText(reader, Pmml(field, TransDict(field) +
                                        BuildTask(Parameter("FrequencyWeightVar", "value='w'"))))
          .IsOK());
  std::string weight;
  ASSERT_TRUE(reader.GetFrequencyWeight(weight).IsOK());
  ASSERT_EQ(weight, "w");
  RecordingVarList list;
  EXPECT_TRUE(Fields::Fill(reader, list).IsOK());
  ASSERT_FALSE(list.calls.empty());
  EXPECT_EQ(list.calls[0], "AddContVar(w||-MAX..MAX|role 4|false -1)");
}

TEST(SettingsTransDictOrder, WithoutTransformationDictionaryNothingIsAdded) {
  MCSettingsParser reader;
  ASSERT_TRUE(ParseText(reader, DataFields::Document("<DataField/>")).IsOK());
  RecordingVarList list;
  EXPECT_EQ(reader.FillTransDict(list), MCStatus());
  EXPECT_TRUE(list.calls.empty());
}

TEST(SettingsTransDictOrder, DiscretisationsMakeNoBins) {
  const SettingsFillResult result = FillSettings<Fields>(
      "<FIELD name='f' dataType='double' optype='continuous'><Discretize field='f'>" +
      Bin("binValue='a'", "leftMargin='0' rightMargin='10'") +
      Bin("binValue='b'", "leftMargin='10' rightMargin='20'") + "</Discretize></FIELD>");
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, (Texts{"AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}));
}

TEST(SettingsTransDictOrder, AppendsToTheDataFields) {
  MCSettingsParser reader;
  const std::string data = "<DataField name='f' dataType='double' optype='continuous'/>";
  const std::string derived = "<DerivedField name='g' dataType='string' optype='x'/>" +
                              OfKind<Fields>(SettingsField("integer", "continuous"));
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
