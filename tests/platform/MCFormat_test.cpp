#include "mccommon/MCFormat.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <string>

#include "mccommon/MCMissingValue.h"
#include "support/MadeLocales.h"

namespace {

using MCXML_NAMESPACE::Format;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string Text(double value) { return Format(value, false, nullptr); }

std::uint64_t BitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

double FromBits(std::uint64_t bits) {
  double value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

bool ReadsBack(const std::string& text, double value) {
  double read = 0;
  const char* end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, read);
  return result.ec == std::errc() && result.ptr == end && BitsOf(read) == BitsOf(value);
}

// The plain search: more and more digits, until the text reads back.
int DigitsNeeded(double value) {
  char text[64];
  for (int digits = 1; digits < 17; ++digits) {
    std::snprintf(text, sizeof text, "%.*e", digits - 1, value);
    if (std::strtod(text, nullptr) == value) return digits;
  }
  return 17;
}

// Significant digits: without sign, point, exponent, and the zeros on either side.
int DigitsOf(const std::string& text) {
  std::string digits;
  for (const char c : text.substr(0, text.find('e'))) {
    if (c >= '0' && c <= '9') digits += c;
  }
  const std::size_t first = digits.find_first_not_of('0');
  if (first == std::string::npos) return 1;
  return static_cast<int>(digits.find_last_not_of('0') - first) + 1;
}

TEST(Format, WritesTheShortestText) {
  const struct {
    double value;
    const char* text;
  } rows[] = {
      {0, "0"},
      {-0.0, "-0"},
      {5, "5"},
      {-3, "-3"},
      {100000, "100000"},
      {1e14, "100000000000000"},
      {-1e14, "-100000000000000"},
      {999999999999999, "999999999999999"},
      {-999999999999999, "-999999999999999"},
      {1e15, "1e+15"},
      {1234567890123456, "1234567890123456"},
      {0.5, "0.5"},
      {0.1, "0.1"},
      {-2.25, "-2.25"},
      {3.14159, "3.14159"},
      {1.0 / 3, "0.3333333333333333"},
      {0.1 + 0.2, "0.30000000000000004"},
      {0.001, "0.001"},
      {1e-7, "1e-07"},
      {1.5e300, "1.5e+300"},
      {DBL_MAX, "1.7976931348623157e+308"},
      {-DBL_MAX, "-1.7976931348623157e+308"},
      {DBL_MIN, "2.2250738585072014e-308"},
      {std::numeric_limits<double>::denorm_min(), "5e-324"},
      {999999999999999.5, "999999999999999.5"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Text(row.value), row.text);
    EXPECT_TRUE(ReadsBack(Text(row.value), row.value)) << row.text;
  }
}

TEST(Format, WritesWhatIsNoNumberAsXMLSchemaDoes) {
  EXPECT_EQ(Text(kNaN), "NaN");
  EXPECT_EQ(Text(-kNaN), "NaN");
  EXPECT_EQ(Text(kInfinity), "INF");
  EXPECT_EQ(Text(-kInfinity), "-INF");
  EXPECT_EQ(Format(kNaN, true, "missing"), "NaN");
  EXPECT_EQ(Format(-kInfinity, true, "missing"), "-INF");
}

TEST(Format, WritesTheMissingTextForTheMissingValueOnly) {
  EXPECT_EQ(Format(MCMV::gMissingValue, false, "."), ".");
  EXPECT_EQ(Format(MCMV::gMissingValue, true, "."), ".");
  EXPECT_EQ(Format(MCMV::gMissingValue, false, ""), "");
  EXPECT_EQ(Format(7, false, "."), "7");
  EXPECT_EQ(Format(-DBL_MAX, false, "."), "-1.7976931348623157e+308");
}

TEST(Format, WritesTheMissingValueAsItsNumberWithoutAMissingText) {
  EXPECT_TRUE(ReadsBack(Text(MCMV::gMissingValue), MCMV::gMissingValue));
}

TEST(Format, FixedNeverWritesAnExponent) {
  EXPECT_EQ(Format(1e-7, true, nullptr), "0.0000001");
  EXPECT_EQ(Format(1e20, true, nullptr), "100000000000000000000");
  EXPECT_EQ(Format(5, true, nullptr), "5");
  EXPECT_EQ(Format(-0.0, true, nullptr), "-0");
  EXPECT_EQ(Format(-0.25, true, nullptr), "-0.25");
}

TEST(Format, FixedHasRoomForTheLongestTexts) {
  const double values[] = {DBL_MAX,
                           -DBL_MAX,
                           -DBL_MIN,
                           -2.2250738585072011e-308,
                           -std::numeric_limits<double>::denorm_min(),
                           -4.4501477170144023e-308,
                           MCMV::gMissingValue};
  for (const double value : values) {
    const std::string text = Format(value, true, nullptr);
    EXPECT_EQ(text.find_first_not_of("-.0123456789"), std::string::npos) << text;
    EXPECT_TRUE(ReadsBack(text, value)) << text;
  }
}

TEST(Format, EveryDoubleReadsBack) {
  std::mt19937_64 random(20240229);
  for (int i = 0; i < 1000000; ++i) {
    const double value = FromBits(random());
    if (!std::isfinite(value)) continue;
    const std::string text = Text(value);
    ASSERT_TRUE(ReadsBack(text, value)) << text;
  }
}

TEST(Format, EveryDoubleOfEverydaySizeReadsBack) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> everyday(-1e6, 1e6);
  for (int i = 0; i < 500000; ++i) {
    const double value = everyday(random);
    const std::string text = Text(value);
    ASSERT_TRUE(ReadsBack(text, value)) << text;
    const double cents = std::round(value * 100) / 100;
    ASSERT_TRUE(ReadsBack(Text(cents), cents)) << Text(cents);
  }
}

