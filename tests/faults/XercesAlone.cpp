#include "faults/XercesAlone.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/BinMemInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/TransService.hpp>

namespace fault_test {
namespace {

using xercesc::DOMDocument;
using xercesc::XercesDOMParser;
using xercesc::XMLPlatformUtils;
using ParserPtr = std::unique_ptr<XercesDOMParser>;

struct Release {
  template <class T>
  void operator()(T* object) const {
    object->release();
  }
};
template <class T>
using Owned = std::unique_ptr<T, Release>;

class QuietHandler : public xercesc::ErrorHandler {
  void warning(const xercesc::SAXParseException&) override {}
  void error(const xercesc::SAXParseException&) override {}
  void fatalError(const xercesc::SAXParseException&) override {}
  void resetErrors() override {}
};

// Has the system identifier of MCXInputSource; the stream is no larger than that one's.
class TextSource : public xercesc::InputSource {
 public:
  explicit TextSource(const std::string& text)
      : InputSource("istream", XMLPlatformUtils::fgMemoryManager), text_(text) {}
  xercesc::BinInputStream* makeStream() const override {
    return new (getMemoryManager()) xercesc::BinMemInputStream(
        reinterpret_cast<const XMLByte*>(text_.data()), text_.size(),
        xercesc::BinMemInputStream::BufOpt_Reference, getMemoryManager());
  }

 private:
  const std::string& text_;
};

ParserPtr MakeParser() {
  return std::make_unique<XercesDOMParser>(nullptr, XMLPlatformUtils::fgMemoryManager, nullptr);
}

template <class Source>
void ParseQuietly(XercesDOMParser& parser, const Source& source) {
  QuietHandler quiet;
  parser.setErrorHandler(&quiet);
  parser.parse(source);
  parser.setErrorHandler(nullptr);
}

class OnlyParser : public Subject {
  void Prepare() override { parser_.reset(); }
  void Run() override { parser_ = MakeParser(); }
  std::string Result() override { return ""; }

  ParserPtr parser_;
};

class ReusedParser : public Subject {
 public:
  ReusedParser(std::string text, std::string earlier)
      : text_(std::move(text)), earlier_(std::move(earlier)) {}
  void Prepare() override {
    if (!earlier_.empty()) Read(earlier_);
  }
  void Run() override { Read(text_); }
  std::string Result() override { return ""; }

 private:
  void Read(const std::string& text) {
    document_.reset();
    ParserPtr worker = std::move(parser_);
    {
      const TextSource source(text);
      ParseQuietly(*worker, source);
    }
    document_.reset(worker->adoptDocument());
    parser_ = std::move(worker);
  }

  const std::string text_;
  const std::string earlier_;
  ParserPtr parser_ = MakeParser();
  Owned<DOMDocument> document_;
};

class NewParser : public Subject {
 public:
  using Parse = std::function<void(XercesDOMParser&)>;
  explicit NewParser(Parse parse, ParserPtr (*make)() = MakeParser)
      : parse_(std::move(parse)), make_(make) {}
  void Prepare() override { parser_.reset(); }
  void Run() override {
    ParserPtr parser = make_();
    parse_(*parser);
    parser_ = std::move(parser);
  }
  std::string Result() override { return ""; }

 private:
  const Parse parse_;
  ParserPtr (*const make_)();
  ParserPtr parser_;
};

// With the settings of a parser that keeps to a policy.
class LimitedParser : public XercesDOMParser {
 public:
  LimitedParser() : XercesDOMParser(nullptr, XMLPlatformUtils::fgMemoryManager, nullptr) {
    setSecurityManager(&security_);
    getScanner()->setInputBufferSize(32 * 1024);
    setLoadExternalDTD(false);
    setDisableDefaultEntityResolution(true);
  }

 private:
  xercesc::SecurityManager security_;
};

// Hands on what another source gives.
class WrappingSource : public xercesc::InputSource {
 public:
  explicit WrappingSource(const InputSource& source)
      : InputSource(source.getSystemId(), source.getPublicId(), source.getMemoryManager()),
        source_(source) {
    InputSource::setEncoding(source.getEncoding());
  }
  xercesc::BinInputStream* makeStream() const override {
    std::unique_ptr<xercesc::BinInputStream> stream(source_.makeStream());
    return new (getMemoryManager()) Stream(std::move(stream));
  }

