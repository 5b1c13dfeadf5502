#include "ORVELSerialization/XmlArchive.h"

#include <limits>
#include <utility>

#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Bytes/OpenArchive.h>
#include <ORVELSerialization/Private/Xml/NumberText.h>
#include <ORVELSerialization/Private/Xml/XmlReader.h>
#include <ORVELSerialization/Private/Xml/XmlWriter.h>

namespace orvel
{

using namespace details;
using Message = eORVELSerializationMessage;

// Writing

XmlOArchive::XmlOArchive(std::string name, std::unique_ptr<OutputTarget> target, const SourceLocation& here)
  : BaseOArchive(std::move(name))
  , _writer(std::make_unique<XmlWriter>(std::move(target)))
{
  ArchiveAccess::write(*this, here, [this] { _writer->openArchive(); });
}

XmlOArchive::XmlOArchive(const boost::filesystem::path& path)
  : XmlOArchive(path.string(), openFileTarget(path, ORVEL_HERE), ORVEL_HERE)
{
}

XmlOArchive::XmlOArchive(std::ostream& stream)
  : XmlOArchive(streamName, makeStreamTarget(stream), ORVEL_HERE)
{
}

XmlOArchive::~XmlOArchive() = default;

bool XmlOArchive::isElementWise() const
{
  return true;
}

void XmlOArchive::writeBlock(const void* data, ipUInt64 sizeInBytes)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here,
                       [&] { _writer->putBlock(static_cast<const char*>(data), sizeInBytes); });
}

void XmlOArchive::writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::writePointer(*this, g_here, *_writer, item);
}

void XmlOArchive::writeObject(const std::string& key, const BaseSerializationObject& object)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::writeInPlace(*this, g_here, *_writer, key, object);
}

void XmlOArchive::writeBool(const std::string& key, bool value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here, [&] { _writer->putItem(key, value ? "true" : "false"); });
}

void XmlOArchive::writeInteger(const std::string& key, ipInt64 value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  NumberBuffer buffer;
  ArchiveAccess::write(*this, g_here, [&] { _writer->putItem(key, formatNumber(value, buffer)); });
}

void XmlOArchive::writeUnsigned(const std::string& key, ipUInt64 value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  NumberBuffer buffer;
  ArchiveAccess::write(*this, g_here, [&] { _writer->putItem(key, formatNumber(value, buffer)); });
}

void XmlOArchive::writeReal32(const std::string& key, ipReal32 value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  NumberBuffer buffer;
  ArchiveAccess::write(*this, g_here, [&] { _writer->putItem(key, formatNumber(value, buffer)); });
}

void XmlOArchive::writeReal64(const std::string& key, ipReal64 value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  NumberBuffer buffer;
  ArchiveAccess::write(*this, g_here, [&] { _writer->putItem(key, formatNumber(value, buffer)); });
}

void XmlOArchive::writeString(const std::string& key, std::string_view value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here, [&] { _writer->putString(key, value); });
}

void XmlOArchive::close()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here,
                       [this]
                       {
                         if (_writer->getNbOpen() != 1)
                           throw ArchiveFailure(Message::eNotFinished);
                         _writer->closeArchive();
                         _writer->sink.finish();
                         markClosed();
                       });
}

void XmlOArchive::openSection(std::string_view name)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::write(*this, g_here, [&] { _writer->openSection(name); });
}

void XmlOArchive::closeSection()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  if (!isFailed() && !isClosed())
    ArchiveAccess::write(*this, g_here, [this] { _writer->closeSection(); });
}

std::string XmlOArchive::getPlace() const
{
  return "byte " + std::to_string(_writer->sink.getPosition());
}

// Reading

XmlIArchive::XmlIArchive(std::string name, std::unique_ptr<InputOrigin> origin, const SourceLocation& here)
  : BaseIArchive(std::move(name))
  , _reader(std::make_unique<XmlReader>(std::move(origin)))
{
  ArchiveAccess::read(*this, here, *_reader, [this] { _reader->readHeader(); });
}

