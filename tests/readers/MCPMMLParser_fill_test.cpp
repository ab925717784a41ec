// FillVarList of the PMML reader: which calls the variable list gets.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "PmmlText.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCPMMLParser;
using Texts = std::vector<std::string>;

// A field "f" with the given data type, optype and children.
std::string Field(const std::string& dataType, const std::string& optype,
                  const std::string& children = "", const std::string& name = "f") {
  return "<DataField name=\"" + name + "\" dataType=\"" + dataType + "\" optype=\"" + optype +
         "\">" + children + "</DataField>";
}

struct FillCase {
  const char* rule;
  std::string fields;
  Texts calls;
  friend void PrintTo(const FillCase& test, std::ostream* out) { *out << test.rule; }
};

class FillVarList : public testing::TestWithParam<FillCase> {};

TEST_P(FillVarList, MakesTheCalls) {
  const FillResult result = Fill(Pmml(GetParam().fields));
  EXPECT_TRUE(result.status.IsOK()) << GetParam().rule << ": " << result.status.GetCode();
  EXPECT_EQ(result.calls, GetParam().calls) << GetParam().rule;
}

INSTANTIATE_TEST_SUITE_P(
    Heading, FillVarList,
    testing::Values(
        FillCase{"no field", "", {}},
        FillCase{"only other nodes", " <!-- c --><Extension/><Taxonomy name='t'/>x", {}},
        FillCase{"a label",
                 "<DataField name='f' displayName='A label' dataType='double' "
                 "optype='continuous'/>",
                 {"AddContVar(f|A label|role 4)"}},
        FillCase{"an empty label and an empty name",
                 "<DataField name='' displayName='' dataType='double' optype='continuous'/>",
                 {"AddContVar(||role 4)"}},
        FillCase{"document order, other nodes between",
                 Field("double", "continuous", "", "z") + " <!-- c --><Extension/>" +
                     Field("string", "categorical", "", "a"),
                 {"AddContVar(z||role 4)", "AddCatVar(a||none|labels none|role 4)"}},
        FillCase{"the same name twice is the list's business",
                 Field("double", "continuous") + Field("double", "continuous"),
                 {"AddContVar(f||role 4)", "AddContVar(f||role 4)"}},
        FillCase{"a nested field is none",
                 "<Taxonomy>" + Field("double", "continuous") + "</Taxonomy>",
                 {}}));

INSTANTIATE_TEST_SUITE_P(
    Optype, FillVarList,
    testing::Values(
        FillCase{"continuous", Field("double", "continuous"), {"AddContVar(f||role 4)"}},
        FillCase{"categorical",
                 Field("double", "categorical"),
                 {"AddCatVar(f||none|labels none|role 4)"}},
        FillCase{"ordinal", Field("double", "ordinal"), {"AddCatVar(f||none|labels none|role 4)"}},
        FillCase{
            "any word", Field("double", "Continuous"), {"AddCatVar(f||none|labels none|role 4)"}},
        FillCase{"empty", Field("double", ""), {"AddCatVar(f||none|labels none|role 4)"}},
        FillCase{"continuous text", Field("string", "continuous"), {"AddContVar(f||role 4)"}}));

