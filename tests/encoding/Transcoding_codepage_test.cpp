#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "encoding/RegistryState.h"
#include "encoding/TranscodingCheck.h"

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

// The default converter left in the middle of a character, and one that the caller passes: both
// ways must be the same.
class BothConverters {
 public:
  explicit BothConverters(const char* codePage)
      : default_(codePage), given_(NewConverter(codePage)) {
    Disturb(default_.Get());
    Disturb(given_.get());
  }

  template <class Check>
  void ForEach(const Check& check) {
    for (void* const converter : {static_cast<void*>(given_.get()), static_cast<void*>(nullptr)}) {
      SCOPED_TRACE(converter == nullptr ? "default converter" : "converter given");
      check(converter);
    }
  }

 private:
  // Lead bytes, and half a surrogate pair, are left inside.
  static void Disturb(UConverter* converter) {
    for (const char* bytes : {"\x81", "\xE4\xBD", "\x1B$", "~{", "+AG"}) {
      UErrorCode error = U_ZERO_ERROR;
      unsigned short units[16];
      unsigned short* target = units;
      const char* source = bytes;
      ucnv_toUnicode(converter, &target, units + 16, &source, bytes + std::strlen(bytes), nullptr,
                     false, &error);
    }
    UErrorCode error = U_ZERO_ERROR;
    const unsigned short high[] = {0xD83D};
    const unsigned short* source = high;
    char bytes[64];
    char* target = bytes;
    ucnv_fromUnicode(converter, &target, bytes + 64, &source, high + 1, nullptr, false, &error);
  }

  DefaultCodePage default_;
  OwnedConverter given_;
};

// All four directions of one text.
void CheckText(const char* codePage, const U16& text, bool hasTerminators = true) {
  SCOPED_TRACE(codePage);
  BothConverters both(codePage);
  const Reference<char> encoded = ReferenceEncoded(codePage, text);
  both.ForEach([&](void* converter) {
    const auto bind = [converter](auto function) {
      return
          [converter, function](auto* dst, int capacity, const auto* src, int length, int* status) {
            return function(converter, dst, capacity, src, length, status);
          };
    };
    const std::string utf8 = ReferenceToUtf8(text).units;
    CheckBuffers(encoded, text, bind(TULKMB16toCodePage));
    CheckBuffers(ReferenceEncodedFrom8(codePage, utf8), utf8, bind(TULKMB8toCodePage));
    if (!hasTerminators) return;
    CheckBuffers(ReferenceDecoded(codePage, encoded.units), encoded.units,
                 bind(TULKMBCodePageto16));
    CheckBuffers(ReferenceDecodedTo8(codePage, encoded.units), encoded.units,
                 bind(TULKMBCodePageto8));
  });
}

constexpr const char* kPreferred[] = {"932",  "936",  "949",  "950",   "1250",
                                      "1251", "1252", "1253", "1254",  "1255",
                                      "1256", "1257", "1258", "28591", "65001"};

TEST(TranscodingCodePage, EveryPreferredCodePageAtEveryCapacity) {
  for (const char* codePage : kPreferred) {
    CheckText(codePage, {});
    CheckText(codePage, {'a'});
    CheckText(codePage, RandomUtf16(4, 40, false));
  }
}

TEST(TranscodingCodePage, EveryCharacterOfThePreferredCodePagesGoesThereAndBack) {
  for (const char* codePage : kPreferred) {
    SCOPED_TRACE(codePage);
    const OwnedConverter converter = NewConverter(codePage);
    for (unsigned c = 1; c <= 0xFFFF; ++c) {
      if (U_IS_SURROGATE(c)) continue;
      const U16 unit(1, static_cast<unsigned short>(c));
      std::string bytes;
      if (TULKMBU16ToCodePage(converter.get(), bytes, unit) != 0) continue;
      U16 back;
      std::string utf8;
      std::string again;
      ASSERT_EQ(TULKMBCodePageToU16(converter.get(), back, bytes), 0) << std::hex << c;
      ASSERT_EQ(TULKMBCodePageToU8(converter.get(), utf8, bytes), 0) << std::hex << c;
      ASSERT_EQ(utf8, ReferenceToUtf8(back).units) << std::hex << c;
      ASSERT_EQ(TULKMBU8ToCodePage(converter.get(), again, utf8), 0) << std::hex << c;
      // One-way entries of a table may come back as another character, of the same bytes.
      ASSERT_EQ(again, bytes) << std::hex << c;
    }
  }
}

