// FillUniStats, FillUniStatsCat and FillUniStatsCont of the PMML reader.
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "PmmlText.h"
#include "mccommon/MCFormat.h"
#include "mccommon/MCMissingValue.h"
#include "mccommon/MCUniStats.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCUniStats;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::MCPMMLParser;
using xercesc::DOMElement;
using Numbers = std::vector<double>;

// ------------------------------------------------------------------------------------- documents

std::string Text(double number) {
  return number == MCMV::gMissingValue ? "missing"
                                       : MCXML_NAMESPACE::Format(number, false, nullptr);
}

std::string Text(const Numbers& numbers) {
  std::string text;
  for (const double number : numbers) text += (text.empty() ? "" : " ") + Text(number);
  return "[" + text + "]";
}

// "f 10 [4 6]" or "f 10 min..max mean sd [cut points] [frequencies]"; "invalid" comes before
// statistics that are not valid, and is all there is of new ones.
std::string Text(const MCUniStats& stats) {
  std::string text = stats.IsValid() ? "" : "invalid";
  if (!stats.IsValid() && stats.GetTotal() == MCMV::gMissingValue) return text;
  text += (text.empty() ? "" : " ") + stats.GetName() + " " + Text(stats.GetTotal());
  if (stats.IsContinuous()) {
    const MCUniStats::SummStats& summary = stats.GetSummary();
    text += " " + Text(summary.minimum) + ".." + Text(summary.maximum) + " " + Text(summary.mean) +
            " " + Text(summary.standardDeviation) + " " + Text(stats.GetCutPoints());
  }
  return text + " " + Text(stats.GetFrequencies());
}

// What the statistics hold before a call.
MCUniStats Old() { return MCUniStats("old", 1, Numbers{1}); }
const char kOld[] = "old 1 [1]";

const std::string kCounts = "<Counts totalFreq='10'/>";
const std::string kDiscr = "<DiscrStats><Array type='int'>4 6</Array></DiscrStats>";
const std::string kInterval = "<Interval closure='openClosed' leftMargin='0' rightMargin='5'/>";
const std::string kCont = "<ContStats>" + kInterval + "<Array type='real'>10</Array></ContStats>";
const std::string kInfo =
    "<NumericInfo minimum='0.5' maximum='4' mean='2.25' standardDeviation='1.5'/>";
const char kCategorical[] = "f 10 [4 6]";
const char kContinuous[] = "f 10 0.5..4 2.25 1.5 [0 5] [10]";

std::string Info(const std::string& attributes) { return "<NumericInfo " + attributes + "/>"; }

std::string Discr(const std::string& content) { return "<DiscrStats>" + content + "</DiscrStats>"; }

std::string Uni(const std::string& children, const std::string& attributes = "field='f'") {
  return "<UnivariateStats " + attributes + ">" + children + "</UnivariateStats>";
}

std::string Stats(const std::string& content) { return "<ModelStats>" + content + "</ModelStats>"; }

std::string Model(const std::string& content) {
  return Pmml("", "<TreeModel modelName='m'>" + content + "</TreeModel>");
}

// A reader of a document with a model, which is set.
class ModelReader : public MCPMMLParser {
 public:
  explicit ModelReader(const std::string& content) {
    EXPECT_TRUE(ParseText(*this, Model(content)).IsOK()) << content;
    model_ = GetFirstChildElmt(*GetRootElement(), "TreeModel");
    EXPECT_TRUE(SetModelElmt(*model_));
  }
  const DOMElement& FirstStatistics() const {
    return *GetFirstChildElmt(*GetFirstChildElmt(*model_, "ModelStats"), "UnivariateStats");
  }

 private:
  const DOMElement* model_ = nullptr;
};

// --------------------------------------------------------------------------- one element at a time

struct StatsCase {
  const char* rule;
  std::string element;  // the "UnivariateStats"
  int code;
  std::string stats;  // afterwards
  friend void PrintTo(const StatsCase& test, std::ostream* out) { *out << test.rule; }
};

class FillUniStats : public testing::TestWithParam<StatsCase> {};

