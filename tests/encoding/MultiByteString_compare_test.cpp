// Comparisons by code points.
#include <gtest/gtest.h>
#include <unicode/uchar.h>

#include <random>
#include <string>
#include <thread>

#include "encoding/MultiByteStringText.h"
#include "encoding/RegistryState.h"
#include "mcmem/MultiByteString.h"
#include "reference/SlowUtf8Strings.h"

namespace {

using encoding_test::BorderBytes;
using encoding_test::DefaultCodePage;
using encoding_test::Hex;
using encoding_test::NewConverter;
using MCMEM_NAMESPACE::TULKMBBinaryCompare_8;
using MCMEM_NAMESPACE::TULKMBBinaryCompare_C;
using MCMEM_NAMESPACE::TULKMBqstricmp_8;
using MCMEM_NAMESPACE::TULKMBqstricmp_C;
using MCMEM_NAMESPACE::TULKMBstrnicmp_8;
using MCMEM_NAMESPACE::TULKMBstrnicmp_C;

struct CompareRow {
  const char* rule;
  const char* a;
  const char* b;
  int folded;
  int exact;
  int status = 0;
};

constexpr CompareRow kUtf8[] = {
    {"equal", "abc", "abc", 0, 0},
    {"two empty texts", "", "", 0, 0},
    {"an empty text is the smaller one", "", "a", -1, -1},
    {"a prefix is the smaller one", "ab", "abc", -1, -1},
    {"case is folded", "ABC", "abd", -1, -1},
    {"case alone", "ABC", "abc", 0, -1},
    {"upper case stands before the underscore only when exact", "Z", "_", 1, -1},
    {"the ends of the alphabet", "@AZ[`az{", "@az[`AZ{", 0, -1},
    {"signs beside the letters are not folded", "[", "{", -1, -1},
    {"beyond ASCII", "\xC3\x89t\xC3\xA9", "\xC3\xA9T\xC3\x89", 0, -1},
    {"Greek", "\xCE\xA3", "\xCF\x83", 0, -1},
    {"the final sigma is another letter", "\xCF\x82", "\xCF\x83", -1, -1},
    {"sharp s is not two letters",
     "Stra\xC3\x9F"
     "e",
     "STRASSE", 1, 1},
    {"the capital sharp s", "\xE1\xBA\x9E", "\xC3\x9F", 0, 1},
    {"dotted capital I becomes a plain i", "\xC4\xB0", "i", 0, 1},
    {"dotless i stays", "\xC4\xB1", "i", 1, 1},
    {"the Kelvin sign", "\xE2\x84\xAA", "k", 0, 1},
    {"beyond 16 bits", "\xF0\x90\x90\x80", "\xF0\x90\x90\xA8", 0, -1},
    {"by code points, not by UTF-16 units", "\xEF\xBF\xBD", "\xF0\x90\x80\x80", -1, -1},
    {"an illegal byte is its value", "a\xE9", "a\xC3\xA9", 0, 0, 3},
    {"and is folded like a character", "\xC9", "\xC3\xA9", 0, -1, 3},
    {"in the second text", "\xC3\xA9", "\xE9", 0, 0, 3},
    {"behind the decision", "a\xFF", "b\xFF", -1, -1},
    {"behind the end of the other text", "a", "a\xFF", -1, -1},
    {"a cut character", "\xE4\xB8", "\xC3\xA4\xC2\xB8", 0, 0, 3},
    {"a surrogate is a character", "\xED\xA0\x80", "\xED\xA0\x81", -1, -1},
    {"an overlong form is bytes", "\xC0\x80", "\xC3\x80\xC2\x80", 0, 0, 3},
    {"above the last code point", "\xF4\x90\x80\x80", "\xF4", 1, 1, 3},
    {"long, different in the middle of a word", "0123456789abcdefX", "0123456789ABCDEFy", -1, 1},
    {"long, equal", "0123456789abcdefghijk", "0123456789ABCDEFGHIJK", 0, 1},
};

TEST(MultiByteStringCompare, Utf8ComparesByCodePoints) {
  for (const CompareRow& row : kUtf8) {
    int status = 7;
    EXPECT_EQ(TULKMBBinaryCompare_8(0, row.a, -1, row.b, -1, &status), row.folded) << row.rule;
    EXPECT_EQ(status, row.status) << row.rule;
    EXPECT_EQ(TULKMBBinaryCompare_8(0, row.b, -1, row.a, -1, nullptr), -row.folded) << row.rule;
    status = 7;
    EXPECT_EQ(TULKMBqstricmp_8(row.a, -1, row.b, -1, &status), row.folded == 0) << row.rule;
    EXPECT_EQ(status, row.status) << row.rule;
    EXPECT_EQ(TULKMBqstricmp_8(row.a, -1, row.b, -1), row.folded == 0) << row.rule;
    EXPECT_EQ(TULKMBstrnicmp_8(row.a, row.b, 100), row.folded) << row.rule;
    EXPECT_EQ(TULKMBstrnicmp_8(row.a, row.b, -1), row.folded) << row.rule;
  }
}

TEST(MultiByteStringCompare, AnyOtherModeIsExact) {
  for (const CompareRow& row : kUtf8) {
    for (const int mode : {1, 2, -1}) {
      EXPECT_EQ(TULKMBBinaryCompare_8(mode, row.a, -1, row.b, -1, nullptr), row.exact) << row.rule;
      EXPECT_EQ(TULKMBBinaryCompare_8(mode, row.b, -1, row.a, -1, nullptr), -row.exact) << row.rule;
    }
  }
}

TEST(MultiByteStringCompare, StatusOfAnExactComparisonToo) {
  int status = 7;
  TULKMBBinaryCompare_8(1, "a", -1, "a", -1, &status);
  EXPECT_EQ(status, 0);
  TULKMBBinaryCompare_8(1, "\x80", -1, "a", -1, &status);
  EXPECT_EQ(status, 3);
}

// ---- Lengths ----

struct LengthRow {
  const char* rule;
  std::string a;
  int aLength;
  std::string b;
  int bLength;
  int order;
  int status;
};

const LengthRow kLengths[] = {
    {"the length ends the text", "abX", 2, "abY", 2, 0, 0},
    {"the lengths are each text's own", "abX", 2, "abX", 3, -1, 0},
    {"a length of 0", "a", 0, "b", 0, 0, 0},
    {"a length beyond the terminator", "ab", 50, "ab", 2, 0, 0},
    {"a terminator within the length", std::string("ab\0X", 4), 4, std::string("ab\0Y", 4), 4, 0,
     0},
    {"a terminator within one length only", std::string("ab\0X", 4), 4, "abc", 3, -1, 0},
    {"a length that cuts a character", "\xC3\xA9", 1, "\xC3\xA9", 1, 0, 3},
    {"one text cut, the other not", "\xC3\xA9", 1, "\xC3\x83", 2, 0, 3},
    {"a terminator within a character", std::string("\xE4\0\xAD", 3), 3, "\xC3\xA4", 2, 0, 3},
    {"long texts with lengths", std::string(70, 'a') + "X", 70, std::string(70, 'A') + "Y", 70, 0,
     0},
    {"a terminator deep within the length", std::string(66, 'a') + '\0' + "X", 68,
     std::string(66, 'A') + '\0' + "Y", 68, 0, 0},
};

TEST(MultiByteStringCompare, LengthAndTerminatorBothEndAText) {
  const DefaultCodePage page("UTF-8");
  for (const LengthRow& row : kLengths) {
    int status = 7;
    EXPECT_EQ(
        TULKMBBinaryCompare_8(0, row.a.c_str(), row.aLength, row.b.c_str(), row.bLength, &status),
        row.order)
        << row.rule;
    EXPECT_EQ(status, row.status) << row.rule;
    status = 7;
    EXPECT_EQ(TULKMBBinaryCompare_C(0, nullptr, row.a.c_str(), row.aLength, row.b.c_str(),
                                    row.bLength, &status),
              row.order)
        << row.rule;
    EXPECT_EQ(status, row.status) << row.rule;
  }
}

TEST(MultiByteStringCompare, AtMostSoManyBytes) {
  const DefaultCodePage page("UTF-8");
  for (const auto compare : {TULKMBstrnicmp_8, TULKMBstrnicmp_C}) {
    EXPECT_EQ(compare("abX", "ABy", 2), 0);
    EXPECT_EQ(compare("abX", "ABy", 3), -1);
    EXPECT_EQ(compare("abX", "ABy", -1), -1);
    EXPECT_EQ(compare("abX", "ABy", 0), 0);
    EXPECT_EQ(compare("\xC3\xA9", "\xC3\xA8", 1), 0) << "the lead bytes alone";
  }
}

TEST(MultiByteStringCompare, NullIsEmpty) {
  int status = 7;
  EXPECT_EQ(TULKMBBinaryCompare_8(0, nullptr, -1, nullptr, 5, &status), 0);
  EXPECT_EQ(TULKMBBinaryCompare_8(0, nullptr, 3, "a", -1, &status), -1);
  EXPECT_EQ(TULKMBBinaryCompare_C(0, nullptr, nullptr, -1, nullptr, 5, &status), 0);
  EXPECT_EQ(TULKMBBinaryCompare_C(0, nullptr, "a", -1, nullptr, 3, &status), 1);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(TULKMBqstricmp_8(nullptr, -1, "", -1));
  EXPECT_TRUE(TULKMBqstricmp_C(nullptr, -1, "", -1));
}

// ---- Against the plain words ----

unsigned int Lower(unsigned int c) {
  return static_cast<unsigned int>(u_tolower(static_cast<UChar32>(c)));
}
unsigned int Same(unsigned int c) { return c; }

void ExpectPlainOrder(const std::string& a, int aLength, const std::string& b, int bLength) {
  const std::string seenA = aLength < 0 ? a : a.substr(0, static_cast<std::size_t>(aLength));
  const std::string seenB = bLength < 0 ? b : b.substr(0, static_cast<std::size_t>(bLength));
  for (const int mode : {0, 1}) {
    const reference::Order expected = reference::Compare(seenA, seenB, mode == 0 ? Lower : Same);
    int status = 7;
    const int order = TULKMBBinaryCompare_8(mode, a.c_str(), aLength, b.c_str(), bLength, &status);
    ASSERT_EQ(order, expected.order) << mode << ": " << Hex(a) << " and " << Hex(b);
    ASSERT_EQ(status, expected.status) << mode << ": " << Hex(a) << " and " << Hex(b);
  }
}

TEST(MultiByteStringCompare, EveryPairOfAsciiCharacters) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      // In the middle of a word, and behind the last whole one.
      for (const std::size_t before : {0u, 3u, 8u, 13u, 64u}) {
        const std::string front(before, 'q');
        ExpectPlainOrder(front + static_cast<char>(a) + "zzzzzzzzzz", -1,
                         front + static_cast<char>(b) + "zzzzzzzzzz", -1);
        ExpectPlainOrder(front + static_cast<char>(a), -1, front + static_cast<char>(b), -1);
      }
    }
  }
}