TEST(TranscodingCodePage, EncodingsWithShiftStatesAtEveryCapacity) {
  const U16 text = {'a', 0x65E5, 0x672C, 'b', 0x8A9E, 0x3042, ' ', 'z', 0x4E2D};
  for (const char* codePage : {"ISO-2022-JP", "ISO-2022-KR", "ISO-2022-CN", "HZ", "UTF-7", "SCSU",
                               "BOCU-1", "ibm-930", "IMAP-mailbox-name"}) {
    CheckText(codePage, text);
  }
}

TEST(TranscodingCodePage, EncodingsWithWideUnitsAtEveryCapacity) {
  // A zero byte ends terminated text, whatever it is part of: explicit lengths only.
  for (const char* codePage : {"UTF-16BE", "UTF-16LE", "UTF-16", "UTF-32", "UTF-32LE"}) {
    CheckText(codePage, {'a', 0xE9, 0x4E2D, 0xD83D, 0xDE00, 'z'});
  }
}

TEST(TranscodingCodePage, EncodingsOfManyBytesAtEveryCapacity) {
  for (const char* codePage : {"GB18030", "EUC-JP", "EUC-TW", "CESU-8"}) {
    CheckText(codePage, RandomUtf16(6, 30, false));
    CheckText(codePage, {0x915, 0x94D, 0x937, 'a', 0xD840, 0xDC00, 'b'});
  }
}

TEST(TranscodingCodePage, ZerosInTextOfExplicitLengthAreCharacters) {
  for (const char* codePage : {"1252", "932", "936", "UTF-8", "ISO-2022-JP", "UTF-16LE"}) {
    CheckText(codePage, {'a', 0, 0x4E2D, 0, 0, 0xE9, 'b'});
  }
}

TEST(TranscodingCodePage, LongTextIsCutAtACharacterToo) {
  const U16 text = RandomUtf16(8, 4000, false);
  for (const char* codePage : {"932", "GB18030", "UTF-8", "EUC-JP"}) {
    SCOPED_TRACE(codePage);
    const OwnedConverter converter = NewConverter(codePage);
    const Reference<char> encoded = ReferenceEncoded(codePage, text);
    const Reference<char> utf8 = ReferenceDecodedTo8(codePage, encoded.units);
    const Reference<unsigned short> decoded = ReferenceDecoded(codePage, encoded.units);
    for (std::size_t capacity = 1000; capacity < 1012; ++capacity) {
      CheckCapacity(encoded, capacity, false, [&](char* dst, int c, int* status) {
        return TULKMB16toCodePage(converter.get(), dst, c, text.data(),
                                  static_cast<int>(text.size()), status);
      });
      CheckCapacity(utf8, capacity, true, [&](char* dst, int c, int* status) {
        return TULKMBCodePageto8(converter.get(), dst, c, encoded.units.c_str(), -1, status);
      });
      CheckCapacity(decoded, capacity, true, [&](unsigned short* dst, int c, int* status) {
        return TULKMBCodePageto16(converter.get(), dst, c, encoded.units.c_str(), -1, status);
      });
    }
    CheckCapacity(encoded, 0, false, [&](char* dst, int c, int* status) {
      return TULKMB16toCodePage(converter.get(), dst, c, text.data(), static_cast<int>(text.size()),
                                status);
    });
  }
}

