// Compiled for processors with AVX2: nothing here may run before getAvailableBlockPaths() has asked for it,
// and no inline function may be called that other sources share.

#include <ORVELBaseData/Buffer/Private/BlockPaths.h>

#if defined(__x86_64__)

#include <immintrin.h>

#include <ORVELBaseData/Buffer/Private/VectorLoops.h>

namespace orvel::details
{

namespace
{

struct Avx2
{
  using Vector = __m256i;

  static void store(char* dst, Vector vector) { _mm256_storeu_si256(reinterpret_cast<Vector*>(dst), vector); }
  static void stream(char* dst, Vector vector)
  {
    _mm256_stream_si256(reinterpret_cast<Vector*>(dst), vector);
  }
  static void finishStreaming() { _mm_sfence(); }
  static const BlockPath& getNarrowerPath() { return g_sse2Path; }
  static Vector repeat(ipUInt64 pattern) { return _mm256_set1_epi64x(static_cast<long long>(pattern)); }

  template <ipUInt64 SIZE>
  static Vector loadReversed(const char* src)
  {
    // The halves change places while they are loaded, which costs nothing; instructions that move elements
    // from one half of a vector to the other are slow.
    const auto* const halves = reinterpret_cast<const __m128i*>(src);
    const Vector v = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(halves + 1)),
                                             _mm_loadu_si128(halves), 1);
    if constexpr (SIZE == 1)
      return _mm256_shuffle_epi8(v, _mm256_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0, //
                                                     15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0));
    else if constexpr (SIZE == 2)
      return _mm256_shuffle_epi8(v, _mm256_setr_epi8(14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1, //
                                                     14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1));
    else if constexpr (SIZE == 4)
      return _mm256_shuffle_epi32(v, 0x1B);
    else
      return _mm256_shuffle_epi32(v, 0x4E);
  }
};

using Loops = VectorLoops<Avx2>;

} // namespace

const BlockPath g_avx2Path = {"AVX2",           Loops::mirror<1>, Loops::mirror<2>,
                              Loops::mirror<4>, Loops::mirror<8>, Loops::fill};

} // namespace orvel::details

#endif
