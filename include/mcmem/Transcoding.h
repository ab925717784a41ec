/// @file
/// Conversion between code pages, UTF-8, UTF-16 and UTF-32: into caller's buffers, strings and new
/// arrays.
///
/// A code page is what an ICU converter (`UConverter*`, passed as `void*`) stands for. A null
/// converter means the default converter (mcmem/ConverterRegistry.h), with a private clone of which
/// the function works. A converter that is given is borrowed: it is used as it is, with its own
/// callbacks, reset before the conversion whatever state it was left in, and not closed. Open it
/// with TULKMBConverterNew_C() or a sister of that, or else a lossy conversion may show as exact:
/// the callbacks that are installed there are what marks it. The generic representation is UTF-8 in
/// UTF-8 mode (qUTF8mode()) and the default code page otherwise.
///
/// Every function that has a status gives one of these:
/// - 0: exact;
/// - 1: the buffer was too small and holds the head of the result;
/// - 2: no memory (string forms only; the output is empty). Where it is ICU that has none, for the
///   clone of a converter, that is any other failure;
/// - 3: any other failure; or a lossy conversion, in which something else, as a rule a question
///   mark, stands for a character that the target lacks or for source units that are no character,
///   wherever that is, also behind the cut of a result that was too long. A lossy result is as
///   usable as an exact one; after a failure there is none.
///
/// No function throws. Source and target of one call must not overlap, unless it says otherwise.
///
/// Threads: functions may run at the same time once the default converter exists, as long as nobody
/// changes it or the mode, and a converter that is given is used by one thread at a time.
///
/// @anchor buffers
/// **Buffers.** `dstCapacity` and the result count units of the target: bytes for UTF-8 and code
/// pages, 16-bit units for UTF-16, 32-bit units for UTF-32. `srcLength` counts units of the source
/// likewise; a negative one means that the source ends at its first zero unit, and asks for a
/// terminated result. With an explicit length zeros are text. The result is the number of units
/// produced, without terminator and blanks. `status` may be null. Blanks are U+0020.
///
/// - It fits, explicit length: the text, and one blank behind it if there is room; status 0.
/// - It fits into all units but one, terminated: the text and a zero; status 0.
/// - It does not fit, explicit length: the whole characters that fit, and blanks up to the
///   capacity; the result counts the characters' units; status 1.
/// - It does not fit, terminated: the whole characters that fit into one unit less, a zero, and
///   blanks from behind the zero up to the last unit but one; status 1.
/// - Capacity 0, `dst` null or not: nothing is written; the result is the length needed; status 1,
///   or 0 if that is none.
/// - `dst` null with a capacity above 0, or a capacity below 0: nothing is written; result 0 and
///   status 3.
/// - Failure, or a null source with a length other than 0: result 0 and status 3; first in the
///   buffer a zero if terminated, else a blank; the rest of the buffer is undefined.
///
/// Nothing outside the buffer is touched. Within it, what lies behind all this keeps its content as
/// a rule, but some of ICU's converters use it while they work.
///
/// So a terminated result in a buffer of one unit is empty, with status 1 unless the source is
/// empty too. The blank behind an explicit result is not counted. A cut terminated result that
/// fills its room has no blanks; the last unit of the capacity is written only if the zero comes
/// there. A lossy result is laid out like any other. A length needed that does not fit into an
/// `int` is a failure. ICU's LMBCS and SCSU converters encode one text in several ways, depending
/// on how it is handed to them: leave a few bytes more than the length that was asked for. Its
/// ISCII converters may change a letter where the room ends. A result is never cut inside a
/// character: in UTF-16 a surrogate pair stays whole, and in code pages with shift states whole
/// characters are those that decode from the initial state. The exception is GSM 03.38: ICU takes
/// the escape that begins a character of two bytes for a blank where a text ends, so that it may
/// be left there.
#ifndef MCMEM_TRANSCODING_H
#define MCMEM_TRANSCODING_H

#include <string>

#include "mcxprsutil/Export.h"

