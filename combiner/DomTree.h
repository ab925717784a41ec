// Walks over DOM trees that cost what the tree is large.
//
// A DOM node list that is asked for its length and its items in turn starts over each time; these
// walks follow the links between the nodes.
#ifndef MCXPRSUTIL_COMBINER_DOMTREE_H
#define MCXPRSUTIL_COMBINER_DOMTREE_H

#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "xml/Utf16Name.h"

namespace MCXPrsUtil {

// Reads one attribute of many elements.
class AttributeReader {
 public:
  explicit AttributeReader(const std::string& name) : name_(name.c_str()) {}

  // The attribute's value, which lives as long as the attribute is not changed; null when the
  // element has no such attribute.
  const XMLCh* Of(const XERCES_CPP_NAMESPACE::DOMElement& element) const;

 private:
  Utf16Name name_;
};

// Finds every element named `name` below `root`, at any depth, in document order: what
// getElementsByTagName gives for an element. The elements that were found may be changed meanwhile.
class DescendantWalk {
 public:
  DescendantWalk(const XERCES_CPP_NAMESPACE::DOMNode& root, const std::string& name)
      : root_(root), name_(name.c_str()), finds_all_(false), last_(&root) {}

  // Finds every element, whatever its name.
  explicit DescendantWalk(const XERCES_CPP_NAMESPACE::DOMNode& root)
      : root_(root), name_(""), finds_all_(true), last_(&root) {}

  // Null at the end; then the walk is over.
  XERCES_CPP_NAMESPACE::DOMElement* Next();

 private:
  const XERCES_CPP_NAMESPACE::DOMNode& root_;
  Utf16Name name_;
  bool finds_all_;
  const XERCES_CPP_NAMESPACE::DOMNode* last_;
};

// All that such a walk finds.
std::vector<XERCES_CPP_NAMESPACE::DOMElement*> DescendantElements(
    const XERCES_CPP_NAMESPACE::DOMNode& root, const std::string& name);

// The child elements named `name`, in document order.
std::vector<XERCES_CPP_NAMESPACE::DOMElement*> ChildElements(
    const XERCES_CPP_NAMESPACE::DOMNode& parent, const std::string& name);

// Appends a node that stands nowhere yet to `parent`. Returns it; when the document refuses, the
// node is released and the result is null.
XERCES_CPP_NAMESPACE::DOMNode* AppendOrRelease(XERCES_CPP_NAMESPACE::DOMNode& parent,
                                               XERCES_CPP_NAMESPACE::DOMNode* child);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_COMBINER_DOMTREE_H
