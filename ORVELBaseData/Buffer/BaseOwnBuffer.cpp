#include "ORVELBaseData/Buffer/BaseOwnBuffer.h"

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/Private/BlockItems.h>
#include <ORVELBaseData/Buffer/Private/OwnedBlock.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

// The bases between refuse to copy.
ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseOwnBuffer, BaseObjectWithSkeleton, 1)

BaseOwnBuffer::~BaseOwnBuffer() = default;

void BaseOwnBuffer::initBase(ipUInt64 size, const eDataType& dataType)
{
  const ipUInt64 sizeInBytes = details::multiplySizes(orvel::getBufferBaseSize(dataType), size);
  if (!isInitialized() || !details::isSameSize(sizeInBytes, getMemorySize()))
    details::replaceBlock(*this, _block, sizeInBytes, ORVEL_HERE);
  BaseBlockBuffer::initBase(size, dataType, _block.get());
}

void BaseOwnBuffer::resize(ipUInt64 size)
{
  const eDataType dataType = getDataType();
  initBase(size, dataType);
}

void BaseOwnBuffer::clearDerived()
{
  _block.reset();
}

void BaseOwnBuffer::copyMembers(const BaseOwnBuffer& other)
{
  if (!other.isInitialized())
  {
    clear();
    return;
  }
  initBase(other.getSize(), other.getDataType());
  details::copyBlock(*this, other);
}

void BaseOwnBuffer::writeMembers(BaseOArchive& archive) const
{
  details::writeBlockItems(*this, archive, ORVEL_HERE);
}

void BaseOwnBuffer::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  if (const auto structure = details::readBlockStructure(*this, archive))
  {
    if (structure->dataType == eDataType::eDT_None)
      BaseBuffer::initBase(structure->size, structure->dataType); // raises, and the block stays
    initBase(structure->size, structure->dataType);
  }
  details::readBlock(*this, archive, ORVEL_HERE);
}

} // namespace orvel
