#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <istream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <type_traits>
#include <vector>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "xml/TestDocument.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using testing::HasSubstr;
using testing::StartsWith;
using xml_test::ScratchFolder;
using xml_test::Tag;
using xml_test::WriteFile;

const MCStatus kParseFailed(104, false);

MCStatus ParseText(MCXMLReadWrite& reader, const std::string& xml) {
  std::istringstream in(xml);
  return reader.ParseToDOM(in);
}

std::string RootTag(const MCXMLReadWrite& reader) {
  return reader.GetDocument() ? Tag(reader.GetDocument()->getDocumentElement()) : "(no document)";
}

static_assert(!std::is_copy_constructible_v<MCXMLReadWrite>);
static_assert(!std::is_copy_assignable_v<MCXMLReadWrite>);

TEST(MCXMLReadWrite, FreshObjectHasNothing) {
  MCXMLReadWrite reader;
  EXPECT_TRUE(reader.GetInitStatus().IsOK());
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_EQ(reader.GetXercesMessage(), "");
  EXPECT_EQ(reader.GetParseError(), "");
  EXPECT_FALSE(reader.IsWellFormed());
}

TEST(MCXMLReadWrite, ParsesAFile) {
  const ScratchFolder folder;
  WriteFile(folder.File("a.xml"), "<a><b/></a>");
  MCXMLReadWrite reader;
  EXPECT_TRUE(reader.ParseToDOM(folder.File("a.xml")).IsOK());
  EXPECT_EQ(RootTag(reader), "a");
  EXPECT_TRUE(reader.IsWellFormed());
  const MCXMLReadWrite& constant = reader;
  EXPECT_EQ(constant.GetDocument(), reader.GetDocument());
}

TEST(MCXMLReadWrite, ParsesAFileGivenAsUri) {
  const ScratchFolder folder;
  WriteFile(folder.File("a.xml"), "<a/>");
  MCXMLReadWrite reader;
  EXPECT_TRUE(reader.ParseToDOM("file://" + folder.File("a.xml")).IsOK());
  EXPECT_EQ(RootTag(reader), "a");
}

TEST(MCXMLReadWrite, ParsesAStream) {
  MCXMLReadWrite reader;
  EXPECT_TRUE(ParseText(reader, "<a/>").IsOK());
  EXPECT_EQ(RootTag(reader), "a");
  EXPECT_EQ(reader.GetXercesMessage(), "");
}

TEST(MCXMLReadWrite, WorkerPrefersTheFileName) {
  const ScratchFolder folder;
  WriteFile(folder.File("a.xml"), "<fromFile/>");
  std::istringstream in("<fromStream/>");
  MCXMLReadWrite reader;
  EXPECT_TRUE(reader.ParseToDOM(folder.File("a.xml").c_str(), &in).IsOK());
  EXPECT_EQ(RootTag(reader), "fromFile");
  EXPECT_TRUE(reader.ParseToDOM(nullptr, &in).IsOK());
  EXPECT_EQ(RootTag(reader), "fromStream");
}

TEST(MCXMLReadWrite, WorkerWithoutAnySourceGives104) {
  MCXMLReadWrite reader;
  ASSERT_TRUE(ParseText(reader, "<a/>").IsOK());
  EXPECT_EQ(reader.ParseToDOM(nullptr, nullptr), kParseFailed);
  EXPECT_EQ(reader.GetDocument(), nullptr);
}

TEST(MCXMLReadWrite, StringIsAFileNameNeverXml) {
  MCXMLReadWrite reader;
  EXPECT_EQ(reader.ParseToDOM(std::string("<a/>")), kParseFailed);
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_THAT(reader.GetXercesMessage(), StartsWith("line 0, column 0: "));
  EXPECT_THAT(reader.GetXercesMessage(), HasSubstr("<a/>"));
  EXPECT_EQ(reader.GetParseError(), reader.GetXercesMessage());
}

