#include "ORVELBaseData/Neighborhood/Neighborhood3dUtils.h"

#include <gtest/gtest.h>

#include "NeighborhoodTables.h"
#include <support/EnumerationItemChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(Neighborhood3dType, EnumerationItems, Neighborhood3dTypeTable, );

TEST(Neighborhood3dUtils, FileTheSecondConnexityAsItsTextOrAsOne)
{
  const eNeighborhood3dType connexity(ipUInt64{1});
  EXPECT_EQ(fileOfEnumeration<HandWrittenXml>(connexity), xmlOf("eN3T_18Connexity"));
  EXPECT_EQ(fileOfEnumeration<HandWrittenBinary>(connexity), binaryOf(1));
}

} // namespace
