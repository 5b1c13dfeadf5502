#include "ORVELBaseData/DiscreteOrientation/DiscreteOrientation3d.h"

namespace orvel
{

const char* eDiscreteOrientation3d::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {
      "eDO3D_ZMYMXM", "eDO3D_ZMYMX0", "eDO3D_ZMYMXP", "eDO3D_ZMY0XM", "eDO3D_ZMY0X0", "eDO3D_ZMY0XP",
      "eDO3D_ZMYPXM", "eDO3D_ZMYPX0", "eDO3D_ZMYPXP", "eDO3D_Z0YMXM", "eDO3D_Z0YMX0", "eDO3D_Z0YMXP",
      "eDO3D_Z0Y0XM", "eDO3D_Z0Y0XP", "eDO3D_Z0YPXM", "eDO3D_Z0YPX0", "eDO3D_Z0YPXP", "eDO3D_ZPYMXM",
      "eDO3D_ZPYMX0", "eDO3D_ZPYMXP", "eDO3D_ZPY0XM", "eDO3D_ZPY0X0", "eDO3D_ZPY0XP", "eDO3D_ZPYPXM",
      "eDO3D_ZPYPX0", "eDO3D_ZPYPXP"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
