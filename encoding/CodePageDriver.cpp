#include "encoding/CodePageDriver.h"

#include <algorithm>
#include <cstring>

#include "encoding/AsciiRuns.h"
#include "encoding/Utf8And16.h"
#include "mcmem/ConverterRegistry.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

namespace {

// ICU refuses longer stretches than these, in units, in one call.
constexpr std::size_t kMostBytes = 0x7FFFFFFF;
constexpr std::size_t kMostUnits = 0x3FFFFFFF;

template <class Unit>
Unit* EndWithin(Unit* first, Unit* last, std::size_t most) {
  return first + std::min(static_cast<std::size_t>(last - first), most);
}

void MoveAscii(const char* s, std::size_t n, char* t) { std::memcpy(t, s, n); }
void MoveAscii(const char* s, std::size_t n, unsigned short* t) {
  WidenAscii<false>(reinterpret_cast<const unsigned char*>(s), n, t);
}
void MoveAscii(const unsigned short* s, std::size_t n, char* t) {
  NarrowAscii<false>(s, n, reinterpret_cast<unsigned char*>(t));
}

// Whether a text is ASCII, or begins with so much of it that it pays to know the code page.
bool IsMostlyAscii(Text<char> text) {
  constexpr std::size_t kEnough = 64;
  const std::size_t n = std::min(text.Size(), kEnough);
  return CountAscii<false>(reinterpret_cast<const unsigned char*>(text.first), n) == n;
}

bool IsMostlyAscii(Text<unsigned short> text) {
  constexpr std::size_t kEnough = 64;
  const unsigned short* const end = text.first + std::min(text.Size(), kEnough);
  return std::none_of(text.first, end, [](unsigned short unit) { return unit >= 0x80; });
}

// Whether the characters that are not ASCII can be converted here: those of single bytes and of
// UTF-8, the one with three bytes at most. (ICU tells the type of a table more slowly.)
bool MayBeKnown(const UConverter& converter) {
  const int most = ucnv_getMaxCharSize(&converter);
  return most == 1 || (most == 3 && ucnv_getType(&converter) == UCNV_UTF8);
}

template <class From>
const CodePageTraits* FindTraits(void* converter, Text<From> text) {
  const auto given = static_cast<const UConverter*>(converter);
  const UConverter* const used = given != nullptr ? given : TULKMBGetDefaultConverter();
  if (used == nullptr || !(MayBeKnown(*used) || IsMostlyAscii(text))) return nullptr;
  return CodePageTraits::Of(*used);
}

// Moves `text` on to `last`, or as far as there is room.
template <class From, class To>
void MoveUpTo(const From* last, Text<From>& text, To*& next, To* end) {
  const auto n = static_cast<std::size_t>(std::min(last - text.first, end - next));
  MoveAscii(text.first, n, next);
  text.first += n;
  next += n;
}

template <class From, class To>
void MoveStart(const CodePageTraits& traits, Text<From>& text, To*& next, To* end) {
  if (next == end || text.IsEmpty()) return;
  MoveUpTo(text.first + traits.CountPlainAscii(text.first, text.Size()), text, next, end);
}

template <class From, class To>
bool MoveHead(const CodePageTraits& traits, Text<From>& text, Target<To>& target) {
  const From* const head = text.first + traits.CountPlainAscii(text.first, text.Size());
  while (text.first != head) {
    if (target.Room() == 0 && !target.More()) return false;
    MoveUpTo(head, text, target.next, target.end);
  }
  return true;
}

bool EncodeByTable(const SingleByteTable& table, Text<unsigned short>& text, Target<char>& target) {
  for (;;) {
    table.Encode(text.first, text.last, target.next, target.end);
    if (text.IsEmpty() || target.Room() != 0) return true;
    if (!target.More()) return false;
  }
}

bool DecodeByTable(const SingleByteTable& table, Text<char>& text, Target<unsigned short>& target) {
  for (;;) {
    table.Decode(text.first, text.last, target.next, target.end);
    if (text.IsEmpty() || target.Room() != 0) return true;
    if (!target.More()) return false;
  }
}

}  // namespace

const CodePageTraits* TraitsFor(void* converter, Text<char> text) {
  return FindTraits(converter, text);
}

const CodePageTraits* TraitsFor(void* converter, Text<unsigned short> text) {
  return FindTraits(converter, text);
}