 private:
  class Stream : public xercesc::BinInputStream {
   public:
    explicit Stream(std::unique_ptr<BinInputStream> stream) : stream_(std::move(stream)) {}
    XMLFilePos curPos() const override { return stream_->curPos(); }
    XMLSize_t readBytes(XMLByte* const to, const XMLSize_t most) override {
      return stream_->readBytes(to, most);
    }
    const XMLCh* getContentType() const override { return stream_->getContentType(); }

   private:
    const std::unique_ptr<BinInputStream> stream_;
  };

  const InputSource& source_;
};

// Takes everything and keeps nothing.
class NullTarget : public xercesc::XMLFormatTarget {
  void writeChars(const XMLByte*, XMLSize_t, xercesc::XMLFormatter*) override {}
};

class Write : public Subject {
 public:
  explicit Write(const std::string& text) : parser_(MakeParser()) {
    const TextSource source(text);
    ParseQuietly(*parser_, source);
  }
  void Run() override {
    static constexpr XMLCh kLoadSave[] = {'L', 'S', 0};
    xercesc::DOMImplementation* implementation =
        xercesc::DOMImplementationRegistry::getDOMImplementation(kLoadSave);
    const Owned<xercesc::DOMLSSerializer> serializer(
        implementation->createLSSerializer(XMLPlatformUtils::fgMemoryManager));
    const Owned<xercesc::DOMLSOutput> output(
        implementation->createLSOutput(XMLPlatformUtils::fgMemoryManager));
    NullTarget target;
    output->setByteStream(&target);
    serializer->write(parser_->getDocument(), output.get());
  }
  std::string Result() override { return ""; }

 private:
  const ParserPtr parser_;
};

class Transcoders : public Subject {
 public:
  Transcoders(std::string encoding, int count) : encoding_(std::move(encoding)), count_(count) {}
  void Run() override {
    for (int i = 0; i < count_; ++i) {
      xercesc::XMLTransService::Codes code = xercesc::XMLTransService::Ok;
      delete XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
          encoding_.c_str(), code, 4000, XMLPlatformUtils::fgMemoryManager);
    }
  }
  std::string Result() override { return ""; }

 private:
  const std::string encoding_;
  const int count_;
};

}  // namespace

MakeSubject MakeParserAlone() {
  return [] { return std::make_unique<OnlyParser>(); };
}

MakeSubject ReuseParserAlone(const std::string& text, const std::string& earlier) {
  return [=] { return std::make_unique<ReusedParser>(text, earlier); };
}

MakeSubject ParseAlone(const std::string& text) {
  return [=] {
    return std::make_unique<NewParser>([text](XercesDOMParser& parser) {
      const TextSource source(text);
      ParseQuietly(parser, source);
    });
  };
}

MakeSubject ParseLimitedAlone(const std::string& text) {
  return [=] {
    return std::make_unique<NewParser>(
        [text](XercesDOMParser& parser) {
          const TextSource source(text);
          const WrappingSource limited(source);
          ParseQuietly(parser, limited);
        },
        []() -> ParserPtr { return std::make_unique<LimitedParser>(); });
  };
}

MakeSubject ParseFileAlone(const std::string& path) {
  return [=] {
    return std::make_unique<NewParser>(
        [path](XercesDOMParser& parser) { ParseQuietly(parser, path.c_str()); });
  };
}

MakeSubject ParseFileAndMakeDocumentAlone(const std::string& path) {
  return [=] {
    return std::make_unique<NewParser>([path](XercesDOMParser& parser) {
      ParseQuietly(parser, path.c_str());
      const Owned<DOMDocument> document(
          xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core")->createDocument(
              nullptr, nullptr, nullptr, XMLPlatformUtils::fgMemoryManager));
    });
  };
}

MakeSubject MakeTranscodersAlone(const std::string& encoding, int count) {
  return [=] { return std::make_unique<Transcoders>(encoding, count); };
}

MakeSubject WriteAlone(const std::string& text) {
  return [=] { return std::make_unique<Write>(text); };
}

}  // namespace fault_test
