#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation2d.h"
#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation2dUtils.h"
#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation3d.h"
#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation3dUtils.h"
#include <support/EnumerationChecks.h>
#include <support/EnumerationItemChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

struct DiscreteOrientation2dTable
{
  using Enumeration = eDiscreteOrientation2d;
  static constexpr const char* reader = "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                        "orvel::SerializationIItem<orvel::eDiscreteOrientation2d>&)";
  static constexpr const char* source = "ORVELBaseData/DiscreteOrientation/DiscreteOrientation2dUtils.cpp";

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eDiscreteOrientation2d::eDO2D_YMXM, 0, "eDO2D_YMXM"},
            {eDiscreteOrientation2d::eDO2D_YMX0, 1, "eDO2D_YMX0"},
            {eDiscreteOrientation2d::eDO2D_YMXP, 2, "eDO2D_YMXP"},
            {eDiscreteOrientation2d::eDO2D_Y0XM, 3, "eDO2D_Y0XM"},
            {eDiscreteOrientation2d::eDO2D_Y0XP, 4, "eDO2D_Y0XP"},
            {eDiscreteOrientation2d::eDO2D_YPXM, 5, "eDO2D_YPXM"},
            {eDiscreteOrientation2d::eDO2D_YPX0, 6, "eDO2D_YPX0"},
            {eDiscreteOrientation2d::eDO2D_YPXP, 7, "eDO2D_YPXP"}};
  }
};