INSTANTIATE_TEST_SUITE_P(
    Values, FillVarList,
    testing::Values(
        FillCase{"numbers without labels",
                 Field("double", "categorical", "<Value value='1'/><Value value='2.5'/>"),
                 {"AddCatVar(f||1, 2.5|role 4)"}},
        FillCase{"numbers with labels",
                 Field("integer", "categorical",
                       "<Value value='1' displayValue='M'/><Value displayValue='F' value='2'/>"),
                 {"AddCatVar(f||1, 2|labels 'M', 'F'|role 4)"}},
        FillCase{"fewer labels than values are dropped",
                 Field("integer", "categorical",
                       "<Value value='1' displayValue='M'/><Value value='2'/>"),
                 {"AddCatVar(f||1, 2|role 4)"}},
        FillCase{"texts without labels",
                 Field("string", "categorical", "<Value value='a'/><Value value=''/>"),
                 {"AddCatVar(f||'a', ''|role 4)"}},
        FillCase{"texts with labels, empty ones too",
                 Field("string", "categorical",
                       "<Value value='a' displayValue='A'/><Value value='b' displayValue=''/>"),
                 {"AddCatVar(f||'a', 'b'|labels 'A', ''|role 4)"}},
        FillCase{"texts look like numbers and stay texts",
                 Field("string", "categorical", "<Value value=' 1.0 '/>"),
                 {"AddCatVar(f||' 1.0 '|role 4)"}},
        FillCase{"more labels than texts are dropped",
                 Field("string", "categorical",
                       "<Value value='a' displayValue='A'/><Value displayValue='B'/>"),
                 {"AddCatVar(f||'a'|role 4)"}},
        FillCase{"a number that cannot be read leaves its label",
                 Field("double", "categorical",
                       "<Value value='1' displayValue='A'/><Value value='x' displayValue='B'/>"),
                 {"AddCatVar(f||1|role 4)"}},
        FillCase{
            "labels pair by position alone, even with the wrong value",
            Field("double", "categorical", "<Value value='x' displayValue='X'/><Value value='1'/>"),
            {"AddCatVar(f||1|labels 'X'|role 4)"}},
        FillCase{"infinities are not read, NaN is the missing value",
                 Field("double", "categorical",
                       "<Value value='INF'/><Value value='NaN'/><Value value='1e400'/>"
                       "<Value value=''/>"),
                 {"AddCatVar(f||missing|role 4)"}},
        FillCase{"no sorting, no removal of duplicates",
                 Field("double", "categorical",
                       "<Value value='2'/><Value value='1'/><Value value='2'/>"),
                 {"AddCatVar(f||2, 1, 2|role 4)"}},
        FillCase{"a value without attributes is none",
                 Field("string", "categorical", "<Value/><Value>text</Value><Value value='a'/>"),
                 {"AddCatVar(f||'a'|role 4)"}},
        FillCase{"other nodes are passed over",
                 Field("string", "categorical",
                       " text<!-- c --><Interval leftMargin='0'/><?p q?><value value='b'/>"
                       "<p:Value xmlns:p='u' value='c'/><Values><Value value='d'/></Values>"
                       "<Value value='a'/>"),
                 {"AddCatVar(f||'a'|role 4)"}},
        FillCase{"valid values and intervals of a continuous field do not matter",
                 Field("double", "continuous",
                       "<Interval leftMargin='x'/><Value value='1' displayValue='A'/>"),
                 {"AddContVar(f||role 4)"}}));

INSTANTIATE_TEST_SUITE_P(
    Missing, FillVarList,
    testing::Values(
        FillCase{"missing values with and without labels, numbers",
                 Field("double", "categorical",
                       "<Value value='1'/><Value value='98' property='missing' displayValue='No "
                       "answer'/><Value value='99' property='missing'/>"),
                 {"AddCatVar(f||1|role 4)", "AddMissingValue(0|98|'No answer')",
                  "AddMissingValue(0|99|'')"}},
        FillCase{"the same value without property is a category",
                 Field("double", "categorical", "<Value value='98' displayValue='No answer'/>"),
                 {"AddCatVar(f||98|labels 'No answer'|role 4)"}},
        FillCase{"missing values of a continuous field",
                 Field("double", "continuous", "<Value value='9' property='missing'/>"),
                 {"AddContVar(f||role 4)", "AddMissingValue(0|9|'')"}},
        FillCase{"missing texts",
                 Field("string", "categorical",
                       "<Value value='NA' property='missing' displayValue='None'/><Value "
                       "value='' property='missing'/>"),
                 {"AddCatVar(f||none|labels none|role 4)", "AddMissingValue(0|'NA'|'None')",
                  "AddMissingValue(0|''|'')"}},
        FillCase{"labels of missing values pair by position as well",
                 Field("double", "continuous",
                       "<Value value='x' property='missing' displayValue='X'/><Value value='9' "
                       "property='missing' displayValue='Nine'/>"),
                 {"AddContVar(f||role 4)", "AddMissingValue(0|9|'X')"}},
        FillCase{"labels of valid and of missing values are apart",
                 Field("double", "categorical",
                       "<Value value='9' property='missing' displayValue='Nine'/><Value "
                       "value='1' displayValue='One'/>"),
                 {"AddCatVar(f||1|labels 'One'|role 4)", "AddMissingValue(0|9|'Nine')"}},
        FillCase{"a continuous field of text declares none",
                 Field("string", "continuous",
                       "<Value value='9' property='missing' displayValue='Nine'/>"),
                 {"AddContVar(f||role 4)"}}));

