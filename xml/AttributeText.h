// The text of an attribute whose name is in UTF-16 already.
#ifndef MCXPRSUTIL_XML_ATTRIBUTETEXT_H
#define MCXPRSUTIL_XML_ATTRIBUTETEXT_H

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace MCXPrsUtil {

// Null when the element has no such attribute, empty when it is written as empty. The text lives as
// long as the attribute is not changed.
inline const XMLCh* AttributeText(const XERCES_CPP_NAMESPACE::DOMElement& element,
                                  const XMLCh* name) {
  using XERCES_CPP_NAMESPACE::DOMNode;
  const XERCES_CPP_NAMESPACE::DOMAttr* attribute = element.getAttributeNode(name);
  if (attribute == nullptr) return nullptr;
  // getValue() gives the same, but finds its way through a dynamic_cast, which costs more than all
  // the rest of a read.
  const DOMNode* only = attribute->getFirstChild();
  if (only != nullptr && only->getNextSibling() == nullptr &&
      only->getNodeType() == DOMNode::TEXT_NODE) {
    return only->getNodeValue();
  }
  return attribute->getValue();
}

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_ATTRIBUTETEXT_H
