// Steps through UTF-8: lengths of characters, forwards and backwards.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "encoding/MultiByteStringText.h"
#include "mcmem/MultiByteString.h"
#include "reference/SlowUtf8Strings.h"

namespace {

using encoding_test::BorderBytes;
using encoding_test::Hex;
using encoding_test::kLeadStep;
using MCMEM_NAMESPACE::TULKMBAnsiPrev_8;
using MCMEM_NAMESPACE::TULKMBCheckFinalChar_8;
using MCMEM_NAMESPACE::TULKMBmbclen_8;
using MCMEM_NAMESPACE::TULKMBmblen_8;
using MCMEM_NAMESPACE::TULKMBPreviousIndex_8;
using MCMEM_NAMESPACE::TULKMBstrinc_8;

// ---- Tables ----

struct LengthRow {
  const char* rule;
  const char* text;
  int announced;  // TULKMBmbclen_8
  int checked;    // TULKMBmblen_8 with all the bytes there are
};

constexpr LengthRow kLengths[] = {
    {"the terminator is one byte, and no character", "", 1, 0},
    {"ASCII", "ab", 1, 1},
    {"DEL", "\x7F\x80", 1, 1},
    {"a trail byte", "\x80\x80", 1, -1},
    {"the last trail byte", "\xBF\x80", 1, -1},
    {"an overlong lead announces two", "\xC0\x80", 2, -1},
    {"the other overlong lead", "\xC1\xBF", 2, -1},
    {"two bytes", "\xC3\xA9x", 2, 2},
    {"two bytes, the second is no trail byte", "\xC3xy", 2, -1},
    {"two bytes, cut", "\xC3", 1, -1},
    {"three bytes", "\xE4\xB8\xADx", 3, 3},
    {"three bytes, the third is no trail byte", "\xE4\xB8xy", 3, -1},
    {"three bytes, cut after two", "\xE2\x82", 2, -1},
    {"three bytes, cut after one", "\xE2", 1, -1},
    {"three bytes, overlong", "\xE0\x9F\xBF", 3, -1},
    {"three bytes, the first that is not overlong", "\xE0\xA0\x80", 3, 3},
    {"the last before the surrogates", "\xED\x9F\xBF", 3, 3},
    {"a surrogate", "\xED\xA0\x80", 3, -1},
    {"the first after the surrogates", "\xEE\x80\x80", 3, 3},
    {"a non-character is well-formed", "\xEF\xBF\xBF", 3, 3},
    {"four bytes", "\xF0\x9F\x98\x80x", 4, 4},
    {"four bytes, overlong", "\xF0\x8F\xBF\xBF", 4, -1},
    {"four bytes, cut after three", "\xF0\x9F\x98", 3, -1},
    {"the last code point", "\xF4\x8F\xBF\xBF", 4, 4},
    {"above the last code point", "\xF4\x90\x80\x80", 4, -1},
    {"a lead of four that is never legal", "\xF7\x80\x80\x80", 4, -1},
    {"a lead of five counts as one", "\xF8\x80\x80\x80\x80", 1, -1},
    {"a lead of six counts as one", "\xFC\x80\x80\x80\x80\x80", 1, -1},
    {"0xFE", "\xFE\x80", 1, -1},
    {"0xFF", "\xFF\x80", 1, -1},
};

TEST(MultiByteStringStep, LengthIsAnnouncedByTheLeadByteAndCutAtTheTerminator) {
  for (const LengthRow& row : kLengths) {
    EXPECT_EQ(TULKMBmbclen_8(row.text), row.announced) << row.rule;
    EXPECT_EQ(TULKMBstrinc_8(row.text), row.text + row.announced) << row.rule;
  }
}

TEST(MultiByteStringStep, CheckedLengthIsThatOfAWellFormedCharacter) {
  for (const LengthRow& row : kLengths) {
    EXPECT_EQ(TULKMBmblen_8(row.text, std::string(row.text).size()), row.checked) << row.rule;
    EXPECT_EQ(TULKMBmblen_8(row.text, static_cast<std::size_t>(-1)), row.checked) << row.rule;
  }
}

TEST(MultiByteStringStep, CheckedLengthHoldsToItsBytes) {
  const struct {
    const char* text;
    std::size_t n;
    int expected;
  } kRows[] = {
      {"a", 0, 0},
      {"\xC3\xA9", 0, 0},
      {"a", 1, 1},
      {"\xC3\xA9", 1, -1},
      {"\xC3\xA9", 2, 2},
      {"\xE4\xB8\xAD", 1, -1},
      {"\xE4\xB8\xAD", 2, -1},
      {"\xE4\xB8\xAD", 3, 3},
      {"\xE0\xA0\x80", 2, -1},
      {"\xE0\xA0\x80", 3, 3},
      {"\xF0\x9F\x98\x80", 3, -1},
      {"\xF0\x9F\x98\x80", 4, 4},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(TULKMBmblen_8(row.text, row.n), row.expected) << Hex(row.text) << " in " << row.n;
  }
}

TEST(MultiByteStringStep, NullIsAnEmptyText) {
  EXPECT_EQ(TULKMBmbclen_8(nullptr), 1);
  EXPECT_EQ(TULKMBmblen_8(nullptr, 4), 0);
  EXPECT_EQ(TULKMBstrinc_8(nullptr), nullptr);
  EXPECT_EQ(TULKMBAnsiPrev_8(nullptr, nullptr), nullptr);
  EXPECT_EQ(TULKMBPreviousIndex_8(nullptr, 0), 0);
}

struct PreviousRow {
  const char* rule;
  const char* text;
  int start;  // of what precedes the end
};

constexpr PreviousRow kPrevious[] = {
    {"ASCII", "ab", 1},
    {"two bytes", "a\xC3\xA9", 1},
    {"three bytes", "a\xE4\xB8\xAD", 1},
    {"four bytes", "a\xF0\x9F\x98\x80", 1},
    {"a lone trail byte", "a\x80", 1},
    {"a lone lead byte", "a\xE4", 1},
    {"a cut character goes back one byte only", "a\xE4\xB8", 2},
    {"a trail byte too many", "a\xC3\xA9\xA9", 3},
    {"an overlong form", "a\xC0\x80", 2},
    {"the last before the surrogates", "a\xED\x9F\xBF", 1},
    {"the first surrogate", "a\xED\xA0\x80", 3},
    {"the last surrogate", "a\xED\xBF\xBF", 3},
    {"the first after the surrogates", "a\xEE\x80\x80", 1},
    {"the last before the block of non-characters", "a\xEF\xB7\x8F", 1},
    {"the first of the block, U+FDD0", "a\xEF\xB7\x90", 3},
    {"the last of the block, U+FDEF", "a\xEF\xB7\xAF", 3},
    {"the first after the block", "a\xEF\xB7\xB0", 1},
    {"the replacement character", "a\xEF\xBF\xBD", 1},
    {"U+FFFE", "a\xEF\xBF\xBE", 3},
    {"U+FFFF", "a\xEF\xBF\xBF", 3},
    {"the first beyond 16 bits", "a\xF0\x90\x80\x80", 1},
    {"U+1FFFD", "a\xF0\x9F\xBF\xBD", 1},
    {"U+1FFFE", "a\xF0\x9F\xBF\xBE", 4},
    {"U+10FFFD", "a\xF4\x8F\xBF\xBD", 1},
    {"U+10FFFF", "a\xF4\x8F\xBF\xBF", 4},
    {"above the last code point", "a\xF4\x90\x80\x80", 4},
};

TEST(MultiByteStringStep, PreviousCharacterIsAWholeOneOrOneByte) {
  for (const PreviousRow& row : kPrevious) {
    const int length = static_cast<int>(std::string(row.text).size());
    EXPECT_EQ(TULKMBPreviousIndex_8(row.text, length), row.start) << row.rule;
    EXPECT_EQ(TULKMBAnsiPrev_8(row.text, row.text + length), row.text + row.start) << row.rule;
  }
}

TEST(MultiByteStringStep, NothingPrecedesTheStart) {
  const char text[] = "ab";
  for (const int i : {0, -1, -100}) EXPECT_EQ(TULKMBPreviousIndex_8(text, i), i);
  EXPECT_EQ(TULKMBAnsiPrev_8(text, nullptr), nullptr);
  EXPECT_EQ(TULKMBAnsiPrev_8(text, text), text);
  EXPECT_EQ(TULKMBAnsiPrev_8(text + 1, text), text);
  EXPECT_EQ(TULKMBAnsiPrev_8(nullptr, text), text);
}

TEST(MultiByteStringStep, PreviousCharacterIsFoundBehindZeroBytes) {
  const std::string text("a\0\xC3\xA9\0", 5);
  EXPECT_EQ(TULKMBPreviousIndex_8(text.data(), 5), 4);
  EXPECT_EQ(TULKMBPreviousIndex_8(text.data(), 4), 2);
  EXPECT_EQ(TULKMBPreviousIndex_8(text.data(), 2), 1);
}

TEST(MultiByteStringStep, TailsOfHalfAMillionIllegalBytesTakeNoTime) {
  const std::string text(500'000, '\x80');
  EXPECT_EQ(TULKMBCheckFinalChar_8(text.data(), static_cast<int>(text.size())), 0);
}

// ---- Every sequence ----

// Whatever the functions say about `text`, the plain reading says too.
testing::AssertionResult AgreesOn(const std::string& text) {
  const int length = static_cast<int>(text.size());
  const char* s = text.c_str();
  const auto fails = [&](const char* what) {
    return testing::AssertionFailure() << what << " differs for " << Hex(text);
  };
  if (TULKMBPreviousIndex_8(s, length) != reference::PreviousIndex(text, length))
    return fails("PreviousIndex");
  if (TULKMBCheckFinalChar_8(s, length) != reference::LengthWithoutBadTail(text))
    return fails("CheckFinalChar");
  const std::string seen = s;
  if (TULKMBmbclen_8(s) != (seen.empty() ? 1 : reference::AnnouncedLength(seen)))
    return fails("mbclen");
  if (TULKMBmblen_8(s, text.size()) != reference::CheckedLength(seen, seen.size()))
    return fails("mblen");
  return testing::AssertionSuccess();
}

TEST(MultiByteStringStep, EveryPairOfBytesReadsAsInThePlainWords) {
  std::string text(2, '\0');
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      text[0] = static_cast<char>(a);
      text[1] = static_cast<char>(b);
      ASSERT_TRUE(AgreesOn(text));
    }
  }
}

