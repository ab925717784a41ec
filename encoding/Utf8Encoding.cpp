// From UTF-16 and UTF-32 to UTF-8.

#include "encoding/FormConversion.h"
#include "encoding/Utf8EncodingBlocks.h"
#include "encoding/Utf8Sequence.h"
#include "mcmem/UnicodeForms.h"

namespace MCMEM_NAMESPACE {
namespace {

// What both source forms share.
template <class Rules, class FromCodec>
struct ToUtf8Rules {
  using From = FromCodec;
  using To = ascii::Bytes;
  using At = PlaceToUtf8<From>;
  static constexpr std::ptrdiff_t kShortText = 7;
  static constexpr bool kHasShortRuns = false;
  static constexpr std::ptrdiff_t kShortestRun = 4;

  static At ConvertRun(At at, const At& end) {
    const unsigned int value = From::Get(*at.source);
    if (IsSurrogate(value) || value > kLastOfBmp) return EncodeQuadBlocks<From>(at, end);
    const auto* const s = at.source;
    if (value < 0x80) at = ConvertAscii<Rules>(at, end);
    if (at.source != s || !CanShuffle()) return at;
    return value < 0x800 ? EncodeShortBlocks<From>(at, end) : EncodeTripleBlocks<From>(at, end);
  }

  // There is room for one byte.
  static bool TakeOne(At& at, const At& end) {
    const unsigned int value = From::Get(*at.source);
    if (value >= 0x80) return value < 0x800 ? TakeTwo(at, end, value) : TakeLong(at, end, value);
    if (Rules::kStopAtZero && value == 0) return false;
    *at.target++ = static_cast<unsigned char>(value);
    ++at.source;
    return true;
  }

 private:
  static bool TakeTwo(At& at, const At& end, unsigned int value) {
    if (end.target - at.target < 2) return false;
    at.target[0] = static_cast<unsigned char>(0xC0 | value >> 6);
    at.target[1] = TrailByteOf(value, 0);
    at.target += 2;
    ++at.source;
    return true;
  }

  static bool TakeLong(At& at, const At& end, unsigned int value) {
    if (value > kLastOfBmp || IsSurrogate(value)) return Rules::TakeSupplementary(at, end, value);
    if (end.target - at.target < 3) return false;
    at.target[0] = static_cast<unsigned char>(0xE0 | value >> 12);
    at.target[1] = TrailByteOf(value, 6);
    at.target[2] = TrailByteOf(value, 0);
    at.target += 3;
    ++at.source;
    return true;
  }
};

template <bool kHighByteFirst>
struct Utf16To8 : ToUtf8Rules<Utf16To8<kHighByteFirst>, Utf16Codec<UNALIGNED16, kHighByteFirst>> {
  using From = Utf16Codec<UNALIGNED16, kHighByteFirst>;
  using At = PlaceToUtf8<From>;
  static constexpr bool kStopAtZero = true;

  static bool TakeSupplementary(At& at, const At& end, unsigned int high) {
    if (end.source - at.source < 2 || end.target - at.target < 4 || !IsHighSurrogate(high))
      return false;
    const unsigned int low = From::Get(at.source[1]);
    if (!IsLowSurrogate(low)) return false;
    PutUtf8(JoinSurrogates(high, low), at.target);
    at.source += 2;
    at.target += 4;
    return true;
  }

  static Stop Step(At& at, const At& end, bool strict, ConversionResult&) {
    unsigned int value = From::Get(at.source[0]);
    std::ptrdiff_t units = 1;
    if (IsHighSurrogate(value)) {
      if (end.source - at.source < 2) return sourceExhausted;
      const unsigned int next = From::Get(at.source[1]);
      if (IsLowSurrogate(next)) {
        value = JoinSurrogates(value, next);
        units = 2;
      }
    }
    if (strict && IsSurrogate(value)) return sourceIllegal;
    if (end.target - at.target < Utf8Length(value)) return targetExhausted;
    PutUtf8(value, at.target);
    at.source += units;
    if (value == 0) return conversionOK;  // the target stays on the zero
    at.target += Utf8Length(value);
    return {};
  }
};

struct Utf32To8 : ToUtf8Rules<Utf32To8, Utf32Codec> {
  static constexpr bool kStopAtZero = false;

  static bool TakeSupplementary(At& at, const At& end, unsigned int value) {
    if (value <= kLastOfBmp || value > kLastCodePoint || end.target - at.target < 4) return false;
    PutUtf8(value, at.target);
    ++at.source;
    at.target += 4;
    return true;
  }

  static Stop Step(At& at, const At& end, bool strict, ConversionResult& noted) {
    unsigned int value = *at.source;
    if (strict && IsSurrogate(value)) return sourceIllegal;
    if (value > kLastCodePoint) {
      value = kReplacement;
      noted = sourceIllegal;  // and the conversion goes on
    }
    if (end.target - at.target < Utf8Length(value)) return targetExhausted;
    PutUtf8(value, at.target);
    ++at.source;
    at.target += Utf8Length(value);
    return {};
  }
};

}  // namespace

ConversionResult ConvertUTF32toUTF8(const unsigned int** sourceStart, const unsigned int* sourceEnd,
                                    unsigned char** targetStart, unsigned char* targetEnd,
                                    ConversionFlags flags) {
  return Convert<Utf32To8>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF16toUTF8(const UNALIGNED16** sourceStart, const UNALIGNED16* sourceEnd,
                                    unsigned char** targetStart, unsigned char* targetEnd,
                                    ConversionFlags flags) {
  return Convert<Utf16To8<false>>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult ConvertUTF16RevtoUTF8(const UNALIGNED16** sourceStart,
                                       const UNALIGNED16* sourceEnd, unsigned char** targetStart,
                                       unsigned char* targetEnd, ConversionFlags flags) {
  return Convert<Utf16To8<true>>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

ConversionResult LocalUTF16toUTF8(const UNALIGNED16** sourceStart, const UNALIGNED16* sourceEnd,
                                  unsigned char** targetStart, unsigned char* targetEnd,
                                  ConversionFlags flags, int reversed) {
  const auto convert = reversed == 0 ? ConvertUTF16toUTF8 : ConvertUTF16RevtoUTF8;
  return convert(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

}  // namespace MCMEM_NAMESPACE
