#include "encoding/CodePageProbe.h"

#include <unicode/ucnv_err.h>
#include <unicode/uset.h>

#include <algorithm>
#include <new>

namespace MCMEM_NAMESPACE {
namespace transcoding {

namespace {

struct SetCloser {
  void operator()(USet* set) const { uset_close(set); }
};

void StopAtEverything(UConverter* converter) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
}

std::basic_string<UChar> Widened(const std::string& ascii) {
  return std::basic_string<UChar>(ascii.begin(), ascii.end());
}

// Each of the characters once in front of and once behind each other one, and of itself.
std::string AllPairs(const std::string& characters) {
  std::string pairs;
  for (const char a : characters) {
    for (const char b : characters) pairs.append({a, b});
  }
  return pairs;
}

}  // namespace

CodePageProbe::CodePageProbe(const UConverter& converter)
    : clone_(const_cast<UConverter*>(&converter), WorkingConverter::AlwaysClone{}) {
  if (clone_.Get() == nullptr) return;
  StopAtEverything(clone_.Get());
  ucnv_setFallback(clone_.Get(), false);  // a matter of the single converter
}

bool CodePageProbe::Fill(CodePageTraits& traits) {
  if (clone_.Get() == nullptr) return false;
  traits.is_utf8_ = ucnv_getType(clone_.Get()) == UCNV_UTF8;
  try {
    FillExceptions(traits);
    if (ucnv_getMaxCharSize(clone_.Get()) == 1 && !HasSequences()) {
      traits.table_ = MakeTable().release();
    }
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

// A character that is in place alone must also be where it stands beside another one; otherwise
// nothing is taken for granted.
void CodePageProbe::FillExceptions(CodePageTraits& traits) {
  std::string plain;
  std::string exceptions;
  for (char c = 0;; ++c) {
    (IsPlain(std::string(1, c)) ? plain : exceptions) += c;
    if (c == 0x7F) break;
  }
  if (exceptions.size() > CodePageTraits::kMostExceptions || !IsPlain(AllPairs(plain))) return;
  traits.has_plain_ascii_ = true;
  traits.exception_count_ = static_cast<unsigned char>(exceptions.size());
  std::copy(exceptions.begin(), exceptions.end(), traits.exceptions_);
}

bool CodePageProbe::IsPlain(const std::string& text) {
  const std::basic_string<UChar> wide = Widened(text);
  const auto length = static_cast<int32_t>(text.size());
  std::basic_string<UChar> decoded(text.size() + 1, 0);
  std::string encoded(text.size() + 1, '\0');
  UErrorCode error = U_ZERO_ERROR;
  const int32_t units =
      ucnv_toUChars(clone_.Get(), &decoded[0], length + 1, text.data(), length, &error);
  const int32_t bytes =
      ucnv_fromUChars(clone_.Get(), &encoded[0], length + 1, wide.data(), length, &error);
  if (U_FAILURE(error) || units != length || bytes != length) return false;
  return decoded.compare(0, wide.size(), wide) == 0 && encoded.compare(0, text.size(), text) == 0;
}

// Whether a sequence of characters stands for one of the code page. Then a table of single ones
// will not do. Throws std::bad_alloc where that cannot be told for lack of memory: a set that runs
// out of it loses what it holds, and keeps that to itself.
bool CodePageProbe::HasSequences() {
  const std::unique_ptr<USet, SetCloser> set(uset_openEmpty());
  if (set == nullptr) throw std::bad_alloc();
  UErrorCode error = U_ZERO_ERROR;
  ucnv_getUnicodeSet(clone_.Get(), set.get(), UCNV_ROUNDTRIP_AND_FALLBACK_SET, &error);
  const int32_t count = uset_getItemCount(set.get());
  if (error == U_MEMORY_ALLOCATION_ERROR || (U_SUCCESS(error) && count == 0)) {
    throw std::bad_alloc();
  }
  bool found = U_FAILURE(error);
  for (int32_t i = 0; !found && i < count; ++i) {
    UChar32 first = 0;
    UChar32 last = 0;
    UErrorCode tooLong = U_ZERO_ERROR;  // a sequence does not fit into no room
    found = uset_getItem(set.get(), i, &first, &last, nullptr, 0, &tooLong) != 0;
  }
  return found;
}

std::unique_ptr<SingleByteTable> CodePageProbe::MakeTable() {
  auto table = std::make_unique<SingleByteTable>();
  for (unsigned byte = 0; byte <= 0xFF; ++byte) AddByte(*table, static_cast<unsigned char>(byte));
  return table;
}

void CodePageProbe::AddByte(SingleByteTable& table, unsigned char byte) {
  const char encoded = static_cast<char>(byte);
  UChar units[4];
  UErrorCode error = U_ZERO_ERROR;
  const int32_t count = ucnv_toUChars(clone_.Get(), units, 4, &encoded, 1, &error);
  if (U_FAILURE(error) || count != 1 || units[0] == 0xFFFF) return;
  table.AddDecoded(byte, units[0]);
  char back[4];
  const int32_t bytes = ucnv_fromUChars(clone_.Get(), back, 4, units, 1, &error);
  if (U_SUCCESS(error) && bytes == 1) {
    table.AddEncoded(units[0], static_cast<unsigned char>(back[0]));
  }
}

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE
