// Leaves only the variables that were asked for.
#ifndef MCX_EXAMPLES_FIELDCHOICE_H
#define MCX_EXAMPLES_FIELDCHOICE_H

#include "DocumentDescription.h"

namespace examples {

// Removes the variables, derived ones included, that the options do not name; without names all
// stay. A name without a variable becomes a problem, unless reading ended early: it may stand
// behind that place.
void ChooseFields(const DescribeOptions& options, DocumentDescription& description);

}  // namespace examples

#endif  // MCX_EXAMPLES_FIELDCHOICE_H
