// Any bytes as a PMML document, read by every operation: statuses leave outputs as promised, a
// second call gives the same, a list that refuses a variable has got the calls up to that one, and
// a choice of fields gives a part of what all fields give.
#include <mccommon/MCMissingValue.h>
#include <mccommon/MCUniStats.h>
#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCPMMLParser.h>
#include <mcxprsutil/MCXDOMHelpers.h>
#include <mcxprsutil/MCXTranscoder.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Check.h"
#include "DomTree.h"
#include "FilledList.h"
#include "XmlPlatform.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCUniStats;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetNextSiblingElmt;
using MCXPrsUtil::MCPMMLParser;
using xercesc::DOMElement;
using Names = std::vector<std::string>;
using Numbers = std::vector<double>;

constexpr int kNoModel = 112;
constexpr int kBadStatistics = 116;
constexpr std::size_t kMostChoices = 6;
const std::string kUnknown = "\xEF\xBF\xBF";  // U+FFFF, which no document can hold

// ---- Dictionaries ----

Names FieldNames(const MCPMMLParser& parser) {
  Names names;
  const DOMElement* dictionary = GetFirstChildElmt(*parser.GetRootElement(), "DataDictionary");
  for (const DOMElement* e = GetFirstChildElmt(*dictionary, "DataField"); e != nullptr;
       e = GetNextSiblingElmt(*e, "DataField")) {
    const XMLCh* name = MCXPrsUtil::GetAttribute(*e, "name");
    if (name != nullptr) names.push_back(MCXPrsUtil::ToUTF8(name));
  }
  return names;
}

fuzz::Filler FillOf(const MCPMMLParser& parser, const Names& names, bool bins) {
  return [&parser, names, bins](MCVarList& list) { return parser.FillVarList(list, names, bins); };
}

// The names that stand in for a choice of fields: one each, every second, all backwards, and one
// that no dictionary has.
std::vector<Names> ChoicesOf(const Names& fields) {
  std::vector<Names> choices = {{kUnknown}, Names(fields.rbegin(), fields.rend())};
  Names half = {kUnknown, ""};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (i < kMostChoices) choices.push_back({fields[i]});
    if (i % 2 == 0) half.push_back(fields[i]);
  }
  choices.push_back(half);
  return choices;
}

void FillChoices(const MCPMMLParser& parser, const Names& fields, bool bins) {
  const fuzz::Filled all = fuzz::Fill(FillOf(parser, {}, bins));
  const Names adds = fuzz::AddsOf(all.calls);
  FUZZ_CHECK(!all.status.IsOK() || adds.size() == fields.size());
  for (const Names& names : ChoicesOf(fields)) {
    if (names.empty()) continue;
    const fuzz::Filled some = fuzz::FillOnce(FillOf(parser, names, bins));
    if (!all.status.IsOK()) continue;
    FUZZ_CHECK(some.status.IsOK());
    const auto isChosen = [&names](const std::string& field) {
      return std::find(names.begin(), names.end(), field) != names.end();
    };
    Names expected;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (isChosen(fields[i])) expected.push_back(adds[i]);
    }
    FUZZ_CHECK(fuzz::AddsOf(some.calls) == expected);
  }
}

// The bins of a continuous field are in the call that adds it.
void CheckBinned(const std::string& name, const Numbers& cuts, const Names& calls) {
  const std::string inner = RecordingVarList::Text(Numbers(cuts.begin() + 1, cuts.end() - 1));
  const std::string end = "|" + RecordingVarList::RangeText(cuts.front(), cuts.back()) + "|cuts " +
                          inner + "|binned|role 4)";
  const std::string start = "AddContVar(" + name + "|";
  for (const std::string& call : calls) {
    if (call.rfind(start, 0) != 0) continue;
    FUZZ_CHECK(call.size() >= end.size());
    FUZZ_CHECK(call.compare(call.size() - end.size(), end.size(), end) == 0);
  }
}

void ReadBins(const MCPMMLParser& parser, const std::string& name, const Names& calls) {
  Numbers cuts = {1.5};
  Names values = {"preset"};
  const bool found = parser.SetBinsFrTransDict(name, cuts, values);
  FUZZ_CHECK(found ? !cuts.empty() : cuts.empty() && values.empty());
  Numbers cuts_again;
  Names values_again;
  FUZZ_CHECK(parser.SetBinsFrTransDict(name, cuts_again, values_again) == found);
  FUZZ_CHECK(fuzz::AreSame(cuts_again, cuts) && values_again == values);
  if (cuts.size() >= 3) CheckBinned(name, cuts, calls);
}