INSTANTIATE_TEST_SUITE_P(
    InvalidRange, FillVarList,
    testing::Values(
        FillCase{"both bounds",
                 Field("double", "continuous",
                       "<Extension name='invalidRangeLower' value='1'/>"
                       "<Extension name='invalidRangeUpper' value='2' extender='anybody'/>"),
                 {"AddContVar(f||role 4)", "SetInvalidRange(0|1..2)"}},
        FillCase{"the lower bound only",
                 Field("double", "continuous", "<Extension name='invalidRangeLower' value='1'/>"),
                 {"AddContVar(f||role 4)", "SetInvalidRange(0|1..MAX)"}},
        FillCase{
            "the upper bound only, of a categorical field",
            Field("integer", "categorical", "<Extension name='invalidRangeUpper' value='-1'/>"),
            {"AddCatVar(f||none|labels none|role 4)", "SetInvalidRange(0|-MAX..-1)"}},
        FillCase{
            "after the missing values",
            Field("double", "continuous",
                  "<Extension name='invalidRangeUpper' value='0'/><Value value='9' "
                  "property='missing'/>"),
            {"AddContVar(f||role 4)", "AddMissingValue(0|9|'')", "SetInvalidRange(0|-MAX..0)"}},
        FillCase{"the last one counts",
                 Field("double", "continuous",
                       "<Extension name='invalidRangeUpper' value='0'/>"
                       "<Extension name='invalidRangeUpper' value='5'/>"),
                 {"AddContVar(f||role 4)", "SetInvalidRange(0|-MAX..5)"}},
        FillCase{"the start values themselves declare nothing",
                 Field("double", "continuous",
                       "<Extension name='invalidRangeLower' value='-1.7976931348623157e308'/>"
                       "<Extension name='invalidRangeUpper' value='1.7976931348623157e308'/>"),
                 {"AddContVar(f||role 4)"}},
        FillCase{"other extensions, and values that are no numbers",
                 Field("double", "continuous",
                       "<Extension name='missingInterval' value='1'/><Extension value='1'/>"
                       "<Extension name='invalidRangeLower'/><Extension/>"
                       "<Extension name='invalidRangeLower' value='x'/>"
                       "<Extension name='InvalidRangeLower' value='1'/>"
                       "<Extension name='invalidRangeLower' value='INF'/>"),
                 {"AddContVar(f||role 4)"}},
        FillCase{"inner extensions are none",
                 Field("double", "continuous",
                       "<Extension><Extension name='invalidRangeLower' value='1'/></Extension>"),
                 {"AddContVar(f||role 4)"}},
        FillCase{"a text field has none",
                 Field("string", "categorical", "<Extension name='invalidRangeLower' value='1'/>"),
                 {"AddCatVar(f||none|labels none|role 4)"}},
        FillCase{"a continuous text field has none",
                 Field("string", "continuous", "<Extension name='invalidRangeLower' value='1'/>"),
                 {"AddContVar(f||role 4)"}}));

struct DataTypeCase {
  const char* word;
  char kind;  // 't' text, 'n' numeric, '-' refused
  friend void PrintTo(const DataTypeCase& test, std::ostream* out) { *out << test.word; }
};

class DataTypes : public testing::TestWithParam<DataTypeCase> {};

