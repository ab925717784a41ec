// Decoding of code-page text for callers: single characters, and whole clean prefixes.
#include <algorithm>
#include <cstring>

#include "encoding/CodePageDecode.h"
#include "encoding/IntResult.h"
#include "mcmem/MultiByteString.h"

namespace MCMEM_NAMESPACE {

namespace {

// Callers walk long texts character by character: a search for the end of the text at each step
// would take quadratic time. No code page has characters anywhere near this long.
constexpr int kNear = 64;

CodePageCharacter DecodeAt(const char* p, int length) {
  CodePageDecoder decoder(nullptr);
  const char* end = length < 0 ? p + strnlen(p, kNear) : decoder.EndOf(p, std::min(length, kNear));
  const CodePageCharacter c = decoder.NextAlone(p, end);
  // What lies behind an end that was drawn here can matter only if the decoder came close to it.
  if (end - p < kNear || c.looked_at <= kNear / 2) return c;
  return decoder.NextAlone(p, decoder.EndOf(p, length));
}

}  // namespace

int TULKMBU32Get_C(unsigned int* out, const char* s, int position, int length) {
  unsigned int unused = 0;
  unsigned int& value = out != nullptr ? *out : unused;
  value = 0;
  if (s == nullptr || position < 0) return 0;
  if ((length >= 0 && length <= position) || s[position] == '\0') return 0;
  const CodePageCharacter c = DecodeAt(s + position, length < 0 ? -1 : length - position);
  if (c.outcome != CodePageCharacter::kClean) return -1;
  value = c.value;
  return static_cast<int>(c.bytes);
}

int TULKMBValidCount_C(void* converter, const char* s, int length) {
  CodePageDecoder decoder(converter);
  const char* end = decoder.EndOf(s, length);
  const char* p = s;
  while (p != end) {
    const CodePageCharacter c = decoder.Next(p, end);
    // A return to the initial state may follow the last character: it is part of the text.
    if (c.outcome == CodePageCharacter::kEnd) return IntResult(end - s);
    if (c.outcome == CodePageCharacter::kFailed || decoder.IsTerminator(c)) break;
    p += c.bytes;
  }
  return IntResult(p - s);
}

}  // namespace MCMEM_NAMESPACE
