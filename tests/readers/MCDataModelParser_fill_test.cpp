// FillVarList of the data model reader: which calls the variable list gets.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "DataModelText.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCDataModelParser;
using Texts = std::vector<std::string>;

const char kNoValues[] = "AddCatVar(f||none|labels none|role 0)";

struct ModelFillCase {
  const char* rule;
  std::string fields;
  Texts calls;
  ModelFlags flags = {};
  friend void PrintTo(const ModelFillCase& test, std::ostream* out) { *out << test.rule; }
};

class ModelFillVarList : public testing::TestWithParam<ModelFillCase> {};

TEST_P(ModelFillVarList, MakesTheCalls) {
  const ModelFill result = FillModel(DataModel(GetParam().fields), GetParam().flags);
  EXPECT_TRUE(result.status.IsOK()) << GetParam().rule << ": " << result.status.GetCode();
  EXPECT_EQ(result.calls, GetParam().calls) << GetParam().rule;
}

// A "Values" with one "Value" for each argument, its attributes as written.
template <class... Attributes>
std::string Values(const Attributes&... attributes) {
  std::string values;
  ((values += std::string("<Value ") + attributes + "/>"), ...);
  return "<Values>" + values + "</Values>";
}

INSTANTIATE_TEST_SUITE_P(
    Heading, ModelFillVarList,
    testing::Values(
        ModelFillCase{"no field", "", {}},
        ModelFillCase{"only other nodes", " x<!-- c --><field/><Header/>", {}},
        ModelFillCase{"a label",
                      ModelField("real", "continuous", "", "displayLabel='A label'"),
                      {"AddContVar(f|A label|role 0)"}},
        ModelFillCase{"an empty name and an empty label",
                      ModelField("real", "continuous", "", "displayLabel=''", ""),
                      {"AddContVar(||role 0)"}},
        ModelFillCase{"texts beyond ASCII",
                      ModelField("string", "nominal", Values("value='\xE5\xB9\xB4'"),
                                 "displayLabel='K&#246;rper'", "\xF0\x9D\x84\x9E"),
                      {"AddCatVar(\xF0\x9D\x84\x9E|K\xC3\xB6rper|'\xE5\xB9\xB4'|role 0)"}},
        ModelFillCase{"document order, other nodes between",
                      ModelField("real", "continuous", "", "", "z") + " <!-- c --><x/>" +
                          ModelField("string", "nominal", "", "", "a"),
                      {"AddContVar(z||role 0)", "AddCatVar(a||none|labels none|role 0)"}},
        ModelFillCase{"the same name twice is the list's business",
                      ModelField("real", "continuous") + ModelField("real", "continuous"),
                      {"AddContVar(f||role 0)", "AddContVar(f||role 0)"}},
        ModelFillCase{
            "a nested field is none", "<x>" + ModelField("real", "continuous") + "</x>", {}}));

INSTANTIATE_TEST_SUITE_P(
    Measure, ModelFillVarList,
    testing::Values(
        ModelFillCase{"continuous", ModelField("real", "continuous"), {"AddContVar(f||role 0)"}},
        ModelFillCase{"ordinal", ModelField("string", "ordinal"), {kNoValues}},
        ModelFillCase{"nominal", ModelField("string", "nominal"), {kNoValues}},
        ModelFillCase{"any word", ModelField("string", "whatever"), {kNoValues}},
        ModelFillCase{"another case", ModelField("string", "Continuous"), {kNoValues}},
        ModelFillCase{"blanks count", ModelField("string", " continuous"), {kNoValues}},
        ModelFillCase{"empty", ModelField("string", ""), {kNoValues}},
        ModelFillCase{
            "continuous text", ModelField("string", "continuous"), {"AddContVar(f||role 0)"}}));

