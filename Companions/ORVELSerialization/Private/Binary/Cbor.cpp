#include "ORVELSerialization/Private/Binary/Cbor.h"

#include <limits>

namespace orvel::details::cbor
{

std::string integerText(const Head& head)
{
  if (head.is(Major::unsignedInteger))
    return std::to_string(head.argument);
  if (head.argument == std::numeric_limits<ipUInt64>::max()) // the one whose magnitude has 65 bits
    return "-18446744073709551616";
  return "-" + std::to_string(head.argument + 1);
}

std::string describe(const Head& head)
{
  const std::string length =
      head.isIndefinite() ? "unknown length" : std::to_string(head.argument) + " bytes";
  switch (static_cast<Major>(head.first >> 5U))
  {
  case Major::unsignedInteger:
  case Major::negativeInteger:
    return "the integer " + integerText(head);
  case Major::bytes:
    return "a block of " + length;
  case Major::text:
    return "a text of " + length;
  case Major::array:
    return head.isIndefinite() ? "the start of a section or an object"
                               : "an array of " + std::to_string(head.argument) + " items";
  case Major::map:
    return "a map";
  case Major::tag:
    if (head.argument == shareableTag)
      return "an object";
    if (head.argument == referenceTag)
      return "a reference to an object";
    return "tag " + std::to_string(head.argument);
  case Major::simple:
    break;
  }
  switch (head.first)
  {
  case static_cast<unsigned char>(boolFalse):
    return "false";
  case static_cast<unsigned char>(boolTrue):
    return "true";
  case static_cast<unsigned char>(null):
    return "null";
  case real32:
    return "a 32-bit float";
  case real64:
    return "a 64-bit float";
  case static_cast<unsigned char>(closeArray):
    return "the end of a section or an object";
  default:
    return "an unknown value";
  }
}

} // namespace orvel::details::cbor
