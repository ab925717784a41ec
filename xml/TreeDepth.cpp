#include "xml/TreeDepth.h"

#include <xercesc/dom/DOMDocument.hpp>

namespace MCXPrsUtil {

using XERCES_CPP_NAMESPACE::DOMDocument;
using XERCES_CPP_NAMESPACE::DOMNode;

int LevelOf(const DOMNode& node) {
  int level = 0;
  const DOMNode* parent = node.getParentNode();
  for (; parent != nullptr; parent = parent->getParentNode()) ++level;
  return level;
}

bool IsTooDeep(const DOMDocument& doc) {
  int level = 0;
  const DOMNode* node = &doc;
  while (node != nullptr) {
    if (const DOMNode* child = node->getFirstChild()) {
      if (++level > kDeepestWrittenLevel) return true;
      node = child;
      continue;
    }
    while (node != nullptr && node->getNextSibling() == nullptr) {
      node = node->getParentNode();
      --level;
    }
    if (node != nullptr) node = node->getNextSibling();
  }
  return false;
}

}  // namespace MCXPrsUtil