Verdict DecodeWith(UConverter& converter, Text<char> text, Target<unsigned short>& target) {
  // some converters forget what they owe when they are given no room at all
  if (target.Room() == 0 && !target.More()) return Verdict::kNoMemory;
  for (;;) {
    const char* const last = EndWithin(text.first, text.last, kMostBytes);
    unsigned short* const end = EndWithin(target.next, target.end, kMostUnits);
    UErrorCode error = U_ZERO_ERROR;
    ucnv_toUnicode(&converter, &target.next, end, &text.first, last, nullptr, last == text.last,
                   &error);
    if (error == U_BUFFER_OVERFLOW_ERROR) {
      if (end == target.end && !target.More()) return Verdict::kNoMemory;
    } else if (U_FAILURE(error)) {
      return Verdict::kFailed;
    } else if (last == text.last) {
      return Verdict::kExact;
    }
  }
}

Verdict EncodeWith(UConverter& converter, Text<unsigned short> text, bool isLast,
                   Target<char>& target) {
  if (target.Room() == 0 && !target.More()) return Verdict::kNoMemory;
  for (;;) {
    const unsigned short* const last = EndWithin(text.first, text.last, kMostUnits);
    char* const end = EndWithin(target.next, target.end, kMostBytes);
    UErrorCode error = U_ZERO_ERROR;
    ucnv_fromUnicode(&converter, &target.next, end, &text.first, last, nullptr,
                     isLast && last == text.last, &error);
    if (error == U_BUFFER_OVERFLOW_ERROR) {
      if (end == target.end && !target.More()) return Verdict::kNoMemory;
    } else if (U_FAILURE(error)) {
      return Verdict::kFailed;
    } else if (last == text.last) {
      return Verdict::kExact;
    }
  }
}

void MovePlainStart(const CodePageTraits& traits, Text<char>& text, char*& next, char* end) {
  MoveStart(traits, text, next, end);
}

void MovePlainStart(const CodePageTraits& traits, Text<char>& text, unsigned short*& next,
                    unsigned short* end) {
  MoveStart(traits, text, next, end);
}

void MovePlainStart(const CodePageTraits& traits, Text<unsigned short>& text, char*& next,
                    char* end) {
  MoveStart(traits, text, next, end);
}

bool MovePlainHead(const CodePageTraits& traits, Text<char>& text, Target<char>& target) {
  return MoveHead(traits, text, target);
}

bool MovePlainHead(const CodePageTraits& traits, Text<char>& text, Target<unsigned short>& target) {
  return MoveHead(traits, text, target);
}

bool MovePlainHead(const CodePageTraits& traits, Text<unsigned short>& text, Target<char>& target) {
  return MoveHead(traits, text, target);
}

bool MoveKnownHead(const CodePageTraits& traits, Text<char>& text, Target<unsigned short>& target) {
  if (traits.Table() != nullptr) return DecodeByTable(*traits.Table(), text, target);
  if (!traits.IsUtf8()) return true;
  while (DecodeUtf8(text.first, text.last, target.next, target.end) == Stop::kTargetFull) {
    if (!target.More()) return false;
  }
  return true;
}

bool MoveKnownHead(const CodePageTraits& traits, Text<unsigned short>& text, Target<char>& target) {
  if (traits.Table() != nullptr) return EncodeByTable(*traits.Table(), text, target);
  if (!traits.IsUtf8()) return true;
  while (EncodeUtf8(text.first, text.last, target.next, target.end) == Stop::kTargetFull) {
    if (!target.More()) return false;
  }
  return true;
}

bool MoveTabledUtf8(const SingleByteTable& table, Text<char>& text, Target<char>& target) {
  constexpr std::size_t kUnits = 512;
  unsigned short pivot[kUnits];
  for (;;) {
    unsigned short* end = pivot;
    const char* s = text.first;
    const Stop stop = DecodeUtf8(s, text.last, end, pivot + kUnits);
    Text<unsigned short> units{pivot, end};
    if (!EncodeByTable(table, units, target)) return false;
    text.first += CountUtf8Bytes(pivot, static_cast<std::size_t>(units.first - pivot));
    if (!units.IsEmpty() || stop != Stop::kTargetFull) return true;
  }
}

void EndDecoding(void* converter) {
  if (converter != nullptr) ucnv_resetToUnicode(static_cast<UConverter*>(converter));
}

void EndEncoding(void* converter) {
  if (converter != nullptr) ucnv_resetFromUnicode(static_cast<UConverter*>(converter));
}

Verdict DecodeRest(void* converter, Text<char> text, Target<unsigned short>& target) {
  if (text.IsEmpty()) {
    EndDecoding(converter);
    return Verdict::kExact;
  }
  WatchedConverter watched(converter, SubstitutionWatch::kToUnicode);
  if (watched.Get() == nullptr) return Verdict::kFailed;
  const Verdict verdict = DecodeWith(*watched.Get(), text, target);
  return Worse(verdict, VerdictOf(watched));
}

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE
