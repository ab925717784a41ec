// ParseToDOM, SetModelElmt and the accessors of the PMML reader.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <string>
#include <type_traits>
#include <xercesc/dom/DOM.hpp>

#include "PmmlText.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCPMMLParser;
using testing::StartsWith;

const char kField[] = R"(<DataField name="a" dataType="double" optype="continuous"/>)";

TEST(MCPMMLParser, IsNotCopiedAndIsPolymorphic) {
  EXPECT_FALSE(std::is_copy_constructible_v<MCPMMLParser>);
  EXPECT_FALSE(std::is_copy_assignable_v<MCPMMLParser>);
  EXPECT_TRUE(std::has_virtual_destructor_v<MCPMMLParser>);
}

TEST(MCPMMLParser, StartsReadyAndWithoutDocument) {
  const MCPMMLParser reader;
  EXPECT_EQ(reader.GetStatus(), MCStatus());
  EXPECT_EQ(reader.GetRootElement(), nullptr);
  EXPECT_EQ(reader.GetXercesMessage(), "");
}

TEST(MCPMMLParser, FillBeforeAnyParseGives107) {
  const MCPMMLParser reader;
  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, {}, false), MCStatus(107, false));
  EXPECT_EQ(reader.GetStatus(), MCStatus());
  EXPECT_TRUE(list.calls.empty());
}

TEST(MCPMMLParser, BinsBeforeAnyParseAreNotFound) {
  const MCPMMLParser reader;
  std::vector<double> cuts = {1};
  std::vector<std::string> values = {"x"};
  EXPECT_FALSE(reader.SetBinsFrTransDict("a", cuts, values));
  EXPECT_TRUE(cuts.empty());
  EXPECT_TRUE(values.empty());
}

struct ParseCase {
  const char* rule;
  std::string text;
  int code;
  friend void PrintTo(const ParseCase& test, std::ostream* out) { *out << test.rule; }
};

class ParseToDOM : public testing::TestWithParam<ParseCase> {};

TEST_P(ParseToDOM, GivesAndStoresTheStatus) {
  MCPMMLParser reader;
  const MCStatus status = ParseText(reader, GetParam().text);
  EXPECT_EQ(status, MCStatus(GetParam().code, false)) << GetParam().rule;
  EXPECT_EQ(reader.GetStatus(), status);
  EXPECT_EQ(reader.GetRootElement() != nullptr, status.IsOK());
  EXPECT_EQ(reader.GetXercesMessage().empty(), GetParam().code != 104);

  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, {}, false), status);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, ParseToDOM,
    testing::Values(
        ParseCase{"no transformation dictionary is fine", Pmml(kField), 0},
        ParseCase{"the version is not looked at", "<PMML version='0'><DataDictionary/></PMML>", 0},
        ParseCase{"a default namespace changes no name",
                  "<PMML xmlns='http://www.dmg.org/PMML-4_3'><DataDictionary/></PMML>", 0},
        ParseCase{"an XML declaration and a comment before the root",
                  "<?xml version='1.0'?><!-- c --><PMML><DataDictionary/></PMML>", 0},
        ParseCase{"a document type is allowed",
                  "<!DOCTYPE PMML [<!ENTITY e 'x'>]><PMML><DataDictionary/></PMML>", 0},
        ParseCase{"a lower-case root", "<pmml><DataDictionary/></pmml>", 105},
        ParseCase{"another root", "<DataModel/>", 105},
        ParseCase{"a prefixed root", "<p:PMML xmlns:p='u'><DataDictionary/></p:PMML>", 105},
        ParseCase{"no data dictionary", "<PMML><TransformationDictionary/></PMML>", 106},
        ParseCase{"a data dictionary that is no child",
                  "<PMML><Header><DataDictionary/></Header></PMML>", 106},
        ParseCase{"an empty stream", "", 104}, ParseCase{"blanks only", " \n ", 104},
        ParseCase{"no XML at all", "name,age\nx,1\n", 104},
        ParseCase{"an unclosed root", "<PMML><DataDictionary/>", 104},
        ParseCase{"a malformed document with another root is malformed first", "<a><b></a>", 104},
        ParseCase{"malformed after the dictionary", "<PMML><DataDictionary/><x></PMML>", 104},
        ParseCase{"text after the root", "<PMML><DataDictionary/></PMML>x", 104},
        ParseCase{"a second root", Pmml(kField) + Pmml(kField), 104},
        ParseCase{"an attribute twice", "<PMML a='1' a='2'><DataDictionary/></PMML>", 104},
        ParseCase{"an undefined entity", "<PMML><DataDictionary>&x;</DataDictionary></PMML>", 104},
        ParseCase{"bytes that are no UTF-8", "<PMML><DataDictionary n='\xff'/></PMML>", 104},
        ParseCase{"an unknown encoding",
                  "<?xml version='1.0' encoding='no-such'?><PMML><DataDictionary/></PMML>", 104},
        ParseCase{"a document type that cannot be opened",
                  "<!DOCTYPE PMML SYSTEM 'no/such/file.dtd'><PMML><DataDictionary/></PMML>", 104}));

