#include "ORVELSerialization/Private/Xml/XmlWriter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Text.h>
#include <ORVELSerialization/Private/Xml/Base64.h>
#include <ORVELSerialization/Private/Xml/NumberText.h>

namespace orvel::details
{

namespace
{

/// The text that stands for a character in XML, empty for one that stands for itself. Line ends and tabs
/// survive in a text but not in an attribute.
constexpr std::string_view getEscape(char character, bool isAttribute)
{
  switch (character)
  {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  case '"':
    return isAttribute ? "&quot;" : "";
  case '\t':
    return isAttribute ? "&#9;" : "";
  case '\n':
    return isAttribute ? "&#10;" : "";
  default:
    return "";
  }
}

/// Tells whether a text stands for itself: printable ASCII without escapes.
bool isPlain(std::string_view text)
{
  static constexpr std::array<bool, 256> g_isSpecial = []
  {
    std::array<bool, 256> isSpecial = {};
    for (std::size_t code = 0; code < isSpecial.size(); ++code)
      isSpecial[code] = code < 0x20 || code >= 0x7F;
    for (const char character : std::string_view("&<>\""))
      isSpecial[static_cast<unsigned char>(character)] = true;
    return isSpecial;
  }();
  bool hasSpecial = false;
  for (const char character : text)
    hasSpecial |= g_isSpecial[static_cast<unsigned char>(character)];
  return !hasSpecial;
}

} // namespace

XmlWriter::XmlWriter(std::unique_ptr<OutputTarget> target)
  : sink(std::move(target), Hashing::none)
{
}

void XmlWriter::indent()
{
  constexpr std::size_t piece = 32;
  static constexpr char g_blanks[] = "                                ";
  static_assert(sizeof(g_blanks) == piece + 1);
  for (std::size_t left = 2 * _nbOpen;; left -= piece)
  {
    // A whole piece each time, as a copy of constant size; only what is wanted of it is kept.
    char* const to = sink.reserve(piece);
    std::memcpy(to, g_blanks, piece);
    if (left <= piece)
    {
      sink.advance(to + left);
      return;
    }
    sink.advance(to + piece);
  }
}

void XmlWriter::putEscaped(std::string_view text, bool isAttribute)
{
  for (const char character : text)
  {
    const std::string_view escape = getEscape(character, isAttribute);
    if (escape.empty())
      sink.put(character);
    else
      sink.append(escape);
  }
}

/// Writes a key, a section's name or a class name, as the value of an attribute.
void XmlWriter::putName(std::string_view name)
{
  if (isPlain(name))
    sink.append(name);
  else if (isXmlText(name))
    putEscaped(name, true);
  else
    throw ArchiveFailure(eORVELSerializationMessage::eInvalidKey, quoted(name));
}

void XmlWriter::putBase64(const char* data, std::size_t size)
{
  constexpr std::size_t piece = 3072; // whole groups of three bytes that fit a reserve
  static_assert(base64Size(piece) <= ByteSink::largestReserve);
  while (size != 0)
  {
    const std::size_t nbBytes = std::min(size, piece);
    sink.advance(encodeBase64(data, nbBytes, sink.reserve(base64Size(nbBytes))));
    data += nbBytes;
    size -= nbBytes;
  }
}

void XmlWriter::open()
{
  sink.append("\">\n");
  ++_nbOpen;
}

void XmlWriter::close(std::string_view element)
{
  --_nbOpen;
  indent();
  sink.append("</");
  sink.append(element);
  sink.append(">\n");
}

void XmlWriter::openArchive()
{
  sink.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orvelArchive format=\"1");
  open();
}

void XmlWriter::closeArchive()
{
  close("orvelArchive");
}

void XmlWriter::openSection(std::string_view name)
{
  indent();
  sink.append("<section name=\"");
  putName(name);
  open();
}

void XmlWriter::closeSection()
{
  close("section");
}

void XmlWriter::openObject(const std::string& key)
{
  indent();
  sink.append("<object key=\"");
  putName(key);
  open();
}

void XmlWriter::closeObject()
{
  close("object");
}

void XmlWriter::putNull(const std::string& key)
{
  indent();
  sink.append("<pointer key=\"");
  putName(key);
  sink.append("\" null=\"true\"/>\n");
}

void XmlWriter::putReference(const std::string& key, ipUInt64 number)
{
  NumberBuffer buffer;
  indent();
  sink.append("<pointer key=\"");
  putName(key);
  sink.append("\" ref=\"");
  sink.append(formatNumber(number + 1, buffer));
  sink.append("\"/>\n");
}

void XmlWriter::openPointer(const std::string& key, ipUInt64 number, const std::string& className)
{
  NumberBuffer buffer;
  indent();
  sink.append("<pointer key=\"");
  putName(key);
  sink.append("\" id=\"");
  sink.append(formatNumber(number + 1, buffer));
  sink.append("\" class=\"");
  putName(className);
  open();
}

void XmlWriter::closePointer()
{
  close("pointer");
}

void XmlWriter::putItem(const std::string& key, std::string_view text)
{
  indent();
  sink.append("<item key=\"");
  putName(key);
  sink.append("\">");
  sink.append(text);
  sink.append("</item>\n");
}

void XmlWriter::putString(const std::string& key, std::string_view text)
{
  if (isPlain(text))
  {
    putItem(key, text);
    return;
  }
  indent();
  sink.append("<item key=\"");
  putName(key);
  if (isXmlText(text))
  {
    sink.append("\">");
    putEscaped(text, false);
  }
  else
  {
    sink.append("\" encoding=\"base64\">");
    putBase64(text.data(), text.size());
  }
  sink.append("</item>\n");
}

void XmlWriter::putBlock(const char* data, ipUInt64 sizeInBytes)
{
  constexpr std::size_t lineBytes = 57; // 76 characters of base64
  NumberBuffer buffer;
  indent();
  sink.append("<block size=\"");
  sink.append(formatNumber(sizeInBytes, buffer));
  sink.append("\">");
  if (sizeInBytes > lineBytes)
    sink.put('\n');
  for (ipUInt64 left = sizeInBytes; left != 0;)
  {
    const std::size_t nbBytes = std::min<ipUInt64>(left, lineBytes);
    putBase64(data, nbBytes);
    if (sizeInBytes > lineBytes)
      sink.put('\n');
    data += nbBytes;
    left -= nbBytes;
  }
  if (sizeInBytes > lineBytes)
    indent();
  sink.append("</block>\n");
}

} // namespace orvel::details
