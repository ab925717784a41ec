#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "encoding/ConverterNew.h"
#include "encoding/ConverterPtr.h"
#include "encoding/ConverterState.h"
#include "mcmem/ConverterRegistry.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {

namespace {

constexpr int kNameBytes = UCNV_MAX_CONVERTER_NAME_LENGTH;
constexpr int kFrom8ToCodePage = 0;  // a direction of TULKMBCodePageAnd8
constexpr unsigned long kLargestCodePage = 99999;

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsSameAsciiName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return AsciiLower(x) == AsciiLower(y); });
}

ConverterPtr Open(const char* name, UErrorCode& error) {
  error = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(name, &error));
  if (U_FAILURE(error)) return nullptr;
  return converter;
}

// A default converter that is missing is not made here: making one comes through here.
ConverterPtr OpenLikeDefault(UErrorCode& error) {
  const UConverter* standard = CurrentDefaultConverter();
  if (standard == nullptr) return Open(nullptr, error);
  const char* name = ucnv_getName(standard, &error);
  return U_SUCCESS(error) ? Open(name, error) : nullptr;
}

// 0 where the text is no code page number. Whatever strtoul takes for a number is one, so leading
// white space and a plus sign are allowed.
unsigned int CodePageNumber(const char* text) {
  char* end = nullptr;
  const unsigned long number = std::strtoul(text, &end, 10);
  const bool isWhole = end != text && *end == '\0';
  if (!isWhole || number > kLargestCodePage) return 0;
  return static_cast<unsigned int>(number);
}

ConverterPtr OpenCodePage(unsigned int cp, UErrorCode& error) {
  char name[kNameBytes];
  if (TULKMBCpNameFromNum_C(name, cp) == 0) return nullptr;
  return Open(name, error);
}

// The one Windows name that stands for a converter ICU has under other names only. Compared as
// ASCII, in which converter names are written: a comparison in the default code page would need
// the default converter, which may be the one that is being opened.
ConverterPtr OpenByName(const char* name, UErrorCode& error) {
  ConverterPtr converter = Open(name, error);
  if (converter == nullptr && IsSameAsciiName(name, "windows-28591")) {
    return Open("ISO-8859-1", error);
  }
  return converter;
}

ConverterPtr OpenFor(const char* name, UErrorCode& error) {
  if (name == nullptr) return OpenLikeDefault(error);
  if (const unsigned int cp = CodePageNumber(name); cp != 0) return OpenCodePage(cp, error);
  return OpenByName(name, error);
}

void InstallSubstitution(UConverter* converter) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter, TULKMB_TO_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr,
                      &error);
  ucnv_setFromUCallBack(converter, TULKMB_FROM_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr,
                        &error);
  // Refused for encodings without one-byte characters, as UTF-16 and UTF-32; they keep the
  // substitute that ICU gave them, and are of use all the same.
  ucnv_setSubstChars(converter, "?", 1, &error);
}

ConverterPtr New_C(const char* name, UErrorCode& error) {
  ConverterPtr converter = OpenFor(name, error);
  if (converter != nullptr) InstallSubstitution(converter.get());
  return converter;
}

ConverterPtr New_8(const char* name, UErrorCode& error) {
  if (name == nullptr) return New_C(nullptr, error);
  char converted[kNameBytes] = {};
  int status = 0;
  TULKMBCodePageAnd8(kFrom8ToCodePage, nullptr, converted, kNameBytes, name, -1, &status);
  return status == 0 ? New_C(converted, error) : nullptr;
}

}  // namespace

ConverterPtr NewConverter(const char* name, bool& noMemory) {
  UErrorCode error = U_ZERO_ERROR;
  ConverterPtr converter = qUTF8mode() ? New_8(name, error) : New_C(name, error);
  noMemory = error == U_MEMORY_ALLOCATION_ERROR;
  return converter;
}

UConverter* TULKMBConverterNew_C(const char* name) {
  UErrorCode ignored = U_ZERO_ERROR;
  return New_C(name, ignored).release();
}

UConverter* TULKMBConverterNew_8(const char* name) {
  UErrorCode ignored = U_ZERO_ERROR;
  return New_8(name, ignored).release();
}

UConverter* TULKMBConverterNew_A(const char* name) {
  bool ignored = false;
  return NewConverter(name, ignored).release();
}

}  // namespace MCMEM_NAMESPACE
