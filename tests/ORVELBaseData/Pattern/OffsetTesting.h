#pragma once

/// \file
/// \brief Offsets of the plane and of space under the same three coordinates, for tests over both.

#include <array>
#include <cstddef>

#include <ORVELBaseData/Pattern/OffsetXY.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>

namespace orvel::test
{

/// \brief x, y and z; an offset of the plane has no z.
using Coordinates = std::array<ipInt32, 3>;

/// \brief Names and makes offsets of either class.
template <class Offset>
struct OffsetTraits;

template <>
struct OffsetTraits<OffsetXY>
{
  static constexpr const char* name = "OffsetXY";
  static constexpr std::size_t nbAxes = 2;

  static OffsetXY at(const Coordinates& place) { return OffsetXY(place[0], place[1]); }
  static Coordinates placeOf(const OffsetXY& offset) { return {offset.getXOffset(), offset.getYOffset(), 0}; }
};

template <>
struct OffsetTraits<OffsetXYZ>
{
  static constexpr const char* name = "OffsetXYZ";
  static constexpr std::size_t nbAxes = 3;

  static OffsetXYZ at(const Coordinates& place) { return OffsetXYZ(place[0], place[1], place[2]); }
  static Coordinates placeOf(const OffsetXYZ& offset)
  {
    return {offset.getXOffset(), offset.getYOffset(), offset.getZOffset()};
  }
};

} // namespace orvel::test
