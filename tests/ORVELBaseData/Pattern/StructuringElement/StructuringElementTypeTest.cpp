#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementType.h"

#include <gtest/gtest.h>

namespace
{

using orvel::eStructuringElementType;
using orvel::ipUInt64;

TEST(StructuringElementType, HasTheValuesOfTheTable)
{
  EXPECT_EQ(eStructuringElementType(eStructuringElementType::eSET_XY).getValue(), 0U);
  EXPECT_EQ(eStructuringElementType(eStructuringElementType::eSET_XYZ).getValue(), 1U);
}

TEST(StructuringElementType, HasTheSpellingsOfItsEnumeratorsAsTexts)
{
  EXPECT_STREQ(eStructuringElementType(eStructuringElementType::eSET_XY).getText(), "eSET_XY");
  EXPECT_STREQ(eStructuringElementType(eStructuringElementType::eSET_XYZ).getText(), "eSET_XYZ");
}

TEST(StructuringElementType, HasNoTextBeyondTheLastEnumerator)
{
  EXPECT_EQ(eStructuringElementType(ipUInt64(2)).getText(), nullptr);
  EXPECT_EQ(eStructuringElementType(ipUInt64(0xFFFFFFFF)).getText(), nullptr);
}

TEST(StructuringElementType, ClampsAnUnknownValueToTheFirstEnumerator)
{
  EXPECT_EQ(eStructuringElementType(ipUInt64(2)).getDomain(), eStructuringElementType::eSET_XY);
  EXPECT_EQ(eStructuringElementType(ipUInt64(0x500000001)).getDomain(), // by the low 32 bits
            eStructuringElementType::eSET_XYZ);
}

TEST(StructuringElementType, ComparesTheWholeValue)
{
  EXPECT_TRUE(eStructuringElementType(ipUInt64(1)) == eStructuringElementType::eSET_XYZ);
  EXPECT_TRUE(eStructuringElementType(ipUInt64(0x100000001)) != eStructuringElementType::eSET_XYZ);
  EXPECT_FALSE(eStructuringElementType(eStructuringElementType::eSET_XY) ==
               eStructuringElementType(eStructuringElementType::eSET_XYZ));
}

} // namespace
