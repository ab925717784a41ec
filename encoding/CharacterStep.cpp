// Steps from one character to the next and to the previous one.
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "encoding/Utf8BackUp.h"
#include "encoding/Utf8Sequence.h"
#include "mcmem/MultiByteString.h"

namespace MCMEM_NAMESPACE {

namespace {

bool IsEmpty(const char* s) { return s == nullptr || *s == '\0'; }

// 5- and 6-byte forms, which no longer exist, count as single bytes, and so do trail bytes.
int NominalLength(unsigned char lead) {
  if (lead < 0xC0) return 1;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF8 ? 4 : 1;
}

// The length by ICU's decoder, which stops at the first byte that does not fit.
int CheckedLength(const unsigned char* bytes, std::size_t n) {
  constexpr std::size_t kLongest = 4;
  const auto limit = static_cast<int32_t>(n < kLongest ? n : kLongest);
  int32_t position = 0;
  UChar32 c = 0;
  U8_NEXT(bytes, position, limit, c);
  return c < 0 ? -1 : position;
}

std::size_t FindStart(const char* s, std::size_t i) {
  const std::size_t length = strnlen(s, i + 1);
  if (length <= i) return length;
  std::size_t position = 0;
  while (position < i) {
    const bool is_lead = TULKMBIsLeadByte_C(static_cast<unsigned char>(s[position]));
    if (is_lead && position + 1 == i) return position;
    position += is_lead ? 2 : 1;
  }
  return i;
}

}  // namespace

// ---- Forwards ----

int TULKMBmbclen_8(const char* s) {
  if (IsEmpty(s)) return 1;
  const int nominal = NominalLength(static_cast<unsigned char>(*s));
  // Trail bytes are not checked, on purpose; TULKMBmblen_8() is the strict function.
  int length = 1;
  while (length < nominal && s[length] != '\0') ++length;
  return length;
}

int TULKMBmblen_8(const char* s, std::size_t n) {
  if (n == 0 || IsEmpty(s)) return 0;
  const auto* bytes = reinterpret_cast<const unsigned char*>(s);
  const unsigned char lead = bytes[0];
  if (lead < 0x80) return 1;
  // After these leads every pair of trail bytes, or every trail byte, is legal.
  if (lead >= 0xE1 && lead <= 0xEC && n >= 3 && IsTrailByte(bytes[1]) && IsTrailByte(bytes[2]))
    return 3;
  if (lead >= 0xC2 && lead <= 0xDF && n >= 2 && IsTrailByte(bytes[1])) return 2;
  return CheckedLength(bytes, n);
}

// mbrlen() with a state of its own instead of mblen(): the C library's mblen() starts each call in
// the initial state too, but keeps it in a variable that all threads share. A zero byte is part of
// no character, so that nothing is lost when the C library does not get to see it.
int TULKMBmblen_C(const char* s, std::size_t n) {
  if (s == nullptr) return std::mblen(nullptr, 0);
  if (n == 0) return -1;
  if (*s == '\0') return 0;
  const std::size_t limit = strnlen(s, std::min<std::size_t>(n, MB_LEN_MAX));
  std::mbstate_t state{};
  const std::size_t length = std::mbrlen(s, limit, &state);
  return length <= limit ? static_cast<int>(length) : -1;
}

int TULKMBmbclen_C(const char* s) {
  if (IsEmpty(s) || s[1] == '\0') return 1;
  const int length = TULKMBmblen_C(s, 4);
  // A byte that the locale does not know is taken for a lead byte, on purpose.
  return length < 1 ? 2 : length;
}

const char* TULKMBstrinc_8(const char* s) { return s == nullptr ? nullptr : s + TULKMBmbclen_8(s); }

const char* TULKMBstrinc_C(const char* s) { return s == nullptr ? nullptr : s + TULKMBmbclen_C(s); }

// ---- Backwards ----

int TULKMBPreviousIndex_8(const char* s, int i) {
  if (i <= 0) return i;
  return static_cast<int>(BackUpUtf8(s, static_cast<std::size_t>(i)).start);
}

const char* TULKMBAnsiPrev_8(const char* start, const char* current) {
  if (start == nullptr || current == nullptr || current <= start) return current;
  return start + BackUpUtf8(start, static_cast<std::size_t>(current - start)).start;
}

bool TULKMBIsLeadByte_C(unsigned char byte) {
  const char text[] = {static_cast<char>(byte), ' ', ' ', ' ', '\0'};
  return TULKMBmbclen_C(text) > 1;
}

int TULKMBFindStart_C(const char* s, int i) {
  if (s == nullptr || i <= 0) return 0;
  return static_cast<int>(FindStart(s, static_cast<std::size_t>(i)));
}

const char* TULKMBAnsiPrev_C(const char* start, const char* current) {
  if (start == nullptr || current == nullptr || current <= start) return current;
  return start + FindStart(start, static_cast<std::size_t>(current - start) - 1);
}

}  // namespace MCMEM_NAMESPACE
