#pragma once

// The part of CBOR (RFC 8949) that the binary archives use.

#include <cstddef>
#include <string>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details::cbor
{

/// Upper three bits of an item's first byte.
enum class Major : unsigned char
{
  unsignedInteger = 0,
  negativeInteger = 1, ///< stands for -1 - argument
  bytes = 2,
  text = 3,
  array = 4,
  map = 5,
  tag = 6,
  simple = 7 ///< booleans, null, floats, and the end of what has no definite length
};

constexpr char openArray = '\x9f';  ///< array of indefinite length
constexpr char closeArray = '\xff'; ///< its end
constexpr char boolFalse = '\xf4';
constexpr char boolTrue = '\xf5';
constexpr char null = '\xf6';
constexpr unsigned char real32 = 0xfa;
constexpr unsigned char real64 = 0xfb;

constexpr ipUInt64 shareableTag = 28;
constexpr ipUInt64 referenceTag = 29;
constexpr ipUInt64 selfDescribedTag = 55799;

constexpr std::size_t largestHead = 9;

/// The first byte of an item and the number that follows it or lies in it.
struct Head
{
  unsigned char first = 0;
  ipUInt64 argument = 0; ///< value, length or tag; the bits of a float

  bool is(Major major) const { return first >> 5U == static_cast<unsigned char>(major); }
  bool isIndefinite() const { return (first & 31U) == 31; }
};

/// Tells whether an item is a boolean, null or a float.
inline bool isValue(const Head& head)
{
  const char first = static_cast<char>(head.first);
  return first == boolFalse || first == boolTrue || first == null || head.first == real32 ||
         head.first == real64;
}

/// Tells whether the item's first byte has no meaning.
inline bool isReserved(const Head& head)
{
  const unsigned info = head.first & 31U;
  const bool hasLength =
      head.is(Major::bytes) || head.is(Major::text) || head.is(Major::array) || head.is(Major::map);
  return info >= 28 && !(info == 31 && (hasLength || head.is(Major::simple)));
}

/// Stores the low bytes of a number, the most significant first. \return the end of what was stored
inline char* putBigEndian(char* to, ipUInt64 value, unsigned nbBytes)
{
  for (unsigned index = 0; index < nbBytes; ++index)
    to[index] = static_cast<char>(value >> (8 * (nbBytes - 1 - index)));
  return to + nbBytes;
}

/// Stores a head in its shortest form, at most largestHead bytes. \return the end of what was stored
inline char* putHead(char* to, Major major, ipUInt64 argument)
{
  const auto high = static_cast<unsigned>(major) << 5U;
  if (argument < 24)
  {
    *to = static_cast<char>(high | static_cast<unsigned>(argument));
    return to + 1;
  }
  const unsigned log2Bytes = argument <= 0xFF ? 0 : argument <= 0xFFFF ? 1 : argument <= 0xFFFFFFFF ? 2 : 3;
  *to = static_cast<char>(high | (24 + log2Bytes));
  switch (log2Bytes) // constant widths: each becomes one swap and one store
  {
  case 0:
    return putBigEndian(to + 1, argument, 1);
  case 1:
    return putBigEndian(to + 1, argument, 2);
  case 2:
    return putBigEndian(to + 1, argument, 4);
  default:
    return putBigEndian(to + 1, argument, 8);
  }
}

inline char* putReal32(char* to, ipUInt32 bits)
{
  *to = static_cast<char>(real32);
  return putBigEndian(to + 1, bits, 4);
}

inline char* putReal64(char* to, ipUInt64 bits)
{
  *to = static_cast<char>(real64);
  return putBigEndian(to + 1, bits, 8);
}

inline ipUInt64 readBigEndian(const char* from, unsigned nbBytes)
{
  ipUInt64 value = 0;
  for (unsigned index = 0; index < nbBytes; ++index)
    value = (value << 8U) | static_cast<unsigned char>(from[index]);
  return value;
}

/// Reads a head from [from, end), at least one byte. \return its end, null if it is not there whole
inline const char* readHead(const char* from, const char* end, Head& head)
{
  head.first = static_cast<unsigned char>(*from++);
  const unsigned info = head.first & 31U;
  if (info < 24)
  {
    head.argument = info;
    return from;
  }
  if (info > 27)
  {
    head.argument = 0;
    return from;
  }
  const unsigned nbBytes = 1U << (info - 24);
  if (end - from < static_cast<std::ptrdiff_t>(nbBytes))
    return nullptr;
  switch (nbBytes)
  {
  case 1:
    head.argument = readBigEndian(from, 1);
    break;
  case 2:
    head.argument = readBigEndian(from, 2);
    break;
  case 4:
    head.argument = readBigEndian(from, 4);
    break;
  default:
    head.argument = readBigEndian(from, 8);
    break;
  }
  return from + nbBytes;
}

/// The number of an integer item in decimal.
std::string integerText(const Head& head);

/// What an item is, for messages.
std::string describe(const Head& head);

} // namespace orvel::details::cbor
