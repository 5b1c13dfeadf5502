#include "ORVELBaseData/Pattern/StructuringElement/SEXYSubType.h"

namespace orvel
{

const char* eSEXYSubType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eSEXY_Generic",     "eSEXY_Circular",   "eSEXY_Square",
                                            "eSEXY_Rectangular", "eSEXY_HalfLinear", "eSEXY_Linear"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
