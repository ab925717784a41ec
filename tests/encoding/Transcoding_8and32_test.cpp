#include <gtest/gtest.h>

#include "encoding/TranscodingCheck.h"

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

// Code points one by one; stops where the conversion is to stop.
Reference<unsigned int> From8(const std::string& text) {
  Reference<unsigned int> reference;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const auto size = static_cast<int32_t>(text.size());
  for (int32_t i = 0; i < size;) {
    UChar32 c = 0;
    U8_NEXT(bytes, i, size, c);
    reference.isLossy = c < 0;
    if (c < 0) break;
    reference.units += static_cast<unsigned int>(c);
    reference.ends.push_back(reference.units.size());
  }
  return reference;
}

Reference<char> From32(const U32& text) {
  Reference<char> reference;
  for (unsigned int c : text) {
    if (c >= 0xD800 && c <= 0xDFFF) {
      reference.isLossy = true;
      break;
    }
    if (c > 0x10FFFF) {
      reference.isLossy = true;
      c = 0xFFFD;
    }
    if (c > 0xFFFF) {
      reference.units += ReferenceToUtf8({static_cast<unsigned short>(U16_LEAD(c)),
                                          static_cast<unsigned short>(U16_TRAIL(c))})
                             .units;
    } else {
      reference.units += ReferenceToUtf8({static_cast<unsigned short>(c)}).units;
    }
    reference.ends.push_back(reference.units.size());
  }
  return reference;
}

int To32(unsigned int* dst, int capacity, const char* src, int length, int* status) {
  return TULKMB8and32(1, dst, capacity, src, length, status);
}

int To8(char* dst, int capacity, const unsigned int* src, int length, int* status) {
  return TULKMB8and32(0, dst, capacity, src, length, status);
}

TEST(Transcoding8And32, EveryCapacityOfEveryScript) {
  const std::string texts[] = {"",
                               "a",
                               "h\xC3\xA9llo, a line longer than sixteen",
                               "\xE4\xBD\xA0\xF0\x9F\x98\x80",
                               std::string("a\0b", 3),
                               RandomUtf8(1, 50, false),
                               RandomUtf8(2, 50, true)};
  for (const std::string& text : texts) {
    const Reference<unsigned int> reference = From8(text);
    CheckBuffers(reference, text, To32);
    CheckBuffers(From32(reference.units), reference.units, To8);
  }
}

TEST(Transcoding8And32, TheTextBeforeAnIllegalPlaceIsKept) {
  for (const char* bad : {"\xED\xA0\x80", "\xC0\x80", "\xF5", "\x80", "\xE4\xBD"}) {
    CheckBuffers(From8(std::string("abc") + bad), std::string("abc") + bad, To32);
    const std::string text = std::string("h\xC3\xA9") + bad + "behind";
    CheckBuffers(From8(text), text, To32);
  }
}

TEST(Transcoding8And32, ASurrogateStopsAndAnOverlargeValueIsReplaced) {
  CheckBuffers(From32({'a', 0xD800, 'b'}), U32{'a', 0xD800, 'b'}, To8);
  CheckBuffers(From32({'a', 0x110000, 'b', 0xE9}), U32{'a', 0x110000, 'b', 0xE9}, To8);
  CheckBuffers(From32({0xFFFFFFFF, 'b', 0xDFFF}), U32{0xFFFFFFFF, 'b', 0xDFFF}, To8);
}

TEST(Transcoding8And32, ALongTextIsCountedToItsEnd) {
  const std::string text = RandomUtf8(9, 5000, true);
  const Reference<unsigned int> reference = From8(text);
  int status = -1;
  const int size = static_cast<int>(text.size());
  EXPECT_EQ(To32(nullptr, 0, text.data(), size, &status), static_cast<int>(reference.units.size()));
  EXPECT_EQ(status, 1);
  const int units = static_cast<int>(reference.units.size());
  EXPECT_EQ(To8(nullptr, 0, reference.units.data(), units, &status), size);
  EXPECT_EQ(status, 1);
}

TEST(Transcoding8And32, ArgumentsThatAreRefused) {
  unsigned int wide[1] = {7};
  int status = -1;
  EXPECT_EQ(To32(nullptr, 1, "a", 1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(To32(wide, -1, "a", 1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(To32(wide, 1, nullptr, 1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(wide[0], ' ' + 0u);
  EXPECT_EQ(To32(wide, 1, nullptr, 0, nullptr), 0);
}

}  // namespace
