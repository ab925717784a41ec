// The parser behind every document that the library reads.
#ifndef MCXPRSUTIL_XML_DOCUMENTPARSER_H
#define MCXPRSUTIL_XML_DOCUMENTPARSER_H

#include <memory>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/InputSource.hpp>

#include "mcxprsutil/MCXParsePolicy.h"

namespace MCXPrsUtil {

// A DOM parser with the XML library's defaults, except that it throws a ParseRefusal where that
// library would overflow the stack.
class DocumentParser : public XERCES_CPP_NAMESPACE::XercesDOMParser {
 public:
  DocumentParser();

  // Both throw what the XML library throws, and a ParseRefusal.
  virtual void ParseFile(const char* fileName);
  virtual void ParseSource(const XERCES_CPP_NAMESPACE::InputSource& source);

 protected:
  void endEntityReference(const XERCES_CPP_NAMESPACE::XMLEntityDecl& entity) override;
};

// A parser that keeps to the policy. The XML platform must be up.
std::unique_ptr<DocumentParser> MakeDocumentParser(const MCXParsePolicy& policy);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_DOCUMENTPARSER_H
