// MCPMMLParser: the statistics of a PMML model, from a single interval up to all that is known of a
// field.
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "mccommon/MCMissingValue.h"
#include "mccommon/MCUniStats.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "readers/DomWalk.h"
#include "readers/Names.h"
#include "xml/AttributeText.h"
#include "xml/NumberText.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCUniStats;
using XERCES_CPP_NAMESPACE::DOMElement;

namespace {

using Numbers = std::vector<double>;

bool IsMissing(double number) { return number == MCMV::gMissingValue; }

enum class Found { kNothing, kNumber, kNoNumber };

// Reads a number that need not be there: it is missing then. A text that is no number leaves
// `value` alone.
Found ReadNumber(const DOMElement& element, const XMLCh* name, double& value) {
  if (const XMLCh* text = AttributeText(element, name)) {
    return ParseDouble(text, value) ? Found::kNumber : Found::kNoNumber;
  }
  value = MCMV::gMissingValue;
  return Found::kNothing;
}

// The right side does not count, and a word that is no closure counts as closed.
bool IsOpenOnTheLeft(const XMLCh* closure) {
  return SameText(closure, names::kOpenOpen) || SameText(closure, names::kOpenClosed);
}

// Makes sure that the interval about to be added begins at the last cut point. Behind a gap it
// begins at a cut point of its own, which makes the gap a bin like any other.
//
// Returns false when the interval would overlap or precede the one before. That one's right margin
// is the last cut point, so this is never the missing value.
bool BeginInterval(double left, Numbers& cutPoints) {
  if (cutPoints.empty()) {
    cutPoints.push_back(left);
    return true;
  }
  if (IsMissing(left) || left < cutPoints.back()) return false;
  if (left > cutPoints.back()) cutPoints.push_back(left);
  return true;
}

bool IsNumericArray(const XMLCh* type) {
  return SameText(type, names::kReal) || SameText(type, names::kInt);
}

// Reads an "Array" of frequencies. A negative one is kept in the list and fails; so does "NaN",
// since the missing value is negative.
MCStatus ExtractFreqs(Numbers& frequencies, const DOMElement& array) {
  const XMLCh* type = AttributeText(array, names::kType);
  if (type == nullptr) return Failure(kAttributeMissing);
  if (!IsNumericArray(type)) return Failure(kAttributeInvalid);
  if (!AssembleDoublesList(array, frequencies)) return Failure(kFrequenciesInvalid);
  for (const double frequency : frequencies) {
    if (frequency < 0) return Failure(kFrequenciesInvalid);
  }
  return MCStatus();
}

// The "UnivariateStats" after `previous`, or the model's first one; null when there is none.
const DOMElement* NextStatistics(const DOMElement& model, const DOMElement* previous) {
  if (previous != nullptr) {
    return ThisOrNextElement(previous->getNextSibling(), names::kUnivariateStats);
  }
  const DOMElement* all = FirstChild(model, names::kModelStats);
  return all == nullptr ? nullptr : FirstChild(*all, names::kUnivariateStats);
}

MCStatus ReadTotal(const DOMElement& statistics, double& total) {
  const DOMElement* counts = FirstChild(statistics, names::kCounts);
  if (counts == nullptr) return Failure(kChildMissing);
  const Found found = ReadNumber(*counts, names::kTotalFreq, total);
  if (found == Found::kNothing) return Failure(kAttributeMissing);
  return found == Found::kNumber && total >= 0 ? MCStatus() : Failure(kAttributeInvalid);
}

MCStatus ReadSummary(const DOMElement& numericInfo, MCUniStats::SummStats& summary) {
  const std::pair<const XMLCh*, double*> figures[] = {{names::kMinimum, &summary.minimum},
                                                      {names::kMaximum, &summary.maximum},
                                                      {names::kMean, &summary.mean}};
  for (const auto& [name, figure] : figures) {
    if (ReadNumber(numericInfo, name, *figure) == Found::kNoNumber) {
      return Failure(kAttributeInvalid);
    }
  }
  // Unlike the three before, a deviation that is no number is no error; on purpose.
  double& deviation = summary.standardDeviation;
  if (ReadNumber(numericInfo, names::kStandardDeviation, deviation) == Found::kNoNumber) {
    deviation = MCMV::gMissingValue;
  }
  return deviation < 0 && !IsMissing(deviation) ? Failure(kStatisticsInvalid) : MCStatus();
}

}  // namespace

