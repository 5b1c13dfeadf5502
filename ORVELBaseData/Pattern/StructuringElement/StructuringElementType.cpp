#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementType.h"

namespace orvel
{

const char* eStructuringElementType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eSET_XY", "eSET_XYZ"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
