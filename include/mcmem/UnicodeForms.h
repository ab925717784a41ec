/// @file
/// Conversion between the Unicode encoding forms UTF-8, UTF-16 and UTF-32.
///
/// The functions work on caller's buffers, allocate nothing, throw nothing, and follow the
/// conformance rules of the Unicode Standard for the encoding forms, with the few departures that
/// are named here. They may be called from any number of threads at the same time.
///
/// ## How a conversion is called
///
/// Source and target are given by a pointer to the start pointer and by the end, which lies one
/// unit behind the last. On return both start pointers stand where the conversion stopped: the
/// source pointer on the first unit that was not converted, the target pointer behind the last
/// unit that was written, or on a terminator. A buffer may be empty. Units are bytes for UTF-8,
/// 16-bit units for UTF-16 and 32-bit units for UTF-32. Source and target must not overlap.
///
/// Nothing outside the buffers is touched, and within the target nothing behind the result: a
/// character is written whole or not at all.
///
/// ## What is checked, and what comes back
///
/// For each character in this order:
/// 1. the source holds all of its units, else `sourceExhausted`. UTF-8: as many bytes as the lead
///    byte promises, also a lead byte that is never legal (0xC0 to 0xDF two bytes, 0xE0 to 0xEF
///    three, 0xF0 to 0xF7 four, 0xF8 to 0xFB five, 0xFC and above six). UTF-16: a high surrogate is
///    not the last unit;
/// 2. it is legal, else `sourceIllegal`. See the functions for surrogates and for values that are
///    too large, which depend on the flags;
/// 3. the target has room for all its units, else `targetExhausted`.
///
/// On these three results the source pointer stays on the first unit of the character, so that a
/// caller can go on there with more source, more room, or behind a replacement of its own. (Not so
/// for a value above U+10FFFF that is only noted: there the conversion goes on.)
/// `conversionOK` means that the source was used up, or that a terminator was met.
///
/// ## Terminators
///
/// The functions between UTF-8 and UTF-16 stop at U+0000 with `conversionOK`. They write its zero
/// and leave the target pointer on it, so that the length up to there does not count it; the source
/// pointer stands behind the zero. A caller may thus give the end of the whole buffer for a text
/// that ends with a zero: nothing behind the zero is read. The zero needs room as every character
/// does. For the functions from and to UTF-32, U+0000 is a character like any other.
#ifndef MCMEM_UNICODEFORMS_H
#define MCMEM_UNICODEFORMS_H

#include "mcxprsutil/Export.h"

