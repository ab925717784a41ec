// Fails one allocation after the other. This program replaces operator new; the library under test
// uses the replacement too.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>

#include "encoding/RegistryState.h"
#include "mcmem/Transcoding.h"

namespace {

constexpr int kNever = -1;

// Allocations that still succeed; kNever: all of them.
int allocationsLeft = kNever;

bool MayAllocate() {
  if (allocationsLeft == kNever) return true;
  if (allocationsLeft == 0) return false;
  --allocationsLeft;
  return true;
}

void* Allocate(std::size_t size) {
  return MayAllocate() ? std::malloc(size == 0 ? 1 : size) : nullptr;
}

void* AllocateOrThrow(std::size_t size) {
  void* memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

template <class Operation>
auto With(int allocations, const Operation& operation) {
  allocationsLeft = allocations;
  const auto result = operation();
  allocationsLeft = kNever;
  return result;
}

// Every number of allocations that is too small gives an empty string and status 2.
template <class String>
void CheckOutOfMemory(const std::function<int(String&)>& convert) {
  String expected;
  const int status = convert(expected);
  ASSERT_FALSE(expected.empty());
  int allocations = 0;
  for (;; ++allocations) {
    String out(3, 'o');
    const int got = With(allocations, [&] { return convert(out); });
    if (got != 2) {
      EXPECT_EQ(got, status);
      EXPECT_EQ(out, expected);
      break;
    }
    EXPECT_TRUE(out.empty());
  }
  EXPECT_GT(allocations, 0);
}

const std::string kLong(50000, 'x');
const std::string kUtf8 = kLong + "\xC3\xA9";
const std::string kLatin = kLong + "\xE9";

TEST(TranscodingMemory, StringFormsGiveAnEmptyStringAndStatus2) {
  const OwnedConverter latin = NewConverter("1252");
  U16String wide;
  ASSERT_EQ(TULKMBU8ToU16(wide, kUtf8), 0);
  UConverter* const c = latin.get();
  CheckOutOfMemory<U16String>([](U16String& out) { return TULKMBU8ToU16(out, kUtf8); });
  CheckOutOfMemory<std::string>([&](std::string& out) { return TULKMBU16ToU8(out, wide); });
  CheckOutOfMemory<std::string>(
      [&](std::string& out) { return TULKMBU8ToCodePage(c, out, kUtf8); });
  CheckOutOfMemory<std::string>(
      [&](std::string& out) { return TULKMBCodePageToU8(c, out, kLatin); });
  CheckOutOfMemory<std::string>(
      [&](std::string& out) { return TULKMBU16ToCodePage(c, out, wide); });
  CheckOutOfMemory<U16String>([&](U16String& out) { return TULKMBCodePageToU16(c, out, kLatin); });
}

TEST(TranscodingMemory, ShortTextThatDoesNotFitIntoAStringObject) {
  const OwnedConverter latin = NewConverter("1252");
  const std::string utf8 = "a text of some length, with an \xC3\xA9 in it";
  UConverter* const c = latin.get();
  CheckOutOfMemory<U16String>([&](U16String& out) { return TULKMBU8ToU16(out, utf8); });
  CheckOutOfMemory<std::string>([&](std::string& out) { return TULKMBU8ToCodePage(c, out, utf8); });
}

TEST(TranscodingMemory, PlainAssignmentsToo) {
  for (const int mode : {0, 1}) {
    const Utf8Mode utf8Mode(mode);
    const auto assign =
        mode != 0 ? [](std::string& out) { return TULKMBU8ToGeneric(out, kUtf8); }
                  : [](std::string& out) { return TULKMBCodePageToGeneric(nullptr, out, kLatin); };
    CheckOutOfMemory<std::string>(assign);
  }
}

TEST(TranscodingMemory, OneObjectOnBothSidesIsEmptyToo) {
  const OwnedConverter latin = NewConverter("1252");
  for (int allocations = 0; allocations < 3; ++allocations) {
    std::string text = kUtf8;
    const int status =
        With(allocations, [&] { return TULKMBU8ToCodePage(latin.get(), text, text); });
    if (status == 0) break;
    EXPECT_EQ(status, 2);
    EXPECT_TRUE(text.empty());
  }
  for (int allocations = 0; allocations < 3; ++allocations) {
    std::string text = kLatin;
    const int status =
        With(allocations, [&] { return TULKMBCodePageToU8(latin.get(), text, text); });
    if (status == 0) break;
    EXPECT_EQ(status, 2);
    EXPECT_TRUE(text.empty());
  }
}

TEST(TranscodingMemory, ArrayFormsGiveNull) {
  const DefaultCodePage latin("1252");
  const U16String wide(5000, 'x');
  const std::string narrow(5000, 'x');
  EXPECT_EQ(With(0, [&] { return TULKMBTranscodeU8(narrow.c_str()); }), nullptr);
  EXPECT_EQ(With(0, [&] { return TULKMBTranscodeU8(wide.c_str()); }), nullptr);
  for (int allocations = 0; allocations < 2; ++allocations) {
    EXPECT_EQ(With(allocations, [&] { return TULKMBTranscodeCodePage(narrow.c_str()); }), nullptr);
    EXPECT_EQ(With(allocations, [&] { return TULKMBTranscodeCodePage(wide.c_str()); }), nullptr);
  }
}

// What is remembered about a code page is a help only.
TEST(TranscodingMemory, BuffersNeedNone) {
  const OwnedConverter cyrillic = NewConverter("1251");
  char bytes[8];
  int status = -1;
  const int length = With(
      0, [&] { return TULKMB8toCodePage(cyrillic.get(), bytes, 8, "a\xD0\xB9", -1, &status); });
  EXPECT_EQ(length, 2);
  EXPECT_EQ(status, 0);
  EXPECT_STREQ(bytes, "a\xE9");
}

}  // namespace
