#include "readers/DomParse.h"

#include <utility>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "mcxprsutil/MCXInputSource.h"
#include "mcxprsutil/MCXParsePolicy.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "xml/ParseErrorRecorder.h"
#include "xml/ParseRefusal.h"
#include "xml/Platform.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using XERCES_CPP_NAMESPACE::DOMDocument;
using XERCES_CPP_NAMESPACE::DOMException;
using XERCES_CPP_NAMESPACE::SAXException;
using XERCES_CPP_NAMESPACE::XMLException;
using XERCES_CPP_NAMESPACE::XMLString;

// The exception wall of every parse. Returns whether the parser came to an end of its own.
bool RunParser(DocumentParser& parser, std::istream& in, ParsedDocument& result) {
  ParseErrorRecorder recorder;
  parser.setErrorHandler(&recorder);
  try {
    const MCXInputSource source(in);
    parser.ParseSource(source);
  } catch (const XMLException& e) {
    result.message = ToUTF8(e.getMessage());
    return false;
  } catch (const SAXException& e) {
    result.message = ToUTF8(e.getMessage());
    return false;
  } catch (const DOMException& e) {
    result.message = ToUTF8(e.getMessage());
    return false;
  } catch (const ParseRefusal& refusal) {
    result.message = refusal.GetText();
    return false;
  }
  parser.setErrorHandler(nullptr);
  result.message = recorder.GetText();
  result.well_formed = !recorder.HasError();
  return true;
}

// A parser that has read an XML 1.1 document goes on by the rules of XML 1.1 where the next
// document does not declare its version.
bool LeavesParserAsNew(const ParsedDocument& parsed) {
  static constexpr XMLCh kVersion11[] = {'1', '.', '1', 0};
  return parsed.well_formed && parsed.document != nullptr &&
         !XMLString::equals(parsed.document->getXmlVersion(), kVersion11);
}

}  // namespace

std::unique_ptr<DocumentParser> StartParser() noexcept {
  try {
    StartPlatform();
    return std::make_unique<DocumentParser>();
  } catch (...) {
    return nullptr;
  }
}

// The parser is a local while it works: an exception may leave it in the middle of things, where it
// would refuse the next parse.
ParsedDocument ParseDocument(std::unique_ptr<DocumentParser>& parser, std::istream& in) {
  ParsedDocument result;
  const MCXParsePolicy policy = MCXParsePolicy::GetForProcess();
  const bool is_limited = policy != MCXParsePolicy();
  std::unique_ptr<DocumentParser> worker;
  if (!is_limited) worker = std::move(parser);
  try {
    if (worker == nullptr) worker = MakeDocumentParser(policy);
  } catch (const XMLException&) {
    result.status = Failure(kPlatformFailed);
    return result;
  }

  result.status = Failure(kParseFailed);
  if (!RunParser(*worker, in, result)) return result;
  // Taken from the parser, which would otherwise hoard every document that it parses.
  result.document.reset(worker->adoptDocument());
  if (result.document != nullptr) result.status = MCStatus();
  if (!is_limited && LeavesParserAsNew(result)) parser = std::move(worker);
  return result;
}

}  // namespace MCXPrsUtil
