// UTF-8 to units by vectors: blocks of ASCII and two byte sequences, runs of three byte sequences,
// runs of four byte sequences.
//
// These functions convert clean text only. They stop before anything that is illegal, cut off, a
// surrogate, or (kStopAtZero) a zero, and leave it to the caller. They write nothing but finished
// characters.
#ifndef MCMEM_ENCODING_UTF8DECODINGBLOCKS_H
#define MCMEM_ENCODING_UTF8DECODINGBLOCKS_H

#include "encoding/FormConversion.h"
#include "encoding/ShuffleTables.h"
#include "encoding/UnitCodecs.h"
#include "encoding/WideKernels.h"

namespace MCMEM_NAMESPACE {

template <class To>
using Utf8Place = Place<unsigned char, typename To::Unit>;

inline constexpr ShuffleTable kLaneDrops = MakeLaneDropTable();

// The bytes from 0xC2 to 0xDF.
inline __m128i TwoByteLeads(__m128i bytes) {
  const __m128i above = _mm_sub_epi8(bytes, _mm_set1_epi8(static_cast<char>(0xC2)));
  return _mm_cmpeq_epi8(_mm_min_epu8(above, _mm_set1_epi8(0xDF - 0xC2)), above);
}

// The units of 16 bytes of ASCII and two byte sequences, as 16-bit lanes: at a trail byte the
// character's unit, at a lead byte nothing of use. `before` ends with the byte before these.
struct PairUnits {
  __m128i first;
  __m128i second;
};

MCMEM_SHUFFLING inline PairUnits DecodePairs(__m128i bytes, __m128i before, __m128i isTrail) {
  const __m128i zero = _mm_setzero_si128();
  // an ASCII byte has bit 7 clear, a trail byte bit 6: one mask fits both
  const __m128i low = _mm_and_si128(bytes, _mm_set1_epi8(0x7F));
  const __m128i leads = _mm_alignr_epi8(bytes, before, 15);
  const __m128i high = _mm_and_si128(_mm_and_si128(leads, isTrail), _mm_set1_epi8(0x1F));
  return {
      _mm_or_si128(_mm_slli_epi16(_mm_unpacklo_epi8(high, zero), 6), _mm_unpacklo_epi8(low, zero)),
      _mm_or_si128(_mm_slli_epi16(_mm_unpackhi_epi8(high, zero), 6), _mm_unpackhi_epi8(low, zero))};
}

inline __m128i TrailBytesIn(__m128i bytes) { return _mm_cmplt_epi8(bytes, _mm_set1_epi8(-64)); }

// The lanes that `dropped` has no bit for, moved together.
MCMEM_SHUFFLING inline __m128i CloseGaps(__m128i lanes, unsigned dropped) {
  return _mm_shuffle_epi8(lanes, ascii::Load(kLaneDrops[dropped].from));
}

// The last four of `count` lanes that are kept, at the bottom; `count` is at least 4.
MCMEM_SHUFFLING inline __m128i LastFourKept(__m128i lanes, unsigned dropped, int count) {
  const unsigned char* order =
      kLaneDrops[dropped].from + 2 * static_cast<std::ptrdiff_t>(count - 4);
  return _mm_shuffle_epi8(lanes, _mm_loadl_epi64(reinterpret_cast<const __m128i*>(order)));
}

// Stores up to 8 lanes and nothing behind them; returns their number.
template <class To>
MCMEM_SHUFFLING inline int StoreKept(typename To::Unit* d, __m128i lanes, unsigned dropped) {
  const int count = 8 - __builtin_popcount(dropped);
  const __m128i kept = CloseGaps(lanes, dropped);
  if (count >= 4) {
    To::StoreBmp4(d, kept);
    To::StoreBmp4(d + count - 4, LastFourKept(lanes, dropped, count));
    return count;
  }
  auto left = static_cast<unsigned long long>(_mm_cvtsi128_si64(kept));
  for (int i = 0; i < count; ++i, left >>= 16)
    d[i] = To::Make(static_cast<unsigned int>(left) & 0xFFFFu);
  return count;
}

// 4 to 15 bytes, and zeros behind them.
inline __m128i LoadPartly(const unsigned char* s, std::ptrdiff_t size) {
  const auto bits = [](std::ptrdiff_t bytes) { return static_cast<int>(8 * bytes); };
  if (size < 8) {
    unsigned int head, tail;
    std::memcpy(&head, s, 4);
    std::memcpy(&tail, s + size - 4, 4);
    const unsigned long long upper = static_cast<unsigned long long>(tail) << bits(size - 4);
    return _mm_cvtsi64_si128(static_cast<long long>(head | upper));
  }
  unsigned long long head, tail;
  std::memcpy(&head, s, 8);
  std::memcpy(&tail, s + size - 8, 8);
  const unsigned long long upper = tail >> 8 >> bits(15 - size);  // none when there are 8 bytes
  return _mm_set_epi64x(static_cast<long long>(upper), static_cast<long long>(head));
}

constexpr std::ptrdiff_t kShortestPairTail = 4;

// What follows the last whole block. Takes all of the 4 to 15 bytes, except a lead byte at their
// end, or nothing.
template <class To, bool kStopAtZero>
MCMEM_SHUFFLING Utf8Place<To> ConvertPairTail(Utf8Place<To> at, Utf8Place<To> end) {
  const std::ptrdiff_t size = end.source - at.source;
  if (end.target - at.target < size) return at;
  const __m128i bytes = LoadPartly(at.source, size);
  const unsigned inside = (1u << size) - 1;
  const unsigned stops = ascii::StopsOfBytes<kStopAtZero>(bytes) & inside;
  const __m128i isTrail = TrailBytesIn(bytes);
  const unsigned trails = ascii::ByteMaskOf(isTrail);
  const unsigned leads = ascii::ByteMaskOf(TwoByteLeads(bytes));
  if (trails != (leads << 1 & inside) || stops != (leads | trails)) return at;

  const PairUnits units = DecodePairs(bytes, _mm_setzero_si128(), isTrail);
  const unsigned dropped = leads | ~inside;
  at.target += StoreKept<To>(at.target, units.first, dropped & 0xFF);
  if (size > 8) at.target += StoreKept<To>(at.target, units.second, dropped >> 8 & 0xFF);
  at.source += size - (leads >> (size - 1) & 1);
  return at;
}

// 16 bytes at a time, each of them ASCII or part of a two byte sequence. A sequence may cross from
// block to block: its unit is written with the block of its trail byte.
template <class To, bool kStopAtZero>
MCMEM_SHUFFLING Utf8Place<To> ConvertPairBlocks(Utf8Place<To> at, Utf8Place<To> end) {
  __m128i before = _mm_setzero_si128();
  unsigned open = 0;    // 1 when the block before ended with a lead byte
  int plainBlocks = 0;  // of ASCII alone, in sequence: the caller has a faster way for long ones
  while (end.source - at.source >= 16 && end.target - at.target >= 16 && plainBlocks < 4) {
    const __m128i bytes = ascii::Load(at.source);
    const unsigned stops = ascii::StopsOfBytes<kStopAtZero>(bytes);
    const __m128i isTrail = TrailBytesIn(bytes);
    const unsigned trails = ascii::ByteMaskOf(isTrail);
    const unsigned leads = ascii::ByteMaskOf(TwoByteLeads(bytes));
    if (trails != ((leads << 1 | open) & 0xFFFFu) || stops != (leads | trails)) break;

    const PairUnits units = DecodePairs(bytes, before, isTrail);
    const int firstCount = 8 - __builtin_popcount(leads & 0xFF);
    const int secondCount = 8 - __builtin_popcount(leads >> 8);
    // Leads never stand side by side, so that each half gives 4 to 8 units. The first store may run
    // into the second half's units, not beyond them; the second half is written by its first 4 and
    // its last 4 units, which ends exactly.
    To::StoreBmp8(at.target, CloseGaps(units.first, leads & 0xFF));
    at.target += firstCount;
    To::StoreBmp4(at.target, CloseGaps(units.second, leads >> 8));
    at.target += secondCount;
    To::StoreBmp4(at.target - 4, LastFourKept(units.second, leads >> 8, secondCount));
    at.source += 16;
    open = leads >> 15;
    before = bytes;
    plainBlocks = stops == 0 ? plainBlocks + 1 : 0;
  }
  at.source -= open;
  return at;
}

// Four sequences of three bytes from 12 bytes, as code points in 32-bit lanes; `legal` has all bits
// set in the lanes that hold a legal sequence and no surrogate.
struct TripleGroup {
  __m128i values;
  __m128i legal;
};

MCMEM_SHUFFLING inline TripleGroup DecodeTriples(__m128i bytes) {
  const __m128i order = _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1);
  const __m128i lanes = _mm_shuffle_epi8(bytes, order);
  const __m128i marks = _mm_and_si128(lanes, _mm_set1_epi32(0xF0C0C0));
  const __m128i trail = _mm_and_si128(lanes, _mm_set1_epi32(0x3F));
  const __m128i middle = _mm_and_si128(_mm_srli_epi32(lanes, 2), _mm_set1_epi32(0xFC0));
  const __m128i lead = _mm_and_si128(_mm_srli_epi32(lanes, 4), _mm_set1_epi32(0xF000));
  const __m128i values = _mm_or_si128(_mm_or_si128(trail, middle), lead);
  const __m128i top = _mm_and_si128(values, _mm_set1_epi32(0xF800));
  const __m128i refused = _mm_or_si128(_mm_cmpeq_epi32(top, _mm_setzero_si128()),
                                       _mm_cmpeq_epi32(top, _mm_set1_epi32(0xD800)));
  return {values, _mm_andnot_si128(refused, _mm_cmpeq_epi32(marks, _mm_set1_epi32(0xE08080)))};
}

