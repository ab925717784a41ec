// ExtractInterval and FillCutPointsFreqs of the PMML reader.
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "PmmlText.h"
#include "mccommon/MCMissingValue.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCPMMLParser;
using Numbers = std::vector<double>;

const double kMissing = MCMV::gMissingValue;

// Smaller than the missing value, which is half the most negative double.
const char kBelowMissing[] = "-1.7e308";
const char kAlsoBelowMissing[] = "-1.0e308";

// The first element that follows the data dictionary of a small document.
class Element {
 public:
  explicit Element(const std::string& text) {
    EXPECT_TRUE(ParseText(reader_, Pmml("", text)).IsOK()) << text;
    const auto* dictionary =
        MCXPrsUtil::GetFirstChildElmt(*reader_.GetRootElement(), "DataDictionary");
    element_ = MCXPrsUtil::GetNextSiblingElmt(*dictionary, nullptr);
  }
  const MCPMMLParser& Reader() const { return reader_; }
  const xercesc::DOMElement& Get() const { return *element_; }

 private:
  MCPMMLParser reader_;
  const xercesc::DOMElement* element_ = nullptr;
};

std::string Interval(const std::string& attributes) { return "<Interval " + attributes + "/>"; }

std::string Margins(const std::string& left, const std::string& right) {
  return "leftMargin='" + left + "' rightMargin='" + right + "'";
}

std::string LeftOnly(const std::string& left) { return "leftMargin='" + left + "'"; }

std::string RightOnly(const std::string& right) { return "rightMargin='" + right + "'"; }

std::string Closed(const std::string& margins) {
  return Interval(margins + " closure='closedOpen'");
}

std::string Open(const std::string& margins) { return Interval(margins + " closure='openClosed'"); }

std::string Array(const std::string& numbers) {
  return "<Array type='real'>" + numbers + "</Array>";
}

// ------------------------------------------------------------------------------ ExtractInterval

constexpr double kLeftBefore = -77;
constexpr double kRightBefore = -78;

struct IntervalCase {
  const char* rule;
  std::string attributes;
  int code;
  double left;
  double right;
  bool openLeft;  // looked at only where the code is 0
  friend void PrintTo(const IntervalCase& test, std::ostream* out) { *out << test.rule; }
};

class ExtractInterval : public testing::TestWithParam<IntervalCase> {};

TEST_P(ExtractInterval, ReadsMarginsAndClosure) {
  const IntervalCase& test = GetParam();
  const Element interval(Interval(test.attributes));
  for (const bool before : {false, true}) {
    double left = kLeftBefore;
    double right = kRightBefore;
    bool openLeft = before;
    const MCStatus status =
        interval.Reader().ExtractInterval(left, right, openLeft, interval.Get());
    EXPECT_EQ(status, MCStatus(test.code, false)) << test.rule << ": " << status.GetCode();
    EXPECT_EQ(left, test.left) << test.rule;
    EXPECT_EQ(right, test.right) << test.rule;
    EXPECT_EQ(openLeft, test.code == 0 ? test.openLeft : before) << test.rule;
    EXPECT_TRUE(interval.Reader().GetStatus().IsOK());
  }
}

INSTANTIATE_TEST_SUITE_P(
    Closures, ExtractInterval,
    testing::Values(
        IntervalCase{"openOpen", Margins("0", "1") + " closure='openOpen'", 0, 0, 1, true},
        IntervalCase{"openClosed", Margins("0", "1") + " closure='openClosed'", 0, 0, 1, true},
        IntervalCase{"closedOpen", Margins("0", "1") + " closure='closedOpen'", 0, 0, 1, false},
        IntervalCase{"closedClosed", Margins("0", "1") + " closure='closedClosed'", 0, 0, 1, false},
        IntervalCase{"any other text", Margins("0", "1") + " closure='bogus'", 0, 0, 1, false},
        IntervalCase{"another case", Margins("0", "1") + " closure='OpenOpen'", 0, 0, 1, false},
        IntervalCase{"blanks around", Margins("0", "1") + " closure=' openOpen'", 0, 0, 1, false},
        IntervalCase{"more text", Margins("0", "1") + " closure='openOpenOpen'", 0, 0, 1, false},
        IntervalCase{"empty", Margins("0", "1") + " closure=''", 0, 0, 1, false},
        IntervalCase{"absent", Margins("0", "1"), 108, 0, 1, false},
        IntervalCase{"absent, and a margin, too", LeftOnly("0"), 108, 0, kMissing, false}));

