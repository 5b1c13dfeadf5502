#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>

#include <ORVELSerialization/NamedEnumerationItems.h>

namespace orvel
{

ORVEL_DEFINE_ENUMERATION_ITEMS(eSEXYSubType)
ORVEL_DEFINE_ENUMERATION_ITEMS(eSEXYZSubType)

} // namespace orvel
