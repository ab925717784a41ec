// The substitution callbacks: called directly, and through conversions. Compiled with ICU's own
// choice of UChar, which is not the library's.
#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <cstring>
#include <string>
#include <vector>

#include "encoding/RegistryState.h"
#include "mcmem/ConverterRegistry.h"

namespace {

using namespace MCMEM_NAMESPACE;
using encoding_test::NewConverter;
using encoding_test::OwnedConverter;

constexpr int kUnassigned = -100;
constexpr int kIllegal = -101;
constexpr char kStopOption[] = "i";     // ICU's option: replace unassigned characters only
constexpr char kUnknownOption[] = "x";  // ICU's callback does nothing at all

bool IsMark(int error) { return error == kUnassigned || error == kIllegal; }

struct Call {
  const char* rule;
  const void* context;
  UConverterCallbackReason reason;
  int before;       // the error code that ICU calls with
  const char* out;  // what the callback writes
  int after;
};

constexpr Call kCalls[] = {
    {"unassigned", nullptr, UCNV_UNASSIGNED, U_INVALID_CHAR_FOUND, "?", kUnassigned},
    {"illegal", nullptr, UCNV_ILLEGAL, U_ILLEGAL_CHAR_FOUND, "?", kIllegal},
    {"reset", nullptr, UCNV_RESET, U_ZERO_ERROR, "", U_ZERO_ERROR},
    {"close", nullptr, UCNV_CLOSE, U_ZERO_ERROR, "", U_ZERO_ERROR},
    {"clone", nullptr, UCNV_CLONE, U_ZERO_ERROR, "", U_ZERO_ERROR},
    {"a warning stays when reset", nullptr, UCNV_RESET, -122, "", -122},
    {"a failure stays when reset", nullptr, UCNV_RESET, U_MEMORY_ALLOCATION_ERROR, "",
     U_MEMORY_ALLOCATION_ERROR},
    {"unassigned with the stop option", kStopOption, UCNV_UNASSIGNED, U_INVALID_CHAR_FOUND, "?",
     kUnassigned},
    {"illegal with the stop option", kStopOption, UCNV_ILLEGAL, U_ILLEGAL_CHAR_FOUND, "",
     U_ILLEGAL_CHAR_FOUND},
    {"unassigned with an unknown option", kUnknownOption, UCNV_UNASSIGNED, U_INVALID_CHAR_FOUND, "",
     U_INVALID_CHAR_FOUND},
    {"nothing written and no failure", kUnknownOption, UCNV_ILLEGAL, U_ZERO_ERROR, "", kIllegal},
};

// One call of the callback to Unicode, for a target of `room` units between guards.
struct ToUnicodeCall {
  ToUnicodeCall(UConverter* converter, const Call& call, std::ptrdiff_t room)
      : error(static_cast<UErrorCode>(call.before)) {
    const char source[] = "\x80";
    UConverterToUnicodeArgs args{};
    args.size = sizeof args;
    args.converter = converter;
    args.source = source + 1;
    args.sourceLimit = source + 1;
    args.target = units + 1;
    args.targetLimit = units + 1 + room;
    TULKMB_TO_U_CALLBACK_SUBSTITUTE(call.context, &args, source, 1, call.reason, &error);
    written.assign(units + 1, args.target);
  }
  bool AreGuardsWhole() const { return units[0] == u'<' && units[3] == u'>'; }

  char16_t units[4] = {u'<', 0, 0, u'>'};
  std::u16string written;
  UErrorCode error;
};

struct FromUnicodeCall {
  FromUnicodeCall(UConverter* converter, const Call& call, std::ptrdiff_t room,
                  char16_t unit = u'\u20AC')
      : error(static_cast<UErrorCode>(call.before)) {
    UConverterFromUnicodeArgs args{};
    args.size = sizeof args;
    args.converter = converter;
    args.source = &unit + 1;
    args.sourceLimit = &unit + 1;
    args.target = bytes + 1;
    args.targetLimit = bytes + 1 + room;
    TULKMB_FROM_U_CALLBACK_SUBSTITUTE(call.context, &args, &unit, 1, unit, call.reason, &error);
    written.assign(bytes + 1, args.target);
  }
  bool AreGuardsWhole() const { return bytes[0] == '<' && bytes[3] == '>'; }