TEST(MultiByteStringCompare, RandomUtf8AgreesWithThePlainWords) {
  std::mt19937 random(7);
  const std::string bytes = BorderBytes() + "aaaaaAAAAAzZ@[`{" + std::string(2, '\0');
  for (int i = 0; i < encoding_test::kRounds; ++i) {
    const std::string front(random() % 100, 'K');
    const std::string a = front + encoding_test::RandomText(random, 20, bytes);
    std::string b = a;
    // Mostly equal, or different late.
    if (random() % 4 != 0 && !b.empty()) b[random() % b.size()] = bytes[random() % bytes.size()];
    if (random() % 8 == 0) b += 'x';
    for (char& c : b) {
      if (c == 'K' && random() % 2 == 0) c = 'k';
    }
    const int aLength = random() % 2 == 0 ? -1 : static_cast<int>(random() % (a.size() + 2));
    const int bLength = random() % 2 == 0 ? -1 : static_cast<int>(random() % (b.size() + 2));
    ExpectPlainOrder(a, aLength, b, bLength);
    if (HasFatalFailure()) return;
  }
}

TEST(MultiByteStringCompare, EveryCodePointIsFoldedAsIcuFoldsIt) {
  const auto encode = [](unsigned int value) {
    char text[4];
    int length = 0;
    U8_APPEND_UNSAFE(text, length, static_cast<UChar32>(value));
    return std::string(text, static_cast<std::size_t>(length));
  };
  for (unsigned int value = 1; value <= 0x10FFFF; ++value) {
    const std::string lower = encode(Lower(value));
    ASSERT_TRUE(TULKMBqstricmp_8(encode(value).c_str(), -1, lower.c_str(), -1)) << value;
  }
}