TEST(MultiByteStringStep, EveryTripleOfBytesReadsAsInThePlainWords) {
  std::string text(3, '\0');
  for (unsigned int i = 0; i < 0x1000000; ++i) {
    if (kLeadStep > 1 && i % 0x10000 == 0) i += (kLeadStep - 1) * 0x10000;
    text[0] = static_cast<char>(i >> 16 & 0xFF);
    text[1] = static_cast<char>(i >> 8 & 0xFF);
    text[2] = static_cast<char>(i & 0xFF);
    ASSERT_TRUE(AgreesOn(text));
  }
}

TEST(MultiByteStringStep, EveryQuadrupleOfBorderBytesReadsAsInThePlainWords) {
  std::string text(4, '\0');
  const std::string bytes = BorderBytes();
  for (std::size_t a = 0; a < bytes.size(); a += kLeadStep) {
    text[0] = bytes[a];
    for (const char b : bytes) {
      text[1] = b;
      for (const char c : bytes) {
        text[2] = c;
        for (const char d : bytes) {
          text[3] = d;
          ASSERT_TRUE(AgreesOn(text));
        }
      }
    }
  }
}

TEST(MultiByteStringStep, RandomBytesReadAsInThePlainWords) {
  std::mt19937 random(1);
  const std::string bytes = BorderBytes() + std::string(1, '\0');
  for (int i = 0; i < encoding_test::kRounds; ++i) {
    ASSERT_TRUE(AgreesOn("a" + encoding_test::RandomText(random, 12, bytes)));
  }
}

