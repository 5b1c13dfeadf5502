#include "ORVELBaseData/Neighborhood/Neighborhood2dUtils.h"

namespace orvel
{

ORVEL_DEFINE_ENUMERATION_ITEMS(eNeighborhood2dType)

} // namespace orvel
