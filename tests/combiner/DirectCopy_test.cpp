// A direct copy is what importNode makes: shown by serialising both copies.
#include "combiner/DirectCopy.h"

#include "combiner/CombinerTest.h"
#include "xml/XercesPtr.h"

namespace {

using combiner_test::TextOf;
using MCXPrsUtil::CopyNode;
using MCXPrsUtil::XercesPtr;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

class DirectCopy : public combiner_test::CombinerTest {
 protected:
  DirectCopy()
      : target_(xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core")->createDocument(
            nullptr, nullptr, nullptr, xercesc::XMLPlatformUtils::fgMemoryManager)) {}

  void ExpectCopyIsImport(const DOMNode& source, bool deep) {
    const DOMNode* direct = CopyNode(*target_, source, deep);
    const DOMNode* imported = target_->importNode(&source, deep);
    ASSERT_NE(direct, nullptr);
    EXPECT_EQ(direct->getOwnerDocument(), target_.get());
    EXPECT_EQ(direct->getParentNode(), nullptr);
    EXPECT_TRUE(direct->isEqualNode(imported)) << TextOf(&source);
    EXPECT_EQ(TextOf(direct), TextOf(imported));
  }

  void ExpectCopyIsImport(const std::string& text) {
    SCOPED_TRACE(text);
    const DOMElement& root = *ParseRoot(text);
    ExpectCopyIsImport(root, true);
    ExpectCopyIsImport(root, false);
  }

  XercesPtr<DOMDocument> target_;
};

TEST_F(DirectCopy, OfAParsedDocumentIsTheImport) {
  const char* const kDocuments[] = {
      "<a/>",
      "<a b='1' c='2' a='3'/>",
      "<a b=''/>",
      "<a>text</a>",
      "<a>\n  <b/>\n  <c><d>x</d>tail</c>\n</a>",
      "<a><![CDATA[<raw> & ]]></a>",
      "<a>x<![CDATA[y]]>z<!-- a comment -->u<?pi some data?><?empty?></a>",
      "<a b='&lt;&amp;&quot;&apos;&#9;&#10;' c=\"it's\">&lt;&amp;&gt;]]&gt;</a>",
      "<p:a xmlns:p='urn:p' xmlns='urn:d' p:b='1' xsi:c='2' xmlns:xsi='urn:x'><p:b/></p:a>",
      "<a x='\xE4\xB8\xAD\xE6\x96\x87 \xF0\x9F\x98\x80'>\xC3\xA4\xF0\x9F\x98\x80</a>",
      "<!DOCTYPE a [<!ENTITY e 'plain'>]><a x='in &e; out'><b>&e;</b></a>",
      "<!DOCTYPE a [<!ATTLIST a d CDATA 'default' e CDATA 'other'>]><a e='given'/>",
      "<!DOCTYPE a [<!ATTLIST b k ID #IMPLIED>]><a><b k='one'/><b k='two'>t</b></a>",
      "<?xml version='1.1'?><a b='1'>\n<\xE2\x81\xB0x/></a>",  // a name of XML 1.1
  };
  for (const char* text : kDocuments) {
    ExpectCopyIsImport(text);
  }
}

TEST_F(DirectCopy, LeavesTheSourceAsItWas) {
  const DOMElement* root = ParseRoot("<a b='1'>t<!--c--><d e='f'/></a>");
  const std::string before = TextOf(root);
  CopyNode(*target_, *root, true);
  EXPECT_EQ(TextOf(root), before);
}

TEST_F(DirectCopy, OfNamespaceAwareNodesIsTheImport) {
  DOMDocument& source = *Parse("<root/>");
  DOMElement* element = source.createElementNS(u"urn:n", u"p:made");
  element->setAttributeNS(u"urn:m", u"q:att", u"value");
  element->setAttribute(u"plain", u"v");
  element->appendChild(source.createElement(u"inner"))->appendChild(source.createTextNode(u"t"));
  DOMElement* mixed = source.createElement(u"mixed");
  mixed->setAttributeNS(u"urn:m", u"q:att", u"value");
  element->appendChild(mixed);
  source.getDocumentElement()->appendChild(element);
  ExpectCopyIsImport(*element, true);
  ExpectCopyIsImport(*element, false);
  const auto* copy = static_cast<DOMElement*>(CopyNode(*target_, *element, true));
  EXPECT_TRUE(xercesc::XMLString::equals(copy->getNamespaceURI(), u"urn:n"));
}

