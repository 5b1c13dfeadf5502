#include "ORVELBaseData/Buffer/BaseBlockBuffer.h"

#include <ORVELBaseData/Buffer/Private/Addresses.h>
#include <ORVELBaseData/Buffer/Private/BufferChecks.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_WITHOUT_COPY(BaseBlockBuffer)

BaseBlockBuffer::~BaseBlockBuffer() = default;

void* BaseBlockBuffer::getDataPtr()
{
  details::requireInitialized(*this, ORVEL_HERE);
  return _dataPtr;
}

const void* BaseBlockBuffer::getDataPtr() const
{
  details::requireInitialized(*this, ORVEL_HERE);
  return _dataPtr;
}

void* BaseBlockBuffer::getDataPtr(ipUInt64 index)
{
  const ipUInt64 offset = index * getBufferBaseSize();
  return details::addressBehind(_dataPtr, offset);
}

const void* BaseBlockBuffer::getDataPtr(ipUInt64 index) const
{
  const ipUInt64 offset = index * getBufferBaseSize();
  return details::addressBehind(_dataPtr, offset);
}

void BaseBlockBuffer::initBase(ipUInt64 size, const eDataType& dataType, void* dataPtr)
{
  _dataPtr = dataPtr;
  BaseBuffer::initBase(size, dataType);
}

} // namespace orvel
