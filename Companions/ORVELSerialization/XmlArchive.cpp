#include <ORVELSerialization/XmlArchive.h>

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>
#include <vector>

#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELSerialization/Private/Base64.h>
#include <ORVELSerialization/Private/NumberText.h>
#include <ORVELSerialization/Private/ObjectTables.h>
#include <ORVELSerialization/Private/OpenArchive.h>
#include <ORVELSerialization/Private/XmlEvents.h>

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

/// Tells whether no character of a text has an escape.
bool isPlain(std::string_view text)
{
  return std::none_of(text.begin(), text.end(),
                      [](char character)
                      {
                        return character == '&' || character == '<' || character == '>' || character == '"' ||
                               static_cast<unsigned char>(character) < 0x20 ||
                               static_cast<unsigned char>(character) >= 0x7F;
                      });
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
    static constexpr std::string_view blanks = "                                ";
    for (std::size_t left = 2 * level; left != 0;)
    {
      const std::size_t piece = std::min(left, blanks.size());
      sink.append(blanks.substr(0, piece));
      left -= piece;
    }
  }

  void putEscaped(std::string_view text, bool inAttribute)
  {
    for (const char character : text)
    {
      const std::string_view escape = getEscape(character, inAttribute);
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
  else if (isXmlText(name))
    _impl->putEscaped(name, true);
  else
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eInvalidKey, quoted(name));
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
        const SerializationObjectPtr& object = item.getValue();
        bool isNew = false;
        const ipUInt64 number = object ? _impl->objects.enter(object, isNew) + 1 : 0;

        _impl->indent();
        _impl->sink.append("<pointer key=\"");
        putName(item.getKey());
        if (!object)
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
        scope.finish();
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
          _impl->putEscaped(value, false);
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
    : events(std::move(origin))
  {
  }

  XmlEvents events;
  ipUInt64 itemPosition = 0; // where the present item begins: the place that failures name
  ipUInt64 nbOpenSections = 0;
  std::string scratch;                                  // a text that came in several events
  std::vector<SerializationObjectPtr> objects;          // by number, from 0
  std::unordered_map<std::string, ObjectClass> classes; // by name
};

/// The start of an element, as long as no further event is asked for.
struct XmlIArchive::Start
{
  const XmlEvents& events;
  const XmlEvents::Event& event;

  bool find(XmlAttribute attribute, std::string_view& value) const
  {
    return events.findAttribute(event, attribute, value);
  }
};

/// Runs an operation on an open archive, at the cost of a unit of work, and turns what the parser and the
/// system report into failures of the archive.
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
    _impl->itemPosition = _impl->events.getFailurePosition();
    if (failure.isCutShort())
      ArchiveAccess::fail(*this, ORVEL_HERE, Message::eCutShort);
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, failure.what());
  }
  catch (const IoFailure& failure)
  {
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eReadFailed, failure.what());
  }
}

XmlIArchive::XmlIArchive(std::string name, std::unique_ptr<InputOrigin> origin)
  : BaseIArchive(std::move(name))
  , _impl(std::make_unique<Impl>(std::move(origin)))
{
  perform([this] { readHeader(); });
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

bool XmlIArchive::isElementWise() const
{
  return true;
}

void XmlIArchive::readHeader()
{
  XmlEvents& events = _impl->events;
  const XmlEvents::Event* event = nullptr;
  try
  {
    event = &events.peek();
  }
  catch (const XmlFailure& failure) // before the first element: it may be anything
  {
    _impl->itemPosition = events.getFailurePosition();
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, failure.what());
  }
  _impl->itemPosition = event->position;
  if (event->kind != XmlEvents::Kind::start || event->element != XmlElement::archive)
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, "it is XML with other content");
  std::string_view format;
  if (!events.findAttribute(*event, XmlAttribute::format, format))
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, "it names no format version");
  if (format != formatVersion)
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eOtherFormatVersion, quoted(format),
                        quoted(formatVersion));
  events.pop();
}

