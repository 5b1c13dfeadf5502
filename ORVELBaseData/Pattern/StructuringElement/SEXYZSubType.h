#pragma once

/// \file
/// \brief Kinds of 3-D structuring elements.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of shape of a 3-D structuring element.
///
/// \see NamedEnumeration; StructuringElementInfoUtils.h for the archive operators
class ORVELBASEDATA_EXPORT eSEXYZSubType : public NamedEnumeration<eSEXYZSubType>
{
public:
  enum domain
  {
    eSEXYZ_Generic,     ///< any shape, by its offsets
    eSEXYZ_Spherical,   ///< ball
    eSEXYZ_Cubic,       ///< cube
    eSEXYZ_Rectangular, ///< box
    eSEXYZ_HalfLinear,  ///< segment from the origin to one side
    eSEXYZ_Linear       ///< segment to both sides of the origin
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
