// Reads the description of a PMML document.
#ifndef MCX_EXAMPLES_PMMLDESCRIPTION_H
#define MCX_EXAMPLES_PMMLDESCRIPTION_H

#include "DocumentDescription.h"
#include "mcxprsutil/MCPMMLParser.h"

namespace examples {

// Adds the variables and the statistics of the document that the reader holds. A field that cannot
// be read becomes a problem, and the others are described all the same.
void DescribePmml(MCXPrsUtil::MCPMMLParser& parser, const DescribeOptions& options,
                  DocumentDescription& description);

}  // namespace examples

#endif  // MCX_EXAMPLES_PMMLDESCRIPTION_H
