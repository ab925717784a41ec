#include "ParameterReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "DomText.h"
#include "StatusText.h"
#include "mccommon/MCFormat.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace examples {
namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetNextSiblingElmt;
using MCXPrsUtil::MCSettingsParser;
using xercesc::DOMElement;
using Shape = ParameterDescription::Shape;
using Values = std::vector<ParameterValue>;

constexpr int kBadAttribute = 109;
constexpr int kNoValue = 123;
// No settings nest as deep as this; a document that does is out to exhaust the stack.
constexpr int kDeepestGroup = 100;

// The format's own spelling of the matrix element, and the one that it does not know.
constexpr const char* kMatrix = "MatrixParmeter";
constexpr const char* kMisspeltMatrix = "MatrixParameter";

constexpr const char* kTypes[] = {"string", "double", "integer", "boolean", "enum", "fieldName"};
static_assert(std::size(kTypes) == MCSettingsParser::ParamUnknown, "one word per known type");

ParameterValue ValueOf(const std::string& text) { return {text, {}, {}}; }
ParameterValue ValueOf(double number) {
  return {MCXML_NAMESPACE::Format(number, false, nullptr), number, {}};
}
ParameterValue ValueOf(int number) { return {std::to_string(number), number, {}}; }
ParameterValue ValueOf(bool truth) { return {truth ? "true" : "false", {}, truth}; }

template <class Number>
Values ValuesOf(const std::vector<Number>& numbers) {
  Values values;
  for (const auto& number : numbers) values.push_back(ValueOf(number));
  return values;
}

// A parameter that is being read: where it stands, and what it is called for the user.
struct Place {
  std::string name;
  std::string path;  // with the names of its groups
  DOMElement* scope;
  const DOMElement* element;
};

// Walks one scope after the other. The document tells the names, the getters the values.
class ParameterWalk {
 public:
  ParameterWalk(MCSettingsParser& parser, DocumentDescription& description)
      : parser_(parser), description_(description) {}

  std::vector<ParameterDescription> Read(DOMElement& scope, const std::string& path, int depth) {
    std::vector<ParameterDescription> parameters;
    std::set<std::pair<std::string, std::string>> seen;  // tag and name
    for (DOMElement* e = GetFirstChildElmt(scope, nullptr); e != nullptr;
         e = GetNextSiblingElmt(*e, nullptr)) {
      const std::string tag = TagText(*e);
      if (!IsParameter(tag, path)) continue;
      const auto name = AttributeText(*e, "name");
      if (!name) {
        Note(path, fmt::format("a {} without a name is not read", tag));
      } else if (!seen.insert({tag, *name}).second) {
        Note(path + *name, "there is an earlier one of this name, and only that is read");
      } else {
        parameters.push_back(ReadOne(tag, {*name, path + *name, &scope, e}, depth));
      }
    }
    return parameters;
  }

 private:
  bool IsParameter(const std::string& tag, const std::string& path) {
    if (tag == kMisspeltMatrix) {
      Note(path, fmt::format("a {} is not read: the format spells it {}", tag, kMatrix));
    }
    return tag == "Parameter" || tag == "ComplexParameter" || tag == kMatrix;
  }

  ParameterDescription ReadOne(const std::string& tag, const Place& place, int depth) {
    if (tag == kMatrix) return ReadMatrix(place);
    return tag == "Parameter" ? ReadParameter(place) : ReadGroup(place, depth);
  }

  ParameterDescription ReadGroup(const Place& place, int depth) {
    ParameterDescription group;
    group.name = place.name;
    group.shape = Shape::kGroup;
    if (depth >= kDeepestGroup) {
      Report(place, 0,
             fmt::format("groups nest deeper than {}; what is in it is not shown", kDeepestGroup));
      return group;
    }
    void* scope = parser_.GetComplexParameter(place.name.c_str(), place.scope);
    if (scope != nullptr) {
      group.children = Read(*static_cast<DOMElement*>(scope), place.path + "/", depth + 1);
    }
    return group;
  }

  ParameterDescription ReadParameter(const Place& place) {
    const auto type = parser_.GetParameterType(place.name.c_str(), place.scope);
    ParameterDescription parameter;
    parameter.name = place.name;
    if (type != MCSettingsParser::ParamUnknown) parameter.type = kTypes[type];
    std::string single;
    const MCStatus status = parser_.GetParameter(place.name.c_str(), single, place.scope);
    // A list wins over a single value, as it does for the getters of arrays.
    if (GetFirstChildElmt(*place.element, "ListValue") != nullptr) {
      parameter.shape = Shape::kList;
      ReadListAs(type, place, parameter.values);
    } else if (status.IsOK()) {
      ReadSingleAs(type, place, single, parameter.values);
    }
    return parameter;
  }

