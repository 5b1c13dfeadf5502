#include "ORVELBaseData/Neighborhood/Neighborhood2dType.h"

namespace orvel
{

const char* eNeighborhood2dType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eN2T_4Connexity", "eN2T_8Connexity"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
