// Decoding of code-page text: single characters and clean prefixes.
#include <gtest/gtest.h>
#include <unicode/ucnv_err.h>

#include <string>

#include "encoding/RegistryState.h"
#include "mcmem/MultiByteString.h"

namespace {

using encoding_test::DefaultCodePage;
using encoding_test::NewConverter;
using encoding_test::OwnedConverter;
using MCMEM_NAMESPACE::TULKMBU32Get_C;
using MCMEM_NAMESPACE::TULKMBValidCount_C;

std::string Text(const char* bytes, std::size_t n) { return std::string(bytes, n); }

// ---- One character ----

struct DecodeRow {
  const char* rule;
  const char* page;
  std::string text;
  int position;
  int length;
  int bytes;
  unsigned int value;
};

const DecodeRow kDecode[] = {
    {"a single byte", "windows-1252", "a\x80", 1, -1, 1, 0x20AC},
    {"a double byte", "windows-31j", "a\x82\xA0", 1, -1, 2, 0x3042},
    {"within a length that counts from the start", "windows-31j", "a\x82\xA0", 1, 3, 2, 0x3042},
    {"cut by the length", "windows-31j", "a\x82\xA0", 1, 2, -1, 0},
    {"cut by the terminator", "windows-31j", "a\x82", 1, -1, -1, 0},
    {"cut by a terminator within the length", "windows-31j", Text("\x82\0\xA0", 3), 0, 3, -1, 0},
    {"the length is the position", "windows-1252", "abc", 2, 2, 0, 0},
    {"the length is below the position", "windows-1252", "abc", 2, 1, 0, 0},
    {"a length of 0", "windows-1252", "abc", 0, 0, 0, 0},
    {"the terminator", "windows-1252", "abc", 3, -1, 0, 0},
    {"a terminator within the length", "windows-1252", Text("a\0b", 3), 1, 3, 0, 0},
    {"a negative position", "windows-1252", "abc", -1, -1, 0, 0},
    {"an empty text", "windows-1252", "", 0, -1, 0, 0},
    {"an illegal byte", "US-ASCII", "\xE9", 0, -1, -1, 0},
    {"an illegal byte before clean text", "UTF-8", "\xFFzz", 0, -1, -1, 0},
    {"an unassigned byte", "windows-1253", "\xD2", 0, -1, -1, 0},
    {"an unassigned byte before clean text", "windows-1253", "\xD2zz", 0, -1, -1, 0},
    {"an illegal pair before clean text", "windows-31j", "\x82 zz", 0, -1, -1, 0},
    {"four bytes", "GB18030", "\x94\x39\xDA\x33z", 0, -1, 4, 0x1F4A9},
    {"beyond 16 bits in UTF-8", "UTF-8", "\xF0\x9F\x98\x80", 0, -1, 4, 0x1F600},
    {"a surrogate in UTF-8", "UTF-8", "\xED\xA0\x80", 0, -1, -1, 0},
    {"changes of state are consumed", "ISO-2022-JP", "\x1B$B0!0\"", 0, -1, 5, 0x4E9C},
    {"each call starts in the initial state", "ISO-2022-JP", "\x1B$B0!0\"", 5, -1, 1, '0'},
    {"a change of state alone is no character", "ISO-2022-JP", "\x1B(B", 0, -1, -1, 0},
    {"EBCDIC with states", "ibm-930", "\x0E\x45\x41", 0, -1, 3, 0x4E00},
    {"the first of two code points", "ibm-16684", "\xEC\xB5", 0, -1, 2, 0x304B},
    {"no look ahead is counted", "ISCII,version=0", "ab", 0, -1, 1, 'a'},
    {"no look ahead is counted behind a combination", "ISCII,version=0", "\xB3\xE9\xB4", 0, -1, 2,
     0x958},
    {"wide units", "UTF-16LE", "a\x4E", 0, 2, 2, 0x4E61},
    {"wide units with a zero byte behind", "UTF-16LE", Text("a\0", 2), 0, 2, 2, 'a'},
    {"a zero byte ends wide units too", "UTF-16BE", Text("\0a", 2), 0, 2, 0, 0},
    {"a genuine replacement character", "UTF-8", "\xEF\xBF\xBD", 0, -1, 3, 0xFFFD},
    {"a non-character", "UTF-8", "\xEF\xBF\xBF", 0, -1, 3, 0xFFFF},
};

TEST(MultiByteStringDecode, OneCharacterFromTheInitialState) {
  for (const DecodeRow& row : kDecode) {
    const DefaultCodePage page(row.page);
    unsigned int value = 0xABCD;
    EXPECT_EQ(TULKMBU32Get_C(&value, row.text.c_str(), row.position, row.length), row.bytes)
        << row.rule;
    EXPECT_EQ(value, row.value) << row.rule;
    EXPECT_EQ(TULKMBU32Get_C(nullptr, row.text.c_str(), row.position, row.length), row.bytes)
        << row.rule;
  }
}

TEST(MultiByteStringDecode, NullHasNoCharacter) {
  unsigned int value = 7;
  EXPECT_EQ(TULKMBU32Get_C(&value, nullptr, 0, -1), 0);
  EXPECT_EQ(value, 0u);
}

// Changes of state that go on for longer than any look ahead.
TEST(MultiByteStringDecode, AnyNumberOfChangesOfStateIsConsumed) {
  const DefaultCodePage page("ibm-930");
  const std::string text = std::string(300, '\x0F') + '\x81';
  unsigned int value = 0;
  EXPECT_EQ(TULKMBU32Get_C(&value, text.c_str(), 0, -1), 301);
  EXPECT_EQ(value, 0xFF71u);
  EXPECT_EQ(TULKMBU32Get_C(&value, text.c_str(), 0, 301), 301);
  EXPECT_EQ(TULKMBU32Get_C(&value, text.c_str(), 0, 300), -1);
}

TEST(MultiByteStringDecode, LongWalkIsNotQuadratic) {
  const DefaultCodePage page("windows-31j");
  std::string text;
  for (int i = 0; i < 100'000; ++i) text += "\x82\xA0";
  const int length = static_cast<int>(text.size());
  int position = 0;
  for (int bytes = 2; bytes == 2; position += bytes)
    bytes = TULKMBU32Get_C(nullptr, text.c_str(), position, position % 4 == 0 ? -1 : length);
  EXPECT_EQ(position, length);
}

TEST(MultiByteStringDecode, LongWalkThroughFaultsIsNotQuadratic) {
  const DefaultCodePage page("windows-31j");
  const std::string text(200'000, '\xFF');
  int failures = 0;
  for (int position = 0; position < 200'000; ++position)
    failures += TULKMBU32Get_C(nullptr, text.c_str(), position, -1) == -1;
  EXPECT_EQ(failures, 200'000);
}

TEST(MultiByteStringDecode, UnfinishedDefaultConverterDoesNotMatter) {
  const DefaultCodePage page("windows-31j");
  UChar units[4];
  UChar* target = units;
  const char* source = "\x82";
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(page.Get(), &target, units + 4, &source, source + 1, nullptr, false, &error);
  unsigned int value = 0;
  EXPECT_EQ(TULKMBU32Get_C(&value, "\x82\xA0", 0, -1), 2);
  EXPECT_EQ(value, 0x3042u);
}

// ---- Clean prefixes ----

struct CountRow {
  const char* rule;
  const char* page;
  std::string text;
  int length;
  int count;
};

const CountRow kCounts[] = {
    {"all of a clean text", "windows-1252", "abc\xE9", -1, 4},
    {"an empty text", "windows-1252", "", -1, 0},
    {"a length of 0", "windows-1252", "abc", 0, 0},
    {"the length ends it", "windows-1252", "abc", 2, 2},
    {"the terminator ends it", "windows-1252", Text("ab\0cd", 5), 5, 2},
    {"a length beyond the terminator", "windows-1252", "ab", 50, 2},
    {"a cut double byte", "windows-31j", "a\x82\xA0\x82", -1, 3},
    {"a double byte cut by the length", "windows-31j", "a\x82\xA0\x82\xA0", 4, 3},
    {"a double byte cut by a terminator", "windows-31j", Text("a\x82\0z", 4), 4, 1},
    {"an illegal byte", "US-ASCII",
     "ab\xE9"
     "cd",
     -1, 2},
    {"an illegal byte first", "US-ASCII",
     "\xE9"
     "cd",
     -1, 0},
    {"an unassigned byte before clean text", "windows-1253",
     "ab\xD2"
     "cd",
     -1, 2},
    {"an unassigned byte at the end", "windows-1253", "ab\xD2", -1, 2},
    {"an illegal pair", "windows-31j", "ab\x82 cd", -1, 2},
    {"three of four bytes", "GB18030", "a\x94\x39\xDA", -1, 1},
    {"cut UTF-8", "UTF-8", "a\xE4\xB8\xAD\xE4\xB8", -1, 4},
    {"two code points at the end", "ibm-16684", "\xEC\xB5\xEC\xB5", -1, 4},
    {"two code points before a cut character", "ibm-16684", "\xEC\xB5\xEC", -1, 2},
    {"two code points and states", "ibm-1390", "\x0E\xEC\xB5\xEC\xB5\x0F\x81", -1, 7},
    {"a look ahead", "ISCII,version=0", "ab\xB3", -1, 3},
    {"a look ahead at a fault", "ISCII,version=0",
     "ab\xFF"
     "c",
     -1, 2},
    {"states run through", "ISO-2022-JP", "\x1B$B0!0\"\x1B(Ba", -1, 11},
    {"the return to the initial state counts", "ISO-2022-JP", "\x1B$B0!\x1B(B", -1, 8},
    {"a cut character with states", "ISO-2022-JP", "\x1B$B0!0", -1, 5},
    {"a cut change of state", "ISO-2022-JP", "\x1B$B0!\x1B(", -1, 5},
    {"EBCDIC with states", "ibm-930", "\x0E\x45\x41\x0F", -1, 4},
    {"EBCDIC with states, cut", "ibm-930", "\x0E\x45\x41\x45", -1, 3},
    {"wide units", "UTF-16BE", Text("\0a\0b", 4), 4, 4},
    {"wide units, cut", "UTF-16BE", Text("\0a\0b\0", 5), 5, 4},
    {"wide units, half a pair", "UTF-16BE", Text("\0a\xD8\x3D", 4), 4, 2},
    {"wide units up to U+0000", "UTF-16LE", Text("a\0\0\0b\0", 6), 6, 2},
    {"UTF-32", "UTF-32LE", Text("a\0\0\0b\0\0", 7), 7, 4},
};

TEST(MultiByteStringDecode, CleanPrefixIsCounted) {
  for (const CountRow& row : kCounts) {
    const DefaultCodePage page(row.page);
    const auto given = NewConverter(row.page);
    EXPECT_EQ(TULKMBValidCount_C(nullptr, row.text.c_str(), row.length), row.count) << row.rule;
    EXPECT_EQ(TULKMBValidCount_C(given.get(), row.text.c_str(), row.length), row.count) << row.rule;
  }
}

// A converter that was not opened here, whose callbacks leave no marks.
TEST(MultiByteStringDecode, CallbacksOfTheConverterDoNotMatter) {
  const UConverterToUCallback kCallbacks[] = {UCNV_TO_U_CALLBACK_SUBSTITUTE,
                                              UCNV_TO_U_CALLBACK_SKIP, UCNV_TO_U_CALLBACK_ESCAPE,
                                              UCNV_TO_U_CALLBACK_STOP};
  for (const UConverterToUCallback callback : kCallbacks) {
    UErrorCode error = U_ZERO_ERROR;
    const OwnedConverter converter(ucnv_open("windows-31j", &error));
    ucnv_setToUCallBack(converter.get(), callback, nullptr, nullptr, nullptr, &error);
    EXPECT_EQ(TULKMBValidCount_C(converter.get(), "ab\x82", -1), 2);
    EXPECT_EQ(TULKMBValidCount_C(converter.get(),
                                 "ab\xFF"
                                 "c",
                                 -1),
              2);
    UConverterToUCallback after = nullptr;
    const void* context = nullptr;
    ucnv_getToUCallBack(converter.get(), &after, &context);
    EXPECT_EQ(after, callback);
  }
}

TEST(MultiByteStringDecode, GivenConverterIsResetBeforeUse) {
  const auto converter = NewConverter("windows-31j");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(TULKMBValidCount_C(converter.get(), "ab\x82", -1), 2);
    EXPECT_EQ(TULKMBValidCount_C(converter.get(), "Abc", -1), 3) << "no half character is left";
  }
}

TEST(MultiByteStringDecode, EncodingSideOfAGivenConverterIsNotReset) {
  const auto converter = NewConverter("ISO-2022-JP");
  const UChar units[] = {0x4E9C};
  char bytes[16];
  char* target = bytes;
  const UChar* source = units;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_fromUnicode(converter.get(), &target, bytes + 16, &source, units + 1, nullptr, false,
                   &error);
  ASSERT_EQ(target - bytes, 5);
  EXPECT_EQ(TULKMBValidCount_C(converter.get(), "abc", -1), 3);
  target = bytes;
  source = units;
  ucnv_fromUnicode(converter.get(), &target, bytes + 16, &source, units + 1, nullptr, false,
                   &error);
  EXPECT_EQ(target - bytes, 2) << "still in the state of the character before";
}

TEST(MultiByteStringDecode, NullTextHasNoPrefix) {
  const auto converter = NewConverter("windows-31j");
  EXPECT_EQ(TULKMBValidCount_C(nullptr, nullptr, -1), 0);
  EXPECT_EQ(TULKMBValidCount_C(converter.get(), nullptr, 5), 0);
}

// Every cut of a text ends at the border before it.
TEST(MultiByteStringDecode, EveryCutEndsAtABorder) {
  const std::string kText = "a\x82\xA0\xB1\x83\x41z";
  const int kBorders[] = {0, 1, 1, 3, 4, 4, 6, 7};
  const auto converter = NewConverter("windows-31j");
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(TULKMBValidCount_C(converter.get(), kText.c_str(), i), kBorders[i]) << i;
}

}  // namespace
