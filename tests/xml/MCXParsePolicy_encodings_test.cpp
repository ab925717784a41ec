// Documents that lie about their encoding, break off within a character or hold what XML cannot
// hold: told as malformed, unless the bytes leave no doubt, with a policy and without.
#include <sstream>
#include <string>

#include "mcxprsutil/MCPMMLParser.h"
#include "xml/PolicyCheck.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCXParsePolicy;
using testing::StartsWith;
using xml_test::HardenedOutcome;
using xml_test::ParseOutcome;
using xml_test::PolicyScope;

std::string Utf16(const std::string& ascii, bool is_big) {
  std::string text;
  for (const char c : ascii) {
    if (is_big) text += '\0';
    text += c;
    if (!is_big) text += '\0';
  }
  return text;
}

std::string Utf32(const std::string& ascii) {
  std::string text;
  for (const char c : ascii) text += std::string(3, '\0') + c;
  return text;
}

std::string Declared(const std::string& encoding, const std::string& rest) {
  return "<?xml version='1.0' encoding='" + encoding + "'?>" + rest;
}

const std::string kUtf8Mark = "\xEF\xBB\xBF";
const std::string kBigMark = "\xFE\xFF";
const std::string kLittleMark = "\xFF\xFE";

struct EncodingCase {
  const char* rule;
  std::string document;
  const char* outcome;  // how it begins
};

// A root that the PMML reader accepts, around a text.
std::string Root(const std::string& text) { return "<PMML><DataDictionary/>" + text + "</PMML>"; }

const EncodingCase kCases[] = {
    // Honest ones, to show that the others fail for their lies.
    {"UTF-8 with a mark", kUtf8Mark + Root("x"), "text: x"},
    {"UTF-16, big end first", kBigMark + Utf16(Root("x"), true), "text: x"},
    {"UTF-16, little end first", kLittleMark + Utf16(Root("x"), false), "text: x"},
    {"UTF-32", std::string("\0\0\xFE\xFF", 4) + Utf32(Root("x")), "text: x"},
    {"Latin-1", Declared("ISO-8859-1", Root("\xE9")), "text: \xC3\xA9"},

    // What is declared cannot be, since the declaration itself was readable: the XML library goes
    // by the bytes.
    {"UTF-8 that says UTF-16", Declared("UTF-16", Root("x")), "text: x"},
    {"UTF-8 that says UTF-32", Declared("UTF-32", Root("x")), "text: x"},
    {"UTF-8 with its mark that says UTF-16", kUtf8Mark + Declared("UTF-16", Root("x")), "text: x"},

    // To the XML library, a zero behind the root is the end.
    {"a zero behind the root", Root("x") + std::string(1, '\0'), "text: x"},
    {"more behind that zero", Root("x") + std::string(1, '\0') + "<b/>", "text: x"},

    // The declaration is wrong.
    {"UTF-16 that says UTF-8", kBigMark + Utf16(Declared("UTF-8", Root("x")), true), "malformed: "},
    {"UTF-16 without a mark that says UTF-8", Utf16(Declared("UTF-8", Root("x")), true),
     "malformed: "},
    {"UTF-16 that says Latin-1", kLittleMark + Utf16(Declared("ISO-8859-1", Root("x")), false),
     "malformed: "},
    {"UTF-16 that says the other end", kLittleMark + Utf16(Declared("UTF-16BE", Root("x")), false),
     "malformed: "},
    {"UTF-32 that says UTF-8", std::string("\0\0\xFE\xFF", 4) + Utf32(Declared("UTF-8", Root("x"))),
     "malformed: "},
    {"UTF-8 that says EBCDIC", Declared("IBM037", Root("x")), "malformed: "},
    {"Latin-1 that says UTF-8", Declared("UTF-8", Root("\xE9")), "malformed: "},
    {"Latin-1 that says nothing", Root("\xE9"), "malformed: "},
    {"an encoding that nobody knows", Declared("x-nobody", Root("x")), "malformed: "},
    {"an empty encoding", Declared("", Root("x")), "malformed: "},
    {"an encoding with a zero in it", Declared(std::string("UTF\0-8", 6), Root("x")),
     "malformed: "},

    // The mark is wrong.
    {"the mark of UTF-16 before UTF-8", kBigMark + Root("x"), "malformed: "},
    {"the other mark of UTF-16 before UTF-8", kLittleMark + Root("x"), "malformed: "},
    {"the mark of the other end", kBigMark + Utf16(Root("x"), false), "malformed: "},
    {"the mark of UTF-8 before UTF-16", kUtf8Mark + Utf16(Root("x"), true), "malformed: "},
    {"the mark of UTF-8 twice", kUtf8Mark + kUtf8Mark + Root("x"), "malformed: "},
    {"the mark of UTF-16 twice", kBigMark + kBigMark + Utf16(Root("x"), true), "malformed: "},
    {"half a mark", "\xEF\xBB" + Root("x"), "malformed: "},
    {"only a mark", kUtf8Mark, "malformed: "},
    {"only the mark of UTF-16", kBigMark, "malformed: "},
    // Characters that break off, or are none.
    {"one of two bytes", Root("\xC3"), "malformed: "},
    {"two of three bytes", Root("\xE4\xB8"), "malformed: "},
    {"three of four bytes", Root("\xF0\x9F\x98"), "malformed: "},
    {"a byte that continues nothing", Root("\x80"), "malformed: "},
    {"more bytes than needed", Root("\xC0\xBC"), "malformed: "},
    {"a surrogate in UTF-8", Root("\xED\xA0\x80"), "malformed: "},
    {"beyond the last character", Root("\xF4\x90\x80\x80"), "malformed: "},
    {"five bytes", Root("\xF8\x88\x80\x80\x80"), "malformed: "},
    {"a byte that UTF-8 never uses", Root("\xFF"), "malformed: "},
    {"the end within a character", "<PMML><DataDictionary/>\xE4\xB8", "malformed: "},
    {"the end behind one byte", "\xE4", "malformed: "},
    {"an odd number of bytes", kBigMark + Utf16(Root("x"), true).substr(0, 41), "malformed: "},
    {"the first half of a pair", kBigMark + Utf16("<a>", true) + "\xD8\x3D" + Utf16("</a>", true),
     "malformed: "},
    {"the second half of a pair", kBigMark + Utf16("<a>", true) + "\xDE\x00" + Utf16("</a>", true),
     "malformed: "},
    {"a broken character in a name", "<PMML\xC3><DataDictionary/></PMML>", "malformed: "},
    {"a broken character in an attribute", "<PMML a='\xC3'/>", "malformed: "},
    {"a broken character in a comment", Root("<!--\xC3-->"), "malformed: "},

    // Zero bytes, and other characters that XML does not have.
    {"a zero in the text", Root(std::string("a\0b", 3)), "malformed: "},
    {"a zero in a name", std::string("<PM\0ML/>", 8), "malformed: "},
    {"a zero in an attribute", std::string("<PMML a='\0'/>", 13), "malformed: "},
    {"a zero in a comment", Root(std::string("<!--\0-->", 8)), "malformed: "},
    {"a zero in a CDATA section", Root(std::string("<![CDATA[\0]]>", 13)), "malformed: "},
    {"a zero before the root", std::string(1, '\0') + Root(""), "malformed: "},
    {"a thousand zeros", std::string(1000, '\0'), "malformed: "},
    {"a zero as a character reference", Root("&#0;"), "malformed: "},
    {"a control character", Root("\x01"), "malformed: "},
    {"a reference to a surrogate", Root("&#xD800;"), "malformed: "},
    {"a reference beyond the last character", Root("&#x110000;"), "malformed: "},
};

