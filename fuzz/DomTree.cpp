#include "DomTree.h"

#include <algorithm>
#include <utility>
#include <xercesc/dom/DOM.hpp>

namespace fuzz {
namespace {

using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNamedNodeMap;
using xercesc::DOMNode;

// Every unit as it is, also halves of pairs, which UTF-8 has no bytes for.
std::string Text(const XMLCh* units) {
  std::string text;
  for (; units != nullptr && *units != 0; ++units) {
    if (*units >= 0x20 && *units < 0x7F) {
      text += static_cast<char>(*units);
    } else {
      text += '{' + std::to_string(static_cast<unsigned>(*units)) + '}';
    }
  }
  return text;
}

class Lines {
 public:
  // Without recursion: documents may be deep.
  void Walk(const DOMNode& root) {
    const DOMNode* node = &root;
    while (node != nullptr) {
      Enter(*node);
      if (node->getFirstChild() != nullptr && Descends(*node)) {
        node = node->getFirstChild();
        continue;
      }
      Leave(*node);
      while (node != &root && node->getNextSibling() == nullptr) {
        node = node->getParentNode();
        Leave(*node);
      }
      node = node == &root ? nullptr : node->getNextSibling();
    }
    EndText();
  }

  std::vector<std::string> Take() { return std::move(lines_); }

 private:
  static bool Descends(const DOMNode& node) {
    return node.getNodeType() != DOMNode::DOCUMENT_TYPE_NODE;
  }

  void Enter(const DOMNode& node) {
    switch (node.getNodeType()) {
      case DOMNode::TEXT_NODE:
      case DOMNode::CDATA_SECTION_NODE:
        text_ += Text(node.getNodeValue());
        return;
      case DOMNode::ENTITY_REFERENCE_NODE:
      case DOMNode::DOCUMENT_NODE:
        return;
      case DOMNode::ELEMENT_NODE:
        Add("<" + Text(node.getNodeName()));
        AddAttributes(static_cast<const DOMElement&>(node));
        return;
      case DOMNode::DOCUMENT_TYPE_NODE:
        Add("type " + Text(node.getNodeName()));
        return;
      default:
        Add(std::to_string(static_cast<int>(node.getNodeType())) + " " + Text(node.getNodeName()) +
            "=" + Text(node.getNodeValue()));
    }
  }

  void Leave(const DOMNode& node) {
    if (node.getNodeType() == DOMNode::ELEMENT_NODE) Add(">");
  }

  void AddAttributes(const DOMElement& element) {
    const DOMNamedNodeMap* attributes = element.getAttributes();
    std::vector<std::string> found;
    for (XMLSize_t i = 0; i < attributes->getLength(); ++i) {
      const DOMNode* attribute = attributes->item(i);
      found.push_back("@" + Text(attribute->getNodeName()) + "=" + Text(attribute->getNodeValue()));
    }
    std::sort(found.begin(), found.end());
    for (const std::string& line : found) Add(line);
  }

  void EndText() {
    if (!text_.empty()) lines_.push_back("'" + text_);
    text_.clear();
  }

  void Add(const std::string& line) {
    EndText();
    lines_.push_back(line);
  }

  std::vector<std::string> lines_;
  std::string text_;
};

}  // namespace

std::vector<DOMElement*> ElementsOf(DOMElement* root) {
  std::vector<DOMElement*> elements;
  for (DOMNode* node = root; node != nullptr;) {
    if (node->getNodeType() == DOMNode::ELEMENT_NODE) {
      elements.push_back(static_cast<DOMElement*>(node));
    }
    DOMNode* next = node->getFirstChild();
    while (next == nullptr && node != root) {
      next = node->getNextSibling();
      if (next == nullptr) node = node->getParentNode();
    }
    node = next;
  }
  return elements;
}

std::vector<std::string> LinesOf(const DOMDocument& document) {
  Lines lines;
  lines.Walk(document);
  return lines.Take();
}

std::vector<std::string> LinesOf(const DOMElement& element) {
  Lines lines;
  lines.Walk(element);
  return lines.Take();
}

}  // namespace fuzz
