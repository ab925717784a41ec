#include "mccommon/MCMissingValue.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

namespace {

using MCMV::gMissingValue;

// Runs before main, and before the globals of files that are linked later.
const double seenAtStartUp = gMissingValue;

TEST(MissingValue, IsFiniteNegativeAndEqualToItself) {
  const double copy = gMissingValue;
  EXPECT_TRUE(std::isfinite(copy));
  EXPECT_LT(copy, 0);
  EXPECT_TRUE(copy == gMissingValue);
}

TEST(MissingValue, IsNoOpenEndOfARange) {
  EXPECT_NE(gMissingValue, -DBL_MAX);
  EXPECT_NE(gMissingValue, DBL_MAX);
}

TEST(MissingValue, IsSetBeforeAnyCodeRuns) { EXPECT_EQ(seenAtStartUp, gMissingValue); }

}  // namespace
