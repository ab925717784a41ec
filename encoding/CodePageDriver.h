// Converting with an ICU converter, piece by piece onto a target.
#ifndef MCMEM_ENCODING_CODEPAGEDRIVER_H
#define MCMEM_ENCODING_CODEPAGEDRIVER_H

#include <unicode/ucnv.h>

#include "encoding/CodePageTraits.h"
#include "encoding/ConversionTarget.h"
#include "encoding/WatchedConverter.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Decodes the whole text. The converter is in its initial state, and afterwards again. What the
// converter replaces is for the caller to watch, here and below.
Verdict DecodeWith(UConverter& converter, Text<char> text, Target<unsigned short>& target);

// Encodes from the state that the converter is in; `isLast` ends the text and leads back to the
// initial state.
Verdict EncodeWith(UConverter& converter, Text<unsigned short> text, bool isLast,
                   Target<char>& target);

inline Verdict VerdictOf(const WatchedConverter& converter) {
  return converter.HasReplaced() ? Verdict::kLossy : Verdict::kExact;
}

// The traits of the code page of `converter`, the caller's or null for the default one; null when
// they are not known or of no use for the text.
const CodePageTraits* TraitsFor(void* converter, Text<char> text);
const CodePageTraits* TraitsFor(void* converter, Text<unsigned short> text);

// ASCII in its usual place at the head of a text, straight into a buffer as far as there is room.
void MovePlainStart(const CodePageTraits& traits, Text<char>& text, char*& next, char* end);
void MovePlainStart(const CodePageTraits& traits, Text<char>& text, unsigned short*& next,
                    unsigned short* end);
void MovePlainStart(const CodePageTraits& traits, Text<unsigned short>& text, char*& next,
                    char* end);

// The functions below move the head of a text, as far as it needs no converter. They return false
// without memory.

// ASCII in its usual place: the same in both encodings.
bool MovePlainHead(const CodePageTraits& traits, Text<char>& text, Target<char>& target);
bool MovePlainHead(const CodePageTraits& traits, Text<char>& text, Target<unsigned short>& target);
bool MovePlainHead(const CodePageTraits& traits, Text<unsigned short>& text, Target<char>& target);

// What is in the table of a code page of single bytes, or well-formed when it is UTF-8: from the
// code page and to it.
bool MoveKnownHead(const CodePageTraits& traits, Text<char>& text, Target<unsigned short>& target);
bool MoveKnownHead(const CodePageTraits& traits, Text<unsigned short>& text, Target<char>& target);

// From UTF-8 to a code page of single bytes.
bool MoveTabledUtf8(const SingleByteTable& table, Text<char>& text, Target<char>& target);

// For a text of which nothing is left: there is no need for a clone, but the caller's converter is
// reset in any case. Null is left alone.
void EndDecoding(void* converter);
void EndEncoding(void* converter);

// What follows the head, with the caller's converter or a clone of the default one.
Verdict DecodeRest(void* converter, Text<char> text, Target<unsigned short>& target);

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CODEPAGEDRIVER_H
