#include "encoding/Utf8And16.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "encoding/AsciiRuns.h"
#include "encoding/UnitCodecs.h"
#include "encoding/Utf8DecodingBlocks.h"
#include "encoding/Utf8EncodingBlocks.h"
#include "encoding/Utf8Sequence.h"
#include "encoding/WideKernels.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

namespace {

using Byte = unsigned char;
using Unit = unsigned short;
using Codec = Utf16Codec<Unit, false>;
using Decoding = Utf8Place<Codec>;  // source and target, each a place or an end
using Encoding = PlaceToUtf8<Codec>;

// Texts of fewer units do without blocks.
constexpr std::ptrdiff_t kShortest = 16;

// When to try blocks. A text that mixes characters of different lengths refuses them again and
// again: the more often in a row it does, the longer its characters are taken singly.
template <class Unit>
class BlockPace {
 public:
  explicit BlockPace(const Unit* start) : next_(start) {}

  bool IsDue(const Unit* at) const { return at >= next_; }

  // Until where characters are to be taken singly.
  const Unit* Next() const { return next_; }

  void NoteTry(const Unit* before, const Unit* after) {
    singly_ = after - before >= kWorthIt ? kLeast : std::min(2 * singly_, kMost);
    next_ = after + singly_;
  }

 private:
  static constexpr std::ptrdiff_t kWorthIt = 16;
  static constexpr std::ptrdiff_t kLeast = 8;
  static constexpr std::ptrdiff_t kMost = 256;

