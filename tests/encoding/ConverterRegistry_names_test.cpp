// Converter names for code page numbers.
#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <climits>
#include <cstring>
#include <string>

#include "encoding/RegistryState.h"
#include "mcmem/ConverterRegistry.h"

namespace {

using namespace MCMEM_NAMESPACE;

constexpr std::size_t kRoom = 60;

struct Row {
  unsigned int code_page;
  const char* preferred;
  const char* iana;
};

constexpr Row kRows[] = {
    {932, "windows-31j", "Shift_JIS"}, {936, "GBK", "GBK"},
    {949, "KS_C_5601-1987", "EUC-KR"}, {950, "Big5", "Big5"},
    {1250, "cp1250", "windows-1250"},  {1251, "cp1251", "windows-1251"},
    {1252, "cp1252", "windows-1252"},  {1253, "cp1253", "windows-1253"},
    {1254, "cp1254", "windows-1254"},  {1255, "cp1255", "windows-1255"},
    {1256, "cp1256", "windows-1256"},  {1257, "cp1257", "windows-1257"},
    {1258, "cp1258", "windows-1258"},  {28591, "ISO-8859-1", "ISO_8859-1:1987"},
    {65001, "UTF-8", "UTF-8"},
};
static_assert(std::size(kRows) == 15, "every preferred name");

// A name with its result, and a guard behind the room that the caller has to give.
struct Found {
  explicit Found(unsigned int cp) {
    std::memset(bytes, 'x', sizeof bytes);
    result = TULKMBCpNameFromNum_C(bytes, cp);
  }
  std::string Name() const { return std::string(bytes, strnlen(bytes, kRoom)); }
  bool IsGuardWhole() const {
    return std::string(bytes + kRoom, sizeof bytes - kRoom) ==
           std::string(sizeof bytes - kRoom, 'x');
  }

  char bytes[kRoom + 64];
  int result;
};

bool IsKnown(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_countAliases(name.c_str(), &error) > 0 && U_SUCCESS(error);
}

// Written as plainly as can be, to compare with.
std::string ExpectedName(unsigned int cp) {
  std::string digits = std::to_string(cp);
  while (digits.size() < 3) digits.insert(0, "0");
  std::string known;
  for (const Row& row : kRows) {
    if (row.code_page == cp) known = row.preferred;
  }
  if (known.empty() || !IsKnown(known)) known = "windows-" + digits;
  if (!IsKnown(known)) known = "cp" + digits;
  if (!IsKnown(known)) return "";
  UErrorCode error = U_ZERO_ERROR;
  const char* iana = ucnv_getStandardName(known.c_str(), "IANA", &error);
  return iana != nullptr ? iana : known;
}

TEST(GetPreferredCvtName, GivesEveryRow) {
  for (const Row& row : kRows) {
    EXPECT_STREQ(GetPreferredCvtName(row.code_page), row.preferred) << row.code_page;
  }
}

TEST(GetPreferredCvtName, GivesNullForEverythingElse) {
  unsigned int listed = 0;
  for (unsigned int cp = 0; cp <= 100000; ++cp) listed += GetPreferredCvtName(cp) != nullptr;
  EXPECT_EQ(listed, std::size(kRows));
  for (const unsigned int cp : {931u, 933u, 1249u, 1259u, 28592u, 65000u, UINT_MAX}) {
    EXPECT_EQ(GetPreferredCvtName(cp), nullptr) << cp;
  }
}

TEST(TULKMBCpNameFromNum_C, GivesTheIanaNameOfEveryPreferredName) {
  for (const Row& row : kRows) {
    const Found found(row.code_page);
    EXPECT_EQ(found.result, 1) << row.code_page;
    EXPECT_EQ(found.Name(), row.iana) << row.code_page;
  }
}

TEST(TULKMBCpNameFromNum_C, TriesWindowsThenCpWithThreeDigits) {
  struct {
    const char* rule;
    unsigned int code_page;
    const char* name;
  } const rows[] = {
      {"windows-NNN that ICU knows, with an IANA name", 874, "windows-874"},
      {"windows-NNN whose IANA name is quite another", 20127, "ANSI_X3.4-1968"},
      {"cpNNN, padded to three digits", 37, "IBM037"},
      {"cpNNN of three digits", 437, "IBM437"},
      {"cpNNN without an IANA name stays as it is", 1006, "cp1006"},
  };
  for (const auto& row : rows) {
    const Found found(row.code_page);
    EXPECT_EQ(found.result, 1) << row.rule;
    EXPECT_EQ(found.Name(), row.name) << row.rule;
  }
}

TEST(TULKMBCpNameFromNum_C, UnknownNumberGivesAnEmptyName) {
  for (const unsigned int cp : {0u, 1u, 99u, 99999u, 100000u, static_cast<unsigned>(INT_MAX),
                                static_cast<unsigned>(INT_MAX) + 1, UINT_MAX}) {
    const Found found(cp);
    EXPECT_EQ(found.result, 0) << cp;
    EXPECT_EQ(found.Name(), "") << cp;
    EXPECT_EQ(found.bytes[1], 'x') << cp << " wrote more than the terminator";
  }
}

TEST(TULKMBCpNameFromNum_C, WithoutRoomFails) {
  EXPECT_EQ(TULKMBCpNameFromNum_C(nullptr, 1252), 0);
}

TEST(TULKMBCpNameFromNum_C, AgreesWithTheRuleForEveryNumber) {
  int known = 0;
  for (unsigned int cp = 0; cp <= 99999; ++cp) {
    const Found found(cp);
    const std::string expected = ExpectedName(cp);
    ASSERT_EQ(found.Name(), expected) << cp;
    ASSERT_EQ(found.result, expected.empty() ? 0 : 1) << cp;
    ASSERT_TRUE(found.IsGuardWhole()) << cp;
    known += found.result;
  }
  EXPECT_GT(known, 50);
}

}  // namespace
