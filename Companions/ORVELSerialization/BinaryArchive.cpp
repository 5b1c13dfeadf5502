#include "ORVELSerialization/BinaryArchive.h"

#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELSerialization/Private/Cbor.h>
#include <ORVELSerialization/Private/OpenArchive.h>

namespace orvel
{

using namespace details;
using Message = eORVELSerializationMessage;

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the byte order that the format names");

namespace
{

constexpr ipUInt64 formatVersion = 1;
constexpr std::string_view formatName = "ORVEL";
constexpr std::string_view byteOrder = "little";
constexpr std::string_view endMark = "end";

} // namespace

// Writing

struct BinaryOArchive::Impl
{
  explicit Impl(std::unique_ptr<OutputTarget> target)
    : sink(std::move(target), Hashing::xxh3)
  {
  }

  void putHead(cbor::Major major, ipUInt64 argument)
  {
    sink.advance(cbor::putHead(sink.reserve(cbor::largestHead), major, argument));
  }

  void putText(cbor::Major major, std::string_view text)
  {
    putHead(major, text.size());
    sink.append(text);
  }

  void openArray()
  {
    sink.put(cbor::openArray);
    ++nbOpenArrays;
  }

  void closeArray()
  {
    sink.put(cbor::closeArray);
    --nbOpenArrays;
  }

  ByteSink sink;
  FiledObjects objects;
  NameTable classes;
  ipUInt64 nbOpenArrays = 0;
};

BinaryOArchive::BinaryOArchive(std::string name, std::unique_ptr<Impl> impl)
  : BaseOArchive(std::move(name))
  , _impl(std::move(impl))
{
  perform(
      [this]
      {
        _impl->putHead(cbor::Major::tag, cbor::selfDescribedTag);
        _impl->putHead(cbor::Major::array, 3);
        _impl->putText(cbor::Major::text, formatName);
        _impl->putHead(cbor::Major::unsignedInteger, formatVersion);
        _impl->putText(cbor::Major::text, byteOrder);
      });
}

BinaryOArchive::BinaryOArchive(const boost::filesystem::path& path)
  : BinaryOArchive(path.string(), std::make_unique<Impl>(openFileTarget(path)))
{
}

BinaryOArchive::BinaryOArchive(std::ostream& stream)
  : BinaryOArchive(streamName, std::make_unique<Impl>(makeStreamTarget(stream)))
{
}

BinaryOArchive::~BinaryOArchive() = default;

bool BinaryOArchive::isElementWise() const
{
  return false;
}

/// Runs an operation on an open archive and turns a refusal of the system into a failure of the archive.
template <class Operation>
void BinaryOArchive::perform(Operation operation)
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

void BinaryOArchive::raiseWriteFailed(const char* reason)
{
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eWriteFailed, reason);
}

void BinaryOArchive::writeBlock(const void* data, ipUInt64 sizeInBytes)
{
  perform(
      [&]
      {
        _impl->putHead(cbor::Major::bytes, sizeInBytes);
        _impl->sink.append(static_cast<const char*>(data), sizeInBytes);
      });
}

void BinaryOArchive::writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item)
{
  perform(
      [&]
      {
        const SerializationObjectPtr& object = item.getValue();
        if (!object)
        {
          _impl->sink.put(cbor::null);
          return;
        }
        const BaseSerializationObject& stored = *object; // the archive keeps it alive
        bool isNew = false;
        const ipUInt64 number = _impl->objects.enter(object, isNew);
        if (!isNew)
        {
          countReference(_impl->objects.getHeight(number));
          _impl->putHead(cbor::Major::tag, cbor::referenceTag);
          _impl->putHead(cbor::Major::unsignedInteger, number);
          return;
        }
        ObjectScope scope(*this);
        _impl->putHead(cbor::Major::tag, cbor::shareableTag);
        _impl->openArray();
        putClass(stored);
        ArchiveAccess::writeWhole(*this, stored);
        _impl->closeArray();
        _impl->objects.setHeight(number, scope.finish());
      });
}

