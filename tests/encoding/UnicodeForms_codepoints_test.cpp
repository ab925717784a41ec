// Every code point, every surrogate and values beyond, through every conversion.

#include "encoding/UnicodeFormsCheck.h"

namespace encoding_test {
namespace {

constexpr unsigned int kEndOfCodePoints = 0x110000;
constexpr unsigned int kRun = 24;
// Debug and sanitizer builds take every 7th; the borders are in the lists below.
constexpr unsigned int kStep = kThorough ? 1 : 7;

template <class Conversion>
class UnicodeForms_CodePoints : public testing::Test {
 public:
  using From = typename Conversion::From;

  static Units Encoded(unsigned int value) {
    if (sizeof(typename From::Unit) == 1) return reference::Utf8Of(value);
    if (sizeof(typename From::Unit) == 2) return reference::Utf16Of(value);
    return {value};
  }

  void CheckAlone(unsigned int value) {
    for (const auto flags : kBothFlags) ASSERT_TRUE(checker_.Same(Encoded(value), 8, flags));
  }

  // As a text of neighbours, which is long enough for the vector paths.
  void CheckRun(unsigned int first) {
    Units text;
    for (unsigned int value = first; value < first + kRun && value < kEndOfCodePoints; ++value) {
      const Units units = Encoded(value);
      text.insert(text.end(), units.begin(), units.end());
    }
    for (const auto flags : kBothFlags)
      ASSERT_TRUE(checker_.Same(text, checker_.AmpleFor(text), flags));
  }

  Checker<Conversion> checker_;
};

using All = testing::Types<Utf8To16, Utf8To16Rev, Utf8To32, Utf16To8, Utf16RevTo8, Utf16To32,
                           Utf32To8, Utf32To16>;
TYPED_TEST_SUITE(UnicodeForms_CodePoints, All, ConversionName);

TYPED_TEST(UnicodeForms_CodePoints, EveryCodePointConvertsAsInTheReference) {
  for (unsigned int value = 0; value < kEndOfCodePoints; value += kStep) {
    this->CheckAlone(value);
    if (this->HasFatalFailure()) return;
  }
  for (unsigned int first = 0; first < kEndOfCodePoints; first += kRun) {
    this->CheckRun(first);
    if (this->HasFatalFailure()) return;
  }
}

TYPED_TEST(UnicodeForms_CodePoints, EveryBorderConvertsAsInTheReference) {
  for (const unsigned int border : {0x0u, 0x80u, 0x800u, 0xD800u, 0xDC00u, 0xE000u, 0xFFFDu,
                                    0x10000u, 0x20000u, 0x100000u, 0x10FFFFu}) {
    for (unsigned int value = border < 8 ? 0 : border - 8; value < border + 8; ++value) {
      if (value >= kEndOfCodePoints) break;
      this->CheckAlone(value);
      this->CheckRun(value);
      if (this->HasFatalFailure()) return;
    }
  }
}

template <class Conversion>
class UnicodeForms_BeyondTheLast : public UnicodeForms_CodePoints<Conversion> {};
TYPED_TEST_SUITE(UnicodeForms_BeyondTheLast, FromUtf32, ConversionName);

TYPED_TEST(UnicodeForms_BeyondTheLast, ValuesAboveTheLastCodePointFollowTheReference) {
  for (const unsigned int value : {0x110000u, 0x110001u, 0x1FFFFFu, 0x200000u, 0x10041u << 8,
                                   0x7FFFFFFFu, 0x80000000u, 0x80000041u, 0xFFFF0041u, 0xFFFFFFFFu})
    this->CheckAlone(value);
}

TYPED_TEST(UnicodeForms_BeyondTheLast, ANotedFailureIsReportedUnlessALaterStopReplacesIt) {
  for (const auto flags : kBothFlags) {
    for (std::size_t capacity = 0; capacity < 12; ++capacity) {
      EXPECT_TRUE(this->checker_.Same({0x110000, 0x41, 0x110000, 0x42}, capacity, flags));
      EXPECT_TRUE(this->checker_.Same({0x110000, 0x41, 0xD800, 0x42}, capacity, flags));
      EXPECT_TRUE(this->checker_.Same({0x41, 0x110000}, capacity, flags));
    }
  }
}

}  // namespace
}  // namespace encoding_test
