// Documents that are nested a hundred thousand levels deep, or that wide, on a small stack and
// without any limit set: read, walked, written or refused, but never the end of the process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "support/Many.h"
#include "support/SmallStack.h"
#include "xml/PolicyCheck.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using test_support::kSmallStack;
using test_support::RunOnStackOf;
using testing::StartsWith;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xml_test::Nested;
using xml_test::ParseOutcome;
using xml_test::Repeat;
using xml_test::ScratchFolder;

const auto kMany = static_cast<std::size_t>(test_support::Many());

// How many elements lie within each other, along the first ones, by the helpers' walk.
std::size_t LevelsOf(const DOMNode& root) {
  std::size_t levels = 0;
  for (const DOMNode* node = MCXPrsUtil::GetFirstChildElmt(root, nullptr); node != nullptr;
       node = MCXPrsUtil::GetFirstChildElmt(*node, nullptr)) {
    ++levels;
  }
  return levels;
}

std::size_t WidthOf(const DOMNode& parent, const char* name) {
  std::size_t width = 0;
  for (const DOMElement* child = MCXPrsUtil::GetFirstChildElmt(parent, name); child != nullptr;
       child = MCXPrsUtil::GetNextSiblingElmt(*child, name)) {
    ++width;
  }
  return width;
}

TEST(DeepDocuments, ElementsAreReadWalkedAndDestroyed) {
  RunOnStackOf(kSmallStack, [] {
    MCXMLReadWrite reader;
    std::istringstream in(Nested(kMany, "<b c='d'/>"));
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
    EXPECT_TRUE(reader.IsWellFormed());
    EXPECT_EQ(LevelsOf(*reader.GetDocument()), kMany + 1);
    std::istringstream another("<a/>");
    EXPECT_TRUE(reader.ParseToDOM(another).IsOK());
  });
}

TEST(DeepDocuments, ElementsThatNeverEndAreMalformed) {
  RunOnStackOf(kSmallStack, [] {
    MCXMLReadWrite reader;
    std::istringstream in(Repeat("<a>", kMany));
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
    EXPECT_FALSE(reader.IsWellFormed());
    EXPECT_EQ(LevelsOf(*reader.GetDocument()), kMany);
  });
}

TEST(DeepDocuments, ManyChildrenAreReadAndWalked) {
  RunOnStackOf(kSmallStack, [] {
    MCXMLReadWrite reader;
    std::istringstream in("<a>" + Repeat("<b/>text<!--c--><c/>", kMany) + "</a>");
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
    EXPECT_TRUE(reader.IsWellFormed());
    EXPECT_EQ(WidthOf(*reader.GetDocument()->getDocumentElement(), "c"), kMany);
    EXPECT_EQ(WidthOf(*reader.GetDocument()->getDocumentElement(), nullptr), 2 * kMany);
  });
}

TEST(DeepDocuments, DeclarationsThatAreNestedOrLongAreReadOrMalformed) {
  RunOnStackOf(kSmallStack, [] {
    const auto declared = [](const std::string& content) {
      return ParseOutcome("<!DOCTYPE a [<!ELEMENT a " + content + ">]><a/>");
    };
    EXPECT_EQ(declared(Repeat("(", kMany) + "b" + Repeat(")", kMany)), "text: ");
    EXPECT_THAT(declared(Repeat("(b,", kMany) + "b" + Repeat(")", kMany)), StartsWith("malformed"));
    EXPECT_EQ(declared("(b" + Repeat(",b", kMany) + ")"), "text: ");
    EXPECT_EQ(declared("(b" + Repeat("|b", kMany) + ")"), "text: ");
    EXPECT_EQ(declared("(#PCDATA" + Repeat("|b", kMany) + ")*"), "text: ");
  });
}

// A document whose root holds what the entity stands for: `levels` elements within each other.
std::string WithinEntity(std::size_t levels, const std::string& references = "&e;") {
  return "<!DOCTYPE r [<!ENTITY e \"" + Nested(levels) + "\">]><r>" + references + "</r>";
}

