#pragma once

/// \file
/// \brief What the tests of structuring elements need on both kinds of them.
///
/// Coordinates are given for x, y and z; an element of the plane takes the first two.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "../OffsetTesting.h"
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.h>
#include <support/HandWrittenArchive.h>

namespace orvel::test
{

inline constexpr ipInt32 g_lowest = std::numeric_limits<ipInt32>::min();
inline constexpr ipInt32 g_highest = std::numeric_limits<ipInt32>::max();

using Sizes = std::array<ipUInt32, 3>;
using Places = std::vector<Coordinates>; ///< offsets, in an order

/// \brief Everything that can be seen of an element, to compare states by.
struct ElementState
{
  Coordinates min;
  Sizes size;
  Places places;

  friend bool operator==(const ElementState& left, const ElementState& right)
  {
    return left.min == right.min && left.size == right.size && left.places == right.places;
  }
};

template <class Element>
struct ElementTraits
{
  using OffsetTraits = test::OffsetTraits<typename Element::OffsetType>;

  static constexpr bool isPlanar = OffsetTraits::nbAxes == 2;
  static constexpr const char* name = isPlanar ? "StructuringElementXY" : "StructuringElementXYZ";

  static typename Element::OffsetType at(ipInt32 x, ipInt32 y, ipInt32 z)
  {
    return OffsetTraits::at({x, y, z});
  }

  /// \param z is dropped in the plane
  static Coordinates place(ipInt32 x, ipInt32 y, ipInt32 z) { return {x, y, isPlanar ? 0 : z}; }
  static Sizes sizes(ipUInt32 x, ipUInt32 y, ipUInt32 z) { return {x, y, isPlanar ? 0U : z}; }

  static ElementState emptiedState() { return {place(g_highest, g_highest, g_highest), sizes(2, 2, 2), {}}; }
  static ElementState stateOfOne(ipInt32 x, ipInt32 y, ipInt32 z)
  {
    return {place(x, y, z), sizes(1, 1, 1), {place(x, y, z)}};
  }
};

/// \brief Return the offsets of an element in the order in which they are walked.
template <class Element>
Places placesOf(const Element& element)
{
  Places places;
  for (const auto& offset : element.getDataColl())
    places.push_back(ElementTraits<Element>::OffsetTraits::placeOf(offset));
  return places;
}

template <class Element>
ElementState stateOf(const Element& element)
{
  ElementState state = {{element.getMinX(), element.getMinY(), 0},
                        {element.getSizeX(), element.getSizeY(), 0},
                        placesOf(element)};
  if constexpr (!ElementTraits<Element>::isPlanar)
  {
    state.min[2] = element.getMinZ();
    state.size[2] = element.getSizeZ();
  }
  return state;
}

/// \brief Put numbers into an archive, as many as the offsets of Element have axes.
template <class Element, class HandWritten, class Number>
void putNumbers(HandWritten& archive, const std::array<Number, 3>& numbers,
                const std::array<const char*, 3>& keys)
{
  for (std::size_t axis = 0; axis < ElementTraits<Element>::OffsetTraits::nbAxes; ++axis)
    archive.integer(keys[axis], numbers[axis]);
}

/// \brief Put the start of a set of offsets into an archive by hand, and close none of it.
/// They are the first offsets of the archive.
template <class Element, class HandWritten>
void putOffsets(HandWritten& archive, std::size_t nbOffsets, const Places& places)
{
  bool isFirst = true;
  archive.openSection("_dataColl");
  archive.openSection("set");
  archive.integer("size", static_cast<std::int64_t>(nbOffsets));
  for (const Coordinates& place : places)
  {
    archive.openObject("key");
    if (isFirst)
      putVersion(archive, std::string("orvel::") + ElementTraits<Element>::OffsetTraits::name, 1);
    isFirst = false;
    putNumbers<Element>(archive, place, {"_xOffset", "_yOffset", "_zOffset"});
    archive.close();
  }
}

/// \brief Put the items of an element into an archive by hand, without class versions but that of the offsets.
template <class Element, class HandWritten>
void putElementItems(HandWritten& archive, const ElementState& state)
{
  putOffsets<Element>(archive, state.places.size(), state.places);
  archive.close();
  archive.close();
  putNumbers<Element>(archive, state.min, {"_minX", "_minY", "_minZ"});
  putNumbers<Element>(archive, state.size, {"_sizeX", "_sizeY", "_sizeZ"});
}

/// \brief Put the class versions of an element into an archive by hand.
template <class Element, class HandWritten>
void putElementVersions(HandWritten& archive, ipUInt32 baseVersion = 1, ipUInt32 version = 1)
{
  putVersion(archive, "orvel::BaseStructuringElement", baseVersion);
  putVersion(archive, std::string("orvel::") + ElementTraits<Element>::name, version);
}

} // namespace orvel::test
