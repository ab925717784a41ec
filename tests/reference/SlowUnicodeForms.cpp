#include "reference/SlowUnicodeForms.h"

namespace reference {
namespace {

bool IsHigh(unsigned int value) { return value >= 0xD800 && value <= 0xDBFF; }
bool IsLow(unsigned int value) { return value >= 0xDC00 && value <= 0xDFFF; }
bool IsAnySurrogate(unsigned int value) { return IsHigh(value) || IsLow(value); }

// The table of well-formed byte sequences of the Unicode Standard, the row of 0xED twice as wide
// where surrogates pass.
struct ByteRange {
  unsigned int firstLead, lastLead, firstSecond, lastSecond;
};
constexpr ByteRange kSecondBytes[] = {{0xC2, 0xDF, 0x80, 0xBF}, {0xE0, 0xE0, 0xA0, 0xBF},
                                      {0xE1, 0xEC, 0x80, 0xBF}, {0xED, 0xED, 0x80, 0x9F},
                                      {0xEE, 0xEF, 0x80, 0xBF}, {0xF0, 0xF0, 0x90, 0xBF},
                                      {0xF1, 0xF3, 0x80, 0xBF}, {0xF4, 0xF4, 0x80, 0x8F}};

unsigned int Decode(const unsigned int* s, std::size_t length) {
  if (length == 1) return s[0];
  if (length == 2) return s[0] % 0x20 * 0x40 + s[1] % 0x40;
  if (length == 3) return s[0] % 0x10 * 0x1000 + s[1] % 0x40 * 0x40 + s[2] % 0x40;
  return s[0] % 0x08 * 0x40000 + s[1] % 0x40 * 0x1000 + s[2] % 0x40 * 0x40 + s[3] % 0x40;
}

// Appends the units when they fit.
bool Append(const Units& units, std::size_t capacity, Converted& out) {
  if (out.written.size() + units.size() > capacity) return false;
  out.written.insert(out.written.end(), units.begin(), units.end());
  out.length = out.written.size();
  return true;
}

void Start(Converted& out) {
  out.code = kOk;
  out.consumed = 0;
  out.written.clear();
  out.length = 0;
}

void DecodeUtf8(const Units& source, std::size_t capacity, bool strict, bool to16, Converted& out) {
  Start(out);
  while (out.consumed < source.size()) {
    const unsigned int* s = source.data() + out.consumed;
    const std::size_t length = PromisedLength(*s);
    if (length > source.size() - out.consumed) {
      out.code = kSourceExhausted;
      return;
    }
    if (!IsWellFormed(s, to16)) {
      out.code = kSourceIllegal;
      return;
    }
    if (out.written.size() == capacity) {
      out.code = kTargetExhausted;
      return;
    }
    unsigned int value = Decode(s, length);
    if (IsAnySurrogate(value) && strict) {
      out.code = kSourceIllegal;
      return;
    }
    if (IsAnySurrogate(value)) value = 0xFFFD;
    if (!Append(to16 ? Utf16Of(value) : Units{value}, capacity, out)) {
      out.code = kTargetExhausted;
      return;
    }
    out.consumed += length;
    if (to16 && value == 0) {
      --out.length;
      return;
    }
  }
}

void DecodeUtf16(const Units& source, std::size_t capacity, bool strict, bool to8, Converted& out) {
  Start(out);
  while (out.consumed < source.size()) {
    unsigned int value = source[out.consumed];
    std::size_t units = 1;
    if (IsHigh(value) && out.consumed + 1 == source.size()) {
      out.code = kSourceExhausted;
      return;
    }
    if (IsHigh(value) && IsLow(source[out.consumed + 1])) {
      value = 0x10000 + (value - 0xD800) * 0x400 + (source[out.consumed + 1] - 0xDC00);
      units = 2;
    }
    if (IsAnySurrogate(value) && strict) {
      out.code = kSourceIllegal;
      return;
    }
    if (!Append(to8 ? Utf8Of(value) : Units{value}, capacity, out)) {
      out.code = kTargetExhausted;
      return;
    }
    out.consumed += units;
    if (to8 && value == 0) {
      --out.length;
      return;
    }
  }
}

}  // namespace

std::size_t PromisedLength(unsigned int lead) {
  if (lead <= 0xBF) return 1;
  if (lead <= 0xDF) return 2;
  if (lead <= 0xEF) return 3;
  if (lead <= 0xF7) return 4;
  if (lead <= 0xFB) return 5;
  return 6;
}

bool IsWellFormed(const unsigned int* s, bool surrogatesPass) {
  if (s[0] <= 0x7F) return true;
  for (const ByteRange& range : kSecondBytes) {
    if (s[0] < range.firstLead || s[0] > range.lastLead) continue;
    const unsigned int last = surrogatesPass && s[0] == 0xED ? 0xBF : range.lastSecond;
    if (s[1] < range.firstSecond || s[1] > last) return false;
    for (std::size_t i = 2; i < PromisedLength(s[0]); ++i)
      if (s[i] < 0x80 || s[i] > 0xBF) return false;
    return true;
  }
  return false;
}

Units Utf8Of(unsigned int value) {
  if (value < 0x80) return {value};
  if (value < 0x800) return {0xC0 + value / 0x40, 0x80 + value % 0x40};
  if (value < 0x10000)
    return {0xE0 + value / 0x1000, 0x80 + value / 0x40 % 0x40, 0x80 + value % 0x40};
  return {0xF0 + value / 0x40000, 0x80 + value / 0x1000 % 0x40, 0x80 + value / 0x40 % 0x40,
          0x80 + value % 0x40};
}

Units Utf16Of(unsigned int value) {
  if (value < 0x10000) return {value};
  return {0xD800 + (value - 0x10000) / 0x400, 0xDC00 + (value - 0x10000) % 0x400};
}

void Utf8ToUtf16(const Units& source, std::size_t capacity, bool strict, Converted& out) {
  DecodeUtf8(source, capacity, strict, true, out);
}

void Utf8ToUtf32(const Units& source, std::size_t capacity, bool strict, Converted& out) {
  DecodeUtf8(source, capacity, strict, false, out);
}

void Utf16ToUtf8(const Units& source, std::size_t capacity, bool strict, Converted& out) {
  DecodeUtf16(source, capacity, strict, true, out);
}

void Utf16ToUtf32(const Units& source, std::size_t capacity, bool strict, Converted& out) {
  DecodeUtf16(source, capacity, strict, false, out);
}

void Utf32ToUtf8(const Units& source, std::size_t capacity, bool strict, Converted& out) {
  Start(out);
  for (; out.consumed < source.size(); ++out.consumed) {
    unsigned int value = source[out.consumed];
    if (IsAnySurrogate(value) && strict) {
      out.code = kSourceIllegal;
      return;
    }
    if (value > 0x10FFFF) {
      out.code = kSourceIllegal;
      value = 0xFFFD;
    }
    if (!Append(Utf8Of(value), capacity, out)) {
      out.code = kTargetExhausted;
      return;
    }
  }
}

void Utf32ToUtf16(const Units& source, std::size_t capacity, bool strict, Converted& out) {
  Start(out);
  for (; out.consumed < source.size(); ++out.consumed) {
    unsigned int value = source[out.consumed];
    if (out.written.size() == capacity) {
      out.code = kTargetExhausted;
      return;
    }
    if (IsAnySurrogate(value) && strict) {
      out.code = kSourceIllegal;
      return;
    }
    if (value > 0x10FFFF && strict) {
      out.code = kSourceIllegal;
      continue;
    }
    if (value > 0x10FFFF || IsAnySurrogate(value)) value = 0xFFFD;
    if (!Append(Utf16Of(value), capacity, out)) {
      out.code = kTargetExhausted;
      return;
    }
  }
}

}  // namespace reference