// ---- Code pages ----

struct CodePageRow {
  const char* rule;
  const char* page;
  std::string a;
  std::string b;
  int folded;
  int exact;
  int status = 0;
};

const CodePageRow kCodePages[] = {
    {"single bytes", "windows-1252", "\xC9T\xC9", "\xE9t\xE9", 0, -1},
    {"by code points, not by bytes", "windows-1252", "\x80", "\xFF", 1, 1},
    {"unequal in bytes, equal in code points", "windows-31j", "\x87\x90", "\x81\xE0", 0, 0},
    {"double bytes", "windows-31j", "\x82\x60", "\x82\x81", 0, -1},
    {"EBCDIC", "ibm-37", "\xC1", "\x81", 0, -1},
    {"an illegal byte is its value", "US-ASCII", "a\xE9", "a\xE9", 0, 0, 3},
    {"and is folded", "US-ASCII", "\xC9", "\xE9", 0, -1, 3},
    {"an unassigned byte too", "windows-1253", "\xD2", "\xD2", 0, 0, 3},
    {"a cut character", "windows-31j", "a\x83", "a\x83", 0, 0, 3},
    {"a replaced character never equals U+FFFD", "UTF-8", "\xFF", "\xEF\xBF\xBD", -1, -1, 3},
    {"a fault behind the decision", "US-ASCII", "a\xE9", "b\xE9", -1, -1},
    {"states", "ISO-2022-JP", "\x1B$B0!0\"\x1B(B", "\x1B$@0!\x1B$B0\"\x1B(B", 0, 0},
    {"states, different", "ISO-2022-JP", "\x1B$B0!0\"", "\x1B$B0!\x1B(B0\"", 1, 1},
    {"a change of state is no character", "ISO-2022-JP", "a\x1B(B", "a", 0, 0},
    {"one character that is two code points", "ibm-16684", "\xEC\xB5z", "\xEC\xB5z", 0, 0, 3},
    {"it is longer than its first", "ibm-16684", "\xEC\xB5", "\x44\x86", 1, 1},
    {"its second counts", "ibm-16684", "\xEC\xB5", "\x44\x86\x44\x86", 1, 1},
    {"also with states", "ibm-1390", "\x0E\xEC\xB5\x0F", "\x0E\x44\x86\x44\x86", 1, 1},
    {"a code page that looks ahead", "ISCII,version=0", "a\xB3\xE9\xB4", "A\xB3\xE9\xB4", 0, 1},
};