TEST(MCPMMLParser, MessageOfMalformedTextTellsLineAndColumn) {
  MCPMMLParser reader;
  EXPECT_EQ(ParseText(reader, "<PMML>\n  <DataDictionary>\n  </Data>\n</PMML>").GetCode(), 104);
  EXPECT_THAT(reader.GetXercesMessage(), StartsWith("line 3, column "));
}

TEST(MCPMMLParser, MessageIsEmptyAgainAfterASuccessfulParse) {
  MCPMMLParser reader;
  ASSERT_EQ(ParseText(reader, "<PMML>").GetCode(), 104);
  ASSERT_NE(reader.GetXercesMessage(), "");
  EXPECT_TRUE(ParseText(reader, Pmml(kField)).IsOK());
  EXPECT_EQ(reader.GetXercesMessage(), "");
}

TEST(MCPMMLParser, FailedSecondParseLeavesNoDocument) {
  for (const char* bad : {"<PMML>", "<pmml/>", "<PMML/>", ""}) {
    MCPMMLParser reader;
    ASSERT_TRUE(ParseText(reader, Pmml(kField, TransDict(Binned("a", "")))).IsOK());
    ASSERT_TRUE(reader.SetModelElmt(*reader.GetRootElement()));

    const MCStatus status = ParseText(reader, bad);
    EXPECT_FALSE(status.IsOK()) << bad;
    EXPECT_EQ(reader.GetRootElement(), nullptr);
    RecordingVarList list;
    EXPECT_EQ(reader.FillVarList(list, {}, true), status);
    EXPECT_TRUE(list.calls.empty());
    std::vector<double> cuts;
    std::vector<std::string> values;
    EXPECT_FALSE(reader.SetBinsFrTransDict("a", cuts, values));
  }
}

TEST(MCPMMLParser, SecondParseReplacesTheDocument) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml(kField, TransDict(Binned("a", "")))).IsOK());
  ASSERT_TRUE(
      ParseText(reader, Pmml(R"(<DataField name="b" dataType="double" optype="x"/>)")).IsOK());
  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, {}, true).IsOK());
  EXPECT_EQ(list.Declarations(), std::vector<std::string>{"AddCatVar(b||none|labels none|role 4)"});
  std::vector<double> cuts;
  std::vector<std::string> values;
  EXPECT_FALSE(reader.SetBinsFrTransDict("a", cuts, values));
}

TEST(MCPMMLParser, FirstOfTwoDictionariesCounts) {
  const std::string text =
      "<PMML>" + TransDict(Binned("a", Bin("binValue='1'", "leftMargin='1'"))) +
      "<DataDictionary>" + kField + "</DataDictionary>" +
      "<DataDictionary><DataField name='b'/></DataDictionary>" + TransDict("") + "</PMML>";
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, text).IsOK());
  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, {}, true).IsOK());
  EXPECT_EQ(list.Declarations(), std::vector<std::string>{"AddContVar(a||role 4)"});
}

TEST(MCPMMLParser, RootElementIsThePmmlElement) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml(kField)).IsOK());
  EXPECT_TRUE(MCXPrsUtil::TagNameEquals(*reader.GetRootElement(), "PMML"));
}

TEST(MCPMMLParser, StreamIsReadFromItsPositionAndStaysOpen) {
  std::istringstream in("no XML" + Pmml(kField));
  in.ignore(6);
  MCPMMLParser reader;
  EXPECT_TRUE(reader.ParseToDOM(in).IsOK());
  in.clear();
  in.seekg(0);
  EXPECT_EQ(in.get(), 'n');
}

TEST(MCPMMLParser, StreamThatIsAtItsEndIsAnEmptyDocument) {
  std::istringstream in(Pmml(kField));
  MCPMMLParser reader;
  ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
  EXPECT_EQ(reader.ParseToDOM(in), MCStatus(104, false));
}

TEST(MCPMMLParser, SetModelElmtNeedsAParsedDocument) {
  MCPMMLParser other;
  ASSERT_TRUE(ParseText(other, Pmml(kField, "<TreeModel/>")).IsOK());
  auto& model = *MCXPrsUtil::GetFirstChildElmt(*other.GetRootElement(), "TreeModel");

  MCPMMLParser reader;
  EXPECT_FALSE(reader.SetModelElmt(model)) << "before any parse";
  ASSERT_FALSE(ParseText(reader, "<PMML/>").IsOK());
  EXPECT_FALSE(reader.SetModelElmt(model)) << "after a failed parse";
  EXPECT_TRUE(other.SetModelElmt(model));
  EXPECT_TRUE(other.SetModelElmt(*other.GetRootElement())) << "the element is not inspected";
}

TEST(MCPMMLParser, ReadersLiveSideBySide) {
  auto first = std::make_unique<MCPMMLParser>();
  MCPMMLParser second;
  ASSERT_TRUE(ParseText(*first, Pmml(kField)).IsOK());
  ASSERT_TRUE(ParseText(second, Pmml(kField)).IsOK());
  first.reset();
  RecordingVarList list;
  EXPECT_TRUE(second.FillVarList(list, {}, false).IsOK());
  EXPECT_EQ(list.Declarations().size(), 1u);
}

}  // namespace
