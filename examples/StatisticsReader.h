// Reads the univariate statistics of every model of a PMML document.
#ifndef MCX_EXAMPLES_STATISTICSREADER_H
#define MCX_EXAMPLES_STATISTICSREADER_H

#include "DocumentDescription.h"
#include "mcxprsutil/MCPMMLParser.h"

namespace examples {

// Adds the statistics to the description, whose variables must have been read before: they name
// the categories. Statistics that cannot be read become problems, and the others are read all the
// same. The reader must hold a document; which model it has chosen changes.
void ReadStatistics(MCXPrsUtil::MCPMMLParser& parser, const DescribeOptions& options,
                    DocumentDescription& description);

}  // namespace examples

#endif  // MCX_EXAMPLES_STATISTICSREADER_H
