// The PMML reader when the platform, the memory, the stream or the parser fails; and the memory
// that it holds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <istream>
#include <memory>
#include <new>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "PmmlText.h"
#include "support/CountingMemory.h"
#include "xml/PlatformFault.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCPMMLParser;
using xml_test::PlatformFault;

std::string Document(int fields, const std::string& prefix = "field") {
  std::string text;
  for (int i = 0; i < fields; ++i) {
    text += "<DataField name='" + prefix + std::to_string(i) +
            "' dataType='double' optype='continuous'><Value value='1'/></DataField>";
  }
  return Pmml(text);
}

void ExpectUnusable(MCPMMLParser& reader) {
  const MCStatus failure(103, false);
  EXPECT_EQ(reader.GetStatus(), failure);
  EXPECT_EQ(ParseText(reader, Document(1)), failure);
  EXPECT_EQ(reader.GetStatus(), failure);
  EXPECT_EQ(reader.GetRootElement(), nullptr);
  EXPECT_EQ(reader.GetXercesMessage(), "");
  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, {}, false), failure);
  EXPECT_TRUE(list.calls.empty());
}

TEST(MCPMMLParserFaults, PlatformThatDoesNotStartGives103ForEver) {
  for (const PlatformFault fault : {PlatformFault::kXMLException, PlatformFault::kOtherException}) {
    const int platforms = xml_test::LivePlatforms();
    std::unique_ptr<MCPMMLParser> reader;
    {
      const xml_test::PlatformFaultScope scope(fault);
      reader = std::make_unique<MCPMMLParser>();
    }
    ExpectUnusable(*reader);

    MCPMMLParser healthy;
    ASSERT_TRUE(ParseText(healthy, Document(1)).IsOK());
    EXPECT_FALSE(reader->SetModelElmt(*healthy.GetRootElement()));
    reader.reset();
    EXPECT_EQ(xml_test::LivePlatforms(), platforms + 1) << "nothing is terminated";
  }
}

TEST(MCPMMLParserFaults, ParserThatCannotBeCreatedGives103AndKeepsThePlatform) {
  CountingMemory memory;
  const int platforms = xml_test::LivePlatforms();
  {
    memory.FailAfter(0, ThrowXMLException);
    MCPMMLParser reader;
    EXPECT_FALSE(memory.CancelFailure());
    ExpectUnusable(reader);
  }
  EXPECT_EQ(xml_test::LivePlatforms(), platforms + 1) << "started and not terminated";
  xercesc::XMLPlatformUtils::Terminate();
}

TEST(MCPMMLParserFaults, ReadersStartAndStopThePlatform) {
  const int platforms = xml_test::LivePlatforms();
  {
    MCPMMLParser first;
    MCPMMLParser second;
    EXPECT_EQ(xml_test::LivePlatforms(), platforms + 2);
  }
  EXPECT_EQ(xml_test::LivePlatforms(), platforms);
}

// What the parser itself throws in the middle of a parse.

struct ThrownCase {
  const char* name;
  void (*fail)();
  friend void PrintTo(const ThrownCase& test, std::ostream* out) { *out << test.name; }
};

class ThrownByTheParser : public testing::TestWithParam<ThrownCase> {};

TEST_P(ThrownByTheParser, BecomesStatus104WithItsMessage) {
  CountingMemory memory;
  int thrown = 0;
  for (long n = 0; n < 100000; ++n) {
    MCPMMLParser reader;
    memory.FailAfter(n, GetParam().fail);
    const MCStatus status = ParseText(reader, Document(2));
    if (memory.CancelFailure()) break;  // the parse needs no more than n allocations
    ++thrown;
    ASSERT_EQ(status, MCStatus(104, false)) << n;
    ASSERT_NE(reader.GetXercesMessage(), "") << n;
    ASSERT_EQ(reader.GetRootElement(), nullptr);
    ASSERT_TRUE(ParseText(reader, Document(2)).IsOK()) << n;
    ASSERT_EQ(reader.GetXercesMessage(), "");
  }
  EXPECT_GT(thrown, 20);
}

