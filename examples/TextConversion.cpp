#include "TextConversion.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace examples {
namespace {

constexpr UChar kByteOrderMark = 0xFEFF;

// The piece's first lossy unit while there is none, and where an earlier piece has it.
constexpr std::int64_t kNoUnitYet = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kAnEarlierPiece = std::numeric_limits<std::int64_t>::min();

void Require(UErrorCode error) {
  if (U_SUCCESS(error) || error == U_BUFFER_OVERFLOW_ERROR) return;
  throw std::runtime_error(fmt::format("ICU failed with {}", u_errorName(error)));
}

// Whether a callback, asked for this reason, has put something else. The library's mark in the
// error code would say so as well, but not where the buffer was full: there ICU keeps the
// replacement for the next step, and its error takes the place of the mark.
bool WasReplaced(UConverterCallbackReason reason, UErrorCode error) {
  return reason <= UCNV_IRREGULAR && (U_SUCCESS(error) || error == U_BUFFER_OVERFLOW_ERROR);
}

std::string Hex(const char* bytes, int32_t length) {
  if (length == 0) return "the sequence";  // ICU does not keep it with every encoding
  const auto* first = reinterpret_cast<const unsigned char*>(bytes);
  return fmt::format("{:02X}", fmt::join(first, first + length, " "));
}

// ICU replays some characters from a buffer of its own.
bool IsWithin(const UChar* position, const UChar* begin, const UChar* end) {
  const std::less_equal<const UChar*> isOrdered;
  return isOrdered(begin, position) && isOrdered(position, end);
}

// ICU's clones of X11 compound text share what each of them frees. Such text is decoded byte by
// byte, so that the place of a loss needs no clone.
bool CanBeCloned(const UConverter& converter) {
  return ucnv_getType(&converter) != UCNV_COMPOUND_TEXT;
}

ConverterPtr Clone(const UConverter& original) {
  UErrorCode error = U_ZERO_ERROR;
#if U_ICU_VERSION_MAJOR_NUM >= 71
  ConverterPtr clone(ucnv_clone(&original, &error));
#else
  ConverterPtr clone(ucnv_safeClone(&original, nullptr, nullptr, &error));
#endif
  Require(error);
  return clone;
}

// Bytes that belong to a character or a shift sequence that is not complete yet.
std::uint64_t CountPending(const UConverter& decoder) {
  UErrorCode error = U_ZERO_ERROR;
  return static_cast<std::uint64_t>(std::max(0, ucnv_toUCountPending(&decoder, &error)));
}

// The number of units that become known with one more byte.
std::int64_t DecodeByte(UConverter& decoder, const char* byte) {
  std::int64_t count = 0;
  const char* source = byte;
  UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
  while (error == U_BUFFER_OVERFLOW_ERROR) {
    UChar units[16];
    UChar* target = units;
    error = U_ZERO_ERROR;
    ucnv_toUnicode(&decoder, &target, std::end(units), &source, byte + 1, nullptr, 0, &error);
    count += target - units;
  }
  return count;
}

}  // namespace

TextConversion::TextConversion(UConverter& from, UConverter& to, std::size_t bufferSize)
    : from_(from), to_(to), units_(bufferSize), bytes_(bufferSize) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(&from_, OnToUnicode, this, &to_unicode_, &to_unicode_context_, &error);
  ucnv_setFromUCallBack(&to_, OnFromUnicode, this, &from_unicode_, &from_unicode_context_, &error);
}

TextConversion::~TextConversion() {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(&from_, to_unicode_, to_unicode_context_, nullptr, nullptr, &error);
  ucnv_setFromUCallBack(&to_, from_unicode_, from_unicode_context_, nullptr, nullptr, &error);
}

void TextConversion::BeginText() {
  ucnv_resetToUnicode(&from_);
  piece_offset_ = 0;
  is_at_start_ = true;
  lossy_ = {};
}

void TextConversion::Convert(std::string_view bytes, std::string& out) {
  const std::size_t size = CanBeCloned(from_) ? std::max<std::size_t>(bytes.size(), 1) : 1;
  for (std::size_t i = 0; i < bytes.size(); i += size)
    Decode(bytes.substr(i, size), /*isEnd=*/false, out);
}

void TextConversion::EndText(std::string& out) { Decode("", /*isEnd=*/true, out); }

void TextConversion::EndOutput(std::string& out) {
  const bool wasExact = lossy_.count == 0;
  Encode(units_.data(), units_.data(), /*isEnd=*/true, out);
  if (wasExact && lossy_.count > 0) lossy_.firstOffset = piece_offset_;
}

