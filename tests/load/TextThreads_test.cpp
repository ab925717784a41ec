// What the text half promises to threads: all may convert once the default converter exists.
#include <gtest/gtest.h>
#include <mcmem/ConverterRegistry.h>
#include <mcmem/ExtNameStr.h>
#include <mcmem/MultiByteString.h>
#include <mcmem/Transcoding.h>
#include <mcmem/UnicodeForms.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <string>

#include "encoding/RegistryState.h"
#include "load/Threads.h"
#include "xml/TestDocument.h"

namespace {

using encoding_test::DefaultCodePage;
using encoding_test::OwnedConverter;
using load_test::OnAllThreads;
using namespace MCMEM_NAMESPACE;

#ifdef MCX_TEST_SANITIZED
constexpr int kRounds = 6;
#else
constexpr int kRounds = 50;
#endif

const std::string kUtf8 =
    "plain, \xD0\x96\xD0\xB6, and then some plain text that is longer than a block";
const std::string kLong = std::string(6000, 'x') + kUtf8;

// Each of these is true when everything came out right. They convert with the default converter.

bool Strings(const std::string& text) {
  std::string bytes, utf8;
  U16String wide;
  return TULKMBU8ToU16(wide, text) == 0 && TULKMBU16ToCodePage(nullptr, bytes, wide) == 0 &&
         TULKMBCodePageToU8(nullptr, utf8, bytes) == 0 && utf8 == text &&
         TULKMBU8ToCodePage(nullptr, utf8, text) == 0 && utf8 == bytes &&
         TULKMBCodePageToU16(nullptr, wide, bytes) == 0 && TULKMBU16ToU8(utf8, wide) == 0 &&
         TULKMBU8ToGeneric(utf8, text) == 0 && TULKMBGenericToU8(utf8, bytes) == 0 && utf8 == text;
}

bool Buffers(const std::string& text) {
  char bytes[8000];
  char utf8[8000];
  int status = -1;
  const int length = TULKMB8toCodePage(nullptr, bytes, sizeof bytes, text.c_str(), -1, &status);
  if (status != 0) return false;
  const int back = TULKMBCodePageto8(nullptr, utf8, sizeof utf8, bytes, length, &status);
  return status == 0 && text.compare(0, text.npos, utf8, static_cast<std::size_t>(back)) == 0;
}

bool Arrays(const std::string& text) {
  const std::unique_ptr<unsigned short[]> wide(TULKMBTranscodeU8(text.c_str()));
  const std::unique_ptr<char[]> bytes(TULKMBTranscodeCodePage(wide.get()));
  const std::unique_ptr<unsigned short[]> back(TULKMBTranscodeCodePage(bytes.get()));
  const std::unique_ptr<char[]> utf8(TULKMBTranscodeU8(back.get()));
  return text == utf8.get();
}

bool Searches(const std::string& text) {
  std::string bytes;
  if (TULKMBU8ToCodePage(nullptr, bytes, text) != 0) return false;
  const auto length = static_cast<int>(bytes.size());
  unsigned int first = 0;
  int status = -1;
  return TULKMBValidCount_C(nullptr, bytes.data(), length) == length &&
         TULKMBU32Get_C(&first, bytes.data(), 0, length) > 0 &&
         first == static_cast<unsigned char>(text[0]) &&
         TULKMBBinaryCompare_C(1, nullptr, bytes.data(), length, bytes.data(), length, &status) ==
             0 &&
         TULKMBstrcspn_C(bytes.c_str(), ",") >= 0;
}

bool Names(const std::string& text) {
  ExtNameStr name;
  name.SetU8(text);
  ExtNameStr copy(name);
  copy.SetCP(name.GetCP(), nullptr);
  return copy.GetU8() == text && copy.GetU16() == name.GetU16();
}

bool Openings(const std::string&) {
  for (const char* name : {"932", "1251", "ISO-2022-JP", "windows-28591"}) {
    const OwnedConverter c(TULKMBConverterNew_C(name));
    if (c == nullptr) return false;
  }
  char name[60];
  return TULKMBCpNameFromNum_C(name, 932) == 1 && std::strlen(SystemEncoding()) > 0 && !qUTF8mode();
}

bool Forms(const std::string& text) {
  UNALIGNED16 wide[8000];
  const auto* from = reinterpret_cast<const unsigned char*>(text.data());
  UNALIGNED16* to = wide;
  return ConvertUTF8toUTF16(&from, from + text.size(), &to, wide + 8000, strictConversion) ==
         conversionOK;
}

constexpr bool (*kWork[])(const std::string&) = {Strings, Buffers,  Arrays, Searches,
                                                 Names,   Openings, Forms};

// The locale and the name of the system encoding are found out by one thread.
class TextThreads : public testing::Test {
 protected:
  TextThreads() { (void)SystemEncoding(); }
};

// Code pages that this process has not used yet: the threads meet while what is remembered about
// them is found out.
TEST_F(TextThreads, AllConvertWithOneDefaultConverter) {
  for (const char* code_page : {"1251", "UTF-8", "GB18030", "UTF-7", "ISO-2022-JP", "LMBCS-1",
                                "SCSU", "x11-compound-text"}) {
    SCOPED_TRACE(code_page);
    const DefaultCodePage standard(code_page);
    for (const auto& work : kWork) {
      std::atomic<int> wrong{0};
      OnAllThreads([&](int) {
        for (int i = 0; i < kRounds; ++i) wrong += work(i % 2 == 0 ? kUtf8 : kLong) ? 0 : 1;
      });
      EXPECT_EQ(wrong, 0) << &work - kWork;
    }
  }
}

TEST_F(TextThreads, AllDoDifferentThings) {
  const DefaultCodePage standard("1251");
  std::atomic<int> wrong{0};
  OnAllThreads([&](int thread) {
    for (int i = 0; i < kRounds; ++i) {
      const auto& work = kWork[static_cast<std::size_t>(thread + i) % std::size(kWork)];
      wrong += work(kUtf8) ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST_F(TextThreads, EachHasAConverterOfItsOwn) {
  std::atomic<int> wrong{0};
  OnAllThreads([&](int thread) {
    const char* const names[] = {"1251", "ibm-866", "KOI8-R", "ISO-8859-5"};
    for (int i = 0; i < kRounds; ++i) {
      const OwnedConverter c(TULKMBConverterNew_C(names[(thread + i) % 4]));
      std::string bytes, utf8;
      const bool is_right = TULKMBU8ToCodePage(c.get(), bytes, kUtf8) == 0 &&
                            TULKMBCodePageToU8(c.get(), utf8, bytes) == 0 && utf8 == kUtf8;
      wrong += is_right ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace
