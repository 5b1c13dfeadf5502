// Built with -O2, whatever the rest is built with.

#include "BufferPeers.h"

#include <algorithm>

namespace orvel::benchmarks
{

namespace
{

template <class T>
void reverseCopy(void* dst, std::size_t nbElements, const void* src)
{
  const T* const begin = static_cast<const T*>(src);
  std::reverse_copy(begin, begin + nbElements, static_cast<T*>(dst));
}

template <class T>
void fill(void* dst, std::size_t nbElements, std::uint64_t value)
{
  T* const begin = static_cast<T*>(dst);
  std::fill(begin, begin + nbElements, static_cast<T>(value));
}

} // namespace

void reverseCopy(void* dst, std::size_t elementSize, std::size_t nbElements, const void* src)
{
  switch (elementSize)
  {
  case 1:
    return reverseCopy<std::uint8_t>(dst, nbElements, src);
  case 2:
    return reverseCopy<std::uint16_t>(dst, nbElements, src);
  case 4:
    return reverseCopy<std::uint32_t>(dst, nbElements, src);
  default:
    return reverseCopy<std::uint64_t>(dst, nbElements, src);
  }
}

void fill(void* dst, std::size_t elementSize, std::size_t nbElements, std::uint64_t value)
{
  switch (elementSize)
  {
  case 1:
    return fill<std::uint8_t>(dst, nbElements, value);
  case 2:
    return fill<std::uint16_t>(dst, nbElements, value);
  case 4:
    return fill<std::uint32_t>(dst, nbElements, value);
  default:
    return fill<std::uint64_t>(dst, nbElements, value);
  }
}

} // namespace orvel::benchmarks
