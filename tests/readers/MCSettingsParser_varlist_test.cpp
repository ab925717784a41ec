// FillVarList of the settings reader: what is its own, the bins above all. See
// MCSettingsParser_fields_test.cpp for the rest.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "SettingsFields.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCSettingsParser;
using Texts = std::vector<std::string>;

TEST(SettingsVarListFill, ExtensionsOfDataFieldsHoldNoInterval) {
  const SettingsFillResult result = FillSettings(
      kDataFields,
      SettingsField("double", "continuous",
                    "<Extension name='x' value='1'><Interval leftMargin='x'/></Extension>"));
  EXPECT_EQ(result.calls, (Texts{"AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}));
}

TEST(SettingsVarListFill, DerivedFieldsDoNotCount) {
  MCSettingsParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml("", TransDict("<DerivedField/>") + BuildTask(""))).IsOK());
  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, false).IsOK());
  EXPECT_TRUE(list.calls.empty());
}

TEST(SettingsVarListFill, RealVariablesGetTheirDataTypes) {
  MCSettingsParser reader;
  const std::string fields = SettingsField("integer", "continuous", "<Interval leftMargin='1'/>") +
                             SettingsField("string", "x", "<Value value='a'/>", "g");
  ASSERT_TRUE(ParseText(reader, kDataFields.document(OfKind(kDataFields, fields))).IsOK());
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

const std::string kRanged =
    SettingsField("double", "continuous", "<Interval leftMargin='1' rightMargin='2'/>");

SettingsFillResult FillWithBins(const std::string& fields, const std::string& rest,
                                RecordingVarList& list, bool asked = true) {
  MCSettingsParser reader;
  EXPECT_TRUE(ParseText(reader, Pmml(OfKind(kDataFields, fields), rest + BuildTask(""))).IsOK());
  return ResultOf(reader.FillVarList(list, asked), list);
}

SettingsFillResult FillWithBins(const std::string& fields, const std::string& rest) {
  RecordingVarList list;
  return FillWithBins(fields, rest, list);
}

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

TEST(SettingsVarListBins, ThatAreNotAskedForLeaveTheIntervalAsTheRange) {
  RecordingVarList list;
  const SettingsFillResult result =
      FillWithBins(kRanged, TransDict(Binned("f", kTwoBins)), list, false);
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, (Texts{"AddContVar(f||1..2|role 4|false -1)", "SetDataType(0|2)"}));

  RecordingVarList other;
  EXPECT_TRUE(FillWithBins(kRanged, TransDict(""), other, false).status.IsOK())
      << "nor is it a failure that there are none";
}

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

TEST(SettingsVarListBins, BinnedVariableThatIsRefusedGives111AndDeclaresNothing) {
  RecordingVarList list;
  list.refuse_at = 0;
  const SettingsFillResult result =
      FillWithBins(SettingsField("double", "continuous", "<Value value='9' property='missing'/>"),
                   TransDict(Binned("f", kTwoBins)), list);
  EXPECT_EQ(result.status, Error(111));
  EXPECT_EQ(result.all_calls, Texts{"AddContVar(f||0..20|cuts 10|binned|role 4)"});
}

TEST(SettingsVarListBins, MissingEncoderMattersOnlyIfThereAreLabels) {
  const struct {
    const char* rule;
    std::string bins;
    int code;
  } cases[] = {
      {"labels", kTwoBins, 111},
      {"numbered bins", Bin("binValue='0'", kFirst) + Bin("binValue='1'", kSecond), 0},
      {"too few labels", Bin("binValue='a'", kFirst) + Bin("", kSecond), 0},
      {"no labels", Bin("", kFirst) + Bin("", kSecond), 0},
  };
  for (const auto& [rule, bins, code] : cases) {
    RecordingVarList list;
    list.has_encoders = false;
    const SettingsFillResult result = FillWithBins(kRanged, TransDict(Binned("f", bins)), list);
    Texts calls = {"AddContVar(f||0..20|cuts 10|binned|role 4)"};
    if (code == 0) calls.push_back("SetDataType(0|2)");
    EXPECT_EQ(result.status, MCStatus(code, false)) << rule;
    EXPECT_EQ(result.calls, calls) << rule;
    EXPECT_EQ(list.Size(), 1u) << "the variable stays";
  }
}

// The fill finds bins by an index of the dictionary, the look-up by a walk.
TEST(SettingsVarListBins, AgreeWithTheLookUpOfOneField) {
  const std::string names[] = {"f", "", "g", "\u00E4\u4E2D"};
  const std::string three = kTwoBins + Bin("binValue='c'", "");
  const std::string dictionary =
      TransDict("<DerivedField/>" + Binned("f", three) + Binned("f", kTwoBins) +
                "<DerivedField><Discretize/><Discretize closure='x'>" + kTwoBins + "</Discretize>" +
                "<Discretize field='g'>" + Bin("binValue='g'", "rightMargin='-1'") + kTwoBins +
                "</Discretize></DerivedField>" + Binned("", three) + Binned(names[3], three));
  std::string fields;
  for (const std::string& name : names) fields += SettingsField("double", "continuous", "", name);
  MCSettingsParser reader;
  ASSERT_TRUE(
      ParseText(reader, Pmml(OfKind(kDataFields, fields), dictionary + BuildTask(""))).IsOK());

  Texts expected;
  for (const std::string& name : names) {
    std::vector<double> cuts;
    Texts labels;
    ASSERT_TRUE(reader.SetBinsFrTransDict(name, cuts, labels)) << name;
    ASSERT_GE(cuts.size(), 3u) << name;
    const std::vector<double> inner(cuts.begin() + 1, cuts.end() - 1);
    const std::string index = std::to_string(expected.size() / 3);
    expected.push_back("AddContVar(" + name + "||" +
                       RecordingVarList::RangeText(cuts.front(), cuts.back()) + "|cuts " +
                       RecordingVarList::Text(inner) + "|binned|role 4)");
    expected.push_back("SetBinLabels(" + index + "|" + RecordingVarList::Text(labels) + ")");
    expected.push_back("SetDataType(" + index + "|2)");
  }
  RecordingVarList list;
  const SettingsFillResult result = ResultOf(reader.FillVarList(list, true), list);
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, expected);
}

}  // namespace
