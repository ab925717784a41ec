/// @file
/// What every fuzz target needs: a check that stays in optimised builds.
#ifndef MCXPRSUTIL_FUZZ_CHECK_H
#define MCXPRSUTIL_FUZZ_CHECK_H

#include <cstdio>
#include <cstdlib>

/// Ends the process with the failed condition, so that the fuzzer keeps the input.
#define FUZZ_CHECK(condition)                                                      \
  do {                                                                             \
    if (!(condition)) {                                                            \
      std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                \
    }                                                                              \
  } while (false)

#endif  // MCXPRSUTIL_FUZZ_CHECK_H
