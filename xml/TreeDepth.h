// How deep a document may be nested.
#ifndef MCXPRSUTIL_XML_TREEDEPTH_H
#define MCXPRSUTIL_XML_TREEDEPTH_H

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace MCXPrsUtil {

// The serializer calls itself for every level; this many fit on any usual stack. The document is
// level 0, its root element level 1.
constexpr int kDeepestWrittenLevel = 10000;

// The level of a node: the number of nodes that it is nested in.
int LevelOf(const XERCES_CPP_NAMESPACE::DOMNode& node);

// True for a document with a node below kDeepestWrittenLevel, which cannot be written.
bool IsTooDeep(const XERCES_CPP_NAMESPACE::DOMDocument& doc);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_TREEDEPTH_H
