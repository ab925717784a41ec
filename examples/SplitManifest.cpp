#include "SplitManifest.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>

#include "Csv.h"
#include "FileCheck.h"

namespace examples {
namespace {

constexpr std::string_view kModelColumn = "model";

std::string ReadFile(const std::string& file) {
  if (const std::string reason = WhyNotReadable(file); !reason.empty()) {
    throw InputError(file + ": " + reason);
  }
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

std::vector<CsvRecord> ReadRecords(const std::string& file) {
  try {
    return ReadCsv(ReadFile(file));
  } catch (const CsvError& error) {
    throw InputError(fmt::format("{}:{}: {}", file, error.Line(), error.what()));
  }
}

std::vector<std::string> HeaderVariables(const std::string& file, const CsvRecord& header) {
  std::vector<std::string> names = header.fields;
  if (names.size() < 2 || names.back() != kModelColumn) {
    throw InputError(fmt::format(
        "{}:{}: the header must name the split variables and, at its end, the column \"{}\"", file,
        header.line, kModelColumn));
  }
  names.pop_back();
  return names;
}

// For each wanted variable its column in the manifest.
std::vector<std::size_t> ColumnsOf(const std::string& file, const std::vector<std::string>& header,
                                   const std::vector<std::string>& wanted) {
  std::vector<std::size_t> columns;
  for (const std::string& name : wanted) {
    const auto found = std::find(header.begin(), header.end(), name);
    if (found == header.end()) {
      throw InputError(fmt::format("{}: there is no column \"{}\"; the columns are {}", file, name,
                                   fmt::join(header, ", ")));
    }
    columns.push_back(static_cast<std::size_t>(found - header.begin()));
  }
  if (header.size() > wanted.size()) {
    throw InputError(fmt::format("{}: --by names {} of the split variables {}; it must name all",
                                 file, wanted.size(), fmt::join(header, ", ")));
  }
  return columns;
}

// The library would leave an empty value out of the predicate: the segment would catch the rows of
// other splits as well.
void CheckValues(const std::string& where, const SplitModel& model,
                 const std::vector<std::string>& variables) {
  for (std::size_t i = 0; i < variables.size(); ++i) {
    if (!model.values[i].empty()) continue;
    throw InputError(fmt::format("{}: the value of {} is empty", where, variables[i]));
  }
  if (model.path.empty()) throw InputError(where + ": the model's path is empty");
}

SplitModel ModelOf(const std::string& file, const CsvRecord& record,
                   const std::vector<std::size_t>& columns,
                   const std::vector<std::string>& variables) {
  const std::string where = fmt::format("{}:{}", file, record.line);
  if (record.fields.size() != columns.size() + 1) {
    throw InputError(fmt::format("{}: {} columns are needed, and here are {}", where,
                                 columns.size() + 1, record.fields.size()));
  }
  SplitModel model;
  for (std::size_t column : columns) model.values.push_back(record.fields[column]);
  model.path = record.fields.back();
  CheckValues(where, model, variables);
  model.path = (std::filesystem::path(file).parent_path() / model.path).string();
  return model;
}

}  // namespace

std::vector<SplitModel> ReadManifest(const std::string& file, std::vector<std::string>& variables) {
  const std::vector<CsvRecord> records = ReadRecords(file);
  if (records.empty()) throw InputError(file + ": the manifest is empty");
  const std::vector<std::string> header = HeaderVariables(file, records.front());
  if (variables.empty()) variables = header;
  const std::vector<std::size_t> columns = ColumnsOf(file, header, variables);
  std::vector<SplitModel> models;
  for (std::size_t i = 1; i < records.size(); ++i) {
    models.push_back(ModelOf(file, records[i], columns, variables));
  }
  if (models.empty()) throw InputError(file + ": the manifest names no model");
  return models;
}

SplitModel ParseSplitArgument(const std::string& argument,
                              const std::vector<std::string>& variables) {
  std::size_t equals = 0;
  SplitModel model;
  try {
    model.values = ReadCsvUpTo(argument, '=', equals).fields;
  } catch (const CsvError& error) {
    throw InputError(fmt::format("{}: {}", argument, error.what()));
  }
  if (equals == std::string::npos) {
    throw InputError(fmt::format("{}: no \"=\" between the split values and the path", argument));
  }
  if (model.values.size() != variables.size()) {
    throw InputError(fmt::format("{}: {} split values are needed ({}), and here are {}", argument,
                                 variables.size(), fmt::join(variables, ", "),
                                 model.values.size()));
  }
  model.path = argument.substr(equals + 1);
  CheckValues(argument, model, variables);
  return model;
}

}  // namespace examples
