/// @file
/// A name that is kept in several encodings at once.
#ifndef MCMEM_EXTNAMESTR_H
#define MCMEM_EXTNAMESTR_H

#include <string>

#include "mcxprsutil/Export.h"

namespace MCMEM_NAMESPACE {

/// One text, the name of a variable or a file for example, in four representations: UTF-8 (the
/// master copy), the default code page, UTF-16 and the system encoding (see SystemEncoding()).
///
/// Setting one representation makes the others from the UTF-8 text. The code-page text is made anew
/// when it is read after a change of the default converter (see TULKMBDefaultConverterID()).
/// Embedded zero characters are part of the text.
///
/// The object keeps one status, that of the conversion that each operation names: 0 exact, 2 memory
/// was short, 3 not exact (a character was replaced by a question mark, or the bytes were
/// malformed) or any other failure. A conversion that fails leaves what the conversion function
/// leaves, which may be an empty text. No exception is thrown but `std::bad_alloc`.
///
/// Where memory was short in any of the conversions of an operation, the status that is left is 2,
/// whatever the others gave. GetCP() then makes the code-page and the system text anew.
///
/// Converters are passed as `void*`: an ICU `UConverter*`, borrowed for the call, or null for the
/// default converter. The default converter also stands in where the system encoding has no
/// converter.
///
/// Threads: one at a time for each object, when the process-wide settings are made (see
/// mcmem/ConverterRegistry.h). That holds for the const functions too: GetCP() and
/// GetGeneric() may renew texts and change the status.
class MCXPRSUTIL_EXPORT ExtNameStr {
 public:
  /// An empty text, with status 0 and no code-page text yet.
  ExtNameStr();

  /// Copies all the texts and the status as they are; nothing is converted.
  ExtNameStr(const ExtNameStr& other);

  /// Copies all the texts and the status as they are; nothing is converted. Unchanged where memory
  /// is short.
  ExtNameStr& operator=(const ExtNameStr& other);

  ~ExtNameStr();

  /// True when the UTF-8 text is empty.
  bool Empty() const;

  /// The UTF-8 text. Valid, as all references returned here, until the object is changed or read
  /// anew in the same representation.
  const std::string& GetU8() const;

  /// The UTF-16 text as last made. SetSystem() does not renew it.
  const std::basic_string<unsigned short>& GetU16() const;

  /// The text in the system encoding, as last made or set.
  const std::string& GetSystem() const;

  /// The status that the last operation with a conversion left; 0 at first.
  int ErrorCode() const;

  /// The text in the default code page.
  ///
  /// Where the default converter has changed since it was made (or the object is new, or the
  /// default converter was first made by that very conversion), it and the system text are made
  /// anew, and the status becomes that of the code page or, if that is 0, that of the system
  /// encoding. Otherwise the status stays.
  const std::string& GetCP() const;

  /// The text in the code page of `converter` (null: the default). The object keeps its texts; the
  /// status becomes that of the conversion.
  std::string GetCP(void* converter) const;

  /// The UTF-8 text in UTF-8 mode (see qUTF8mode()), else the same as GetCP().
  const std::string& GetGeneric() const;

  /// Sets the text, given in UTF-8, and makes the other representations.
  ///
  /// For this and the other setters but SetSystem(): the status left is that of the last
  /// conversion, from UTF-8 to UTF-16, alone. Whether the text was given well or fits the default
  /// code page does not show in it; call GetCP(void*) to learn the latter. The argument may be one
  /// of the object's own texts.
  void SetU8(const std::string& s);

  /// Sets the text, given in UTF-16. GetU16() then returns what the UTF-8 text gives, which differs
  /// from `s` where `s` has unpaired surrogates.
  void SetU16(const std::basic_string<unsigned short>& s);

  /// Sets the text, given in the code page of `converter` (null: the default).
  void SetCP(const std::string& s, void* converter);

  /// Sets the text, given in UTF-8 in UTF-8 mode, else in the default code page.
  void SetGeneric(const std::string& s);

  /// Sets the text, given in the system encoding.
  ///
  /// The system text becomes `s` as it is; UTF-8 and code-page texts are made from it. The UTF-16
  /// text is not: it stays that of the previous setter.
  ///
  /// @return the status of the conversion from UTF-8 to the default code page, which is also the
  ///         one kept.
  int SetSystem(const std::string& s);

  /// Empties the four texts; the status becomes 0.
  void Clear();

 private:
  struct Record;

  Record* record_;
};

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_EXTNAMESTR_H