TEST_P(FillUniStats, ReadsTheElementAndMovesTheCursorInAnyCase) {
  const StatsCase& test = GetParam();
  const ModelReader reader(Stats(test.element));
  const DOMElement* cursor = nullptr;
  MCUniStats stats = Old();
  const MCStatus status = reader.FillUniStats(stats, cursor);
  EXPECT_EQ(status, MCStatus(test.code, false)) << test.rule << ": " << status.GetCode();
  EXPECT_EQ(Text(stats), test.stats) << test.rule;
  EXPECT_EQ(cursor, &reader.FirstStatistics()) << test.rule;
  EXPECT_TRUE(reader.GetStatus().IsOK());

  EXPECT_TRUE(reader.FillUniStats(stats, cursor).IsOK()) << test.rule;
  EXPECT_EQ(cursor, nullptr) << test.rule;
  EXPECT_EQ(Text(stats), test.stats) << test.rule;
}

INSTANTIATE_TEST_SUITE_P(
    Heading, FillUniStats,
    testing::Values(
        StatsCase{"no field", Uni(kCounts + kDiscr, ""), 108, kOld},
        StatsCase{"no field comes first", Uni("", ""), 108, kOld},
        StatsCase{"an empty field", Uni(kCounts + kDiscr, "field=''"), 116, "invalid  10 [4 6]"},
        StatsCase{"a field in UTF-8", Uni(kCounts + kDiscr, "field='&#233;&#x1D11E;'"), 0,
                  "\xC3\xA9\xF0\x9D\x84\x9E 10 [4 6]"},
        StatsCase{"no counts", Uni(kDiscr), 113, kOld},
        StatsCase{"nested counts", Uni("<Extension>" + kCounts + "</Extension>" + kDiscr), 113,
                  kOld},
        StatsCase{"no total", Uni("<Counts missingFreq='1'/>" + kDiscr), 108, kOld},
        StatsCase{"the first counts count", Uni("<Counts/>" + kCounts + kDiscr), 108, kOld},
        StatsCase{"total 0", Uni("<Counts totalFreq='0'/>" + kDiscr), 0, "f 0 [4 6]"},
        StatsCase{"total with a fraction", Uni("<Counts totalFreq=' 2.5 '/>" + kDiscr), 0,
                  "f 2.5 [4 6]"},
        StatsCase{"total -1", Uni("<Counts totalFreq='-1'/>" + kDiscr), 109, kOld},
        StatsCase{"total of letters", Uni("<Counts totalFreq='ten'/>" + kDiscr), 109, kOld},
        StatsCase{"total empty", Uni("<Counts totalFreq=''/>" + kDiscr), 109, kOld},
        StatsCase{"total infinite", Uni("<Counts totalFreq='INF'/>" + kDiscr), 109, kOld},
        StatsCase{"total NaN is negative", Uni("<Counts totalFreq='NaN'/>" + kDiscr), 109, kOld},
        StatsCase{"total comes before the rest", Uni("<Counts totalFreq='-1'/>"), 109, kOld},
        StatsCase{"other attributes of the counts",
                  Uni("<Counts totalFreq='10' missingFreq='x' invalidFreq='-1'/>" + kDiscr), 0,
                  kCategorical}));

INSTANTIATE_TEST_SUITE_P(
    Categorical, FillUniStats,
    testing::Values(
        StatsCase{"frequencies", Uni(kCounts + kDiscr), 0, kCategorical},
        StatsCase{"any order of children", Uni(" <!-- c -->" + kDiscr + "x<Anova/>" + kCounts), 0,
                  kCategorical},
        StatsCase{"no frequencies", Uni(kCounts + Discr("<Array type='int'/>")), 0, "f 10 []"},
        StatsCase{"no distribution", Uni(kCounts), 113, kOld},
        StatsCase{"a continuous distribution alone", Uni(kCounts + kCont), 113, kOld},
        StatsCase{"both distributions without summary", Uni(kCounts + kCont + kDiscr), 0,
                  kCategorical},
        StatsCase{"a nested summary is none",
                  Uni(kCounts + "<Extension>" + kInfo + "</Extension>" + kCont + kDiscr), 0,
                  kCategorical},
        StatsCase{"no array", Uni(kCounts + Discr("")), 113, kOld},
        StatsCase{"a nested array",
                  Uni(kCounts + Discr("<Extension><Array type='int'>4 6</Array></Extension>")), 113,
                  kOld},
        StatsCase{"the first distribution counts", Uni(kCounts + Discr("") + kDiscr), 113, kOld},
        StatsCase{"the first array counts",
                  Uni(kCounts + Discr("<Extension/><Array type='int'>4 6</Array>"
                                      "<Array type='string'>\"a\" \"b\"</Array>")),
                  0, kCategorical},
        StatsCase{"even one of texts",
                  Uni(kCounts + Discr("<Array type='string'>\"a\" \"b\"</Array>"
                                      "<Array type='int'>4 6</Array>")),
                  109, kOld},
        StatsCase{"an array without type", Uni(kCounts + Discr("<Array>4</Array>")), 108, kOld},
        StatsCase{"no numbers", Uni(kCounts + Discr("<Array type='int'>4 b</Array>")), 114, kOld},
        StatsCase{"negative", Uni(kCounts + Discr("<Array type='int'>4 -6</Array>")), 114, kOld},
        StatsCase{"NaN", Uni(kCounts + Discr("<Array type='real'>4 NaN</Array>")), 114, kOld}));

