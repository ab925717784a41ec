#include "mccommon/MCUniStats.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "mccommon/MCMissingValue.h"

namespace {

using MCMTD_NAMESPACE::MCUniStats;
using MCMV::gMissingValue;
using Numbers = std::vector<double>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

MCUniStats::SummStats Summary() {
  MCUniStats::SummStats summary;
  summary.minimum = 1;
  summary.maximum = 9;
  summary.mean = 4;
  summary.standardDeviation = 2;
  return summary;
}

TEST(MCUniStats, SummaryStartsMissing) {
  const MCUniStats::SummStats summary;
  EXPECT_EQ(summary.minimum, gMissingValue);
  EXPECT_EQ(summary.maximum, gMissingValue);
  EXPECT_EQ(summary.mean, gMissingValue);
  EXPECT_EQ(summary.standardDeviation, gMissingValue);
}

TEST(MCUniStats, DefaultIsEmptyAndNotValid) {
  const MCUniStats stats;
  EXPECT_FALSE(stats.IsValid());
  EXPECT_EQ(stats.GetName(), "");
  EXPECT_FALSE(stats.IsContinuous());
  EXPECT_EQ(stats.GetTotal(), gMissingValue);
  EXPECT_TRUE(stats.GetCutPoints().empty());
  EXPECT_TRUE(stats.GetFrequencies().empty());
}

TEST(MCUniStats, CategoricalKeepsWhatItIsGiven) {
  const MCUniStats stats("color", 10, {7, 3});
  EXPECT_TRUE(stats.IsValid());
  EXPECT_EQ(stats.GetName(), "color");
  EXPECT_EQ(stats.GetTotal(), 10);
  EXPECT_FALSE(stats.IsContinuous());
  EXPECT_EQ(stats.GetFrequencies(), (Numbers{7, 3}));
  EXPECT_TRUE(stats.GetCutPoints().empty());
  EXPECT_EQ(stats.GetSummary().mean, gMissingValue);
}

TEST(MCUniStats, ContinuousKeepsWhatItIsGiven) {
  const MCUniStats stats("age", 10, Summary(), {gMissingValue, 5, gMissingValue}, {7, 3});
  EXPECT_TRUE(stats.IsValid());
  EXPECT_EQ(stats.GetName(), "age");
  EXPECT_EQ(stats.GetTotal(), 10);
  EXPECT_TRUE(stats.IsContinuous());
  EXPECT_EQ(stats.GetSummary().minimum, 1);
  EXPECT_EQ(stats.GetSummary().maximum, 9);
  EXPECT_EQ(stats.GetSummary().mean, 4);
  EXPECT_EQ(stats.GetSummary().standardDeviation, 2);
  EXPECT_EQ(stats.GetCutPoints(), (Numbers{gMissingValue, 5, gMissingValue}));
  EXPECT_EQ(stats.GetFrequencies(), (Numbers{7, 3}));
}

TEST(MCUniStats, CategoricalIsValidWithANameAndNothingNegative) {
  const struct {
    const char* rule;
    std::string name;
    double total;
    Numbers frequencies;
    bool valid;
  } rows[] = {
      {"a total of zero is fine", "a", 0, {0, 0}, true},
      {"no frequencies are fine", "a", 1, {}, true},
      {"the sum is not compared with the total", "a", 1, {5, 6}, true},
      {"an empty name is not", "", 1, {1}, false},
      {"a negative total is not", "a", -1, {1}, false},
      {"a missing total is not", "a", gMissingValue, {1}, false},
      {"a total that is a NaN is not", "a", kNaN, {1}, false},
      {"a negative frequency is not", "a", 1, {1, -0.5, 1}, false},
      {"a frequency that is a NaN is not", "a", 1, {1, kNaN}, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MCUniStats(row.name, row.total, row.frequencies).IsValid(), row.valid) << row.rule;
  }
}

TEST(MCUniStats, ContinuousIsValidWithOneFrequencyPerInterval) {
  const struct {
    const char* rule;
    std::string name;
    double total;
    Numbers cutPoints;
    Numbers frequencies;
    bool valid;
  } rows[] = {
      {"no distribution is fine", "a", 3, {}, {}, true},
      {"two intervals, two frequencies", "a", 3, {0, 1, 2}, {1, 2}, true},
      {"one cut point makes no interval", "a", 3, {0}, {}, true},
      {"a frequency too few", "a", 3, {0, 1, 2}, {1}, false},
      {"a frequency too many", "a", 3, {0, 1, 2}, {1, 2, 3}, false},
      {"frequencies alone", "a", 3, {}, {1}, false},
      {"cut points alone", "a", 3, {0, 1}, {}, false},
      {"a negative frequency", "a", 3, {0, 1}, {-1}, false},
      {"a negative total", "a", -3, {0, 1}, {1}, false},
      {"an empty name", "", 3, {0, 1}, {1}, false},
  };
  for (const auto& row : rows) {
    const MCUniStats stats(row.name, row.total, Summary(), row.cutPoints, row.frequencies);
    EXPECT_EQ(stats.IsValid(), row.valid) << row.rule;
  }
}

TEST(MCUniStats, IsReplacedByAssignment) {
  MCUniStats stats("age", 10, Summary(), {0, 5}, {10});
  stats = MCUniStats("color", 2, {1, 1});
  EXPECT_EQ(stats.GetName(), "color");
  EXPECT_FALSE(stats.IsContinuous());
  EXPECT_TRUE(stats.GetCutPoints().empty());
  EXPECT_EQ(stats.GetSummary().maximum, gMissingValue);
}

}  // namespace
