// FillVarList of the settings reader: which calls the variable list gets.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SettingsFieldCases.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCSettingsParser;
using Texts = std::vector<std::string>;
using Fields = DataFields;

class SettingsVarList : public testing::TestWithParam<SettingsFieldCase> {};

TEST_P(SettingsVarList, MakesTheCalls) {
  const SettingsFillResult result = FillSettings<Fields>(GetParam().fields);
  EXPECT_TRUE(result.status.IsOK()) << GetParam().rule << ": " << result.status.GetCode();
  EXPECT_EQ(result.calls, GetParam().calls) << GetParam().rule;
}

INSTANTIATE_TEST_SUITE_P(Heading, SettingsVarList, testing::ValuesIn(HeadingCases()));
INSTANTIATE_TEST_SUITE_P(DataTypes, SettingsVarList, testing::ValuesIn(DataTypeCases()));
INSTANTIATE_TEST_SUITE_P(Values, SettingsVarList, testing::ValuesIn(ValueCases()));
INSTANTIATE_TEST_SUITE_P(InvalidRange, SettingsVarList, testing::ValuesIn(InvalidRangeCases()));
INSTANTIATE_TEST_SUITE_P(Intervals, SettingsVarList, testing::ValuesIn(IntervalCases()));
INSTANTIATE_TEST_SUITE_P(Margins, SettingsVarList, testing::ValuesIn(RangeCases()));

class SettingsVarListFailures : public testing::TestWithParam<SettingsFailureCase> {};

