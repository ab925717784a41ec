// Walks UTF-8 backwards.
#ifndef MCMEM_ENCODING_UTF8BACKUP_H
#define MCMEM_ENCODING_UTF8BACKUP_H

#include <unicode/utf8.h>

#include <cstddef>

namespace MCMEM_NAMESPACE {

struct Utf8BackUp {
  std::size_t start;   // of the character, or of the last byte when that ends no acceptable one
  bool is_acceptable;  // a whole character that is neither a surrogate nor a non-character
};

namespace utf8 {

// `c` is negative for an illegal or incomplete sequence.
inline bool IsAcceptable(UChar32 c) {
  if (c <= 0xD7FF) return c >= 0;
  if (c < 0xE000 || c > 0x10FFFF) return false;
  return c <= 0xFDCF || (c > 0xFDEF && (c & 0xFFFE) != 0xFFFE);
}

}  // namespace utf8

// Backs up from byte `i`, which must be above 0, without a look before byte 0.
inline Utf8BackUp BackUpUtf8(const char* s, std::size_t i) {
  constexpr std::size_t kLongest = 4;
  const auto* bytes = reinterpret_cast<const unsigned char*>(s);
  if (bytes[i - 1] < 0x80) return {i - 1, true};
  // ICU indexes with 32 bits, and no character reaches further back than this.
  const std::size_t from = i > kLongest ? i - kLongest : 0;
  auto position = static_cast<int32_t>(i - from);
  UChar32 c = 0;
  U8_PREV(bytes + from, 0, position, c);
  if (!utf8::IsAcceptable(c)) return {i - 1, false};
  return {from + static_cast<std::size_t>(position), true};
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_UTF8BACKUP_H
