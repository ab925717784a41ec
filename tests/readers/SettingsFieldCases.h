// What holds alike for the data fields and for the derived fields of a settings document: rows that
// the tests of both fills run through.
#ifndef MCXPRSUTIL_TESTS_READERS_SETTINGSFIELDCASES_H
#define MCXPRSUTIL_TESTS_READERS_SETTINGSFIELDCASES_H

#include <ostream>
#include <string>
#include <vector>

#include "RecordingVarList.h"
#include "SettingsText.h"
#include "mcxprsutil/MCSettingsParser.h"

// The two kinds of fields, and the fill of each.
struct DataFields {
  static constexpr const char* kElement = "DataField";
  static std::string Document(const std::string& fields) { return Pmml(fields, BuildTask("")); }
  static MCCommon::MCStatus Fill(const MCXPrsUtil::MCSettingsParser& reader,
                                 MCMTD_NAMESPACE::MCVarList& list) {
    return reader.FillVarList(list, false);
  }
};

struct DerivedFields {
  static constexpr const char* kElement = "DerivedField";
  static std::string Document(const std::string& fields) {
    return Pmml("", TransDict(fields) + BuildTask(""));
  }
  static MCCommon::MCStatus Fill(const MCXPrsUtil::MCSettingsParser& reader,
                                 MCMTD_NAMESPACE::MCVarList& list) {
    return reader.FillTransDict(list);
  }
};

// In the rows below an element "FIELD" stands for either.
template <class Kind>
std::string OfKind(std::string text) {
  const std::string placeholder = "FIELD";
  for (std::size_t at = text.find(placeholder); at != std::string::npos;
       at = text.find(placeholder, at)) {
    text.replace(at, placeholder.size(), Kind::kElement);
  }
  return text;
}

inline std::string SettingsField(const std::string& dataType, const std::string& optype,
                                 const std::string& children = "", const std::string& name = "f") {
  return "<FIELD name='" + name + "' dataType='" + dataType + "' optype='" + optype + "'>" +
         children + "</FIELD>";
}

struct SettingsFillResult {
  MCCommon::MCStatus status;
  std::vector<std::string> calls;  // without GetEncoderAt and GetVarAt
  std::vector<std::string> all_calls;
};

inline SettingsFillResult ResultOf(const MCCommon::MCStatus& status, const RecordingVarList& list) {
  SettingsFillResult result = {status, {}, list.calls};
  for (const std::string& call : list.Declarations()) {
    if (call.rfind("GetVarAt", 0) != 0) result.calls.push_back(call);
  }
  return result;
}

// Fills `list` with the given fields.
template <class Kind>
SettingsFillResult FillSettings(const std::string& fields, RecordingVarList& list) {
  MCXPrsUtil::MCSettingsParser reader;
  EXPECT_TRUE(ParseText(reader, Kind::Document(OfKind<Kind>(fields))).IsOK());
  return ResultOf(Kind::Fill(reader, list), list);
}

template <class Kind>
SettingsFillResult FillSettings(const std::string& fields) {
  RecordingVarList list;
  return FillSettings<Kind>(fields, list);
}

// The calls that a good document gives.
struct SettingsFieldCase {
  const char* rule;
  std::string fields;
  std::vector<std::string> calls;
  friend void PrintTo(const SettingsFieldCase& test, std::ostream* out) { *out << test.rule; }
};

// A bad field, and the status that it gives.
struct SettingsFailureCase {
  const char* rule;
  std::string field;
  int code;
  friend void PrintTo(const SettingsFailureCase& test, std::ostream* out) { *out << test.rule; }
};

inline std::vector<SettingsFieldCase> HeadingCases() {
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

inline std::vector<SettingsFieldCase> DataTypeCases() {
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

inline std::vector<SettingsFieldCase> ValueCases() {
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

inline std::vector<SettingsFieldCase> InvalidRangeCases() {
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

// The intervals that give a range, as attributes; empty when the interval is refused.
struct MarginCase {
  const char* rule;
  const char* margins;
  const char* range;
};

inline std::vector<MarginCase> MarginCases() {
  return {
      {"both margins", "leftMargin='-1.5' rightMargin='9'", "-1.5..9"},
      {"the closure does not matter", "closure='x' leftMargin='0' rightMargin='1'", "0..1"},
      {"no left margin: the smallest positive normal double", "rightMargin='9'", "MIN..9"},
      {"no right margin: the largest double", "leftMargin='-5'", "-5..MAX"},
      {"no margin", "", "MIN..MAX"},
      {"equal margins", "leftMargin='3' rightMargin='3'", "3..3"},
      {"blanks around", "leftMargin=' 1 ' rightMargin=' 2 '", "1..2"},
      {"NaN is the missing value", "leftMargin='NaN' rightMargin='2'", "missing..2"},
      {"NaN twice", "leftMargin='NaN' rightMargin='NaN'", "missing..missing"},
      {"NaN, no right margin", "leftMargin='NaN'", "missing..MAX"},
      {"the lowest double below NaN", "leftMargin='-1.7976931348623157e308' rightMargin='NaN'",
       "-MAX..missing"},
      {"the missing value is less than any ordinary number", "leftMargin='-5' rightMargin='NaN'",
       ""},
      {"no left margin and a right NaN", "rightMargin='NaN'", ""},
      {"inverted", "leftMargin='2' rightMargin='1'", ""},
      {"no left margin is above zero", "rightMargin='0'", ""},
      {"no left margin is above all negative numbers", "rightMargin='-5'", ""},
      {"left no number", "leftMargin='x' rightMargin='1'", ""},
      {"left empty", "leftMargin='' rightMargin='1'", ""},
      {"left infinite", "leftMargin='-INF' rightMargin='1'", ""},
      {"right no number", "leftMargin='1' rightMargin='x'", ""},
      {"right empty", "leftMargin='1' rightMargin=''", ""},
      {"right infinite", "leftMargin='1' rightMargin='INF'", ""},
      {"right overflowing", "leftMargin='1' rightMargin='1e400'", ""},
  };
}

// Rows from the intervals: `before` and `after` are what stands around the "Interval".
inline std::vector<SettingsFieldCase> RangeCases(const std::string& before = "",
                                                 const std::string& after = "") {
  std::vector<SettingsFieldCase> cases;
  for (const auto& [rule, margins, range] : MarginCases()) {
    if (*range == '\0') continue;
    const std::string interval = before + "<Interval " + margins + "/>" + after;
    cases.push_back(
        {rule,
         SettingsField("double", "continuous", interval),
         {"AddContVar(f||" + std::string(range) + "|role 4|false -1)", "SetDataType(0|2)"}});
  }
  return cases;
}

inline std::vector<SettingsFailureCase> RangeFailures(const std::string& before = "",
                                                      const std::string& after = "") {
  std::vector<SettingsFailureCase> cases;
  for (const auto& [rule, margins, range] : MarginCases()) {
    if (*range != '\0') continue;
    const std::string interval = before + "<Interval " + margins + "/>" + after;
    cases.push_back({rule, SettingsField("double", "continuous", interval), 109});
    cases.push_back({rule, SettingsField("integer", "categorical", interval), 109});
  }
  return cases;
}

inline std::vector<SettingsFieldCase> IntervalCases() {
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

inline std::vector<SettingsFailureCase> HeadingFailures() {
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

#endif  // MCXPRSUTIL_TESTS_READERS_SETTINGSFIELDCASES_H