INSTANTIATE_TEST_SUITE_P(
    Continuous, FillUniStats,
    testing::Values(
        StatsCase{"all of it", Uni(kCounts + kInfo + kCont), 0, kContinuous},
        StatsCase{"any order of children", Uni(kCont + "<Anova/>" + kInfo + " " + kCounts), 0,
                  kContinuous},
        StatsCase{"the summary decides", Uni(kCounts + kDiscr + kCont + kInfo), 0, kContinuous},
        StatsCase{"a bad categorical distribution is not read",
                  Uni(kCounts + kInfo + Discr("<Array/>") + kCont), 0, kContinuous},
        StatsCase{"the first of each counts",
                  Uni(kCounts + kInfo + kCont + "<NumericInfo minimum='x'/><ContStats>" +
                      kInterval + "</ContStats><Counts/>"),
                  0, kContinuous},
        StatsCase{"no distribution leaves valid statistics", Uni(kCounts + kInfo), 0, kOld},
        StatsCase{"a categorical distribution is none", Uni(kCounts + kInfo + kDiscr), 0, kOld},
        StatsCase{"no distribution, a bad summary", Uni(kCounts + Info("mean='x'")), 109, kOld},
        StatsCase{"no intervals", Uni(kCounts + kInfo + "<ContStats/>"), 0,
                  "f 10 0.5..4 2.25 1.5 [] []"},
        StatsCase{"no intervals, only an array",
                  Uni(kCounts + kInfo + "<ContStats><Array type='real'>10</Array></ContStats>"), 0,
                  "f 10 0.5..4 2.25 1.5 [] []"},
        StatsCase{"no array", Uni(kCounts + kInfo + "<ContStats>" + kInterval + "</ContStats>"),
                  113, kOld},
        StatsCase{"an array without type",
                  Uni(kCounts + kInfo + "<ContStats>" + kInterval + "<Array>1</Array></ContStats>"),
                  108, kOld},
        StatsCase{"an interval with equal margins",
                  Uni(kCounts + kInfo +
                      "<ContStats><Interval closure='' leftMargin='1' rightMargin='1'/>"
                      "</ContStats>"),
                  109, kOld},
        StatsCase{"a negative frequency",
                  Uni(kCounts + kInfo + "<ContStats>" + kInterval +
                      "<Array type='int'>-1</Array></ContStats>"),
                  114, kOld},
        StatsCase{"too many frequencies",
                  Uni(kCounts + kInfo + "<ContStats>" + kInterval +
                      "<Array type='int'>1 2</Array></ContStats>"),
                  115, kOld},
        StatsCase{"an empty field", Uni(kCounts + kInfo + kCont, "field=''"), 116,
                  "invalid  10 0.5..4 2.25 1.5 [0 5] [10]"}));

std::string WithSummary(const std::string& attributes) {
  return Uni(kCounts + Info(attributes) + kCont);
}