// Two groups of code points up to U+FFFF as 16-bit lanes.
inline __m128i PackBmp(__m128i first, __m128i second) {
  // the pack saturates as signed numbers: spread the sign first, so that all bits survive
  return _mm_packs_epi32(_mm_srai_epi32(_mm_slli_epi32(first, 16), 16),
                         _mm_srai_epi32(_mm_slli_epi32(second, 16), 16));
}

inline __m128i Load12(const unsigned char* s) {
  int last;
  std::memcpy(&last, s + 8, 4);
  return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(s)),
                            _mm_cvtsi32_si128(last));
}

// Eight sequences of three bytes at a time, then four.
template <class To>
MCMEM_SHUFFLING Utf8Place<To> ConvertTriples(Utf8Place<To> at, Utf8Place<To> end) {
  while (end.source - at.source >= 28 && end.target - at.target >= 8) {
    const TripleGroup first = DecodeTriples(ascii::Load(at.source));
    const TripleGroup second = DecodeTriples(ascii::Load(at.source + 12));
    if (ascii::ByteMaskOf(_mm_and_si128(first.legal, second.legal)) != 0xFFFF) break;
    To::StoreBmp8(at.target, PackBmp(first.values, second.values));
    at.source += 24;
    at.target += 8;
  }
  while (end.source - at.source >= 12 && end.target - at.target >= 4) {
    const TripleGroup group = DecodeTriples(Load12(at.source));
    if (ascii::ByteMaskOf(group.legal) != 0xFFFF) break;
    To::StoreBmp4(at.target, PackBmp(group.values, group.values));
    at.source += 12;
    at.target += 4;
  }
  return at;
}