// Every code point, encoded by hand, in front of another character.
TEST(MultiByteStringStep, EveryCodePointStepsForwardsAndBackwards) {
  for (unsigned int value = 1; value <= 0x10FFFF; ++value) {
    std::string text;
    if (value < 0x80) {
      text = {static_cast<char>(value)};
    } else if (value < 0x800) {
      text = {static_cast<char>(0xC0 + value / 64), static_cast<char>(0x80 + value % 64)};
    } else if (value < 0x10000) {
      text = {static_cast<char>(0xE0 + value / 4096), static_cast<char>(0x80 + value / 64 % 64),
              static_cast<char>(0x80 + value % 64)};
    } else {
      text = {static_cast<char>(0xF0 + value / 262144), static_cast<char>(0x80 + value / 4096 % 64),
              static_cast<char>(0x80 + value / 64 % 64), static_cast<char>(0x80 + value % 64)};
    }
    const int length = static_cast<int>(text.size());
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    const bool isRefused =
        isSurrogate || (value >= 0xFDD0 && value <= 0xFDEF) || (value & 0xFFFE) == 0xFFFE;
    ASSERT_EQ(TULKMBmblen_8(text.c_str(), text.size()), isSurrogate ? -1 : length) << value;
    ASSERT_EQ(TULKMBmbclen_8(text.c_str()), length) << value;
    ASSERT_EQ(TULKMBPreviousIndex_8(text.c_str(), length), isRefused ? length - 1 : 0) << value;
    ASSERT_EQ(TULKMBCheckFinalChar_8(text.c_str(), -1), isRefused ? 0 : length) << value;
  }
}

}  // namespace
