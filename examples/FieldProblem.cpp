#include "FieldProblem.h"

#include <fmt/format.h>

#include <xercesc/dom/DOMElement.hpp>

#include "DomText.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace examples {

using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetNextSiblingElmt;
using xercesc::DOMElement;

const DOMElement* FieldAt(const DOMElement& root, const char* dictionary, const char* tag,
                          std::size_t index) {
  const DOMElement* parent = GetFirstChildElmt(root, dictionary);
  const DOMElement* field = parent == nullptr ? nullptr : GetFirstChildElmt(*parent, tag);
  for (; field != nullptr && index > 0; --index) field = GetNextSiblingElmt(*field, tag);
  return field;
}

std::string NameOf(const DOMElement& field) { return AttributeText(field, "name").value_or(""); }

std::string MissingAttributeText(const DOMElement& field,
                                 std::initializer_list<const char*> attributes) {
  for (const char* name : attributes) {
    if (!AttributeText(field, name)) return fmt::format("it has no {}", name);
  }
  return "";
}

Problem StoppingField(const std::string& name, std::size_t index, int code,
                      const std::string& reason) {
  Problem problem;
  problem.code = code;
  problem.field = name.empty() ? fmt::format("number {}", index + 1) : name;
  problem.text = reason + "; the fields behind it cannot be read";
  return problem;
}

}  // namespace examples