INSTANTIATE_TEST_SUITE_P(
    CategoryValues, ModelFillVarList,
    testing::Values(
        ModelFillCase{"numbers; the encoder is asked for and left alone",
                      ModelField("integer", "nominal", Values("value='1'", "value='2.5'")),
                      {"AddCatVar(f||1, 2.5|role 0)", "GetEncoderAt(0)"}},
        ModelFillCase{
            "numbers with labels",
            ModelField("integer", "nominal",
                       Values("value='1' displayLabel='M'", "displayLabel='F' value='2'")),
            {"AddCatVar(f||1, 2|labels 'M', 'F'|role 0)", "GetEncoderAt(0)"}},
        ModelFillCase{"no value at all has as many labels",
                      ModelField("real", "nominal"),
                      {kNoValues, "GetEncoderAt(0)"}},
        ModelFillCase{"three values, one of them no number, three labels: the labels are dropped",
                      ModelField("real", "ordinal",
                                 Values("value='1' displayLabel='A'", "value='x' displayLabel='B'",
                                        "value='3' displayLabel='C'")),
                      {"AddCatVar(f||1, 3|role 0)", "GetEncoderAt(0)"}},
        ModelFillCase{
            "labels pair by position alone, even with the wrong value",
            ModelField("real", "nominal", Values("value='x' displayLabel='X'", "value='1'")),
            {"AddCatVar(f||1|labels 'X'|role 0)", "GetEncoderAt(0)"}},
        ModelFillCase{"infinities are not read, NaN is the missing value",
                      ModelField("real", "nominal",
                                 Values("value='INF'", "value='-INF'", "value='NaN'",
                                        "value='1e400'", "value=''")),
                      {"AddCatVar(f||missing|role 0)", "GetEncoderAt(0)"}},
        ModelFillCase{"blanks around a number",
                      ModelField("real", "nominal", Values("value=' 1e2 '")),
                      {"AddCatVar(f||100|role 0)", "GetEncoderAt(0)"}},
        ModelFillCase{"no sorting, no removal of duplicates",
                      ModelField("real", "nominal", Values("value='2'", "value='1'", "value='2'")),
                      {"AddCatVar(f||2, 1, 2|role 0)", "GetEncoderAt(0)"}},
        ModelFillCase{"texts, empty ones too; no encoder is asked for",
                      ModelField("string", "nominal", Values("value='a'", "value=''")),
                      {"AddCatVar(f||'a', ''|role 0)"}},
        ModelFillCase{"texts with labels",
                      ModelField("string", "nominal",
                                 Values("value='a' displayLabel='A'", "value='b' displayLabel=''")),
                      {"AddCatVar(f||'a', 'b'|labels 'A', ''|role 0)"}},
        ModelFillCase{"more labels than texts are dropped",
                      ModelField("string", "nominal",
                                 Values("value='a' displayLabel='A'", "displayLabel='B'")),
                      {"AddCatVar(f||'a'|role 0)"}},
        ModelFillCase{
            "fewer labels than texts are dropped",
            ModelField("string", "nominal", Values("value='a' displayLabel='A'", "value='b'")),
            {"AddCatVar(f||'a', 'b'|role 0)"}},
        ModelFillCase{"a value without attributes is none",
                      ModelField("string", "nominal",
                                 "<Values><Value/><Value>b</Value><Value value='a'/></Values>"),
                      {"AddCatVar(f||'a'|role 0)"}},
        ModelFillCase{"a value with another attribute has neither value nor label",
                      ModelField("string", "nominal", Values("x='1'", "Value='b'", "value='a'")),
                      {"AddCatVar(f||'a'|role 0)"}},
        ModelFillCase{"all Values elements count, whatever is between",
                      ModelField("string", "nominal",
                                 Values("value='a'") + "x<Range minValue='1'/><Values/>" +
                                     Values("value='b'")),
                      {"AddCatVar(f||'a', 'b'|role 0)"}},
        ModelFillCase{
            "other nodes are passed over",
            ModelField("string", "nominal",
                       "<Value value='x'/><values><Value value='x'/></values><Values>t<!-- c -->"
                       "<value value='x'/><x><Value value='x'/></x><Value value='a'/></Values>"),
            {"AddCatVar(f||'a'|role 0)"}},
        ModelFillCase{"property means nothing here",
                      ModelField("string", "nominal", Values("value='a' property='missing'")),
                      {"AddCatVar(f||'a'|role 0)"}},
        ModelFillCase{"values of a continuous field do not matter",
                      ModelField("real", "continuous", Values("value='1' displayLabel='A'")),
                      {"AddContVar(f||role 0)"}}));

constexpr ModelFlags kRange = {false, true, 2};

