#pragma once

/// \file
/// \brief Root of the buffers whose elements lie in one block.

#include <ORVELBaseData/Buffer/BaseBuffer.h>

namespace orvel
{

/// \brief Root of the buffers whose elements lie in one block of memory.
///
/// Neither owns nor frees the block: derived classes decide that.
class ORVELBASEDATA_EXPORT BaseBlockBuffer : public BaseBuffer
{
  ORVEL_DECLARE_WITHOUT_COPY(BaseBlockBuffer)

public:
  ~BaseBlockBuffer() override = 0;

  /// \brief Return the start of the elements.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  void* getDataPtr();
  const void* getDataPtr() const; ///< \copydoc getDataPtr()

  /// \brief Return the address of an element. The index is not compared with the size.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised; the failure
  /// names getBufferBaseSize()
  void* getDataPtr(ipUInt64 index);
  const void* getDataPtr(ipUInt64 index) const; ///< \copydoc getDataPtr(ipUInt64)

protected:
  BaseBlockBuffer() = default;

  /// \brief Initialise the buffer with a block, or give an initialised one another.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; the pointer has been stored,
  /// the rest is unchanged
  void initBase(ipUInt64 size, const eDataType& dataType, void* dataPtr);

private:
  void* _dataPtr = nullptr;
};

} // namespace orvel
