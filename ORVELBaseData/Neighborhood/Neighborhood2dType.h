#pragma once

/// \file
/// \brief Neighbourhoods of a pixel.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Connexity of a pixel: which of the pixels around it are its neighbours.
///
/// \see NamedEnumeration; Neighborhood2dUtils.h for the archive operators
class ORVELBASEDATA_EXPORT eNeighborhood2dType : public NamedEnumeration<eNeighborhood2dType>
{
public:
  enum domain
  {
    eN2T_4Connexity, ///< those that share an edge with it
    eN2T_8Connexity  ///< those that share an edge or a corner with it
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
