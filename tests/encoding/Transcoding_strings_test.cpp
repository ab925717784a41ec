#include <gtest/gtest.h>

#include <memory>

#include "encoding/RegistryState.h"
#include "encoding/TranscodingCheck.h"

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

// Lengths around the buffers that lie between a converter and a string.
constexpr std::size_t kLengths[] = {0,    1,    100,  1023, 1024, 1025, 2047,
                                    2048, 2049, 4095, 4096, 4097, 20000};

TEST(TranscodingStrings, TextOfEveryLengthIsConvertedWhole) {
  for (const std::size_t length : kLengths) {
    SCOPED_TRACE(length);
    const U16 wide = RandomUtf16(static_cast<unsigned>(length), length, false);
    const std::string utf8 = ReferenceToUtf8(wide).units;
    U16 wideOut = {'o', 'l', 'd'};
    std::string out = "old";
    EXPECT_EQ(TULKMBU8ToU16(wideOut, utf8), 0);
    EXPECT_TRUE(wideOut == wide);
    EXPECT_EQ(TULKMBU16ToU8(out, wide), 0);
    EXPECT_TRUE(out == utf8);
  }
}

TEST(TranscodingStrings, CodePagesOfEveryKindAndLength) {
  for (const char* codePage :
       {"1252", "932", "936", "GB18030", "UTF-8", "ISO-2022-JP", "UTF-7", "UTF-32"}) {
    SCOPED_TRACE(codePage);
    const OwnedConverter converter = NewConverter(codePage);
    for (const std::size_t length : kLengths) {
      const U16 wide = RandomUtf16(static_cast<unsigned>(length), length, false);
      const std::string utf8 = ReferenceToUtf8(wide).units;
      const Reference<char> encoded = ReferenceEncoded(codePage, wide);
      std::string out = "old";
      U16 wideOut = {'o', 'l', 'd'};
      EXPECT_EQ(TULKMBU16ToCodePage(converter.get(), out, wide), encoded.isLossy ? 3 : 0);
      EXPECT_TRUE(out == encoded.units);
      EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, utf8), encoded.isLossy ? 3 : 0);
      EXPECT_TRUE(out == encoded.units);
      const Reference<unsigned short> decoded = ReferenceDecoded(codePage, encoded.units);
      EXPECT_EQ(TULKMBCodePageToU16(converter.get(), wideOut, encoded.units), 0);
      EXPECT_TRUE(wideOut == decoded.units);
      EXPECT_EQ(TULKMBCodePageToU8(converter.get(), out, encoded.units), 0);
      EXPECT_TRUE(out == ReferenceToUtf8(decoded.units).units);
    }
  }
}

// A compression makes something else of a text that it gets in pieces.
TEST(TranscodingStrings, CompressedTextComesBack) {
  for (const char* codePage : {"SCSU", "BOCU-1"}) {
    const OwnedConverter converter = NewConverter(codePage);
    for (const std::size_t length : kLengths) {
      const std::string utf8 = RandomUtf8(static_cast<unsigned>(length), length, false);
      std::string bytes;
      std::string back;
      EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), bytes, utf8), 0);
      EXPECT_EQ(TULKMBCodePageToU8(converter.get(), back, bytes), 0);
      EXPECT_TRUE(back == utf8) << codePage << ' ' << length;
    }
  }
}

TEST(TranscodingStrings, TextThatGrowsFarIsNotCut) {
  const OwnedConverter converter = NewConverter("ISO-2022-JP");
  std::string utf8;
  for (int i = 0; i < 2000; ++i) utf8 += "a\xE6\x97\xA5";
  const Reference<char> encoded = ReferenceEncodedFrom8("ISO-2022-JP", utf8);
  ASSERT_GT(encoded.units.size(), 2 * utf8.size());
  std::string out;
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, utf8), 0);
  EXPECT_TRUE(out == encoded.units);
}

TEST(TranscodingStrings, AReplacementLongerThanWhatItReplaces) {
  const OwnedConverter converter = NewConverter("1252");
  UErrorCode error = U_ZERO_ERROR;
  const U16 replacement = {'<', 'n', 'o', 't', ' ', 'h', 'e', 'r', 'e', '>'};
  ucnv_setSubstString(converter.get(), replacement.data(), 10, &error);
  ASSERT_TRUE(U_SUCCESS(error));
  std::string utf8;
  std::string expected;
  for (int i = 0; i < 3000; ++i) {
    utf8 += "\xE6\x97\xA5";
    expected += "<not here>";
  }
  std::string out;
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, utf8), 3);
  EXPECT_TRUE(out == expected);
}

TEST(TranscodingStrings, OneObjectMayBeBothSides) {
  const OwnedConverter converter = NewConverter("932");
  for (const std::size_t length : kLengths) {
    SCOPED_TRACE(length);
    const std::string utf8 = ReferenceToUtf8(U16(length, 0x3042)).units + std::string(length, 'a');
    std::string text = utf8;
    EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), text, text), 0);
    EXPECT_TRUE(text == ReferenceEncodedFrom8("932", utf8).units);
    EXPECT_EQ(TULKMBCodePageToU8(converter.get(), text, text), 0);
    EXPECT_TRUE(text == utf8);
    for (const int mode : {0, 1}) {
      const Utf8Mode utf8Mode(mode);
      EXPECT_EQ(TULKMBU8ToGeneric(converter.get(), text, text), 0);
      EXPECT_EQ(TULKMBGenericToU8(converter.get(), text, text), 0);
      EXPECT_TRUE(text == utf8);
      EXPECT_EQ(TULKMBGenericToCodePage(converter.get(), text, text), 0);
      EXPECT_EQ(TULKMBCodePageToGeneric(converter.get(), text, text), 0);
      EXPECT_TRUE(text == utf8);
    }
  }
}

