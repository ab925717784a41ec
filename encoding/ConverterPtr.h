// A converter that is closed at the end.
#ifndef MCMEM_ENCODING_CONVERTERPTR_H
#define MCMEM_ENCODING_CONVERTERPTR_H

#include <unicode/ucnv.h>

#include <memory>

namespace MCMEM_NAMESPACE {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CONVERTERPTR_H