  char bytes[4] = {'<', 0, 0, '>'};
  std::string written;
  UErrorCode error;
};

std::u16string Widened(const char* ascii) {
  return std::u16string(ascii, ascii + std::strlen(ascii));
}

TEST(ToUnicodeCallback, ReplacesAndMarksByTheReason) {
  const OwnedConverter ascii = NewConverter("US-ASCII");
  for (const Call& call : kCalls) {
    const ToUnicodeCall made(ascii.get(), call, 1);
    EXPECT_EQ(made.written, Widened(call.out)) << call.rule;
    EXPECT_EQ(static_cast<int>(made.error), call.after) << call.rule;
    EXPECT_TRUE(made.AreGuardsWhole()) << call.rule;
  }
}

// ICU takes such sequences for replaceable; the marks know nothing of them.
TEST(ToUnicodeCallback, LeavesIrregularSequencesToIcu) {
  const OwnedConverter ascii = NewConverter("US-ASCII");
  const Call call{"irregular", nullptr, UCNV_IRREGULAR, U_ILLEGAL_CHAR_FOUND, "", 0};
  const ToUnicodeCall made(ascii.get(), call, 1);
  EXPECT_EQ(made.written, u"\uFFFD");
  EXPECT_EQ(made.error, U_ZERO_ERROR);
}

TEST(ToUnicodeCallback, FullTargetGetsTheQuestionMarkLater) {
  for (const UConverterCallbackReason reason : {UCNV_UNASSIGNED, UCNV_ILLEGAL}) {
    const OwnedConverter ascii = NewConverter("US-ASCII");
    const Call call{"full", nullptr, reason, U_ILLEGAL_CHAR_FOUND, "", U_BUFFER_OVERFLOW_ERROR};
    const ToUnicodeCall made(ascii.get(), call, 0);
    EXPECT_EQ(made.written, u"");
    EXPECT_EQ(made.error, U_BUFFER_OVERFLOW_ERROR);
    EXPECT_TRUE(made.AreGuardsWhole());

    UErrorCode error = U_ZERO_ERROR;
    char16_t units[4];
    char16_t* target = units;
    const char* source = "A";
    ucnv_toUnicode(ascii.get(), &target, units + 4, &source, source + 1, nullptr, true, &error);
    EXPECT_EQ(std::u16string(units, target), u"?A");
  }
}

TEST(ToUnicodeCallback, FullTargetStaysEmptyWhereNothingIsReplaced) {
  const OwnedConverter ascii = NewConverter("US-ASCII");
  for (const Call& call : kCalls) {
    if (*call.out != '\0') continue;
    const ToUnicodeCall made(ascii.get(), call, 0);
    EXPECT_EQ(static_cast<int>(made.error), call.after) << call.rule;
    EXPECT_TRUE(made.AreGuardsWhole()) << call.rule;
  }
}

TEST(FromUnicodeCallback, ReplacesAndMarksByTheReason) {
  const OwnedConverter latin1 = NewConverter("ISO-8859-1");
  for (const Call& call : kCalls) {
    const FromUnicodeCall made(latin1.get(), call, 1);
    EXPECT_EQ(made.written, call.out) << call.rule;
    EXPECT_EQ(static_cast<int>(made.error), call.after) << call.rule;
    EXPECT_TRUE(made.AreGuardsWhole()) << call.rule;
  }
}

TEST(FromUnicodeCallback, LeavesIrregularSequencesToIcu) {
  const OwnedConverter latin1 = NewConverter("ISO-8859-1");
  const Call call{"irregular", nullptr, UCNV_IRREGULAR, U_ILLEGAL_CHAR_FOUND, "", 0};
  const FromUnicodeCall made(latin1.get(), call, 1);
  EXPECT_EQ(made.written, "?");
  EXPECT_EQ(made.error, U_ZERO_ERROR);
}

TEST(FromUnicodeCallback, IgnorableCharacterIsLeftOutAndMarked) {
  const OwnedConverter latin1 = NewConverter("ISO-8859-1");
  const Call call{"ignorable", nullptr, UCNV_UNASSIGNED, U_INVALID_CHAR_FOUND, "", kUnassigned};
  const FromUnicodeCall made(latin1.get(), call, 1, u'\u200B');
  EXPECT_EQ(made.written, "");
  EXPECT_EQ(static_cast<int>(made.error), kUnassigned);
}

TEST(FromUnicodeCallback, FullTargetGetsTheQuestionMarkLater) {
  const OwnedConverter latin1 = NewConverter("ISO-8859-1");
  const Call call{"full", nullptr, UCNV_UNASSIGNED, U_INVALID_CHAR_FOUND, "", 0};
  const FromUnicodeCall made(latin1.get(), call, 0);
  EXPECT_EQ(made.written, "");
  EXPECT_EQ(made.error, U_BUFFER_OVERFLOW_ERROR);
  EXPECT_TRUE(made.AreGuardsWhole());

  UErrorCode error = U_ZERO_ERROR;
  char bytes[4];
  char* target = bytes;
  const char16_t* source = u"A";
  ucnv_fromUnicode(latin1.get(), &target, bytes + 4, &source, source + 1, nullptr, true, &error);
  EXPECT_EQ(std::string(bytes, target), "?A");
}

// Through conversions.

struct Decoded {
  std::u16string units;
  int error;
};

Decoded Decode(UConverter* converter, const std::string& bytes) {
  std::vector<char16_t> room(4 * bytes.size() + 16);
  UErrorCode error = U_ZERO_ERROR;
  const int32_t length = ucnv_toUChars(converter, room.data(), static_cast<int32_t>(room.size()),
                                       bytes.data(), static_cast<int32_t>(bytes.size()), &error);
  return {std::u16string(room.data(), static_cast<std::size_t>(length)), error};
}

// With room for one unit at a time, so that every unit meets a full target.
std::u16string DecodeByUnits(UConverter* converter, const std::string& bytes) {
  std::u16string units;
  const char* source = bytes.data();
  ucnv_reset(converter);
  for (UErrorCode error = U_BUFFER_OVERFLOW_ERROR; error == U_BUFFER_OVERFLOW_ERROR;) {
    error = U_ZERO_ERROR;
    char16_t unit = 0;
    char16_t* target = &unit;
    ucnv_toUnicode(converter, &target, &unit + 1, &source, bytes.data() + bytes.size(), nullptr,
                   true, &error);
    units.append(&unit, target);
  }
  return units;
}

struct Encoded {
  std::string bytes;
  int error;
};

Encoded Encode(UConverter* converter, const std::u16string& units) {
  std::vector<char> room(8 * units.size() + 32);
  UErrorCode error = U_ZERO_ERROR;
  const int32_t length = ucnv_fromUChars(converter, room.data(), static_cast<int32_t>(room.size()),
                                         units.data(), static_cast<int32_t>(units.size()), &error);
  return {std::string(room.data(), static_cast<std::size_t>(length)), error};
}

TEST(ToUnicodeConversion, ReplacesByQuestionMarks) {
  struct {
    const char* rule;
    const char* code_page;
    std::string bytes;
    std::u16string units;
    int error;
  } const rows[] = {
      {"nothing to replace", "1252", "a\xE9", u"a\u00E9", 0},
      {"illegal byte", "US-ASCII", "a\x80z", u"a?z", kIllegal},
      {"illegal byte at the end", "US-ASCII", "a\x80", u"a?", kIllegal},
      {"unassigned byte", "1255", "a\xD9z", u"a?z", kUnassigned},
      {"a question mark is none", "US-ASCII", "a?z", u"a?z", 0},
      {"several", "US-ASCII", "\x80\x81z\xFF", u"??z?", kIllegal},
      {"cut off UTF-8", "UTF-8", "a\xE2\x82", u"a?", kIllegal},
      {"malformed UTF-8", "UTF-8", "\xC3z", u"?z", kIllegal},
      {"the replacement character itself stays", "UTF-8", "\xEF\xBF\xBD", u"\uFFFD", 0},
      {"single byte for which ICU has U+001A", "932", "a\xFDz", u"a?z", kUnassigned},
      {"the control U+001A itself stays", "1252", "\x1A", u"\u001A", 0},
      {"lone surrogate in UTF-16", "UTF-16BE", std::string("\xD8\x00\x00z", 4), u"?z", kIllegal},
  };
  for (const auto& row : rows) {
    const OwnedConverter converter = NewConverter(row.code_page);
    const Decoded decoded = Decode(converter.get(), row.bytes);
    EXPECT_EQ(decoded.units, row.units) << row.rule;
    EXPECT_EQ(decoded.error, row.error) << row.rule;
    EXPECT_EQ(DecodeByUnits(converter.get(), row.bytes), row.units) << row.rule;
  }
}

TEST(FromUnicodeConversion, ReplacesByQuestionMarks) {
  struct {
    const char* rule;
    const char* code_page;
    std::u16string units;
    std::string bytes;
    int error;
  } const rows[] = {
      {"nothing to replace", "1252", u"a\u20AC", "a\x80", 0},
      {"unassigned", "ISO-8859-1", u"a\u20ACz", "a?z", kUnassigned},
      {"unassigned at the end", "ISO-8859-1", u"a\u20AC", "a?", kUnassigned},
      {"beyond the first plane, replaced once", "1252", u"a\U0001F600z", "a?z", kUnassigned},
      {"lone high surrogate", "1252", u"a\xD800z", "a?z", kIllegal},
      {"lone low surrogate", "UTF-8", u"a\xDC00z", "a?z", kIllegal},
      {"double-byte code page", "932", u"\u3042\u20AC\u3044", "\x82\xA0?\x82\xA2", kUnassigned},
      {"stateful", "ISO-2022-JP", u"\u3042\u20ACz", "\x1B$B$\"\x1B(B?z", kUnassigned},
      {"ignorable, left out", "1252", u"a\u2060z", "az", kUnassigned},
      {"EBCDIC, the byte as it is", "ibm-37", u"\u20AC", "?", kUnassigned},
      {"UTF-16 keeps its own", "UTF-16BE", u"\xD800", "\xFF\xFD", kIllegal},
  };
  for (const auto& row : rows) {
    const Encoded encoded = Encode(NewConverter(row.code_page).get(), row.units);
    EXPECT_EQ(encoded.bytes, row.bytes) << row.rule;
    EXPECT_EQ(encoded.error, row.error) << row.rule;
  }
}

// The obvious callback: a question mark for whatever cannot be converted, and a count.
void U_CALLCONV CountingCallback(const void* context, UConverterToUnicodeArgs* args, const char*,
                                 int32_t, UConverterCallbackReason reason, UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;
  ++*static_cast<int*>(const_cast<void*>(context));
  *error = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(args, u"?", 1, 0, error);
}

TEST(ToUnicodeConversion, EveryPairOfBytesAgreesWithTheObviousCallback) {
  for (const char* name :
       {"Shift_JIS", "GBK", "EUC-KR", "Big5", "cp1255", "UTF-8", "ISO-2022-JP"}) {
    int replaced = 0;
    UErrorCode error = U_ZERO_ERROR;
    const OwnedConverter converter = NewConverter(name);
    const OwnedConverter reference(ucnv_open(name, &error));
    ucnv_setToUCallBack(reference.get(), CountingCallback, &replaced, nullptr, nullptr, &error);
    for (int pair = 0; pair < 0x10000; ++pair) {
      replaced = 0;
      const std::string bytes{static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)};
      const std::u16string expected = Decode(reference.get(), bytes).units;
      const Decoded decoded = Decode(converter.get(), bytes);
      ASSERT_EQ(decoded.units, expected) << name << " " << pair;
      ASSERT_EQ(IsMark(decoded.error), replaced > 0) << name << " " << pair;
      ASSERT_EQ(DecodeByUnits(converter.get(), bytes), expected) << name << " " << pair;
    }
  }
}

TEST(ToUnicodeConversion, CloneReplacesToo) {
  const OwnedConverter ascii = NewConverter("US-ASCII");
  UErrorCode error = U_ZERO_ERROR;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  const OwnedConverter clone(ucnv_safeClone(ascii.get(), nullptr, nullptr, &error));
#pragma GCC diagnostic pop
  EXPECT_EQ(Decode(clone.get(), "\x80").units, u"?");
  EXPECT_EQ(Encode(clone.get(), u"\u20AC").bytes, "?");
}

}  // namespace
