// Names and attributes of elements as UTF-8.
#ifndef MCX_EXAMPLES_DOMTEXT_H
#define MCX_EXAMPLES_DOMTEXT_H

#include <optional>
#include <string>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace examples {

// The attribute of that name; not set when the element has none.
std::optional<std::string> AttributeText(const XERCES_CPP_NAMESPACE::DOMElement& element,
                                         const char* name);

// The element's name as it stands in the document.
std::string TagText(const XERCES_CPP_NAMESPACE::DOMElement& element);

}  // namespace examples

#endif  // MCX_EXAMPLES_DOMTEXT_H