/// Files the class of an object: its name the first time, its number after that.
void BinaryOArchive::putClass(const BaseSerializationObject& object)
{
  const std::string& name = object.getClassName();
  const std::size_t number = _impl->classes.find(name);
  if (number != NameTable::none)
  {
    _impl->putHead(cbor::Major::unsignedInteger, number);
    return;
  }
  _impl->classes.add(name);
  _impl->putText(cbor::Major::text, name);
}

bool BinaryOArchive::filesSectionNames() const
{
  return false;
}

void BinaryOArchive::writeObject(const std::string& /*key*/, const BaseSerializationObject& object)
{
  perform(
      [&]
      {
        ObjectScope scope(*this);
        _impl->openArray();
        ArchiveAccess::writeWhole(*this, object);
        _impl->closeArray();
        scope.finish();
      });
}

void BinaryOArchive::writeBool(const std::string& /*key*/, bool value)
{
  perform([&] { _impl->sink.put(value ? cbor::boolTrue : cbor::boolFalse); });
}

void BinaryOArchive::writeInteger(const std::string& /*key*/, ipInt64 value)
{
  perform(
      [&]
      {
        const auto bits = static_cast<ipUInt64>(value);
        if (value >= 0)
          _impl->putHead(cbor::Major::unsignedInteger, bits);
        else
          _impl->putHead(cbor::Major::negativeInteger, ~bits); // -1 - value
      });
}

void BinaryOArchive::writeUnsigned(const std::string& /*key*/, ipUInt64 value)
{
  perform([&] { _impl->putHead(cbor::Major::unsignedInteger, value); });
}

void BinaryOArchive::writeReal32(const std::string& /*key*/, ipReal32 value)
{
  ipUInt32 bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  perform([&] { _impl->sink.advance(cbor::putReal32(_impl->sink.reserve(cbor::largestHead), bits)); });
}

void BinaryOArchive::writeReal64(const std::string& /*key*/, ipReal64 value)
{
  ipUInt64 bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  perform([&] { _impl->sink.advance(cbor::putReal64(_impl->sink.reserve(cbor::largestHead), bits)); });
}

void BinaryOArchive::writeString(const std::string& /*key*/, std::string_view value)
{
  perform([&] { _impl->putText(isUtf8(value) ? cbor::Major::text : cbor::Major::bytes, value); });
}

void BinaryOArchive::close()
{
  perform(
      [this]
      {
        if (_impl->nbOpenArrays != 0)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotFinished);
        const ipUInt64 size = _impl->sink.getPosition();
        const ipUInt64 hash = _impl->sink.getHash();
        _impl->putHead(cbor::Major::array, 3);
        _impl->putText(cbor::Major::text, endMark);
        _impl->putHead(cbor::Major::unsignedInteger, size);
        _impl->putHead(cbor::Major::unsignedInteger, hash);
        _impl->sink.finish();
        markClosed();
      });
}

void BinaryOArchive::openSection(std::string_view /*name*/)
{
  perform([this] { _impl->openArray(); });
}

void BinaryOArchive::closeSection()
{
  if (!isFailed() && !isClosed())
    perform([this] { _impl->closeArray(); });
}

std::string BinaryOArchive::getPlace() const
{
  return "byte " + std::to_string(_impl->sink.getPosition());
}

// Reading

struct BinaryIArchive::Impl
{
  explicit Impl(std::unique_ptr<InputOrigin> origin)
    : source(std::move(origin), Hashing::xxh3)
  {
  }

  ByteSource source;
  ipUInt64 itemPosition = 0; // where the present item begins: the place that failures name
  ipUInt64 nbOpenArrays = 0;
  ReadObjects objects;
  std::vector<ObjectClass> classes; // by number
};

/// Runs an operation on an open archive, at the cost of a unit of work, and turns a refusal of the system
/// into a failure of the archive.
template <class Operation>
auto BinaryIArchive::perform(Operation operation)
{
  checkOpen();
  spendWork(1);
  _impl->itemPosition = _impl->source.getPosition();
  try
  {
    return operation();
  }
  catch (const IoFailure& failure)
  {
    raiseReadFailed(failure.what());
  }
  catch (...)
  {
    markFailed(); // part of an item may have been moved
    throw;
  }
}

