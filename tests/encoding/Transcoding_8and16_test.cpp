#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <climits>
#include <random>

#include "encoding/GuardedMemory.h"
#include "encoding/TranscodingCheck.h"

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

// What ICU makes of a text in one go.
struct ByIcu {
  bool failed = false;
  U16 units;
  std::string bytes;
};

ByIcu IcuFromUtf8(const std::string& text) {
  ByIcu result;
  result.units.resize(text.size() + 1);
  int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF8(&result.units[0], static_cast<int32_t>(result.units.size()), &length, text.data(),
                static_cast<int32_t>(text.size()), &error);
  result.failed = U_FAILURE(error);
  result.units.resize(result.failed ? 0 : static_cast<std::size_t>(length));
  return result;
}

ByIcu IcuToUtf8(const U16& text) {
  ByIcu result;
  result.bytes.resize(text.size() * 3 + 1);
  int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strToUTF8(&result.bytes[0], static_cast<int32_t>(result.bytes.size()), &length, text.data(),
              static_cast<int32_t>(text.size()), &error);
  result.failed = U_FAILURE(error);
  result.bytes.resize(result.failed ? 0 : static_cast<std::size_t>(length));
  return result;
}

// True when our function and ICU agree, also on whether the text is one.
bool AgreesFromUtf8(const std::string& text) {
  const ByIcu icu = IcuFromUtf8(text);
  U16 units(text.size() + 1, 0xABAB);
  int status = -1;
  const int length = TULKMB8to16(&units[0], static_cast<int>(units.size()), text.data(),
                                 static_cast<int>(text.size()), &status);
  if (icu.failed) return length == 0 && status == 3;
  units.resize(static_cast<std::size_t>(length));
  return status == 0 && units == icu.units;
}

bool AgreesToUtf8(const U16& text) {
  const ByIcu icu = IcuToUtf8(text);
  std::string bytes(text.size() * 3 + 1, '\xAB');
  int status = -1;
  const int length = TULKMB16to8(&bytes[0], static_cast<int>(bytes.size()), text.data(),
                                 static_cast<int>(text.size()), &status);
  if (icu.failed) return length == 0 && status == 3;
  bytes.resize(static_cast<std::size_t>(length));
  return status == 0 && bytes == icu.bytes;
}

TEST(Transcoding8And16, LettersAndASupplementaryCharacterIntoThreeUnits) {
  unsigned short dst[4] = {1, 1, 1, 1};
  int status = -1;
  EXPECT_EQ(TULKMB8to16(dst, 3, "ab\xF0\x9F\x98\x80", 6, &status), 2);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(U16(dst, 4), (U16{'a', 'b', ' ', 1}));
}

TEST(Transcoding8And16, OneBlankFollowsAShorterExplicitResult) {
  unsigned short dst[10];
  std::fill(std::begin(dst), std::end(dst), static_cast<unsigned short>(7));
  EXPECT_EQ(TULKMB8to16(dst, 10, "ab", 2), 2);
  EXPECT_EQ(U16(dst, 10), (U16{'a', 'b', ' ', 7, 7, 7, 7, 7, 7, 7}));
}

TEST(Transcoding8And16, TheEngineTakesItsDirectionFromAnyNumber) {
  unsigned short wide[4];
  char narrow[4];
  for (const int dir : {1, -1, INT_MAX}) {
    EXPECT_EQ(TULKMB8and16(dir, wide, 4, "\xC3\xA9", -1, nullptr), 1);
    EXPECT_EQ(wide[0], 0xE9);
  }
  EXPECT_EQ(TULKMB8and16(0, narrow, 4, wide, -1, nullptr), 2);
  EXPECT_STREQ(narrow, "\xC3\xA9");
}

TEST(Transcoding8And16, EveryCapacityOfEveryScript) {
  const std::string texts[] = {"",
                               "a",
                               "plain ASCII, longer than a block of sixteen",
                               "d\xC3\xA9j\xC3\xA0 vu, na\xC3\xAFve \xC3\xA9l\xC3\xA8ve",
                               "\xD0\xBF\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82 \xD0\xBC\xD0\xB8",
                               "\xE4\xBD\xA0\xE5\xA5\xBD\xEF\xBF\xBD\xEF\xBF\xBF",
                               "\xF0\x9F\x98\x80\xF0\x9F\x98\x81 \xF4\x8F\xBF\xBF",
                               std::string("a\0b\0", 4),
                               RandomUtf8(1, 60, false),
                               RandomUtf8(2, 60, true)};
  for (const std::string& text : texts) {
    CheckBuffers(ReferenceFromUtf8(text), text, TULKMB8to16);
    const U16 wide = Utf16Of(text);
    CheckBuffers(ReferenceToUtf8(wide), wide, TULKMB16to8);
  }
}

