#include "ORVELBaseData/Buffer/Private/BlockItems.h"

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/Private/OwnedBlock.h>
#include <ORVELSerialization/ItemOperators.h>

namespace orvel::details
{

namespace
{

bool asksForStructure(const BaseBuffer& buffer)
{
  return buffer.getSerializationMode() != eSklSrzMode::eSSM_Data;
}

/// The bytes of the block if there is one to be moved, else 0.
ipUInt64 sizeOfBlock(const BaseBlockBuffer& buffer, const SourceLocation& here)
{
  if (!asksForBlocks(buffer) || !buffer.isInitialized())
    return 0;
  const ipUInt64 sizeInBytes = multiplySizes(buffer.getBufferBaseSize(), buffer.getSize());
  requireSize(sizeInBytes, here);
  return sizeInBytes;
}

} // namespace

bool asksForBlocks(const BaseBuffer& buffer)
{
  return buffer.getSerializationMode() != eSklSrzMode::eSSM_Skeleton;
}

bool writeStart(const BaseBuffer& buffer, BaseOArchive& archive)
{
  if (!asksForStructure(buffer))
    return false;
  const bool isInitialized = buffer.isInitialized();
  archive << SerializationOItem("bInit", isInitialized);
  return isInitialized;
}

bool readStart(BaseBuffer& buffer, BaseIArchive& archive)
{
  if (!asksForStructure(buffer))
    return false;
  bool isInitialized = false;
  archive >> SerializationIItem("bInit", isInitialized);
  if (!isInitialized)
    buffer.clear();
  return isInitialized;
}

void copyBlock(BaseBlockBuffer& target, const BaseBlockBuffer& source)
{
  const ipUInt64 sizeInBytes = source.getMemorySize();
  if (sizeInBytes != 0 && target.getDataPtr() != source.getDataPtr())
    copyBuffer(target.getDataPtr(), sizeInBytes, source.getDataPtr());
}

void writeBlockItems(const BaseBlockBuffer& buffer, BaseOArchive& archive, const SourceLocation& here)
{
  const ipUInt64 sizeInBytes = sizeOfBlock(buffer, here);
  if (writeStart(buffer, archive))
  {
    const ipUInt64 size = buffer.getSize();
    archive << SerializationOItem("size", size);
    archive << SerializationOItem("dataType", buffer.getDataType());
  }
  if (sizeInBytes != 0)
    archive.writeBlock(buffer.getDataPtr(), sizeInBytes);
}

std::optional<BlockStructure> readBlockStructure(BaseBlockBuffer& buffer, BaseIArchive& archive)
{
  if (!readStart(buffer, archive))
    return std::nullopt;
  BlockStructure structure;
  archive >> SerializationIItem("size", structure.size);
  archive >> SerializationIItem("dataType", structure.dataType);
  const ipUInt64 baseSize = getBufferBaseSize(structure.dataType);
  if (asksForBlocks(buffer) && multiplySizes(baseSize, structure.size) != g_tooLarge)
    archive.checkBlock(structure.size, baseSize);
  return structure;
}

void readBlock(BaseBlockBuffer& buffer, BaseIArchive& archive, const SourceLocation& here)
{
  if (const ipUInt64 sizeInBytes = sizeOfBlock(buffer, here); sizeInBytes != 0)
    archive.readBlock(buffer.getDataPtr(), sizeInBytes);
}

} // namespace orvel::details
