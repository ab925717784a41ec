// The readers' way through a DOM tree, with names that are UTF-16 already.
//
// It finds what the functions of MCXDOMHelpers.h find: names are compared exactly, on the
// qualified name, and a null name stands for every element.
#ifndef MCXPRSUTIL_READERS_DOMWALK_H
#define MCXPRSUTIL_READERS_DOMWALK_H

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

namespace MCXPrsUtil {

inline bool SameText(const XMLCh* a, const XMLCh* b) {
  return XERCES_CPP_NAMESPACE::XMLString::equals(a, b);
}

inline bool IsNamed(const XERCES_CPP_NAMESPACE::DOMElement& element, const XMLCh* name) {
  return SameText(element.getTagName(), name);
}

// `node`, or else the first of its following siblings, that is an element named `name`.
inline XERCES_CPP_NAMESPACE::DOMElement* ThisOrNextElement(XERCES_CPP_NAMESPACE::DOMNode* node,
                                                           const XMLCh* name) {
  for (; node != nullptr; node = node->getNextSibling()) {
    if (node->getNodeType() != XERCES_CPP_NAMESPACE::DOMNode::ELEMENT_NODE) continue;
    auto* element = static_cast<XERCES_CPP_NAMESPACE::DOMElement*>(node);
    if (name == nullptr || IsNamed(*element, name)) return element;
  }
  return nullptr;
}

inline XERCES_CPP_NAMESPACE::DOMElement* FirstChild(const XERCES_CPP_NAMESPACE::DOMElement& parent,
                                                    const XMLCh* name) {
  return ThisOrNextElement(parent.getFirstChild(), name);
}

// A range for loops: the child elements of `parent` that are named `name`, in document order.
class Children {
 public:
  class Iterator {
   public:
    Iterator(XERCES_CPP_NAMESPACE::DOMElement* element, const XMLCh* name)
        : element_(element), name_(name) {}
    const XERCES_CPP_NAMESPACE::DOMElement& operator*() const { return *element_; }
    Iterator& operator++() {
      element_ = ThisOrNextElement(element_->getNextSibling(), name_);
      return *this;
    }
    bool operator!=(const Iterator& other) const { return element_ != other.element_; }

   private:
    XERCES_CPP_NAMESPACE::DOMElement* element_;
    const XMLCh* name_;
  };

  // `parent` and `name` must outlive the loop.
  explicit Children(const XERCES_CPP_NAMESPACE::DOMElement& parent, const XMLCh* name = nullptr)
      : parent_(parent), name_(name) {}
  Iterator begin() const { return Iterator(FirstChild(parent_, name_), name_); }
  Iterator end() const { return Iterator(nullptr, name_); }

 private:
  const XERCES_CPP_NAMESPACE::DOMElement& parent_;
  const XMLCh* name_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_DOMWALK_H
