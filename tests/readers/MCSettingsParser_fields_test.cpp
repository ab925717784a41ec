// What FillVarList and FillTransDict of the settings reader have in common: which calls the
// variable list gets for the fields that both read alike, and what ends a fill.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "SettingsFields.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCSettingsParser;
using Texts = std::vector<std::string>;

template <class Case>
auto OfBothKinds(const std::vector<Case>& cases) {
  return testing::Combine(testing::Values(kDataFields, kDerivedFields), testing::ValuesIn(cases));
}

// Good fields.

std::vector<SettingsFieldCase> HeadingCases() {
  const std::string plain = "AddContVar(f||-MAX..MAX|role 4|false -1)";
  const std::string empty = "AddCatVar(f||none|labels none|role 4)";
  return {
      {"no field", "", {}},
      {"only other nodes", " x<!-- c --><Extension/><field name='f'/>", {}},
      {"a nested field is none",
       "<Taxonomy>" + SettingsField("double", "continuous") + "</Taxonomy>",
       {}},
      {"a label",
       "<FIELD name='f' displayName='A &#233;' dataType='float' optype='continuous'/>",
       {"AddContVar(f|A \xC3\xA9|-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}},
      {"an empty name and an empty label",
       "<FIELD name='' displayName='' dataType='double' optype='continuous'/>",
       {"AddContVar(||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)"}},
      {"document order, other nodes between",
       SettingsField("double", "continuous", "", "z") + " <!-- c --><x/>" +
           SettingsField("string", "categorical", "", "a"),
       {"AddContVar(z||-MAX..MAX|role 4|false -1)", "SetDataType(0|2)",
        "AddCatVar(a||none|labels none|role 4)", "SetDataType(1|3)"}},
      {"the same name twice is the list's business",
       SettingsField("double", "continuous") + SettingsField("double", "continuous"),
       {plain, "SetDataType(0|2)", plain, "SetDataType(1|2)"}},
      {"ordinal is categorical", SettingsField("double", "ordinal"), {empty, "SetDataType(0|2)"}},
      {"any optype is categorical", SettingsField("double", "x"), {empty, "SetDataType(0|2)"}},
      {"optype in another case", SettingsField("date", "Continuous"), {empty, "SetDataType(0|4)"}},
      {"an empty optype", SettingsField("time", ""), {empty, "SetDataType(0|5)"}},
      {"a continuous text", SettingsField("string", "continuous"), {plain, "SetDataType(0|3)"}},
  };
}

std::vector<SettingsFieldCase> DataTypeCases() {
  const std::string value = "<Value value='1'/>";
  const std::string number = "AddCatVar(f||1|role 4)";
  return {
      {"string",
       SettingsField("string", "x", value),
       {"AddCatVar(f||'1'|role 4)", "SetDataType(0|3)"}},
      {"date", SettingsField("date", "x", value), {number, "SetDataType(0|4)"}},
      {"time", SettingsField("time", "x", value), {number, "SetDataType(0|5)"}},
      {"dateTime", SettingsField("dateTime", "x", value), {number, "SetDataType(0|6)"}},
      {"double", SettingsField("double", "x", value), {number, "SetDataType(0|2)"}},
      {"float", SettingsField("float", "x", value), {number, "SetDataType(0|2)"}},
      {"integer", SettingsField("integer", "x", value), {number, "SetDataType(0|1)"}},
  };
}

std::vector<SettingsFieldCase> ValueCases() {
  const std::string code = "SetDataType(0|2)";
  const std::string text = "SetDataType(0|3)";
  const std::string continuous = "AddContVar(f||-MAX..MAX|role 4|false -1)";
  return {
      {"numbers with labels",
       SettingsField("double", "categorical",
                     "<Value value='1' displayValue='M'/><Value displayValue='F' value='2.5'/>"),
       {"AddCatVar(f||1, 2.5|labels 'M', 'F'|role 4)", code}},
      {"three values and two labels",
       SettingsField("double", "categorical",
                     "<Value value='1' displayValue='A'/><Value value='2' displayValue='B'/>"
                     "<Value value='3'/>"),
       {"AddCatVar(f||1, 2, 3|role 4)", code}},
      {"texts with labels",
       SettingsField("string", "categorical",
                     "<Value value='a' displayValue='A'/><Value value='' displayValue=''/>"),
       {"AddCatVar(f||'a', ''|labels 'A', ''|role 4)", text}},
      {"fewer labels than texts",
       SettingsField("string", "categorical",
                     "<Value value='a' displayValue='A'/><Value value='b'/>"),
       {"AddCatVar(f||'a', 'b'|role 4)", text}},
      {"a number that cannot be read leaves its label",
       SettingsField("double", "categorical",
                     "<Value value='1' displayValue='A'/><Value value='x' displayValue='B'/>"),
       {"AddCatVar(f||1|role 4)", code}},
      {"labels pair by position alone, even with the wrong value",
       SettingsField("double", "categorical",
                     "<Value value='x' displayValue='X'/><Value value='1'/>"),
       {"AddCatVar(f||1|labels 'X'|role 4)", code}},
      {"a text that is absent leaves its label",
       SettingsField("string", "categorical",
                     "<Value displayValue='X'/><Value value='a' displayValue='A'/>"),
       {"AddCatVar(f||'a'|role 4)", text}},
      {"infinities are not read, NaN is the missing value",
       SettingsField("double", "categorical",
                     "<Value value='INF'/><Value value='NaN'/><Value value='1e400'/>"),
       {"AddCatVar(f||missing|role 4)", code}},
      {"no sorting, no removal of duplicates",
       SettingsField("double", "x", "<Value value='2'/><Value value='1'/><Value value='2'/>"),
       {"AddCatVar(f||2, 1, 2|role 4)", code}},
      {"a value without attributes is none",
       SettingsField("string", "x", "<Value/><Value>text</Value><Value value='a'/>"),
       {"AddCatVar(f||'a'|role 4)", text}},
      {"other nodes are passed over",
       SettingsField("string", "x",
                     " t<!-- c --><?p q?><value value='b'/><p:Value xmlns:p='u' value='c'/>"
                     "<Values><Value value='d'/></Values><Value value='a'/>"),
       {"AddCatVar(f||'a'|role 4)", text}},
      {"valid values of a continuous field do not matter",
       SettingsField("double", "continuous", "<Value value='1' displayValue='A'/>"),
       {continuous, code}},
      {"property valid",
       SettingsField("double", "x", "<Value value='1' property='valid'/>"),
       {"AddCatVar(f||1|role 4)", code}},
      {"property missing, with a label",
       SettingsField("double", "continuous",
                     "<Value value='99' property='missing' displayValue='No answer'/>"),
       {continuous, "AddMissingValue(0|99|'No answer')", code}},
      {"every other property is missing as well",
       SettingsField("double", "x",
                     "<Value value='1' property='invalid'/><Value value='2' property=''/>"
                     "<Value value='3' property='Valid'/>"),
       {"AddCatVar(f||none|labels none|role 4)", "AddMissingValue(0|1|'')",
        "AddMissingValue(0|2|'')", "AddMissingValue(0|3|'')", code}},
      {"labels of missing values pair by position as well",
       SettingsField("double", "continuous",
                     "<Value value='x' property='missing' displayValue='X'/>"
                     "<Value value='9' property='missing'/>"
                     "<Value value='8' property='missing'/>"),
       {continuous, "AddMissingValue(0|9|'X')", "AddMissingValue(0|8|'')", code}},
      {"missing texts",
       SettingsField("string", "x",
                     "<Value value='a'/><Value value='NA' property='missing' "
                     "displayValue='None'/><Value value='' property='missing'/>"),
       {"AddCatVar(f||'a'|role 4)", "AddMissingValue(0|'NA'|'None')", "AddMissingValue(0|''|'')",
        text}},
      {"labels of valid and of missing values are apart",
       SettingsField("double", "x",
                     "<Value value='9' property='missing' displayValue='Nine'/>"
                     "<Value value='1' displayValue='One'/>"),
       {"AddCatVar(f||1|labels 'One'|role 4)", "AddMissingValue(0|9|'Nine')", code}},
      {"a continuous text declares none",
       SettingsField("string", "continuous", "<Value value='9' property='missing'/>"),
       {continuous, text}},
  };
}

std::vector<SettingsFieldCase> InvalidRangeCases() {
  const std::string code = "SetDataType(0|2)";
  const std::string continuous = "AddContVar(f||-MAX..MAX|role 4|false -1)";
  return {
      {"both bounds",
       SettingsField("double", "continuous",
                     "<Extension name='invalidRangeLower' value='1'/>"
                     "<Extension extender='anybody' name='invalidRangeUpper' value='2'/>"),
       {continuous, "SetInvalidRange(0|1..2)", code}},
      {"one bound, of a categorical field",
       SettingsField("double", "x", "<Extension name='invalidRangeUpper' value='-1'/>"),
       {"AddCatVar(f||none|labels none|role 4)", "SetInvalidRange(0|-MAX..-1)", code}},
      {"after the missing values, before the data type",
       SettingsField("double", "continuous",
                     "<Extension name='invalidRangeLower' value='0'/>"
                     "<Value value='9' property='missing'/>"),
       {continuous, "AddMissingValue(0|9|'')", "SetInvalidRange(0|0..MAX)", code}},
      {"the last one counts, an inverted range passes",
       SettingsField("double", "continuous",
                     "<Extension name='invalidRangeLower' value='1'/>"
                     "<Extension name='invalidRangeUpper' value='-3'/>"
                     "<Extension name='invalidRangeLower' value='5'/>"),
       {continuous, "SetInvalidRange(0|5..-3)", code}},
      {"the start values themselves declare nothing",
       SettingsField("double", "continuous",
                     "<Extension name='invalidRangeLower' value='-1.7976931348623157e308'/>"
                     "<Extension name='invalidRangeUpper' value='1.7976931348623157e308'/>"),
       {continuous, code}},
      {"other extensions, and values that are no numbers",
       SettingsField("double", "continuous",
                     "<Extension name='other' value='1'/><Extension value='1'/><Extension/>"
                     "<Extension name='invalidRangeLower'/>"
                     "<Extension name='invalidRangeLower' value='x'/>"
                     "<Extension name='InvalidRangeLower' value='1'/>"
                     "<Extension name='invalidRangeUpper' value='INF'/>"),
       {continuous, code}},
      {"inner extensions are none",
       SettingsField("double", "continuous",
                     "<Extension><Extension name='invalidRangeLower' value='1'/></Extension>"),
       {continuous, code}},
      {"a text field has none",
       SettingsField("string", "x", "<Extension name='invalidRangeLower' value='1'/>"),
       {"AddCatVar(f||none|labels none|role 4)", "SetDataType(0|3)"}},
  };
}

std::vector<SettingsFieldCase> IntervalCases() {
  const std::string code = "SetDataType(0|2)";
  return {
      {"a later interval overwrites an earlier one, both ends",
       SettingsField("double", "continuous",
                     "<Interval leftMargin='1' rightMargin='2'/><Interval rightMargin='7'/>"),
       {"AddContVar(f||MIN..7|role 4|false -1)", code}},
      {"other nodes between",
       SettingsField("double", "continuous",
                     " x<!-- c --><Value value='1'/><Interval leftMargin='1'/>"
                     "<Extension name='invalidRangeUpper' value='0'/>"),
       {"AddContVar(f||1..MAX|role 4|false -1)", "SetInvalidRange(0|-MAX..0)", code}},
      {"another spelling is none",
       SettingsField("double", "continuous", "<interval leftMargin='x'/><Intervals/>"),
       {"AddContVar(f||-MAX..MAX|role 4|false -1)", code}},
      {"an interval of a numeric categorical field is checked and not passed",
       SettingsField("double", "x", "<Interval leftMargin='1'/><Value value='5'/>"),
       {"AddCatVar(f||5|role 4)", code}},
      {"intervals of text fields are not looked at",
       SettingsField("string", "x", "<Interval leftMargin='x'/>") +
           SettingsField("string", "continuous", "<Interval leftMargin='2' rightMargin='1'/>"),
       {"AddCatVar(f||none|labels none|role 4)", "SetDataType(0|3)",
        "AddContVar(f||-MAX..MAX|role 4|false -1)", "SetDataType(1|3)"}},
      {"nothing of a field reaches the next",
       "<FIELD name='f' displayName='L' dataType='double' optype='continuous'>"
       "<Interval leftMargin='1' rightMargin='2'/><Value value='1' displayValue='A'/>"
       "<Value value='9' property='missing' displayValue='B'/>"
       "<Extension name='invalidRangeLower' value='1'/></FIELD>" +
           SettingsField("integer", "continuous", "", "g") +
           SettingsField("double", "categorical", "", "h") +
           SettingsField("string", "categorical", "", "i"),
       {"AddContVar(f|L|1..2|role 4|false -1)", "AddMissingValue(0|9|'B')",
        "SetInvalidRange(0|1..MAX)", code, "AddContVar(g||-MAX..MAX|role 4|false -1)",
        "SetDataType(1|1)", "AddCatVar(h||none|labels none|role 4)", "SetDataType(2|2)",
        "AddCatVar(i||none|labels none|role 4)", "SetDataType(3|3)"}},
  };
}

class SettingsFields : public testing::TestWithParam<std::tuple<FieldKind, SettingsFieldCase>> {};

TEST_P(SettingsFields, MakeTheCalls) {
  const auto& [kind, test] = GetParam();
  ExpectCalls(kind, test);
}

INSTANTIATE_TEST_SUITE_P(Heading, SettingsFields, OfBothKinds(HeadingCases()));
INSTANTIATE_TEST_SUITE_P(DataTypes, SettingsFields, OfBothKinds(DataTypeCases()));
INSTANTIATE_TEST_SUITE_P(Values, SettingsFields, OfBothKinds(ValueCases()));
INSTANTIATE_TEST_SUITE_P(InvalidRange, SettingsFields, OfBothKinds(InvalidRangeCases()));
INSTANTIATE_TEST_SUITE_P(Intervals, SettingsFields, OfBothKinds(IntervalCases()));
INSTANTIATE_TEST_SUITE_P(Margins, SettingsFields, OfBothKinds(RangeCases()));

// Bad fields.

std::vector<SettingsFailureCase> HeadingFailures() {
  std::vector<SettingsFailureCase> cases = {
      {"no name", "<FIELD dataType='double' optype='continuous'/>", 108},
      {"no data type", "<FIELD name='f' optype='continuous'/>", 108},
      {"no optype", "<FIELD name='f' dataType='double'/>", 108},
      {"a bad data type comes before a missing optype", "<FIELD name='f' dataType='x'/>", 109},
      {"a missing name comes before a bad data type", "<FIELD dataType='x'/>", 108},
      {"a missing optype comes before a bad interval",
       "<FIELD name='f' dataType='double'><Interval leftMargin='x'/></FIELD>", 108},
      {"a bad interval after a good one",
       SettingsField("double", "continuous",
                     "<Interval leftMargin='1'/><Interval leftMargin='x'/>"),
       109},
      {"a bad interval before a good one",
       SettingsField("double", "continuous",
                     "<Interval leftMargin='x'/><Interval leftMargin='1'/>"),
       109},
  };
  for (const char* word :
       {"boolean", "", "String", " double", "doubl", "doubles", "real", "timeSeconds",
        "dateDaysSince[0]", "dateDaysSince[1970]", "dateTimeSecondsSince[1970]", "timestamp"}) {
    cases.push_back({word, SettingsField(word, "continuous"), 109});
  }
  return cases;
}

class SettingsFieldsFailures
    : public testing::TestWithParam<std::tuple<FieldKind, SettingsFailureCase>> {};

TEST_P(SettingsFieldsFailures, EndTheFillAndKeepWhatWasAdded) {
  const auto& [kind, test] = GetParam();
  ExpectFailure(kind, test);
}

INSTANTIATE_TEST_SUITE_P(Headings, SettingsFieldsFailures, OfBothKinds(HeadingFailures()));
INSTANTIATE_TEST_SUITE_P(Margins, SettingsFieldsFailures, OfBothKinds(RangeFailures()));

// The fill as a whole.

class SettingsFieldsOrder : public testing::TestWithParam<FieldKind> {};

INSTANTIATE_TEST_SUITE_P(Kinds, SettingsFieldsOrder, testing::Values(kDataFields, kDerivedFields),
                         [](const auto& test) { return std::string(test.param.element); });

TEST_P(SettingsFieldsOrder, DeclaresAtTheEncoderThenSetsTheDataType) {
  RecordingVarList list;
  list.next_index = 40;
  const SettingsFillResult result =
      FillSettings(GetParam(),
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

TEST_P(SettingsFieldsOrder, RefusalOfEveryKindGives111AndEndsTheFill) {
  const std::string labelled = "<Value value='1' displayValue='A'/>";
  const std::string missing = "<Value value='9' property='missing'/>";
  for (const std::string& refused :
       {SettingsField("double", "continuous", missing), SettingsField("double", "x", missing),
        SettingsField("double", "x", labelled), SettingsField("string", "x", missing),
        SettingsField("string", "x", labelled)}) {
    RecordingVarList list;
    list.refuse_at = 1;
    const SettingsFillResult result =
        FillSettings(GetParam(),
                     SettingsField("double", "continuous", "", "before") + refused +
                         SettingsField("double", "continuous", "", "after"),
                     list);
    EXPECT_EQ(result.status, Error(111)) << refused;
    EXPECT_EQ(list.Size(), 1u);
    EXPECT_EQ(result.all_calls.size(), 5u) << "nothing is declared, no other field is tried";
  }
}

TEST_P(SettingsFieldsOrder, VariableThatTheListDoesNotGiveBackGives111) {
  RecordingVarList list;
  list.has_variables = false;
  const SettingsFillResult result =
      FillSettings(GetParam(),
                   SettingsField("string", "x", "<Value value='a' property='missing'/>") +
                       SettingsField("double", "x", "", "g"),
                   list);
  EXPECT_EQ(result.status, Error(111));
  EXPECT_EQ(result.all_calls, (Texts{"AddCatVar(f||none|labels none|role 4)", "GetEncoderAt(0)",
                                     "AddMissingValue(0|'a'|'')", "GetVarAt(0)"}));
}

TEST_P(SettingsFieldsOrder, MissingEncoderMattersOnlyIfThereIsSomethingToDeclare) {
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
    const SettingsFillResult result = FillSettings(GetParam(), field, list);
    EXPECT_EQ(result.status, MCStatus(code, false)) << field;
    EXPECT_EQ(list.Size(), 1u) << "the variable stays";
    EXPECT_EQ(result.all_calls.size(), code == 0 ? 4u : 2u) << "no data type after a failure";
  }
}

TEST_P(SettingsFieldsOrder, FillBeforeAnyParseGives107) {
  const MCSettingsParser reader;
  RecordingVarList list;
  EXPECT_EQ(GetParam().fill(reader, list), Error(107));
  EXPECT_EQ(reader.GetStatus(), MCStatus());
  EXPECT_TRUE(list.calls.empty());
}

TEST_P(SettingsFieldsOrder, FailedParseIsToldAgainAndTheListStays) {
  const std::string field = OfKind(GetParam(), SettingsField("double", "continuous"));
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
    EXPECT_EQ(GetParam().fill(reader, list), Error(code)) << text;
    EXPECT_TRUE(list.calls.empty());
  }
}

TEST_P(SettingsFieldsOrder, AppendsAtEveryCallAndLeavesTheStatusAlone) {
  MCSettingsParser reader;
  const std::string fields = SettingsField("double", "continuous") + "<FIELD/>";
  ASSERT_TRUE(ParseText(reader, GetParam().document(OfKind(GetParam(), fields))).IsOK());
  RecordingVarList list;
  EXPECT_EQ(GetParam().fill(reader, list), Error(108));
  EXPECT_EQ(GetParam().fill(reader, list), Error(108));
  EXPECT_EQ(list.Size(), 2u);
  EXPECT_EQ(reader.GetStatus(), MCStatus());
}

TEST_P(SettingsFieldsOrder, ExceptionOfTheListPasses) {
  MCSettingsParser reader;
  const std::string fields = SettingsField("double", "continuous");
  ASSERT_TRUE(ParseText(reader, GetParam().document(OfKind(GetParam(), fields))).IsOK());
  RecordingVarList list;
  list.throws_on_add = true;
  EXPECT_THROW((void)GetParam().fill(reader, list), int);
  list.throws_on_add = false;
  EXPECT_TRUE(GetParam().fill(reader, list).IsOK());
}

// Documents name a weight variable by a parameter; the fill takes no notice of it.
TEST_P(SettingsFieldsOrder, NoFieldBecomesTheWeight) {
  const std::string field = OfKind(GetParam(), SettingsField("double", "continuous", "", "w"));
  MCSettingsParser reader;
  ASSERT_TRUE(
      ParseText(reader, Pmml(field, TransDict(field) +
                                        BuildTask(Parameter("FrequencyWeightVar", "value='w'"))))
          .IsOK());
  std::string weight;
  ASSERT_TRUE(reader.GetFrequencyWeight(weight).IsOK());
  ASSERT_EQ(weight, "w");
  RecordingVarList list;
  EXPECT_TRUE(GetParam().fill(reader, list).IsOK());
  ASSERT_FALSE(list.calls.empty());
  EXPECT_EQ(list.calls[0], "AddContVar(w||-MAX..MAX|role 4|false -1)");
}

}  // namespace
