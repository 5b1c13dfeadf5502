#include "ORVELSerialization/XmlArchive.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <unordered_map>
#include <utility>
#include <vector>

#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELSerialization/Private/Base64.h>
#include <ORVELSerialization/Private/NumberText.h>
#include <ORVELSerialization/Private/ObjectTables.h>
#include <ORVELSerialization/Private/OpenArchive.h>
#include <ORVELSerialization/Private/XmlDocument.h>

namespace orvel
{

using namespace details;
using Message = eORVELSerializationMessage;

namespace
{

constexpr std::string_view formatVersion = "1";
constexpr std::size_t lineBytes = 57; // of a block: 76 characters of base64

/// The text that stands for a character in XML, empty for one that stands for itself. Line ends and tabs
/// survive in a text but not in an attribute.
constexpr std::string_view getEscape(char character, bool inAttribute)
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
    return inAttribute ? "&quot;" : "";
  case '\t':
    return inAttribute ? "&#9;" : "";
  case '\n':
    return inAttribute ? "&#10;" : "";
  default:
    return "";
  }
}

/// Tells whether a text stands for itself: printable ASCII without escapes.
bool isPlain(std::string_view text)
{
  static constexpr std::array<bool, 256> isSpecial = []
  {
    std::array<bool, 256> special = {};
    for (std::size_t code = 0; code < special.size(); ++code)
      special[code] = code < 0x20 || code >= 0x7F;
    for (const char character : std::string_view("&<>\""))
      special[static_cast<unsigned char>(character)] = true;
    return special;
  }();
  bool hasSpecial = false;
  for (const char character : text)
    hasSpecial |= isSpecial[static_cast<unsigned char>(character)];
  return !hasSpecial;
}

} // namespace

// Writing

struct XmlOArchive::Impl
{
  explicit Impl(std::unique_ptr<OutputTarget> target)
    : sink(std::move(target), Hashing::none)
  {
  }

  void indent()
  {
    constexpr std::size_t piece = 32;
    static constexpr char blanks[] = "                                ";
    static_assert(sizeof(blanks) == piece + 1);
    for (std::size_t left = 2 * level;; left -= piece)
    {
      // A whole piece each time, as a copy of constant size; only what is wanted of it is kept.
      char* const to = sink.reserve(piece);
      std::memcpy(to, blanks, piece);
      if (left <= piece)
      {
        sink.advance(to + left);
        return;
      }
      sink.advance(to + piece);
    }
  }

  void putEscaped(std::string_view text)
  {
    for (const char character : text)
    {
      const std::string_view escape = getEscape(character, false);
      if (escape.empty())
        sink.put(character);
      else
        sink.append(escape);
    }
  }

  void putBase64(const char* data, std::size_t size)
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

  void putEnd(std::string_view element)
  {
    --level;
    indent();
    sink.append("</");
    sink.append(element);
    sink.append(">\n");
  }

  ByteSink sink;
  std::size_t level = 0; // elements that are open
  FiledObjects objects;

  struct EscapedName
  {
    std::string name;
    std::string escaped;
  };
  std::array<EscapedName, 64> escapedNames; // those met last: the same few class names come time and again
};

XmlOArchive::XmlOArchive(std::string name, std::unique_ptr<Impl> impl)
  : BaseOArchive(std::move(name))
  , _impl(std::move(impl))
{
  perform(
      [this]
      {
        _impl->sink.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orvelArchive format=\"");
        _impl->sink.append(formatVersion);
        _impl->sink.append("\">\n");
        _impl->level = 1;
      });
}

XmlOArchive::XmlOArchive(const boost::filesystem::path& path)
  : XmlOArchive(path.string(), std::make_unique<Impl>(openFileTarget(path)))
{
}

XmlOArchive::XmlOArchive(std::ostream& stream)
  : XmlOArchive(streamName, std::make_unique<Impl>(makeStreamTarget(stream)))
{
}

XmlOArchive::~XmlOArchive() = default;

bool XmlOArchive::isElementWise() const
{
  return true;
}

/// Runs an operation on an open archive and turns a refusal of the system into a failure of the archive.
template <class Operation>
void XmlOArchive::perform(Operation operation)
{
  checkOpen();
  try
  {
    operation();
  }
  catch (const IoFailure& failure)
  {
    raiseWriteFailed(failure.what());
  }
  catch (...)
  {
    markFailed(); // part of an item may have been moved
    throw;
  }
}

void XmlOArchive::raiseWriteFailed(const char* reason)
{
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eWriteFailed, reason);
}

