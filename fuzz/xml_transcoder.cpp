// Any bytes: the short cuts of ToUTF8 and ToUTF16 give what the transcoder object gives, every
// encoding gives the same twice, and what one encodes comes back from it.
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXTranscoder.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "Check.h"

namespace {

using MCXPrsUtil::MCXTranscoder;
using Units = std::vector<XMLCh>;  // zero-terminated

void CheckShortCuts(const std::string& bytes, const Units& text) {
  const MCXTranscoder transcoder(nullptr);
  const Units units = MCXPrsUtil::ToUTF16(bytes.c_str());
  FUZZ_CHECK(units == transcoder.TranscodeFrom(bytes.c_str()));
  FUZZ_CHECK(!units.empty() && units.back() == 0);
  if (units.size() > 1) FUZZ_CHECK(MCXPrsUtil::ToUTF8(units.data()) == bytes.c_str());
  FUZZ_CHECK(MCXPrsUtil::ToUTF8(text.data()) == transcoder.TranscodeTo(text.data()));
}

// What the XML library makes of one is no text.
bool HasLoneSurrogate(const Units& text) {
  for (std::size_t i = 0; text[i] != 0; ++i) {
    const bool isLead = (text[i] & 0xFC00) == 0xD800;
    if (isLead && (text[i + 1] & 0xFC00) != 0xDC00) return true;
    if (!isLead && (text[i] & 0xFC00) == 0xDC00) return true;
    if (isLead) ++i;
  }
  return false;
}

struct Encoding {
  const char* name;
  bool comes_back;  // no two characters share a code
};

constexpr Encoding kEncodings[] = {
    {"UTF-8", true},         {"US-ASCII", true},     {"ISO-8859-1", true}, {"IBM037", false},
    {"windows-1252", false}, {"windows-31j", false}, {"GB18030", true},    {"ISO-2022-JP", false}};

void CheckEncoding(const Encoding& encoding, const std::string& bytes, const Units& text) {
  const char* const name = encoding.name;
  const MCXTranscoder transcoder(name);
  FUZZ_CHECK(transcoder.isValid());
  const Units units = transcoder.TranscodeFrom(bytes.c_str());
  FUZZ_CHECK(!units.empty() && units.back() == 0);
  FUZZ_CHECK(transcoder.TranscodeFrom(bytes.c_str()) == units);
  const std::string encoded = transcoder.TranscodeTo(text.data());
  FUZZ_CHECK(transcoder.TranscodeTo(text.data()) == encoded);
  FUZZ_CHECK(MCXTranscoder(name).TranscodeTo(text.data()) == encoded);
  FUZZ_CHECK(transcoder.TranscodeTo(nullptr).empty());
  if (!encoding.comes_back || encoded.empty() || HasLoneSurrogate(text)) return;
  const Units back = transcoder.TranscodeFrom(encoded.c_str());
  FUZZ_CHECK(back == Units(text.begin(), std::find(text.begin(), text.end(), 0) + 1));
}

void CheckAnyName(const std::string& name, const std::string& bytes, const Units& text) {
  const MCXTranscoder transcoder(name.c_str());
  FUZZ_CHECK(MCXTranscoder(name.c_str()).isValid() == transcoder.isValid());
  const Units units = transcoder.TranscodeFrom(bytes.c_str());
  const std::string encoded = transcoder.TranscodeTo(text.data());
  FUZZ_CHECK(!units.empty() && units.back() == 0);
  if (!transcoder.isValid()) FUZZ_CHECK(units.size() == 1 && encoded.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const MCXPrsUtil::MCXMLReadWrite platform;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Units text(size / sizeof(XMLCh) + 1, 0);
  if (size >= sizeof(XMLCh)) std::memcpy(text.data(), data, size / sizeof(XMLCh) * sizeof(XMLCh));
  CheckShortCuts(bytes, text);
  for (const Encoding& encoding : kEncodings) CheckEncoding(encoding, bytes, text);
  const std::string head = bytes.c_str();
  const std::size_t end = head.find('\n');
  if (end != std::string::npos) CheckAnyName(head.substr(0, end), head.substr(end + 1), text);
  return 0;
}
