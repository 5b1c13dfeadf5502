#include "HandWrittenArchive.h"

#define XXH_INLINE_ALL
#include <algorithm>
#include <cstddef>
#include <cstring>

#include <xxhash.h>

namespace orvel::test
{

namespace
{

// XML

/// Three bytes after the other as four characters, padded with '=' (RFC 4648, 4).
std::string base64Of(const std::string& bytes)
{
  static const std::string g_digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3)
  {
    std::uint32_t group = 0;
    for (std::size_t j = i; j < i + 3; ++j)
      group = group << 8 | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0U);
    const std::size_t nbDigits = bytes.size() - i < 3 ? bytes.size() - i + 1 : 4;
    for (std::size_t j = 0; j < 4; ++j)
      text += j < nbDigits ? g_digits[group >> (18 - 6 * j) & 63U] : '=';
  }
  return text;
}

/// The name of a class, which may be a template.
std::string escaped(const std::string& name)
{
  std::string text;
  for (const char character : name)
    text += character == '<' ? "&lt;" : character == '>' ? "&gt;" : std::string(1, character);
  return text;
}

template <class T>
std::string printed(T value)
{
  std::ostringstream text;
  text << value;
  return text.str();
}

// CBOR

std::string bigEndian(std::uint64_t value, int nbBytes)
{
  std::string bytes;
  for (int shift = 8 * (nbBytes - 1); shift >= 0; shift -= 8)
    bytes += static_cast<char>(static_cast<unsigned char>(value >> shift));
  return bytes;
}

/// The start of an item: its major type and its number, in the shortest form.
std::string head(unsigned int majorType, std::uint64_t number)
{
  const auto start = [majorType](unsigned int size)
  {
    return static_cast<char>(majorType << 5 | size);
  };
  if (number < 24)
    return std::string(1, start(static_cast<unsigned int>(number)));
  if (number <= 0xFF)
    return start(24) + bigEndian(number, 1);
  if (number <= 0xFFFF)
    return start(25) + bigEndian(number, 2);
  if (number <= 0xFFFFFFFF)
    return start(26) + bigEndian(number, 4);
  return start(27) + bigEndian(number, 8);
}

} // namespace

// HandWrittenXml

void HandWrittenXml::openSection(const std::string& name)
{
  open("section", "name", name);
}

void HandWrittenXml::openObject(const std::string& key)
{
  open("object", "key", key);
}

void HandWrittenXml::openPointer(const std::string& key, const std::string& className)
{
  ++_nbPointers;
  open("pointer", "key", key + "\" id=\"" + std::to_string(_nbPointers) + "\" class=\"" + className);
}

void HandWrittenXml::reference(const std::string& key, std::uint64_t number)
{
  _content += indent() + "<pointer key=\"" + key + "\" ref=\"" + std::to_string(number) + "\"/>\n";
}

void HandWrittenXml::nullPointer(const std::string& key)
{
  _content += indent() + "<pointer key=\"" + key + "\" null=\"true\"/>\n";
}

void HandWrittenXml::close()
{
  const std::string element = _open.back();
  _open.pop_back();
  _content += indent() + "</" + element + ">\n";
}

void HandWrittenXml::integer(const std::string& key, std::int64_t value)
{
  item(key, std::to_string(value));
}

void HandWrittenXml::text(const std::string& key, const std::string& value)
{
  item(key, value);
}

void HandWrittenXml::boolean(const std::string& key, bool value)
{
  item(key, value ? "true" : "false");
}

void HandWrittenXml::real32(const std::string& key, float value)
{
  item(key, printed(value));
}

void HandWrittenXml::real64(const std::string& key, double value)
{
  item(key, printed(value));
}

void HandWrittenXml::enumeration(const std::string& key, std::int64_t /*number*/, const std::string& name)
{
  item(key, name);
}

void HandWrittenXml::block(const std::string& bytes)
{
  _content +=
      indent() + "<block size=\"" + std::to_string(bytes.size()) + "\">" + base64Of(bytes) + "</block>\n";
}

std::string HandWrittenXml::file() const
{
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orvelArchive format=\"1\">\n" + _content +
         "</orvelArchive>\n";
}

std::string HandWrittenXml::indent() const
{
  return std::string(2 * (_open.size() + 1), ' ');
}

void HandWrittenXml::open(const std::string& element, const std::string& attribute, const std::string& name)
{
  _content += indent() + "<" + element + " " + attribute + "=\"" + escaped(name) + "\">\n";
  _open.push_back(element);
}

void HandWrittenXml::item(const std::string& key, const std::string& text)
{
  _content += indent() + "<item key=\"" + key + "\">" + text + "</item>\n";
}

// HandWrittenBinary

void HandWrittenBinary::openSection(const std::string& /*name*/)
{
  _bytes += '\x9F';
}

void HandWrittenBinary::openObject(const std::string& /*key*/)
{
  _bytes += '\x9F';
}

void HandWrittenBinary::openPointer(const std::string& /*key*/, const std::string& className)
{
  _bytes += "\xD8\x1C\x9F"; // tag 28
  const auto found = std::find(_classNames.begin(), _classNames.end(), className);
  if (found == _classNames.end())
  {
    _classNames.push_back(className);
    text("", className);
  }
  else
    integer("", found - _classNames.begin());
}

void HandWrittenBinary::reference(const std::string& /*key*/, std::uint64_t number)
{
  _bytes += "\xD8\x1D" + head(0, number - 1); // tag 29; counts from 0
}

void HandWrittenBinary::nullPointer(const std::string& /*key*/)
{
  _bytes += '\xF6';
}

void HandWrittenBinary::close()
{
  _bytes += '\xFF';
}

void HandWrittenBinary::integer(const std::string& /*key*/, std::int64_t value)
{
  if (value < 0)
    _bytes += head(1, static_cast<std::uint64_t>(-1 - value));
  else
    _bytes += head(0, static_cast<std::uint64_t>(value));
}

void HandWrittenBinary::text(const std::string& /*key*/, const std::string& value)
{
  _bytes += head(3, value.size()) + value;
}

void HandWrittenBinary::boolean(const std::string& /*key*/, bool value)
{
  _bytes += value ? '\xF5' : '\xF4';
}

void HandWrittenBinary::real32(const std::string& /*key*/, float value)
{
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  _bytes += '\xFA' + bigEndian(bits, 4);
}

void HandWrittenBinary::real64(const std::string& /*key*/, double value)
{
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  _bytes += '\xFB' + bigEndian(bits, 8);
}

void HandWrittenBinary::enumeration(const std::string& key, std::int64_t number, const std::string& /*name*/)
{
  integer(key, number);
}

void HandWrittenBinary::block(const std::string& bytes)
{
  _bytes += head(2, bytes.size()) + bytes;
}

std::string HandWrittenBinary::file() const
{
  const std::string start = std::string("\xD9\xD9\xF7\x83") + "\x65ORVEL" + '\x01' + "\x66little" + _bytes;
  return start + "\x83\x63" + "end" + head(0, start.size()) +
         head(0, XXH3_64bits(start.data(), start.size()));
}

} // namespace orvel::test
