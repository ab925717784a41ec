// UTF-16 and UTF-32 as the source: every sequence of kinds of units, every capacity.

#include "encoding/UnicodeFormsCheck.h"

namespace encoding_test {
namespace {

using namespace MCMEM_NAMESPACE;

// One unit of every kind that the rules tell apart, with both ends of each range.
constexpr unsigned int kUnitKinds[] = {0x0000, 0x0001, 0x0041, 0x007F, 0x0080, 0x07FF,
                                       0x0800, 0x4100, 0xD7FF, 0xD800, 0xDBFF, 0xDC00,
                                       0xDFFF, 0xE000, 0xFFFD, 0xFFFF};
constexpr unsigned int kWideKinds[] = {
    0x0000, 0x0041, 0x007F,  0x0080,   0x07FF,   0x0800,     0xD7FF,     0xD800,    0xDFFF,
    0xE000, 0xFFFF, 0x10000, 0x10FFFF, 0x110000, 0x10000041, 0x80000000, 0xFFFFFFFF};

template <class Conversion, class Kinds>
void CheckEveryThree(const Kinds& kinds) {
  Checker<Conversion> checker;
  for (const unsigned int a : kinds)
    for (const unsigned int b : kinds)
      for (const unsigned int c : kinds)
        for (std::size_t length = 1; length <= 3; ++length)
          for (const auto flags : kBothFlags) {
            Units source = {a, b, c};
            source.resize(length);
            ASSERT_TRUE(checker.Same(source, checker.AmpleFor(source), flags));
            const std::size_t exact = checker.Expected().written.size();
            const std::size_t first = kThorough ? 0 : exact;
            for (std::size_t capacity = first; capacity <= exact; ++capacity)
              ASSERT_TRUE(checker.Same(source, capacity, flags));
          }
}

template <class Conversion>
class UnicodeForms_Utf16Source : public testing::Test {};
TYPED_TEST_SUITE(UnicodeForms_Utf16Source, FromUtf16, ConversionName);

TYPED_TEST(UnicodeForms_Utf16Source, EveryThreeKindsOfUnitsInEveryCapacity) {
  CheckEveryThree<TypeParam>(kUnitKinds);
}

TYPED_TEST(UnicodeForms_Utf16Source, EveryPairOfSurrogateBordersFollowsTheReference) {
  Checker<TypeParam> checker;
  for (unsigned int high = 0xD7F0; high < 0xE010; high += kThorough ? 1 : 5)
    for (const unsigned int low : {0xDBFFu, 0xDC00u, 0xDDEFu, 0xDFFFu, 0xE000u, 0x41u})
      for (const auto flags : kBothFlags) ASSERT_TRUE(checker.Same({high, low}, 8, flags));
}

template <class Conversion>
class UnicodeForms_Utf32Source : public testing::Test {};
TYPED_TEST_SUITE(UnicodeForms_Utf32Source, FromUtf32, ConversionName);

TYPED_TEST(UnicodeForms_Utf32Source, EveryThreeKindsOfUnitsInEveryCapacity) {
  CheckEveryThree<TypeParam>(kWideKinds);
}

// ---- The rules one by one ----

struct Utf16Row {
  const char* what;
  Units units;
  std::size_t capacity;
  ConversionFlags flags;
  ConversionResult code;
  std::size_t consumed;
  Units written;  // with the terminator
  std::size_t length;
};

void ExpectRow(const Utf16Row& row) {
  SCOPED_TRACE(row.what);
  reference::Converted expected;
  reference::Utf16ToUtf8(row.units, row.capacity, row.flags == strictConversion, expected);
  EXPECT_EQ(static_cast<int>(expected.code), static_cast<int>(row.code));
  EXPECT_EQ(expected.consumed, row.consumed);
  EXPECT_EQ(expected.written, row.written);
  EXPECT_EQ(expected.length, row.length);
  EXPECT_TRUE(Checker<Utf16To8>().Same(row.units, row.capacity, row.flags));
  EXPECT_TRUE(Checker<Utf16RevTo8>().Same(row.units, row.capacity, row.flags));
}

TEST(UnicodeForms_Utf16ToUtf8, RulesInUnits) {
  constexpr auto kStrict = strictConversion;
  constexpr auto kLenient = lenientConversion;
  const Utf16Row rows[] = {
      {"a zero ends the text and is not counted",
       {0x41, 0, 0x42},
       8,
       kStrict,
       conversionOK,
       2,
       {0x41, 0},
       1},
      {"the zero needs room", {0x41, 0, 0x42}, 1, kStrict, targetExhausted, 1, {0x41}, 1},
      {"a high surrogate at the end", {0x41, 0xD800}, 8, kStrict, sourceExhausted, 1, {0x41}, 1},
      {"also when lenient", {0xD800}, 8, kLenient, sourceExhausted, 0, {}, 0},
      {"and without room", {0xD800}, 0, kLenient, sourceExhausted, 0, {}, 0},
      {"a high surrogate alone", {0xD800, 0x41}, 8, kStrict, sourceIllegal, 0, {}, 0},
      {"is encoded bare",
       {0xD800, 0x41},
       8,
       kLenient,
       conversionOK,
       2,
       {0xED, 0xA0, 0x80, 0x41},
       4},
      {"two high ones",
       {0xD800, 0xD800, 0xDC00},
       8,
       kLenient,
       conversionOK,
       3,
       {0xED, 0xA0, 0x80, 0xF0, 0x90, 0x80, 0x80},
       7},
      {"a low surrogate alone", {0xDC00}, 8, kStrict, sourceIllegal, 0, {}, 0},
      {"is encoded bare too", {0xDC00}, 8, kLenient, conversionOK, 1, {0xED, 0xB0, 0x80}, 3},
      {"one byte short", {0x4E2D}, 2, kStrict, targetExhausted, 0, {}, 0},
      {"three bytes short", {0x41, 0xD83D, 0xDE00}, 2, kStrict, targetExhausted, 1, {0x41}, 1},
      {"no source", {}, 0, kStrict, conversionOK, 0, {}, 0},
  };
  for (const Utf16Row& row : rows) ExpectRow(row);
}

TEST(UnicodeForms_Utf16ToUtf8, TheFunctionDecidesTheByteOrder) {
  const UNALIGNED16 unit[1] = {{{0x00, 0x41}}};
  unsigned char bytes[8] = {};
  const UNALIGNED16* s = unit;
  unsigned char* t = bytes;
  ASSERT_EQ(ConvertUTF16RevtoUTF8(&s, unit + 1, &t, bytes + 8, strictConversion), conversionOK);
  EXPECT_EQ(std::string(bytes, t), "A");
  s = unit;
  t = bytes;
  ASSERT_EQ(ConvertUTF16toUTF8(&s, unit + 1, &t, bytes + 8, strictConversion), conversionOK);
  EXPECT_EQ(std::string(bytes, t), "\xE4\x84\x80");
}

}  // namespace
}  // namespace encoding_test
