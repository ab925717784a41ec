#include <gtest/gtest.h>

#include <algorithm>

#include "encoding/RegistryState.h"
#include "encoding/TranscodingCheck.h"

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

using CopyFunction = int (*)(char*, int, const char*, int, int*);

const std::string kUtf8 = "h\xC3\xA9llo";
const std::string kLatin = "h\xE9llo";
const U16 kWide = {'h', 0xE9, 'l', 'l', 'o'};

// The functions that copy in the mode, converters bound.
int CodePageToGeneric(char* dst, int capacity, const char* src, int length, int* status) {
  return TULKMBCodePagetoGeneric(nullptr, dst, capacity, src, length, status);
}
int GenericToCodePage(char* dst, int capacity, const char* src, int length, int* status) {
  return TULKMBGenerictoCodePage(nullptr, dst, capacity, src, length, status);
}

void CheckPlainCopy(CopyFunction copy) {
  const std::string text = kUtf8 + kLatin;
  const auto size = static_cast<int>(text.size());
  for (int capacity = 1; capacity <= size + 3; ++capacity) {
    SCOPED_TRACE(capacity);
    const auto count = static_cast<std::size_t>(std::min(capacity, size));
    std::string expected(text.size() + 8, '\x7E');
    std::string buffer = expected;
    expected.replace(0, count, text, 0, count);
    int status = -1;
    EXPECT_EQ(copy(&buffer[0], capacity, text.data(), size, &status), static_cast<int>(count));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(buffer, expected) << "no blank, no terminator";
    expected[count] = '\0';
    EXPECT_EQ(copy(&buffer[0], capacity, text.c_str(), -1, &status), static_cast<int>(count));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(buffer, expected) << "terminator behind the copy, also at the capacity";
  }
}