TEST_P(DataTypes, AreTextNumericOrRefused) {
  const auto [word, kind] = GetParam();
  const FillResult result = Fill(Pmml(Field(word, "categorical", "<Value value='1'/>")));
  EXPECT_EQ(result.status, kind == '-' ? MCStatus(109, false) : MCStatus());
  const Texts calls = kind == 't'   ? Texts{"AddCatVar(f||'1'|role 4)"}
                      : kind == 'n' ? Texts{"AddCatVar(f||1|role 4)"}
                                    : Texts{};
  EXPECT_EQ(result.calls, calls);
}

INSTANTIATE_TEST_SUITE_P(
    Words, DataTypes,
    testing::Values(
        DataTypeCase{"string", 't'}, DataTypeCase{"double", 'n'}, DataTypeCase{"float", 'n'},
        DataTypeCase{"integer", 'n'}, DataTypeCase{"date", 'n'}, DataTypeCase{"time", 'n'},
        DataTypeCase{"dateTime", 'n'}, DataTypeCase{"timeSeconds", 'n'},
        DataTypeCase{"dateDaysSince[0]", 'n'}, DataTypeCase{"dateDaysSince[1960]", 'n'},
        DataTypeCase{"dateDaysSince[1970]", 'n'}, DataTypeCase{"dateDaysSince[1980]", 'n'},
        DataTypeCase{"dateTimeSecondsSince[0]", 'n'},
        DataTypeCase{"dateTimeSecondsSince[1960]", 'n'},
        DataTypeCase{"dateTimeSecondsSince[1970]", 'n'},
        DataTypeCase{"dateTimeSecondsSince[1980]", 'n'}, DataTypeCase{"boolean", '-'},
        DataTypeCase{"String", '-'}, DataTypeCase{"", '-'}, DataTypeCase{" double", '-'},
        DataTypeCase{"doubles", '-'}, DataTypeCase{"doubl", '-'}, DataTypeCase{"real", '-'},
        DataTypeCase{"dateDaysSince[1990]", '-'}));

struct PropertyCase {
  const char* attribute;
  bool valid;
  friend void PrintTo(const PropertyCase& test, std::ostream* out) { *out << test.attribute; }
};

class Properties : public testing::TestWithParam<PropertyCase> {};

TEST_P(Properties, MakeAValueValidOrMissing) {
  const auto [attribute, valid] = GetParam();
  const std::string value = "<Value value='1' " + std::string(attribute) + "/>";
  EXPECT_EQ(Fill(Pmml(Field("double", "categorical", value))).calls,
            valid ? Texts{"AddCatVar(f||1|role 4)"}
                  : (Texts{"AddCatVar(f||none|labels none|role 4)", "AddMissingValue(0|1|'')"}));
}

INSTANTIATE_TEST_SUITE_P(Words, Properties,
                         testing::Values(PropertyCase{"", true},
                                         PropertyCase{"property='valid'", true},
                                         PropertyCase{"property='missing'", false},
                                         PropertyCase{"property='invalid'", false},
                                         PropertyCase{"property='anything'", false},
                                         PropertyCase{"property='Valid'", false},
                                         PropertyCase{"property=''", false},
                                         PropertyCase{"property=' valid'", false}));

// Bins.

struct BinCase {
  const char* rule;
  std::string bins;
  Texts calls;
  friend void PrintTo(const BinCase& test, std::ostream* out) { *out << test.rule; }
};

class FillWithBins : public testing::TestWithParam<BinCase> {};

TEST_P(FillWithBins, MakesTheCalls) {
  const std::string text =
      Pmml(Field("double", "continuous"), TransDict(Binned("f", GetParam().bins)));
  const FillResult result = Fill(text, {}, true);
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, GetParam().calls) << GetParam().rule;
  EXPECT_EQ(Fill(text, {}, false).calls, Texts{"AddContVar(f||role 4)"}) << "bins not asked for";
}

const std::string kFirst = "leftMargin='0' rightMargin='10'";
const std::string kSecond = "leftMargin='10' rightMargin='20'";

