#include "ORVELBaseData/Buffer/BaseFragBuffer.h"

#include <algorithm>
#include <new>

#include <ORVELBaseData/Buffer/Private/Addresses.h>
#include <ORVELBaseData/Buffer/Private/BufferChecks.h>
#include <ORVELBaseData/Buffer/Private/OwnedBlock.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_WITHOUT_COPY(BaseFragBuffer)

namespace
{

void requireFragment(const BaseFragBuffer& buffer, ipUInt64 fragment, const SourceLocation& here)
{
  if (const ipUInt64 nbFragments = buffer.getNbFragments(); fragment >= nbFragments)
    raise(here, eORVELBaseDataMessage::eInvalidFragmentIndex, fragment, nbFragments);
}

} // namespace

BaseFragBuffer::~BaseFragBuffer() = default;

ipUInt64 BaseFragBuffer::getNbFragments() const
{
  details::requireInitialized(*this, ORVEL_HERE);
  return _fragments.size();
}

ipUInt64 BaseFragBuffer::getFragmentsSize() const
{
  details::requireInitialized(*this, ORVEL_HERE);
  return _fragmentsSize;
}

const BufferPtrColl& BaseFragBuffer::getBufferPtrColl() const
{
  details::requireInitialized(*this, ORVEL_HERE);
  return _fragments;
}

void* BaseFragBuffer::getDataPtr(ipUInt64 fragment)
{
  requireFragment(*this, fragment, ORVEL_HERE);
  return _fragments[fragment];
}

const void* BaseFragBuffer::getDataPtr(ipUInt64 fragment) const
{
  requireFragment(*this, fragment, ORVEL_HERE);
  return _fragments[fragment];
}

void* BaseFragBuffer::getDataPtr(ipUInt64 fragment, ipUInt64 offset)
{
  void* const start = getDataPtr(fragment);
  return details::addressBehind(start, offset * getBufferBaseSize());
}

const void* BaseFragBuffer::getDataPtr(ipUInt64 fragment, ipUInt64 offset) const
{
  const void* const start = getDataPtr(fragment);
  return details::addressBehind(start, offset * getBufferBaseSize());
}

void BaseFragBuffer::setDataPtr(ipUInt64 fragment, void* dataPtr)
{
  requireFragment(*this, fragment, ORVEL_HERE);
  _fragments[fragment] = dataPtr;
}

void BaseFragBuffer::rollUpFragments()
{
  if (getNbFragments() > 1)
    std::rotate(_fragments.begin(), _fragments.begin() + 1, _fragments.end());
}

void BaseFragBuffer::rollDownFragments()
{
  if (getNbFragments() > 1)
    std::rotate(_fragments.begin(), _fragments.end() - 1, _fragments.end());
}

void BaseFragBuffer::initBase(const eDataType& dataType, const BufferPtrColl& fragments,
                              ipUInt64 fragmentsSize)
{
  try
  {
    if (&fragments != &_fragments)
      _fragments = fragments;
  }
  catch (const std::bad_alloc& failure)
  {
    const ipUInt64 sizeInBytes = fragments.size() * sizeof(void*);
    clear(); // a derived class has let the old fragments go
    raiseWithCause(ORVEL_HERE, failure, eORVELBaseDataMessage::eMemoryAllocationFailed, sizeInBytes);
  }
  _fragmentsSize = fragmentsSize;
  BaseBuffer::initBase(fragmentsSize * _fragments.size(), dataType);
}

void BaseFragBuffer::clearDerived()
{
  _fragments.clear();
}

} // namespace orvel
