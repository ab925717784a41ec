// Any bytes: the short cuts of ToUTF8 and ToUTF16 give what the transcoder object gives.
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXTranscoder.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "Check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const MCXPrsUtil::MCXMLReadWrite platform;
  const MCXPrsUtil::MCXTranscoder transcoder(nullptr);

  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::vector<XMLCh> units = MCXPrsUtil::ToUTF16(bytes.c_str());
  FUZZ_CHECK(units == transcoder.TranscodeFrom(bytes.c_str()));
  FUZZ_CHECK(!units.empty() && units.back() == 0);
  if (units.size() > 1) FUZZ_CHECK(MCXPrsUtil::ToUTF8(units.data()) == bytes.c_str());

  std::vector<XMLCh> text(size / sizeof(XMLCh) + 1, 0);
  if (size >= sizeof(XMLCh)) std::memcpy(text.data(), data, size / sizeof(XMLCh) * sizeof(XMLCh));
  FUZZ_CHECK(MCXPrsUtil::ToUTF8(text.data()) == transcoder.TranscodeTo(text.data()));
  return 0;
}
