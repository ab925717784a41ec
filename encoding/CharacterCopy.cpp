// Copies that never cut a character.
#include <algorithm>
#include <climits>
#include <cstring>

#include "encoding/IntResult.h"
#include "encoding/Utf8BackUp.h"
#include "mcmem/MultiByteString.h"

namespace MCMEM_NAMESPACE {

namespace {

std::size_t WithoutBadTail(const char* s, std::size_t length) {
  std::size_t kept = length;
  while (kept > 0) {
    const Utf8BackUp step = BackUpUtf8(s, kept);
    if (step.is_acceptable) break;
    kept = step.start;
  }
  return kept;
}

// The first characters of `src` that have room in `n` bytes, however long `src` is.
std::size_t CopyWhole(char* dst, const char* src, std::size_t n) {
  if (dst == nullptr || src == nullptr) return 0;
  const std::size_t kept = WithoutBadTail(src, strnlen(src, n));
  std::memmove(dst, src, kept);
  return kept;
}

// Steps by TULKMBmbclen_C(), but looks behind the `room` bytes only when they hold no whole
// character: there the walk depends on what follows, the terminator above all.
std::size_t CharacterBytes(const char* s, std::size_t room) {
  const int whole = TULKMBmblen_C(s, std::min<std::size_t>(room, 4));
  return static_cast<std::size_t>(whole > 0 ? whole : TULKMBmbclen_C(s));
}

std::size_t WholeCharacters_C(const char* s, std::size_t n) {
  std::size_t kept = 0;
  std::size_t last = 0;
  while (kept < n && s[kept] != '\0') {
    const std::size_t bytes = CharacterBytes(s + kept, n - kept);
    if (bytes > n - kept) break;
    last = kept;
    kept += bytes;
  }
  // The walk takes a byte that it does not know for half of a character. Only the last character
  // is tested, on purpose.
  const bool ends_badly = kept > 0 && TULKMBmblen_C(s + last, kept - last) < 0;
  return ends_badly ? last : kept;
}

}  // namespace

int TULKMBCheckFinalChar_8(const char* s, int length) {
  if (s == nullptr) return 0;
  return IntResult(static_cast<std::ptrdiff_t>(
      WithoutBadTail(s, length < 0 ? std::strlen(s) : static_cast<std::size_t>(length))));
}

int TULKMBLimitedCopy_8(char* dst, const char* src, std::size_t n) {
  return static_cast<int>(CopyWhole(dst, src, std::min(n, static_cast<std::size_t>(INT_MAX))));
}

char* TULKMBstrncpy_8(char* dst, const char* src, std::size_t n) {
  if (dst == nullptr) return dst;
  const std::size_t kept = CopyWhole(dst, src, n);
  std::memset(dst + kept, 0, n - kept);
  return dst;
}

char* TULKMBstrncpy_C(char* dst, const char* src, std::size_t n) {
  if (dst == nullptr || src == nullptr) return dst;
  const std::size_t kept = WholeCharacters_C(src, n);
  std::memmove(dst, src, kept);
  std::memset(dst + kept, 0, n - kept);
  return dst;
}

}  // namespace MCMEM_NAMESPACE
