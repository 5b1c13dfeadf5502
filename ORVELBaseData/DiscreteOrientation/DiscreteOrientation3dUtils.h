#pragma once

/// \file
/// \brief The archive operators of the steps in space. \see NamedEnumerationItems.h

#include <ORVELBaseData/DiscreteOrientation/DiscreteOrientation3d.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/NamedEnumerationItems.h>

namespace orvel
{

ORVEL_DECLARE_ENUMERATION_ITEMS(eDiscreteOrientation3d, ORVELBASEDATA_EXPORT)

} // namespace orvel
