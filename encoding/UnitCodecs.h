// The units of the encoding forms as vectors of characters: 8 of the Basic Multilingual Plane as
// 16-bit lanes, or 4 supplementary ones as 32-bit lanes.
#ifndef MCMEM_ENCODING_UNITCODECS_H
#define MCMEM_ENCODING_UNITCODECS_H

#include "encoding/AsciiRuns.h"
#include "encoding/Utf8Sequence.h"

namespace MCMEM_NAMESPACE {

// Whether none of the 8 lanes is a surrogate.
inline bool HoldsNoSurrogate(__m128i units) {
  const __m128i top = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800)));
  const __m128i found = _mm_cmpeq_epi16(top, _mm_set1_epi16(static_cast<short>(0xD800)));
  return ascii::ByteMaskOf(found) == 0;
}

// A codec reads 8 units (`LoadBmp8`, false when they do not fit into 16 bits) or 4 characters
// (`LoadSupplementary4`, false when one of them is none or belongs to the Basic Multilingual
// Plane), and stores as many, writing exactly their units.

template <class UnitType, bool kHighByteFirst>
struct Utf16Codec : ascii::Units16<UnitType, kHighByteFirst> {
  using Base = ascii::Units16<UnitType, kHighByteFirst>;
  using Unit = UnitType;
  static constexpr std::ptrdiff_t kSupplementaryUnits = 2;

  static bool LoadBmp8(const Unit* s, __m128i& units) {
    units = Base::Ordered(ascii::Load(s));
    return true;
  }
  static bool LoadSupplementary4(const Unit* s, __m128i& values) {
    const __m128i units = Base::Ordered(ascii::Load(s));  // the high surrogates are lower
    const __m128i marks = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFC00)));
    const __m128i pair = _mm_set1_epi32(static_cast<int>(0xDC00D800));
    const __m128i high = _mm_slli_epi32(_mm_and_si128(units, _mm_set1_epi32(0x3FF)), 10);
    const __m128i low = _mm_and_si128(_mm_srli_epi32(units, 16), _mm_set1_epi32(0x3FF));
    values = _mm_add_epi32(_mm_or_si128(high, low), _mm_set1_epi32(0x10000));
    return ascii::ByteMaskOf(_mm_cmpeq_epi16(marks, pair)) == 0xFFFF;
  }

  static void StoreBmp8(Unit* d, __m128i units) { ascii::Store(d, Base::Ordered(units)); }
  static void StoreBmp4(Unit* d, __m128i units) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d), Base::Ordered(units));
  }
  static void StoreSupplementary4(Unit* d, __m128i values) {
    const __m128i high = _mm_add_epi32(_mm_srli_epi32(values, 10), _mm_set1_epi32(0xD7C0));
    const __m128i low =
        _mm_or_si128(_mm_and_si128(values, _mm_set1_epi32(0x3FF)), _mm_set1_epi32(0xDC00));
    StoreBmp8(d, _mm_or_si128(high, _mm_slli_epi32(low, 16)));
  }
  static void PutSupplementary(Unit* d, unsigned int value) {
    d[0] = Base::Make(HighSurrogateOf(value));
    d[1] = Base::Make(LowSurrogateOf(value));
  }
};

struct Utf32Codec : ascii::Units32 {
  static constexpr std::ptrdiff_t kSupplementaryUnits = 1;

  static bool LoadBmp8(const Unit* s, __m128i& units) {
    const __m128i low = ascii::Load(s);
    const __m128i high = ascii::Load(s + 4);
    // the pack saturates as signed numbers: moved down by 0x8000, then back
    const __m128i half = _mm_set1_epi32(0x8000);
    const __m128i packed = _mm_packs_epi32(_mm_sub_epi32(low, half), _mm_sub_epi32(high, half));
    units = _mm_xor_si128(packed, _mm_set1_epi16(static_cast<short>(0x8000)));
    const __m128i above = _mm_srli_epi32(_mm_or_si128(low, high), 16);
    return ascii::ByteMaskOf(_mm_cmpeq_epi32(above, _mm_setzero_si128())) == 0xFFFF;
  }
  static bool LoadSupplementary4(const Unit* s, __m128i& values) {
    values = ascii::Load(s);  // a value with the top bit is negative and thus too small
    const __m128i inRange = _mm_and_si128(_mm_cmpgt_epi32(values, _mm_set1_epi32(0xFFFF)),
                                          _mm_cmplt_epi32(values, _mm_set1_epi32(0x110000)));
    return ascii::ByteMaskOf(inRange) == 0xFFFF;
  }

  static void StoreBmp8(Unit* d, __m128i units) {
    StoreBmp4(d, units);
    ascii::Store(d + 4, _mm_unpackhi_epi16(units, _mm_setzero_si128()));
  }
  static void StoreBmp4(Unit* d, __m128i units) {
    ascii::Store(d, _mm_unpacklo_epi16(units, _mm_setzero_si128()));
  }
  static void StoreSupplementary4(Unit* d, __m128i values) { ascii::Store(d, values); }
  static void PutSupplementary(Unit* d, unsigned int value) { d[0] = value; }
};

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_UNITCODECS_H
