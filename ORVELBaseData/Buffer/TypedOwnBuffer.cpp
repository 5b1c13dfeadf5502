#include "ORVELBaseData/Buffer/TypedOwnBuffer.h"

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(TypedOwnBuffer)
ORVEL_DEFINE_VERSION(TypedOwnBuffer, 1)
ORVEL_DEFINE_LEVEL(TypedOwnBuffer, BaseOwnBuffer, , , )
ORVEL_DEFINE_CREATION(TypedOwnBuffer, BaseOwnBuffer)

TypedOwnBuffer::TypedOwnBuffer() = default;

eBufferType TypedOwnBuffer::getBufferType() const
{
  return eBufferType::eBT_Own;
}

void TypedOwnBuffer::init(ipUInt64 size, const eDataType& dataType)
{
  initBase(size, dataType);
}

} // namespace orvel
