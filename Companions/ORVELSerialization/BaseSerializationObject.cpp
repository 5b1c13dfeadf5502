#include "ORVELSerialization/BaseSerializationObject.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(BaseSerializationObject)

BoolResult BaseSerializationObject::write(BaseOArchive& /*archive*/) const
{
  return BoolResult(true);
}

} // namespace orvel