INSTANTIATE_TEST_SUITE_P(
    Bins, FillWithBins,
    testing::Values(
        BinCase{"no bins: one cut point", "", {"AddContVar(f||role 4)"}},
        BinCase{"one bin: two cut points", Bin("binValue='a'", kFirst), {"AddContVar(f||role 4)"}},
        BinCase{"two bins: three cut points, one of them inside",
                Bin("binValue='a'", kFirst) + Bin("binValue='b'", kSecond),
                {"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetBinLabels(0|'a', 'b')"}},
        BinCase{"open ends",
                Bin("binValue='a'", "rightMargin='10'") + Bin("binValue='b'", ""),
                {"AddContVar(f||-MAX..MAX|cuts 10|binned|role 4)", "SetBinLabels(0|'a', 'b')"}},
        BinCase{"a first label 0 means no labels",
                Bin("binValue='0'", kFirst) + Bin("binValue='1'", kSecond),
                {"AddContVar(f||0..20|cuts 10|binned|role 4)"}},
        BinCase{"a later label 0 is a label",
                Bin("binValue='1'", kFirst) + Bin("binValue='0'", kSecond),
                {"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetBinLabels(0|'1', '0')"}},
        BinCase{"only the very text 0 counts",
                Bin("binValue='00'", kFirst) + Bin("binValue='1'", kSecond),
                {"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetBinLabels(0|'00', '1')"}},
        BinCase{"too few labels",
                Bin("binValue='a'", kFirst) + Bin("", kSecond),
                {"AddContVar(f||0..20|cuts 10|binned|role 4)"}},
        BinCase{"too many labels",
                Bin("binValue='a'", kFirst) + Bin("binValue='b'", kSecond) +
                    "<DiscretizeBin binValue='c'/>",
                {"AddContVar(f||0..20|cuts 10|binned|role 4)"}},
        BinCase{"descending bins are the list's business",
                Bin("binValue='a'", kSecond) + Bin("binValue='b'", kFirst),
                {"AddContVar(f||10..10|cuts 20|binned|role 4)", "SetBinLabels(0|'a', 'b')"}}));

TEST(MCPMMLParserFill, BinLabelsComeBeforeMissingValuesAndInvalidRange) {
  const FillResult result =
      Fill(Pmml(Field("double", "continuous",
                      "<Extension name='invalidRangeLower' value='90'/>"
                      "<Value value='99' property='missing' displayValue='None'/>"),
                TransDict(Binned("f", Bin("binValue='a'", kFirst) + Bin("binValue='b'", kSecond)))),
           {}, true);
  EXPECT_EQ(result.calls,
            (Texts{"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetBinLabels(0|'a', 'b')",
                   "AddMissingValue(0|99|'None')", "SetInvalidRange(0|90..MAX)"}));
}

TEST(MCPMMLParserFill, BinsWantedWithoutTransformationDictionaryAddsUnbinned) {
  const FillResult result = Fill(Pmml(Field("double", "continuous")), {}, true);
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, Texts{"AddContVar(f||role 4)"});
}

TEST(MCPMMLParserFill, BinsWantedAndNotDeclaredGives110AndAddsNothing) {
  const std::string other = TransDict(Binned("g", Bin("binValue='a'", kFirst)));
  for (const std::string& dictionary : {TransDict(""), other}) {
    const FillResult result = Fill(Pmml(Field("double", "continuous"), dictionary), {}, true);
    EXPECT_EQ(result.status, MCStatus(110, false));
    EXPECT_TRUE(result.all_calls.empty());
  }
}

TEST(MCPMMLParserFill, CategoricalFieldsNeedNoBins) {
  const FillResult result =
      Fill(Pmml(Field("double", "ordinal", "<Value value='1'/>"), TransDict("")), {}, true);
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, Texts{"AddCatVar(f||1|role 4)"});
}

