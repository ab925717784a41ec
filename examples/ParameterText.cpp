#include "ParameterText.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <string>

#include "DisplayWidth.h"
#include "TextTable.h"

namespace examples {
namespace {

using Shape = ParameterDescription::Shape;
using Rows = std::vector<std::vector<ParameterValue>>;

// Quoted where a reader could not see where the text ends.
std::string ValueText(const ParameterValue& value) {
  const bool plain =
      value.number || value.truth ||
      (!value.text.empty() && value.text.front() != ' ' && value.text.back() != ' ' &&
       value.text.find_first_of(",\"") == std::string::npos);
  return plain ? Printable(value.text) : '"' + Printable(value.text) + '"';
}

std::string Count(std::size_t count, const char* one, const char* many) {
  return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::string MatrixSize(const Rows& rows) {
  const auto shorter = [](const auto& a, const auto& b) { return a.size() < b.size(); };
  if (rows.empty()) return "no rows";
  const auto [least, most] = std::minmax_element(rows.begin(), rows.end(), shorter);
  const std::string columns = least->size() == most->size()
                                  ? std::to_string(most->size())
                                  : fmt::format("{} to {}", least->size(), most->size());
  return fmt::format("{} x {}", rows.size(), columns);
}

std::string TypeText(const ParameterDescription& parameter) {
  const std::string space = parameter.type.empty() ? "" : parameter.type + " ";
  switch (parameter.shape) {
    case Shape::kGroup:
      return "group";
    case Shape::kMatrix:
      return fmt::format("{}matrix, {}", space, MatrixSize(parameter.rows));
    case Shape::kList:
      return fmt::format("{}list of {}", space, parameter.values.size());
    case Shape::kSingle:
      break;
  }
  return parameter.type.empty() ? "no type" : parameter.type;
}

// Numbers are right-aligned, texts left-aligned; every column is as wide as its widest cell.
TextCell MatrixCell(const Rows& rows, bool numbers) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], DisplayWidth(ValueText(row[i])));
    }
  }
  TextCell cell;
  cell.oneItemPerLine = true;
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string text = ValueText(row[i]);
      const std::string space(widths[i] - DisplayWidth(text), ' ');
      line += (i > 0 ? "  " : "") + (numbers ? space + text : text + space);
    }
    cell.items.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
  }
  return cell;
}

TextCell ListCell(const std::vector<ParameterValue>& values, bool all) {
  constexpr std::size_t kMost = 10;
  TextCell cell;
  const std::size_t shown = all || values.size() <= kMost + 2 ? values.size() : kMost;
  for (std::size_t i = 0; i < shown; ++i) cell.items.push_back(ValueText(values[i]));
  if (shown < values.size()) cell.items.push_back(fmt::format("... ({} in all)", values.size()));
  return cell;
}

TextCell ValueCell(const ParameterDescription& parameter, bool all) {
  if (parameter.shape == Shape::kGroup) {
    return {{Count(parameter.children.size(), "parameter", "parameters")}};
  }
  if (parameter.shape == Shape::kMatrix) {
    return MatrixCell(parameter.rows, parameter.type != "string");
  }
  if (!parameter.values.empty()) return ListCell(parameter.values, all);
  return {{parameter.shape == Shape::kList ? "(empty)" : "(no value)"}};
}

void AddRows(TextTable& table, const std::vector<ParameterDescription>& parameters,
             std::size_t depth, bool all) {
  for (const ParameterDescription& parameter : parameters) {
    const std::string name = parameter.name.empty() ? "\"\"" : Printable(parameter.name);
    table.AddRow({{{std::string(2 * depth, ' ') + name}},
                  {{TypeText(parameter)}},
                  ValueCell(parameter, all)});
    AddRows(table, parameter.children, depth + 1, all);
  }
}

}  // namespace

void PrintParameters(std::ostream& out, const std::vector<ParameterDescription>& parameters,
                     const TableOptions& options) {
  TextTable table({"Parameter", "Type", "Value"});
  AddRows(table, parameters, 0, options.allValues);
  table.Print(out, options.width);
}

void PrintRoles(std::ostream& out, const std::vector<RoleDescription>& roles,
                const TableOptions& options) {
  TextTable table({"Role", "Variables"});
  for (const RoleDescription& role : roles) {
    TextCell variables;
    for (const std::string& name : role.variables) {
      variables.items.push_back(name.find(',') == std::string::npos ? Printable(name)
                                                                    : '"' + Printable(name) + '"');
    }
    table.AddRow({{{role.text}}, variables});
  }
  table.Print(out, options.width);
}

}  // namespace examples