INSTANTIATE_TEST_SUITE_P(
    Exceptions, ThrownByTheParser,
    testing::Values(
        ThrownCase{"SAXException", [] { throw xercesc::SAXException("injected"); }},
        ThrownCase{"DOMException",
                   [] { throw xercesc::DOMException(xercesc::DOMException::INVALID_STATE_ERR); }}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(MCPMMLParserFaults, XMLExceptionOfTheParserBecomes104WithItsMessage) {
  CountingMemory memory;
  MCPMMLParser reader;
  memory.FailAfter(0, ThrowXMLException);
  EXPECT_EQ(ParseText(reader, Document(2)), MCStatus(104, false));
  EXPECT_FALSE(memory.CancelFailure());
  EXPECT_NE(reader.GetXercesMessage(), "");
  EXPECT_TRUE(ParseText(reader, Document(2)).IsOK());
}

TEST(MCPMMLParserFaults, LackOfMemoryPassesAndLeavesAUsableReader) {
  CountingMemory memory;
  int thrown = 0;
  for (long n = 0; n < 100000; n += 1 + n / 16) {
    MCPMMLParser reader;
    ASSERT_TRUE(ParseText(reader, Document(1)).IsOK());
    memory.FailAfter(n, ThrowOutOfMemory);
    std::istringstream in(Document(50));
    bool passed = false;
    try {
      (void)reader.ParseToDOM(in);
    } catch (const xercesc::OutOfMemoryException&) {
      passed = true;
    }
    if (memory.CancelFailure()) break;
    ++thrown;
    ASSERT_TRUE(passed) << n;
    ASSERT_EQ(reader.GetStatus(), MCStatus(104, false));
    ASSERT_EQ(reader.GetRootElement(), nullptr);
    RecordingVarList list;
    ASSERT_EQ(reader.FillVarList(list, {}, false), MCStatus(104, false));
    ASSERT_TRUE(ParseText(reader, Document(1)).IsOK()) << n;
  }
  EXPECT_GT(thrown, 20);
}

// Streams.

// Gives `text`, then throws.
class DyingBuffer : public std::streambuf {
 public:
  explicit DyingBuffer(std::string text) : text_(std::move(text)) {
    setg(text_.data(), text_.data(), text_.data() + text_.size());
  }

 protected:
  int_type underflow() override { throw std::runtime_error("the line is dead"); }

 private:
  std::string text_;
};

// Gives `text` one byte at a time.
class DrippingBuffer : public std::streambuf {
 public:
  explicit DrippingBuffer(std::string text) : text_(std::move(text)) {}

 protected:
  int_type underflow() override {
    if (next_ == text_.size()) return traits_type::eof();
    char* byte = text_.data() + next_++;
    setg(byte, byte, byte + 1);
    return traits_type::to_int_type(*byte);
  }

 private:
  std::string text_;
  std::size_t next_ = 0;
};

TEST(MCPMMLParserFaults, ExceptionOfTheStreamPassesAndLeavesAUsableReader) {
  const std::string text = Document(2000);
  MCPMMLParser reader;
  for (const std::size_t size : {std::size_t{0}, std::size_t{5}, text.size() / 2}) {
    ASSERT_TRUE(ParseText(reader, Document(1)).IsOK());
    DyingBuffer buffer(text.substr(0, size));
    std::istream in(&buffer);
    in.exceptions(std::ios::badbit);
    EXPECT_THROW((void)reader.ParseToDOM(in), std::runtime_error);
    EXPECT_EQ(reader.GetStatus(), MCStatus(104, false));
    EXPECT_EQ(reader.GetRootElement(), nullptr);
    EXPECT_EQ(reader.GetXercesMessage(), "");
    RecordingVarList list;
    EXPECT_EQ(reader.FillVarList(list, {}, false), MCStatus(104, false));
  }
  EXPECT_TRUE(ParseText(reader, text).IsOK());
}

TEST(MCPMMLParserFaults, StreamThatBreaksQuietlyIsATruncatedDocument) {
  const std::string text = Document(2000);
  DyingBuffer buffer(text.substr(0, text.size() / 2));
  std::istream in(&buffer);
  MCPMMLParser reader;
  EXPECT_EQ(reader.ParseToDOM(in), MCStatus(104, false));
  EXPECT_THAT(reader.GetXercesMessage(), testing::StartsWith("line "));
}

TEST(MCPMMLParserFaults, StreamThatGivesOneByteAtATimeIsRead) {
  DrippingBuffer buffer(Document(100));
  std::istream in(&buffer);
  MCPMMLParser reader;
  EXPECT_TRUE(reader.ParseToDOM(in).IsOK());
  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, {}, false).IsOK());
  EXPECT_EQ(list.Size(), 100u);
}

// Memory.

TEST(MCPMMLParserFaults, RepeatedParsesHoldOneDocument) {
  CountingMemory memory;
  MCPMMLParser reader;
  std::size_t after_first_hundred = 0;
  for (int i = 0; i < 4000; ++i) {
    const std::string prefix = "f" + std::to_string(10000 + i) + "_";
    ASSERT_TRUE(ParseText(reader, Document(20, prefix)).IsOK());
    if (i == 99) after_first_hundred = memory.LiveBytes();
  }
  EXPECT_LE(memory.LiveBytes(), after_first_hundred + 1024);
}

TEST(MCPMMLParserFaults, RepeatedFailuresHoldNothing) {
  CountingMemory memory;
  const std::string texts[] = {"<PMML><DataDictionary>",    "<pmml/>",   "<PMML/>", "",
                               Document(20).substr(0, 500), Document(20)};
  MCPMMLParser reader;
  std::size_t after_first_round = 0;
  for (int i = 0; i < 600; ++i) {
    for (const std::string& text : texts) (void)ParseText(reader, text);
    if (i == 0) after_first_round = memory.LiveBytes();
  }
  EXPECT_LE(memory.LiveBytes(), after_first_round + 1024);
}

TEST(MCPMMLParserFaults, DestructionReturnsEverything) {
  CountingMemory memory;
  const auto use = [] {
    MCPMMLParser reader;
    ASSERT_TRUE(ParseText(reader, Document(20)).IsOK());
    RecordingVarList list;
    ASSERT_TRUE(reader.FillVarList(list, {}, false).IsOK());
  };
  use();
  const std::size_t before = memory.LiveBytes();
  for (int i = 0; i < 10; ++i) use();
  EXPECT_EQ(memory.LiveBytes(), before);
}

}  // namespace
