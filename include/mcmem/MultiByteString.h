/// @file
/// String functions that step by characters, in UTF-8 and in code pages.
///
/// They stand where the C library's byte-wise functions would cut, find or compare parts of
/// characters. Most come in three members: `_8` for UTF-8; `_C` for text in a code page; and `_A`,
/// which is the `_8` member while the UTF-8 mode is on (qUTF8mode()) and the `_C` member otherwise.
///
/// **Texts** are zero-terminated strings of bytes; lengths, positions and results are bytes. A
/// negative length stands for the text up to its terminator. A null text counts as an empty one
/// unless a function says otherwise.
///
/// **Bounds.** No function looks at a byte behind a given length, behind a terminator, or before
/// `start`, whatever the bytes are; only TULKMBstrncpy_C(), whose source is terminated, has to look
/// behind its `n` for the end of a character. A given length may span zero bytes only where the
/// function says so. A result that is larger than INT_MAX is given as INT_MAX.
///
/// **Legal UTF-8** is what the Unicode Standard calls well-formed, but for one point: encoded
/// surrogates (0xED followed by 0xA0 to 0xBF) count as legal in spans and comparisons, as in
/// isLegalUTF8Substring().
///
/// **Illegal bytes** never stop a walk: each counts as a character of one byte.
///
/// **What a code page is** differs among the `_C` members. Those that need only lengths
/// (TULKMBmblen_C() and everything that steps, finds or copies) ask the C library under the
/// process's locale; EnableLocale() is the intended set-up. Those that need code points
/// (TULKMBU32Get_C(), spans, comparisons, TULKMBValidCount_C()) ask a converter: a private clone of
/// the default converter (TULKMBGetDefaultConverter()) for the time of the call, or the one that
/// is given.
///
/// **Threads.** No function keeps a state between calls. All may run on several threads once the
/// default converter exists, as long as no thread changes the locale, the default converter or the
/// UTF-8 mode meanwhile. A given converter belongs to the caller's thread for the time of the call.
///
/// No function throws. None allocates in the ordinary case: ICU may for an unusually large clone,
/// and what is found out about a code page at its first use is remembered. Where ICU has no memory
/// for a clone, that is as if there were no converter.
#ifndef MCMEM_MULTIBYTESTRING_H
#define MCMEM_MULTIBYTESTRING_H

#include <cstddef>

#include "mcxprsutil/Export.h"

