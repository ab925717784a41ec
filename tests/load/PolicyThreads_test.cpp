// A parse policy that one thread sets while others parse.
#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <string>

#include "load/Threads.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXParsePolicy.h"
#include "support/SmallDocuments.h"
#include "xml/PolicyCheck.h"

namespace {

using load_test::OnAllThreads;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXParsePolicy;
using xml_test::PolicyScope;

// Policies whose members say so when those of two are mixed.
MCXParsePolicy Uniform(std::uint64_t limit) {
  MCXParsePolicy policy;
  policy.max_document_bytes = limit;
  policy.max_depth = limit;
  policy.max_names = limit;
  policy.max_entity_characters = limit;
  return policy;
}

bool IsUniform(const MCXParsePolicy& policy) {
  const std::uint64_t limit = policy.max_document_bytes;
  return policy.max_depth == limit && policy.max_names == limit &&
         policy.max_entity_characters == limit;
}

// Every thread sets and reads: so the readers cannot be done before a setter begins.
TEST(PolicyThreads, NobodySeesAPolicyThatIsHalfSet) {
  const PolicyScope scope(Uniform(1));
  std::atomic<int> mixed{0};
  OnAllThreads([&](int thread) {
    const MCXParsePolicy mine = Uniform(static_cast<std::uint64_t>(thread) + 1);
    for (int i = 0; i < 5000; ++i) {
      MCXParsePolicy::SetForProcess(mine);
      mixed += IsUniform(MCXParsePolicy::GetForProcess()) ? 0 : 1;
    }
  });
  EXPECT_EQ(mixed, 0);
}

// Read as a whole, or refused with the message of one of the two limits.
bool IsReadOrRefused() {
  MCPMMLParser parser;
  std::istringstream in(test_support::kPmml);
  const MCCommon::MCStatus status = parser.ParseToDOM(in);
  const std::string message = parser.GetXercesMessage();
  if (status.IsOK()) return message.empty();
  return status.GetCode() == 104 && (message.find("max_depth = 1)") != std::string::npos ||
                                     message.find("max_names = 2)") != std::string::npos);
}

TEST(PolicyThreads, AParseKeepsToOnePolicyWhileAnotherIsSet) {
  MCXParsePolicy shallow;
  shallow.max_depth = 1;
  MCXParsePolicy few;
  few.max_names = 2;
  const MCXParsePolicy policies[] = {shallow, few, MCXParsePolicy::Hardened(), MCXParsePolicy()};
  const PolicyScope scope(shallow);
  const MCXMLReadWrite platform;
  std::atomic<int> wrong{0};
  OnAllThreads([&](int thread) {
    for (int i = 0; i < 50; ++i) {
      MCXParsePolicy::SetForProcess(policies[(thread + i) % 4]);
      wrong += IsReadOrRefused() ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace
