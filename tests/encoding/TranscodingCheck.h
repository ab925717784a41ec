// What the tests of transcoding share: references made by ICU alone, and a slow model of how a
// result lies in a buffer.
#ifndef MCXPRSUTIL_TESTS_ENCODING_TRANSCODINGCHECK_H
#define MCXPRSUTIL_TESTS_ENCODING_TRANSCODINGCHECK_H

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "mcmem/Transcoding.h"

namespace encoding_test {

using U16 = std::basic_string<unsigned short>;
using U32 = std::basic_string<unsigned int>;

// The whole result of a conversion.
template <class Unit>
struct Reference {
  std::basic_string<Unit> units;
  std::vector<std::size_t> ends;  // after which units a character ends, in ascending order
  // how many of the first n units are whole characters, where that depends on what follows them;
  // empty: as `ends` say
  std::vector<std::size_t> wholeOf;
  bool isLossy = false;
  bool hasFailed = false;
};

// By ICU's macros for single characters; malformed text fails.
Reference<unsigned short> ReferenceFromUtf8(const std::string& text);
Reference<char> ReferenceToUtf8(const U16& text);

// By a converter opened for the purpose, with the library's callbacks. What is lossy shows with a
// converter that stops instead.
Reference<unsigned short> ReferenceDecoded(const char* codePage, const std::string& text);
Reference<char> ReferenceDecodedTo8(const char* codePage, const std::string& text);
Reference<char> ReferenceEncoded(const char* codePage, const U16& text);
Reference<char> ReferenceEncodedFrom8(const char* codePage, const std::string& text);

// Well-formed UTF-8 as UTF-16; malformed parts as ICU replaces them by U+FFFD.
U16 Utf16Of(const std::string& utf8);

// `count` characters drawn from several scripts, from all of Unicode when `wild`. The same seed
// gives the same text.
U16 RandomUtf16(unsigned seed, std::size_t count, bool wild);
std::string RandomUtf8(unsigned seed, std::size_t count, bool wild);

constexpr std::size_t kGuard = 4;

template <class Unit>
struct Laid {
  std::basic_string<Unit> memory;  // the buffer between two guards
  int length = 0;
  int status = 0;
};

template <class Unit>
constexpr Unit kUntouched = static_cast<Unit>(0xABABABABu);

// What the buffer must look like, unit by unit.
template <class Unit>
Laid<Unit> LayOut(const Reference<Unit>& reference, std::size_t capacity, bool isTerminated) {
  Laid<Unit> laid;
  laid.memory.assign(capacity + 2 * kGuard, kUntouched<Unit>);
  const std::size_t size = reference.units.size();
  if (capacity == 0) {
    laid.length = static_cast<int>(size);
    laid.status = reference.isLossy ? 3 : size != 0 ? 1 : 0;
    return laid;
  }
  const std::size_t room = isTerminated ? capacity - 1 : capacity;
  std::size_t length = 0;
  for (const std::size_t end : reference.ends) {
    if (end <= room) length = end;
  }
  if (size > room && !reference.wholeOf.empty()) length = reference.wholeOf[room];
  Unit* const buffer = &laid.memory[kGuard];
  std::copy_n(reference.units.begin(), length, buffer);
  if (size > room) std::fill(buffer + length, buffer + room, Unit{0x20});
  if (!isTerminated && length < capacity) buffer[length] = 0x20;
  if (isTerminated) buffer[length] = 0;
  laid.length = static_cast<int>(length);
  laid.status = reference.isLossy ? 3 : size > room ? 1 : 0;
  return laid;
}

// `call(dst, capacity, status)` converts what the reference stands for.
template <class Unit, class Call>
Laid<Unit> Convert(std::size_t capacity, const Call& call) {
  Laid<Unit> laid;
  laid.memory.assign(capacity + 2 * kGuard, kUntouched<Unit>);
  laid.status = -1;
  laid.length = call(&laid.memory[kGuard], static_cast<int>(capacity), &laid.status);
  return laid;
}

template <class Unit, class Call>
void CheckFailure(std::size_t capacity, bool isTerminated, const Call& call) {
  const Laid<Unit> laid = Convert<Unit>(capacity, call);
  EXPECT_EQ(laid.length, 0);
  EXPECT_EQ(laid.status, 3);
  for (std::size_t i = 0; i < kGuard; ++i) {
    EXPECT_EQ(laid.memory[i], kUntouched<Unit>);
    EXPECT_EQ(laid.memory[kGuard + capacity + i], kUntouched<Unit>);
  }
  if (capacity == 0) return;
  EXPECT_EQ(laid.memory[kGuard], isTerminated ? Unit{0} : Unit{0x20});
}

template <class Unit, class Call>
void CheckCapacity(const Reference<Unit>& reference, std::size_t capacity, bool isTerminated,
                   const Call& call) {
  SCOPED_TRACE("capacity " + std::to_string(capacity) + (isTerminated ? ", terminated" : ""));
  if (reference.hasFailed) return CheckFailure<Unit>(capacity, isTerminated, call);
  const Laid<Unit> expected = LayOut(reference, capacity, isTerminated);
  const Laid<Unit> laid = Convert<Unit>(capacity, call);
  EXPECT_EQ(laid.length, expected.length);
  EXPECT_EQ(laid.status, expected.status);
  EXPECT_EQ(laid.memory, expected.memory);
}

// Every capacity up to a few units more than the whole result needs.
template <class Unit, class Call>
void CheckAllCapacities(const Reference<Unit>& reference, bool isTerminated, const Call& call) {
  for (std::size_t capacity = 0; capacity <= reference.units.size() + 3; ++capacity) {
    CheckCapacity(reference, capacity, isTerminated, call);
    if (testing::Test::HasFailure()) return;
  }
}

// With an explicit length, and terminated if there is no zero in the text. `Function` is a buffer
// function without converter.
template <class From, class To, class Function>
void CheckBuffers(const Reference<To>& reference, const std::basic_string<From>& text,
                  const Function& function) {
  CheckAllCapacities(reference, false, [&](To* dst, int capacity, int* status) {
    return function(dst, capacity, text.data(), static_cast<int>(text.size()), status);
  });
  if (text.find(From{0}) != text.npos) return;
  CheckAllCapacities(reference, true, [&](To* dst, int capacity, int* status) {
    return function(dst, capacity, text.c_str(), -1, status);
  });
}

}  // namespace encoding_test

#endif  // MCXPRSUTIL_TESTS_ENCODING_TRANSCODINGCHECK_H
