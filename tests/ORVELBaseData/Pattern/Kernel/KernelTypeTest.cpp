#include "ORVELBaseData/Pattern/Kernel/KernelType.h"

#include <gtest/gtest.h>

namespace
{

using orvel::eKernelType;
using orvel::ipUInt64;

TEST(KernelType, HasTheValuesOfTheTable)
{
  EXPECT_EQ(eKernelType(eKernelType::eKT_XY).getValue(), 0U);
  EXPECT_EQ(eKernelType(eKernelType::eKT_XYZ).getValue(), 1U);
}

TEST(KernelType, HasTheSpellingsOfItsEnumeratorsAsTexts)
{
  EXPECT_STREQ(eKernelType(eKernelType::eKT_XY).getText(), "eKT_XY");
  EXPECT_STREQ(eKernelType(eKernelType::eKT_XYZ).getText(), "eKT_XYZ");
}

TEST(KernelType, HasNoTextBeyondTheLastEnumerator)
{
  EXPECT_EQ(eKernelType(ipUInt64(2)).getText(), nullptr);
  EXPECT_EQ(eKernelType(ipUInt64(0xFFFFFFFF)).getText(), nullptr);
}

TEST(KernelType, ClampsAnUnknownValueToTheFirstEnumerator)
{
  EXPECT_EQ(eKernelType(ipUInt64(2)).getDomain(), eKernelType::eKT_XY);
  EXPECT_EQ(eKernelType(ipUInt64(0x500000001)).getDomain(), eKernelType::eKT_XYZ); // by the low 32 bits
}

TEST(KernelType, ComparesTheWholeValue)
{
  EXPECT_TRUE(eKernelType(ipUInt64(1)) == eKernelType::eKT_XYZ);
  EXPECT_TRUE(eKernelType(ipUInt64(0x100000001)) != eKernelType::eKT_XYZ);
  EXPECT_FALSE(eKernelType(eKernelType::eKT_XY) == eKernelType(eKernelType::eKT_XYZ));
}

} // namespace
