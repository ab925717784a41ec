// Any bytes as a data model: the reader answers with a status, filling twice gives the same, and
// the next document finds the reader as new.
#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCDataModelParser.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "Check.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;

void Fill(const MCDataModelParser& parser, const MCStatus& parsed, bool input_role,
          int range_count) {
  MCVarList first;
  MCVarList second;
  const bool ranges = range_count > 0;
  const MCStatus filled = parser.FillVarList(first, input_role, ranges, range_count);
  FUZZ_CHECK(parsed.IsOK() || (filled == parsed && first.Size() == 0));
  FUZZ_CHECK(!filled.GetFlag());
  FUZZ_CHECK(parser.FillVarList(second, input_role, ranges, range_count) == filled);
  FUZZ_CHECK(first.Size() == second.Size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string next =
      "<DataModel><Fields><Field name='a' storage='real' measure='continuous'/></Fields>"
      "</DataModel>";
  MCDataModelParser parser;
  const MCStatus parsed = parser.ParseToDOM(text);
  for (const bool input_role : {false, true}) {
    for (const int range_count : {0, 1, 2}) Fill(parser, parsed, input_role, range_count);
  }
  FUZZ_CHECK(parser.GetStatus() == parsed);

  FUZZ_CHECK(parser.ParseToDOM(next).IsOK());
  MCVarList list;
  FUZZ_CHECK(parser.FillVarList(list, false, false, 0).IsOK() && list.Size() == 1);
  FUZZ_CHECK(parser.ParseToDOM(text) == parsed);
  return 0;
}
