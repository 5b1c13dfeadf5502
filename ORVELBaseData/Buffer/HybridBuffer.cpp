#include "ORVELBaseData/Buffer/HybridBuffer.h"

#include <utility>

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/Private/BlockItems.h>
#include <ORVELBaseData/Buffer/Private/OwnedBlock.h>
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
  const auto structure = details::readBlockStructure(*this, archive);
  if (structure && !(isInitialized() && getSize() == structure->size && getDataType() == structure->dataType))
  {
    if (structure->dataType == eDataType::eDT_None)
      BaseBuffer::initBase(structure->size, structure->dataType); // raises, and the block stays
    init(structure->size, structure->dataType);
  }
  details::readBlock(*this, archive, ORVEL_HERE);
}

} // namespace orvel