/// What the next event stands for, for messages.
std::string XmlIArchive::describeNext()
{
  const XmlEvents::Event& event = _impl->events.peek();
  switch (event.kind)
  {
  case XmlEvents::Kind::text:
    return "the text " + quoted(_impl->events.getText(event));
  case XmlEvents::Kind::end:
    return event.element == XmlElement::archive ? "the end of the archive"
                                                : "the end of " + std::string(getElementName(event.element));
  case XmlEvents::Kind::finish:
    return "the end of the file";
  case XmlEvents::Kind::start:
    break;
  }
  if (event.element == XmlElement::unknown)
    return "the unknown element " + quoted(_impl->events.getText(event));
  std::string_view name;
  if (!_impl->events.findAttribute(event, XmlAttribute::key, name))
    _impl->events.findAttribute(event, XmlAttribute::name, name);
  return std::string(getElementName(event.element)) + (name.empty() ? "" : " " + quoted(name));
}

void XmlIArchive::raiseUnexpected(const std::string& expected)
{
  const std::string found = describeNext();
  _impl->itemPosition = _impl->events.peek().position;
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem, expected, found);
}

/// Takes the start of an element; its key must be the one asked for, where it has one. The start's texts
/// stay valid until the next event is asked for.
XmlIArchive::Start XmlIArchive::expectStart(unsigned char elementNumber, const std::string& key)
{
  const auto element = static_cast<XmlElement>(elementNumber);
  XmlEvents& events = _impl->events;
  const XmlEvents::Event& event = events.peek();
  _impl->itemPosition = event.position;
  const bool hasKey = element != XmlElement::section && element != XmlElement::block;
  std::string_view foundKey;
  if (event.kind != XmlEvents::Kind::start || event.element != element ||
      (hasKey && (!events.findAttribute(event, XmlAttribute::key, foundKey) || foundKey != key)))
    raiseUnexpected(std::string(getElementName(element)) + (hasKey ? " " + quoted(key) : ""));
  std::string_view value;
  if (events.findAttribute(event, XmlAttribute::unknown, value))
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged,
                        "unknown attribute of " + std::string(getElementName(element)));
  events.pop();
  return {events, event};
}

void XmlIArchive::expectEnd()
{
  const XmlEvents::Event& event = _impl->events.peek();
  if (event.kind != XmlEvents::Kind::end)
    raiseUnexpected("the end of the element");
  _impl->events.pop();
}

/// Reads an item as text. It stays valid until the next event is asked for.
std::string_view XmlIArchive::readItemText(const std::string& key, bool& isBase64)
{
  XmlEvents& events = _impl->events;
  const Start start = expectStart(static_cast<unsigned char>(XmlElement::item), key);
  std::string_view encoding;
  isBase64 = start.find(XmlAttribute::encoding, encoding);
  if (isBase64 && encoding != "base64")
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "unknown encoding " + quoted(encoding));

  const XmlEvents::Event* event = &events.peek();
  if (event->kind == XmlEvents::Kind::end)
  {
    events.pop();
    return {};
  }
  if (event->kind != XmlEvents::Kind::text)
    raiseUnexpected("the text of item " + quoted(key));
  const std::string_view text = events.getText(*event);
  events.pop();
  if (events.hasNext() && events.peek().kind == XmlEvents::Kind::end) // the usual case: all in one place
  {
    events.pop();
    return text;
  }
  _impl->scratch = text;
  for (event = &events.peek(); event->kind == XmlEvents::Kind::text; event = &events.peek())
  {
    _impl->scratch += events.getText(*event);
    events.pop();
  }
  expectEnd();
  return _impl->scratch;
}

/// Reads the text of a value that is no string.
std::string_view XmlIArchive::readValueText(const std::string& key)
{
  bool isBase64 = false;
  const std::string_view text = readItemText(key, isBase64);
  if (isBase64)
    raiseInvalidValue(std::string(text), key);
  return text;
}

