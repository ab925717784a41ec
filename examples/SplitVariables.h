// Builds the split variables from the split values of all models.
#ifndef MCX_EXAMPLES_SPLITVARIABLES_H
#define MCX_EXAMPLES_SPLITVARIABLES_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include "SplitManifest.h"
#include "mccommon/MCVarList.h"

namespace examples {

struct SplitVariableOptions {
  std::map<std::string, std::string> labels;  // by variable
  std::set<std::string> textVariables;        // to be text even if all values are numbers
};

// Adds one categorical variable per name to `list`: with numeric values if every value is a plain
// number (see IsPlainNumber()), else with text values; the categories in the order in which they
// come first.
//
// Returns one sentence per thing that the user may not expect, such as a number that is not
// written in its shortest form. Throws InputError for a name that the list refuses.
std::vector<std::string> AddSplitVariables(const std::vector<std::string>& names,
                                           const std::vector<SplitModel>& models,
                                           const SplitVariableOptions& options,
                                           MCMTD_NAMESPACE::MCVarList& list);

// An integer or decimal number, perhaps with an exponent, as JSON writes it. "007" is none: such
// texts are codes. Nor is one that a double cannot hold.
bool IsPlainNumber(const std::string& text);

}  // namespace examples

#endif  // MCX_EXAMPLES_SPLITVARIABLES_H
