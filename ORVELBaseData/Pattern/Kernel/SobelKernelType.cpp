#include "ORVELBaseData/Pattern/Kernel/SobelKernelType.h"

namespace orvel
{

const char* eSobelKernelType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eSKT_Scharr3", "eSKT_Sobel3", "eSKT_Sobel5", "eSKT_Sobel7"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