INSTANTIATE_TEST_SUITE_P(
    MarginsPresentAndAbsent, ExtractInterval,
    testing::Values(
        IntervalCase{"both", Margins("-1.5", "2e3") + " closure='openOpen'", 0, -1.5, 2000, true},
        IntervalCase{"blanks around", Margins(" 0 ", "&#10;1") + " closure=''", 0, 0, 1, false},
        IntervalCase{"left only", LeftOnly("5") + " closure='openOpen'", 0, 5, kMissing, true},
        IntervalCase{"right only", RightOnly("5") + " closure='openOpen'", 0, kMissing, 5, true},
        IntervalCase{"neither", "closure='openOpen'", 108, kMissing, kMissing, false},
        IntervalCase{"no attributes", "", 108, kMissing, kMissing, false},
        IntervalCase{"equal", Margins("1", "1.0") + " closure='closedClosed'", 109, 1, 1, false},
        IntervalCase{"descending", Margins("2", "1") + " closure='openOpen'", 109, 2, 1, false},
        IntervalCase{"minus zero is zero", Margins("-0", "0") + " closure=''", 109, 0, 0, false},
        IntervalCase{"order comes before closure", Margins("2", "1"), 109, 2, 1, false}));

INSTANTIATE_TEST_SUITE_P(
    NoNumbers, ExtractInterval,
    testing::Values(
        IntervalCase{"left", Margins("x", "1") + " closure=''", 109, kLeftBefore, kRightBefore, 0},
        IntervalCase{"left alone", LeftOnly("x"), 109, kLeftBefore, kRightBefore, false},
        IntervalCase{"left empty", Margins("", "1"), 109, kLeftBefore, kRightBefore, false},
        IntervalCase{"left infinite", Margins("-INF", "1"), 109, kLeftBefore, kRightBefore, false},
        IntervalCase{"left too large", Margins("-1e400", "1"), 109, kLeftBefore, kRightBefore, 0},
        IntervalCase{"right", Margins("0", "x") + " closure=''", 109, 0, kRightBefore, false},
        IntervalCase{"right empty", Margins("0", "") + " closure=''", 109, 0, kRightBefore, false},
        IntervalCase{"right infinite", Margins("0", "INF"), 109, 0, kRightBefore, false},
        IntervalCase{"right after an absent left", RightOnly("x"), 109, kMissing, kRightBefore, 0},
        IntervalCase{"right with comma", Margins("0", "1,5"), 109, 0, kRightBefore, false}));

// "NaN" reads as the missing value, which is a number to every comparison.
INSTANTIATE_TEST_SUITE_P(
    NotANumber, ExtractInterval,
    testing::Values(
        IntervalCase{"left is unbounded", Margins("NaN", "5") + " closure=''", 0, kMissing, 5, 0},
        IntervalCase{"left alone is as good as none", LeftOnly("NaN") + " closure=''", 108,
                     kMissing, kMissing, false},
        IntervalCase{"right alone", RightOnly("NaN") + " closure='openOpen'", 0, kMissing, kMissing,
                     true},
        IntervalCase{"both", Margins("NaN", "NaN") + " closure='openOpen'", 0, kMissing, kMissing,
                     true},
        IntervalCase{"right is below a left", Margins("0", "NaN"), 109, 0, kMissing, false},
        IntervalCase{"but above the most negative ones",
                     Margins(kBelowMissing, "NaN") + " closure=''", 0, -1.7e308, kMissing, false},
        IntervalCase{"left is not compared", Margins("NaN", kBelowMissing) + " closure=''", 0,
                     kMissing, -1.7e308, false}));

// ---------------------------------------------------------------------------- FillCutPointsFreqs

