#include "BareXerces.h"

#include <stdexcept>
#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace bench {
namespace {

void Write(const xercesc::DOMDocument& document, xercesc::XMLFormatTarget& target) {
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
  const XercesPtr<xercesc::DOMLSSerializer> serializer(implementation->createLSSerializer());
  const XercesPtr<xercesc::DOMLSOutput> output(implementation->createLSOutput());
  output->setByteStream(&target);
  if (!serializer->write(&document, output.get())) throw std::runtime_error("cannot serialise");
}

}  // namespace

std::unique_ptr<xercesc::XercesDOMParser> BareParseFile(const std::string& path) {
  auto parser = std::make_unique<xercesc::XercesDOMParser>();
  parser->parse(path.c_str());
  return parser;
}

std::unique_ptr<xercesc::XercesDOMParser> BareParseText(const std::string& text) {
  auto parser = std::make_unique<xercesc::XercesDOMParser>();
  xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                    "text");
  source.setCopyBufToStream(false);  // by default it copies the whole text
  parser->parse(source);
  return parser;
}

void BareWriteFile(const xercesc::DOMDocument& document, const std::string& path) {
  xercesc::LocalFileFormatTarget target(path.c_str());
  Write(document, target);
}

std::string Serialize(const xercesc::DOMDocument& document) {
  xercesc::MemBufFormatTarget target;
  Write(document, target);
  return {reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen()};
}

Utf8Maker::Utf8Maker() {
  xercesc::XMLTransService::Codes code{};
  transcoder_.reset(
      xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor("UTF-8", code, 4000));
}

std::string Utf8Maker::operator()(const XMLCh* text) const {
  std::string narrow;
  XMLSize_t left = xercesc::XMLString::stringLen(text);
  while (left > 0) {
    XMLByte chunk[512];
    XMLSize_t eaten = 0;
    const XMLSize_t made = transcoder_->transcodeTo(text, left, chunk, sizeof chunk, eaten,
                                                    xercesc::XMLTranscoder::UnRep_Throw);
    narrow.append(reinterpret_cast<const char*>(chunk), made);
    text += eaten;
    left -= eaten;
  }
  return narrow;
}

}  // namespace bench
