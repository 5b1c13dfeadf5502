#include "ORVELSerialization/BaseObjectWithSkeleton.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(BaseObjectWithSkeleton)

BaseObjectWithSkeleton::BaseObjectWithSkeleton() = default;
BaseObjectWithSkeleton::~BaseObjectWithSkeleton() = default;

void BaseObjectWithSkeleton::copy(const BaseDynamicObject& other)
{
  BaseSerializationObject::copy(other);
}

BoolResult BaseObjectWithSkeleton::write(BaseOArchive& archive) const
{
  return BaseSerializationObject::write(archive);
}

BoolResult BaseObjectWithSkeleton::read(BaseIArchive& archive)
{
  return BaseSerializationObject::read(archive);
}

} // namespace orvel
