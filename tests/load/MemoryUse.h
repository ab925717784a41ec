// How much memory the process uses.
#ifndef MCXPRSUTIL_TESTS_LOAD_MEMORYUSE_H
#define MCXPRSUTIL_TESTS_LOAD_MEMORYUSE_H

#include <malloc.h>
#include <unistd.h>

#include <cstddef>
#include <fstream>

#include "xml/TestDocument.h"

#ifdef MCX_TEST_SANITIZED
// As in the sanitizers' allocator_interface.h, which GCC does not bring along.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace load_test {

struct MemoryUse {
  std::size_t live = 0;      // bytes that are allocated and not freed
  std::size_t resident = 0;  // bytes of the process that are in memory
};

inline std::size_t LiveBytes() {
#ifdef MCX_TEST_SANITIZED
  return __sanitizer_get_current_allocated_bytes();
#else
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
#endif
}

inline MemoryUse MeasureMemory() {
  MemoryUse use;
  use.live = LiveBytes();
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  use.resident = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return use;
}

}  // namespace load_test

#endif  // MCXPRSUTIL_TESTS_LOAD_MEMORYUSE_H
