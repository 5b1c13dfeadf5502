#include "ORVELSerialization/Private/Binary/BinaryReader.h"

#include <utility>

#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Text.h>

namespace orvel::details
{

using Message = eORVELSerializationMessage;

BinaryReader::BinaryReader(std::unique_ptr<InputOrigin> origin)
  : _source(std::move(origin), Hashing::xxh3)
{
}

void BinaryReader::readHeader()
{
  constexpr std::string_view start = "\xd9\xd9\xf7"; // tag 55799
  if (!_source.ensure(start.size()) || std::string_view(_source.begin(), start.size()) != start)
    throw ArchiveFailure(Message::eNotAnArchive, "it doesn't start with the mark of CBOR");
  _source.take(_source.begin() + start.size());

  const ArchiveFailure otherContent(Message::eNotAnArchive, "it is CBOR with other content");
  std::string text;
  const auto readText = [&]
  {
    const cbor::Head head = readHead();
    if (!head.is(cbor::Major::text) || head.isIndefinite() || head.argument > 64)
      throw otherContent;
    readContent(head, text);
  };
  const cbor::Head array = readHead();
  if (!array.is(cbor::Major::array) || array.isIndefinite() || array.argument < 2)
    throw otherContent;
  readText();
  if (text != formatName)
    throw otherContent;
  beginItem();
  const cbor::Head version = readHead();
  if (!version.is(cbor::Major::unsignedInteger))
    throw otherContent;
  if (version.argument != formatVersion || array.argument != 3)
    throw ArchiveFailure(Message::eOtherFormatVersion, std::to_string(version.argument),
                         std::to_string(formatVersion));
  beginItem();
  readText();
  if (text != byteOrder)
    throw ArchiveFailure(Message::eOtherByteOrder, quoted(text), quoted(byteOrder));
}

void BinaryReader::readEnd()
{
  if (_nbOpen != 0)
    throw ArchiveFailure(Message::eNotFinished);
  const ipUInt64 size = _source.getPosition();
  const ipUInt64 hash = _source.getHash();
  const cbor::Head head = readHead();
  if (!head.is(cbor::Major::array) || head.isIndefinite())
    throw ArchiveFailure(Message::eUnreadItems, describe(head));

  const ArchiveFailure noEndMark(Message::eDamaged, "the end mark is none");
  const cbor::Head text = readHead();
  std::string mark;
  if (text.is(cbor::Major::text) && text.argument == endMark.size())
    readContent(text, mark);
  if (head.argument != 3 || mark != endMark)
    throw noEndMark;
  const cbor::Head storedSize = readHead();
  const cbor::Head storedHash = readHead();
  if (!storedSize.is(cbor::Major::unsignedInteger) || !storedHash.is(cbor::Major::unsignedInteger))
    throw noEndMark;
  if (storedSize.argument != size || storedHash.argument != hash)
    throw ArchiveFailure(Message::eHashMismatch);
  beginItem();
  if (_source.ensure(1))
    throw ArchiveFailure(Message::eBehindEnd);
}

cbor::Head BinaryReader::readLastHead()
{
  if (!_source.ensure(cbor::largestHead) && !_source.ensure(1))
    failCutShort();
  cbor::Head head;
  const char* const next = cbor::readHead(_source.begin(), _source.end(), head);
  if (next == nullptr)
    failCutShort();
  if (cbor::isReserved(head))
    failReserved();
  _source.take(next);
  return head;
}

void BinaryReader::failReserved()
{
  throw ArchiveFailure(Message::eDamaged, "there is no such CBOR item");
}

void BinaryReader::failCutShort()
{
  _itemPosition = _source.getPosition() + static_cast<ipUInt64>(_source.end() - _source.begin());
  throw ArchiveFailure(Message::eCutShort);
}

void BinaryReader::failAtArray(const char* place, const char* what)
{
  beginItem();
  throw ArchiveFailure(Message::eUnexpectedItem, std::string(place) + what, describe(readHead()));
}

void BinaryReader::failUnexpected(const char* expected, const std::string& key, const cbor::Head& found)
{
  throw ArchiveFailure(Message::eUnexpectedItem, expected + (" as item " + quoted(key)), describe(found));
}

/// What a head that was just read stands for, for messages.
std::string BinaryReader::describe(const cbor::Head& head)
{
  if (head.is(cbor::Major::array) && !head.isIndefinite() && _source.ensure(1 + endMark.size()) &&
      std::string_view(_source.begin() + 1, endMark.size()) == endMark)
    return "the end of the archive";
  return cbor::describe(head);
}

/// Reads the content of a text or byte string whose head was read.
void BinaryReader::readContent(const cbor::Head& head, std::string& content)
{
  if (!_source.holds(head.argument))
  {
    beginItem();
    throw ArchiveFailure(Message::eCutShort);
  }
  content.resize(head.argument);
  if (_source.takeInto(content.data(), head.argument) != head.argument)
    failCutShort();
  if (head.is(cbor::Major::text) && !isUtf8(content))
    throw ArchiveFailure(Message::eDamaged, "a text string is not UTF-8");
}

void BinaryReader::readBlock(char* data, ipUInt64 sizeInBytes)
{
  const cbor::Head head = readHead();
  if (!head.is(cbor::Major::bytes) || head.isIndefinite() || head.argument != sizeInBytes)
    throw ArchiveFailure(Message::eUnexpectedItem, "a block of " + std::to_string(sizeInBytes) + " bytes",
                         describe(head));
  if (_source.takeInto(data, sizeInBytes) != sizeInBytes)
    failCutShort();
}

void BinaryReader::readString(const std::string& key, std::string& text)
{
  const cbor::Head head = readHead();
  if ((!head.is(cbor::Major::text) && !head.is(cbor::Major::bytes)) || head.isIndefinite())
    failUnexpected("a text", key, head);
  std::string content;
  readContent(head, content);
  text.swap(content);
}

PointerKind BinaryReader::takePointer(const std::string& key, ipUInt64& number)
{
  const cbor::Head head = readHead();
  if (head.first == static_cast<unsigned char>(cbor::null))
    return PointerKind::null;
  if (head.is(cbor::Major::tag) && head.argument == cbor::shareableTag)
    return PointerKind::object;
  if (!head.is(cbor::Major::tag) || head.argument != cbor::referenceTag)
    failUnexpected("an object", key, head);
  const cbor::Head reference = readHead();
  if (!reference.is(cbor::Major::unsignedInteger) || !objects.has(reference.argument))
    failUnknownReference(reference);
  number = reference.argument;
  return PointerKind::reference;
}

ObjectClass& BinaryReader::openPointer()
{
  openArray("an object");
  return readClass();
}

/// Reads the class of an object: a text the first time that it comes, its number after that.
ObjectClass& BinaryReader::readClass()
{
  const cbor::Head head = readHead();
  if (head.is(cbor::Major::unsignedInteger) && head.argument < _classes.size())
    return _classes[head.argument];
  if (!head.is(cbor::Major::text) || head.isIndefinite())
    throw ArchiveFailure(Message::eUnexpectedItem, "a class", describe(head));
  std::string name;
  readContent(head, name);
  return _classes.emplace_back(std::move(name));
}

void BinaryReader::failUnknownReference(const cbor::Head& reference)
{
  throw ArchiveFailure(Message::eUnknownReference, describe(reference));
}

void BinaryReader::skipItem()
{
  const cbor::Head head = readHead();
  if (head.is(cbor::Major::unsignedInteger) || head.is(cbor::Major::negativeInteger) || cbor::isValue(head))
    return;
  if (head.first == static_cast<unsigned char>(cbor::openArray))
    ++_nbOpen;
  else if (head.first == static_cast<unsigned char>(cbor::closeArray))
    --_nbOpen;
  else if (head.is(cbor::Major::text) && !head.isIndefinite())
  {
    std::string text;
    readContent(head, text);
  }
  else if (head.is(cbor::Major::bytes) && !head.isIndefinite())
  {
    if (_source.skip(head.argument) != head.argument)
      failCutShort();
  }
  else if (head.is(cbor::Major::tag) && head.argument == cbor::shareableTag)
  {
    openPointer();
    objects.enter(nullptr);
  }
  else if (head.is(cbor::Major::tag) && head.argument == cbor::referenceTag)
  {
    const cbor::Head reference = readHead();
    if (!reference.is(cbor::Major::unsignedInteger) || reference.argument >= objects.size())
      failUnknownReference(reference);
  }
  else
    throw ArchiveFailure(Message::eDamaged, describe(head) + " is no item of a section");
}

} // namespace orvel::details
