#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation3dUtils.h"

namespace orvel
{

ORVEL_DEFINE_ENUMERATION_ITEMS(eDiscreteOrientation3d)

} // namespace orvel
