#pragma once

/// \file
/// \brief View on somebody else's block.

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>
#include <ORVELBaseData/Buffer/ElementTypes.h>

namespace orvel
{

/// \brief Typed view on a block of somebody else's, who keeps it alive.
///
/// A copy is a second view on the same memory. An archive holds nothing of the view: `write` files and `read`
/// reads nothing, and the buffer stays as it was. So there is no archive version.
class ORVELBASEDATA_EXPORT ExternalBuffer : public BaseBlockBuffer
{
  ORVEL_DECLARE_NAME(ExternalBuffer)
  ORVEL_DECLARE_CREATION(ExternalBuffer)
  ORVEL_DECLARE_REGISTRATOR(ExternalBuffer)

public:
  ExternalBuffer(); ///< a buffer that is not initialised

  /// \brief Look at the memory of another buffer, as that one does.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the other buffer is not initialised; this one
  /// is unchanged
  void copy(const BaseDynamicObject& other) override;

  eBufferType getBufferType() const override; ///< eBT_External

  /// \brief Look at a block of elements of a type that is given at run time.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; an initialised buffer then
  /// has the new address with its old size and type
  void init(ipUInt64 size, const eDataType& dataType, void* dataPtr);

  /// \brief Look at a block of elements of one of the types of eDataType.
  template <class T>
  void init(ipUInt64 size, T* dataPtr)
  {
    init(size, ElementType<T>::dataType, dataPtr);
  }
};

using ExternalBufferPtr = boost::shared_ptr<ExternalBuffer>;            ///< shared buffer
using ExternalBufferConstPtr = boost::shared_ptr<const ExternalBuffer>; ///< shared constant buffer

} // namespace orvel
