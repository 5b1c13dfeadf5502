#pragma once

// A file descriptor that closes itself.

#include <unistd.h>
#include <utility>

namespace orvel::details
{

class FileDescriptor
{
public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) ///< -1 for none
    : _descriptor(descriptor)
  {
  }
  ~FileDescriptor() { close(); }
  FileDescriptor(FileDescriptor&& other) noexcept
    : _descriptor(std::exchange(other._descriptor, -1))
  {
  }
  FileDescriptor& operator=(FileDescriptor&& other) noexcept
  {
    std::swap(_descriptor, other._descriptor);
    return *this;
  }

  explicit operator bool() const { return _descriptor >= 0; }
  int get() const { return _descriptor; }

  void close()
  {
    if (_descriptor >= 0)
      ::close(std::exchange(_descriptor, -1));
  }

private:
  int _descriptor = -1;
};

} // namespace orvel::details
