// Finds characters in UTF-8 and in code pages.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "encoding/MultiByteStringText.h"
#include "mcmem/MultiByteString.h"
#include "reference/SlowUtf8Strings.h"

namespace {

using encoding_test::BorderBytes;
using encoding_test::Hex;
using MCMEM_NAMESPACE::TULKMBSearchChar_8;
using MCMEM_NAMESPACE::TULKMBSearchChar_C;
using MCMEM_NAMESPACE::TULKMBstrchr_8;
using MCMEM_NAMESPACE::TULKMBstrchr_C;
using MCMEM_NAMESPACE::TULKMBstrrchr_8;
using MCMEM_NAMESPACE::TULKMBstrrchr_C;

// -1 for null.
int Offset(const char* text, const char* place) {
  return place == nullptr ? -1 : static_cast<int>(place - text);
}

struct SearchRow {
  const char* rule;
  const char* text;
  unsigned int ch;
  int first;
  int last;
};

constexpr SearchRow kUtf8[] = {
    {"ASCII", "abcab", 'b', 1, 4},
    {"ASCII that is not there", "abcab", 'x', -1, -1},
    {"the terminator is found", "abc", 0, 3, 3},
    {"the terminator of an empty text", "", 0, 0, 0},
    {"an empty text", "", 0xE9, -1, -1},
    {"DEL is ASCII", "a\x7F", 0x7F, 1, 1},
    {"the first beyond ASCII", "a\xC2\x80", 0x80, 1, 1},
    {"two bytes", "a\xC3\xA9z\xC3\xA9", 0xE9, 1, 4},
    {"three bytes", "\xE4\xB8\xADx\xE4\xB8\xAD\xE4\xB8\xAE", 0x4E2D, 0, 4},
    {"four bytes", "xx\xF0\x9F\x98\x80\xF0\x9F\x98\x81", 0x1F600, 2, 2},
    {"not there", "\xE4\xB8\xAD", 0x4E2E, -1, -1},
    {"no part of a character is found", "\xE4\xB8\xAD", 0xB8, -1, -1},
    {"above every code point", "\xF4\x8F\xBF\xBF", 0x110000, -1, -1},
    {"an encoded surrogate", "a\xED\xA0\x80", 0xD800, 1, 1},
    {"nothing is validated: any second byte", "\xC3\x41", 0xC1, 0, 0},
    {"nothing is validated: an overlong form", "\xC1\xA9", 0x69, -1, -1},
    {"nothing is validated: a long overlong form", "\xE0\x83\xA9", 0xE9, 0, 0},
    {"nothing is validated: above the last code point", "\xF4\x90\x80\x80", 0x110000, 0, 0},
    {"nothing is validated: a trail byte leads two", "\x80\xC3\xC3\xA9", 0xE9, 2, 2},
    {"a lead of five counts as four", "\xF8\x80\x83\xA9\xC3\xA9", 0xE9, 0, 4},
    {"the terminator cuts two bytes", "a\xC3", 0xC0, -1, -1},
    {"the terminator cuts three bytes", "\xC3\xA9\xE4\xB8", 0x4E00, -1, -1},
    {"the terminator cuts four bytes", "\xF0\x9F\x98", 0x1F600, -1, -1},
    {"beyond one block of ASCII",
     "0123456789012345678901234567890123456789012345678901234567890123\xC3\xA9"
     "0123456789012345678901234567890123456789012345678901234567890123\xC3\xA9z",
     0xE9, 64, 130},
};

TEST(MultiByteStringSearch, Utf8IsWalkedByLeadBytes) {
  for (const SearchRow& row : kUtf8) {
    EXPECT_EQ(Offset(row.text, TULKMBSearchChar_8(row.text, row.ch, 0)), row.first) << row.rule;
    EXPECT_EQ(Offset(row.text, TULKMBSearchChar_8(row.text, row.ch, 1)), row.last) << row.rule;
    EXPECT_EQ(Offset(row.text, TULKMBSearchChar_8(row.text, row.ch, -7)), row.last) << row.rule;
    EXPECT_EQ(Offset(row.text, TULKMBstrchr_8(row.text, row.ch)), row.first) << row.rule;
    EXPECT_EQ(Offset(row.text, TULKMBstrrchr_8(row.text, row.ch)), row.last) << row.rule;
  }
}

TEST(MultiByteStringSearch, RandomUtf8AgreesWithThePlainWords) {
  std::mt19937 random(2);
  const std::string bytes = BorderBytes() + std::string(30, 'a');
  const unsigned int kWanted[] = {0x80, 0xC1, 0xE9, 0x1FF, 0xFFF, 0xFC0, 0x41041, 0x1FFFFF};
  for (int i = 0; i < encoding_test::kRounds; ++i) {
    const std::string text = encoding_test::RandomText(random, 20, bytes);
    // Something that is there, as often as not.
    unsigned int wanted = kWanted[random() % std::size(kWanted)];
    if (!text.empty() && random() % 2 == 0)
      wanted = reference::DecodeAt(text, random() % text.size(), true).value;
    if (wanted < 0x80) continue;
    for (const bool last : {false, true}) {
      const char* place = TULKMBSearchChar_8(text.c_str(), wanted, last ? 1 : 0);
      ASSERT_EQ(Offset(text.c_str(), place), reference::Search(text, wanted, last))
          << Hex(text) << " for " << wanted;
    }
  }
}

TEST(MultiByteStringSearch, EveryShortUtf8AgreesWithThePlainWords) {
  const std::string bytes = BorderBytes();
  for (const char a : bytes) {
    for (const char b : bytes) {
      for (const char c : bytes) {
        const std::string text = {a, b, c, '\xC3', '\xA9'};
        ASSERT_EQ(Offset(text.c_str(), TULKMBstrchr_8(text.c_str(), 0xE9)),
                  reference::Search(text, 0xE9, false))
            << Hex(text);
      }
    }
  }
}

TEST(MultiByteStringSearch, NullHasNoCharacters) {
  for (const unsigned int ch : {0u, 0x41u, 0xE9u}) {
    EXPECT_EQ(TULKMBSearchChar_8(nullptr, ch, 0), nullptr);
    EXPECT_EQ(TULKMBSearchChar_C(nullptr, ch, 1), nullptr);
  }
}

void ExpectCodePageRows(const SearchRow* rows, std::size_t count) {
  for (const SearchRow* row = rows; row != rows + count; ++row) {
    EXPECT_EQ(Offset(row->text, TULKMBSearchChar_C(row->text, row->ch, 0)), row->first)
        << row->rule;
    EXPECT_EQ(Offset(row->text, TULKMBSearchChar_C(row->text, row->ch, 3)), row->last) << row->rule;
    EXPECT_EQ(Offset(row->text, TULKMBstrchr_C(row->text, row->ch)), row->first) << row->rule;
    EXPECT_EQ(Offset(row->text, TULKMBstrrchr_C(row->text, row->ch)), row->last) << row->rule;
  }
}

constexpr SearchRow kSingleBytes[] = {
    {"a byte", "abcab", 'b', 1, 4},
    {"only the low byte counts", "xAyA", 0x141, 1, 3},
    {"0 finds the terminator", "abc", 0, 3, 3},
    {"0 in an empty text", "", 0, 0, 0},
    {"a low byte of 0 finds nothing", "abc", 0x100, -1, -1},
    {"an empty text", "", 'a', -1, -1},
    {"not there", "abc", 'x', -1, -1},
    {"a byte beyond ASCII", "a\xE9z\xE9", 0xE9, 1, 3},
    {"a negative char", "a\xE9", 0xFFFFFFE9, 1, 1},
};

TEST(MultiByteStringSearch, CodePageFindsLowBytes) {
  ExpectCodePageRows(kSingleBytes, std::size(kSingleBytes));
}

class MultiByteStringSearchLocale : public encoding_test::CharacterLocaleTest {};

TEST_F(MultiByteStringSearchLocale, SingleBytesAreFoundInEveryLocale) {
  for (const char* encoding : {"ISO-8859-1", "SHIFT_JIS", "UTF-8"}) {
    USE_LOCALE_OR_SKIP(encoding);
    ExpectCodePageRows(kSingleBytes, std::size(kSingleBytes) - 2);
  }
}

constexpr SearchRow kDoubleBytes[] = {
    {"a second half is not found", "\x83\x41z", 'A', -1, -1},
    {"behind a second half",
     "\x83\x41"
     "A",
     'A', 2, 2},
    {"a half-width character", "\x83\x41\xB1\xB1", 0xB1, 2, 3},
    {"a lead byte matches by itself, and only it is stepped over",
     "\x83\x41"
     "B",
     0x83, 0, 0},
    {"behind such a match the second half is seen", "\x83\x83\x41", 0x83, 0, 1},
    {"an unknown byte is stepped over alone",
     "\xFF"
     "A",
     'A', 1, 1},
    {"a lead byte before what is no second half", "\x83 A", 'A', 2, 2},
    {"a lead byte before the terminator", "A\x83", 'A', 0, 0},
    {"0 behind a lead byte", "A\x83", 0, 2, 2},
};

TEST_F(MultiByteStringSearchLocale, HalvesOfDoubleBytesAreNotFound) {
  USE_LOCALE_OR_SKIP("SHIFT_JIS");
  ExpectCodePageRows(kDoubleBytes, std::size(kDoubleBytes));
}

TEST_F(MultiByteStringSearchLocale, MultiByteCharactersAreSteppedOverWhole) {
  USE_LOCALE_OR_SKIP("EUC-TW");
  const char text[] = "\x8E\xA2\xA1\xA1z\xA1";
  EXPECT_EQ(Offset(text, TULKMBstrchr_C(text, 0xA1)), 5);
  EXPECT_EQ(Offset(text, TULKMBstrchr_C(text, 'z')), 4);
}

}  // namespace
