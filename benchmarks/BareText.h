/// Reading names and numbers of a DOM by hand, for walks that trust the document.
#ifndef BENCHMARKS_BARETEXT_H_
#define BENCHMARKS_BARETEXT_H_

#include <charconv>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

namespace bench {

inline bool HasName(const xercesc::DOMElement& element, const XMLCh* name) {
  return xercesc::XMLString::equals(element.getTagName(), name);
}

/// The first child of that name; null without one.
inline const xercesc::DOMElement* ChildNamed(const xercesc::DOMElement& parent, const XMLCh* name) {
  const xercesc::DOMElement* child = parent.getFirstElementChild();
  while (child != nullptr && !HasName(*child, name)) child = child->getNextElementSibling();
  return child;
}

/// Takes the next number of a list and moves `text` behind it. The fastest way that the standard
/// library offers, and well ahead of XMLDouble, which a reader might use as well.
inline double TakeNumber(const XMLCh*& text) {
  char digits[40];
  char* end = digits;
  while (*text == u' ') ++text;
  while (*text > u' ' && end != digits + sizeof digits) *end++ = static_cast<char>(*text++);
  double number = 0;
  std::from_chars(digits, end, number);
  return number;
}

inline double NumberAttribute(const xercesc::DOMElement& element, const XMLCh* name) {
  const XMLCh* text = element.getAttribute(name);
  return TakeNumber(text);
}

}  // namespace bench

#endif  // BENCHMARKS_BARETEXT_H_
