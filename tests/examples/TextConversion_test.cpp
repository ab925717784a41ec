// Shows that it makes no difference where the pieces of a text end.
#include "TextConversion.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Encodings.h"

namespace {

using examples::ConverterPtr;
using examples::LossyPlaces;
using examples::OpenEncoding;
using examples::TextConversion;

constexpr std::size_t kWhole = 1 << 12;

struct Result {
  std::string text;
  LossyPlaces lossy;
};

// Converts in pieces of `size` bytes, with buffers of that size.
Result Convert(const char* from, const char* to, const std::string& text, std::size_t size) {
  const ConverterPtr source = OpenEncoding(from);
  const ConverterPtr target = OpenEncoding(to);
  TextConversion conversion(*source, *target, size);
  Result result;
  conversion.BeginText();
  for (std::size_t i = 0; i < text.size(); i += size) {
    conversion.Convert(std::string_view(text).substr(i, size), result.text);
  }
  conversion.EndText(result.text);
  conversion.EndOutput(result.text);
  result.lossy = conversion.Lossy();
  return result;
}

void ExpectSame(const Result& a, const Result& b, const std::string& what) {
  EXPECT_EQ(a.text, b.text) << what;
  EXPECT_EQ(a.lossy.count, b.lossy.count) << what;
  EXPECT_EQ(a.lossy.firstOffset, b.lossy.firstOffset) << what;
  EXPECT_EQ(a.lossy.first, b.lossy.first) << what;
}

// SCSU and the LMBCS encodings look ahead or back, and have several ways to write a text.
bool HasOneWay(std::string_view name) { return name != "SCSU" && name.substr(0, 5) != "LMBCS"; }

std::vector<const char*> AllEncodings() {
  std::vector<const char*> names;
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    const char* name = ucnv_getAvailableName(i);
    if (HasOneWay(name)) names.push_back(name);
  }
  return names;
}

std::string RandomBytes(std::mt19937& random, std::size_t count) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(random() & 0xFF);
  return bytes;
}

// Characters of several scripts, each from one to four bytes long.
const char kManyScripts[] =
    "Az~ \xC3\xA9\xC3\x9F\xE2\x82\xAC \xD0\x96\xD0\xB8 \xCE\x95\xCE\xBB \xD7\xA9 \xD8\xB4 "
    "\xE6\x97\xA5\xE6\x9C\xAC a \xE3\x81\x82\xE3\x82\xA2 \xEA\xB0\x80 \xF0\xA0\xAE\xB7\xF0\x9F"
    "\x98\x80 \xE0\xB8\x81 z\xE4\xBD\xA0\xE5\xA5\xBD\n";

TEST(TextConversion, PiecesOfAnySizeGiveTheSameCharactersInEveryEncoding) {
  const std::vector<const char*> names = AllEncodings();
  ASSERT_GT(names.size(), 200U);
  for (const char* name : names) {
    const Result whole = Convert("UTF-8", name, kManyScripts, kWhole);
    for (const std::size_t size : {1U, 2U, 3U, 5U, 7U}) {
      ExpectSame(Convert("UTF-8", name, kManyScripts, size), whole,
                 std::string("to ") + name + " by " + std::to_string(size));
    }
    const Result back = Convert(name, "UTF-8", whole.text, kWhole);
    for (const std::size_t size : {1U, 2U, 3U, 5U, 7U}) {
      ExpectSame(Convert(name, "UTF-8", whole.text, size), back,
                 std::string("from ") + name + " by " + std::to_string(size));
    }
  }
}

TEST(TextConversion, PiecesOfAnySizeGiveTheSameFromBytesThatMeanNothing) {
  std::mt19937 random(20240229);
  for (const char* name : {"UTF-8", "windows-31j", "GBK", "Big5", "KS_C_5601-1987", "EUC-JP",
                           "gb18030", "cp1252", "UTF-16", "UTF-16LE", "UTF-32BE"}) {
    for (int round = 0; round < 20; ++round) {
      const std::string bytes = RandomBytes(random, 40);
      const Result whole = Convert(name, "UTF-8", bytes, kWhole);
      for (const std::size_t size : {1U, 2U, 3U, 4U, 7U, 39U}) {
        ExpectSame(Convert(name, "UTF-8", bytes, size), whole,
                   std::string(name) + " by " + std::to_string(size));
      }
    }
  }
}

TEST(TextConversion, EveryPlaceOfABorderLeavesShiftSequencesWhole) {
  const std::string text = "a\xE3\x81\x82z\xE6\x97\xA5\xE6\x9C\xAC\nb\xE3\x82\xA2\n";
  for (const char* name : {"ISO-2022-JP", "ISO-2022-KR", "ISO-2022-CN", "HZ", "UTF-7", "SCSU"}) {
    const std::string encoded = Convert("UTF-8", name, text, kWhole).text;
    const Result whole = Convert(name, "UTF-8", encoded, kWhole);
    for (std::size_t size = 1; size <= encoded.size(); ++size) {
      ExpectSame(Convert(name, "UTF-8", encoded, size), whole,
                 std::string(name) + " by " + std::to_string(size));
    }
  }
}

struct LossyCase {
  const char* rule;
  const char* from;
  const char* to;
  std::string text;
  LossyPlaces expected;
  std::string output;
};

