// Numbers under a locale with a decimal comma.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "support/MadeLocales.h"
#include "xml/TestDocument.h"

namespace {

using MCXPrsUtil::AssembleDoublesList;
using MCXPrsUtil::GetAttribute;
using MCXPrsUtil::GetDoubleAttribute;
using MCXPrsUtil::SetAttribute;
using xml_test::TestDocument;

class MCXDOMHelpersLocale : public testing::Test {
 protected:
  void SetUp() override {
    if (!locales_.Make("comma", "ANSI_X3.4-1968")) GTEST_SKIP() << "no localedef";
    ASSERT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr);
    ASSERT_EQ(std::strtod("3,5", nullptr), 3.5) << "the locale has no decimal comma";
  }

 private:
  test_support::MadeLocales locales_;
};

TEST_F(MCXDOMHelpersLocale, NumbersReadThePoint) {
  // The plain form, and forms that go the long way round.
  TestDocument doc(
      "<a plain='3.5' blank=' 3.5 ' "
      "long='3.5000000000000000000000000000000000000000000000000000000000000000'/>");
  for (const char* name : {"plain", "blank", "long"}) {
    double value = 0;
    EXPECT_EQ(GetDoubleAttribute(doc.Root(), name, value), 0) << name;
    EXPECT_EQ(value, 3.5) << name;
  }
}

TEST_F(MCXDOMHelpersLocale, NumbersRefuseTheComma) {
  TestDocument doc("<a n='3,5'>1,5</a>");
  double value = 7;
  EXPECT_EQ(GetDoubleAttribute(doc.Root(), "n", value), 1);
  EXPECT_EQ(value, 7);
  std::vector<double> values;
  EXPECT_FALSE(AssembleDoublesList(doc.Root(), values));
}

TEST_F(MCXDOMHelpersLocale, NumbersAreWrittenWithThePoint) {
  TestDocument doc("<a/>");
  ASSERT_TRUE(SetAttribute(doc.Root(), "n", 1234567.5));
  EXPECT_EQ(xml_test::Utf8(GetAttribute(doc.Root(), "n")), "1234567.5");
}

}  // namespace
