// What the tests of the XML layer share: documents from text, texts as DOM strings, scratch files.
#ifndef MCXPRSUTIL_TESTS_XML_TESTDOCUMENT_H
#define MCXPRSUTIL_TESTS_XML_TESTDOCUMENT_H

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <xercesc/dom/DOM.hpp>

#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXTranscoder.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define MCX_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define MCX_TEST_SANITIZED 1
#endif
#endif

#if defined(__SANITIZE_ADDRESS__)
#define MCX_TEST_LEAK_CHECK 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MCX_TEST_LEAK_CHECK 1
#endif
#endif
#ifdef MCX_TEST_LEAK_CHECK
#include <sanitizer/lsan_interface.h>
#endif

namespace xml_test {

// How often a random test repeats: sanitizers cost a factor of ten and more.
#ifdef MCX_TEST_SANITIZED
constexpr int kRounds = 30'000;
#else
constexpr int kRounds = 1'000'000;
#endif

// What is allocated while it lives is not reported as a leak: for the places where the XML library
// itself loses memory when something throws.
class IgnoreLeaks {
 public:
#ifdef MCX_TEST_LEAK_CHECK
  IgnoreLeaks() { __lsan_disable(); }
  ~IgnoreLeaks() { __lsan_enable(); }
#else
  IgnoreLeaks() {}
  ~IgnoreLeaks() {}
#endif
  IgnoreLeaks(const IgnoreLeaks&) = delete;
  IgnoreLeaks& operator=(const IgnoreLeaks&) = delete;
};

// A document parsed from a string.
class TestDocument {
 public:
  explicit TestDocument(const std::string& xml) {
    std::istringstream in(xml);
    EXPECT_TRUE(reader_.ParseToDOM(in).IsOK());
    EXPECT_TRUE(reader_.IsWellFormed()) << reader_.GetParseError();
  }

  xercesc::DOMDocument& Get() { return *reader_.GetDocument(); }
  xercesc::DOMElement& Root() { return *Get().getDocumentElement(); }
  MCXPrsUtil::MCXMLReadWrite& Reader() { return reader_; }

 private:
  MCXPrsUtil::MCXMLReadWrite reader_;
};

inline std::string Utf8(const XMLCh* text) {
  return text ? MCXPrsUtil::ToUTF8(text) : std::string("(null)");
}

// The tag name of an element, or "(none)".
inline std::string Tag(const xercesc::DOMElement* e) {
  return e ? Utf8(e->getTagName()) : std::string("(none)");
}

// A folder of the test's own that goes away with the object.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "mcx-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no scratch folder");
    path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// How many files this process has open.
inline auto OpenFiles() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

inline void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace xml_test

#endif  // MCXPRSUTIL_TESTS_XML_TESTDOCUMENT_H
