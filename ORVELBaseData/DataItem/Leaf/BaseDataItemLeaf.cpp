#include "ORVELBaseData/DataItem/Leaf/BaseDataItemLeaf.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseDataItemLeaf, BaseDataItem, 1)

BaseDataItemLeaf::~BaseDataItemLeaf() = default;

eDataItemType BaseDataItemLeaf::getDataItemType() const
{
  return eDataItemType::eDIT_Leaf;
}

} // namespace orvel