ConverterPtr TextConversion::CloneOfSource() const {
  if (!CanBeCloned(from_)) return nullptr;
  ConverterPtr clone = Clone(from_);
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(clone.get(), to_unicode_, to_unicode_context_, nullptr, nullptr, &error);
  return clone;
}

void TextConversion::Decode(std::string_view bytes, bool isEnd, std::string& out) {
  const bool wasExact = lossy_.count == 0;
  const ConverterPtr before = wasExact ? CloneOfSource() : nullptr;
  const std::uint64_t start = piece_offset_ - CountPending(from_);
  const char* source = bytes.data();
  units_before_ = 0;
  first_lossy_unit_ = wasExact ? kNoUnitYet : kAnEarlierPiece;
  while (DecodeStep(source, bytes.data() + bytes.size(), isEnd, out)) {
  }
  if (wasExact && lossy_.count > 0) {
    lossy_.firstOffset = before == nullptr ? start : OffsetOfUnit(*before, bytes);
  }
  piece_offset_ += bytes.size();
}

// One call of ICU. Returns whether more is to come because the buffer was full.
bool TextConversion::DecodeStep(const char*& source, const char* end, bool isEnd,
                                std::string& out) {
  UChar* target = units_.data();
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(&from_, &target, target + units_.size(), &source, end, nullptr,
                 static_cast<UBool>(isEnd), &error);
  Require(error);
  Encode(SkipMark(units_.data(), target), target, /*isEnd=*/false, out);
  units_before_ += target - units_.data();
  return error == U_BUFFER_OVERFLOW_ERROR;
}

const UChar* TextConversion::SkipMark(const UChar* units, const UChar* end) {
  if (units == end || !is_at_start_) return units;
  is_at_start_ = false;
  return drops_marks_ && *units == kByteOrderMark ? units + 1 : units;
}

void TextConversion::Encode(const UChar* units, const UChar* end, bool isEnd, std::string& out) {
  UErrorCode error = U_ZERO_ERROR;
  do {
    error = U_ZERO_ERROR;
    char* target = bytes_.data();
    ucnv_fromUnicode(&to_, &target, target + bytes_.size(), &units, end, nullptr,
                     static_cast<UBool>(isEnd), &error);
    Require(error);
    out.append(bytes_.data(), target);
  } while (error == U_BUFFER_OVERFLOW_ERROR);
}

// Where the character of the piece's first lossy unit begins. `decoder` is as it was before the
// piece. ICU could give the offset of each unit with the units, but errs where a character began in
// an earlier piece, and with some encodings writes behind the end of the offsets.
std::uint64_t TextConversion::OffsetOfUnit(UConverter& decoder, std::string_view bytes) const {
  std::uint64_t start = piece_offset_ - CountPending(decoder);
  std::int64_t known = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (CountPending(decoder) == 0) start = piece_offset_ + i;
    known += DecodeByte(decoder, &bytes[i]);
    if (known > first_lossy_unit_) return start;
  }
  return piece_offset_ + bytes.size() - CountPending(decoder);
}

// The bytes of a step are all decoded before its first character is encoded, so an earlier place
// may be noted later.
bool TextConversion::NoteLoss(const UChar* where, int32_t length) {
  ++lossy_.count;
  const UChar* begin = units_.data();
  const bool isHere = IsWithin(where, begin, begin + units_.size());
  const std::int64_t unit = units_before_ + (isHere ? where - begin - length : 0);
  if (unit >= first_lossy_unit_) return false;
  first_lossy_unit_ = unit;
  return true;
}

void U_CALLCONV TextConversion::OnToUnicode(const void* context, UConverterToUnicodeArgs* args,
                                            const char* bytes, int32_t length,
                                            UConverterCallbackReason reason, UErrorCode* error) {
  auto* self = static_cast<TextConversion*>(const_cast<void*>(context));
  const UChar* where = args->target;
  self->to_unicode_(self->to_unicode_context_, args, bytes, length, reason, error);
  if (!WasReplaced(reason, *error) || !self->NoteLoss(where, 0)) return;
  self->lossy_.first = Hex(bytes, length) +
                       (reason == UCNV_UNASSIGNED ? " stands for no character" : " is malformed");
}

void U_CALLCONV TextConversion::OnFromUnicode(const void* context, UConverterFromUnicodeArgs* args,
                                              const UChar* units, int32_t length, UChar32 codePoint,
                                              UConverterCallbackReason reason, UErrorCode* error) {
  auto* self = static_cast<TextConversion*>(const_cast<void*>(context));
  self->from_unicode_(self->from_unicode_context_, args, units, length, codePoint, reason, error);
  if (!WasReplaced(reason, *error) || !self->NoteLoss(args->source, length)) return;
  self->lossy_.first = fmt::format("the target encoding has no U+{:04X}", codePoint);
}

}  // namespace examples
