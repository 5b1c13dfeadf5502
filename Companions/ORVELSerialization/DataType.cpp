#include "ORVELSerialization/DataType.h"

namespace orvel
{

const char* eDataType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eDT_None",  "eDT_Bool",   "eDT_Int8",   "eDT_UInt8",
                                            "eDT_Int16", "eDT_UInt16", "eDT_Int32",  "eDT_UInt32",
                                            "eDT_Int64", "eDT_UInt64", "eDT_Real32", "eDT_Real64"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
