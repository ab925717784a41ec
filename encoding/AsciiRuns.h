/// @file
/// Runs of ASCII, counted, copied, widened and narrowed 16 units at a time.
///
/// Every function returns how many units it handled: it stops before the first unit that is not
/// ASCII, and with `kStopAtZero` also before the first zero unit. Nothing outside [s, s + n) is
/// read and nothing outside [d, d + returned) is written, so that a caller may pass exact buffers
/// and finds its old content behind the result. Source and target must not overlap.
///
/// The code needs SSE2 only, which every x86-64 has.
#ifndef MCMEM_ENCODING_ASCIIRUNS_H
#define MCMEM_ENCODING_ASCIIRUNS_H

#include <emmintrin.h>

#include <cstddef>
#include <cstring>

#include "mcmem/UnicodeForms.h"

namespace MCMEM_NAMESPACE {
namespace ascii {

/// How units of one kind are read and written: 16 or 8 at a time as a vector of bytes, and singly.
///
/// `Load16` and `Load8` give the units' low bytes; their `stops` has one bit per unit, set where
/// the unit is not ASCII (or is zero, when that stops). Single units are read as they are.
struct Block {
  __m128i bytes;
  unsigned stops;
};

/// One bit per byte; only the first 8 count after an 8-byte load.
template <bool kStopAtZero>
inline unsigned StopsOfBytes(__m128i bytes) {
  // 0 - 1 has the top bit, and so has 0x80 or more; 0x80 - 1 has not, hence the "or"
  const __m128i stops =
      kStopAtZero ? _mm_or_si128(bytes, _mm_add_epi8(bytes, _mm_set1_epi8(-1))) : bytes;
  return static_cast<unsigned>(_mm_movemask_epi8(stops));
}

/// All ones in each 16-bit lane that does not stop.
template <bool kStopAtZero>
inline __m128i CleanUnits(__m128i units) {
  const __m128i excess =
      kStopAtZero ? _mm_subs_epu16(_mm_sub_epi16(units, _mm_set1_epi16(1)), _mm_set1_epi16(0x7E))
                  : _mm_subs_epu16(units, _mm_set1_epi16(0x7F));
  return _mm_cmpeq_epi16(excess, _mm_setzero_si128());
}

template <bool kStopAtZero>
inline Block BlockOfUnits(__m128i low, __m128i high) {
  const __m128i clean =
      _mm_packs_epi16(CleanUnits<kStopAtZero>(low), CleanUnits<kStopAtZero>(high));
  const auto stops = static_cast<unsigned>(_mm_movemask_epi8(clean)) ^ 0xFFFFu;
  return {_mm_packus_epi16(low, high), stops};
}

inline __m128i Load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
inline void Store(void* p, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }

inline unsigned ByteMaskOf(__m128i v) { return static_cast<unsigned>(_mm_movemask_epi8(v)); }

inline __m128i SwapBytes(__m128i units) {
  return _mm_or_si128(_mm_slli_epi16(units, 8), _mm_srli_epi16(units, 8));
}

struct Bytes {
  using Unit = unsigned char;
  template <bool kStopAtZero>
  static Block Load16(const Unit* s) {
    const __m128i bytes = Load(s);
    return {bytes, StopsOfBytes<kStopAtZero>(bytes)};
  }
  template <bool kStopAtZero>
  static Block Load8(const Unit* s) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(s));
    return {bytes, StopsOfBytes<kStopAtZero>(bytes) & 0xFFu};
  }
  static void Store16(Unit* d, __m128i bytes) { Store(d, bytes); }
  static void Store8(Unit* d, __m128i bytes) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d), bytes);
  }
  static unsigned Get(Unit unit) { return unit; }
  static Unit Make(unsigned value) { return static_cast<Unit>(value); }
};

