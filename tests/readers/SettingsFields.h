// The fields of settings documents, as data fields and as derived fields, and the fills that read
// them.
#ifndef MCXPRSUTIL_TESTS_READERS_SETTINGSFIELDS_H
#define MCXPRSUTIL_TESTS_READERS_SETTINGSFIELDS_H

#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "RecordingVarList.h"
#include "SettingsText.h"
#include "mcxprsutil/MCSettingsParser.h"

// A kind of fields, and the fill that reads it.
struct FieldKind {
  const char* element;
  std::string (*document)(const std::string& fields);
  MCCommon::MCStatus (*fill)(const MCXPrsUtil::MCSettingsParser& reader,
                             MCMTD_NAMESPACE::MCVarList& list);
  friend void PrintTo(const FieldKind& kind, std::ostream* out) { *out << kind.element; }
};

inline constexpr FieldKind kDataFields = {
    "DataField", [](const std::string& fields) { return Pmml(fields, BuildTask("")); },
    [](const MCXPrsUtil::MCSettingsParser& reader, MCMTD_NAMESPACE::MCVarList& list) {
      return reader.FillVarList(list, false);
    }};

inline constexpr FieldKind kDerivedFields = {
    "DerivedField",
    [](const std::string& fields) { return Pmml("", TransDict(fields) + BuildTask("")); },
    [](const MCXPrsUtil::MCSettingsParser& reader, MCMTD_NAMESPACE::MCVarList& list) {
      return reader.FillTransDict(list);
    }};

// In the texts of fields below an element "FIELD" stands for either kind.
inline std::string OfKind(const FieldKind& kind, std::string text) {
  static constexpr char kPlaceholder[] = "FIELD";
  for (std::size_t at = text.find(kPlaceholder); at != std::string::npos;
       at = text.find(kPlaceholder, at)) {
    text.replace(at, std::strlen(kPlaceholder), kind.element);
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

// Parses a document with the given fields and fills `list`.
inline SettingsFillResult FillSettings(const FieldKind& kind, const std::string& fields,
                                       RecordingVarList& list) {
  MCXPrsUtil::MCSettingsParser reader;
  EXPECT_TRUE(ParseText(reader, kind.document(OfKind(kind, fields))).IsOK());
  return ResultOf(kind.fill(reader, list), list);
}

inline SettingsFillResult FillSettings(const FieldKind& kind, const std::string& fields) {
  RecordingVarList list;
  return FillSettings(kind, fields, list);
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

// Good fields: the status is OK, and these are the calls.
inline void ExpectCalls(const FieldKind& kind, const SettingsFieldCase& test) {
  const SettingsFillResult result = FillSettings(kind, test.fields);
  EXPECT_TRUE(result.status.IsOK()) << test.rule << ": " << result.status.GetCode();
  EXPECT_EQ(result.calls, test.calls) << test.rule;
}

// A bad field among others: what was added before it stays, and nothing behind it is looked at.
inline void ExpectFailure(const FieldKind& kind, const SettingsFailureCase& test) {
  const SettingsFillResult result =
      FillSettings(kind, SettingsField("double", "continuous", "", "before") + test.field +
                             "<FIELD/>" + SettingsField("double", "continuous", "", "after"));
  EXPECT_EQ(result.status, Error(test.code)) << test.rule;
  EXPECT_EQ(result.calls, (std::vector<std::string>{"AddContVar(before||-MAX..MAX|role 4|false -1)",
                                                    "SetDataType(0|2)"}))
      << test.rule;
}

#endif  // MCXPRSUTIL_TESTS_READERS_SETTINGSFIELDS_H
