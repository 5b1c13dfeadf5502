#pragma once

/// \file
/// \brief Kinds of 2-D structuring elements.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of shape of a 2-D structuring element.
///
/// \see NamedEnumeration; StructuringElementInfoUtils.h for the archive operators
class ORVELBASEDATA_EXPORT eSEXYSubType : public NamedEnumeration<eSEXYSubType>
{
public:
  enum domain
  {
    eSEXY_Generic,     ///< any shape, by its offsets
    eSEXY_Circular,    ///< disc
    eSEXY_Square,      ///< square
    eSEXY_Rectangular, ///< rectangle
    eSEXY_HalfLinear,  ///< segment from the origin to one side
    eSEXY_Linear       ///< segment to both sides of the origin
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
