#pragma once

/// \file
/// \brief The archive operators of the neighbourhoods in space. \see NamedEnumerationItems.h

#include <ORVELBaseData/Neighborhood/Neighborhood3dType.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/NamedEnumerationItems.h>

namespace orvel
{

ORVEL_DECLARE_ENUMERATION_ITEMS(eNeighborhood3dType, ORVELBASEDATA_EXPORT)

} // namespace orvel
