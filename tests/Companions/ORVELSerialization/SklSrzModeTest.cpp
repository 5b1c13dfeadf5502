#include "ORVELSerialization/SklSrzMode.h"

#include <gtest/gtest.h>

namespace
{

using namespace orvel;

TEST(SklSrzMode, HasThreeValuesWithTheSpellingAsText)
{
  EXPECT_EQ(eSklSrzMode(eSklSrzMode::eSSM_Full).getValue(), 0U);
  EXPECT_EQ(eSklSrzMode(eSklSrzMode::eSSM_Skeleton).getValue(), 1U);
  EXPECT_EQ(eSklSrzMode(eSklSrzMode::eSSM_Data).getValue(), 2U);
  EXPECT_STREQ(eSklSrzMode::findText(0), "eSSM_Full");
  EXPECT_STREQ(eSklSrzMode::findText(1), "eSSM_Skeleton");
  EXPECT_STREQ(eSklSrzMode::findText(2), "eSSM_Data");
  EXPECT_EQ(eSklSrzMode::findText(3), nullptr);
}

TEST(SklSrzMode, HoldsSixtyFourBits)
{
  static_assert(sizeof(eSklSrzMode) == 8);
  EXPECT_EQ(eSklSrzMode(ipUInt64{0xFFFFFFFFFFFFFFFF}).getValue(), 0xFFFFFFFFFFFFFFFFU);
  EXPECT_NE(eSklSrzMode(ipUInt64{0x100000001}), eSklSrzMode(eSklSrzMode::eSSM_Skeleton));
  EXPECT_EQ(eSklSrzMode(ipUInt64{0x100000001}).getDomain(), eSklSrzMode::eSSM_Skeleton);
  EXPECT_EQ(eSklSrzMode(ipUInt64{3}).getDomain(), eSklSrzMode::eSSM_Full);
}

} // namespace
