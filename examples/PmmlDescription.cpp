#include "PmmlDescription.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "DomText.h"
#include "StatisticsReader.h"
#include "StatusText.h"
#include "mccommon/MCFormat.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace examples {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCPMMLParser;
using xercesc::DOMElement;

constexpr int kAttributeMissing = 108;
constexpr int kBadAttribute = 109;
constexpr int kRefused = 111;

// A "DataField" as it stands in the document; an attribute that is absent is not set.
struct Field {
  int position;  // from 1
  std::optional<std::string> name;
  std::optional<std::string> opType;
  std::optional<std::string> dataType;
  bool bins = false;      // its bins are wanted and there are some
  bool repeated = false;  // an earlier field has the same name
};

std::vector<Field> DataFields(const DOMElement& root) {
  std::vector<Field> fields;
  const DOMElement* dictionary = MCXPrsUtil::GetFirstChildElmt(root, "DataDictionary");
  if (dictionary == nullptr) return fields;
  int position = 0;
  for (const DOMElement* e = MCXPrsUtil::GetFirstChildElmt(*dictionary, "DataField"); e != nullptr;
       e = MCXPrsUtil::GetNextSiblingElmt(*e, "DataField")) {
    fields.push_back({++position, AttributeText(*e, "name"), AttributeText(*e, "optype"),
                      AttributeText(*e, "dataType"), false, false});
  }
  return fields;
}

// Reads the fields of a parsed document one run after the other. FillVarList() ends at the first
// field that it cannot read; the next run begins behind that field.
class FieldReader {
 public:
  FieldReader(const MCPMMLParser& parser, const DescribeOptions& options,
              DocumentDescription& description)
      : parser_(parser), options_(options), description_(description) {}

  void Read() {
    const std::vector<Field> all = DataFields(*parser_.GetRootElement());
    SelectFields(all);
    std::size_t next = 0;
    while (next < fields_.size()) next = ReadRun(next, next == 0 ? all.size() : 0);
    ReportUnknownNames(all);
    NoteFieldsWithoutBins();
    description_.variables = DescribeVariables(list_);
  }

 private:
  // A field without a name ends every fill that gets as far.
  void SelectFields(const std::vector<Field>& all) {
    const std::set<std::string> wanted(options_.fields.begin(), options_.fields.end());
    std::set<std::string> seen;
    for (const Field& field : all) {
      if (!field.name) {
        dictionary_stops_ = true;
        AddProblem(kAttributeMissing, fmt::format("number {}", field.position),
                   "it has no name; the fields behind it cannot be read");
        return;
      }
      if (!wanted.empty() && wanted.count(*field.name) == 0) continue;
      fields_.push_back(field);
      fields_.back().bins = HasWantedBins(field);
      fields_.back().repeated = !seen.insert(*field.name).second;
      dictionary_stops_ = dictionary_stops_ || fields_.back().repeated;
    }
  }

  // Reads from `first` on as many fields as one call can, and returns the position to go on at.
  // `whole` is the number of fields that make the run the whole dictionary.
  std::size_t ReadRun(std::size_t first, std::size_t whole) {
    if (fields_[first].repeated) {
      AddProblem(kRefused, *fields_[first].name, "another field has the same name");
      return first + 1;
    }
    const bool bins = fields_[first].bins;
    const std::vector<std::string> names = RunNames(first, bins);
    const unsigned before = list_.Size();
    // No names stands for all fields, and spares the reader a search per field.
    const MCStatus status = parser_.FillVarList(
        list_, names.size() == whole ? std::vector<std::string>() : names, bins);
    const std::size_t added = list_.Size() - before;
    if (added < names.size()) {
      ReportField(fields_[first + added], status, bins);
      return first + added + 1;
    }
    if (!status.IsOK() && !dictionary_stops_) AddProblem(status.GetCode(), "", StatusText(status));
    return first + added;
  }

