#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation2d.h"

namespace orvel
{

const char* eDiscreteOrientation2d::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eDO2D_YMXM", "eDO2D_YMX0", "eDO2D_YMXP", "eDO2D_Y0XM",
                                            "eDO2D_Y0XP", "eDO2D_YPXM", "eDO2D_YPX0", "eDO2D_YPXP"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
