// Steps through text in the encoding of the process's locale.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>

#include "encoding/MultiByteStringText.h"
#include "mcmem/MultiByteString.h"

namespace {

using encoding_test::Hex;
using MCMEM_NAMESPACE::TULKMBAnsiPrev_C;
using MCMEM_NAMESPACE::TULKMBFindStart_C;
using MCMEM_NAMESPACE::TULKMBIsLeadByte_C;
using MCMEM_NAMESPACE::TULKMBmbclen_C;
using MCMEM_NAMESPACE::TULKMBmblen_C;
using MCMEM_NAMESPACE::TULKMBstrinc_C;

class MultiByteStringLocale : public encoding_test::CharacterLocaleTest {};

// ---- TULKMBmblen_C is the C library's function ----

// With enough zero bytes behind the text that the C library may look at `n`.
int LibraryLength(const std::string& text, std::size_t n) {
  const std::string padded = text + std::string(32, '\0');
  return mblen(padded.c_str(), n);
}

void ExpectLibraryLengths(const std::string& text) {
  for (const std::size_t n : {1u, 2u, 3u, 4u, 5u, 16u, 20u}) {
    ASSERT_EQ(TULKMBmblen_C(text.c_str(), n), LibraryLength(text, n)) << Hex(text) << " in " << n;
  }
}

std::string Bytes(std::initializer_list<int> values) {
  std::string result;
  for (const int value : values) result += static_cast<char>(value);
  return result;
}

class MultiByteStringEveryLocale : public MultiByteStringLocale,
                                   public testing::WithParamInterface<const char*> {};

TEST_P(MultiByteStringEveryLocale, CheckedLengthIsTheCLibrarys) {
  USE_LOCALE_OR_SKIP(GetParam());
  for (int a = 1; a < 256; ++a) {
    ExpectLibraryLengths(Bytes({a}));
    for (int b = 1; b < 256; ++b) {
      ExpectLibraryLengths(Bytes({a, b}));
      ExpectLibraryLengths(Bytes({a, b, 0xA1, 0xA1}));
      ExpectLibraryLengths(Bytes({a, b, 0x81, 0x30}));
    }
  }
}

TEST_P(MultiByteStringEveryLocale, EveryStepIsThatOfTheWords) {
  USE_LOCALE_OR_SKIP(GetParam());
  for (int a = 1; a < 256; ++a) {
    EXPECT_EQ(TULKMBmbclen_C(Bytes({a}).c_str()), 1) << a;
    for (int b = 1; b < 256; ++b) {
      const std::string text = Bytes({a, b, 'x', 'y'});
      const int length = LibraryLength(text, 4);
      ASSERT_EQ(TULKMBmbclen_C(text.c_str()), length < 1 ? 2 : length) << Hex(text);
    }
    const int withBlanks = LibraryLength(Bytes({a, ' ', ' ', ' '}), 4);
    EXPECT_EQ(TULKMBIsLeadByte_C(static_cast<unsigned char>(a)), withBlanks != 1) << a;
  }
}

INSTANTIATE_TEST_SUITE_P(Encodings, MultiByteStringEveryLocale,
                         testing::Values("ISO-8859-1", "UTF-8", "SHIFT_JIS", "EUC-JP", "GBK",
                                         "EUC-TW", "BIG5-HKSCS", "TCVN5712-1"),
                         [](const auto& encoding) {
                           std::string name;
                           for (const char c : std::string(encoding.param))
                             if (isalnum(static_cast<unsigned char>(c))) name += c;
                           return name;
                         });

TEST(MultiByteStringCLocale, BytesBeyondAsciiAreUnknown) {
  EXPECT_EQ(TULKMBmblen_C("a", 1), 1);
  EXPECT_EQ(TULKMBmblen_C("\xE9", 1), -1);
  EXPECT_EQ(TULKMBmbclen_C("ab"), 1);
  EXPECT_EQ(TULKMBmbclen_C("\xE9"), 1) << "the terminator follows";
  EXPECT_EQ(TULKMBmbclen_C("\xE9z"), 2);
}

TEST(MultiByteStringCLocale, TerminatorAndNothing) {
  EXPECT_EQ(TULKMBmblen_C("", 1), 0);
  EXPECT_EQ(TULKMBmblen_C("", 16), 0);
  EXPECT_EQ(TULKMBmblen_C("a", 0), -1);
  EXPECT_EQ(TULKMBmblen_C(nullptr, 0), 0) << "no states";
  EXPECT_EQ(TULKMBmbclen_C(""), 1);
  EXPECT_EQ(TULKMBmbclen_C(nullptr), 1);
  EXPECT_FALSE(TULKMBIsLeadByte_C(0));
  const char text[] = "ab";
  EXPECT_EQ(TULKMBstrinc_C(text), text + 1);
  EXPECT_EQ(TULKMBstrinc_C(nullptr), nullptr);
}

TEST(MultiByteStringCLocale, UnlimitedLengthIsALimitLikeAnother) {
  EXPECT_EQ(TULKMBmblen_C("a", static_cast<std::size_t>(-1)), 1);
  EXPECT_EQ(TULKMBmblen_C("\xE9", static_cast<std::size_t>(-1)), -1);
}

TEST_F(MultiByteStringLocale, CutCharacterIsRefusedWhateverTheLimit) {
  USE_LOCALE_OR_SKIP("SHIFT_JIS");
  for (const std::size_t n : {std::size_t{1}, std::size_t{2}, static_cast<std::size_t>(-1)})
    EXPECT_EQ(TULKMBmblen_C("\x82", n), -1) << n;
}

// ---- Double bytes ----

TEST_F(MultiByteStringLocale, DoubleBytesAreSteppedOver) {
  USE_LOCALE_OR_SKIP("SHIFT_JIS");
  const char text[] = "a\x82\xA0\xB1z";  // a, hiragana a, half-width a, z
  EXPECT_EQ(TULKMBstrinc_C(text), text + 1);
  EXPECT_EQ(TULKMBstrinc_C(text + 1), text + 3);
  EXPECT_EQ(TULKMBstrinc_C(text + 3), text + 4);
  EXPECT_TRUE(TULKMBIsLeadByte_C(0x82));
  EXPECT_FALSE(TULKMBIsLeadByte_C(0xB1));
  EXPECT_FALSE(TULKMBIsLeadByte_C('a'));
}

struct StartRow {
  const char* rule;
  const char* text;
  int i;
  int start;
};

constexpr StartRow kStarts[] = {
    {"position 0", "\x82\xA0", 0, 0},
    {"a negative position", "ab", -3, 0},
    {"the second half", "\x82\xA0z", 1, 0},
    {"the first half of the second character", "\x82\xA0\x82\xA0", 2, 2},
    {"the second half of the second character", "\x82\xA0\x82\xA0", 3, 2},
    {"a byte that is a lead byte elsewhere", "\x82\x82\x82\x82", 3, 2},
    {"after a single byte", "a\x82\xA0", 2, 1},
    {"a single byte after another", "ab\x82\xA0", 1, 1},
    {"a half-width character", "\xB1\xB1\xB1", 2, 2},
    {"the terminator", "\x82\xA0", 2, 2},
    {"behind the terminator", "\x82\xA0", 9, 2},
    {"an empty text", "", 5, 0},
    {"a lead byte without its second half", "a\x82", 1, 1},
};

TEST_F(MultiByteStringLocale, StartIsFoundFromTheBeginning) {
  USE_LOCALE_OR_SKIP("SHIFT_JIS");
  for (const StartRow& row : kStarts)
    EXPECT_EQ(TULKMBFindStart_C(row.text, row.i), row.start) << row.rule;
  EXPECT_EQ(TULKMBFindStart_C(nullptr, 5), 0);
}

TEST_F(MultiByteStringLocale, PreviousCharacterIsADoubleByteOne) {
  USE_LOCALE_OR_SKIP("SHIFT_JIS");
  const char text[] = "a\x82\xA0\x82\x82z";
  const int expected[] = {0, 0, 1, 1, 3, 3, 5};
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(TULKMBAnsiPrev_C(text, text + i), text + expected[i]) << i;
  }
}

