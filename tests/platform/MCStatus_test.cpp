#include "mccommon/MCStatus.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using MCCommon::MCStatus;

TEST(MCStatus, DefaultIsOKWithoutFlag) {
  const MCStatus status;
  EXPECT_TRUE(status.IsOK());
  EXPECT_EQ(status.GetCode(), 0);
  EXPECT_FALSE(status.GetFlag());
}

TEST(MCStatus, KeepsCodeAndFlag) {
  const MCStatus error(104, false);
  EXPECT_FALSE(error.IsOK());
  EXPECT_EQ(error.GetCode(), 104);
  EXPECT_FALSE(error.GetFlag());

  const MCStatus absent(120, true);
  EXPECT_FALSE(absent.IsOK());
  EXPECT_EQ(absent.GetCode(), 120);
  EXPECT_TRUE(absent.GetFlag());
}

TEST(MCStatus, OnlyTheCodeDecidesWhetherItIsOK) {
  EXPECT_TRUE(MCStatus(0, true).IsOK());
  EXPECT_FALSE(MCStatus(-1, false).IsOK());
}

TEST(MCStatus, EqualWhenCodeAndFlagAre) {
  EXPECT_EQ(MCStatus(), MCStatus(0, false));
  EXPECT_EQ(MCStatus(108, true), MCStatus(108, true));
  EXPECT_NE(MCStatus(108, true), MCStatus(108, false));
  EXPECT_NE(MCStatus(108, false), MCStatus(109, false));
  EXPECT_FALSE(MCStatus(108, false) != MCStatus(108, false));
  EXPECT_FALSE(MCStatus(108, false) == MCStatus(108, true));
}

TEST(MCStatus, IsCopiedFreely) {
  MCStatus status;
  const MCStatus other(113, false);
  status = other;
  EXPECT_EQ(status, other);
  EXPECT_TRUE(std::is_trivially_copyable_v<MCStatus>);
}

TEST(MCStatus, WorksAtCompileTime) {
  static_assert(MCStatus().IsOK());
  static_assert(MCStatus(105, true) == MCStatus(105, true));
}

}  // namespace
