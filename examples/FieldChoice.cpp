#include "FieldChoice.h"

#include <algorithm>
#include <string>
#include <vector>

namespace examples {
namespace {

using Variables = std::vector<VariableDescription>;

bool Holds(const Variables& variables, const std::string& name) {
  return std::any_of(variables.begin(), variables.end(),
                     [&](const auto& variable) { return variable.name == name; });
}

void Choose(const std::vector<std::string>& names, Variables& variables) {
  const auto unwanted = [&](const auto& variable) {
    return std::find(names.begin(), names.end(), variable.name) == names.end();
  };
  variables.erase(std::remove_if(variables.begin(), variables.end(), unwanted), variables.end());
}

}  // namespace

void ChooseFields(const DescribeOptions& options, DocumentDescription& description) {
  if (options.fields.empty()) return;
  const bool complete = description.problems.empty();
  Choose(options.fields, description.variables);
  Choose(options.fields, description.derivedVariables);
  for (const std::string& name : options.fields) {
    const bool found =
        Holds(description.variables, name) || Holds(description.derivedVariables, name);
    if (complete && !found) {
      description.problems.push_back({0, name, "there is no such field", {}, {}, ""});
    }
  }
}

}  // namespace examples
