// The length of a zero-terminated UTF-16 text.
#ifndef MCMEM_ENCODING_UTF16LENGTH_H
#define MCMEM_ENCODING_UTF16LENGTH_H

#include <emmintrin.h>

#include <cstddef>

#include "encoding/AsciiRuns.h"
#include "encoding/ReadableEnd.h"

namespace MCMEM_NAMESPACE {

// In units, without the terminator. `s` is not null.
inline std::size_t Utf16Length(const unsigned short* s) {
  using Units = ascii::Units16<unsigned short, false>;
  constexpr std::ptrdiff_t kUnitsOfPage = kPageBytes / sizeof(unsigned short);
  const unsigned short* p = s;
  for (;;) {
    const unsigned short* const end = ReadableEnd<Units>(p, p + kUnitsOfPage);
    for (; end - p >= 8; p += 8) {
      const __m128i zeros = _mm_cmpeq_epi16(ascii::Load(p), _mm_setzero_si128());
      if (ascii::ByteMaskOf(zeros) != 0) break;
    }
    // at least one unit, also where the page is used up: without a zero the text goes on
    do {
      if (*p == 0) return static_cast<std::size_t>(p - s);
      ++p;
    } while (p < end);
  }
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_UTF16LENGTH_H
