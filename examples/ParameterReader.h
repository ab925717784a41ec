// Reads all parameters of a settings document, whatever their names.
#ifndef MCX_EXAMPLES_PARAMETERREADER_H
#define MCX_EXAMPLES_PARAMETERREADER_H

#include "DocumentDescription.h"
#include "mcxprsutil/MCSettingsParser.h"

namespace examples {

// Adds the parameters of the document that the reader holds, in document order, groups with what is
// in them. A parameter that cannot be read as its type says becomes a problem.
void ReadParameters(MCXPrsUtil::MCSettingsParser& parser, DocumentDescription& description);

}  // namespace examples

#endif  // MCX_EXAMPLES_PARAMETERREADER_H