struct CutsCase {
  const char* rule;
  std::string children;
  int code;
  Numbers cuts;
  Numbers freqs;
  bool openLeft;
  friend void PrintTo(const CutsCase& test, std::ostream* out) { *out << test.rule; }
};

class FillCutPointsFreqs : public testing::TestWithParam<CutsCase> {};

TEST_P(FillCutPointsFreqs, GivesCutPointsAndFrequencies) {
  const CutsCase& test = GetParam();
  const Element parent("<ContStats>" + test.children + "</ContStats>");
  for (const bool before : {false, true}) {
    Numbers cuts = {9, 8};
    Numbers freqs = {-3};
    bool openLeft = before;
    const MCStatus status = parent.Reader().FillCutPointsFreqs(cuts, freqs, openLeft, parent.Get());
    EXPECT_EQ(status, MCStatus(test.code, false)) << test.rule << ": " << status.GetCode();
    EXPECT_EQ(cuts, test.cuts) << test.rule;
    EXPECT_EQ(freqs, test.freqs) << test.rule;
    EXPECT_EQ(openLeft, test.openLeft) << test.rule;
    EXPECT_TRUE(parent.Reader().GetStatus().IsOK());
  }
}

const std::string k0to10 = Closed(Margins("0", "10"));
const std::string k10to20 = Closed(Margins("10", "20"));

INSTANTIATE_TEST_SUITE_P(
    Accepted, FillCutPointsFreqs,
    testing::Values(
        CutsCase{"no children", "", 0, {}, {}, true},
        CutsCase{"no interval: the array is not read", Array("bad"), 0, {}, {}, true},
        CutsCase{"one interval", k0to10 + Array("7"), 0, {0, 10}, {7}, false},
        CutsCase{"one interval, open on the left",
                 Open(Margins("0", "10")) + Array("7"),
                 0,
                 {0, 10},
                 {7},
                 true},
        CutsCase{"two that touch", k0to10 + k10to20 + Array("7 8"), 0, {0, 10, 20}, {7, 8}, false},
        CutsCase{
            "unbounded on both ends",
            Open(RightOnly("0")) + Open(Margins("0", "5")) + Open(LeftOnly("5")) + Array("1 2 3"),
            0,
            {kMissing, 0, 5, kMissing},
            {1, 2, 3},
            true},
        CutsCase{"a gap is a bin",
                 Closed(Margins("0", "1")) + Closed(Margins("2", "3")) + Array("1 0 2"),
                 0,
                 {0, 1, 2, 3},
                 {1, 0, 2},
                 false},
        CutsCase{"gaps and touching ones",
                 Closed(Margins("0", "1")) + Closed(Margins("2", "3")) + Closed(Margins("3", "4")) +
                     Closed(LeftOnly("9")) + Array("1 2 3 4 5 6"),
                 0,
                 {0, 1, 2, 3, 4, 9, kMissing},
                 {1, 2, 3, 4, 5, 6},
                 false},
        CutsCase{"the right side of the closure does not count",
                 Interval(Margins("0", "1") + " closure='closedOpen'") +
                     Interval(Margins("1", "2") + " closure='closedClosed'") +
                     Interval(Margins("2", "3") + " closure='bogus'") + Array("1 2 3"),
                 0,
                 {0, 1, 2, 3},
                 {1, 2, 3},
                 false},
        CutsCase{"nor does it on open ones",
                 Interval(Margins("0", "1") + " closure='openOpen'") +
                     Interval(Margins("1", "2") + " closure='openClosed'") + Array("1 2"),
                 0,
                 {0, 1, 2},
                 {1, 2},
                 true},
        CutsCase{"touching at zero and minus zero",
                 Closed(Margins("-1", "0")) + Closed(Margins("-0.0", "1")) + Array("1 2"),
                 0,
                 {-1, 0, 1},
                 {1, 2},
                 false},
        CutsCase{"other nodes between, the array first",
                 " <!-- c -->" + Array("1 2") + "text<Extension/>" + k0to10 +
                     "<p:Interval xmlns:p='u'/><Extension>" + Closed(LeftOnly("0")) +
                     "</Extension><?p q?>" + k10to20,
                 0,
                 {0, 10, 20},
                 {1, 2},
                 false}));

