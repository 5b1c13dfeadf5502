#pragma once

/// \file
/// \brief The kinds of structuring elements as archives hold them.

#include <vector>

#include <ORVELBaseData/Pattern/StructuringElement/SEXYSubType.h>
#include <ORVELBaseData/Pattern/StructuringElement/SEXYZSubType.h>
#include <support/EnumerationChecks.h>

namespace orvel::test
{

struct SEXYSubTypeTable
{
  using Enumeration = eSEXYSubType;
  static constexpr const char* reader = "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                        "orvel::SerializationIItem<orvel::eSEXYSubType>&)";
  static constexpr const char* source =
      "ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.cpp";

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eSEXYSubType::eSEXY_Generic, 0, "eSEXY_Generic"},
            {eSEXYSubType::eSEXY_Circular, 1, "eSEXY_Circular"},
            {eSEXYSubType::eSEXY_Square, 2, "eSEXY_Square"},
            {eSEXYSubType::eSEXY_Rectangular, 3, "eSEXY_Rectangular"},
            {eSEXYSubType::eSEXY_HalfLinear, 4, "eSEXY_HalfLinear"},
            {eSEXYSubType::eSEXY_Linear, 5, "eSEXY_Linear"}};
  }
};

struct SEXYZSubTypeTable
{
  using Enumeration = eSEXYZSubType;
  static constexpr const char* reader = "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                        "orvel::SerializationIItem<orvel::eSEXYZSubType>&)";
  static constexpr const char* source =
      "ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.cpp";

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eSEXYZSubType::eSEXYZ_Generic, 0, "eSEXYZ_Generic"},
            {eSEXYZSubType::eSEXYZ_Spherical, 1, "eSEXYZ_Spherical"},
            {eSEXYZSubType::eSEXYZ_Cubic, 2, "eSEXYZ_Cubic"},
            {eSEXYZSubType::eSEXYZ_Rectangular, 3, "eSEXYZ_Rectangular"},
            {eSEXYZSubType::eSEXYZ_HalfLinear, 4, "eSEXYZ_HalfLinear"},
            {eSEXYZSubType::eSEXYZ_Linear, 5, "eSEXYZ_Linear"}};
  }
};

} // namespace orvel::test
