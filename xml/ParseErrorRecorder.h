// An error handler that changes nothing about a parse and remembers why it went wrong.
#ifndef MCXPRSUTIL_XML_PARSEERRORRECORDER_H
#define MCXPRSUTIL_XML_PARSEERRORRECORDER_H

#include <string>
#include <xercesc/sax/ErrorHandler.hpp>

namespace MCXPrsUtil {

// Without an error handler Xerces stops at malformed XML without a word. This one notes the first
// fatal error and never throws, so that the parser does exactly what it does without a handler.
// Warnings and validity errors are ignored. Costs nothing on well-formed input.
//
// The recorder must outlive the parses that it watches; XercesDOMParser does not own it.
class ParseErrorRecorder final : public XERCES_CPP_NAMESPACE::ErrorHandler {
 public:
  ParseErrorRecorder() = default;
  ParseErrorRecorder(const ParseErrorRecorder&) = delete;
  ParseErrorRecorder& operator=(const ParseErrorRecorder&) = delete;

  // True after a fatal error: the document is not well-formed, or could not be opened.
  bool HasError() const { return has_error_; }

  // "line L, column C: text" of the first fatal error in UTF-8; empty without one.
  const std::string& GetText() const { return text_; }

  void warning(const XERCES_CPP_NAMESPACE::SAXParseException& e) override;
  void error(const XERCES_CPP_NAMESPACE::SAXParseException& e) override;
  void fatalError(const XERCES_CPP_NAMESPACE::SAXParseException& e) override;

  // Forgets what was recorded: ready for another parse.
  void resetErrors() override;

 private:
  bool has_error_ = false;
  std::string text_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_PARSEERRORRECORDER_H
