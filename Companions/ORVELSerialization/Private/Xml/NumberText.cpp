#include "ORVELSerialization/Private/Xml/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace orvel::details
{

namespace
{

bool isDigit(char character)
{
  return character >= '0' && character <= '9';
}

template <class Integer>
std::string_view formatInteger(Integer value, NumberBuffer& buffer)
{
  const std::to_chars_result result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

template <class Integer>
ParseResult parseInteger(std::string_view text, Integer& value)
{
  const std::string_view digits = !text.empty() && text.front() == '-' ? text.substr(1) : text;
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit))
    return ParseResult::invalid;
  Integer parsed = 0;
  const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), parsed);
  if (result.ec != std::errc())
    return ParseResult::outOfRange; // an unsigned number takes no sign
  value = parsed;
  return ParseResult::ok;
}

template <class Real, class Bits>
struct RealText
{
  static_assert(sizeof(Real) == sizeof(Bits));

  static Bits toBits(Real value)
  {
    Bits bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return bits;
  }

  static Real fromBits(Bits bits)
  {
    Real value = 0;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
  }

  static constexpr Bits quietNan =
      sizeof(Bits) == 4 ? Bits{0x7FC00000} : static_cast<Bits>(0x7FF8000000000000);

  static std::string_view format(Real value, NumberBuffer& buffer)
  {
    char* const begin = buffer.data();
    char* end = begin + buffer.size();
    if (!std::isnan(value))
      end = std::to_chars(begin, end, value).ptr;
    else if (toBits(value) == quietNan)
      end = std::copy_n("nan", 3, begin);
    else
    {
      end = std::to_chars(std::copy_n("nan(0x", 6, begin), end, toBits(value), 16).ptr;
      *end++ = ')';
    }
    return {begin, static_cast<std::size_t>(end - begin)};
  }

  static ParseResult parseNan(std::string_view text, Real& value)
  {
    constexpr std::string_view prefix = "nan(0x";
    if (text == "nan")
    {
      value = fromBits(quietNan);
      return ParseResult::ok;
    }
    if (text.size() <= prefix.size() + 1 || text.substr(0, prefix.size()) != prefix || text.back() != ')')
      return ParseResult::invalid;
    Bits bits = 0;
    const char* const last = text.data() + text.size() - 1;
    const std::from_chars_result result = std::from_chars(text.data() + prefix.size(), last, bits, 16);
    if (result.ec != std::errc() || result.ptr != last || !std::isnan(fromBits(bits)))
      return ParseResult::invalid;
    value = fromBits(bits);
    return ParseResult::ok;
  }

  static ParseResult parse(std::string_view text, Real& value)
  {
    if (!text.empty() && text.front() == 'n')
      return parseNan(text, value);
    const std::string_view magnitude = !text.empty() && text.front() == '-' ? text.substr(1) : text;
    if (magnitude == "inf")
    {
      value = text.front() == '-' ? -std::numeric_limits<Real>::infinity()
                                  : std::numeric_limits<Real>::infinity();
      return ParseResult::ok;
    }
    if (magnitude.empty() || !(isDigit(magnitude.front()) || magnitude.front() == '.'))
      return ParseResult::invalid; // from_chars takes other spellings of infinities and NaNs
    Real parsed = 0;
    const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (result.ec == std::errc::invalid_argument || result.ptr != text.data() + text.size())
      return ParseResult::invalid;
    if (result.ec != std::errc())
      return ParseResult::outOfRange;
    value = parsed;
    return ParseResult::ok;
  }
};

using Real32Text = RealText<ipReal32, ipUInt32>;
using Real64Text = RealText<ipReal64, ipUInt64>;

} // namespace

std::string_view formatNumber(ipInt64 value, NumberBuffer& buffer)
{
  return formatInteger(value, buffer);
}

std::string_view formatNumber(ipUInt64 value, NumberBuffer& buffer)
{
  return formatInteger(value, buffer);
}

std::string_view formatNumber(ipReal32 value, NumberBuffer& buffer)
{
  return Real32Text::format(value, buffer);
}

std::string_view formatNumber(ipReal64 value, NumberBuffer& buffer)
{
  return Real64Text::format(value, buffer);
}

ParseResult parseNumber(std::string_view text, ipInt64& value)
{
  return parseInteger(text, value);
}

ParseResult parseNumber(std::string_view text, ipUInt64& value)
{
  return parseInteger(text, value);
}

ParseResult parseNumber(std::string_view text, ipReal32& value)
{
  return Real32Text::parse(text, value);
}

ParseResult parseNumber(std::string_view text, ipReal64& value)
{
  return Real64Text::parse(text, value);
}

} // namespace orvel::details
