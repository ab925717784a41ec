#include "mcxprsutil/MCSettingsParser.h"

#include <iterator>
#include <utility>

#include "readers/DomWalk.h"
#include "readers/Names.h"
#include "readers/settings/ParameterValues.h"
#include "xml/AttributeText.h"
#include "xml/StatusCodes.h"
#include "xml/Utf16Name.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using XERCES_CPP_NAMESPACE::DOMElement;

// A word's position is its ParameterType.
constexpr const XMLCh* kTypes[] = {
    u"string",    // ParamString
    u"double",    // ParamDouble
    u"integer",   // ParamInteger
    u"boolean",   // ParamBoolean
    u"enum",      // ParamEnum
    u"fieldName"  // ParamFieldName
};
static_assert(std::size(kTypes) == MCSettingsParser::ParamUnknown, "one word per known type");

// The "Parameters" of a settings document; null where the path to it ends early. The first element
// of a name decides, also where only a later one would lead on.
DOMElement* FindParameters(const DOMElement& root) {
  DOMElement* element = FirstChild(root, names::kMiningBuildTask);
  if (element != nullptr) element = FirstChild(*element, names::kExtension);
  if (element != nullptr) element = FirstChild(*element, names::kParameters);
  return element;
}

DOMElement* FindNamed(const DOMElement& scope, const XMLCh* element, const char* name) {
  if (name == nullptr) return nullptr;
  const Utf16Name key(name);
  DOMElement* child = FirstChild(scope, element);
  for (; child != nullptr; child = ThisOrNextElement(child->getNextSibling(), element)) {
    const XMLCh* text = AttributeText(*child, names::kName);
    if (text != nullptr && SameText(text, key.Get())) return child;
  }
  return nullptr;
}

}  // namespace

MCSettingsParser::MCSettingsParser() = default;

MCSettingsParser::~MCSettingsParser() = default;

// A document without parameters leaves those of an earlier one in force, on purpose. They are out
// of the way during the parse: nothing is left of them if it fails or throws.
MCStatus MCSettingsParser::ParseToDOM(std::istream& in) {
  std::shared_ptr<DOMElement> earlier = std::move(parameters_);
  if (!MCPMMLParser::ParseToDOM(in).IsOK()) return status_;

  if (DOMElement* found = FindParameters(*root_)) {
    parameters_ = std::shared_ptr<DOMElement>(document_, found);
  } else {
    parameters_ = std::move(earlier);
  }
  if (parameters_ == nullptr) status_ = Failure(kNotSettings);
  return status_;
}

FoundParameter MCSettingsParser::Find(const XMLCh* element, const char* name, void* scope) const {
  if (!status_.IsOK()) return {status_};
  if (document_ == nullptr) return {Failure(kNoDocument)};
  if (parameters_ == nullptr) return {Failure(kNotSettings)};

  const DOMElement& parent = scope == nullptr ? *parameters_ : *static_cast<DOMElement*>(scope);
  DOMElement* found = FindNamed(parent, element, name);
  return {found == nullptr ? Absent(kNoParameter) : MCStatus(), found};
}

MCSettingsParser::ParameterType MCSettingsParser::GetParameterType(const char* name, void* scope) {
  const DOMElement* parameter = Find(names::kParameter, name, scope).element;
  const XMLCh* word = parameter == nullptr ? nullptr : AttributeText(*parameter, names::kType);
  if (word == nullptr) return ParamUnknown;
  int type = ParamString;
  while (type != ParamUnknown && !SameText(word, kTypes[type])) ++type;
  return static_cast<ParameterType>(type);
}

void* MCSettingsParser::GetComplexParameter(const char* name, void* scope) {
  return Find(names::kComplexParameter, name, scope).element;
}

MCStatus MCSettingsParser::GetParameter(const char* name, bool& value, void* scope) const {
  return ReadScalar(Find(names::kParameter, name, scope), value);
}

MCStatus MCSettingsParser::GetParameter(const char* name, double& value, void* scope) const {
  return ReadScalar(Find(names::kParameter, name, scope), value);
}

MCStatus MCSettingsParser::GetParameter(const char* name, int& value, void* scope) const {
  return ReadScalar(Find(names::kParameter, name, scope), value);
}

MCStatus MCSettingsParser::GetParameter(const char* name, std::string& value, void* scope) const {
  return ReadScalar(Find(names::kParameter, name, scope), value);
}

MCStatus MCSettingsParser::GetArray(const char* name, std::vector<int>& values, void* scope) const {
  return ReadArray(Find(names::kParameter, name, scope), values);
}

MCStatus MCSettingsParser::GetArray(const char* name, std::vector<double>& values,
                                    void* scope) const {
  return ReadArray(Find(names::kParameter, name, scope), values);
}

MCStatus MCSettingsParser::GetArray(const char* name, std::vector<std::string>& values,
                                    void* scope) const {
  return ReadArray(Find(names::kParameter, name, scope), values);
}

MCStatus MCSettingsParser::GetMatrix(const char* name, std::vector<std::vector<int>>& rows,
                                     void* scope) {
  return ReadMatrix(Find(names::kMatrixParameter, name, scope), rows);
}

MCStatus MCSettingsParser::GetMatrix(const char* name, std::vector<std::vector<double>>& rows,
                                     void* scope) {
  return ReadMatrix(Find(names::kMatrixParameter, name, scope), rows);
}

MCStatus MCSettingsParser::GetMatrix(const char* name, std::vector<std::vector<std::string>>& rows,
                                     void* scope) {
  return ReadMatrix(Find(names::kMatrixParameter, name, scope), rows);
}

MCStatus MCSettingsParser::GetVariables(const char* name, std::vector<std::string>& names) const {
  return ReadVariables(Find(names::kParameter, name, nullptr), names);
}

MCStatus MCSettingsParser::GetVariables(const char* name, std::string& value) const {
  return ReadVariable(Find(names::kParameter, name, nullptr), value);
}

MCStatus MCSettingsParser::GetPredictors(std::vector<std::string>& names) const {
  return GetArray("inputs", names);
}

MCStatus MCSettingsParser::GetTargetVars(std::vector<std::string>& names) const {
  return GetArray("target", names);
}

MCStatus MCSettingsParser::GetContPredictors(std::vector<std::string>& names) const {
  return GetVariables("ContPredictors", names);
}

MCStatus MCSettingsParser::GetCatPredictors(std::vector<std::string>& names) const {
  return GetVariables("CatPredictors", names);
}

MCStatus MCSettingsParser::GetContResponseVars(std::vector<std::string>& names) const {
  return GetVariables("ContResponses", names);
}

MCStatus MCSettingsParser::GetCatResponseVars(std::vector<std::string>& names) const {
  return GetVariables("CatResponses", names);
}

MCStatus MCSettingsParser::GetFrequencyWeight(std::string& name) const {
  return GetVariables("FrequencyWeightVar", name);
}

}  // namespace MCXPrsUtil
