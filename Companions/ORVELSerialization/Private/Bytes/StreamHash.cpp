#include "ORVELSerialization/Private/Bytes/StreamHash.h"

#include <new>

#include <xxhash.h>
#if defined(__x86_64__)
#include <xxh_x86dispatch.h> // after xxhash.h: its macros choose the instruction set at run time
#endif

namespace orvel::details
{

struct StreamHash::State
{
  XXH3_state_t* state = XXH3_createState();

  State()
  {
    if (state == nullptr)
      throw std::bad_alloc();
    XXH3_64bits_reset(state);
  }
  ~State() { XXH3_freeState(state); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
};

StreamHash::StreamHash()
  : _state(std::make_unique<State>())
{
}

StreamHash::~StreamHash() = default;

void StreamHash::update(const char* data, std::size_t size)
{
  XXH3_64bits_update(_state->state, data, size);
}

ipUInt64 StreamHash::digest() const
{
  return XXH3_64bits_digest(_state->state);
}

} // namespace orvel::details
