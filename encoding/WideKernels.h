// Whether the processor can shuffle bytes, which the kernels for accented letters and for three
// byte characters need. Everything else in the conversions makes do with SSE2.
#ifndef MCMEM_ENCODING_WIDEKERNELS_H
#define MCMEM_ENCODING_WIDEKERNELS_H

#include <tmmintrin.h>

// For functions that are called only when CanShuffle(). Both exist since 2008, so that one question
// is enough for both.
#define MCMEM_SHUFFLING __attribute__((target("ssse3,popcnt")))

namespace MCMEM_NAMESPACE {

inline bool CanShuffle() {
#ifdef MCMEM_BASELINE_KERNELS  // a test build, which shows that the results do not depend on it
  return false;
#else
  return __builtin_cpu_supports("ssse3") != 0 && __builtin_cpu_supports("popcnt") != 0;
#endif
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_WIDEKERNELS_H