TEST(MultiByteStringCompare, CodePageComparesByCodePoints) {
  for (const CodePageRow& row : kCodePages) {
    const auto converter = NewConverter(row.page);
    if (converter == nullptr) continue;
    const DefaultCodePage page(row.page);
    for (void* given : {static_cast<void*>(nullptr), static_cast<void*>(converter.get())}) {
      int status = 7;
      EXPECT_EQ(TULKMBBinaryCompare_C(0, given, row.a.c_str(), -1, row.b.c_str(), -1, &status),
                row.folded)
          << row.rule;
      EXPECT_EQ(status, row.status) << row.rule;
      EXPECT_EQ(TULKMBBinaryCompare_C(0, given, row.b.c_str(), -1, row.a.c_str(), -1, nullptr),
                -row.folded)
          << row.rule;
      EXPECT_EQ(TULKMBBinaryCompare_C(1, given, row.a.c_str(), -1, row.b.c_str(), -1, nullptr),
                row.exact)
          << row.rule;
    }
    int status = 7;
    EXPECT_EQ(TULKMBqstricmp_C(row.a.c_str(), -1, row.b.c_str(), -1, &status), row.folded == 0)
        << row.rule;
    EXPECT_EQ(status, row.status) << row.rule;
    EXPECT_EQ(TULKMBstrnicmp_C(row.a.c_str(), row.b.c_str(), 100), row.folded) << row.rule;
  }
}

