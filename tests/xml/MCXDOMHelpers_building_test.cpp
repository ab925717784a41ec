#include <gtest/gtest.h>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "xml/TestDocument.h"

namespace {

using MCXPrsUtil::CreateElement;
using MCXPrsUtil::CreateExtension;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetFirstChildExtension;
using MCXPrsUtil::GetNextSiblingElmt;
using MCXPrsUtil::InsertElement;
using MCXPrsUtil::ReplaceElement;
using xml_test::Tag;
using xml_test::TestDocument;
using xml_test::Utf8;

std::string ChildTags(const xercesc::DOMElement& parent) {
  std::string tags;
  for (auto* e = GetFirstChildElmt(parent, nullptr); e; e = GetNextSiblingElmt(*e, nullptr)) {
    tags += Tag(e);
  }
  return tags;
}

TEST(MCXDOMHelpersBuilding, CreatedElementStandsNowhere) {
  TestDocument doc("<a/>");
  xercesc::DOMElement* e = CreateElement(doc.Get(), "\xC3\xA9lement");
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(Tag(e), "\xC3\xA9lement");
  EXPECT_EQ(e->getParentNode(), nullptr);
  EXPECT_EQ(e->getOwnerDocument(), &doc.Get());
  EXPECT_FALSE(e->hasAttributes());
}

TEST(MCXDOMHelpersBuilding, CreateElementRefusesWhatIsNoName) {
  TestDocument doc("<a/>");
  for (const char* name : {"", "1a", "a b", "<", "a\xFF"}) {
    EXPECT_EQ(CreateElement(doc.Get(), name), nullptr) << name;
  }
}

TEST(MCXDOMHelpersBuilding, ExtensionCarriesVendorAndName) {
  TestDocument doc("<a/>");
  xercesc::DOMElement* e = CreateExtension(doc.Get(), "our\xC3\xA9");
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(Tag(e), "Extension");
  EXPECT_EQ(e->getParentNode(), nullptr);
  EXPECT_EQ(e->getAttributes()->getLength(), 2u);
  EXPECT_EQ(Utf8(e->getAttribute(u"extender")), "TULK");
  EXPECT_EQ(Utf8(e->getAttribute(u"name")), "our\xC3\xA9");
  ASSERT_TRUE(InsertElement(doc.Root(), e, nullptr));
  EXPECT_EQ(GetFirstChildExtension(doc.Root(), "our\xC3\xA9"), e);
}

TEST(MCXDOMHelpersBuilding, InsertPutsBeforeTheReferenceOrAtTheEnd) {
  TestDocument doc("<r><b/></r>");
  xercesc::DOMElement* b = GetFirstChildElmt(doc.Root(), "b");
  EXPECT_TRUE(InsertElement(doc.Root(), CreateElement(doc.Get(), "c"), nullptr));
  EXPECT_TRUE(InsertElement(doc.Root(), CreateElement(doc.Get(), "a"), b));
  EXPECT_EQ(ChildTags(doc.Root()), "abc");
  EXPECT_TRUE(InsertElement(doc.Root(), b, nullptr)) << "a child moves";
  EXPECT_EQ(ChildTags(doc.Root()), "acb");
}

TEST(MCXDOMHelpersBuilding, InsertRefusesWhatTheDocumentRefuses) {
  TestDocument doc("<r><a><b/></a></r>");
  TestDocument other("<o/>");
  xercesc::DOMElement* a = GetFirstChildElmt(doc.Root(), "a");
  xercesc::DOMElement* b = GetFirstChildElmt(*a, "b");
  EXPECT_FALSE(InsertElement(doc.Root(), CreateElement(other.Get(), "x"), nullptr))
      << "of another document";
  EXPECT_FALSE(InsertElement(*b, a, nullptr)) << "holds the parent";
  EXPECT_FALSE(InsertElement(doc.Root(), CreateElement(doc.Get(), "x"), b)) << "no child";
  EXPECT_FALSE(InsertElement(doc.Root(), nullptr, nullptr)) << "nothing to insert";
  EXPECT_FALSE(InsertElement(*a, a, nullptr)) << "an element in itself";
  EXPECT_FALSE(InsertElement(*a, a, b)) << "an element in itself";
  EXPECT_EQ(ChildTags(doc.Root()), "a");
  EXPECT_EQ(ChildTags(*a), "b");
}

TEST(MCXDOMHelpersBuilding, ReplaceTakesThePlace) {
  TestDocument doc("<r><a/><b/><c/></r>");
  xercesc::DOMElement* b = GetFirstChildElmt(doc.Root(), "b");
  EXPECT_TRUE(ReplaceElement(doc.Root(), CreateElement(doc.Get(), "x"), b));
  EXPECT_EQ(ChildTags(doc.Root()), "axc");
  EXPECT_EQ(b->getParentNode(), nullptr);
  EXPECT_EQ(Tag(b), "b") << "taken out, not released";
}

TEST(MCXDOMHelpersBuilding, InsertBeforeItselfAndReplaceByItselfChangeNothing) {
  TestDocument doc("<r><a/><b/><c/></r>");
  xercesc::DOMElement* b = GetFirstChildElmt(doc.Root(), "b");
  EXPECT_TRUE(InsertElement(doc.Root(), b, b));
  EXPECT_EQ(ChildTags(doc.Root()), "abc");
  EXPECT_TRUE(ReplaceElement(doc.Root(), b, b));
  EXPECT_EQ(ChildTags(doc.Root()), "abc");
  EXPECT_FALSE(ReplaceElement(*b, b, b));
  EXPECT_FALSE(ReplaceElement(*GetFirstChildElmt(doc.Root(), "a"), b, b)) << "no child of that";
}

TEST(MCXDOMHelpersBuilding, ReplaceRefusesWhatTheDocumentRefuses) {
  TestDocument doc("<r><a><b/></a></r>");
  TestDocument other("<o/>");
  xercesc::DOMElement* a = GetFirstChildElmt(doc.Root(), "a");
  xercesc::DOMElement* b = GetFirstChildElmt(*a, "b");
  EXPECT_FALSE(ReplaceElement(doc.Root(), CreateElement(other.Get(), "x"), a));
  EXPECT_FALSE(ReplaceElement(*a, a, b)) << "an element in itself";
  EXPECT_FALSE(ReplaceElement(doc.Root(), CreateElement(doc.Get(), "x"), b)) << "no child";
  EXPECT_FALSE(ReplaceElement(doc.Root(), nullptr, a));
  EXPECT_FALSE(ReplaceElement(doc.Root(), CreateElement(doc.Get(), "x"), nullptr));
  EXPECT_EQ(ChildTags(doc.Root()), "a");
  EXPECT_EQ(ChildTags(*a), "b");
}

}  // namespace
