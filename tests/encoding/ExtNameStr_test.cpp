// The name in several encodings. What the system encoding is depends on the machine, so the tests
// say which converter stands for it.
#include "mcmem/ExtNameStr.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

#include "encoding/IcuProbe.h"
#include "encoding/RegistryState.h"
#include "mcmem/ConverterRegistry.h"

namespace {

using namespace MCMEM_NAMESPACE;
using encoding_test::DefaultCodePage;
using encoding_test::NewConverter;
using encoding_test::OpenConverters;
using encoding_test::OpensAs;
using encoding_test::OwnedConverter;
using encoding_test::Utf8Mode;
using Units = std::basic_string<unsigned short>;

constexpr int kExact = 0;
constexpr int kInexact = 3;

const std::string kCafe = "caf\xC3\xA9";     // in every code page used here
const std::string kCafe1252 = "caf\xE9";     // also ISO 8859-1
const std::string kEuro = "5 \xE2\x82\xAC";  // in 1252, not in ISO 8859-1
const std::string kEuro1252 = "5 \x80";
const std::string kAlpha = "a\xCE\xB1";  // in 1253, not in 1252
const std::string kAlpha1253 = "a\xE1";
const std::string kMalformed = "a\xC3";  // UTF-8 cut short

Units U16(std::initializer_list<int> units) {
  Units text;
  for (const int unit : units) text += static_cast<unsigned short>(unit);
  return text;
}

const Units kCafe16 = U16({'c', 'a', 'f', 0xE9});
const Units kEuro16 = U16({'5', ' ', 0x20AC});
const Units kAlpha16 = U16({'a', 0x3B1});

// While it lives, the converter called `name` is that of the system encoding.
class SystemIs : public OpensAs {
 public:
  explicit SystemIs(const char* name) : OpensAs(SystemEncoding(), name) {}
};

// Code page 1252 and ISO 8859-1 for the system, code-page mode.
class ExtNameStrTest : public testing::Test {
 protected:
  Utf8Mode mode_{0};
  DefaultCodePage standard_{"1252"};
  SystemIs system_{"ISO-8859-1"};
};

struct Texts {
  std::string utf8, code_page, system;
  Units utf16;
  int error;
};

// The code-page text last: reading it may change the error code.
void ExpectTexts(const ExtNameStr& name, const Texts& expected, const char* rule) {
  EXPECT_EQ(name.ErrorCode(), expected.error) << rule;
  EXPECT_EQ(name.GetU8(), expected.utf8) << rule;
  EXPECT_EQ(name.GetU16(), expected.utf16) << rule;
  EXPECT_EQ(name.GetSystem(), expected.system) << rule;
  EXPECT_EQ(name.Empty(), expected.utf8.empty()) << rule;
  EXPECT_EQ(name.GetCP(), expected.code_page) << rule;
}

const Texts kEmptyTexts = {"", "", "", Units(), kExact};
const Texts kCafeTexts = {kCafe, kCafe1252, kCafe1252, kCafe16, kExact};

TEST_F(ExtNameStrTest, NewObjectIsEmpty) {
  const ExtNameStr name;
  EXPECT_EQ(system_.Count(), 0) << "nothing is converted yet";
  ExpectTexts(name, kEmptyTexts, "new");
  EXPECT_EQ(name.GetGeneric(), "");
  EXPECT_EQ(name.GetCP(nullptr), "");
}

TEST_F(ExtNameStrTest, FirstReadingConverts) {
  const ExtNameStr name;
  EXPECT_EQ(name.GetCP(), "");
  EXPECT_EQ(system_.Count(), 1);
  EXPECT_EQ(name.GetCP(), "");
  EXPECT_EQ(system_.Count(), 1);
}

TEST_F(ExtNameStrTest, EverySetterMakesAllTexts) {
  const OwnedConverter greek = NewConverter("1253");
  struct {
    const char* rule;
    std::function<void(ExtNameStr&)> set;
    Texts expected;
  } const rows[] = {
      {"SetU8", [](ExtNameStr& n) { n.SetU8(kCafe); }, kCafeTexts},
      {"SetU16", [](ExtNameStr& n) { n.SetU16(kCafe16); }, kCafeTexts},
      {"SetCP, default", [](ExtNameStr& n) { n.SetCP(kCafe1252, nullptr); }, kCafeTexts},
      {"SetGeneric", [](ExtNameStr& n) { n.SetGeneric(kCafe1252); }, kCafeTexts},
      {"SetCP, another",
       [&](ExtNameStr& n) { n.SetCP(kAlpha1253, greek.get()); },
       {kAlpha, "a?", "a?", kAlpha16, kExact}},
      {"lossy for the system only",
       [](ExtNameStr& n) { n.SetU8(kEuro); },
       {kEuro, kEuro1252, "5 ?", kEuro16, kExact}},
      {"empty text", [](ExtNameStr& n) { n.SetU8(""); }, kEmptyTexts},
      {"embedded zero",
       [](ExtNameStr& n) { n.SetU8(std::string("a\0b", 3)); },
       {std::string("a\0b", 3), std::string("a\0b", 3), std::string("a\0b", 3), U16({'a', 0, 'b'}),
        kExact}},
      {"beyond the first plane",
       [](ExtNameStr& n) { n.SetU8("\xF0\x9F\x98\x80"); },
       {"\xF0\x9F\x98\x80", "?", "?", U16({0xD83D, 0xDE00}), kExact}},
  };
  for (const auto& row : rows) {
    ExtNameStr name;
    name.SetU8("what was there before");
    row.set(name);
    ExpectTexts(name, row.expected, row.rule);
  }
}

// Setters leave the status of the conversion to UTF-16, nothing else.
TEST_F(ExtNameStrTest, SettersForgetHowTheTextWasGivenAndWhetherItFits) {
  const OwnedConverter ascii = NewConverter("US-ASCII");
  struct {
    const char* rule;
    std::function<void(ExtNameStr&)> set;
    std::string utf8;
    int error;
  } const rows[] = {
      {"SetU8, not in the code page", [](ExtNameStr& n) { n.SetU8(kAlpha); }, kAlpha, kExact},
      {"SetU8, malformed", [](ExtNameStr& n) { n.SetU8(kMalformed); }, kMalformed, kInexact},
      {"SetU16, not in the code page", [](ExtNameStr& n) { n.SetU16(kAlpha16); }, kAlpha, kExact},
      {"SetU16, unpaired surrogate",
       [](ExtNameStr& n) {
         n.SetU16(U16({'a', 0xD800}));
       },
       "", kExact},
      {"SetCP, illegal byte", [&](ExtNameStr& n) { n.SetCP("a\x80", ascii.get()); }, "a?", kExact},
      {"SetGeneric in UTF-8 mode, malformed",
       [](ExtNameStr& n) {
         const Utf8Mode on(1);
         n.SetGeneric(kMalformed);
       },
       kMalformed, kInexact},
      {"Clear", [](ExtNameStr& n) { n.Clear(); }, "", kExact},
  };
  for (const auto& row : rows) {
    for (const std::string& before : {kCafe, kMalformed}) {
      ExtNameStr name;
      name.SetU8(before);
      row.set(name);
      EXPECT_EQ(name.GetU8(), row.utf8) << row.rule;
      EXPECT_EQ(name.ErrorCode(), row.error) << row.rule;
    }
  }
}

TEST_F(ExtNameStrTest, MalformedMasterHasNoUtf16Text) {
  ExtNameStr name;
  name.SetU8(kCafe);
  name.SetU8(kMalformed);
  EXPECT_EQ(name.GetU16(), Units());
  EXPECT_EQ(name.GetCP(), "a?");
  EXPECT_EQ(name.GetSystem(), "a?");
}

TEST_F(ExtNameStrTest, Utf16TextIsThatOfTheMaster) {
  ExtNameStr name;
  name.SetU16(U16({'a', 0xDC00, 'b'}));
  ExpectTexts(name, kEmptyTexts, "the units have no UTF-8 form");
}

TEST_F(ExtNameStrTest, SetterLeavesAFreshCodePageText) {
  ExtNameStr name;
  name.SetU8(kCafe);
  const int opened = system_.Count();
  EXPECT_EQ(name.GetCP(), kCafe1252);
  EXPECT_EQ(system_.Count(), opened);
}

TEST_F(ExtNameStrTest, ReadingAFreshCodePageTextKeepsTheStatus) {
  ExtNameStr name;
  name.SetU8(kAlpha);
  EXPECT_EQ(name.GetCP(), "a?");
  EXPECT_EQ(name.ErrorCode(), kExact);
  name.SetU8(kMalformed);
  EXPECT_EQ(name.GetCP(), "a?");
  EXPECT_EQ(name.ErrorCode(), kInexact);
}

TEST_F(ExtNameStrTest, ChangedDefaultConverterIsNoticed) {
  ExtNameStr name;
  name.SetU8(kAlpha);
  EXPECT_EQ(name.GetCP(), "a?");
  {
    const DefaultCodePage greek("1253");
    const int opened = system_.Count();
    EXPECT_EQ(name.GetCP(), kAlpha1253);
    EXPECT_EQ(name.GetCP(), kAlpha1253);
    EXPECT_EQ(system_.Count(), opened + 1) << "converted once";
  }
  EXPECT_EQ(name.GetCP(), "a?") << "another change";
}

TEST_F(ExtNameStrTest, SettingTheSameConverterAnewIsAChange) {
  ExtNameStr name;
  name.SetU8(kCafe);
  const int opened = system_.Count();
  TULKMBSetDefaultConverter(standard_.Get());
  EXPECT_EQ(name.GetCP(), kCafe1252);
  EXPECT_EQ(system_.Count(), opened + 1);
}

TEST_F(ExtNameStrTest, StaleReadingLeavesTheFirstStatusThatIsNotExact) {
  struct {
    const char* rule;
    const char* code_page;
    std::string text;
    int error;
  } const rows[] = {
      {"both exact", "1252", kCafe, kExact},
      {"lossy for the code page, exact for the system", "US-ASCII", kCafe, kInexact},
      {"exact for the code page, lossy for the system", "1253", kAlpha, kInexact},
      {"lossy for both", "1252", kAlpha, kInexact},
      {"malformed", "1252", kMalformed, kInexact},
  };
  for (const auto& row : rows) {
    ExtNameStr name;
    name.SetU8(row.text);
    const DefaultCodePage changed(row.code_page);
    name.GetCP();
    EXPECT_EQ(name.ErrorCode(), row.error) << row.rule;
  }
}

TEST_F(ExtNameStrTest, StaleReadingReplacesTheStatusOfAnEarlierConversion) {
  const OwnedConverter ascii = NewConverter("US-ASCII");
  ExtNameStr name;
  name.SetU8(kCafe);
  EXPECT_EQ(name.GetCP(ascii.get()), "caf?");
  EXPECT_EQ(name.ErrorCode(), kInexact);
  TULKMBSetDefaultConverter(standard_.Get());
  name.GetCP();
  EXPECT_EQ(name.ErrorCode(), kExact);
}

// The number is noted before the conversion that makes the converter.
TEST_F(ExtNameStrTest, DefaultConverterMadeByTheConversionIsAChangeToo) {
  TULKMBSetDefaultConverter(nullptr);
  ExtNameStr name;
  name.SetU8("plain");
  const OwnedConverter made(TULKMBGetDefaultConverter());
  const int opened = system_.Count();
  EXPECT_EQ(name.GetCP(), "plain");
  EXPECT_EQ(system_.Count(), opened + 1);
  EXPECT_EQ(name.GetCP(), "plain");
  EXPECT_EQ(system_.Count(), opened + 1);
  TULKMBSetDefaultConverter(standard_.Get());
}

TEST_F(ExtNameStrTest, GetCPWithAConverterLeavesTheTextsAlone) {
  const OwnedConverter ascii = NewConverter("US-ASCII");
  const OwnedConverter japanese = NewConverter("932");
  ExtNameStr name;
  name.SetU8(kCafe);
  EXPECT_EQ(name.GetCP(ascii.get()), "caf?");
  EXPECT_EQ(name.ErrorCode(), kInexact);
  EXPECT_EQ(name.GetCP(nullptr), kCafe1252);
  EXPECT_EQ(name.ErrorCode(), kExact);
  name.SetU8("\xE3\x81\x82");
  EXPECT_EQ(name.GetCP(japanese.get()), "\x82\xA0");
  EXPECT_EQ(name.ErrorCode(), kExact);
  ExpectTexts(name, {"\xE3\x81\x82", "?", "?", U16({0x3042}), kExact}, "texts as set");
}

TEST_F(ExtNameStrTest, GetCPWithNullFollowsTheDefaultWithoutRenewingTheText) {
  ExtNameStr name;
  name.SetU8(kAlpha);
  const DefaultCodePage greek("1253");
  const int opened = system_.Count();
  EXPECT_EQ(name.GetCP(nullptr), kAlpha1253);
  EXPECT_EQ(system_.Count(), opened);
}

TEST_F(ExtNameStrTest, GetGenericFollowsTheMode) {
  ExtNameStr name;
  name.SetU8(kCafe);
  EXPECT_EQ(&name.GetGeneric(), &name.GetCP());
  const Utf8Mode on(1);
  EXPECT_EQ(&name.GetGeneric(), &name.GetU8());
}

TEST_F(ExtNameStrTest, GetGenericInUtf8ModeRenewsNothing) {
  ExtNameStr name;
  name.SetU8(kAlpha);
  const DefaultCodePage greek("1253");
  const int opened = system_.Count();
  {
    const Utf8Mode on(1);
    EXPECT_EQ(name.GetGeneric(), kAlpha);
    EXPECT_EQ(system_.Count(), opened);
    EXPECT_EQ(name.ErrorCode(), kExact);
  }
  EXPECT_EQ(name.GetGeneric(), kAlpha1253) << "in code-page mode a stale text is renewed";
  EXPECT_EQ(system_.Count(), opened + 1);
}

TEST_F(ExtNameStrTest, SetGenericFollowsTheMode) {
  ExtNameStr name;
  name.SetGeneric(kCafe1252);
  EXPECT_EQ(name.GetU8(), kCafe);
  const Utf8Mode on(1);
  name.SetGeneric(kAlpha);
  EXPECT_EQ(name.GetU8(), kAlpha);
  EXPECT_EQ(name.GetU16(), kAlpha16);
}

TEST_F(ExtNameStrTest, SetSystemKeepsTheUtf16TextOfThePreviousSetter) {
  ExtNameStr name;
  name.SetU8(kEuro);
  EXPECT_EQ(name.SetSystem(kCafe1252), kExact);
  ExpectTexts(name, {kCafe, kCafe1252, kCafe1252, kEuro16, kExact}, "after another setter");
  name.SetU8(kCafe);
  EXPECT_EQ(name.GetU16(), kCafe16);
}

TEST_F(ExtNameStrTest, SetSystemOfANewObjectLeavesUtf16Empty) {
  ExtNameStr name;
  EXPECT_EQ(name.SetSystem(kCafe1252), kExact);
  ExpectTexts(name, {kCafe, kCafe1252, kCafe1252, Units(), kExact}, "new");
}

TEST_F(ExtNameStrTest, SetSystemReturnsTheStatusOfTheCodePageOnly) {
  const DefaultCodePage ascii("US-ASCII");
  ExtNameStr name;
  EXPECT_EQ(name.SetSystem(kCafe1252), kInexact);
  ExpectTexts(name, {kCafe, "caf?", kCafe1252, Units(), kInexact}, "lossy for the code page");
  EXPECT_EQ(name.SetSystem("plain"), kExact);
  EXPECT_EQ(name.ErrorCode(), kExact);
}

TEST_F(ExtNameStrTest, SetSystemLeavesAFreshCodePageText) {
  ExtNameStr name;
  name.SetSystem(kCafe1252);
  const int opened = system_.Count();
  EXPECT_EQ(name.GetCP(), kCafe1252);
  EXPECT_EQ(system_.Count(), opened);
}

TEST_F(ExtNameStrTest, ClearEmptiesEverything) {
  ExtNameStr name;
  name.SetU8(kMalformed);
  name.Clear();
  ExpectTexts(name, kEmptyTexts, "after a failure");
  name.SetU8(kEuro);
  name.SetSystem(kCafe1252);
  name.Clear();
  ExpectTexts(name, kEmptyTexts, "the UTF-16 text of an earlier setter goes, too");
  name.Clear();
  ExpectTexts(name, kEmptyTexts, "twice");
}

TEST_F(ExtNameStrTest, CopyHasEverythingAsItIs) {
  ExtNameStr name;
  name.SetU8(kEuro);
  name.SetSystem(kCafe1252);
  name.GetCP(NewConverter("US-ASCII").get());
  const int opened = system_.Count();
  const ExtNameStr copy(name);
  ExpectTexts(copy, {kCafe, kCafe1252, kCafe1252, kEuro16, kInexact}, "copied");
  ExtNameStr assigned;
  assigned.SetU8("something else");
  const int openedSince = system_.Count();
  EXPECT_EQ(&(assigned = name), &assigned);
  ExpectTexts(assigned, {kCafe, kCafe1252, kCafe1252, kEuro16, kInexact}, "assigned");
  EXPECT_EQ(system_.Count(), openedSince) << "no conversion";
  EXPECT_GT(openedSince, opened);
}

TEST_F(ExtNameStrTest, CopyLivesOnItsOwn) {
  ExtNameStr name;
  name.SetU8(kCafe);
  ExtNameStr copy(name);
  ExtNameStr assigned;
  assigned = name;
  name.SetU8(kEuro);
  EXPECT_EQ(copy.GetU8(), kCafe);
  EXPECT_EQ(assigned.GetU8(), kCafe);
  copy.SetU8(kAlpha);
  EXPECT_EQ(name.GetU8(), kEuro);
  EXPECT_EQ(assigned.GetU16(), kCafe16);
}

TEST_F(ExtNameStrTest, CopyOfAnUnreadObjectConvertsAtTheFirstReading) {
  const ExtNameStr name;
  const ExtNameStr copy(name);
  EXPECT_EQ(copy.GetCP(), "");
  EXPECT_EQ(system_.Count(), 1);
}

TEST_F(ExtNameStrTest, CopyIsAsStaleAsTheOriginal) {
  ExtNameStr name;
  name.SetU8(kAlpha);
  const DefaultCodePage greek("1253");
  const ExtNameStr copy(name);
  EXPECT_EQ(copy.GetCP(), kAlpha1253);
}

TEST_F(ExtNameStrTest, SelfAssignmentDoesNothing) {
  ExtNameStr name;
  name.SetU8(kCafe);
  const ExtNameStr& same = name;
  name = same;
  ExpectTexts(name, kCafeTexts, "itself");
}

TEST_F(ExtNameStrTest, SettersMayBeGivenTheObjectsOwnTexts) {
  ExtNameStr name;
  name.SetU8(kEuro);
  name.SetU8(name.GetU8());
  EXPECT_EQ(name.GetU8(), kEuro);
  name.SetU16(name.GetU16());
  EXPECT_EQ(name.GetU8(), kEuro);
  name.SetCP(name.GetCP(), nullptr);
  EXPECT_EQ(name.GetU8(), kEuro);
  name.SetGeneric(name.GetGeneric());
  EXPECT_EQ(name.GetU8(), kEuro);
  name.SetSystem(name.GetSystem());
  EXPECT_EQ(name.GetU8(), "5 ?");
  name.SetU8(kCafe);
  name.SetSystem(name.GetCP());
  EXPECT_EQ(name.GetU8(), kCafe);
  name.SetCP(name.GetU8(), nullptr);
  EXPECT_EQ(name.GetU8(), "caf\xC3\x83\xC2\xA9") << "read as code page 1252";
  name.SetU8(kCafe);
  name.SetSystem(name.GetU8());
  EXPECT_EQ(name.GetU8(), "caf\xC3\x83\xC2\xA9") << "read as ISO 8859-1";
}

TEST_F(ExtNameStrTest, EveryConverterIsClosed) {
  const OwnedConverter japanese = NewConverter("932");
  const std::function<void(ExtNameStr&)> operations[] = {
      [](ExtNameStr& n) { n.SetU8(kEuro); },
      [](ExtNameStr& n) { n.SetU8(kMalformed); },
      [](ExtNameStr& n) { n.SetU16(kEuro16); },
      [](ExtNameStr& n) { n.SetU16(U16({0xD800})); },
      [&](ExtNameStr& n) { n.SetCP("\x82", japanese.get()); },
      [](ExtNameStr& n) { n.SetCP(kEuro1252, nullptr); },
      [](ExtNameStr& n) { n.SetGeneric(kEuro1252); },
      [](ExtNameStr& n) { n.SetSystem(kCafe1252); },
      [](ExtNameStr& n) { n.Clear(); },
      [](ExtNameStr& n) { n.GetCP(); },
      [](ExtNameStr& n) { n.GetCP(nullptr); },
      [](ExtNameStr& n) {
        ExtNameStr copy(n);
        n = copy;
      },
  };
  for (const int mode : {0, 1}) {
    const Utf8Mode on(mode);
    ExtNameStr name;
    const int open = OpenConverters();
    for (const auto& operation : operations) {
      TULKMBSetDefaultConverter(standard_.Get());
      operation(name);
      EXPECT_EQ(OpenConverters(), open) << &operation - operations;
    }
  }
  EXPECT_GT(system_.Count(), 0);
}

TEST_F(ExtNameStrTest, CallersConverterIsUsedAsItIsAndStaysOpen) {
  const OwnedConverter greek = NewConverter("1253");
  const int open = OpenConverters();
  {
    ExtNameStr name;
    name.SetCP(kAlpha1253, greek.get());
    EXPECT_EQ(name.GetCP(greek.get()), kAlpha1253);
  }
  EXPECT_EQ(OpenConverters(), open);
  EXPECT_NE(encoding_test::NameOf(greek.get()), "");
}

// Tests with another system encoding than the fixture's.

TEST(ExtNameStrSystem, EncodingWithoutConverterUsesTheDefault) {
  const DefaultCodePage standard("1252");
  const SystemIs unknown("no-such-code-page");
  ExtNameStr name;
  name.SetU8(kEuro);
  EXPECT_EQ(name.GetSystem(), kEuro1252);
  EXPECT_EQ(name.SetSystem(kEuro1252), kExact);
  EXPECT_EQ(name.GetU8(), kEuro);
  EXPECT_GT(unknown.Count(), 0);
}

TEST(ExtNameStrSystem, Utf8TakesEveryText) {
  const DefaultCodePage standard("1252");
  const SystemIs utf8("UTF-8");
  ExtNameStr name;
  name.SetU8(kAlpha);
  EXPECT_EQ(name.GetSystem(), kAlpha);
  EXPECT_EQ(name.SetSystem("\xF0\x9F\x98\x80"), kInexact) << "not in the code page";
  EXPECT_EQ(name.GetU8(), "\xF0\x9F\x98\x80");
}

TEST(ExtNameStrSystem, MalformedTextIsKeptAsGivenAndItsStatusIsNot) {
  const DefaultCodePage standard("1252");
  const SystemIs ascii("US-ASCII");
  ExtNameStr name;
  EXPECT_EQ(name.SetSystem("caf\xE9"), kExact);
  EXPECT_EQ(name.GetSystem(), "caf\xE9");
  EXPECT_EQ(name.GetU8(), "caf?");
  EXPECT_EQ(name.GetCP(), "caf?");
}

TEST(ExtNameStrSystem, StaleReadingMakesTheSystemTextFromTheMaster) {
  const DefaultCodePage standard("1252");
  const SystemIs ascii("US-ASCII");
  ExtNameStr name;
  name.SetSystem("caf\xE9");
  TULKMBSetDefaultConverter(standard.Get());
  EXPECT_EQ(name.GetCP(), "caf?");
  EXPECT_EQ(name.GetSystem(), "caf?");
}

TEST(ExtNameStrSystem, MultiByteEncoding) {
  const DefaultCodePage standard("UTF-8");
  const SystemIs japanese("windows-31j");
  ExtNameStr name;
  name.SetU8("\xE3\x81\x82\xE8\xA1\xA8");
  EXPECT_EQ(name.GetSystem(), "\x82\xA0\x95\\");
  EXPECT_EQ(name.SetSystem("\x95\\"), kExact);
  EXPECT_EQ(name.GetU8(), "\xE8\xA1\xA8");
  EXPECT_EQ(name.GetCP(), "\xE8\xA1\xA8");
}

TEST(ExtNameStrSystem, NameOfTheEncodingGoesThroughTheDefaultCodePageInUtf8Mode) {
  const DefaultCodePage ebcdic("ibm-37");
  const SystemIs latin1("ISO-8859-1");
  const Utf8Mode on(1);
  ExtNameStr name;
  name.SetU8("A");
  EXPECT_EQ(latin1.Count(), 0) << "the EBCDIC bytes of the name are no name";
  EXPECT_EQ(name.GetSystem(), "\xC1") << "the default stands in";
}

// Whatever bytes there are: no failure but in the status, and texts that agree with each other.
TEST(ExtNameStrHostile, EveryPairOfBytesInEverySetter) {
  const DefaultCodePage standard("932");
  const SystemIs system("EUC-JP");
  const OwnedConverter chinese = NewConverter("GB18030");
  ExtNameStr name;
  for (int pair = 0; pair < 0x10000; pair += 7) {
    const std::string bytes{static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)};
    name.SetU8(bytes);
    ASSERT_EQ(name.GetU8(), bytes);
    ASSERT_EQ(name.GetU16().empty(), name.ErrorCode() != kExact);
    name.SetCP(bytes, chinese.get());
    ASSERT_EQ(name.ErrorCode(), kExact);
    ASSERT_FALSE(name.GetU16().empty());
    name.SetCP(bytes, nullptr);
    ASSERT_EQ(name.ErrorCode(), kExact);
    const int status = name.SetSystem(bytes);
    ASSERT_EQ(name.ErrorCode(), status);
    ASSERT_EQ(name.GetSystem(), bytes);
    name.SetU16(U16({pair, pair}));
    ASSERT_EQ(name.ErrorCode(), kExact);
    ASSERT_EQ(name.Empty(), pair >= 0xD800 && pair <= 0xDFFF) << pair;
  }
}

TEST(ExtNameStrHostile, LongTextsAreWhole) {
  const DefaultCodePage standard("1252");
  const SystemIs system("GB18030");
  std::string text;
  for (int i = 0; i < 100000; ++i) text += kEuro;
  ExtNameStr name;
  name.SetU8(text);
  EXPECT_EQ(name.GetU8(), text);
  EXPECT_EQ(name.GetU16().size(), 300000u);
  EXPECT_EQ(name.GetCP().size(), 300000u);
  name.SetCP(std::string(name.GetCP()), nullptr);
  EXPECT_EQ(name.GetU8(), text);
  name.SetSystem(std::string(name.GetSystem()));
  EXPECT_EQ(name.GetU8(), text);
  EXPECT_EQ(name.ErrorCode(), kExact);
}

}  // namespace