namespace MCMEM_NAMESPACE {

/// @name Length of a character
/// @{

/// Tells how many bytes the lead byte at `s` announces, without a look at what they are.
///
/// @return 2 after 0xC0 to 0xDF, 3 after 0xE0 to 0xEF, 4 after 0xF0 to 0xF7, but no more than the
///         bytes before the terminator; 1 for every other byte, the terminator included. 1 or more.
MCXPRSUTIL_EXPORT int TULKMBmbclen_8(const char* s);

/// Tells how long the character at `s` is in the process's locale.
///
/// A byte that starts no character of the locale is taken for the lead byte of a double-byte
/// character, as long as another byte follows it.
///
/// @return what TULKMBmblen_C() says about at most 4 bytes; 2 where that is below 1; 1 at the
///         terminator and just before it. Never more than the bytes before the terminator.
MCXPRSUTIL_EXPORT int TULKMBmbclen_C(const char* s);

/// @}
/// @name Next character
/// @{

/// @return `s` + TULKMBmbclen_8(s); null for a null `s`. From the terminator this leads one byte
///         behind it: test for the end before stepping.
MCXPRSUTIL_EXPORT const char* TULKMBstrinc_8(const char* s);

/// @return `s` + TULKMBmbclen_C(s); null for a null `s`. From the terminator this leads one byte
///         behind it.
MCXPRSUTIL_EXPORT const char* TULKMBstrinc_C(const char* s);

/// TULKMBstrinc_8() in UTF-8 mode, else TULKMBstrinc_C().
MCXPRSUTIL_EXPORT const char* TULKMBstrinc_A(const char* s);

/// @}
/// @name Length of a checked character
/// @{

/// Tells how long the well-formed character at `s` is. Encoded surrogates are not well-formed here.
///
/// @param s text, or null.
/// @param n how many bytes of it may be looked at.
/// @return 1 to 4; 0 when `s` is null, empty, or `n` is 0; -1 when no well-formed character starts
///         at `s`, or when it does not end within `n` bytes.
MCXPRSUTIL_EXPORT int TULKMBmblen_8(const char* s, std::size_t n);

/// The C library's `mblen(s, n)` under the process's locale, fit for several threads.
///
/// @param s text; null asks, as in the C library, whether the encoding has states (0: it has none).
/// @param n how many bytes of it may be looked at.
/// @return the length; 0 at the terminator; -1 when no character starts at `s` or it does not end
///         within `n` bytes, so also when `n` is 0.
MCXPRSUTIL_EXPORT int TULKMBmblen_C(const char* s, std::size_t n);

/// @}
/// @name Previous character
/// @{

/// Finds the start of the UTF-8 character before `current`.
///
/// @param start start of the text.
/// @param current position in the text. Zero bytes before it are characters like others.
/// @return see TULKMBPreviousIndex_8(); `current` itself when it is null or not behind `start`, or
///         when `start` is null.
MCXPRSUTIL_EXPORT const char* TULKMBAnsiPrev_8(const char* start, const char* current);

/// Finds the start of the character before `current` in a double-byte code page.
///
/// The text is walked from `start`, since such text cannot be read backwards.
///
/// @return see TULKMBFindStart_C(), of the byte before `current`; `current` itself when it is null
///         or not behind `start`, or when `start` is null.
MCXPRSUTIL_EXPORT const char* TULKMBAnsiPrev_C(const char* start, const char* current);

/// TULKMBAnsiPrev_8() in UTF-8 mode, else TULKMBAnsiPrev_C().
MCXPRSUTIL_EXPORT const char* TULKMBAnsiPrev_A(const char* start, const char* current);

/// Finds the start of the UTF-8 character that ends just before position `i`.
///
/// @param s at least `i` bytes; zero bytes among them are characters like others. Not null when
///          `i` is above 0.
/// @param i position; `i` of 0 or less is returned as it is.
/// @return the start of the character when it is well-formed and no non-character (U+FDD0 to
///         U+FDEF, and the last two of each plane); otherwise `i` - 1.
MCXPRSUTIL_EXPORT int TULKMBPreviousIndex_8(const char* s, int i);

/// Finds the start of the character to which byte `i` belongs, in a code page of at most two bytes
/// per character.
///
/// The text is walked from its start; every TULKMBIsLeadByte_C() takes the byte behind it along.
///
/// @return `i`, or `i` - 1 when byte `i` is the second half of a character; the length of the text
///         when it is no longer than `i`; 0 when `s` is null or `i` is 0 or less.
MCXPRSUTIL_EXPORT int TULKMBFindStart_C(const char* s, int i);

/// Tells whether `byte` is the first of several in the process's locale: whether TULKMBmbclen_C()
/// of the byte and three blanks is above 1. A byte that the locale does not know counts as one;
/// 0 does not.
MCXPRSUTIL_EXPORT bool TULKMBIsLeadByte_C(unsigned char byte);

/// @}
/// @name Finding a character
/// @{

/// Finds the first or the last place of a code point in UTF-8 text.
///
/// Below U+0080 this is the C library's `strchr` or `strrchr`; U+0000 is found at the terminator.
/// Otherwise the text is walked by its lead bytes (below 0x80 one byte, below 0xE0 two, below 0xF0
/// three, else four) and nothing is validated: in illegal text, trail bytes may pair up with what
/// follows them. Bytes that the terminator cuts off are no character.
///
/// @param s text, or null.
/// @param ch code point.
/// @param last 0 for the first place, else the last one.
/// @return the place; null when there is none.
MCXPRSUTIL_EXPORT const char* TULKMBSearchChar_8(const char* s, unsigned int ch, int last);

/// Finds the first or the last place of a single-byte character in code-page text.
///
/// The text is walked by the characters of the process's locale. A character that starts with the
/// byte looked for is a match, but only the one byte is stepped over.
///
/// @param s text, or null.
/// @param ch only its low 8 bits count: 0x141 finds the byte 0x41. A `ch` of 0 finds the
///           terminator; another one whose low 8 bits are 0 finds nothing.
/// @param last 0 for the first place, else the last one.
/// @return the place; null when there is none.
MCXPRSUTIL_EXPORT const char* TULKMBSearchChar_C(const char* s, unsigned int ch, int last);

/// The first place: TULKMBSearchChar_8(s, ch, 0).
MCXPRSUTIL_EXPORT const char* TULKMBstrchr_8(const char* s, unsigned int ch);

/// The first place: TULKMBSearchChar_C(s, ch, 0).
MCXPRSUTIL_EXPORT const char* TULKMBstrchr_C(const char* s, unsigned int ch);

/// TULKMBstrchr_8() in UTF-8 mode, else TULKMBstrchr_C().
MCXPRSUTIL_EXPORT const char* TULKMBstrchr_A(const char* s, unsigned int ch);

/// The last place: TULKMBSearchChar_8(s, ch, 1).
MCXPRSUTIL_EXPORT const char* TULKMBstrrchr_8(const char* s, unsigned int ch);

/// The last place: TULKMBSearchChar_C(s, ch, 1).
MCXPRSUTIL_EXPORT const char* TULKMBstrrchr_C(const char* s, unsigned int ch);

/// TULKMBstrrchr_8() in UTF-8 mode, else TULKMBstrrchr_C().
MCXPRSUTIL_EXPORT const char* TULKMBstrrchr_A(const char* s, unsigned int ch);

/// @}
/// @name Copying
/// Source and target may overlap.
/// @{

/// Copies at most `n` bytes of UTF-8 and fills what is left of them with zero bytes.
///
/// As with the C library's `strncpy`, exactly `n` bytes are written and there is no terminator when
/// the copy takes all of them; unlike it, no character is cut. What is copied is the text up to `n`
/// bytes, without a tail as TULKMBCheckFinalChar_8() drops it.
///
/// @param dst room for `n` bytes; when null, or when `n` is 0, nothing happens.
/// @param src text; null is an empty one, so that `dst` is filled with zero bytes.
/// @return `dst`.
MCXPRSUTIL_EXPORT char* TULKMBstrncpy_8(char* dst, const char* src, std::size_t n);

/// The same for code-page text, walked by TULKMBmbclen_C().
///
/// What is copied are the characters that fit into `n` bytes as a whole, without the last one when
/// TULKMBmblen_C() refuses it.
///
/// @param dst room for `n` bytes.
/// @param src text. It needs its terminator even when it is longer than `n`: where the `n` bytes
/// end
///            with no whole character, the up to three bytes behind them are looked at. When `dst`
///            or `src` is null, or `n` is 0, nothing happens.
/// @return `dst`.
MCXPRSUTIL_EXPORT char* TULKMBstrncpy_C(char* dst, const char* src, std::size_t n);

/// TULKMBstrncpy_8() in UTF-8 mode, else TULKMBstrncpy_C(). They differ in what a null `src` does.
MCXPRSUTIL_EXPORT char* TULKMBstrncpy_A(char* dst, const char* src, std::size_t n);

/// Copies what TULKMBCheckFinalChar_8() leaves of the first `n` bytes of `src`, or of the whole
/// text when it is shorter. Nothing is written behind the copy, not even a terminator.
///
/// @param dst room for `n` bytes; null copies nothing.
/// @return the number of bytes copied, at most the largest `int` whatever `n` is.
MCXPRSUTIL_EXPORT int TULKMBLimitedCopy_8(char* dst, const char* src, std::size_t n);

/// @}
/// @name Whole characters
/// @{

/// Measures UTF-8 text without the tail that is not fit to stand at an end: incomplete or illegal
/// sequences, surrogates and non-characters (see TULKMBPreviousIndex_8()).
///
/// @param s text.
/// @param length its length; zero bytes within it are characters like others. Negative: up to the
///               terminator.
/// @return the length of the longest prefix that ends with an acceptable character; 0 when there is
///         none. What comes before that character is not examined.
MCXPRSUTIL_EXPORT int TULKMBCheckFinalChar_8(const char* s, int length);

/// Measures the part of a code-page text that decodes cleanly.
///
/// A character that is illegal, unassigned or cut off ends the part, whatever the converter's
/// callbacks would put in its place.
///
/// @param converter an ICU `UConverter*`, borrowed: it is reset before the decoding, keeps its
///                  callbacks; what state its decoding side is left in is not settled. Null: a
///                  clone of the default converter.
/// @param s text.
/// @param length its length; negative: up to the terminator. A terminator within the length ends
///               the text as well: a zero byte or, with a converter whose units are wider than a
///               byte (UTF-16, UTF-32), the character U+0000.
/// @return bytes before the first character that is not clean, or of the whole text. A change of
///         state behind the last character counts with it. 0 when there is no converter.
MCXPRSUTIL_EXPORT int TULKMBValidCount_C(void* converter, const char* s, int length);

/// @}
/// @name Spans
/// The result is the offset of the character where the walk stopped; the length of the text when
/// it did not.
/// @{

/// Walks UTF-8 text up to the first character that is in a set, or that is not.
///
/// @param mode not 0: stops at the first character in the set; 0: stops at the first one that is
///             not. TULKMBSpan_C() has it the other way round.
/// @param s text. An illegal byte counts as the code point of its value.
/// @param set the characters, as UTF-8. Only the first 64 count, and only those before the first
///            sequence that is not well-formed. Null is empty.
MCXPRSUTIL_EXPORT int TULKMBStringSpan_8(int mode, const char* s, const char* set);

/// Walks code-page text up to the first character that is not in a set, or that is.
///
/// Characters are those of TULKMBU32Get_C(), each decoded from the converter's initial state; a
/// byte where that fails counts as the code point of its value, in the text and in the set.
///
/// @param s text.
/// @param set the characters, as many as there are; the first 64 are found fastest.
/// @param mode not 0: stops at the first character outside the set; 0: stops at the first one in
///             it. TULKMBStringSpan_8() has it the other way round.
MCXPRSUTIL_EXPORT int TULKMBSpan_C(const char* s, const char* set, int mode);

/// The text before the first character of `set`: TULKMBStringSpan_8(1, s, set).
MCXPRSUTIL_EXPORT int TULKMBstrcspn_8(const char* s, const char* set);

/// The text before the first character of `set`: TULKMBSpan_C(s, set, 0).
MCXPRSUTIL_EXPORT int TULKMBstrcspn_C(const char* s, const char* set);

/// TULKMBstrcspn_8() in UTF-8 mode, else TULKMBstrcspn_C().
MCXPRSUTIL_EXPORT int TULKMBstrcspn_A(const char* s, const char* set);

/// @}
/// @name Comparison
/// Both texts are walked by characters; the first unequal pair of code points decides, and a text
/// that ends first is the smaller one. A length holds together with the terminator: whichever comes
/// first ends the text.
///
/// Where case is ignored, code points are folded one by one with the simple lower-case mapping of
/// the Unicode Character Database, in no locale: a sharp s and "SS" are different.
///
/// Status, where there is one (it may be null): 0; 3 when a byte that is part of no legal character
/// was met before the order was known. Such a byte is compared as the code point of its value.
/// @{

/// Compares UTF-8 texts by code points.
///
/// @param mode 0: ignores case; else exactly.
/// @param a,b the texts.
/// @param aLength,bLength their lengths, or negative.
/// @param[out] status 0 or 3.
/// @return -1 when `a` is smaller, 1 when it is larger, 0 when they are equal.
MCXPRSUTIL_EXPORT int TULKMBBinaryCompare_8(int mode, const char* a, int aLength, const char* b,
                                            int bLength, int* status);

/// Compares code-page texts by code points.
///
/// @param mode 0: ignores case; else exactly.
/// @param converter an ICU `UConverter*`, borrowed: it is reset before the decoding, keeps its
///                  callbacks; what state its decoding side is left in is not settled. Null: a
///                  clone of the default converter. Both texts start in its initial state; so does
///                  what follows an illegal byte.
/// @param a,b the texts. A zero byte ends them whatever the converter makes of it.
/// @param aLength,bLength their lengths, or negative.
/// @param[out] status 0 or 3; without a converter every byte is illegal.
/// @return -1 when `a` is smaller, 1 when it is larger, 0 when they are equal.
MCXPRSUTIL_EXPORT int TULKMBBinaryCompare_C(int mode, void* converter, const char* a, int aLength,
                                            const char* b, int bLength, int* status);

/// Compares at most `n` bytes of each text, ignoring case: TULKMBBinaryCompare_8() with mode 0 and
/// `n` for both lengths. A character that `n` cuts is illegal.
MCXPRSUTIL_EXPORT int TULKMBstrnicmp_8(const char* a, const char* b, int n);

/// The same with the default converter: TULKMBBinaryCompare_C().
MCXPRSUTIL_EXPORT int TULKMBstrnicmp_C(const char* a, const char* b, int n);

/// TULKMBstrnicmp_8() in UTF-8 mode, else TULKMBstrnicmp_C().
MCXPRSUTIL_EXPORT int TULKMBstrnicmp_A(const char* a, const char* b, int n);

/// Tells whether two UTF-8 texts are equal when case is ignored.
///
/// @param a,b the texts.
/// @param aLength,bLength their lengths, or negative.
/// @param[out] status 0 or 3.
MCXPRSUTIL_EXPORT bool TULKMBqstricmp_8(const char* a, int aLength, const char* b, int bLength,
                                        int* status = nullptr);

/// The same for code-page texts, with the default converter.
MCXPRSUTIL_EXPORT bool TULKMBqstricmp_C(const char* a, int aLength, const char* b, int bLength,
                                        int* status = nullptr);

/// TULKMBqstricmp_8() in UTF-8 mode, else TULKMBqstricmp_C().
MCXPRSUTIL_EXPORT bool TULKMBqstricmp_A(const char* a, int aLength, const char* b, int bLength,
                                        int* status = nullptr);

/// @}
/// @name Decoding
/// @{

/// Decodes one character of code-page text with the default converter, from its initial state.
///
/// @param[out] out the code point; 0 when the result is not above 0. May be null. Of a character
///                 that stands for two code points, the first.
/// @param s text.
/// @param position of the character. Every position before it is taken to be part of the text.
/// @param length end of the text, counted from `s`, not from `position`; negative: at the
///               terminator. A zero byte before it ends the text as well, unless the converter's
///               units are wider than a byte and it is not at `position`.
/// @return the bytes consumed, changes of state included; 0 at the end: when `length` is not above
///         `position`, at a zero byte, and when `s` is null or `position` negative; -1 when the
///         character is illegal, unassigned or cut off, or when there is no converter.
MCXPRSUTIL_EXPORT int TULKMBU32Get_C(unsigned int* out, const char* s, int position, int length);

/// @}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_MULTIBYTESTRING_H
