// UTF-8 and UTF-32.

#include <algorithm>

#include "encoding/OutputRules.h"
#include "mcmem/Transcoding.h"
#include "mcmem/UnicodeForms.h"

namespace MCMEM_NAMESPACE {

namespace {

using transcoding::Target;
using transcoding::Text;
using transcoding::Verdict;
using Byte = unsigned char;
using Utf32Unit = unsigned int;

// What stops a conversion counts as lossy, not as a failure: the text before it is kept.
Verdict Utf8To32(Text<char> text, Target<Utf32Unit>& target) {
  auto s = reinterpret_cast<const Byte*>(text.first);
  const auto last = reinterpret_cast<const Byte*>(text.last);
  for (;;) {
    switch (ConvertUTF8toUTF32(&s, last, &target.next, target.end, strictConversion)) {
      case conversionOK:
        return Verdict::kExact;
      case targetExhausted:
        target.More();
        break;
      default:
        return Verdict::kLossy;
    }
  }
}

bool HasIllegalValue(const Utf32Unit* first, const Utf32Unit* last) {
  return std::any_of(first, last, [](Utf32Unit unit) { return unit > 0x10FFFF; });
}

// The function replaces a value beyond Unicode and goes on; that it did so is lost when the target
// fills up behind it.
Verdict Utf32To8(Text<Utf32Unit> text, Target<char>& target) {
  bool lossy = false;
  for (;;) {
    const Utf32Unit* s = text.first;
    auto next = reinterpret_cast<Byte*>(target.next);
    const auto end = reinterpret_cast<Byte*>(target.end);
    const ConversionResult result = ConvertUTF32toUTF8(&s, text.last, &next, end, strictConversion);
    target.next = reinterpret_cast<char*>(next);
    if (result == conversionOK && !lossy) return Verdict::kExact;
    if (result != targetExhausted) return Verdict::kLossy;
    lossy = lossy || HasIllegalValue(text.first, s);
    text.first = s;
    target.More();
  }
}

}  // namespace

int TULKMB8and32(int dir, void* dst, int dstCapacity, const void* src, int srcLength, int* status) {
  using transcoding::FillBuffer;
  using transcoding::StartNothing;
  if (dir != 0) {
    return FillBuffer<char, Utf32Unit>(dst, dstCapacity, src, srcLength, status, StartNothing(),
                                       Utf8To32);
  }
  return FillBuffer<Utf32Unit, char>(dst, dstCapacity, src, srcLength, status, StartNothing(),
                                     Utf32To8);
}

}  // namespace MCMEM_NAMESPACE
