// Numbers in DOM strings.
#ifndef MCXPRSUTIL_XML_NUMBERTEXT_H
#define MCXPRSUTIL_XML_NUMBERTEXT_H

#include <xercesc/util/XercesDefs.hpp>

namespace MCXPrsUtil {

// Reads [first, last) as a `double` of XML Schema, with exactly the results of Xerces's XMLDouble
// but faster; last[0] need not be a terminator, and the text holds no zero unit. "NaN" gives
// MCMV::gMissingValue; infinities, written or by overflow, are refused.
//
// Returns false, with `value` untouched, when the text is refused.
bool ParseDouble(const XMLCh* first, const XMLCh* last, double& value);

// The same for a zero-terminated string, which must not be null.
bool ParseDouble(const XMLCh* text, double& value);

// Reads a zero-terminated string, which must not be null, as an `integer` of XML Schema: an
// optional sign and digits, with white space around them. Accepts what Xerces's XMLBigInteger
// accepts as far as it fits an int (its intValue() wraps silently beyond that).
//
// Returns false, with `value` untouched, when the text is refused.
bool ParseInt(const XMLCh* text, int& value);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_NUMBERTEXT_H
