#pragma once

/// \file
/// \brief What the buffers that may own their block do alike when they are copied, written and read.

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>
#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/Private/OwnedBlock.h>
#include <ORVELSerialization/ItemOperators.h>

namespace orvel::details
{

/// \brief Copy the bytes of a buffer into one of the same size.
inline void copyBlock(BaseBlockBuffer& target, const BaseBlockBuffer& source)
{
  const ipUInt64 sizeInBytes = source.getMemorySize();
  if (sizeInBytes != 0 && target.getDataPtr() != source.getDataPtr())
    copyBuffer(target.getDataPtr(), sizeInBytes, source.getDataPtr());
}

/// \brief Return the bytes of an initialised buffer's elements.
/// \throw ORVELBaseDataException (eMemoryAllocationFailed) in the name of `here` if they do not fit 64 bits,
/// as a view may tell
inline ipUInt64 sizeOfBlock(const BaseBlockBuffer& buffer, const SourceLocation& here)
{
  const ipUInt64 sizeInBytes = multiplySizes(buffer.getBufferBaseSize(), buffer.getSize());
  requireSize(sizeInBytes, here);
  return sizeInBytes;
}

/// \brief File a buffer as its serialization mode asks: the structure, the block or both.
inline void writeBlockItems(const BaseBlockBuffer& buffer, BaseOArchive& archive, const SourceLocation& here)
{
  const eSklSrzMode& mode = buffer.getSerializationMode();
  const bool isInitialized = buffer.isInitialized();
  const ipUInt64 sizeInBytes =
      isInitialized && mode != eSklSrzMode::eSSM_Skeleton ? sizeOfBlock(buffer, here) : 0;
  if (mode != eSklSrzMode::eSSM_Data)
  {
    archive << SerializationOItem("bInit", isInitialized);
    if (isInitialized)
    {
      const ipUInt64 size = buffer.getSize();
      archive << SerializationOItem("size", size);
      archive << SerializationOItem("dataType", buffer.getDataType());
    }
  }
  if (sizeInBytes != 0)
    archive.writeBlock(buffer.getDataPtr(), sizeInBytes);
}

/// \brief Read what writeBlockItems has filed.
/// \param init called with the size and the type of an initialised buffer, after they were found to be
/// possible
template <class Init>
void readBlockItems(BaseBlockBuffer& buffer, BaseIArchive& archive, Init init)
{
  const eSklSrzMode mode = buffer.getSerializationMode();
  if (mode != eSklSrzMode::eSSM_Data)
  {
    bool isInitialized = false;
    archive >> SerializationIItem("bInit", isInitialized);
    if (isInitialized)
    {
      ipUInt64 size = 0;
      eDataType dataType = eDataType::eDT_None;
      archive >> SerializationIItem("size", size);
      archive >> SerializationIItem("dataType", dataType);
      // The block has to follow: a number in a damaged file does not make us allocate what it can't fill. A
      // size beyond 64 bits is left to init, which raises it as an allocation failure.
      const ipUInt64 baseSize = orvel::getBufferBaseSize(dataType);
      if (mode != eSklSrzMode::eSSM_Skeleton && multiplySizes(baseSize, size) != g_tooLarge)
        archive.checkBlock(size, baseSize);
      init(size, dataType);
    }
    else
      buffer.clear();
  }
  if (mode == eSklSrzMode::eSSM_Skeleton || !buffer.isInitialized())
    return;
  if (const ipUInt64 sizeInBytes = sizeOfBlock(buffer, ORVEL_HERE); sizeInBytes != 0)
    archive.readBlock(buffer.getDataPtr(), sizeInBytes);
}

} // namespace orvel::details