INSTANTIATE_TEST_SUITE_P(
    Summary, FillUniStats,
    testing::Values(
        StatsCase{"nothing", WithSummary(""), 0,
                  "f 10 missing..missing missing missing [0 5] [10]"},
        StatsCase{"only the mean", WithSummary("mean='2'"), 0,
                  "f 10 missing..missing 2 missing [0 5] [10]"},
        StatsCase{"only the minimum", WithSummary("minimum='2'"), 0,
                  "f 10 2..missing missing missing [0 5] [10]"},
        StatsCase{"only the maximum", WithSummary("maximum='2'"), 0,
                  "f 10 missing..2 missing missing [0 5] [10]"},
        StatsCase{"only the deviation", WithSummary("standardDeviation='2'"), 0,
                  "f 10 missing..missing missing 2 [0 5] [10]"},
        StatsCase{"other attributes are not read",
                  WithSummary("median='x' interQuartileRange='-1' mean='2'"), 0,
                  "f 10 missing..missing 2 missing [0 5] [10]"},
        StatsCase{"nothing is compared", WithSummary("minimum='9' maximum='1' mean='-5'"), 0,
                  "f 10 9..1 -5 missing [0 5] [10]"},
        StatsCase{"minimum no number", WithSummary("minimum='x'"), 109, kOld},
        StatsCase{"maximum no number", WithSummary("maximum=''"), 109, kOld},
        StatsCase{"mean no number", WithSummary("mean='1,5'"), 109, kOld},
        StatsCase{"minimum infinite", WithSummary("minimum='-INF'"), 109, kOld},
        StatsCase{"minimum stops the reading before the deviation",
                  WithSummary("minimum='x' standardDeviation='-1'"), 109, kOld},
        StatsCase{"NaN is missing", WithSummary("minimum='NaN' maximum='NaN' mean='NaN'"), 0,
                  "f 10 missing..missing missing missing [0 5] [10]"},
        StatsCase{"deviation 0", WithSummary("standardDeviation='0'"), 0,
                  "f 10 missing..missing missing 0 [0 5] [10]"},
        StatsCase{"deviation negative", WithSummary("standardDeviation='-0.5'"), 116, kOld},
        StatsCase{"deviation negative comes before the distribution",
                  Uni(kCounts + Info("standardDeviation='-0.5'") + "<ContStats>" + kInterval +
                      "</ContStats>"),
                  116, kOld},
        StatsCase{"deviation negative without distribution",
                  Uni(kCounts + Info("standardDeviation='-0.5'")), 116, kOld},
        StatsCase{"deviation below the missing value", WithSummary("standardDeviation='-1.7e308'"),
                  116, kOld},
        StatsCase{"deviation no number passes", WithSummary("mean='2' standardDeviation='wide'"), 0,
                  "f 10 missing..missing 2 missing [0 5] [10]"},
        StatsCase{"deviation empty passes", WithSummary("standardDeviation=''"), 0,
                  "f 10 missing..missing missing missing [0 5] [10]"},
        StatsCase{"deviation infinite passes", WithSummary("standardDeviation='-INF'"), 0,
                  "f 10 missing..missing missing missing [0 5] [10]"},
        StatsCase{"deviation NaN is missing", WithSummary("standardDeviation='NaN'"), 0,
                  "f 10 missing..missing missing missing [0 5] [10]"}));

TEST(MCPMMLParserStatistics, SummaryWithoutDistributionLeavesNewStatisticsNewAndNotValid) {
  const ModelReader reader(Stats(Uni(kCounts + kInfo)));
  const DOMElement* cursor = nullptr;
  MCUniStats stats;
  EXPECT_EQ(reader.FillUniStats(stats, cursor), MCStatus(116, false));
  EXPECT_EQ(Text(stats), "invalid");
  EXPECT_EQ(cursor, &reader.FirstStatistics());
}

TEST(MCPMMLParserStatistics, MinusZeroIsNotNegativeAndKeepsItsSign) {
  const ModelReader reader(
      Stats(Uni("<Counts totalFreq='-0'/>" + Info("standardDeviation='-0.0'") + kCont)));
  const DOMElement* cursor = nullptr;
  MCUniStats stats;
  ASSERT_TRUE(reader.FillUniStats(stats, cursor).IsOK());
  EXPECT_TRUE(stats.GetTotal() == 0 && std::signbit(stats.GetTotal()));
  const double deviation = stats.GetSummary().standardDeviation;
  EXPECT_TRUE(deviation == 0 && std::signbit(deviation));
}

// --------------------------------------------------------------------------------------- the walk

// One line per call until the cursor comes back null: "status: statistics".
std::vector<std::string> Walk(const MCPMMLParser& reader) {
  std::vector<std::string> lines;
  const DOMElement* cursor = nullptr;
  do {
    MCUniStats stats;
    const MCStatus status = reader.FillUniStats(stats, cursor);
    lines.push_back(std::to_string(status.GetCode()) + ": " + Text(stats));
  } while (cursor != nullptr && lines.size() < 100);
  return lines;
}

struct WalkCase {
  const char* rule;
  std::string model;  // its children
  std::vector<std::string> lines;
  friend void PrintTo(const WalkCase& test, std::ostream* out) { *out << test.rule; }
};

class FillUniStatsWalk : public testing::TestWithParam<WalkCase> {};

