// Shows the descriptions of documents to programs.
#ifndef MCX_EXAMPLES_DESCRIPTIONJSON_H
#define MCX_EXAMPLES_DESCRIPTIONJSON_H

#include <string>
#include <vector>

#include "DocumentDescription.h"

namespace examples {

// {"documents": [...]} as indented JSON in UTF-8 without a line feed at the end. Bytes that are no
// UTF-8, which file names may have, become U+FFFD.
std::string DescriptionsToJson(const std::vector<DocumentDescription>& descriptions);

}  // namespace examples

#endif  // MCX_EXAMPLES_DESCRIPTIONJSON_H
