// UTF-16 and UTF-32 to UTF-8 by vectors: blocks of letters below U+0800, runs of other characters
// of the Basic Multilingual Plane, runs of supplementary ones.
//
// These functions convert clean text only. They stop before a surrogate that stands alone and
// before a zero, and leave it to the caller. They write nothing but finished characters.
#ifndef MCMEM_ENCODING_UTF8ENCODINGBLOCKS_H
#define MCMEM_ENCODING_UTF8ENCODINGBLOCKS_H

#include "encoding/FormConversion.h"
#include "encoding/ShuffleTables.h"
#include "encoding/UnitCodecs.h"
#include "encoding/WideKernels.h"

namespace MCMEM_NAMESPACE {

template <class From>
using PlaceToUtf8 = Place<typename From::Unit, unsigned char>;

inline constexpr ShuffleTable kByteKeeps = MakeByteKeepTable();

// All ones in the lanes from `first` to `first` + `span`, as unsigned numbers.
inline __m128i UnitsWithin(__m128i units, int first, int span) {
  const __m128i above = _mm_sub_epi16(units, _mm_set1_epi16(static_cast<short>(first)));
  return _mm_cmpeq_epi16(_mm_subs_epu16(above, _mm_set1_epi16(static_cast<short>(span))),
                         _mm_setzero_si128());
}

inline unsigned LaneMask(__m128i v) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(v, v))) & 0xFFu;
}

// 8 units at a time, each from U+0001 to U+07FF.
template <class From>
MCMEM_SHUFFLING PlaceToUtf8<From> EncodeShortBlocks(PlaceToUtf8<From> at, PlaceToUtf8<From> end) {
  int plainBlocks = 0;  // of ASCII alone, in sequence: the caller has a faster way for long ones
  while (end.source - at.source >= 8 && end.target - at.target >= 16 && plainBlocks < 8) {
    __m128i units;
    if (!From::LoadBmp8(at.source, units)) break;
    if (ascii::ByteMaskOf(UnitsWithin(units, 1, 0x7FE)) != 0xFFFF) break;
    const __m128i isAscii = UnitsWithin(units, 1, 0x7E);
    const __m128i lead = _mm_or_si128(_mm_srli_epi16(units, 6), _mm_set1_epi16(0xC0));
    const __m128i trail =
        _mm_or_si128(_mm_and_si128(units, _mm_set1_epi16(0x3F)), _mm_set1_epi16(0x80));
    const __m128i pairs = _mm_or_si128(lead, _mm_slli_epi16(trail, 8));
    const __m128i lanes =
        _mm_or_si128(_mm_and_si128(isAscii, units), _mm_andnot_si128(isAscii, pairs));
    const unsigned longer = LaneMask(isAscii) ^ 0xFFu;
    const unsigned char* order = kByteKeeps[longer].from;
    const int extra = __builtin_popcount(longer);
    // 8 to 16 bytes come out: the first 8 and the last 8 of them end exactly
    const __m128i tail = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(order + extra));
    ascii::Bytes::Store8(at.target, _mm_shuffle_epi8(lanes, ascii::Load(order)));
    ascii::Bytes::Store8(at.target + extra, _mm_shuffle_epi8(lanes, tail));
    at.source += 8;
    at.target += 8 + extra;
    plainBlocks = longer == 0 ? plainBlocks + 1 : 0;
  }
  return at;
}

// The three bytes of four units, in 32-bit lanes with the lead byte lowest and a zero on top.
inline __m128i EncodeTriples(__m128i values) {
  const __m128i lead = _mm_srli_epi32(values, 12);
  const __m128i middle = _mm_slli_epi32(_mm_and_si128(values, _mm_set1_epi32(0xFC0)), 2);
  const __m128i trail = _mm_slli_epi32(_mm_and_si128(values, _mm_set1_epi32(0x3F)), 16);
  return _mm_or_si128(_mm_or_si128(lead, middle), _mm_or_si128(trail, _mm_set1_epi32(0x8080E0)));
}

// 8 units at a time, each from U+0800 on and no surrogate.
template <class From>
MCMEM_SHUFFLING PlaceToUtf8<From> EncodeTripleBlocks(PlaceToUtf8<From> at, PlaceToUtf8<From> end) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i order = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  while (end.source - at.source >= 8 && end.target - at.target >= 24) {
    __m128i units;
    if (!From::LoadBmp8(at.source, units) || !HoldsNoSurrogate(units)) break;
    if (ascii::ByteMaskOf(UnitsWithin(units, 0, 0x7FF)) != 0) break;
    const __m128i first = _mm_shuffle_epi8(EncodeTriples(_mm_unpacklo_epi16(units, zero)), order);
    const __m128i second = _mm_shuffle_epi8(EncodeTriples(_mm_unpackhi_epi16(units, zero)), order);
    ascii::Store(at.target, _mm_or_si128(first, _mm_slli_si128(second, 12)));
    ascii::Bytes::Store8(at.target + 16, _mm_srli_si128(second, 4));
    at.source += 8;
    at.target += 24;
  }
  return at;
}

// Four supplementary characters at a time.
template <class From>
inline PlaceToUtf8<From> EncodeQuadBlocks(PlaceToUtf8<From> at, PlaceToUtf8<From> end) {
  constexpr std::ptrdiff_t kUnits = 4 * From::kSupplementaryUnits;
  while (end.source - at.source >= kUnits && end.target - at.target >= 16) {
    __m128i values;
    if (!From::LoadSupplementary4(at.source, values)) break;
    const __m128i lead = _mm_srli_epi32(values, 18);
    const __m128i second = _mm_and_si128(_mm_srli_epi32(values, 4), _mm_set1_epi32(0x3F00));
    const __m128i third = _mm_slli_epi32(_mm_and_si128(values, _mm_set1_epi32(0xFC0)), 10);
    const __m128i fourth = _mm_slli_epi32(_mm_and_si128(values, _mm_set1_epi32(0x3F)), 24);
    const __m128i frame = _mm_set1_epi32(static_cast<int>(0x808080F0));
    ascii::Store(at.target, _mm_or_si128(_mm_or_si128(_mm_or_si128(lead, second), frame),
                                         _mm_or_si128(third, fourth)));
    at.source += kUnits;
    at.target += 16;
  }
  return at;
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_UTF8ENCODINGBLOCKS_H