BinaryIArchive::BinaryIArchive(std::string name, std::unique_ptr<InputOrigin> origin)
  : BaseIArchive(std::move(name))
  , _impl(std::make_unique<Impl>(std::move(origin)))
{
  perform([this] { readHeader(); });
}

BinaryIArchive::BinaryIArchive(const boost::filesystem::path& path)
  : BinaryIArchive(path.string(), openFileOrigin(path))
{
}

BinaryIArchive::BinaryIArchive(std::istream& stream)
  : BinaryIArchive(streamName, openStreamOrigin(stream))
{
}

BinaryIArchive::~BinaryIArchive() = default;

void BinaryIArchive::letObjectsGo() noexcept
{
  _impl->objects.letLatestGo();
}

bool BinaryIArchive::isElementWise() const
{
  return false;
}

void BinaryIArchive::raiseReadFailed(const char* reason)
{
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eReadFailed, reason);
}

void BinaryIArchive::raiseCutShort()
{
  _impl->itemPosition =
      _impl->source.getPosition() + static_cast<ipUInt64>(_impl->source.end() - _impl->source.begin());
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eCutShort);
}

/// Reads the head of an item. Most lie in the window whole; near its end it must be moved on.
inline cbor::Head BinaryIArchive::readHead()
{
  ByteSource& source = _impl->source;
  if (source.end() - source.begin() < static_cast<std::ptrdiff_t>(cbor::largestHead))
    return readLastHead();
  cbor::Head head;
  source.take(cbor::readHead(source.begin(), source.end(), head));
  if (cbor::isReserved(head))
    raiseReserved();
  return head;
}

cbor::Head BinaryIArchive::readLastHead()
{
  ByteSource& source = _impl->source;
  if (!source.ensure(cbor::largestHead) && !source.ensure(1))
    raiseCutShort();
  cbor::Head head;
  const char* const next = cbor::readHead(source.begin(), source.end(), head);
  if (next == nullptr)
    raiseCutShort();
  if (cbor::isReserved(head))
    raiseReserved();
  source.take(next);
  return head;
}

void BinaryIArchive::raiseReserved()
{
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "there is no such CBOR item");
}

/// What a head that was just read stands for, for messages.
std::string BinaryIArchive::describe(const cbor::Head& head)
{
  if (head.is(cbor::Major::array) && !head.isIndefinite())
  {
    ByteSource& source = _impl->source;
    if (source.ensure(1 + endMark.size()) && std::string_view(source.begin() + 1, endMark.size()) == endMark)
      return "the end of the archive";
  }
  return cbor::describe(head);
}

void BinaryIArchive::raiseUnexpected(const char* expected, const std::string& key, const cbor::Head& found)
{
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem, expected + (" as item " + quoted(key)),
                      describe(found));
}

void BinaryIArchive::raiseOutOfRange(const std::string& value, const std::string& key,
                                     const std::string& minimum, const std::string& maximum)
{
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eValueOutOfRange, value, quoted(key), minimum, maximum);
}

void BinaryIArchive::expectArray(const char* what)
{
  ByteSource& source = _impl->source;
  if (!source.ensure(1) || *source.begin() != cbor::openArray)
    raiseNoArray(what);
  source.take(source.begin() + 1);
  ++_impl->nbOpenArrays;
}

void BinaryIArchive::expectArrayEnd(const char* what)
{
  ByteSource& source = _impl->source;
  if (!source.ensure(1) || *source.begin() != cbor::closeArray)
    raiseNoArrayEnd(what);
  source.take(source.begin() + 1);
  --_impl->nbOpenArrays;
}

void BinaryIArchive::raiseNoArray(const char* what)
{
  _impl->itemPosition = _impl->source.getPosition();
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem, std::string("the start of ") + what,
                      describe(readHead()));
}