  const Unit* next_;
  std::ptrdiff_t singly_ = kLeast;
};

// Whether a second byte may follow that lead byte: rules out overlong forms, surrogates and what
// lies beyond U+10FFFF. `lead` is from 0xE0 to 0xEF.
inline bool MayFollowLead3(Byte lead, Byte second) {
  if (!IsTrailByte(second)) return false;
  if (lead == 0xE0) return second >= 0xA0;
  return lead != 0xED || second < 0xA0;
}

// The same for leads from 0xF0 up.
inline bool MayFollowLead4(Byte lead, Byte second) {
  if (!IsTrailByte(second) || lead > 0xF4) return false;
  if (lead == 0xF0) return second >= 0x90;
  return lead != 0xF4 || second < 0x90;
}

// Each takes one character from `s` and puts it to `t`; false when it is malformed. Four bytes and
// room for two units must be there.
inline bool Decode2(const Byte*& s, Unit*& t) {
  if (s[0] < 0xC2 || !IsTrailByte(s[1])) return false;
  *t++ = static_cast<Unit>((s[0] & 0x1Fu) << 6 | (s[1] & 0x3Fu));
  s += 2;
  return true;
}

// The lead byte is the lowest one.
inline std::uint32_t Load4(const Byte* s) {
  std::uint32_t bytes;
  std::memcpy(&bytes, s, sizeof bytes);
  return bytes;
}

inline bool Decode3(const Byte*& s, Unit*& t) {
  const std::uint32_t bytes = Load4(s);
  const std::uint32_t code = (bytes & 0x0F) << 12 | (bytes >> 2 & 0x0FC0) | (bytes >> 16 & 0x3F);
  if ((bytes & 0xC0C000) != 0x808000 || code < 0x800 || IsSurrogate(code)) return false;
  *t++ = static_cast<Unit>(code);
  s += 3;
  return true;
}

inline bool Decode4(const Byte*& s, Unit*& t) {
  const std::uint32_t bytes = Load4(s);
  const std::uint32_t code =
      (bytes & 0x07) << 18 | (bytes << 4 & 0x3F000) | (bytes >> 10 & 0x0FC0) | (bytes >> 24 & 0x3F);
  if ((bytes & 0xC0C0C0F8) != 0x808080F0 || code <= kLastOfBmp || code > kLastCodePoint) {
    return false;
  }
  t[0] = static_cast<Unit>(HighSurrogateOf(code));
  t[1] = static_cast<Unit>(LowSurrogateOf(code));
  s += 4;
  t += 2;
  return true;
}

inline bool DecodeBeyondAscii(const Byte*& s, Unit*& t) {
  if ((*s & 0xF0) == 0xE0) return Decode3(s, t);
  return *s < 0xE0 ? Decode2(s, t) : Decode4(s, t);
}

// Single characters until `stop`, or until the source has less than four bytes or the target less
// than two units left, or, to go on with blocks, until two of ASCII follow each other. False on a
// malformed sequence.
//
// A character takes no more units than it has bytes, so that one bound covers both ends. Works on
// copies of the pointers: the compiler cannot keep in registers what is referred to.
template <bool kBlocksFollow>
bool DecodeSingly(Decoding& at, const Decoding& end, const Byte* stop) {
  const Byte* s = at.source;
  Unit* t = at.target;
  const std::ptrdiff_t singles = std::min(end.source - s - 3, end.target - at.target - 1);
  const Byte* const bound = std::min(stop, s + std::max<std::ptrdiff_t>(singles, 0));
  bool sound = true;
  while (sound && s < bound) {
    if (*s >= 0x80) {
      sound = DecodeBeyondAscii(s, t);
      continue;
    }
    *t++ = *s++;
    if (kBlocksFollow && *s < 0x80) break;
  }
  at.source = s;
  at.target = t;
  return sound;
}

inline void DecodeAsciiBlocks(Decoding& at, const Decoding& end) {
  const std::ptrdiff_t room = std::min(end.source - at.source, end.target - at.target);
  const std::size_t moved = ascii::MoveBlocks<false, ascii::Bytes, Codec>(
      at.source, static_cast<std::size_t>(room), at.target);
  at.source += moved;
  at.target += moved;
}

// What follows as blocks, as far as it is of one kind.
inline void DecodeBlocks(Decoding& at, const Decoding& end, bool canShuffle) {
  if (*at.source < 0x80) DecodeAsciiBlocks(at, end);
  if (end.source - at.source < kShortest) return;
  if (*at.source >= 0xF0) {
    at = ConvertQuads<Codec>(at, end);
  } else if (canShuffle) {
    at = *at.source < 0xE0 ? ConvertPairBlocks<Codec, false>(at, end)
                           : ConvertTriples<Codec>(at, end);
  }
}

// All but the last characters; false on a malformed sequence.
bool DecodeBulk(Decoding& at, const Decoding& end) {
  const bool canShuffle = CanShuffle();
  BlockPace<Byte> pace(at.source);
  while (end.source - at.source >= 4 && end.target - at.target >= 2) {
    const Byte* const before = at.source;
    if (pace.IsDue(before) && end.source - before >= kShortest) {
      DecodeBlocks(at, end, canShuffle);
      pace.NoteTry(before, at.source);
    }
    if (!DecodeSingly<true>(at, end, std::max(pace.Next(), at.source + 4))) return false;
  }
  return true;
}

// How many bytes the well-formed character at `s` takes, with `left` bytes there; 0 for none.
inline std::ptrdiff_t CharacterLength(const Byte* s, std::ptrdiff_t left) {
  const Byte lead = s[0];
  if (lead < 0x80) return 1;
  if (left < 2) return 0;
  if (lead < 0xE0) return lead >= 0xC2 && IsTrailByte(s[1]) ? 2 : 0;
  if (left < 3 || !IsTrailByte(s[2])) return 0;
  if (lead < 0xF0) return MayFollowLead3(lead, s[1]) ? 3 : 0;
  return left >= 4 && MayFollowLead4(lead, s[1]) && IsTrailByte(s[3]) ? 4 : 0;
}

// Character by character to the end of the source or of the target, or to a malformed sequence.
Stop DecodeTail(Decoding& at, const Decoding& end) {
  const Byte* s = at.source;
  Unit* t = at.target;
  Stop stop = Stop::kSourceEnd;
  while (s != end.source) {
    const std::ptrdiff_t length = CharacterLength(s, end.source - s);
    const std::ptrdiff_t units = length == 4 ? 2 : 1;
    stop = length == 0 ? Stop::kMalformed : Stop::kTargetFull;
    if (length == 0 || end.target - t < units) break;
    stop = Stop::kSourceEnd;
    const unsigned code = CodePointOf(s, length - 1);
    if (units == 2) {
      Codec::PutSupplementary(t, code);
    } else {
      *t = static_cast<Unit>(code);
    }
    s += length;
    t += units;
  }
  at.source = s;
  at.target = t;
  return stop;
}

// Short texts have one try of blocks, here and below: letters of one script in a row.
bool DecodeShort(Decoding& at, const Decoding& end) {
  constexpr std::ptrdiff_t kFourTriples = 12;
  if (end.source - at.source >= kFourTriples && *at.source >= 0xE0 && CanShuffle()) {
    at = ConvertTriples<Codec>(at, end);
  }
  return DecodeSingly<false>(at, end, end.source);
}

Stop Decode(Decoding& at, const Decoding& end) {
  const bool isShort = end.source - at.source < kShortest;
  const bool sound = isShort ? DecodeShort(at, end) : DecodeBulk(at, end);
  return sound ? DecodeTail(at, end) : Stop::kMalformed;
}

// One character beyond ASCII; false on a surrogate without its other half. Two units and room for
// four bytes must be there.
inline bool EncodeBeyondAscii(const Unit*& s, Byte*& t) {
  const unsigned unit = *s;
  if (unit < 0x800) {
    *t++ = static_cast<Byte>(0xC0 | unit >> 6);
    *t++ = TrailByteOf(unit, 0);
    ++s;
  } else if (!IsSurrogate(unit)) {
    *t++ = static_cast<Byte>(0xE0 | unit >> 12);
    *t++ = TrailByteOf(unit, 6);
    *t++ = TrailByteOf(unit, 0);
    ++s;
  } else {
    if (!IsHighSurrogate(unit) || !IsLowSurrogate(s[1])) return false;
    PutUtf8(JoinSurrogates(unit, s[1]), t);
    t += 4;
    s += 2;
  }
  return true;
}

// As DecodeSingly(). A unit takes at most three bytes, and a pair four.
template <bool kBlocksFollow>
bool EncodeSingly(Encoding& at, const Encoding& end, const Unit* stop) {
  const Unit* s = at.source;
  Byte* t = at.target;
  const std::ptrdiff_t singles =
      std::min<std::ptrdiff_t>(end.source - s - 1, (end.target - t - 1) / 3);
  const Unit* const bound = std::min(stop, s + std::max<std::ptrdiff_t>(singles, 0));
  bool sound = true;
  while (sound && s < bound) {
    if (*s >= 0x80) {
      sound = EncodeBeyondAscii(s, t);
      continue;
    }
    *t++ = static_cast<Byte>(*s++);
    if (kBlocksFollow && *s < 0x80) break;
  }
  at.source = s;
  at.target = t;
  return sound;
}

// Four blocks of eight units that are all ASCII have no bit of these set.
inline bool AreAscii(__m128i a, __m128i b, __m128i c, __m128i d) {
  const __m128i all = _mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d));
  const __m128i high = _mm_and_si128(all, _mm_set1_epi16(static_cast<short>(0xFF80)));
  return ascii::ByteMaskOf(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xFFFF;
}

