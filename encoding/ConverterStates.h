// Which converters carry something over from one character to the next.
#ifndef MCMEM_ENCODING_CONVERTERSTATES_H
#define MCMEM_ENCODING_CONVERTERSTATES_H

#include <unicode/ucnv.h>

namespace MCMEM_NAMESPACE {

// Whether bytes may stand for a change of state rather than for a character. Unknown types count as
// such.
inline bool HasStates(const UConverter& converter) {
  switch (ucnv_getType(&converter)) {
    case UCNV_SBCS:
    case UCNV_DBCS:
    case UCNV_MBCS:
    case UCNV_LATIN_1:
    case UCNV_US_ASCII:
    case UCNV_UTF8:
      return false;
    default:
      return true;
  }
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CONVERTERSTATES_H
