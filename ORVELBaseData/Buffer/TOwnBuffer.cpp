#include "ORVELBaseData/Buffer/TOwnBuffer.h"

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME_MUTEX
ORVEL_DEFINE_VERSION_MUTEX
ORVEL_DEFINE_TYPE_NAME_OF(template <class T>, TOwnBuffer<T>,
                          std::string("orvel::TOwnBuffer<orvel::") + ElementType<T>::name + ">")
ORVEL_DEFINE_VERSION_OF(template <class T>, TOwnBuffer<T>, 1)
ORVEL_DEFINE_LEVEL_OF(template <class T>, TOwnBuffer<T>, BaseOwnBuffer, , , )
ORVEL_DEFINE_CREATION_OF(template <class T>, TOwnBuffer<T>, TOwnBuffer, BaseOwnBuffer)

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
