// The conversions behind the engines and the string forms.
//
// A converter is the caller's, borrowed and reset before it is used, or null for the default
// converter. Its traits are those of TraitsFor(), null for none. Lossy is what the substitution
// callbacks have marked, and what is malformed in UTF-8 or UTF-16 that is not the converter's to
// judge.
#ifndef MCMEM_ENCODING_CONVERSIONS_H
#define MCMEM_ENCODING_CONVERSIONS_H

#include "encoding/CodePageTraits.h"
#include "encoding/ConversionTarget.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Both fail on malformed text.
Verdict Utf8To16(Text<char> text, Target<unsigned short>& target);
Verdict Utf16To8(Text<unsigned short> text, Target<char>& target);

// What does not fit may leave the first units of a character at the end of a BufferTarget: see
// TrimSurrogate() and TrimCodePage().
Verdict CodePageTo16(void* converter, const CodePageTraits* traits, Text<char> text,
                     Target<unsigned short>& target);
Verdict Utf16ToCodePage(void* converter, const CodePageTraits* traits, Text<unsigned short> text,
                        Target<char>& target);

Verdict CodePageTo8(void* converter, const CodePageTraits* traits, Text<char> text,
                    Target<char>& target);
Verdict Utf8ToCodePage(void* converter, const CodePageTraits* traits, Text<char> text,
                       Target<char>& target);

void TrimSurrogate(BufferTarget<unsigned short>& target);
void TrimCodePage(void* converter, BufferTarget<char>& target);

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CONVERSIONS_H