TEST(TranscodingCodePage, AConverterThatStopsFails) {
  const OwnedConverter converter = NewConverter("1252");
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  const std::string text = "abc \xE4\xBD\xA0 def";
  for (const std::size_t capacity : {0u, 1u, 3u, 4u, 5u, 20u}) {
    for (const int length : {-1, static_cast<int>(text.size())}) {
      CheckFailure<char>(capacity, length < 0, [&](char* dst, int c, int* status) {
        return TULKMB8toCodePage(converter.get(), dst, c, text.c_str(), length, status);
      });
    }
  }
  const OwnedConverter japanese = NewConverter("932");
  ucnv_setToUCallBack(japanese.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  for (const std::size_t capacity : {0u, 1u, 2u, 20u}) {
    CheckFailure<unsigned short>(capacity, false, [&](unsigned short* dst, int c, int* status) {
      return TULKMBCodePageto16(japanese.get(), dst, c, "a\x81", 2, status);
    });
    CheckFailure<char>(capacity, true, [&](char* dst, int c, int* status) {
      return TULKMBCodePageto8(japanese.get(), dst, c, "a\x81", -1, status);
    });
  }
}

TEST(TranscodingCodePage, TheCallersCallbacksAreAskedAndStay) {
  const OwnedConverter converter = NewConverter("1252");
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_ESCAPE, UCNV_ESCAPE_XML_HEX, nullptr,
                        nullptr, &error);
  std::string out;
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, "a\xE4\xBD\xA0"), 0);
  EXPECT_EQ(out, "a&#x4F60;");
  EXPECT_EQ(TULKMBU16ToCodePage(converter.get(), out, U16{'a', 0x4F60}), 0);
  EXPECT_EQ(out, "a&#x4F60;");
  UConverterFromUCallback callback = nullptr;
  const void* context = nullptr;
  ucnv_getFromUCallBack(converter.get(), &callback, &context);
  EXPECT_EQ(callback, UCNV_FROM_U_CALLBACK_ESCAPE);
  EXPECT_EQ(context, static_cast<const void*>(UCNV_ESCAPE_XML_HEX));
}

TEST(TranscodingCodePage, AGivenConverterIsResetAlsoByTextItIsNotNeededFor) {
  const OwnedConverter converter = NewConverter("932");
  unsigned short wide[4];
  const char lead[] = "\x82";
  const char* source = lead;
  unsigned short* target = wide;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(converter.get(), &target, wide + 4, &source, lead + 1, nullptr, false, &error);
  ASSERT_EQ(ucnv_toUCountPending(converter.get(), &error), 1);
  EXPECT_EQ(TULKMBCodePageto16(converter.get(), wide, 4, "ab", 2), 2);
  EXPECT_EQ(ucnv_toUCountPending(converter.get(), &error), 0);

  const unsigned short high[] = {0xD83D};
  const unsigned short* units = high;
  char bytes[4];
  char* end = bytes;
  ucnv_fromUnicode(converter.get(), &end, bytes + 4, &units, high + 1, nullptr, false, &error);
  ASSERT_EQ(ucnv_fromUCountPending(converter.get(), &error), 1);
  EXPECT_EQ(TULKMB8toCodePage(converter.get(), bytes, 4, "ab", 2), 2);
  EXPECT_EQ(ucnv_fromUCountPending(converter.get(), &error), 0);
}

TEST(TranscodingCodePage, TheDefaultConverterIsLeftAsItIs) {
  const DefaultCodePage japanese("932");
  const char lead[] = "\x82";
  const char* source = lead;
  unsigned short wide[4];
  unsigned short* target = wide;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(japanese.Get(), &target, wide + 4, &source, lead + 1, nullptr, false, &error);
  EXPECT_EQ(TULKMBCodePageto16(nullptr, wide, 4, "\x82\xA0", 2), 1);
  EXPECT_EQ(wide[0], 0x3042);
  EXPECT_EQ(ucnv_toUCountPending(japanese.Get(), &error), 1);
}

TEST(TranscodingCodePage, ArgumentsThatAreRefused) {
  const OwnedConverter converter = NewConverter("1252");
  char narrow[2] = {7, 7};
  unsigned short wide[2] = {7, 7};
  int status = -1;
  const unsigned short letter[] = {'a', 0};
  EXPECT_EQ(TULKMB8toCodePage(converter.get(), nullptr, 1, "a", 1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(TULKMBCodePageto8(converter.get(), narrow, INT_MIN, "a", 1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(TULKMB16toCodePage(converter.get(), narrow, -1, letter, 1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(TULKMBCodePageto16(converter.get(), nullptr, INT_MAX, "a", 1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(narrow[0], 7);
  EXPECT_EQ(TULKMBCodePageto16(converter.get(), wide, 2, nullptr, -1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(wide[0], 0);
  EXPECT_EQ(TULKMBCodePageto8(converter.get(), narrow, 2, nullptr, 0, &status), 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(narrow[0], ' ');
}

}  // namespace
