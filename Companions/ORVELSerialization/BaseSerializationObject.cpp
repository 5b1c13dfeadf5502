#include <ORVELSerialization/BaseSerializationObject.h>

#include <ORVELSerialization/SerializableClass.h>

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(BaseSerializationObject)

void BaseSerializationObject::copy(const BaseDynamicObject& /*other*/)
{
}

BoolResult BaseSerializationObject::write(BaseOArchive& /*archive*/) const
{
  return BoolResult(true);
}

BoolResult BaseSerializationObject::read(BaseIArchive& /*archive*/)
{
  return BoolResult(true);
}

} // namespace orvel
