#pragma once

/// \file
/// \brief Root of the buffers that own their block.

#include <memory>

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>

namespace orvel
{

/// \brief Buffer that allocates, keeps and frees its one block.
///
/// The block is exactly as large as the elements need and aligned as `operator new[]` aligns it. Its bytes
/// are not set. A buffer without elements has a block, too. A block of the right size in bytes is kept
/// with its contents when the buffer is initialised again: 4 elements of eDT_Int32 can become 2 of eDT_Real64
/// with the same bytes.
///
/// A copy is deep and takes size and type from the source; a source that is not initialised clears the
/// target. \see docs/memory.md for how the buffers differ
///
/// Archive version 1. The items are "bInit" and, if the buffer is initialised, "size", "dataType" and one raw
/// block in the byte order of the machine, unless it is empty. The skeleton is everything but the block, the
/// data are the block alone. Data are read into a buffer that has its structure already, of which only the
/// size in bytes is compared; a buffer that is not initialised writes and reads none.
///
/// Reading a buffer that was not initialised clears this one. Where structure and data are read, a size that
/// the rest of the archive cannot hold raises ORVELSerializationException before anything is allocated. A
/// skeleton has no block to compare with: reading one allocates what it names. An eDT_None raises as in
/// initBase(), but changes nothing. A block that is missing or of another size than the structure says is
/// refused after size and type have changed.
class ORVELBASEDATA_EXPORT BaseOwnBuffer : public BaseBlockBuffer
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE_WITH_MEMBERS(BaseOwnBuffer)

public:
  ~BaseOwnBuffer() override = 0;

  /// \brief Change the number of elements. The contents are kept only if the size stays the same.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised; the failure
  /// names getDataType()
  /// \throw ORVELBaseDataException as initBase(), which it calls with the present type
  void resize(ipUInt64 size);

protected:
  BaseOwnBuffer() = default;

  /// \brief Initialise the buffer, with a new block unless its present one has the same size in bytes.
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) if there is no memory, with the std::bad_alloc
  /// as its cause. The buffer is then not initialised and owns nothing. A size in bytes beyond 64 bits is
  /// reported as 18446744073709551615
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None. The buffer then owns a block
  /// of 0 bytes. An initialised buffer still answers with its old size and type: clear() it, or
  /// initialise it with another size in bytes, before its elements are touched
  void initBase(ipUInt64 size, const eDataType& dataType);

  void clearDerived() override; ///< \brief Free the block.

private:
  std::unique_ptr<char[]> _block;
};

} // namespace orvel
