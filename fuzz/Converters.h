/// @file
/// The code pages that fuzz targets choose from.
#ifndef MCXPRSUTIL_FUZZ_CONVERTERS_H
#define MCXPRSUTIL_FUZZ_CONVERTERS_H

#include <mcmem/ConverterRegistry.h>

#include <cstddef>
#include <iterator>
#include <map>
#include <string>

#include "Check.h"
#include "Input.h"

namespace fuzz {

/// What may be asked of a code page.
enum Traits : unsigned {
  kNothing = 0,
  kEncodesAlike = 1,  ///< one text has one encoding, however ICU is handed it
  kFromUnicode = 2,   ///< text that it has comes back from it
  kFromBytes = 4,     ///< bytes that it has come back from Unicode
  kSharesBytes = 8,   ///< a byte may hold bits of two characters, or be one where a text ends
};

struct CodePage {
  const char* name;
  unsigned traits;
};

inline constexpr CodePage kCodePages[] = {
    // the preferred ones
    {"windows-31j", kEncodesAlike | kFromUnicode},
    {"GBK", kEncodesAlike | kFromUnicode},
    {"KS_C_5601-1987", kEncodesAlike | kFromUnicode},
    {"Big5", kEncodesAlike | kFromUnicode},
    {"cp1250", kEncodesAlike | kFromUnicode | kFromBytes},
    {"cp1251", kEncodesAlike | kFromUnicode | kFromBytes},
    {"cp1252", kEncodesAlike | kFromUnicode | kFromBytes},
    {"cp1253", kEncodesAlike | kFromUnicode | kFromBytes},
    {"cp1254", kEncodesAlike | kFromUnicode | kFromBytes},
    {"cp1255", kEncodesAlike | kFromUnicode | kFromBytes},
    {"cp1256", kEncodesAlike | kFromUnicode | kFromBytes},
    {"cp1257", kEncodesAlike | kFromUnicode | kFromBytes},
    {"cp1258", kEncodesAlike | kFromUnicode | kFromBytes},
    {"ISO-8859-1", kEncodesAlike | kFromUnicode | kFromBytes},
    {"UTF-8", kEncodesAlike | kFromUnicode | kFromBytes},
    // with escape sequences and shifts
    {"ISO-2022-JP", kEncodesAlike},
    {"ISO-2022-KR", kEncodesAlike},
    {"ISO-2022-CN", kEncodesAlike},
    {"HZ", kEncodesAlike | kFromUnicode},
    {"x11-compound-text", kEncodesAlike},
    {"ibm-930", kEncodesAlike},
    // where bytes below 0x80 are not all ASCII
    {"ibm-37", kEncodesAlike | kFromUnicode | kFromBytes},
    {"gsm-03.38", kEncodesAlike | kSharesBytes},
    // other forms of Unicode
    {"UTF-7", kEncodesAlike | kFromUnicode | kSharesBytes},
    {"UTF-16", kEncodesAlike | kFromUnicode},
    {"UTF-16LE", kEncodesAlike | kFromUnicode},
    {"UTF-32", kEncodesAlike | kFromUnicode},
    {"CESU-8", kEncodesAlike | kFromUnicode},
    {"BOCU-1", kEncodesAlike | kFromUnicode},
    {"GB18030", kEncodesAlike | kFromUnicode},
    {"EUC-TW", kEncodesAlike},
    // encoded in several ways
    {"SCSU", kFromUnicode},
    {"LMBCS-1", kNothing},
    {"ISCII,version=0", kNothing},
};

/// Opened at the first call for the name, and never closed. No input may leave it in another state
/// than it found, but for what a reset takes back.
inline UConverter* ConverterNamed(const std::string& name) {
  static auto& converters = *new std::map<std::string, UConverter*>;
  UConverter*& converter = converters[name];
  if (converter == nullptr) converter = MCMEM_NAMESPACE::TULKMBConverterNew_C(name.c_str());
  FUZZ_CHECK(converter != nullptr);
  return converter;
}

inline const CodePage& ChooseCodePage(Input& in) {
  return kCodePages[in.Below(static_cast<unsigned>(std::size(kCodePages)))];
}

inline UConverter* ChooseConverter(Input& in) { return ConverterNamed(ChooseCodePage(in).name); }

}  // namespace fuzz

#endif  // MCXPRSUTIL_FUZZ_CONVERTERS_H
