#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include "encoding/SubstitutionWatch.h"
#include "mcmem/ConverterRegistry.h"

namespace MCMEM_NAMESPACE {

namespace {

constexpr UChar kQuestionMark = 0x3F;

// Whether a character or bytes that cannot be converted are the matter, rather than the reset, the
// closing or the cloning of the converter.
bool IsReplacement(UConverterCallbackReason reason) {
  return reason == UCNV_UNASSIGNED || reason == UCNV_ILLEGAL;
}

// Only where the substitution went well: after a failure, as a full target, ICU must see its own
// code, or it would go on.
void MarkReplacement(UConverterCallbackReason reason, UErrorCode* err) {
  if (U_FAILURE(*err)) return;
  if (reason == UCNV_UNASSIGNED) *err = kUnassignedReplaced;
  if (reason == UCNV_ILLEGAL) *err = kIllegalReplaced;
}

// Whether ICU's callback, given this context, replaces rather than stops.
bool Replaces(const void* context, UConverterCallbackReason reason) {
  if (context == nullptr) return IsReplacement(reason);
  const bool hasStopOption = *static_cast<const char*>(context) == *UCNV_SUB_STOP_ON_ILLEGAL;
  return hasStopOption && reason == UCNV_UNASSIGNED;
}

}  // namespace

extern "C" {

void U_CALLCONV TULKMB_FROM_U_CALLBACK_SUBSTITUTE(
    const void* context, UConverterFromUnicodeArgs* args, const UChar* codeUnits, int32_t length,
    UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* err) {
  UCNV_FROM_U_CALLBACK_SUBSTITUTE(context, args, codeUnits, length, codePoint, reason, err);
  MarkReplacement(reason, err);
}

void U_CALLCONV TULKMB_TO_U_CALLBACK_SUBSTITUTE(const void* context, UConverterToUnicodeArgs* args,
                                                const char* codeUnits, int32_t length,
                                                UConverterCallbackReason reason, UErrorCode* err) {
  if (args->target >= args->targetLimit && Replaces(context, reason)) {
    // ICU's substitute would go to a buffer inside the converter, out of our reach.
    *err = U_ZERO_ERROR;
    ucnv_cbToUWriteUChars(args, &kQuestionMark, 1, 0, err);
    return;  // with ICU's overflow error
  }
  const UChar* before = args->target;
  UCNV_TO_U_CALLBACK_SUBSTITUTE(context, args, codeUnits, length, reason, err);
  const bool hasWritten = U_SUCCESS(*err) && args->target > before;
  if (hasWritten && IsReplacement(reason)) args->target[-1] = kQuestionMark;
  MarkReplacement(reason, err);
}

}  // extern "C"

}  // namespace MCMEM_NAMESPACE
