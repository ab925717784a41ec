// What is told of a field at which the reading of a dictionary ended.
#ifndef MCX_EXAMPLES_FIELDPROBLEM_H
#define MCX_EXAMPLES_FIELDPROBLEM_H

#include <cstddef>
#include <initializer_list>
#include <string>
#include <xercesc/util/XercesDefs.hpp>

#include "DocumentDescription.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace examples {

// The field at `index`, counted from 0: a child named `tag` of the first child of `root` that is
// named `dictionary`. A reader tells only how many fields it has read; which one stopped it, the
// document tells. Null when there are not as many.
const XERCES_CPP_NAMESPACE::DOMElement* FieldAt(const XERCES_CPP_NAMESPACE::DOMElement& root,
                                                const char* dictionary, const char* tag,
                                                std::size_t index);

// The field's name; empty when it has none.
std::string NameOf(const XERCES_CPP_NAMESPACE::DOMElement& field);

// "it has no ...", about the first of the attributes that the field does not have; empty when it
// has them all.
std::string MissingAttributeText(const XERCES_CPP_NAMESPACE::DOMElement& field,
                                 std::initializer_list<const char*> attributes);

// The problem that a field hides those behind it. It goes by its position where it has no name.
Problem StoppingField(const std::string& name, std::size_t index, int code,
                      const std::string& reason);

}  // namespace examples

#endif  // MCX_EXAMPLES_FIELDPROBLEM_H
