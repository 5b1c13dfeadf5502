#pragma once

/// \file
/// \brief The neighbourhoods as archives hold them.

#include <vector>

#include <ORVELBaseData/Neighborhood/Neighborhood2dType.h>
#include <ORVELBaseData/Neighborhood/Neighborhood3dType.h>
#include <support/EnumerationChecks.h>

namespace orvel::test
{

struct Neighborhood2dTypeTable
{
  using Enumeration = eNeighborhood2dType;
  static constexpr const char* reader = "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                        "orvel::SerializationIItem<orvel::eNeighborhood2dType>&)";
  static constexpr const char* source = "ORVELBaseData/Neighborhood/Neighborhood2dUtils.cpp";

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eNeighborhood2dType::eN2T_4Connexity, 0, "eN2T_4Connexity"},
            {eNeighborhood2dType::eN2T_8Connexity, 1, "eN2T_8Connexity"}};
  }
};

struct Neighborhood3dTypeTable
{
  using Enumeration = eNeighborhood3dType;
  static constexpr const char* reader = "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "
                                        "orvel::SerializationIItem<orvel::eNeighborhood3dType>&)";
  static constexpr const char* source = "ORVELBaseData/Neighborhood/Neighborhood3dUtils.cpp";

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eNeighborhood3dType::eN3T_6Connexity, 0, "eN3T_6Connexity"},
            {eNeighborhood3dType::eN3T_18Connexity, 1, "eN3T_18Connexity"},
            {eNeighborhood3dType::eN3T_26Connexity, 2, "eN3T_26Connexity"}};
  }
};

} // namespace orvel::test
