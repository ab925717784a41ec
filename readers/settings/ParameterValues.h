// The values of a settings parameter, once its element is found.
#ifndef MCXPRSUTIL_READERS_SETTINGS_PARAMETERVALUES_H
#define MCXPRSUTIL_READERS_SETTINGS_PARAMETERVALUES_H

#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "mccommon/MCStatus.h"

namespace MCXPrsUtil {

// What a look-up gives: the element or, where `element` is null, the reason in `status`.
struct FoundParameter {
  MCCommon::MCStatus status;
  XERCES_CPP_NAMESPACE::DOMElement* element = nullptr;
};

// Each function below gives the status of `found`, with its output untouched, if nothing was found.
// The results and what the outputs hold afterwards are told in MCSettingsParser.h.

// Value: bool, double, int or std::string.
template <class Value>
MCCommon::MCStatus ReadScalar(const FoundParameter& found, Value& value);

// Value: double, int or std::string.
template <class Value>
MCCommon::MCStatus ReadArray(const FoundParameter& found, std::vector<Value>& values);

// Value: double, int or std::string. `found` is a matrix element.
template <class Value>
MCCommon::MCStatus ReadMatrix(const FoundParameter& found, std::vector<std::vector<Value>>& rows);

// Names of variables, where "isList" decides between one and many.
MCCommon::MCStatus ReadVariables(const FoundParameter& found, std::vector<std::string>& names);
MCCommon::MCStatus ReadVariable(const FoundParameter& found, std::string& name);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_SETTINGS_PARAMETERVALUES_H