inline void EncodeAsciiBlocks(Encoding& at, const Encoding& end) {
  std::ptrdiff_t room = std::min(end.source - at.source, end.target - at.target);
  for (; room >= 32; room -= 32) {
    const __m128i a = ascii::Load(at.source);
    const __m128i b = ascii::Load(at.source + 8);
    const __m128i c = ascii::Load(at.source + 16);
    const __m128i d = ascii::Load(at.source + 24);
    if (!AreAscii(a, b, c, d)) break;
    ascii::Store(at.target, _mm_packus_epi16(a, b));
    ascii::Store(at.target + 16, _mm_packus_epi16(c, d));
    at.source += 32;
    at.target += 32;
  }
  const std::size_t moved = ascii::MoveBlocks<false, Codec, ascii::Bytes>(
      at.source, static_cast<std::size_t>(room), at.target);
  at.source += moved;
  at.target += moved;
}

inline void EncodeBlocks(Encoding& at, const Encoding& end, bool canShuffle) {
  if (*at.source < 0x80) EncodeAsciiBlocks(at, end);
  if (end.source - at.source < 8) return;
  const unsigned unit = *at.source;
  if (IsSurrogate(unit)) {
    at = EncodeQuadBlocks<Codec>(at, end);
  } else if (canShuffle) {
    at = unit < 0x800 ? EncodeShortBlocks<Codec>(at, end) : EncodeTripleBlocks<Codec>(at, end);
  }
}

