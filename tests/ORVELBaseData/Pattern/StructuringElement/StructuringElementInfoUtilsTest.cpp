#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>

#include <gtest/gtest.h>

#include <support/EnumerationItemChecks.h>

#include "SubTypeTables.h"

namespace
{

using namespace orvel::test;

INSTANTIATE_TYPED_TEST_SUITE_P(SEXYSubType, EnumerationItems, SEXYSubTypeTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(SEXYZSubType, EnumerationItems, SEXYZSubTypeTable, );

// The kinds of one dimension are none of the other, though they end alike.
TEST(StructuringElementInfoUtils, TellTheDimensionsApart)
{
  expectRefusal<SEXYSubTypeTable, HandWrittenXml>(xmlOf("eSEXYZ_Linear"),
                                                  "Unknown enumeration text eSEXYZ_Linear");
  expectRefusal<SEXYZSubTypeTable, HandWrittenXml>(xmlOf("eSEXY_Linear"),
                                                   "Unknown enumeration text eSEXY_Linear");
}

} // namespace
