#include "DocumentMeasures.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

namespace fuzz {
namespace {

using xercesc::DOMAttr;
using xercesc::DOMDocument;
using xercesc::DOMDocumentType;
using xercesc::DOMElement;
using xercesc::DOMEntity;
using xercesc::DOMNamedNodeMap;
using xercesc::DOMNode;
using xercesc::XMLString;

std::size_t Units(const XMLCh* text) { return XMLString::stringLen(text); }

class Meter {
 public:
  // Without recursion: documents may be deep.
  void Walk(const DOMDocument& document) {
    if (const DOMDocumentType* type = document.getDoctype()) MeasureType(*type);
    const DOMNode* node = document.getFirstChild();
    while (node != nullptr) {
      Enter(*node);
      if (node->getFirstChild() != nullptr && node->getNodeType() != DOMNode::DOCUMENT_TYPE_NODE) {
        node = node->getFirstChild();
        continue;
      }
      Leave(*node);
      while (node->getNextSibling() == nullptr && node->getParentNode() != &document) {
        node = node->getParentNode();
        Leave(*node);
      }
      node = node->getNextSibling();
    }
  }

  Measures Take() {
    measures_.names = names_.size();
    // The text of an external entity has no limit of its own.
    if (has_external_) measures_.expansions = measures_.entity_units = 0;
    measures_.needs_all |= has_external_;
    return measures_;
  }

 private:
  void MeasureType(const DOMDocumentType& type) {
    measures_.has_doctype = true;
    has_external_ = type.getSystemId() != nullptr;
    const DOMNamedNodeMap* entities = type.getEntities();
    for (XMLSize_t i = 0; i < entities->getLength(); ++i) {
      const auto& entity = static_cast<const DOMEntity&>(*entities->item(i));
      names_.insert(entity.getNodeName());
      const bool is_parsed = entity.getNotationName() == nullptr;
      if (entity.getSystemId() != nullptr && is_parsed) has_external_ = true;
    }
    has_entities_ = entities->getLength() != 0;
    const DOMNamedNodeMap* notations = type.getNotations();
    for (XMLSize_t i = 0; i < notations->getLength(); ++i) {
      names_.insert(notations->item(i)->getNodeName());
    }
  }

  void Enter(const DOMNode& node) {
    switch (node.getNodeType()) {
      case DOMNode::ELEMENT_NODE:
        measures_.depth = std::max(measures_.depth, ++depth_);
        return MeasureTag(static_cast<const DOMElement&>(node));
      case DOMNode::ENTITY_REFERENCE_NODE:
        ++measures_.expansions;
        return open_entities_.push_back(0);
      case DOMNode::TEXT_NODE:
        measures_.text_units += Units(node.getNodeValue());
        return MeasureEntity(node);
      case DOMNode::CDATA_SECTION_NODE:
        NoteMarkup(Units(node.getNodeValue()));
        return MeasureEntity(node);
      case DOMNode::COMMENT_NODE:
      case DOMNode::PROCESSING_INSTRUCTION_NODE:
        return NoteMarkup(Units(node.getNodeValue()));
      default:
        return;
    }
  }

  void Leave(const DOMNode& node) {
    if (node.getNodeType() == DOMNode::ELEMENT_NODE) --depth_;
    if (node.getNodeType() != DOMNode::ENTITY_REFERENCE_NODE) return;
    measures_.entity_units = std::max(measures_.entity_units, open_entities_.back());
    NoteMarkup(open_entities_.back());  // its declaration
    open_entities_.pop_back();
  }

  void MeasureTag(const DOMElement& element) {
    std::size_t units = Units(element.getTagName());
    names_.insert(element.getTagName());
    const DOMNamedNodeMap* attributes = element.getAttributes();
    for (XMLSize_t i = 0; i < attributes->getLength(); ++i) {
      const auto& attribute = static_cast<const DOMAttr&>(*attributes->item(i));
      names_.insert(attribute.getName());
      if (!attribute.getSpecified()) {
        measures_.needs_all = true;
      } else if (!has_entities_) {  // which may make a value longer than it is written
        units += Units(attribute.getName()) + Units(attribute.getValue());
      }
    }
    NoteMarkup(units);
  }

  void MeasureEntity(const DOMNode& text) {
    if (!open_entities_.empty()) open_entities_.back() += Units(text.getNodeValue());
  }

  // No encoding has more units than bytes.
  void NoteMarkup(std::size_t units) {
    measures_.markup_units = std::max(measures_.markup_units, units);
  }

  Measures measures_;
  std::set<std::basic_string<XMLCh>> names_;
  std::vector<std::size_t> open_entities_;  // the units of each so far
  std::size_t depth_ = 0;
  bool has_entities_ = false;
  bool has_external_ = false;
};

}  // namespace

Measures MeasuresOf(const DOMDocument& document) {
  Meter meter;
  meter.Walk(document);
  return meter.Take();
}

}  // namespace fuzz
