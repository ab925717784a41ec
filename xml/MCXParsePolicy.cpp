#include "mcxprsutil/MCXParsePolicy.h"

#include <mutex>

namespace MCXPrsUtil {
namespace {

// Both are set up by the compiler: nothing runs when the library is loaded.
std::mutex policy_mutex;
MCXParsePolicy process_policy;

}  // namespace

MCXParsePolicy MCXParsePolicy::Hardened() {
  MCXParsePolicy policy;
  policy.max_document_bytes = std::uint64_t{32} * 1024 * 1024;
  policy.max_depth = 1000;
  policy.max_markup_bytes = std::uint64_t{256} * 1024;
  policy.max_names = 1000;
  policy.max_entity_expansions = 1000;
  policy.max_entity_characters = std::uint64_t{16} * 1024;
  policy.doctype = Doctype::kRefused;
  return policy;
}

void MCXParsePolicy::SetForProcess(const MCXParsePolicy& policy) {
  const std::lock_guard<std::mutex> lock(policy_mutex);
  process_policy = policy;
}

MCXParsePolicy MCXParsePolicy::GetForProcess() {
  const std::lock_guard<std::mutex> lock(policy_mutex);
  return process_policy;
}

bool operator==(const MCXParsePolicy& a, const MCXParsePolicy& b) {
  return a.max_document_bytes == b.max_document_bytes && a.max_depth == b.max_depth &&
         a.max_markup_bytes == b.max_markup_bytes && a.max_names == b.max_names &&
         a.max_entity_expansions == b.max_entity_expansions &&
         a.max_entity_characters == b.max_entity_characters && a.doctype == b.doctype;
}

bool operator!=(const MCXParsePolicy& a, const MCXParsePolicy& b) { return !(a == b); }

}  // namespace MCXPrsUtil
