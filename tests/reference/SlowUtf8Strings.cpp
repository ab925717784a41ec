#include "reference/SlowUtf8Strings.h"

#include <algorithm>

namespace reference {

namespace {

unsigned int ByteAt(const std::string& s, std::size_t at) {
  return static_cast<unsigned char>(s[at]);
}

struct Form {
  unsigned int leadFrom;
  unsigned int leadTo;
  unsigned int smallest;  // value that needs so many bytes
};

// Row n: characters of n + 1 bytes.
constexpr Form kForms[] = {
    {0x00, 0x7F, 0}, {0xC0, 0xDF, 0x80}, {0xE0, 0xEF, 0x800}, {0xF0, 0xF7, 0x10000}};

bool IsForm(const std::string& s, std::size_t at, std::size_t bytes) {
  const Form& form = kForms[bytes - 1];
  if (at + bytes > s.size()) return false;
  if (ByteAt(s, at) < form.leadFrom || ByteAt(s, at) > form.leadTo) return false;
  for (std::size_t i = 1; i < bytes; ++i) {
    if (ByteAt(s, at + i) < 0x80 || ByteAt(s, at + i) > 0xBF) return false;
  }
  return true;
}

unsigned int ValueOf(const std::string& s, std::size_t at, std::size_t bytes) {
  unsigned int value = ByteAt(s, at) - kForms[bytes - 1].leadFrom;
  for (std::size_t i = 1; i < bytes; ++i) value = value * 64 + ByteAt(s, at + i) % 64;
  return value;
}

bool IsNonCharacter(unsigned int value) {
  if (value >= 0xFDD0 && value <= 0xFDEF) return true;
  return value % 0x10000 == 0xFFFE || value % 0x10000 == 0xFFFF;
}

bool EndsWithCharacter(const std::string& s, std::size_t end, std::size_t bytes) {
  const SlowCharacter c = DecodeAt(s.substr(0, end), end - bytes, false);
  return c.isLegal && c.bytes == bytes && !IsNonCharacter(c.value);
}

// 0 when no acceptable character ends at `end`.
std::size_t LengthOfCharacterBefore(const std::string& s, std::size_t end) {
  for (std::size_t bytes = 1; bytes <= 4 && bytes <= end; ++bytes) {
    if (EndsWithCharacter(s, end, bytes)) return bytes;
  }
  return 0;
}

std::string UpToZero(const std::string& s) { return s.substr(0, s.find('\0')); }

}  // namespace

SlowCharacter DecodeAt(const std::string& s, std::size_t at, bool surrogatesPass) {
  for (std::size_t bytes = 1; bytes <= 4; ++bytes) {
    if (!IsForm(s, at, bytes)) continue;
    const unsigned int value = ValueOf(s, at, bytes);
    const bool isShortest = value >= kForms[bytes - 1].smallest;
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    if (isShortest && value <= 0x10FFFF && (surrogatesPass || !isSurrogate))
      return {value, bytes, true};
  }
  return {ByteAt(s, at), 1, false};
}

int AnnouncedLength(const std::string& s) {
  for (std::size_t bytes = 2; bytes <= 4; ++bytes) {
    const Form& form = kForms[bytes - 1];
    if (ByteAt(s, 0) >= form.leadFrom && ByteAt(s, 0) <= form.leadTo)
      return static_cast<int>(std::min(bytes, s.size()));
  }
  return 1;
}

int CheckedLength(const std::string& s, std::size_t n) {
  const std::string seen = s.substr(0, n);
  if (seen.empty()) return 0;
  const SlowCharacter c = DecodeAt(seen, 0, false);
  return c.isLegal ? static_cast<int>(c.bytes) : -1;
}

int PreviousIndex(const std::string& s, int i) {
  const auto end = static_cast<std::size_t>(i);
  const std::size_t bytes = LengthOfCharacterBefore(s, end);
  return i - static_cast<int>(bytes == 0 ? 1 : bytes);
}

int LengthWithoutBadTail(const std::string& s) {
  std::size_t end = s.size();
  while (end > 0 && LengthOfCharacterBefore(s, end) == 0) --end;
  return static_cast<int>(end);
}

int Search(const std::string& s, unsigned int wanted, bool last) {
  int found = -1;
  for (std::size_t at = 0; at < s.size();) {
    const unsigned int lead = ByteAt(s, at);
    const std::size_t bytes = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (at + bytes > s.size()) break;
    unsigned int value = bytes == 1 ? lead : lead % (0x80u >> bytes);
    for (std::size_t i = 1; i < bytes; ++i) value = value * 64 + ByteAt(s, at + i) % 64;
    if (value == wanted) {
      if (!last) return static_cast<int>(at);
      found = static_cast<int>(at);
    }
    at += bytes;
  }
  return found;
}

int Span(const std::string& s, const std::vector<unsigned int>& set, bool stopsInside) {
  std::size_t at = 0;
  while (at < s.size()) {
    const SlowCharacter c = DecodeAt(s, at, true);
    const bool isInside = std::count(set.begin(), set.end(), c.value) != 0;
    if (isInside == stopsInside) break;
    at += c.bytes;
  }
  return static_cast<int>(at);
}

Order Compare(const std::string& a, const std::string& b, const Mapping& map) {
  const std::string left = UpToZero(a);
  const std::string right = UpToZero(b);
  int status = 0;
  std::size_t i = 0;
  std::size_t k = 0;
  while (i < left.size() && k < right.size()) {
    const SlowCharacter x = DecodeAt(left, i, true);
    const SlowCharacter y = DecodeAt(right, k, true);
    if (!x.isLegal || !y.isLegal) status = 3;
    if (map(x.value) < map(y.value)) return {-1, status};
    if (map(x.value) > map(y.value)) return {1, status};
    i += x.bytes;
    k += y.bytes;
  }
  return {(i < left.size()) - (k < right.size()), status};
}

}  // namespace reference
