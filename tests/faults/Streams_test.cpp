// Streams that end, break and throw at any byte, and that come in small pieces, through everything
// that reads from a stream.
#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <utility>
#include <xercesc/dom/DOM.hpp>

#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCSettingsParser.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXParsePolicy.h"
#include "support/CountingMemory.h"
#include "support/OddStream.h"
#include "support/VarListText.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCXParsePolicy;
using test_support::LineIsDead;
using test_support::OddStream;
using test_support::StreamEnd;

constexpr char kSmall[] =
    "<PMML><MiningBuildTask><Extension><Parameters/></Extension></MiningBuildTask><DataDictionary>"
    "<DataField name='f' dataType='string' optype='categorical'><Value value='\xC3\xA9'/>"
    "</DataField></DataDictionary></PMML>";

// The same with so many fields that the parser fetches its input in several portions.
std::string Large() {
  const std::string small = kSmall;
  const std::size_t first = small.find("<DataField");
  const std::size_t behind = small.find("</DataDictionary>");
  const std::string field = small.substr(first, behind - first);
  std::string text = small.substr(0, first);
  for (int i = 0; i < 1200; ++i) {
    std::string one = field;
    text += one.replace(one.find("'f'"), 3, "'f" + std::to_string(i) + "'");
  }
  return text + small.substr(behind);
}

// What reads from a stream, and what it makes of the whole document.

struct XmlLayer {
  // What stood before a break is kept; that it is broken is told beside the status.
  bool Read(std::istream& in) { return reader.ParseToDOM(in).IsOK() && reader.IsWellFormed(); }
  bool HoldsNothing() const {
    return reader.GetDocument() == nullptr && !reader.IsWellFormed() &&
           reader.GetXercesMessage().empty();
  }
  std::string Content() const {
    return std::to_string(reader.GetDocument()
                              ->getDocumentElement()
                              ->getElementsByTagName(u"DataField")
                              ->getLength());
  }

  MCXPrsUtil::MCXMLReadWrite reader;
};

template <class Reader>
bool HoldsNothing(const Reader& reader) {
  return reader.GetStatus() == MCStatus(104, false) && reader.GetRootElement() == nullptr &&
         reader.GetXercesMessage().empty();
}

template <class Reader>
bool ReadOrRefuse(Reader& reader, std::istream& in) {
  const MCStatus status = reader.ParseToDOM(in);
  if (status.IsOK()) return true;
  EXPECT_EQ(status, MCStatus(104, false));
  EXPECT_NE(reader.GetXercesMessage(), "");
  return false;
}

struct Pmml {
  bool Read(std::istream& in) { return ReadOrRefuse(reader, in); }
  bool HoldsNothing() const { return ::HoldsNothing(reader); }
  std::string Content() const {
    MCVarList list;
    EXPECT_TRUE(reader.FillVarList(list, {}, false).IsOK());
    return test_support::TextOf(list);
  }

  MCXPrsUtil::MCPMMLParser reader;
};

struct Settings {
  bool Read(std::istream& in) { return ReadOrRefuse(reader, in); }
  bool HoldsNothing() const { return ::HoldsNothing(reader); }
  std::string Content() const {
    MCVarList list;
    EXPECT_TRUE(reader.FillVarList(list, false).IsOK());
    return test_support::TextOf(list);
  }

  MCXPrsUtil::MCSettingsParser reader;
};

// A document, and what a new reader makes of it.
template <class Reader>
struct Whole {
  explicit Whole(std::string the_text) : text(std::move(the_text)) {
    Reader reader;
    std::istringstream in(text);
    EXPECT_TRUE(reader.Read(in));
    content = reader.Content();
  }

  const std::string text;
  std::string content;
};

template <class Reader>
class Streams : public testing::Test {
 protected:
  // Reads the first `size` bytes, and then the whole as if nothing had happened.
  void ReadCut(const Whole<Reader>& whole, std::size_t size, std::size_t piece, StreamEnd end) {
    const std::string& text = whole.text;
    SCOPED_TRACE("cut at " + std::to_string(size) + ", pieces of " + std::to_string(piece) +
                 ", end " + std::to_string(static_cast<int>(end)));
    OddStream in(text.substr(0, size), piece, end);
    if (end == StreamEnd::kThrows) {
      ExpectThrow(in);
    } else {
      // What a stream gave in the portion in which it breaks is lost, even if it is all there is.
      EXPECT_EQ(reader_.Read(in), size == text.size() && end == StreamEnd::kEof);
    }
    ExpectReads(whole);
  }

