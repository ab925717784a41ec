// Any bytes as a PMML document: the reader answers with a status, and filling twice gives the same.
#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCPMMLParser.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "Check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  MCXPrsUtil::MCPMMLParser parser;
  const MCCommon::MCStatus parsed = parser.ParseToDOM(in);
  FUZZ_CHECK(parsed.IsOK() == (parser.GetRootElement() != nullptr));
  for (const bool bins : {false, true}) {
    MCMTD_NAMESPACE::MCVarList first;
    MCMTD_NAMESPACE::MCVarList second;
    const MCCommon::MCStatus filled = parser.FillVarList(first, {}, bins);
    FUZZ_CHECK(parsed.IsOK() || filled == parsed);
    FUZZ_CHECK(parser.FillVarList(second, {}, bins) == filled);
    FUZZ_CHECK(first.Size() == second.Size());
  }
  FUZZ_CHECK(parser.GetStatus() == parsed);
  return 0;
}