TEST(MCPMMLParserFill, EachFieldGetsItsOwnBins) {
  const std::string f = Bin("binValue='a'", kFirst) + Bin("binValue='b'", kSecond);
  const std::string g = Bin("binValue='c'", "rightMargin='1'") + Bin("binValue='d'", "");
  const FillResult result =
      Fill(Pmml(Field("double", "continuous") + Field("double", "continuous", "", "g") +
                    Field("double", "continuous", "", "h"),
                TransDict(Binned("g", g) + Binned("h", "") + Binned("f", f) + Binned("g", f))),
           {}, true);
  EXPECT_EQ(result.calls,
            (Texts{"AddContVar(f||0..20|cuts 10|binned|role 4)", "SetBinLabels(0|'a', 'b')",
                   "AddContVar(g||-MAX..MAX|cuts 1|binned|role 4)", "SetBinLabels(1|'c', 'd')",
                   "AddContVar(h||role 4)"}));
}

TEST(MCPMMLParserFill, FieldWithTheEmptyNameTakesADiscretizeWithoutField) {
  const std::string text =
      Pmml(Field("double", "continuous", "", ""),
           TransDict("<DerivedField><Discretize/><Discretize mapMissingTo='0'>" + Bin("", kFirst) +
                     Bin("", kSecond) + "</Discretize></DerivedField>"));
  EXPECT_EQ(Fill(text, {}, true).calls, Texts{"AddContVar(||0..20|cuts 10|binned|role 4)"});
}

// Failures.

struct FailureCase {
  const char* rule;
  std::string field;
  int code;
  friend void PrintTo(const FailureCase& test, std::ostream* out) { *out << test.rule; }
};

class FillFailures : public testing::TestWithParam<FailureCase> {};

TEST_P(FillFailures, EndTheFillAndKeepWhatWasAdded) {
  const FillResult result =
      Fill(Pmml(Field("double", "continuous", "", "before") + GetParam().field + "<DataField/>"));
  EXPECT_EQ(result.status, MCStatus(GetParam().code, false)) << GetParam().rule;
  EXPECT_EQ(result.calls, Texts{"AddContVar(before||role 4)"}) << GetParam().rule;
}

INSTANTIATE_TEST_SUITE_P(
    Fields, FillFailures,
    testing::Values(FailureCase{"no name", "<DataField dataType='double' optype='continuous'/>",
                                108},
                    FailureCase{"no data type", "<DataField name='f' optype='continuous'/>", 108},
                    FailureCase{"no optype", "<DataField name='f' dataType='double'/>", 108},
                    FailureCase{"a bad data type", Field("boolean", "categorical"), 109},
                    FailureCase{"a bad data type comes before a missing optype",
                                "<DataField name='f' dataType='boolean'/>", 109},
                    FailureCase{"a missing name comes before a bad data type",
                                "<DataField dataType='boolean'/>", 108},
                    FailureCase{"a missing data type comes before a missing optype",
                                "<DataField name='f'/>", 108}));

TEST(MCPMMLParserFill, RefusalGives111AndKeepsWhatWasAdded) {
  for (const std::string& refused :
       {Field("double", "continuous", "", "g"), Field("double", "categorical", "", "g"),
        Field("string", "categorical", "", "g")}) {
    MCPMMLParser reader;
    ASSERT_TRUE(ParseText(reader, Pmml(Field("double", "continuous") + refused +
                                       Field("double", "continuous", "", "h")))
                    .IsOK());
    RecordingVarList list;
    list.refuse_at = 1;
    EXPECT_EQ(reader.FillVarList(list, {}, false), MCStatus(111, false));
    EXPECT_EQ(list.Size(), 1u);
    EXPECT_EQ(list.Declarations().size(), 2u) << "the field after the refusal is not tried";
  }
}

TEST(MCPMMLParserFill, RefusedFieldDeclaresNothing) {
  MCPMMLParser reader;
  ASSERT_TRUE(
      ParseText(reader, Pmml(Field("double", "continuous", "<Value value='9' property='missing'/>"),
                             TransDict(Binned(
                                 "f", Bin("binValue='a'", kFirst) + Bin("binValue='b'", kSecond)))))
          .IsOK());
  RecordingVarList list;
  list.refuse_at = 0;
  EXPECT_EQ(reader.FillVarList(list, {}, true), MCStatus(111, false));
  EXPECT_EQ(list.calls, Texts{"AddContVar(f||0..20|cuts 10|binned|role 4)"});
}

