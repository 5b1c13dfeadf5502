#include "ORVELBaseData/DataItem/DataItemType.h"

namespace orvel
{

const char* eDataItemType::findText(ipUInt32 value)
{
  static constexpr const char* g_texts[] = {"eDIT_Leaf", "eDIT_Node", "eDIT_LeafColl", "eDIT_NodeColl",
                                            "eDIT_Map"};
  return findEnumerationText(g_texts, value);
}

} // namespace orvel