/// A key, a section's name or a class name, as the value of an attribute.
void XmlOArchive::putName(std::string_view name)
{
  if (isPlain(name))
    _impl->sink.append(name);
  else
    putEscapedName(name);
}

void XmlOArchive::putEscapedName(std::string_view name)
{
  const std::size_t mixed =
      name.size() + std::size_t{7} * static_cast<unsigned char>(name[name.size() / 2]) +
      std::size_t{31} * static_cast<unsigned char>(name[name.size() - std::min<std::size_t>(name.size(), 3)]);
  Impl::EscapedName& cached = _impl->escapedNames[mixed % _impl->escapedNames.size()];
  if (name != cached.name)
  {
    if (!isXmlText(name))
      ArchiveAccess::fail(*this, ORVEL_HERE, Message::eInvalidKey, quoted(name));
    std::string escaped;
    for (const char character : name)
    {
      const std::string_view escape = getEscape(character, true);
      escaped += escape.empty() ? std::string_view(&character, 1) : escape;
    }
    cached.name.clear(); // if memory ends, no name stands for another one's form
    cached.escaped.swap(escaped);
    cached.name = name;
  }
  _impl->sink.append(cached.escaped);
}

/// An item whose text needs no escapes.
void XmlOArchive::putItem(const std::string& key, std::string_view text)
{
  perform(
      [&]
      {
        _impl->indent();
        _impl->sink.append("<item key=\"");
        putName(key);
        _impl->sink.append("\">");
        _impl->sink.append(text);
        _impl->sink.append("</item>\n");
      });
}

void XmlOArchive::writeBlock(const void* data, ipUInt64 sizeInBytes)
{
  perform(
      [&]
      {
        NumberBuffer buffer;
        _impl->indent();
        _impl->sink.append("<block size=\"");
        _impl->sink.append(formatNumber(sizeInBytes, buffer));
        _impl->sink.append("\">");
        const char* bytes = static_cast<const char*>(data);
        if (sizeInBytes > lineBytes)
          _impl->sink.put('\n');
        for (ipUInt64 left = sizeInBytes; left != 0;)
        {
          const std::size_t nbBytes = std::min<ipUInt64>(left, lineBytes);
          _impl->putBase64(bytes, nbBytes);
          if (sizeInBytes > lineBytes)
            _impl->sink.put('\n');
          bytes += nbBytes;
          left -= nbBytes;
        }
        if (sizeInBytes > lineBytes)
          _impl->indent();
        _impl->sink.append("</block>\n");
      });
}

void XmlOArchive::writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item)
{
  perform(
      [&]
      {
        const BaseSerializationObject* const object = item.getValue().get(); // the archive keeps it alive
        bool isNew = false;
        const ipUInt64 number = object != nullptr ? _impl->objects.enter(item.getValue(), isNew) + 1 : 0;
        if (object != nullptr && !isNew)
          countReference(_impl->objects.getHeight(number - 1));

        _impl->indent();
        _impl->sink.append("<pointer key=\"");
        putName(item.getKey());
        if (object == nullptr)
        {
          _impl->sink.append("\" null=\"true\"/>\n");
          return;
        }
        NumberBuffer buffer;
        _impl->sink.append(isNew ? "\" id=\"" : "\" ref=\"");
        _impl->sink.append(formatNumber(number, buffer));
        if (!isNew)
        {
          _impl->sink.append("\"/>\n");
          return;
        }
        ObjectScope scope(*this);
        _impl->sink.append("\" class=\"");
        putName(object->getClassName());
        _impl->sink.append("\">\n");
        ++_impl->level;
        ArchiveAccess::writeWhole(*this, *object);
        _impl->putEnd(getElementName(XmlElement::pointer));
        _impl->objects.setHeight(number - 1, scope.finish());
      });
}

void XmlOArchive::writeObject(const std::string& key, const BaseSerializationObject& object)
{
  perform(
      [&]
      {
        ObjectScope scope(*this);
        _impl->indent();
        _impl->sink.append("<object key=\"");
        putName(key);
        _impl->sink.append("\">\n");
        ++_impl->level;
        ArchiveAccess::writeWhole(*this, object);
        _impl->putEnd(getElementName(XmlElement::object));
        scope.finish();
      });
}

void XmlOArchive::writeBool(const std::string& key, bool value)
{
  putItem(key, value ? "true" : "false");
}

