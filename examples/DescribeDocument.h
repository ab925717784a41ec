// Reads the description of a document of any kind that the library reads.
#ifndef MCX_EXAMPLES_DESCRIBEDOCUMENT_H
#define MCX_EXAMPLES_DESCRIBEDOCUMENT_H

#include <iosfwd>
#include <string>

#include "DocumentDescription.h"

namespace examples {

// Reads a document from a stream; `source` is only the name to report. The root decides what it is:
// a data model, or PMML, which is a settings document if its MiningBuildTask carries parameters.
// What cannot be read becomes a problem, and the rest is described all the same.
DocumentDescription DescribeDocument(std::istream& in, const std::string& source,
                                     const DescribeOptions& options);

// The same for a file, "-" being standard input.
DocumentDescription DescribeFile(const std::string& file, const DescribeOptions& options);

}  // namespace examples

#endif  // MCX_EXAMPLES_DESCRIBEDOCUMENT_H
