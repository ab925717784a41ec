// Status 3 for every lossy conversion, also where ICU's error code does not tell.
#include <gtest/gtest.h>
#include <unicode/ucnv_err.h>

#include "encoding/RegistryState.h"
#include "encoding/TranscodingCheck.h"

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

int Status16To(const char* codePage, const U16& text, std::size_t capacity) {
  std::string bytes(capacity + 1, '\0');
  int status = -1;
  TULKMB16toCodePage(NewConverter(codePage).get(), &bytes[0], static_cast<int>(capacity),
                     text.data(), static_cast<int>(text.size()), &status);
  return status;
}

int Status8To(const char* codePage, const std::string& text, std::size_t capacity) {
  std::string bytes(capacity + 1, '\0');
  int status = -1;
  TULKMB8toCodePage(NewConverter(codePage).get(), &bytes[0], static_cast<int>(capacity),
                    text.data(), static_cast<int>(text.size()), &status);
  return status;
}

int StatusTo16(const char* codePage, const std::string& text, std::size_t capacity) {
  U16 units(capacity + 1, 0);
  int status = -1;
  TULKMBCodePageto16(NewConverter(codePage).get(), &units[0], static_cast<int>(capacity),
                     text.data(), static_cast<int>(text.size()), &status);
  return status;
}

int StatusTo8(const char* codePage, const std::string& text, std::size_t capacity) {
  std::string bytes(capacity + 1, '\0');
  int status = -1;
  TULKMBCodePageto8(NewConverter(codePage).get(), &bytes[0], static_cast<int>(capacity),
                    text.data(), static_cast<int>(text.size()), &status);
  return status;
}

TEST(TranscodingLossy, ACharacterThatTheCodePageLacksIsAQuestionMark) {
  char dst[8] = {};
  int status = -1;
  EXPECT_EQ(TULKMB8toCodePage(NewConverter("1252").get(), dst, 8, "a\xE4\xBD\xA0z", -1, &status),
            3);
  EXPECT_STREQ(dst, "a?z");
  EXPECT_EQ(status, 3);
}

TEST(TranscodingLossy, WhenTheResultFillsTheBufferExactly) {
  EXPECT_EQ(Status16To("1252", U16{'a', 0x4F60}, 2), 3);
  EXPECT_EQ(Status8To("1252", "a\xE4\xBD\xA0", 2), 3);
  EXPECT_EQ(StatusTo16("932", "a\x81", 2), 3);
  EXPECT_EQ(StatusTo8("932", "a\x81", 2), 3);
}

TEST(TranscodingLossy, WhenTheBufferIsTooSmallForTheReplacement) {
  for (std::size_t capacity = 0; capacity < 8; ++capacity) {
    SCOPED_TRACE(capacity);
    EXPECT_EQ(Status16To("1252", U16{'a', 'b', 'c', 0x4F60}, capacity), 3);
    EXPECT_EQ(Status16To("932", U16{'a', 'b', 'c', 0x1F600 & 0xFFFF}, capacity), 3);
    EXPECT_EQ(Status8To("1252", "abc\xE4\xBD\xA0", capacity), 3);
    EXPECT_EQ(StatusTo16("932", "abc\x81", capacity), 3);
    EXPECT_EQ(StatusTo8("932", "abc\x81", capacity), 3);
  }
}

// Further behind the replacement than ICU's buffer between two encodings is long, and than ours.
TEST(TranscodingLossy, WhenMuchTextFollows) {
  for (const std::size_t tail : {100u, 1023u, 1024u, 1025u, 5000u}) {
    SCOPED_TRACE(tail);
    for (const std::size_t capacity : {std::size_t{0}, std::size_t{10}, 2 * tail + 10}) {
      EXPECT_EQ(Status16To("1252", U16{0x4F60} + U16(tail, 0xE9), capacity), 3);
      std::string utf8 = "\xE4\xBD\xA0";
      std::string cp = "\x81";
      for (std::size_t i = 0; i < tail; ++i) utf8 += "\xC3\xA9";
      for (std::size_t i = 0; i < tail; ++i) cp += "\x82\xA0";
      EXPECT_EQ(Status8To("1252", utf8, capacity), 3);
      EXPECT_EQ(StatusTo16("932", "\x80\xFF" + cp, capacity), 3);
      EXPECT_EQ(StatusTo8("932", "\x80\xFF" + cp, capacity), 3);
    }
  }
}

TEST(TranscodingLossy, WhenMuchTextComesBefore) {
  for (const std::size_t head : {100u, 1023u, 1024u, 1025u, 5000u}) {
    SCOPED_TRACE(head);
    EXPECT_EQ(Status16To("1252", U16(head, 0xE9) + U16{0x4F60}, 10), 3);
    EXPECT_EQ(Status16To("1252", U16(head, 'x') + U16{0x4F60}, 10), 3);
    EXPECT_EQ(Status8To("1252", std::string(head, 'x') + "\xE4\xBD\xA0", 10), 3);
    EXPECT_EQ(StatusTo16("932", std::string(head, 'x') + "\x81", 10), 3);
    EXPECT_EQ(StatusTo8("932", std::string(head, 'x') + "\x81", 10), 3);
  }
}

