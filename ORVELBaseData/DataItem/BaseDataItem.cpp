#include "ORVELBaseData/DataItem/BaseDataItem.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseDataItem, BaseSerializationObject, 1)

BaseDataItem::~BaseDataItem() = default;

} // namespace orvel
