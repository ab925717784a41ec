// The short cuts for ASCII against ICU, for every converter that ICU has.
#include <gtest/gtest.h>
#include <unicode/uset.h>

#include <random>

#include "encoding/RegistryState.h"
#include "encoding/TranscodingCheck.h"

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

std::vector<std::string> EveryConverterName() {
  std::vector<std::string> names;
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    const std::string name = ucnv_getAvailableName(i);
    // ICU does not reset this one, so that a second conversion depends on the first
    if (name != "x11-compound-text") names.push_back(name);
  }
  names.push_back("ibm-37,swaplfnl");
  names.push_back("ibm-943_P130-1999,version=0");
  return names;
}

// All that follow each other in a text of ASCII: the text goes around once for each distance.
std::string EveryPairOfAscii() {
  std::string text;
  for (int step = 0; step < 128; ++step) {
    for (int i = 0; i < 128; ++i) {
      text += static_cast<char>(i);
      text += static_cast<char>((i + step) % 128);
    }
  }
  return text;
}

// A long text of ASCII characters in no order.
std::string LongAscii() {
  std::mt19937 random(11);
  std::string text(50000, '\0');
  for (char& c : text) c = static_cast<char>(random() % 128);
  return text;
}

void CheckBothWays(const std::string& name, const std::string& text) {
  const OwnedConverter converter = NewConverter(name.c_str());
  const OwnedConverter icu = NewConverter(name.c_str());
  const U16 wide = Utf16Of(text);
  const auto size = static_cast<int32_t>(text.size());

  U16 decoded;
  U16 expected(text.size() * 3 + 1, 0);
  UErrorCode error = U_ZERO_ERROR;
  const int status = TULKMBCodePageToU16(converter.get(), decoded, text);
  expected.resize(static_cast<std::size_t>(ucnv_toUChars(
      icu.get(), &expected[0], static_cast<int32_t>(expected.size()), text.data(), size, &error)));
  ASSERT_TRUE(U_SUCCESS(error));
  ASSERT_TRUE(decoded == expected);
  std::string utf8;
  ASSERT_EQ(TULKMBCodePageToU8(converter.get(), utf8, text) == 0,
            status == 0 && !ReferenceToUtf8(decoded).hasFailed);
  ASSERT_TRUE(utf8 == ReferenceDecodedTo8(name.c_str(), text).units);

  std::string encoded;
  std::string encodedFrom8;
  std::string expectedBytes(text.size() * 12 + 64, '\0');
  TULKMBU16ToCodePage(converter.get(), encoded, wide);
  TULKMBU8ToCodePage(converter.get(), encodedFrom8, text);
  expectedBytes.resize(static_cast<std::size_t>(
      ucnv_fromUChars(icu.get(), &expectedBytes[0], static_cast<int32_t>(expectedBytes.size()),
                      wide.data(), size, &error)));
  ASSERT_TRUE(U_SUCCESS(error));
  ASSERT_TRUE(encoded == expectedBytes);
  ASSERT_TRUE(encodedFrom8 == expectedBytes);
}

TEST(TranscodingTables, AsciiAsIcuHasItInEveryConverter) {
  const std::string pairs = EveryPairOfAscii();
  const std::string longText = LongAscii();
  for (const std::string& name : EveryConverterName()) {
    SCOPED_TRACE(name);
    for (char c = 0;; ++c) {
      ASSERT_NO_FATAL_FAILURE(CheckBothWays(name, std::string(1, c)));
      if (c == 127) break;
    }
    ASSERT_NO_FATAL_FAILURE(CheckBothWays(name, pairs));
    ASSERT_NO_FATAL_FAILURE(CheckBothWays(name, longText));
  }
}

TEST(TranscodingTables, AsciiInFrontOfOtherTextAsIcuHasItInEveryConverter) {
  for (const std::string& name : EveryConverterName()) {
    SCOPED_TRACE(name);
    const OwnedConverter converter = NewConverter(name.c_str());
    for (const std::size_t head : {1u, 15u, 31u, 32u, 33u, 100u}) {
      const U16 text = U16(head, 'e') + RandomUtf16(static_cast<unsigned>(head), 20, false);
      const Reference<char> reference = ReferenceEncoded(name.c_str(), text);
      std::string bytes;
      ASSERT_EQ(TULKMBU16ToCodePage(converter.get(), bytes, text), reference.isLossy ? 3 : 0);
      ASSERT_EQ(bytes, reference.units);
      const std::string utf8 = ReferenceToUtf8(text).units;
      ASSERT_EQ(TULKMBU8ToCodePage(converter.get(), bytes, utf8), reference.isLossy ? 3 : 0);
      ASSERT_EQ(bytes, reference.units);
    }
  }
}

