/// Reading a PMML dictionary by hand: the floor of the variable list readers.
#ifndef BENCHMARKS_DICTIONARYWALK_H_
#define BENCHMARKS_DICTIONARYWALK_H_

#include <mccommon/MCVarList.h>

#include <string>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
XERCES_CPP_NAMESPACE_END

namespace bench {

/// Adds one variable per DataField, as a program would that knows the XML library, has all names
/// ready in UTF-16, keeps one transcoder, and trusts the document.
void WalkDictionary(const xercesc::DOMDocument& document, MCMTD_NAMESPACE::MCVarList& list);

/// Everything that `list` holds, as text.
std::string Describe(MCMTD_NAMESPACE::MCVarList& list);

}  // namespace bench

#endif  // BENCHMARKS_DICTIONARYWALK_H_
