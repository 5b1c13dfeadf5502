#include "ORVELBaseData/Buffer/TOwnBuffer.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE_TEMPLATE(TOwnBuffer,
                                   std::string("orvel::TOwnBuffer<orvel::") + ElementType<T>::name + ">",
                                   BaseOwnBuffer, 1)

template <class T>
TOwnBuffer<T>::TOwnBuffer() = default;

template <class T>
eBufferType TOwnBuffer<T>::getBufferType() const
{
  return eBufferType::eBT_Own;
}

template <class T>
void TOwnBuffer<T>::init(ipUInt64 size)
{
  initBase(size, ElementType<T>::dataType);
}

// The elements are the base's; there are no other members.

template <class T>
void TOwnBuffer<T>::copyMembers(const TOwnBuffer& /*other*/)
{
}

template <class T>
void TOwnBuffer<T>::writeMembers(BaseOArchive& /*archive*/) const
{
}

template <class T>
void TOwnBuffer<T>::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

#define ORVEL_MAKE_OWN_BUFFER(Name) template class TOwnBuffer<ip##Name>;
ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_MAKE_OWN_BUFFER)
#undef ORVEL_MAKE_OWN_BUFFER

} // namespace orvel

ORVEL_DEFINE_TEMPLATE_REGISTRATOR(TOwnBuffer)

namespace
{

#define ORVEL_REGISTER_OWN_BUFFER(Name)                                                                      \
  const TOwnBufferDynamicRegistrator<orvel::ip##Name> g_##Name##Registrator(                                 \
      "orvel::TOwnBuffer<orvel::ip" #Name ">");
ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_REGISTER_OWN_BUFFER)
#undef ORVEL_REGISTER_OWN_BUFFER

} // namespace