XmlIArchive::XmlIArchive(const boost::filesystem::path& path)
  : XmlIArchive(path.string(), openFileOrigin(path, ORVEL_HERE), ORVEL_HERE)
{
}

XmlIArchive::XmlIArchive(std::istream& stream)
  : XmlIArchive(streamName, openStreamOrigin(stream, ORVEL_HERE), ORVEL_HERE)
{
}

XmlIArchive::~XmlIArchive() = default;

bool XmlIArchive::isElementWise() const
{
  return true;
}

void XmlIArchive::readBlock(void* data, ipUInt64 sizeInBytes)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::read(*this, g_here, *_reader,
                      [&] { _reader->readBlock(static_cast<char*>(data), sizeInBytes); });
}

void XmlIArchive::readObjectPtr(const SerializationIItem<SerializationObjectPtr>& item)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::readPointer(*this, g_here, *_reader, item);
}

void XmlIArchive::readObject(const std::string& key, BaseSerializationObject& object)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::readInPlace(*this, g_here, *_reader, key, object);
}

void XmlIArchive::releaseObjects() noexcept
{
  _reader->objects.releaseLatest();
}

bool XmlIArchive::readBool(const std::string& key)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  return ArchiveAccess::read(*this, g_here, *_reader, [&] { return _reader->readBool(key); });
}

ipInt64 XmlIArchive::readInteger(const std::string& key, ipInt64 minimum, ipInt64 maximum)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  return ArchiveAccess::read(*this, g_here, *_reader,
                             [&] { return _reader->readNumber(key, minimum, maximum); });
}

ipUInt64 XmlIArchive::readUnsigned(const std::string& key, ipUInt64 maximum)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  return ArchiveAccess::read(*this, g_here, *_reader,
                             [&] { return _reader->readNumber(key, ipUInt64{0}, maximum); });
}

ipReal32 XmlIArchive::readReal32(const std::string& key)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  constexpr ipReal32 infinity = std::numeric_limits<ipReal32>::infinity();
  return ArchiveAccess::read(*this, g_here, *_reader,
                             [&] { return _reader->readNumber(key, -infinity, infinity); });
}

ipReal64 XmlIArchive::readReal64(const std::string& key)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  constexpr ipReal64 infinity = std::numeric_limits<ipReal64>::infinity();
  return ArchiveAccess::read(*this, g_here, *_reader,
                             [&] { return _reader->readNumber(key, -infinity, infinity); });
}

void XmlIArchive::readString(const std::string& key, std::string& value)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::read(*this, g_here, *_reader, [&] { _reader->readString(key, value); });
}

void XmlIArchive::close()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::read(*this, g_here, *_reader,
                      [this]
                      {
                        _reader->document.checkEnd();
                        markClosed();
                      });
}

void XmlIArchive::openSection(std::string_view /*name*/)
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::read(*this, g_here, *_reader, [this] { _reader->openSection(); });
}

void XmlIArchive::closeSection()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  if (!isFailed() && !isClosed())
    ArchiveAccess::read(*this, g_here, *_reader, [this] { _reader->closeSection(); });
}

void XmlIArchive::leaveSection()
{
  static constexpr SourceLocation g_here = ORVEL_HERE;
  ArchiveAccess::skipSection(*this, g_here, *_reader);
}

std::string XmlIArchive::getPlace() const
{
  return _reader->document.getPlace();
}

bool XmlIArchive::holds(ipUInt64 sizeInBytes)
{
  const XmlDocument& document = _reader->document;
  return sizeInBytes <= document.getSize() - document.getNextPosition();
}

ipUInt64 XmlIArchive::getMinItemSize() const
{
  return 19;
}

ipUInt64 XmlIArchive::getPosition() const
{
  return _reader->document.getSize();
}

} // namespace orvel
