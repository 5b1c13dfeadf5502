#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation2dUtils.h"

#include <gtest/gtest.h>

#include "DiscreteOrientationTables.h"
#include <support/EnumerationItemChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(DiscreteOrientation2d, EnumerationItems, DiscreteOrientation2dTable, );

TEST(DiscreteOrientation2dUtils, HaveNoNullStep)
{
  expectRefusal<DiscreteOrientation2dTable, HandWrittenXml>(xmlOf("eDO2D_Y0X0"),
                                                            "Unknown enumeration text eDO2D_Y0X0");
}

TEST(DiscreteOrientation2dUtils, FileTheStepBehindTheNullStepAsFour)
{
  const eDiscreteOrientation2d step = eDiscreteOrientation2d::eDO2D_Y0XP;
  EXPECT_EQ(fileOfEnumeration<HandWrittenBinary>(step), binaryOf(4));
  EXPECT_EQ(fileOfEnumeration<HandWrittenXml>(step), xmlOf("eDO2D_Y0XP"));
  EXPECT_EQ((enumerationOf<HandWrittenBinary, eDiscreteOrientation2d>(binaryOf(4))), step);
  EXPECT_EQ((enumerationOf<HandWrittenXml, eDiscreteOrientation2d>(xmlOf("eDO2D_Y0XP"))), step);
}

} // namespace
