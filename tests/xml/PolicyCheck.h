// What the tests of the parse policy share.
#ifndef MCXPRSUTIL_TESTS_XML_POLICYCHECK_H
#define MCXPRSUTIL_TESTS_XML_POLICYCHECK_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <istream>
#include <sstream>
#include <streambuf>
#include <string>

#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXParsePolicy.h"
#include "xml/TestDocument.h"

namespace xml_test {

// Puts a policy in force while it lives.
class PolicyScope {
 public:
  explicit PolicyScope(const MCXPrsUtil::MCXParsePolicy& policy) {
    MCXPrsUtil::MCXParsePolicy::SetForProcess(policy);
  }
  ~PolicyScope() { MCXPrsUtil::MCXParsePolicy::SetForProcess({}); }
  PolicyScope(const PolicyScope&) = delete;
  PolicyScope& operator=(const PolicyScope&) = delete;
};

inline std::string Repeat(const std::string& text, std::size_t times) {
  std::string all;
  all.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

// `levels` elements, each within the one before.
inline std::string Nested(std::size_t levels, const std::string& inside = "") {
  return Repeat("<a>", levels) + inside + Repeat("</a>", levels);
}

// Gives a head, then the same piece over and over up to a size, without keeping them. Counts what
// was taken.
class EndlessStream : public std::istream {
 public:
  EndlessStream(std::string head, std::string piece, std::size_t size)
      : std::istream(nullptr), buffer_(std::move(head), std::move(piece), size) {
    rdbuf(&buffer_);
  }

  std::size_t BytesTaken() const { return buffer_.taken; }

 private:
  struct Buffer : std::streambuf {
    Buffer(std::string its_head, std::string its_piece, std::size_t its_size)
        : head(std::move(its_head)), piece(std::move(its_piece)), size(its_size) {}

    int_type underflow() override {
      std::string& next = taken == 0 ? head : piece;
      if (taken >= size) return traits_type::eof();
      taken += next.size();
      setg(next.data(), next.data(), next.data() + next.size());
      return traits_type::to_int_type(*gptr());
    }

    std::string head;
    std::string piece;
    std::size_t size;
    std::size_t taken = 0;
  };

  Buffer buffer_;
};

// What a parse left behind, in short: the text of the document element, the malformed document's
// error, or status and message.
inline std::string OutcomeOf(const MCXPrsUtil::MCXMLReadWrite& reader,
                             const MCCommon::MCStatus& status) {
  if (!status.IsOK()) {
    EXPECT_EQ(reader.GetDocument(), nullptr);
    EXPECT_FALSE(reader.IsWellFormed());
    return std::to_string(status.GetCode()) + ": " + reader.GetXercesMessage();
  }
  if (!reader.IsWellFormed()) return "malformed: " + reader.GetParseError();
  return "text: " + Utf8(reader.GetDocument()->getDocumentElement()->getTextContent());
}

inline std::string ParseOutcome(const std::string& xml) {
  MCXPrsUtil::MCXMLReadWrite reader;
  std::istringstream in(xml);
  return OutcomeOf(reader, reader.ParseToDOM(in));
}

inline std::string HardenedOutcome(const std::string& xml) {
  const PolicyScope scope(MCXPrsUtil::MCXParsePolicy::Hardened());
  return ParseOutcome(xml);
}

// The hardened policy, but for document type declarations that stay within the document.
inline MCXPrsUtil::MCXParsePolicy InternalPolicy() {
  MCXPrsUtil::MCXParsePolicy policy = MCXPrsUtil::MCXParsePolicy::Hardened();
  policy.doctype = MCXPrsUtil::MCXParsePolicy::Doctype::kInternal;
  return policy;
}

inline std::string InternalOutcome(const std::string& xml) {
  const PolicyScope scope(InternalPolicy());
  return ParseOutcome(xml);
}

}  // namespace xml_test

#endif  // MCXPRSUTIL_TESTS_XML_POLICYCHECK_H
