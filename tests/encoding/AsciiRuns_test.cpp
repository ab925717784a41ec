// Runs of ASCII: where they end, and that nothing is read or written beyond.

#include "encoding/AsciiRuns.h"

#include <gtest/gtest.h>

#include "encoding/UnicodeFormsCheck.h"

namespace encoding_test {
namespace {

using MCMEM_NAMESPACE::ByteOrder;
using MCMEM_NAMESPACE::UNALIGNED16;

constexpr unsigned int kOddUnits[] = {0x00,    0x7F,       0x80,       0xFF,       0x100,
                                      0x7F80,  0x8000,     0x8041,     0xFFFF,     0x10000,
                                      0x10041, 0x7FFFFFFF, 0x80000000, 0x80000041, 0xFFFFFFFF};
constexpr unsigned int kFill = 0xA5;
constexpr std::size_t kLongest = 70;

// A run of `size` units with one odd unit at `place`; `size` itself means none.
template <class From, class To, class Move>
void CheckRun(const GuardedMemory& source, const GuardedMemory& target, std::size_t size,
              std::size_t place, unsigned int odd, bool stopAtZero, Move move) {
  const bool stops = place < size && (odd > 0x7F || (stopAtZero && odd == 0));
  const std::size_t expected = stops ? place : size;
  unsigned char* const s = source.End() - size * sizeof(typename From::Unit);
  unsigned char* const d = target.End() - size * sizeof(typename To::Unit);
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned int value = i == place ? odd : static_cast<unsigned int>(i) + 1;
    From::Put(s + i * sizeof(typename From::Unit), value);
    To::Put(d + i * sizeof(typename To::Unit), kFill);
  }
  ASSERT_EQ(move(reinterpret_cast<const typename From::Unit*>(s), size,
                 reinterpret_cast<typename To::Unit*>(d)),
            expected)
      << size << ' ' << place << ' ' << odd;
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned int moved = i == place ? odd : static_cast<unsigned int>(i) + 1;
    ASSERT_EQ(To::Get(d + i * sizeof(typename To::Unit)), i < expected ? moved : kFill)
        << size << ' ' << place << ' ' << odd << ' ' << i;
  }
}

template <class From, class To, class Move>
void CheckRuns(bool stopAtZero, Move move) {
  const GuardedMemory source(4 * kLongest);
  const GuardedMemory target(4 * kLongest);
  constexpr unsigned int kBits = 8 * sizeof(typename From::Unit);
  for (const unsigned int odd : kOddUnits) {
    if (kBits < 32 && odd >> kBits % 32 != 0) continue;
    for (std::size_t size = 0; size < kLongest; size += kThorough ? 1 : 3)
      for (std::size_t place = 0; place <= size; ++place) {
        CheckRun<From, To>(source, target, size, place, odd, stopAtZero, move);
        if (testing::Test::HasFatalFailure()) return;
      }
  }
}

#define CHECK_RUNS(From, To, function)                             \
  CheckRuns<From, To>(true, [](auto* s, std::size_t n, auto* d) {  \
    return MCMEM_NAMESPACE::function<true>(s, n, d);               \
  });                                                              \
  CheckRuns<From, To>(false, [](auto* s, std::size_t n, auto* d) { \
    return MCMEM_NAMESPACE::function<false>(s, n, d);              \
  })

TEST(AsciiRuns, CopyStopsBeforeTheFirstOtherByte) { CHECK_RUNS(Bytes, Bytes, CopyAscii); }
TEST(AsciiRuns, WidenBytesTo16Bits) { CHECK_RUNS(Bytes, Words16, WidenAscii); }
TEST(AsciiRuns, WidenBytesTo32Bits) { CHECK_RUNS(Bytes, Words32, WidenAscii); }
TEST(AsciiRuns, Widen16To32Bits) { CHECK_RUNS(Words16, Words32, WidenAscii); }
TEST(AsciiRuns, Narrow16Bits) { CHECK_RUNS(Words16, Bytes, NarrowAscii); }
TEST(AsciiRuns, Narrow32Bits) { CHECK_RUNS(Words32, Bytes, NarrowAscii); }
TEST(AsciiRuns, Narrow32To16Bits) { CHECK_RUNS(Words32, Words16, NarrowAscii); }

#undef CHECK_RUNS

template <class Pair, ByteOrder kOrder>
void CheckPairs() {
  CheckRuns<Bytes, Pair>(true, [](const unsigned char* s, std::size_t n, UNALIGNED16* d) {
    return MCMEM_NAMESPACE::WidenAscii<true, kOrder>(s, n, d);
  });
  CheckRuns<Bytes, Pair>(false, [](const unsigned char* s, std::size_t n, UNALIGNED16* d) {
    return MCMEM_NAMESPACE::WidenAscii<false, kOrder>(s, n, d);
  });
  CheckRuns<Pair, Bytes>(true, [](const UNALIGNED16* s, std::size_t n, unsigned char* d) {
    return MCMEM_NAMESPACE::NarrowAscii<true, kOrder>(s, n, d);
  });
  CheckRuns<Pair, Bytes>(false, [](const UNALIGNED16* s, std::size_t n, unsigned char* d) {
    return MCMEM_NAMESPACE::NarrowAscii<false, kOrder>(s, n, d);
  });
}

TEST(AsciiRuns, BytePairsLowByteFirst) { CheckPairs<Pairs, ByteOrder::kLowFirst>(); }
TEST(AsciiRuns, BytePairsHighByteFirst) { CheckPairs<PairsRev, ByteOrder::kHighFirst>(); }

TEST(AsciiRuns, CountEndsWhereACopyWould) {
  const auto count = [](bool stopAtZero) {
    return [stopAtZero](const unsigned char* s, std::size_t n, unsigned char* d) {
      const std::size_t counted = stopAtZero ? MCMEM_NAMESPACE::CountAscii<true>(s, n)
                                             : MCMEM_NAMESPACE::CountAscii<false>(s, n);
      std::memcpy(d, s, counted);
      return counted;
    };
  };
  CheckRuns<Bytes, Bytes>(true, count(true));
  CheckRuns<Bytes, Bytes>(false, count(false));
}

}  // namespace
}  // namespace encoding_test