bool EncodeBulk(Encoding& at, const Encoding& end) {
  const bool canShuffle = CanShuffle();
  BlockPace<Unit> pace(at.source);
  while (end.source - at.source >= 2 && end.target - at.target >= 4) {
    const Unit* const before = at.source;
    if (pace.IsDue(before) && end.source - before >= 8) {
      EncodeBlocks(at, end, canShuffle);
      pace.NoteTry(before, at.source);
    }
    if (!EncodeSingly<true>(at, end, std::max(pace.Next(), at.source + 2))) return false;
  }
  return true;
}

// A unit of the Basic Multilingual Plane that is no surrogate takes so many bytes.
inline std::ptrdiff_t BytesOfBmp(unsigned unit) {
  return 1 + (unit >= 0x80 ? 1 : 0) + (unit >= 0x800 ? 1 : 0);
}

// One character from the surrogate at `at`.
Stop EncodePair(Encoding& at, const Encoding& end) {
  const unsigned high = at.source[0];
  const unsigned low = end.source - at.source >= 2 ? at.source[1] : 0;
  if (!IsHighSurrogate(high) || !IsLowSurrogate(low)) return Stop::kMalformed;
  if (end.target - at.target < 4) return Stop::kTargetFull;
  PutUtf8(JoinSurrogates(high, low), at.target);
  at.target += 4;
  at.source += 2;
  return Stop::kSourceEnd;
}

// Character by character to the end of the source or of the target, or to a malformed sequence.
Stop EncodeTail(Encoding& at, const Encoding& end) {
  while (at.source != end.source) {
    const unsigned unit = *at.source;
    if (IsSurrogate(unit)) {
      if (const Stop stop = EncodePair(at, end); stop != Stop::kSourceEnd) return stop;
      continue;
    }
    if (end.target - at.target < BytesOfBmp(unit)) return Stop::kTargetFull;
    if (unit < 0x80) {
      *at.target++ = static_cast<Byte>(unit);
      ++at.source;
    } else {
      EncodeBeyondAscii(at.source, at.target);
    }
  }
  return Stop::kSourceEnd;
}

bool EncodeShort(Encoding& at, const Encoding& end) {
  if (end.source - at.source >= 8 && *at.source >= 0x80 && CanShuffle()) {
    at =
        *at.source < 0x800 ? EncodeShortBlocks<Codec>(at, end) : EncodeTripleBlocks<Codec>(at, end);
  }
  return EncodeSingly<false>(at, end, end.source);
}

Stop Encode(Encoding& at, const Encoding& end) {
  const bool isShort = end.source - at.source < kShortest;
  const bool sound = isShort ? EncodeShort(at, end) : EncodeBulk(at, end);
  return sound ? EncodeTail(at, end) : Stop::kMalformed;
}

// Sum of the 16 byte lanes.
inline std::size_t SumBytes(__m128i lanes) {
  const __m128i sums = _mm_sad_epu8(lanes, _mm_setzero_si128());
  return static_cast<std::size_t>(_mm_cvtsi128_si64(_mm_add_epi64(sums, _mm_srli_si128(sums, 8))));
}

// All ones where the unit is at least `bound`.
inline __m128i AtLeast(__m128i units, int bound) {
  const __m128i missing = _mm_subs_epu16(_mm_set1_epi16(static_cast<short>(bound)), units);
  return _mm_cmpeq_epi16(missing, _mm_setzero_si128());
}

