// Why a file cannot be read, before a parser says it in its own words.
#ifndef MCX_EXAMPLES_FILECHECK_H
#define MCX_EXAMPLES_FILECHECK_H

#include <string>

namespace examples {

// A clause without a full stop; empty when the file can be opened and its first bytes can be read.
std::string WhyNotReadable(const std::string& file);

}  // namespace examples

#endif  // MCX_EXAMPLES_FILECHECK_H