namespace MCMEM_NAMESPACE {

/// Why a conversion stopped.
enum ConversionResult {
  conversionOK,     ///< the source was used up, or a terminator was converted
  sourceExhausted,  ///< the source ends within a character
  targetExhausted,  ///< the target has no room for the next character
  sourceIllegal     ///< the source is malformed at its pointer; or, for UTF-32 sources, a value
                    ///< above U+10FFFF was met on the way (see the functions)
};

/// What is done with surrogates that stand alone: strict refuses them; lenient replaces them or
/// passes them on, as each function says. What becomes of values above U+10FFFF depends on the
/// function as well. Malformed UTF-8 is refused in both modes.
enum ConversionFlags { strictConversion, lenientConversion };

/// A 16-bit unit at any byte address. Which of the two bytes is the higher one is for the function
/// to say, never for the machine.
struct UNALIGNED16 {
  unsigned char byte[2];  ///< in the order in which they lie in memory
};

/// Converts UTF-32 to UTF-16. A character above U+FFFF takes two units.
///
/// @param[in,out] sourceStart  first unit of the source; on return where the conversion stopped
/// @param sourceEnd            behind the last unit of the source
/// @param[in,out] targetStart  first unit of the target; on return behind the last unit written
/// @param targetEnd            behind the last unit of the target
/// @param flags  strict: a surrogate stops the conversion with `sourceIllegal`; a value above
///               U+10FFFF is left out, noted, and the conversion goes on. Lenient: both become
///               U+FFFD.
/// @return `conversionOK`; `targetExhausted`, which is looked at before the value is; and
///         `sourceIllegal` for a surrogate (the source pointer stands on it) or, when nothing else
///         stopped the conversion, for a noted value (the whole source was used)
MCXPRSUTIL_EXPORT ConversionResult ConvertUTF32toUTF16(const unsigned int** sourceStart,
                                                       const unsigned int* sourceEnd,
                                                       unsigned short** targetStart,
                                                       unsigned short* targetEnd,
                                                       ConversionFlags flags);

/// Converts UTF-16 to UTF-32.
///
/// @param[in,out] sourceStart  first unit of the source; on return where the conversion stopped
/// @param sourceEnd            behind the last unit of the source
/// @param[in,out] targetStart  first unit of the target; on return behind the last unit written
/// @param targetEnd            behind the last unit of the target
/// @param flags  strict: a surrogate that stands alone stops the conversion. Lenient: its bare
///               value is written, and the unit behind it is a character of its own.
/// @return `conversionOK`; `sourceExhausted` when the last unit is a high surrogate, in both modes;
///         `sourceIllegal`; `targetExhausted`
MCXPRSUTIL_EXPORT ConversionResult ConvertUTF16toUTF32(const unsigned short** sourceStart,
                                                       const unsigned short* sourceEnd,
                                                       unsigned int** targetStart,
                                                       unsigned int* targetEnd,
                                                       ConversionFlags flags);

/// Converts UTF-32 to UTF-8. A character takes one to four bytes.
///
/// @param[in,out] sourceStart  first unit of the source; on return where the conversion stopped
/// @param sourceEnd            behind the last unit of the source
/// @param[in,out] targetStart  first byte of the target; on return behind the last byte written
/// @param targetEnd            behind the last byte of the target
/// @param flags  strict: a surrogate stops the conversion. Lenient: it is encoded in three bytes,
///               which is not well-formed UTF-8. A value above U+10FFFF becomes U+FFFD in both
///               modes, is noted, and the conversion goes on.
/// @return `conversionOK`; `targetExhausted`; and `sourceIllegal` for a surrogate (the source
///         pointer stands on it) or, when nothing else stopped the conversion, for a noted value
///         (the whole source was used)
MCXPRSUTIL_EXPORT ConversionResult ConvertUTF32toUTF8(const unsigned int** sourceStart,
                                                      const unsigned int* sourceEnd,
                                                      unsigned char** targetStart,
                                                      unsigned char* targetEnd,
                                                      ConversionFlags flags);

/// Converts UTF-8 to UTF-32. An encoded surrogate is as illegal as any other malformed sequence.
///
/// @param[in,out] sourceStart  first byte of the source; on return where the conversion stopped
/// @param sourceEnd            behind the last byte of the source
/// @param[in,out] targetStart  first unit of the target; on return behind the last unit written
/// @param targetEnd            behind the last unit of the target
/// @param flags                makes no difference: what it decides about is illegal in UTF-8
/// @return `conversionOK`, `sourceExhausted`, `sourceIllegal` or `targetExhausted`
MCXPRSUTIL_EXPORT ConversionResult ConvertUTF8toUTF32(const unsigned char** sourceStart,
                                                      const unsigned char* sourceEnd,
                                                      unsigned int** targetStart,
                                                      unsigned int* targetEnd,
                                                      ConversionFlags flags);

/// Converts UTF-16, low byte first, to UTF-8, up to the first U+0000 or the end.
///
/// @param[in,out] sourceStart  first unit of the source; on return where the conversion stopped
/// @param sourceEnd            behind the last unit of the source
/// @param[in,out] targetStart  first byte of the target; on return behind the last byte written,
///                             or on the terminator
/// @param targetEnd            behind the last byte of the target
/// @param flags  strict: a surrogate that stands alone stops the conversion. Lenient: it is encoded
///               in three bytes, which is not well-formed UTF-8, and the unit behind it is a
///               character of its own.
/// @return `conversionOK`; `sourceExhausted` when the last unit is a high surrogate, in both modes;
///         `sourceIllegal`; `targetExhausted`
MCXPRSUTIL_EXPORT ConversionResult ConvertUTF16toUTF8(const UNALIGNED16** sourceStart,
                                                      const UNALIGNED16* sourceEnd,
                                                      unsigned char** targetStart,
                                                      unsigned char* targetEnd,
                                                      ConversionFlags flags);

/// As ConvertUTF16toUTF8(), from units with the high byte first.
MCXPRSUTIL_EXPORT ConversionResult ConvertUTF16RevtoUTF8(const UNALIGNED16** sourceStart,
                                                         const UNALIGNED16* sourceEnd,
                                                         unsigned char** targetStart,
                                                         unsigned char* targetEnd,
                                                         ConversionFlags flags);

/// Converts UTF-8 to UTF-16, low byte first, up to the first U+0000 or the end.
///
/// Three bytes that encode a surrogate pass as legal here, by intention, and are then treated as a
/// surrogate that stands alone; the target never holds one.
///
/// @param[in,out] sourceStart  first byte of the source; on return where the conversion stopped
/// @param sourceEnd            behind the last byte of the source
/// @param[in,out] targetStart  first unit of the target; on return behind the last unit written,
///                             or on the terminator
/// @param targetEnd            behind the last unit of the target
/// @param flags  strict: an encoded surrogate stops the conversion with `sourceIllegal` (with
///               `targetExhausted` when there is no room for a unit). Lenient: it becomes U+FFFD.
/// @return `conversionOK`, `sourceExhausted`, `sourceIllegal` or `targetExhausted`
MCXPRSUTIL_EXPORT ConversionResult ConvertUTF8toUTF16(const unsigned char** sourceStart,
                                                      const unsigned char* sourceEnd,
                                                      UNALIGNED16** targetStart,
                                                      UNALIGNED16* targetEnd,
                                                      ConversionFlags flags);

/// As ConvertUTF8toUTF16(), to units with the high byte first.
MCXPRSUTIL_EXPORT ConversionResult ConvertUTF8toUTF16Rev(const unsigned char** sourceStart,
                                                         const unsigned char* sourceEnd,
                                                         UNALIGNED16** targetStart,
                                                         UNALIGNED16* targetEnd,
                                                         ConversionFlags flags);

/// ConvertUTF16toUTF8() when `reversed` is 0, ConvertUTF16RevtoUTF8() otherwise.
MCXPRSUTIL_EXPORT ConversionResult LocalUTF16toUTF8(const UNALIGNED16** sourceStart,
                                                    const UNALIGNED16* sourceEnd,
                                                    unsigned char** targetStart,
                                                    unsigned char* targetEnd, ConversionFlags flags,
                                                    int reversed);

/// ConvertUTF8toUTF16() when `reversed` is 0, ConvertUTF8toUTF16Rev() otherwise.
MCXPRSUTIL_EXPORT ConversionResult LocalUTF8toUTF16(const unsigned char** sourceStart,
                                                    const unsigned char* sourceEnd,
                                                    UNALIGNED16** targetStart,
                                                    UNALIGNED16* targetEnd, ConversionFlags flags,
                                                    int reversed);

/// Whether the text begins with a well-formed UTF-8 sequence, as the Unicode Standard's table of
/// them has it; an encoded surrogate is none.
///
/// @param source     the first byte of the sequence; not read when the text is empty
/// @param sourceEnd  behind the last byte that may be read; what follows the sequence is not looked
///                   at
/// @return false also when the text is empty or ends within the sequence
MCXPRSUTIL_EXPORT bool isLegalUTF8Sequence(const unsigned char* source,
                                           const unsigned char* sourceEnd);

/// Whether the text begins with a UTF-8 sequence that ConvertUTF8toUTF16() takes as legal: as
/// isLegalUTF8Sequence(), except that an encoded surrogate passes.
///
/// @param s       the first byte of the sequence
/// @param length  how many bytes may be read; negative when the text ends with a zero. What follows
///                the sequence is not looked at.
/// @return false also when `length` is less than the sequence needs, or, with a negative length,
///         when a zero comes within the bytes of the sequence (thus for an empty text)
MCXPRSUTIL_EXPORT bool isLegalUTF8Substring(const unsigned char* s, int length);

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_UNICODEFORMS_H