TEST(Transcoding8And16, MalformedTextFailsWhereverItIs) {
  for (const char* bad :
       {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80", "\xFE",
        "\xFF", "\xC3", "\xE4\xBD", "\xF0\x9F\x98"}) {
    for (const std::size_t head : {0u, 1u, 5u, 16u, 40u, 100u}) {
      for (const std::size_t tail : {0u, 1u, 20u}) {
        const std::string text = std::string(head, 'x') + bad + std::string(tail, 'y');
        const Reference<unsigned short> reference = ReferenceFromUtf8(text);
        ASSERT_TRUE(reference.hasFailed);
        for (const std::size_t capacity : {0u, 1u, 2u, 6u, 17u, 41u, 200u}) {
          CheckCapacity(reference, capacity, false, [&](unsigned short* dst, int c, int* status) {
            return TULKMB8to16(dst, c, text.data(), static_cast<int>(text.size()), status);
          });
          CheckCapacity(reference, capacity, true, [&](unsigned short* dst, int c, int* status) {
            return TULKMB8to16(dst, c, text.c_str(), -1, status);
          });
        }
      }
    }
  }
}

TEST(Transcoding8And16, ASurrogateWithoutItsOtherHalfFails) {
  for (const U16& bad : {U16{0xD800}, U16{0xDBFF, 'x'}, U16{0xDC00}, U16{0xDC00, 0xD800},
                         U16{0xD800, 0xD800, 0xDC00}}) {
    for (const std::size_t head : {0u, 1u, 7u, 16u, 50u}) {
      const U16 text = U16(head, 'x') + bad;
      const Reference<char> reference = ReferenceToUtf8(text);
      ASSERT_TRUE(reference.hasFailed);
      for (const std::size_t capacity : {0u, 1u, 2u, 17u, 200u}) {
        CheckCapacity(reference, capacity, false, [&](char* dst, int c, int* status) {
          return TULKMB16to8(dst, c, text.data(), static_cast<int>(text.size()), status);
        });
      }
    }
  }
}

TEST(Transcoding8And16, EveryCodePointAtSeveralPlacesAsIcuHasIt) {
  for (UChar32 c = 1; c <= 0x10FFFF; ++c) {
    char bytes[4];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, c);  // surrogates too, which are no UTF-8
    const std::string character(bytes, length);
    // places before, in and behind the blocks that are converted at once
    std::string text = character;
    if (c % 7 == 0) text = std::string(static_cast<std::size_t>(c) % 35, 'a') + character + "b";
    if (c % 7 == 1)
      text = character + character + character + character + character + character + character +
             character + character + character;
    ASSERT_TRUE(AgreesFromUtf8(text)) << std::hex << c;
    if (c % 7 > 1 && !U_IS_SURROGATE(c)) continue;
    U16 wide;
    if (c > 0xFFFF) wide += U16_LEAD(c);
    wide += static_cast<unsigned short>(c > 0xFFFF ? U16_TRAIL(c) : c);
    const U16 repeated = c % 7 == 0 ? wide : wide + wide + wide + wide + wide + wide + wide + wide;
    ASSERT_TRUE(AgreesToUtf8(repeated)) << std::hex << c;
  }
}

TEST(Transcoding8And16, AllThreeByteSequencesWithALeadAsIcuHasThem) {
  std::string text(3, '\0');
  for (unsigned lead = 0xC0; lead <= 0xFF; ++lead) {
    for (unsigned second = 0; second <= 0xFF; ++second) {
      // one third byte of each kind, and the borders between them
      for (const unsigned third :
           {0x00u, 0x41u, 0x7Fu, 0x80u, 0x8Fu, 0x90u, 0x9Fu, 0xA0u, 0xBFu, 0xC0u, 0xFFu}) {
        text[0] = static_cast<char>(lead);
        text[1] = static_cast<char>(second);
        text[2] = static_cast<char>(third);
        ASSERT_TRUE(AgreesFromUtf8(text)) << std::hex << lead << ' ' << second << ' ' << third;
        ASSERT_TRUE(AgreesFromUtf8("0123456789abcdef" + text + "0123456789abcdefghijklmnopqrst"));
      }
    }
  }
}

