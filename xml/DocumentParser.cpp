#include "xml/DocumentParser.h"

#include <cstddef>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "xml/LimitedParser.h"
#include "xml/ParseRefusal.h"
#include "xml/StackGuard.h"

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::DOMNode;
using XERCES_CPP_NAMESPACE::XMLEntityDecl;
using XERCES_CPP_NAMESPACE::XMLPlatformUtils;

// What the XML library takes of the stack for a level when it makes the content of an entity
// read-only: 80 bytes were seen, and other builds of it may take more.
constexpr std::size_t kStackBytesPerLevel = 256;

bool HasLevels(const DOMNode& node) {
  return node.getNodeType() == DOMNode::ELEMENT_NODE && node.getFirstChild() != nullptr;
}

// True if elements below `root` are nested deeper than `limit`. An entity reference among them is
// not looked into: its content was looked at when it ended itself.
bool IsNestedDeeper(const DOMNode& root, std::size_t limit) {
  const DOMNode* node = root.getFirstChild();
  std::size_t level = 1;
  while (node != nullptr) {
    if (level > limit) return true;
    if (HasLevels(*node)) {
      node = node->getFirstChild();
      ++level;
      continue;
    }
    while (node != &root && node->getNextSibling() == nullptr) {
      node = node->getParentNode();
      --level;
    }
    node = node == &root ? nullptr : node->getNextSibling();
  }
  return false;
}

}  // namespace

DocumentParser::DocumentParser()
    : XercesDOMParser(nullptr, XMLPlatformUtils::fgMemoryManager, nullptr) {}

void DocumentParser::ParseFile(const char* fileName) { parse(fileName); }

void DocumentParser::ParseSource(const XERCES_CPP_NAMESPACE::InputSource& source) { parse(source); }

// The reference that ends here is the parent of what comes next. The XML library calls itself for
// every level below it.
void DocumentParser::endEntityReference(const XMLEntityDecl& entity) {
  const DOMNode* parent = fCurrentParent;
  const bool is_reference =
      parent != nullptr && parent->getNodeType() == DOMNode::ENTITY_REFERENCE_NODE;
  if (is_reference && IsNestedDeeper(*parent, StackGuard().BytesLeft() / kStackBytesPerLevel)) {
    throw ParseRefusal(
        "the elements of an entity are nested too deep: reading them would overflow the stack");
  }
  XercesDOMParser::endEntityReference(entity);
}

std::unique_ptr<DocumentParser> MakeDocumentParser(const MCXParsePolicy& policy) {
  if (policy == MCXParsePolicy()) return std::make_unique<DocumentParser>();
  return std::make_unique<LimitedParser>(policy);
}

}  // namespace MCXPrsUtil
