// No function looks at a byte outside its text: texts stand at the edge of forbidden memory, and
// each function gives the same answer there as elsewhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "encoding/MultiByteStringText.h"
#include "encoding/RegistryState.h"
#include "mcmem/MultiByteString.h"

namespace {

using namespace MCMEM_NAMESPACE;  // NOLINT: the whole family
using encoding_test::BorderBytes;
using encoding_test::DefaultCodePage;
using encoding_test::EdgeText;
using encoding_test::Hex;
using encoding_test::RandomText;

using Answers = std::vector<long>;

long Offset(const char* s, const char* place) { return place == nullptr ? -1 : place - s; }

std::string Copied(char* (*copy)(char*, const char*, std::size_t), const char* s, std::size_t n) {
  std::string target(n + 1, '#');
  copy(target.data(), s, n);
  return target;
}

void AddText(Answers& answers, const std::string& text) {
  answers.insert(answers.end(), text.begin(), text.end());
}

// What stops at the terminator.
Answers AnswersForTerminated(const char* s) {
  Answers answers = {TULKMBmbclen_8(s), TULKMBmbclen_C(s), TULKMBCheckFinalChar_8(s, -1),
                     TULKMBValidCount_C(nullptr, s, -1), TULKMBValidCount_C(nullptr, s, 1'000)};
  for (const std::size_t n : {1u, 2u, 3u, 4u, 5u, 16u, 1'000u}) {
    answers.push_back(TULKMBmblen_8(s, n));
    answers.push_back(TULKMBmblen_C(s, n));
  }
  for (const unsigned int ch : {0u, 0x41u, 0xC0u, 0xE9u, 0x1FFu, 0x10000u}) {
    for (const int last : {0, 1}) {
      answers.push_back(Offset(s, TULKMBSearchChar_8(s, ch, last)));
      answers.push_back(Offset(s, TULKMBSearchChar_C(s, ch, last)));
    }
  }
  for (const int i : {0, 1, 2, 3, 1'000}) answers.push_back(TULKMBFindStart_C(s, i));
  for (const char* set : {"a", "\xC3\xA9\xE4\xB8\xAD"}) {
    for (const int mode : {0, 1}) {
      answers.push_back(TULKMBStringSpan_8(mode, s, set));
      answers.push_back(TULKMBSpan_C(s, set, mode));
      answers.push_back(TULKMBStringSpan_8(mode, "a\xC3\xA9", s));
      answers.push_back(TULKMBSpan_C("a\xC3\xA9", s, mode));
    }
  }
  for (const int length : {-1, 1'000}) {
    int status = 0;
    answers.push_back(TULKMBBinaryCompare_8(0, s, length, "aaaaaaaaaaaaaaaaa", -1, &status));
    answers.push_back(TULKMBBinaryCompare_8(1, "aaaaaaaaaaaaaaaaa", -1, s, length, &status));
    answers.push_back(TULKMBBinaryCompare_8(0, s, length, s, -1, &status));
    answers.push_back(status);
    answers.push_back(TULKMBBinaryCompare_C(0, nullptr, s, length, s, -1, &status));
    answers.push_back(status);
    answers.push_back(TULKMBU32Get_C(nullptr, s, 0, length));
  }
  for (const std::size_t n : {1u, 3u, 30u}) {
    AddText(answers, Copied(TULKMBstrncpy_8, s, n));
    AddText(answers, Copied(TULKMBstrncpy_C, s, n));
  }
  return answers;
}

// What holds to a length: there is no terminator.
Answers AnswersForLength(const char* s, std::size_t n) {
  const int length = static_cast<int>(n);
  int status = 0;
  Answers answers = {TULKMBPreviousIndex_8(s, length),
                     Offset(s, TULKMBAnsiPrev_8(s, s + n)),
                     TULKMBCheckFinalChar_8(s, length),
                     TULKMBValidCount_C(nullptr, s, length),
                     TULKMBBinaryCompare_8(0, s, length, s, length, &status),
                     status,
                     TULKMBBinaryCompare_8(0, "aaaaaaaaaaaaaaaaaaa", -1, s, length, nullptr),
                     TULKMBBinaryCompare_C(0, nullptr, s, length, s, length, &status),
                     status,
                     TULKMBstrnicmp_8(s, "aaaaaaaaaaaaaaaaaaaaaaa", length),
                     TULKMBstrnicmp_C(s, "aaaaaaaaaaaaaaaaaaaaaaa", length),
                     n == 0 ? 0 : TULKMBU32Get_C(nullptr, s, length - 1, length)};
  answers.push_back(TULKMBmblen_8(s, n));
  answers.push_back(TULKMBmblen_C(s, n));
  AddText(answers, Copied(TULKMBstrncpy_8, s, n));
  std::string target(n + 1, '#');
  answers.push_back(TULKMBLimitedCopy_8(target.data(), s, n));
  AddText(answers, target);
  return answers;
}

class MultiByteStringBounds : public encoding_test::CharacterLocaleTest {
 protected:
  void ExpectNothingOutsideIsRead(const std::string& text) {
    const std::string elsewhere = text + std::string(64, '\0');
    ASSERT_EQ(AnswersForTerminated(edge_.Terminated(text)), AnswersForTerminated(elsewhere.c_str()))
        << Hex(text);
    const std::string followed = text + "\x80\xBF\xA9 and more";
    ASSERT_EQ(AnswersForLength(edge_.Bare(text), text.size()),
              AnswersForLength(followed.c_str(), text.size()))
        << Hex(text);
    const std::string preceded = "\xF0\x9F\xC3\xE4" + text;
    ASSERT_EQ(AnswersForLength(edge_.Starting(text), text.size()),
              AnswersForLength(preceded.c_str() + 4, text.size()))
        << Hex(text);
  }

  EdgeText edge_;
};

TEST_F(MultiByteStringBounds, EveryShortTextOfBorderBytes) {
  const DefaultCodePage page("UTF-8");
  const std::string bytes = BorderBytes();
  ExpectNothingOutsideIsRead("");
  for (const char a : bytes) {
    ExpectNothingOutsideIsRead({a});
    for (const char b : bytes) {
      ExpectNothingOutsideIsRead({a, b});
      if (HasFatalFailure()) return;
    }
  }
}

TEST_F(MultiByteStringBounds, RandomTextInEveryKindOfCodePage) {
  const struct {
    const char* locale;
    const char* page;
  } kKinds[] = {{"UTF-8", "UTF-8"},      {"SHIFT_JIS", "windows-31j"}, {"EUC-TW", "EUC-TW"},
                {"GBK", "GB18030"},      {"EUC-JP", "ISO-2022-JP"},    {"TCVN5712-1", "ibm-930"},
                {"BIG5-HKSCS", "UTF-7"}, {"ISO-8859-1", "ISO-8859-1"}};
  for (const auto& kind : kKinds) {
    USE_LOCALE_OR_SKIP(kind.locale);
    const DefaultCodePage page(kind.page);
    std::mt19937 random(8);
    const std::string bytes =
        BorderBytes() + "\x8E\xA2\xA1\x81\x30\x1B$B(J\x0E\x0F+-" + std::string(20, 'a');
    for (int i = 0; i < encoding_test::kRounds / 400; ++i) {
      ExpectNothingOutsideIsRead(RandomText(random, 20, bytes));
      if (HasFatalFailure()) return;
    }
  }
}

TEST_F(MultiByteStringBounds, LongAsciiBeforeTheEdge) {
  const DefaultCodePage page("UTF-8");
  for (std::size_t length = 0; length < 150; ++length) {
    ExpectNothingOutsideIsRead(std::string(length, 'a'));
    ExpectNothingOutsideIsRead(std::string(length, 'a') + "\xE4\xB8");
  }
}

// An array without a terminator may be copied whole where it ends with a whole character.
TEST_F(MultiByteStringBounds, WholeArrayIsCopiedWithoutATerminator) {
  const std::string text = "abcd";
  EXPECT_EQ(Copied(TULKMBstrncpy_C, edge_.Bare(text), 4), "abcd#");
  USE_LOCALE_OR_SKIP("SHIFT_JIS");
  const std::string wide = "ab\x82\xA0";
  EXPECT_EQ(Copied(TULKMBstrncpy_C, edge_.Bare(wide), 4), "ab\x82\xA0#");
}

}  // namespace