TEST_F(DirectCopy, KeepsAnIdThatTheTypeDeclares) {
  const DOMElement* root =
      ParseRoot("<!DOCTYPE a [<!ATTLIST b k ID #IMPLIED>]><a><b k='one'/></a>");
  target_->appendChild(CopyNode(*target_, *root, true));
  ASSERT_NE(target_->getElementById(u"one"), nullptr);
  EXPECT_EQ(TextOf(target_->getElementById(u"one")), "<b k=\"one\"/>");
}

TEST_F(DirectCopy, OfAnAttributeMadeOfSeveralNodesIsTheImport) {
  DOMDocument& source = *Parse("<root a='1'/>");
  xercesc::DOMAttr* attribute = source.getDocumentElement()->getAttributeNode(u"a");
  attribute->appendChild(source.createTextNode(u"23"));
  ExpectCopyIsImport(*source.getDocumentElement(), true);
}

TEST_F(DirectCopy, OfASingleNodeIsTheImport) {
  DOMDocument& source = *Parse("<a/>");
  ExpectCopyIsImport(*source.createTextNode(u"text"), true);
  ExpectCopyIsImport(*source.createComment(u"comment"), true);
  ExpectCopyIsImport(*source.createCDATASection(u"data"), false);
  ExpectCopyIsImport(*source.createProcessingInstruction(u"pi", u"data"), true);
}

TEST_F(DirectCopy, OfADocumentIsRefused) {
  EXPECT_EQ(CopyNode(*target_, *Parse("<a/>"), true), nullptr);
}

TEST_F(DirectCopy, DepthIsNotLimitedByTheStack) {
  constexpr int kDepth = 100000;
  DOMDocument& source = *Parse("<a/>");
  DOMNode* deepest = source.getDocumentElement();
  // Built from the inside out, since appending asks all ancestors.
  DOMNode* inner = source.createElement(u"b");
  for (int i = 1; i < kDepth; ++i) {
    DOMNode* outer = source.createElement(u"b");
    outer->appendChild(inner);
    inner = outer;
  }
  deepest->appendChild(inner);
  const DOMNode* copy = CopyNode(*target_, *inner, true);
  int depth = 0;
  for (; copy != nullptr; copy = copy->getFirstChild()) ++depth;
  EXPECT_EQ(depth, kDepth);
}

TEST_F(DirectCopy, NotesTellWhatTheCopyLacks) {
  const struct {
    const char* text;
    std::set<std::string> entities;
    bool lacks_defaults;
    int n_levels;
  } kRows[] = {
      {"<a/>", {}, false, 0},
      {"<a>t</a>", {}, false, 1},
      {"<a><b><c/></b><b/></a>", {}, false, 2},
      {"<!DOCTYPE a [<!ENTITY e 'x'><!ENTITY f 'y'>]><a><b>&f;&e;&f;</b>&lt;</a>",
       {"e", "f"},
       false,
       2},
      {"<!DOCTYPE a [<!ATTLIST b d CDATA 'x'>]><a><b/></a>", {}, true, 1},
      {"<!DOCTYPE a [<!ATTLIST b d CDATA 'x'>]><a><b d='y'/></a>", {}, false, 1},
  };
  for (const auto& row : kRows) {
    MCXPrsUtil::CopyNotes notes;
    XercesPtr<DOMNode> copy(CopyNode(*target_, *ParseRoot(row.text), true, &notes));
    EXPECT_EQ(notes.entities, row.entities) << row.text;
    EXPECT_EQ(notes.lacks_defaults, row.lacks_defaults) << row.text;
    EXPECT_EQ(notes.n_levels, row.n_levels) << row.text;
  }
}

}  // namespace
