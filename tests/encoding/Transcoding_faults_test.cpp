// Cases in which a conversion once hung, forgot something or read what it should not.

#include <gtest/gtest.h>
#include <mcmem/ConverterRegistry.h>
#include <mcmem/MultiByteString.h>
#include <mcmem/Transcoding.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "encoding/GuardedMemory.h"

namespace encoding_test {
namespace {

using namespace MCMEM_NAMESPACE;

struct Closer {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using OwnConverter = std::unique_ptr<UConverter, Closer>;

OwnConverter Open(const char* name) { return OwnConverter(TULKMBConverterNew_C(name)); }

// At the end of a text ICU tells of no character at all instead of an illegal one.
TEST(TranscodingFaults, AnIllegalByteOfGsmAtTheEndIsNotClean) {
  const OwnConverter converter = Open("gsm-03.38");
  ASSERT_NE(converter, nullptr);
  EXPECT_EQ(TULKMBValidCount_C(converter.get(), "\x80", -1), 0);
  EXPECT_EQ(TULKMBValidCount_C(converter.get(), "Z\x80\xFF", -1), 1);
  EXPECT_EQ(TULKMBValidCount_C(converter.get(), "ZZ", -1), 2);
  int status = 0;
  EXPECT_EQ(TULKMBBinaryCompare_C(1, converter.get(), "\x80", -1, "", -1, &status), 1);
  EXPECT_EQ(TULKMBBinaryCompare_C(1, converter.get(), "\x80", -1, "Z", -1, &status), 1);
  EXPECT_EQ(status, 3);
}

// ICU does not reset compound text.
TEST(TranscodingFaults, CompoundTextStartsAnewInEachCall) {
  const OwnConverter converter = Open("x11-compound-text");
  ASSERT_NE(converter, nullptr);
  const std::string tokyo = "\xE6\x9D\xB1\xE4\xBA\xAC";
  std::string first, second;
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), first, tokyo), 0);
  EXPECT_EQ(TULKMBU8ToCodePage(converter.get(), second, tokyo), 0);
  EXPECT_EQ(first, second);
  std::string back;
  EXPECT_EQ(TULKMBCodePageToU8(converter.get(), back, first), 0);
  EXPECT_EQ(back, tokyo);
  EXPECT_EQ(TULKMBCodePageToU8(converter.get(), back, "caf\xE9"), 0);
  EXPECT_EQ(back, "caf\xC3\xA9");
}

TEST(TranscodingFaults, CompoundTextIsCutInEveryCapacity) {
  const OwnConverter converter = Open("x11-compound-text");
  ASSERT_NE(converter, nullptr);
  const std::string text =
      "\xE1\xB8\x80\xE3\x81\x8E\xE3\x82\x80\xE3\x81\xA6\xE3\x81\xB2\xE5\x86\xA0\xE5\x86\xBE\xE9\xB5"
      "\x94\xE9\x89\xA4\xE5\xA1\xAA";
  const auto length = static_cast<int>(text.size());
  for (int capacity = 0; capacity <= 80; ++capacity) {
    std::string buffer(100, '#');
    int status = -1;
    const int result =
        TULKMB8toCodePage(converter.get(), buffer.data(), capacity, text.data(), length, &status);
    EXPECT_TRUE(capacity == 0 || result <= capacity) << result;
    EXPECT_EQ(buffer.substr(static_cast<std::size_t>(capacity)),
              std::string(100 - static_cast<std::size_t>(capacity), '#'));
  }
}

TEST(TranscodingFaults, CompoundTextMayBeTheDefault) {
  const OwnConverter converter = Open("x11-compound-text");
  ASSERT_NE(converter, nullptr);
  UConverter* const before = TULKMBGetDefaultConverter();
  TULKMBSetDefaultConverter(converter.get());
  for (int i = 0; i < 3; ++i) {
    std::string text;
    EXPECT_EQ(TULKMBU8ToCodePage(nullptr, text, "caf\xC3\xA9"), 0);
    EXPECT_EQ(text, "caf\xE9");
  }
  TULKMBSetDefaultConverter(before);
}

TEST(TranscodingFaults, ANullSourceWithoutLengthIsEmpty) {
  for (const char* name : {"65001", "1252", "932", "ISO-2022-JP", "UTF-16"}) {
    const OwnConverter converter = Open(name);
    ASSERT_NE(converter, nullptr);
    for (const int dir : {0, 1}) {
      char buffer[16];
      int status = -1;
      EXPECT_EQ(TULKMBCodePageAnd8(dir, converter.get(), buffer, 4, nullptr, 0, &status), 0);
      EXPECT_EQ(status, 0);
      EXPECT_EQ(TULKMBCodePageAnd16(dir, converter.get(), buffer, 4, nullptr, 0, &status), 0);
      EXPECT_EQ(status, 0);
      EXPECT_EQ(TULKMB8and16(dir, buffer, 4, nullptr, 0, &status), 0);
      EXPECT_EQ(status, 0);
      EXPECT_EQ(TULKMB8and32(dir, buffer, 2, nullptr, 0, &status), 0);
      EXPECT_EQ(status, 0);
    }
  }
}

TEST(TranscodingFaults, WithoutRoomTheRestOfACharacterIsNotForgotten) {
  const OwnConverter converter = Open("UTF-32");
  ASSERT_NE(converter, nullptr);
  unsigned short unit = 0;
  for (const int capacity : {0, 1}) {
    int status = -1;
    EXPECT_EQ(TULKMBCodePageto16(converter.get(), &unit, capacity, "\xFF\xFE", 2, &status), 1);
    EXPECT_EQ(status, 3);
  }
}

TEST(TranscodingFaults, NothingIsReadBehindAUtf16Terminator) {
  const GuardedMemory memory(8192);
  for (std::size_t count = 0; count <= 4500; count += count < 40 ? 1 : 97) {
    auto* const text = reinterpret_cast<unsigned short*>(memory.End()) - count - 1;
    if (reinterpret_cast<unsigned char*>(text) < memory.Begin()) break;
    for (std::size_t i = 0; i < count; ++i) text[i] = 'x';
    text[count] = 0;
    std::string bytes(count + 1, '#');
    int status = -1;
    EXPECT_EQ(TULKMB16to8(bytes.data(), static_cast<int>(bytes.size()), text, -1, &status),
              static_cast<int>(count));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(bytes.c_str(), std::string(count, 'x'));
  }
}

}  // namespace
}  // namespace encoding_test
