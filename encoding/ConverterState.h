// The default converter as it stands.
#ifndef MCMEM_ENCODING_CONVERTERSTATE_H
#define MCMEM_ENCODING_CONVERTERSTATE_H

#include <unicode/ucnv.h>

namespace MCMEM_NAMESPACE {

// Null where none was set or made yet; none is made here.
const UConverter* CurrentDefaultConverter();

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CONVERTERSTATE_H
