#pragma once

/// \file
/// \brief Neighbourhoods of a voxel.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Connexity of a voxel: which of the voxels around it are its neighbours.
///
/// \see NamedEnumeration; Neighborhood3dUtils.h for the archive operators
class ORVELBASEDATA_EXPORT eNeighborhood3dType : public NamedEnumeration<eNeighborhood3dType>
{
public:
  enum domain
  {
    eN3T_6Connexity,  ///< those that share a face with it
    eN3T_18Connexity, ///< those that share a face or an edge with it
    eN3T_26Connexity  ///< those that share a face, an edge or a corner with it
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
