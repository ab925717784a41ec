// Small PMML documents, and what the reader makes of them.
#ifndef MCXPRSUTIL_TESTS_READERS_PMMLTEXT_H
#define MCXPRSUTIL_TESTS_READERS_PMMLTEXT_H

#include <sstream>
#include <string>
#include <vector>

#include "RecordingVarList.h"
#include "mcxprsutil/MCPMMLParser.h"

// A document with the given fields and, unless it is empty, whatever follows the dictionary.
inline std::string Pmml(const std::string& fields, const std::string& rest = "") {
  return "<PMML version=\"4.3\"><Header/><DataDictionary>" + fields + "</DataDictionary>" + rest +
         "</PMML>";
}

inline std::string TransDict(const std::string& content) {
  return "<TransformationDictionary>" + content + "</TransformationDictionary>";
}

// A derived field whose "Discretize" bins `field`.
inline std::string Binned(const std::string& field, const std::string& bins) {
  return "<DerivedField name=\"" + field + "_bin\"><Discretize field=\"" + field + "\">" + bins +
         "</Discretize></DerivedField>";
}

// One bin; margins and value are attributes as written, e.g. R"(leftMargin="0")".
inline std::string Bin(const std::string& value, const std::string& margins) {
  return "<DiscretizeBin " + value + "><Interval closure=\"closedOpen\" " + margins +
         "/></DiscretizeBin>";
}

inline MCCommon::MCStatus ParseText(MCXPrsUtil::MCPMMLParser& reader, const std::string& text) {
  std::istringstream in(text);
  return reader.ParseToDOM(in);
}

struct FillResult {
  MCCommon::MCStatus status;
  std::vector<std::string> calls;  // without GetEncoderAt
  std::vector<std::string> all_calls;
};

// Parses `text` and fills a list from it; a failed parse shows as its status.
inline FillResult Fill(const std::string& text, const std::vector<std::string>& names = {},
                       bool bins = false) {
  MCXPrsUtil::MCPMMLParser reader;
  RecordingVarList list;
  if (MCCommon::MCStatus status = ParseText(reader, text); !status.IsOK()) return {status, {}, {}};
  const MCCommon::MCStatus status = reader.FillVarList(list, names, bins);
  return {status, list.Declarations(), list.calls};
}

#endif  // MCXPRSUTIL_TESTS_READERS_PMMLTEXT_H
