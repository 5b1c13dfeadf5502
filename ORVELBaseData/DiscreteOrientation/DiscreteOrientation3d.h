#pragma once

/// \file
/// \brief The steps from a voxel to its neighbours.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Step from a voxel to one of its 26 neighbours.
///
/// The name gives the step along each axis, z before y before x: M for -1, 0 for 0, P for +1. The numbers
/// run through z, within it through y and within that through x, from M to P. The null step has no
/// enumerator: from there on the numbers are one less than 9 (z + 1) + 3 (y + 1) + (x + 1).
///
/// \see NamedEnumeration; DiscreteOrientation3dUtils.h for the archive operators
class ORVELBASEDATA_EXPORT eDiscreteOrientation3d : public NamedEnumeration<eDiscreteOrientation3d>
{
public:
  enum domain
  {
    eDO3D_ZMYMXM, ///< (z, y, x) = (-1, -1, -1)
    eDO3D_ZMYMX0, ///< (z, y, x) = (-1, -1, 0)
    eDO3D_ZMYMXP, ///< (z, y, x) = (-1, -1, +1)
    eDO3D_ZMY0XM, ///< (z, y, x) = (-1, 0, -1)
    eDO3D_ZMY0X0, ///< (z, y, x) = (-1, 0, 0)
    eDO3D_ZMY0XP, ///< (z, y, x) = (-1, 0, +1)
    eDO3D_ZMYPXM, ///< (z, y, x) = (-1, +1, -1)
    eDO3D_ZMYPX0, ///< (z, y, x) = (-1, +1, 0)
    eDO3D_ZMYPXP, ///< (z, y, x) = (-1, +1, +1)
    eDO3D_Z0YMXM, ///< (z, y, x) = (0, -1, -1)
    eDO3D_Z0YMX0, ///< (z, y, x) = (0, -1, 0)
    eDO3D_Z0YMXP, ///< (z, y, x) = (0, -1, +1)
    eDO3D_Z0Y0XM, ///< (z, y, x) = (0, 0, -1)
    eDO3D_Z0Y0XP, ///< (z, y, x) = (0, 0, +1)
    eDO3D_Z0YPXM, ///< (z, y, x) = (0, +1, -1)
    eDO3D_Z0YPX0, ///< (z, y, x) = (0, +1, 0)
    eDO3D_Z0YPXP, ///< (z, y, x) = (0, +1, +1)
    eDO3D_ZPYMXM, ///< (z, y, x) = (+1, -1, -1)
    eDO3D_ZPYMX0, ///< (z, y, x) = (+1, -1, 0)
    eDO3D_ZPYMXP, ///< (z, y, x) = (+1, -1, +1)
    eDO3D_ZPY0XM, ///< (z, y, x) = (+1, 0, -1)
    eDO3D_ZPY0X0, ///< (z, y, x) = (+1, 0, 0)
    eDO3D_ZPY0XP, ///< (z, y, x) = (+1, 0, +1)
    eDO3D_ZPYPXM, ///< (z, y, x) = (+1, +1, -1)
    eDO3D_ZPYPX0, ///< (z, y, x) = (+1, +1, 0)
    eDO3D_ZPYPXP  ///< (z, y, x) = (+1, +1, +1)
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