INSTANTIATE_TEST_SUITE_P(
    Ranges, ModelFillVarList,
    testing::Values(
        ModelFillCase{"count 2",
                      ModelField("real", "continuous", "<Range minValue='-1.5' maxValue='9'/>"),
                      {"AddContVar(f||-1.5..9|role 0|true 2)"},
                      kRange},
        ModelFillCase{"a large count",
                      ModelField("date", "continuous", "<Range minValue='1' maxValue='9'/>"),
                      {"AddContVar(f||1..9|role 0|true 2147483647)"},
                      {false, true, 2147483647}},
        ModelFillCase{"count 1",
                      ModelField("real", "continuous", "<Range minValue='1' maxValue='9'/>"),
                      {"AddContVar(f||role 0)"},
                      {false, true, 1}},
        ModelFillCase{"a negative count",
                      ModelField("real", "continuous"),
                      {"AddContVar(f||role 0)"},
                      {false, true, -5}},
        ModelFillCase{"a count without the flag",
                      ModelField("real", "continuous", "<Range minValue='1' maxValue='9'/>"),
                      {"AddContVar(f||role 0)"},
                      {false, false, 2}},
        ModelFillCase{"no Range",
                      ModelField("real", "continuous"),
                      {"AddContVar(f||-MAX..MAX|role 0|true 2)"},
                      kRange},
        ModelFillCase{"one bound",
                      ModelField("real", "continuous", "<Range maxValue='9'/>"),
                      {"AddContVar(f||-MAX..9|role 0|true 2)"},
                      kRange},
        ModelFillCase{"each Range overwrites the bounds that it has",
                      ModelField("real", "continuous",
                                 "<Range minValue='1' maxValue='9'/><Range minValue='2'/>"
                                 "<Range maxValue='x' minValue=''/>"),
                      {"AddContVar(f||2..9|role 0|true 2)"},
                      kRange},
        ModelFillCase{"bounds that are no numbers",
                      ModelField("real", "continuous", "<Range minValue='-INF' maxValue='1e999'/>"),
                      {"AddContVar(f||-MAX..MAX|role 0|true 2)"},
                      kRange},
        ModelFillCase{"NaN is the missing value",
                      ModelField("real", "continuous", "<Range minValue='NaN' maxValue='1'/>"),
                      {"AddContVar(f||missing..1|role 0|true 2)"},
                      kRange},
        ModelFillCase{"an inverted range is the list's business",
                      ModelField("real", "continuous", "<Range minValue='9' maxValue='1'/>"),
                      {"AddContVar(f||9..1|role 0|true 2)"},
                      kRange},
        ModelFillCase{"a text field has none",
                      ModelField("string", "continuous", "<Range minValue='1' maxValue='9'/>"),
                      {"AddContVar(f||-MAX..MAX|role 0|true 2)"},
                      kRange},
        ModelFillCase{"a range of a categorical field is not passed",
                      ModelField("integer", "nominal",
                                 "<Range minValue='1' maxValue='9'/>" + Values("value='1'")),
                      {"AddCatVar(f||1|role 0)", "GetEncoderAt(0)"},
                      kRange},
        ModelFillCase{"a range within Values is none",
                      ModelField("real", "continuous", "<Values><Range minValue='1'/></Values>"),
                      {"AddContVar(f||-MAX..MAX|role 0|true 2)"},
                      kRange},
        ModelFillCase{
            "the next field starts anew",
            ModelField("real", "continuous", "<Range minValue='1' maxValue='9'/>") +
                ModelField("real", "continuous", "", "", "g"),
            {"AddContVar(f||1..9|role 0|true 2)", "AddContVar(g||-MAX..MAX|role 0|true 2)"},
            kRange}));

struct RoleCase {
  const char* attribute;
  int role;           // without the input flag
  int declared_role;  // with it
  friend void PrintTo(const RoleCase& test, std::ostream* out) { *out << test.attribute; }
};

class ModelRoles : public testing::TestWithParam<RoleCase> {};

// Of a categorical field, which takes every role.
TEST_P(ModelRoles, AreHandedOn) {
  for (const bool flag : {false, true}) {
    const int role = flag ? GetParam().declared_role : GetParam().role;
    const std::string fields =
        ModelField("string", "nominal", "", GetParam().attribute) +
        ModelField("integer", "nominal", "<Values><Value value='1'/></Values>",
                   GetParam().attribute, "g");
    EXPECT_EQ(FillModel(DataModel(fields), {flag, false, 0}).calls,
              (Texts{"AddCatVar(f||none|labels none|role " + std::to_string(role) + ")",
                     "AddCatVar(g||1|role " + std::to_string(role) + ")", "GetEncoderAt(1)"}));
  }
}

TEST_P(ModelRoles, AreHandedOnByContinuousFieldsUnlessTheyAreTheWeight) {
  for (const bool flag : {false, true}) {
    const int number = flag ? GetParam().declared_role : GetParam().role;
    const std::string role = "role " + std::to_string(number);
    const std::string text =
        DataModel(ModelField("real", "continuous", "<Range minValue='0' maxValue='1'/>",
                             std::string("displayLabel='L' ") + GetParam().attribute));
    const bool weight = number == 3;
    EXPECT_EQ(FillModel(text, {flag, false, 0}).calls,
              Texts{weight ? "SetWeightVar(f|L|2)" : "AddContVar(f|L|" + role + ")"});
    EXPECT_EQ(FillModel(text, {flag, true, 5}).calls,
              Texts{weight ? "SetWeightVar(f|L|2)" : "AddContVar(f|L|0..1|" + role + "|true 5)"})
        << "with a range";
  }
}