// ---- Statistics ----

bool AreSame(const MCUniStats& a, const MCUniStats& b) {
  const MCUniStats::SummStats& x = a.GetSummary();
  const MCUniStats::SummStats& y = b.GetSummary();
  return a.GetName() == b.GetName() && a.IsContinuous() == b.IsContinuous() &&
         fuzz::AreSame({a.GetTotal(), x.minimum, x.maximum, x.mean, x.standardDeviation},
                       {b.GetTotal(), y.minimum, y.maximum, y.mean, y.standardDeviation}) &&
         fuzz::AreSame(a.GetCutPoints(), b.GetCutPoints()) &&
         fuzz::AreSame(a.GetFrequencies(), b.GetFrequencies());
}

MCUniStats Preset() { return MCUniStats("preset", 3, Numbers{1, 2}); }

void ReadInterval(const MCPMMLParser& parser, const DOMElement& element) {
  double left = 0.25;
  double right = 0.75;
  bool open = true;
  const MCStatus status = parser.ExtractInterval(left, right, open, element);
  if (!status.IsOK()) FUZZ_CHECK(open);
  if (status.IsOK() && left != MCMV::gMissingValue && right != MCMV::gMissingValue) {
    FUZZ_CHECK(left < right);
  }
  double left_again = 0.25;
  double right_again = 0.75;
  bool open_again = false;
  FUZZ_CHECK(parser.ExtractInterval(left_again, right_again, open_again, element) == status);
  FUZZ_CHECK(fuzz::AreSame({left, right}, {left_again, right_again}));
  FUZZ_CHECK(open_again == (status.IsOK() && open));
}

bool Ascend(const Numbers& cuts) {
  for (std::size_t i = 1; i < cuts.size(); ++i) {
    const bool unbounded = (i == 1 && cuts[0] == MCMV::gMissingValue) ||
                           (i + 1 == cuts.size() && cuts[i] == MCMV::gMissingValue);
    if (!unbounded && !(cuts[i - 1] < cuts[i])) return false;
  }
  return true;
}

void ReadCutPoints(const MCPMMLParser& parser, const DOMElement& element) {
  Numbers cuts = {1.5};
  Numbers frequencies = {2.5, 3.5};
  bool open = false;
  const MCStatus status = parser.FillCutPointsFreqs(cuts, frequencies, open, element);
  if (status.IsOK()) {
    FUZZ_CHECK(Ascend(cuts));
    FUZZ_CHECK(cuts.empty() ? frequencies.empty() && open : frequencies.size() + 1 == cuts.size());
    for (const double frequency : frequencies) FUZZ_CHECK(frequency >= 0);
  }
  Numbers cuts_again;
  Numbers frequencies_again;
  bool open_again = true;
  FUZZ_CHECK(parser.FillCutPointsFreqs(cuts_again, frequencies_again, open_again, element) ==
             status);
  FUZZ_CHECK(fuzz::AreSame(cuts, cuts_again) && fuzz::AreSame(frequencies, frequencies_again));
  FUZZ_CHECK(open == open_again);
}

void ReadDistributions(const MCPMMLParser& parser, const DOMElement& element) {
  MCUniStats categorical = Preset();
  const MCStatus counted = parser.FillUniStatsCat(categorical, categorical.GetName(), 7, element);
  FUZZ_CHECK(counted.IsOK() ? categorical.GetTotal() == 7 && categorical.IsValid()
                            : AreSame(categorical, Preset()));
  MCUniStats again;
  FUZZ_CHECK(parser.FillUniStatsCat(again, "preset", 7, element) == counted);
  FUZZ_CHECK(!counted.IsOK() || AreSame(again, categorical));

  MCUniStats continuous = Preset();
  const MCStatus summed = parser.FillUniStatsCont(continuous, continuous.GetName(), 7, element);
  const bool hasIntervals = GetFirstChildElmt(element, "ContStats") != nullptr;
  FUZZ_CHECK(summed.IsOK() && hasIntervals ? continuous.IsContinuous() && continuous.IsValid()
                                           : AreSame(continuous, Preset()));
  MCUniStats sameAgain = Preset();
  FUZZ_CHECK(parser.FillUniStatsCont(sameAgain, "preset", 7, element) == summed);
  FUZZ_CHECK(AreSame(sameAgain, continuous));
}

