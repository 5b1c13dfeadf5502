#include "ORVELSerialization/Private/Bytes/ByteSource.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <fcntl.h>
#include <istream>
#include <limits>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include <ORVELSerialization/Private/Bytes/FileDescriptor.h>
#include <ORVELSerialization/Private/Bytes/IoFailure.h>

namespace orvel::details
{

namespace
{

constexpr std::size_t pageSize = 4096;
constexpr std::size_t windowSize = 128UL * 1024; // stays in the second-level cache from read to copy
static_assert(ByteSource::largestReserve <= pageSize && windowSize > 2 * pageSize);

class FileOrigin : public InputOrigin
{
public:
  explicit FileOrigin(const boost::filesystem::path& path)
    : _file(::open(path.c_str(), O_RDONLY | O_CLOEXEC))
  {
    struct stat status = {};
    if (!_file || ::fstat(_file.get(), &status) != 0)
      throw IoFailure::ofErrno(errno);
    if (S_ISDIR(status.st_mode))
      throw IoFailure::ofErrno(EISDIR);
    _isRegular = S_ISREG(status.st_mode);
    _length = static_cast<ipUInt64>(status.st_size);
    if (_isRegular)
      ::posix_fadvise(_file.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
  }

  std::size_t read(char* data, std::size_t size) override
  {
    if (_hasPeeked && size != 0)
    {
      *data = _peeked;
      _hasPeeked = false;
      return 1;
    }
    return readFile(data, size);
  }

  int peek() override
  {
    if (readFile(&_peeked, 1) == 0)
      return -1;
    _hasPeeked = ::lseek(_file.get(), 0, SEEK_SET) < 0; // a pipe does not give it again
    return static_cast<unsigned char>(_peeked);
  }

  bool getLength(ipUInt64& length) const override
  {
    length = _length;
    return _isRegular;
  }

private:
  std::size_t readFile(char* data, std::size_t size)
  {
    for (;;)
    {
      const ssize_t nbRead = ::read(_file.get(), data, size);
      if (nbRead >= 0)
        return static_cast<std::size_t>(nbRead);
      if (errno != EINTR)
        throw IoFailure::ofErrno(errno);
    }
  }

  FileDescriptor _file;
  bool _isRegular = false;
  bool _hasPeeked = false;
  char _peeked = 0;
  ipUInt64 _length = 0;
};

/// Runs an operation of a stream buffer. It is used without its stream, which would catch what it throws
/// (that of a file does so where the system refuses to read).
template <class Operation>
auto guarded(Operation operation)
{
  try
  {
    return operation();
  }
  catch (const std::exception& failure)
  {
    throw IoFailure(failure.what());
  }
}

class StreamOrigin : public InputOrigin
{
public:
  explicit StreamOrigin(std::istream& stream)
    : _buffer(stream.rdbuf())
  {
    if (_buffer == nullptr || !stream)
      throw IoFailure("the stream reports an error");
    guarded([this] { findLength(); });
  }

  std::size_t read(char* data, std::size_t size) override
  {
    return guarded(
        [&] { return static_cast<std::size_t>(_buffer->sgetn(data, static_cast<std::streamsize>(size))); });
  }

  int peek() override
  {
    const auto first = guarded([this] { return _buffer->sgetc(); });
    return first == std::streambuf::traits_type::eof() ? -1 : first;
  }

  bool getLength(ipUInt64& length) const override
  {
    length = _length;
    return _lengthKnown;
  }

private:
  void findLength()
  {
    const std::streamoff here = _buffer->pubseekoff(0, std::ios_base::cur, std::ios_base::in);
    if (here < 0)
      return;
    const std::streamoff last = _buffer->pubseekoff(0, std::ios_base::end, std::ios_base::in);
    if (last < here || _buffer->pubseekpos(here, std::ios_base::in) != std::streampos(here))
      return;
    _length = static_cast<ipUInt64>(last - here);
    _lengthKnown = true;
  }

