// From UTF-8 to UTF-16 and UTF-32.

#include "encoding/FormConversion.h"
#include "encoding/Utf8DecodingBlocks.h"
#include "encoding/Utf8Sequence.h"
#include "encoding/WideAscii.h"
#include "encoding/WideKernels.h"
#include "mcmem/UnicodeForms.h"

namespace MCMEM_NAMESPACE {
namespace {

// ---- Clean characters, one at a time. There is room for one unit. ----
//
// A byte is read only when the one before it is no zero: the stated end may lie behind the zero
// that ends the text.

template <class To>
inline bool TakeTwo(Utf8Place<To>& at, const Utf8Place<To>& end) {
  if (end.source - at.source < 2) return false;
  const unsigned int b0 = at.source[0], b1 = at.source[1];
  if (b0 < 0xC2 || !IsTrailByte(b1)) return false;
  *at.target++ = To::Make((b0 & 0x1F) << 6 | (b1 & 0x3F));
  at.source += 2;
  return true;
}

template <class To>
inline bool TakeThree(Utf8Place<To>& at, const Utf8Place<To>& end) {
  if (end.source - at.source < 3) return false;
  if (!IsTrailByte(at.source[1]) || !IsTrailByte(at.source[2])) return false;
  const unsigned int b0 = at.source[0], b1 = at.source[1], b2 = at.source[2];
  const unsigned int value = (b0 & 0x0F) << 12 | (b1 & 0x3F) << 6 | (b2 & 0x3F);
  if (value < 0x800 || IsSurrogate(value)) return false;
  *at.target++ = To::Make(value);
  at.source += 3;
  return true;
}

template <class To>
inline bool TakeFour(Utf8Place<To>& at, const Utf8Place<To>& end) {
  if (end.source - at.source < 4 || end.target - at.target < To::kSupplementaryUnits) return false;
  if (!IsTrailByte(at.source[1]) || !IsTrailByte(at.source[2])) return false;
  unsigned int bytes;
  std::memcpy(&bytes, at.source, 4);  // the lead byte is the lowest
  if ((bytes & 0xC0C0C0F8) != 0x808080F0) return false;
  const unsigned int value =
      (bytes & 0x07) << 18 | (bytes & 0x3F00) << 4 | (bytes >> 10 & 0xFC0) | (bytes >> 24 & 0x3F);
  if (value <= kLastOfBmp || value > kLastCodePoint) return false;
  To::PutSupplementary(at.target, value);
  at.target += To::kSupplementaryUnits;
  at.source += 4;
  return true;
}

// ---- The rules ----

template <class ToCodec, bool kStopsAtZero, EncodedSurrogates kSurrogates>
struct Utf8Rules {
  using From = ascii::Bytes;
  using To = ToCodec;
  using At = Utf8Place<To>;
  static constexpr bool kStopAtZero = kStopsAtZero;
  static constexpr std::ptrdiff_t kShortText = 15;
  static constexpr bool kHasShortRuns = true;
  static constexpr std::ptrdiff_t kShortestRun = kShortestPairTail;

  static bool IsShortRun(const unsigned char* s, std::ptrdiff_t length) {
    return length >= kShortestPairTail && *s < 0xE0;
  }

  static At ConvertShortRun(At at, const At& end) {
    const At cleanEnd = {CleanEnd<Utf8Rules>(at.source, end.source), end.target};
    if (*at.source < 0x80) at = ConvertAscii<Utf8Rules>(at, cleanEnd);
    if (cleanEnd.source - at.source >= kShortestPairTail && CanShuffle())
      at = ConvertPairTail<To, kStopAtZero>(at, cleanEnd);
    return at;
  }

  static At ConvertRun(At at, const At& end) {
    const unsigned int lead = *at.source;
    if (lead >= 0xF0) return ConvertQuads<To>(at, end);
    if (lead >= 0xE0) return CanShuffle() ? ConvertTriples<To>(at, end) : at;
    const unsigned char* s = at.source;
    if (lead < 0x80) at = ConvertAscii<Utf8Rules>(at, end);
    if (at.source != s || !CanShuffle()) return at;
    if (end.source - at.source < 16) return ConvertPairTail<To, kStopAtZero>(at, end);
    return ConvertPairBlocks<To, kStopAtZero>(at, end);
  }

  static bool TakeOne(At& at, const At& end) {
    const unsigned int lead = *at.source;
    if (lead >= 0xF0) return TakeFour<To>(at, end);
    if (lead >= 0xE0) return TakeThree<To>(at, end);
    if (lead >= 0x80) return TakeTwo<To>(at, end);
    if (kStopAtZero && lead == 0) return false;
    *at.target++ = To::Make(lead);
    ++at.source;
    return true;
  }

