#include "ORVELBaseData/Buffer/BufferType.h"

namespace orvel
{

const char* eBufferType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {nullptr, "eBT_Own", "eBT_Hybrid", "eBT_External",
                                            "eBT_FragHybrid"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