TEST(Format, FixedReadsBack) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 50000; ++i) {
    const double value = FromBits(random());
    if (!std::isfinite(value)) continue;
    const std::string text = Format(value, true, nullptr);
    ASSERT_TRUE(ReadsBack(text, value)) << text;
    ASSERT_EQ(text.find('e'), std::string::npos) << text;
  }
}

TEST(Format, NoDigitIsWasted) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> everyday(-1e4, 1e4);
  for (int i = 0; i < 10000; ++i) {
    const double value = everyday(random);
    ASSERT_EQ(DigitsOf(Text(value)), DigitsNeeded(value)) << Text(value);
    const double cents = std::round(value * 100) / 100;
    ASSERT_EQ(DigitsOf(Text(cents)), DigitsNeeded(cents)) << Text(cents);
  }
}

TEST(Format, WholeNumbersBelowTheLimitAreDigitsOnly) {
  std::mt19937_64 random(5);
  std::uniform_int_distribution<long long> whole(-999999999999999, 999999999999999);
  for (int i = 0; i < 200000; ++i) {
    const long long value = whole(random) >> (i % 50);
    ASSERT_EQ(Text(static_cast<double>(value)), std::to_string(value));
  }
}

// Restores the process's locale, in the C library and in the streams.
class LocaleKeeper {
 public:
  LocaleKeeper() : c_(std::setlocale(LC_ALL, nullptr)) {}
  ~LocaleKeeper() {
    std::locale::global(cpp_);
    std::setlocale(LC_ALL, c_.c_str());
  }
  LocaleKeeper(const LocaleKeeper&) = delete;
  LocaleKeeper& operator=(const LocaleKeeper&) = delete;

 private:
  std::string c_;
  std::locale cpp_;
};

struct CommaNumbers : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Format, IgnoresTheLocaleOfTheStreams) {
  const LocaleKeeper keeper;
  std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
  EXPECT_EQ(Text(1234567.5), "1234567.5");
  EXPECT_EQ(Text(1234567), "1234567");
}

TEST(Format, IgnoresTheLocaleOfTheCLibrary) {
  const test_support::MadeLocales locales;
  if (!locales.Make("comma", "ANSI_X3.4-1968")) GTEST_SKIP() << "no localedef";
  ASSERT_NE(std::setlocale(LC_ALL, "comma"), nullptr);
  ASSERT_EQ(std::strtod("3,5", nullptr), 3.5) << "the locale has no decimal comma";
  EXPECT_EQ(Text(1234567.5), "1234567.5");
}

}  // namespace