void CheckPlainCopyArguments(CopyFunction copy) {
  char dst[4] = {7, 7, 7, 7};
  int status = -1;
  EXPECT_EQ(copy(nullptr, 0, "abc", -1, &status), 3);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(copy(dst, 0, "abc", 2, &status), 2);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(copy(dst, 0, "", -1, &status), 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(copy(nullptr, 2, "abc", 3, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(copy(dst, -1, "abc", 3, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(dst[0], 7);
  EXPECT_EQ(copy(dst, 4, nullptr, -1, &status), 0);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(dst[0], 0);
  EXPECT_EQ(copy(dst, 4, nullptr, 0, &status), 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(copy(dst, 2, "ab", 2, nullptr), 2);
  std::string text = "0123456789";
  EXPECT_EQ(copy(&text[2], 8, text.data(), 8, nullptr), 8);
  EXPECT_EQ(text, "0101234567");
}

TEST(TranscodingGeneric, Utf8ModeCopiesBetweenGenericAndUtf8) {
  const Utf8Mode mode(1);
  for (const CopyFunction copy : {TULKMBGenericto8, TULKMB8toGeneric}) {
    CheckPlainCopy(copy);
    CheckPlainCopyArguments(copy);
  }
}

TEST(TranscodingGeneric, CodePageModeCopiesBetweenGenericAndCodePage) {
  const DefaultCodePage latin("1252");
  const Utf8Mode mode(0);
  for (const CopyFunction copy : {CodePageToGeneric, GenericToCodePage}) {
    CheckPlainCopy(copy);
    CheckPlainCopyArguments(copy);
  }
}

TEST(TranscodingGeneric, CodePageModeCopiesForAnyConverter) {
  const DefaultCodePage latin("1252");
  const Utf8Mode mode(0);
  const OwnedConverter cyrillic = NewConverter("1251");
  char dst[16] = {};
  EXPECT_EQ(TULKMBCodePagetoGeneric(cyrillic.get(), dst, 16, "\xE9", -1), 1);
  EXPECT_STREQ(dst, "\xE9");
  EXPECT_EQ(TULKMBGenerictoCodePage(cyrillic.get(), dst, 16, "\xE8", -1), 1);
  EXPECT_STREQ(dst, "\xE8");
  std::string out;
  EXPECT_EQ(TULKMBCodePageToGeneric(cyrillic.get(), out, "\xE9"), 0);
  EXPECT_EQ(out, "\xE9");
  EXPECT_EQ(TULKMBGenericToCodePage(cyrillic.get(), out, "\xE8"), 0);
  EXPECT_EQ(out, "\xE8");
}

TEST(TranscodingGeneric, BufferFormsConvertByTheMode) {
  const DefaultCodePage latin("1252");
  for (const bool isUtf8 : {false, true}) {
    SCOPED_TRACE(isUtf8);
    const Utf8Mode mode(isUtf8 ? 1 : 0);
    const std::string& generic = isUtf8 ? kUtf8 : kLatin;
    Reference<char> reference;
    CheckBuffers(isUtf8 ? ReferenceFromUtf8(generic) : ReferenceDecoded("1252", generic), generic,
                 TULKMBGenericto16);
    CheckBuffers(isUtf8 ? ReferenceToUtf8(kWide) : ReferenceEncoded("1252", kWide), kWide,
                 TULKMB16toGeneric);
  }
  {
    const Utf8Mode mode(0);
    CheckBuffers(ReferenceDecodedTo8("1252", kLatin), kLatin, TULKMBGenericto8);
    CheckBuffers(ReferenceEncodedFrom8("1252", kUtf8), kUtf8, TULKMB8toGeneric);
  }
}

TEST(TranscodingGeneric, Utf8ModeConvertsToAndFromTheGivenConverter) {
  const DefaultCodePage latin("1252");
  const Utf8Mode mode(1);
  const OwnedConverter cyrillic = NewConverter("1251");
  char dst[8];
  EXPECT_EQ(TULKMBCodePagetoGeneric(cyrillic.get(), dst, 8, "\xE9", -1), 2);
  EXPECT_STREQ(dst, "\xD0\xB9");
  EXPECT_EQ(TULKMBGenerictoCodePage(cyrillic.get(), dst, 8, "\xD0\xB9", -1), 1);
  EXPECT_STREQ(dst, "\xE9");
  EXPECT_EQ(TULKMBGenerictoCodePage(nullptr, dst, 8, kUtf8.c_str(), -1), 5);
  EXPECT_EQ(dst, kLatin);
}

TEST(TranscodingGeneric, StringFormsConvertByTheMode) {
  const DefaultCodePage latin("1252");
  for (const bool isUtf8 : {false, true}) {
    SCOPED_TRACE(isUtf8);
    const Utf8Mode mode(isUtf8 ? 1 : 0);
    const std::string& generic = isUtf8 ? kUtf8 : kLatin;
    std::string out;
    U16 wide;
    EXPECT_EQ(TULKMBU8ToGeneric(out, kUtf8), 0);
    EXPECT_EQ(out, generic);
    EXPECT_EQ(TULKMBGenericToU8(out, generic), 0);
    EXPECT_EQ(out, kUtf8);
    EXPECT_EQ(TULKMBU16ToGeneric(out, kWide), 0);
    EXPECT_EQ(out, generic);
    EXPECT_EQ(TULKMBGenericToU16(wide, generic), 0);
    EXPECT_EQ(wide, kWide);
    EXPECT_EQ(TULKMBCodePageToGeneric(nullptr, out, kLatin), 0);
    EXPECT_EQ(out, generic);
    EXPECT_EQ(TULKMBGenericToCodePage(nullptr, out, generic), 0);
    EXPECT_EQ(out, kLatin);
  }
}

TEST(TranscodingGeneric, StringFormsWithAConverterConvertByTheMode) {
  const OwnedConverter cyrillic = NewConverter("1251");
  const std::string utf8 = "\xD0\xB9";
  const U16 unit = {0x439};
  for (const bool isUtf8 : {false, true}) {
    SCOPED_TRACE(isUtf8);
    const Utf8Mode mode(isUtf8 ? 1 : 0);
    const std::string generic = isUtf8 ? utf8 : "\xE9";
    std::string out;
    U16 wide;
    EXPECT_EQ(TULKMBU8ToGeneric(cyrillic.get(), out, utf8), 0);
    EXPECT_EQ(out, generic);
    EXPECT_EQ(TULKMBGenericToU8(cyrillic.get(), out, generic), 0);
    EXPECT_EQ(out, utf8);
    EXPECT_EQ(TULKMBU16ToGeneric(cyrillic.get(), out, unit), 0);
    EXPECT_EQ(out, generic);
    EXPECT_EQ(TULKMBGenericToU16(cyrillic.get(), wide, generic), 0);
    EXPECT_EQ(wide, unit);
  }
}

}  // namespace