TEST(TranscodingLossy, MalformedUtf8InWhateverTheCodePageHolds) {
  for (const char* codePage : {"1252", "932", "936", "GB18030", "UTF-8", "UTF-16LE", "UTF-7",
                               "SCSU", "ISO-2022-JP", "EUC-TW", "CESU-8"}) {
    SCOPED_TRACE(codePage);
    const OwnedConverter converter = NewConverter(codePage);
    for (const std::size_t head : {0u, 3u, 60u, 3000u}) {
      for (const std::string bad :
           {"\x80", "\xC3", "\xE4\xBD", "\xED\xA0\x80", "\xC0\x80", "\xF0\x9F\x98", "\xFF\xFE"}) {
        for (const std::string tail : {"", "z", "\xC3\xA9"}) {
          const std::string text = std::string(head, 'x') + bad + tail;
          const Reference<char> reference = ReferenceEncodedFrom8(codePage, text);
          ASSERT_TRUE(reference.isLossy);
          for (const std::size_t capacity : {std::size_t{0}, head, reference.units.size() + 2}) {
            CheckCapacity(reference, capacity, false, [&](char* dst, int c, int* status) {
              return TULKMB8toCodePage(converter.get(), dst, c, text.data(),
                                       static_cast<int>(text.size()), status);
            });
          }
        }
      }
    }
  }
}

TEST(TranscodingLossy, MalformedUtf8ForACallbackThatLeavesNoMark) {
  const OwnedConverter converter = NewConverter("1252");
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_SKIP, nullptr, nullptr, nullptr,
                        &error);
  std::string out;
  const std::string pad(100, 'x');
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, pad + "\xC3" + pad), 3);
  EXPECT_EQ(out, pad + pad);
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), out, pad + "\xE4\xBD\xA0" + pad), 0);
  EXPECT_EQ(out, pad + pad);
}

TEST(TranscodingLossy, ACallbackThatLeavesNoMarkRunsOutOfRoom) {
  const OwnedConverter converter = NewConverter("936");
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_ESCAPE, UCNV_ESCAPE_C, nullptr,
                        nullptr, &error);
  const U16 text = {0xD83D, 0xDE00, 0xD83D, 0xDE01};  // each becomes ten bytes
  for (int capacity = 1; capacity <= 20; ++capacity) {
    char bytes[21] = {};
    int status = -1;
    EXPECT_EQ(TULKMB16toCodePage(converter.get(), bytes, capacity, text.data(), 4, &status),
              capacity);
    EXPECT_EQ(status, capacity < 20 ? 1 : 0) << capacity;
  }
}

TEST(TranscodingLossy, UPlusFffdItselfIsACharacter) {
  std::string out;
  EXPECT_EQ(TULKMBU8ToCodePage(NewConverter("GB18030").get(), out, "\xEF\xBF\xBD"), 0);
  EXPECT_EQ(TULKMBU8ToCodePage(NewConverter("UTF-8").get(), out, "\xEF\xBF\xBD"), 0);
  EXPECT_EQ(out, "\xEF\xBF\xBD");
  EXPECT_EQ(TULKMBU8ToCodePage(NewConverter("1252").get(), out, "\xEF\xBF\xBD"), 3);
  EXPECT_EQ(out, "?");
}

// UTF-7 carries any units.
TEST(TranscodingLossy, ASurrogateWithoutItsOtherHalfOutOfACodePage) {
  const OwnedConverter converter = NewConverter("UTF-7");
  std::string out;
  EXPECT_EQ(TULKMBCodePageToU8(converter.get(), out, "a+2AA-b"), 3);
  EXPECT_EQ(out,
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(TULKMBCodePageToU8(converter.get(), out, "a+2D3eAA-b"), 0);
  EXPECT_EQ(out,
            "a\xF0\x9F\x98\x80"
            "b");
  U16 wide;
  EXPECT_EQ(TULKMBCodePageToU16(converter.get(), wide, "a+2AA-b"), 0);
  EXPECT_EQ(wide, (U16{'a', 0xD800, 'b'}));
  unsigned short dst[3] = {7, 7, 7};
  int status = -1;
  EXPECT_EQ(TULKMBCodePageto16(converter.get(), dst, 2, "a+2AA-b", -1, &status), 1);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(TULKMBCodePageto16(converter.get(), dst, 2, "a+2AA-b", 7, &status), 1);
  EXPECT_EQ(dst[1], ' ');
}

TEST(TranscodingLossy, EveryPlaceOfAReplacementInALongText) {
  const OwnedConverter converter = NewConverter("1252");
  for (std::size_t place = 1000; place < 1050; ++place) {
    std::string text(2000, 'x');
    text.replace(place, 3, "\xE4\xBD\xA0");
    text.replace(1990, 2, "\xC3\xA9");
    const Reference<char> reference = ReferenceEncodedFrom8("1252", text);
    ASSERT_TRUE(reference.isLossy);
    for (const std::size_t capacity : {place, place + 1, std::size_t{3000}}) {
      CheckCapacity(reference, capacity, false, [&](char* dst, int c, int* status) {
        return TULKMB8toCodePage(converter.get(), dst, c, text.data(), 2000, status);
      });
    }
  }
}

}  // namespace
