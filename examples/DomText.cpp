#include "DomText.h"

#include <xercesc/dom/DOMElement.hpp>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace examples {

std::optional<std::string> AttributeText(const xercesc::DOMElement& element, const char* name) {
  const XMLCh* text = MCXPrsUtil::GetAttribute(element, name);
  if (text == nullptr) return std::nullopt;
  return MCXPrsUtil::ToUTF8(text);
}

std::string TagText(const xercesc::DOMElement& element) {
  return MCXPrsUtil::ToUTF8(element.getTagName());
}

}  // namespace examples
