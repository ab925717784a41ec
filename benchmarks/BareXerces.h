/// What a program does that uses the XML library directly: the floor of the comparisons.
#ifndef BENCHMARKS_BAREXERCES_H_
#define BENCHMARKS_BAREXERCES_H_

#include <memory>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/TransService.hpp>

namespace bench {

struct XercesRelease {
  template <class T>
  void operator()(T* object) const {
    object->release();
  }
};
template <class T>
using XercesPtr = std::unique_ptr<T, XercesRelease>;

/// A new default parser that has parsed the file; it owns the document.
std::unique_ptr<xercesc::XercesDOMParser> BareParseFile(const std::string& path);

/// The same for text in memory, which must outlive the call only.
std::unique_ptr<xercesc::XercesDOMParser> BareParseText(const std::string& text);

/// Writes with the default serializer, as the library's own writer is to do.
void BareWriteFile(const xercesc::DOMDocument& document, const std::string& path);

/// The document as UTF-8 text.
std::string Serialize(const xercesc::DOMDocument& document);

/// Makes UTF-8 text of DOM strings with one transcoder for all of them. Must not outlive the
/// platform.
class Utf8Maker {
 public:
  Utf8Maker();
  std::string operator()(const XMLCh* text) const;  ///< null gives ""

 private:
  std::unique_ptr<xercesc::XMLTranscoder> transcoder_;
};

}  // namespace bench

#endif  // BENCHMARKS_BAREXERCES_H_