  std::streambuf* _buffer;
  bool _lengthKnown = false;
  ipUInt64 _length = 0;
};

} // namespace

std::unique_ptr<InputOrigin> makeFileOrigin(const boost::filesystem::path& path)
{
  return std::make_unique<FileOrigin>(path);
}

std::unique_ptr<InputOrigin> makeStreamOrigin(std::istream& stream)
{
  return std::make_unique<StreamOrigin>(stream);
}

ByteSource::ByteSource(std::unique_ptr<InputOrigin> origin, Hashing hashing)
  : _origin(std::move(origin))
  , _hash(hashing == Hashing::xxh3 ? std::make_unique<StreamHash>() : nullptr)
  , _lengthKnown(_origin->getLength(_length))
{
  allocate(windowSize);
}

// One page lies before the base: what is left of the old window goes there, so that reading starts aligned.
void ByteSource::allocate(std::size_t capacity)
{
  std::unique_ptr<char, Free> memory(static_cast<char*>(std::aligned_alloc(pageSize, pageSize + capacity)));
  if (!memory)
    throw std::bad_alloc();
  char* const base = memory.get() + pageSize;
  const std::size_t left = static_cast<std::size_t>(_end - _at);
  if (left != 0)
    std::copy(_at, _end, base);
  _windowPosition = _base == nullptr ? 0 : getPosition();
  _memory = std::move(memory);
  _base = base;
  _capacity = capacity;
  _window = _hashed = _at = base;
  _end = base + left;
}

std::size_t ByteSource::readOrigin(char* data, std::size_t size)
{
  const std::size_t nbRead = _atEnd ? 0 : _origin->read(data, size);
  if (nbRead == 0)
    _atEnd = true;
  return nbRead;
}

void ByteSource::hashTaken()
{
  if (_hash)
    _hash->update(_hashed, static_cast<std::size_t>(_at - _hashed));
  _hashed = _at;
}

bool ByteSource::refill(std::size_t size)
{
  hashTaken();
  const std::size_t left = static_cast<std::size_t>(_end - _at);
  if (left > pageSize) // after a read-ahead; the window has plenty
    return left >= size;
  const ipUInt64 position = getPosition();
  char* const start = _base - left;
  if (left != 0)
    std::copy_backward(_at, _end, _base);
  _window = _hashed = _at = start;
  _windowPosition = position;
  char* end = _base;
  while (static_cast<std::size_t>(end - start) < size)
  {
    const std::size_t nbRead = readOrigin(end, _capacity - static_cast<std::size_t>(end - _base));
    if (nbRead == 0)
      break;
    end += nbRead;
  }
  _end = end;
  return static_cast<std::size_t>(_end - _at) >= size;
}

/// Takes bytes out piece by piece; use(data, size) sees each. \return how many there were
template <class Use>
ipUInt64 ByteSource::takePieces(ipUInt64 size, Use use)
{
  ipUInt64 left = size;
  while (left != 0)
  {
    if (_at == _end && !refill(1))
      break;
    const std::size_t piece = static_cast<std::size_t>(std::min(left, static_cast<ipUInt64>(_end - _at)));
    use(_at, piece);
    _at += piece;
    left -= piece;
  }
  return size - left;
}

ipUInt64 ByteSource::takeInto(char* data, ipUInt64 size)
{
  return takePieces(size, [&data](const char* piece, std::size_t pieceSize)
                    { data = std::copy_n(piece, pieceSize, data); });
}

ipUInt64 ByteSource::skip(ipUInt64 size)
{
  return takePieces(size, [](const char*, std::size_t) {});
}

bool ByteSource::holds(ipUInt64 size)
{
  if (_lengthKnown)
    return getPosition() <= _length && size <= _length - getPosition();
  if (static_cast<ipUInt64>(_end - _at) >= size)
    return true;
  if (size > std::numeric_limits<std::size_t>::max() / 4)
    size = std::numeric_limits<std::size_t>::max() / 4; // the origin ends long before
  readAhead(static_cast<std::size_t>(size));
  return static_cast<ipUInt64>(_end - _at) >= size;
}

// Memory grows with what has really come, never with what is asked for.
void ByteSource::readAhead(std::size_t size)
{
  hashTaken();
  while (static_cast<std::size_t>(_end - _at) < size)
  {
    if (_end == _base + _capacity)
      allocate(
          std::max(windowSize, 2 * ((static_cast<std::size_t>(_end - _at) + pageSize) & ~(pageSize - 1))));
    const std::size_t nbRead =
        readOrigin(const_cast<char*>(_end), static_cast<std::size_t>(_base + _capacity - _end));
    if (nbRead == 0)
      return;
    _end += nbRead;
  }
}

ipUInt64 ByteSource::getHash()
{
  hashTaken();
  return _hash->digest();
}

} // namespace orvel::details
