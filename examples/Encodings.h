// The encodings that can be opened by a name or a number, and a list of them.
#ifndef MCX_EXAMPLES_ENCODINGS_H
#define MCX_EXAMPLES_ENCODINGS_H

#include <unicode/ucnv.h>

#include <memory>
#include <string>

namespace examples {

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, CloseConverter>;

// A converter with the library's substitution callbacks; null when there is no such encoding.
//
// `name` is an encoding's name or a code page number as it came from the command line: in the
// encoding of the locale, which is why it is not taken for UTF-8.
ConverterPtr OpenEncoding(const std::string& name);

// What OpenEncoding() takes, a line each: the code page numbers with a chosen name, then the names
// that ICU has, each with its other names. With a filter only the lines that contain it, in upper
// or lower case; empty when there are none.
std::string ListEncodings(const std::string& filter);

}  // namespace examples

#endif  // MCX_EXAMPLES_ENCODINGS_H