// In a Unicode code page the two families say the same.
TEST(MultiByteStringCompare, Utf8AsACodePageAgreesOnLegalText) {
  const DefaultCodePage page("UTF-8");
  for (const CompareRow& row : kUtf8) {
    if (row.status != 0 || std::string(row.a).find('\xED') != std::string::npos) continue;
    EXPECT_EQ(TULKMBBinaryCompare_C(0, nullptr, row.a, -1, row.b, -1, nullptr), row.folded)
        << row.rule;
    EXPECT_EQ(TULKMBBinaryCompare_C(5, nullptr, row.a, -1, row.b, -1, nullptr), row.exact)
        << row.rule;
  }
}

// Plain ASCII takes a way of its own: text that differs from it only behind the decision goes the
// other way, and must be told to be the same.
TEST(MultiByteStringCompare, PlainAsciiIsComparedAsOtherText) {
  std::mt19937 random(9);
  for (const char* name : {"windows-1252", "windows-31j", "ISO-8859-1", "UTF-8", "ibm-37",
                           "ibm-943", "US-ASCII", "ISO-2022-JP"}) {
    const auto converter = NewConverter(name);
    for (int i = 0; i < encoding_test::kRounds / 100; ++i) {
      const std::string bytes = "aAzZ\\~{+-@[`\x1A\x1C\x7F";
      std::string a = encoding_test::RandomText(random, 6, bytes);
      std::string b = random() % 2 == 0 ? a : encoding_test::RandomText(random, 6, bytes);
      a += random() % 2 == 0 ? 'q' : 'r';
      b += 's';
      for (const int mode : {0, 1}) {
        int status = 7;
        int otherStatus = 7;
        const int order =
            TULKMBBinaryCompare_C(mode, converter.get(), a.c_str(), -1, b.c_str(), -1, &status);
        const std::string tail = "\xFF\xFE";
        const int otherOrder = TULKMBBinaryCompare_C(mode, converter.get(), (a + tail).c_str(), -1,
                                                     (b + tail).c_str(), -1, &otherStatus);
        ASSERT_EQ(order, otherOrder) << name << ": " << Hex(a) << " and " << Hex(b);
        ASSERT_EQ(status, otherStatus) << name << ": " << Hex(a) << " and " << Hex(b);
      }
    }
  }
}

TEST(MultiByteStringCompare, GivenConverterIsResetForPlainAsciiToo) {
  const auto converter = NewConverter("windows-31j");
  const char* source = "\x83";
  UChar units[4];
  UChar* target = units;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(converter.get(), &target, units + 4, &source, source + 1, nullptr, false, &error);
  TULKMBBinaryCompare_C(0, converter.get(), "a", -1, "a", -1, nullptr);
  EXPECT_EQ(ucnv_toUCountPending(converter.get(), &error), 0);
  source = "A";
  ucnv_toUnicode(converter.get(), &target, units + 4, &source, source + 1, nullptr, true, &error);
  EXPECT_EQ(std::u16string(units, target), u"A");
}

