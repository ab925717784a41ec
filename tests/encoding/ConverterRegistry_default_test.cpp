// The mode, the default converter and its number, the default collator.
#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <climits>

#include "encoding/IcuProbe.h"
#include "encoding/RegistryState.h"
#include "mcmem/ConverterRegistry.h"

namespace {

using namespace MCMEM_NAMESPACE;
using encoding_test::NameOf;
using encoding_test::NewConverter;
using encoding_test::OwnedConverter;

// Taken before any test runs.
const unsigned int kNumberAtStart = TULKMBDefaultConverterID();
const bool kModeAtStart = qUTF8mode();

// Puts the previous default converter back.
class DefaultConverter : public testing::Test {
 protected:
  void TearDown() override { TULKMBSetDefaultConverter(previous_); }

  UConverter* previous_ = TULKMBGetDefaultConverter();
};

TEST(UTF8mode, IsOffAtStart) { EXPECT_FALSE(kModeAtStart); }

TEST(UTF8mode, IsOnForEverythingButZero) {
  const encoding_test::Utf8Mode restore(0);
  for (const int on : {1, 2, -1, INT_MIN, INT_MAX, 256}) {
    EXPECT_TRUE(SetUTF8mode(on)) << on;
    EXPECT_TRUE(qUTF8mode()) << on;
    EXPECT_FALSE(SetUTF8mode(0));
    EXPECT_FALSE(qUTF8mode());
  }
}

TEST(UTF8mode, ChangesNoNumber) {
  const encoding_test::Utf8Mode restore(0);
  const unsigned int before = TULKMBDefaultConverterID();
  SetUTF8mode(1);
  EXPECT_EQ(TULKMBDefaultConverterID(), before);
}

TEST_F(DefaultConverter, NumberStartsAtZero) { EXPECT_EQ(kNumberAtStart, 0u); }

TEST_F(DefaultConverter, IsTheOneThatWasSet) {
  const OwnedConverter greek = NewConverter("1253");
  const unsigned int before = TULKMBDefaultConverterID();
  TULKMBSetDefaultConverter(greek.get());
  EXPECT_EQ(TULKMBDefaultConverterID(), before + 1);
  EXPECT_EQ(TULKMBGetDefaultConverter(), greek.get());
  EXPECT_EQ(TULKMBDefaultConverterID(), before + 1) << "reading changes nothing";
}

TEST_F(DefaultConverter, EverySettingCounts) {
  const OwnedConverter greek = NewConverter("1253");
  const unsigned int before = TULKMBDefaultConverterID();
  TULKMBSetDefaultConverter(greek.get());
  TULKMBSetDefaultConverter(greek.get());
  TULKMBSetDefaultConverter(nullptr);
  EXPECT_EQ(TULKMBDefaultConverterID(), before + 3);
}

TEST_F(DefaultConverter, IsMadeOnDemand) {
  TULKMBSetDefaultConverter(nullptr);
  const unsigned int before = TULKMBDefaultConverterID();
  const OwnedConverter made(TULKMBGetDefaultConverter());
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(TULKMBDefaultConverterID(), before + 1);
  EXPECT_EQ(NameOf(made.get()), encoding_test::IcuNameOf(nullptr));
  EXPECT_EQ(TULKMBGetDefaultConverter(), made.get());
  EXPECT_EQ(TULKMBDefaultConverterID(), before + 1) << "made once only";
}

TEST_F(DefaultConverter, MadeOnDemandHasTheCallbacks) {
  TULKMBSetDefaultConverter(nullptr);
  const OwnedConverter made(TULKMBGetDefaultConverter());
  UConverterToUCallback toUnicode = nullptr;
  UConverterFromUCallback fromUnicode = nullptr;
  const void* context = nullptr;
  ucnv_getToUCallBack(made.get(), &toUnicode, &context);
  ucnv_getFromUCallBack(made.get(), &fromUnicode, &context);
  EXPECT_EQ(toUnicode, TULKMB_TO_U_CALLBACK_SUBSTITUTE);
  EXPECT_EQ(fromUnicode, TULKMB_FROM_U_CALLBACK_SUBSTITUTE);
}

TEST_F(DefaultConverter, PreviousOneStaysOpen) {
  const OwnedConverter first = NewConverter("1253");
  const OwnedConverter second = NewConverter("1251");
  TULKMBSetDefaultConverter(first.get());
  const int open = encoding_test::OpenConverters();
  TULKMBSetDefaultConverter(second.get());
  TULKMBSetDefaultConverter(nullptr);
  EXPECT_EQ(encoding_test::OpenConverters(), open);
  EXPECT_EQ(NameOf(first.get()), encoding_test::IcuNameOf("cp1253")) << "still usable";
}

TEST(DefaultCollator, IsOnlyStored) {
  const unsigned int before = TULKMBDefaultConverterID();
  // No collator, as a sanitizer would tell if it were looked at.
  TULKMBSetDefaultCollator(reinterpret_cast<UCollator*>(1));
  TULKMBSetDefaultCollator(nullptr);
  EXPECT_EQ(TULKMBDefaultConverterID(), before);
}

}  // namespace
