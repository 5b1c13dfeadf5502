#include "ORVELBaseData/Buffer/FragHybridBuffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/Private/BlockItems.h>
#include <ORVELBaseData/Buffer/Private/OwnedBlock.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE_COPIED_BY(FragHybridBuffer, BaseFragBuffer, BaseObjectWithSkeleton, 1)

namespace
{

/// The bytes of each block if there are any to be moved, else 0. Raises where they do not fit 64 bits, as
/// those of a view may not.
ipUInt64 sizeOfEachBlock(const FragHybridBuffer& buffer, const SourceLocation& here)
{
  if (!details::asksForBlocks(buffer) || !buffer.isInitialized() || buffer.getNbFragments() == 0)
    return 0;
  const ipUInt64 sizeInBytes = details::multiplySizes(buffer.getBufferBaseSize(), buffer.getFragmentsSize());
  details::requireSize(sizeInBytes, here);
  return sizeInBytes;
}

/// Counts the list of empty fragments: they have no blocks, but take a pointer each.
void countEmptyFragments(BaseArchive& archive, ipUInt64 nbFragments)
{
  archive.countUnfilledBytes(details::multiplySizes(nbFragments, sizeof(void*)));
}

} // namespace

FragHybridBuffer::FragHybridBuffer() = default;

eBufferType FragHybridBuffer::getBufferType() const
{
  return eBufferType::eBT_FragHybrid;
}

void FragHybridBuffer::init(const eDataType& dataType, ipUInt64 nbFragments, ipUInt64 fragmentsSize)
{
  const ipUInt64 fragmentSizeInBytes =
      details::multiplySizes(orvel::getBufferBaseSize(dataType), fragmentsSize);
  const ipUInt64 sizeInBytes = details::multiplySizes(fragmentSizeInBytes, nbFragments);
  if (!isInitialized() || !isBufferOwn() || !details::isSameSize(sizeInBytes, getMemorySize()))
    details::replaceBlock(*this, _block, sizeInBytes, ORVEL_HERE);

  const auto raiseNoList = [&, here = ORVEL_HERE](const std::exception& failure)
  {
    clear();
    raiseWithCause(here, failure, eORVELBaseDataMessage::eMemoryAllocationFailed,
                   details::multiplySizes(nbFragments, sizeof(void*)));
  };
  BufferPtrColl fragments;
  try
  {
    fragments.reserve(nbFragments);
  }
  catch (const std::bad_alloc& failure)
  {
    raiseNoList(failure);
  }
  catch (const std::length_error& failure) // more pointers than a vector can count
  {
    raiseNoList(failure);
  }
  for (ipUInt64 i = 0; i < nbFragments; ++i)
    fragments.push_back(_block.get() + i * fragmentSizeInBytes);
  initBase(dataType, fragments, fragmentsSize);
}

void FragHybridBuffer::init(const eDataType& dataType, const BufferPtrColl& fragments, ipUInt64 fragmentsSize)
{
  _block.reset();
  initBase(dataType, fragments, fragmentsSize);
}

bool FragHybridBuffer::isBufferOwn() const
{
  return _block != nullptr;
}

void FragHybridBuffer::setDataPtr(ipUInt64 fragment, void* dataPtr)
{
  if (isBufferOwn())
    raise(ORVEL_HERE, eORVELBaseDataMessage::eOwnFragmentDataPtr);
  BaseFragBuffer::setDataPtr(fragment, dataPtr);
}

void FragHybridBuffer::clearDerived()
{
  BaseFragBuffer::clearDerived();
  _block.reset();
}

void FragHybridBuffer::copyMembers(const FragHybridBuffer& other)
{
  if (!other.isInitialized())
  {
    clear();
    return;
  }
  if (!isBufferOwn())
  {
    init(other.getDataType(), other.getBufferPtrColl(), other.getFragmentsSize());
    return;
  }
  details::OwnedBlock oldBlock;
  if (isInitialized() && other.getMemorySize() != getMemorySize())
  {
    const auto isOwn = [this](const void* fragment)
    {
      return details::liesInBlock(fragment, _block, getMemorySize());
    };
    const BufferPtrColl& sources = other.getBufferPtrColl();
    if (std::any_of(sources.begin(), sources.end(), isOwn))
      oldBlock = std::move(_block); // the source looks at it: it stays until it has been copied
  }
  init(other.getDataType(), other.getNbFragments(), other.getFragmentsSize());
  const ipUInt64 sizeInBytes = getBufferBaseSize() * getFragmentsSize();
  if (sizeInBytes != 0)
    for (ipUInt64 i = 0; i < getNbFragments(); ++i)
      std::memmove(getDataPtr(i), other.getDataPtr(i), sizeInBytes); // a view on this block may overlap
}

void FragHybridBuffer::writeMembers(BaseOArchive& archive) const
{
  const ipUInt64 sizeInBytes = sizeOfEachBlock(*this, ORVEL_HERE);
  if (details::writeStart(*this, archive))
  {
    const ipUInt64 nbFragments = getNbFragments();
    const ipUInt64 fragmentsSize = getFragmentsSize();
    if (details::asksForBlocks(*this) && sizeInBytes == 0)
      countEmptyFragments(archive, nbFragments);
    archive << SerializationOItem("dataType", getDataType());
    archive << SerializationOItem("nbFragments", nbFragments);
    archive << SerializationOItem("fragmentsSize", fragmentsSize);
  }
  if (sizeInBytes != 0)
    for (const void* const fragment : getBufferPtrColl())
      archive.writeBlock(fragment, sizeInBytes);
}

void FragHybridBuffer::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  if (details::readStart(*this, archive))
    readStructure(archive);
  if (const ipUInt64 sizeInBytes = sizeOfEachBlock(*this, ORVEL_HERE); sizeInBytes != 0)
    for (void* const fragment : getBufferPtrColl())
      archive.readBlock(fragment, sizeInBytes);
}

void FragHybridBuffer::readStructure(BaseIArchive& archive)
{
  eDataType dataType = eDataType::eDT_None;
  ipUInt64 nbFragments = 0;
  ipUInt64 fragmentsSize = 0;
  archive >> SerializationIItem("dataType", dataType);
  archive >> SerializationIItem("nbFragments", nbFragments);
  archive >> SerializationIItem("fragmentsSize", fragmentsSize);
  if (dataType == eDataType::eDT_None)
    BaseBuffer::initBase(0, dataType); // raises, and the fragments stay
  if (details::asksForBlocks(*this))
  {
    // As for a buffer in one block: a number does not make us allocate what the archive cannot fill.
    const ipUInt64 sizeInBytes = details::multiplySizes(orvel::getBufferBaseSize(dataType), fragmentsSize);
    if (sizeInBytes == 0)
      countEmptyFragments(archive, nbFragments);
    else if (details::multiplySizes(sizeInBytes, nbFragments) != details::g_tooLarge)
      archive.checkBlock(nbFragments, sizeInBytes);
  }
  init(dataType, nbFragments, fragmentsSize);
}

} // namespace orvel
