// Compares texts by code points.
#include <unicode/uchar.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>

#include "encoding/CodePageDecode.h"
#include "encoding/PlainAscii.h"
#include "encoding/Utf8Decode.h"
#include "mcmem/MultiByteString.h"

namespace MCMEM_NAMESPACE {

namespace {

enum Status : int {
  kExact = 0,
  kIllegal = 3,  // a byte that belongs to no legal character was compared as it is
};

// Simple folding, on purpose: no character changes its length, so sharp s never equals "ss".
std::uint32_t Fold(std::uint32_t c) {
  if (c < 0x80) return c - 'A' < 26 ? c + ('a' - 'A') : c;
  return static_cast<std::uint32_t>(u_tolower(static_cast<UChar32>(c)));
}

// ---- The two kinds of text ----

class Utf8Text {
 public:
  Utf8Text(const char* s, int length)
      : p_(reinterpret_cast<const unsigned char*>(s)),
        left_(length < 0 ? SIZE_MAX : static_cast<std::size_t>(length)) {
    if (s == nullptr) left_ = 0;
  }

  bool IsDone() const { return left_ == 0 || *p_ == 0; }

  std::uint32_t Take(int& status) {
    const Utf8Character c = DecodeUtf8(p_, left_);
    if (!c.is_legal) status = kIllegal;
    Advance(static_cast<std::size_t>(c.bytes));
    return c.value;
  }

  const unsigned char* Position() const { return p_; }

  // How many of the next `n` bytes belong to the text.
  std::size_t Readable(std::size_t n) const {
    if (left_ == 0) return 0;
    return strnlen(reinterpret_cast<const char*>(p_), std::min(n, left_));
  }

  void Advance(std::size_t n) {
    p_ += n;
    left_ -= n;
  }

 private:
  const unsigned char* p_;
  std::size_t left_;  // at most; the terminator may come first
};

class CodePageText {
 public:
  CodePageText(CodePageDecoder& decoder, const char* s, int length)
      : decoder_(decoder), p_(s), end_(EndOfText(s, length)) {
    Decode();
  }

  bool IsDone() const { return next_.outcome == CodePageCharacter::kEnd; }

  std::uint32_t Take(int& status) {
    if (next_.outcome == CodePageCharacter::kFailed) {
      status = kIllegal;
      const auto byte = static_cast<unsigned char>(*p_++);
      Decode();
      return byte;
    }
    const std::uint32_t value = next_.value;
    Decode();
    return value;
  }

 private:
  void Decode() {
    next_ = decoder_.Next(p_, end_);
    p_ += next_.bytes;
  }