template <class Number>
Number XmlIArchive::readNumber(const std::string& key, Number minimum, Number maximum)
{
  return perform(
      [&]
      {
        const std::string_view text = readValueText(key);
        Number number = 0;
        const ParseResult result = parseNumber(text, number);
        if (result == ParseResult::invalid)
          raiseInvalidValue(std::string(text), key);
        if (result == ParseResult::outOfRange || number < minimum || number > maximum)
        {
          NumberBuffer minimumText;
          NumberBuffer maximumText;
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eValueOutOfRange, std::string(text), quoted(key),
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
        XmlEvents& events = _impl->events;
        const Start start = expectStart(static_cast<unsigned char>(XmlElement::block), "");
        std::string_view size;
        ipUInt64 filedSize = 0;
        if (!start.find(XmlAttribute::size, size) || parseNumber(size, filedSize) != ParseResult::ok)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "a block without its size");
        if (filedSize != sizeInBytes)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem,
                              "a block of " + std::to_string(sizeInBytes) + " bytes",
                              "a block of " + std::to_string(filedSize) + " bytes");
        Base64Decoder decoder;
        char* to = static_cast<char*>(data);
        std::size_t left = sizeInBytes;
        for (; events.peek().kind == XmlEvents::Kind::text; events.pop())
        {
          const std::size_t nbBytes = decoder.decode(events.getText(events.peek()), to, left);
          to += nbBytes;
          left -= nbBytes;
        }
        if (!decoder.isFinished() || left != 0)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged,
                              "the text of a block is not its bytes in base64");
        expectEnd();
      });
}

void XmlIArchive::readObjectPtr(const SerializationIItem<SerializationObjectPtr>& item)
{
  perform(
      [&]
      {
        const Start start = expectStart(static_cast<unsigned char>(XmlElement::pointer), item.getKey());
        std::string_view text;
        std::string_view className;
        ipUInt64 number = 0;
        if (start.find(XmlAttribute::null, text) && text == "true")
        {
          expectEnd();
          item.getValue().reset();
          return;
        }
        if (start.find(XmlAttribute::ref, text))
        {
          if (parseNumber(text, number) != ParseResult::ok || number == 0 || number > _impl->objects.size())
            ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnknownReference, quoted(text));
          expectEnd();
          item.getValue() = _impl->objects[number - 1];
          return;
        }
        if (!start.find(XmlAttribute::id, text) || !start.find(XmlAttribute::className, className) ||
            parseNumber(text, number) != ParseResult::ok || number != _impl->objects.size() + 1)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged,
                              "a pointer needs the next id and a class");

        ObjectScope scope(*this);
        const SerializationObjectPtr object = createObject(className);
        _impl->objects.push_back(object); // before its content: a cycle leads back to it
        ArchiveAccess::readWhole(*this, *object);
        expectEnd();
        scope.finish();
        item.getValue() = object;
      });
}

SerializationObjectPtr XmlIArchive::createObject(std::string_view className)
{
  std::string name(className);
  auto found = _impl->classes.find(name);
  if (found == _impl->classes.end())
    found = _impl->classes.emplace(name, ObjectClass(name)).first;
  return ArchiveAccess::create(*this, found->second);
}

void XmlIArchive::readObject(const std::string& key, BaseSerializationObject& object)
{
  perform(
      [&]
      {
        ObjectScope scope(*this);
        expectStart(static_cast<unsigned char>(XmlElement::object), key);
        ArchiveAccess::readWhole(*this, object);
        expectEnd();
        scope.finish();
      });
}

bool XmlIArchive::readBool(const std::string& key)
{
  return perform(
      [&]
      {
        const std::string_view text = readValueText(key);
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
        bool isBase64 = false;
        const std::string_view text = readItemText(key, isBase64);
        if (!isBase64)
        {
          value = text;
          return;
        }
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
        XmlEvents& events = _impl->events;
        if (_impl->nbOpenSections != 0 || getDepth() != 0)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotFinished);
        const XmlEvents::Event& event = events.peek();
        _impl->itemPosition = event.position;
        if (event.kind != XmlEvents::Kind::end)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnreadItems, describeNext());
        events.pop();
        try
        {
          events.peek(); // the end of the file; the parser refuses anything else behind the root
        }
        catch (const XmlFailure&)
        {
          _impl->itemPosition = events.getFailurePosition();
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
        expectStart(static_cast<unsigned char>(XmlElement::section), "");
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
        expectEnd();
        --_impl->nbOpenSections;
      });
}

std::string XmlIArchive::getPlace() const
{
  return _impl->events.getPlace(_impl->itemPosition);
}

bool XmlIArchive::holds(ipUInt64 sizeInBytes)
{
  return perform([&] { return _impl->events.holds(sizeInBytes); });
}

ipUInt64 XmlIArchive::getMinItemSize() const
{
  return 19;
}

ipUInt64 XmlIArchive::getPosition() const
{
  return _impl->events.getPosition();
}

} // namespace orvel
