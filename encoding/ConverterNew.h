// The opening of converters for those who must know why there is none.
#ifndef MCMEM_ENCODING_CONVERTERNEW_H
#define MCMEM_ENCODING_CONVERTERNEW_H

#include "encoding/ConverterPtr.h"

namespace MCMEM_NAMESPACE {

// As TULKMBConverterNew_A(). `noMemory` tells whether ICU had no memory for the converter, which
// does not mean that there is none of that name.
ConverterPtr NewConverter(const char* name, bool& noMemory);

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CONVERTERNEW_H