TEST_P(SettingsVarListFailures, EndTheFillAndKeepWhatWasAdded) {
  const SettingsFillResult result =
      FillSettings<Fields>(SettingsField("double", "continuous", "", "before") + GetParam().field +
                           "<FIELD/>" + SettingsField("double", "continuous", "", "after"));
  EXPECT_EQ(result.status, Error(GetParam().code)) << GetParam().rule;
  EXPECT_EQ(result.calls,
            (Texts{"AddContVar(before||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}))
      << GetParam().rule;
}

INSTANTIATE_TEST_SUITE_P(Headings, SettingsVarListFailures, testing::ValuesIn(HeadingFailures()));
INSTANTIATE_TEST_SUITE_P(Margins, SettingsVarListFailures, testing::ValuesIn(RangeFailures()));

TEST(SettingsVarListOrder, DeclaresAtTheEncoderThenSetsTheDataType) {
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

TEST(SettingsVarListOrder, RefusalOfEveryKindGives111AndEndsTheFill) {
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

TEST(SettingsVarListOrder, VariableThatTheListDoesNotGiveBackGives111) {
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

TEST(SettingsVarListOrder, MissingEncoderMattersOnlyIfThereIsSomethingToDeclare) {
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

TEST(SettingsVarListOrder, FillBeforeAnyParseGives107) {
  const MCSettingsParser reader;
  RecordingVarList list;
  EXPECT_EQ(Fields::Fill(reader, list), Error(107));
  EXPECT_EQ(reader.GetStatus(), MCStatus());
  EXPECT_TRUE(list.calls.empty());
}

TEST(SettingsVarListOrder, FailedParseIsToldAgainAndTheListStays) {
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

TEST(SettingsVarListOrder, AppendsAtEveryCallAndLeavesTheStatusAlone) {
  MCSettingsParser reader;
  const std::string fields = SettingsField("double", "continuous") + "<FIELD/>";
  ASSERT_TRUE(ParseText(reader, Fields::Document(OfKind<Fields>(fields))).IsOK());
  RecordingVarList list;
  EXPECT_EQ(Fields::Fill(reader, list), Error(108));
  EXPECT_EQ(Fields::Fill(reader, list), Error(108));
  EXPECT_EQ(list.Size(), 2u);
  EXPECT_EQ(reader.GetStatus(), MCStatus());
}

TEST(SettingsVarListOrder, ExceptionOfTheListPasses) {
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
TEST(SettingsVarListOrder, NoFieldBecomesTheWeight) {
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

TEST(SettingsVarListOrder, ExtensionsOfDataFieldsHoldNoInterval) {
  const SettingsFillResult result = FillSettings<Fields>(
      SettingsField("double", "continuous",
                    "<Extension name='x' value='1'><Interval leftMargin='x'/></Extension>"));
  EXPECT_EQ(result.calls, (Texts{"AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}));
}

TEST(SettingsVarListOrder, DerivedFieldsDoNotCount) {
  MCSettingsParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml("", TransDict("<DerivedField/>") + BuildTask(""))).IsOK());
  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, false).IsOK());
  EXPECT_TRUE(list.calls.empty());
}

TEST(SettingsVarListOrder, RealVariablesGetTheirDataTypes) {
  MCSettingsParser reader;
  const std::string fields = SettingsField("integer", "continuous", "<Interval leftMargin='1'/>") +
                             SettingsField("string", "x", "<Value value='a'/>", "g");
  ASSERT_TRUE(ParseText(reader, DataFields::Document(OfKind<Fields>(fields))).IsOK());
  MCMTD_NAMESPACE::MCVarList list;
  EXPECT_TRUE(reader.FillVarList(list, false).IsOK());
  ASSERT_EQ(list.Size(), 2u);
  EXPECT_EQ(list.GetVarAt(0)->GetDataType(), 1);
  EXPECT_EQ(list.GetVarAt(0)->GetValueFormat(), 1);
  EXPECT_EQ(list.GetVarAt(1)->GetDataType(), 3);
  EXPECT_EQ(reader.FillVarList(list, false), Error(111)) << "the names are known by now";
}

// Bins.

const std::string kFirst = "leftMargin='0' rightMargin='10'";
const std::string kSecond = "leftMargin='10' rightMargin='20'";
const std::string kTwoBins = Bin("binValue='a'", kFirst) + Bin("binValue='b'", kSecond);

SettingsFillResult FillWithBins(const std::string& fields, const std::string& rest) {
  MCSettingsParser reader;
  EXPECT_TRUE(ParseText(reader, Pmml(OfKind<Fields>(fields), rest + BuildTask(""))).IsOK());
  RecordingVarList list;
  return ResultOf(reader.FillVarList(list, true), list);
}

const std::string kRanged =
    SettingsField("double", "continuous", "<Interval leftMargin='1' rightMargin='2'/>");

INSTANTIATE_TEST_SUITE_P(NotAskedFor, SettingsVarList,
                         testing::Values(SettingsFieldCase{
                             "the interval is the range",
                             kRanged,
                             {"AddContVar(f||1..2|role 4|false -1)", "SetDataType(0|2)"}}));

struct SettingsBinCase {
  const char* rule;
  std::string bins;
  Texts calls;
  friend void PrintTo(const SettingsBinCase& test, std::ostream* out) { *out << test.rule; }
};

class SettingsBins : public testing::TestWithParam<SettingsBinCase> {};

TEST_P(SettingsBins, MakeTheCalls) {
  const SettingsFillResult result = FillWithBins(kRanged, TransDict(Binned("f", GetParam().bins)));
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, GetParam().calls) << GetParam().rule;
}

INSTANTIATE_TEST_SUITE_P(
    Bins, SettingsBins,
    testing::Values(
        SettingsBinCase{"no bin: one cut point",
                        "",
                        {"AddContVar(f||1..2|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsBinCase{"one bin: two cut points",
                        Bin("binValue='a'", kFirst),
                        {"AddContVar(f||1..2|role 4|false -1)", "SetDataType(0|2)"}},
        SettingsBinCase{"two bins: their ends are the range",
                        kTwoBins,
                        {"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetBinLabels(0|'a', 'b')",
                         "SetDataType(0|2)"}},
        SettingsBinCase{"open ends: the lowest and the largest double",
                        Bin("binValue='a'", "rightMargin='10'") + Bin("binValue='b'", ""),
                        {"AddContVar(f||-MAX..MAX|cuts 10|binned|role 4)",
                         "SetBinLabels(0|'a', 'b')", "SetDataType(0|2)"}},
        SettingsBinCase{"a first label 0 means no labels",
                        Bin("binValue='0'", kFirst) + Bin("binValue='1'", kSecond),
                        {"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetDataType(0|2)"}},
        SettingsBinCase{"a later label 0 is a label",
                        Bin("binValue='1'", kFirst) + Bin("binValue='0'", kSecond),
                        {"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetBinLabels(0|'1', '0')",
                         "SetDataType(0|2)"}},
        SettingsBinCase{"too few labels",
                        Bin("binValue='a'", kFirst) + Bin("", kSecond),
                        {"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetDataType(0|2)"}},
        SettingsBinCase{"too many labels",
                        kTwoBins + "<DiscretizeBin binValue='c'/>",
                        {"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetDataType(0|2)"}}));

TEST(SettingsVarListBins, LabelsComeBeforeMissingValuesAndInvalidRange) {
  const SettingsFillResult result =
      FillWithBins(SettingsField("double", "continuous",
                                 "<Extension name='invalidRangeLower' value='90'/>"
                                 "<Value value='99' property='missing'/>"),
                   TransDict(Binned("f", kTwoBins)));
  EXPECT_EQ(result.all_calls,
            (Texts{"AddContVar(f||0..20|cuts 10|binned|role 4)", "GetEncoderAt(0)",
                   "SetBinLabels(0|'a', 'b')", "AddMissingValue(0|99|'')",
                   "SetInvalidRange(0|90..MAX)", "GetVarAt(0)", "SetDataType(0|2)"}));
}

TEST(SettingsVarListBins, WithoutTransformationDictionaryTheIntervalIsTheRange) {
  const SettingsFillResult result = FillWithBins(kRanged, "");
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, (Texts{"AddContVar(f||1..2|role 4|false -1)", "SetDataType(0|2)"}));
}

TEST(SettingsVarListBins, FieldWithoutDiscretisationGives110AndIsNotAdded) {
  for (const std::string& dictionary : {TransDict(""), TransDict(Binned("g", kTwoBins))}) {
    const SettingsFillResult result =
        FillWithBins(SettingsField("string", "x", "", "before") + kRanged, dictionary);
    EXPECT_EQ(result.status, Error(110));
    EXPECT_EQ(result.calls,
              (Texts{"AddCatVar(before||none|labels none|role 4)", "SetDataType(0|3)"}));
  }
}

TEST(SettingsVarListBins, BadIntervalComesBeforeMissingBins) {
  EXPECT_EQ(FillWithBins(SettingsField("double", "continuous", "<Interval leftMargin='x'/>"),
                         TransDict(""))
                .status,
            Error(109));
}

TEST(SettingsVarListBins, ContinuousTextIsBinnedAsWell) {
  const SettingsFillResult result =
      FillWithBins(SettingsField("string", "continuous", "<Value value='x' property='missing'/>"),
                   TransDict(Binned("f", kTwoBins)));
  EXPECT_EQ(result.calls, (Texts{"AddContVar(f||0..20|cuts 10|binned|role 4)",
                                 "SetBinLabels(0|'a', 'b')", "SetDataType(0|3)"}));
}

TEST(SettingsVarListBins, AgreeWithTheLookUpOfOneField) {
  const std::string text =
      Pmml(OfKind<Fields>(kRanged), TransDict(Binned("f", kTwoBins)) + BuildTask(""));
  MCSettingsParser reader;
  ASSERT_TRUE(ParseText(reader, text).IsOK());
  std::vector<double> cuts;
  Texts values;
  ASSERT_TRUE(reader.SetBinsFrTransDict("f", cuts, values));
  EXPECT_EQ(cuts, (std::vector<double>{0, 10, 20}));
  EXPECT_EQ(values, (Texts{"a", "b"}));
}

}  // namespace
