#include "readers/settings/ParameterValues.h"

#include <cstddef>
#include <utility>

#include "mcxprsutil/MCXTranscoder.h"
#include "readers/DomWalk.h"
#include "readers/Names.h"
#include "xml/AttributeText.h"
#include "xml/NumberText.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using XERCES_CPP_NAMESPACE::DOMElement;
using XERCES_CPP_NAMESPACE::DOMNode;

// The text of one value; false when the type asked for refuses it.

bool ReadText(const XMLCh* text, bool& value) {
  const bool isTrue = SameText(text, names::kTrue);
  if (!isTrue && !SameText(text, names::kFalse)) return false;
  value = isTrue;
  return true;
}

bool ReadText(const XMLCh* text, double& value) { return ParseDouble(text, value); }

// A negative number is stored before it is refused: callers see it.
bool ReadText(const XMLCh* text, int& value) { return ParseInt(text, value) && value >= 0; }

bool ReadText(const XMLCh* text, std::string& value) {
  value = ToUTF8(text);
  return true;
}

// An empty text is no entry of a list, but it is a cell of a matrix.

template <class Value>
bool IsEntry(const Value&) {
  return true;
}

bool IsEntry(const std::string& value) { return !value.empty(); }

// Takes the "value" of an element as the next entry. `absent` is the status without that attribute.
template <class Value>
MCStatus AppendEntry(const DOMElement& element, const MCStatus& absent,
                     std::vector<Value>& values) {
  const XMLCh* text = AttributeText(element, names::kValueText);
  if (text == nullptr) return absent;
  Value value{};
  if (!ReadText(text, value)) return Failure(kAttributeInvalid);
  if (IsEntry(value)) values.push_back(std::move(value));
  return MCStatus();
}

// Takes the entries of a "ListValue"; the first failure ends the walk.
template <class Value>
MCStatus AppendEntries(const DOMElement& list, const MCStatus& absent, std::vector<Value>& values) {
  for (const DOMElement& entry : Children(list, names::kValue)) {
    if (MCStatus status = AppendEntry(entry, absent, values); !status.IsOK()) return status;
  }
  return MCStatus();
}

bool IsDeclaredList(const DOMElement& parameter) {
  const XMLCh* isList = AttributeText(parameter, names::kIsList);
  return isList != nullptr && SameText(isList, names::kTrue);
}

std::size_t CountChildNodes(const DOMElement& element) {
  std::size_t count = 0;
  for (const DOMNode* node = element.getFirstChild(); node; node = node->getNextSibling()) ++count;
  return count;
}

// The room is meant for the rows, which are appended behind it all the same: callers know that the
// rows come last.
template <class Value>
void MakeRoom(const DOMElement& matrix, std::vector<std::vector<Value>>& rows) {
  rows.resize(CountChildNodes(matrix));
}

void MakeRoom(const DOMElement&, std::vector<std::vector<std::string>>& rows) { rows.clear(); }

template <class Value>
std::vector<Value> ReadRow(const DOMElement& element) {
  std::vector<Value> row;
  for (const DOMElement& cell : Children(element, names::kValue)) {
    const XMLCh* text = AttributeText(cell, names::kValueText);
    Value value{};
    if (text != nullptr && ReadText(text, value)) row.push_back(std::move(value));
  }
  return row;
}

}  // namespace

template <class Value>
MCStatus ReadScalar(const FoundParameter& found, Value& value) {
  if (found.element == nullptr) return found.status;
  if (const XMLCh* text = AttributeText(*found.element, names::kValueText)) {
    return ReadText(text, value) ? MCStatus() : Failure(kAttributeInvalid);
  }
  const bool hasList = FirstChild(*found.element, names::kListValue) != nullptr;
  return hasList ? Failure(kListForSingleValue) : Absent(kNoParameterValue);
}

template <class Value>
MCStatus ReadArray(const FoundParameter& found, std::vector<Value>& values) {
  if (found.element == nullptr) return found.status;
  values.clear();
  const MCStatus absent = Absent(kNoParameterValue);
  const DOMElement* list = FirstChild(*found.element, names::kListValue);
  if (list == nullptr) return AppendEntry(*found.element, absent, values);
  if (FirstChild(*list, names::kValue) == nullptr) return absent;
  return AppendEntries(*list, absent, values);
}

template <class Value>
MCStatus ReadMatrix(const FoundParameter& found, std::vector<std::vector<Value>>& rows) {
  if (found.element == nullptr) return found.status;
  MakeRoom(*found.element, rows);
  for (const DOMElement& row : Children(*found.element, names::kArrayParameter)) {
    rows.push_back(ReadRow<Value>(row));
  }
  return MCStatus();
}

MCStatus ReadVariables(const FoundParameter& found, std::vector<std::string>& names) {
  if (found.element == nullptr) return found.status;
  names.clear();
  const MCStatus absent = Failure(kAttributeMissing);
  if (!IsDeclaredList(*found.element)) return AppendEntry(*found.element, absent, names);
  const DOMElement* list = FirstChild(*found.element, names::kListValue);
  return list == nullptr ? Failure(kListMissing) : AppendEntries(*list, absent, names);
}

MCStatus ReadVariable(const FoundParameter& found, std::string& name) {
  if (found.element == nullptr) return found.status;
  if (const XMLCh* text = AttributeText(*found.element, names::kValueText)) {
    name = ToUTF8(text);
    return MCStatus();
  }
  return Failure(IsDeclaredList(*found.element) ? kListForSingleValue : kAttributeMissing);
}

template MCStatus ReadScalar(const FoundParameter&, bool&);
template MCStatus ReadScalar(const FoundParameter&, double&);
template MCStatus ReadScalar(const FoundParameter&, int&);
template MCStatus ReadScalar(const FoundParameter&, std::string&);

template MCStatus ReadArray(const FoundParameter&, std::vector<int>&);
template MCStatus ReadArray(const FoundParameter&, std::vector<double>&);
template MCStatus ReadArray(const FoundParameter&, std::vector<std::string>&);

template MCStatus ReadMatrix(const FoundParameter&, std::vector<std::vector<int>>&);
template MCStatus ReadMatrix(const FoundParameter&, std::vector<std::vector<double>>&);
template MCStatus ReadMatrix(const FoundParameter&, std::vector<std::vector<std::string>>&);

}  // namespace MCXPrsUtil