  CodePageDecoder& decoder_;
  const char* p_;
  const char* end_;
  CodePageCharacter next_{};
};

// ---- Comparison ----

// The order of the first `pairs` characters; nothing when they are equal and there are more.
template <class Text>
std::optional<int> ComparePairs(Text& a, Text& b, bool folds, int& status, int pairs) {
  for (int i = 0; i < pairs; ++i) {
    if (a.IsDone()) return b.IsDone() ? 0 : -1;
    if (b.IsDone()) return 1;
    std::uint32_t x = a.Take(status);
    std::uint32_t y = b.Take(status);
    if (x == y) continue;
    if (folds) {
      x = Fold(x);
      y = Fold(y);
    }
    if (x != y) return x < y ? -1 : 1;
  }
  return std::nullopt;
}

template <class Text>
int Compare(Text& a, Text& b, bool folds, int& status) {
  constexpr int kPairs = 64;
  for (;;) {
    if (const auto order = ComparePairs(a, b, folds, status, kPairs)) return *order;
  }
}

// ---- Equal ASCII, eight characters at a time ----

constexpr std::uint64_t kEach = 0x0101010101010101u;
constexpr std::uint64_t kTopBits = kEach * 0x80;

std::uint64_t Load8(const unsigned char* p) {
  std::uint64_t word;
  std::memcpy(&word, p, sizeof word);
  return word;
}

// Fold() for eight ASCII characters.
std::uint64_t FoldAscii(std::uint64_t word) {
  const std::uint64_t above_z = word + kEach * (0x7F - 'Z');
  const std::uint64_t from_a = word + kEach * (0x80 - 'A');
  return word | ((above_z ^ from_a) & kTopBits) >> 2;
}

// How many of eight characters, from the first one on, are ASCII and the same. Up to there
// FoldAscii() is right: a byte beyond ASCII spoils only what follows it.
std::size_t CountSameInWord(const unsigned char* a, const unsigned char* b, bool folds) {
  const std::uint64_t x = Load8(a);
  const std::uint64_t y = Load8(b);
  const std::uint64_t different = folds ? FoldAscii(x) ^ FoldAscii(y) : x ^ y;
  const std::uint64_t stops = different | ((x | y) & kTopBits);
  return stops == 0 ? 8 : static_cast<std::size_t>(__builtin_ctzll(stops)) / 8;
}

// The length of the same ASCII at the start of two texts of `n` bytes; less when `n` is below 8.
std::size_t CountSameAscii(const unsigned char* a, const unsigned char* b, std::size_t n,
                           bool folds) {
  constexpr std::size_t kWord = 8;
  std::size_t i = 0;
  for (; n - i >= kWord; i += kWord) {
    const std::size_t same = CountSameInWord(a + i, b + i, folds);
    if (same != kWord) return i + same;
  }
  if (i == n || i == 0) return i;
  // The last word overlaps the one before it.
  return n - kWord + CountSameInWord(a + n - kWord, b + n - kWord, folds);
}

void SkipSameAscii(Utf8Text& a, Utf8Text& b, bool folds) {
  constexpr std::size_t kBlock = 64;
  std::size_t same = 0;
  do {
    const std::size_t n = a.Readable(b.Readable(kBlock));
    same = CountSameAscii(a.Position(), b.Position(), n, folds);
    a.Advance(same);
    b.Advance(same);
  } while (same == kBlock);
}

int Compare(Utf8Text& a, Utf8Text& b, bool folds, int& status) {
  constexpr int kPairs = 32;  // until the next look for a run of ASCII
  for (;;) {
    SkipSameAscii(a, b, folds);
    if (const auto order = ComparePairs(a, b, folds, status, kPairs)) return *order;
  }
}

int Report(int order, int found, int* status) {
  if (status != nullptr) *status = found;
  return order;
}

// Two texts are under way at once: each has a converter of its own, for converters with a state.
int CompareDecoded(int mode, void* converter, const char* a, int aLength, const char* b,
                   int bLength, int* status) {
  CodePageDecoder first(converter);
  CodePageDecoder second(converter, WorkingConverter::AlwaysClone{});
  CodePageText left(first, a, aLength);
  CodePageText right(second, b, bLength);
  int found = kExact;
  const int order = Compare(left, right, mode == 0, found);
  return Report(order, found, status);
}

}  // namespace

int TULKMBBinaryCompare_8(int mode, const char* a, int aLength, const char* b, int bLength,
                          int* status) {
  Utf8Text left(a, aLength);
  Utf8Text right(b, bLength);
  int found = kExact;
  const int order = Compare(left, right, mode == 0, found);
  return Report(order, found, status);
}

int TULKMBBinaryCompare_C(int mode, void* converter, const char* a, int aLength, const char* b,
                          int bLength, int* status) {
  const PlainAscii plain(converter);
  if (!plain.Has(a, EndOfText(a, aLength)) || !plain.Has(b, EndOfText(b, bLength)))
    return CompareDecoded(mode, converter, a, aLength, b, bLength, status);
  if (converter != nullptr) ucnv_resetToUnicode(static_cast<UConverter*>(converter));
  return TULKMBBinaryCompare_8(mode, a, aLength, b, bLength, status);
}

int TULKMBstrnicmp_8(const char* a, const char* b, int n) {
  return TULKMBBinaryCompare_8(0, a, n, b, n, nullptr);
}

int TULKMBstrnicmp_C(const char* a, const char* b, int n) {
  return TULKMBBinaryCompare_C(0, nullptr, a, n, b, n, nullptr);
}

bool TULKMBqstricmp_8(const char* a, int aLength, const char* b, int bLength, int* status) {
  return TULKMBBinaryCompare_8(0, a, aLength, b, bLength, status) == 0;
}

bool TULKMBqstricmp_C(const char* a, int aLength, const char* b, int bLength, int* status) {
  return TULKMBBinaryCompare_C(0, nullptr, a, aLength, b, bLength, status) == 0;
}

}  // namespace MCMEM_NAMESPACE
