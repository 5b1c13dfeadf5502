#pragma once

/// \file
/// \brief Limits that an archive keeps to.

#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief What an archive refuses to go beyond, so that a hostile file cannot exhaust the process.
struct ArchiveLimits
{
  /// Objects within objects, in place, by pointer or by reference; the same on writing, so that what can be
  /// written can be read. An object that a reference brings counts with all that it holds, except in a cycle.
  ipUInt32 maxDepth = 128;

  /// Units of work that reading may cost per byte of the archive read so far, above a start of 4096 units.
  /// Every item, element and reference costs one unit.
  ipUInt64 maxWork = 16;

  /// Bytes of memory that the objects of an archive may take in all without bytes of the archive to fill
  /// them, such as the lists of empty fragments; the same on writing, so that what can be written can be
  /// read.
  ipUInt64 maxUnfilledBytes = ipUInt64{64} << 20U;
};

} // namespace orvel
