#include "ArchiveTesting.h"

#define XXH_INLINE_ALL
#include <fstream>
#include <iterator>

#include <xxhash.h>

namespace orvel::test
{

std::string cborHead(unsigned int majorType, std::uint64_t number)
{
  const auto start = [majorType](unsigned int size)
  {
    return std::string(1, static_cast<char>(majorType << 5 | size));
  };
  if (number < 24)
    return start(static_cast<unsigned int>(number));
  const unsigned int log2 = number <= 0xFF ? 0 : number <= 0xFFFF ? 1 : number <= 0xFFFFFFFF ? 2 : 3;
  std::string bytes = start(24 + log2);
  for (int shift = 8 * (1 << log2) - 8; shift >= 0; shift -= 8)
    bytes += static_cast<char>(static_cast<unsigned char>(number >> shift));
  return bytes;
}

std::string BinaryFormat::wrap(const std::string& content)
{
  const std::string start = std::string("\xD9\xD9\xF7\x83\x65ORVEL\x01\x66little") + content;
  return start + "\x83\x63" + "end" + cborHead(0, start.size()) +
         cborHead(0, XXH3_64bits(start.data(), start.size()));
}

TemporaryFolder::TemporaryFolder()
  : _path(boost::filesystem::temp_directory_path() /
          boost::filesystem::unique_path("orvel-test-%%%%-%%%%-%%%%"))
{
  boost::filesystem::create_directories(_path);
}

TemporaryFolder::~TemporaryFolder()
{
  boost::system::error_code error;
  boost::filesystem::remove_all(_path, error);
}

std::size_t TemporaryFolder::countFiles() const
{
  return static_cast<std::size_t>(
      std::distance(boost::filesystem::directory_iterator(_path), boost::filesystem::directory_iterator()));
}

std::string readBytes(const boost::filesystem::path& path)
{
  std::ifstream stream(path.string(), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

void writeBytes(const boost::filesystem::path& path, const std::string& bytes)
{
  std::ofstream(path.string(), std::ios::binary) << bytes;
}

} // namespace orvel::test
