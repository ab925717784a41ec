#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <xercesc/util/XMLStringTokenizer.hpp>

#include "mccommon/MCMissingValue.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "xml/TestDocument.h"
#include "xml/XercesReference.h"

namespace {

using MCXPrsUtil::AssembleDoublesList;
using MCXPrsUtil::GetDoubleAttribute;
using MCXPrsUtil::GetIntAttribute;
using MCXPrsUtil::SetAttribute;
using xml_test::kRounds;
using xml_test::NumberKind;
using xml_test::ReferenceDouble;
using xml_test::ReferenceIsInteger;
using xml_test::TestDocument;

const double kMissing = MCMV::gMissingValue;
constexpr double kUntouched = 99.5;

std::uint64_t Bits(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

struct DoubleCase {
  const char* rule;
  const char* text;
  int result;
  double value;
};

TEST(MCXDOMHelpersNumbers, GetDoubleAttribute) {
  const DoubleCase cases[] = {
      {"whole", "12", 0, 12},
      {"fraction", "-0.25", 0, -0.25},
      {"plus sign", "+1.5", 0, 1.5},
      {"exponent", "1e3", 0, 1000},
      {"capital exponent with sign", "25E-1", 0, 2.5},
      {"no digits after the point", "1.", 0, 1},
      {"no digits before the point", ".5", 0, 0.5},
      {"zero", "0", 0, 0.0},
      {"negative zero keeps its sign", "-0", 0, -0.0},
      {"white space around", " \t\r\n7 ", 0, 7},
      {"longer than any buffer",
       "0.1000000000000000055511151231257827021181583404541015625000000000", 0, 0.1},
      {"largest", "1.7976931348623157e308", 0, 1.7976931348623157e308},
      {"smallest normal", "2.2250738585072014e-308", 0, 2.2250738585072014e-308},
      {"below the smallest normal reads as zero", "2.2250738585072009e-308", 0, 0.0},
      {"far below reads as zero", "1e-400", 0, 0.0},
      {"a sign and a point read as zero", "+.", 0, 0.0},
      {"NaN reads as missing", "NaN", 0, kMissing},
      {"infinity is refused", "INF", 1, kUntouched},
      {"negative infinity is refused", "-INF", 1, kUntouched},
      {"beyond the largest is refused", "1e309", 1, kUntouched},
      {"beyond the largest negative is refused", "-1e309", 1, kUntouched},
      {"empty", "", 1, kUntouched},
      {"blank", "  ", 1, kUntouched},
      {"letters", "abc", 1, kUntouched},
      {"number and letters", "1a", 1, kUntouched},
      {"two numbers", "1 2", 1, kUntouched},
      {"decimal comma", "1,5", 1, kUntouched},
      {"hexadecimal", "0x10", 1, kUntouched},
      {"other spellings of the specials: nan", "nan", 1, kUntouched},
      {"other spellings of the specials: inf", "inf", 1, kUntouched},
      {"other spellings of the specials: +INF", "+INF", 1, kUntouched},
      {"two signs", "+-1", 1, kUntouched},
      {"signs alone", "+", 1, kUntouched},
      {"exponent without digits", "1e", 1, kUntouched},
      {"exponent without number", "e5", 1, kUntouched},
      {"point alone", ".", 1, kUntouched},
      {"digits of another script", "\xD9\xA1", 1, kUntouched},
  };
  TestDocument doc("<a/>");
  for (const DoubleCase& c : cases) {
    SCOPED_TRACE(c.rule);
    ASSERT_TRUE(SetAttribute(doc.Root(), "n", c.text));
    double value = kUntouched;
    EXPECT_EQ(GetDoubleAttribute(doc.Root(), "n", value), c.result);
    EXPECT_EQ(Bits(value), Bits(c.value)) << value;
  }
  double value = kUntouched;
  EXPECT_EQ(GetDoubleAttribute(doc.Root(), "absent", value), -1);
  EXPECT_EQ(value, kUntouched);
}

// Texts that are numbers, nearly numbers, or nothing.
class NumberTexts {
 public:
  explicit NumberTexts(unsigned int seed) : random_(seed) {}

  std::string Next() {
    const auto kind = random_() % 16;
    if (kind == 0) return Soup();
    return kind < 6 ? FromBits() : Plain();
  }

 private:
  std::string Digits(unsigned int most) {
    std::string digits;
    for (auto n = random_() % (most + 1); n > 0; --n) {
      digits += static_cast<char>('0' + random_() % 10);
    }
    return digits;
  }

  std::string Plain() {
    static const char* const kSigns[] = {"", "", "-", "+"};
    std::string text = kSigns[random_() % 4] + Digits(random_() % 16 == 0 ? 40 : 8);
    if (random_() % 2) text += '.' + Digits(random_() % 16 == 0 ? 40 : 8);
    if (random_() % 4 == 0)
      text += (random_() % 2 ? "e" : "E") + (kSigns[random_() % 4] + Digits(3));
    return text;
  }

  // Every double, the very small and large ones included, with 17 digits and with fewer.
  std::string FromBits() {
    const std::uint64_t bits = std::uint64_t{random_()} << 32 | random_();
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    if (random_() % 4 == 0)
      number = std::ldexp(1.0 + std::fmod(number, 1.0), -1023 + int(random_() % 4));
    char text[64];
    std::snprintf(text, sizeof text, "%.*g", int(14 + random_() % 6), number);
    return text;
  }

  std::string Soup() {
    static const char kChars[] = "0123456789..--++eE  \tINFNa";
    std::string text;
    for (auto n = random_() % 7; n > 0; --n) text += kChars[random_() % (sizeof kChars - 1)];
    return text;
  }

  std::mt19937 random_;
};

// Compares one text with the XML library's own reading; counts the numbers among them.
void ExpectSameAsXerces(xercesc::DOMElement& e, const std::string& text, int& numbers) {
  ASSERT_TRUE(SetAttribute(e, "n", text.c_str()));
  double expected = 0;
  const NumberKind kind = ReferenceDouble(MCXPrsUtil::GetAttribute(e, "n"), expected);
  double value = kUntouched;
  const int result = GetDoubleAttribute(e, "n", value);
  ASSERT_EQ(result, kind == NumberKind::kRefused ? 1 : 0) << text;
  if (kind == NumberKind::kRefused) expected = kUntouched;
  if (kind == NumberKind::kMissing) expected = kMissing;
  ASSERT_EQ(Bits(value), Bits(expected)) << text << " gave " << value;
  numbers += kind == NumberKind::kNumber;
}

class MCXDOMHelpersRandomNumbers : public testing::TestWithParam<unsigned int> {};

TEST_P(MCXDOMHelpersRandomNumbers, ReadAsXMLDoubleReadsThem) {
  TestDocument doc("<a/>");
  NumberTexts texts(GetParam());
  int numbers = 0;
  for (int i = 0; i < kRounds / 2; ++i) {
    ASSERT_NO_FATAL_FAILURE(ExpectSameAsXerces(doc.Root(), texts.Next(), numbers));
  }
  EXPECT_GT(numbers, kRounds / 4);
  EXPECT_LT(numbers, kRounds / 2 - kRounds / 40);
}

INSTANTIATE_TEST_SUITE_P(Seeds, MCXDOMHelpersRandomNumbers, testing::Values(1, 2, 3, 4));

// The ends of the range, where a rounding decides.
TEST(MCXDOMHelpersNumbers, EndsOfTheRangeReadAsXMLDoubleReadsThem) {
  TestDocument doc("<a/>");
  int numbers = 0;
  for (const char* start : {"2.22507385850720", "1.79769313486231", "4.94065645841246"}) {
    for (const char* exponent : {"e-308", "e-307", "e-309", "e308", "e307", "e-324", "e-323"}) {
      for (int digits = 0; digits < 1'000; digits += 7) {
        const std::string tail = std::to_string(1'000 + digits).substr(1);
        ASSERT_NO_FATAL_FAILURE(ExpectSameAsXerces(doc.Root(), start + tail + exponent, numbers));
        ASSERT_NO_FATAL_FAILURE(
            ExpectSameAsXerces(doc.Root(), "-" + (start + tail) + exponent, numbers));
      }
    }
  }
  EXPECT_GT(numbers, 100);
}

struct IntCase {
  const char* text;
  int sign;
  int result;
  int value;
};

TEST(MCXDOMHelpersNumbers, GetIntAttribute) {
  constexpr int kNone = 99;
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  const IntCase cases[] = {
      {"0", 0, 0, 0},
      {"-3", 0, 1, -3},  // stored all the same
      {"0", 1, 1, 0},
      {"-1", 1, 1, -1},
      {"1", 1, 0, 1},
      {"-3", -1, 0, -3},
      {"-3", -100, 0, -3},
      {"5", 100, 0, 5},
      {"+5", 0, 0, 5},
      {"-0", 0, 0, 0},
      {"007", 0, 0, 7},
      {"-00000000000000000000000000000000000000000000000000000000000000000000008", -1, 0, -8},
      {" \t\r\n42 ", 0, 0, 42},
      {"2147483647", 0, 0, kMost},
      {"2147483648", 0, 1, kNone},
      {"-2147483648", -1, 0, kLeast},
      {"-2147483649", -1, 1, kNone},
      {"3000000000", 0, 1, kNone},
      {"4294967296", -1, 1, kNone},
      {"4294967297", -1, 1, kNone},  // wraps to 1
      {"99999999999999999999999999", -1, 1, kNone},
      {"-99999999999999999999999999", -1, 1, kNone},
      {"2.0", -1, 1, kNone},
      {"2.", -1, 1, kNone},
      {"1e3", -1, 1, kNone},
      {"", -1, 1, kNone},
      {"  ", -1, 1, kNone},
      {"-", -1, 1, kNone},
      {"+", -1, 1, kNone},
      {"+-5", -1, 1, kNone},
      {"--5", -1, 1, kNone},
      {"+ 5", -1, 1, kNone},
      {"5 5", -1, 1, kNone},
      {"5a", -1, 1, kNone},
      {"0x5", -1, 1, kNone},
      {"\xD9\xA1", -1, 1, kNone},
  };
  TestDocument doc("<a/>");
  for (const IntCase& c : cases) {
    SCOPED_TRACE(std::string(c.text) + " with sign " + std::to_string(c.sign));
    ASSERT_TRUE(SetAttribute(doc.Root(), "n", c.text));
    int value = kNone;
    EXPECT_EQ(GetIntAttribute(doc.Root(), "n", c.sign, value), c.result);
    EXPECT_EQ(value, c.value);
  }
  int value = kNone;
  EXPECT_EQ(GetIntAttribute(doc.Root(), "absent", -1, value), -1);
  EXPECT_EQ(value, kNone);
}

TEST(MCXDOMHelpersNumbers, RandomTextsAreIntegersIfXMLBigIntegerSaysSo) {
  TestDocument doc("<a/>");
  std::mt19937 random(5);
  static const char kChars[] = "0123456789012345678901234567890123456789-+ \t.e";
  int integers = 0;
  for (int i = 0; i < kRounds / 4; ++i) {
    std::string text;
    for (auto n = random() % 12; n > 0; --n) text += kChars[random() % (sizeof kChars - 1)];
    ASSERT_TRUE(SetAttribute(doc.Root(), "n", text.c_str()));
    bool expected = ReferenceIsInteger(MCXPrsUtil::GetAttribute(doc.Root(), "n"));
    // At most eleven digits: exact in 64 bits.
    const long long number = expected ? std::stoll(text) : 0;
    expected = expected && number >= std::numeric_limits<int>::min() &&
               number <= std::numeric_limits<int>::max();
    int value = 99;
    ASSERT_EQ(GetIntAttribute(doc.Root(), "n", -1, value), expected ? 0 : 1) << text;
    ASSERT_EQ(value, expected ? static_cast<int>(number) : 99) << text;
    integers += expected;
  }
  EXPECT_GT(integers, kRounds / 40);
}

struct ListCase {
  const char* rule;
  const char* xml;
  bool result;
  std::vector<double> values;
};

TEST(MCXDOMHelpersNumbers, AssembleDoublesList) {
  const std::vector<double> before = {7, 8};
  const ListCase cases[] = {
      {"one and two blanks", "<a>1 2  3</a>", true, {1, 2, 3}},
      {"all kinds of white space around", "<a>\t1\n2&#13; 3 \n</a>", true, {1, 2, 3}},
      {"no children", "<a/>", true, {}},
      {"white space only", "<a> \n </a>", true, {}},
      {"NaN is missing", "<a>1 NaN -.5e1</a>", true, {1, kMissing, -5}},
      {"a letter clears", "<a>1 2 x 3</a>", false, {}},
      {"an infinity clears", "<a>1 INF</a>", false, {}},
      {"a comma clears", "<a>1, 2</a>", false, {}},
      {"another white space is no separator",
       "<a>1\xC2\xA0"
       "2</a>",
       false,
       {}},
      {"a comment and text are left alone", "<a><!-- c -->1</a>", false, before},
      {"an element is left alone", "<a><b/></a>", false, before},
      {"a comment is left alone", "<a><!-- 1 --></a>", false, before},
      {"a CDATA section is left alone", "<a><![CDATA[1 2]]></a>", false, before},
      {"text and a CDATA section are left alone", "<a>1<![CDATA[2]]></a>", false, before},
      {"a processing instruction is left alone", "<a><?p i?></a>", false, before},
  };
  for (const ListCase& c : cases) {
    SCOPED_TRACE(c.rule);
    TestDocument doc(c.xml);
    std::vector<double> values = before;
    EXPECT_EQ(AssembleDoublesList(doc.Root(), values), c.result);
    EXPECT_EQ(values, c.values);
  }
}

TEST(MCXDOMHelpersNumbers, EntityReferenceInAListIsLeftAlone) {
  TestDocument doc("<!DOCTYPE a [<!ENTITY e '1 2'>]><a>&e;</a>");
  std::vector<double> values = {7};
  EXPECT_FALSE(AssembleDoublesList(doc.Root(), values));
  EXPECT_EQ(values, std::vector<double>{7});
}

// The definition: the XML library's tokenizer and its numbers.
bool ListByXerces(const XMLCh* text, std::vector<double>& values) {
  xercesc::XMLStringTokenizer tokens(text);
  values.clear();
  while (tokens.hasMoreTokens()) {
    double value = 0;
    const NumberKind kind = ReferenceDouble(tokens.nextToken(), value);
    if (kind == NumberKind::kRefused) {
      values.clear();
      return false;
    }
    values.push_back(kind == NumberKind::kMissing ? kMissing : value);
  }
  return true;
}

TEST(MCXDOMHelpersNumbers, RandomListsReadAsXercesReadsThem) {
  TestDocument doc("<a>x</a>");
  xercesc::DOMNode* text = doc.Root().getFirstChild();
  std::mt19937 random(6);
  static const char* const kParts[] = {"1", "2.5", "-3e2", "NaN",       "0",  "1e-400",
                                       " ", "  ",  "\t",   "\n",        "\r", " ",
                                       " ", "x",   "4",    "1234567.25"};
  int lists = 0;
  for (int i = 0; i < kRounds / 40; ++i) {
    std::string list;
    for (auto n = random() % 12; n > 0; --n) list += kParts[random() % std::size(kParts)];
    text->setNodeValue(MCXPrsUtil::ToUTF16(list.c_str()).data());
    std::vector<double> expected;
    std::vector<double> values = {7};
    const bool result = ListByXerces(text->getNodeValue(), expected);
    ASSERT_EQ(AssembleDoublesList(doc.Root(), values), result) << list;
    ASSERT_EQ(values, expected) << list;
    lists += result;
  }
  EXPECT_GT(lists, kRounds / 400);
}

}  // namespace
