// The XML layer while memory is short.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "faults/AllocationSweep.h"
#include "faults/XercesAlone.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXParsePolicy.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "support/FailingAllocations.h"
#include "support/SmallDocuments.h"
#include "support/TestFiles.h"

namespace {

using fault_test::FailingXmlMemory;
using fault_test::Subject;
using fault_test::SweepAndPrint;
using fault_test::TextOf;
using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXParsePolicy;

class XmlAllocations : public testing::Test {
 protected:
  FailingXmlMemory memory_;
  test_support::ScratchFolder folder_;
};

// Documents that are read in different ways. Their results tell whether they are well-formed.
constexpr char kEntities[] =
    "<!DOCTYPE a [<!ENTITY e 'x'><!ELEMENT a ANY><!ATTLIST a b CDATA 'c'>]><a>&e;<d f='g'/></a>";
constexpr char kInternalEntities[] =
    "<!DOCTYPE a [<!ENTITY e 'x'><!ENTITY f '&e;&e;'>]><a b='&f;'>&f;<d/></a>";
constexpr char kCodePage[] = "<?xml version='1.0' encoding='windows-1251'?><a b='\xC6'>\xD6</a>";
constexpr char kVersion11[] = "<?xml version='1.1'?><a b='&#1;'/>";
const std::vector<std::string> kDocuments = {
    test_support::kPmml, kEntities, kCodePage, kVersion11, "<a/>", "<a><b></a>", "no XML", "",
};

class Construct : public Subject {
  void Prepare() override { reader_.reset(); }
  void Run() override { reader_.emplace(); }
  std::string Result() override { return TextOf(reader_->GetInitStatus()); }

  std::optional<MCXMLReadWrite> reader_;
};

TEST_F(XmlAllocations, Construction) {
  SweepAndPrint({"MCXMLReadWrite()", [] { return std::make_unique<Construct>(); }});
}

class Parse : public Subject {
 public:
  std::string Result() override {
    if (!status_.IsOK()) return TextOf(status_);
    if (reader_.IsWellFormed()) return "read";
    // The parser's words are lost where there is no memory for them.
    return fault_test::kFailed + (" to be well-formed: " + reader_.GetParseError());
  }
  std::string WrongAfterThrow() override {
    if (reader_.GetDocument() != nullptr) return "there is a document";
    return reader_.IsWellFormed() ? "it is well-formed" : "";
  }

 protected:
  MCXMLReadWrite reader_;
  MCStatus status_;
};

class ParseStream : public Parse {
 public:
  explicit ParseStream(std::string text) : text_(std::move(text)) {}
  void Prepare() override { in_.emplace(text_); }
  void Run() override { status_ = reader_.ParseToDOM(*in_); }

 private:
  const std::string text_;
  std::optional<std::istringstream> in_;
};

class ParseFile : public Parse {
 public:
  explicit ParseFile(std::string path) : path_(std::move(path)) {}
  void Run() override { status_ = reader_.ParseToDOM(path_); }

 private:
  const std::string path_;
};

TEST_F(XmlAllocations, ParsingAStream) {
  for (const std::string& text : kDocuments) {
    SweepAndPrint({"ParseToDOM(stream) of " + text.substr(0, 40),
                   [&] { return std::make_unique<ParseStream>(text); },
                   fault_test::ParseAlone(text)});
  }
}

TEST_F(XmlAllocations, ParsingWithinLimits) {
  MCXParsePolicy::SetForProcess(MCXParsePolicy::Hardened());
  for (const std::string& text : {kDocuments[0], std::string(kInternalEntities), kDocuments[5]}) {
    SweepAndPrint({"limited ParseToDOM(stream) of " + text.substr(0, 40),
                   [&] { return std::make_unique<ParseStream>(text); },
                   fault_test::ParseLimitedAlone(text)});
  }
  MCXParsePolicy::SetForProcess(MCXParsePolicy());
}

TEST_F(XmlAllocations, ParsingAFile) {
  for (const std::string& text : kDocuments) {
    const std::string path = test_support::WriteTo(folder_.File("a.xml"), text);
    SweepAndPrint({"ParseToDOM(file) of " + text.substr(0, 40),
                   [&] { return std::make_unique<ParseFile>(path); },
                   fault_test::ParseFileAlone(path)});
  }
}

TEST_F(XmlAllocations, ParsingAFileThatIsNotThere) {
  const std::string path = folder_.File("none.xml");
  SweepAndPrint({"ParseToDOM(no file)", [&] { return std::make_unique<ParseFile>(path); },
                 fault_test::ParseFileAlone(path)});
}

class Write : public Subject {
 public:
  Write(const std::string& text, std::string path) : path_(std::move(path)) {
    std::istringstream in(text);
    EXPECT_TRUE(writer_.ParseToDOM(in).IsOK());
  }
  void Prepare() override { std::filesystem::remove(path_); }
  void Run() override { status_ = writer_.WriteFromDOM(path_, nullptr); }
  // The serializer gives up without a word when there is no converter for the encoding.
  std::string Result() override {
    if (!status_.IsOK()) return TextOf(status_);
    const std::string written = test_support::ReadFile(path_);
    return written.empty() ? fault_test::kFailed + std::string(" to write anything") : written;
  }
  std::string WrongAfterThrow() override {
    return std::filesystem::exists(path_) ? "there is a file" : "";
  }

