#include <gtest/gtest.h>

#include <cfloat>
#include <limits>

#include "mccommon/MCFormat.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "xml/TestDocument.h"

namespace {

using MCXPrsUtil::GetAttribute;
using MCXPrsUtil::GetDoubleAttribute;
using MCXPrsUtil::SetAttribute;
using xml_test::TestDocument;
using xml_test::Utf8;

TEST(MCXDOMHelpersAttributes, AbsentAndEmptyAreDistinct) {
  TestDocument doc("<a empty='' x='1'/>");
  const XMLCh* empty = GetAttribute(doc.Root(), "empty");
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(*empty, 0);
  EXPECT_EQ(GetAttribute(doc.Root(), "missing"), nullptr);
  EXPECT_EQ(GetAttribute(doc.Root(), ""), nullptr);
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "x")), "1");
}

TEST(MCXDOMHelpersAttributes, NamesAreExact) {
  TestDocument doc("<a x='1' p:x='2' X='3' xmlns:p='urn:x' \xC3\xA9='4'/>");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "x")), "1");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "p:x")), "2");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "X")), "3");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "\xC3\xA9")), "4");
  EXPECT_EQ(GetAttribute(doc.Root(), "\xC3"), nullptr);
}

TEST(MCXDOMHelpersAttributes, LongNamesAreFound) {
  const std::string name(200, 'n');
  TestDocument doc("<a " + name + "='1'/>");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), name.c_str())), "1");
  EXPECT_EQ(GetAttribute(doc.Root(), name.substr(1).c_str()), nullptr);
}

TEST(MCXDOMHelpersAttributes, DefaultsAndEntitiesOfTheDtdCount) {
  TestDocument doc(
      "<!DOCTYPE a [<!ENTITY e 'x'><!ATTLIST a d CDATA 'given'>]><a n='1&e;2&#233;'/>");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "d")), "given");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "n")), "1x2\xC3\xA9");
}

TEST(MCXDOMHelpersAttributes, OtherNodesHaveNone) {
  TestDocument doc("<a x='1'>text</a>");
  const xercesc::DOMNode& element = doc.Root();
  EXPECT_EQ(Utf8(GetAttribute(element, "x")), "1");
  EXPECT_EQ(GetAttribute(element, "y"), nullptr);
  EXPECT_EQ(GetAttribute(*doc.Root().getFirstChild(), "x"), nullptr);
  EXPECT_EQ(GetAttribute(doc.Get(), "x"), nullptr);
}

TEST(MCXDOMHelpersAttributes, SetAddsAndReplaces) {
  TestDocument doc("<a x='1'/>");
  EXPECT_TRUE(SetAttribute(doc.Root(), "x", "2"));
  EXPECT_TRUE(SetAttribute(doc.Root(), "y", "\xE6\x97\xA5 <&\""));
  EXPECT_TRUE(SetAttribute(doc.Root(), "z", ""));
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "x")), "2");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "y")), "\xE6\x97\xA5 <&\"");
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "z")), "");
  EXPECT_EQ(doc.Root().getAttributes()->getLength(), 3u);
}

TEST(MCXDOMHelpersAttributes, SetMalformedValueSetsAnEmptyOne) {
  TestDocument doc("<a x='1'/>");
  EXPECT_TRUE(SetAttribute(doc.Root(), "x", "abc\xFF"));
  EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "x")), "");
}

TEST(MCXDOMHelpersAttributes, SetRefusesWhatIsNoName) {
  TestDocument doc("<a x='1'/>");
  for (const char* name : {"", "1a", "a b", "<", "a\xFF"}) {
    EXPECT_FALSE(SetAttribute(doc.Root(), name, "v")) << name;
    EXPECT_FALSE(SetAttribute(doc.Root(), name, 1.0)) << name;
  }
  EXPECT_EQ(doc.Root().getAttributes()->getLength(), 1u);
}

TEST(MCXDOMHelpersAttributes, SetRefusesAReadOnlyElement) {
  TestDocument doc("<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;</a>");
  // The parser keeps entity references by default; what is below one is read-only.
  xercesc::DOMNode* reference = doc.Root().getFirstChild();
  ASSERT_EQ(reference->getNodeType(), xercesc::DOMNode::ENTITY_REFERENCE_NODE);
  auto* inside = static_cast<xercesc::DOMElement*>(reference->getFirstChild());
  EXPECT_FALSE(SetAttribute(*inside, "x", "1"));
  EXPECT_EQ(GetAttribute(*inside, "x"), nullptr);
}

TEST(MCXDOMHelpersAttributes, NumbersAreWrittenByThePlatformAndReadBack) {
  TestDocument doc("<a/>");
  for (const double number : {0.0, -0.0, 5.0, 100'000.0, 0.1, -1.5e300, DBL_MAX, DBL_MIN, 1.0 / 3,
                              std::numeric_limits<double>::epsilon()}) {
    EXPECT_TRUE(SetAttribute(doc.Root(), "n", number));
    EXPECT_EQ(Utf8(GetAttribute(doc.Root(), "n")), MCXML_NAMESPACE::Format(number, false, nullptr));
    double back = 99;
    EXPECT_EQ(GetDoubleAttribute(doc.Root(), "n", back), 0);
    EXPECT_EQ(back, number);
  }
}

}  // namespace