INSTANTIATE_TEST_SUITE_P(
    IntervalsThatFail, FillCutPointsFreqs,
    testing::Values(
        CutsCase{"overlap",
                 Closed(Margins("0", "2")) + Closed(Margins("1", "3")) + Array("1 2"),
                 115,
                 {0, 2},
                 {},
                 false},
        CutsCase{"descending", k10to20 + k0to10 + Array("1 2"), 115, {10, 20}, {}, false},
        CutsCase{"the same twice", k0to10 + k0to10 + Array("1 2"), 115, {0, 10}, {}, false},
        CutsCase{"mixed closures on the left",
                 k0to10 + Open(Margins("10", "20")) + Array("1 2"),
                 115,
                 {0, 10},
                 {},
                 false},
        CutsCase{"mixed closures, open first",
                 Open(Margins("0", "10")) + k10to20 + Array("1 2"),
                 115,
                 {0, 10},
                 {},
                 true},
        CutsCase{"one after an unbounded one",
                 Closed(LeftOnly("0")) + k10to20 + Array("1 2"),
                 115,
                 {0, kMissing},
                 {},
                 false},
        CutsCase{"that one is not even read",
                 Closed(LeftOnly("0")) + Interval("leftMargin='x'") + Array("1"),
                 115,
                 {0, kMissing},
                 {},
                 false},
        CutsCase{"unbounded below, not the first",
                 k0to10 + Closed(RightOnly("20")) + Array("1 2"),
                 115,
                 {0, 10},
                 {},
                 false},
        CutsCase{"a first one without margins", Closed("") + Array("1"), 108, {}, {}, true},
        CutsCase{"a later one without margins",
                 k0to10 + Closed("") + Array("1 2"),
                 108,
                 {0, 10},
                 {},
                 false},
        CutsCase{"a later one without closure",
                 k0to10 + Interval(Margins("10", "20")) + Array("1 2"),
                 108,
                 {0, 10},
                 {},
                 false},
        CutsCase{"a first one that is no number",
                 Closed(Margins("x", "1")) + Array("1"),
                 109,
                 {},
                 {},
                 true},
        CutsCase{"a first one, open, with equal margins",
                 Open(Margins("1", "1")) + Array("1"),
                 109,
                 {},
                 {},
                 true},
        CutsCase{"equal margins", k0to10 + Closed(Margins("10", "10")), 109, {0, 10}, {}, false},
        CutsCase{"the first failure counts",
                 k10to20 + k0to10 + Closed(LeftOnly("x")),
                 115,
                 {10, 20},
                 {},
                 false}));

// "NaN" reads as the missing value, so it says "unbounded" wherever it gets through.
INSTANTIATE_TEST_SUITE_P(
    NotANumberMargins, FillCutPointsFreqs,
    testing::Values(
        CutsCase{"on the left of the first",
                 Closed(Margins("NaN", "0")) + Closed(Margins("0", "1")) + Array("1 2"),
                 0,
                 {kMissing, 0, 1},
                 {1, 2},
                 false},
        CutsCase{"on the left of a later one",
                 k0to10 + Closed(Margins("NaN", "20")) + Array("1 2"),
                 115,
                 {0, 10},
                 {},
                 false},
        CutsCase{"on both sides",
                 Closed(Margins("NaN", "NaN")) + Array("1"),
                 0,
                 {kMissing, kMissing},
                 {1},
                 false},
        CutsCase{"on both sides, then another",
                 Closed(Margins("NaN", "NaN")) + k0to10 + Array("1 2"),
                 115,
                 {kMissing, kMissing},
                 {},
                 false},
        CutsCase{"on the right", Closed(Margins("0", "NaN")) + Array("1"), 109, {}, {}, true},
        CutsCase{"on the right alone",
                 Open(RightOnly("NaN")) + Array("1"),
                 0,
                 {kMissing, kMissing},
                 {1},
                 true},
        CutsCase{"on the right of a most negative one",
                 Closed(Margins(kBelowMissing, "NaN")) + Closed(Margins("0", "1")),
                 115,
                 {-1.7e308, kMissing},
                 {},
                 false},
        CutsCase{"next to a right margin below the missing value",
                 Closed(Margins(kBelowMissing, kAlsoBelowMissing)) + Closed(Margins("NaN", "1")) +
                     Array("1 2"),
                 115,
                 {-1.7e308, -1.0e308},
                 {},
                 false}));

