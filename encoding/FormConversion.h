// What the conversions between the encoding forms have in common: the order in which vectors,
// single characters and the careful step take over from each other.
//
// The rules of one conversion are a class with these static members:
//
//   From, To          the codecs of AsciiRuns.h for its units
//   kStopAtZero       whether U+0000 ends the conversion
//   kShortText        the longest source, in units, for which vectors of ASCII are not tried first
//   kShortestRun      the shortest source, in units, for which ConvertRun may do anything
//   kHasShortRuns     whether the vectors can do anything for short texts; if so
//   IsShortRun        whether they may for this one, and
//   ConvertShortRun   as much of it as they can take
//   ConvertRun        as many clean characters as the vectors can take, perhaps none
//   TakeOne           one clean character; false leaves it alone
//   Step              one character of any kind, with every check in its order
//
// Clean is what needs no decision: legal, complete, with room in the target, no surrogate that
// stands alone, and no zero that ends the conversion. All of this is for speed only: Step alone
// would give the same results.
#ifndef MCMEM_ENCODING_FORMCONVERSION_H
#define MCMEM_ENCODING_FORMCONVERSION_H

#include <cstddef>
#include <optional>

#include "encoding/AsciiRuns.h"
#include "encoding/ReadableEnd.h"
#include "mcmem/UnicodeForms.h"

