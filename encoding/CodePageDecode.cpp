#include "encoding/CodePageDecode.h"

#include <unicode/ucnv_err.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "encoding/ConverterStates.h"

namespace MCMEM_NAMESPACE {

namespace {

// The converters for which ICU's own code, and no table, says that a byte below 0x80 is the
// character of that number, and that nothing is carried over from one character to the next.
bool IsAsciiItself(const UConverter* converter) {
  switch (ucnv_getType(converter)) {
    case UCNV_UTF8:
    case UCNV_LATIN_1:
    case UCNV_US_ASCII:
      return true;
    default:
      return false;
  }
}

}  // namespace

const char* EndOfText(const char* s, int length) {
  if (s == nullptr) return s;
  return s + (length < 0 ? std::strlen(s) : strnlen(s, static_cast<std::size_t>(length)));
}

CodePageDecoder::CodePageDecoder(void* given) : converter_(given) { Prepare(); }

CodePageDecoder::CodePageDecoder(void* given, WorkingConverter::AlwaysClone clone)
    : converter_(given, clone) {
  Prepare();
}

void CodePageDecoder::Prepare() {
  UConverter* converter = converter_.Get();
  if (converter == nullptr) return;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, &callback_, &context_, &error);
  ucnv_resetToUnicode(converter);
  is_ascii_itself_ = IsAsciiItself(converter);
  has_states_ = HasStates(*converter);
  has_wide_units_ = ucnv_getMinCharSize(converter) > 1;
  // Two Indian letters may combine: this converter reads the second one before it gives the first.
  looks_ahead_ = ucnv_getType(converter) == UCNV_ISCII;
}

CodePageDecoder::~CodePageDecoder() {
  UConverter* converter = converter_.Get();
  if (converter == nullptr) return;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter, callback_, context_, nullptr, nullptr, &error);
}

void CodePageDecoder::Reset() {
  // Where ASCII is itself, a clean character leaves no state, and Next() resets after a failure.
  if (converter_.Get() != nullptr && !is_ascii_itself_) ucnv_resetToUnicode(converter_.Get());
}

CodePageCharacter CodePageDecoder::Next(const char* p, const char* end) {
  using C = CodePageCharacter;
  UConverter* converter = converter_.Get();
  if (converter == nullptr) return {p == end ? C::kEnd : C::kFailed, 0, 0, 0};
  if (is_ascii_itself_ && p != end && static_cast<unsigned char>(*p) < 0x80)
    return {C::kClean, static_cast<unsigned char>(*p), 1, 1};
  // ICU takes no more bytes than this at once
  constexpr std::ptrdiff_t kMost = std::numeric_limits<int32_t>::max();
  const char* next = p;
  UErrorCode error = U_ZERO_ERROR;
  const UChar32 c = ucnv_getNextUChar(converter, &next, p + std::min(end - p, kMost), &error);
  if (U_SUCCESS(error)) return {C::kClean, static_cast<std::uint32_t>(c), next - p, next - p};
  // At the end ICU may still complain, about bits left over or about a null text. Without states to
  // change, bytes that give nothing are no end: ICU loses the error there (gsm-03.38).
  const bool gives_nothing = error == U_INDEX_OUTOFBOUNDS_ERROR && has_states_;
  if (gives_nothing || p == end) return {C::kEnd, 0, 0, next - p};
  ucnv_resetToUnicode(converter);
  return {C::kFailed, 0, 0, next - p};
}

CodePageCharacter CodePageDecoder::NextAlone(const char* p, const char* end) {
  Reset();
  const CodePageCharacter c = Next(p, end);
  if (!looks_ahead_) return c;
  for (std::ptrdiff_t bytes = 1; bytes < c.bytes; ++bytes) {
    Reset();
    const CodePageCharacter shorter = Next(p, p + bytes);
    if (shorter.outcome == CodePageCharacter::kClean && shorter.value == c.value) return shorter;
  }
  return c;
}

}  // namespace MCMEM_NAMESPACE