  // The names from `first` on that want bins, or do not want them, as that one does. A repeated
  // name ends the run: asked for by name, a field is always the first one of that name.
  std::vector<std::string> RunNames(std::size_t first, bool bins) const {
    std::vector<std::string> names;
    for (std::size_t i = first; i < fields_.size(); ++i) {
      if (fields_[i].bins != bins || fields_[i].repeated) break;
      names.push_back(*fields_[i].name);
    }
    return names;
  }

  bool HasWantedBins(const Field& field) const {
    std::vector<double> cutPoints;
    std::vector<std::string> labels;
    return options_.bins && field.opType == "continuous" &&
           parser_.SetBinsFrTransDict(*field.name, cutPoints, labels);
  }

  void ReportField(const Field& field, const MCStatus& status, bool bins) {
    if (bins && status.GetCode() == kRefused &&
        parser_.FillVarList(list_, {*field.name}, false).IsOK()) {
      AddProblem(kRefused, *field.name, BadBinsText(*field.name));
      return;
    }
    AddProblem(status.GetCode(), *field.name, FieldText(field, status));
  }

  std::string BadBinsText(const std::string& name) const {
    std::vector<double> cutPoints;
    std::vector<std::string> labels;
    parser_.SetBinsFrTransDict(name, cutPoints, labels);
    std::vector<std::string> texts;
    texts.reserve(cutPoints.size());
    for (double c : cutPoints) texts.push_back(MCXML_NAMESPACE::Format(c, false, nullptr));
    return fmt::format("its bins do not ascend (they are cut at {}); shown without them",
                       fmt::join(texts, ", "));
  }

  static std::string FieldText(const Field& field, const MCStatus& status) {
    if (status.GetCode() == kAttributeMissing) {
      return fmt::format("it has no {}", field.dataType ? "optype" : "dataType");
    }
    if (status.GetCode() == kBadAttribute && field.dataType) {
      return fmt::format("the data type \"{}\" cannot be read", *field.dataType);
    }
    if (status.GetCode() == kRefused && field.name->empty()) return "its name is empty";
    return StatusText(status.GetCode());
  }

  void ReportUnknownNames(const std::vector<Field>& all) {
    for (const std::string& name : options_.fields) {
      const bool known =
          std::any_of(all.begin(), all.end(), [&](const Field& f) { return f.name == name; });
      if (!known) AddProblem(0, name, "there is no such field");
    }
  }

  void NoteFieldsWithoutBins() {
    if (!options_.bins) return;
    std::vector<std::string> names;
    std::size_t continuous = 0;
    for (const Field& field : fields_) {
      if (field.opType != "continuous") continue;
      ++continuous;
      if (!field.bins) names.push_back(*field.name);
    }
    if (names.empty()) return;
    description_.notes.push_back(names.size() == continuous
                                     ? "no bins are declared for these fields"
                                     : "no bins are declared for " + ShortList(names));
  }

  static std::string ShortList(std::vector<std::string> names) {
    constexpr std::size_t kMostNames = 8;
    const std::size_t count = names.size();
    if (count > kMostNames) names.resize(kMostNames);
    const std::string shown = fmt::format("{}", fmt::join(names, ", "));
    return count > kMostNames ? fmt::format("{} and {} more", shown, count - kMostNames) : shown;
  }

  void AddProblem(int code, const std::string& field, const std::string& text) {
    description_.problems.push_back({code, field, text, {}, {}, ""});
  }

  const MCPMMLParser& parser_;
  const DescribeOptions& options_;
  DocumentDescription& description_;
  MCVarList list_;
  std::vector<Field> fields_;  // those wanted, in document order; repeated names are repeated
  // A field without a name, or a repeated one, gives every run a failure that is reported once.
  bool dictionary_stops_ = false;
};

}  // namespace

void DescribePmml(MCPMMLParser& parser, const DescribeOptions& options,
                  DocumentDescription& description) {
  FieldReader(parser, options, description).Read();
  if (options.statistics) ReadStatistics(parser, options, description);
}

}  // namespace examples
