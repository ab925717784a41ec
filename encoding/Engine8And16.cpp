// UTF-8 and UTF-16.

#include <algorithm>

#include "encoding/AsciiRuns.h"
#include "encoding/Conversions.h"
#include "encoding/OutputRules.h"
#include "encoding/Utf8And16.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {

namespace transcoding {

Verdict Utf8To16(Text<char> text, Target<unsigned short>& target) {
  for (;;) {
    const Stop stop = DecodeUtf8(text.first, text.last, target.next, target.end);
    if (stop == Stop::kSourceEnd) return Verdict::kExact;
    if (stop == Stop::kMalformed) return Verdict::kFailed;
    if (!target.More()) return Verdict::kNoMemory;
  }
}

Verdict Utf16To8(Text<unsigned short> text, Target<char>& target) {
  for (;;) {
    const Stop stop = EncodeUtf8(text.first, text.last, target.next, target.end);
    if (stop == Stop::kSourceEnd) return Verdict::kExact;
    if (stop == Stop::kMalformed) return Verdict::kFailed;
    if (!target.More()) return Verdict::kNoMemory;
  }
}

}  // namespace transcoding

namespace {

using Unit = unsigned short;
using transcoding::BufferTarget;
using transcoding::FillBuffer;
using transcoding::Stop;
using transcoding::Text;

// Straight into the buffer; blocks of ASCII without a call.
bool StartTo16(Text<char>& text, Unit*& next, Unit* end) {
  const std::size_t room = std::min(text.Size(), static_cast<std::size_t>(end - next));
  const std::size_t moved = ascii::MoveBlocks<false, ascii::Bytes, ascii::Units16<Unit, false>>(
      reinterpret_cast<const unsigned char*>(text.first), room, next);
  text.first += moved;
  next += moved;
  return text.IsEmpty() ||
         transcoding::DecodeUtf8(text.first, text.last, next, end) == Stop::kSourceEnd;
}

bool StartTo8(Text<Unit>& text, char*& next, char* end) {
  const std::size_t room = std::min(text.Size(), static_cast<std::size_t>(end - next));
  const std::size_t moved = ascii::MoveBlocks<false, ascii::Units16<Unit, false>, ascii::Bytes>(
      text.first, room, reinterpret_cast<unsigned char*>(next));
  text.first += moved;
  next += moved;
  return text.IsEmpty() ||
         transcoding::EncodeUtf8(text.first, text.last, next, end) == Stop::kSourceEnd;
}

}  // namespace

int TULKMB8and16(int dir, void* dst, int dstCapacity, const void* src, int srcLength, int* status) {
  if (dir != 0) {
    return FillBuffer<char, Unit>(dst, dstCapacity, src, srcLength, status, StartTo16,
                                  [](Text<char> text, BufferTarget<Unit>& target) {
                                    return transcoding::Utf8To16(text, target);
                                  });
  }
  return FillBuffer<Unit, char>(dst, dstCapacity, src, srcLength, status, StartTo8,
                                [](Text<Unit> text, BufferTarget<char>& target) {
                                  return transcoding::Utf16To8(text, target);
                                });
}

}  // namespace MCMEM_NAMESPACE
