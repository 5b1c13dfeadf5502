#pragma once

/// \file
/// \brief Owning buffers of an element type that is known to the compiler.

#include <ORVELBaseData/Buffer/BaseOwnBuffer.h>
#include <ORVELBaseData/Buffer/ElementTypes.h>

namespace orvel
{

/// \brief Buffer that owns its block, of elements of type T.
///
/// There is one for each of the eleven types of eDataType; a bool takes one byte. The class name spells the
/// type by its alias: "orvel::TOwnBuffer<orvel::ipInt16>".
///
/// A copy and an archive bring their own element type, which nothing compares with T: the buffer then answers
/// with the type that came.
///
/// Archive version 1, without items of its own; its version comes after the data. \see BaseOwnBuffer
template <class T>
class ORVELBASEDATA_EXPORT TOwnBuffer : public BaseOwnBuffer
{
  static_assert(ElementType<T>::dataType != eDataType::eDT_None);
  ORVEL_DECLARE_SERIALIZABLE_TEMPLATE(TOwnBuffer)

public:
  TOwnBuffer(); ///< a buffer that is not initialised

  eBufferType getBufferType() const override; ///< eBT_Own

  /// \brief Initialise the buffer with elements of T. The contents are kept if the size in bytes stays the
  /// same. \see BaseOwnBuffer::initBase() for the failures and what they leave
  void init(ipUInt64 size);
};

#define ORVEL_DECLARE_OWN_BUFFER(Name) extern template class ORVELBASEDATA_EXPORT TOwnBuffer<ip##Name>;
ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_DECLARE_OWN_BUFFER)
#undef ORVEL_DECLARE_OWN_BUFFER

} // namespace orvel
