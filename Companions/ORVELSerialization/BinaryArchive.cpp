#include "ORVELSerialization/BinaryArchive.h"

#include <cstring>
#include <limits>
#include <utility>

#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Binary/BinaryReader.h>
#include <ORVELSerialization/Private/Binary/BinaryWriter.h>
#include <ORVELSerialization/Private/Bytes/OpenArchive.h>
#include <ORVELSerialization/Private/Text.h>

namespace orvel
{

using namespace details;
using Message = eORVELSerializationMessage;

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the byte order that the format names");

namespace
{

[[noreturn]] void failOutOfRange(const cbor::Head& head, const std::string& key, const std::string& minimum,
                                 const std::string& maximum)
{
  throw ArchiveFailure(Message::eValueOutOfRange, cbor::integerText(head), quoted(key), minimum, maximum);
}

} // namespace

// Writing

BinaryOArchive::BinaryOArchive(std::string name, std::unique_ptr<OutputTarget> target,
                               const SourceLocation& here)
  : BaseOArchive(std::move(name))
  , _writer(std::make_unique<BinaryWriter>(std::move(target)))
{
  ArchiveAccess::write(*this, here,
                       [this]
                       {
                         _writer->putHead(cbor::Major::tag, cbor::selfDescribedTag);
                         _writer->putHead(cbor::Major::array, 3);
                         _writer->putString(cbor::Major::text, BinaryReader::formatName);
                         _writer->putHead(cbor::Major::unsignedInteger, BinaryReader::formatVersion);
                         _writer->putString(cbor::Major::text, BinaryReader::byteOrder);
                       });
}

BinaryOArchive::BinaryOArchive(const boost::filesystem::path& path)
  : BinaryOArchive(path.string(), openFileTarget(path, ORVEL_HERE), ORVEL_HERE)
{
}

BinaryOArchive::BinaryOArchive(std::ostream& stream)
  : BinaryOArchive(streamName, makeStreamTarget(stream), ORVEL_HERE)
{
}

BinaryOArchive::~BinaryOArchive() = default;

bool BinaryOArchive::isElementWise() const
{
  return false;
}

void BinaryOArchive::writeBlock(const void* data, ipUInt64 sizeInBytes)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(
      *this, g_here,
      [&] {
        _writer->putString(cbor::Major::bytes, {static_cast<const char*>(data), sizeInBytes});
      });
}

void BinaryOArchive::writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::writePointer(*this, g_here, *_writer, item);
}

void BinaryOArchive::writeObject(const std::string& key, const BaseSerializationObject& object)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::writeInPlace(*this, g_here, *_writer, key, object);
}

void BinaryOArchive::writeBool(const std::string& /*key*/, bool value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here, [&] { _writer->sink.put(value ? cbor::boolTrue : cbor::boolFalse); });
}

void BinaryOArchive::writeInteger(const std::string& /*key*/, ipInt64 value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here,
                       [&]
                       {
                         const auto bits = static_cast<ipUInt64>(value);
                         if (value >= 0)
                           _writer->putHead(cbor::Major::unsignedInteger, bits);
                         else
                           _writer->putHead(cbor::Major::negativeInteger, ~bits); // -1 - value
                       });
}

void BinaryOArchive::writeUnsigned(const std::string& /*key*/, ipUInt64 value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here, [&] { _writer->putHead(cbor::Major::unsignedInteger, value); });
}

void BinaryOArchive::writeReal32(const std::string& /*key*/, ipReal32 value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ipUInt32 bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  ArchiveAccess::write(*this, g_here,
                       [&]
                       {
                         ByteSink& sink = _writer->sink;
                         sink.advance(cbor::putReal32(sink.reserve(cbor::largestHead), bits));
                       });
}

void BinaryOArchive::writeReal64(const std::string& /*key*/, ipReal64 value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ipUInt64 bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  ArchiveAccess::write(*this, g_here,
                       [&]
                       {
                         ByteSink& sink = _writer->sink;
                         sink.advance(cbor::putReal64(sink.reserve(cbor::largestHead), bits));
                       });
}

void BinaryOArchive::writeString(const std::string& /*key*/, std::string_view value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(
      *this, g_here,
      [&] { _writer->putString(isUtf8(value) ? cbor::Major::text : cbor::Major::bytes, value); });
}

void BinaryOArchive::close()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here,
                       [this]
                       {
                         if (_writer->getNbOpen() != 0)
                           throw ArchiveFailure(Message::eNotFinished);
                         const ipUInt64 size = _writer->sink.getPosition();
                         const ipUInt64 hash = _writer->sink.getHash();
                         _writer->putHead(cbor::Major::array, 3);
                         _writer->putString(cbor::Major::text, BinaryReader::endMark);
                         _writer->putHead(cbor::Major::unsignedInteger, size);
                         _writer->putHead(cbor::Major::unsignedInteger, hash);
                         _writer->sink.finish();
                         markClosed();
                       });
}

void BinaryOArchive::openSection(std::string_view /*name*/)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here, [this] { _writer->openArray(); });
}

void BinaryOArchive::closeSection()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  if (!isFailed() && !isClosed())
    ArchiveAccess::write(*this, g_here, [this] { _writer->closeArray(); });
}

std::string BinaryOArchive::getPlace() const
{
  return "byte " + std::to_string(_writer->sink.getPosition());
}

// Reading

