#include <gtest/gtest.h>

#include <random>
#include <xercesc/util/XMLString.hpp>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "xml/TestDocument.h"

namespace {

using MCXPrsUtil::FindXStrInList;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::TagNameEquals;
using MCXPrsUtil::ToUTF16;
using MCXPrsUtil::XStrEqualsUTF8Str;
using xml_test::kRounds;
using xml_test::TestDocument;

constexpr unsigned int kNotFound = 0xFFFFFFFF;

struct EqualsCase {
  const char* rule;
  const XMLCh* x;
  const char* s;
  bool equal;
};

TEST(MCXDOMHelpersComparison, XStrEqualsUTF8Str) {
  const EqualsCase cases[] = {
      {"same text", u"DataField", "DataField", true},
      {"case counts", u"DataField", "datafield", false},
      {"a beginning is not the whole", u"Data", "DataField", false},
      {"a beginning is not the whole, the other way round", u"DataField", "Data", false},
      {"null equals empty", nullptr, "", true},
      {"null differs from text", nullptr, "a", false},
      {"empty equals empty", u"", "", true},
      {"empty differs from text", u"", "a", false},
      {"text differs from empty", u"a", "", false},
      {"two bytes", u"\u00e9", "\xC3\xA9", true},
      {"three bytes after ASCII", u"a\u65e5", "a\xE6\x97\xA5", true},
      {"a surrogate pair", u"\U0001F600", "\xF0\x9F\x98\x80", true},
      {"composed differs from decomposed", u"\u00e9", "e\xCC\x81", false},
      {"a byte is no character", u"\u00c3", "\xC3", false},
      {"malformed counts as empty: text", u"abc", "abc\xFF", false},
      {"malformed counts as empty: null", nullptr, "\xFF", true},
      {"malformed counts as empty: empty", u"", "abc\xC3", true},
      {"malformed counts as empty: difference before the fault", u"x", "abc\xFF", false},
  };
  MCXMLReadWrite platform;
  for (const EqualsCase& c : cases) {
    EXPECT_EQ(XStrEqualsUTF8Str(c.x, c.s), c.equal) << c.rule;
  }
}

// The definition: convert, then compare.
bool EqualsByConversion(const XMLCh* x, const char* s) {
  return xercesc::XMLString::equals(x, ToUTF16(s).data());
}

TEST(MCXDOMHelpersComparison, EqualsConversionForRandomTexts) {
  MCXMLReadWrite platform;
  std::mt19937 random(3);
  const char bytes[] = {'a', 'b', 'a', 'b', '\xC3', '\xA9', '\xFF'};
  const XMLCh units[] = {'a', 'b', 'a', 'b', 0xE9, 0xC3};
  int equal = 0;
  for (int i = 0; i < kRounds / 4; ++i) {
    std::string s;
    std::basic_string<XMLCh> x;
    for (auto n = random() % 5; n > 0; --n) s += bytes[random() % std::size(bytes)];
    for (auto n = random() % 4; n > 0; --n) x += units[random() % std::size(units)];
    const XMLCh* text = x.empty() && i % 2 ? nullptr : x.c_str();
    ASSERT_EQ(XStrEqualsUTF8Str(text, s.c_str()), EqualsByConversion(text, s.c_str())) << s;
    equal += XStrEqualsUTF8Str(text, s.c_str());
  }
  EXPECT_GT(equal, kRounds / 400);
}

TEST(MCXDOMHelpersComparison, NamesLongerThanTheLocalBuffer) {
  MCXMLReadWrite platform;
  for (std::size_t length = 60; length < 70; ++length) {
    const std::string s(length, 'n');
    const std::basic_string<XMLCh> x(length, u'n');
    EXPECT_TRUE(XStrEqualsUTF8Str(x.c_str(), s.c_str()));
    EXPECT_FALSE(XStrEqualsUTF8Str(x.c_str(), (s + "n").c_str()));
    EXPECT_TRUE(XStrEqualsUTF8Str((x + u"\u00e9").c_str(), (s + "\xC3\xA9").c_str()));
  }
}

TEST(MCXDOMHelpersComparison, FindInAListOfNames) {
  MCXMLReadWrite platform;
  const std::vector<std::string> names = {"a", "b", "\xC3\xA9", "b", ""};
  EXPECT_EQ(FindXStrInList(u"a", names), 0u);
  EXPECT_EQ(FindXStrInList(u"b", names), 1u) << "the first of two";
  EXPECT_EQ(FindXStrInList(u"\u00e9", names), 2u);
  EXPECT_EQ(FindXStrInList(u"", names), 4u);
  EXPECT_EQ(FindXStrInList(nullptr, names), 4u);
  EXPECT_EQ(FindXStrInList(u"c", names), kNotFound);
  EXPECT_EQ(FindXStrInList(u"a", std::vector<std::string>()), kNotFound);
  EXPECT_EQ(FindXStrInList(nullptr, std::vector<std::string>()), kNotFound);
}

TEST(MCXDOMHelpersComparison, FindInATableGivesThePositionNotTheCode) {
  MCXMLReadWrite platform;
  const std::pair<unsigned int, const char*> table[] = {{7, "a"}, {7, "b"}, {5, "b"}, {9, nullptr}};
  EXPECT_EQ(FindXStrInList(u"a", table), 0u);
  EXPECT_EQ(FindXStrInList(u"b", table), 1u);
  EXPECT_EQ(FindXStrInList(u"c", table), kNotFound);
  EXPECT_EQ(FindXStrInList(nullptr, table), kNotFound);
  EXPECT_EQ(FindXStrInList(u"a", table + 3), kNotFound) << "an empty table";
}

TEST(MCXDOMHelpersComparison, TagNameIsTheQualifiedName) {
  TestDocument doc("<p:a xmlns:p='urn:x'/>");
  EXPECT_TRUE(TagNameEquals(doc.Root(), "p:a"));
  EXPECT_FALSE(TagNameEquals(doc.Root(), "a"));
  EXPECT_FALSE(TagNameEquals(doc.Root(), ""));
  EXPECT_FALSE(TagNameEquals(doc.Root(), "P:A"));
}

}  // namespace
