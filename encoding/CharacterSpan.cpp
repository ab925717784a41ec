// The length of a prefix whose characters are, or are not, in a set.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "encoding/AsciiRuns.h"
#include "encoding/CodePageDecode.h"
#include "encoding/IntResult.h"
#include "encoding/PlainAscii.h"
#include "encoding/Utf8Decode.h"
#include "mcmem/MultiByteString.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {

namespace {

constexpr std::size_t kSetSize = 64;

// ---- UTF-8 ----

// The first kSetSize characters of a set; the rest does not count, on purpose. A set that is not
// well-formed is as long as what comes before the fault.
class Utf8Set {
 public:
  Utf8Set(const char* set, std::size_t length) {
    // No more bytes can be needed.
    const auto bytes = static_cast<int>(std::min(length, kSetSize * 4));
    std::array<unsigned int, kSetSize> points;
    const int count = TULKMB8and32(1, points.data(), kSetSize, set, bytes, nullptr);
    for (int i = 0; i < count; ++i) Add(points[static_cast<std::size_t>(i)]);
  }

  bool Has(std::uint32_t c) const {
    if (c < 0x80) return (ascii_[c / 64] >> c % 64 & 1) != 0;
    const auto* end = others_.data() + count_;
    return std::find(others_.data(), end, c) != end;
  }

 private:
  void Add(std::uint32_t c) {
    if (c < 0x80) {
      ascii_[c / 64] |= std::uint64_t{1} << c % 64;
    } else {
      others_[count_++] = c;
    }
  }

  std::uint64_t ascii_[2] = {};
  std::array<std::uint32_t, kSetSize> others_;  // the first count_ hold characters
  std::size_t count_ = 0;
};

std::size_t SpanCharacters(const char* s, const Utf8Set& members, bool stops_inside) {
  const auto* start = reinterpret_cast<const unsigned char*>(s);
  const auto* p = start;
  while (*p != 0) {
    const Utf8Character c = DecodeUtf8(p, SIZE_MAX);
    if (members.Has(c.value) == stops_inside) break;
    p += c.bytes;
  }
  return static_cast<std::size_t>(p - start);
}

std::size_t SpanBytes(const char* s, const char* set, bool stops_inside) {
  return stops_inside ? std::strcspn(s, set) : std::strspn(s, set);
}

// For a set whose first `length` characters are ASCII: what is beyond ASCII is outside of it, be it
// a character or a single byte, so bytes are as good as characters.
std::size_t SpanAscii(const char* s, const char* set, std::size_t length, bool stops_inside) {
  if (length < kSetSize) return SpanBytes(s, set, stops_inside);
  char first[kSetSize + 1] = {};
  std::memcpy(first, set, kSetSize);
  return SpanBytes(s, first, stops_inside);
}

// ---- Code pages ----

// Walks a text by single characters; what is no character counts as one byte and its value.
class CodePageWalk {
 public:
  CodePageWalk(CodePageDecoder& decoder, const char* s)
      : decoder_(decoder), start_(s), p_(s), end_(EndOfText(s, -1)) {}

  bool IsDone() const { return p_ == end_; }
  int Offset() const { return IntResult(p_ - start_); }

  std::uint32_t Take() {
    const std::uint32_t value = Peek();
    p_ += bytes_;
    return value;
  }

  // Each character is decoded from the initial state, as TULKMBU32Get_C() does it.
  std::uint32_t Peek() {
    const CodePageCharacter c = decoder_.NextAlone(p_, end_);
    const bool is_clean = c.outcome == CodePageCharacter::kClean;
    bytes_ = is_clean ? c.bytes : 1;
    return is_clean ? c.value : static_cast<unsigned char>(*p_);
  }

  void Skip() { p_ += bytes_; }

 private:
  CodePageDecoder& decoder_;
  const char* start_;
  const char* p_;
  const char* end_;
  std::ptrdiff_t bytes_ = 0;  // of the character that was peeked at last
};

// A set of any size: what does not fit into the array is decoded anew for each question.
class CodePageSet {
 public:
  CodePageSet(CodePageDecoder& decoder, const char* set) : rest_(decoder, set) {
    while (count_ < kSetSize && !rest_.IsDone()) points_[count_++] = rest_.Take();
  }

  bool Has(std::uint32_t c) const {
    const auto* end = points_.data() + count_;
    if (std::find(points_.data(), end, c) != end) return true;
    CodePageWalk walk = rest_;
    while (!walk.IsDone()) {
      if (walk.Take() == c) return true;
    }
    return false;
  }

 private:
  std::array<std::uint32_t, kSetSize> points_;  // the first count_ hold characters
  std::size_t count_ = 0;
  CodePageWalk rest_;
};

}  // namespace

int TULKMBStringSpan_8(int mode, const char* s, const char* set) {
  if (s == nullptr) return 0;
  if (set == nullptr) set = "";
  const std::size_t length = std::strlen(set);
  const std::size_t first = std::min(length, kSetSize);
  const bool is_ascii =
      CountAscii<false>(reinterpret_cast<const unsigned char*>(set), first) == first;
  const std::size_t span = is_ascii ? SpanAscii(s, set, first, mode != 0)
                                    : SpanCharacters(s, Utf8Set(set, length), mode != 0);
  return IntResult(static_cast<std::ptrdiff_t>(span));
}

// The sense of `mode` is the opposite of the function above, on purpose: callers of both exist.
int TULKMBSpan_C(const char* s, const char* set, int mode) {
  if (s == nullptr) return 0;
  if (set == nullptr) set = "";
  const PlainAscii plain(nullptr);
  if (plain.Has(s, EndOfText(s, -1)) && plain.Has(set, EndOfText(set, -1)))
    return IntResult(static_cast<std::ptrdiff_t>(SpanBytes(s, set, mode == 0)));
  CodePageDecoder decoder(nullptr);
  const CodePageSet members(decoder, set);
  CodePageWalk walk(decoder, s);
  const bool stays_inside = mode != 0;
  while (!walk.IsDone() && members.Has(walk.Peek()) == stays_inside) walk.Skip();
  return walk.Offset();
}

int TULKMBstrcspn_8(const char* s, const char* set) { return TULKMBStringSpan_8(1, s, set); }

int TULKMBstrcspn_C(const char* s, const char* set) { return TULKMBSpan_C(s, set, 0); }

}  // namespace MCMEM_NAMESPACE
