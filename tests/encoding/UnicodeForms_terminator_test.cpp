// Terminated text whose stated end lies behind its zero: nothing behind the zero is read, whatever
// lies there.

#include <cstring>
#include <string>
#include <vector>

#include "encoding/UnicodeFormsCheck.h"

namespace encoding_test {
namespace {

using namespace MCMEM_NAMESPACE;

constexpr int kTooFar[] = {0, 1, 2, 3, 7, 15, 16, 17, 64, 1000, 100'000};

// Texts of 0 to 40 letters of each script, a few of them damaged right before the zero.
std::vector<std::string> Texts() {
  const std::string letters[] = {"a", "\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80", "ab\xC3\xA9"};
  std::vector<std::string> texts;
  for (const std::string& letter : letters) {
    std::string text;
    for (int i = 0; i <= 40; ++i) {
      texts.push_back(text);
      for (const char* damage :
           {"\xC3", "\xE4\xB8", "\xE4", "\xF0\x9F\x98", "\xF0", "\x80", "\xFF"}) {
        if (i % 8 == 0) texts.push_back(text + damage);
      }
      text += letter;
    }
  }
  return texts;
}

// How a conversion ended, in numbers that do not depend on where its buffers lie.
struct Outcome {
  ConversionResult result;
  std::ptrdiff_t taken;
  std::string written;
  bool operator==(const Outcome& other) const {
    return result == other.result && taken == other.taken && written == other.written;
  }
};

Outcome From8(const unsigned char* text, std::ptrdiff_t length, int reversed) {
  std::vector<UNALIGNED16> units(256);
  const unsigned char* s = text;
  UNALIGNED16* t = units.data();
  const ConversionResult result =
      LocalUTF8toUTF16(&s, text + length, &t, t + units.size(), lenientConversion, reversed);
  return {result, s - text,
          std::string(reinterpret_cast<char*>(units.data()),
                      2 * static_cast<std::size_t>(t - units.data()))};
}

Outcome From16(const UNALIGNED16* text, std::ptrdiff_t length, int reversed) {
  std::string bytes(1024, '#');
  const UNALIGNED16* s = text;
  auto* const start = reinterpret_cast<unsigned char*>(bytes.data());
  unsigned char* t = start;
  const ConversionResult result =
      LocalUTF16toUTF8(&s, text + length, &t, t + bytes.size(), lenientConversion, reversed);
  return {result, s - text, bytes.substr(0, static_cast<std::size_t>(t - start))};
}

TEST(UnicodeForms_Terminator, NothingBehindItIsReadFromUtf8) {
  const GuardedMemory memory(8192);  // ends at a page that may not be touched
  for (const std::string& text : Texts()) {
    const auto length = static_cast<std::ptrdiff_t>(text.size()) + 1;
    unsigned char* const at = memory.End() - length;
    std::memcpy(at, text.c_str(), text.size() + 1);
    for (const int reversed : {0, 1}) {
      const Outcome exact = From8(at, length, reversed);
      // a sequence that the zero cuts off is cut off only where the end says so
      if (exact.result == sourceExhausted) continue;
      for (const int further : kTooFar)
        ASSERT_TRUE(From8(at, length + further, reversed) == exact) << text << further;
    }
  }
}

TEST(UnicodeForms_Terminator, ASequenceThatItCutsOffIsIllegalWhenTheEndLiesFurther) {
  const GuardedMemory memory(4096);
  unsigned char* const at = memory.End() - 3;
  std::memcpy(at, "\xE4\xB8", 3);
  EXPECT_EQ(From8(at, 2, 0).result, sourceExhausted);
  EXPECT_EQ(From8(at, 3, 0).result, sourceIllegal);
  EXPECT_EQ(From8(at, 300, 0).result, sourceIllegal);
  EXPECT_EQ(From8(at, 300, 0).taken, 0);
}

TEST(UnicodeForms_Terminator, NothingBehindItIsReadFromUtf16) {
  const GuardedMemory memory(8192);
  const unsigned int letters[] = {0x61, 0xE9, 0x4E2D, 0xD83D, 0xDE00};
  for (const unsigned int letter : letters) {
    for (std::ptrdiff_t count = 0; count <= 40; ++count) {
      for (const int reversed : {0, 1}) {
        // the text ends at the page, or one byte before: units may lie at odd addresses
        for (const std::ptrdiff_t odd : {0, 1}) {
          unsigned char* const bytes = memory.End() - 2 * (count + 1) - odd;
          for (std::ptrdiff_t i = 0; i <= count; ++i) {
            const unsigned int unit = i == count ? 0 : letter;
            bytes[2 * i + (reversed == 0 ? 0 : 1)] = static_cast<unsigned char>(unit);
            bytes[2 * i + (reversed == 0 ? 1 : 0)] = static_cast<unsigned char>(unit >> 8);
          }
          const auto* const text = reinterpret_cast<const UNALIGNED16*>(bytes);
          const Outcome exact = From16(text, count + 1, reversed);
          EXPECT_EQ(exact.result, conversionOK);
          EXPECT_EQ(exact.taken, count + 1);
          for (const int further : kTooFar)
            ASSERT_TRUE(From16(text, count + 1 + further, reversed) == exact)
                << letter << ' ' << count << ' ' << further;
        }
      }
    }
  }
}

TEST(UnicodeForms_Terminator, ItIsFoundOnALaterPage) {
  const GuardedMemory memory(4 * 4096);
  const auto length = memory.End() - memory.Begin() - 5;
  unsigned char* const at = memory.End() - length;
  for (const char* letter : {"a", "\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80"}) {
    const auto size = static_cast<std::ptrdiff_t>(std::strlen(letter));
    std::ptrdiff_t end = 0;
    for (; end + size < length; end += size) std::memcpy(at + end, letter, std::strlen(letter));
    std::memset(at + end, 0, static_cast<std::size_t>(length - end));
    std::vector<UNALIGNED16> units(static_cast<std::size_t>(length));
    const unsigned char* s = at;
    UNALIGNED16* t = units.data();
    EXPECT_EQ(ConvertUTF8toUTF16(&s, at + length + 5000, &t, t + units.size(), strictConversion),
              conversionOK);
    EXPECT_EQ(s - at, end + 1);
    EXPECT_EQ(t - units.data(), size == 4 ? end / 2 : end / size);
  }
}

// AddressSanitizer knows the end of the block, where no page ends.
TEST(UnicodeForms_Terminator, AHeapBlockIsNotReadBeyondItsEnd) {
  const std::vector<unsigned char> text = {'a', 'b', 'c', 0};
  EXPECT_EQ(From8(text.data(), 64, 0).written, std::string("a\0b\0c\0", 6));
  const std::vector<UNALIGNED16> units = {{{'a', 0}}, {{'b', 0}}, {{0, 0}}};
  EXPECT_EQ(From16(units.data(), 64, 0).written, "ab");
}

}  // namespace
}  // namespace encoding_test
