// One UTF-8 sequence: its length, whether it is legal, its code point, and the way back.
#ifndef MCMEM_ENCODING_UTF8SEQUENCE_H
#define MCMEM_ENCODING_UTF8SEQUENCE_H

#include <cstddef>

namespace MCMEM_NAMESPACE {

constexpr unsigned int kReplacement = 0xFFFD;
constexpr unsigned int kLastOfBmp = 0xFFFF;
constexpr unsigned int kLastCodePoint = 0x10FFFF;

constexpr bool IsHighSurrogate(unsigned int value) { return value >> 10 == 0xD800u >> 10; }
constexpr bool IsLowSurrogate(unsigned int value) { return value >> 10 == 0xDC00u >> 10; }
constexpr bool IsSurrogate(unsigned int value) { return value >> 11 == 0xD800u >> 11; }

constexpr unsigned int HighSurrogateOf(unsigned int value) { return 0xD7C0u + (value >> 10); }
constexpr unsigned int LowSurrogateOf(unsigned int value) { return 0xDC00u | (value & 0x3FFu); }
constexpr unsigned int JoinSurrogates(unsigned int high, unsigned int low) {
  return ((high - 0xD800u) << 10) + (low - 0xDC00u) + 0x10000u;
}

// How many bytes the lead byte promises behind it. A trail byte promises none, and the lead bytes
// of the five and six byte forms, which are never legal, still promise four and five: text that
// ends before them is cut off rather than illegal.
constexpr std::ptrdiff_t TrailBytes(unsigned int lead) {
  if (lead < 0xC0) return 0;
  if (lead < 0xE0) return 1;
  if (lead < 0xF0) return 2;
  if (lead < 0xF8) return 3;
  return lead < 0xFC ? 4 : 5;
}

constexpr bool IsTrailByte(unsigned int byte) { return (byte & 0xC0) == 0x80; }

// Whether three bytes may encode a surrogate. The functions that produce UTF-32, and
// isLegalUTF8Sequence, refuse that as illegal; those that produce 16-bit units let it pass here and
// treat it as they treat any surrogate.
enum class EncodedSurrogates { kIllegal, kPass };

// The well-formed byte sequences of the Unicode Standard. The sequence at `s` is complete: all
// bytes that its lead byte promises may be read.
template <EncodedSurrogates kSurrogates>
constexpr bool IsLegalUtf8(const unsigned char* s) {
  const unsigned int lead = s[0];
  if (lead < 0x80) return true;
  if (lead < 0xC2 || lead > 0xF4) return false;
  for (std::ptrdiff_t i = 1; i <= TrailBytes(lead); ++i)
    if (!IsTrailByte(s[i])) return false;
  if (lead == 0xE0) return s[1] >= 0xA0;
  if (lead == 0xED && kSurrogates == EncodedSurrogates::kIllegal) return s[1] <= 0x9F;
  if (lead == 0xF0) return s[1] >= 0x90;
  if (lead == 0xF4) return s[1] <= 0x8F;
  return true;
}

// The code point of a legal sequence of `trail` + 1 bytes.
constexpr unsigned int CodePointOf(const unsigned char* s, std::ptrdiff_t trail) {
  constexpr unsigned int kLeadBits[] = {0x7F, 0x1F, 0x0F, 0x07, 0x03, 0x01};
  unsigned int value = s[0] & kLeadBits[trail];
  for (std::ptrdiff_t i = 1; i <= trail; ++i) value = value << 6 | (s[i] & 0x3Fu);
  return value;
}

constexpr std::ptrdiff_t Utf8Length(unsigned int value) {
  if (value < 0x80) return 1;
  if (value < 0x800) return 2;
  return value <= kLastOfBmp ? 3 : 4;
}

constexpr unsigned char TrailByteOf(unsigned int value, int shift) {
  return static_cast<unsigned char>(0x80 | ((value >> shift) & 0x3F));
}

// Writes `Utf8Length(value)` bytes. A surrogate takes three.
inline void PutUtf8(unsigned int value, unsigned char* d) {
  if (value < 0x80) {
    d[0] = static_cast<unsigned char>(value);
  } else if (value < 0x800) {
    d[0] = static_cast<unsigned char>(0xC0 | value >> 6);
    d[1] = TrailByteOf(value, 0);
  } else if (value <= kLastOfBmp) {
    d[0] = static_cast<unsigned char>(0xE0 | value >> 12);
    d[1] = TrailByteOf(value, 6);
    d[2] = TrailByteOf(value, 0);
  } else {
    d[0] = static_cast<unsigned char>(0xF0 | value >> 18);
    d[1] = TrailByteOf(value, 12);
    d[2] = TrailByteOf(value, 6);
    d[3] = TrailByteOf(value, 0);
  }
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_UTF8SEQUENCE_H
