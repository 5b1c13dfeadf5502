#pragma once

/// \file
/// \brief Owning buffer of an element type known at run time.

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Buffer/BaseOwnBuffer.h>

namespace orvel
{

/// \brief Buffer that owns its block, with an element type given at run time.
///
/// Archive version 1, without items of its own; its version record follows the elements. \see BaseOwnBuffer
class ORVELBASEDATA_EXPORT TypedOwnBuffer : public BaseOwnBuffer
{
  ORVEL_DECLARE_SERIALIZABLE(TypedOwnBuffer)

public:
  TypedOwnBuffer(); ///< a buffer that is not initialised

  eBufferType getBufferType() const override; ///< eBT_Own

  /// \brief Initialise the buffer. \see BaseOwnBuffer::initBase()
  void init(ipUInt64 size, const eDataType& dataType);
};

using TypedOwnBufferPtr = boost::shared_ptr<TypedOwnBuffer>;            ///< shared buffer
using TypedOwnBufferConstPtr = boost::shared_ptr<const TypedOwnBuffer>; ///< shared constant buffer

} // namespace orvel
