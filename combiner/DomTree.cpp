#include "combiner/DomTree.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/XMLString.hpp>

#include "combiner/DirectCopy.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "xml/AttributeText.h"

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::DOMElement;
using XERCES_CPP_NAMESPACE::DOMException;
using XERCES_CPP_NAMESPACE::DOMNode;
using XERCES_CPP_NAMESPACE::XMLString;

// The node behind `node` in document order, within the tree below `root`; null at its end.
DOMNode* NextInTree(const DOMNode* node, const DOMNode& root) {
  if (DOMNode* child = node->getFirstChild()) return child;
  for (; node != &root; node = node->getParentNode()) {
    if (DOMNode* sibling = node->getNextSibling()) return sibling;
  }
  return nullptr;
}

}  // namespace

const XMLCh* AttributeReader::Of(const DOMElement& element) const {
  return AttributeText(element, name_.Get());
}

DOMElement* DescendantWalk::Next() {
  for (DOMNode* node = NextInTree(last_, root_); node != nullptr; node = NextInTree(node, root_)) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    auto* element = static_cast<DOMElement*>(node);
    if (!finds_all_ && !XMLString::equals(element->getTagName(), name_.Get())) continue;
    last_ = element;
    return element;
  }
  return nullptr;
}

std::vector<DOMElement*> DescendantElements(const DOMNode& root, const std::string& name) {
  std::vector<DOMElement*> found;
  DescendantWalk walk(root, name);
  while (DOMElement* element = walk.Next()) found.push_back(element);
  return found;
}

std::vector<DOMElement*> ChildElements(const DOMNode& parent, const std::string& name) {
  std::vector<DOMElement*> found;
  for (DOMElement* child = GetFirstChildElmt(parent, name.c_str()); child != nullptr;
       child = GetNextSiblingElmt(*child, name.c_str())) {
    found.push_back(child);
  }
  return found;
}

DOMNode* AppendOrRelease(DOMNode& parent, DOMNode* child) {
  try {
    return parent.appendChild(child);
  } catch (const DOMException&) {
    ReleaseTree(child);
    return nullptr;
  }
}

}  // namespace MCXPrsUtil