void BinaryIArchive::raiseNoArrayEnd(const char* what)
{
  _impl->itemPosition = _impl->source.getPosition();
  ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem, std::string("the end of ") + what,
                      describe(readHead()));
}

/// The content of a text or byte string whose head was read.
void BinaryIArchive::readContent(const cbor::Head& head, std::string& content)
{
  if (!_impl->source.holds(head.argument))
  {
    _impl->itemPosition = _impl->source.getPosition();
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eCutShort);
  }
  content.resize(head.argument);
  if (_impl->source.takeInto(content.data(), head.argument) != head.argument)
    raiseCutShort();
}

/// The content of a text string whose head was read.
void BinaryIArchive::readUtf8(const cbor::Head& head, std::string& text)
{
  readContent(head, text);
  if (!isUtf8(text))
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "a text string is not UTF-8");
}

void BinaryIArchive::readHeader()
{
  constexpr std::string_view start = "\xd9\xd9\xf7"; // tag 55799
  ByteSource& source = _impl->source;
  if (!source.ensure(start.size()) || std::string_view(source.begin(), start.size()) != start)
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, "it doesn't start with the mark of CBOR");
  source.take(source.begin() + start.size());

  std::string text;
  const auto readText = [&]
  {
    const cbor::Head head = readHead();
    if (!head.is(cbor::Major::text) || head.isIndefinite() || head.argument > 64)
      ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, "it is CBOR with other content");
    readContent(head, text);
  };
  const cbor::Head array = readHead();
  if (!array.is(cbor::Major::array) || array.isIndefinite() || array.argument < 2)
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, "it is CBOR with other content");
  readText();
  if (text != formatName)
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, "it is CBOR with other content");
  _impl->itemPosition = source.getPosition();
  const cbor::Head version = readHead();
  if (!version.is(cbor::Major::unsignedInteger))
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotAnArchive, "it is CBOR with other content");
  if (version.argument != formatVersion || array.argument != 3)
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eOtherFormatVersion, std::to_string(version.argument),
                        std::to_string(formatVersion));
  _impl->itemPosition = source.getPosition();
  readText();
  if (text != byteOrder)
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eOtherByteOrder, quoted(text), quoted(byteOrder));
}

void BinaryIArchive::readBlock(void* data, ipUInt64 sizeInBytes)
{
  perform(
      [&]
      {
        const cbor::Head head = readHead();
        if (!head.is(cbor::Major::bytes) || head.isIndefinite() || head.argument != sizeInBytes)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem,
                              "a block of " + std::to_string(sizeInBytes) + " bytes", describe(head));
        if (_impl->source.takeInto(static_cast<char*>(data), sizeInBytes) != sizeInBytes)
          raiseCutShort();
      });
}

void BinaryIArchive::readObjectPtr(const SerializationIItem<SerializationObjectPtr>& item)
{
  _impl->objects.readShared([&] { readShared(item); });
}

void BinaryIArchive::readShared(const SerializationIItem<SerializationObjectPtr>& item)
{
  perform(
      [&]
      {
        const cbor::Head head = readHead();
        if (head.first == static_cast<unsigned char>(cbor::null))
        {
          item.getValue().reset();
          return;
        }
        if (head.is(cbor::Major::tag) && head.argument == cbor::referenceTag)
        {
          const cbor::Head number = readHead();
          if (!number.is(cbor::Major::unsignedInteger) || !_impl->objects.has(number.argument))
            ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnknownReference, describe(number));
          countReference(_impl->objects.getHeight(number.argument));
          item.getValue() = _impl->objects[number.argument];
          return;
        }
        if (!head.is(cbor::Major::tag) || head.argument != cbor::shareableTag)
          raiseUnexpected("an object", item.getKey(), head);

        ObjectScope scope(*this);
        expectArray("an object");
        const SerializationObjectPtr object = ArchiveAccess::create(*this, readClass());
        const ipUInt64 number = _impl->objects.enter(object); // before its content: a cycle leads back to it
        ArchiveAccess::readWhole(*this, *object);
        expectArrayEnd("the object");
        _impl->objects.setHeight(number, scope.finish());
        item.getValue() = object;
      });
}