// How the next statistics end for an object that was valid and for one that was not.
void ReadNext(const MCPMMLParser& parser, const DOMElement*& cursor) {
  const DOMElement* before = cursor;
  MCUniStats stats = Preset();
  const MCStatus status = parser.FillUniStats(stats, cursor);
  if (status.IsOK()) FUZZ_CHECK(stats.IsValid());
  if (!status.IsOK() && status.GetCode() != kBadStatistics) FUZZ_CHECK(AreSame(stats, Preset()));
  if (cursor == nullptr) FUZZ_CHECK(status.IsOK() && AreSame(stats, Preset()));
  const DOMElement* other = before;
  MCUniStats fresh;
  const MCStatus of_fresh = parser.FillUniStats(fresh, other);
  FUZZ_CHECK(other == cursor && !AreSame(fresh, Preset()));
  if (cursor == nullptr) {
    FUZZ_CHECK(of_fresh.IsOK() && !fresh.IsValid());
    return;
  }
  FUZZ_CHECK(!of_fresh.IsOK() || fresh.IsValid());
  FUZZ_CHECK(status == of_fresh || (status.IsOK() && of_fresh.GetCode() == kBadStatistics));
}

void ReadStatistics(MCPMMLParser& parser, std::size_t most) {
  for (const DOMElement* model = GetFirstChildElmt(*parser.GetRootElement(), nullptr);
       model != nullptr; model = GetNextSiblingElmt(*model, nullptr)) {
    FUZZ_CHECK(parser.SetModelElmt(*model));
    const DOMElement* cursor = nullptr;
    std::size_t count = 0;
    do {
      FUZZ_CHECK(count++ <= most);
      ReadNext(parser, cursor);
    } while (cursor != nullptr);
  }
}

void ReadElements(MCPMMLParser& parser) {
  constexpr std::size_t kMostElements = 100;
  std::vector<DOMElement*> elements = fuzz::ElementsOf(parser.GetRootElement());
  if (elements.size() > kMostElements) elements.resize(kMostElements);
  for (const DOMElement* element : elements) {
    ReadInterval(parser, *element);
    ReadCutPoints(parser, *element);
    ReadDistributions(parser, *element);
  }
}

void CheckNothingHeld(MCPMMLParser& parser, const MCStatus& parsed) {
  MCVarList list;
  FUZZ_CHECK(parser.FillVarList(list, {}, true) == parsed && list.Size() == 0);
  MCUniStats stats = Preset();
  const DOMElement* cursor = nullptr;
  FUZZ_CHECK(parser.FillUniStats(stats, cursor) == parsed && AreSame(stats, Preset()));
  Numbers cuts = {1};
  Names values = {"preset"};
  FUZZ_CHECK(!parser.SetBinsFrTransDict("a", cuts, values) && cuts.empty() && values.empty());
}

void ReadDocument(MCPMMLParser& parser) {
  const Names fields = FieldNames(parser);
  const DOMElement* cursor = nullptr;
  MCUniStats stats = Preset();
  FUZZ_CHECK(parser.FillUniStats(stats, cursor).GetCode() == kNoModel && AreSame(stats, Preset()));
  for (const bool bins : {false, true}) FillChoices(parser, fields, bins);
  Names binned = fuzz::FillOnce(FillOf(parser, {}, true)).calls;
  for (const std::string& name : fields) {
    if (name.find('|') != std::string::npos) binned.clear();  // where names end is not clear then
  }
  for (const std::string& name : fields) ReadBins(parser, name, binned);
  ReadBins(parser, kUnknown, binned);
  ReadElements(parser);
  ReadStatistics(parser, fuzz::ElementsOf(parser.GetRootElement()).size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::StartXmlPlatform();
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (!fuzz::IsModest(text)) return 0;
  std::istringstream in(text);
  MCPMMLParser parser;
  const MCStatus parsed = parser.ParseToDOM(in);
  FUZZ_CHECK(parsed.IsOK() == (parser.GetRootElement() != nullptr));
  FUZZ_CHECK(!parsed.IsOK() || parser.GetXercesMessage().empty());
  const std::string message = parser.GetXercesMessage();
  if (parsed.IsOK()) {
    ReadDocument(parser);
  } else {
    CheckNothingHeld(parser, parsed);
  }
  FUZZ_CHECK(parser.GetStatus() == parsed);

  std::istringstream again(text);
  FUZZ_CHECK(parser.ParseToDOM(again) == parsed && parser.GetXercesMessage() == message);
  return 0;
}
