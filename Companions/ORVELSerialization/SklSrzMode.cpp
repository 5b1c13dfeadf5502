#include "ORVELSerialization/SklSrzMode.h"

namespace orvel
{

const char* eSklSrzMode::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eSSM_Full", "eSSM_Skeleton", "eSSM_Data"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
