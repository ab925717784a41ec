#include "combiner/DirectCopy.h"

#include <algorithm>
#include <memory>
#include <vector>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMCDATASection.hpp>
#include <xercesc/dom/DOMComment.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMProcessingInstruction.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "mcxprsutil/MCXTranscoder.h"
#include "xml/XercesPtr.h"

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::DOMAttr;
using XERCES_CPP_NAMESPACE::DOMDocument;
using XERCES_CPP_NAMESPACE::DOMElement;
using XERCES_CPP_NAMESPACE::DOMException;
using XERCES_CPP_NAMESPACE::DOMNamedNodeMap;
using XERCES_CPP_NAMESPACE::DOMNode;

constexpr XMLCh kEmpty[] = {0};

// The text of an attribute that its name and its text describe fully; null for any other.
const XMLCh* TextOfPlain(const DOMAttr& attribute) {
  if (attribute.getLocalName() != nullptr || attribute.isId()) return nullptr;
  const DOMNode* child = attribute.getFirstChild();
  if (child == nullptr) return kEmpty;
  const bool is_text =
      child->getNodeType() == DOMNode::TEXT_NODE && child->getNextSibling() == nullptr;
  return is_text ? child->getNodeValue() : nullptr;
}

// False when there is an attribute that only importNode copies as it should be.
bool CopyAttributes(const DOMElement& source, DOMElement& copy, CopyNotes& notes) {
  const DOMNamedNodeMap* attributes = source.getAttributes();
  const XMLSize_t count = attributes->getLength();
  for (XMLSize_t i = 0; i < count; ++i) {
    const auto& attribute = static_cast<const DOMAttr&>(*attributes->item(i));
    // A default from the document type stays behind, as importNode leaves it.
    if (!attribute.getSpecified()) {
      notes.lacks_defaults = true;
      continue;
    }
    const XMLCh* text = TextOfPlain(attribute);
    if (text == nullptr) return false;
    copy.setAttribute(attribute.getName(), text);
  }
  return true;
}

DOMNode* CopyElement(DOMDocument& target, const DOMElement& source, CopyNotes& notes) {
  if (source.getLocalName() != nullptr) return target.importNode(&source, false);
  XercesPtr<DOMElement> copy(target.createElement(source.getTagName()));
  if (!CopyAttributes(source, *copy, notes)) return target.importNode(&source, false);
  return copy.release();
}

// Copies a node without its children, but whole where children are not separate nodes of the copy.
DOMNode* CopyOne(DOMDocument& target, const DOMNode& source, bool deep, CopyNotes& notes) {
  switch (source.getNodeType()) {
    case DOMNode::ELEMENT_NODE:
      return CopyElement(target, static_cast<const DOMElement&>(source), notes);
    case DOMNode::TEXT_NODE:
      return target.createTextNode(source.getNodeValue());
    case DOMNode::CDATA_SECTION_NODE:
      return target.createCDATASection(source.getNodeValue());
    case DOMNode::COMMENT_NODE:
      return target.createComment(source.getNodeValue());
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
      return target.createProcessingInstruction(source.getNodeName(), source.getNodeValue());
    case DOMNode::ENTITY_REFERENCE_NODE:
      notes.entities.insert(ToUTF8(source.getNodeName()));
      return target.importNode(&source, deep);
    default:
      return target.importNode(&source, deep);
  }
}

// Releases a tree from the leaves up.
void TakeApart(DOMNode* root) {
  DOMNode* node = root;
  while (node != nullptr) {
    if (node->getNodeType() == DOMNode::ELEMENT_NODE && node->getFirstChild() != nullptr) {
      node = node->getFirstChild();
      continue;
    }
    DOMNode* parent = node == root ? nullptr : node->getParentNode();
    if (parent != nullptr) parent->removeChild(node);
    node->release();
    node = parent;
  }
}

struct TreeRelease {
  void operator()(DOMNode* node) const { ReleaseTree(node); }
};

DOMNode* AppendOrThrow(DOMNode& parent, DOMNode* child) {
  XercesPtr<DOMNode> owned(child);
  parent.appendChild(child);
  return owned.release();
}

// An element of the source whose children are being copied.
struct OpenElement {
  const DOMNode* next_child;
  DOMNode* copy;
};

// The stack of open elements is kept here, because asking a node for its parent is slow.
void CopyDescendants(DOMDocument& target, const DOMNode& source, DOMNode& copy, CopyNotes& notes) {
  std::vector<OpenElement> open = {{source.getFirstChild(), &copy}};
  while (!open.empty()) {
    OpenElement& parent = open.back();
    const DOMNode* child = parent.next_child;
    if (child == nullptr) {
      open.pop_back();
      continue;
    }
    parent.next_child = child->getNextSibling();
    notes.n_levels = std::max(notes.n_levels, static_cast<int>(open.size()));
    DOMNode* child_copy = AppendOrThrow(*parent.copy, CopyOne(target, *child, true, notes));
    if (child->getNodeType() == DOMNode::ELEMENT_NODE && child->getFirstChild() != nullptr) {
      open.push_back({child->getFirstChild(), child_copy});
    }
  }
}

}  // namespace

DOMNode* CopyNode(DOMDocument& target, const DOMNode& source, bool deep, CopyNotes* notes) {
  CopyNotes unheard;
  CopyNotes& heard = notes == nullptr ? unheard : *notes;
  try {
    std::unique_ptr<DOMNode, TreeRelease> copy(CopyOne(target, source, deep, heard));
    if (deep && source.getNodeType() == DOMNode::ELEMENT_NODE) {
      CopyDescendants(target, source, *copy, heard);
    }
    return copy.release();
  } catch (const DOMException&) {
    return nullptr;
  }
}

// Xerces notes released nodes for reuse, and throws when it has no memory for the note.
void ReleaseTree(DOMNode* node) noexcept {
  try {
    TakeApart(node);
  } catch (...) {
    // What is left of the tree goes with its document.
  }
}

}  // namespace MCXPrsUtil
