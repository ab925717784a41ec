// Shows the parameters of settings to people.
#ifndef MCX_EXAMPLES_PARAMETERTEXT_H
#define MCX_EXAMPLES_PARAMETERTEXT_H

#include <iosfwd>
#include <vector>

#include "DescriptionTable.h"
#include "ParameterDescription.h"

namespace examples {

// A table of name, type and value, in which what belongs to a group is indented below it.
void PrintParameters(std::ostream& out, const std::vector<ParameterDescription>& parameters,
                     const TableOptions& options);

// A table of the roles and the variables that play them.
void PrintRoles(std::ostream& out, const std::vector<RoleDescription>& roles,
                const TableOptions& options);

}  // namespace examples

#endif  // MCX_EXAMPLES_PARAMETERTEXT_H
