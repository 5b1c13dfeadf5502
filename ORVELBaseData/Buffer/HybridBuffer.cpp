#include "ORVELBaseData/Buffer/HybridBuffer.h"

#include <utility>

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/Private/BlockItems.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE_COPIED_BY(HybridBuffer, BaseBlockBuffer, BaseObjectWithSkeleton, 1)

HybridBuffer::HybridBuffer() = default;

eBufferType HybridBuffer::getBufferType() const
{
  return eBufferType::eBT_Hybrid;
}

void HybridBuffer::init(ipUInt64 size, const eDataType& dataType)
{
  const ipUInt64 sizeInBytes = details::multiplySizes(orvel::getBufferBaseSize(dataType), size);
  if (!isInitialized() || !isBufferOwn() || !details::isSameSize(sizeInBytes, getMemorySize()))
    details::replaceBlock(*this, _block, sizeInBytes, ORVEL_HERE);
  initBase(size, dataType, _block.get());
}

void HybridBuffer::init(ipUInt64 size, const eDataType& dataType, void* dataPtr)
{
  _block.reset();
  initBase(size, dataType, dataPtr);
}

bool HybridBuffer::isBufferOwn() const
{
  return getDataPtr() == _block.get();
}

void HybridBuffer::clearDerived()
{
  _block.reset();
}

void HybridBuffer::copyMembers(const HybridBuffer& other)
{
  if (!other.isInitialized())
  {
    clear();
    return;
  }
  if (isBufferOwn()) // raises where this buffer is not initialised: it could be made either
  {
    details::OwnedBlock oldBlock;
    if (const void* const source = other.getDataPtr();
        details::liesInBlock(source, _block, getMemorySize()) && other.getMemorySize() != getMemorySize())
      oldBlock = std::move(_block); // the source looks at it: it stays until it has been copied
    init(other.getSize(), other.getDataType());
    details::copyBlock(*this, other);
  }
  else
    init(other.getSize(), other.getDataType(), const_cast<void*>(other.getDataPtr()));
}

void HybridBuffer::writeMembers(BaseOArchive& archive) const
{
  details::writeBlockItems(*this, archive, ORVEL_HERE);
}

void HybridBuffer::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  details::readBlockItems(*this, archive,
                          [this](ipUInt64 size, const eDataType& dataType)
                          {
                            if (isInitialized() && getSize() == size && getDataType() == dataType)
                              return;
                            if (dataType == eDataType::eDT_None)
                              BaseBuffer::initBase(size, dataType); // raises, and the block stays
                            init(size, dataType);
                          });
}

} // namespace orvel
