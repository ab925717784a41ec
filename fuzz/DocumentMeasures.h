/// @file
/// What a document has of everything that a parse policy limits.
#ifndef MCXPRSUTIL_FUZZ_DOCUMENTMEASURES_H
#define MCXPRSUTIL_FUZZ_DOCUMENTMEASURES_H

#include <cstddef>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
XERCES_CPP_NAMESPACE_END

namespace fuzz {

/// What can be seen in a tree, which is never more than what the parser met. Exact are `depth` and,
/// without a document type declaration, `names` and the absence of expansions.
struct Measures {
  std::size_t depth = 0;
  std::size_t names = 0;         ///< different ones: elements, attributes, entities, notations
  std::size_t expansions = 0;    ///< of entities in the content
  std::size_t entity_units = 0;  ///< the longest text that an entity has itself, in UTF-16 units
  std::size_t markup_units = 0;  ///< the longest tag, comment, CDATA section or the like
  std::size_t text_units = 0;    ///< all that is no markup
  bool has_doctype = false;
  /// Something that MCXParsePolicy::Doctype::kInternal does not take: an external DTD, an external
  /// entity that is parsed, or a value from an attribute list. Parameter entities are not seen.
  bool needs_all = false;
};

Measures MeasuresOf(const xercesc::DOMDocument& document);

}  // namespace fuzz

#endif  // MCXPRSUTIL_FUZZ_DOCUMENTMEASURES_H