INSTANTIATE_TEST_SUITE_P(
    Words, ModelRoles,
    testing::Values(RoleCase{"", 0, 0}, RoleCase{"role=''", 0, 0}, RoleCase{"role='input'", 4, 5},
                    RoleCase{"role='target'", 2, 2}, RoleCase{"role='freqWeight'", 3, 3},
                    RoleCase{"role='Input'", 0, 0}, RoleCase{"role='freqweight'", 0, 0},
                    RoleCase{"role=' target'", 0, 0}, RoleCase{"role='both'", 0, 0}));

struct StorageCase {
  const char* word;
  char kind;  // 't' text, 'n' numeric, '-' refused
  friend void PrintTo(const StorageCase& test, std::ostream* out) { *out << test.word; }
};

class ModelStorages : public testing::TestWithParam<StorageCase> {};

TEST_P(ModelStorages, AreTextNumericOrRefused) {
  const auto [word, kind] = GetParam();
  const ModelFill result =
      FillModel(DataModel(ModelField(word, "nominal", "<Values><Value value='1'/></Values>")));
  EXPECT_EQ(result.status, kind == '-' ? MCStatus(109, false) : MCStatus());
  const Texts calls = kind == 't'   ? Texts{"AddCatVar(f||'1'|role 0)"}
                      : kind == 'n' ? Texts{"AddCatVar(f||1|role 0)", "GetEncoderAt(0)"}
                                    : Texts{};
  EXPECT_EQ(result.calls, calls);
}

INSTANTIATE_TEST_SUITE_P(Words, ModelStorages,
                         testing::Values(StorageCase{"string", 't'}, StorageCase{"integer", 'n'},
                                         StorageCase{"real", 'n'}, StorageCase{"date", 'n'},
                                         StorageCase{"time", 'n'}, StorageCase{"timestamp", 'n'},
                                         StorageCase{"", '-'}, StorageCase{"String", '-'},
                                         StorageCase{"double", '-'}, StorageCase{"float", '-'},
                                         StorageCase{"boolean", '-'}, StorageCase{"dateTime", '-'},
                                         StorageCase{"real ", '-'}, StorageCase{"times", '-'},
                                         StorageCase{"tim", '-'}));

// Failures.

struct ModelFailureCase {
  const char* rule;
  std::string field;
  int code;
  friend void PrintTo(const ModelFailureCase& test, std::ostream* out) { *out << test.rule; }
};

class ModelFillFailures : public testing::TestWithParam<ModelFailureCase> {};

TEST_P(ModelFillFailures, EndTheFillAndKeepWhatWasAdded) {
  const ModelFill result =
      FillModel(DataModel(ModelField("real", "continuous", "", "", "before") + GetParam().field +
                          "<Field/>" + ModelField("real", "continuous", "", "", "after")));
  EXPECT_EQ(result.status, MCStatus(GetParam().code, false)) << GetParam().rule;
  EXPECT_EQ(result.calls, Texts{"AddContVar(before||role 0)"}) << GetParam().rule;
}

INSTANTIATE_TEST_SUITE_P(
    Fields, ModelFillFailures,
    testing::Values(
        ModelFailureCase{"no name", "<Field storage='real' measure='continuous'/>", 108},
        ModelFailureCase{"no storage", "<Field name='f' measure='continuous'/>", 108},
        ModelFailureCase{"no measure", "<Field name='f' storage='real'/>", 108},
        ModelFailureCase{"a bad storage", ModelField("boolean", "continuous"), 109},
        ModelFailureCase{"a bad storage comes before a missing measure",
                         "<Field name='f' storage='boolean'/>", 109},
        ModelFailureCase{"a missing name comes before a bad storage", "<Field storage='boolean'/>",
                         108},
        ModelFailureCase{"the second of two bad fields is not looked at",
                         "<Field name='f' measure='x'/>" + ModelField("boolean", "x"), 108}));

