#include "SplitVariables.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "mccommon/MCFormat.h"

namespace examples {
namespace {

using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;

std::vector<std::string> DistinctValues(const std::vector<SplitModel>& models, std::size_t column) {
  std::vector<std::string> values;
  std::set<std::string> seen;
  for (const SplitModel& model : models) {
    if (seen.insert(model.values[column]).second) values.push_back(model.values[column]);
  }
  return values;
}

std::string FormatNumber(double number) { return MCXML_NAMESPACE::Format(number, false, nullptr); }

double NumberOf(const std::string& text) {
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::string SameNumberNote(const std::string& variable, const std::string& text,
                           const std::string& earlier) {
  return fmt::format(
      "{}: the values \"{}\" and \"{}\" are the same number; an engine that compares numbers never "
      "selects "
      "the later one.",
      variable, earlier, text);
}

// The categories of a numeric variable keep numbers, while a predicate keeps the text as given.
std::string ChangedTextNote(const std::string& variable, std::size_t count, const std::string& text,
                            const std::string& category) {
  const std::string others = count == 1 ? ""
                                        : fmt::format(" (and so for {} more {})", count - 1,
                                                      count == 2 ? "value" : "values");
  return fmt::format(
      "{}: as a number \"{}\" becomes the category \"{}\", while the predicate keeps \"{}\"{}. To "
      "an "
      "engine that compares texts these differ; --text {} keeps the texts.",
      variable, text, category, text, others, variable);
}

// The distinct numbers in their order, and what is to be said about them.
std::vector<double> Numbers(const std::string& variable, const std::vector<std::string>& values,
                            std::vector<std::string>& notes) {
  std::vector<double> numbers;
  std::map<double, std::string> texts;
  std::vector<std::string> changed;
  for (const std::string& text : values) {
    const double number = NumberOf(text);
    const auto [entry, isNew] = texts.emplace(number, text);
    if (isNew) numbers.push_back(number);
    if (!isNew) notes.push_back(SameNumberNote(variable, text, entry->second));
    if (FormatNumber(number) != text) changed.push_back(text);
  }
  if (!changed.empty()) {
    const std::string& text = changed.front();
    notes.push_back(ChangedTextNote(variable, changed.size(), text, FormatNumber(NumberOf(text))));
  }
  return numbers;
}

std::size_t SkipDigits(std::string_view text, std::size_t from) {
  while (from < text.size() && text[from] >= '0' && text[from] <= '9') ++from;
  return from;
}

// The end of the number that begins at the front; 0 when there is none.
std::size_t NumberEnd(std::string_view text) {
  const std::size_t first = !text.empty() && text.front() == '-' ? 1 : 0;
  std::size_t end = SkipDigits(text, first);
  if (end == first || (end > first + 1 && text[first] == '0')) return 0;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction = SkipDigits(text, end + 1);
    if (fraction == end + 1) return 0;
    end = fraction;
  }
  if (end == text.size() || (text[end] != 'e' && text[end] != 'E')) return end;
  const bool sign = end + 1 < text.size() && (text[end + 1] == '-' || text[end + 1] == '+');
  const std::size_t digits = end + (sign ? 2 : 1);
  const std::size_t exponent = SkipDigits(text, digits);
  return exponent == digits ? 0 : exponent;
}

int AddSplitVariable(const std::string& name, const std::vector<std::string>& values,
                     const SplitVariableOptions& options, MCVarList& list,
                     std::vector<std::string>& notes) {
  const auto label = options.labels.find(name);
  const std::string labelText = label == options.labels.end() ? "" : label->second;
  const bool numeric = options.textVariables.count(name) == 0 &&
                       std::all_of(values.begin(), values.end(), IsPlainNumber);
  return numeric ? list.AddCatVar(name, labelText, Numbers(name, values, notes),
                                  IMCVariable::kRoleInput)
                 : list.AddCatVar(name, labelText, values, IMCVariable::kRoleInput);
}

void CheckName(const std::string& option, const std::string& name,
               const std::vector<std::string>& names) {
  if (std::find(names.begin(), names.end(), name) != names.end()) return;
  throw InputError(fmt::format("{}: \"{}\" is no split variable", option, name));
}

}  // namespace

bool IsPlainNumber(const std::string& text) {
  if (text.empty() || NumberEnd(text) != text.size()) return false;
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && std::isfinite(number);
}

std::vector<std::string> AddSplitVariables(const std::vector<std::string>& names,
                                           const std::vector<SplitModel>& models,
                                           const SplitVariableOptions& options, MCVarList& list) {
  for (const auto& entry : options.labels) CheckName("--label", entry.first, names);
  for (const auto& name : options.textVariables) CheckName("--text", name, names);
  std::vector<std::string> notes;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (AddSplitVariable(names[i], DistinctValues(models, i), options, list, notes) >= 0) continue;
    throw InputError(names[i].empty()
                         ? "a split variable has an empty name"
                         : fmt::format("the split variable \"{}\" is named twice", names[i]));
  }
  return notes;
}

}  // namespace examples