TEST(MCXMLReadWrite, SourceThatCannotBeOpenedGives104WithAMessage) {
  const ScratchFolder folder;
  MCXMLReadWrite reader;
  const std::string missing = folder.File("missing.xml");
  EXPECT_EQ(reader.ParseToDOM(missing), kParseFailed);
  EXPECT_THAT(reader.GetXercesMessage(), HasSubstr(missing));
  EXPECT_FALSE(reader.IsWellFormed());

  EXPECT_EQ(reader.ParseToDOM(std::string()), kParseFailed);
  EXPECT_NE(reader.GetXercesMessage(), "");
}

TEST(MCXMLReadWrite, DirectoryOpensButDoesNotRead) {
  const ScratchFolder folder;
  MCXMLReadWrite reader;
  {
    // The XML library loses the system identifier when the first read of a file throws.
    const xml_test::IgnoreLeaks known_leak;
    EXPECT_EQ(reader.ParseToDOM(folder.File("")), kParseFailed);
  }
  EXPECT_NE(reader.GetXercesMessage(), "");
  EXPECT_EQ(reader.GetDocument(), nullptr);
}

TEST(MCXMLReadWrite, FailedSecondParseLeavesNoDocument) {
  MCXMLReadWrite reader;
  ASSERT_TRUE(ParseText(reader, "<a/>").IsOK());
  EXPECT_EQ(reader.ParseToDOM("/nowhere/at/all.xml"), kParseFailed);
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_FALSE(reader.IsWellFormed());
}

TEST(MCXMLReadWrite, SuccessfulParseClearsTheMessageOfAFailedOne) {
  MCXMLReadWrite reader;
  ASSERT_EQ(reader.ParseToDOM("/nowhere/at/all.xml"), kParseFailed);
  ASSERT_TRUE(ParseText(reader, "<a/>").IsOK());
  EXPECT_EQ(reader.GetXercesMessage(), "");
  EXPECT_EQ(reader.GetParseError(), "");
  EXPECT_TRUE(reader.IsWellFormed());
}

TEST(MCXMLReadWrite, EachParseReplacesTheDocument) {
  MCXMLReadWrite reader;
  for (const char* tag : {"a", "b", "c"}) {
    ASSERT_TRUE(ParseText(reader, std::string("<") + tag + "/>").IsOK());
    EXPECT_EQ(RootTag(reader), tag);
  }
}

struct MalformedCase {
  const char* rule;
  const char* xml;
  const char* root;  // what is kept
  const char* where;
};

TEST(MCXMLReadWrite, MalformedXmlGivesOkWithWhatStoodBeforeTheError) {
  const MalformedCase cases[] = {
      {"empty input", "", "(none)", "line 1, column 1: "},
      {"no XML at all", "hello", "(none)", "line 1, column 1: "},
      {"root not closed", "<a><b/>", "a", "line 1, column 8: "},
      {"wrong end tag", "<a>\n<b></c></a>", "a", "line 2, column 6: "},
      {"undefined entity", "<a>&nope;</a>", "a", "line 1, column 10: "},
      {"attribute twice", "<a b='1' b='2'/>", "(none)", "line 1, column 12: "},
      {"bytes that are no UTF-8", "<a>\xFF</a>", "a", "line 1, column "},
      {"two roots", "<a/><b/>", "a", "line 1, column 5: "},
      {"unknown encoding", "<?xml version='1.0' encoding='nope'?><a/>", "(none)",
       "line 1, column "},
  };
  for (const MalformedCase& c : cases) {
    SCOPED_TRACE(c.rule);
    MCXMLReadWrite reader;
    EXPECT_TRUE(ParseText(reader, c.xml).IsOK());
    EXPECT_EQ(RootTag(reader), c.root);
    EXPECT_EQ(reader.GetXercesMessage(), "");
    EXPECT_FALSE(reader.IsWellFormed());
    EXPECT_THAT(reader.GetParseError(), StartsWith(c.where));
    EXPECT_GT(reader.GetParseError().size(), std::string(c.where).size());
  }
}

