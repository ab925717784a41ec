// Copies that cut no character.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "encoding/MultiByteStringText.h"
#include "mcmem/MultiByteString.h"
#include "reference/SlowUtf8Strings.h"

namespace {

using encoding_test::BorderBytes;
using encoding_test::Hex;
using MCMEM_NAMESPACE::TULKMBCheckFinalChar_8;
using MCMEM_NAMESPACE::TULKMBLimitedCopy_8;
using MCMEM_NAMESPACE::TULKMBmbclen_C;
using MCMEM_NAMESPACE::TULKMBmblen_C;
using MCMEM_NAMESPACE::TULKMBstrncpy_8;
using MCMEM_NAMESPACE::TULKMBstrncpy_C;

constexpr std::size_t kRoom = 64;

std::string Untouched(std::size_t n) { return std::string(n, '#'); }

// All of a target after a copy of at most `n` bytes.
template <class Copy>
std::string TargetAfter(Copy copy, const char* text, std::size_t n) {
  std::string target = Untouched(kRoom);
  EXPECT_EQ(copy(target.data(), text, n), target.data());
  return target;
}

std::string Expected(const std::string& kept, std::size_t n) {
  return kept + std::string(n - kept.size(), '\0') + Untouched(kRoom - n);
}

// ---- Fit ends ----

struct FitRow {
  const char* rule;
  const char* text;
  int kept;
};

constexpr FitRow kFit[] = {
    {"an empty text", "", 0},
    {"ASCII", "abc", 3},
    {"a whole character", "a\xE4\xB8\xAD", 4},
    {"two of three bytes", "a\xE4\xB8", 1},
    {"one of three bytes", "a\xE4", 1},
    {"three of four bytes", "a\xF0\x9F\x98", 1},
    {"several trail bytes", "a\x80\x80\x80\x80\x80\x80", 1},
    {"a whole character before the fault", "a\xC3\xA9\xE4\xB8", 3},
    {"a non-character", "a\xEF\xBF\xBE", 1},
    {"a non-character of the block", "a\xEF\xB7\x90", 1},
    {"several non-characters", "a\xEF\xBF\xBF\xEF\xBF\xBE", 1},
    {"a surrogate", "a\xED\xA0\x80", 1},
    {"an overlong form", "a\xC0\x80", 1},
    {"nothing fit", "\xFF\xFE\x80", 0},
    {"faults before the last character do not count",
     "\xFF\x80"
     "a",
     3},
};

TEST(MultiByteStringCopy, TailThatMayNotEndATextIsNotCounted) {
  for (const FitRow& row : kFit) {
    const std::string text = row.text;
    EXPECT_EQ(TULKMBCheckFinalChar_8(row.text, -1), row.kept) << row.rule;
    EXPECT_EQ(TULKMBCheckFinalChar_8(row.text, static_cast<int>(text.size())), row.kept)
        << row.rule;
  }
}

TEST(MultiByteStringCopy, LengthCutsTheText) {
  const char text[] = "a\xC3\xA9\xE4\xB8\xAD";
  const int kKept[] = {0, 1, 1, 3, 3, 3, 6};
  for (int i = 0; i <= 6; ++i) EXPECT_EQ(TULKMBCheckFinalChar_8(text, i), kKept[i]) << i;
}

TEST(MultiByteStringCopy, GivenLengthSpansZeroBytes) {
  const std::string text("a\0b\0\xC3", 5);
  EXPECT_EQ(TULKMBCheckFinalChar_8(text.data(), 5), 4);
  EXPECT_EQ(TULKMBCheckFinalChar_8(text.data(), -1), 1);
}

TEST(MultiByteStringCopy, NullHasNoLength) {
  EXPECT_EQ(TULKMBCheckFinalChar_8(nullptr, -1), 0);
  EXPECT_EQ(TULKMBCheckFinalChar_8(nullptr, 7), 0);
}

// ---- UTF-8 ----

struct CopyRow {
  const char* rule;
  const char* text;
  std::size_t n;
  const char* kept;
};

constexpr CopyRow kUtf8[] = {
    {"a character is not cut", "a\xC3\xA9", 2, "a"},
    {"exactly full", "a\xC3\xA9", 3, "a\xC3\xA9"},
    {"room left", "a\xC3\xA9", 8, "a\xC3\xA9"},
    {"an empty text", "", 5, ""},
    {"no room", "abc", 0, ""},
    {"the first character does not fit", "\xF0\x9F\x98\x80", 3, ""},
    {"a fault inside stays",
     "a\x80"
     "b",
     3,
     "a\x80"
     "b"},
    {"a fault at the end goes", "ab\x80", 8, "ab"},
    {"a non-character at the cut goes", "a\xEF\xBF\xBFz", 4, "a"},
    {"a non-character inside stays", "a\xEF\xBF\xBFz", 5, "a\xEF\xBF\xBFz"},
};

TEST(MultiByteStringCopy, Utf8IsCutAtACharacterAndFilled) {
  for (const CopyRow& row : kUtf8) {
    EXPECT_EQ(TargetAfter(TULKMBstrncpy_8, row.text, row.n), Expected(row.kept, row.n)) << row.rule;
  }
}

TEST(MultiByteStringCopy, LimitedCopyWritesNothingBehindTheCopy) {
  for (const CopyRow& row : kUtf8) {
    const std::string kept = row.kept;
    std::string target = Untouched(kRoom);
    EXPECT_EQ(TULKMBLimitedCopy_8(target.data(), row.text, row.n), static_cast<int>(kept.size()))
        << row.rule;
    EXPECT_EQ(target, kept + Untouched(kRoom - kept.size())) << row.rule;
  }
}

TEST(MultiByteStringCopy, UnlimitedCopyTakesTheText) {
  std::string target = Untouched(kRoom);
  EXPECT_EQ(TULKMBLimitedCopy_8(target.data(), "a\xC3\xA9", static_cast<std::size_t>(-1)), 3);
  EXPECT_EQ(target, "a\xC3\xA9" + Untouched(kRoom - 3));
}

TEST(MultiByteStringCopy, NullIsCopiedAsNothingInUtf8) {
  std::string target = Untouched(kRoom);
  EXPECT_EQ(TULKMBstrncpy_8(target.data(), nullptr, 3), target.data());
  EXPECT_EQ(target, Expected("", 3));
  EXPECT_EQ(TULKMBstrncpy_8(target.data(), nullptr, 0), target.data());
  EXPECT_EQ(TULKMBstrncpy_8(nullptr, "a", 3), nullptr);
  EXPECT_EQ(TULKMBLimitedCopy_8(nullptr, "a", 3), 0);
  EXPECT_EQ(TULKMBLimitedCopy_8(target.data(), nullptr, 3), 0);
}

TEST(MultiByteStringCopy, RandomUtf8IsCutAsInThePlainWords) {
  std::mt19937 random(3);
  const std::string bytes = BorderBytes() + std::string(10, 'a');
  for (int i = 0; i < encoding_test::kRounds / 4; ++i) {
    const std::string text = encoding_test::RandomText(random, 20, bytes);
    const std::size_t n = random() % 24;
    const std::string seen = text.substr(0, n);
    const auto kept = static_cast<std::size_t>(reference::LengthWithoutBadTail(seen));
    ASSERT_EQ(TargetAfter(TULKMBstrncpy_8, text.c_str(), n), Expected(seen.substr(0, kept), n))
        << Hex(text) << " in " << n;
  }
}

TEST(MultiByteStringCopy, TargetMayOverlapTheSource) {
  std::string text = "abcdef";
  TULKMBstrncpy_8(text.data() + 1, text.data(), 5);
  EXPECT_EQ(text, "aabcde");
  text = "abcdef";
  TULKMBstrncpy_C(text.data() + 1, text.data(), 5);
  EXPECT_EQ(text, "aabcde");
  text = "abcdef";
  TULKMBstrncpy_C(text.data(), text.data() + 2, 6);
  EXPECT_EQ(text, std::string("cdef\0\0", 6));
}

// ---- Code pages ----

TEST(MultiByteStringCopy, NullLeavesTheTargetInACodePage) {
  std::string target = Untouched(kRoom);
  EXPECT_EQ(TULKMBstrncpy_C(target.data(), nullptr, 3), target.data());
  EXPECT_EQ(TULKMBstrncpy_C(target.data(), "a", 0), target.data());
  EXPECT_EQ(target, Untouched(kRoom));
  EXPECT_EQ(TULKMBstrncpy_C(nullptr, "a", 3), nullptr);
}

class MultiByteStringCopyLocale : public encoding_test::CharacterLocaleTest {};

// The published steps, with nothing left out.
std::string SlowCopy(const std::string& text, std::size_t n) {
  std::size_t kept = 0;
  std::size_t last = 0;
  while (kept < text.size()) {
    const auto bytes = static_cast<std::size_t>(TULKMBmbclen_C(text.c_str() + kept));
    if (kept + bytes > n) break;
    last = kept;
    kept += bytes;
  }
  if (kept > 0 && TULKMBmblen_C(text.c_str() + last, kept - last) < 0) kept = last;
  return text.substr(0, kept);
}

constexpr CopyRow kShiftJis[] = {
    {"single bytes", "abc", 2, "ab"},
    {"a double byte fits", "a\x82\xA0z", 3, "a\x82\xA0"},
    {"a double byte does not fit", "a\x82\xA0z", 2, "a"},
    {"exactly full", "a\x82\xA0", 3, "a\x82\xA0"},
    {"room left", "a\x82\xA0", 9, "a\x82\xA0"},
    {"a lead byte at the end goes", "a\x82", 9, "a"},
    {"a lead byte at the end and at the limit goes", "a\x82", 2, "a"},
    {"a bad pair at the end goes", "a\x82 ", 9, "a"},
    {"a bad pair inside stays", "a\x82 b", 9, "a\x82 b"},
    {"a bad pair before the cut goes", "a\x82 \x82\xA0", 4, "a"},
    {"only the last character is tested", "a\x82 \x82", 4, "a\x82 "},
    {"no room", "\x82\xA0", 1, ""},
    {"an empty text", "", 4, ""},
};

TEST_F(MultiByteStringCopyLocale, DoubleBytesAreNotCut) {
  USE_LOCALE_OR_SKIP("SHIFT_JIS");
  for (const CopyRow& row : kShiftJis) {
    if (row.n == 0) continue;
    EXPECT_EQ(SlowCopy(row.text, row.n), row.kept) << row.rule;
    EXPECT_EQ(TargetAfter(TULKMBstrncpy_C, row.text, row.n), Expected(row.kept, row.n)) << row.rule;
  }
}

TEST_F(MultiByteStringCopyLocale, RandomTextIsCutAsInThePlainWords) {
  for (const char* encoding : {"SHIFT_JIS", "EUC-JP", "EUC-TW", "UTF-8", "ISO-8859-1"}) {
    USE_LOCALE_OR_SKIP(encoding);
    std::mt19937 random(4);
    for (int i = 0; i < encoding_test::kRounds / 20; ++i) {
      const std::string text = encoding_test::RandomText(
          random, 12, BorderBytes() + "aa\x82\xA0\x8E\x8F\xA1\xA2\xE4\xB8\xAD\xF0\x9F\x98\x80");
      const std::size_t n = 1 + random() % 14;
      ASSERT_EQ(TargetAfter(TULKMBstrncpy_C, text.c_str(), n), Expected(SlowCopy(text, n), n))
          << Hex(text) << " in " << n << " under " << encoding;
    }
  }
}

TEST(MultiByteStringCopy, UnknownBytesOfTheCLocaleGoTwoByTwo) {
  EXPECT_EQ(TargetAfter(TULKMBstrncpy_C,
                        "\xC3\xA9"
                        "a\xC3\xA9",
                        5),
            Expected("\xC3\xA9"
                     "a",
                     5));
  EXPECT_EQ(TargetAfter(TULKMBstrncpy_C, "\xE4\xB8\xAD", 3), Expected("\xE4\xB8", 3));
}

}  // namespace
