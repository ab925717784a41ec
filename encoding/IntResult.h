// Lengths and offsets as the public functions return them.
#ifndef MCMEM_ENCODING_INTRESULT_H
#define MCMEM_ENCODING_INTRESULT_H

#include <algorithm>
#include <climits>
#include <cstddef>

namespace MCMEM_NAMESPACE {

// A text may have more bytes than an int can tell; the result then stays at the largest one rather
// than turn negative.
inline int IntResult(std::ptrdiff_t bytes) {
  return static_cast<int>(std::min(bytes, std::ptrdiff_t{INT_MAX}));
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_INTRESULT_H