  void ExpectThrow(std::istream& in) {
    try {
      (void)reader_.Read(in);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const LineIsDead& thrown) {
      EXPECT_EQ(thrown.code, 5);
    }
    EXPECT_TRUE(reader_.HoldsNothing());
  }

  void ExpectReads(const Whole<Reader>& whole) {
    std::istringstream in(whole.text);
    ASSERT_TRUE(reader_.Read(in));
    EXPECT_EQ(reader_.Content(), whole.content);
  }

  Reader reader_;
};

// The same in a process that limits what it reads.
template <class Reader>
struct Limited : Reader {
  Limited() { MCXParsePolicy::SetForProcess(MCXParsePolicy::Hardened()); }
  ~Limited() { MCXParsePolicy::SetForProcess(MCXParsePolicy()); }
};

using StreamReaders = testing::Types<XmlLayer, Pmml, Settings, Limited<XmlLayer>, Limited<Pmml>>;
TYPED_TEST_SUITE(Streams, StreamReaders, );

constexpr StreamEnd kEnds[] = {StreamEnd::kEof, StreamEnd::kBreaks, StreamEnd::kThrows};

TYPED_TEST(Streams, MayEndAtAnyByte) {
  const Whole<TypeParam> whole(kSmall);
  for (const StreamEnd end : kEnds) {
    for (std::size_t size = 0; size <= whole.text.size(); ++size) {
      this->ReadCut(whole, size, 1000, end);
    }
  }
}

// The parser fetches 48 KiB at a time.
TYPED_TEST(Streams, MayEndBetweenThePortionsThatTheParserFetches) {
  constexpr std::size_t kPortion = 48 * 1024;
  const Whole<TypeParam> whole(Large());
  ASSERT_GT(whole.text.size(), 2 * kPortion);
  for (const StreamEnd end : kEnds) {
    for (const std::size_t size : {kPortion - 1, kPortion, 2 * kPortion + 1, whole.text.size()}) {
      this->ReadCut(whole, size, 7, end);
    }
  }
}

TYPED_TEST(Streams, MayComeInPiecesOfAnySize) {
  for (const std::string& text : {std::string(kSmall), Large()}) {
    const Whole<TypeParam> whole(text);
    for (const std::size_t piece : {1u, 2u, 3u, 1021u}) {
      OddStream in(text, piece, StreamEnd::kEof);
      ASSERT_TRUE(this->reader_.Read(in)) << piece;
      EXPECT_EQ(this->reader_.Content(), whole.content);
    }
  }
}

TYPED_TEST(Streams, MayBeOfNoUseFromTheBeginning) {
  const Whole<TypeParam> whole(kSmall);
  for (const std::ios::iostate state : {std::ios::eofbit, std::ios::failbit, std::ios::badbit}) {
    std::istringstream in(kSmall);
    in.setstate(state);
    EXPECT_FALSE(this->reader_.Read(in));
    this->ExpectReads(whole);
  }
}

// What is malformed before the stream throws decides, so that the exception may stay away; it must
// not leave the reader half way then, either.
TYPED_TEST(Streams, MayThrowBehindWhatIsMalformed) {
  const Whole<TypeParam> whole(kSmall);
  for (const std::string text : {"<PMML></x>", "no XML", "<PMML a='1' a='1'>"}) {
    OddStream in(text, 1000, StreamEnd::kThrows);
    try {
      EXPECT_FALSE(this->reader_.Read(in));
    } catch (const LineIsDead&) {
      EXPECT_TRUE(this->reader_.HoldsNothing());
    }
    this->ExpectReads(whole);
  }
}

template <class Reader>
void ReadAll(const std::string& text) {
  for (const StreamEnd end : kEnds) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, text.size() / 2, text.size()}) {
      Reader reader;
      OddStream in(text.substr(0, size), 100, end);
      try {
        (void)reader.Read(in);
      } catch (const LineIsDead&) {
      }
    }
  }
}

// Before the fixture's reader, which would hold the platform with other memory.
template <class Reader>
class StreamMemory : public testing::Test {};
TYPED_TEST_SUITE(StreamMemory, StreamReaders, );

TYPED_TEST(StreamMemory, NothingIsLostHoweverAStreamEnds) {
  const CountingMemory memory;
  const std::string texts[] = {kSmall, Large()};
  for (const std::string& text : texts) ReadAll<TypeParam>(text);
  const std::size_t before = memory.LiveBlocks();
  for (const std::string& text : texts) ReadAll<TypeParam>(text);
  EXPECT_EQ(memory.LiveBlocks(), before);
}

}  // namespace
