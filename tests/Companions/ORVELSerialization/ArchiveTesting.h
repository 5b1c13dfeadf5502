#pragma once

/// \file
/// \brief What the tests of both concrete archives share: the two formats as types, odd streams, folders.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <streambuf>
#include <string>

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <gtest/gtest.h>

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel::test
{

struct XmlFormat
{
  using OArchive = XmlOArchive;
  using IArchive = XmlIArchive;
  static std::string wrap(const std::string& content) ///< a file with that content
  {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orvelArchive format=\"1\">\n" + content +
           "</orvelArchive>\n";
  }
};

struct BinaryFormat
{
  using OArchive = BinaryOArchive;
  using IArchive = BinaryIArchive;
  static std::string wrap(const std::string& content); ///< a file with that content: header, end mark, hash
};

using Formats = testing::Types<XmlFormat, BinaryFormat>; ///< for tests of both

/// \brief Return the head of a CBOR item in its shortest form.
std::string cborHead(unsigned int majorType, std::uint64_t number);

/// \brief The bytes of a stream that can neither seek nor tell its length; counts what is read.
class UnseekableBuffer : public std::streambuf
{
public:
  explicit UnseekableBuffer(std::string content, std::size_t pieceSize = 1000)
    : _content(std::move(content))
    , _pieceSize(pieceSize)
  {
  }

protected:
  int_type underflow() override
  {
    if (_at == _content.size())
      return traits_type::eof();
    const std::size_t piece = std::min(_pieceSize, _content.size() - _at);
    setg(&_content[_at], &_content[_at], &_content[_at] + piece);
    _at += piece;
    return traits_type::to_int_type(*gptr());
  }

private:
  std::string _content;
  std::size_t _pieceSize;
  std::size_t _at = 0;
};

/// \brief A stream buffer that takes so many bytes and no more.
class FullBuffer : public std::streambuf
{
public:
  explicit FullBuffer(std::size_t room)
    : _room(room)
  {
  }

protected:
  int_type overflow(int_type character) override
  {
    if (_room == 0)
      return traits_type::eof();
    --_room;
    return traits_type::not_eof(character);
  }

private:
  std::size_t _room;
};

/// \brief A folder that goes when the test ends.
class TemporaryFolder
{
public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const boost::filesystem::path& get() const { return _path; }
  boost::filesystem::path operator/(const std::string& name) const { return _path / name; }
  std::size_t countFiles() const;

private:
  boost::filesystem::path _path;
};

/// \brief Return the system's own words for an error number, which are those of the locale.
inline std::string reasonOf(int error)
{
  return std::strerror(error);
}

std::string readBytes(const boost::filesystem::path& path);
void writeBytes(const boost::filesystem::path& path, const std::string& bytes);

/// \brief Return what write(archive) makes, finished.
template <class Format, class Write>
std::string fileBy(Write write)
{
  std::ostringstream stream;
  typename Format::OArchive archive(stream);
  write(static_cast<BaseOArchive&>(archive));
  archive.close();
  return stream.str();
}

/// \brief Call read(archive) on a file, and check that nothing is left.
template <class Format, class Read>
void readWhole(const std::string& file, Read read)
{
  std::istringstream stream(file);
  typename Format::IArchive archive(stream);
  read(static_cast<BaseIArchive&>(archive));
  archive.close();
}

/// \brief Write a value, read it back into a new one. \return the new one
template <class Format, class T>
T throughFile(const T& value)
{
  T copy{};
  readWhole<Format>(fileBy<Format>([&](BaseOArchive& archive) { archive << SerializationOItem("K", value); }),
                    [&](BaseIArchive& archive) { archive >> SerializationIItem("K", copy); });
  return copy;
}

/// \brief Return the file with one shared object under the key "object".
template <class Format>
std::string fileOfObject(const SerializationObjectPtr& object)
{
  return fileBy<Format>(
      [&](BaseOArchive& archive)
      { archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>("object", object)); });
}

/// \brief Read the shared object under the key "object", and check that nothing is left.
template <class Format>
SerializationObjectPtr objectOfFile(const std::string& file, bool untrusted = false)
{
  SerializationObjectPtr object;
  readWhole<Format>(file,
                    [&](BaseIArchive& archive)
                    {
                      archive.setUntrusted(untrusted);
                      archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("object", object));
                    });
  return object;
}

} // namespace orvel::test