 private:
  const std::string path_;
  MCXMLReadWrite writer_;
  MCStatus status_;
};

TEST_F(XmlAllocations, Writing) {
  const std::string path = folder_.File("out.xml");
  for (const std::string& text : {kDocuments[0], kDocuments[1], kDocuments[2]}) {
    SweepAndPrint({"WriteFromDOM of " + text.substr(0, 40),
                   [&] { return std::make_unique<Write>(text, path); },
                   fault_test::WriteAlone(text)});
  }
}

constexpr char kLongText[] =
    "plain text, much longer than what a string keeps in itself, and longer than a name is";
constexpr char kAccents[] = "d\xC3\xA9j\xC3\xA0 vu, \xE6\x9D\xB1\xE4\xBA\xAC, \xF0\x9F\x98\x80";
constexpr char kMalformed[] = "a text that ends in the middle of a character \xE6\x9D";

class ToWide : public Subject {
 public:
  explicit ToWide(const char* text) : text_(text) {}
  void Run() override { wide_ = MCXPrsUtil::ToUTF16(text_); }
  std::string Result() override { return MCXPrsUtil::ToUTF8(wide_.data()); }

 private:
  const char* const text_;
  std::vector<XMLCh> wide_;
};

class FromWide : public Subject {
 public:
  explicit FromWide(std::vector<XMLCh> text) : text_(std::move(text)) {}
  void Run() override { bytes_ = MCXPrsUtil::ToUTF8(text_.data()); }
  std::string Result() override { return bytes_; }

 private:
  const std::vector<XMLCh> text_;
  std::string bytes_;
};

TEST_F(XmlAllocations, TextOfTheDom) {
  for (const char* text : {kLongText, kAccents, kMalformed}) {
    SweepAndPrint(
        {std::string("ToUTF16 of ") + text, [&] { return std::make_unique<ToWide>(text); }});
  }
  const std::vector<XMLCh> lone = {'a', 0xD800, 'b', 0};
  for (const auto& text : {MCXPrsUtil::ToUTF16(kLongText), MCXPrsUtil::ToUTF16(kAccents), lone}) {
    SweepAndPrint({"ToUTF8", [&] { return std::make_unique<FromWide>(text); }});
  }
}

class Transcode : public Subject {
 public:
  explicit Transcode(const char* encoding) : encoding_(encoding) {}
  void Run() override {
    const MCXPrsUtil::MCXTranscoder transcoder(encoding_);
    valid_ = transcoder.isValid();
    wide_ = transcoder.TranscodeFrom("some text of no great length");
    bytes_ = transcoder.TranscodeTo(wide_.data());
  }
  // An empty text stands for every failure.
  std::string Result() override { return !valid_ || bytes_.empty() ? fault_test::kFailed : bytes_; }

 private:
  const char* const encoding_;
  bool valid_ = false;
  std::vector<XMLCh> wide_;
  std::string bytes_;
};

TEST_F(XmlAllocations, Transcoders) {
  for (const char* encoding : {"UTF-8", "windows-1252", "Shift_JIS", "ISO-2022-JP", "UTF-16"}) {
    SweepAndPrint({std::string("MCXTranscoder ") + encoding,
                   [&] { return std::make_unique<Transcode>(encoding); },
                   fault_test::MakeTranscodersAlone(encoding, 3)});
  }
}

// Builds a document with every helper that changes one, and reads it.
class Build : public Subject {
 public:
  void Prepare() override {
    std::istringstream in("<root><old/><list>1 2.5 1e400 -INF</list></root>");
    ASSERT_TRUE(reader_.ParseToDOM(in).IsOK());
  }
  void Run() override {
    using namespace MCXPrsUtil;
    done_ = 0;
    xercesc::DOMDocument& document = *reader_.GetDocument();
    xercesc::DOMElement& root = *document.getDocumentElement();
    xercesc::DOMElement* element = CreateElement(document, kName);
    done_ += SetAttribute(*element, kName, kAccents) ? 1 : 0;
    done_ += SetAttribute(*element, "number", 0.1) ? 1 : 0;
    done_ += InsertElement(root, element, nullptr) ? 1 : 0;
    done_ += InsertElement(root, CreateExtension(document, "extension"), element) ? 1 : 0;
    xercesc::DOMElement* old = GetFirstChildElmt(root, "old");
    done_ += ReplaceElement(root, CreateElement(document, "new"), old) ? 1 : 0;
    done_ += AssembleDoublesList(*GetFirstChildElmt(root, "list"), numbers_) ? 0 : 1;
    done_ += GetDoubleAttribute(*element, "number", number_) == 0 ? 1 : 0;
    old->release();
  }
  std::string Result() override { return done_ == 7 ? "built" : "refused"; }

 private:
  static constexpr char kName[] =
      "an-element-name-that-is-longer-than-what-a-local-buffer-of-names-takes";
  MCXMLReadWrite reader_;
  std::vector<double> numbers_;
  double number_ = 0;
  int done_ = 0;
};

TEST_F(XmlAllocations, DomHelpers) {
  SweepAndPrint({"DOM helpers", [] { return std::make_unique<Build>(); }});
}

}  // namespace