TEST(MCXParsePolicyEncodings, LiesAreToldAndTheSameWithAPolicy) {
  for (const EncodingCase& c : kCases) {
    SCOPED_TRACE(c.rule);
    const std::string outcome = ParseOutcome(c.document);
    EXPECT_THAT(outcome, StartsWith(c.outcome));
    EXPECT_EQ(HardenedOutcome(c.document), outcome);
  }
}

TEST(MCXParsePolicyEncodings, ReadersRefuseThemWithAMessage) {
  for (const MCXParsePolicy& policy : {MCXParsePolicy(), MCXParsePolicy::Hardened()}) {
    const PolicyScope scope(policy);
    MCPMMLParser reader;
    for (const EncodingCase& c : kCases) {
      SCOPED_TRACE(c.rule);
      const bool is_honest = std::string(c.outcome) != "malformed: ";
      std::istringstream in(c.document);
      EXPECT_EQ(reader.ParseToDOM(in), is_honest ? MCStatus() : MCStatus(104, false));
      EXPECT_EQ(reader.GetRootElement() != nullptr, is_honest);
      EXPECT_EQ(reader.GetXercesMessage().empty(), is_honest);
    }
  }
}

// Cut off behind every byte of a document with characters of all lengths.
TEST(MCXParsePolicyEncodings, CutOffAnywhereIsMalformed) {
  const std::string whole = Declared("UTF-8", Root("\xC3\xA9 \xE4\xB8\xAD \xF0\x9F\x98\x80"));
  ASSERT_THAT(ParseOutcome(whole), StartsWith("text: "));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::string cut = whole.substr(0, size);
    const std::string outcome = ParseOutcome(cut);
    EXPECT_THAT(outcome, StartsWith("malformed: ")) << size;
    EXPECT_EQ(HardenedOutcome(cut), outcome) << size;
  }
}

}  // namespace
