// Small data models, and what the reader makes of them.
#ifndef MCXPRSUTIL_TESTS_READERS_DATAMODELTEXT_H
#define MCXPRSUTIL_TESTS_READERS_DATAMODELTEXT_H

#include <string>
#include <vector>

#include "RecordingVarList.h"
#include "mcxprsutil/MCDataModelParser.h"

// A document with the given fields.
inline std::string DataModel(const std::string& fields) {
  return "<DataModel><Fields>" + fields + "</Fields></DataModel>";
}

// A field; `rest` is more attributes, as written.
inline std::string ModelField(const std::string& storage, const std::string& measure,
                              const std::string& children = "", const std::string& rest = "",
                              const std::string& name = "f") {
  return "<Field name=\"" + name + "\" storage=\"" + storage + "\" measure=\"" + measure + "\" " +
         rest + ">" + children + "</Field>";
}

// What the caller asks of a fill.
struct ModelFlags {
  bool input_role = false;
  bool range = false;
  int range_count = 0;
};

struct ModelFill {
  MCCommon::MCStatus status;
  std::vector<std::string> calls;
};

// Parses `text` and fills a list from it; a failed parse shows as its status.
inline ModelFill FillModel(const std::string& text, ModelFlags flags = {}) {
  MCXPrsUtil::MCDataModelParser reader;
  if (MCCommon::MCStatus status = reader.ParseToDOM(text); !status.IsOK()) return {status, {}};
  RecordingVarList list;
  const MCCommon::MCStatus status =
      reader.FillVarList(list, flags.input_role, flags.range, flags.range_count);
  return {status, list.calls};
}

#endif  // MCXPRSUTIL_TESTS_READERS_DATAMODELTEXT_H
