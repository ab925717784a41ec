#include <cstdlib>

#include "mcmem/ConverterRegistry.h"

namespace MCMEM_NAMESPACE {

void* TULKMBTempGet(void* local, std::size_t localBytes, std::size_t count, std::size_t elemSize) {
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(count, elemSize, &bytes)) return nullptr;
  return bytes <= localBytes ? local : std::malloc(bytes);
}

void TULKMBTempFree(void* local, void* p) {
  if (p != local) std::free(p);
}

}  // namespace MCMEM_NAMESPACE
