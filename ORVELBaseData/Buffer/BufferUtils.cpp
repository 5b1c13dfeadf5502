#include "ORVELBaseData/Buffer/BufferUtils.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include <ORVELBaseData/Buffer/Private/BlockPaths.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

namespace
{

static_assert(std::numeric_limits<ipReal32>::is_iec559 && std::numeric_limits<ipReal64>::is_iec559,
              "every double has a float that it is rounded to, infinity included");

/// Also what is above the enumerators is refused as eDT_None.
[[noreturn]] void raiseTypeOfNone(const SourceLocation& here)
{
  raise(here, eORVELBaseDataMessage::eInvalidBufferType, eDataType(eDataType::eDT_None).getText());
}

/// Truncates toward 0; NaN and what Int can't hold give the lowest number. The language leaves the latter
/// open and processors differ, so the range is looked at first.
template <class Int>
Int truncate(ipReal64 value)
{
  constexpr Int lowest = std::numeric_limits<Int>::min();
  constexpr auto lower = static_cast<ipReal64>(lowest); // a power of 2: exact, and so is its opposite
  const ipReal64 whole = std::trunc(value);
  return whole >= lower && whole < -lower ? static_cast<Int>(whole) : lowest;
}

template <class T>
T convert(ipReal64 value)
{
  if constexpr (std::is_same_v<T, ipBool>)
    return value != 0.0;
  else if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(value);
  else if constexpr (std::is_same_v<T, ipUInt64>)
  {
    constexpr ipReal64 half = 9223372036854775808.0;
    constexpr ipUInt64 topBit = ipUInt64{1} << 63U;
    return value >= half ? static_cast<ipUInt64>(truncate<ipInt64>(value - half)) ^ topBit
                         : static_cast<ipUInt64>(truncate<ipInt64>(value));
  }
  else if constexpr (std::is_same_v<T, ipUInt32>)
    return static_cast<T>(truncate<ipInt64>(value)); // the low bits
  else if constexpr (sizeof(T) == sizeof(ipInt64))
    return truncate<T>(value);
  else
    return static_cast<T>(truncate<ipInt32>(value)); // the low bits
}

bool areDisjoint(const void* left, const void* right, ipUInt64 sizeInBytes)
{
  const auto leftAddress = reinterpret_cast<std::uintptr_t>(left);
  const auto rightAddress = reinterpret_cast<std::uintptr_t>(right);
  return (leftAddress < rightAddress ? rightAddress - leftAddress : leftAddress - rightAddress) >=
         sizeInBytes;
}

template <class Element>
ipUInt64 repeatElement(const void* value)
{
  Element element;
  std::memcpy(&element, value, sizeof(element));
  return element * (~ipUInt64{0} / std::numeric_limits<Element>::max()); // as 0x0001000100010001
}

/// The element again and again, as it lies in memory.
ipUInt64 getPattern(const void* value, ipUInt64 elementSizeInBytes)
{
  switch (elementSizeInBytes)
  {
  case 1:
    return repeatElement<std::uint8_t>(value);
  case 2:
    return repeatElement<std::uint16_t>(value);
  case 4:
    return repeatElement<std::uint32_t>(value);
  default:
    return repeatElement<std::uint64_t>(value);
  }
}

} // namespace

ipUInt32 getBufferBaseSize(const eDataType& dataType)
{
  switch (dataType.getValue())
  {
#define ORVEL_RETURN_ELEMENT_SIZE(Name)                                                                      \
  case eDataType::eDT_##Name:                                                                                \
    return sizeof(ip##Name);
    ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_RETURN_ELEMENT_SIZE)
#undef ORVEL_RETURN_ELEMENT_SIZE
  default:
    return 0;
  }
}

void copyBuffer(void* dst, ipUInt64 sizeInBytes, const void* src)
{
  if (sizeInBytes != 0) // memcpy takes no null pointers even then
    std::memcpy(dst, src, sizeInBytes);
}

void copyBuffer(void* dst, const eDataType& dataType, ipUInt64 nbElements, const void* src)
{
  if (dataType == eDataType::eDT_None)
    raiseTypeOfNone(ORVEL_HERE_IN(
        "void orvel::copyBuffer(void*, const orvel::eDataType&, orvel::ipUInt64, const void*)"));
  copyBuffer(dst, getBufferBaseSize(dataType) * nbElements, src);
}

void copyBufferMiror(void* dst, const eDataType& dataType, ipUInt64 nbElements, const void* src)
{
  const ipUInt64 elementSize = getBufferBaseSize(dataType);
  if (elementSize == 0)
    raiseTypeOfNone(ORVEL_HERE_IN(
        "void orvel::copyBufferMiror(void*, const orvel::eDataType&, orvel::ipUInt64, const void*)"));
  details::mirrorElements(dst, elementSize, nbElements, src);
}

void setBufferValues(ipReal64 value, const eDataType& dataType, ipUInt64 nbElements, void* dst)
{
  switch (dataType.getValue())
  {
#define ORVEL_FILL_WITH_CONVERTED(Name)                                                                      \
  case eDataType::eDT_##Name:                                                                                \
  {                                                                                                          \
    const auto converted = convert<ip##Name>(value);                                                         \
    details::fillElements(&converted, sizeof(converted), nbElements, dst);                                   \
    return;                                                                                                  \
  }
    ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_FILL_WITH_CONVERTED)
#undef ORVEL_FILL_WITH_CONVERTED
  default:
    raiseTypeOfNone(ORVEL_HERE_IN(
        "void orvel::setBufferValues(orvel::ipReal64, const orvel::eDataType&, orvel::ipUInt64, void*)"));
  }
}

namespace details
{

void mirrorElements(void* dst, ipUInt64 elementSizeInBytes, ipUInt64 nbElements, const void* src)
{
  if (nbElements == 0)
    return;
  if (!areDisjoint(dst, src, nbElements * elementSizeInBytes))
  {
    mirrorInOrder(dst, elementSizeInBytes, nbElements, src);
    return;
  }
  const BlockPath& path = getFastestBlockPath();
  const ipUInt64 streamFrom = getUsableCacheSize() / 2; // source and destination share the cache
  switch (elementSizeInBytes)
  {
  case 1:
    return path.mirror1(dst, nbElements, src, streamFrom);
  case 2:
    return path.mirror2(dst, nbElements, src, streamFrom);
  case 4:
    return path.mirror4(dst, nbElements, src, streamFrom);
  default:
    return path.mirror8(dst, nbElements, src, streamFrom);
  }
}

void fillElements(const void* value, ipUInt64 elementSizeInBytes, ipUInt64 nbElements, void* dst)
{
  if (nbElements == 0)
    return;
  const ipUInt64 size = nbElements * elementSizeInBytes;
  const ipUInt64 streamFrom = getUsableCacheSize();
  const ipUInt64 pattern = getPattern(value, elementSizeInBytes);
  const auto byte = static_cast<std::uint8_t>(pattern);
  if (size < streamFrom && pattern == repeatElement<std::uint8_t>(&byte))
    std::memset(dst, byte, size); // knows its processor too, but does not write past the caches
  else
    getFastestBlockPath().fill(dst, size, pattern, streamFrom);
}

} // namespace details

} // namespace orvel