// Four sequences of four bytes at a time.
template <class To>
inline Utf8Place<To> ConvertQuads(Utf8Place<To> at, Utf8Place<To> end) {
  while (end.source - at.source >= 16 && end.target - at.target >= 4 * To::kSupplementaryUnits) {
    const __m128i lanes = ascii::Load(at.source);
    const __m128i marks = _mm_and_si128(lanes, _mm_set1_epi32(static_cast<int>(0xC0C0C0F8)));
    const __m128i lead = _mm_slli_epi32(_mm_and_si128(lanes, _mm_set1_epi32(0x07)), 18);
    const __m128i second = _mm_slli_epi32(_mm_and_si128(lanes, _mm_set1_epi32(0x3F00)), 4);
    const __m128i third = _mm_and_si128(_mm_srli_epi32(lanes, 10), _mm_set1_epi32(0xFC0));
    const __m128i fourth = _mm_and_si128(_mm_srli_epi32(lanes, 24), _mm_set1_epi32(0x3F));
    const __m128i values = _mm_or_si128(_mm_or_si128(lead, second), _mm_or_si128(third, fourth));
    const __m128i inRange = _mm_and_si128(_mm_cmpgt_epi32(values, _mm_set1_epi32(0xFFFF)),
                                          _mm_cmplt_epi32(values, _mm_set1_epi32(0x110000)));
    const __m128i marked = _mm_cmpeq_epi32(marks, _mm_set1_epi32(static_cast<int>(0x808080F0)));
    if (ascii::ByteMaskOf(_mm_and_si128(marked, inRange)) != 0xFFFF) break;
    To::StoreSupplementary4(at.target, values);
    at.source += 16;
    at.target += 4 * To::kSupplementaryUnits;
  }
  return at;
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_UTF8DECODINGBLOCKS_H
