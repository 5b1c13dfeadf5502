#include "ORVELSerialization/Private/Xml/XmlReader.h"

#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Text.h>
#include <ORVELSerialization/Private/Xml/Base64.h>
#include <ORVELSerialization/Private/Xml/NumberText.h>

namespace orvel::details
{

using Message = eORVELSerializationMessage;

namespace
{

[[noreturn]] void failInvalidValue(std::string_view text, const std::string& key)
{
  throw ArchiveFailure(Message::eInvalidValue, quoted(text), quoted(key));
}

} // namespace

void XmlReader::readHeader()
{
  constexpr std::string_view formatVersion = "1";
  const XmlAttributes& attributes = document.open();
  const std::string_view format = attributes.get(XmlAttribute::format);
  if (!attributes.has(XmlAttribute::format))
    throw ArchiveFailure(Message::eNotAnArchive, "it names no format version");
  if (format != formatVersion)
    throw ArchiveFailure(Message::eOtherFormatVersion, quoted(format), quoted(formatVersion));
}

void XmlReader::readBlock(char* data, ipUInt64 sizeInBytes)
{
  std::string_view text;
  const XmlAttributes& attributes = document.takeText(XmlElement::block, nullptr, text);
  ipUInt64 storedSize = 0;
  if (parseNumber(attributes.get(XmlAttribute::size), storedSize) != ParseResult::ok)
    throw ArchiveFailure(Message::eDamaged, "a block without its size");
  if (storedSize != sizeInBytes)
    throw ArchiveFailure(Message::eUnexpectedItem, "a block of " + std::to_string(sizeInBytes) + " bytes",
                         "a block of " + std::to_string(storedSize) + " bytes");
  Base64Decoder decoder;
  if (decoder.decode(text, data, sizeInBytes) != sizeInBytes || !decoder.isFinished())
    throw ArchiveFailure(Message::eDamaged, "the text of a block is not its bytes in base64");
}

void XmlReader::readString(const std::string& key, std::string& text)
{
  std::string_view content;
  const XmlAttributes& attributes = document.takeText(XmlElement::item, &key, content);
  if (!attributes.has(XmlAttribute::encoding))
  {
    text = content;
    return;
  }
  const std::string_view encoding = attributes.get(XmlAttribute::encoding);
  if (encoding != "base64")
    throw ArchiveFailure(Message::eDamaged, "unknown encoding " + quoted(encoding));
  std::string decoded;
  if (!decodeBase64(content, decoded))
    failInvalidValue(content, key);
  text.swap(decoded);
}

std::string_view XmlReader::readText(const std::string& key)
{
  std::string_view text;
  const XmlAttributes& attributes = document.takeText(XmlElement::item, &key, text);
  if (attributes.has(XmlAttribute::encoding)) // only what is no plain text has one
    failInvalidValue(text, key);
  return text;
}

bool XmlReader::readBool(const std::string& key)
{
  const std::string_view text = readText(key);
  if (text != "true" && text != "false")
    failInvalidValue(text, key);
  return text == "true";
}

template <class Number>
Number XmlReader::readNumber(const std::string& key, Number minimum, Number maximum)
{
  const std::string_view text = readText(key);
  Number number = 0;
  const ParseResult result = parseNumber(text, number);
  if (result == ParseResult::invalid)
    failInvalidValue(text, key);
  if (result == ParseResult::outOfRange || number < minimum || number > maximum)
  {
    NumberBuffer minimumText;
    NumberBuffer maximumText;
    throw ArchiveFailure(Message::eValueOutOfRange, shortened(text), quoted(key),
                         std::string(formatNumber(minimum, minimumText)),
                         std::string(formatNumber(maximum, maximumText)));
  }
  return number;
}

template ipInt64 XmlReader::readNumber(const std::string&, ipInt64, ipInt64);
template ipUInt64 XmlReader::readNumber(const std::string&, ipUInt64, ipUInt64);
template ipReal32 XmlReader::readNumber(const std::string&, ipReal32, ipReal32);
template ipReal64 XmlReader::readNumber(const std::string&, ipReal64, ipReal64);

PointerKind XmlReader::takePointer(const std::string& key, ipUInt64& number)
{
  const XmlAttributes& attributes = document.enter(XmlElement::pointer, &key);
  if (attributes.get(XmlAttribute::null) == "true")
  {
    document.leave();
    return PointerKind::null;
  }
  if (!attributes.has(XmlAttribute::ref))
  {
    checkNewObject(attributes);
    return PointerKind::object;
  }
  const std::string_view reference = attributes.get(XmlAttribute::ref);
  if (parseNumber(reference, number) != ParseResult::ok || number == 0 || !objects.has(number - 1))
    throw ArchiveFailure(Message::eUnknownReference, quoted(reference));
  --number;
  document.leave();
  return PointerKind::reference;
}

/// Checks that a pointer to a new object has all that it needs.
void XmlReader::checkNewObject(const XmlAttributes& attributes) const
{
  ipUInt64 number = 0;
  if (!attributes.has(XmlAttribute::className) ||
      parseNumber(attributes.get(XmlAttribute::id), number) != ParseResult::ok ||
      number != objects.size() + 1)
    throw ArchiveFailure(Message::eDamaged, "a pointer needs the next id and a class");
}

ObjectClass& XmlReader::openPointer()
{
  const std::string name(document.getAttributes().get(XmlAttribute::className));
  return _classes.try_emplace(name, name).first->second;
}

void XmlReader::skipItem()
{
  if (!document.hasNext())
  {
    document.leave();
    return;
  }
  const XmlElement element = document.getNextElement();
  if (element == XmlElement::item || element == XmlElement::block)
  {
    std::string_view text;
    document.takeText(element, nullptr, text);
    return;
  }
  const XmlAttributes& attributes = document.enter(element, nullptr);
  if (element == XmlElement::pointer && attributes.get(XmlAttribute::null) != "true" &&
      !attributes.has(XmlAttribute::ref))
  {
    checkNewObject(attributes);
    objects.enter(nullptr);
  }
}

} // namespace orvel::details
