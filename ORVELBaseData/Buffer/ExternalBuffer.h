#pragma once

/// \file
/// \brief View on an external block.

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>
#include <ORVELBaseData/Buffer/ElementTypes.h>

namespace orvel
{

/// \brief Typed view on an external block, which its owner must keep alive.
///
/// A copy is a second view on the same memory. \see docs/memory.md for how the buffers differ
///
/// Beware: archives store nothing of it, neither elements nor size. `write` writes nothing and `read` leaves
/// the buffer as it was, so there is no archive version. A HybridBuffer stores the elements that it views.
class ORVELBASEDATA_EXPORT ExternalBuffer : public BaseBlockBuffer
{
  ORVEL_DECLARE_NAME(ExternalBuffer)
  ORVEL_DECLARE_CREATION(ExternalBuffer)
  ORVEL_DECLARE_REGISTRATOR(ExternalBuffer)

public:
  ExternalBuffer(); ///< a buffer that is not initialised

  /// \brief Become a second view on the memory of another buffer.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the other buffer is not initialised; this one
  /// is unchanged
  void copy(const BaseDynamicObject& other) override;

  eBufferType getBufferType() const override; ///< eBT_External

  /// \brief Become a view on a block of elements of a type that is given at run time.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; an initialised buffer then
  /// has the new address with its old size and type
  void init(ipUInt64 size, const eDataType& dataType, void* dataPtr);

  /// \brief Become a view on a block of elements of one of the types of eDataType.
  template <class T>
  void init(ipUInt64 size, T* dataPtr)
  {
    init(size, ElementType<T>::dataType, dataPtr);
  }
};

using ExternalBufferPtr = boost::shared_ptr<ExternalBuffer>;            ///< shared buffer
using ExternalBufferConstPtr = boost::shared_ptr<const ExternalBuffer>; ///< shared constant buffer

} // namespace orvel