// Nothing is missed by the bytes that decide what is legal.
TEST(MultiByteStringCompare, StatusKnowsEveryIllegalSequence) {
  const std::string bytes = BorderBytes();
  std::string text(4, '\0');
  for (std::size_t a = 0; a < bytes.size(); a += encoding_test::kLeadStep) {
    for (const char b : bytes) {
      for (const char c : bytes) {
        for (const char d : bytes) {
          text = {bytes[a], b, c, d};
          int status = 7;
          TULKMBBinaryCompare_8(1, text.c_str(), 4, text.c_str(), 4, &status);
          ASSERT_EQ(status, reference::Compare(text, text, Same).status) << Hex(text);
        }
      }
    }
  }
}

// A zero byte ends a text in every code page.
TEST(MultiByteStringCompare, ZeroBytesEndWideUnitsToo) {
  const auto converter = NewConverter("UTF-16LE");
  const std::string text("\x61\x4E\x62\x4E\0\x4E", 6);
  int status = 7;
  EXPECT_EQ(TULKMBBinaryCompare_C(0, converter.get(), text.data(), 6, text.data(), 4, &status), 0);
  EXPECT_EQ(status, 0);
}

// Leaves a converter in the middle of a character.
void LeaveUnfinished(UConverter* converter, const std::string& bytes) {
  UChar units[8];
  UChar* target = units;
  const char* source = bytes.data();
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(converter, &target, units + 8, &source, source + bytes.size(), nullptr, false,
                 &error);
}

TEST(MultiByteStringCompare, UnfinishedConverterIsReset) {
  const DefaultCodePage page("windows-31j");
  const auto given = NewConverter("ISO-2022-JP");
  LeaveUnfinished(page.Get(), "a\x83");
  LeaveUnfinished(given.get(), "\x1B$B0");
  int status = 7;
  EXPECT_EQ(TULKMBBinaryCompare_C(0, nullptr, "AB", -1, "ab", -1, &status), 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(TULKMBBinaryCompare_C(0, given.get(), "AB", -1, "ab", -1, &status), 0);
  EXPECT_EQ(status, 0);
}

TEST(MultiByteStringCompare, DefaultConverterIsNotTouched) {
  const DefaultCodePage page("windows-31j");
  LeaveUnfinished(page.Get(), "\x83");
  TULKMBqstricmp_C("abc", -1, "abd", -1);
  UChar units[4];
  UChar* target = units;
  const char* source = "\x41";
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(page.Get(), &target, units + 4, &source, source + 1, nullptr, true, &error);
  ASSERT_EQ(target, units + 1);
  EXPECT_EQ(units[0], 0x30A2) << "the half character was finished";
}

TEST(MultiByteStringCompare, GivenConverterKeepsItsCallbacks) {
  const auto converter = NewConverter("windows-31j");
  UConverterToUCallback before = nullptr;
  const void* context = nullptr;
  ucnv_getToUCallBack(converter.get(), &before, &context);
  TULKMBBinaryCompare_C(0, converter.get(), "a\xFF", -1, "a\xFF", -1, nullptr);
  UConverterToUCallback after = nullptr;
  ucnv_getToUCallBack(converter.get(), &after, &context);
  EXPECT_EQ(before, after);
}

TEST(MultiByteStringCompare, ThreadsShareTheDefaultConverter) {
  const DefaultCodePage page("ISO-2022-JP");
  const auto compare = [](bool& isRight) {
    isRight = true;
    for (int i = 0; i < 2'000; ++i)
      isRight = isRight && TULKMBqstricmp_C("\x1B$B0!0\"\x1B(BAbc", -1, "\x1B$B0!0\"\x1B(BaBC", -1);
  };
  bool isRight[2] = {};
  std::thread first(compare, std::ref(isRight[0]));
  std::thread second(compare, std::ref(isRight[1]));
  first.join();
  second.join();
  EXPECT_TRUE(isRight[0]);
  EXPECT_TRUE(isRight[1]);
}

}  // namespace