void XmlOArchive::writeInteger(const std::string& key, ipInt64 value)
{
  NumberBuffer buffer;
  putItem(key, formatNumber(value, buffer));
}

void XmlOArchive::writeUnsigned(const std::string& key, ipUInt64 value)
{
  NumberBuffer buffer;
  putItem(key, formatNumber(value, buffer));
}

void XmlOArchive::writeReal32(const std::string& key, ipReal32 value)
{
  NumberBuffer buffer;
  putItem(key, formatNumber(value, buffer));
}

void XmlOArchive::writeReal64(const std::string& key, ipReal64 value)
{
  NumberBuffer buffer;
  putItem(key, formatNumber(value, buffer));
}

void XmlOArchive::writeString(const std::string& key, std::string_view value)
{
  if (isPlain(value))
  {
    putItem(key, value);
    return;
  }
  perform(
      [&]
      {
        _impl->indent();
        _impl->sink.append("<item key=\"");
        putName(key);
        if (isXmlText(value))
        {
          _impl->sink.append("\">");
          _impl->putEscaped(value);
        }
        else
        {
          _impl->sink.append("\" encoding=\"base64\">");
          _impl->putBase64(value.data(), value.size());
        }
        _impl->sink.append("</item>\n");
      });
}

void XmlOArchive::close()
{
  perform(
      [this]
      {
        if (_impl->level != 1)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotFinished);
        _impl->putEnd(getElementName(XmlElement::archive));
        _impl->sink.finish();
        markClosed();
      });
}

void XmlOArchive::openSection(std::string_view name)
{
  perform(
      [&]
      {
        _impl->indent();
        _impl->sink.append("<section name=\"");
        putName(name);
        _impl->sink.append("\">\n");
        ++_impl->level;
      });
}

void XmlOArchive::closeSection()
{
  if (!isFailed() && !isClosed())
    perform([this] { _impl->putEnd(getElementName(XmlElement::section)); });
}

std::string XmlOArchive::getPlace() const
{
  return "byte " + std::to_string(_impl->sink.getPosition());
}

// Reading

struct XmlIArchive::Impl
{
  explicit Impl(std::unique_ptr<InputOrigin> origin)
    : document(std::move(origin))
  {
  }

  XmlDocument document;
  ipUInt64 place = 0; // where something was met that is no item; 0 as long as the present item is the place
  ipUInt64 nbOpenSections = 0;
  ReadObjects objects;
  std::unordered_map<std::string, ObjectClass> classes; // by name
};

/// Runs an operation on an open archive, at the cost of a unit of work, and turns what the document reports
/// into failures of the archive.
template <class Operation>
auto XmlIArchive::perform(Operation operation)
{
  checkOpen();
  spendWork(1);
  try
  {
    return operation();
  }
  catch (const XmlFailure& failure)
  {
    raiseXmlFailure(failure);
  }
  catch (...)
  {
    markFailed(); // part of an item may have been moved
    throw;
  }
}

void XmlIArchive::raiseXmlFailure(const XmlFailure& failure)
{
  _impl->place = failure.position;
  switch (failure.kind)
  {
  case XmlFailure::Kind::notAnArchive:
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, failure.reason);
  case XmlFailure::Kind::cutShort:
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eCutShort);
  case XmlFailure::Kind::unexpected:
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem, failure.expected, failure.reason);
  default:
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, failure.reason);
  }
}

std::unique_ptr<XmlIArchive::Impl> XmlIArchive::load(std::unique_ptr<InputOrigin> origin) const
{
  try
  {
    return std::make_unique<Impl>(std::move(origin));
  }
  catch (const IoFailure& failure)
  {
    raise(ORVEL_HERE, Message::eReadFailed, getName(), "line 1, column 1", failure.what());
  }
}

XmlIArchive::XmlIArchive(std::string name, std::unique_ptr<InputOrigin> origin)
  : BaseIArchive(std::move(name))
  , _impl(load(std::move(origin)))
{
  perform(
      [this]
      {
        const XmlAttributes& attributes = _impl->document.open();
        const std::string_view format = attributes.get(XmlAttribute::format);
        if (!attributes.has(XmlAttribute::format))
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, "it names no format version");
        if (format != formatVersion)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eOtherFormatVersion, quoted(format),
                              quoted(formatVersion));
      });
}

XmlIArchive::XmlIArchive(const boost::filesystem::path& path)
  : XmlIArchive(path.string(), openFileOrigin(path))
{
}

XmlIArchive::XmlIArchive(std::istream& stream)
  : XmlIArchive(streamName, openStreamOrigin(stream))
{
}

