// UTF-8 as the source: every triple of bytes, every lead byte with every truncation.

#include <array>
#include <cstdint>

#include "encoding/UnicodeFormsCheck.h"

namespace encoding_test {
namespace {

using namespace MCMEM_NAMESPACE;

// One byte of every kind that the rules tell apart, with both ends of each range.
constexpr unsigned int kByteKinds[] = {
    0x00, 0x01, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1,
    0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xF7, 0xF8, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF};

template <class Conversion>
class UnicodeForms_Utf8Source : public testing::Test {
 public:
  Checker<Conversion> checker_;
};
TYPED_TEST_SUITE(UnicodeForms_Utf8Source, FromUtf8, ConversionName);

TYPED_TEST(UnicodeForms_Utf8Source, EveryLeadByteWithEveryTruncationFollowsTheReference) {
  for (unsigned int lead = 0; lead < 256; ++lead) {
    for (const unsigned int second : kByteKinds) {
      for (std::size_t length = 0; length <= 7; ++length) {
        Units source = {lead, second, 0x80, 0xBF, 0x80, 0xBF, 0x41};
        source.resize(length);
        for (const auto flags : kBothFlags) ASSERT_TRUE(this->checker_.Same(source, 8, flags));
      }
    }
  }
}

TYPED_TEST(UnicodeForms_Utf8Source, EverySequenceOfFourByteKindsFollowsTheReference) {
  for (const unsigned int a : kByteKinds)
    for (const unsigned int b : kByteKinds)
      for (const unsigned int c : kByteKinds) {
        if (!kThorough && (a + b + c) % 5 != 0) continue;
        for (const unsigned int d : kByteKinds)
          ASSERT_TRUE(this->checker_.Same({a, b, c, d}, 4, lenientConversion));
      }
}

TYPED_TEST(UnicodeForms_Utf8Source, EveryCapacityFollowsTheReference) {
  const Units texts[] = {{0x41, 0xC3, 0xA9, 0xE4, 0xB8, 0xAD, 0xF0, 0x9F, 0x98, 0x80, 0x42},
                         {0xF0, 0x9F, 0x98, 0x80},
                         {0x41, 0x00, 0x42},
                         {0x00},
                         {0xED, 0xA0, 0x80},
                         {0x41, 0xED, 0xBF, 0xBF, 0x41},
                         {0xC0, 0x80},
                         {0x41, 0xF5, 0x80, 0x80, 0x80}};
  for (const Units& text : texts)
    for (std::size_t length = 0; length <= text.size(); ++length)
      for (std::size_t capacity = 0; capacity <= length + 1; ++capacity)
        for (const auto flags : kBothFlags)
          ASSERT_TRUE(this->checker_.Same(
              Units(text.begin(), text.begin() + static_cast<long>(length)), capacity, flags));
}

// ---- Every triple, with as little around the call as possible ----

struct Short {
  unsigned int code = 0;
  std::ptrdiff_t consumed = 0;
  std::ptrdiff_t length = 0;
  std::array<unsigned int, 4> units{};
  bool operator==(const Short& other) const {
    return code == other.code && consumed == other.consumed && length == other.length &&
           units == other.units;
  }
};

template <class Target, class Convert>
Short ConvertTriple(const unsigned char (&bytes)[3], Convert convert, ConversionFlags flags) {
  Target target[3] = {};
  const unsigned char* s = bytes;
  Target* t = target;
  Short result;
  result.code = convert(&s, bytes + 3, &t, target + 3, flags);
  result.consumed = s - bytes;
  result.length = t - target;
  for (std::size_t i = 0; i < 3; ++i) {
    unsigned int unit = 0;
    std::memcpy(&unit, &target[i], sizeof(Target));
    result.units[i] = unit;
  }
  return result;
}

template <class Reference>
Short ReferTriple(const Units& bytes, Reference reference, bool strict,
                  reference::Converted& scratch) {
  reference(bytes, 3, strict, scratch);
  Short result;
  result.code = scratch.code;
  result.consumed = static_cast<std::ptrdiff_t>(scratch.consumed);
  result.length = static_cast<std::ptrdiff_t>(scratch.length);
  for (std::size_t i = 0; i < scratch.written.size(); ++i) result.units[i] = scratch.written[i];
  return result;
}

template <class Check>
bool ForEveryTriple(Check check) {
  for (unsigned int a = 0; a < 256; ++a)
    for (unsigned int b = 0; b < 256; ++b) {
      if (!kThorough && (a * 7 + b) % 16 != 0) continue;
      for (unsigned int c = 0; c < 256; ++c)
        if (!check(a, b, c)) return false;
    }
  return true;
}

template <class Target, class Convert, class Reference>
void CompareEveryTriple(Convert convert, Reference reference, ConversionFlags flags) {
  reference::Converted scratch;
  Units units(3);
  ForEveryTriple([&](unsigned int a, unsigned int b, unsigned int c) {
    const unsigned char bytes[3] = {static_cast<unsigned char>(a), static_cast<unsigned char>(b),
                                    static_cast<unsigned char>(c)};
    units = {a, b, c};
    const bool same = ConvertTriple<Target>(bytes, convert, flags) ==
                      ReferTriple(units, reference, flags == strictConversion, scratch);
    EXPECT_TRUE(same) << std::hex << a << ' ' << b << ' ' << c;
    return same;
  });
}

TEST(UnicodeForms_EveryTriple, ToUtf16Strict) {
  CompareEveryTriple<UNALIGNED16>(ConvertUTF8toUTF16, reference::Utf8ToUtf16, strictConversion);
}

TEST(UnicodeForms_EveryTriple, ToUtf16Lenient) {
  CompareEveryTriple<UNALIGNED16>(ConvertUTF8toUTF16, reference::Utf8ToUtf16, lenientConversion);
}

TEST(UnicodeForms_EveryTriple, ToUtf32Strict) {
  CompareEveryTriple<unsigned int>(ConvertUTF8toUTF32, reference::Utf8ToUtf32, strictConversion);
}

TEST(UnicodeForms_EveryTriple, ToUtf32Lenient) {
  CompareEveryTriple<unsigned int>(ConvertUTF8toUTF32, reference::Utf8ToUtf32, lenientConversion);
}

// ---- The rules one by one, said in bytes ----

struct Utf8Row {
  const char* what;
  Units bytes;
  std::size_t capacity;
  ConversionFlags flags;
  ConversionResult code;
  std::size_t consumed;
  Units written;  // with the terminator
  std::size_t length;
};

void ExpectRow(const Utf8Row& row) {
  SCOPED_TRACE(row.what);
  reference::Converted expected;
  reference::Utf8ToUtf16(row.bytes, row.capacity, row.flags == strictConversion, expected);
  EXPECT_EQ(static_cast<int>(expected.code), static_cast<int>(row.code));
  EXPECT_EQ(expected.consumed, row.consumed);
  EXPECT_EQ(expected.written, row.written);
  EXPECT_EQ(expected.length, row.length);
  EXPECT_TRUE(Checker<Utf8To16>().Same(row.bytes, row.capacity, row.flags));
}

TEST(UnicodeForms_Utf8ToUtf16, RulesInBytes) {
  constexpr auto kStrict = strictConversion;
  constexpr auto kLenient = lenientConversion;
  const Utf8Row rows[] = {
      {"a zero ends the text and is not counted",
       {0x41, 0, 0x42},
       8,
       kStrict,
       conversionOK,
       2,
       {0x41, 0},
       1},
      {"the zero needs room", {0x41, 0, 0x42}, 1, kStrict, targetExhausted, 1, {0x41}, 1},
      {"an encoded surrogate is illegal", {0xED, 0xA0, 0x80}, 8, kStrict, sourceIllegal, 0, {}, 0},
      {"or replaced", {0xED, 0xA0, 0x80}, 8, kLenient, conversionOK, 3, {0xFFFD}, 1},
      {"room is asked first", {0xED, 0xA0, 0x80}, 0, kStrict, targetExhausted, 0, {}, 0},
      {"an overlong zero is illegal", {0xC0, 0x80}, 8, kLenient, sourceIllegal, 0, {}, 0},
      {"too few bytes behind 0xC0", {0xC0}, 8, kStrict, sourceExhausted, 0, {}, 0},
      {"too few bytes behind 0xF5",
       {0x41, 0xF5, 0x80, 0x80},
       8,
       kStrict,
       sourceExhausted,
       1,
       {0x41},
       1},
      {"too few bytes behind 0xFF",
       {0xFF, 0x80, 0x80, 0x80, 0x80},
       8,
       kLenient,
       sourceExhausted,
       0,
       {},
       0},
      {"six bytes are illegal",
       {0xFC, 0x84, 0x80, 0x80, 0x80, 0x80},
       8,
       kLenient,
       sourceIllegal,
       0,
       {},
       0},
      {"a lone trail byte is illegal", {0x80}, 8, kLenient, sourceIllegal, 0, {}, 0},
      {"above the last code point", {0xF4, 0x90, 0x80, 0x80}, 8, kLenient, sourceIllegal, 0, {}, 0},
      {"a pair needs two units", {0xF0, 0x9F, 0x98, 0x80}, 1, kStrict, targetExhausted, 0, {}, 0},
      {"no source", {}, 0, kStrict, conversionOK, 0, {}, 0},
  };
  for (const Utf8Row& row : rows) ExpectRow(row);
}

// Four sequences of four bytes are read together: one that is illegal must show at every place.
TYPED_TEST(UnicodeForms_Utf8Source, IllegalSequencesOfFourBytesAreFoundWithinARun) {
  constexpr unsigned int kBadStarts[][2] = {{0xF0, 0x80}, {0xF0, 0x8F}, {0xF4, 0x90}, {0xF4, 0xBF},
                                            {0xF5, 0x80}, {0xF7, 0xBF}, {0xF0, 0x7F}, {0xF0, 0xC0}};
  for (const auto& start : kBadStarts) {
    for (std::size_t place = 0; place < 6; ++place) {
      Units source;
      for (std::size_t i = 0; i < 6; ++i) source.insert(source.end(), {0xF0, 0x9F, 0x98, 0x80});
      source[4 * place] = start[0];
      source[4 * place + 1] = start[1];
      for (const auto flags : kBothFlags) ASSERT_TRUE(this->checker_.Same(source, 24, flags));
    }
  }
}

TEST(UnicodeForms_Utf8ToUtf16, AnEmptySourceMayBeNull) {
  const unsigned char* s = nullptr;
  UNALIGNED16* t = nullptr;
  EXPECT_EQ(ConvertUTF8toUTF16(&s, nullptr, &t, nullptr, strictConversion), conversionOK);
  unsigned int* t32 = nullptr;
  EXPECT_EQ(ConvertUTF8toUTF32(&s, nullptr, &t32, nullptr, strictConversion), conversionOK);
}

}  // namespace
}  // namespace encoding_test
