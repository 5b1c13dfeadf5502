#pragma once

// Numbers in text, independent of the locale.

#include <array>
#include <string_view>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

using NumberBuffer = std::array<char, 40>; ///< room for any number

std::string_view formatNumber(ipInt64 value, NumberBuffer& buffer);
std::string_view formatNumber(ipUInt64 value, NumberBuffer& buffer);

/// The shortest text that reads back to the same bits; "inf", "-inf"; "nan" for the default quiet NaN and
/// else "nan(0x...)" with the bit pattern.
std::string_view formatNumber(ipReal32 value, NumberBuffer& buffer);
std::string_view formatNumber(ipReal64 value, NumberBuffer& buffer); ///< \see the 32-bit form

enum class ParseResult
{
  ok,
  invalid,   ///< the text is no number of this kind
  outOfRange ///< it is one that the type can't hold
};

/// Reads a number; the whole text must be one. The value is set only if it is.
ParseResult parseNumber(std::string_view text, ipInt64& value);
ParseResult parseNumber(std::string_view text, ipUInt64& value);
ParseResult parseNumber(std::string_view text, ipReal32& value);
ParseResult parseNumber(std::string_view text, ipReal64& value);

} // namespace orvel::details
