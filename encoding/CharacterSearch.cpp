// Finds a character in a string.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "encoding/AsciiRuns.h"
#include "encoding/Utf8Decode.h"
#include "mcmem/MultiByteString.h"

namespace MCMEM_NAMESPACE {

namespace {

// The lead byte alone decides how many bytes belong together, and nothing is validated, on purpose:
// a trail byte without its lead takes the byte after it along.
int LengthByLead(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

std::uint32_t BitsOfLead(unsigned char lead, int length) {
  constexpr std::uint32_t kMasks[] = {0x7F, 0x1F, 0x0F, 0x07};
  return lead & kMasks[length - 1];
}

// 0 bytes when the terminator comes before the end of the character.
Utf8Character DecodeByLead(const unsigned char* p) {
  const int length = LengthByLead(p[0]);
  std::uint32_t value = BitsOfLead(p[0], length);
  for (int i = 1; i < length; ++i) {
    if (p[i] == 0) return {0, 0, false};
    value = value << 6 | (p[i] & 0x3Fu);
  }
  return {value, length, true};
}

// Stops at the terminator and at the first byte beyond ASCII.
const unsigned char* SkipAscii(const unsigned char* p) {
  constexpr std::size_t kBlock = 64;
  while (*p < 0x80) {
    const std::size_t readable = strnlen(reinterpret_cast<const char*>(p), kBlock);
    const std::size_t run = CountAscii<false>(p, readable);
    p += run;
    if (run < kBlock) break;
  }
  return p;
}

const char* SearchBeyondAscii(const char* s, std::uint32_t wanted, bool last) {
  const char* found = nullptr;
  const auto* p = SkipAscii(reinterpret_cast<const unsigned char*>(s));
  while (*p != 0) {
    const Utf8Character c = DecodeByLead(p);
    if (c.bytes == 0) break;
    if (c.value == wanted) {
      found = reinterpret_cast<const char*>(p);
      if (!last) break;
    }
    p = SkipAscii(p + c.bytes);
  }
  return found;
}

}  // namespace

const char* TULKMBSearchChar_8(const char* s, unsigned int ch, int last) {
  if (s == nullptr) return nullptr;
  if (ch >= 0x80) return SearchBeyondAscii(s, ch, last != 0);
  const int byte = static_cast<int>(ch);
  return last == 0 ? std::strchr(s, byte) : std::strrchr(s, byte);
}

const char* TULKMBSearchChar_C(const char* s, unsigned int ch, int last) {
  if (s == nullptr) return nullptr;
  // The rest of `ch` is dropped, on purpose: only single bytes can be found.
  const auto wanted = static_cast<unsigned char>(ch);
  const bool has_single_bytes_only = MB_CUR_MAX == 1;
  const char* found = nullptr;
  const char* p = s;
  while (*p != '\0') {
    const bool is_match = static_cast<unsigned char>(*p) == wanted;
    if (is_match) found = p;
    if (is_match && last == 0) return found;
    const int length = is_match || has_single_bytes_only ? 1 : TULKMBmblen_C(p, 16);
    p += length > 1 ? length : 1;
  }
  return ch == 0 ? p : found;
}

const char* TULKMBstrchr_8(const char* s, unsigned int ch) { return TULKMBSearchChar_8(s, ch, 0); }

const char* TULKMBstrrchr_8(const char* s, unsigned int ch) { return TULKMBSearchChar_8(s, ch, 1); }

const char* TULKMBstrchr_C(const char* s, unsigned int ch) { return TULKMBSearchChar_C(s, ch, 0); }

const char* TULKMBstrrchr_C(const char* s, unsigned int ch) { return TULKMBSearchChar_C(s, ch, 1); }

}  // namespace MCMEM_NAMESPACE