namespace MCMEM_NAMESPACE {

/// A string of UTF-16 units.
using U16String = std::basic_string<unsigned short>;

/// @name Engines
/// The direction comes first; units and layout are as described under @ref buffers.
/// @{

/// Converts UTF-8 to UTF-16 (`dir` not 0) or UTF-16 to UTF-8 (`dir` 0).
///
/// A malformed source is a failure: in UTF-8 whatever the Unicode Standard does not call
/// well-formed (overlong forms, encoded surrogates, values above U+10FFFF, cut off sequences), in
/// UTF-16 a surrogate without its other half.
///
/// @return the units produced; status 0, 1 or 3.
MCXPRSUTIL_EXPORT int TULKMB8and16(int dir, void* dst, int dstCapacity, const void* src,
                                   int srcLength, int* status);

/// Converts a code page to UTF-16 (`dir` not 0) or UTF-16 to a code page (`dir` 0).
///
/// A terminated source in a code page ends at its first zero byte. What cannot be converted goes to
/// the converter's callbacks. A callback that stops is a failure, and so is a default converter
/// that cannot be opened or cloned.
///
/// @return the units produced; status 0, 1 or 3.
MCXPRSUTIL_EXPORT int TULKMBCodePageAnd16(int dir, void* converter, void* dst, int dstCapacity,
                                          const void* src, int srcLength, int* status);

/// Converts a code page to UTF-8 (`dir` not 0) or UTF-8 to a code page (`dir` 0).
///
/// As TULKMBCodePageAnd16(). Malformed UTF-8 in the source is lossy at least: each longest piece
/// that could have begun a character stands for one U+FFFD, which the code page either has or
/// replaces. A surrogate that a converter leaves without its other half becomes U+FFFD in UTF-8,
/// and is lossy too.
///
/// @return the bytes produced; status 0, 1 or 3.
MCXPRSUTIL_EXPORT int TULKMBCodePageAnd8(int dir, void* converter, void* dst, int dstCapacity,
                                         const void* src, int srcLength, int* status);

/// Converts UTF-8 to UTF-32 (`dir` not 0) or UTF-32 to UTF-8 (`dir` 0).
///
/// UTF-32 is aligned as `unsigned int`. The conversions are ConvertUTF8toUTF32() and
/// ConvertUTF32toUTF8() (mcmem/UnicodeForms.h) in strict mode. What is illegal or cut off gives
/// status 3, but no failure: the result is the text as far as they went, that is up to the
/// malformed sequence or the surrogate; a UTF-32 value above U+10FFFF becomes U+FFFD and the
/// conversion goes on.
///
/// @return the units produced; status 0, 1 or 3.
MCXPRSUTIL_EXPORT int TULKMB8and32(int dir, void* dst, int dstCapacity, const void* src,
                                   int srcLength, int* status);

/// @}
/// @name Buffers
/// Units and layout are as described under @ref buffers.
/// @{

/// UTF-8 to UTF-16; see TULKMB8and16().
MCXPRSUTIL_EXPORT int TULKMB8to16(unsigned short* dst, int dstCapacity, const char* src,
                                  int srcLength, int* status = nullptr);

/// UTF-16 to UTF-8; see TULKMB8and16().
MCXPRSUTIL_EXPORT int TULKMB16to8(char* dst, int dstCapacity, const unsigned short* src,
                                  int srcLength, int* status = nullptr);

/// A code page to UTF-16; see TULKMBCodePageAnd16().
MCXPRSUTIL_EXPORT int TULKMBCodePageto16(void* converter, unsigned short* dst, int dstCapacity,
                                         const char* src, int srcLength, int* status = nullptr);

/// UTF-16 to a code page; see TULKMBCodePageAnd16().
MCXPRSUTIL_EXPORT int TULKMB16toCodePage(void* converter, char* dst, int dstCapacity,
                                         const unsigned short* src, int srcLength,
                                         int* status = nullptr);

/// A code page to UTF-8; see TULKMBCodePageAnd8().
MCXPRSUTIL_EXPORT int TULKMBCodePageto8(void* converter, char* dst, int dstCapacity,
                                        const char* src, int srcLength, int* status = nullptr);

/// UTF-8 to a code page; see TULKMBCodePageAnd8().
MCXPRSUTIL_EXPORT int TULKMB8toCodePage(void* converter, char* dst, int dstCapacity,
                                        const char* src, int srcLength, int* status = nullptr);

/// The generic representation to UTF-16: TULKMB8to16() in UTF-8 mode, else TULKMBCodePageto16()
/// with the default converter.
MCXPRSUTIL_EXPORT int TULKMBGenericto16(unsigned short* dst, int dstCapacity, const char* src,
                                        int srcLength, int* status = nullptr);

/// UTF-16 to the generic representation: TULKMB16to8() in UTF-8 mode, else TULKMB16toCodePage()
/// with the default converter.
MCXPRSUTIL_EXPORT int TULKMB16toGeneric(char* dst, int dstCapacity, const unsigned short* src,
                                        int srcLength, int* status = nullptr);

/// The generic representation to UTF-8: a plain copy in UTF-8 mode, else TULKMBCodePageto8() with
/// the default converter.
///
/// @anchor plaincopy
/// A plain copy looks at no characters: it copies the source up to the capacity, without blanks,
/// and gives the number of bytes copied with status 0, also when the source is longer. With a
/// negative `srcLength` a zero follows the copied bytes: **at `dst[dstCapacity]` when the source
/// fills the capacity**, so that the buffer must have one byte more than it says. Only here may
/// source and target overlap. Capacity 0 asks for the length, and the refusals are the same, as for
/// every buffer.
MCXPRSUTIL_EXPORT int TULKMBGenericto8(char* dst, int dstCapacity, const char* src, int srcLength,
                                       int* status = nullptr);

/// UTF-8 to the generic representation: a @ref plaincopy "plain copy" in UTF-8 mode, else
/// TULKMB8toCodePage() with the default converter.
MCXPRSUTIL_EXPORT int TULKMB8toGeneric(char* dst, int dstCapacity, const char* src, int srcLength,
                                       int* status = nullptr);

/// A code page to the generic representation: TULKMBCodePageto8() in UTF-8 mode, else a
/// @ref plaincopy "plain copy", which takes `converter` for one of the default code page.
MCXPRSUTIL_EXPORT int TULKMBCodePagetoGeneric(void* converter, char* dst, int dstCapacity,
                                              const char* src, int srcLength,
                                              int* status = nullptr);

/// The generic representation to a code page: TULKMB8toCodePage() in UTF-8 mode, else a
/// @ref plaincopy "plain copy", which takes `converter` for one of the default code page.
MCXPRSUTIL_EXPORT int TULKMBGenerictoCodePage(void* converter, char* dst, int dstCapacity,
                                              const char* src, int srcLength,
                                              int* status = nullptr);

/// @}
/// @name Strings
/// Each replaces `out` by the whole of `in`, zeros included, and returns the status: 0, 2 or 3.
/// `out` and `in` may be the same object. `out` is never cut; it is empty after a failure (3) and
/// when memory runs out (2), and complete after a lossy conversion (3).
/// @{

/// UTF-8 to a code page; lossy and failing as TULKMBCodePageAnd8().
MCXPRSUTIL_EXPORT int TULKMBU8ToCodePage(void* converter, std::string& out, const std::string& in);

/// A code page to UTF-8; lossy and failing as TULKMBCodePageAnd8().
MCXPRSUTIL_EXPORT int TULKMBCodePageToU8(void* converter, std::string& out, const std::string& in);

/// UTF-16 to UTF-8; failing as TULKMB8and16().
MCXPRSUTIL_EXPORT int TULKMBU16ToU8(std::string& out, const U16String& in);

/// UTF-8 to UTF-16; failing as TULKMB8and16().
MCXPRSUTIL_EXPORT int TULKMBU8ToU16(U16String& out, const std::string& in);

/// UTF-16 to a code page; lossy and failing as TULKMBCodePageAnd16().
MCXPRSUTIL_EXPORT int TULKMBU16ToCodePage(void* converter, std::string& out, const U16String& in);

/// A code page to UTF-16; lossy and failing as TULKMBCodePageAnd16().
MCXPRSUTIL_EXPORT int TULKMBCodePageToU16(void* converter, U16String& out, const std::string& in);

/// UTF-8 to the generic representation: an assignment in UTF-8 mode, else TULKMBU8ToCodePage().
MCXPRSUTIL_EXPORT int TULKMBU8ToGeneric(void* converter, std::string& out, const std::string& in);
/// The same with the default converter.
MCXPRSUTIL_EXPORT int TULKMBU8ToGeneric(std::string& out, const std::string& in);

/// The generic representation to UTF-8: an assignment in UTF-8 mode, else TULKMBCodePageToU8().
MCXPRSUTIL_EXPORT int TULKMBGenericToU8(void* converter, std::string& out, const std::string& in);
/// The same with the default converter.
MCXPRSUTIL_EXPORT int TULKMBGenericToU8(std::string& out, const std::string& in);

/// UTF-16 to the generic representation: TULKMBU16ToU8() in UTF-8 mode, else
/// TULKMBU16ToCodePage().
MCXPRSUTIL_EXPORT int TULKMBU16ToGeneric(void* converter, std::string& out, const U16String& in);
/// The same with the default converter.
MCXPRSUTIL_EXPORT int TULKMBU16ToGeneric(std::string& out, const U16String& in);

/// The generic representation to UTF-16: TULKMBU8ToU16() in UTF-8 mode, else
/// TULKMBCodePageToU16().
MCXPRSUTIL_EXPORT int TULKMBGenericToU16(void* converter, U16String& out, const std::string& in);
/// The same with the default converter.
MCXPRSUTIL_EXPORT int TULKMBGenericToU16(U16String& out, const std::string& in);

/// A code page to the generic representation: TULKMBCodePageToU8() in UTF-8 mode, else an
/// assignment, which takes `converter` for one of the default code page.
MCXPRSUTIL_EXPORT int TULKMBCodePageToGeneric(void* converter, std::string& out,
                                              const std::string& in);

/// The generic representation to a code page: TULKMBU8ToCodePage() in UTF-8 mode, else an
/// assignment, which takes `converter` for one of the default code page.
MCXPRSUTIL_EXPORT int TULKMBGenericToCodePage(void* converter, std::string& out,
                                              const std::string& in);

/// @}
/// @name New arrays
/// Each converts a zero-terminated text into an array that the caller owns and frees with
/// `delete[]`; it is zero-terminated. A null source gives null, and so does running out of memory.
/// There is no status: a failure gives an empty text, a lossy conversion what it makes.
/// @{

/// UTF-16 to UTF-8; failing as TULKMB8and16().
MCXPRSUTIL_EXPORT char* TULKMBTranscodeU8(const unsigned short* src);

/// UTF-8 to UTF-16; failing as TULKMB8and16().
MCXPRSUTIL_EXPORT unsigned short* TULKMBTranscodeU8(const char* src);

/// UTF-16 to the default code page.
///
/// Limited to two bytes per UTF-16 unit: text that takes more is cut at a character. A source of
/// 2^30 units or more gives null.
MCXPRSUTIL_EXPORT char* TULKMBTranscodeCodePage(const unsigned short* src);

/// The default code page to UTF-16.
MCXPRSUTIL_EXPORT unsigned short* TULKMBTranscodeCodePage(const char* src);

/// UTF-16 to the generic representation: TULKMBTranscodeU8() in UTF-8 mode, else
/// TULKMBTranscodeCodePage().
MCXPRSUTIL_EXPORT char* TULKMBTranscodeGeneric(const unsigned short* src);

/// The generic representation to UTF-16: TULKMBTranscodeU8() in UTF-8 mode, else
/// TULKMBTranscodeCodePage().
MCXPRSUTIL_EXPORT unsigned short* TULKMBTranscodeGeneric(const char* src);

/// @}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_TRANSCODING_H
