#include "SettingsDescription.h"

#include <fmt/format.h>

#include <iterator>
#include <sstream>
#include <xercesc/dom/DOMElement.hpp>

#include "DomText.h"
#include "FieldChoice.h"
#include "FieldProblem.h"
#include "ParameterReader.h"
#include "StatusText.h"
#include "mcxprsutil/MCSettingsParser.h"

namespace examples {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCSettingsParser;
using xercesc::DOMElement;

constexpr int kAttributeMissing = 108;
constexpr int kBadAttribute = 109;
constexpr int kNoBins = 110;
constexpr int kRefused = 111;
constexpr int kNoSuchParameter = 120;
constexpr int kNoValue = 123;

using RoleGetter = MCStatus (MCSettingsParser::*)(std::vector<std::string>&) const;

struct Role {
  const char* parameter;
  const char* text;
  RoleGetter get;
};

constexpr Role kRoles[] = {
    {"inputs", "predictors", &MCSettingsParser::GetPredictors},
    {"target", "targets", &MCSettingsParser::GetTargetVars},
    {"ContPredictors", "continuous predictors", &MCSettingsParser::GetContPredictors},
    {"CatPredictors", "categorical predictors", &MCSettingsParser::GetCatPredictors},
    {"ContResponses", "continuous responses", &MCSettingsParser::GetContResponseVars},
    {"CatResponses", "categorical responses", &MCSettingsParser::GetCatResponseVars},
};
static_assert(std::size(kRoles) == 6, "every role that many variables can play");

constexpr const char* kWeight = "FrequencyWeightVar";

class SettingsReader {
 public:
  SettingsReader(MCSettingsParser& parser, const DescribeOptions& options,
                 DocumentDescription& description)
      : parser_(parser), options_(options), description_(description) {}

  void Read() {
    ReadVariables();
    ReadDerivedVariables();
    ChooseFields(options_, description_);
    ReadParameters(parser_, description_);
    for (const Role& role : kRoles) ReadRole(role);
    ReadWeight();
  }

 private:
  // One field without bins would hide the fields behind it: then all are read without.
  void ReadVariables() {
    MCVarList binned;
    if (options_.bins) {
      const MCStatus status = parser_.FillVarList(binned, true);
      if (status.GetCode() != kNoBins) return TakeVariables(binned, status);
      const DOMElement* field =
          FieldAt(*parser_.GetRootElement(), "DataDictionary", "DataField", binned.Size());
      description_.notes.push_back(fmt::format(
          "bins are not shown, because none are declared for {}", field ? NameOf(*field) : "all"));
    }
    MCVarList list;
    TakeVariables(list, parser_.FillVarList(list, false));
  }

  void TakeVariables(MCVarList& list, const MCStatus& status) {
    if (!status.IsOK()) ReportField("DataDictionary", "DataField", list.Size(), status);
    description_.variables = DescribeVariables(list);
    AddDataTypes(list, description_.variables);
  }

  void ReadDerivedVariables() {
    MCVarList list;
    const MCStatus status = parser_.FillTransDict(list);
    if (!status.IsOK()) {
      ReportField("TransformationDictionary", "DerivedField", list.Size(), status);
    }
    description_.derivedVariables = DescribeVariables(list);
    AddDataTypes(list, description_.derivedVariables);
  }

  void ReportField(const char* dictionary, const char* tag, std::size_t index,
                   const MCStatus& status) {
    const DOMElement* field = FieldAt(*parser_.GetRootElement(), dictionary, tag, index);
    const int code = status.GetCode();
    description_.problems.push_back(
        field == nullptr ? StoppingField("", index, code, StatusText(code))
                         : StoppingField(NameOf(*field), index, code, FieldText(*field, code)));
  }

  static std::string FieldText(const DOMElement& field, int code) {
    if (code == kAttributeMissing) {
      std::string text = MissingAttributeText(field, {"name", "dataType", "optype"});
      if (!text.empty()) return text;
    }
    if (code == kBadAttribute) {
      return fmt::format("its data type \"{}\" or one of its intervals cannot be read",
                         AttributeText(field, "dataType").value_or(""));
    }
    if (code == kRefused) return "it was refused: its name is empty or used twice";
    return StatusText(code);
  }

  void ReadRole(const Role& role) {
    std::vector<std::string> names;
    Take(role.parameter, role.text, (parser_.*role.get)(names), names);
  }

  void ReadWeight() {
    std::string name;
    const MCStatus status = parser_.GetFrequencyWeight(name);
    std::vector<std::string> names;
    if (!name.empty()) names.push_back(name);
    Take(kWeight, "frequency weight", status, names);
  }

  // That nothing plays a role is no failure.
  void Take(const char* parameter, const char* text, const MCStatus& status,
            const std::vector<std::string>& names) {
    const int code = status.GetCode();
    if (code == kNoSuchParameter || code == kNoValue) return;
    if (status.IsOK()) {
      if (!names.empty()) description_.roles.push_back({parameter, text, names});
      return;
    }
    const bool noValue = code == kAttributeMissing;
    description_.problems.push_back(
        {code,
         "",
         noValue ? "it names no variables: it has no value, or a list without isList=\"true\""
                 : StatusText(code),
         {},
         {},
         parameter});
  }

  MCSettingsParser& parser_;
  const DescribeOptions& options_;
  DocumentDescription& description_;
};

}  // namespace

void DescribeSettings(const std::string& text, const DescribeOptions& options,
                      DocumentDescription& description) {
  description.kind = DocumentKind::kSettings;
  MCSettingsParser parser;
  std::istringstream in(text);
  if (const MCStatus status = parser.ParseToDOM(in); !status.IsOK()) {
    description.problems.push_back(
        {status.GetCode(), "", StatusText(status.GetCode()), {}, {}, ""});
    return;
  }
  SettingsReader(parser, options, description).Read();
}

}  // namespace examples
