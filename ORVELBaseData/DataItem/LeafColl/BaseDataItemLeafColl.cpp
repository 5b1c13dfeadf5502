#include "ORVELBaseData/DataItem/LeafColl/BaseDataItemLeafColl.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseDataItemLeafColl, BaseDataItem, 1)

BaseDataItemLeafColl::~BaseDataItemLeafColl() = default;

eDataItemType BaseDataItemLeafColl::getDataItemType() const
{
  return eDataItemType::eDIT_LeafColl;
}

} // namespace orvel
