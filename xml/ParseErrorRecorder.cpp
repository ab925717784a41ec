#include "xml/ParseErrorRecorder.h"

#include <xercesc/sax/SAXParseException.hpp>

#include "mcxprsutil/MCXTranscoder.h"

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::SAXParseException;

std::string Describe(const SAXParseException& e) {
  return "line " + std::to_string(e.getLineNumber()) + ", column " +
         std::to_string(e.getColumnNumber()) + ": " + ToUTF8(e.getMessage());
}

}  // namespace

void ParseErrorRecorder::warning(const SAXParseException&) {}

void ParseErrorRecorder::error(const SAXParseException&) {}

void ParseErrorRecorder::fatalError(const SAXParseException& e) {
  if (has_error_) return;
  has_error_ = true;
  try {
    text_ = Describe(e);
  } catch (...) {
    // Out of memory: the fact is recorded, and an exception out of a handler would change the
    // parse.
  }
}

void ParseErrorRecorder::resetErrors() {
  has_error_ = false;
  text_.clear();
}

}  // namespace MCXPrsUtil