TEST(TextConversion, CountsLossyPlacesAndTellsTheFirst) {
  const LossyCase cases[] = {
      {"nothing is lost", "UTF-8", "cp1252", "caf\xC3\xA9", {0, 0, ""}, "caf\xE9"},
      {"characters the target lacks",
       "UTF-8",
       "cp1252",
       "a\xE2\x82\xAC\xCE\x95\xF0\x9F\x98\x80",
       {2, 4, "the target encoding has no U+0395"},
       "a\x80??"},
      {"malformed bytes, counted by sequence",
       "UTF-8",
       "UTF-8",
       "ab\xE2\x82"
       "c\xFF",
       {2, 2, "E2 82 is malformed"},
       "ab?c?"},
      {"bytes without a character",
       "932",
       "UTF-8",
       "x\x81\xAD",
       {1, 1, "81 AD stands for no character"},
       "x?"},
      {"an end within a character", "932", "UTF-8", "xyz\x81", {1, 3, "81 is malformed"}, "xyz?"},
      {"an invisible character is left out",
       "UTF-8",
       "cp1252",
       "a\xC2\xAD\xE2\x80\x8B"
       "b",
       {1, 3, "the target encoding has no U+200B"},
       "a\xAD"
       "b"},
      {"a byte order mark has no place in a code page",
       "UTF-8",
       "cp1252",
       "\xEF\xBB\xBF"
       "a",
       {1, 0, "the target encoding has no U+FEFF"},
       "a"},
      {"bytes behind a shift sequence",
       "ISO-2022-JP",
       "UTF-8",
       "x\x1B$B$\"~~\x1B(Bz",
       {1, 6, "7E 7E stands for no character"},
       "x\xE3\x81\x82?z"},
      {"the earlier one in the text, though bytes are looked at before characters",
       "UTF-8",
       "cp1252",
       "a\xCE\xB1\xFF",
       {2, 1, "the target encoding has no U+03B1"},
       "a??"},
      {"a question mark is no loss", "UTF-8", "cp1252", "?", {0, 0, ""}, "?"},
  };
  for (const LossyCase& c : cases) {
    for (std::size_t size = 1; size <= c.text.size() + 1; ++size) {
      ExpectSame(Convert(c.from, c.to, c.text, size), {c.output, c.expected},
                 std::string(c.rule) + " by " + std::to_string(size));
    }
  }
}

// The mark that the library leaves in ICU's error code is lost there, on either side.
TEST(TextConversion, CountsAReplacementForWhichTheBufferHasNoRoom) {
  const Result decoded = Convert("IMAP-mailbox-name", "UTF-8", "&+", 1);
  EXPECT_EQ(decoded.text, "??");
  EXPECT_EQ(decoded.lossy.count, 2U);
  const Result encoded = Convert("UTF-8", "ibm-5478_P100-1995", "A", 1);  // two bytes each
  EXPECT_EQ(encoded.text.size(), 2U);
  EXPECT_EQ(encoded.lossy.count, 1U);
}

TEST(TextConversion, EachTextBeginsAnewAndTheOutputGoesOn) {
  const ConverterPtr from = OpenEncoding("UTF-16");
  const ConverterPtr to = OpenEncoding("ISO-2022-JP");
  TextConversion conversion(*from, *to, kWhole);
  std::string out;
  conversion.BeginText();
  conversion.Convert(std::string("\xFF\xFE\x42\x30\x00", 5), out);
  conversion.EndText(out);
  EXPECT_EQ(conversion.Lossy().count, 1U) << "half a character";
  EXPECT_EQ(conversion.Lossy().firstOffset, 4U);
  conversion.BeginText();
  EXPECT_EQ(conversion.Lossy().count, 0U);
  conversion.Convert(std::string("\xFE\xFF\x30\x42", 4), out);
  conversion.EndText(out);
  EXPECT_EQ(out, "\x1B$B$\"\x1B(B?\x1B$B$\"") << "not yet shifted back";
  conversion.EndOutput(out);
  EXPECT_EQ(out, "\x1B$B$\"\x1B(B?\x1B$B$\"\x1B(B");
}

TEST(TextConversion, DropsByteOrderMarksAtTheStartOfTextsOnly) {
  const ConverterPtr from = OpenEncoding("UTF-8");
  const ConverterPtr to = OpenEncoding("UTF-8");
  const std::string mark = "\xEF\xBB\xBF";
  for (const std::size_t size : {1U, 2U, 3U, 16U}) {
    TextConversion conversion(*from, *to, size);
    conversion.DropByteOrderMarks();
    std::string out;
    for (const std::string& text : {mark + "a" + mark, mark + mark, mark, std::string("b")}) {
      conversion.BeginText();
      for (std::size_t i = 0; i < text.size(); i += size) {
        conversion.Convert(std::string_view(text).substr(i, size), out);
      }
      conversion.EndText(out);
    }
    EXPECT_EQ(out, "a" + mark + mark + "b") << size;
  }
}

TEST(TextConversion, GivesTheConvertersTheirCallbacksBack) {
  const ConverterPtr from = OpenEncoding("UTF-8");
  const ConverterPtr to = OpenEncoding("cp1252");
  UConverterToUCallback before = nullptr;
  UConverterToUCallback after = nullptr;
  const void* context = nullptr;
  ucnv_getToUCallBack(from.get(), &before, &context);
  { const TextConversion conversion(*from, *to, 1); }
  ucnv_getToUCallBack(from.get(), &after, &context);
  EXPECT_EQ(before, after);
  EXPECT_EQ(context, nullptr);
}

}  // namespace
