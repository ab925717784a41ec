// The parameters of a settings document as plain data that can be shown.
#ifndef MCX_EXAMPLES_PARAMETERDESCRIPTION_H
#define MCX_EXAMPLES_PARAMETERDESCRIPTION_H

#include <optional>
#include <string>
#include <vector>

namespace examples {

// One value: as a text and, where the parameter's type says so, as what it means.
struct ParameterValue {
  std::string text;
  std::optional<double> number;
  std::optional<bool> truth;
};

struct ParameterDescription {
  enum class Shape { kSingle, kList, kMatrix, kGroup };

  std::string name;
  Shape shape = Shape::kSingle;
  std::string type;                               // as declared; empty when none is known
  std::vector<ParameterValue> values;             // none for a single parameter without a value
  std::vector<std::vector<ParameterValue>> rows;  // of a matrix; they may differ in length
  std::vector<ParameterDescription> children;     // of a group
};

// The variables that play one role in the model to be built.
struct RoleDescription {
  std::string name;  // of the parameter that gives them
  std::string text;  // for people
  std::vector<std::string> variables;
};

}  // namespace examples

#endif  // MCX_EXAMPLES_PARAMETERDESCRIPTION_H
