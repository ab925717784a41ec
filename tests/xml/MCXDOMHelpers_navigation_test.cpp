#include <gtest/gtest.h>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "xml/TestDocument.h"

namespace {

using MCXPrsUtil::AsElement;
using MCXPrsUtil::GetAttribute;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetFirstChildExtension;
using MCXPrsUtil::GetNextSiblingElmt;
using MCXPrsUtil::GetNextSiblingExtension;
using xml_test::Tag;
using xml_test::TestDocument;
using xml_test::Utf8;
using Table = std::pair<unsigned int, const char*>;

TEST(MCXDOMHelpersNavigation, AsElementTakesOnlyMatchingElements) {
  TestDocument doc("<a>text<!-- c --></a>");
  EXPECT_EQ(AsElement(doc.Root(), "a"), &doc.Root());
  EXPECT_EQ(AsElement(doc.Root(), nullptr), &doc.Root());
  EXPECT_EQ(AsElement(doc.Root(), "b"), nullptr);
  EXPECT_EQ(AsElement(doc.Get(), nullptr), nullptr);
  EXPECT_EQ(AsElement(*doc.Root().getFirstChild(), nullptr), nullptr);
  EXPECT_EQ(AsElement(*doc.Root().getLastChild(), nullptr), nullptr);
}

TEST(MCXDOMHelpersNavigation, FirstChildSkipsOtherNodesAndNames) {
  TestDocument doc("<r>text<!-- c --><?p i?><![CDATA[x]]><a n='1'/><b/><a n='2'/></r>");
  EXPECT_EQ(Tag(GetFirstChildElmt(doc.Root(), nullptr)), "a");
  EXPECT_EQ(Tag(GetFirstChildElmt(doc.Root(), "b")), "b");
  EXPECT_EQ(Tag(GetFirstChildElmt(doc.Root(), "c")), "(none)");
  EXPECT_EQ(Utf8(GetAttribute(*GetFirstChildElmt(doc.Root(), "a"), "n")), "1");
}

TEST(MCXDOMHelpersNavigation, FirstChildMayBeTheVeryFirstNode) {
  TestDocument doc("<r><a/></r>");
  EXPECT_EQ(Tag(GetFirstChildElmt(doc.Root(), "a")), "a");
}

TEST(MCXDOMHelpersNavigation, FirstChildOfNodesWithoutElements) {
  TestDocument doc("<r><a/>text</r>");
  EXPECT_EQ(GetFirstChildElmt(*doc.Root().getFirstChild(), nullptr), nullptr);
  EXPECT_EQ(GetFirstChildElmt(*doc.Root().getLastChild(), nullptr), nullptr);
  EXPECT_EQ(GetFirstChildElmt(doc.Get(), nullptr), &doc.Root());
}

TEST(MCXDOMHelpersNavigation, GrandchildrenAreNoChildren) {
  TestDocument doc("<r><a><b/></a></r>");
  EXPECT_EQ(GetFirstChildElmt(doc.Root(), "b"), nullptr);
}

TEST(MCXDOMHelpersNavigation, NextSiblingSkipsOtherNodesAndNames) {
  TestDocument doc("<r><a/>text<b/><!-- c --><a n='2'/></r>");
  const xercesc::DOMElement* first = GetFirstChildElmt(doc.Root(), "a");
  EXPECT_EQ(Tag(GetNextSiblingElmt(*first, nullptr)), "b");
  EXPECT_EQ(Utf8(GetAttribute(*GetNextSiblingElmt(*first, "a"), "n")), "2");
  EXPECT_EQ(GetNextSiblingElmt(*first, "c"), nullptr);
  EXPECT_EQ(Tag(GetNextSiblingElmt(*first->getNextSibling(), "b")), "b") << "from a text node";
  EXPECT_EQ(GetNextSiblingElmt(*doc.Root().getLastChild(), nullptr), nullptr);
  EXPECT_EQ(GetNextSiblingElmt(doc.Root(), nullptr), nullptr);
}

TEST(MCXDOMHelpersNavigation, TableOrderDecidesNotDocumentOrder) {
  TestDocument doc("<r><b/><a/></r>");
  const Table table[] = {{10, "none"}, {20, "a"}, {30, "b"}, {0, nullptr}};
  unsigned long index = 99;
  EXPECT_EQ(Tag(GetFirstChildElmt(doc.Root(), table, index)), "a");
  EXPECT_EQ(index, 1u) << "the position, not the code";
  EXPECT_EQ(Tag(GetFirstChildElmt(doc.Root(), table + 1, index)), "a");
  EXPECT_EQ(index, 0u);
  EXPECT_EQ(Tag(GetFirstChildElmt(doc.Root(), table + 2, index)), "b");
  EXPECT_EQ(index, 0u);
}

TEST(MCXDOMHelpersNavigation, TableWithoutMatchSetsTheIndexToZero) {
  TestDocument doc("<r><b/></r>");
  const Table table[] = {{1, "x"}, {2, "y"}, {0, nullptr}};
  unsigned long index = 99;
  EXPECT_EQ(GetFirstChildElmt(doc.Root(), table, index), nullptr);
  EXPECT_EQ(index, 0u);
  index = 99;
  EXPECT_EQ(GetFirstChildElmt(doc.Root(), table + 2, index), nullptr) << "an empty table";
  EXPECT_EQ(index, 0u);
}

constexpr char kExtensions[] =
    "<r><x/><Extension extender='other' name='a' n='0'/><Extension name='a' n='1'/>"
    "<Extension extender='TULK' n='2'/>text<Extension extender='TULK' name='a' n='3'/>"
    "<extension extender='TULK' name='b' n='4'/><Extension extender='tulk' name='b' n='5'/>"
    "<Extension extender='TULK' name='b' n='6'/><Extension extender='TULK' name='' n='7'/></r>";

std::string Number(const xercesc::DOMElement* e) {
  return e ? Utf8(GetAttribute(*e, "n")) : std::string("(none)");
}

TEST(MCXDOMHelpersNavigation, FirstChildExtensionIsTheVendorsOwn) {
  TestDocument doc(kExtensions);
  EXPECT_EQ(Number(GetFirstChildExtension(doc.Root(), nullptr)), "2");
  EXPECT_EQ(Number(GetFirstChildExtension(doc.Root(), "a")), "3");
  EXPECT_EQ(Number(GetFirstChildExtension(doc.Root(), "b")), "6");
  EXPECT_EQ(Number(GetFirstChildExtension(doc.Root(), "")), "7") << "an absent name is not empty";
  EXPECT_EQ(Number(GetFirstChildExtension(doc.Root(), "c")), "(none)");
  EXPECT_EQ(Number(GetFirstChildExtension(*doc.Root().getFirstChild(), nullptr)), "(none)");
}

TEST(MCXDOMHelpersNavigation, NextSiblingExtensionSkipsOthers) {
  TestDocument doc(kExtensions);
  std::string all;
  for (auto* e = GetFirstChildExtension(doc.Root(), nullptr); e;
       e = GetNextSiblingExtension(*e, nullptr)) {
    all += Number(e);
  }
  EXPECT_EQ(all, "2367");
  EXPECT_EQ(Number(GetNextSiblingExtension(*doc.Root().getFirstChild(), "b")), "6");
  EXPECT_EQ(Number(GetNextSiblingExtension(*doc.Root().getFirstChild(), "c")), "(none)");
}

}  // namespace