TEST(Transcoding8And16, RandomTextAsIcuHasIt) {
  for (unsigned seed = 0; seed < 3000; ++seed) {
    const U16 wide = RandomUtf16(seed, seed % 150, seed % 2 == 0);
    ASSERT_TRUE(AgreesToUtf8(wide)) << seed;
    ASSERT_TRUE(AgreesFromUtf8(ReferenceToUtf8(wide).units)) << seed;
  }
}

TEST(Transcoding8And16, DamagedRandomTextAsIcuHasIt) {
  std::mt19937 random(5);
  for (unsigned seed = 1; seed < 6000; ++seed) {
    U16 wide = RandomUtf16(seed, 1 + seed % 120, seed % 2 == 0);
    std::string text = ReferenceToUtf8(wide).units;
    text[random() % text.size()] = static_cast<char>(random());
    ASSERT_TRUE(AgreesFromUtf8(text)) << seed;
    wide[random() % wide.size()] = static_cast<unsigned short>(0xD700 + random() % 0xA00);
    ASSERT_TRUE(AgreesToUtf8(wide)) << seed;
  }
}

TEST(Transcoding8And16, NothingIsReadOrWrittenBeyondTheEnds) {
  const std::string texts[] = {RandomUtf8(3, 40, false), std::string(64, 'a'),
                               ReferenceToUtf8(U16(30, 0x444)).units,
                               ReferenceToUtf8(U16(30, 0x4E2D)).units};
  for (const std::string& whole : texts) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      const std::string text = whole.substr(0, size);
      const GuardedMemory sourcePage(text.size());
      const auto source = reinterpret_cast<char*>(sourcePage.End() - text.size());
      std::copy(text.begin(), text.end(), source);
      const auto needed =
          static_cast<std::size_t>(TULKMB8to16(nullptr, 0, source, static_cast<int>(text.size())));
      const GuardedMemory targetPage(2 * needed);
      const auto target = reinterpret_cast<unsigned short*>(targetPage.End()) - needed;
      const int length =
          TULKMB8to16(target, static_cast<int>(needed), source, static_cast<int>(text.size()));
      ASSERT_EQ(length, static_cast<int>(needed));
      ASSERT_EQ(TULKMB16to8(nullptr, 0, target, length),
                needed == 0 ? 0 : static_cast<int>(text.size()));
    }
  }
}

TEST(Transcoding8And16, ArgumentsThatAreRefused) {
  unsigned short wide[2] = {7, 7};
  int status = -1;
  EXPECT_EQ(TULKMB8to16(nullptr, 5, "abc", 3, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(TULKMB8to16(wide, -1, "abc", 3, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(TULKMB8to16(wide, INT_MIN, "abc", -1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(wide[0], 7);
  EXPECT_EQ(TULKMB8to16(wide, 2, nullptr, 3, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(wide[0], ' ');
  EXPECT_EQ(TULKMB8to16(wide, 2, nullptr, -1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(wide[0], 0);
  EXPECT_EQ(wide[1], 7);
}

TEST(Transcoding8And16, ANullSourceOfNoLengthIsEmpty) {
  unsigned short wide[2] = {7, 7};
  int status = -1;
  EXPECT_EQ(TULKMB8to16(wide, 2, nullptr, 0, &status), 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(wide[0], ' ');
  EXPECT_EQ(TULKMB8to16(nullptr, 0, nullptr, 0, &status), 0);
  EXPECT_EQ(status, 0);
}

TEST(Transcoding8And16, CapacityNoneAsksForTheLength) {
  unsigned short wide[1] = {7};
  int status = -1;
  EXPECT_EQ(TULKMB8to16(nullptr, 0, "h\xC3\xA9", -1, &status), 2);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(TULKMB8to16(wide, 0, "h\xC3\xA9", 3, &status), 2);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(wide[0], 7);
  const std::string text(5000, 'x');
  EXPECT_EQ(TULKMB8to16(nullptr, 0, text.data(), 5000, &status), 5000);
}

TEST(Transcoding8And16, OneUnitIsTheTerminator) {
  unsigned short wide[2] = {7, 7};
  int status = -1;
  EXPECT_EQ(TULKMB8to16(wide, 1, "abc", -1, &status), 0);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(wide[0], 0);
  EXPECT_EQ(wide[1], 7);
  EXPECT_EQ(TULKMB8to16(wide, 1, "", -1, &status), 0);
  EXPECT_EQ(status, 0);
}

}  // namespace
