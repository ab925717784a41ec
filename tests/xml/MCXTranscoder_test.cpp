#include "mcxprsutil/MCXTranscoder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "xml/TestDocument.h"
#include "xml/XercesReference.h"

namespace {

using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXTranscoder;
using MCXPrsUtil::ToUTF16;
using MCXPrsUtil::ToUTF8;
using xml_test::kRounds;
using xml_test::ReferenceTranscoder;

using Units = std::basic_string<XMLCh>;

static_assert(!std::is_copy_constructible_v<MCXTranscoder>);
static_assert(!std::is_copy_assignable_v<MCXTranscoder>);

const std::vector<XMLCh> kEmpty(1, 0);

std::vector<XMLCh> Terminated(const Units& text) {
  std::vector<XMLCh> units(text.begin(), text.end());
  units.push_back(0);
  return units;
}

Units OfCodePoint(unsigned int point) {
  if (point < 0x10000) return Units(1, static_cast<XMLCh>(point));
  return {static_cast<XMLCh>(0xD7C0 + (point >> 10)), static_cast<XMLCh>(0xDC00 + (point & 0x3FF))};
}

bool IsSurrogate(unsigned int point) { return point >= 0xD800 && point <= 0xDFFF; }

// The slow full run of the exhaustive tests, on demand.
bool Exhaustive() { return std::getenv("MCX_EXHAUSTIVE_TESTS") != nullptr; }

TEST(MCXTranscoder, NullEncodingMeansUtf8) {
  MCXMLReadWrite platform;
  const MCXTranscoder transcoder(nullptr);
  EXPECT_TRUE(transcoder.isValid());
  EXPECT_EQ(transcoder.TranscodeTo(u"a\u00e9\u65e5\U0001F600"),
            "a\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80");
  EXPECT_EQ(transcoder.TranscodeFrom("a\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80"),
            Terminated(u"a\u00e9\u65e5\U0001F600"));
}

TEST(MCXTranscoder, UnknownEncodingIsNotValidAndConvertsToNothing) {
  MCXMLReadWrite platform;
  for (const std::string& name : {std::string("no such encoding"), std::string(),
                                  std::string(5'000, 'x'), std::string("\xFF\xFE")}) {
    SCOPED_TRACE(name.substr(0, 20));
    const MCXTranscoder transcoder(name.c_str());
    EXPECT_FALSE(transcoder.isValid());
    EXPECT_EQ(transcoder.TranscodeTo(u"abc"), "");
    EXPECT_EQ(transcoder.TranscodeFrom("abc"), kEmpty);
  }
}

// The long one would overflow an array of ICU's where the code page of the process is UTF-8.
TEST(MCXTranscoder, NameThatIsNotAsciiIsNotValid) {
  MCXMLReadWrite platform;
  EXPECT_FALSE(MCXTranscoder("UTF-8\xC3\xA9").isValid());
  EXPECT_FALSE(MCXTranscoder(std::string(59, '\xE6').c_str()).isValid());
  EXPECT_FALSE(MCXTranscoder(std::string(5'000, 'x').c_str()).isValid());
}

TEST(MCXTranscoder, IsNotValidBeforeThePlatformIsUp) {
  const MCXTranscoder transcoder(nullptr);
  EXPECT_FALSE(transcoder.isValid());
  EXPECT_EQ(transcoder.TranscodeTo(u"abc"), "");
  EXPECT_EQ(transcoder.TranscodeFrom("abc"), kEmpty);
  EXPECT_EQ(ToUTF16("\xFF"), kEmpty) << "even text that needs a transcoder does no harm";
}

TEST(MCXTranscoder, NullAndEmptyTextsAreEmpty) {
  MCXMLReadWrite platform;
  const MCXTranscoder transcoder(nullptr);
  EXPECT_EQ(transcoder.TranscodeTo(nullptr), "");
  EXPECT_EQ(transcoder.TranscodeTo(u""), "");
  EXPECT_EQ(transcoder.TranscodeFrom(""), kEmpty);
  EXPECT_EQ(ToUTF8(nullptr), "");
  EXPECT_EQ(ToUTF8(u""), "");
  EXPECT_EQ(ToUTF16(""), kEmpty);
}

struct MalformedCase {
  const char* rule;
  const char* bytes;
};

TEST(MCXTranscoder, MalformedUtf8IsEmptyNeverPartial) {
  const MalformedCase cases[] = {
      {"a lone trail byte", "abc\x80"},
      {"a lead byte at the end", "abc\xC3"},
      {"three bytes cut to two", "abc\xE6\x97"},
      {"four bytes cut to three", "abc\xF0\x9F\x98"},
      {"a lead byte before ASCII", "abc\xC3xyz"},
      {"an overlong solidus", "\xC0\xAF"},
      {"an overlong three-byte form", "\xE0\x80\xAF"},
      {"an overlong four-byte form", "\xF0\x80\x80\xAF"},
      {"a surrogate", "\xED\xA0\x80"},
      {"a number beyond Unicode", "\xF4\x90\x80\x80"},
      {"a five-byte form", "\xF8\x88\x80\x80\x80"},
      {"a byte that never occurs", "\xFF"},
  };
  MCXMLReadWrite platform;
  const MCXTranscoder transcoder(nullptr);
  for (const MalformedCase& c : cases) {
    SCOPED_TRACE(c.rule);
    EXPECT_EQ(ToUTF16(c.bytes), kEmpty);
    EXPECT_EQ(transcoder.TranscodeFrom(c.bytes), kEmpty);
    const std::string late = std::string(1'500, 'a') + c.bytes;
    EXPECT_EQ(ToUTF16(late.c_str()), kEmpty);
    EXPECT_EQ(transcoder.TranscodeFrom(late.c_str()), kEmpty);
  }
}

TEST(MCXTranscoder, LoneLeadSurrogateAtTheEndIsEmpty) {
  MCXMLReadWrite platform;
  const MCXTranscoder transcoder(nullptr);
  const XMLCh text[] = {'a', 0xD83D, 0};
  EXPECT_EQ(ToUTF8(text), "");
  EXPECT_EQ(transcoder.TranscodeTo(text), "");
}

TEST(MCXTranscoder, ByteOrderMarkIsACharacterLikeAnyOther) {
  MCXMLReadWrite platform;
  EXPECT_EQ(ToUTF16("\xEF\xBB\xBF"
                    "a"),
            Terminated(u"\uFEFFa"));
  EXPECT_EQ(ToUTF8(u"\uFEFFa"),
            "\xEF\xBB\xBF"
            "a");
}

TEST(MCXTranscoder, CharacterOutsideTheEncodingMakesAllEmpty) {
  MCXMLReadWrite platform;
  for (const char* encoding : {"US-ASCII", "ISO-8859-1", "windows-1252", "Shift_JIS"}) {
    SCOPED_TRACE(encoding);
    const MCXTranscoder transcoder(encoding);
    ASSERT_TRUE(transcoder.isValid());
    EXPECT_EQ(transcoder.TranscodeTo(u"abc"), "abc");
    EXPECT_EQ(transcoder.TranscodeTo(u"abc\U0001F600"), "");
    EXPECT_EQ(transcoder.TranscodeTo((Units(1'500, u'a') + u"\U0001F600").c_str()), "");
    EXPECT_EQ(transcoder.TranscodeTo(u"abc"), "abc") << "the failure left something behind";
  }
}

TEST(MCXTranscoder, ConvertsOtherEncodings) {
  MCXMLReadWrite platform;
  EXPECT_EQ(MCXTranscoder("ISO-8859-1").TranscodeTo(u"\u00e9"), "\xE9");
  EXPECT_EQ(MCXTranscoder("ISO-8859-1").TranscodeFrom("\xE9"), Terminated(u"\u00e9"));
  EXPECT_EQ(MCXTranscoder("windows-1252").TranscodeFrom("\x80"), Terminated(u"\u20ac"));
  EXPECT_EQ(MCXTranscoder("Shift_JIS").TranscodeTo(u"\u65e5"), "\x93\xFA");
  EXPECT_EQ(MCXTranscoder("Shift_JIS").TranscodeFrom("\x93\xFA"), Terminated(u"\u65e5"));
  EXPECT_EQ(MCXTranscoder("US-ASCII").TranscodeFrom("a\x80"), kEmpty);
}

TEST(MCXTranscoder, CharactersThatStraddleChunksAreWhole) {
  MCXMLReadWrite platform;
  const MCXTranscoder japanese("Shift_JIS");
  const MCXTranscoder chinese("GB18030");
  for (std::size_t before = 995; before <= 1'001; ++before) {
    SCOPED_TRACE(before);
    const std::string a(before, 'a');
    const Units wide_a(before, u'a');
    EXPECT_EQ(japanese.TranscodeTo((wide_a + u"\u65e5").c_str()), a + "\x93\xFA");
    EXPECT_EQ(japanese.TranscodeFrom((a + "\x93\xFA").c_str()), Terminated(wide_a + u"\u65e5"));
    EXPECT_EQ(chinese.TranscodeTo((wide_a + u"\U0001F600").c_str()), a + "\x94\x39\xFC\x36");
    EXPECT_EQ(chinese.TranscodeFrom((a + "\x94\x39\xFC\x36").c_str()),
              Terminated(wide_a + u"\U0001F600"));
  }
}

TEST(MCXTranscoder, TextThatIsCutOffIsEmptyAndLeavesNothingBehind) {
  MCXMLReadWrite platform;
  struct Case {
    const char* encoding;
    const char* cut;
  };
  for (const Case& c : {Case{"Shift_JIS", "a\x93"}, Case{"EUC-JP", "a\xC6"}, Case{"Big5", "a\xA4"},
                        Case{"GB18030", "a\x94\x39\xFC"}, Case{"UTF-8", "a\xE6\x97"}}) {
    SCOPED_TRACE(c.encoding);
    const MCXTranscoder transcoder(c.encoding);
    ASSERT_TRUE(transcoder.isValid());
    EXPECT_EQ(transcoder.TranscodeFrom(c.cut), kEmpty);
    EXPECT_EQ(transcoder.TranscodeFrom("A"), Terminated(u"A"));
    const XMLCh lone[] = {'a', 0xD83D, 0};
    EXPECT_EQ(transcoder.TranscodeTo(lone), "");
    EXPECT_EQ(transcoder.TranscodeTo(u"A"), "A");
  }
}

TEST(MCXTranscoder, StatefulEncodingStartsAfreshWithEveryText) {
  MCXMLReadWrite platform;
  const MCXTranscoder transcoder("ISO-2022-JP");
  ASSERT_TRUE(transcoder.isValid());
  const std::string first = transcoder.TranscodeTo(u"a\u65e5");
  ASSERT_EQ(first.substr(0, 6), "a\x1B$BF|");
  EXPECT_EQ(transcoder.TranscodeTo(u"a\u65e5"), first);
  EXPECT_EQ(transcoder.TranscodeFrom(first.c_str()), Terminated(u"a\u65e5"));
  EXPECT_EQ(transcoder.TranscodeFrom("A"), Terminated(u"A"));
}

TEST(MCXTranscoder, Utf16EncodingReadsBytesUpToTheFirstZero) {
  MCXMLReadWrite platform;
  const MCXTranscoder transcoder("UTF-16LE");
  ASSERT_TRUE(transcoder.isValid());
  EXPECT_EQ(transcoder.TranscodeFrom("\xE5\x65"), Terminated(u"\u65e5"));
  EXPECT_EQ(transcoder.TranscodeFrom("\xE5\x65\x01"), kEmpty) << "half a unit";
  EXPECT_EQ(transcoder.TranscodeTo(u"ab"), std::string("a\0b\0", 4));
}

TEST(MCXTranscoderReference, EveryCodePoint) {
  MCXMLReadWrite platform;
  const ReferenceTranscoder reference;
  for (unsigned int point = 1; point < 0x110000; ++point) {
    const Units text = OfCodePoint(point);
    const std::string expected = reference.To(text);
    ASSERT_EQ(ToUTF8(text.c_str()), expected) << point;
    if (IsSurrogate(point)) continue;
    ASSERT_FALSE(expected.empty()) << point;
    ASSERT_EQ(ToUTF16(expected.c_str()), Terminated(text)) << point;
  }
}

TEST(MCXTranscoderReference, SurrogatesInAllCompany) {
  const XMLCh interesting[] = {'a',    0x7F,   0x80,   0x7FF,  0x800,  0xD7FF, 0xD800, 0xD801,
                               0xDBFF, 0xDC00, 0xDC01, 0xDFFF, 0xE000, 0xFFFD, 0xFFFE, 0xFFFF};
  MCXMLReadWrite platform;
  const ReferenceTranscoder reference;
  for (const XMLCh a : interesting) {
    for (const XMLCh b : interesting) {
      for (const XMLCh c : interesting) {
        const Units text = {a, b, c};
        ASSERT_EQ(ToUTF8(text.c_str()), reference.To(text)) << a << ' ' << b << ' ' << c;
        ASSERT_EQ(ToUTF8(text.substr(1).c_str()), reference.To(text.substr(1)));
      }
    }
  }
}

TEST(MCXTranscoderReference, EverySequenceOfOneAndTwoBytes) {
  MCXMLReadWrite platform;
  const ReferenceTranscoder reference;
  for (int a = 1; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      const char text[] = {static_cast<char>(a), static_cast<char>(b), 0};
      ASSERT_EQ(ToUTF16(text), reference.From(text)) << a << ' ' << b;
    }
  }
}

// All sequences whose first two bytes can begin a character, and of the others those whose third
// byte lies at the edge of a range; every one of the 16.7 million in the exhaustive run.
TEST(MCXTranscoderReference, EverySequenceOfThreeBytes) {
  MCXMLReadWrite platform;
  const ReferenceTranscoder reference;
  constexpr int kThinning = kRounds < 100'000 ? 8 : 1;  // under sanitizers
  const auto isEdge = [](int c) { return c == 0x7F || c == 0x80 || c == 0xBF; };
  for (int a = Exhaustive() ? 1 : 0x80; a < 256; ++a) {
    for (int b = 1; b < 256; ++b) {
      const bool begins = a >= 0xE0 && a <= 0xEF && (b & 0xC0) == 0x80;
      for (int c = 1; c < 256; ++c) {
        if (!Exhaustive() && !begins && (!isEdge(c) || b % kThinning != 0)) continue;
        const char text[] = {static_cast<char>(a), static_cast<char>(b), static_cast<char>(c), 0};
        ASSERT_EQ(ToUTF16(text), reference.From(text)) << a << ' ' << b << ' ' << c;
      }
    }
  }
}

TEST(MCXTranscoderReference, RandomSequencesOfFourBytes) {
  MCXMLReadWrite platform;
  const ReferenceTranscoder reference;
  std::mt19937 random(1);
  for (int i = 0; i < kRounds / 4; ++i) {
    const auto bits = static_cast<unsigned int>(random());
    // Mostly near-misses: a lead byte F0 to F7 and trail bytes, each now and then out of range.
    std::string text = {static_cast<char>(0xF0 | (bits & 7)),
                        static_cast<char>(0x80 | (bits >> 3 & 0x3F)),
                        static_cast<char>(0x80 | (bits >> 9 & 0x3F)),
                        static_cast<char>(0x80 | (bits >> 15 & 0x3F))};
    if ((bits >> 30) == 0) text[bits >> 21 & 3] = static_cast<char>(bits >> 23);
    ASSERT_EQ(ToUTF16(text.c_str()), reference.From(text.c_str())) << bits;
  }
}

TEST(MCXTranscoderReference, LongTextsOverTheChunks) {
  MCXMLReadWrite platform;
  const ReferenceTranscoder reference;
  const MCXTranscoder transcoder(nullptr);
  std::mt19937 random(2);
  const unsigned int limits[] = {0x80, 0x800, 0x10000, 0x110000};
  for (int i = 0; i < kRounds / 1'000 + 30; ++i) {
    Units text;
    const std::size_t length = random() % 4'000;
    while (text.size() < length) {
      const auto point = static_cast<unsigned int>(1 + random() % (limits[random() % 4] - 1));
      if (!IsSurrogate(point)) text += OfCodePoint(point);
    }
    const std::string bytes = reference.To(text);
    ASSERT_EQ(bytes.empty(), text.empty());
    ASSERT_EQ(ToUTF8(text.c_str()), bytes);
    ASSERT_EQ(transcoder.TranscodeTo(text.c_str()), bytes);
    ASSERT_EQ(ToUTF16(bytes.c_str()), Terminated(text));
    ASSERT_EQ(transcoder.TranscodeFrom(bytes.c_str()), Terminated(text));
  }
}

TEST(MCXTranscoder, FreeFunctionsRunOnSeveralThreads) {
  MCXMLReadWrite platform;
  const auto convert = [] {
    for (int i = 0; i < 2'000; ++i) {
      EXPECT_EQ(ToUTF8(u"a\u00e9"), "a\xC3\xA9");
      EXPECT_EQ(ToUTF16("a\xC3\xA9"), Terminated(u"a\u00e9"));
      EXPECT_EQ(ToUTF16("\xFF"), kEmpty);
    }
  };
  std::thread other(convert);
  convert();
  other.join();
}

}  // namespace