TEST(MCPMMLParserFill, MissingEncoderMattersOnlyIfThereIsSomethingToDeclare) {
  const std::string bins =
      TransDict(Binned("f", Bin("binValue='a'", kFirst) + Bin("binValue='b'", kSecond)));
  const std::string numbered =
      TransDict(Binned("f", Bin("binValue='0'", kFirst) + Bin("binValue='1'", kSecond)));
  const std::string missing = "<Value value='9' property='missing'/>";
  const struct {
    std::string text;
    int code;
  } cases[] = {
      {Pmml(Field("double", "continuous")), 0},
      {Pmml(Field("string", "categorical", "<Value value='a'/>")), 0},
      {Pmml(Field("string", "continuous", missing)), 0},
      {Pmml(Field("double", "continuous", missing)), 111},
      {Pmml(Field("double", "categorical", missing)), 111},
      {Pmml(Field("string", "categorical", missing)), 111},
      {Pmml(Field("double", "continuous", "<Extension name='invalidRangeLower' value='1'/>")), 111},
      {Pmml(Field("double", "continuous"), bins), 111},
      {Pmml(Field("double", "continuous"), numbered), 0},
  };
  for (const auto& [text, code] : cases) {
    MCPMMLParser reader;
    ASSERT_TRUE(ParseText(reader, text).IsOK());
    RecordingVarList list;
    list.has_encoders = false;
    EXPECT_EQ(reader.FillVarList(list, {}, true), MCStatus(code, false)) << text;
    EXPECT_EQ(list.Size(), 1u) << "the variable stays";
  }
}

TEST(MCPMMLParserFill, AsksForTheEncoderOfTheIndexThatTheListGave) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml(Field("double", "continuous",
                                           "<Value value='9' property='missing'/>") +
                                     Field("string", "categorical", "", "g")))
                  .IsOK());
  RecordingVarList list;
  list.next_index = 40;
  EXPECT_TRUE(reader.FillVarList(list, {}, false).IsOK());
  EXPECT_EQ(list.calls,
            (Texts{"AddContVar(f||role 4)", "GetEncoderAt(40)", "AddMissingValue(40|9|'')",
                   "AddCatVar(g||none|labels none|role 4)", "GetEncoderAt(41)"}));
}

TEST(MCPMMLParserFill, AppendsAtEveryCallAndLeavesTheStatusAlone) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml(Field("double", "continuous") + "<DataField/>")).IsOK());
  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, {}, false), MCStatus(108, false));
  EXPECT_EQ(reader.FillVarList(list, {}, false), MCStatus(108, false));
  EXPECT_EQ(list.Size(), 2u);
  EXPECT_EQ(reader.GetStatus(), MCStatus());
}

TEST(MCPMMLParserFill, FailedParseIsToldAgainAndTheListStays) {
  MCPMMLParser reader;
  ASSERT_EQ(ParseText(reader, "<PMML/>"), MCStatus(106, false));
  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, {}, true), MCStatus(106, false));
  EXPECT_TRUE(list.calls.empty());
}

TEST(MCPMMLParserFill, ExceptionOfTheListPasses) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml(Field("double", "continuous"))).IsOK());
  RecordingVarList list;
  list.throws_on_add = true;
  EXPECT_THROW((void)reader.FillVarList(list, {}, false), int);
  list.throws_on_add = false;
  EXPECT_TRUE(reader.FillVarList(list, {}, false).IsOK());
}

TEST(MCPMMLParserFill, NothingOfAFieldReachesTheNext) {
  const FillResult result =
      Fill(Pmml("<DataField name='f' displayName='L' dataType='double' optype='continuous'>"
                "<Value value='1' displayValue='A'/><Value value='9' property='missing' "
                "displayValue='B'/><Extension name='invalidRangeLower' value='1'/></DataField>" +
                Field("double", "categorical", "", "g") + Field("string", "categorical", "", "h") +
                Field("double", "continuous", "", "i")));
  EXPECT_EQ(result.calls,
            (Texts{"AddContVar(f|L|role 4)", "AddMissingValue(0|9|'B')",
                   "SetInvalidRange(0|1..MAX)", "AddCatVar(g||none|labels none|role 4)",
                   "AddCatVar(h||none|labels none|role 4)", "AddContVar(i||role 4)"}));
}