  static Stop Step(At& at, const At& end, bool strict, ConversionResult&) {
    const std::ptrdiff_t trail = TrailBytes(*at.source);
    if (trail >= end.source - at.source) return sourceExhausted;
    if (!IsLegalUtf8<kSurrogates>(at.source)) return sourceIllegal;
    if (at.target >= end.target) return targetExhausted;
    unsigned int value = CodePointOf(at.source, trail);
    if (IsSurrogate(value)) {
      if (strict) return sourceIllegal;
      value = kReplacement;
    }
    if (value > kLastOfBmp) {
      if (end.target - at.target < To::kSupplementaryUnits) return targetExhausted;
      To::PutSupplementary(at.target, value);
      at.target += To::kSupplementaryUnits;
    } else {
      *at.target = To::Make(value);
    }
    at.source += trail + 1;
    if (kStopAtZero && value == 0) return conversionOK;  // the target stays on the zero
    if (value <= kLastOfBmp) ++at.target;
    return {};
  }
};

template <bool kHighByteFirst>
using Utf8To16 = Utf8Rules<Utf16Codec<UNALIGNED16, kHighByteFirst>, true, EncodedSurrogates::kPass>;
using Utf8To32 = Utf8Rules<Utf32Codec, false, EncodedSurrogates::kIllegal>;

// ---- UTF-16 ----

// As Convert(), for texts of one or two wide blocks.
template <bool kHighByteFirst>
[[gnu::noinline]] MCMEM_WIDE ConversionResult ConvertLineTo16(const unsigned char** sourceStart,
                                                              const unsigned char* sourceEnd,
                                                              UNALIGNED16** targetStart,
                                                              UNALIGNED16* targetEnd,
                                                              ConversionFlags flags) {
  using Rules = Utf8To16<kHighByteFirst>;
  const unsigned char* const source = *sourceStart;
  UNALIGNED16* const target = *targetStart;
  const std::ptrdiff_t length = sourceEnd - source;
  const bool isDone = targetEnd - target >= length &&
                      IsReadable<ascii::Bytes, 2 * ascii::kWideBlock>(source, sourceEnd) &&
                      ascii::WidenTwoBlocks<Rules::kStopAtZero, kHighByteFirst>(
                          source, static_cast<std::size_t>(length), target->byte);
  if (!isDone) return ConvertRest<Rules>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
  *sourceStart = sourceEnd;
  *targetStart = target + length;
  return conversionOK;
}

// As Convert(), for the others. Out of line, so that a line does not wait for registers.
template <bool kHighByteFirst>
[[gnu::noinline]] ConversionResult ConvertOtherTo16(const unsigned char** sourceStart,
                                                    const unsigned char* sourceEnd,
                                                    UNALIGNED16** targetStart,
                                                    UNALIGNED16* targetEnd, ConversionFlags flags) {
  return Convert<Utf8To16<kHighByteFirst>>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

template <bool kHighByteFirst>
inline ConversionResult ConvertTo16(const unsigned char** sourceStart,
                                    const unsigned char* sourceEnd, UNALIGNED16** targetStart,
                                    UNALIGNED16* targetEnd, ConversionFlags flags) {
  constexpr std::ptrdiff_t kBlock = ascii::kWideBlock;
  const std::ptrdiff_t length = sourceEnd - *sourceStart;
  if (length >= kBlock && length <= 2 * kBlock && CanGoWide())
    return ConvertLineTo16<kHighByteFirst>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
  return ConvertOtherTo16<kHighByteFirst>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

}  // namespace

ConversionResult ConvertUTF8toUTF32(const unsigned char** sourceStart,
                                    const unsigned char* sourceEnd, unsigned int** targetStart,
                                    unsigned int* targetEnd, ConversionFlags flags) {
  return Convert<Utf8To32>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF8toUTF16(const unsigned char** sourceStart,
                                    const unsigned char* sourceEnd, UNALIGNED16** targetStart,
                                    UNALIGNED16* targetEnd, ConversionFlags flags) {
  return ConvertTo16<false>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF8toUTF16Rev(const unsigned char** sourceStart,
                                       const unsigned char* sourceEnd, UNALIGNED16** targetStart,
                                       UNALIGNED16* targetEnd, ConversionFlags flags) {
  return ConvertTo16<true>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult LocalUTF8toUTF16(const unsigned char** sourceStart, const unsigned char* sourceEnd,
                                  UNALIGNED16** targetStart, UNALIGNED16* targetEnd,
                                  ConversionFlags flags, int reversed) {
  const auto convert = reversed == 0 ? ConvertUTF8toUTF16 : ConvertUTF8toUTF16Rev;
  return convert(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

}  // namespace MCMEM_NAMESPACE
