#pragma once

/// \file
/// \brief Owning buffers of an element type known to the compiler.

#include <ORVELBaseData/Buffer/BaseOwnBuffer.h>
#include <ORVELBaseData/Buffer/ElementTypes.h>

namespace orvel
{

/// \brief Buffer that owns its block, with elements of type T.
///
/// T is one of the eleven types of eDataType; a bool takes one byte. The class name spells the type by its
/// alias: "orvel::TOwnBuffer<orvel::ipInt16>".
///
/// Beware: a copy and an archive bring their own element type, which is not compared with T. The buffer then
/// answers with that type.
///
/// Archive version 1, without items of its own; its version record follows the elements. \see BaseOwnBuffer
template <class T>
class ORVELBASEDATA_EXPORT TOwnBuffer : public BaseOwnBuffer
{
  static_assert(ElementType<T>::dataType != eDataType::eDT_None);
  ORVEL_DECLARE_SERIALIZABLE_TEMPLATE(TOwnBuffer)

public:
  TOwnBuffer(); ///< a buffer that is not initialised

  eBufferType getBufferType() const override; ///< eBT_Own

  /// \brief Initialise the buffer with elements of T. \see BaseOwnBuffer::initBase()
  void init(ipUInt64 size);
};

#define ORVEL_DECLARE_OWN_BUFFER(Name) extern template class ORVELBASEDATA_EXPORT TOwnBuffer<ip##Name>;
ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_DECLARE_OWN_BUFFER)
#undef ORVEL_DECLARE_OWN_BUFFER

} // namespace orvel
