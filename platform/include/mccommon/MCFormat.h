/// @file
/// Numbers as text.
#ifndef MCCOMMON_MCFORMAT_H
#define MCCOMMON_MCFORMAT_H

#include <string>

#include "mccommon/MCExport.h"

namespace MCXML_NAMESPACE {

/// Writes a double as text that every XML Schema `double` reader takes.
///
/// The shortest text that reads back as exactly the same double, save that small whole numbers keep
/// all their digits. The decimal separator is always a point, nothing is grouped, and the locale
/// plays no part.
///
/// | Value                           | Text                                              |
/// |---------------------------------|---------------------------------------------------|
/// | whole, magnitude below 1e15     | digits only: "5", "-3", "100000"                  |
/// | other finite numbers            | the shorter of plain and exponent form, plain on  |
/// |                                 | a tie: "0.25", "1e-07", "1.5e+300"                |
/// | negative zero                   | "-0", which reads back with its sign              |
/// | not a number                    | "NaN"                                             |
/// | infinities                      | "INF", "-INF"                                     |
/// | MCMV::gMissingValue             | `missingText`; the number where that is null      |
///
/// @param value        the number.
/// @param fixed        true: never an exponent, so that 1e-07 gives "0.0000001" and 1e+20 gives
///                     "100000000000000000000" (up to some 330 characters; the text still reads
///                     back as the same double); false: as in the table.
/// @param missingText  zero-terminated text for the missing value, or null; read during the call
///                     only. An empty text is a text.
/// @return the text. Throws std::bad_alloc only.
///
/// May be called from any thread.
MCCOMMON_EXPORT std::string Format(double value, bool fixed, const char* missingText);

}  // namespace MCXML_NAMESPACE

#endif  // MCCOMMON_MCFORMAT_H
