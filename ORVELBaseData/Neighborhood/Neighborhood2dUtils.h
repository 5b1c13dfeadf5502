#pragma once

/// \file
/// \brief The archive operators of the neighbourhoods on the plane. \see NamedEnumerationItems.h

#include <ORVELBaseData/Neighborhood/Neighborhood2dType.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/NamedEnumerationItems.h>

namespace orvel
{

ORVEL_DECLARE_ENUMERATION_ITEMS(eNeighborhood2dType, ORVELBASEDATA_EXPORT)

} // namespace orvel
