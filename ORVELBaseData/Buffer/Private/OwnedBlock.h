#pragma once

/// \file
/// \brief The memory that buffers own.

#include <limits>
#include <memory>

#include <ORVELBaseData/Buffer/BaseBuffer.h>
#include <ORVELUtil/Raise.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

using OwnedBlock = std::unique_ptr<char[]>;

/// Any size in bytes that does not fit 64 bits. No block has it.
inline constexpr ipUInt64 g_tooLarge = std::numeric_limits<ipUInt64>::max();

/// \brief Return the product of a size and a count, g_tooLarge if it does not fit 64 bits.
inline ipUInt64 multiplySizes(ipUInt64 size, ipUInt64 count)
{
  return count != 0 && size > g_tooLarge / count ? g_tooLarge : size * count;
}

/// \brief Return whether a block of one size serves for another.
inline bool isSameSize(ipUInt64 size, ipUInt64 otherSize)
{
  return size == otherSize && size != g_tooLarge;
}

/// \brief Return whether an address lies in a block of that size.
inline bool liesInBlock(const void* address, const OwnedBlock& block, ipUInt64 sizeInBytes)
{
  return reinterpret_cast<ipUInt64>(address) - reinterpret_cast<ipUInt64>(block.get()) < sizeInBytes;
}

/// \brief Free the block of a buffer and allocate another; the bytes are not set.
/// \throw ORVELBaseDataException (eMemoryAllocationFailed) in the name of `here`, with the std::bad_alloc as
/// its cause, if there is no memory; the buffer has been cleared
void replaceBlock(BaseBuffer& buffer, OwnedBlock& block, ipUInt64 sizeInBytes, const SourceLocation& here);

/// \brief Raise the failure of a size that no memory has.
/// \throw ORVELBaseDataException (eMemoryAllocationFailed) in the name of `here` if the size is g_tooLarge
void requireSize(ipUInt64 sizeInBytes, const SourceLocation& here);

} // namespace orvel::details
