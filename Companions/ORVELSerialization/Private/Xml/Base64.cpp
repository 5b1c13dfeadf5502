#include "ORVELSerialization/Private/Xml/Base64.h"

#include <array>

namespace orvel::details
{

namespace
{

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr unsigned char blank = 64;
constexpr unsigned char padding = 65;
constexpr unsigned char invalid = 66;

constexpr std::array<unsigned char, 256> makeValues()
{
  std::array<unsigned char, 256> values = {};
  for (unsigned char& value : values)
    value = invalid;
  for (std::size_t index = 0; index < alphabet.size(); ++index)
    values[static_cast<unsigned char>(alphabet[index])] = static_cast<unsigned char>(index);
  for (const char character : std::string_view(" \t\r\n"))
    values[static_cast<unsigned char>(character)] = blank;
  values['='] = padding;
  return values;
}

constexpr std::array<unsigned char, 256> values = makeValues();

unsigned byteAt(const char* data)
{
  return static_cast<unsigned char>(*data);
}

} // namespace

char* encodeBase64(const char* data, std::size_t size, char* to)
{
  for (; size >= 3; size -= 3, data += 3)
  {
    const unsigned group = byteAt(data) << 16U | byteAt(data + 1) << 8U | byteAt(data + 2);
    *to++ = alphabet[group >> 18U];
    *to++ = alphabet[group >> 12U & 63U];
    *to++ = alphabet[group >> 6U & 63U];
    *to++ = alphabet[group & 63U];
  }
  if (size != 0)
  {
    const unsigned group = byteAt(data) << 16U | (size == 2 ? byteAt(data + 1) << 8U : 0U);
    *to++ = alphabet[group >> 18U];
    *to++ = alphabet[group >> 12U & 63U];
    *to++ = size == 2 ? alphabet[group >> 6U & 63U] : '=';
    *to++ = '=';
  }
  return to;
}

std::size_t Base64Decoder::decode(std::string_view text, char* to, std::size_t room)
{
  const char* at = text.data();
  const char* const end = at + text.size();
  char* const start = to;
  char* const limit = to + room;
  while (at != end && _isValid)
  {
    // Whole groups of digits, the bulk of every text.
    while (_nbDigits == 0 && !_isPadded && end - at >= 4 && limit - to >= 3)
    {
      const unsigned a = values[byteAt(at)];
      const unsigned b = values[byteAt(at + 1)];
      const unsigned c = values[byteAt(at + 2)];
      const unsigned d = values[byteAt(at + 3)];
      if ((a | b | c | d) >= 64)
        break;
      const unsigned group = a << 18U | b << 12U | c << 6U | d;
      *to++ = static_cast<char>(group >> 16U);
      *to++ = static_cast<char>(group >> 8U);
      *to++ = static_cast<char>(group);
      at += 4;
    }
    if (at == end)
      break;

    const unsigned value = values[byteAt(at++)];
    if (value == blank)
      continue;
    if (value == invalid || _isPadded || (value == padding && _nbDigits < 2) ||
        (value != padding && _nbPadding != 0))
    {
      _isValid = false;
      break;
    }
    _nbPadding += value == padding ? 1 : 0;
    _digits = _digits << 6U | (value == padding ? 0 : value);
    if (++_nbDigits < 4)
      continue;
    const unsigned nbBytes = 3 - _nbPadding;
    const bool hasStrayBits = (_digits & ((1U << 8U * _nbPadding) - 1)) != 0;
    if (hasStrayBits || static_cast<std::size_t>(limit - to) < nbBytes)
    {
      _isValid = false;
      break;
    }
    for (unsigned index = 0; index < nbBytes; ++index)
      *to++ = static_cast<char>(_digits >> (16 - 8 * index));
    _isPadded = _nbPadding != 0;
    _digits = _nbDigits = _nbPadding = 0;
  }
  return static_cast<std::size_t>(to - start);
}

bool decodeBase64(std::string_view text, std::string& content)
{
  content.resize(text.size() / 4 * 3 + 3);
  Base64Decoder decoder;
  content.resize(decoder.decode(text, content.data(), content.size()));
  return decoder.isFinished();
}

} // namespace orvel::details
