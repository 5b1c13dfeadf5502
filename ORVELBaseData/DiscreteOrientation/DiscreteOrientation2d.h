#pragma once

/// \file
/// \brief The steps from a pixel to its neighbours.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Step from a pixel to one of its eight neighbours.
///
/// The name gives the step along each axis, y before x: M for -1, 0 for 0, P for +1. The numbers run
/// through y and within it through x, from M to P. The null step has no enumerator: from there on the numbers
/// are one less than 3 (y + 1) + (x + 1).
///
/// \see NamedEnumeration; DiscreteOrientation2dUtils.h for the archive operators
class ORVELBASEDATA_EXPORT eDiscreteOrientation2d : public NamedEnumeration<eDiscreteOrientation2d>
{
public:
  enum domain
  {
    eDO2D_YMXM, ///< (y, x) = (-1, -1)
    eDO2D_YMX0, ///< (y, x) = (-1, 0)
    eDO2D_YMXP, ///< (y, x) = (-1, +1)
    eDO2D_Y0XM, ///< (y, x) = (0, -1)
    eDO2D_Y0XP, ///< (y, x) = (0, +1)
    eDO2D_YPXM, ///< (y, x) = (+1, -1)
    eDO2D_YPX0, ///< (y, x) = (+1, 0)
    eDO2D_YPXP  ///< (y, x) = (+1, +1)
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