// -1, -2 or -3 per lane, but -2 for a surrogate: the bytes that the unit takes beyond none.
inline __m128i NegativeExtraBytes(__m128i units) {
  const __m128i top = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800)));
  const __m128i surrogate = _mm_cmpeq_epi16(top, _mm_set1_epi16(static_cast<short>(0xD800)));
  return _mm_sub_epi16(_mm_add_epi16(AtLeast(units, 0x80), AtLeast(units, 0x800)), surrogate);
}

}  // namespace

Stop DecodeUtf8(const char*& src, const char* srcEnd, unsigned short*& dst,
                unsigned short* dstEnd) {
  Decoding at{reinterpret_cast<const Byte*>(src), dst};
  const Stop stop = Decode(at, {reinterpret_cast<const Byte*>(srcEnd), dstEnd});
  src = reinterpret_cast<const char*>(at.source);
  dst = at.target;
  return stop;
}

Stop EncodeUtf8(const unsigned short*& src, const unsigned short* srcEnd, char*& dst,
                char* dstEnd) {
  Encoding at{src, reinterpret_cast<Byte*>(dst)};
  const Stop stop = Encode(at, {srcEnd, reinterpret_cast<Byte*>(dstEnd)});
  src = at.source;
  dst = reinterpret_cast<char*>(at.target);
  return stop;
}

std::size_t MalformedLength(const char* src, const char* srcEnd) {
  const auto s = reinterpret_cast<const Byte*>(src);
  const std::ptrdiff_t left = srcEnd - src;
  if (left < 2 || *s < 0xE0) return 1;
  if (*s < 0xF0) return MayFollowLead3(s[0], s[1]) ? 2 : 1;
  if (!MayFollowLead4(s[0], s[1])) return 1;
  return left >= 3 && IsTrailByte(s[2]) ? 3 : 2;
}

std::size_t CountUtf16Units(const char* utf8, std::size_t bytes) {
  constexpr std::size_t kStretch =
      std::size_t{127} * 16;  // at most 2 per lane and step: no lane overflows
  std::size_t units = 0;
  std::size_t i = 0;
  while (bytes - i >= 16) {
    const std::size_t stop = i + std::min((bytes - i) / 16 * 16, kStretch);
    __m128i sums = _mm_setzero_si128();
    for (; i < stop; i += 16) {
      const __m128i block = ascii::Load(utf8 + i);
      const __m128i starts = _mm_cmpgt_epi8(block, _mm_set1_epi8(static_cast<char>(0xBF)));
      const __m128i leads4 =
          _mm_cmpeq_epi8(_mm_max_epu8(block, _mm_set1_epi8(static_cast<char>(0xF0))), block);
      sums = _mm_sub_epi8(_mm_sub_epi8(sums, starts), leads4);
    }
    units += SumBytes(sums);
  }
  for (; i < bytes; ++i) {
    const auto byte = static_cast<Byte>(utf8[i]);
    units += (IsTrailByte(byte) ? 0u : 1u) + (byte >= 0xF0 ? 1u : 0u);
  }
  return units;
}

std::size_t CountUtf8Bytes(const unsigned short* utf16, std::size_t units) {
  constexpr std::size_t kStretch = std::size_t{120} * 8;
  std::size_t extra = 0;
  std::size_t i = 0;
  while (units - i >= 8) {
    const std::size_t stop = i + std::min((units - i) / 8 * 8, kStretch);
    __m128i sums = _mm_setzero_si128();
    for (; i < stop; i += 8) sums = _mm_sub_epi16(sums, NegativeExtraBytes(ascii::Load(utf16 + i)));
    extra += SumBytes(sums);  // the lanes stay below 256
  }
  for (; i < units; ++i) {
    extra += (utf16[i] >= 0x80 ? 1u : 0u) + (utf16[i] >= 0x800 ? 1u : 0u);
    extra -= IsSurrogate(utf16[i]) ? 1u : 0u;
  }
  return units + extra;
}

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE
