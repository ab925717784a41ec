// How the readers parse: one parser per reader, one place that knows what a parse may throw.
#ifndef MCXPRSUTIL_READERS_DOMPARSE_H
#define MCXPRSUTIL_READERS_DOMPARSE_H

#include <iosfwd>
#include <memory>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>

#include "mccommon/MCStatus.h"
#include "xml/DocumentParser.h"
#include "xml/XercesPtr.h"

namespace MCXPrsUtil {

// Starts the XML platform, which counts its users, and creates a parser with default settings.
//
// Returns null if either fails. The platform must then not be terminated by the caller: nobody can
// tell how far its start came.
std::unique_ptr<DocumentParser> StartParser() noexcept;

struct ParsedDocument {
  // OK: there is a document, well-formed or not. 103: no parser could be created. 104: the parser
  // threw an exception of the XML library, refused the document, or gave none.
  MCCommon::MCStatus status;
  // False after an exception as well.
  bool well_formed = false;
  // Why the document is not well-formed, in UTF-8: "line L, column C: text", or what the exception
  // or the refusal says. Empty for a well-formed document.
  std::string message;
  // Perhaps without a document element, if it is not well-formed. The parser keeps no hold on it;
  // it must be gone before the platform is terminated.
  XercesPtr<XERCES_CPP_NAMESPACE::DOMDocument> document;
};

// Parses the XML read from `in`. Exceptions that do not come from the XML library pass, and so does
// its report of a lack of memory.
//
// `parser` keeps its object only after a parse that leaves it as new: after any other one it is
// null, and the next call makes a new one. While a parse policy is in force each parse has a parser
// of its own, which keeps to it, and `parser` is left alone. The platform must be up.
ParsedDocument ParseDocument(std::unique_ptr<DocumentParser>& parser, std::istream& in);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_DOMPARSE_H
