#pragma once

#include <cstddef>
#include <memory>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// 64-bit XXH3 of a sequence of bytes.
class StreamHash
{
public:
  StreamHash();
  ~StreamHash();
  StreamHash(const StreamHash&) = delete;
  StreamHash& operator=(const StreamHash&) = delete;

  void update(const char* data, std::size_t size);
  ipUInt64 digest() const;

private:
  struct State;
  std::unique_ptr<State> _state;
};

enum class Hashing
{
  none,
  xxh3
};

} // namespace orvel::details