namespace MCMEM_NAMESPACE {

// Where a conversion stands, or where its buffers end.
template <class Source, class Target>
struct Place {
  const Source* source;
  Target* target;
};

template <class Rules>
using PlaceOf = Place<typename Rules::From::Unit, typename Rules::To::Unit>;

// What a step ends the conversion with; nothing when it goes on.
using Stop = std::optional<ConversionResult>;

inline std::ptrdiff_t SmallerOf(std::ptrdiff_t a, std::ptrdiff_t b) { return a < b ? a : b; }

// The end of what ConvertClean may read from `s` on, all in one piece. Step alone reads on from
// there, unit by unit.
template <class Rules>
inline const typename Rules::From::Unit* CleanEnd(const typename Rules::From::Unit* s,
                                                  const typename Rules::From::Unit* end) {
  return Rules::kStopAtZero ? ReadableEnd<typename Rules::From>(s, end) : end;
}

template <class Rules>
inline PlaceOf<Rules> ConvertAscii(PlaceOf<Rules> at, const PlaceOf<Rules>& end) {
  const std::ptrdiff_t room = SmallerOf(end.source - at.source, end.target - at.target);
  if (room <= 0) return at;
  const std::size_t moved =
      ascii::MoveBlocks<Rules::kStopAtZero, typename Rules::From, typename Rules::To>(
          at.source, static_cast<std::size_t>(room), at.target);
  return {at.source + moved, at.target + moved};
}

// Up to the first character that is not clean.
template <class Rules>
inline PlaceOf<Rules> TakeSingly(PlaceOf<Rules> at, const PlaceOf<Rules>& end) {
  while (at.source < end.source && at.target < end.target)
    if (!Rules::TakeOne(at, end)) break;
  return at;
}

constexpr std::ptrdiff_t kPause = 16;

// Up to the first character that is not clean, by vectors where they fit.
template <class Rules>
inline PlaceOf<Rules> ConvertClean(PlaceOf<Rules> at, const PlaceOf<Rules>& end) {
  for (;;) {
    while (end.source - at.source >= Rules::kShortestRun && at.target < end.target) {
      const auto* const before = at.source;
      at = Rules::ConvertRun(at, end);
      if (at.source == before) break;
    }
    // where no run begins, the vectors get another chance some characters later
    const auto* const pause = at.source + SmallerOf(end.source - at.source, kPause);
    at = TakeSingly<Rules>(at, {pause, end.target});
    if (at.source < pause || at.source >= end.source) return at;
  }
}

template <class Rules>
ConversionResult ConvertAll(PlaceOf<Rules>& at, const PlaceOf<Rules>& end, ConversionFlags flags) {
  ConversionResult noted = conversionOK;
  for (;;) {
    const auto* const before = at.source;
    const auto* const cleanEnd = CleanEnd<Rules>(before, end.source);
    at = ConvertClean<Rules>(at, {cleanEnd, end.target});
    if (at.source >= end.source) return noted;
    if (at.source == cleanEnd && at.source != before) continue;  // clean text goes on behind there
    if (const Stop stop = Rules::Step(at, end, flags == strictConversion, noted)) return *stop;
  }
}

template <class Rules>
[[gnu::noinline]] ConversionResult ConvertRest(const typename Rules::From::Unit** sourceStart,
                                               const typename Rules::From::Unit* sourceEnd,
                                               typename Rules::To::Unit** targetStart,
                                               typename Rules::To::Unit* targetEnd,
                                               ConversionFlags flags) {
  PlaceOf<Rules> at = {*sourceStart, *targetStart};
  const ConversionResult result = ConvertAll<Rules>(at, {sourceEnd, targetEnd}, flags);
  *sourceStart = at.source;
  *targetStart = at.target;
  return result;
}

// Tells the caller how far clean characters went, and whether that was all.
template <class Rules>
inline bool IsDone(const PlaceOf<Rules>& at, const typename Rules::From::Unit** sourceStart,
                   const typename Rules::From::Unit* sourceEnd,
                   typename Rules::To::Unit** targetStart) {
  *sourceStart = at.source;
  *targetStart = at.target;
  return at.source >= sourceEnd;
}

// Short texts; what is not clean goes to ConvertRest.
template <class Rules>
inline ConversionResult ConvertShort(const typename Rules::From::Unit** sourceStart,
                                     const typename Rules::From::Unit* sourceEnd,
                                     typename Rules::To::Unit** targetStart,
                                     typename Rules::To::Unit* targetEnd, ConversionFlags flags) {
  const PlaceOf<Rules> at = TakeSingly<Rules>({*sourceStart, *targetStart}, {sourceEnd, targetEnd});
  if (IsDone<Rules>(at, sourceStart, sourceEnd, targetStart)) return conversionOK;
  return ConvertRest<Rules>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

// Short texts that begin with what the vectors may take.
template <class Rules>
[[gnu::noinline]] ConversionResult ConvertShortRun(const typename Rules::From::Unit** sourceStart,
                                                   const typename Rules::From::Unit* sourceEnd,
                                                   typename Rules::To::Unit** targetStart,
                                                   typename Rules::To::Unit* targetEnd,
                                                   ConversionFlags flags) {
  const PlaceOf<Rules> at =
      Rules::ConvertShortRun({*sourceStart, *targetStart}, {sourceEnd, targetEnd});
  if (IsDone<Rules>(at, sourceStart, sourceEnd, targetStart)) return conversionOK;
  return ConvertShort<Rules>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

// Texts of some lines, for which plain ASCII is tried before anything else.
template <class Rules>
[[gnu::noinline]] ConversionResult ConvertLines(const typename Rules::From::Unit** sourceStart,
                                                const typename Rules::From::Unit* sourceEnd,
                                                typename Rules::To::Unit** targetStart,
                                                typename Rules::To::Unit* targetEnd,
                                                ConversionFlags flags) {
  const auto* const cleanEnd = CleanEnd<Rules>(*sourceStart, sourceEnd);
  const std::ptrdiff_t room = SmallerOf(cleanEnd - *sourceStart, targetEnd - *targetStart);
  if (room > 0) {
    const std::size_t moved =
        ascii::MoveBlocksFrom<Rules::kStopAtZero, typename Rules::From, typename Rules::To>(
            0, *sourceStart, static_cast<std::size_t>(room), *targetStart);
    *sourceStart += moved;
    *targetStart += moved;
    if (*sourceStart == sourceEnd) return conversionOK;
  }
  return ConvertRest<Rules>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

// The whole conversion. Each kind of text has a way of its own, which saves and restores no more
// registers than it needs; the shortest texts, for which a call counts, have theirs here.
template <class Rules>
inline ConversionResult Convert(const typename Rules::From::Unit** sourceStart,
                                const typename Rules::From::Unit* sourceEnd,
                                typename Rules::To::Unit** targetStart,
                                typename Rules::To::Unit* targetEnd, ConversionFlags flags) {
  const std::ptrdiff_t length = sourceEnd - *sourceStart;
  if (length > Rules::kShortText) {
    const bool isLong = length >= static_cast<std::ptrdiff_t>(ascii::kLongRun);
    return isLong ? ConvertRest<Rules>(sourceStart, sourceEnd, targetStart, targetEnd, flags)
                  : ConvertLines<Rules>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
  }
  if constexpr (Rules::kHasShortRuns) {
    if (Rules::IsShortRun(*sourceStart, length))
      return ConvertShortRun<Rules>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
  }
  return ConvertShort<Rules>(sourceStart, sourceEnd, targetStart, targetEnd, flags);
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_FORMCONVERSION_H
