#include "DescriptionTable.h"

#include <fmt/format.h>

#include <ostream>
#include <utility>

#include "DisplayWidth.h"
#include "ParameterText.h"
#include "StatisticsText.h"
#include "TextTable.h"
#include "mccommon/MCFormat.h"

namespace examples {
namespace {

constexpr std::size_t kMostValues = 10;

std::string Number(double value) { return MCXML_NAMESPACE::Format(value, false, nullptr); }

// Quoted where a reader could not see where the text ends.
std::string Quoted(const std::string& text) {
  const bool plain = !text.empty() && text.front() != ' ' && text.back() != ' ' &&
                     text.find_first_of(",=\"") == std::string::npos;
  return plain ? Printable(text) : '"' + Printable(text) + '"';
}

std::string Value(const ValueDescription& value) {
  const std::string text = Quoted(value.text);
  return value.label.empty() ? text : text + " = " + Quoted(value.label);
}

TextCell Values(const std::vector<ValueDescription>& values, bool all) {
  TextCell cell;
  // A list is not cut for the sake of two values: saying so would take as much room.
  const std::size_t shown = all || values.size() <= kMostValues + 2 ? values.size() : kMostValues;
  for (std::size_t i = 0; i < shown; ++i) cell.items.push_back(Value(values[i]));
  if (shown < values.size()) {
    cell.items.push_back(fmt::format("... ({} in all)", values.size()));
  }
  return cell;
}

std::string Range(const RangeDescription& range) {
  if (range.lower && range.upper) {
    return fmt::format("{} to {}", Number(*range.lower), Number(*range.upper));
  }
  if (range.lower) return Number(*range.lower) + " and above";
  if (range.upper) return Number(*range.upper) + " and below";
  return "any";
}

TextCell Range(const std::optional<RangeDescription>& range) {
  return range ? TextCell{{Range(*range)}} : TextCell{};
}

// One word, so that a bin stays on one line where it can; an open end has no number.
std::string BinRange(const RangeDescription& range) {
  return (range.lower ? Number(*range.lower) : "") + ".." +
         (range.upper ? Number(*range.upper) : "");
}

TextCell Bins(const std::vector<BinDescription>& bins) {
  TextCell cell;
  cell.oneItemPerLine = true;
  for (const BinDescription& bin : bins) {
    const std::string range = BinRange(bin.range);
    cell.items.push_back(bin.label.empty() ? range
                                           : fmt::format("{} ({})", Printable(bin.label), range));
  }
  return cell;
}

TextCell Text(const std::string& text) {
  return text.empty() ? TextCell{} : TextCell{{Printable(text)}};
}

const char* KindText(int kind) {
  if (kind == 1) return "continuous";
  return kind == 2 ? "categorical (numbers)" : "categorical (text)";
}

std::vector<TextCell> Row(const VariableDescription& v, bool all) {
  return {Text(v.name),         Text(v.label),
          Text(v.role),         Text(v.dataType),
          {{KindText(v.kind)}}, v.range ? Range(v.range) : Values(v.categories, all),
          Bins(v.bins),         Values(v.missingValues, all),
          Range(v.invalidRange)};
}

std::string Count(std::size_t count, const char* one, const char* many) {
  return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::string Heading(const DocumentDescription& description) {
  std::string variables = Count(description.variables.size(), "variable", "variables");
  switch (description.kind) {
    case DocumentKind::kPmml:
      return variables;
    case DocumentKind::kDataModel:
      return "data model, " + variables;
    case DocumentKind::kSettings:
      return fmt::format(
          "settings, {}, {}, {}", Count(description.parameters.size(), "parameter", "parameters"),
          variables, Count(description.derivedVariables.size(), "derived field", "derived fields"));
  }
  return variables;
}

void PrintVariables(std::ostream& out, const std::vector<VariableDescription>& variables,
                    const TableOptions& options) {
  TextTable table(
      {"Name", "Label", "Role", "Type", "Kind", "Values", "Bins", "Missing values", "Invalid"});
  for (const auto& variable : variables) table.AddRow(Row(variable, options.allValues));
  table.Print(out, options.width);
}

void PrintSettings(std::ostream& out, const DocumentDescription& description,
                   const TableOptions& options) {
  out << '\n';
  if (description.parameters.empty()) {
    out << "No parameters\n";
  } else {
    PrintParameters(out, description.parameters, options);
  }
  if (description.roles.empty()) return;
  out << '\n';
  PrintRoles(out, description.roles, options);
}

}  // namespace

void PrintDescription(std::ostream& out, const DocumentDescription& description,
                      const TableOptions& options) {
  out << Printable(description.source) << ": " << Heading(description) << '\n';
  if (description.kind == DocumentKind::kSettings) PrintSettings(out, description, options);
  if (!description.variables.empty()) {
    out << (description.kind == DocumentKind::kSettings ? "\nVariables\n\n" : "\n");
    PrintVariables(out, description.variables, options);
  }
  if (!description.derivedVariables.empty()) {
    out << "\nDerived fields\n\n";
    PrintVariables(out, description.derivedVariables, options);
  }
  for (const auto& model : description.statistics) PrintStatistics(out, model, options);
  if (!description.notes.empty()) out << '\n';
  for (const std::string& note : description.notes) out << "Note: " << Printable(note) << '\n';
}

std::string ProblemLine(const std::string& source, const Problem& problem) {
  std::string line = Printable(source) + ": ";
  if (!problem.field.empty()) line += fmt::format("field {}: ", Quoted(problem.field));
  if (!problem.parameter.empty()) line += fmt::format("parameter {}: ", Quoted(problem.parameter));
  line += Printable(problem.text);
  return problem.code == 0 ? line : line + fmt::format(" (status {})", problem.code);
}

}  // namespace examples