// The XML library calls itself for every level of an entity.
TEST(DeepDocuments, LevelsWithinAnEntityAreRefusedWhereTheStackIsTooSmall) {
  RunOnStackOf(kSmallStack, [] {
    MCXMLReadWrite reader;
    for (const char* references : {"&e;", "&e;&e;", "<s>text &e;</s>"}) {
      std::istringstream in(WithinEntity(kMany, references));
      EXPECT_EQ(reader.ParseToDOM(in), MCStatus(104, false));
      EXPECT_EQ(reader.GetDocument(), nullptr);
      EXPECT_EQ(
          reader.GetXercesMessage(),
          "the elements of an entity are nested too deep: reading them would overflow the stack");
    }
    std::istringstream in(WithinEntity(100));
    EXPECT_TRUE(reader.ParseToDOM(in).IsOK());
    EXPECT_TRUE(reader.IsWellFormed());
  });
}

TEST(DeepDocuments, LevelsWithinAnEntityAreReadWhereTheStackIsLargeEnough) {
  constexpr std::size_t kStackOfALevel = 640;  // twice what is asked for
  RunOnStackOf(kMany * kStackOfALevel,
               [] { EXPECT_EQ(ParseOutcome(WithinEntity(kMany)), "text: "); });
}

// Each entity by itself is shallow.
TEST(DeepDocuments, EntitiesWithinEntitiesDoNotAddUp) {
  std::string declarations = "<!ENTITY e0 ''>";
  for (int i = 1; i <= 200; ++i) {
    declarations += "<!ENTITY e" + std::to_string(i) + " '" +
                    Nested(10, "&e" + std::to_string(i - 1) + ";") + "'>";
  }
  RunOnStackOf(kSmallStack, [&] {
    EXPECT_EQ(ParseOutcome("<!DOCTYPE r [" + declarations + "]><r>&e200;</r>"), "text: ");
  });
}

// What has many children, deep ones before and behind shallow ones, is measured by its deepest.
TEST(DeepDocuments, TheDeepestLevelOfAnEntityCounts) {
  const std::string wide = Repeat("<b><c/>x</b>", 100);
  RunOnStackOf(kSmallStack, [&] {
    for (const std::string& inside :
         {wide + Nested(kMany), Nested(kMany) + wide, wide + Nested(kMany) + wide,
          "<d>" + wide + "<d>" + Nested(kMany) + "</d>" + wide + "</d>"}) {
      EXPECT_THAT(ParseOutcome("<!DOCTYPE r [<!ENTITY e \"" + inside + "\">]><r>&e;</r>"),
                  StartsWith("104: the elements of an entity are nested too deep"));
    }
    EXPECT_EQ(ParseOutcome("<!DOCTYPE r [<!ENTITY e \"" + wide + "\">]><r>&e;&e;</r>").size(),
              6u + 200u);
  });
}

TEST(DeepDocuments, TheContentOfAnEntityIsReadOnlyAsEver) {
  xml_test::TestDocument document(WithinEntity(3));
  DOMNode* reference = document.Root().getFirstChild();
  ASSERT_EQ(reference->getNodeType(), DOMNode::ENTITY_REFERENCE_NODE);
  DOMNode* inner = reference->getFirstChild()->getFirstChild();
  EXPECT_THROW(inner->removeChild(inner->getFirstChild()), xercesc::DOMException);
}

TEST(DeepDocuments, WritingIsRefusedWhereTheStackIsTooSmall) {
  const ScratchFolder folder;
  for (const std::string& xml : {Nested(kMany), Nested(kMany, "text"),
                                 "<a>" + Repeat("<b/>", kMany) + Nested(kMany) + "</a>"}) {
    RunOnStackOf(kSmallStack, [&] {
      MCXMLReadWrite reader;
      std::istringstream in(xml);
      ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
      EXPECT_EQ(reader.WriteFromDOM(folder.File("a.xml"), nullptr), MCStatus(118, false));
      EXPECT_EQ(reader.GetXercesMessage(),
                "the document is nested too deep: writing it would overflow the stack");
    });
  }
}

TEST(DeepDocuments, ManyChildrenAreWritten) {
  const ScratchFolder folder;
  const std::string xml = "<a>" + Repeat("<b c=\"d\"/>", kMany) + "</a>";
  RunOnStackOf(kSmallStack, [&] {
    MCXMLReadWrite reader;
    std::istringstream in(xml);
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
    EXPECT_TRUE(reader.WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
  });
  const std::string written = xml_test::ReadFile(folder.File("a.xml"));
  EXPECT_TRUE(written.size() > xml.size() &&
              written.compare(written.size() - xml.size(), xml.size(), xml) == 0);
}

}  // namespace
