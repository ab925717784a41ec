// Between UTF-16 and UTF-32, and the legality of UTF-8 sequences.

#include "mcmem/UnicodeForms.h"

#include "encoding/FormConversion.h"
#include "encoding/UnitCodecs.h"
#include "encoding/Utf8Sequence.h"

namespace MCMEM_NAMESPACE {
namespace {

using Utf16Words = Utf16Codec<unsigned short, false>;

// What both directions share: runs of one plane are moved as they are.
template <class Rules, class FromCodec, class ToCodec>
struct BetweenWideForms {
  using From = FromCodec;
  using To = ToCodec;
  using At = Place<typename From::Unit, typename To::Unit>;
  static constexpr bool kStopAtZero = false;
  static constexpr std::ptrdiff_t kShortText = 7;
  static constexpr bool kHasShortRuns = false;
  static constexpr std::ptrdiff_t kShortestRun = 4;

  static At ConvertRun(At at, const At& end) {
    const unsigned int first = From::Get(*at.source);
    const bool supplementary = IsSurrogate(first) || first > kLastOfBmp;
    return supplementary ? MoveSupplementary(at, end) : MoveBmp(at, end);
  }

 private:
  static At MoveBmp(At at, const At& end) {
    __m128i units;
    while (end.source - at.source >= 8 && end.target - at.target >= 8 &&
           From::LoadBmp8(at.source, units) && HoldsNoSurrogate(units)) {
      To::StoreBmp8(at.target, units);
      at.source += 8;
      at.target += 8;
    }
    return at;
  }

  static At MoveSupplementary(At at, const At& end) {
    constexpr std::ptrdiff_t kSource = 4 * From::kSupplementaryUnits;
    constexpr std::ptrdiff_t kTarget = 4 * To::kSupplementaryUnits;
    __m128i values;
    while (end.source - at.source >= kSource && end.target - at.target >= kTarget &&
           From::LoadSupplementary4(at.source, values)) {
      To::StoreSupplementary4(at.target, values);
      at.source += kSource;
      at.target += kTarget;
    }
    return at;
  }
};

struct Utf32To16 : BetweenWideForms<Utf32To16, Utf32Codec, Utf16Words> {
  static bool TakeOne(At& at, const At& end) {
    const unsigned int value = *at.source;
    if (IsSurrogate(value) || value > kLastCodePoint) return false;
    if (value <= kLastOfBmp) {
      *at.target++ = static_cast<unsigned short>(value);
    } else {
      if (end.target - at.target < 2) return false;
      Utf16Words::PutSupplementary(at.target, value);
      at.target += 2;
    }
    ++at.source;
    return true;
  }

  static Stop Step(At& at, const At& end, bool strict, ConversionResult& noted) {
    if (at.target >= end.target) return targetExhausted;
    const unsigned int value = *at.source;
    const bool outside = value > kLastCodePoint;
    if (!outside && !IsSurrogate(value)) {
      if (!TakeOne(at, end)) return targetExhausted;
      return {};
    }
    if (strict && !outside) return sourceIllegal;
    if (strict) noted = sourceIllegal;  // nothing is written and the conversion goes on
    if (!strict) *at.target++ = static_cast<unsigned short>(kReplacement);
    ++at.source;
    return {};
  }
};

struct Utf16To32 : BetweenWideForms<Utf16To32, Utf16Words, Utf32Codec> {
  static bool TakeOne(At& at, const At& end) {
    unsigned int value = at.source[0];
    std::ptrdiff_t units = 1;
    if (IsSurrogate(value)) {
      if (!IsHighSurrogate(value) || end.source - at.source < 2 || !IsLowSurrogate(at.source[1]))
        return false;
      value = JoinSurrogates(value, at.source[1]);
      units = 2;
    }
    *at.target++ = value;
    at.source += units;
    return true;
  }

  // Everything but a surrogate that stands alone is for TakeOne, once there is room.
  static Stop Step(At& at, const At& end, bool strict, ConversionResult&) {
    const unsigned int value = at.source[0];
    if (IsHighSurrogate(value) && end.source - at.source < 2) return sourceExhausted;
    const bool paired = IsHighSurrogate(value) && IsLowSurrogate(at.source[1]);
    const bool alone = IsSurrogate(value) && !paired;
    if (alone && strict) return sourceIllegal;
    if (at.target >= end.target) return targetExhausted;
    if (!alone) {
      TakeOne(at, end);
      return {};
    }
    *at.target++ = value;
    ++at.source;
    return {};
  }
};

bool HoldsZero(const unsigned char* s, std::ptrdiff_t length) {
  for (std::ptrdiff_t i = 0; i < length; ++i)
    if (s[i] == 0) return true;
  return false;
}

}  // namespace

ConversionResult ConvertUTF32toUTF16(const unsigned int** sourceStart,
                                     const unsigned int* sourceEnd, unsigned short** targetStart,
                                     unsigned short* targetEnd, ConversionFlags flags) {
  return Convert<Utf32To16>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF16toUTF32(const unsigned short** sourceStart,
                                     const unsigned short* sourceEnd, unsigned int** targetStart,
                                     unsigned int* targetEnd, ConversionFlags flags) {
  return Convert<Utf16To32>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

bool isLegalUTF8Sequence(const unsigned char* source, const unsigned char* sourceEnd) {
  if (source >= sourceEnd || TrailBytes(*source) >= sourceEnd - source) return false;
  return IsLegalUtf8<EncodedSurrogates::kIllegal>(source);
}

bool isLegalUTF8Substring(const unsigned char* s, int length) {
  if (length == 0) return false;
  const std::ptrdiff_t needed = TrailBytes(*s) + 1;
  if (length > 0 && length < needed) return false;
  if (length < 0 && HoldsZero(s, needed)) return false;
  return IsLegalUtf8<EncodedSurrogates::kPass>(s);
}

}  // namespace MCMEM_NAMESPACE
