#pragma once

/// \file
/// \brief What the buffers that may own their memory share when they are copied, written and read.

#include <optional>

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>
#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELUtil/Raise.h>

namespace orvel::details
{

// For all buffers: the parts that the serialization mode asks for. A mode that is not an enumerator asks for
// both.

/// \brief Return whether a buffer's mode asks for its blocks.
bool asksForBlocks(const BaseBuffer& buffer);

/// \brief Write whether a buffer is initialised, if its mode asks for the structure.
/// \return whether size and type have to follow
bool writeStart(const BaseBuffer& buffer, BaseOArchive& archive);

/// \brief Read what writeStart() has written, and clear the buffer if the one that was written was not
/// initialised.
/// \return whether size and type have to follow
bool readStart(BaseBuffer& buffer, BaseIArchive& archive);

// For the buffers in one block.

/// \brief Size and type of a buffer, as an archive holds them.
struct BlockStructure
{
  ipUInt64 size = 0;
  eDataType dataType = eDataType::eDT_None;
};

/// \brief Copy the bytes of a buffer into one of the same size.
void copyBlock(BaseBlockBuffer& target, const BaseBlockBuffer& source);

/// \brief Write a buffer as its mode asks: the structure, the block or both.
/// \throw ORVELBaseDataException (eMemoryAllocationFailed) in the name of `here` if the bytes of the block do
/// not fit 64 bits, as those of a view may not
void writeBlockItems(const BaseBlockBuffer& buffer, BaseOArchive& archive, const SourceLocation& here);

/// \brief Read the structure that writeBlockItems() has written, if the mode asks for it.
///
/// Where the block follows, the archive has been found to hold it: a number in a damaged file does not make
/// the caller allocate what it cannot fill. A size beyond 64 bits is left to the caller.
/// \return null if there is none
std::optional<BlockStructure> readBlockStructure(BaseBlockBuffer& buffer, BaseIArchive& archive);

/// \brief Read the block that writeBlockItems() has written, if the mode asks for it, into the memory of an
/// initialised buffer.
/// \throw ORVELBaseDataException as writeBlockItems()
void readBlock(BaseBlockBuffer& buffer, BaseIArchive& archive, const SourceLocation& here);

} // namespace orvel::details
