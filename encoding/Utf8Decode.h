// Decodes one character of UTF-8 at a time, inline.
#ifndef MCMEM_ENCODING_UTF8DECODE_H
#define MCMEM_ENCODING_UTF8DECODE_H

#include <cstddef>
#include <cstdint>

#include "encoding/Utf8Sequence.h"

namespace MCMEM_NAMESPACE {

struct Utf8Character {
  std::uint32_t value;  // of the lead byte alone when the sequence is not legal
  int bytes;            // 1 when the sequence is not legal
  bool is_legal;
};

// Decodes the character at `p`. What is legal is what isLegalUTF8Substring() takes: the shortest
// form of a code point, surrogates among them on purpose.
//
// `left` is how many bytes may be looked at, 1 or more. The bytes are looked at one after the other
// up to the first that does not continue the sequence, so a terminator is never passed, and text
// that has one may be given with any larger `left`.
inline Utf8Character DecodeUtf8(const unsigned char* p, std::size_t left) {
  const std::uint32_t lead = p[0];
  if (lead < 0x80) return {lead, 1, true};
  const Utf8Character single{lead, 1, false};
  if (lead < 0xC2 || left < 2 || !IsTrailByte(p[1])) return single;
  std::uint32_t value = lead << 6 | (p[1] & 0x3Fu);
  if (lead < 0xE0) return {value & 0x7FF, 2, true};
  if (left < 3 || !IsTrailByte(p[2])) return single;
  value = value << 6 | (p[2] & 0x3Fu);
  if (lead < 0xF0) return (value &= 0xFFFF) >= 0x800 ? Utf8Character{value, 3, true} : single;
  if (left < 4 || !IsTrailByte(p[3])) return single;
  value = (value << 6 | (p[3] & 0x3Fu)) & 0x3FFFFF;
  return value >= 0x10000 && value <= kLastCodePoint ? Utf8Character{value, 4, true} : single;
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_UTF8DECODE_H
