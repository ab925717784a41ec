#include "mcxprsutil/MCXDOMHelpers.h"

#include <cstddef>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "mccommon/MCFormat.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "xml/AttributeText.h"
#include "xml/NumberText.h"
#include "xml/Utf16Name.h"
#include "xml/VendorExtender.h"
#include "xml/XercesPtr.h"

namespace MCXPrsUtil {

using XERCES_CPP_NAMESPACE::DOMDocument;
using XERCES_CPP_NAMESPACE::DOMElement;
using XERCES_CPP_NAMESPACE::DOMException;
using XERCES_CPP_NAMESPACE::DOMNode;
using XERCES_CPP_NAMESPACE::XMLString;

namespace {

using NameEntry = std::pair<unsigned int, const char*>;

constexpr unsigned int kNotFound = 0xFFFFFFFF;
constexpr char kExtension[] = "Extension";
constexpr char kExtender[] = "extender";
constexpr char kName[] = "name";

// Kept out of the way of the comparison that nearly always decides.
[[gnu::noinline]] bool SameConvertedText(const XMLCh* x, const char* s) {
  return XMLString::equals(x, Utf16Name(s).Get());
}

// Compares ASCII names without converting them.
//
// Where the texts differ they differ converted, too, unless `s` turns out to be malformed: then it
// counts as the empty string, which an empty `x` equals.
bool SameText(const XMLCh* x, const char* s) {
  static constexpr XMLCh kEmpty[] = {0};
  if (!x) x = kEmpty;
  const auto* byte = reinterpret_cast<const signed char*>(s);
  // One test for both ends of the loop: the terminator is zero, bytes beyond ASCII are negative.
  const auto goesOn = [&](std::size_t at) {
    return byte[at] > 0 && x[at] == static_cast<XMLCh>(byte[at]);
  };
  std::size_t i = 0;
  // Two at a time: how fast a loop this short runs depends on where the linker puts it.
  while (goesOn(i) && goesOn(++i)) ++i;
  if (byte[i] == 0 && x[i] == 0) return true;
  if (byte[i] >= 0 && *x != 0) return false;
  return SameConvertedText(x, s);
}

bool Matches(const DOMElement& e, const char* name) {
  return !name || SameText(e.getTagName(), name);
}

DOMElement* FirstMatch(DOMNode* n, const char* name) {
  for (; n; n = n->getNextSibling()) {
    if (n->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    auto* e = static_cast<DOMElement*>(n);
    if (Matches(*e, name)) return e;
  }
  return nullptr;
}

bool AttributeEquals(const DOMElement& e, const char* name, const char* value) {
  const XMLCh* text = GetAttribute(e, name);
  return text && SameText(text, value);
}

bool IsTULKExtension(const DOMElement& e, const char* name) {
  if (!AttributeEquals(e, kExtender, kVendorExtender)) return false;
  return !name || AttributeEquals(e, kName, name);
}

DOMElement* FirstTULKExtension(DOMElement* e, const char* name) {
  while (e && !IsTULKExtension(*e, name)) e = GetNextSiblingElmt(*e, kExtension);
  return e;
}

// Runs a change of the document; false when the document refuses it.
template <class Change>
bool Accepts(Change change) {
  try {
    change();
    return true;
  } catch (const DOMException&) {
    return false;
  }
}

}  // namespace

bool XStrEqualsUTF8Str(const XMLCh* x, const char* s) { return SameText(x, s); }

unsigned int FindXStrInList(const XMLCh* x, const std::vector<std::string>& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (SameText(x, names[i].c_str())) return static_cast<unsigned int>(i);
  }
  return kNotFound;
}

unsigned int FindXStrInList(const XMLCh* x, const NameEntry* table) {
  for (unsigned int i = 0; table[i].second; ++i) {
    if (SameText(x, table[i].second)) return i;
  }
  return kNotFound;
}

bool TagNameEquals(const DOMElement& e, const char* name) { return SameText(e.getTagName(), name); }

DOMElement* AsElement(const DOMNode& n, const char* name) {
  if (n.getNodeType() != DOMNode::ELEMENT_NODE) return nullptr;
  const auto& e = static_cast<const DOMElement&>(n);
  // Like the DOM itself, which hands out changeable nodes of a constant parent.
  return Matches(e, name) ? const_cast<DOMElement*>(&e) : nullptr;
}

DOMElement* GetNextSiblingElmt(const DOMNode& n, const char* name) {
  return FirstMatch(n.getNextSibling(), name);
}

DOMElement* GetFirstChildElmt(const DOMNode& n, const char* name) {
  return FirstMatch(n.getFirstChild(), name);
}

// One pass over the children per entry, not one over all: the table is in order of preference.
DOMElement* GetFirstChildElmt(const DOMNode& n, const NameEntry* table, unsigned long& index) {
  index = 0;
  for (unsigned long i = 0; table[i].second; ++i) {
    DOMElement* child = GetFirstChildElmt(n, table[i].second);
    if (!child) continue;
    index = i;
    return child;
  }
  return nullptr;
}

DOMElement* GetFirstChildExtension(const DOMNode& n, const char* name) {
  return FirstTULKExtension(GetFirstChildElmt(n, kExtension), name);
}

DOMElement* GetNextSiblingExtension(const DOMNode& n, const char* name) {
  return FirstTULKExtension(GetNextSiblingElmt(n, kExtension), name);
}

const XMLCh* GetAttribute(const DOMElement& e, const char* name) {
  return AttributeText(e, Utf16Name(name).Get());
}

const XMLCh* GetAttribute(const DOMNode& n, const char* name) {
  const DOMElement* e = AsElement(n, nullptr);
  return e ? GetAttribute(*e, name) : nullptr;
}

int GetDoubleAttribute(const DOMElement& e, const char* name, double& value) {
  const XMLCh* text = GetAttribute(e, name);
  if (!text) return -1;
  return ParseDouble(text, value) ? 0 : 1;
}

int GetIntAttribute(const DOMElement& e, const char* name, int sign, int& value) {
  const XMLCh* text = GetAttribute(e, name);
  if (!text) return -1;
  if (!ParseInt(text, value)) return 1;
  if (sign < 0) return 0;
  return value >= (sign == 0 ? 0 : 1) ? 0 : 1;
}

bool SetAttribute(DOMElement& e, const char* name, const char* value) {
  return Accepts([&] { e.setAttribute(Utf16Name(name).Get(), Utf16Name(value).Get()); });
}

bool SetAttribute(DOMElement& e, const char* name, double value) {
  return SetAttribute(e, name, MCXML_NAMESPACE::Format(value, false, nullptr).c_str());
}

bool AssembleDoublesList(const DOMElement& e, std::vector<double>& values) {
  const DOMNode* text = e.getFirstChild();
  if (!text) {
    values.clear();
    return true;
  }
  if (text->getNextSibling() || text->getNodeType() != DOMNode::TEXT_NODE) return false;

  values.clear();
  const auto isBlank = [](XMLCh c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  for (const XMLCh* from = text->getNodeValue(); *from != 0;) {
    if (isBlank(*from)) {
      ++from;
      continue;
    }
    const XMLCh* token = from;
    while (*from != 0 && !isBlank(*from)) ++from;
    double value = 0;
    if (!ParseDouble(token, from, value)) {
      values.clear();
      return false;
    }
    values.push_back(value);
  }
  return true;
}

DOMElement* CreateElement(DOMDocument& d, const char* name) {
  DOMElement* element = nullptr;
  Accepts([&] { element = d.createElement(Utf16Name(name).Get()); });
  return element;
}

DOMElement* CreateExtension(DOMDocument& d, const char* name) {
  XercesPtr<DOMElement> extension(CreateElement(d, kExtension));
  if (!extension) return nullptr;
  if (!SetAttribute(*extension, kExtender, kVendorExtender)) return nullptr;
  if (!SetAttribute(*extension, kName, name)) return nullptr;
  return extension.release();
}

bool InsertElement(DOMElement& parent, DOMElement* newChild, DOMElement* refChild) {
  if (!newChild || newChild == &parent) return false;  // Xerces would make a cycle
  return Accepts([&] { parent.insertBefore(newChild, refChild); });
}

bool ReplaceElement(DOMElement& parent, DOMElement* newChild, DOMElement* oldChild) {
  if (!newChild || !oldChild || newChild == &parent) return false;
  // Xerces would take the element out.
  if (newChild == oldChild) return oldChild->getParentNode() == &parent;
  return Accepts([&] { parent.replaceChild(newChild, oldChild); });
}

}  // namespace MCXPrsUtil
