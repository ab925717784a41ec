/// @file
/// The number that stands for "no value".
#ifndef MCCOMMON_MCMISSINGVALUE_H
#define MCCOMMON_MCMISSINGVALUE_H

#include "mccommon/MCExport.h"

namespace MCMV {

/// Stands for a missing value wherever a double is stored.
///
/// A finite negative number, so `==` finds it (unlike a NaN); it differs from the largest finite
/// double and from its negative, which mark open ends of ranges. Compare with this name instead of
/// writing the number down. Set before any code runs: initialisers of globals may use it.
MCCOMMON_EXPORT extern const double gMissingValue;

}  // namespace MCMV

#endif  // MCCOMMON_MCMISSINGVALUE_H
