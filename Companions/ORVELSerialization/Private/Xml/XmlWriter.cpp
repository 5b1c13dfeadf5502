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

// What a text has besides printable ASCII that stands for itself:
constexpr unsigned char g_hasEscapes = 1;  // &, <, > or "
constexpr unsigned char g_hasDoubtful = 2; // bytes that XML may not carry: controls and beyond ASCII

/// Which of these a character is.
constexpr std::array<unsigned char, 256> g_classes = []
{
  std::array<unsigned char, 256> classes = {};
  for (std::size_t code = 0; code < classes.size(); ++code)
    classes[code] = code < 0x20 || code >= 0x7F ? g_hasDoubtful : 0;
  for (const char character : std::string_view("&<>\""))
    classes[static_cast<unsigned char>(character)] = g_hasEscapes;
  return classes;
}();

/// Tells which of these a text has.
unsigned char classify(std::string_view text)
{
  unsigned char found = 0;
  for (const char character : text)
    found |= g_classes[static_cast<unsigned char>(character)];
  return found;
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
  constexpr std::size_t longestEscape = 6;
  constexpr std::size_t piece = ByteSink::largestReserve / longestEscape;
  for (; !text.empty(); text.remove_prefix(std::min(text.size(), piece)))
  {
    const std::string_view present = text.substr(0, piece);
    char* to = sink.reserve(longestEscape * present.size());
    for (const char character : present)
    {
      *to = character;
      std::string_view escape;
      if (g_classes[static_cast<unsigned char>(character)] != 0)
        escape = getEscape(character, isAttribute);
      to += escape.empty() ? 1 : escape.copy(to, escape.size());
    }
    sink.advance(to);
  }
}

/// Writes a key, a section's name or a class name, as the value of an attribute.
void XmlWriter::putName(std::string_view name)
{
  const unsigned char found = classify(name);
  if (found == 0)
    sink.append(name);
  else if ((found & g_hasDoubtful) == 0 || isXmlText(name))
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
  const unsigned char found = classify(text);
  if (found == 0)
  {
    putItem(key, text);
    return;
  }
  indent();
  sink.append("<item key=\"");
  putName(key);
  if ((found & g_hasDoubtful) == 0 || isXmlText(text))
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
