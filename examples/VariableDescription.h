// What a variable list holds, as plain data that can be shown.
#ifndef MCX_EXAMPLES_VARIABLEDESCRIPTION_H
#define MCX_EXAMPLES_VARIABLEDESCRIPTION_H

#include <optional>
#include <string>
#include <vector>

#include "mccommon/MCVarList.h"

namespace examples {

// A category or a missing value.
struct ValueDescription {
  std::string text;              // as the document has it; numbers in their shortest form
  std::optional<double> number;  // set when the variable's values are numbers
  std::string label;             // may be empty
};

// A range of numbers; an end that is not set is open.
struct RangeDescription {
  std::optional<double> lower;
  std::optional<double> upper;
};

struct BinDescription {
  RangeDescription range;
  std::string label;  // may be empty
};

struct VariableDescription {
  std::string name;
  std::string label;  // may be empty
  int kind = 0;       // as IMCVariable::GetKind() gives it
  std::vector<ValueDescription> categories;
  std::optional<RangeDescription> range;
  std::vector<BinDescription> bins;
  std::vector<ValueDescription> missingValues;
  std::optional<RangeDescription> invalidRange;
  std::string role;      // "target" and the like; empty where the document tells none
  std::string dataType;  // "integer" and the like; empty where the reader tells none
};

// One description per variable, in the list's order. The list gives its encoders only to those who
// may change it, hence no const.
std::vector<VariableDescription> DescribeVariables(MCMTD_NAMESPACE::MCVarList& list);

// Adds the roles, for documents that declare them; `variables` is what the list holds.
void AddRoles(const MCMTD_NAMESPACE::MCVarList& list, std::vector<VariableDescription>& variables);

// Adds the data types, for readers that tell them; `variables` is what the list holds.
void AddDataTypes(const MCMTD_NAMESPACE::MCVarList& list,
                  std::vector<VariableDescription>& variables);

}  // namespace examples

#endif  // MCX_EXAMPLES_VARIABLEDESCRIPTION_H
