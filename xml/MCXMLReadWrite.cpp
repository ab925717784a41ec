#include "mcxprsutil/MCXMLReadWrite.h"

#include <utility>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "mcxprsutil/MCXInputSource.h"
#include "mcxprsutil/MCXParsePolicy.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "xml/DocumentParser.h"
#include "xml/FileFormatTarget.h"
#include "xml/ParseErrorRecorder.h"
#include "xml/ParseRefusal.h"
#include "xml/Platform.h"
#include "xml/StatusCodes.h"
#include "xml/XercesPtr.h"

namespace MCXPrsUtil {

using MCCommon::MCStatus;
using XERCES_CPP_NAMESPACE::DOMConfiguration;
using XERCES_CPP_NAMESPACE::DOMDocument;
using XERCES_CPP_NAMESPACE::DOMImplementation;
using XERCES_CPP_NAMESPACE::DOMImplementationRegistry;
using XERCES_CPP_NAMESPACE::DOMLSOutput;
using XERCES_CPP_NAMESPACE::DOMLSSerializer;
using XERCES_CPP_NAMESPACE::XMLException;
using XERCES_CPP_NAMESPACE::XMLPlatformUtils;
using XERCES_CPP_NAMESPACE::XMLUni;

namespace {

void Parse(DocumentParser& parser, const char* fileName, std::istream* in) {
  if (fileName) {
    parser.ParseFile(fileName);
    return;
  }
  const MCXInputSource source(*in);
  parser.ParseSource(source);
}

DOMImplementation* GetLoadSaveImplementation() {
  static constexpr XMLCh kLoadSave[] = {'L', 'S', 0};
  return DOMImplementationRegistry::getDOMImplementation(kLoadSave);
}

XercesPtr<DOMLSSerializer> MakeSerializer(DOMImplementation& implementation) {
  XercesPtr<DOMLSSerializer> serializer(
      implementation.createLSSerializer(XMLPlatformUtils::fgMemoryManager));
  DOMConfiguration* config = serializer->getDomConfig();
  if (config->canSetParameter(XMLUni::fgDOMWRTFormatPrettyPrint, false)) {
    config->setParameter(XMLUni::fgDOMWRTFormatPrettyPrint, false);
  }
  return serializer;
}

// The result of write() is ignored on purpose: what counts is what the file took.
MCStatus Serialise(DOMImplementation& implementation, DOMLSSerializer& serializer,
                   const DOMDocument& doc, FileFormatTarget& target, std::string& message) {
  try {
    XercesPtr<DOMLSOutput> output(implementation.createLSOutput(XMLPlatformUtils::fgMemoryManager));
    output->setByteStream(&target);
    serializer.write(&doc, output.get());
    target.Close();
    if (!target.HasError()) return MCStatus();
    message = target.GetErrorText();
  } catch (const XMLException& e) {
    message = target.HasError() ? target.GetErrorText() : ToUTF8(e.getMessage());
  } catch (...) {
    // A DOMException (a tree that cannot be serialised) or memory shortage has no message.
    message = target.GetErrorText();
  }
  return Failure(kWriteFailed);
}

}  // namespace

MCXMLReadWrite::MCXMLReadWrite() {
  try {
    StartPlatform();
  } catch (const XMLException&) {
    init_status_ = Failure(kPlatformFailed);
  }
}

MCXMLReadWrite::~MCXMLReadWrite() {
  if (!init_status_.IsOK()) return;
  parser_.reset();  // before the platform goes: the document lives in its memory
  StopPlatform();
}

MCStatus MCXMLReadWrite::GetInitStatus() const { return init_status_; }

DOMDocument* MCXMLReadWrite::GetDocument() { return document_; }

const DOMDocument* MCXMLReadWrite::GetDocument() const { return document_; }

std::string MCXMLReadWrite::GetXercesMessage() const { return xerces_message_; }

MCStatus MCXMLReadWrite::ParseToDOM(const std::string& fileName) {
  return ParseToDOM(fileName.c_str(), nullptr);
}

MCStatus MCXMLReadWrite::ParseToDOM(std::istream& in) { return ParseToDOM(nullptr, &in); }

// The parser becomes a member only with a document in it, so that a failure, thrown or returned,
// leaves none behind.
MCStatus MCXMLReadWrite::ParseToDOM(const char* fileName, std::istream* in) {
  if (!init_status_.IsOK()) return init_status_;
  Clear();
  if (!fileName && !in) return Failure(kParseFailed);

  ParseErrorRecorder recorder;  // outlives the parse; the parser that is kept forgets it
  std::unique_ptr<DocumentParser> parser;
  try {
    parser = MakeDocumentParser(MCXParsePolicy::GetForProcess());
    parser->setErrorHandler(&recorder);
  } catch (const XMLException&) {
    return Failure(kPlatformFailed);
  }
  try {
    Parse(*parser, fileName, in);
  } catch (const XMLException& e) {
    xerces_message_ = ToUTF8(e.getMessage());
    parse_error_ = recorder.GetText();
    return Failure(kParseFailed);
  } catch (const ParseRefusal& refusal) {
    xerces_message_ = refusal.GetText();
    parse_error_ = recorder.GetText();
    return Failure(kParseFailed);
  }
  parser->setErrorHandler(nullptr);
  parse_error_ = recorder.GetText();

  DOMDocument* document = parser->getDocument();
  if (!document) {
    xerces_message_ = parse_error_;
    return Failure(kParseFailed);
  }
  parser_ = std::move(parser);
  document_ = document;
  well_formed_ = !recorder.HasError();
  return MCStatus();
}

MCStatus MCXMLReadWrite::WriteFromDOM(const std::string& fileName, const DOMDocument* doc) const {
  const DOMDocument* source = doc ? doc : document_;
  if (!init_status_.IsOK() || !source) return init_status_;
  xerces_message_.clear();

  DOMImplementation* implementation = GetLoadSaveImplementation();
  XercesPtr<DOMLSSerializer> serializer = MakeSerializer(*implementation);
  FileFormatTarget target(fileName);  // throws for a file that cannot be opened
  return Serialise(*implementation, *serializer, *source, target, xerces_message_);
}

bool MCXMLReadWrite::IsWellFormed() const { return well_formed_; }

std::string MCXMLReadWrite::GetParseError() const { return parse_error_; }

void MCXMLReadWrite::Clear() {
  document_ = nullptr;
  parser_.reset();
  xerces_message_.clear();
  parse_error_.clear();
  well_formed_ = false;
}

}  // namespace MCXPrsUtil
