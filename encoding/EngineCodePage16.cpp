// Code pages and UTF-16.

#include <algorithm>

#include "encoding/CodePageDecode.h"
#include "encoding/CodePageDriver.h"
#include "encoding/CodePageStart.h"
#include "encoding/Conversions.h"
#include "encoding/OutputRules.h"
#include "encoding/Utf8Sequence.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

namespace {

Verdict EncodeRest(void* converter, Text<unsigned short> text, Target<char>& target) {
  if (text.IsEmpty()) {
    EndEncoding(converter);
    return Verdict::kExact;
  }
  WatchedConverter watched(converter, SubstitutionWatch::kFromUnicode);
  if (watched.Get() == nullptr) return Verdict::kFailed;
  const Verdict verdict = EncodeWith(*watched.Get(), text, true, target);
  return Worse(verdict, VerdictOf(watched));
}

// Whether the bytes behind the whole characters, which hold no character, lead back to the initial
// state: in that state only, the blanks or the terminator that follow a cut are what they seem. A
// byte behind them must decode as it does alone.
bool IsWayBack(void* converter, const char* bytes, std::size_t whole, std::size_t length) {
  constexpr std::size_t kLongestWay = 16;
  const std::size_t rest = length - whole;
  if (rest > kLongestWay) return false;
  CodePageDecoder decoder(converter);
  for (std::size_t i = 0; i != whole;) {
    const CodePageCharacter c = decoder.Next(bytes + i, bytes + length);
    if (c.outcome != CodePageCharacter::kClean) return false;
    i += static_cast<std::size_t>(c.bytes);
  }
  char way[kLongestWay + 1];
  std::copy_n(bytes + whole, rest, way);
  way[rest] = ' ';
  const CodePageCharacter after = decoder.Next(way, way + rest + 1);
  const CodePageCharacter alone = decoder.NextAlone(way + rest, way + rest + 1);
  return after.outcome == CodePageCharacter::kClean && after.value == alone.value;
}

// How many bytes, from the start, are whole characters of the code page. A zero is one too.
std::size_t CountWholeCharacters(void* converter, const char* bytes, std::size_t length) {
  CodePageDecoder decoder(converter);
  const char* const end = bytes + length;
  const char* p = bytes;
  while (p != end) {
    const CodePageCharacter c = decoder.Next(p, end);
    const auto whole = static_cast<std::size_t>(p - bytes);
    if (c.outcome == CodePageCharacter::kEnd) {
      return IsWayBack(converter, bytes, whole, length) ? length : whole;
    }
    // some code pages encode the halves of a pair one by one
    const bool isHalf = p + c.bytes == end && IsSurrogate(c.value);
    if (c.outcome == CodePageCharacter::kFailed || isHalf) return whole;
    p += c.bytes;
  }
  return length;
}

}  // namespace

Verdict CodePageTo16(void* converter, const CodePageTraits* traits, Text<char> text,
                     Target<unsigned short>& target) {
  if (traits != nullptr) {
    if (!MovePlainHead(*traits, text, target)) return Verdict::kNoMemory;
    if (!MoveKnownHead(*traits, text, target)) return Verdict::kNoMemory;
  }
  return DecodeRest(converter, text, target);
}

Verdict Utf16ToCodePage(void* converter, const CodePageTraits* traits, Text<unsigned short> text,
                        Target<char>& target) {
  if (traits != nullptr) {
    if (!MovePlainHead(*traits, text, target)) return Verdict::kNoMemory;
    if (!MoveKnownHead(*traits, text, target)) return Verdict::kNoMemory;
  }
  return EncodeRest(converter, text, target);
}

void TrimSurrogate(BufferTarget<unsigned short>& target) {
  const std::size_t kept = target.Kept();
  if (target.IsCut() && kept != 0 && IsHighSurrogate(target.Begin()[kept - 1])) {
    target.CutTo(kept - 1);
  }
}

void TrimCodePage(void* converter, BufferTarget<char>& target) {
  if (!target.IsCut() || target.Kept() == 0) return;
  target.CutTo(CountWholeCharacters(converter, target.Begin(), target.Kept()));
}

}  // namespace transcoding

int TULKMBCodePageAnd16(int dir, void* converter, void* dst, int dstCapacity, const void* src,
                        int srcLength, int* status) {
  using namespace transcoding;
  using Unit = unsigned short;
  CodePageStart<char, Unit> decodeStart(converter, EndDecoding);
  const auto decode = [converter, &decodeStart](Text<char> text, BufferTarget<Unit>& target) {
    const Verdict verdict = CodePageTo16(converter, decodeStart.Traits(), text, target);
    TrimSurrogate(target);
    return verdict;
  };
  CodePageStart<Unit, char> encodeStart(converter, EndEncoding);
  const auto encode = [converter, &encodeStart](Text<Unit> text, BufferTarget<char>& target) {
    const Verdict verdict = Utf16ToCodePage(converter, encodeStart.Traits(), text, target);
    TrimCodePage(converter, target);
    return verdict;
  };
  return dir != 0
             ? FillBuffer<char, Unit>(dst, dstCapacity, src, srcLength, status, decodeStart, decode)
             : FillBuffer<Unit, char>(dst, dstCapacity, src, srcLength, status, encodeStart,
                                      encode);
}

}  // namespace MCMEM_NAMESPACE