/// 16-bit units at any address: `UnitType` is unsigned short, or UNALIGNED16 in either byte order.
template <class UnitType, bool kHighByteFirst>
struct Units16 {
  using Unit = UnitType;
  static_assert(sizeof(Unit) == 2);
  static __m128i Ordered(__m128i units) { return kHighByteFirst ? SwapBytes(units) : units; }
  template <bool kStopAtZero>
  static Block Load16(const Unit* s) {
    return BlockOfUnits<kStopAtZero>(Ordered(Load(s)), Ordered(Load(s + 8)));
  }
  template <bool kStopAtZero>
  static Block Load8(const Unit* s) {
    const __m128i units = Ordered(Load(s));
    const Block block = BlockOfUnits<kStopAtZero>(units, units);
    return {block.bytes, block.stops & 0xFFu};
  }
  static void Store8(Unit* d, __m128i bytes) {
    const __m128i zero = _mm_setzero_si128();
    Store(d, kHighByteFirst ? _mm_unpacklo_epi8(zero, bytes) : _mm_unpacklo_epi8(bytes, zero));
  }
  static void Store16(Unit* d, __m128i bytes) {
    const __m128i zero = _mm_setzero_si128();
    Store8(d, bytes);
    Store(d + 8, kHighByteFirst ? _mm_unpackhi_epi8(zero, bytes) : _mm_unpackhi_epi8(bytes, zero));
  }
  // by memcpy, which asks for no alignment; x86-64 keeps the low byte first
  static unsigned Get(const Unit& unit) {
    unsigned short value;
    std::memcpy(&value, &unit, 2);
    return kHighByteFirst ? __builtin_bswap16(value) : value;
  }
  static Unit Make(unsigned value) {
    const auto low = static_cast<unsigned short>(value);
    const unsigned short ordered = kHighByteFirst ? __builtin_bswap16(low) : low;
    Unit unit;
    std::memcpy(&unit, &ordered, 2);
    return unit;
  }
};

struct Units32 {
  using Unit = unsigned int;
  template <bool kStopAtZero>
  static Block Load16(const Unit* s) {
    return BlockOfUnits<kStopAtZero>(Halved(s), Halved(s + 8));
  }
  template <bool kStopAtZero>
  static Block Load8(const Unit* s) {
    const __m128i units = Halved(s);
    const Block block = BlockOfUnits<kStopAtZero>(units, units);
    return {block.bytes, block.stops & 0xFFu};
  }
  static void Store8(Unit* d, __m128i bytes) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i units = _mm_unpacklo_epi8(bytes, zero);
    Store(d, _mm_unpacklo_epi16(units, zero));
    Store(d + 4, _mm_unpackhi_epi16(units, zero));
  }
  static void Store16(Unit* d, __m128i bytes) {
    Store8(d, bytes);
    Store8(d + 8, _mm_srli_si128(bytes, 8));
  }
  static unsigned Get(Unit unit) { return unit; }
  static Unit Make(unsigned value) { return value; }

 private:
  /// 8 units as 16-bit lanes, by saturation: what is not ASCII stays not ASCII. (A unit with the
  /// top bit, negative for the saturation, becomes 0x8000.)
  static __m128i Halved(const Unit* s) { return _mm_packs_epi32(Load(s), Load(s + 4)); }
};

template <bool kStopAtZero, class From>
inline bool Stops(const typename From::Unit& unit) {
  const unsigned value = From::Get(unit);
  return value > 0x7F || (kStopAtZero && value == 0);
}

/// Whole blocks while they are clean, and the shorter last one when it is clean. Stops before the
/// block that is not, which may begin with ASCII all the same.
template <bool kStopAtZero, class From, class To>
inline std::size_t MoveBlocks(const typename From::Unit* s, std::size_t n, typename To::Unit* d) {
  std::size_t i = 0;
  for (; n - i >= 32; i += 32) {
    const Block first = From::template Load16<kStopAtZero>(s + i);
    const Block second = From::template Load16<kStopAtZero>(s + i + 16);
    if ((first.stops | second.stops) != 0) break;
    To::Store16(d + i, first.bytes);
    To::Store16(d + i + 16, second.bytes);
  }
  for (; n - i >= 16; i += 16) {
    const Block block = From::template Load16<kStopAtZero>(s + i);
    if (block.stops != 0) return i;
    To::Store16(d + i, block.bytes);
  }
  if (i == n || n < 8) return i;
  // the last block overlaps the one before: the same units are written there once more
  if (n >= 16) {
    const Block last = From::template Load16<kStopAtZero>(s + n - 16);
    if (last.stops != 0) return i;
    To::Store16(d + n - 16, last.bytes);
    return n;
  }
  const Block first = From::template Load8<kStopAtZero>(s);
  const Block last = From::template Load8<kStopAtZero>(s + n - 8);
  if ((first.stops | last.stops) != 0) return i;
  To::Store8(d, first.bytes);
  To::Store8(d + n - 8, last.bytes);
  return n;
}