INSTANTIATE_TEST_SUITE_P(
    Arrays, FillCutPointsFreqs,
    testing::Values(
        CutsCase{"int", k0to10 + "<Array type='int'>7</Array>", 0, {0, 10}, {7}, false},
        CutsCase{
            "int holds any number", k0to10 + "<Array type='int'>.5</Array>", 0, {0, 10}, {.5}, 0},
        CutsCase{"the count attribute does not matter",
                 k0to10 + "<Array type='real' n='99'>7</Array>",
                 0,
                 {0, 10},
                 {7},
                 false},
        CutsCase{"any white space",
                 k0to10 + k10to20 + Array("&#10; 7\t\n8 "),
                 0,
                 {0, 10, 20},
                 {7, 8},
                 false},
        CutsCase{"zero", k0to10 + Array("0"), 0, {0, 10}, {0}, false},
        CutsCase{"minus zero is not negative", k0to10 + Array("-0.0"), 0, {0, 10}, {0}, false},
        CutsCase{"the first array counts",
                 k0to10 + Array("7") + "<Array/>" + Array("8 9"),
                 0,
                 {0, 10},
                 {7},
                 false},
        CutsCase{"even a bad one", k0to10 + Array("x") + Array("7"), 114, {0, 10}, {}, false},
        CutsCase{"no array", k0to10, 113, {0, 10}, {}, false},
        CutsCase{"a nested one is none",
                 k0to10 + "<Extension>" + Array("7") + "</Extension>",
                 113,
                 {0, 10},
                 {},
                 false},
        CutsCase{
            "one in an interval is none",
            "<Interval leftMargin='0' rightMargin='10' closure=''>" + Array("7") + "</Interval>",
            113,
            {0, 10},
            {},
            false},
        CutsCase{"a nested one does not hide the child",
                 "<Extension>" + Array("1 2 3") + "</Extension>" + k0to10 + Array("7"),
                 0,
                 {0, 10},
                 {7},
                 false},
        CutsCase{"no type", k0to10 + "<Array>7</Array>", 108, {0, 10}, {}, false},
        CutsCase{"string", k0to10 + "<Array type='string'>7</Array>", 109, {0, 10}, {}, false},
        CutsCase{"another case", k0to10 + "<Array type='Real'>7</Array>", 109, {0, 10}, {}, false},
        CutsCase{"empty type", k0to10 + "<Array type=''>7</Array>", 109, {0, 10}, {}, false},
        CutsCase{"type comes before the numbers",
                 k0to10 + "<Array type='string'>x</Array>",
                 109,
                 {0, 10},
                 {},
                 false},
        CutsCase{"no number", k0to10 + k10to20 + Array("7 x"), 114, {0, 10, 20}, {}, false},
        CutsCase{"infinity", k0to10 + Array("INF"), 114, {0, 10}, {}, false},
        CutsCase{"too large", k0to10 + Array("1e400"), 114, {0, 10}, {}, false},
        CutsCase{"quoted", k0to10 + Array("\"7\""), 114, {0, 10}, {}, false},
        CutsCase{"comments in the list",
                 k0to10 + k10to20 + Array("7<!-- c -->8"),
                 114,
                 {0, 10, 20},
                 {},
                 false},
        CutsCase{"a CDATA section", k0to10 + Array("<![CDATA[7]]>"), 114, {0, 10}, {}, false},
        CutsCase{"an element", k0to10 + Array("<b>7</b>"), 114, {0, 10}, {}, false},
        CutsCase{"negative", k0to10 + k10to20 + Array("7 -1"), 114, {0, 10, 20}, {7, -1}, false},
        CutsCase{"negative comes before the count",
                 k0to10 + Array("-1 2"),
                 114,
                 {0, 10},
                 {-1, 2},
                 false},
        CutsCase{"NaN is negative", k0to10 + Array("NaN"), 114, {0, 10}, {kMissing}, false},
        CutsCase{"one too few", k0to10 + k10to20 + Array("7"), 115, {0, 10, 20}, {7}, false},
        CutsCase{"one too many", k0to10 + Array("7 8"), 115, {0, 10}, {7, 8}, false},
        CutsCase{"empty", k0to10 + Array(""), 115, {0, 10}, {}, false},
        CutsCase{"blank", k0to10 + Array(" "), 115, {0, 10}, {}, false},
        CutsCase{"one short because of a gap",
                 Closed(Margins("0", "1")) + Closed(Margins("2", "3")) + Array("1 2"),
                 115,
                 {0, 1, 2, 3},
                 {1, 2},
                 false}));

