#include "FailingAllocation.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace
{

constexpr std::ptrdiff_t g_never = std::numeric_limits<std::ptrdiff_t>::max();

/// More than any memory has: the sanitizers would end the program instead of answering null.
constexpr std::size_t g_impossible = std::size_t{1} << 46U;

std::atomic<std::ptrdiff_t> g_nbAllowed{g_never};
std::atomic<std::ptrdiff_t> g_nbArraysAllowed{g_never};
std::atomic<std::size_t> g_latestArraySize{0};
std::atomic<std::size_t> g_nbArraysAllocated{0};
std::atomic<std::ptrdiff_t> g_nbBlocksInUse{0};
std::atomic<std::size_t> g_allocatedBytes{0};
std::atomic<int> g_filling{-1}; // -1: none

void failInTurn(std::atomic<std::ptrdiff_t>& nbAllowed)
{
  if (nbAllowed != g_never && nbAllowed-- == 0)
  {
    nbAllowed = g_never;
    throw std::bad_alloc();
  }
}

void* allocate(std::size_t size)
{
  g_allocatedBytes += size;
  failInTurn(g_nbAllowed);
  if (size >= g_impossible)
    throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr)
    throw std::bad_alloc();
  ++g_nbBlocksInUse;
  if (g_filling >= 0)
    std::memset(memory, g_filling, size);
  return memory;
}

void release(void* memory) noexcept
{
  if (memory != nullptr)
    --g_nbBlocksInUse;
  std::free(memory);
}

} // namespace

// The program's own, so that the allocations of the libraries fail too.
void* operator new(std::size_t size)
{
  return allocate(size);
}
void* operator new[](std::size_t size)
{
  g_latestArraySize = size;
  failInTurn(g_nbArraysAllowed);
  ++g_nbArraysAllocated;
  return allocate(size);
}
// Left to the sanitizers, these would hand out memory that the operators below do not know.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
  try
  {
    return operator new(size);
  }
  catch (const std::bad_alloc&)
  {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
  try
  {
    return operator new[](size);
  }
  catch (const std::bad_alloc&)
  {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept
{
  release(memory);
}
void operator delete[](void* memory) noexcept
{
  release(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
  release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
  release(memory);
}

namespace orvel::test
{

void failAllocationAfter(std::size_t nbAllowed)
{
  g_nbAllowed = static_cast<std::ptrdiff_t>(nbAllowed);
}

void failArrayAllocationAfter(std::size_t nbAllowed)
{
  g_nbArraysAllowed = static_cast<std::ptrdiff_t>(nbAllowed);
}

std::size_t getLatestArraySize()
{
  return g_latestArraySize;
}

std::size_t getNbArraysAllocated()
{
  return g_nbArraysAllocated;
}

void failNoAllocation()
{
  g_nbAllowed = g_never;
  g_nbArraysAllowed = g_never;
}

void fillBlocksWith(unsigned char byte)
{
  g_filling = byte;
}

void fillNoBlocks()
{
  g_filling = -1;
}

std::ptrdiff_t getNbBlocksInUse()
{
  return g_nbBlocksInUse;
}

std::size_t getAllocatedBytes()
{
  return g_allocatedBytes;
}

} // namespace orvel::test
