#include "ORVELBaseData/Buffer/Private/BlockPaths.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <unistd.h>
#if defined(__x86_64__)
#include <emmintrin.h>
#endif

#include <ORVELBaseData/Buffer/Private/VectorLoops.h>

namespace orvel::details
{

namespace
{

/// Moves the elements through bytes: they may lie at any address.
template <ipUInt64 SIZE>
void mirrorInOrder(char* dst, ipUInt64 nbElements, const char* src)
{
  char element[SIZE];
  for (char* out = dst + nbElements * SIZE; out != dst; src += SIZE)
  {
    out -= SIZE;
    std::memcpy(element, src, SIZE);
    std::memcpy(out, element, SIZE);
  }
}

template <ipUInt64 SIZE>
void mirrorPlainly(void* dst, ipUInt64 nbElements, const void* src, ipUInt64 /*streamFrom*/)
{
  mirrorInOrder<SIZE>(static_cast<char*>(dst), nbElements, static_cast<const char*>(src));
}

void fillPlainly(void* dst, ipUInt64 sizeInBytes, ipUInt64 pattern, ipUInt64 /*streamFrom*/)
{
  auto* out = static_cast<char*>(dst);
  for (; sizeInBytes >= sizeof(pattern); sizeInBytes -= sizeof(pattern), out += sizeof(pattern))
    std::memcpy(out, &pattern, sizeof(pattern));
  if (sizeInBytes != 0)
    std::memcpy(out, &pattern, sizeInBytes);
}

#if defined(__x86_64__)

struct Sse2
{
  using Vector = __m128i;

  static void store(char* dst, Vector vector) { _mm_storeu_si128(reinterpret_cast<Vector*>(dst), vector); }
  static void stream(char* dst, Vector vector) { _mm_stream_si128(reinterpret_cast<Vector*>(dst), vector); }
  static void finishStreaming() { _mm_sfence(); }
  static const BlockPath& getNarrowerPath() { return g_plainPath; }
  static Vector repeat(ipUInt64 pattern) { return _mm_set1_epi64x(static_cast<long long>(pattern)); }

  template <ipUInt64 SIZE>
  static Vector loadReversed(const char* src)
  {
    return reverse<SIZE>(_mm_loadu_si128(reinterpret_cast<const Vector*>(src)));
  }

private:
  template <ipUInt64 SIZE>
  static Vector reverse(Vector v)
  {
    constexpr int reversed = 0x1B;
    constexpr int swappedHalves = 0x4E;
    if constexpr (SIZE == 1) // the bytes of each word change places, then the words
      return reverse<2>(_mm_or_si128(_mm_slli_epi16(v, 8), _mm_srli_epi16(v, 8)));
    else if constexpr (SIZE == 2)
      return _mm_shuffle_epi32(_mm_shufflehi_epi16(_mm_shufflelo_epi16(v, reversed), reversed),
                               swappedHalves);
    else if constexpr (SIZE == 4)
      return _mm_shuffle_epi32(v, reversed);
    else
      return _mm_shuffle_epi32(v, swappedHalves);
  }
};

using Sse2Loops = VectorLoops<Sse2>;

bool hasAvx2()
{
  __builtin_cpu_init(); // this may run while the library is being loaded
  return __builtin_cpu_supports("avx2") != 0;
}

#endif

/// What the cache that the cores share offers to one of them. The system may tell that of a whole machine of
/// which a guest has a share, and of processors whose cores reach a part of it only: here it is limited to
/// what common processors give. Writing past the caches too late costs less than too early.
ipUInt64 findUsableCacheSize()
{
  constexpr ipUInt64 limit = 32UL << 20U;
#if defined(_SC_LEVEL3_CACHE_SIZE)
  const long size = sysconf(_SC_LEVEL3_CACHE_SIZE); // 0 or -1 if it is not known
  if (size > 0)
    return std::min(static_cast<ipUInt64>(size), limit);
#endif
  return limit;
}

const BlockPath& findFastestPath()
{
#if defined(__x86_64__)
  return hasAvx2() ? g_avx2Path : g_sse2Path;
#else
  return g_plainPath;
#endif
}

} // namespace

const BlockPath g_plainPath = {"plain",          mirrorPlainly<1>, mirrorPlainly<2>,
                               mirrorPlainly<4>, mirrorPlainly<8>, fillPlainly};

#if defined(__x86_64__)
const BlockPath g_sse2Path = {
    "SSE2",         Sse2Loops::mirror<1>, Sse2Loops::mirror<2>, Sse2Loops::mirror<4>, Sse2Loops::mirror<8>,
    Sse2Loops::fill};
#endif

std::vector<const BlockPath*> getAvailableBlockPaths()
{
  std::vector<const BlockPath*> paths = {&g_plainPath};
#if defined(__x86_64__)
  paths.push_back(&g_sse2Path);
  if (hasAvx2())
    paths.push_back(&g_avx2Path);
#endif
  return paths;
}

const BlockPath& getFastestBlockPath()
{
  // Threads that come at the same time all find the same: there is nothing to order.
  static std::atomic<const BlockPath*> g_path{nullptr};
  const BlockPath* path = g_path.load(std::memory_order_relaxed);
  if (path == nullptr)
  {
    path = &findFastestPath();
    g_path.store(path, std::memory_order_relaxed);
  }
  return *path;
}

ipUInt64 getUsableCacheSize()
{
  static std::atomic<ipUInt64> g_size{0};
  ipUInt64 size = g_size.load(std::memory_order_relaxed);
  if (size == 0)
  {
    size = findUsableCacheSize();
    g_size.store(size, std::memory_order_relaxed);
  }
  return size;
}

void mirrorInOrder(void* dst, ipUInt64 elementSizeInBytes, ipUInt64 nbElements, const void* src)
{
  auto* const out = static_cast<char*>(dst);
  const auto* const in = static_cast<const char*>(src);
  switch (elementSizeInBytes)
  {
  case 1:
    return mirrorInOrder<1>(out, nbElements, in);
  case 2:
    return mirrorInOrder<2>(out, nbElements, in);
  case 4:
    return mirrorInOrder<4>(out, nbElements, in);
  default:
    return mirrorInOrder<8>(out, nbElements, in);
  }
}

} // namespace orvel::details
