#include "encoding/WorkingConverter.h"

#include "mcmem/ConverterRegistry.h"

namespace MCMEM_NAMESPACE {

namespace {

// A new converter of the same kind, which substitutes as `original` does.
UConverter* OpenAlike(const UConverter& original) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(ucnv_getName(&original, &error), &error);
  if (U_FAILURE(error)) return nullptr;
  UConverterToUCallback to_unicode = nullptr;
  UConverterFromUCallback from_unicode = nullptr;
  const void* context = nullptr;
  ucnv_getToUCallBack(&original, &to_unicode, &context);
  ucnv_setToUCallBack(converter, to_unicode, context, nullptr, nullptr, &error);
  ucnv_getFromUCallBack(&original, &from_unicode, &context);
  ucnv_setFromUCallBack(converter, from_unicode, context, nullptr, nullptr, &error);
  char substitute[16];
  int8_t bytes = sizeof substitute;
  ucnv_getSubstChars(&original, substitute, &bytes, &error);
  if (U_SUCCESS(error)) ucnv_setSubstChars(converter, substitute, bytes, &error);
  return converter;
}

// A table's type takes ICU some time to tell; compound text has characters of more bytes than most.
bool IsCompoundText(const UConverter& converter) {
  return ucnv_getMaxCharSize(&converter) > 2 && ucnv_getType(&converter) == UCNV_COMPOUND_TEXT;
}

// ICU's reset leaves the state of compound text as it is: even a caller's converter serves as a
// pattern only.
bool NeedsCopy(const UConverter* given) { return given == nullptr || IsCompoundText(*given); }

// ucnv_safeClone puts the clone into memory of ours; ucnv_clone, which ICU recommends instead,
// would take it from the heap at every call.
UConverter* CloneInto(char* memory, int32_t bytes, const UConverter* original) {
  if (original == nullptr) return nullptr;
  // Closing such a clone frees tables that the original goes on using (ICU 72).
  if (IsCompoundText(*original)) return OpenAlike(*original);
  UErrorCode error = U_ZERO_ERROR;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  UConverter* clone = ucnv_safeClone(original, memory, &bytes, &error);
#pragma GCC diagnostic pop
  return U_SUCCESS(error) ? clone : nullptr;
}

}  // namespace

WorkingConverter::WorkingConverter(void* given) : WorkingConverter(given, NotReset()) {
  // The default converter may have been left in the middle of a character.
  if (is_clone_ && converter_ != nullptr) ucnv_reset(converter_);
}

WorkingConverter::WorkingConverter(void* given, NotReset)
    : converter_(static_cast<UConverter*>(given)), is_clone_(NeedsCopy(converter_)) {
  if (!is_clone_) return;
  converter_ =
      CloneInto(clone_, kCloneBytes, given != nullptr ? converter_ : TULKMBGetDefaultConverter());
}

WorkingConverter::WorkingConverter(void* given, AlwaysClone) : is_clone_(true) {
  const UConverter* original =
      given != nullptr ? static_cast<const UConverter*>(given) : TULKMBGetDefaultConverter();
  converter_ = CloneInto(clone_, kCloneBytes, original);
  if (converter_ != nullptr) ucnv_reset(converter_);
}

WorkingConverter::~WorkingConverter() {
  if (is_clone_) ucnv_close(converter_);
}

}  // namespace MCMEM_NAMESPACE
