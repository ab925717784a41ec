// The PMML reader on documents in other encodings, with text beyond ASCII.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PmmlText.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace {

using Texts = std::vector<std::string>;

// "name" in Chinese, "Koerper" with o umlaut, a Cyrillic word, a character beyond 16 bits.
const std::string kName = "\xE5\xA7\x93\xE5\x90\x8D";
const std::string kLabel = "K\xC3\xB6rper";
const std::string kValue = "\xD0\xB4\xD0\xB0";
const std::string kWide = "\xF0\x9D\x84\x9E";

std::string Document() {
  return Pmml("<DataField name='" + kName + "' displayName='" + kLabel +
              "' dataType='string' optype='categorical'><Value value='" + kValue +
              "' displayValue='" + kWide + "'/><Value value='" + kWide +
              "' property='missing' displayValue='" + kName + "'/></DataField>");
}

const Texts kExpected = {
    "AddCatVar(" + kName + "|" + kLabel + "|'" + kValue + "'|labels '" + kWide + "'|role 4)",
    "AddMissingValue(0|'" + kWide + "'|'" + kName + "')"};

std::string Utf16(const std::string& utf8, bool bigEndian) {
  MCXPrsUtil::MCPMMLParser platform;  // ToUTF16 needs the XML platform
  std::string bytes;
  std::vector<XMLCh> units = MCXPrsUtil::ToUTF16(utf8.c_str());
  units.insert(units.begin(), 0xFEFF);
  units.pop_back();
  for (const XMLCh unit : units) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

TEST(MCPMMLParserEncodings, Utf8TextComesThroughUnchanged) {
  const FillResult result = Fill(Document());
  EXPECT_TRUE(result.status.IsOK());
  EXPECT_EQ(result.calls, kExpected);
}

TEST(MCPMMLParserEncodings, Utf8WithByteOrderMark) {
  EXPECT_EQ(Fill("\xEF\xBB\xBF" + Document()).calls, kExpected);
}

TEST(MCPMMLParserEncodings, Utf16OfBothByteOrdersGivesTheSame) {
  for (const bool bigEndian : {false, true}) {
    EXPECT_EQ(Fill(Utf16(Document(), bigEndian)).calls, kExpected) << bigEndian;
    EXPECT_EQ(Fill(Utf16("<?xml version='1.0' encoding='UTF-16'?>" + Document(), bigEndian)).calls,
              kExpected)
        << bigEndian;
  }
}

TEST(MCPMMLParserEncodings, Latin1BecomesUtf8) {
  const FillResult result =
      Fill("<?xml version='1.0' encoding='ISO-8859-1'?>" +
           Pmml("<DataField name='K\xF6rper' dataType='double' optype='continuous'/>"));
  EXPECT_EQ(result.calls, (Texts{"AddContVar(" + kLabel + "||role 4)"}));
}

TEST(MCPMMLParserEncodings, CharacterReferencesAndEntitiesAreResolved) {
  const FillResult result =
      Fill("<!DOCTYPE PMML [<!ENTITY l 'a &#38;#38; b'>]>" +
           Pmml("<DataField name='&#x59D3;&#x540D;' displayName='&l;' dataType='double' "
                "optype='continuous'/>"));
  EXPECT_EQ(result.calls, (Texts{"AddContVar(" + kName + "|a & b|role 4)"}));
}

TEST(MCPMMLParserEncodings, NameFilterIsUtf8) {
  EXPECT_EQ(Fill(Document(), {kLabel, kName}).calls, kExpected);
  EXPECT_EQ(Fill(Document(), {kLabel}).calls, Texts());
}

TEST(MCPMMLParserEncodings, LongTextsAreWhole) {
  std::string text;
  for (int i = 0; i < 3000; ++i) text += kName + kWide + "x";
  const FillResult result =
      Fill(Pmml("<DataField name='" + text + "' dataType='double' optype='continuous'/>"), {text});
  EXPECT_EQ(result.calls, Texts{"AddContVar(" + text + "||role 4)"});
}

}  // namespace
