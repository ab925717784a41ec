// Code-page text that needs no converter.
#ifndef MCMEM_ENCODING_PLAINASCII_H
#define MCMEM_ENCODING_PLAINASCII_H

#include <cstddef>

#include "encoding/CodePageTraits.h"
#include "mcmem/ConverterRegistry.h"

namespace MCMEM_NAMESPACE {

// Answers whether text is made of ASCII alone and the code page has it in its place.
class PlainAscii {
 public:
  // The code page of `given`, or of the default converter. It is only looked at.
  explicit PlainAscii(const void* given) {
    const auto* converter =
        given != nullptr ? static_cast<const UConverter*>(given) : TULKMBGetDefaultConverter();
    if (converter != nullptr) traits_ = transcoding::CodePageTraits::Of(*converter);
  }

  bool Has(const char* begin, const char* end) const {
    const auto n = static_cast<std::size_t>(end - begin);
    return traits_ != nullptr && traits_->CountPlainAscii(begin, n) == n;
  }

 private:
  const transcoding::CodePageTraits* traits_ = nullptr;
};

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_PLAINASCII_H
