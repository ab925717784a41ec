// Any two documents (split at a zero byte) as the models of two splits: every merge ends in a
// status, segments are counted only for accepted models, and the export releases the document.
#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXSplitPMMLCombiner.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "Check.h"

namespace {

using MCMTD_NAMESPACE::IMCVariable;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXSplitPMMLCombiner;

void Merge(MCXSplitPMMLCombiner& combiner, const std::string& text, const std::string& value) {
  MCXMLReadWrite reader;
  std::istringstream in(text);
  if (!reader.ParseToDOM(in).IsOK()) return;
  const int before = combiner.GetNModels();
  const MCCommon::MCStatus status =
      combiner.ParseSplitModelXML(reader.GetDocument(), reader, {value});
  FUZZ_CHECK(status.IsOK() || combiner.GetNModels() == before);
  FUZZ_CHECK(combiner.GetNModels() <= before + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::size_t cut = text.find('\0');
  const MCXMLReadWrite platform;
  MCMTD_NAMESPACE::MCVarList splits;
  const int index = splits.AddCatVar("split", "Split", std::vector<std::string>{"a", "b"},
                                     static_cast<IMCVariable::VariableRole>(0));
  FUZZ_CHECK(index == 0);
  MCXSplitPMMLCombiner combiner(splits);
  Merge(combiner, text.substr(0, cut), "a");
  Merge(combiner, cut == std::string::npos ? text : text.substr(cut + 1), "b");
  FUZZ_CHECK(combiner.ExportMiningModel("").IsOK());
  return 0;
}
