// Reading the statistics of all fields of a model, against the parse and against a bare walk.

#include <mccommon/MCUniStats.h>
#include <mcxprsutil/MCPMMLParser.h>

#include <cstring>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "BareText.h"
#include "BareXerces.h"
#include "Cases.h"
#include "ReaderDocuments.h"
#include "Suite.h"

namespace bench {
namespace {

using MCMTD_NAMESPACE::MCUniStats;
using xercesc::DOMElement;
using StatisticsList = std::vector<MCUniStats>;

constexpr std::size_t kFields = 1000;
constexpr std::size_t kBins = 100;

struct Input {
  Input() : text(MakeStatistics(kFields, kBins)), parser(BareParseText(text)) {
    std::istringstream stream(text);
    if (!reader.ParseToDOM(stream).IsOK()) throw std::runtime_error("cannot read the document");
    if (!reader.SetModelElmt(*ChildNamed(*reader.GetRootElement(), u"TreeModel")))
      throw std::runtime_error("the reader takes no model");
  }

  std::string text;
  MCXPrsUtil::MCPMMLParser reader;
  std::unique_ptr<xercesc::XercesDOMParser> parser;
};

StatisticsList ReadAll(const MCXPrsUtil::MCPMMLParser& reader) {
  StatisticsList all;
  for (const DOMElement* cursor = nullptr;;) {
    MCUniStats statistics;
    const bool ok = reader.FillUniStats(statistics, cursor).IsOK();
    if (cursor == nullptr) return all;
    if (!ok) throw std::runtime_error("FillUniStats failed");
    all.push_back(std::move(statistics));
  }
}

MCUniStats::SummStats WalkSummary(const DOMElement& numericInfo) {
  MCUniStats::SummStats summary;
  summary.minimum = NumberAttribute(numericInfo, u"minimum");
  summary.maximum = NumberAttribute(numericInfo, u"maximum");
  summary.mean = NumberAttribute(numericInfo, u"mean");
  summary.standardDeviation = NumberAttribute(numericInfo, u"standardDeviation");
  return summary;
}

// Reads both margins of every interval, as a program must that cannot know that there are no gaps.
std::vector<double> WalkIntervals(const DOMElement& distribution) {
  std::vector<double> cutPoints;
  for (const DOMElement* child = distribution.getFirstElementChild(); child != nullptr;
       child = child->getNextElementSibling()) {
    if (!HasName(*child, u"Interval")) continue;
    const double left = NumberAttribute(*child, u"leftMargin");
    if (cutPoints.empty() || left != cutPoints.back()) cutPoints.push_back(left);
    cutPoints.push_back(NumberAttribute(*child, u"rightMargin"));
  }
  return cutPoints;
}

std::vector<double> WalkFrequencies(const DOMElement& array) {
  std::vector<double> frequencies;
  const XMLCh* text = array.getFirstChild()->getNodeValue();
  while (*text != 0) frequencies.push_back(TakeNumber(text));
  return frequencies;
}

MCUniStats WalkField(const DOMElement& element, const Utf8Maker& toUtf8) {
  const std::string name = toUtf8(element.getAttribute(u"field"));
  const double total = NumberAttribute(*ChildNamed(element, u"Counts"), u"totalFreq");
  const DOMElement& distribution = *ChildNamed(element, u"ContStats");
  return {name, total, WalkSummary(*ChildNamed(element, u"NumericInfo")),
          WalkIntervals(distribution), WalkFrequencies(*ChildNamed(distribution, u"Array"))};
}

StatisticsList WalkAll(const xercesc::DOMDocument& document) {
  const Utf8Maker toUtf8;
  const DOMElement& model = *ChildNamed(*document.getDocumentElement(), u"TreeModel");
  StatisticsList all;
  for (const DOMElement* child = ChildNamed(model, u"ModelStats")->getFirstElementChild();
       child != nullptr; child = child->getNextElementSibling()) {
    if (HasName(*child, u"UnivariateStats")) all.push_back(WalkField(*child, toUtf8));
  }
  return all;
}

// The bits, so that no rounding hides a difference.
void AppendBits(const std::vector<double>& numbers, std::string& text) {
  std::string bits(numbers.size() * sizeof(double), '\0');
  if (!numbers.empty()) std::memcpy(bits.data(), numbers.data(), bits.size());
  text += std::to_string(numbers.size()) + ":" + bits;
}

std::string Describe(const StatisticsList& all) {
  std::string text;
  for (const MCUniStats& statistics : all) {
    const MCUniStats::SummStats& summary = statistics.GetSummary();
    text += statistics.GetName() + (statistics.IsContinuous() ? " continuous " : " categorical ");
    AppendBits({statistics.GetTotal(), summary.minimum, summary.maximum, summary.mean,
                summary.standardDeviation},
               text);
    AppendBits(statistics.GetCutPoints(), text);
    AppendBits(statistics.GetFrequencies(), text);
  }
  return text;
}

Variant WithStatistics(std::string name, const std::function<StatisticsList()>& read) {
  auto all = std::make_shared<StatisticsList>();
  return {std::move(name), [all, read] { *all = read(); }, [all] { return Describe(*all); }};
}

// Sets the scale only; what it makes are no statistics.
Variant Parse(const std::shared_ptr<Input>& input) {
  auto parser = std::make_shared<std::unique_ptr<xercesc::XercesDOMParser>>();
  return {"the bare parse", [input, parser] {
            parser->reset();
            *parser = BareParseText(input->text);
          }};
}

Variant Walk(const std::shared_ptr<Input>& input) {
  return WithStatistics("bare walk", [input] { return WalkAll(*input->parser->getDocument()); });
}

Comparison ReadAgainstParse() {
  auto input = std::make_shared<Input>();
  Comparison comparison;
  comparison.ours = WithStatistics("FillUniStats", [input] { return ReadAll(input->reader); });
  comparison.peers = {{Parse(input), Limit{0.25}}, {Walk(input), Limit{1.5}}};
  return comparison;
}

}  // namespace

void AddStatisticsCases(Suite& suite) {
  suite.Add("readers", "FillUniStats", "1000 fields of 100 bins", ReadAgainstParse);
}

}  // namespace bench
