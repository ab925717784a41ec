#include "VariableDescription.h"

#include <iterator>
#include <limits>

#include "mccommon/MCFormat.h"
#include "mccommon/MCVarEncoder.h"
#include "mccommon/MCVariable.h"

namespace examples {
namespace {

using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCCategorySet;
using MCMTD_NAMESPACE::MCVarEncoder;
using MCMTD_NAMESPACE::MCVariable;

constexpr double kLargest = std::numeric_limits<double>::max();

ValueDescription NumberValue(double number, const std::string& label) {
  return {MCXML_NAMESPACE::Format(number, false, nullptr), number, label};
}

// The readers write an open end as the largest finite double of its side.
RangeDescription Range(double lower, double upper) {
  RangeDescription range;
  if (lower > -kLargest) range.lower = lower;
  if (upper < kLargest) range.upper = upper;
  return range;
}

std::vector<ValueDescription> Categories(const MCCategorySet& set) {
  std::vector<ValueDescription> categories;
  for (int i = 0; i < set.Size(); ++i) {
    const auto index = static_cast<std::size_t>(i);
    categories.push_back(set.IsNumeric()
                             ? NumberValue(set.GetNumbers()[index], set.GetLabelText(i))
                             : ValueDescription{set.GetTexts()[index], {}, set.GetLabelText(i)});
  }
  return categories;
}

RangeDescription RangeOf(const MCVariable& variable) {
  RangeDescription range;
  if (variable.HasMinimum()) range.lower = variable.GetMinimum();
  if (variable.HasMaximum()) range.upper = variable.GetMaximum();
  return range;
}

std::vector<BinDescription> Bins(const MCVariable& variable, const MCVarEncoder* encoder) {
  std::vector<BinDescription> bins;
  if (variable.GetCutPoints().empty()) return bins;
  RangeDescription rest = RangeOf(variable);
  for (double cutPoint : variable.GetCutPoints()) {
    bins.push_back({{rest.lower, cutPoint}, ""});
    rest.lower = cutPoint;
  }
  bins.push_back({rest, ""});
  if (encoder == nullptr || encoder->GetBinLabels().size() != bins.size()) return bins;
  for (std::size_t i = 0; i < bins.size(); ++i) bins[i].label = encoder->GetBinLabels()[i];
  return bins;
}

void AddDeclarations(VariableDescription& description, const MCVarEncoder& encoder) {
  for (const auto& missing : encoder.GetMissingNumbers()) {
    description.missingValues.push_back(NumberValue(missing.value, missing.label));
  }
  for (const auto& missing : encoder.GetMissingTexts()) {
    description.missingValues.push_back({missing.value, {}, missing.label});
  }
  if (encoder.HasInvalidRange()) {
    description.invalidRange = Range(encoder.GetInvalidLower(), encoder.GetInvalidUpper());
  }
}

VariableDescription Describe(const MCVariable& variable, const MCVarEncoder* encoder) {
  VariableDescription description;
  description.name = variable.GetName();
  description.label = variable.GetLabel();
  description.kind = variable.GetKind();
  if (variable.GetCategorySet() != nullptr) {
    description.categories = Categories(*variable.GetCategorySet());
  }
  if (variable.HasMinimum() || variable.HasMaximum()) description.range = RangeOf(variable);
  description.bins = Bins(variable, encoder);
  if (encoder != nullptr) AddDeclarations(description, *encoder);
  return description;
}

const char* RoleText(IMCVariable::VariableRole role) {
  switch (role) {
    case IMCVariable::kRoleIdentifier:
      return "identifier";
    case IMCVariable::kRoleTarget:
      return "target";
    case IMCVariable::kRoleFrequencyWeight:
      return "frequency weight";
    case IMCVariable::kRoleInput:
    case IMCVariable::kRoleDeclaredInput:
      return "input";
    case IMCVariable::kRoleNone:
      return "none";
  }
  return "";
}

// The codes from 1 on.
constexpr const char* kDataTypes[] = {"integer", "double", "string", "date", "time", "dateTime"};
static_assert(std::size(kDataTypes) == 6, "one word per code");

const char* DataTypeText(int code) {
  const bool known = code >= 1 && code <= static_cast<int>(std::size(kDataTypes));
  return known ? kDataTypes[code - 1] : "";
}

}  // namespace

std::vector<VariableDescription> DescribeVariables(MCMTD_NAMESPACE::MCVarList& list) {
  std::vector<VariableDescription> descriptions;
  for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
    const auto* variable = dynamic_cast<const MCVariable*>(list.GetVarAt(i));
    const auto* encoder = dynamic_cast<const MCVarEncoder*>(list.GetEncoderAt(i));
    if (variable != nullptr) descriptions.push_back(Describe(*variable, encoder));
  }
  return descriptions;
}

void AddRoles(const MCMTD_NAMESPACE::MCVarList& list, std::vector<VariableDescription>& variables) {
  for (std::size_t i = 0; i < variables.size(); ++i) {
    variables[i].role = RoleText(list.GetVarAt(static_cast<int>(i))->GetRole());
  }
}

void AddDataTypes(const MCMTD_NAMESPACE::MCVarList& list,
                  std::vector<VariableDescription>& variables) {
  for (std::size_t i = 0; i < variables.size(); ++i) {
    variables[i].dataType = DataTypeText(list.GetVarAt(static_cast<int>(i))->GetDataType());
  }
}

}  // namespace examples