TEST(TranscodingStrings, AFailureLeavesTheOutputEmpty) {
  std::string out = "old";
  U16 wide = {'o'};
  const std::string pad(10000, 'x');
  EXPECT_EQ(TULKMBU8ToU16(wide, pad + "\xC3"), 3);
  EXPECT_TRUE(wide.empty());
  EXPECT_EQ(TULKMBU16ToU8(out, U16(10000, 'x') + U16{0xD800}), 3);
  EXPECT_TRUE(out.empty());
  const OwnedConverter converter = NewConverter("1252");
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
  out = "old";
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, pad + "\xE4\xBD\xA0"), 3);
  EXPECT_TRUE(out.empty());
  out = pad + "\xE4\xBD\xA0";
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, out), 3);
  EXPECT_TRUE(out.empty());
}

TEST(TranscodingStrings, ZerosAreText) {
  const OwnedConverter converter = NewConverter("1252");
  const std::string text("a\0\xC3\xA9\0", 5);
  std::string out;
  U16 wide;
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, text), 0);
  EXPECT_EQ(out, std::string("a\0\xE9\0", 4));
  EXPECT_EQ(TULKMBCodePageToU16(converter.get(), wide, out), 0);
  EXPECT_EQ(wide, (U16{'a', 0, 0xE9, 0}));
  EXPECT_EQ(TULKMBU16ToU8(out, wide), 0);
  EXPECT_EQ(out, text);
}

// A new array as a string; deletes it.
template <class Unit>
std::basic_string<Unit> Taken(Unit* array) {
  const std::unique_ptr<Unit[]> owner(array);
  EXPECT_NE(array, nullptr);
  return array == nullptr ? std::basic_string<Unit>() : std::basic_string<Unit>(array);
}

TEST(TranscodingArrays, TextOfEveryLength) {
  const DefaultCodePage japanese("932");
  for (const std::size_t length : kLengths) {
    SCOPED_TRACE(length);
    const U16 wide = RandomUtf16(static_cast<unsigned>(length), length, false);
    const std::string utf8 = ReferenceToUtf8(wide).units;
    EXPECT_EQ(Taken(TULKMBTranscodeU8(utf8.c_str())), wide);
    EXPECT_EQ(Taken(TULKMBTranscodeU8(wide.c_str())), utf8);
    const U16 kana = U16(length, 0x3042) + U16{'z'};
    const std::string bytes = ReferenceEncoded("932", kana).units;
    EXPECT_EQ(Taken(TULKMBTranscodeCodePage(kana.c_str())), bytes);
    EXPECT_EQ(Taken(TULKMBTranscodeCodePage(bytes.c_str())), kana);
  }
}

TEST(TranscodingArrays, GenericFollowsTheMode) {
  const DefaultCodePage latin("1252");
  const U16 wide = {'h', 0xE9};
  const Utf8Mode off(0);
  EXPECT_EQ(Taken(TULKMBTranscodeGeneric(wide.c_str())), "h\xE9");
  EXPECT_EQ(Taken(TULKMBTranscodeGeneric("h\xE9")), wide);
  const Utf8Mode on(1);
  EXPECT_EQ(Taken(TULKMBTranscodeGeneric(wide.c_str())), "h\xC3\xA9");
  EXPECT_EQ(Taken(TULKMBTranscodeGeneric("h\xC3\xA9")), wide);
}

TEST(TranscodingArrays, CodePageTextOfMoreThanTwoBytesPerUnitIsCutAtACharacter) {
  const DefaultCodePage utf8("UTF-8");
  EXPECT_EQ(Taken(TULKMBTranscodeCodePage(U16{0x4E2D, 0x4E2E, 0x4E2F}.c_str())),
            "\xE4\xB8\xAD\xE4\xB8\xAE");
  EXPECT_EQ(Taken(TULKMBTranscodeCodePage(U16{0x4E2D}.c_str())), "");
  EXPECT_EQ(Taken(TULKMBTranscodeCodePage(U16{'a', 0x4E2D}.c_str())), "a\xE4\xB8\xAD");
  const std::string cut = Taken(TULKMBTranscodeCodePage(U16(3000, 0x4E2D).c_str()));
  EXPECT_EQ(cut.size(), 6000u);
}

TEST(TranscodingArrays, LossyTextIsDeliveredAndFailedTextIsEmpty) {
  const DefaultCodePage latin("1252");
  EXPECT_EQ(Taken(TULKMBTranscodeCodePage(U16{'a', 0x4E2D}.c_str())), "a?");
  EXPECT_EQ(Taken(TULKMBTranscodeU8("a\xC3")), U16());
  EXPECT_EQ(Taken(TULKMBTranscodeU8(U16{'a', 0xD800}.c_str())), "");
  EXPECT_EQ(Taken(TULKMBTranscodeU8("\x80\x80\x80")), U16());
}

TEST(TranscodingArrays, ANullSourceGivesNull) {
  const char* narrow = nullptr;
  const unsigned short* wide = nullptr;
  EXPECT_EQ(TULKMBTranscodeU8(narrow), nullptr);
  EXPECT_EQ(TULKMBTranscodeU8(wide), nullptr);
  EXPECT_EQ(TULKMBTranscodeCodePage(narrow), nullptr);
  EXPECT_EQ(TULKMBTranscodeCodePage(wide), nullptr);
  EXPECT_EQ(TULKMBTranscodeGeneric(narrow), nullptr);
  EXPECT_EQ(TULKMBTranscodeGeneric(wide), nullptr);
}

}  // namespace
