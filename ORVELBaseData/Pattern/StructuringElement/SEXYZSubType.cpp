#include "ORVELBaseData/Pattern/StructuringElement/SEXYZSubType.h"

namespace orvel
{

const char* eSEXYZSubType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eSEXYZ_Generic",     "eSEXYZ_Spherical",  "eSEXYZ_Cubic",
                                            "eSEXYZ_Rectangular", "eSEXYZ_HalfLinear", "eSEXYZ_Linear"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
