// Any document under a policy that its first bytes choose: it is refused with a message and nothing
// of it is held, or it is the document that is read without limits. Limits that a document keeps to
// refuse nothing, those that it breaks let nothing pass, and nothing of a policy stays behind.
#include <mcxprsutil/MCDataModelParser.h>
#include <mcxprsutil/MCPMMLParser.h>
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXParsePolicy.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "Check.h"
#include "DomTree.h"
#include "Input.h"
#include "XmlPlatform.h"

namespace {

using fuzz::Input;
using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXParsePolicy;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

constexpr int kParseFailed = 104;
constexpr MCStatus kThrown(-1, false);  // an XML version other than 1.0 and 1.1

// Puts a policy in force until it goes.
class InForce {
 public:
  explicit InForce(const MCXParsePolicy& policy) {
    MCXParsePolicy::SetForProcess(policy);
    FUZZ_CHECK(MCXParsePolicy::GetForProcess() == policy);
  }
  ~InForce() { MCXParsePolicy::SetForProcess(MCXParsePolicy()); }
  InForce(const InForce&) = delete;
  InForce& operator=(const InForce&) = delete;
};

struct Parsed {
  MCStatus status;
  bool well_formed = false;
  bool has_doctype = false;
  std::size_t depth = 0;
  std::vector<std::string> lines;  // of the document, if there is one
};

std::size_t DepthOf(DOMDocument& document) {
  std::size_t deepest = 0;
  for (const DOMElement* e : fuzz::ElementsOf(document.getDocumentElement())) {
    std::size_t depth = 0;
    for (const DOMNode* n = e; n != nullptr; n = n->getParentNode()) {
      if (n->getNodeType() == DOMNode::ELEMENT_NODE) ++depth;
    }
    deepest = std::max(deepest, depth);
  }
  return deepest;
}

Parsed Parse(const std::string& text) {
  MCXMLReadWrite reader;
  std::istringstream in(text);
  Parsed parsed;
  try {
    parsed.status = reader.ParseToDOM(in);
  } catch (const xercesc::DOMException&) {
    parsed.status = kThrown;
  }
  DOMDocument* document = reader.GetDocument();
  FUZZ_CHECK(parsed.status.IsOK() == (document != nullptr));
  if (parsed.status.GetCode() == kParseFailed) FUZZ_CHECK(!reader.GetXercesMessage().empty());
  parsed.well_formed = reader.IsWellFormed();
  if (document == nullptr) return parsed;
  parsed.has_doctype = document->getDoctype() != nullptr;
  parsed.depth = DepthOf(*document);
  parsed.lines = fuzz::LinesOf(*document);
  return parsed;
}

// ---- Policies ----

std::uint64_t Limit(Input& in) {
  constexpr std::uint64_t kLimits[] = {0, 1, 2, 5, 16, 64, 300, 1000, 5000};
  const unsigned choice = in.Below(12);
  return choice < 9 ? kLimits[choice] : MCXParsePolicy::kUnlimited;
}

MCXParsePolicy ChoosePolicy(Input& in) {
  if (in.Byte() % 4 == 0) return MCXParsePolicy::Hardened();
  MCXParsePolicy policy;
  policy.max_document_bytes = Limit(in);
  policy.max_depth = Limit(in);
  policy.max_markup_bytes = Limit(in);
  policy.max_names = Limit(in);
  policy.max_entity_expansions = Limit(in);
  policy.max_entity_characters = Limit(in);
  policy.doctype = static_cast<MCXParsePolicy::Doctype>(in.Below(3));
  return policy;
}

std::uint64_t LeastOf(const MCXParsePolicy& policy) {
  return std::min({policy.max_document_bytes, policy.max_depth, policy.max_markup_bytes,
                   policy.max_names, policy.max_entity_expansions, policy.max_entity_characters});
}

// Without entities every measure of a document is below its size.
bool KeepsTo(const MCXParsePolicy& policy, const Parsed& free, std::size_t size) {
  if (policy == MCXParsePolicy()) return true;
  return LeastOf(policy) >= size && !free.has_doctype;
}

bool Breaks(const MCXParsePolicy& policy, const Parsed& free, std::size_t size) {
  return free.well_formed &&
         (size > policy.max_document_bytes || free.depth > policy.max_depth ||
          (free.has_doctype && policy.doctype == MCXParsePolicy::Doctype::kRefused));
}

bool AreSame(const Parsed& a, const Parsed& b) {
  return a.status == b.status && a.well_formed == b.well_formed && a.lines == b.lines;
}

void Compare(const MCXParsePolicy& policy, const std::string& text) {
  const Parsed free = Parse(text);
  Parsed limited;
  {
    const InForce force(policy);
    limited = Parse(text);
    FUZZ_CHECK(AreSame(Parse(text), limited));
  }
  FUZZ_CHECK(limited.status.GetCode() == kParseFailed || AreSame(limited, free));
  if (KeepsTo(policy, free, text.size())) FUZZ_CHECK(AreSame(limited, free));
  if (Breaks(policy, free, text.size())) FUZZ_CHECK(limited.status.GetCode() == kParseFailed);
  FUZZ_CHECK(AreSame(Parse(text), free));
}

// The readers go through the same gate.
void CompareReaders(const MCXParsePolicy& policy, const std::string& text) {
  MCXPrsUtil::MCPMMLParser reader;
  MCXPrsUtil::MCDataModelParser model_reader;
  MCStatus free;
  MCStatus model_free;
  {
    std::istringstream in(text);
    free = reader.ParseToDOM(in);
    model_free = model_reader.ParseToDOM(text);
  }
  const InForce force(policy);
  std::istringstream in(text);
  const MCStatus limited = reader.ParseToDOM(in);
  FUZZ_CHECK(limited == free || limited.GetCode() == kParseFailed);
  FUZZ_CHECK(limited.IsOK() == (reader.GetRootElement() != nullptr));
  const MCStatus model_limited = model_reader.ParseToDOM(text);
  FUZZ_CHECK(model_limited == model_free || model_limited.GetCode() == kParseFailed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kPolicyBytes = 8;
  fuzz::StartXmlPlatform();
  Input in(data, size);
  Input choices(data, std::min(size, kPolicyBytes));
  (void)in.Take(kPolicyBytes);
  const std::string text = in.Rest();
  const MCXParsePolicy policy = ChoosePolicy(choices);
  if (fuzz::IsModest(text)) {
    Compare(policy, text);
    CompareReaders(policy, text);
    return 0;
  }
  // Too much to read without limits; with them it must not be.
  const InForce force(MCXParsePolicy::Hardened());
  (void)Parse(text);
  return 0;
}
