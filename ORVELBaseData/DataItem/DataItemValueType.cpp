#include "ORVELBaseData/DataItem/DataItemValueType.h"

namespace orvel
{

const char* eDataItemValueType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eDIVT_Bool",   "eDIVT_Int8",   "eDIVT_UInt8",  "eDIVT_Int16",
                                            "eDIVT_UInt16", "eDIVT_Int32",  "eDIVT_UInt32", "eDIVT_Int64",
                                            "eDIVT_UInt64", "eDIVT_Real32", "eDIVT_Real64", "eDIVT_String",
                                            "eDIVT_Path",   "eDIVT_Enum"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
