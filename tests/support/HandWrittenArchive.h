#pragma once

/// \file
/// \brief Archives put together by hand, piece by piece, in both formats.
///
/// A second, simple way to say what an archive has to look like, and the way to archives that the library
/// itself does not write: of older and newer class versions, cut short, or with cached values that do not
/// fit.

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/XmlArchive.h>

#define XXH_INLINE_ALL
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <xxhash.h>

namespace orvel::test
{

/// \brief An XML archive. Numbers are meant to be small or short: they are printed as streams print them.
class HandWrittenXml
{
public:
  using OArchive = XmlOArchive;
  using IArchive = XmlIArchive;

  void openSection(const std::string& name) { open("section", "name", name); }
  void openObject(const std::string& key) { open("object", "key", key); }

  /// A shared object that stands here for the first time; its number is one more than that of the last.
  void openPointer(const std::string& key, const std::string& className)
  {
    ++_nbPointers;
    open("pointer", "key", key + "\" id=\"" + std::to_string(_nbPointers) + "\" class=\"" + className);
  }

  /// \param number of a shared object that came before, from 1
  void reference(const std::string& key, std::uint64_t number)
  {
    _content += indent() + "<pointer key=\"" + key + "\" ref=\"" + std::to_string(number) + "\"/>\n";
  }

  void nullPointer(const std::string& key)
  {
    _content += indent() + "<pointer key=\"" + key + "\" null=\"true\"/>\n";
  }

  void close()
  {
    const std::string element = _open.back();
    _open.pop_back();
    _content += indent() + "</" + element + ">\n";
  }

  void integer(const std::string& key, std::int64_t value) { item(key, std::to_string(value)); }
  void text(const std::string& key, const std::string& value) { item(key, value); } ///< nothing to escape
  void boolean(const std::string& key, bool value) { item(key, value ? "true" : "false"); }

  /// A named enumeration: its text here, its number in the binary format.
  void enumeration(const std::string& key, std::int64_t /*number*/, const std::string& name)
  {
    item(key, name);
  }

  /// A raw block of up to 57 bytes: longer ones take several lines.
  void block(const std::string& bytes)
  {
    _content +=
        indent() + "<block size=\"" + std::to_string(bytes.size()) + "\">" + base64Of(bytes) + "</block>\n";
  }

  void real32(const std::string& key, float value)
  {
    std::ostringstream text;
    text << value;
    item(key, text.str());
  }
  void real64(const std::string& key, double value)
  {
    std::ostringstream text;
    text << value;
    item(key, text.str());
  }

  std::string file() const
  {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orvelArchive format=\"1\">\n" + _content +
           "</orvelArchive>\n";
  }

private:
  /// Three bytes after the other as four characters, padded with '=' (RFC 4648, 4).
  static std::string base64Of(const std::string& bytes)
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
  static std::string escaped(const std::string& name)
  {
    std::string text;
    for (const char character : name)
      text += character == '<' ? "&lt;" : character == '>' ? "&gt;" : std::string(1, character);
    return text;
  }

  std::string indent() const { return std::string(2 * (_open.size() + 1), ' '); }

  void open(const std::string& element, const std::string& attribute, const std::string& name)
  {
    _content += indent() + "<" + element + " " + attribute + "=\"" + escaped(name) + "\">\n";
    _open.push_back(element);
  }

  void item(const std::string& key, const std::string& text)
  {
    _content += indent() + "<item key=\"" + key + "\">" + text + "</item>\n";
  }

  std::vector<std::string> _open;
  std::string _content;
  std::uint64_t _nbPointers = 0;
};

/// \brief A binary archive, a sequence of CBOR items; it stores neither names nor keys.
class HandWrittenBinary
{
public:
  using OArchive = BinaryOArchive;
  using IArchive = BinaryIArchive;

  void openSection(const std::string& /*name*/) { _bytes += '\x9F'; }
  void openObject(const std::string& /*key*/) { _bytes += '\x9F'; }

  void openPointer(const std::string& /*key*/, const std::string& className)
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

  void reference(const std::string& /*key*/, std::uint64_t number)
  {
    _bytes += "\xD8\x1D" + head(0, number - 1); // tag 29; counts from 0
  }

  void nullPointer(const std::string& /*key*/) { _bytes += '\xF6'; }
  void close() { _bytes += '\xFF'; }

  void integer(const std::string& /*key*/, std::int64_t value)
  {
    if (value < 0)
      _bytes += head(1, static_cast<std::uint64_t>(-1 - value));
    else
      _bytes += head(0, static_cast<std::uint64_t>(value));
  }

  void text(const std::string& /*key*/, const std::string& value) { _bytes += head(3, value.size()) + value; }
  void enumeration(const std::string& key, std::int64_t number, const std::string& /*name*/)
  {
    integer(key, number);
  }
  void boolean(const std::string& /*key*/, bool value) { _bytes += value ? '\xF5' : '\xF4'; }
  void block(const std::string& bytes) { _bytes += head(2, bytes.size()) + bytes; }

  void real32(const std::string& /*key*/, float value)
  {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    _bytes += '\xFA' + bigEndian(bits, 4);
  }
  void real64(const std::string& /*key*/, double value)
  {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    _bytes += '\xFB' + bigEndian(bits, 8);
  }

  std::string file() const
  {
    const std::string start = std::string("\xD9\xD9\xF7\x83") + "\x65ORVEL" + '\x01' + "\x66little" + _bytes;
    return start + "\x83\x63" + "end" + head(0, start.size()) +
           head(0, XXH3_64bits(start.data(), start.size()));
  }

private:
  static std::string bigEndian(std::uint64_t value, int nbBytes)
  {
    std::string bytes;
    for (int shift = 8 * (nbBytes - 1); shift >= 0; shift -= 8)
      bytes += static_cast<char>(static_cast<unsigned char>(value >> shift));
    return bytes;
  }

  /// The start of an item: its major type and its number, in the shortest form.
  static std::string head(unsigned int majorType, std::uint64_t number)
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

  std::string _bytes;
  std::vector<std::string> _classNames;
};

/// \brief Both formats, for typed tests.
using Formats = testing::Types<HandWrittenXml, HandWrittenBinary>;

/// \brief Put the version record of a class into a hand-written archive.
template <class HandWritten>
void putVersion(HandWritten& archive, const std::string& className, ipUInt32 version)
{
  archive.openSection(className);
  archive.integer("version", version);
  archive.close();
}

/// \brief Return the file that write(archive) makes, in the format of a hand-written archive.
template <class HandWritten, class Write>
std::string fileOf(Write write)
{
  std::ostringstream stream;
  typename HandWritten::OArchive archive(stream);
  write(archive);
  archive.close();
  return stream.str();
}

/// \brief Call read(archive) on a file and check that it leaves nothing unread.
template <class HandWritten, class Read>
void readFile(const std::string& file, Read read)
{
  std::istringstream stream(file);
  typename HandWritten::IArchive archive(stream);
  read(archive);
  archive.close();
}

/// \brief Call read(archive) on a file that may hold more.
template <class HandWritten, class Read>
void readStart(const std::string& file, Read read)
{
  std::istringstream stream(file);
  typename HandWritten::IArchive archive(stream);
  read(archive);
}

} // namespace orvel::test
