// Spans of characters in and outside a set.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "encoding/MultiByteStringText.h"
#include "encoding/RegistryState.h"
#include "mcmem/MultiByteString.h"
#include "reference/SlowUtf8Strings.h"

namespace {

using encoding_test::DefaultCodePage;
using encoding_test::Hex;
using MCMEM_NAMESPACE::TULKMBSpan_C;
using MCMEM_NAMESPACE::TULKMBstrcspn_8;
using MCMEM_NAMESPACE::TULKMBstrcspn_C;
using MCMEM_NAMESPACE::TULKMBStringSpan_8;
using MCMEM_NAMESPACE::TULKMBU32Get_C;

struct SpanRow {
  const char* rule;
  const char* text;
  const char* set;
  int inside;   // offset of the first character that is not in the set
  int outside;  // offset of the first character that is
};

constexpr SpanRow kUtf8[] = {
    {"ASCII", "abc", "ab", 2, 0},
    {"the whole text is inside", "abab", "ab", 4, 0},
    {"the whole text is outside", "abab", "xy", 0, 4},
    {"an empty text", "", "ab", 0, 0},
    {"an empty set", "ab", "", 0, 2},
    {"two empty ones", "", "", 0, 0},
    {"the order in the set does not matter", "zab", "baz", 3, 0},
    {"characters, not bytes", "\xC3\xA9\xC3\xA8", "\xC3\xA9", 2, 0},
    {"no part of a character is found", "\xE4\xB8\xAD", "\xC2\xB8", 0, 3},
    {"three bytes", "ab\xE4\xB8\xADz", "\xE4\xB8\xAD", 0, 2},
    {"four bytes", "\xF0\x9F\x98\x80z", "z\xF0\x9F\x98\x80", 5, 0},
    {"an illegal byte counts with its value", "a\xE9z", "\xC3\xA9", 0, 1},
    {"an illegal byte outside the set", "a\xE9z", "a", 1, 0},
    {"a cut character is single bytes", "\xE4\xB8", "\xC3\xA4", 1, 0},
    {"a trail byte too many", "\xC3\xA9\xA9", "\xC3\xA9", 2, 0},
    {"an encoded surrogate is a character of the text", "\xED\xA0\x80z", "\xED\xA0\x80", 0, 4},
    {"and it ends the set", "ab\xED\xA0\x80z", "a\xED\xA0\x80z", 1, 0},
    {"an illegal byte ends the set", "abc",
     "a\xFF"
     "b",
     1, 0},
    {"a cut character ends the set", "ab", "a\xE4\xB8", 1, 0},
    {"a set that starts with a fault is empty", "abc",
     "\x80"
     "abc",
     0, 3},
    {"a non-character", "\xEF\xBF\xBFz", "\xEF\xBF\xBF", 3, 0},
};

TEST(MultiByteStringSpan, Utf8WalksByCharacters) {
  for (const SpanRow& row : kUtf8) {
    EXPECT_EQ(TULKMBStringSpan_8(0, row.text, row.set), row.inside) << row.rule;
    EXPECT_EQ(TULKMBStringSpan_8(1, row.text, row.set), row.outside) << row.rule;
    EXPECT_EQ(TULKMBStringSpan_8(-1, row.text, row.set), row.outside) << row.rule;
    EXPECT_EQ(TULKMBstrcspn_8(row.text, row.set), row.outside) << row.rule;
  }
}

TEST(MultiByteStringSpan, TheTwoFormsHaveOppositeModes) {
  const DefaultCodePage page("windows-1252");
  EXPECT_EQ(TULKMBStringSpan_8(0, "abc", "ab"), 2);
  EXPECT_EQ(TULKMBSpan_C("abc", "ab", 1), 2);
  EXPECT_EQ(TULKMBStringSpan_8(1, "abc", "c"), 2);
  EXPECT_EQ(TULKMBSpan_C("abc", "c", 0), 2);
  EXPECT_EQ(TULKMBstrcspn_8("abc", "c"), 2);
  EXPECT_EQ(TULKMBstrcspn_C("abc", "c"), 2);
}

TEST(MultiByteStringSpan, NullIsEmpty) {
  EXPECT_EQ(TULKMBStringSpan_8(0, nullptr, "a"), 0);
  EXPECT_EQ(TULKMBStringSpan_8(1, "ab", nullptr), 2);
  EXPECT_EQ(TULKMBSpan_C(nullptr, "a", 1), 0);
  EXPECT_EQ(TULKMBSpan_C("ab", nullptr, 0), 2);
  EXPECT_EQ(TULKMBSpan_C("ab", nullptr, 1), 0);
}

// ---- 64 characters ----

// U+0100 and up, two bytes each.
std::string TwoByteCharacters(int count) {
  std::string result;
  for (int i = 0; i < count; ++i) {
    result += static_cast<char>(0xC4 + i / 64);
    result += static_cast<char>(0x80 + i % 64);
  }
  return result;
}

TEST(MultiByteStringSpan, Utf8SetEndsAtSixtyFourCharacters) {
  const std::string filler(63, 'a');
  const std::string wide = TwoByteCharacters(63);
  for (const std::string& front : {filler, wide}) {
    EXPECT_EQ(TULKMBstrcspn_8("xyz", (front + "z").c_str()), 2) << "the 64th counts";
    EXPECT_EQ(TULKMBstrcspn_8("xyz", (front + "az").c_str()), 3) << "the 65th does not";
    EXPECT_EQ(TULKMBstrcspn_8("x\xC3\xA9", (front + "\xC3\xA9").c_str()), 1) << "the 64th";
    EXPECT_EQ(TULKMBstrcspn_8("x\xC3\xA9", (front + "a\xC3\xA9").c_str()), 3) << "the 65th";
  }
}

TEST(MultiByteStringSpan, SetOfSixtyFourLongestCharactersCounts) {
  std::string set;
  for (int i = 0; i < 64; ++i) set += std::string("\xF0\x9F\x98", 3) + static_cast<char>(0x80 + i);
  EXPECT_EQ(TULKMBStringSpan_8(0, (set + "z").c_str(), set.c_str()), 256);
  EXPECT_EQ(TULKMBStringSpan_8(0, (set + "z").c_str(), (set + "z").c_str()), 256) << "the 65th";
}

TEST(MultiByteStringSpan, FaultBehindSixtyFourCharactersDoesNotMatter) {
  EXPECT_EQ(TULKMBstrcspn_8("xyz", (std::string(63, 'a') + "z\xFF").c_str()), 2);
  EXPECT_EQ(TULKMBstrcspn_8("xyz", (TwoByteCharacters(63) + "z\xFF").c_str()), 2);
  EXPECT_EQ(TULKMBstrcspn_8("xyz", (TwoByteCharacters(63) + "z\xE4\xB8").c_str()), 2);
}

TEST(MultiByteStringSpan, CodePageSetHasNoEnd) {
  const DefaultCodePage page("UTF-8");
  const std::string set = TwoByteCharacters(128) + "\xE4\xB8\xADz";
  EXPECT_EQ(TULKMBstrcspn_C("xyz", set.c_str()), 2);
  EXPECT_EQ(TULKMBstrcspn_C("xy\xE4\xB8\xAD", set.c_str()), 2);
  EXPECT_EQ(TULKMBSpan_C((set + "x").c_str(), set.c_str(), 1), static_cast<int>(set.size()));
  EXPECT_EQ(TULKMBstrcspn_C("xyw", set.c_str()), 3);
}

// ---- Against the plain words ----

std::vector<unsigned int> SetUpToTheFirstFault(const std::string& set) {
  std::vector<unsigned int> points;
  for (std::size_t at = 0; at < set.size() && points.size() < 64;) {
    const reference::SlowCharacter c = reference::DecodeAt(set, at, false);
    if (!c.isLegal) break;
    points.push_back(c.value);
    at += c.bytes;
  }
  return points;
}

TEST(MultiByteStringSpan, RandomUtf8AgreesWithThePlainWords) {
  std::mt19937 random(5);
  // Few different characters, so that they are met again.
  const std::string bytes = std::string("aaabbc") + "\xC3\xA9\xA8\xE4\xB8\xAD\xF0\x9F\x98\x80\xED";
  for (int i = 0; i < encoding_test::kRounds; ++i) {
    const std::string text = encoding_test::RandomText(random, 12, bytes);
    std::string set = encoding_test::RandomText(random, 6, bytes);
    // Legal sets are rare otherwise.
    for (unsigned int k = random() % 4; k > 0; --k)
      set = (k % 2 ? "\xC3\xA9" : "\xE4\xB8\xAD") + set;
    const auto points = SetUpToTheFirstFault(set);
    for (const bool stopsInside : {false, true}) {
      ASSERT_EQ(TULKMBStringSpan_8(stopsInside ? 1 : 0, text.c_str(), set.c_str()),
                reference::Span(text, points, stopsInside))
          << Hex(text) << " with " << Hex(set);
    }
  }
}

// ---- Code pages ----

struct CodePageRow {
  const char* rule;
  const char* page;
  SpanRow row;
};

constexpr CodePageRow kCodePages[] = {
    {"single bytes", "windows-1252", {"", "a\x80z", "\x80", 0, 1}},
    {"double bytes", "windows-31j", {"", "\x83\x41\x41z", "\x83\x41", 2, 0}},
    {"no half of a double byte is found", "windows-31j", {"", "\x83\x41z", "A", 0, 3}},
    {"the same character by two byte sequences",
     "windows-31j",
     {"", "\x87\x90z", "\x81\xE0", 2, 0}},
    {"an illegal byte counts with its value", "US-ASCII", {"", "a\xE9z", "\xE9", 0, 1}},
    {"and with the code point of that number", "UTF-8", {"", "a\xE9z", "\xC3\xA9", 0, 1}},
    {"a cut character is its lead byte", "windows-31j", {"", "a\x83", "\x83", 0, 1}},
    {"a fault in the set does not end it",
     "UTF-8",
     {"", "ab\xFF",
      "\xFF"
      "b",
      0, 1}},
    {"an empty text", "windows-31j", {"", "", "a", 0, 0}},
    {"an empty set", "windows-31j", {"", "ab", "", 0, 2}},
};

TEST(MultiByteStringSpan, CodePageWalksByCharacters) {
  for (const CodePageRow& test : kCodePages) {
    const DefaultCodePage page(test.page);
    EXPECT_EQ(TULKMBSpan_C(test.row.text, test.row.set, 1), test.row.inside) << test.rule;
    EXPECT_EQ(TULKMBSpan_C(test.row.text, test.row.set, 2), test.row.inside) << test.rule;
    EXPECT_EQ(TULKMBSpan_C(test.row.text, test.row.set, 0), test.row.outside) << test.rule;
    EXPECT_EQ(TULKMBstrcspn_C(test.row.text, test.row.set), test.row.outside) << test.rule;
  }
}

// The published steps by single calls of the public function.
std::vector<std::pair<unsigned int, int>> SlowCharacters(const std::string& s) {
  std::vector<std::pair<unsigned int, int>> result;
  for (int at = 0; at < static_cast<int>(s.size());) {
    unsigned int value = 0;
    int bytes = TULKMBU32Get_C(&value, s.c_str(), at, -1);
    if (bytes <= 0) {
      value = static_cast<unsigned char>(s[static_cast<std::size_t>(at)]);
      bytes = 1;
    }
    result.emplace_back(value, bytes);
    at += bytes;
  }
  return result;
}

int SlowSpan(const std::string& text, const std::string& set, bool staysInside) {
  const auto members = SlowCharacters(set);
  int offset = 0;
  for (const auto& [value, bytes] : SlowCharacters(text)) {
    bool isInside = false;
    for (const auto& member : members) isInside = isInside || member.first == value;
    if (isInside != staysInside) break;
    offset += bytes;
  }
  return offset;
}

TEST(MultiByteStringSpan, OneConverterForTheWholeCallChangesNothing) {
  for (const char* name :
       {"windows-1252", "ISO-8859-1", "US-ASCII", "UTF-8", "windows-31j", "GB18030", "ISO-2022-JP",
        "ibm-930", "UTF-7", "Big5-HKSCS", "ISCII,version=0", "ibm-1390"}) {
    const DefaultCodePage page(name);
    std::mt19937 random(6);
    const std::string bytes =
        std::string("\x1B$B0!(J\x0E\x0F~{}+-AA") + "\x81\x41\x30\xC3\xA9\xFF\x88\x62";
    for (int i = 0; i < encoding_test::kRounds / 200; ++i) {
      const std::string text = encoding_test::RandomText(random, 12, bytes);
      const std::string set = encoding_test::RandomText(random, i % 20 == 0 ? 200 : 8, bytes);
      for (const bool staysInside : {false, true}) {
        ASSERT_EQ(TULKMBSpan_C(text.c_str(), set.c_str(), staysInside ? 1 : 0),
                  SlowSpan(text, set, staysInside))
            << name << ": " << Hex(text) << " with " << Hex(set);
      }
    }
  }
}

}  // namespace
