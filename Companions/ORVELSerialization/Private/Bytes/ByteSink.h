#pragma once

// Where an output archive puts its bytes: a buffer before a file or a stream.

#include <cstring>
#include <iosfwd>
#include <memory>
#include <string_view>
#include <vector>

#include <boost/filesystem/path.hpp>

#include <ORVELSerialization/Private/Bytes/StreamHash.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// Takes bytes to their place. All operations throw IoFailure.
class OutputTarget
{
public:
  virtual ~OutputTarget() = default;
  virtual void write(const char* data, std::size_t size) = 0;
  virtual void finish() = 0; ///< makes what was written lasting and visible
};

/// A file that replaces the one of that name when it is finished, and leaves no trace if it is not. What is
/// no regular file (a pipe, a device) is written to directly.
/// \throw IoFailure if it cannot be opened
std::unique_ptr<OutputTarget> makeFileTarget(const boost::filesystem::path& path);

/// A stream that belongs to the caller.
std::unique_ptr<OutputTarget> makeStreamTarget(std::ostream& stream);

/// Buffers bytes, counts and hashes them. Failures come as IoFailure.
class ByteSink
{
public:
  ByteSink(std::unique_ptr<OutputTarget> target, Hashing hashing);

  /// Returns room for that many bytes, at most largestReserve; advance() tells how many were used.
  char* reserve(std::size_t size)
  {
    if (static_cast<std::size_t>(_end - _at) < size)
      flush();
    return _at;
  }
  void advance(char* to) { _at = to; }

  void put(char byte)
  {
    *reserve(1) = byte;
    ++_at;
  }
  template <std::size_t N>
  void append(const char (&literal)[N]) ///< a copy of constant size
  {
    std::memcpy(reserve(N - 1), literal, N - 1);
    _at += N - 1;
  }
  void append(std::string_view text) { append(text.data(), text.size()); }
  void append(const char* data, std::size_t size)
  {
    if (size <= static_cast<std::size_t>(_end - _at))
    {
      if (size != 0)
        std::memcpy(_at, data, size);
      _at += size;
    }
    else
      appendLarge(data, size);
  }

  ipUInt64 getPosition() const { return _flushed + static_cast<ipUInt64>(_at - _buffer.data()); }
  ipUInt64 getHash(); ///< of all bytes so far
  void finish();      ///< empties the buffer and finishes the target

  static constexpr std::size_t largestReserve = 4096;

private:
  void flush();
  void appendLarge(const char* data, std::size_t size);
  void writeThrough(const char* data, std::size_t size);

  std::unique_ptr<OutputTarget> _target;
  std::unique_ptr<StreamHash> _hash; // null without hashing
  std::vector<char> _buffer;
  char* _at;
  char* _end;
  ipUInt64 _flushed = 0; // bytes that have left the buffer
};

} // namespace orvel::details
