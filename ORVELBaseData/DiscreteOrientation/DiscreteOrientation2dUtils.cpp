#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation2dUtils.h"

namespace orvel
{

ORVEL_DEFINE_ENUMERATION_ITEMS(eDiscreteOrientation2d)

} // namespace orvel
