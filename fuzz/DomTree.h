/// @file
/// A plain comparison of documents, and a list of their elements.
#ifndef MCXPRSUTIL_FUZZ_DOMTREE_H
#define MCXPRSUTIL_FUZZ_DOMTREE_H

#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace fuzz {

/// Every element from `root` on, in document order; empty for null.
std::vector<xercesc::DOMElement*> ElementsOf(xercesc::DOMElement* root);

/// The document in one line per node, so that equal documents give equal lines. Neighbouring texts
/// count as one, and what an entity stands for counts as if it stood there itself.
std::vector<std::string> LinesOf(const xercesc::DOMDocument& document);

/// The same for an element.
std::vector<std::string> LinesOf(const xercesc::DOMElement& element);

}  // namespace fuzz

#endif  // MCXPRSUTIL_FUZZ_DOMTREE_H
