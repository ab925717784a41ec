#include <cstdio>
#include <cstring>
#include <iterator>

#include "mcmem/ConverterRegistry.h"

namespace MCMEM_NAMESPACE {

namespace {

struct PreferredName {
  unsigned int code_page;
  const char* name;
};

// Where several of ICU's converters could stand for a code page, the one that is wanted.
constexpr PreferredName kPreferredNames[] = {
    {932, "windows-31j"},     // Japanese, Shift-JIS
    {936, "GBK"},             // Simplified Chinese
    {949, "KS_C_5601-1987"},  // Korean, EUC
    {950, "Big5"},            // Traditional Chinese
    {1250, "cp1250"},         // Central European
    {1251, "cp1251"},         // Cyrillic
    {1252, "cp1252"},         // Western European
    {1253, "cp1253"},         // Greek
    {1254, "cp1254"},         // Turkish
    {1255, "cp1255"},         // Hebrew
    {1256, "cp1256"},         // Arabic
    {1257, "cp1257"},         // Baltic
    {1258, "cp1258"},         // Vietnamese
    {28591, "ISO-8859-1"},    // Latin 1
    {65001, "UTF-8"},         // Unicode
};
static_assert(std::size(kPreferredNames) == 15, "one row for each preferred name");

// Longest name that ICU works with, terminator included.
constexpr std::size_t kNameBytes = UCNV_MAX_CONVERTER_NAME_LENGTH;

bool IsKnownToIcu(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_countAliases(name, &error) > 0 && U_SUCCESS(error);
}

// The name under which ICU knows the code page, or null. `formatted` has kNameBytes of room and
// may come to hold the result.
const char* FindKnownName(char* formatted, unsigned int cp) {
  const char* preferred = GetPreferredCvtName(cp);
  if (preferred != nullptr && IsKnownToIcu(preferred)) return preferred;
  const long number = static_cast<long>(cp);
  std::snprintf(formatted, kNameBytes, "windows-%03ld", number);
  if (IsKnownToIcu(formatted)) return formatted;
  std::snprintf(formatted, kNameBytes, "cp%03ld", number);
  return IsKnownToIcu(formatted) ? formatted : nullptr;
}

const char* IanaNameOr(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  const char* iana = ucnv_getStandardName(name, "IANA", &error);
  return U_SUCCESS(error) && iana != nullptr ? iana : name;
}

}  // namespace

const char* GetPreferredCvtName(unsigned int cp) {
  for (const PreferredName& row : kPreferredNames) {
    if (row.code_page == cp) return row.name;
  }
  return nullptr;
}

int TULKMBCpNameFromNum_C(char* dst, unsigned int cp) {
  if (dst == nullptr) return 0;
  dst[0] = '\0';
  char formatted[kNameBytes];
  const char* known = FindKnownName(formatted, cp);
  if (known == nullptr) return 0;
  const char* name = IanaNameOr(known);
  const std::size_t bytes = std::strlen(name) + 1;
  if (bytes > kNameBytes) return 0;  // no converter can be opened by such a name
  std::memcpy(dst, name, bytes);
  return 1;
}

}  // namespace MCMEM_NAMESPACE
