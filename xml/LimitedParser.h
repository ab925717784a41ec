// A parser that refuses what a parse policy does not allow.
#ifndef MCXPRSUTIL_XML_LIMITEDPARSER_H
#define MCXPRSUTIL_XML_LIMITEDPARSER_H

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>
#include <xercesc/util/SecurityManager.hpp>

#include "mcxprsutil/MCXParsePolicy.h"
#include "xml/DocumentParser.h"
#include "xml/LimitedSource.h"

namespace MCXPrsUtil {

// Good for one parse. What goes beyond the policy is thrown as a ParseRefusal before it gets into
// the document.
//
// Every expansion of an entity in the content or in an attribute value is counted by the XML
// library, nested ones as well, and none is longer than its declaration: so the two limits bound
// what expansion adds. In the declarations themselves the library does not count, which is why
// Doctype::kInternal takes neither parameter entities nor attribute lists with their default
// values.
class LimitedParser final : public DocumentParser {
 public:
  explicit LimitedParser(const MCXParsePolicy& policy);
  LimitedParser(const LimitedParser&) = delete;
  LimitedParser& operator=(const LimitedParser&) = delete;

  void ParseFile(const char* fileName) override;
  void ParseSource(const XERCES_CPP_NAMESPACE::InputSource& source) override;

  // From the XML library, which calls these while it parses.

  void startElement(
      const XERCES_CPP_NAMESPACE::XMLElementDecl& element, unsigned int urlId, const XMLCh* prefix,
      const XERCES_CPP_NAMESPACE::RefVectorOf<XERCES_CPP_NAMESPACE::XMLAttr>& attributes,
      XMLSize_t n_attributes, bool isEmpty, bool isRoot) override;
  void endElement(const XERCES_CPP_NAMESPACE::XMLElementDecl& element, unsigned int urlId,
                  bool isRoot, const XMLCh* prefix) override;
  void docCharacters(const XMLCh* characters, XMLSize_t length, bool isCData) override;
  void ignorableWhitespace(const XMLCh* characters, XMLSize_t length, bool isCData) override;
  void docComment(const XMLCh* comment) override;
  void docPI(const XMLCh* target, const XMLCh* data) override;

  void doctypeDecl(const XERCES_CPP_NAMESPACE::DTDElementDecl& root, const XMLCh* publicId,
                   const XMLCh* systemId, bool hasInternal, bool hasExternal) override;
  void doctypeComment(const XMLCh* comment) override;
  void doctypePI(const XMLCh* target, const XMLCh* data) override;
  void doctypeWhitespace(const XMLCh* characters, XMLSize_t length) override;
  void elementDecl(const XERCES_CPP_NAMESPACE::DTDElementDecl& element, bool isIgnored) override;
  void entityDecl(const XERCES_CPP_NAMESPACE::DTDEntityDecl& entity, bool isParameter,
                  bool isIgnored) override;
  void notationDecl(const XERCES_CPP_NAMESPACE::XMLNotationDecl& notation, bool isIgnored) override;
  void startAttList(const XERCES_CPP_NAMESPACE::DTDElementDecl& element) override;
  void attDef(const XERCES_CPP_NAMESPACE::DTDElementDecl& element,
              const XERCES_CPP_NAMESPACE::DTDAttDef& attribute, bool isIgnored) override;
  void endAttList(const XERCES_CPP_NAMESPACE::DTDElementDecl& element) override;

  void error(unsigned int code, const XMLCh* domain,
             XERCES_CPP_NAMESPACE::XMLErrorReporter::ErrTypes type, const XMLCh* text,
             const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
             XMLFileLoc column) override;

 private:
  [[noreturn]] void Refuse(const std::string& text) const;
  void RefuseUnlessAll(const std::string& what) const;
  void CheckName(const XMLCh* name);

  const MCXParsePolicy policy_;
  XERCES_CPP_NAMESPACE::SecurityManager security_;
  ReadProgress progress_;
  std::uint64_t depth_ = 0;
  bool is_in_attribute_list_ = false;
  std::unordered_set<std::u16string_view> names_;  // views of name_texts_
  std::deque<std::u16string> name_texts_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_LIMITEDPARSER_H
