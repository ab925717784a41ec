// The scratch buffer that is the caller's own memory or the heap's.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "mcmem/ConverterRegistry.h"

// The sanitizers end a program that asks for too much memory, unless told to return null as the C
// library does. They look for these functions.
#define MCX_SEEN_BY_RUNTIME extern "C" __attribute__((visibility("default"), used))
MCX_SEEN_BY_RUNTIME const char* __asan_default_options();
MCX_SEEN_BY_RUNTIME const char* __asan_default_options() { return "allocator_may_return_null=1"; }
MCX_SEEN_BY_RUNTIME const char* __tsan_default_options();
MCX_SEEN_BY_RUNTIME const char* __tsan_default_options() { return "allocator_may_return_null=1"; }

namespace {

using MCMEM_NAMESPACE::TULKMBTempFree;
using MCMEM_NAMESPACE::TULKMBTempGet;

TEST(TULKMBTempGet, UsesTheLocalMemoryAsLongAsItIsEnough) {
  char local[256];
  struct {
    const char* rule;
    std::size_t count, size;
  } const rows[] = {
      {"exactly full", 64, 4},
      {"one byte elements", 256, 1},
      {"one large element", 1, 256},
      {"less", 3, 5},
      {"no elements", 0, 4},
      {"empty elements", 4, 0},
      {"nothing of everything", 0, SIZE_MAX},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(TULKMBTempGet(local, sizeof local, row.count, row.size), local) << row.rule;
  }
  TULKMBTempFree(local, local);
}

TEST(TULKMBTempGet, TakesMoreFromTheHeap) {
  char local[256];
  struct {
    std::size_t count, size;
  } const rows[] = {{65, 4}, {257, 1}, {1, 257}, {100000, 3}};
  for (const auto& row : rows) {
    void* p = TULKMBTempGet(local, sizeof local, row.count, row.size);
    ASSERT_NE(p, nullptr);
    EXPECT_NE(p, local);
    std::memset(p, 1, row.count * row.size);  // a sanitizer would tell of a smaller block
    TULKMBTempFree(local, p);
  }
}

TEST(TULKMBTempGet, TakesFromTheHeapWhereThereIsNoLocalMemory) {
  void* p = TULKMBTempGet(nullptr, 0, 1, 1);
  ASSERT_NE(p, nullptr);
  TULKMBTempFree(nullptr, p);
}

TEST(TULKMBTempGet, ImpossibleSizesGiveNull) {
  char local[256];
  struct {
    const char* rule;
    std::size_t count, size;
  } const rows[] = {
      {"more than there is", SIZE_MAX / 4, 2},
      {"a product that overflows", SIZE_MAX, 2},
      {"a product that overflows to a small one", SIZE_MAX / 2 + 2, 2},
      {"a product that overflows to zero", SIZE_MAX / 2 + 1, 2},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(TULKMBTempGet(local, sizeof local, row.count, row.size), nullptr) << row.rule;
  }
}

TEST(TULKMBTempFree, LeavesNullAndLocalMemoryAlone) {
  char local[4] = {1, 2, 3, 4};
  TULKMBTempFree(local, nullptr);
  TULKMBTempFree(local, local);
  TULKMBTempFree(nullptr, nullptr);
  EXPECT_EQ(local[3], 4);
}

}  // namespace
