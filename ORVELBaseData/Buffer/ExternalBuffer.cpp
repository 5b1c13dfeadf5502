#include "ORVELBaseData/Buffer/ExternalBuffer.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_NAME(ExternalBuffer)
ORVEL_DEFINE_CREATION(ExternalBuffer, BaseBlockBuffer)

ExternalBuffer::ExternalBuffer() = default;

void ExternalBuffer::copy(const BaseDynamicObject& other)
{
  BaseSerializationObject::copy(other);
  const auto& source = static_cast<const ExternalBuffer&>(other);
  const ipUInt64 size = source.getSize();
  // The address is the caller's own and was given as one of memory that may change.
  initBase(size, source.getDataType(), const_cast<void*>(source.getDataPtr()));
}

eBufferType ExternalBuffer::getBufferType() const
{
  return eBufferType::eBT_External;
}

void ExternalBuffer::init(ipUInt64 size, const eDataType& dataType, void* dataPtr)
{
  initBase(size, dataType, dataPtr);
}

} // namespace orvel