// The missing value is a number like any other to `left < right`, so "NaN" is not the same on both
// sides: on the left it stands for an absent margin, on the right it is below almost any left one.
MCStatus MCPMMLParser::ExtractInterval(double& left, double& right, bool& openLeft,
                                       const DOMElement& interval) const {
  const Found foundLeft = ReadNumber(interval, names::kLeftMargin, left);
  if (foundLeft == Found::kNoNumber) return Failure(kAttributeInvalid);
  const Found foundRight = ReadNumber(interval, names::kRightMargin, right);
  if (foundRight == Found::kNoNumber) return Failure(kAttributeInvalid);
  if (foundRight == Found::kNothing && IsMissing(left)) return Failure(kAttributeMissing);

  const bool bounded = foundRight == Found::kNumber && !IsMissing(left);
  if (bounded && !(left < right)) return Failure(kAttributeInvalid);

  const XMLCh* closure = AttributeText(interval, names::kClosure);
  if (closure == nullptr) return Failure(kAttributeMissing);
  openLeft = IsOpenOnTheLeft(closure);
  return MCStatus();
}

MCStatus MCPMMLParser::FillCutPointsFreqs(Numbers& cutPoints, Numbers& frequencies, bool& openLeft,
                                          const DOMElement& parent) const {
  cutPoints.clear();
  frequencies.clear();
  openLeft = true;
  bool unboundedAbove = false;
  for (const DOMElement& interval : Children(parent, names::kInterval)) {
    if (unboundedAbove) return Failure(kIntervalsInconsistent);
    double left = 0;
    double right = 0;
    bool open = false;
    if (MCStatus status = ExtractInterval(left, right, open, interval); !status.IsOK()) {
      return status;
    }
    if (cutPoints.empty()) openLeft = open;
    if (open != openLeft) return Failure(kIntervalsInconsistent);
    if (!BeginInterval(left, cutPoints)) return Failure(kIntervalsInconsistent);
    unboundedAbove = IsMissing(right);
    cutPoints.push_back(right);
  }
  if (cutPoints.empty()) return MCStatus();

  const DOMElement* array = FirstChild(parent, names::kArray);
  if (array == nullptr) return Failure(kChildMissing);
  if (MCStatus status = ExtractFreqs(frequencies, *array); !status.IsOK()) return status;
  // Strict also where there are gaps: their frequencies must be written down, too.
  return frequencies.size() + 1 == cutPoints.size() ? MCStatus() : Failure(kIntervalsInconsistent);
}

// The cursor moves before anything can fail, so that callers can go on behind a bad element.
MCStatus MCPMMLParser::FillUniStats(MCUniStats& stats, const DOMElement*& cursor) const {
  if (!status_.IsOK()) return status_;
  if (document_ == nullptr) return Failure(kNoDocument);
  if (model_element_ == nullptr) return Failure(kNoModelElement);

  cursor = NextStatistics(*model_element_, cursor);
  if (cursor == nullptr) return MCStatus();
  const DOMElement& element = *cursor;
  const XMLCh* field = AttributeText(element, names::kField);
  if (field == nullptr) return Failure(kAttributeMissing);
  double total = 0;
  if (MCStatus status = ReadTotal(element, total); !status.IsOK()) return status;

  const bool continuous = FirstChild(element, names::kNumericInfo) != nullptr;
  const MCStatus status = continuous ? FillUniStatsCont(stats, ToUTF8(field), total, element)
                                     : FillUniStatsCat(stats, ToUTF8(field), total, element);
  if (!status.IsOK()) return status;
  // Of whatever `stats` holds, be it from before the call.
  return stats.IsValid() ? MCStatus() : Failure(kStatisticsInvalid);
}

MCStatus MCPMMLParser::FillUniStatsCat(MCUniStats& stats, const std::string& name, double total,
                                       const DOMElement& element) const {
  const DOMElement* distribution = FirstChild(element, names::kDiscrStats);
  if (distribution == nullptr) return Failure(kChildMissing);
  const DOMElement* array = FirstChild(*distribution, names::kArray);
  if (array == nullptr) return Failure(kChildMissing);

  Numbers frequencies;
  if (MCStatus status = ExtractFreqs(frequencies, *array); !status.IsOK()) return status;
  stats = MCUniStats(name, total, frequencies);
  return MCStatus();
}

MCStatus MCPMMLParser::FillUniStatsCont(MCUniStats& stats, const std::string& name, double total,
                                        const DOMElement& element) const {
  const DOMElement* numericInfo = FirstChild(element, names::kNumericInfo);
  if (numericInfo == nullptr) return Failure(kChildMissing);
  MCUniStats::SummStats summary;
  if (MCStatus status = ReadSummary(*numericInfo, summary); !status.IsOK()) return status;

  // A summary without a distribution is checked and then dropped.
  const DOMElement* distribution = FirstChild(element, names::kContStats);
  if (distribution == nullptr) return MCStatus();
  Numbers cutPoints;
  Numbers frequencies;
  bool openLeft = true;  // not wanted: the statistics have no place for it
  if (MCStatus status = FillCutPointsFreqs(cutPoints, frequencies, openLeft, *distribution);
      !status.IsOK()) {
    return status;
  }
  stats = MCUniStats(name, total, summary, cutPoints, frequencies);
  return MCStatus();
}

}  // namespace MCXPrsUtil
