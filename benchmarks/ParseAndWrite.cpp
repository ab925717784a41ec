// Parsing a document into a DOM and writing it to a file, against the bare parser and serializer.

#include <mcxprsutil/MCPMMLParser.h>
#include <mcxprsutil/MCXMLReadWrite.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include "BareXerces.h"
#include "Cases.h"
#include "Documents.h"
#include "Suite.h"

namespace bench {
namespace {

using MCXPrsUtil::MCXMLReadWrite;

struct Input {
  explicit Input(std::string document) : text(std::move(document)), path(directory.PathOf("in")) {
    WriteFile(path, text);
  }
  void Rewind() {
    stream.clear();
    stream.seekg(0);
  }

  TempDirectory directory;
  std::string text;
  std::string path;
  std::istringstream stream{text};
  MCXMLReadWrite reader;
  std::unique_ptr<xercesc::XercesDOMParser> parser;
};

void Require(const MCCommon::MCStatus& status) {
  if (!status.IsOK()) throw std::runtime_error("status " + std::to_string(status.GetCode()));
}

Variant BareParse(const std::shared_ptr<Input>& input, bool fromFile) {
  return {"bare XercesDOMParser",
          [input, fromFile] {
            input->parser.reset();
            input->parser = fromFile ? BareParseFile(input->path) : BareParseText(input->text);
          },
          [input] { return Serialize(*input->parser->getDocument()); }};
}

Comparison ParseFile(const std::string& document, Limit limit, std::optional<double> memory) {
  auto input = std::make_shared<Input>(document);
  Comparison comparison;
  comparison.bytes = document.size();
  comparison.memoryFactor = memory;
  comparison.ours = {"MCXMLReadWrite", [input] { Require(input->reader.ParseToDOM(input->path)); },
                     [input] { return Serialize(*input->reader.GetDocument()); }};
  comparison.peers = {{BareParse(input, true), limit}};
  return comparison;
}

// The floor reads the text where it lies, which is less work than any stream can do.
Comparison ParseStream(const std::string& document, Limit limit, std::optional<double> memory) {
  auto input = std::make_shared<Input>(document);
  Comparison comparison;
  comparison.bytes = document.size();
  comparison.memoryFactor = memory;
  comparison.ours = {"MCXMLReadWrite",
                     [input] {
                       input->Rewind();
                       Require(input->reader.ParseToDOM(input->stream));
                     },
                     [input] { return Serialize(*input->reader.GetDocument()); }};
  comparison.peers = {{BareParse(input, false), limit}};
  return comparison;
}

Comparison ParsePmml(const std::string& document, Limit limit, std::optional<double> memory) {
  auto input = std::make_shared<Input>(document);
  auto reader = std::make_shared<MCXPrsUtil::MCPMMLParser>();
  Comparison comparison;
  comparison.bytes = document.size();
  comparison.memoryFactor = memory;
  comparison.ours = {"MCPMMLParser",
                     [input, reader] {
                       input->Rewind();
                       Require(reader->ParseToDOM(input->stream));
                     },
                     [reader] { return Serialize(*reader->GetRootElement()->getOwnerDocument()); }};
  comparison.peers = {{BareParse(input, false), limit}};
  return comparison;
}

struct Output {
  explicit Output(const std::string& document) { Require(ParseInto(document)); }
  MCCommon::MCStatus ParseInto(const std::string& document) {
    std::istringstream stream(document);
    return reader.ParseToDOM(stream);
  }

  TempDirectory directory;
  std::string ours = directory.PathOf("ours");
  std::string floor = directory.PathOf("floor");
  MCXMLReadWrite reader;
};

Comparison WriteToFile(const std::string& document, Limit limit) {
  auto output = std::make_shared<Output>(document);
  Comparison comparison;
  comparison.bytes = document.size();
  comparison.ours = {"MCXMLReadWrite",
                     [output] { Require(output->reader.WriteFromDOM(output->ours, nullptr)); },
                     [output] { return ReadFile(output->ours); }};
  comparison.peers = {{{"bare DOMLSSerializer",
                        [output] { BareWriteFile(*output->reader.GetDocument(), output->floor); },
                        [output] { return ReadFile(output->floor); }},
                       limit}};
  return comparison;
}

std::string SmallPmml() { return MakePmml({12, 5, 20 << 10, 5, 6}); }

}  // namespace

void AddParseAndWriteCases(Suite& suite) {
  suite.Add("parse", "ParseToDOM file", "1 MB",
            [] { return ParseFile(MegabytePmml(), {1.02}, 1.02); });
  suite.Add("parse", "ParseToDOM file", "20 KB", [] { return ParseFile(SmallPmml(), {1.05}, {}); });
  suite.Add("parse", "ParseToDOM stream", "1 MB",
            [] { return ParseStream(MegabytePmml(), {1.02}, 1.02); });
  suite.Add("parse", "ParseToDOM stream", "20 KB",
            [] { return ParseStream(SmallPmml(), {1.05}, {}); });
  suite.Add("parse", "ParseToDOM PMML", "1 MB",
            [] { return ParsePmml(MegabytePmml(), {1.02}, 1.02); });
  suite.Add("parse", "ParseToDOM PMML", "20 KB", [] { return ParsePmml(SmallPmml(), {1.05}, {}); });
  suite.Add("write", "WriteFromDOM", "1 MB", [] { return WriteToFile(MegabytePmml(), {1.03}); });
}

}  // namespace bench
