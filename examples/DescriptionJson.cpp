#include "DescriptionJson.h"

#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>

namespace examples {
namespace {

using Json = nlohmann::ordered_json;

// Whole numbers without a decimal point, as long as every JSON reader takes them exactly.
Json Number(double number) {
  constexpr double kMostExact = 9007199254740992.0;
  const bool negativeZero = number == 0 && std::signbit(number);
  const bool whole = std::fabs(number) <= kMostExact && std::trunc(number) == number;
  return whole && !negativeZero ? Json(static_cast<std::int64_t>(number)) : Json(number);
}

Json OptionalNumber(const std::optional<double>& number) {
  return number ? Number(*number) : Json(nullptr);
}

Json RangeToJson(const RangeDescription& range) {
  return {{"lower", OptionalNumber(range.lower)}, {"upper", OptionalNumber(range.upper)}};
}

// Numbers are numbers in JSON as well, texts are strings.
Json ValuesToJson(const std::vector<ValueDescription>& values) {
  Json array = Json::array();
  for (const ValueDescription& value : values) {
    Json entry;
    entry["value"] = value.number ? Number(*value.number) : Json(value.text);
    entry["label"] = value.label;
    array.push_back(std::move(entry));
  }
  return array;
}

Json BinsToJson(const std::vector<BinDescription>& bins) {
  Json array = Json::array();
  for (const BinDescription& bin : bins) {
    Json entry = RangeToJson(bin.range);
    entry["label"] = bin.label;
    array.push_back(std::move(entry));
  }
  return array;
}

const char* KindName(int kind) {
  if (kind == 1) return "continuous";
  return kind == 2 ? "categoricalNumeric" : "categoricalText";
}

// What does not apply to a variable, or was not found, is left out.
Json VariableToJson(const VariableDescription& variable) {
  Json json;
  json["name"] = variable.name;
  json["label"] = variable.label;
  json["kind"] = KindName(variable.kind);
  if (variable.kind != 1) json["categories"] = ValuesToJson(variable.categories);
  if (variable.range) json["range"] = RangeToJson(*variable.range);
  if (!variable.bins.empty()) json["bins"] = BinsToJson(variable.bins);
  json["missingValues"] = ValuesToJson(variable.missingValues);
  if (variable.invalidRange) json["invalidRange"] = RangeToJson(*variable.invalidRange);
  if (!variable.role.empty()) json["role"] = variable.role;
  if (!variable.dataType.empty()) json["dataType"] = variable.dataType;
  return json;
}

Json VariablesToJson(const std::vector<VariableDescription>& variables) {
  Json array = Json::array();
  for (const auto& variable : variables) array.push_back(VariableToJson(variable));
  return array;
}

// The bounds of a bin, or the value and label of a category where they are known.
Json FrequencyToJson(const FrequencyDescription& frequency, bool continuous) {
  Json json = continuous ? RangeToJson(frequency.range) : Json::object();
  if (frequency.category) json = ValuesToJson({*frequency.category}).front();
  json["frequency"] = Number(frequency.frequency);
  return json;
}

Json FieldStatisticsToJson(const FieldStatistics& field) {
  Json json;
  json["field"] = field.field;
  json["kind"] = field.continuous ? "continuous" : "categorical";
  json["total"] = Number(field.total);
  if (field.continuous) {
    json["minimum"] = OptionalNumber(field.minimum);
    json["maximum"] = OptionalNumber(field.maximum);
    json["mean"] = OptionalNumber(field.mean);
    json["standardDeviation"] = OptionalNumber(field.standardDeviation);
  }
  Json& frequencies = json[field.continuous ? "bins" : "categories"] = Json::array();
  for (const auto& frequency : field.frequencies) {
    frequencies.push_back(FrequencyToJson(frequency, field.continuous));
  }
  return json;
}

Json StatisticsToJson(const std::vector<ModelStatistics>& statistics) {
  Json array = Json::array();
  for (const ModelStatistics& model : statistics) {
    Json fields = Json::array();
    for (const auto& field : model.fields) fields.push_back(FieldStatisticsToJson(field));
    array.push_back({{"model", model.element}, {"name", model.name}, {"fields", fields}});
  }
  return array;
}

Json ParameterValueToJson(const ParameterValue& value) {
  if (value.number) return Number(*value.number);
  return value.truth ? Json(*value.truth) : Json(value.text);
}

Json ParameterValuesToJson(const std::vector<ParameterValue>& values) {
  Json array = Json::array();
  for (const ParameterValue& value : values) array.push_back(ParameterValueToJson(value));
  return array;
}

Json RowsToJson(const std::vector<std::vector<ParameterValue>>& rows) {
  Json array = Json::array();
  for (const auto& row : rows) array.push_back(ParameterValuesToJson(row));
  return array;
}

Json ParametersToJson(const std::vector<ParameterDescription>& parameters);

// A single parameter without a value has null. Groups nest no deeper than they were read.
Json ParameterToJson(const ParameterDescription& parameter) {
  Json json;
  json["name"] = parameter.name;
  if (!parameter.type.empty()) json["type"] = parameter.type;
  switch (parameter.shape) {
    case ParameterDescription::Shape::kSingle:
      json["value"] =
          parameter.values.empty() ? Json(nullptr) : ParameterValueToJson(parameter.values.front());
      break;
    case ParameterDescription::Shape::kList:
      json["list"] = ParameterValuesToJson(parameter.values);
      break;
    case ParameterDescription::Shape::kMatrix:
      json["matrix"] = RowsToJson(parameter.rows);
      break;
    case ParameterDescription::Shape::kGroup:
      json["group"] = ParametersToJson(parameter.children);
      break;
  }
  return json;
}

Json ParametersToJson(const std::vector<ParameterDescription>& parameters) {
  Json array = Json::array();
  for (const auto& parameter : parameters) array.push_back(ParameterToJson(parameter));
  return array;
}

Json RolesToJson(const std::vector<RoleDescription>& roles) {
  Json json = Json::object();
  for (const RoleDescription& role : roles) json[role.name] = role.variables;
  return json;
}

const char* DocumentKindName(DocumentKind kind) {
  if (kind == DocumentKind::kPmml) return "pmml";
  return kind == DocumentKind::kDataModel ? "dataModel" : "settings";
}

Json ProblemToJson(const Problem& problem) {
  Json json;
  if (problem.code != 0) json["status"] = problem.code;
  if (!problem.field.empty()) json["field"] = problem.field;
  if (!problem.parameter.empty()) json["parameter"] = problem.parameter;
  json["message"] = problem.text;
  if (problem.line) json["line"] = *problem.line;
  if (problem.column) json["column"] = *problem.column;
  return json;
}

Json DocumentToJson(const DocumentDescription& description) {
  Json json;
  json["source"] = description.source;
  json["kind"] = DocumentKindName(description.kind);
  json["variables"] = VariablesToJson(description.variables);
  if (description.kind == DocumentKind::kPmml) {
    json["statistics"] = StatisticsToJson(description.statistics);
  }
  if (description.kind == DocumentKind::kSettings) {
    json["derivedVariables"] = VariablesToJson(description.derivedVariables);
    json["parameters"] = ParametersToJson(description.parameters);
    json["roles"] = RolesToJson(description.roles);
  }
  json["problems"] = Json::array();
  for (const Problem& problem : description.problems) {
    json["problems"].push_back(ProblemToJson(problem));
  }
  json["notes"] = description.notes;
  return json;
}

}  // namespace

std::string DescriptionsToJson(const std::vector<DocumentDescription>& descriptions) {
  Json json;
  json["documents"] = Json::array();
  for (const auto& description : descriptions) {
    json["documents"].push_back(DocumentToJson(description));
  }
  return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace examples
