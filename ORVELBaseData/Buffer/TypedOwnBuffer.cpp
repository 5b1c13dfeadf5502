#include "ORVELBaseData/Buffer/TypedOwnBuffer.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(TypedOwnBuffer, BaseOwnBuffer, 1)

TypedOwnBuffer::TypedOwnBuffer() = default;

eBufferType TypedOwnBuffer::getBufferType() const
{
  return eBufferType::eBT_Own;
}

void TypedOwnBuffer::init(ipUInt64 size, const eDataType& dataType)
{
  initBase(size, dataType);
}

// The elements are the base's; there are no other members.
void TypedOwnBuffer::copyMembers(const TypedOwnBuffer& /*other*/)
{
}

void TypedOwnBuffer::writeMembers(BaseOArchive& /*archive*/) const
{
}

void TypedOwnBuffer::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

} // namespace orvel
