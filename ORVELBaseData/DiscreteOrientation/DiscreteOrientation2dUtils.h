#pragma once

/// \file
/// \brief The archive operators of the steps on the plane. \see NamedEnumerationItems.h

#include <ORVELBaseData/DiscreteOrientation/DiscreteOrientation2d.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/NamedEnumerationItems.h>

namespace orvel
{

ORVEL_DECLARE_ENUMERATION_ITEMS(eDiscreteOrientation2d, ORVELBASEDATA_EXPORT)

} // namespace orvel
