#include "ORVELBaseData/Neighborhood/Neighborhood3dType.h"

namespace orvel
{

const char* eNeighborhood3dType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eN3T_6Connexity", "eN3T_18Connexity", "eN3T_26Connexity"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
