#pragma once

/// \file
/// \brief What the fuzzers do with an archive of either format.

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/Pattern/OffsetXY.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/DataType.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>

namespace orvel::fuzz
{

/// \brief Read a value of type T under a key and drop it.
template <class T>
void readAs(BaseIArchive& archive, const std::string& key)
{
  T value{};
  archive >> SerializationIItem<T>(key, value);
}

inline void readBlock(BaseIArchive& archive, std::size_t size)
{
  std::vector<char> block(size);
  archive.readBlock(block.data(), block.size());
}

/// \brief Read one item; a byte of the script chooses its kind.
inline void readItem(BaseIArchive& archive, std::uint8_t choice, const std::string& key)
{
  switch (choice % 20)
  {
  case 0:
    return readAs<bool>(archive, key);
  case 1:
    return readAs<signed char>(archive, key);
  case 2:
    return readAs<unsigned short>(archive, key);
  case 3:
    return readAs<int>(archive, key);
  case 4:
    return readAs<long>(archive, key);
  case 5:
    return readAs<unsigned long>(archive, key);
  case 6:
    return readAs<float>(archive, key);
  case 7:
    return readAs<double>(archive, key);
  case 8:
    return readAs<std::string>(archive, key);
  case 9:
    return readAs<boost::filesystem::path>(archive, key);
  case 10:
    return readAs<std::vector<bool>>(archive, key);
  case 11:
    return readAs<std::vector<float>>(archive, key);
  case 12:
    return readAs<std::vector<std::string>>(archive, key);
  case 13:
    return readAs<std::vector<std::vector<unsigned char>>>(archive, key);
  case 14:
    return readAs<std::set<OffsetXY>>(archive, key);
  case 15:
    return readAs<std::map<std::string, double>>(archive, key);
  case 16:
    return readAs<std::vector<boost::shared_ptr<ElementsRange>>>(archive, key);
  case 17:
    return readAs<SerializationObjectPtr>(archive, key);
  case 18:
    return readBlock(archive, choice);
  default:
    return readAs<ElementsRange>(archive, key);
  }
}

/// \brief Read the items and sections that the script asks for, then close the archive.
inline void readByScript(BaseIArchive& archive, const std::uint8_t* script, std::size_t size)
{
  static const std::string g_keys[] = {"K", "object", "size", "_startOffset"};
  for (std::size_t i = 0; i < size; ++i)
  {
    const std::string& key = g_keys[script[i] >> 6U];
    if (script[i] % 32 == 31)
    {
      const ArchiveSectionManager section(archive, key);
      return readByScript(archive, script + i + 1, size - i - 1);
    }
    readItem(archive, script[i], key);
  }
  archive.close();
}

/// \brief Run an operation. It may raise the exception of the archives, or that of the library whose object
/// refuses what it reads, such as a buffer of no type.
template <class Operation>
void attempt(Operation operation)
{
  try
  {
    operation();
  }
  catch (const ORVELSerializationException&)
  {
  }
  catch (const ORVELBaseDataException&)
  {
  }
}

/// \brief A stream that can neither seek nor tell its length.
class UnseekableStream : private std::stringbuf, public std::istream
{
public:
  explicit UnseekableStream(const std::string& content)
    : std::stringbuf(content, std::ios::in)
    , std::istream(static_cast<std::stringbuf*>(this))
  {
  }

private:
  pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override
  {
    return pos_type(off_type(-1));
  }
  pos_type seekpos(pos_type, std::ios_base::openmode) override { return pos_type(off_type(-1)); }
};

/// \brief Read an input as an archive in each way.
template <class IArchive>
void readEveryWay(const std::uint8_t* data, std::size_t size)
{
  // One object of any class that is registered, as loadObject does it.
  const std::string whole(reinterpret_cast<const char*>(data), size);
  for (const bool canSeek : {true, false})
    attempt(
        [&]
        {
          std::istringstream seekable(whole);
          UnseekableStream unseekable(whole);
          IArchive archive(canSeek ? static_cast<std::istream&>(seekable) : unseekable);
          archive.setUntrusted(true);
          SerializationObjectPtr object;
          archive.readObjectPtr(SerializationIItem<SerializationObjectPtr>("object", object));
          archive.close();
        });

  // The last bytes are the script.
  constexpr std::size_t scriptSize = 8;
  if (size < scriptSize)
    return;
  const std::string file = whole.substr(0, size - scriptSize);
  attempt(
      [&]
      {
        std::istringstream stream(file);
        IArchive archive(stream);
        archive.setUntrusted(true);
        readByScript(archive, data + size - scriptSize, scriptSize);
      });
}

} // namespace orvel::fuzz
