#pragma once

/// \file
/// \brief The loops that the instruction sets of x86-64 share.

#include <cstdint>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief Mirror and fill with the vectors of an instruction set.
///
/// InstructionSet is a class of an unnamed namespace, so that what is compiled here for one processor is
/// never taken by the linker for another one; for the same reason nothing inline of the standard library is
/// called. It has
///  - `Vector`, with sizeof(Vector) a power of 2;
///  - `loadReversed<SIZE>(address)`, the vector at any address with its elements of SIZE bytes in reverse
///    order;
///  - `store(address, vector)` at any address, `stream(address, vector)` at a multiple of the vector's size,
///    past the caches, and `finishStreaming()` to be called after the last of those;
///  - `repeat(pattern)`, the vector that holds the 8 bytes again and again;
///  - `getNarrowerPath()`, the path for runs that are shorter than one vector.
template <class InstructionSet>
class VectorLoops
{
public:
  /// \brief As MirrorFunction, for elements of SIZE bytes.
  template <ipUInt64 SIZE>
  static void mirror(void* dst, ipUInt64 nbElements, const void* src, ipUInt64 streamFrom)
  {
    const ipUInt64 size = nbElements * SIZE;
    if (size < vectorSize)
    {
      const auto& narrower = InstructionSet::getNarrowerPath();
      const auto function = SIZE == 1   ? narrower.mirror1
                            : SIZE == 2 ? narrower.mirror2
                            : SIZE == 4 ? narrower.mirror4
                                        : narrower.mirror8;
      function(dst, nbElements, src, streamFrom);
      return;
    }
    auto* const begin = static_cast<char*>(dst);
    const auto* const in = static_cast<const char*>(src);

    // The vectors at both ends may overlap those between them: they write the same bytes once more.
    mirrorVector<SIZE, Stores::cached>(begin + size - vectorSize, in);
    mirrorVector<SIZE, Stores::cached>(begin, in + size - vectorSize);

    // From here the end of what is to be written is a multiple of the vector's size, unless that falls within
    // an element.
    const ipUInt64 rest = getAddress(begin + size) % vectorSize;
    if (rest % SIZE != 0)
      mirrorVectors<SIZE, Stores::cached>(begin, size, in);
    else if (size < streamFrom)
      mirrorVectors<SIZE, Stores::cached>(begin, size - rest, in + rest);
    else
    {
      streamMirrored<SIZE>(begin, size - rest, in + rest);
      InstructionSet::finishStreaming();
    }
  }

  /// \brief As FillFunction.
  static void fill(void* dst, ipUInt64 sizeInBytes, ipUInt64 pattern, ipUInt64 streamFrom)
  {
    if (sizeInBytes < vectorSize)
    {
      InstructionSet::getNarrowerPath().fill(dst, sizeInBytes, pattern, streamFrom);
      return;
    }
    auto* const begin = static_cast<char*>(dst);

    // As above, the vectors at both ends may overlap the others.
    const ipUInt64 last = sizeInBytes - vectorSize;
    InstructionSet::store(begin, InstructionSet::repeat(pattern));
    InstructionSet::store(begin + last, InstructionSet::repeat(rotate(pattern, last)));

    const ipUInt64 start = vectorSize - getAddress(begin) % vectorSize;
    const Vector vector = InstructionSet::repeat(rotate(pattern, start));
    if (sizeInBytes < streamFrom)
      fillVectors<Stores::cached>(begin + start, sizeInBytes - start, vector);
    else
    {
      fillVectors<Stores::streaming>(begin + start, sizeInBytes - start, vector);
      InstructionSet::finishStreaming();
    }
  }

private:
  using Vector = typename InstructionSet::Vector;
  static constexpr ipUInt64 vectorSize = sizeof(Vector);

  enum class Stores
  {
    cached,
    streaming
  };

  static ipUInt64 getAddress(const char* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }

  /// The pattern as it goes on after so many bytes; the first byte in memory is the lowest of the number.
  static ipUInt64 rotate(ipUInt64 pattern, ipUInt64 nbBytes)
  {
    const ipUInt64 nbBits = nbBytes % sizeof(pattern) * 8;
    return pattern >> nbBits | pattern << (64 - nbBits) % 64;
  }

  template <Stores STORES>
  static void put(char* dst, Vector vector)
  {
    if constexpr (STORES == Stores::streaming)
      InstructionSet::stream(dst, vector);
    else
      InstructionSet::store(dst, vector);
  }

  template <ipUInt64 SIZE, Stores STORES>
  static void mirrorVector(char* dst, const char* src)
  {
    put<STORES>(dst, InstructionSet::template loadReversed<SIZE>(src));
  }

  /// Mirrors whole vectors, as many as there are in size bytes, to the end of the destination.
  template <ipUInt64 SIZE, Stores STORES>
  static void mirrorVectors(char* dst, ipUInt64 size, const char* src)
  {
    for (; size >= 4 * vectorSize; size -= 4 * vectorSize, src += 4 * vectorSize)
    {
      // Spelt out: a compiler at -O2 does not unroll.
      char* const out = dst + size;
      mirrorVector<SIZE, STORES>(out - vectorSize, src);
      mirrorVector<SIZE, STORES>(out - 2 * vectorSize, src + vectorSize);
      mirrorVector<SIZE, STORES>(out - 3 * vectorSize, src + 2 * vectorSize);
      mirrorVector<SIZE, STORES>(out - 4 * vectorSize, src + 3 * vectorSize);
    }
    for (; size >= vectorSize; size -= vectorSize, src += vectorSize)
      mirrorVector<SIZE, STORES>(dst + size - vectorSize, src);
  }

  /// The same past the caches, at several places in turn. The processor then fetches for one place while it
  /// works on another one: reading from memory, which all waits for, gains a quarter and more by that.
  template <ipUInt64 SIZE>
  static void streamMirrored(char* dst, ipUInt64 size, const char* src)
  {
    constexpr ipUInt64 nbPlaces = 4;
    constexpr ipUInt64 pieceSize = 512; // whole vectors of every instruction set
    const ipUInt64 stretch = size / (nbPlaces * pieceSize) * pieceSize;
    for (ipUInt64 offset = 0; offset < stretch; offset += pieceSize)
      for (ipUInt64 start = offset; start < nbPlaces * stretch; start += stretch)
        mirrorVectors<SIZE, Stores::streaming>(dst + size - start - pieceSize, pieceSize, src + start);
    mirrorVectors<SIZE, Stores::streaming>(dst, size - nbPlaces * stretch, src + nbPlaces * stretch);
  }

  /// Stores whole vectors, as many as there are in size bytes.
  template <Stores STORES>
  static void fillVectors(char* dst, ipUInt64 size, Vector vector)
  {
    for (; size >= 4 * vectorSize; size -= 4 * vectorSize, dst += 4 * vectorSize)
    {
      put<STORES>(dst, vector);
      put<STORES>(dst + vectorSize, vector);
      put<STORES>(dst + 2 * vectorSize, vector);
      put<STORES>(dst + 3 * vectorSize, vector);
    }
    for (; size >= vectorSize; size -= vectorSize, dst += vectorSize)
      put<STORES>(dst, vector);
  }
};

} // namespace orvel::details
