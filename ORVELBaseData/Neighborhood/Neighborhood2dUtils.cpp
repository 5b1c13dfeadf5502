#include "ORVELBaseData/Neighborhood/Neighborhood2dUtils.h"

#include <ORVELSerialization/NamedEnumerationItems.h>

namespace orvel
{

ORVEL_DEFINE_ENUMERATION_ITEMS(eNeighborhood2dType)

} // namespace orvel
