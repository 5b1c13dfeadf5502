#include "ORVELBaseData/Buffer/BaseBuffer.h"

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/Private/BufferChecks.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_WITHOUT_COPY(BaseBuffer)

BaseBuffer::~BaseBuffer() = default;

void BaseBuffer::clearDerived()
{
}

ipUInt64 BaseBuffer::getSize() const
{
  details::requireInitialized(*this, ORVEL_HERE);
  return _size;
}

ipUInt32 BaseBuffer::getBufferBaseSize() const
{
  details::requireInitialized(*this, ORVEL_HERE);
  return _baseSize;
}

const eDataType& BaseBuffer::getDataType() const
{
  details::requireInitialized(*this, ORVEL_HERE);
  return _dataType;
}

ipUInt64 BaseBuffer::getMemorySize() const
{
  return getSize() * _baseSize;
}

void BaseBuffer::clear()
{
  _isInitialized = false;
  clearDerived();
}

void BaseBuffer::initBase(ipUInt64 size, const eDataType& dataType)
{
  if (dataType == eDataType::eDT_None)
    raise(ORVEL_HERE, eORVELBaseDataMessage::eInvalidBufferType, dataType.getText());
  _size = size;
  _dataType = dataType;
  _baseSize = orvel::getBufferBaseSize(dataType);
  _isInitialized = true;
}

} // namespace orvel
