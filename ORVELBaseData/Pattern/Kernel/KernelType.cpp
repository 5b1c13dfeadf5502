#include "ORVELBaseData/Pattern/Kernel/KernelType.h"

namespace orvel
{

const char* eKernelType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eKT_XY", "eKT_XYZ"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
