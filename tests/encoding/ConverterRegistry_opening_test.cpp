// Opening of converters.
#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <string>

#include "encoding/IcuProbe.h"
#include "encoding/RegistryState.h"
#include "mcmem/ConverterRegistry.h"

namespace {

using namespace MCMEM_NAMESPACE;
using encoding_test::DefaultCodePage;
using encoding_test::IcuNameOf;
using encoding_test::NameOf;
using encoding_test::NewConverter;
using encoding_test::OpensAs;
using encoding_test::OwnedConverter;
using encoding_test::Utf8Mode;

std::string NameOfNew_C(const char* name) {
  return NameOf(OwnedConverter(TULKMBConverterNew_C(name)).get());
}
std::string NameOfNew_8(const char* name) {
  return NameOf(OwnedConverter(TULKMBConverterNew_8(name)).get());
}
std::string NameOfNew_A(const char* name) {
  return NameOf(OwnedConverter(TULKMBConverterNew_A(name)).get());
}

// A name for windows-1252 of the length asked for: ICU does not look at hyphens.
std::string LongName(std::size_t length) { return "cp" + std::string(length - 6, '-') + "1252"; }

TEST(TULKMBConverterNew_C, OpensNumbersAndNames) {
  struct {
    const char* rule;
    const char* name;
    const char* as;
  } const rows[] = {
      {"a number", "1252", "cp1252"},
      {"the least digits", "37", "cp037"},
      {"zeros before", "0000000000000000000001252", "cp1252"},
      {"blanks before", " \t\n1252", "cp1252"},
      {"a plus sign", "+1252", "cp1252"},
      {"a number of Japanese", "932", "windows-31j"},
      {"the number of UTF-8", "65001", "UTF-8"},
      {"the number of Latin 1", "28591", "ISO-8859-1"},
      {"a name", "ISO-8859-7", "ISO-8859-7"},
      {"a name in small letters without hyphens", "iso88597", "ISO-8859-7"},
      {"a name with an option", "ibm-1047,swaplfnl", "ibm-1047,swaplfnl"},
      {"an ambiguous name", "ISO-2022-JP", "ISO-2022-JP"},
  };
  for (const auto& row : rows) {
    const std::string expected = IcuNameOf(row.as);
    ASSERT_NE(expected, "") << row.rule;
    EXPECT_EQ(NameOfNew_C(row.name), expected) << row.rule;
  }
}

TEST(TULKMBConverterNew_C, GivesNullForWhatIsNoConverter) {
  const int open = encoding_test::OpenConverters();
  for (const char* name : {"",
                           " ",
                           "0",
                           "00",
                           "100000",
                           "1",
                           "99999",
                           "-1",
                           "-1252",
                           "--1252",
                           "+",
                           "1252x",
                           "12 52",
                           "1252 ",
                           "0x4E4",
                           "4294968548",
                           "18446744073709552868",
                           "99999999999999999999999",
                           "no-such-code-page",
                           "windows-28592x",
                           "windows-2859",
                           "windows-285911",
                           "\xC3\xA9",
                           "%s%n",
                           "../no-such"}) {
    EXPECT_EQ(TULKMBConverterNew_C(name), nullptr) << name;
  }
  EXPECT_EQ(TULKMBConverterNew_C(std::string(100000, 'a').c_str()), nullptr);
  EXPECT_EQ(TULKMBConverterNew_C(std::string(100000, '1').c_str()), nullptr);
  EXPECT_EQ(encoding_test::OpenConverters(), open);
}

// ICU knows the names of some converters that it was not built with.
TEST(TULKMBConverterNew_C, EveryNumberOpensTheNameThatIsFoundForIt) {
  const int open = encoding_test::OpenConverters();
  int opened = 0;
  for (unsigned int cp = 1; cp <= 99999; ++cp) {
    char name[60];
    const int isFound = TULKMBCpNameFromNum_C(name, cp);
    const std::string number = std::to_string(cp);
    const std::string expected = isFound != 0 ? IcuNameOf(name) : "";
    ASSERT_EQ(NameOfNew_C(number.c_str()), expected) << cp;
    opened += !expected.empty();
  }
  EXPECT_GT(opened, 50);
  EXPECT_EQ(encoding_test::OpenConverters(), open);
}

TEST(TULKMBConverterNew_C, EveryByteAsNameIsSafe) {
  for (int byte = 1; byte < 256; ++byte) {
    const char name[] = {static_cast<char>(byte), '\0'};
    EXPECT_EQ(NameOfNew_C(name), IcuNameOf(name)) << byte;
  }
}

TEST(TULKMBConverterNew_C, Windows28591IsLatin1InAnyLetterCase) {
  for (const char* name : {"windows-28591", "WINDOWS-28591", "Windows-28591", "wInDoWs-28591"}) {
    const OpensAs unknown(name, "no-such-code-page");
    EXPECT_EQ(NameOfNew_C(name), "ISO-8859-1") << name;
    EXPECT_EQ(unknown.Count(), 1) << "the name itself is tried first";
  }
  EXPECT_EQ(NameOfNew_C("windows-28591"), "ISO-8859-1");
}

TEST(TULKMBConverterNew_C, Windows28591IsWhatIcuKnowsByThatName) {
  const OpensAs known("windows-28591", "ISO-8859-15");
  EXPECT_EQ(NameOfNew_C("windows-28591"), IcuNameOf("ISO-8859-15"));
}

TEST(TULKMBConverterNew_C, FailedOpeningGivesNull) {
  for (const char* name : {"windows-1252", "ISO-8859-1", "cp1251"}) {
    const OpensAs failing(name, "no-such-code-page");
    EXPECT_EQ(TULKMBConverterNew_C(name), nullptr) << name;
  }
  const OpensAs failing("ISO-8859-1", "no-such-code-page");
  EXPECT_EQ(TULKMBConverterNew_C("windows-28591"), nullptr) << "the substitute fails, too";
}

TEST(TULKMBConverterNew_C, NumberThatIcuCannotOpenGivesNull) {
  const OpensAs failing("windows-1252", "no-such-code-page");
  EXPECT_EQ(TULKMBConverterNew_C("1252"), nullptr);
  EXPECT_EQ(failing.Count(), 1);
}

TEST(TULKMBConverterNew_C, NullOpensAnotherLikeTheDefault) {
  for (const char* name : {"1253", "932", "ISO-2022-JP", "ISO-2022-KR", "UTF-16", "UTF-7",
                           "LMBCS-1", "ibm-1047,swaplfnl", "x11-compound-text"}) {
    const DefaultCodePage standard(name);
    const unsigned int before = TULKMBDefaultConverterID();
    const OwnedConverter opened(TULKMBConverterNew_C(nullptr));
    EXPECT_NE(opened.get(), standard.Get());
    EXPECT_EQ(NameOf(opened.get()), NameOf(standard.Get()));
    EXPECT_EQ(TULKMBDefaultConverterID(), before);
  }
}

TEST(TULKMBConverterNew_C, NullWithoutDefaultOpensIcusDefaultAndMakesNone) {
  const DefaultCodePage restore("1252");
  TULKMBSetDefaultConverter(nullptr);
  const unsigned int before = TULKMBDefaultConverterID();
  EXPECT_EQ(NameOfNew_C(nullptr), IcuNameOf(nullptr));
  EXPECT_EQ(TULKMBDefaultConverterID(), before);
}

TEST(TULKMBConverterNew_C, InstallsCallbacksWithoutContext) {
  for (const char* name : {"1252", "932", "UTF-8", "UTF-16", "ISO-2022-JP", "windows-28591"}) {
    const OwnedConverter converter = NewConverter(name);
    UConverterToUCallback toUnicode = nullptr;
    UConverterFromUCallback fromUnicode = nullptr;
    const void* toContext = "";
    const void* fromContext = "";
    ucnv_getToUCallBack(converter.get(), &toUnicode, &toContext);
    ucnv_getFromUCallBack(converter.get(), &fromUnicode, &fromContext);
    EXPECT_EQ(toUnicode, TULKMB_TO_U_CALLBACK_SUBSTITUTE) << name;
    EXPECT_EQ(fromUnicode, TULKMB_FROM_U_CALLBACK_SUBSTITUTE) << name;
    EXPECT_EQ(toContext, nullptr) << name;
    EXPECT_EQ(fromContext, nullptr) << name;
  }
}

std::string SubstituteOf(const UConverter* converter) {
  char bytes[16];
  int8_t length = sizeof bytes;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_getSubstChars(converter, bytes, &length, &error);
  return U_SUCCESS(error) ? std::string(bytes, static_cast<std::size_t>(length)) : "failed";
}

TEST(TULKMBConverterNew_C, SubstituteIsAQuestionMarkByte) {
  for (const char* name : {"1252", "932", "936", "949", "950", "US-ASCII", "UTF-8", "ISO-2022-JP",
                           "GB18030", "HZ", "ibm-37", "ibm-1390"}) {
    EXPECT_EQ(SubstituteOf(NewConverter(name).get()), "?") << name;
  }
}

TEST(TULKMBConverterNew_C, EncodingsWithoutOneByteCharactersKeepIcusSubstitute) {
  for (const char* name : {"UTF-16BE", "UTF-16LE", "UTF-32BE", "UTF-32LE", "ibm-971"}) {
    const OwnedConverter converter = NewConverter(name);
    UErrorCode error = U_ZERO_ERROR;
    const OwnedConverter plain(ucnv_open(name, &error));
    EXPECT_EQ(SubstituteOf(converter.get()), SubstituteOf(plain.get())) << name;
  }
  EXPECT_EQ(SubstituteOf(NewConverter("UTF-16BE").get()), "\xFF\xFD");
}

TEST(TULKMBConverterNew_8, OpensAsTheCodePageFormDoes) {
  const DefaultCodePage standard("1252");
  for (const char* name : {"1252", "932", "UTF-8", "iso88597", "windows-28591", "WINDOWS-28591"}) {
    ASSERT_NE(NameOfNew_C(name), "") << name;
    EXPECT_EQ(NameOfNew_8(name), NameOfNew_C(name)) << name;
  }
  for (const char* name : {"", "0", "100000", "no-such-code-page"}) {
    EXPECT_EQ(TULKMBConverterNew_8(name), nullptr) << name;
  }
}

TEST(TULKMBConverterNew_8, NullOpensAnotherLikeTheDefault) {
  const DefaultCodePage standard("1253");
  EXPECT_EQ(NameOfNew_8(nullptr), NameOf(standard.Get()));
}

TEST(TULKMBConverterNew_8, NameThatDoesNotConvertExactlyGivesNull) {
  const DefaultCodePage standard("US-ASCII");
  struct {
    const char* rule;
    const char* name;
  } const rows[] = {
      {"a character that the default code page lacks", "cp1252\xC3\xA9"},
      // ICU would not look at the question mark that stands for it.
      {"such a character between",
       "cp\xE2\x82\xAC"
       "1252"},
      {"a lone lead byte", "cp1252\xC3"},
      {"a lone trail byte",
       "\x80"
       "cp1252"},
      {"an encoded surrogate", "cp1252\xED\xA0\x80"},
  };
  for (const auto& row : rows) EXPECT_EQ(TULKMBConverterNew_8(row.name), nullptr) << row.rule;
}

TEST(TULKMBConverterNew_8, NameMayHave59Bytes) {
  const DefaultCodePage standard("1252");
  ASSERT_EQ(LongName(59).size(), 59u);
  EXPECT_EQ(NameOfNew_8(LongName(59).c_str()), IcuNameOf("cp1252"));
  for (const std::size_t length : {60u, 61u, 120u, 100000u}) {
    EXPECT_EQ(TULKMBConverterNew_8(LongName(length).c_str()), nullptr) << length;
  }
}

// Were it not for the limit, the zeros before the number would not matter.
TEST(TULKMBConverterNew_8, NumberMayHave59Bytes) {
  const DefaultCodePage standard("1252");
  const std::string zeros(56, '0');
  EXPECT_NE(NameOfNew_C((zeros + "1252").c_str()), "");
  EXPECT_EQ(TULKMBConverterNew_8((zeros + "1252").c_str()), nullptr);
  EXPECT_EQ(NameOfNew_8((zeros.substr(1) + "1252").c_str()), IcuNameOf("cp1252"));
}

TEST(TULKMBConverterNew_8, NameGoesThroughTheDefaultCodePage) {
  const DefaultCodePage ebcdic("ibm-37");
  EXPECT_NE(NameOfNew_C("1252"), "");
  EXPECT_EQ(TULKMBConverterNew_8("1252"), nullptr) << "the EBCDIC bytes are no name";
}

TEST(TULKMBConverterNew_A, FollowsTheMode) {
  const DefaultCodePage ebcdic("ibm-37");
  {
    const Utf8Mode off(0);
    EXPECT_EQ(NameOfNew_A("1252"), IcuNameOf("cp1252"));
    EXPECT_EQ(NameOfNew_A(nullptr), NameOf(ebcdic.Get()));
  }
  const Utf8Mode on(1);
  EXPECT_EQ(NameOfNew_A("1252"), "");
  EXPECT_EQ(NameOfNew_A(nullptr), NameOf(ebcdic.Get()));
}

TEST(TULKMBConverterNew, ClosesNothingAndLeaksNothing) {
  const DefaultCodePage standard("1252");
  const int open = encoding_test::OpenConverters();
  {
    const OwnedConverter a(TULKMBConverterNew_C("932"));
    const OwnedConverter b(TULKMBConverterNew_8("932"));
    const OwnedConverter c(TULKMBConverterNew_A("windows-28591"));
    EXPECT_EQ(encoding_test::OpenConverters(), open + 3);
  }
  EXPECT_EQ(encoding_test::OpenConverters(), open);
}

}  // namespace