TEST(MCDataModelParserFill, RefusalOfEveryKindGives111AndEndsTheFill) {
  const std::string label = "<Values><Value value='1' displayLabel='A'/></Values>";
  const std::string bare = "<Values><Value value='1'/></Values>";
  const struct {
    std::string field;
    bool range;
  } cases[] = {
      {ModelField("real", "continuous"), false},
      {ModelField("real", "continuous"), true},
      {ModelField("real", "continuous", "", "role='freqWeight'"), false},
      {ModelField("real", "nominal", label), false},
      {ModelField("real", "nominal", bare), false},
      {ModelField("string", "nominal", label), false},
      {ModelField("string", "nominal", bare), false},
  };
  for (const auto& [field, range] : cases) {
    MCDataModelParser reader;
    ASSERT_TRUE(reader
                    .ParseToDOM(DataModel(ModelField("string", "nominal", "", "", "before") +
                                          field + ModelField("real", "continuous", "", "", "z")))
                    .IsOK());
    RecordingVarList list;
    list.refuse_at = 1;
    EXPECT_EQ(reader.FillVarList(list, false, range, 2), MCStatus(111, false)) << field;
    EXPECT_EQ(list.Size(), 1u);
    EXPECT_EQ(list.calls.size(), 2u) << "no encoder is asked for, no other field is tried";
  }
}

TEST(MCDataModelParserFill, AsksForTheEncoderOfTheIndexThatTheListGaveAndNeedsNone) {
  MCDataModelParser reader;
  ASSERT_TRUE(reader.ParseToDOM(DataModel(ModelField("real", "nominal"))).IsOK());
  RecordingVarList list;
  list.next_index = 40;
  list.has_encoders = false;
  EXPECT_TRUE(reader.FillVarList(list, false, false, 0).IsOK());
  EXPECT_EQ(list.calls, (Texts{kNoValues, "GetEncoderAt(40)"}));
}

TEST(MCDataModelParserFill, AppendsAtEveryCallAndLeavesTheStatusAlone) {
  MCDataModelParser reader;
  ASSERT_TRUE(reader.ParseToDOM(DataModel(ModelField("real", "continuous") + "<Field/>")).IsOK());
  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, false, false, 0), MCStatus(108, false));
  EXPECT_EQ(reader.FillVarList(list, false, false, 0), MCStatus(108, false));
  EXPECT_EQ(list.Size(), 2u);
  EXPECT_EQ(reader.GetStatus(), MCStatus());
}

TEST(MCDataModelParserFill, ExceptionOfTheListPasses) {
  MCDataModelParser reader;
  ASSERT_TRUE(reader.ParseToDOM(DataModel(ModelField("real", "continuous"))).IsOK());
  RecordingVarList list;
  list.throws_on_add = true;
  EXPECT_THROW((void)reader.FillVarList(list, false, false, 0), int);
  list.throws_on_add = false;
  EXPECT_TRUE(reader.FillVarList(list, false, false, 0).IsOK());
}

TEST(MCDataModelParserFill, NothingOfAFieldReachesTheNext) {
  const ModelFill result = FillModel(DataModel(
      ModelField("real", "nominal", "<Values><Value value='1' displayLabel='A'/></Values>",
                 "displayLabel='L' role='target'") +
      ModelField("real", "nominal", "", "", "g") +
      ModelField("string", "nominal", "<Values><Value value='a'/></Values>", "", "h") +
      ModelField("string", "nominal", "", "", "i") +
      ModelField("real", "continuous", "", "", "j")));
  EXPECT_EQ(
      result.calls,
      (Texts{"AddCatVar(f|L|1|labels 'A'|role 2)", "GetEncoderAt(0)",
             "AddCatVar(g||none|labels none|role 0)", "GetEncoderAt(1)", "AddCatVar(h||'a'|role 0)",
             "AddCatVar(i||none|labels none|role 0)", "AddContVar(j||role 0)"}));
}

TEST(MCDataModelParserFill, FillsTheRealList) {
  MCDataModelParser reader;
  ASSERT_TRUE(
      reader
          .ParseToDOM(DataModel(ModelField("integer", "nominal",
                                           "<Values><Value value='1' displayLabel='A'/></Values>",
                                           "role='input'", "a") +
                                ModelField("real", "continuous", "", "role='freqWeight'", "w") +
                                ModelField("real", "continuous", "", "role='freqWeight'", "v")))
          .IsOK());
  MCMTD_NAMESPACE::MCVarList list;
  EXPECT_EQ(reader.FillVarList(list, true, false, 0), MCStatus(111, false)) << "a second weight";
  ASSERT_EQ(list.Size(), 2u);
  EXPECT_EQ(list.GetVarAt(0)->GetKind(), 2);
  EXPECT_EQ(list.GetVarAt(0)->GetRole(), MCMTD_NAMESPACE::IMCVariable::kRoleDeclaredInput);
  EXPECT_EQ(list.GetVarAt(0)->GetCategorySet()->GetValueText(0), "1");
  EXPECT_EQ(list.GetVarAt(1)->GetRole(), MCMTD_NAMESPACE::IMCVariable::kRoleFrequencyWeight);
}

}  // namespace