TEST(MCPMMLParserIntervals, MinusZeroKeepsItsSign) {
  const Element parent("<ContStats>" + Closed(Margins("-0.0", "1")) + Array("-0") + "</ContStats>");
  Numbers cuts;
  Numbers freqs;
  bool openLeft = false;
  ASSERT_TRUE(parent.Reader().FillCutPointsFreqs(cuts, freqs, openLeft, parent.Get()).IsOK());
  ASSERT_EQ(cuts.size(), 2u);
  ASSERT_EQ(freqs.size(), 1u);
  EXPECT_TRUE(std::signbit(cuts[0]));
  EXPECT_TRUE(std::signbit(freqs[0]));
}

TEST(MCPMMLParserIntervals, NeitherNeedsAParseNorLooksAtItsStatus) {
  const Element parent("<ContStats>" + k0to10 + Array("7") + "</ContStats>");
  const auto* interval = MCXPrsUtil::GetFirstChildElmt(parent.Get(), "Interval");
  MCPMMLParser fresh;
  MCPMMLParser failed;
  ASSERT_EQ(ParseText(failed, "<PMML/>"), MCStatus(106, false));
  for (const MCPMMLParser* reader : {&fresh, &failed}) {
    const MCStatus before = reader->GetStatus();
    double left = 0;
    double right = 0;
    bool openLeft = true;
    EXPECT_TRUE(reader->ExtractInterval(left, right, openLeft, *interval).IsOK());
    EXPECT_EQ(right, 10);
    Numbers cuts;
    Numbers freqs;
    EXPECT_TRUE(reader->FillCutPointsFreqs(cuts, freqs, openLeft, parent.Get()).IsOK());
    EXPECT_EQ(freqs, Numbers{7});
    EXPECT_EQ(reader->GetStatus(), before);
  }
}

TEST(MCPMMLParserIntervals, FailuresLeaveTheStoredStatusAlone) {
  const Element parent("<ContStats>" + k10to20 + k0to10 + "</ContStats>");
  Numbers cuts;
  Numbers freqs;
  bool openLeft = false;
  EXPECT_EQ(parent.Reader().FillCutPointsFreqs(cuts, freqs, openLeft, parent.Get()),
            MCStatus(115, false));
  EXPECT_TRUE(parent.Reader().GetStatus().IsOK());
}

TEST(MCPMMLParserIntervals, ManyIntervalsGiveOneCutPointMore) {
  constexpr int kCount = 20000;
  std::string intervals;
  std::string numbers;
  for (int i = 0; i < kCount; ++i) {
    intervals += Closed(Margins(std::to_string(i), std::to_string(i + 1)));
    numbers += std::to_string(i) + " ";
  }
  const Element parent("<ContStats>" + intervals + Array(numbers) + "</ContStats>");
  Numbers cuts;
  Numbers freqs;
  bool openLeft = true;
  ASSERT_TRUE(parent.Reader().FillCutPointsFreqs(cuts, freqs, openLeft, parent.Get()).IsOK());
  ASSERT_EQ(cuts.size(), kCount + 1u);
  for (int i = 0; i <= kCount; ++i) ASSERT_EQ(cuts[static_cast<std::size_t>(i)], i);
  EXPECT_EQ(freqs.back(), kCount - 1);
}

}  // namespace
