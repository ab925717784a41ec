// Filling a variable list from a parsed document, against the parse and against a bare walk.

#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCPMMLParser.h>

#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

#include "BareXerces.h"
#include "Cases.h"
#include "DictionaryWalk.h"
#include "Documents.h"
#include "ListVariant.h"
#include "Suite.h"

namespace bench {
namespace {

using MCMTD_NAMESPACE::MCVarList;

struct Input {
  explicit Input(std::string document) : text(std::move(document)), parser(BareParseText(text)) {
    std::istringstream stream(text);
    if (!reader.ParseToDOM(stream).IsOK()) throw std::runtime_error("cannot read the document");
  }

  std::string text;
  MCXPrsUtil::MCPMMLParser reader;
  std::unique_ptr<xercesc::XercesDOMParser> parser;
};

Variant Ours(const std::shared_ptr<Input>& input) {
  return WithList(
      "FillVarList",
      [input](MCVarList& list) {
        if (!input->reader.FillVarList(list, {}, false).IsOK()) {
          throw std::runtime_error("FillVarList failed");
        }
      },
      Describe);
}

Variant Walk(const std::shared_ptr<Input>& input) {
  return WithList(
      "bare walk",
      [input](MCVarList& list) { WalkDictionary(*input->parser->getDocument(), list); }, Describe);
}

// Sets the scale only; what it makes is not a list.
Variant Parse(const std::shared_ptr<Input>& input) {
  auto parser = std::make_shared<std::unique_ptr<xercesc::XercesDOMParser>>();
  return {"the bare parse", [input, parser] {
            parser->reset();
            *parser = BareParseText(input->text);
          }};
}

Comparison FillAgainstParse(const std::string& document, std::optional<Limit> share) {
  auto input = std::make_shared<Input>(document);
  Comparison comparison;
  comparison.ours = Ours(input);
  comparison.peers = {{Parse(input), share}, {Walk(input), Limit{1.5}}};
  return comparison;
}

Comparison WalkAgainstParse(const std::string& document) {
  auto input = std::make_shared<Input>(document);
  Comparison comparison;
  comparison.ours = Walk(input);
  comparison.peers = {{Parse(input), {}}};
  return comparison;
}

std::string DictionaryPmml() { return MakePmml({1500, 10, 0, 7, 8}); }

}  // namespace

void AddVariableListCases(Suite& suite) {
  const std::string withTree = "1 MB, 200 fields and a tree";
  const std::string alone = "1 MB, dictionary alone";
  suite.Add("fill", "FillVarList", withTree,
            [] { return FillAgainstParse(MegabytePmml(), Limit{0.03}); });
  suite.Add("fill", "bare walk", withTree, [] { return WalkAgainstParse(MegabytePmml()); });
  suite.Add("fill", "FillVarList", alone, [] { return FillAgainstParse(DictionaryPmml(), {}); });
  suite.Add("fill", "bare walk", alone, [] { return WalkAgainstParse(DictionaryPmml()); });
}

}  // namespace bench
