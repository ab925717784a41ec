// ASCII widened 32 units at a time: for texts of a line or so, where that makes the difference. A
// long text waits for its memory either way; see AsciiRuns.h.
#ifndef MCMEM_ENCODING_WIDEASCII_H
#define MCMEM_ENCODING_WIDEASCII_H

#include <immintrin.h>

#include <cstddef>

#include "encoding/WideKernels.h"

namespace MCMEM_NAMESPACE {
namespace ascii {

constexpr std::size_t kWideBlock = 32;

MCMEM_WIDE inline __m256i LoadWide(const unsigned char* s) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s));
}

// Whether there is a byte that is not ASCII, or with `kStopAtZero` a zero, in either of the blocks.
template <bool kStopAtZero>
MCMEM_WIDE inline bool AnyStopIn(__m256i a, __m256i b) {
  __m256i marks = _mm256_or_si256(a, b);
  if (kStopAtZero) {
    const __m256i least = _mm256_min_epu8(a, b);
    marks = _mm256_or_si256(marks, _mm256_cmpeq_epi8(least, _mm256_setzero_si256()));
  }
  return _mm256_movemask_epi8(marks) != 0;
}

// 16 units of target at any address.
template <bool kHighByteFirst>
MCMEM_WIDE inline void WidenHalf(const unsigned char* s, unsigned char* d) {
  const __m256i units = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s)));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(d),
                      kHighByteFirst ? _mm256_slli_epi16(units, 8) : units);
}

template <bool kHighByteFirst>
MCMEM_WIDE inline void WidenBlock(const unsigned char* s, unsigned char* d) {
  WidenHalf<kHighByteFirst>(s, d);
  WidenHalf<kHighByteFirst>(s + kWideBlock / 2, d + kWideBlock);
}

// The block at the start and the one that ends at n, which may overlap: kWideBlock <= n and n <= 2
// * kWideBlock. False when they are not clean; nothing is written then. `d` has room for n units of
// two bytes.
template <bool kStopAtZero, bool kHighByteFirst>
MCMEM_WIDE inline bool WidenTwoBlocks(const unsigned char* s, std::size_t n, unsigned char* d) {
  const std::size_t last = n - kWideBlock;
  if (AnyStopIn<kStopAtZero>(LoadWide(s), LoadWide(s + last))) return false;
  WidenBlock<kHighByteFirst>(s, d);
  WidenBlock<kHighByteFirst>(s + last, d + 2 * last);
  return true;
}

}  // namespace ascii
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_WIDEASCII_H