  void ReadSingleAs(MCSettingsParser::ParameterType type, const Place& place,
                    const std::string& text, Values& values) {
    values = {ValueOf(text)};
    if (type == MCSettingsParser::ParamInteger) ReadSingle<int>(place, values.front());
    if (type == MCSettingsParser::ParamDouble) ReadSingle<double>(place, values.front());
    if (type == MCSettingsParser::ParamBoolean) ReadSingle<bool>(place, values.front());
  }

  template <class Value>
  void ReadSingle(const Place& place, ParameterValue& value) {
    Value read{};
    const MCStatus status = parser_.GetParameter(place.name.c_str(), read, place.scope);
    if (status.IsOK()) {
      value = ValueOf(read);
    } else {
      Report(place, status.GetCode(), SingleText<Value>(status.GetCode(), value.text));
    }
  }

  template <class Value>
  static std::string SingleText(int code, const std::string& text) {
    if (code != kBadAttribute) return StatusText(code);
    return fmt::format("\"{}\" is not {}", text, Wanted(Value{}));
  }

  static const char* Wanted(bool) { return "true or false"; }
  static const char* Wanted(int) { return "a whole number from 0 on"; }
  static const char* Wanted(double) { return "a number"; }
  static const char* Wanted(const std::string&) { return "a text"; }

  void ReadListAs(MCSettingsParser::ParameterType type, const Place& place, Values& values) {
    ReadList<std::string>(place, values);
    if (type == MCSettingsParser::ParamInteger) ReadList<int>(place, values);
    if (type == MCSettingsParser::ParamDouble) ReadList<double>(place, values);
  }

  // An empty list is none: the getters take it for a parameter without a value.
  template <class Value>
  void ReadList(const Place& place, Values& values) {
    std::vector<Value> read;
    const MCStatus status = parser_.GetArray(place.name.c_str(), read, place.scope);
    if (status.IsOK()) {
      values = ValuesOf(read);
    } else if (status.GetCode() == kBadAttribute) {
      Report(place, kBadAttribute,
             fmt::format("entry {} is not {}", read.size() + 1, Wanted(Value{})));
    } else if (status.GetCode() != kNoValue) {
      Report(place, status.GetCode(), StatusText(status.GetCode()));
    }
  }

  // Matrices have no type: one whose cells are all numbers is shown as one of numbers.
  ParameterDescription ReadMatrix(const Place& place) {
    ParameterDescription matrix;
    matrix.name = place.name;
    matrix.shape = Shape::kMatrix;
    std::vector<std::vector<std::string>> texts;
    const MCStatus status = parser_.GetMatrix(place.name.c_str(), texts, place.scope);
    if (!status.IsOK()) Report(place, status.GetCode(), StatusText(status.GetCode()));
    for (const auto& row : texts) matrix.rows.push_back(ValuesOf(row));
    const auto numbers = Numbers(place, texts);
    for (std::size_t i = 0; i < numbers.size(); ++i) matrix.rows[i] = ValuesOf(numbers[i]);
    matrix.type = numbers.empty() ? "string" : "double";
    return matrix;
  }

  // The cells as numbers; empty unless every one is a number. The rows come last in what is read.
  std::vector<std::vector<double>> Numbers(const Place& place,
                                           const std::vector<std::vector<std::string>>& texts) {
    std::vector<std::vector<double>> rows;
    const MCStatus status = parser_.GetMatrix(place.name.c_str(), rows, place.scope);
    if (!status.IsOK() || rows.size() < texts.size()) return {};
    rows.erase(rows.begin(), rows.end() - static_cast<std::ptrdiff_t>(texts.size()));
    const bool complete =
        std::equal(rows.begin(), rows.end(), texts.begin(),
                   [](const auto& a, const auto& b) { return a.size() == b.size(); });
    return complete ? rows : std::vector<std::vector<double>>();
  }

  void Report(const Place& place, int code, const std::string& text) {
    description_.problems.push_back({code, "", text, {}, {}, place.path});
  }

  void Note(const std::string& path, const std::string& text) {
    description_.notes.push_back(path.empty() ? text : fmt::format("parameter {}: {}", path, text));
  }

  MCSettingsParser& parser_;
  DocumentDescription& description_;
};

}  // namespace

void ReadParameters(MCSettingsParser& parser, DocumentDescription& description) {
  DOMElement* element = parser.GetRootElement();
  for (const char* name : {"MiningBuildTask", "Extension", "Parameters"}) {
    element = GetFirstChildElmt(*element, name);
    if (element == nullptr) return;
  }
  description.parameters = ParameterWalk(parser, description).Read(*element, "", 0);
}

}  // namespace examples
