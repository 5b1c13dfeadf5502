#pragma once

/// \file
/// \brief What the buffers that own their block share.

#include <memory>

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>

namespace orvel
{

/// \brief Buffer that allocates, keeps and frees its one block.
///
/// The block is as large as the elements need and aligned as `operator new[]` aligns it; its bytes are not
/// set by the allocation. A buffer of size 0 has a block, too. A block that fits to the byte is kept, with
/// its contents, whenever the buffer is initialised anew: 4 elements of eDT_Int32 can become 2 of eDT_Real64
/// with the same bytes.
///
/// A copy is always deep, and takes size and type of the source, whatever the target held. A copy of a buffer
/// that is not initialised clears the target.
///
/// Archive version 1. The items are "bInit" and, of an initialised buffer, "size", "dataType" and one raw
/// block in the byte order of the machine, unless it is empty. The skeleton is all but the block, the data
/// are the block alone: to read them the buffer must have its size and type already, of which only the size
/// in bytes is compared. A buffer that is not initialised writes and reads no data.
///
/// Reading a buffer that was not initialised clears this one. An eDT_None in an archive raises the failure of
/// initBase() and changes nothing. A block that is missing, or of another size than its structure says, is
/// refused after size and type have changed. A skeleton allocates what it says, unchecked.
class ORVELBASEDATA_EXPORT BaseOwnBuffer : public BaseBlockBuffer
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE_WITH_MEMBERS(BaseOwnBuffer)

public:
  ~BaseOwnBuffer() override = 0;

  /// \brief Change the number of elements. The contents are kept only if the size stays the same.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised; it names
  /// getDataType()
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) with the std::bad_alloc as its cause; the buffer
  /// is not initialised then and owns nothing
  void resize(ipUInt64 size);

protected:
  BaseOwnBuffer() = default;

  /// \brief Initialise the buffer, with a new block unless the one it has fits to the byte.
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) with the std::bad_alloc as its cause; the buffer
  /// is not initialised then and owns nothing. A size in bytes beyond 64 bits is told as 18446744073709551615
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None. The buffer then owns a block
  /// of 0 bytes. If it was initialised it still answers with its old size and type, so clear it or initialise
  /// it with another size in bytes before its elements are touched
  void initBase(ipUInt64 size, const eDataType& dataType);

  void clearDerived() override; ///< \brief Free the block.

private:
  std::unique_ptr<char[]> _block;
};

} // namespace orvel
