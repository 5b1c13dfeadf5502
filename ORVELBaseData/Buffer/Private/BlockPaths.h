#pragma once

/// \file
/// \brief The fast ways to mirror and to fill memory, one per instruction set, and the choice among them.

#include <vector>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief Mirrors elements of one size onto a range that is disjoint from the source.
///
/// A run of at least streamFrom bytes may be written past the caches: it is not in them afterwards.
using MirrorFunction = void (*)(void* dst, ipUInt64 nbElements, const void* src, ipUInt64 streamFrom);

/// \brief Repeats the 8 bytes of a pattern, as they lie in memory, from dst on; the last time cut where the
/// run ends. streamFrom as above.
using FillFunction = void (*)(void* dst, ipUInt64 sizeInBytes, ipUInt64 pattern, ipUInt64 streamFrom);

/// \brief The functions that use one instruction set. All give the same bytes, touch nothing outside the
/// ranges and take any size and any address.
struct BlockPath
{
  const char* name;

  /// For elements of 1, 2, 4 and 8 bytes.
  MirrorFunction mirror1;
  MirrorFunction mirror2;
  MirrorFunction mirror4;
  MirrorFunction mirror8;

  FillFunction fill;
};

extern const BlockPath g_plainPath; ///< no more than C++, on every processor

#if defined(__x86_64__)
extern const BlockPath g_sse2Path; ///< every x86-64 processor has it
extern const BlockPath g_avx2Path; ///< only where the processor and the system know its registers
#endif

/// \brief Return what this machine can run, the slowest first.
std::vector<const BlockPath*> getAvailableBlockPaths();

/// \brief Return the last of getAvailableBlockPaths(). Allocates nothing and locks nothing.
const BlockPath& getFastestBlockPath();

/// \brief Return how many bytes a core can expect to find in its last cache again; at most 32 MiB.
///
/// What works on more memory than that at once had better write past the caches. Allocates nothing and locks
/// nothing.
ipUInt64 getUsableCacheSize();

/// \brief Mirror one element after the other, whether the ranges overlap or not.
///
/// Element i of src goes to element nbElements - 1 - i of dst, for i from 0 upward, without a temporary.
void mirrorInOrder(void* dst, ipUInt64 elementSizeInBytes, ipUInt64 nbElements, const void* src);

} // namespace orvel::details
