// The conversions of terminated text into new arrays.

#include <algorithm>
#include <climits>
#include <memory>
#include <new>
#include <string>

#include "encoding/CodePageDriver.h"
#include "encoding/Conversions.h"
#include "encoding/Utf8And16.h"
#include "mcmem/ConverterRegistry.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {

namespace {

using namespace transcoding;
using Unit = unsigned short;

void* const kDefaultConverter = nullptr;

template <class From>
Text<From> TerminatedText(const From* src) {
  return {src, src + std::char_traits<From>::length(src)};
}

template <class To>
To* NewArray(std::size_t units) {
  return units < PTRDIFF_MAX / sizeof(To) ? new (std::nothrow) To[units + 1] : nullptr;
}

// `units` is what a well-formed text needs; a malformed one gives an empty array.
template <class From, class To>
To* FillArray(Text<From> text, std::size_t units, Verdict (*convert)(Text<From>, Target<To>&)) {
  To* const array = NewArray<To>(units);
  if (array == nullptr) return nullptr;
  BufferTarget<To> target(array, units);
  const Verdict verdict = convert(text, target);
  array[verdict == Verdict::kExact ? target.Kept() : 0] = 0;
  return array;
}

template <class To>
To* CopyArray(const To* units, std::size_t count) {
  To* const array = NewArray<To>(count);
  if (array == nullptr) return nullptr;
  std::copy_n(units, count, array);
  array[count] = 0;
  return array;
}

}  // namespace

char* TULKMBTranscodeU8(const unsigned short* src) {
  if (src == nullptr) return nullptr;
  const Text<Unit> text = TerminatedText(src);
  return FillArray(text, CountUtf8Bytes(text.first, text.Size()), Utf16To8);
}

unsigned short* TULKMBTranscodeU8(const char* src) {
  if (src == nullptr) return nullptr;
  const Text<char> text = TerminatedText(src);
  return FillArray(text, CountUtf16Units(text.first, text.Size()), Utf8To16);
}

// Two bytes per unit is a limit of this form: what needs more is cut.
char* TULKMBTranscodeCodePage(const unsigned short* src) {
  if (src == nullptr) return nullptr;
  const Text<Unit> text = TerminatedText(src);
  constexpr std::size_t kMostUnits = (INT_MAX - 1) / 2;
  if (text.Size() > kMostUnits) return nullptr;
  const std::size_t capacity = 2 * text.Size() + 1;
  char local[1025];
  const bool isShort = capacity <= sizeof local;
  const std::unique_ptr<char[]> heap(isShort ? nullptr : NewArray<char>(capacity));
  char* const scratch = isShort ? local : heap.get();
  if (scratch == nullptr) return nullptr;
  const int length =
      TULKMB16toCodePage(kDefaultConverter, scratch, static_cast<int>(capacity), src, -1);
  return CopyArray(scratch, static_cast<std::size_t>(length));
}

unsigned short* TULKMBTranscodeCodePage(const char* src) {
  if (src == nullptr) return nullptr;
  const Text<char> text = TerminatedText(src);
  U16String units;
  StringTarget<Unit> target(units);
  const Verdict verdict =
      CodePageTo16(kDefaultConverter, TraitsFor(kDefaultConverter, text), text, target);
  if (verdict == Verdict::kNoMemory || !target.More()) return nullptr;
  return CopyArray(units.data(), verdict == Verdict::kFailed ? 0 : units.size());
}

char* TULKMBTranscodeGeneric(const unsigned short* src) {
  return qUTF8mode() ? TULKMBTranscodeU8(src) : TULKMBTranscodeCodePage(src);
}

unsigned short* TULKMBTranscodeGeneric(const char* src) {
  return qUTF8mode() ? TULKMBTranscodeU8(src) : TULKMBTranscodeCodePage(src);
}

}  // namespace MCMEM_NAMESPACE