TEST(MCXMLReadWrite, ValidityErrorsAreNoErrors) {
  MCXMLReadWrite reader;
  ASSERT_TRUE(ParseText(reader,
                        "<!DOCTYPE a [<!ELEMENT a (b)><!ATTLIST a c CDATA #REQUIRED>]>"
                        "<a x='1'>text<unknown/></a>")
                  .IsOK());
  EXPECT_TRUE(reader.IsWellFormed());
  EXPECT_EQ(reader.GetParseError(), "");
}

TEST(MCXMLReadWrite, EntitiesAreExpanded) {
  const ScratchFolder folder;
  WriteFile(folder.File("part.txt"), "outside");
  WriteFile(folder.File("a.xml"),
            "<!DOCTYPE a [<!ENTITY in 'inside'><!ENTITY out SYSTEM 'part.txt'>]>"
            "<a>&in; &out;</a>");
  MCXMLReadWrite reader;
  ASSERT_TRUE(reader.ParseToDOM(folder.File("a.xml")).IsOK());
  EXPECT_TRUE(reader.IsWellFormed());
  EXPECT_EQ(xml_test::Utf8(reader.GetDocument()->getDocumentElement()->getTextContent()),
            "inside outside");
}

TEST(MCXMLReadWrite, ExternalEntityThatIsMissingIsAFatalError) {
  const ScratchFolder folder;
  WriteFile(folder.File("a.xml"), "<!DOCTYPE a [<!ENTITY out SYSTEM 'part.txt'>]><a>&out;</a>");
  MCXMLReadWrite reader;
  ASSERT_TRUE(reader.ParseToDOM(folder.File("a.xml")).IsOK());
  EXPECT_FALSE(reader.IsWellFormed());
  EXPECT_THAT(reader.GetParseError(), HasSubstr("part.txt"));
}

// Documents of all kinds, for the comparison with a parser that has no error handler.
std::vector<std::string> DocumentsOfAllKinds() {
  const std::string whole =
      "<?xml version='1.0' encoding='UTF-8'?>\n"
      "<!DOCTYPE a [<!ELEMENT a (b|c)*><!ATTLIST b x CDATA 'default' y ID #REQUIRED>"
      "<!ENTITY e 'te<b/>xt'><!NOTATION n SYSTEM 'n'>]>\n"
      "<!-- c --><a xmlns:p='urn:x'><b y='1'>&e;</b><![CDATA[<>]]><?pi "
      "d?><p:c>\xC3\xA9</p:c></a>\n";
  std::vector<std::string> documents;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    documents.push_back(whole.substr(0, length));
  }
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const char c : {'<', '&', '"', '\0', '\xFF'}) {
      documents.push_back(whole);
      documents.back()[i] = c;
    }
  }
  return documents;
}

// Runs a parse; the code of the DOMException that it threw, or 0.
template <class Parse>
int DomExceptionOf(Parse parse) {
  try {
    parse();
    return 0;
  } catch (const xercesc::DOMException& e) {
    return e.code;
  }
}

TEST(MCXMLReadWrite, RecorderChangesNoResult) {
  MCXMLReadWrite reader;
  int malformed = 0;
  for (const std::string& xml : DocumentsOfAllKinds()) {
    SCOPED_TRACE(xml);
    xercesc::XercesDOMParser bare;
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(xml.data()),
                                            xml.size(), "bare");
    const int expected = DomExceptionOf([&] { bare.parse(source); });
    MCStatus status;
    ASSERT_EQ(DomExceptionOf([&] { status = ParseText(reader, xml); }), expected);
    if (expected != 0) continue;
    ASSERT_EQ(status.IsOK(), bare.getDocument() != nullptr);
    if (!status.IsOK()) continue;
    ASSERT_TRUE(reader.GetDocument()->isEqualNode(bare.getDocument()));
    ASSERT_EQ(reader.IsWellFormed(), reader.GetParseError().empty());
    malformed += !reader.IsWellFormed();
  }
  EXPECT_GT(malformed, 100);
}

TEST(MCXMLReadWrite, DomExceptionOfTheParserPassesAndLeavesNoDocument) {
  MCXMLReadWrite reader;
  ASSERT_TRUE(ParseText(reader, "<before/>").IsOK());
  // The parser takes no other version than 1.0 and 1.1 into its document.
  EXPECT_THROW((void)ParseText(reader, "<?xml version='1.7'?><a/>"), xercesc::DOMException);
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_FALSE(reader.IsWellFormed());
  EXPECT_TRUE(ParseText(reader, "<after/>").IsOK());
}

// Gives its text in pieces of one byte and then ends or throws.
class OddBuffer : public std::streambuf {
 public:
  OddBuffer(std::string text, bool throws) : text_(std::move(text)), throws_(throws) {}

 protected:
  int_type underflow() override {
    if (next_ < text_.size()) {
      setg(&text_[next_], &text_[next_], &text_[next_] + 1);
      ++next_;
      return traits_type::to_int_type(*gptr());
    }
    if (throws_) throw std::runtime_error("the line went dead");
    return traits_type::eof();
  }

 private:
  std::string text_;
  bool throws_;
  std::size_t next_ = 0;
};

TEST(MCXMLReadWrite, StreamThatDripsIsReadWhole) {
  std::string xml = "<a>";
  for (int i = 0; i < 20'000; ++i) xml += "<b/>";
  OddBuffer buffer(xml + "</a>", false);
  std::istream in(&buffer);
  MCXMLReadWrite reader;
  ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
  EXPECT_TRUE(reader.IsWellFormed());
  EXPECT_EQ(reader.GetDocument()->getDocumentElement()->getChildElementCount(), 20'000u);
}

TEST(MCXMLReadWrite, StreamThatDiesIsTheEndOfTheDocument) {
  OddBuffer buffer("<a><b/>", true);
  std::istream in(&buffer);  // not set to throw: it goes bad
  MCXMLReadWrite reader;
  ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
  EXPECT_FALSE(reader.IsWellFormed());
  EXPECT_NE(reader.GetParseError(), "");
}

TEST(MCXMLReadWrite, StreamThatStopsEarlyKeepsWhatCame) {
  OddBuffer buffer("<a><b/>", false);
  std::istream in(&buffer);
  MCXMLReadWrite reader;
  ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
  EXPECT_EQ(RootTag(reader), "a");
  EXPECT_FALSE(reader.IsWellFormed());
}

TEST(MCXMLReadWrite, StreamThatThrowsAtItsEndThrowsThroughTheParse) {
  std::istringstream in("<a/>");
  in.exceptions(std::ios::failbit);
  MCXMLReadWrite reader;
  EXPECT_THROW((void)reader.ParseToDOM(in), std::ios::failure);
  EXPECT_EQ(reader.GetDocument(), nullptr);
}

TEST(MCXMLReadWrite, ExceptionOfTheStreamPassesAndLeavesNoDocument) {
  std::string half = "<a>";
  for (int i = 0; i < 30'000; ++i) half += "<b/>";  // more than one buffer of the parser
  for (const std::string& text : {std::string(), std::string("<a><b/>"), half}) {
    SCOPED_TRACE(text.size());
    MCXMLReadWrite reader;
    ASSERT_TRUE(ParseText(reader, "<before/>").IsOK());
    OddBuffer buffer(text, true);
    std::istream in(&buffer);
    in.exceptions(std::ios::badbit);
    EXPECT_THROW((void)reader.ParseToDOM(in), std::runtime_error);
    EXPECT_EQ(reader.GetDocument(), nullptr);
    EXPECT_FALSE(reader.IsWellFormed());
    EXPECT_EQ(reader.GetXercesMessage(), "");
    EXPECT_TRUE(ParseText(reader, "<after/>").IsOK());
    EXPECT_EQ(RootTag(reader), "after");
  }
}

TEST(MCXMLReadWrite, ReadsFromThePositionOfTheStream) {
  std::istringstream in("junk<a/>");
  in.seekg(4);
  MCXMLReadWrite reader;
  EXPECT_TRUE(reader.ParseToDOM(in).IsOK());
  EXPECT_EQ(RootTag(reader), "a");
}

}  // namespace
