#include "mcxprsutil/MCXInputSource.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <sstream>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/BinInputStream.hpp>

#include "xml/TestDocument.h"

namespace {

using MCXPrsUtil::MCXInputSource;
using MCXPrsUtil::MCXMLReadWrite;
using StreamPtr = std::unique_ptr<xercesc::BinInputStream>;

std::string Read(xercesc::BinInputStream& stream, XMLSize_t count) {
  std::string bytes(count, '?');
  bytes.resize(stream.readBytes(reinterpret_cast<XMLByte*>(bytes.data()), count));
  return bytes;
}

// A stream that has one byte ready at a time.
class DripBuffer : public std::streambuf {
 public:
  explicit DripBuffer(std::string text) : text_(std::move(text)) {}

 protected:
  int_type underflow() override {
    if (next_ == text_.size()) return traits_type::eof();
    setg(&text_[next_], &text_[next_], &text_[next_] + 1);
    ++next_;
    return traits_type::to_int_type(*gptr());
  }

 private:
  std::string text_;
  std::size_t next_ = 0;
};

TEST(MCXInputSource, NamesItselfIstream) {
  MCXMLReadWrite platform;
  std::istringstream in("x");
  const MCXInputSource source(in);
  EXPECT_EQ(xml_test::Utf8(source.getSystemId()), "istream");
  EXPECT_EQ(source.getPublicId(), nullptr);
  EXPECT_EQ(source.getEncoding(), nullptr);
  EXPECT_EQ(source.getMemoryManager(), xercesc::XMLPlatformUtils::fgMemoryManager);
}

TEST(MCXInputSource, StreamReadsToTheEndAndTellsThePosition) {
  MCXMLReadWrite platform;
  std::istringstream in("abcdefg");
  const MCXInputSource source(in);
  const StreamPtr stream(source.makeStream());
  EXPECT_EQ(stream->curPos(), 0u);
  EXPECT_EQ(Read(*stream, 4), "abcd");
  EXPECT_EQ(stream->curPos(), 4u);
  EXPECT_EQ(Read(*stream, 4), "efg");
  EXPECT_EQ(Read(*stream, 4), "");
  EXPECT_EQ(Read(*stream, 0), "");
}

TEST(MCXInputSource, PositionOfAFailedStreamIsThatOfTellg) {
  MCXMLReadWrite platform;
  std::istringstream in("a");
  in.setstate(std::ios::failbit);
  const StreamPtr stream(MCXInputSource(in).makeStream());
  EXPECT_EQ(stream->curPos(), std::numeric_limits<XMLFilePos>::max());
  EXPECT_EQ(Read(*stream, 1), "");
}

TEST(MCXInputSource, StreamHasNoContentTypeAndNoEncoding) {
  MCXMLReadWrite platform;
  std::istringstream in("a");
  const StreamPtr stream(MCXInputSource(in).makeStream());
  EXPECT_EQ(stream->getContentType(), nullptr);
  EXPECT_EQ(stream->getEncoding(), nullptr);
}

TEST(MCXInputSource, EveryStreamIsBoundToTheSameInput) {
  MCXMLReadWrite platform;
  std::istringstream in("abcd");
  const MCXInputSource source(in);
  const StreamPtr first(source.makeStream());
  const StreamPtr second(source.makeStream());
  EXPECT_EQ(Read(*first, 2), "ab");
  EXPECT_EQ(Read(*second, 2), "cd");
}

TEST(MCXInputSource, LeavesTheInputUsable) {
  MCXMLReadWrite platform;
  std::istringstream in("abcd");
  { const StreamPtr stream(MCXInputSource(in).makeStream()); }
  EXPECT_TRUE(in.good());
  EXPECT_EQ(in.get(), 'a');
}

TEST(MCXInputSource, FillsTheBufferFromInputThatDrips) {
  MCXMLReadWrite platform;
  DripBuffer buffer("abcdefg");
  std::istream in(&buffer);
  const StreamPtr stream(MCXInputSource(in).makeStream());
  EXPECT_EQ(Read(*stream, 5), "abcde");
  EXPECT_EQ(Read(*stream, 5), "fg");
}

TEST(MCXInputSource, ServesAParserOfAnyKind) {
  MCXMLReadWrite platform;
  std::istringstream in("<a><b/></a>");
  const MCXInputSource source(in);
  xercesc::XercesDOMParser parser;
  parser.parse(source);
  ASSERT_NE(parser.getDocument(), nullptr);
  EXPECT_EQ(xml_test::Tag(parser.getDocument()->getDocumentElement()), "a");
}

}  // namespace
