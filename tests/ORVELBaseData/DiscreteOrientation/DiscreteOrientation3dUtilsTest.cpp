#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation3dUtils.h"

#include <gtest/gtest.h>

#include "DiscreteOrientationTables.h"
#include <support/EnumerationItemChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(DiscreteOrientation3d, EnumerationItems, DiscreteOrientation3dTable, );

TEST(DiscreteOrientation3dUtils, HaveNoNullStep)
{
  expectRefusal<DiscreteOrientation3dTable, HandWrittenXml>(xmlOf("eDO3D_Z0Y0X0"),
                                                            "Unknown enumeration text eDO3D_Z0Y0X0");
}

TEST(DiscreteOrientation3dUtils, ReadTwentyFiveAndRefuseTwentySix)
{
  const auto last = enumerationOf<HandWrittenBinary, eDiscreteOrientation3d>(binaryOf(25));
  EXPECT_STREQ(last.getText(), "eDO3D_ZPYPXP");
  expectRefusal<DiscreteOrientation3dTable, HandWrittenBinary>(binaryOf(26), "Unknown enumeration value 26");
}

} // namespace
