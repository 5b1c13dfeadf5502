#include "ORVELBaseData/Pattern/Kernel/SobelKernelType.h"

#include <gtest/gtest.h>

namespace
{

using orvel::eSobelKernelType;
using orvel::ipUInt64;

TEST(SobelKernelType, HasTheValuesOfTheTable)
{
  EXPECT_EQ(eSobelKernelType(eSobelKernelType::eSKT_Scharr3).getValue(), 0U);
  EXPECT_EQ(eSobelKernelType(eSobelKernelType::eSKT_Sobel3).getValue(), 1U);
  EXPECT_EQ(eSobelKernelType(eSobelKernelType::eSKT_Sobel5).getValue(), 2U);
  EXPECT_EQ(eSobelKernelType(eSobelKernelType::eSKT_Sobel7).getValue(), 3U);
}

TEST(SobelKernelType, HasTheSpellingsOfItsEnumeratorsAsTexts)
{
  EXPECT_STREQ(eSobelKernelType(eSobelKernelType::eSKT_Scharr3).getText(), "eSKT_Scharr3");
  EXPECT_STREQ(eSobelKernelType(eSobelKernelType::eSKT_Sobel3).getText(), "eSKT_Sobel3");
  EXPECT_STREQ(eSobelKernelType(eSobelKernelType::eSKT_Sobel5).getText(), "eSKT_Sobel5");
  EXPECT_STREQ(eSobelKernelType(eSobelKernelType::eSKT_Sobel7).getText(), "eSKT_Sobel7");
}

TEST(SobelKernelType, HasNoTextBeyondTheLastEnumerator)
{
  EXPECT_EQ(eSobelKernelType(ipUInt64(4)).getText(), nullptr);
  EXPECT_EQ(eSobelKernelType(ipUInt64(0xFFFFFFFF)).getText(), nullptr);
}

TEST(SobelKernelType, ClampsAnUnknownValueToTheFirstEnumerator)
{
  EXPECT_EQ(eSobelKernelType(ipUInt64(4)).getDomain(), eSobelKernelType::eSKT_Scharr3);
  EXPECT_EQ(eSobelKernelType(ipUInt64(0xFFFFFFFF)).getDomain(), eSobelKernelType::eSKT_Scharr3);
  EXPECT_EQ(eSobelKernelType(ipUInt64(0x500000002)).getDomain(),
            eSobelKernelType::eSKT_Sobel5); // by the low 32 bits
}

TEST(SobelKernelType, ComparesTheWholeValue)
{
  EXPECT_TRUE(eSobelKernelType(ipUInt64(3)) == eSobelKernelType::eSKT_Sobel7);
  EXPECT_TRUE(eSobelKernelType(ipUInt64(0x100000003)) != eSobelKernelType::eSKT_Sobel7);
  EXPECT_FALSE(eSobelKernelType(eSobelKernelType::eSKT_Sobel3) ==
               eSobelKernelType(eSobelKernelType::eSKT_Sobel5));
}

} // namespace