template <bool kStopAtZero, class From, class To>
inline std::size_t Move(const typename From::Unit* s, std::size_t n, typename To::Unit* d) {
  std::size_t i = MoveBlocks<kStopAtZero, From, To>(s, n, d);
  if (n - i >= 8) {
    const Block block = From::template Load8<kStopAtZero>(s + i);
    if (block.stops == 0) {
      To::Store8(d + i, block.bytes);
      i += 8;
    }
  }
  for (; i < n && !Stops<kStopAtZero, From>(s[i]); ++i) d[i] = To::Make(From::Get(s[i]));
  return i;
}

}  // namespace ascii

/// 16-bit units that are read or written byte by byte.
enum class ByteOrder { kLowFirst, kHighFirst };

template <bool kStopAtZero>
inline std::size_t CountAscii(const unsigned char* s, std::size_t n) {
  std::size_t i = 0;
  for (; n - i >= 16; i += 16) {
    const ascii::Block block = ascii::Bytes::Load16<kStopAtZero>(s + i);
    if (block.stops != 0) return i + static_cast<std::size_t>(__builtin_ctz(block.stops));
  }
  while (i < n && !ascii::Stops<kStopAtZero, ascii::Bytes>(s[i])) ++i;
  return i;
}

template <bool kStopAtZero>
inline std::size_t CopyAscii(const unsigned char* s, std::size_t n, unsigned char* d) {
  return ascii::Move<kStopAtZero, ascii::Bytes, ascii::Bytes>(s, n, d);
}

/// `s` and `d` need no alignment beyond their type's, here and below.
template <bool kStopAtZero>
inline std::size_t WidenAscii(const unsigned char* s, std::size_t n, unsigned short* d) {
  return ascii::Move<kStopAtZero, ascii::Bytes, ascii::Units16<unsigned short, false>>(s, n, d);
}

template <bool kStopAtZero>
inline std::size_t WidenAscii(const unsigned char* s, std::size_t n, unsigned int* d) {
  return ascii::Move<kStopAtZero, ascii::Bytes, ascii::Units32>(s, n, d);
}

template <bool kStopAtZero, ByteOrder kOrder>
inline std::size_t WidenAscii(const unsigned char* s, std::size_t n, UNALIGNED16* d) {
  using To = ascii::Units16<UNALIGNED16, kOrder == ByteOrder::kHighFirst>;
  return ascii::Move<kStopAtZero, ascii::Bytes, To>(s, n, d);
}

template <bool kStopAtZero>
inline std::size_t NarrowAscii(const unsigned short* s, std::size_t n, unsigned char* d) {
  return ascii::Move<kStopAtZero, ascii::Units16<unsigned short, false>, ascii::Bytes>(s, n, d);
}

template <bool kStopAtZero>
inline std::size_t NarrowAscii(const unsigned int* s, std::size_t n, unsigned char* d) {
  return ascii::Move<kStopAtZero, ascii::Units32, ascii::Bytes>(s, n, d);
}

template <bool kStopAtZero, ByteOrder kOrder>
inline std::size_t NarrowAscii(const UNALIGNED16* s, std::size_t n, unsigned char* d) {
  using From = ascii::Units16<UNALIGNED16, kOrder == ByteOrder::kHighFirst>;
  return ascii::Move<kStopAtZero, From, ascii::Bytes>(s, n, d);
}

/// Between UTF-16 and UTF-32; only ASCII counts here too.
template <bool kStopAtZero>
inline std::size_t WidenAscii(const unsigned short* s, std::size_t n, unsigned int* d) {
  return ascii::Move<kStopAtZero, ascii::Units16<unsigned short, false>, ascii::Units32>(s, n, d);
}

template <bool kStopAtZero>
inline std::size_t NarrowAscii(const unsigned int* s, std::size_t n, unsigned short* d) {
  return ascii::Move<kStopAtZero, ascii::Units32, ascii::Units16<unsigned short, false>>(s, n, d);
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_ASCIIRUNS_H