TEST_P(FillUniStatsWalk, GivesOneElementPerCallAndThenNull) {
  EXPECT_EQ(Walk(ModelReader(GetParam().model)), GetParam().lines) << GetParam().rule;
}

std::string UniOf(const std::string& field) {
  return Uni(kCounts + kDiscr, "field='" + field + "'");
}

INSTANTIATE_TEST_SUITE_P(
    Models, FillUniStatsWalk,
    testing::Values(
        WalkCase{"no statistics", "", {"0: invalid"}},
        WalkCase{"no elements", Stats(" <!-- c -->"), {"0: invalid"}},
        WalkCase{"elements outside ModelStats", UniOf("a"), {"0: invalid"}},
        WalkCase{
            "ModelStats further down", "<Node>" + Stats(UniOf("a")) + "</Node>", {"0: invalid"}},
        WalkCase{"three elements",
                 Stats(UniOf("a") + UniOf("b") + UniOf("a")),
                 {"0: a 10 [4 6]", "0: b 10 [4 6]", "0: a 10 [4 6]", "0: invalid"}},
        WalkCase{"other nodes between",
                 "<MiningSchema/>" + Stats("<MultivariateStats/>x" + UniOf("a") +
                                           "<!-- c --><p:UnivariateStats xmlns:p='u'/>" +
                                           UniOf("b") + "<Extension/>"),
                 {"0: a 10 [4 6]", "0: b 10 [4 6]", "0: invalid"}},
        WalkCase{"only the first ModelStats",
                 Stats(UniOf("a")) + Stats(UniOf("b")),
                 {"0: a 10 [4 6]", "0: invalid"}},
        WalkCase{"even an empty one", Stats("") + Stats(UniOf("b")), {"0: invalid"}},
        WalkCase{"bad elements are passed over",
                 Stats(Uni("") + UniOf("a") + Uni(kCounts, "") + UniOf("b") + Uni(kCounts)),
                 {"113: invalid", "0: a 10 [4 6]", "108: invalid", "0: b 10 [4 6]", "113: invalid",
                  "0: invalid"}},
        WalkCase{"both kinds",
                 Stats(Uni(kCounts + kInfo + kCont) + UniOf("b")),
                 {std::string("0: ") + kContinuous, "0: b 10 [4 6]", "0: invalid"}}));

TEST(MCPMMLParserStatistics, NullCursorStartsAgain) {
  const ModelReader reader(Stats(UniOf("a") + UniOf("b")));
  const std::vector<std::string> first = Walk(reader);
  EXPECT_EQ(first.size(), 3u);
  EXPECT_EQ(Walk(reader), first);
}

TEST(MCPMMLParserStatistics, AnotherModelElementStartsAnotherWalk) {
  MCPMMLParser reader;
  ASSERT_TRUE(
      ParseText(reader, Pmml("", "<TreeModel>" + Stats(UniOf("a")) + "</TreeModel><NeuralNetwork>" +
                                     Stats(UniOf("b")) + "</NeuralNetwork>"))
          .IsOK());
  for (const auto& [model, line] :
       {std::pair{"NeuralNetwork", "0: b 10 [4 6]"}, std::pair{"TreeModel", "0: a 10 [4 6]"}}) {
    ASSERT_TRUE(reader.SetModelElmt(*GetFirstChildElmt(*reader.GetRootElement(), model)));
    EXPECT_EQ(Walk(reader).front(), line);
  }
}

// -------------------------------------------------------------------------------- reader's states

void ExpectNothingDone(const MCPMMLParser& reader, int code, const DOMElement* element) {
  for (const DOMElement* before : {element, static_cast<const DOMElement*>(nullptr)}) {
    const DOMElement* cursor = before;
    MCUniStats stats = Old();
    EXPECT_EQ(reader.FillUniStats(stats, cursor), MCStatus(code, false));
    EXPECT_EQ(cursor, before);
    EXPECT_EQ(Text(stats), kOld);
  }
}

TEST(MCPMMLParserStatistics, ReadersThatCannotReadLeaveStatisticsAndCursorAlone) {
  const ModelReader other(Stats(UniOf("a")));
  MCPMMLParser reader;
  ExpectNothingDone(reader, 107, &other.FirstStatistics());

  ASSERT_TRUE(ParseText(reader, Model(Stats(UniOf("a")))).IsOK());
  ExpectNothingDone(reader, 112, &other.FirstStatistics());

  ASSERT_EQ(ParseText(reader, "<PMML/>"), MCStatus(106, false));
  ExpectNothingDone(reader, 106, &other.FirstStatistics());
  EXPECT_EQ(reader.GetStatus(), MCStatus(106, false));
}