// Single-byte code pages are converted by a table of ours: each unit and each byte, and what the
// table does not have.
TEST(TranscodingTables, EverySingleByteCodePageUnitByUnit) {
  for (const std::string& name : EveryConverterName()) {
    const OwnedConverter converter = NewConverter(name.c_str());
    if (ucnv_getMaxCharSize(converter.get()) != 1) continue;
    SCOPED_TRACE(name);
    const OwnedConverter icu = NewConverter(name.c_str());
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
      const auto u = static_cast<unsigned short>(unit);
      char bytes[8] = {};
      char expected[8] = {};
      UErrorCode error = U_ZERO_ERROR;
      const int length = TULKMB16toCodePage(converter.get(), bytes, 8, &u, 1);
      ASSERT_EQ(length, ucnv_fromUChars(icu.get(), expected, 8, &u, 1, &error)) << unit;
      ASSERT_EQ(std::string(bytes, static_cast<std::size_t>(length)),
                std::string(expected, static_cast<std::size_t>(length)))
          << unit;
    }
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
      const char c = static_cast<char>(byte);
      unsigned short units[8] = {};
      unsigned short expected[8] = {};
      UErrorCode error = U_ZERO_ERROR;
      const int length = TULKMBCodePageto16(converter.get(), units, 8, &c, 1);
      ASSERT_EQ(length, ucnv_toUChars(icu.get(), expected, 8, &c, 1, &error)) << byte;
      ASSERT_EQ(units[0], expected[0]) << byte;
    }
  }
}

// No converter takes a sequence that begins with ASCII for one character, so that none can be torn
// where a short cut ends; if a later ICU has one, the short cuts keep clear of it.
TEST(TranscodingTables, SequencesThatBeginWithAsciiAreConvertedWhole) {
  for (const std::string& name : EveryConverterName()) {
    const OwnedConverter converter = NewConverter(name.c_str());
    UErrorCode error = U_ZERO_ERROR;
    USet* const set = uset_openEmpty();
    ucnv_getUnicodeSet(converter.get(), set, UCNV_ROUNDTRIP_AND_FALLBACK_SET, &error);
    for (int32_t i = 0; U_SUCCESS(error) && i < uset_getItemCount(set); ++i) {
      UChar32 first = 0;
      UChar32 last = 0;
      unsigned short sequence[64];
      const int32_t length = uset_getItem(set, i, &first, &last, sequence, 64, &error);
      if (length < 2 || sequence[0] >= 0x80) continue;
      const U16 text = U16(200, 'x') + U16(sequence, static_cast<std::size_t>(length));
      std::string bytes;
      TULKMBU16ToCodePage(converter.get(), bytes, text);
      EXPECT_EQ(bytes, ReferenceEncoded(name.c_str(), text).units) << name;
    }
    uset_close(set);
  }
}

TEST(TranscodingTables, DamagedTextAsIcuHasItInEveryConverter) {
  std::mt19937 random(3);
  for (const std::string& name : EveryConverterName()) {
    SCOPED_TRACE(name);
    const OwnedConverter converter = NewConverter(name.c_str());
    for (int round = 0; round < 12; ++round) {
      std::string text(random() % 90, 'a');
      for (char& c : text) {
        if (random() % 3 != 0) c = static_cast<char>(random());
      }
      const Reference<unsigned short> reference = ReferenceDecoded(name.c_str(), text);
      U16 decoded;
      ASSERT_EQ(TULKMBCodePageToU16(converter.get(), decoded, text), reference.isLossy ? 3 : 0);
      ASSERT_EQ(decoded, reference.units);
      const Reference<char> reference8 = ReferenceDecodedTo8(name.c_str(), text);
      std::string utf8;
      ASSERT_EQ(TULKMBCodePageToU8(converter.get(), utf8, text), reference8.isLossy ? 3 : 0);
      ASSERT_EQ(utf8, reference8.units);
      const Reference<char> encoded = ReferenceEncodedFrom8(name.c_str(), text);
      std::string bytes;
      ASSERT_EQ(TULKMBU8ToCodePage(converter.get(), bytes, text), encoded.isLossy ? 3 : 0);
      ASSERT_EQ(bytes, encoded.units);
    }
  }
}

}  // namespace
