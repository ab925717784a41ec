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
#include <cstdint>
#include <cstring>

#include "mcmem/UnicodeForms.h"

namespace MCMEM_NAMESPACE {
namespace ascii {

/// Units as a vector of their low bytes, with marks: what they are is for `AnyStop` of the units'
/// kind to know, and the marks of several blocks may be joined by "or".
struct Block {
  __m128i bytes;
  __m128i marks;
};

inline __m128i Load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
inline void Store(void* p, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }

inline unsigned ByteMaskOf(__m128i v) { return static_cast<unsigned>(_mm_movemask_epi8(v)); }

/// The top bit is set in each byte that stops.
template <bool kStopAtZero>
inline __m128i MarksOfBytes(__m128i bytes) {
  // 0 - 1 has the top bit, and so has 0x80 or more; 0x80 - 1 has not, hence the "or"
  return kStopAtZero ? _mm_or_si128(bytes, _mm_add_epi8(bytes, _mm_set1_epi8(-1))) : bytes;
}

/// One bit per byte.
template <bool kStopAtZero>
inline unsigned StopsOfBytes(__m128i bytes) {
  return ByteMaskOf(MarksOfBytes<kStopAtZero>(bytes));
}

/// What each 16-bit lane has too much to be clean; 0 for those that are.
template <bool kStopAtZero>
inline __m128i MarksOfUnits(__m128i units) {
  return kStopAtZero ? _mm_subs_epu16(_mm_sub_epi16(units, _mm_set1_epi16(1)), _mm_set1_epi16(0x7E))
                     : _mm_subs_epu16(units, _mm_set1_epi16(0x7F));
}

/// For units that are read as two vectors of 16-bit lanes.
struct WideBlocks {
  static bool AnyStop(__m128i marks) {
    return ByteMaskOf(_mm_cmpeq_epi8(marks, _mm_setzero_si128())) != 0xFFFF;
  }
  template <bool kStopAtZero>
  static __m128i Join(const Block& a, const Block& b) {
    return _mm_or_si128(a.marks, b.marks);
  }
  template <bool kStopAtZero>
  static Block BlockOf(__m128i low, __m128i high) {
    return {_mm_packus_epi16(low, high),
            _mm_or_si128(MarksOfUnits<kStopAtZero>(low), MarksOfUnits<kStopAtZero>(high))};
  }
};

inline __m128i SwapBytes(__m128i units) {
  return _mm_or_si128(_mm_slli_epi16(units, 8), _mm_srli_epi16(units, 8));
}

/// How units of one kind are read and written: 16 or 8 at a time as a vector of bytes, and singly,
/// as they are. Behind the 8 bytes of Load8 there is nothing of use.
struct Bytes {
  using Unit = unsigned char;
  static bool AnyStop(__m128i marks) { return ByteMaskOf(marks) != 0; }
  /// The marks of two blocks of Load16, in fewer steps than one by one.
  template <bool kStopAtZero>
  static __m128i Join(const Block& a, const Block& b) {
    const __m128i high = _mm_or_si128(a.bytes, b.bytes);
    if (!kStopAtZero) return high;
    const __m128i least = _mm_min_epu8(a.bytes, b.bytes);
    return _mm_or_si128(high, _mm_cmpeq_epi8(least, _mm_setzero_si128()));
  }
  template <bool kStopAtZero>
  static Block Load16(const Unit* s) {
    const __m128i bytes = Load(s);
    return {bytes, MarksOfBytes<kStopAtZero>(bytes)};
  }
  template <bool kStopAtZero>
  static Block Load8(const Unit* s) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(s));
    const __m128i twice = _mm_unpacklo_epi64(bytes, bytes);  // the marks are for 16
    return {bytes, MarksOfBytes<kStopAtZero>(twice)};
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
struct Units16 : WideBlocks {
  using Unit = UnitType;
  static_assert(sizeof(Unit) == 2);
  static __m128i Ordered(__m128i units) { return kHighByteFirst ? SwapBytes(units) : units; }
  template <bool kStopAtZero>
  static Block Load16(const Unit* s) {
    return BlockOf<kStopAtZero>(Ordered(Load(s)), Ordered(Load(s + 8)));
  }
  template <bool kStopAtZero>
  static Block Load8(const Unit* s) {
    const __m128i units = Ordered(Load(s));
    return BlockOf<kStopAtZero>(units, units);
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

struct Units32 : WideBlocks {
  using Unit = unsigned int;
  template <bool kStopAtZero>
  static Block Load16(const Unit* s) {
    return BlockOf<kStopAtZero>(Halved(s), Halved(s + 8));
  }
  template <bool kStopAtZero>
  static Block Load8(const Unit* s) {
    const __m128i units = Halved(s);
    return BlockOf<kStopAtZero>(units, units);
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

/// Units from which on it pays to write to aligned places: stores across cache lines cost a third
/// of the speed where the target does not fit the nearest cache.
constexpr std::size_t kLongRun = 512;

/// Moves as many of the first 16 units, when they are clean, as bring the target to an aligned
/// place.
template <bool kStopAtZero, class From, class To>
inline std::size_t AlignTarget(const typename From::Unit* s, typename To::Unit* d) {
  const std::size_t bytes = -reinterpret_cast<std::uintptr_t>(d) % 16;
  if (bytes < sizeof *d) return 0;
  const Block block = From::template Load16<kStopAtZero>(s);
  if (From::AnyStop(block.marks)) return 0;
  To::Store16(d, block.bytes);
  return bytes / sizeof *d;
}

/// The blocks from unit i on, i < n; returns like MoveBlocks.
template <bool kStopAtZero, class From, class To>
inline std::size_t MoveBlocksFrom(std::size_t i, const typename From::Unit* s, std::size_t n,
                                  typename To::Unit* d) {
  for (; n - i >= 32; i += 32) {
    const Block first = From::template Load16<kStopAtZero>(s + i);
    const Block second = From::template Load16<kStopAtZero>(s + i + 16);
    if (From::AnyStop(From::template Join<kStopAtZero>(first, second))) break;
    To::Store16(d + i, first.bytes);
    To::Store16(d + i + 16, second.bytes);
  }
  for (; n - i >= 16; i += 16) {
    const Block block = From::template Load16<kStopAtZero>(s + i);
    if (From::AnyStop(block.marks)) return i;
    To::Store16(d + i, block.bytes);
  }
  if (i == n || n < 8) return i;
  // the last block overlaps the one before: the same units are written there once more
  if (n >= 16) {
    const Block last = From::template Load16<kStopAtZero>(s + n - 16);
    if (From::AnyStop(last.marks)) return i;
    To::Store16(d + n - 16, last.bytes);
    return n;
  }
  const Block first = From::template Load8<kStopAtZero>(s);
  const Block last = From::template Load8<kStopAtZero>(s + n - 8);
  if (From::AnyStop(_mm_or_si128(first.marks, last.marks))) return i;
  To::Store8(d, first.bytes);
  To::Store8(d + n - 8, last.bytes);
  return n;
}

/// Whole blocks while they are clean, and the shorter last one when it is clean. Stops before the
/// block that is not, which may begin with ASCII all the same.
template <bool kStopAtZero, class From, class To>
inline std::size_t MoveBlocks(const typename From::Unit* s, std::size_t n, typename To::Unit* d) {
  const std::size_t aligned = n < kLongRun ? 0 : AlignTarget<kStopAtZero, From, To>(s, d);
  return MoveBlocksFrom<kStopAtZero, From, To>(aligned, s, n, d);
}

template <bool kStopAtZero, class From, class To>
inline std::size_t Move(const typename From::Unit* s, std::size_t n, typename To::Unit* d) {
  std::size_t i = MoveBlocks<kStopAtZero, From, To>(s, n, d);
  if (n - i >= 8) {
    const Block block = From::template Load8<kStopAtZero>(s + i);
    if (!From::AnyStop(block.marks)) {
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
    const unsigned stops = ascii::StopsOfBytes<kStopAtZero>(ascii::Load(s + i));
    if (stops != 0) return i + static_cast<std::size_t>(__builtin_ctz(stops));
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
