// The PMML reader on documents that are cut off, damaged or built to hurt.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

#include "PmmlText.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCPMMLParser;

const std::string kDocument =
    "<?xml version='1.0' encoding='UTF-8'?>\n"
    "<!DOCTYPE PMML [<!ENTITY e 'x'>]>\n"
    "<PMML version='4.3' xmlns='http://www.dmg.org/PMML-4_3'><!-- c -->\n<DataDictionary>"
    "<DataField name='\xE5\xB9\xB4' displayName='&e;&#233;' dataType='double' "
    "optype='continuous'><Extension name='invalidRangeLower' value='1'/>"
    "<Value value='9' property='missing' displayValue='None'/></DataField>"
    "<DataField name='b' dataType='string' optype='categorical'><Value value='x'/></DataField>"
    "</DataDictionary><TransformationDictionary><DerivedField name='d'>"
    "<Discretize field='\xE5\xB9\xB4'><DiscretizeBin binValue='a'><Interval closure='openOpen' "
    "rightMargin='1'/></DiscretizeBin><DiscretizeBin binValue='b'><Interval leftMargin='1'/>"
    "</DiscretizeBin></Discretize></DerivedField></TransformationDictionary><![CDATA[z]]></PMML>";

TEST(MCPMMLParserHostile, DocumentCutAtAnyByteIsMalformed) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, kDocument).IsOK()) << reader.GetXercesMessage();
  for (std::size_t size = 0; size < kDocument.size(); ++size) {
    ASSERT_EQ(ParseText(reader, kDocument.substr(0, size)), MCStatus(104, false)) << size;
    ASSERT_THAT(reader.GetXercesMessage(), testing::StartsWith("line ")) << size;
    ASSERT_EQ(reader.GetRootElement(), nullptr);
    RecordingVarList list;
    ASSERT_EQ(reader.FillVarList(list, {}, true), MCStatus(104, false));
    ASSERT_TRUE(list.calls.empty());
  }
  EXPECT_TRUE(ParseText(reader, kDocument).IsOK());
}

TEST(MCPMMLParserHostile, DamagedBytesGiveAPublishedStatus) {
  const std::set<int> parse_codes = {0, 104, 105, 106};
  const std::set<int> fill_codes = {0, 108, 109, 110, 111};
  std::mt19937 random(20240229);
  std::uniform_int_distribution<std::size_t> position(0, kDocument.size() - 1);
  std::uniform_int_distribution<int> byte(0, 255);
  MCPMMLParser reader;
  for (int round = 0; round < 4000; ++round) {
    std::string text = kDocument;
    for (int i = 0; i <= round % 3; ++i) text[position(random)] = static_cast<char>(byte(random));
    const MCStatus parsed = ParseText(reader, text);
    ASSERT_EQ(parse_codes.count(parsed.GetCode()), 1u) << parsed.GetCode() << text;
    ASSERT_EQ(reader.GetRootElement() != nullptr, parsed.IsOK());
    ASSERT_EQ(reader.GetXercesMessage().empty(), parsed.GetCode() != 104);
    RecordingVarList list;
    const MCStatus filled = reader.FillVarList(list, {}, true);
    ASSERT_EQ(parsed.IsOK() ? fill_codes.count(filled.GetCode()) : filled == parsed, 1u) << text;
  }
}

TEST(MCPMMLParserHostile, NulBytesAreMalformed) {
  std::string text = kDocument;
  text[text.find("double")] = '\0';
  MCPMMLParser reader;
  EXPECT_EQ(ParseText(reader, text), MCStatus(104, false));
}

TEST(MCPMMLParserHostile, DeepNestingIsWalkedPast) {
  std::string deep;
  std::string close;
  for (int i = 0; i < 2000; ++i) {
    deep += "<Extension>";
    close += "</Extension>";
  }
  const FillResult result = Fill(Pmml("<DataField name='f' dataType='double' optype='continuous'>" +
                                      deep + close + "</DataField>"));
  EXPECT_EQ(result.calls, std::vector<std::string>{"AddContVar(f||role 4)"});
}

TEST(MCPMMLParserHostile, FieldWithManyValues) {
  std::string values;
  for (int i = 0; i < 50000; ++i) values += "<Value value='" + std::to_string(i) + "'/>";
  const FillResult result = Fill(
      Pmml("<DataField name='f' dataType='string' optype='ordinal'>" + values + "</DataField>"));
  EXPECT_TRUE(result.status.IsOK());
  ASSERT_EQ(result.calls.size(), 1u);
  EXPECT_THAT(result.calls[0], testing::EndsWith("'49998', '49999'|role 4)"));
}

// An entity reference inside a field is a node of its own, and what it stands for is no child.
TEST(MCPMMLParserHostile, ElementsBehindAnEntityReferenceAreNoChildren) {
  const FillResult result =
      Fill("<!DOCTYPE PMML [<!ENTITY v \"<Value value='9'/>\">]>" +
           Pmml("<DataField name='f' dataType='double' optype='x'>&v;<Value value='1'/>"
                "</DataField>"));
  EXPECT_EQ(result.calls, std::vector<std::string>{"AddCatVar(f||1|role 4)"});
}

}  // namespace