// The name filter.

TEST(MCPMMLParserFill, NameFilterSkipsAllOtherFieldsBadOnesIncluded) {
  const std::string text =
      Pmml("<DataField name='bad'/>" + Field("boolean", "x", "", "worse") +
           Field("double", "continuous", "", "age") + Field("double", "continuous", "", "Age"));
  const FillResult result = Fill(text, {"age"});
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, Texts{"AddContVar(age||role 4)"});
}

TEST(MCPMMLParserFill, NameFilterDoesNotExcuseAFieldWithoutName) {
  EXPECT_EQ(Fill(Pmml("<DataField dataType='double' optype='x'/>"), {"age"}).status,
            MCStatus(108, false));
}

TEST(MCPMMLParserFill, NameFilterSparesFieldsTheirBins) {
  const std::string text =
      Pmml(Field("double", "continuous") + Field("double", "continuous", "", "g"),
           TransDict(Binned("g", "")));
  EXPECT_EQ(Fill(text, {}, true).status, MCStatus(110, false));
  EXPECT_EQ(Fill(text, {"g"}, true).calls, Texts{"AddContVar(g||role 4)"});
}

TEST(MCPMMLParserFill, NameFilterKeepsDocumentOrderAndIgnoresUnknownNames) {
  const std::string text =
      Pmml(Field("double", "continuous", "", "a") + Field("double", "continuous", "", "b"));
  EXPECT_EQ(Fill(text, {"x", "b", "a", "b", ""}).calls,
            (Texts{"AddContVar(a||role 4)", "AddContVar(b||role 4)"}));
}

// The reader looks names up in an index; the plain search is what it has to agree with.
TEST(MCPMMLParserFill, NameFilterAgreesWithTheSearchInAList) {
  const Texts fields = {"", "a", "ab", "abc", "\xC3\xA9", "A", "a b", "\xE5\xB9\xB4"};
  const std::vector<Texts> filters = {
      {""},         {"a"},    {"a", "abc"},        {std::string("ab\0c", 4)},
      {"\xC3\xA9"}, {"\xC3"}, {"zz", "\xFF", "A"}, {"e\xCC\x81"},
      {" a b"},     fields};
  std::string dictionary;
  for (const std::string& field : fields) dictionary += Field("double", "continuous", "", field);

  for (const Texts& filter : filters) {
    Texts expected;
    MCPMMLParser platform;  // for the search
    for (const std::string& field : fields) {
      const auto units = MCXPrsUtil::ToUTF16(field.c_str());
      if (MCXPrsUtil::FindXStrInList(units.data(), filter) == 0xFFFFFFFFu) continue;
      expected.push_back("AddContVar(" + field + "||role 4)");
    }
    EXPECT_EQ(Fill(Pmml(dictionary), filter).calls, expected) << filter[0];
  }
}

TEST(MCPMMLParserFill, WideDictionaryWithLongFilterAndManyBins) {
  constexpr int kFields = 20000;
  std::string fields;
  std::string bins;
  Texts names;
  for (int i = 0; i < kFields; ++i) {
    const std::string name = "field_" + std::to_string(i);
    fields += Field("double", "continuous", "", name);
    bins += Binned("field_" + std::to_string(kFields - 1 - i),
                   Bin("binValue='a'", kFirst) + Bin("binValue='b'", kSecond));
    names.push_back("field_" + std::to_string(2 * i));
  }
  const FillResult result = Fill(Pmml(fields, TransDict(bins)), names, true);
  EXPECT_TRUE(result.status.IsOK());
  ASSERT_EQ(result.calls.size(), static_cast<std::size_t>(kFields));  // add and labels of each half
  EXPECT_EQ(result.calls[2], "AddContVar(field_2||0..20|cuts 10|binned|role 4)");
}

}  // namespace