TEST_F(MultiByteStringLocale, NothingPrecedesTheStart) {
  const char text[] = "ab";
  EXPECT_EQ(TULKMBAnsiPrev_C(text, text), text);
  EXPECT_EQ(TULKMBAnsiPrev_C(text + 1, text), text);
  EXPECT_EQ(TULKMBAnsiPrev_C(text, nullptr), nullptr);
  EXPECT_EQ(TULKMBAnsiPrev_C(nullptr, text), text);
  EXPECT_EQ(TULKMBAnsiPrev_C(nullptr, nullptr), nullptr);
}

// The walk takes at most two bytes together: three-byte text is out of step, on purpose.
TEST_F(MultiByteStringLocale, WalkTakesAtMostTwoBytesTogether) {
  USE_LOCALE_OR_SKIP("UTF-8");
  EXPECT_EQ(TULKMBFindStart_C("\xE4\xB8\xAD\xE4\xB8\xAD", 3), 2);
  EXPECT_EQ(TULKMBmbclen_C("\xE4\xB8\xAD"), 3);
}

TEST_F(MultiByteStringLocale, ThreadsDoNotDisturbEachOther) {
  USE_LOCALE_OR_SKIP("SHIFT_JIS");
  const auto walk = [](const char* text, int expected, bool& isRight) {
    isRight = true;
    for (int i = 0; i < 20'000; ++i) isRight = isRight && TULKMBmblen_C(text, 2) == expected;
  };
  bool isRight[2] = {};
  std::thread first(walk, "\x82\xA0", 2, std::ref(isRight[0]));
  std::thread second(walk, "\x82", -1, std::ref(isRight[1]));
  first.join();
  second.join();
  EXPECT_TRUE(isRight[0]);
  EXPECT_TRUE(isRight[1]);
}

}  // namespace
