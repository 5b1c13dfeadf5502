#include "ORVELSerialization/Private/Bytes/ByteSink.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <ostream>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include <boost/filesystem/operations.hpp>

#include <ORVELSerialization/Private/Bytes/FileDescriptor.h>
#include <ORVELSerialization/Private/Bytes/IoFailure.h>

namespace orvel::details
{

namespace
{

constexpr std::size_t bufferSize = 256UL * 1024; // stays in the second-level cache from copy to write

class FileTarget : public OutputTarget
{
public:
  explicit FileTarget(const boost::filesystem::path& path)
    : _path(followLinks(path))
  {
    struct stat existing = {};
    const bool exists = ::stat(_path.c_str(), &existing) == 0;
    if (!exists && errno == ELOOP) // links in a circle: to replace one of them is not what was asked for
      throw IoFailure::ofErrno(errno);
    if (exists && !S_ISREG(existing.st_mode))
    {
      _file = FileDescriptor(::open(_path.c_str(), O_WRONLY | O_CLOEXEC));
      if (!_file)
        throw IoFailure::ofErrno(errno);
      return;
    }
    openTemporary();
    // The new file is to be as readable as the one that it replaces; where that is refused it keeps its own
    // mode.
    if (exists && ::fchmod(_file.get(), existing.st_mode & 07777U) != 0)
      errno = 0;
  }

  ~FileTarget() override
  {
    if (!_temporary.empty())
      ::unlink(_temporary.c_str());
  }
  FileTarget(const FileTarget&) = delete;
  FileTarget& operator=(const FileTarget&) = delete;

  void write(const char* data, std::size_t size) override
  {
    while (size != 0)
    {
      const ssize_t written = ::write(_file.get(), data, size);
      if (written < 0)
      {
        if (errno == EINTR)
          continue;
        throw IoFailure::ofErrno(errno);
      }
      data += written;
      size -= static_cast<std::size_t>(written);
    }
  }

  void finish() override
  {
    if (_temporary.empty()) // a pipe or a device: there is nothing to bring to a disk
    {
      _file.close();
      return;
    }
    // The folder is opened first: if that is refused, the old file still stands.
    const FileDescriptor folder(::open(getFolder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder || ::fsync(_file.get()) != 0)
      throw IoFailure::ofErrno(errno);
    _file.close();
    if (::rename(_temporary.c_str(), _path.c_str()) != 0)
      throw IoFailure::ofErrno(errno);
    _temporary.clear();
    if (::fsync(folder.get()) != 0 && errno != EINVAL) // EINVAL: the file system has no such operation
      throw IoFailure::ofErrno(errno);
  }

private:
  /// The file that a chain of symbolic links leads to, so that links are kept.
  static boost::filesystem::path followLinks(boost::filesystem::path path)
  {
    boost::system::error_code error;
    for (int nbLinks = 0; nbLinks < 40 && boost::filesystem::is_symlink(path, error); ++nbLinks)
    {
      const boost::filesystem::path target = boost::filesystem::read_symlink(path, error);
      if (error)
        break;
      path = target.is_absolute() ? target : path.parent_path() / target;
    }
    return path;
  }

  boost::filesystem::path getFolder() const
  {
    const boost::filesystem::path folder = _path.parent_path();
    return folder.empty() ? boost::filesystem::path(".") : folder;
  }

  void openTemporary()
  {
    std::random_device random;
    const std::string start = "." + _path.filename().native().substr(0, 200) + "."; // names end at 255 bytes
    for (int attempt = 0; attempt < 100; ++attempt)
    {
      boost::filesystem::path name = getFolder() / (start + std::to_string(random()) + ".tmp");
      _file = FileDescriptor(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
      if (_file)
      {
        _temporary.swap(name); // cannot fail, so that no file is left behind
        return;
      }
      if (errno != EEXIST)
        break;
    }
    throw IoFailure::ofErrno(errno);
  }

  boost::filesystem::path _path;
  boost::filesystem::path _temporary; // empty once it has its place, or if there is none
  FileDescriptor _file;
};

class StreamTarget : public OutputTarget
{
public:
  explicit StreamTarget(std::ostream& stream)
    : _stream(stream)
  {
  }

  void write(const char* data, std::size_t size) override
  {
    guarded([&] { _stream.write(data, static_cast<std::streamsize>(size)); });
  }

  void finish() override
  {
    guarded([&] { _stream.flush(); });
  }

private:
  template <class Operation>
  void guarded(Operation operation)
  {
    try
    {
      operation();
    }
    catch (const std::exception& failure) // also what a buffer of the caller's own throws: bytes are lost
    {
      throw IoFailure(failure.what());
    }
    if (!_stream)
      throw IoFailure("the stream reports an error");
  }

  std::ostream& _stream;
};

} // namespace

std::unique_ptr<OutputTarget> makeFileTarget(const boost::filesystem::path& path)
{
  return std::make_unique<FileTarget>(path);
}

std::unique_ptr<OutputTarget> makeStreamTarget(std::ostream& stream)
{
  return std::make_unique<StreamTarget>(stream);
}

ByteSink::ByteSink(std::unique_ptr<OutputTarget> target, Hashing hashing)
  : _target(std::move(target))
  , _hash(hashing == Hashing::xxh3 ? std::make_unique<StreamHash>() : nullptr)
  , _buffer(bufferSize)
  , _at(_buffer.data())
  , _end(_buffer.data() + _buffer.size())
{
}

void ByteSink::writeThrough(const char* data, std::size_t size)
{
  if (_hash)
    _hash->update(data, size);
  _target->write(data, size);
  _flushed += size;
}

void ByteSink::flush()
{
  const std::size_t size = static_cast<std::size_t>(_at - _buffer.data());
  _at = _buffer.data();
  if (size != 0)
    writeThrough(_buffer.data(), size);
}

void ByteSink::appendLarge(const char* data, std::size_t size)
{
  flush();
  while (size >= bufferSize)
  {
    writeThrough(data, bufferSize);
    data += bufferSize;
    size -= bufferSize;
  }
  std::memcpy(_at, data, size);
  _at += size;
}

ipUInt64 ByteSink::getHash()
{
  flush();
  return _hash->digest();
}

void ByteSink::finish()
{
  flush();
  _target->finish();
}

} // namespace orvel::details