BinaryIArchive::BinaryIArchive(std::string name, std::unique_ptr<InputOrigin> origin,
                               const SourceLocation& here)
  : BaseIArchive(std::move(name))
  , _reader(std::make_unique<BinaryReader>(std::move(origin)))
{
  ArchiveAccess::read(*this, here, *_reader, [this] { _reader->readHeader(); });
}

BinaryIArchive::BinaryIArchive(const boost::filesystem::path& path)
  : BinaryIArchive(path.string(), openFileOrigin(path, ORVEL_HERE), ORVEL_HERE)
{
}

BinaryIArchive::BinaryIArchive(std::istream& stream)
  : BinaryIArchive(streamName, openStreamOrigin(stream, ORVEL_HERE), ORVEL_HERE)
{
}

BinaryIArchive::~BinaryIArchive() = default;

bool BinaryIArchive::isElementWise() const
{
  return false;
}

void BinaryIArchive::readBlock(void* data, ipUInt64 sizeInBytes)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::read(*this, g_here, *_reader,
                      [&] { _reader->readBlock(static_cast<char*>(data), sizeInBytes); });
}

void BinaryIArchive::readObjectPtr(const SerializationIItem<SerializationObjectPtr>& item)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::readPointer(*this, g_here, *_reader, item);
}

void BinaryIArchive::readObject(const std::string& key, BaseSerializationObject& object)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::readInPlace(*this, g_here, *_reader, key, object);
}

void BinaryIArchive::releaseObjects() noexcept
{
  _reader->objects.releaseLatest();
}

bool BinaryIArchive::readBool(const std::string& key)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  return ArchiveAccess::read(*this, g_here, *_reader,
                             [&]
                             {
                               const cbor::Head head = _reader->readHead();
                               const char first = static_cast<char>(head.first);
                               if (first != cbor::boolTrue && first != cbor::boolFalse)
                                 _reader->failUnexpected("a boolean", key, head);
                               return first == cbor::boolTrue;
                             });
}

ipInt64 BinaryIArchive::readInteger(const std::string& key, ipInt64 minimum, ipInt64 maximum)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  return ArchiveAccess::read(
      *this, g_here, *_reader,
      [&]
      {
        const cbor::Head head = _reader->readHead();
        const bool isNegative = head.is(cbor::Major::negativeInteger);
        if (!isNegative && !head.is(cbor::Major::unsignedInteger))
          _reader->failUnexpected("an integer", key, head);
        // The number is argument or -1 - argument: both fit if the argument fits a signed number.
        const auto value = static_cast<ipInt64>(isNegative ? ~head.argument : head.argument);
        if (head.argument > static_cast<ipUInt64>(std::numeric_limits<ipInt64>::max()) || value < minimum ||
            value > maximum)
          failOutOfRange(head, key, std::to_string(minimum), std::to_string(maximum));
        return value;
      });
}

ipUInt64 BinaryIArchive::readUnsigned(const std::string& key, ipUInt64 maximum)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  return ArchiveAccess::read(*this, g_here, *_reader,
                             [&]
                             {
                               const cbor::Head head = _reader->readHead();
                               if (!head.is(cbor::Major::unsignedInteger) &&
                                   !head.is(cbor::Major::negativeInteger))
                                 _reader->failUnexpected("an integer", key, head);
                               if (head.is(cbor::Major::negativeInteger) || head.argument > maximum)
                                 failOutOfRange(head, key, "0", std::to_string(maximum));
                               return head.argument;
                             });
}

ipReal32 BinaryIArchive::readReal32(const std::string& key)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  return ArchiveAccess::read(*this, g_here, *_reader,
                             [&]
                             {
                               const cbor::Head head = _reader->readHead();
                               if (head.first != cbor::real32)
                                 _reader->failUnexpected("a 32-bit float", key, head);
                               const auto bits = static_cast<ipUInt32>(head.argument);
                               ipReal32 value = 0;
                               std::memcpy(&value, &bits, sizeof(value));
                               return value;
                             });
}

ipReal64 BinaryIArchive::readReal64(const std::string& key)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  return ArchiveAccess::read(*this, g_here, *_reader,
                             [&]
                             {
                               const cbor::Head head = _reader->readHead();
                               if (head.first != cbor::real64)
                                 _reader->failUnexpected("a 64-bit float", key, head);
                               ipReal64 value = 0;
                               std::memcpy(&value, &head.argument, sizeof(value));
                               return value;
                             });
}

void BinaryIArchive::readString(const std::string& key, std::string& value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::read(*this, g_here, *_reader, [&] { _reader->readString(key, value); });
}

void BinaryIArchive::close()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::read(*this, g_here, *_reader,
                      [this]
                      {
                        _reader->readEnd();
                        markClosed();
                      });
}

void BinaryIArchive::openSection(std::string_view /*name*/)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::read(*this, g_here, *_reader, [this] { _reader->openArray("a section"); });
}

void BinaryIArchive::closeSection()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  if (!isFailed() && !isClosed())
    ArchiveAccess::read(*this, g_here, *_reader, [this] { _reader->closeArray("the section"); });
}

void BinaryIArchive::leaveSection()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::skipSection(*this, g_here, *_reader);
}

std::string BinaryIArchive::getPlace() const
{
  return "byte " + std::to_string(_reader->getItemPosition());
}

bool BinaryIArchive::holds(ipUInt64 sizeInBytes)
{
  return _reader->holds(sizeInBytes);
}

ipUInt64 BinaryIArchive::getMinItemSize() const
{
  return 1;
}

ipUInt64 BinaryIArchive::getPosition() const
{
  return _reader->getPosition();
}

} // namespace orvel
