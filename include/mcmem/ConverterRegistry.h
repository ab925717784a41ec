/// @file
/// Process-wide settings of the text encoding services: locale, mode, default converter; and the
/// opening of converters.
///
/// Converters are ICU's; names of converters are those that ICU knows, compared without regard to
/// letter case, hyphens and other punctuation. A "code page" is any encoding that a converter
/// exists for. No function throws, except that memory shortage may show as `std::bad_alloc` in
/// SystemEncoding(); failures are null pointers or a 0. Where ICU runs out of memory while it loads
/// its list of names, at the first use of a name in a process, it knows no names in that process.
///
/// Threads: nothing is locked. Mode, default converter and locale are to be set up by one thread
/// before others use the text encoding services. Afterwards all may read them; conversions that are
/// given no converter work on a clone of the default one.
///
/// ICU's UTF-16 unit shows in the callbacks only. They have C linkage, so that a client may compile
/// with any `UCHAR_TYPE`.
#ifndef MCMEM_CONVERTERREGISTRY_H
#define MCMEM_CONVERTERREGISTRY_H

#include <unicode/ucnv.h>

#include <cstddef>

#include "mcxprsutil/Export.h"

struct UCollator;

namespace MCMEM_NAMESPACE {

/// @name Locale
/// @{

/// Sets the locale of the process up, once; later calls do nothing.
///
/// The numeric category becomes "C". Where the program has not chosen a locale, that is where its
/// character type category is exactly "C", all other categories become "en_US" (and stay as they
/// are where the system lacks that locale), and LC_ALL=en_US is put into the environment, for child
/// processes. Any other character type leaves the other categories and the environment alone.
///
/// `setlocale` and `putenv` act on the whole process: no other thread may use the locale or the
/// environment meanwhile.
MCXPRSUTIL_EXPORT void EnableLocale();

/// The character encoding of the process locale, as `nl_langinfo(CODESET)` names it.
///
/// The first call sets the locale up (see EnableLocale()) and takes the name; a later change of
/// locale does not change it.
///
/// @return never null; valid as long as the process lives.
MCXPRSUTIL_EXPORT const char* SystemEncoding();

/// @}
/// @name UTF-8 mode
/// @{

/// Whether UTF-8 mode is on. Functions ending in `_A` and the generic representation use UTF-8 in
/// this mode, else the default code page. Off at first.
MCXPRSUTIL_EXPORT bool qUTF8mode();

/// Switches UTF-8 mode on, or off when `on` is 0.
///
/// @return the new mode.
MCXPRSUTIL_EXPORT bool SetUTF8mode(int on);

/// @}
/// @name Default converter and collator
/// @{

/// Makes `c` the default converter and raises the number that TULKMBDefaultConverterID() returns,
/// even when it was the default converter before.
///
/// @param c borrowed, and must stay open as long as it is the default; null means that the next
///          TULKMBGetDefaultConverter() makes one. For substitutions to be noticed, it should come
///          from a TULKMBConverterNew function. The previous default converter is not closed.
MCXPRSUTIL_EXPORT void TULKMBSetDefaultConverter(UConverter* c);

/// The default converter. Where there is none, one is made as by TULKMBConverterNew_C(nullptr),
/// which raises the number that TULKMBDefaultConverterID() returns.
///
/// @return owned by the registry, or by whoever set it; the caller must not close it, and should
///         convert with a clone only. Null (with the number unchanged) when none could be opened.
MCXPRSUTIL_EXPORT UConverter* TULKMBGetDefaultConverter();

/// How many times a default converter was set or made: 0 at first. Whoever keeps data made with the
/// default converter compares the numbers to learn of a change.
MCXPRSUTIL_EXPORT unsigned int TULKMBDefaultConverterID();

/// Stores a collator for the process. This library has no use for it.
///
/// @param c borrowed; may be null. The previous one is not closed.
MCXPRSUTIL_EXPORT void TULKMBSetDefaultCollator(UCollator* c);

/// @}
/// @name Converter names
/// @{

/// The converter name preferred for a Windows code page number.
///
/// @param cp one of 932, 936, 949, 950, 1250 to 1258, 28591 (ISO 8859-1) and 65001 (UTF-8).
/// @return a constant; null for any other number.
MCXPRSUTIL_EXPORT const char* GetPreferredCvtName(unsigned int cp);

/// Finds the name of ICU's converter for a Windows code page number: the preferred name (see
/// GetPreferredCvtName()), else "windows-" and the number, else "cp" and the number, the number
/// with three digits at least; the first of them that ICU knows. The IANA name of the converter
/// takes its place where there is one.
///
/// @param dst receives the name, zero-terminated. Must have room for 60 bytes
///            (`UCNV_MAX_CONVERTER_NAME_LENGTH`); more are never written. Null is a failure.
/// @return 1; 0 with an empty `dst` when ICU knows none of the names.
MCXPRSUTIL_EXPORT int TULKMBCpNameFromNum_C(char* dst, unsigned int cp);

/// @}
/// @name Opening of converters
/// The converters put a question mark in the place of every character that the target lacks (unless
/// it is invisible by default: it is left out) and of every malformed sequence, in both directions,
/// and leave a mark in ICU's error code (see
/// TULKMB_FROM_U_CALLBACK_SUBSTITUTE()). Into a code page the question mark is the single byte
/// 0x3F, whatever the code page: in EBCDIC that byte reads as SUB. Encodings that have no
/// one-byte characters (UTF-16, UTF-32, pure double-byte code pages) keep ICU's substitute,
/// U+FFFD or the one of the code page; UTF-7, BOCU-1 and others that can encode every unit encode
/// even a lone surrogate as it is.
/// @{

/// Opens a converter by a name in the default code page.
///
/// @param name One of:
///        - null: a converter of the same name as the default converter; where there is no default
///          converter, ICU's own default, which follows the environment of the process;
///        - a number from 1 to 99999, as `strtoul` reads it with base 10 and to the very end of the
///          text (blanks or a sign may precede): the code page that TULKMBCpNameFromNum_C() finds;
///        - anything else, numbers out of range included: a name for ICU. Where ICU does not know
///          it, "windows-28591" in any letter case stands for ISO-8859-1.
/// @return owned by the caller, who closes it with `ucnv_close`; null when there is no such
///         converter.
MCXPRSUTIL_EXPORT UConverter* TULKMBConverterNew_C(const char* name);

/// Opens a converter by a name in UTF-8; see TULKMBConverterNew_C(). The name is first converted to
/// the default code page.
///
/// @return as TULKMBConverterNew_C(); null as well when the name cannot be converted exactly, or
///         has more than 59 bytes in the default code page.
MCXPRSUTIL_EXPORT UConverter* TULKMBConverterNew_8(const char* name);

/// TULKMBConverterNew_8() in UTF-8 mode, else TULKMBConverterNew_C().
MCXPRSUTIL_EXPORT UConverter* TULKMBConverterNew_A(const char* name);

/// @}
/// @name Scratch memory
/// @{

/// Memory for `count` elements of `elemSize` bytes: `local` where that is enough, else from
/// `malloc`.
///
/// @param local memory of the caller, of `localBytes` bytes, often an array on its stack.
/// @return to be given to TULKMBTempFree() together with `local`; null when memory is short, or
///         when the product does not fit `std::size_t`. Not initialised.
MCXPRSUTIL_EXPORT void* TULKMBTempGet(void* local, std::size_t localBytes, std::size_t count,
                                      std::size_t elemSize);

/// Frees `p`, a result of TULKMBTempGet(), unless it is null or `local`.
MCXPRSUTIL_EXPORT void TULKMBTempFree(void* local, void* p);

/// @}
/// @name Substitution callbacks
/// For `ucnv_setFromUCallBack` and `ucnv_setToUCallBack`. They substitute as ICU's callbacks of
/// similar name do and then set ICU's error code to -100 for a character that the target lacks, or
/// to -101 for a malformed sequence. ICU takes negative codes for warnings and goes on; it may
/// replace them by codes of its own before the conversion returns. A failure of the substitution,
/// such as a full target, stays in the error code instead.
/// @{

// C linkage, so that the including file's choice of UChar does not change their names
extern "C" {

/// Writes the converter's substitution characters for what cannot be converted from Unicode.
///
/// A character that Unicode allows to be ignored is left out rather than replaced, and marked all
/// the same. The arguments are those of ICU's `UConverterFromUCallback`; `context` is null or an
/// option of ICU's callback.
MCXPRSUTIL_EXPORT void U_CALLCONV TULKMB_FROM_U_CALLBACK_SUBSTITUTE(
    const void* context, UConverterFromUnicodeArgs* args, const UChar* codeUnits, int32_t length,
    UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* err);

/// Writes a question mark for what cannot be converted to Unicode, where ICU's callback would write
/// U+FFFD or U+001A. Where the target is full, it is the first that the next conversion writes.
///
/// The arguments are those of ICU's `UConverterToUCallback`; `context` is null or an option of
/// ICU's callback.
MCXPRSUTIL_EXPORT void U_CALLCONV TULKMB_TO_U_CALLBACK_SUBSTITUTE(
    const void* context, UConverterToUnicodeArgs* args, const char* codeUnits, int32_t length,
    UConverterCallbackReason reason, UErrorCode* err);
}

/// @}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_CONVERTERREGISTRY_H