/// The class of a new object: a text the first time, its number after that.
ObjectClass& BinaryIArchive::readClass()
{
  const cbor::Head head = readHead();
  if (head.is(cbor::Major::unsignedInteger) && head.argument < _impl->classes.size())
    return _impl->classes[head.argument];
  if (!head.is(cbor::Major::text) || head.isIndefinite())
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnexpectedItem, "a class", describe(head));
  std::string name;
  readUtf8(head, name);
  return _impl->classes.emplace_back(std::move(name));
}

void BinaryIArchive::readObject(const std::string& /*key*/, BaseSerializationObject& object)
{
  perform(
      [&]
      {
        ObjectScope scope(*this);
        expectArray("an object");
        ArchiveAccess::readWhole(*this, object);
        expectArrayEnd("the object");
        scope.finish();
      });
}

bool BinaryIArchive::readBool(const std::string& key)
{
  return perform(
      [&]
      {
        const cbor::Head head = readHead();
        const char first = static_cast<char>(head.first);
        if (first != cbor::boolTrue && first != cbor::boolFalse)
          raiseUnexpected("a boolean", key, head);
        return first == cbor::boolTrue;
      });
}

ipInt64 BinaryIArchive::readInteger(const std::string& key, ipInt64 minimum, ipInt64 maximum)
{
  return perform(
      [&]
      {
        const cbor::Head head = readHead();
        const bool isNegative = head.is(cbor::Major::negativeInteger);
        if (!isNegative && !head.is(cbor::Major::unsignedInteger))
          raiseUnexpected("an integer", key, head);
        // The number is argument or -1 - argument: both fit if the argument fits a signed number.
        const auto value = static_cast<ipInt64>(isNegative ? ~head.argument : head.argument);
        if (head.argument > static_cast<ipUInt64>(std::numeric_limits<ipInt64>::max()) || value < minimum ||
            value > maximum)
          raiseOutOfRange(cbor::integerText(head), key, std::to_string(minimum), std::to_string(maximum));
        return value;
      });
}

ipUInt64 BinaryIArchive::readUnsigned(const std::string& key, ipUInt64 maximum)
{
  return perform(
      [&]
      {
        const cbor::Head head = readHead();
        if (!head.is(cbor::Major::unsignedInteger) && !head.is(cbor::Major::negativeInteger))
          raiseUnexpected("an integer", key, head);
        if (head.is(cbor::Major::negativeInteger) || head.argument > maximum)
          raiseOutOfRange(cbor::integerText(head), key, "0", std::to_string(maximum));
        return head.argument;
      });
}

ipReal32 BinaryIArchive::readReal32(const std::string& key)
{
  return perform(
      [&]
      {
        const cbor::Head head = readHead();
        if (head.first != cbor::real32)
          raiseUnexpected("a 32-bit float", key, head);
        const auto bits = static_cast<ipUInt32>(head.argument);
        ipReal32 value = 0;
        std::memcpy(&value, &bits, sizeof(value));
        return value;
      });
}

ipReal64 BinaryIArchive::readReal64(const std::string& key)
{
  return perform(
      [&]
      {
        const cbor::Head head = readHead();
        if (head.first != cbor::real64)
          raiseUnexpected("a 64-bit float", key, head);
        ipReal64 value = 0;
        std::memcpy(&value, &head.argument, sizeof(value));
        return value;
      });
}

void BinaryIArchive::readString(const std::string& key, std::string& value)
{
  perform(
      [&]
      {
        const cbor::Head head = readHead();
        if ((!head.is(cbor::Major::text) && !head.is(cbor::Major::bytes)) || head.isIndefinite())
          raiseUnexpected("a text", key, head);
        std::string content;
        if (head.is(cbor::Major::text))
          readUtf8(head, content);
        else
          readContent(head, content);
        value.swap(content); // read whole: a failure leaves the old text
      });
}

