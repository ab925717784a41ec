// The data model reader when the platform, the memory or the parser fails, on documents that are
// damaged or built to hurt, and the memory that it holds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "DataModelText.h"
#include "support/CountingMemory.h"
#include "xml/PlatformFault.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCDataModelParser;
using xml_test::PlatformFault;

std::string Document(int fields, const std::string& prefix = "field") {
  std::string text;
  for (int i = 0; i < fields; ++i) {
    text += ModelField("real", "nominal", "<Values><Value value='1'/></Values>", "",
                       prefix + std::to_string(i));
  }
  return DataModel(text);
}

void ExpectUnusable(MCDataModelParser& reader) {
  const MCStatus failure(103, false);
  EXPECT_EQ(reader.GetStatus(), failure);
  EXPECT_EQ(reader.ParseToDOM(Document(1)), failure);
  EXPECT_EQ(reader.GetStatus(), failure);
  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, false, false, 0), failure);
  EXPECT_TRUE(list.calls.empty());
}

TEST(MCDataModelParserFaults, PlatformThatDoesNotStartGives103ForEver) {
  for (const PlatformFault fault : {PlatformFault::kXMLException, PlatformFault::kOtherException}) {
    const int platforms = xml_test::LivePlatforms();
    std::unique_ptr<MCDataModelParser> reader;
    {
      const xml_test::PlatformFaultScope scope(fault);
      reader = std::make_unique<MCDataModelParser>();
    }
    ExpectUnusable(*reader);

    MCDataModelParser healthy;
    EXPECT_TRUE(healthy.ParseToDOM(Document(1)).IsOK());
    reader.reset();
    EXPECT_EQ(xml_test::LivePlatforms(), platforms + 1) << "nothing is terminated";
  }
}

TEST(MCDataModelParserFaults, ParserThatCannotBeCreatedGives103AndKeepsThePlatform) {
  CountingMemory memory;
  const int platforms = xml_test::LivePlatforms();
  {
    memory.FailAfter(0, ThrowXMLException);
    MCDataModelParser reader;
    EXPECT_FALSE(memory.CancelFailure());
    ExpectUnusable(reader);
  }
  EXPECT_EQ(xml_test::LivePlatforms(), platforms + 1) << "started and not terminated";
  xercesc::XMLPlatformUtils::Terminate();
}

TEST(MCDataModelParserFaults, ReadersStartAndStopThePlatform) {
  const int platforms = xml_test::LivePlatforms();
  {
    MCDataModelParser first;
    MCDataModelParser second;
    EXPECT_EQ(xml_test::LivePlatforms(), platforms + 2);
    (void)first.ParseToDOM("<DataModel><Fields>");
  }
  EXPECT_EQ(xml_test::LivePlatforms(), platforms) << "also after a parse that went wrong";
}

struct ModelThrownCase {
  const char* name;
  void (*fail)();
  friend void PrintTo(const ModelThrownCase& test, std::ostream* out) { *out << test.name; }
};

class ThrownWhileModelIsParsed : public testing::TestWithParam<ModelThrownCase> {};

TEST_P(ThrownWhileModelIsParsed, BecomesStatus104) {
  CountingMemory memory;
  int thrown = 0;
  for (long n = 0; n < 100000; ++n) {
    MCDataModelParser reader;
    memory.FailAfter(n, GetParam().fail);
    MCStatus status;
    ASSERT_NO_THROW(status = reader.ParseToDOM(Document(2))) << n;
    if (memory.CancelFailure()) break;  // the parse needs no more than n allocations
    ++thrown;
    ASSERT_EQ(status, MCStatus(104, false)) << n;
    ASSERT_EQ(reader.GetStatus(), status);
    RecordingVarList list;
    ASSERT_EQ(reader.FillVarList(list, false, false, 0), status);
    ASSERT_TRUE(reader.ParseToDOM(Document(2)).IsOK()) << n;
  }
  EXPECT_GT(thrown, 20);
}