XmlIArchive::~XmlIArchive() = default;

void XmlIArchive::letObjectsGo() noexcept
{
  _impl->objects.letLatestGo();
}

bool XmlIArchive::isElementWise() const
{
  return true;
}

/// Reads an item that is no string: its text needs no encoding. What is no plain text comes as it stands.
std::string_view XmlIArchive::readText(const std::string& key)
{
  std::string_view text;
  const XmlAttributes& attributes = _impl->document.takeText(XmlElement::item, &key, text);
  if (attributes.has(XmlAttribute::encoding))
    raiseInvalidValue(std::string(text), key);
  return text;
}

template <class Number>
Number XmlIArchive::readNumber(const std::string& key, Number minimum, Number maximum)
{
  return perform(
      [&]
      {
        const std::string_view text = readText(key);
        Number number = 0;
        const ParseResult result = parseNumber(text, number);
        if (result == ParseResult::invalid)
          raiseInvalidValue(std::string(text), key);
        if (result == ParseResult::outOfRange || number < minimum || number > maximum)
        {
          NumberBuffer minimumText;
          NumberBuffer maximumText;
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eValueOutOfRange, shortened(text), quoted(key),
                              std::string(formatNumber(minimum, minimumText)),
                              std::string(formatNumber(maximum, maximumText)));
        }
        return number;
      });
}

void XmlIArchive::readBlock(void* data, ipUInt64 sizeInBytes)
{
  perform(
      [&]
      {
        std::string_view text;
        const XmlAttributes& attributes = _impl->document.takeText(XmlElement::block, nullptr, text);
        ipUInt64 filedSize = 0;
        if (parseNumber(attributes.get(XmlAttribute::size), filedSize) != ParseResult::ok)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "a block without its size");
        if (filedSize != sizeInBytes)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem,
                              "a block of " + std::to_string(sizeInBytes) + " bytes",
                              "a block of " + std::to_string(filedSize) + " bytes");
        Base64Decoder decoder;
        if (decoder.decode(text, static_cast<char*>(data), sizeInBytes) != sizeInBytes ||
            !decoder.isFinished())
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged,
                              "the text of a block is not its bytes in base64");
      });
}

void XmlIArchive::readObjectPtr(const SerializationIItem<SerializationObjectPtr>& item)
{
  _impl->objects.readShared([&] { readShared(item); });
}

void XmlIArchive::readShared(const SerializationIItem<SerializationObjectPtr>& item)
{
  perform(
      [&]
      {
        XmlDocument& document = _impl->document;
        const XmlAttributes& attributes = document.enter(XmlElement::pointer, &item.getKey());
        if (attributes.get(XmlAttribute::null) == "true")
        {
          document.leave();
          item.getValue().reset();
          return;
        }
        if (attributes.has(XmlAttribute::ref))
        {
          readReference(attributes.get(XmlAttribute::ref), item.getValue());
          return;
        }
        checkNewObject(attributes);

        ObjectScope scope(*this);
        const SerializationObjectPtr object = createObject(attributes.get(XmlAttribute::className));
        const ipUInt64 number = _impl->objects.enter(object); // before its content: a cycle leads back to it
        ArchiveAccess::readWhole(*this, *object);
        document.leave();
        _impl->objects.setHeight(number, scope.finish());
        item.getValue() = object;
      });
}

// These stand outside of readShared(): what they need of the stack is not needed again at every level of a
// deep tree.

/// Reads a pointer to an object that came before.
void XmlIArchive::readReference(std::string_view text, SerializationObjectPtr& object)
{
  ipUInt64 number = 0;
  if (parseNumber(text, number) != ParseResult::ok || number == 0 || !_impl->objects.has(number - 1))
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnknownReference, quoted(text));
  countReference(_impl->objects.getHeight(number - 1));
  _impl->document.leave();
  object = _impl->objects[number - 1];
}

/// Raises unless a pointer to a new object has all that it needs.
void XmlIArchive::checkNewObject(const XmlAttributes& attributes)
{
  ipUInt64 number = 0;
  if (!attributes.has(XmlAttribute::className) ||
      parseNumber(attributes.get(XmlAttribute::id), number) != ParseResult::ok ||
      number != _impl->objects.size() + 1)
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "a pointer needs the next id and a class");
}

SerializationObjectPtr XmlIArchive::createObject(std::string_view name)
{
  const std::string className(name);
  auto found = _impl->classes.find(className);
  if (found == _impl->classes.end())
    found = _impl->classes.emplace(className, ObjectClass(className)).first;
  return ArchiveAccess::create(*this, found->second);
}

