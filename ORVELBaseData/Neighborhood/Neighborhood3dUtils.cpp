#include "ORVELBaseData/Neighborhood/Neighborhood3dUtils.h"

namespace orvel
{

ORVEL_DEFINE_ENUMERATION_ITEMS(eNeighborhood3dType)

} // namespace orvel