INSTANTIATE_TEST_SUITE_P(
    Exceptions, ThrownWhileModelIsParsed,
    testing::Values(
        ModelThrownCase{"SAXException", [] { throw xercesc::SAXException("injected"); }},
        ModelThrownCase{
            "DOMException",
            [] { throw xercesc::DOMException(xercesc::DOMException::INVALID_STATE_ERR); }},
        ModelThrownCase{"OutOfMemoryException", ThrowOutOfMemory},
        ModelThrownCase{"bad_alloc", [] { throw std::bad_alloc(); }}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(MCDataModelParserFaults, XMLExceptionOfTheParserBecomes104) {
  CountingMemory memory;
  MCDataModelParser reader;
  memory.FailAfter(0, ThrowXMLException);
  EXPECT_EQ(reader.ParseToDOM(Document(2)), MCStatus(104, false));
  EXPECT_FALSE(memory.CancelFailure());
  EXPECT_TRUE(reader.ParseToDOM(Document(2)).IsOK());
}

// Hostile documents.

TEST(MCDataModelParserHostile, DocumentCutAtAnyByteGivesWhatTheReadPartDeserves) {
  const std::string text = "<?xml version='1.0'?>\n" + Document(2);
  const std::size_t root = text.find("<Fields>");
  const std::size_t fields = root + std::string("<Fields>").size();
  MCDataModelParser reader;
  for (std::size_t size = 0; size < text.size(); ++size) {
    const int code = size < root ? 105 : size < fields ? 113 : 104;
    ASSERT_EQ(reader.ParseToDOM(text.substr(0, size)), MCStatus(code, false)) << size;
    RecordingVarList list;
    ASSERT_EQ(reader.FillVarList(list, true, true, 2), MCStatus(code, false));
    ASSERT_TRUE(list.calls.empty());
  }
  EXPECT_TRUE(reader.ParseToDOM(text).IsOK());
}

TEST(MCDataModelParserHostile, DamagedBytesGiveAPublishedStatus) {
  const std::string document =
      "<?xml version='1.0' encoding='UTF-8'?>" +
      DataModel(ModelField("integer", "nominal",
                           "<Values><Value value='1' displayLabel='\xE5\xB9\xB4'/></Values>",
                           "role='input'") +
                ModelField("real", "continuous", "<Range minValue='1' maxValue='2'/>",
                           "role='freqWeight'", "w"));
  const std::set<int> parse_codes = {0, 104, 105, 113};
  const std::set<int> fill_codes = {0, 108, 109};
  std::mt19937 random(20240301);
  std::uniform_int_distribution<std::size_t> position(0, document.size() - 1);
  std::uniform_int_distribution<int> byte(0, 255);
  MCDataModelParser reader;
  for (int round = 0; round < 4000; ++round) {
    std::string text = document;
    for (int i = 0; i <= round % 3; ++i) text[position(random)] = static_cast<char>(byte(random));
    const MCStatus parsed = reader.ParseToDOM(text);
    ASSERT_EQ(parse_codes.count(parsed.GetCode()), 1u) << parsed.GetCode() << text;
    RecordingVarList list;
    const MCStatus filled = reader.FillVarList(list, true, true, 2);
    ASSERT_EQ(parsed.IsOK() ? fill_codes.count(filled.GetCode()) : filled == parsed, 1u) << text;
  }
}

TEST(MCDataModelParserHostile, FieldWithManyValues) {
  std::string values;
  for (int i = 0; i < 50000; ++i) values += "<Value value='" + std::to_string(i) + "'/>";
  const ModelFill result =
      FillModel(DataModel(ModelField("string", "ordinal", "<Values>" + values + "</Values>")));
  EXPECT_TRUE(result.status.IsOK());
  ASSERT_EQ(result.calls.size(), 1u);
  EXPECT_THAT(result.calls[0], testing::EndsWith("'49998', '49999'|role 0)"));
}

TEST(MCDataModelParserHostile, ElementsBehindAnEntityReferenceAreNoChildren) {
  const ModelFill result =
      FillModel("<!DOCTYPE DataModel [<!ENTITY v \"<Value value='9'/>\">]>" +
                DataModel(ModelField("string", "x", "<Values>&v;<Value value='1'/></Values>")));
  EXPECT_EQ(result.calls, std::vector<std::string>{"AddCatVar(f||'1'|role 0)"});
}

// Memory.

TEST(MCDataModelParserFaults, RepeatedParsesHoldOneDocument) {
  CountingMemory memory;
  MCDataModelParser reader;
  std::size_t after_first_hundred = 0;
  for (int i = 0; i < 2000; ++i) {
    ASSERT_TRUE(reader.ParseToDOM(Document(20, "f" + std::to_string(10000 + i) + "_")).IsOK());
    if (i == 99) after_first_hundred = memory.LiveBytes();
  }
  EXPECT_LE(memory.LiveBytes(), after_first_hundred + 1024);
}

TEST(MCDataModelParserFaults, RepeatedFailuresHoldNothing) {
  CountingMemory memory;
  const std::string texts[] = {"<DataModel><Fields>",       "<pmml/>",   "<DataModel/>", "",
                               Document(20).substr(0, 500), Document(20)};
  MCDataModelParser reader;
  std::size_t after_first_round = 0;
  for (int i = 0; i < 600; ++i) {
    for (const std::string& text : texts) (void)reader.ParseToDOM(text);
    if (i == 0) after_first_round = memory.LiveBytes();
  }
  EXPECT_LE(memory.LiveBytes(), after_first_round + 1024);
}

TEST(MCDataModelParserFaults, DestructionReturnsEverything) {
  CountingMemory memory;
  const auto use = [] {
    MCDataModelParser reader;
    ASSERT_TRUE(reader.ParseToDOM(Document(20)).IsOK());
    RecordingVarList list;
    ASSERT_TRUE(reader.FillVarList(list, false, false, 0).IsOK());
  };
  use();
  const std::size_t before = memory.LiveBytes();
  for (int i = 0; i < 10; ++i) use();
  EXPECT_EQ(memory.LiveBytes(), before);
}

}  // namespace
