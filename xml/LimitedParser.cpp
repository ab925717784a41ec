#include "xml/LimitedParser.h"

#include <memory>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/URLInputSource.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLNotationDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLURL.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include "mcxprsutil/MCXTranscoder.h"
#include "xml/ParseRefusal.h"

namespace MCXPrsUtil {

using XERCES_CPP_NAMESPACE::DTDAttDef;
using XERCES_CPP_NAMESPACE::DTDElementDecl;
using XERCES_CPP_NAMESPACE::DTDEntityDecl;
using XERCES_CPP_NAMESPACE::InputSource;
using XERCES_CPP_NAMESPACE::LocalFileInputSource;
using XERCES_CPP_NAMESPACE::Locator;
using XERCES_CPP_NAMESPACE::RefVectorOf;
using XERCES_CPP_NAMESPACE::URLInputSource;
using XERCES_CPP_NAMESPACE::XMLAttr;
using XERCES_CPP_NAMESPACE::XMLElementDecl;
using XERCES_CPP_NAMESPACE::XMLErrs;
using XERCES_CPP_NAMESPACE::XMLNotationDecl;
using XERCES_CPP_NAMESPACE::XMLPlatformUtils;
using XERCES_CPP_NAMESPACE::XMLString;
using XERCES_CPP_NAMESPACE::XMLUni;
using XERCES_CPP_NAMESPACE::XMLURL;

namespace {

using Doctype = MCXParsePolicy::Doctype;

struct TextRelease {
  void operator()(XMLCh* text) const { XMLString::release(&text); }
};

// The source that the XML library makes of a file name: an absolute URL, or else a local file.
std::unique_ptr<InputSource> SourceOf(const char* fileName) {
  const std::unique_ptr<XMLCh, TextRelease> name(XMLString::transcode(fileName));
  XMLURL url(XMLPlatformUtils::fgMemoryManager);
  if (XMLURL::parse(name.get(), url) && !url.isRelative()) {
    return std::make_unique<URLInputSource>(url);
  }
  return std::make_unique<LocalFileInputSource>(name.get());
}

std::string InQuotes(const XMLCh* name) { return '"' + ToUTF8(name) + '"'; }

}  // namespace

LimitedParser::LimitedParser(const MCXParsePolicy& policy) : policy_(policy), progress_(policy) {
  security_.setEntityExpansionLimit(policy.max_entity_expansions);
  setSecurityManager(&security_);
  getScanner()->setInputBufferSize(kTextPieceUnits);
  if (policy.doctype != Doctype::kAll) {
    // What refers to something external is refused when it is declared; this is the second wall.
    setLoadExternalDTD(false);
    setDisableDefaultEntityResolution(true);
  }
}

void LimitedParser::ParseFile(const char* fileName) { ParseSource(*SourceOf(fileName)); }

void LimitedParser::ParseSource(const InputSource& source) {
  const LimitedSource limited(source, progress_);
  parse(limited);
  progress_.CheckSize();
}

void LimitedParser::startElement(const XMLElementDecl& element, const unsigned int urlId,
                                 const XMLCh* const prefix, const RefVectorOf<XMLAttr>& attributes,
                                 const XMLSize_t n_attributes, const bool isEmpty,
                                 const bool isRoot) {
  progress_.NoteEvent();
  if (++depth_ > policy_.max_depth) {
    Refuse(LimitText("the document is nested deeper", "max_depth", policy_.max_depth));
  }
  CheckName(element.getFullName());
  for (XMLSize_t i = 0; i < n_attributes; ++i) CheckName(attributes.elementAt(i)->getName());
  DocumentParser::startElement(element, urlId, prefix, attributes, n_attributes, isEmpty, isRoot);
}

// Comes for an empty element as well, from within startElement().
void LimitedParser::endElement(const XMLElementDecl& element, const unsigned int urlId,
                               const bool isRoot, const XMLCh* const prefix) {
  progress_.NoteEvent();
  --depth_;
  DocumentParser::endElement(element, urlId, isRoot, prefix);
}

void LimitedParser::docCharacters(const XMLCh* const characters, const XMLSize_t length,
                                  const bool isCData) {
  progress_.NoteEvent();
  DocumentParser::docCharacters(characters, length, isCData);
}

void LimitedParser::ignorableWhitespace(const XMLCh* const characters, const XMLSize_t length,
                                        const bool isCData) {
  progress_.NoteEvent();
  DocumentParser::ignorableWhitespace(characters, length, isCData);
}

void LimitedParser::docComment(const XMLCh* const comment) {
  progress_.NoteEvent();
  DocumentParser::docComment(comment);
}

void LimitedParser::docPI(const XMLCh* const target, const XMLCh* const data) {
  progress_.NoteEvent();
  DocumentParser::docPI(target, data);
}

void LimitedParser::doctypeDecl(const DTDElementDecl& root, const XMLCh* const publicId,
                                const XMLCh* const systemId, const bool hasInternal,
                                const bool hasExternal) {
  progress_.NoteEvent();
  if (policy_.doctype == Doctype::kRefused) {
    Refuse(
        "the document has a document type declaration, which the parse policy does not allow "
        "(doctype = kRefused)");
  }
  if (hasExternal) RefuseUnlessAll("refers to an external DTD");
  DocumentParser::doctypeDecl(root, publicId, systemId, hasInternal, hasExternal);
}

void LimitedParser::doctypeComment(const XMLCh* const comment) {
  progress_.NoteEvent();
  DocumentParser::doctypeComment(comment);
}

void LimitedParser::doctypePI(const XMLCh* const target, const XMLCh* const data) {
  progress_.NoteEvent();
  DocumentParser::doctypePI(target, data);
}

// Comes between the attributes of a list as well.
void LimitedParser::doctypeWhitespace(const XMLCh* const characters, const XMLSize_t length) {
  if (!is_in_attribute_list_) progress_.NoteEvent();
  DocumentParser::doctypeWhitespace(characters, length);
}

void LimitedParser::elementDecl(const DTDElementDecl& element, const bool isIgnored) {
  progress_.NoteEvent();
  CheckName(element.getFullName());
  DocumentParser::elementDecl(element, isIgnored);
}

void LimitedParser::entityDecl(const DTDEntityDecl& entity, const bool isParameter,
                               const bool isIgnored) {
  progress_.NoteEvent();
  if (isParameter) RefuseUnlessAll("declares the parameter entity " + InQuotes(entity.getName()));
  if (entity.isExternal() && !entity.isUnparsed()) {
    RefuseUnlessAll("declares the external entity " + InQuotes(entity.getName()));
  }
  CheckName(entity.getName());
  if (entity.getValueLen() > policy_.max_entity_characters) {
    Refuse(LimitText("the entity " + InQuotes(entity.getName()) + " is longer",
                     "max_entity_characters", policy_.max_entity_characters));
  }
  DocumentParser::entityDecl(entity, isParameter, isIgnored);
}

void LimitedParser::notationDecl(const XMLNotationDecl& notation, const bool isIgnored) {
  progress_.NoteEvent();
  CheckName(notation.getName());
  DocumentParser::notationDecl(notation, isIgnored);
}

void LimitedParser::startAttList(const DTDElementDecl& element) {
  RefuseUnlessAll("declares attributes of " + InQuotes(element.getFullName()));
  is_in_attribute_list_ = true;
  DocumentParser::startAttList(element);
}

void LimitedParser::attDef(const DTDElementDecl& element, const DTDAttDef& attribute,
                           const bool isIgnored) {
  CheckName(attribute.getFullName());
  DocumentParser::attDef(element, attribute, isIgnored);
}

void LimitedParser::endAttList(const DTDElementDecl& element) {
  progress_.NoteEvent();
  is_in_attribute_list_ = false;
  DocumentParser::endAttList(element);
}

// The XML library's report that entities were expanded too often would be one of its own errors,
// which leave what was read before them.
void LimitedParser::error(const unsigned int code, const XMLCh* const domain,
                          const XMLErrorReporter::ErrTypes type, const XMLCh* const text,
                          const XMLCh* const systemId, const XMLCh* const publicId,
                          const XMLFileLoc line, const XMLFileLoc column) {
  if (code == XMLErrs::EntityExpansionLimitExceeded &&
      XMLString::equals(domain, XMLUni::fgXMLErrDomain)) {
    Refuse(LimitText("entities are expanded more often", "max_entity_expansions",
                     policy_.max_entity_expansions));
  }
  DocumentParser::error(code, domain, type, text, systemId, publicId, line, column);
}

void LimitedParser::Refuse(const std::string& text) const {
  const Locator* place = getScanner()->getLocator();
  throw ParseRefusal("line " + std::to_string(place->getLineNumber()) + ", column " +
                     std::to_string(place->getColumnNumber()) + ": " + text);
}

void LimitedParser::RefuseUnlessAll(const std::string& what) const {
  if (policy_.doctype == Doctype::kAll) return;
  Refuse("the document type declaration " + what +
         ", which the parse policy does not allow (doctype = kInternal)");
}

void LimitedParser::CheckName(const XMLCh* const name) {
  if (policy_.max_names == MCXParsePolicy::kUnlimited) return;
  const std::u16string_view text(name);
  if (names_.count(text) != 0) return;
  if (names_.size() >= policy_.max_names) {
    Refuse(LimitText("the document uses more different names", "max_names", policy_.max_names));
  }
  names_.insert(name_texts_.emplace_back(text));
}

}  // namespace MCXPrsUtil