struct DiscreteOrientation3dTable
{
  using Enumeration = eDiscreteOrientation3d;
  static constexpr const char* reader = "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                        "orvel::SerializationIItem<orvel::eDiscreteOrientation3d>&)";
  static constexpr const char* source = "ORVELBaseData/DiscreteOrientation/DiscreteOrientation3dUtils.cpp";

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eDiscreteOrientation3d::eDO3D_ZMYMXM, 0, "eDO3D_ZMYMXM"},
            {eDiscreteOrientation3d::eDO3D_ZMYMX0, 1, "eDO3D_ZMYMX0"},
            {eDiscreteOrientation3d::eDO3D_ZMYMXP, 2, "eDO3D_ZMYMXP"},
            {eDiscreteOrientation3d::eDO3D_ZMY0XM, 3, "eDO3D_ZMY0XM"},
            {eDiscreteOrientation3d::eDO3D_ZMY0X0, 4, "eDO3D_ZMY0X0"},
            {eDiscreteOrientation3d::eDO3D_ZMY0XP, 5, "eDO3D_ZMY0XP"},
            {eDiscreteOrientation3d::eDO3D_ZMYPXM, 6, "eDO3D_ZMYPXM"},
            {eDiscreteOrientation3d::eDO3D_ZMYPX0, 7, "eDO3D_ZMYPX0"},
            {eDiscreteOrientation3d::eDO3D_ZMYPXP, 8, "eDO3D_ZMYPXP"},
            {eDiscreteOrientation3d::eDO3D_Z0YMXM, 9, "eDO3D_Z0YMXM"},
            {eDiscreteOrientation3d::eDO3D_Z0YMX0, 10, "eDO3D_Z0YMX0"},
            {eDiscreteOrientation3d::eDO3D_Z0YMXP, 11, "eDO3D_Z0YMXP"},
            {eDiscreteOrientation3d::eDO3D_Z0Y0XM, 12, "eDO3D_Z0Y0XM"},
            {eDiscreteOrientation3d::eDO3D_Z0Y0XP, 13, "eDO3D_Z0Y0XP"},
            {eDiscreteOrientation3d::eDO3D_Z0YPXM, 14, "eDO3D_Z0YPXM"},
            {eDiscreteOrientation3d::eDO3D_Z0YPX0, 15, "eDO3D_Z0YPX0"},
            {eDiscreteOrientation3d::eDO3D_Z0YPXP, 16, "eDO3D_Z0YPXP"},
            {eDiscreteOrientation3d::eDO3D_ZPYMXM, 17, "eDO3D_ZPYMXM"},
            {eDiscreteOrientation3d::eDO3D_ZPYMX0, 18, "eDO3D_ZPYMX0"},
            {eDiscreteOrientation3d::eDO3D_ZPYMXP, 19, "eDO3D_ZPYMXP"},
            {eDiscreteOrientation3d::eDO3D_ZPY0XM, 20, "eDO3D_ZPY0XM"},
            {eDiscreteOrientation3d::eDO3D_ZPY0X0, 21, "eDO3D_ZPY0X0"},
            {eDiscreteOrientation3d::eDO3D_ZPY0XP, 22, "eDO3D_ZPY0XP"},
            {eDiscreteOrientation3d::eDO3D_ZPYPXM, 23, "eDO3D_ZPYPXM"},
            {eDiscreteOrientation3d::eDO3D_ZPYPX0, 24, "eDO3D_ZPYPX0"},
            {eDiscreteOrientation3d::eDO3D_ZPYPXP, 25, "eDO3D_ZPYPXP"}};
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(DiscreteOrientation2d, Enumeration, DiscreteOrientation2dTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(DiscreteOrientation2d, EnumerationItems, DiscreteOrientation2dTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(DiscreteOrientation3d, Enumeration, DiscreteOrientation3dTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(DiscreteOrientation3d, EnumerationItems, DiscreteOrientation3dTable, );

/// The letter of a step of -1, 0 or 1.
char signOf(int step)
{
  return "M0P"[step + 1];
}

// A second way to the same tables, by the letters of the axes; the null step has no number.

TEST(DiscreteOrientation2d, NumbersTheStepsAlongXWithinY)
{
  ipUInt64 number = 0;
  for (int y = -1; y <= 1; ++y)
    for (int x = -1; x <= 1; ++x)
      if (y != 0 || x != 0)
      {
        const std::string text = std::string("eDO2D_Y") + signOf(y) + "X" + signOf(x);
        EXPECT_STREQ(eDiscreteOrientation2d(number++).getText(), text.c_str());
      }
  EXPECT_EQ(number, 8U);
}

TEST(DiscreteOrientation3d, NumbersTheStepsAlongXWithinYWithinZ)
{
  ipUInt64 number = 0;
  for (int z = -1; z <= 1; ++z)
    for (int y = -1; y <= 1; ++y)
      for (int x = -1; x <= 1; ++x)
        if (z != 0 || y != 0 || x != 0)
        {
          const std::string text = std::string("eDO3D_Z") + signOf(z) + "Y" + signOf(y) + "X" + signOf(x);
          EXPECT_STREQ(eDiscreteOrientation3d(number++).getText(), text.c_str());
        }
  EXPECT_EQ(number, 26U);
}

TEST(DiscreteOrientation2d, SkipsTheNullStep)
{
  EXPECT_STREQ(eDiscreteOrientation2d(ipUInt64(3)).getText(), "eDO2D_Y0XM");
  EXPECT_STREQ(eDiscreteOrientation2d(ipUInt64(4)).getText(), "eDO2D_Y0XP");
  expectRefusal<DiscreteOrientation2dTable, HandWrittenXml>(xmlOf("eDO2D_Y0X0"),
                                                            "Unknown enumeration text eDO2D_Y0X0");
}

TEST(DiscreteOrientation3d, SkipsTheNullStep)
{
  EXPECT_STREQ(eDiscreteOrientation3d(ipUInt64(12)).getText(), "eDO3D_Z0Y0XM");
  EXPECT_STREQ(eDiscreteOrientation3d(ipUInt64(13)).getText(), "eDO3D_Z0Y0XP");
  expectRefusal<DiscreteOrientation3dTable, HandWrittenXml>(xmlOf("eDO3D_Z0Y0X0"),
                                                            "Unknown enumeration text eDO3D_Z0Y0X0");
}

TEST(DiscreteOrientation2d, IsWrittenAsFourBehindTheNullStep)
{
  const eDiscreteOrientation2d step = eDiscreteOrientation2d::eDO2D_Y0XP;
  EXPECT_EQ(fileOfEnumeration<HandWrittenBinary>(step), binaryOf(4));
  EXPECT_EQ(fileOfEnumeration<HandWrittenXml>(step), xmlOf("eDO2D_Y0XP"));
  EXPECT_EQ((enumerationOf<HandWrittenBinary, eDiscreteOrientation2d>(binaryOf(4))), step);
  EXPECT_EQ((enumerationOf<HandWrittenXml, eDiscreteOrientation2d>(xmlOf("eDO2D_Y0XP"))), step);
}

TEST(DiscreteOrientation3d, IsReadFromTwentyFiveAndNotFromTwentySix)
{
  const auto last = enumerationOf<HandWrittenBinary, eDiscreteOrientation3d>(binaryOf(25));
  EXPECT_STREQ(last.getText(), "eDO3D_ZPYPXP");
  expectRefusal<DiscreteOrientation3dTable, HandWrittenBinary>(binaryOf(26), "Unknown enumeration value 26");
}

} // namespace
