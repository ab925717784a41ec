#include "StatisticsReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "DomText.h"
#include "StatusText.h"
#include "mccommon/MCMissingValue.h"
#include "mccommon/MCUniStats.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace examples {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCUniStats;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetNextSiblingElmt;
using xercesc::DOMElement;

constexpr int kAttributeMissing = 108;
constexpr int kElementMissing = 113;
constexpr int kBadStatistics = 116;

std::optional<double> Known(double figure) {
  if (figure == MCMV::gMissingValue) return std::nullopt;
  return figure;
}

const VariableDescription* FindVariable(const std::vector<VariableDescription>& variables,
                                        const std::string& name) {
  const auto found = std::find_if(variables.begin(), variables.end(),
                                  [&](const auto& variable) { return variable.name == name; });
  return found == variables.end() ? nullptr : &*found;
}

std::vector<FrequencyDescription> BinFrequencies(const MCUniStats& stats) {
  std::vector<FrequencyDescription> bins;
  const std::vector<double>& cutPoints = stats.GetCutPoints();
  for (std::size_t i = 0; i + 1 < cutPoints.size(); ++i) {
    bins.push_back({{Known(cutPoints[i]), Known(cutPoints[i + 1])}, {}, stats.GetFrequencies()[i]});
  }
  return bins;
}

// Statistics name no categories: they follow the dictionary's order, if there are as many.
std::vector<FrequencyDescription> CategoryFrequencies(const MCUniStats& stats,
                                                      const VariableDescription* variable) {
  const std::vector<double>& frequencies = stats.GetFrequencies();
  const bool fits = variable != nullptr && variable->categories.size() == frequencies.size();
  std::vector<FrequencyDescription> categories;
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    categories.push_back({{}, {}, frequencies[i]});
    if (fits) categories.back().category = variable->categories[i];
  }
  return categories;
}

FieldStatistics Describe(const MCUniStats& stats, const VariableDescription* variable) {
  FieldStatistics field;
  field.field = stats.GetName();
  if (variable != nullptr) field.label = variable->label;
  field.total = stats.GetTotal();
  field.continuous = stats.IsContinuous();
  const auto& summary = stats.GetSummary();
  field.minimum = Known(summary.minimum);
  field.maximum = Known(summary.maximum);
  field.mean = Known(summary.mean);
  field.standardDeviation = Known(summary.standardDeviation);
  field.frequencies =
      field.continuous ? BinFrequencies(stats) : CategoryFrequencies(stats, variable);
  return field;
}

std::string ProblemText(const DOMElement& element, int code) {
  const DOMElement* counts = GetFirstChildElmt(element, "Counts");
  const DOMElement* numeric = GetFirstChildElmt(element, "NumericInfo");
  const DOMElement* bins = GetFirstChildElmt(element, "ContStats");
  if (code == kAttributeMissing && !AttributeText(element, "field")) return "they name no field";
  if (code == kElementMissing && counts == nullptr) return "they have no Counts";
  if (code == kElementMissing && numeric == nullptr) {
    return "they have neither NumericInfo nor a DiscrStats with an Array";
  }
  if (code == kElementMissing) return "their ContStats has intervals, but no Array of frequencies";
  if (code == kBadStatistics && numeric != nullptr && bins == nullptr) {
    return "they have NumericInfo, but no ContStats";
  }
  return StatusText(code);
}

// Walks the statistics of one model. The reader keeps the model that it was told last.
class ModelWalk {
 public:
  ModelWalk(const MCXPrsUtil::MCPMMLParser& parser, const DescribeOptions& options,
            DocumentDescription& description)
      : parser_(parser), options_(options), description_(description) {}

  std::vector<FieldStatistics> Read() {
    std::vector<FieldStatistics> fields;
    const DOMElement* cursor = nullptr;
    do {
      MCUniStats stats;
      const MCStatus status = parser_.FillUniStats(stats, cursor);
      if (cursor == nullptr || !IsWanted(*cursor)) continue;
      if (status.IsOK()) {
        fields.push_back(Describe(stats, FindVariable(description_.variables, stats.GetName())));
      } else {
        Report(*cursor, status.GetCode());
      }
    } while (cursor != nullptr);
    return fields;
  }

 private:
  bool IsWanted(const DOMElement& element) const {
    const auto& wanted = options_.fields;
    return wanted.empty() ||
           std::find(wanted.begin(), wanted.end(), AttributeText(element, "field").value_or("")) !=
               wanted.end();
  }

  void Report(const DOMElement& element, int code) {
    const std::string field = AttributeText(element, "field").value_or("");
    description_.problems.push_back(
        {code, field, "its statistics are not shown: " + ProblemText(element, code), {}, {}, ""});
  }

  const MCXPrsUtil::MCPMMLParser& parser_;
  const DescribeOptions& options_;
  DocumentDescription& description_;
};

}  // namespace

void ReadStatistics(MCXPrsUtil::MCPMMLParser& parser, const DescribeOptions& options,
                    DocumentDescription& description) {
  for (const DOMElement* model = GetFirstChildElmt(*parser.GetRootElement(), nullptr);
       model != nullptr; model = GetNextSiblingElmt(*model, nullptr)) {
    if (GetFirstChildElmt(*model, "ModelStats") == nullptr) continue;
    parser.SetModelElmt(*model);
    std::vector<FieldStatistics> fields = ModelWalk(parser, options, description).Read();
    if (fields.empty()) continue;
    description.statistics.push_back(
        {TagText(*model), AttributeText(*model, "modelName").value_or(""), std::move(fields)});
  }
}

}  // namespace examples
