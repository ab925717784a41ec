// What the processor can do beyond SSE2, which every x86-64 has: shuffle bytes, for accented
// letters and for characters of three bytes, and take vectors of 32 bytes, for ASCII.
#ifndef MCMEM_ENCODING_WIDEKERNELS_H
#define MCMEM_ENCODING_WIDEKERNELS_H

#include <tmmintrin.h>

// For functions that are called only when CanShuffle(). Both exist since 2008, so that one question
// is enough for both.
#define MCMEM_SHUFFLING __attribute__((target("ssse3,popcnt")))

namespace MCMEM_NAMESPACE {

// For functions that are called only when CanGoWide().
#define MCMEM_WIDE __attribute__((target("avx2")))

#ifdef MCMEM_BASELINE_KERNELS  // a test build, which shows that the results do not depend on them
inline bool CanShuffle() { return false; }
inline bool CanGoWide() { return false; }
#else
inline bool CanShuffle() {
  return __builtin_cpu_supports("ssse3") != 0 && __builtin_cpu_supports("popcnt") != 0;
}
inline bool CanGoWide() { return __builtin_cpu_supports("avx2") != 0; }
#endif

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_WIDEKERNELS_H
