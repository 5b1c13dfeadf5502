#pragma once

// Where an input archive takes its bytes from: a window over a file or a stream.

#include <cstdlib>
#include <iosfwd>
#include <memory>

#include <boost/filesystem/path.hpp>

#include <ORVELSerialization/Private/Bytes/StreamHash.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// Gives bytes in order. All operations throw IoFailure.
class InputOrigin
{
public:
  virtual ~InputOrigin() = default;

  /// Reads up to size bytes; 0 only at the end.
  virtual std::size_t read(char* data, std::size_t size) = 0;

  /// Returns the first byte, -1 if there is none; reading still begins with it.
  virtual int peek() = 0;

  /// Tells how many bytes there are from the start, where that can be known without reading them.
  virtual bool getLength(ipUInt64& length) const = 0;
};

/// \throw IoFailure if the file cannot be opened
std::unique_ptr<InputOrigin> makeFileOrigin(const boost::filesystem::path& path);

/// A stream that belongs to the caller, from where it stands.
std::unique_ptr<InputOrigin> makeStreamOrigin(std::istream& stream);

/// A window over the bytes of an origin. Counts and hashes what is taken out of it.
class ByteSource
{
public:
  ByteSource(std::unique_ptr<InputOrigin> origin, Hashing hashing);

  const char* begin() const { return _at; } ///< first byte that is not taken yet
  const char* end() const { return _end; }  ///< end of what can be seen without reading

  /// Takes the bytes up to there, a place within the window.
  void take(const char* to) { _at = to; }

  /// Makes that many bytes visible, at most largestReserve of them. \return false if the source ends before
  bool ensure(std::size_t size) { return static_cast<std::size_t>(_end - _at) >= size || refill(size); }

  /// Takes bytes out into memory. \return how many there were: fewer than asked for at the end only
  ipUInt64 takeInto(char* data, ipUInt64 size);

  /// Takes bytes out without a look at them. \return as takeInto()
  ipUInt64 skip(ipUInt64 size);

  /// Tells whether that many bytes are left; where the length is unknown they are read ahead.
  bool holds(ipUInt64 size);

  ipUInt64 getPosition() const { return _windowPosition + static_cast<ipUInt64>(_at - _window); }
  ipUInt64 getHash(); ///< of all bytes taken so far

  static constexpr std::size_t largestReserve = 4096;

private:
  struct Free
  {
    void operator()(char* memory) const { std::free(memory); }
  };

  template <class Use>
  ipUInt64 takePieces(ipUInt64 size, Use use);
  bool refill(std::size_t size);
  void readAhead(std::size_t size);
  std::size_t readOrigin(char* data, std::size_t size);
  void allocate(std::size_t capacity);
  void hashTaken();

  std::unique_ptr<InputOrigin> _origin;
  std::unique_ptr<StreamHash> _hash; // null without hashing
  std::unique_ptr<char, Free> _memory;
  char* _base = nullptr; // page-aligned: the kernel copies into aligned memory at its best speed
  std::size_t _capacity = 0;
  const char* _window = nullptr; // first byte in memory
  const char* _hashed = nullptr; // bytes before it are in the hash
  const char* _at = nullptr;
  const char* _end = nullptr;
  ipUInt64 _windowPosition = 0; // position of _window in the source
  ipUInt64 _length = 0;
  bool _lengthKnown = false;
  bool _atEnd = false;
};

} // namespace orvel::details
