#pragma once

/// \file
/// \brief The steps as archives hold them.

#include <vector>

#include <ORVELBaseData/DiscreteOrientation/DiscreteOrientation2d.h>
#include <ORVELBaseData/DiscreteOrientation/DiscreteOrientation3d.h>
#include <support/EnumerationChecks.h>

namespace orvel::test
{

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

} // namespace orvel::test