void XmlIArchive::readObject(const std::string& key, BaseSerializationObject& object)
{
  perform(
      [&]
      {
        _impl->document.enter(XmlElement::object, &key);
        ObjectScope scope(*this);
        ArchiveAccess::readWhole(*this, object);
        _impl->document.leave();
        scope.finish();
      });
}

bool XmlIArchive::readBool(const std::string& key)
{
  return perform(
      [&]
      {
        const std::string_view text = readText(key);
        if (text != "true" && text != "false")
          raiseInvalidValue(std::string(text), key);
        return text == "true";
      });
}

ipInt64 XmlIArchive::readInteger(const std::string& key, ipInt64 minimum, ipInt64 maximum)
{
  return readNumber(key, minimum, maximum);
}

ipUInt64 XmlIArchive::readUnsigned(const std::string& key, ipUInt64 maximum)
{
  return readNumber(key, ipUInt64{0}, maximum);
}

ipReal32 XmlIArchive::readReal32(const std::string& key)
{
  constexpr ipReal32 infinity = std::numeric_limits<ipReal32>::infinity();
  return readNumber(key, -infinity, infinity);
}

ipReal64 XmlIArchive::readReal64(const std::string& key)
{
  constexpr ipReal64 infinity = std::numeric_limits<ipReal64>::infinity();
  return readNumber(key, -infinity, infinity);
}

void XmlIArchive::readString(const std::string& key, std::string& value)
{
  perform(
      [&]
      {
        std::string_view text;
        const XmlAttributes& attributes = _impl->document.takeText(XmlElement::item, &key, text);
        if (!attributes.has(XmlAttribute::encoding))
        {
          value = text;
          return;
        }
        const std::string_view encoding = attributes.get(XmlAttribute::encoding);
        if (encoding != "base64")
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "unknown encoding " + quoted(encoding));
        std::string content;
        if (!decodeBase64(text, content))
          raiseInvalidValue(std::string(text), key);
        value.swap(content);
      });
}

void XmlIArchive::close()
{
  perform(
      [this]
      {
        XmlDocument& document = _impl->document;
        if (_impl->nbOpenSections != 0 || getDepth() != 0)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotFinished);
        if (document.hasNext())
        {
          _impl->place = document.getNextPosition();
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnreadItems, document.describeNext());
        }
        if (document.hasBehindRoot())
        {
          _impl->place = document.getBehindPosition();
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eBehindEnd);
        }
        markClosed();
      });
}

void XmlIArchive::openSection(std::string_view /*name*/)
{
  perform(
      [this]
      {
        _impl->document.enter(XmlElement::section, nullptr);
        ++_impl->nbOpenSections;
      });
}

void XmlIArchive::closeSection()
{
  if (isFailed() || isClosed())
    return;
  perform(
      [this]
      {
        _impl->document.leave();
        --_impl->nbOpenSections;
      });
}

void XmlIArchive::leaveSection()
{
  if (isFailed() || isClosed())
    return;
  perform(
      [this]
      {
        for (ipUInt64 nbOpenElements = 1; nbOpenElements != 0;)
        {
          spendWork(1);
          skipElement(nbOpenElements);
        }
        --_impl->nbOpenSections;
      });
}

/// Skips an element, or the start or the end of one that holds others. Shared objects keep their ids.
void XmlIArchive::skipElement(ipUInt64& nbOpenElements)
{
  XmlDocument& document = _impl->document;
  if (!document.hasNext())
  {
    document.leave();
    --nbOpenElements;
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
  ++nbOpenElements;
  if (element == XmlElement::pointer && attributes.get(XmlAttribute::null) != "true" &&
      !attributes.has(XmlAttribute::ref))
  {
    checkNewObject(attributes);
    _impl->objects.enter(nullptr);
  }
}

std::string XmlIArchive::getPlace() const
{
  const XmlDocument& document = _impl->document;
  return document.getPlace(_impl->place != 0 ? _impl->place : document.getTakenPosition());
}

bool XmlIArchive::holds(ipUInt64 sizeInBytes)
{
  const XmlDocument& document = _impl->document;
  return sizeInBytes <= document.getSize() - document.getNextPosition();
}

ipUInt64 XmlIArchive::getMinItemSize() const
{
  return 19;
}

ipUInt64 XmlIArchive::getPosition() const
{
  return _impl->document.getSize();
}

} // namespace orvel
