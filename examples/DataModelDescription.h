// Reads the description of a data model.
#ifndef MCX_EXAMPLES_DATAMODELDESCRIPTION_H
#define MCX_EXAMPLES_DATAMODELDESCRIPTION_H

#include <string>

#include "DocumentDescription.h"

namespace examples {

// Adds the variables of the data model in `text`, the whole document; those behind one that cannot
// be read are lost. Returns false, with nothing added, if the document is of another kind.
bool DescribeDataModel(const std::string& text, const DescribeOptions& options,
                       DocumentDescription& description);

}  // namespace examples

#endif  // MCX_EXAMPLES_DATAMODELDESCRIPTION_H
