#pragma once

/// \file
/// \brief Offsets as arrays of coordinates, for what is done alike in the plane and in space.

#include <array>

#include <ORVELBaseData/Pattern/OffsetXY.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

using CoordinatesXY = std::array<ipInt32, 2>;  ///< x, y
using CoordinatesXYZ = std::array<ipInt32, 3>; ///< x, y, z

inline CoordinatesXY coordinatesOf(const OffsetXY& offset)
{
  return {offset.getXOffset(), offset.getYOffset()};
}

inline CoordinatesXYZ coordinatesOf(const OffsetXYZ& offset)
{
  return {offset.getXOffset(), offset.getYOffset(), offset.getZOffset()};
}

inline OffsetXY offsetAt(const CoordinatesXY& coordinates)
{
  return OffsetXY(coordinates[0], coordinates[1]);
}

inline OffsetXYZ offsetAt(const CoordinatesXYZ& coordinates)
{
  return OffsetXYZ(coordinates[0], coordinates[1], coordinates[2]);
}

} // namespace orvel::details
