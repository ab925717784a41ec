#include "mccommon/MCVarEncoder.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <string>
#include <vector>

#include "mccommon/MCMissingValue.h"

namespace {

using MCMTD_NAMESPACE::IMCVarEncoder;
using MCMTD_NAMESPACE::MCVarEncoder;
using Texts = std::vector<std::string>;

TEST(MCVarEncoder, StartsWithNothingDeclared) {
  const MCVarEncoder encoder;
  EXPECT_TRUE(encoder.GetBinLabels().empty());
  EXPECT_TRUE(encoder.GetMissingNumbers().empty());
  EXPECT_TRUE(encoder.GetMissingTexts().empty());
  EXPECT_FALSE(encoder.HasInvalidRange());
  EXPECT_EQ(encoder.GetInvalidLower(), MCMV::gMissingValue);
  EXPECT_EQ(encoder.GetInvalidUpper(), MCMV::gMissingValue);
}

TEST(MCVarEncoder, BinLabelsReplaceEarlierOnes) {
  MCVarEncoder encoder;
  encoder.SetBinLabels({"low", "mid", "high"});
  encoder.SetBinLabels({"a", "b"});
  EXPECT_EQ(encoder.GetBinLabels(), (Texts{"a", "b"}));
  encoder.SetBinLabels(encoder.GetBinLabels());
  EXPECT_EQ(encoder.GetBinLabels(), (Texts{"a", "b"}));
  encoder.SetBinLabels({});
  EXPECT_TRUE(encoder.GetBinLabels().empty());
}

TEST(MCVarEncoder, MissingNumbersKeepOrderLabelsAndRepetitions) {
  MCVarEncoder encoder;
  encoder.AddMissingValue(99, "No answer");
  encoder.AddMissingValue(-1, "");
  encoder.AddMissingValue(99, "Again");
  ASSERT_EQ(encoder.GetMissingNumbers().size(), 3u);
  EXPECT_EQ(encoder.GetMissingNumbers()[0].value, 99);
  EXPECT_EQ(encoder.GetMissingNumbers()[0].label, "No answer");
  EXPECT_EQ(encoder.GetMissingNumbers()[1].value, -1);
  EXPECT_EQ(encoder.GetMissingNumbers()[1].label, "");
  EXPECT_EQ(encoder.GetMissingNumbers()[2].label, "Again");
  EXPECT_TRUE(encoder.GetMissingTexts().empty());
}

TEST(MCVarEncoder, MissingTextsKeepOrderAndLabels) {
  MCVarEncoder encoder;
  encoder.AddMissingValue("?", "Unknown");
  encoder.AddMissingValue(std::string(), "Empty");
  ASSERT_EQ(encoder.GetMissingTexts().size(), 2u);
  EXPECT_EQ(encoder.GetMissingTexts()[0].value, "?");
  EXPECT_EQ(encoder.GetMissingTexts()[0].label, "Unknown");
  EXPECT_EQ(encoder.GetMissingTexts()[1].value, "");
  EXPECT_EQ(encoder.GetMissingTexts()[1].label, "Empty");
  EXPECT_TRUE(encoder.GetMissingNumbers().empty());
}

TEST(MCVarEncoder, ItsOwnTextsMayBeDeclaredAgain) {
  MCVarEncoder encoder;
  encoder.AddMissingValue("a text too long for the small buffer", "and a label just as long as it");
  for (int i = 0; i < 20; ++i) {
    const MCVarEncoder::MissingText& first = encoder.GetMissingTexts().front();
    encoder.AddMissingValue(first.value, first.label);
  }
  EXPECT_EQ(encoder.GetMissingTexts().back().value, "a text too long for the small buffer");
  EXPECT_EQ(encoder.GetMissingTexts().back().label, "and a label just as long as it");
}

TEST(MCVarEncoder, InvalidRangeIsKeptAsGivenAndReplaced) {
  MCVarEncoder encoder;
  encoder.SetInvalidRange(-DBL_MAX, 0);
  EXPECT_TRUE(encoder.HasInvalidRange());
  EXPECT_EQ(encoder.GetInvalidLower(), -DBL_MAX);
  EXPECT_EQ(encoder.GetInvalidUpper(), 0);
  encoder.SetInvalidRange(5, 3);
  EXPECT_EQ(encoder.GetInvalidLower(), 5);
  EXPECT_EQ(encoder.GetInvalidUpper(), 3);
}

TEST(MCVarEncoder, WorksThroughItsInterface) {
  MCVarEncoder encoder;
  IMCVarEncoder& interface = encoder;
  interface.AddMissingValue(9, "nine");
  interface.AddMissingValue("n", "none");
  interface.SetBinLabels({"all"});
  interface.SetInvalidRange(1, 2);
  EXPECT_EQ(encoder.GetMissingNumbers().size(), 1u);
  EXPECT_EQ(encoder.GetMissingTexts().size(), 1u);
  EXPECT_EQ(encoder.GetBinLabels(), Texts{"all"});
  EXPECT_TRUE(encoder.HasInvalidRange());
}

}  // namespace
