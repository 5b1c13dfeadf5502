#pragma once

/// \file
/// \brief Kinds of structuring elements.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of a structuring element or of a description of one: the space in which its offsets lie.
class ORVELBASEDATA_EXPORT eStructuringElementType : public NamedEnumeration<eStructuringElementType>
{
public:
  enum domain
  {
    eSET_XY, ///< the plane
    eSET_XYZ ///< space
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
