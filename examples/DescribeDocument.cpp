#include "DescribeDocument.h"

#include <cstdint>
#include <fstream>
#include <iostream>
#include <sstream>
#include <xercesc/dom/DOMElement.hpp>

#include "DataModelDescription.h"
#include "FileCheck.h"
#include "ParseMessage.h"
#include "PmmlDescription.h"
#include "SettingsDescription.h"
#include "StatusText.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXParsePolicy.h"

namespace examples {
namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCXParsePolicy;
using xercesc::DOMElement;

constexpr int kOtherDocument = 105;

Problem ParseProblem(const std::string& message, const MCStatus& status) {
  Problem problem;
  problem.code = status.GetCode();
  problem.text = StatusText(status.GetCode());
  if (message.empty()) return problem;
  const ParseMessage parsed = ReadParseMessage(message);
  problem.text += ": " + parsed.text;
  problem.line = parsed.line;
  problem.column = parsed.column;
  return problem;
}

enum class Task { kNone, kWithoutParameters, kWithParameters };

Task BuildTask(const DOMElement& root) {
  const DOMElement* task = GetFirstChildElmt(root, "MiningBuildTask");
  if (task == nullptr) return Task::kNone;
  const DOMElement* extension = GetFirstChildElmt(*task, "Extension");
  const bool parameters =
      extension != nullptr && GetFirstChildElmt(*extension, "Parameters") != nullptr;
  return parameters ? Task::kWithParameters : Task::kWithoutParameters;
}

void DescribeRoot(MCPMMLParser& parser, const std::string& text, const DescribeOptions& options,
                  DocumentDescription& description) {
  const Task task = BuildTask(*parser.GetRootElement());
  if (task == Task::kWithParameters) {
    DescribeSettings(text, options, description);
    return;
  }
  DescribePmml(parser, options, description);
  if (task == Task::kWithoutParameters) {
    description.notes.emplace_back(
        "the MiningBuildTask holds no parameters in its first Extension; read as plain PMML");
  }
}

// The document, or as much of it as shows that the parse policy does not allow so much.
std::string ReadWithinPolicy(std::istream& in) {
  const std::uint64_t limit = MCXParsePolicy::GetForProcess().max_document_bytes;
  std::string text;
  char piece[1 << 16];
  while (text.size() <= limit && in) {
    in.read(piece, sizeof piece);
    text.append(piece, static_cast<std::size_t>(in.gcount()));
  }
  return text;
}

DocumentDescription Unreadable(const std::string& source, const std::string& reason) {
  DocumentDescription description;
  description.source = source;
  description.problems.push_back({0, "", reason, {}, {}, ""});
  return description;
}

}  // namespace

DocumentDescription DescribeDocument(std::istream& in, const std::string& source,
                                     const DescribeOptions& options) {
  DocumentDescription description;
  description.source = source;
  // Each reader parses for itself, and standard input can be read only once.
  const std::string text = ReadWithinPolicy(in);
  std::istringstream document(text);
  MCPMMLParser parser;
  const MCStatus status = parser.ParseToDOM(document);
  if (status.IsOK()) {
    DescribeRoot(parser, text, options, description);
  } else if (status.GetCode() != kOtherDocument || !DescribeDataModel(text, options, description)) {
    description.problems.push_back(ParseProblem(parser.GetXercesMessage(), status));
  }
  return description;
}

DocumentDescription DescribeFile(const std::string& file, const DescribeOptions& options) {
  if (file == "-") return DescribeDocument(std::cin, "standard input", options);
  if (const std::string reason = WhyNotReadable(file); !reason.empty()) {
    return Unreadable(file, reason);
  }
  std::ifstream in(file, std::ios::binary);
  return DescribeDocument(in, file, options);
}

}  // namespace examples
