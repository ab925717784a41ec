// Copies of nodes from one document to another.
#ifndef MCXPRSUTIL_COMBINER_DIRECTCOPY_H
#define MCXPRSUTIL_COMBINER_DIRECTCOPY_H

#include <set>
#include <string>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace MCXPrsUtil {

// What a reader of the target should know of a copy.
struct CopyNotes {
  std::set<std::string> entities;  // names of the references in it that the target does not resolve
  bool lacks_defaults = false;  // an attribute that the source's document type supplies is missing
  int n_levels = 0;             // how deep the copy is nested; 0 without children
};

// Does what `target.importNode(&source, deep)` does, but creates elements, attributes and texts
// itself, which takes two thirds of the time. Depth is not limited by the stack. Handlers of user
// data on the source are called only where importNode has to step in (namespace-aware and other
// unusual nodes).
//
// Returns the copy, which stands nowhere in `target` yet, or null when the document refuses it.
// What there is to tell of the copy is added to `notes`, if given.
XERCES_CPP_NAMESPACE::DOMNode* CopyNode(XERCES_CPP_NAMESPACE::DOMDocument& target,
                                        const XERCES_CPP_NAMESPACE::DOMNode& source, bool deep,
                                        CopyNotes* notes = nullptr);

// Releases a node that stands nowhere, with all below it. `node->release()` does the same, but
// calls itself for every level, and may throw. Where memory is short, a part may stay with the
// document, in no place of it.
void ReleaseTree(XERCES_CPP_NAMESPACE::DOMNode* node) noexcept;

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_COMBINER_DIRECTCOPY_H