void BinaryIArchive::close()
{
  perform(
      [this]
      {
        ByteSource& source = _impl->source;
        if (_impl->nbOpenArrays != 0)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eNotFinished);
        const ipUInt64 size = source.getPosition();
        const ipUInt64 hash = source.getHash();
        const cbor::Head head = readHead();
        if (!head.is(cbor::Major::array) || head.isIndefinite())
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnreadItems, describe(head));

        const cbor::Head text = readHead();
        std::string mark;
        if (text.is(cbor::Major::text) && text.argument == endMark.size())
          readUtf8(text, mark);
        if (head.argument != 3 || mark != endMark)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "the end mark is none");
        const cbor::Head filedSize = readHead();
        const cbor::Head filedHash = readHead();
        if (!filedSize.is(cbor::Major::unsignedInteger) || !filedHash.is(cbor::Major::unsignedInteger))
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, "the end mark is none");
        if (filedSize.argument != size || filedHash.argument != hash)
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eHashMismatch);
        _impl->itemPosition = source.getPosition();
        if (source.ensure(1))
          ArchiveAccess::fail(*this, ORVEL_HERE, Message::eBehindEnd);
        markClosed();
      });
}

void BinaryIArchive::openSection(std::string_view /*name*/)
{
  perform([this] { expectArray("a section"); });
}

void BinaryIArchive::closeSection()
{
  if (isFailed() || isClosed())
    return;
  perform([this] { expectArrayEnd("the section"); });
}

void BinaryIArchive::leaveSection()
{
  if (isFailed() || isClosed())
    return;
  perform(
      [this]
      {
        for (ipUInt64 nbOpenArrays = 1; nbOpenArrays != 0;)
        {
          spendWork(1);
          _impl->itemPosition = _impl->source.getPosition();
          skipItem(nbOpenArrays);
        }
        --_impl->nbOpenArrays;
      });
}

/// Skips an item of the format, or the start or the end of one that holds others; nothing else is let pass.
/// Shared objects and classes keep their numbers.
void BinaryIArchive::skipItem(ipUInt64& nbOpenArrays)
{
  const cbor::Head head = readHead();
  if (head.is(cbor::Major::unsignedInteger) || head.is(cbor::Major::negativeInteger))
    return;
  if (head.is(cbor::Major::text) && !head.isIndefinite())
  {
    std::string text;
    readUtf8(head, text);
  }
  else if (head.is(cbor::Major::bytes) && !head.isIndefinite())
  {
    if (_impl->source.skip(head.argument) != head.argument)
      raiseCutShort();
  }
  else if (head.is(cbor::Major::array) && head.isIndefinite())
    ++nbOpenArrays;
  else if (head.is(cbor::Major::tag) && head.argument == cbor::shareableTag)
  {
    expectArray("an object");
    --_impl->nbOpenArrays; // counted here
    ++nbOpenArrays;
    readClass();
    _impl->objects.enter(nullptr);
  }
  else if (head.is(cbor::Major::tag) && head.argument == cbor::referenceTag)
  {
    const cbor::Head number = readHead();
    if (!number.is(cbor::Major::unsignedInteger) || number.argument >= _impl->objects.size())
      ArchiveAccess::fail(*this, ORVEL_HERE, Message::eUnknownReference, describe(number));
  }
  else if (head.first == static_cast<unsigned char>(cbor::closeArray))
    --nbOpenArrays;
  else if (!cbor::isValue(head))
    ArchiveAccess::fail(*this, ORVEL_HERE, Message::eDamaged, describe(head) + " is no item of a section");
}

std::string BinaryIArchive::getPlace() const
{
  return "byte " + std::to_string(_impl->itemPosition);
}

bool BinaryIArchive::holds(ipUInt64 sizeInBytes)
{
  try
  {
    return _impl->source.holds(sizeInBytes);
  }
  catch (const IoFailure& failure)
  {
    raiseReadFailed(failure.what());
  }
  catch (...)
  {
    markFailed(); // part of an item may have been moved
    throw;
  }
}

ipUInt64 BinaryIArchive::getMinItemSize() const
{
  return 1;
}

ipUInt64 BinaryIArchive::getPosition() const
{
  return _impl->source.getPosition();
}

} // namespace orvel
