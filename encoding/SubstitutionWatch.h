// Whether a conversion put something else in the place of a character.
#ifndef MCMEM_ENCODING_SUBSTITUTIONWATCH_H
#define MCMEM_ENCODING_SUBSTITUTIONWATCH_H

#include <unicode/ucnv.h>

namespace MCMEM_NAMESPACE {

// The marks that the substitution callbacks leave in ICU's error code. Negative, so that ICU takes
// them for warnings and goes on.
constexpr UErrorCode kUnassignedReplaced = static_cast<UErrorCode>(-100);
constexpr UErrorCode kIllegalReplaced = static_cast<UErrorCode>(-101);

inline bool IsSubstitutionMark(UErrorCode error) {
  return error == kUnassignedReplaced || error == kIllegalReplaced;
}

// Stands between a converter and its callback for one direction and notes every mark at the moment
// it is set. The error code that an ICU function returns is no witness: ICU overwrites it, for
// example with the warning that the result is not terminated.
class SubstitutionWatch {
 public:
  enum Direction { kToUnicode, kFromUnicode };

  SubstitutionWatch() = default;

  // The converter gets its callback back, unless it has been released.
  ~SubstitutionWatch();

  SubstitutionWatch(const SubstitutionWatch&) = delete;
  SubstitutionWatch& operator=(const SubstitutionWatch&) = delete;

  // Starts watching; to be called once. `converter` is borrowed; nobody else may use it meanwhile.
  void Attach(UConverter& converter, Direction direction);

  // Leaves the converter as it is. To be called if it is closed before the watch ends: the last
  // callbacks then come here too.
  void Release() { converter_ = nullptr; }

  // True once a mark was set.
  bool HasSeen() const { return has_seen_; }

 private:
  static void U_CALLCONV OnToUnicode(const void* context, UConverterToUnicodeArgs* args,
                                     const char* bytes, int32_t length,
                                     UConverterCallbackReason reason, UErrorCode* error);
  static void U_CALLCONV OnFromUnicode(const void* context, UConverterFromUnicodeArgs* args,
                                       const UChar* units, int32_t length, UChar32 codePoint,
                                       UConverterCallbackReason reason, UErrorCode* error);

  UConverter* converter_ = nullptr;
  Direction direction_ = kToUnicode;
  UConverterToUCallback to_unicode_ = nullptr;
  UConverterFromUCallback from_unicode_ = nullptr;
  const void* to_unicode_context_ = nullptr;
  const void* from_unicode_context_ = nullptr;
  bool has_seen_ = false;
};

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_SUBSTITUTIONWATCH_H
