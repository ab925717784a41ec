#include "encoding/SubstitutionWatch.h"

#include "mcmem/ConverterRegistry.h"

namespace MCMEM_NAMESPACE {

namespace {

// A full target keeps our callbacks from leaving their mark: the replacement goes to a buffer
// inside the converter, and ICU must see its own code for that.
bool WasReplaced(UErrorCode error, bool callbackIsOurs) {
  return IsSubstitutionMark(error) || (callbackIsOurs && error == U_BUFFER_OVERFLOW_ERROR);
}

// Our callbacks have nothing to do when a converter is reset, cloned or closed.
bool IsEvent(UConverterCallbackReason reason) { return reason > UCNV_IRREGULAR; }

}  // namespace

void SubstitutionWatch::Attach(UConverter& converter, Direction direction) {
  converter_ = &converter;
  direction_ = direction;
  UErrorCode error = U_ZERO_ERROR;
  if (direction == kToUnicode) {
    ucnv_setToUCallBack(&converter, OnToUnicode, this, &to_unicode_, &to_unicode_context_, &error);
  } else {
    ucnv_setFromUCallBack(&converter, OnFromUnicode, this, &from_unicode_, &from_unicode_context_,
                          &error);
  }
}

SubstitutionWatch::~SubstitutionWatch() {
  if (converter_ == nullptr) return;
  UErrorCode error = U_ZERO_ERROR;
  if (direction_ == kToUnicode) {
    ucnv_setToUCallBack(converter_, to_unicode_, to_unicode_context_, nullptr, nullptr, &error);
  } else {
    ucnv_setFromUCallBack(converter_, from_unicode_, from_unicode_context_, nullptr, nullptr,
                          &error);
  }
}

// ICU hands a callback the context that it keeps, and sets the converter's own callbacks here: the
// watch is the context, the wrapped callback gets its own.
void U_CALLCONV SubstitutionWatch::OnToUnicode(const void* context, UConverterToUnicodeArgs* args,
                                               const char* bytes, int32_t length,
                                               UConverterCallbackReason reason, UErrorCode* error) {
  auto* watch = static_cast<SubstitutionWatch*>(const_cast<void*>(context));
  const bool isOurs = watch->to_unicode_ == TULKMB_TO_U_CALLBACK_SUBSTITUTE;
  if (isOurs && IsEvent(reason)) return;
  watch->to_unicode_(watch->to_unicode_context_, args, bytes, length, reason, error);
  if (WasReplaced(*error, isOurs)) watch->has_seen_ = true;
}

void U_CALLCONV SubstitutionWatch::OnFromUnicode(const void* context,
                                                 UConverterFromUnicodeArgs* args,
                                                 const UChar* units, int32_t length,
                                                 UChar32 codePoint, UConverterCallbackReason reason,
                                                 UErrorCode* error) {
  auto* watch = static_cast<SubstitutionWatch*>(const_cast<void*>(context));
  const bool isOurs = watch->from_unicode_ == TULKMB_FROM_U_CALLBACK_SUBSTITUTE;
  if (isOurs && IsEvent(reason)) return;
  watch->from_unicode_(watch->from_unicode_context_, args, units, length, codePoint, reason, error);
  if (WasReplaced(*error, isOurs)) watch->has_seen_ = true;
}

}  // namespace MCMEM_NAMESPACE