TEST(MCPMMLParserStatistics, NextParseForgetsTheModelElement) {
  ModelReader reader(Stats(UniOf("a")));
  ASSERT_TRUE(ParseText(reader, Model(Stats(UniOf("b")))).IsOK());
  const DOMElement* cursor = nullptr;
  MCUniStats stats;
  EXPECT_EQ(reader.FillUniStats(stats, cursor), MCStatus(112, false));
}

TEST(MCPMMLParserStatistics, FillUniStatsCatAndContNeitherNeedAParseNorLookAtItsStatus) {
  const ModelReader other(Stats(Uni(kInfo + kCont + kDiscr)));  // no counts
  const DOMElement& element = other.FirstStatistics();
  MCPMMLParser fresh;
  MCPMMLParser failed;
  ASSERT_EQ(ParseText(failed, "<PMML/>"), MCStatus(106, false));
  for (const MCPMMLParser* reader : {&fresh, &failed}) {
    const MCStatus before = reader->GetStatus();
    MCUniStats stats;
    EXPECT_TRUE(reader->FillUniStatsCat(stats, "f", 10, element).IsOK());
    EXPECT_EQ(Text(stats), kCategorical);
    EXPECT_TRUE(reader->FillUniStatsCont(stats, "f", 10, element).IsOK());
    EXPECT_EQ(Text(stats), kContinuous);
    EXPECT_EQ(reader->GetStatus(), before);
  }
}

// -------------------------------------------------------------- FillUniStatsCat, FillUniStatsCont

TEST(MCPMMLParserStatistics, FillUniStatsCatAndContCheckNeitherNameNorTotal) {
  const ModelReader reader(Stats(Uni(kInfo + kCont + kDiscr, "")));
  MCUniStats stats;
  EXPECT_TRUE(reader.FillUniStatsCat(stats, "", -5, reader.FirstStatistics()).IsOK());
  EXPECT_EQ(Text(stats), "invalid  -5 [4 6]");
  EXPECT_TRUE(reader.FillUniStatsCont(stats, "", -6, reader.FirstStatistics()).IsOK());
  EXPECT_EQ(Text(stats), "invalid  -6 0.5..4 2.25 1.5 [0 5] [10]");
}

TEST(MCPMMLParserStatistics, NameMayBeThatOfTheStatistics) {
  const ModelReader reader(Stats(Uni(kInfo + kCont + kDiscr)));
  MCUniStats stats("a name that is long enough for the heap", 1, Numbers{1});
  EXPECT_TRUE(reader.FillUniStatsCat(stats, stats.GetName(), 2, reader.FirstStatistics()).IsOK());
  EXPECT_EQ(Text(stats), "a name that is long enough for the heap 2 [4 6]");
  EXPECT_TRUE(reader.FillUniStatsCont(stats, stats.GetName(), 3, reader.FirstStatistics()).IsOK());
  EXPECT_EQ(stats.GetName(), "a name that is long enough for the heap");
}

TEST(MCPMMLParserStatistics, FillUniStatsContWithoutSummaryGives113) {
  const ModelReader reader(Stats(Uni(kCounts + kCont)));
  MCUniStats stats = Old();
  EXPECT_EQ(reader.FillUniStatsCont(stats, "f", 10, reader.FirstStatistics()),
            MCStatus(113, false));
  EXPECT_EQ(Text(stats), kOld);
}

TEST(MCPMMLParserStatistics, FillUniStatsContWithoutDistributionIsOkAndLeavesEvenNewStatistics) {
  const ModelReader reader(Stats(Uni(kCounts + kInfo)));
  MCUniStats stats;
  EXPECT_TRUE(reader.FillUniStatsCont(stats, "f", 10, reader.FirstStatistics()).IsOK());
  EXPECT_EQ(Text(stats), "invalid");
}

TEST(MCPMMLParserStatistics, FillUniStatsCatLooksAtTheFirstDistributionOnly) {
  const ModelReader reader(Stats(Uni(Discr("") + kDiscr)));
  MCUniStats stats = Old();
  EXPECT_EQ(reader.FillUniStatsCat(stats, "f", 10, reader.FirstStatistics()), MCStatus(113, false));
  EXPECT_EQ(Text(stats), kOld);
}

}  // namespace
