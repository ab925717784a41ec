// The members that follow the UTF-8 mode. Each row has text on which the two forms differ.
#include <gtest/gtest.h>

#include <string>

#include "encoding/RegistryState.h"
#include "mcmem/MultiByteString.h"

namespace {

using namespace MCMEM_NAMESPACE;  // NOLINT: the whole family
using encoding_test::DefaultCodePage;
using encoding_test::Utf8Mode;

class MultiByteStringActive : public testing::TestWithParam<bool> {
 protected:
  bool IsUtf8() const { return GetParam(); }

 private:
  DefaultCodePage page_{"windows-1252"};
  Utf8Mode mode_{GetParam() ? 1 : 0};
};

TEST_P(MultiByteStringActive, NextCharacter) {
  const char text[] = "\xE4\xB8\xAD";  // two bytes to the C locale
  EXPECT_EQ(TULKMBstrinc_A(text), text + (IsUtf8() ? 3 : 2));
  EXPECT_EQ(TULKMBstrinc_A(text), IsUtf8() ? TULKMBstrinc_8(text) : TULKMBstrinc_C(text));
}

TEST_P(MultiByteStringActive, PreviousCharacter) {
  const char text[] = "\xE4\xB8\xAD";
  EXPECT_EQ(TULKMBAnsiPrev_A(text, text + 3), text + (IsUtf8() ? 0 : 2));
}

TEST_P(MultiByteStringActive, FirstAndLastPlace) {
  const char text[] = "A\xC5\x81xA\xC5\x81";  // U+0141 is Lslash, its low byte is 'A'
  EXPECT_EQ(TULKMBstrchr_A(text, 0x141), text + (IsUtf8() ? 1 : 0));
  EXPECT_EQ(TULKMBstrrchr_A(text, 0x141), text + (IsUtf8() ? 5 : 4));
}

TEST_P(MultiByteStringActive, Copy) {
  std::string target(5, '#');
  EXPECT_EQ(TULKMBstrncpy_A(target.data(), "a\xC3\xA9", 5), target.data());
  // To the C locale the two bytes are one bad character.
  EXPECT_EQ(target, IsUtf8() ? std::string("a\xC3\xA9\0\0", 5) : std::string("a\0\0\0\0", 5));
}

TEST_P(MultiByteStringActive, Span) {
  EXPECT_EQ(TULKMBstrcspn_A("ab\xC3\xA9", "\xC3"), IsUtf8() ? 4 : 2);
}

TEST_P(MultiByteStringActive, CompareWithinBytes) {
  // E acute in either case, or A tilde with two different signs.
  EXPECT_EQ(TULKMBstrnicmp_A("\xC3\x89", "\xC3\xA9", 2), IsUtf8() ? 0 : 1);
}

TEST_P(MultiByteStringActive, Equal) {
  int status = 7;
  EXPECT_EQ(TULKMBqstricmp_A("\xC3\x89", -1, "\xC3\xA9", -1, &status), IsUtf8());
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(TULKMBqstricmp_A("\xC9", -1, "\xE9", -1, &status));
  EXPECT_EQ(status, IsUtf8() ? 3 : 0);
  EXPECT_TRUE(TULKMBqstricmp_A("A", -1, "a", -1));
}

INSTANTIATE_TEST_SUITE_P(Modes, MultiByteStringActive, testing::Bool(),
                         [](const auto& mode) { return mode.param ? "Utf8" : "CodePage"; });

}  // namespace
