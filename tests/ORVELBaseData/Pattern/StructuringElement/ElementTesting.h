#pragma once

/// \file
/// \brief What the tests of structuring elements need on both kinds of them.
///
/// Coordinates are given for x, y and z; an element of the plane takes the first two.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.h>
#include <support/HandWrittenArchive.h>

namespace orvel::test
{

inline constexpr ipInt32 g_lowest = std::numeric_limits<ipInt32>::min();
inline constexpr ipInt32 g_highest = std::numeric_limits<ipInt32>::max();

using Coordinates = std::array<ipInt32, 3>;
using Sizes = std::array<ipUInt32, 3>;

template <class Element>
struct ElementTraits;

template <>
struct ElementTraits<StructuringElementXY>
{
  static constexpr const char* name = "StructuringElementXY";
  static constexpr const char* offsetName = "OffsetXY";
  static constexpr std::size_t nbAxes = 2;

  static OffsetXY at(ipInt32 x, ipInt32 y, ipInt32 /*z*/) { return OffsetXY(x, y); }
  static Coordinates placeOf(const OffsetXY& offset) { return {offset.getXOffset(), offset.getYOffset(), 0}; }
  static Coordinates minOf(const StructuringElementXY& element)
  {
    return {element.getMinX(), element.getMinY(), 0};
  }
  static Sizes sizeOf(const StructuringElementXY& element)
  {
    return {element.getSizeX(), element.getSizeY(), 0};
  }
};

template <>
struct ElementTraits<StructuringElementXYZ>
{
  static constexpr const char* name = "StructuringElementXYZ";
  static constexpr const char* offsetName = "OffsetXYZ";
  static constexpr std::size_t nbAxes = 3;

  static OffsetXYZ at(ipInt32 x, ipInt32 y, ipInt32 z) { return OffsetXYZ(x, y, z); }
  static Coordinates placeOf(const OffsetXYZ& offset)
  {
    return {offset.getXOffset(), offset.getYOffset(), offset.getZOffset()};
  }
  static Coordinates minOf(const StructuringElementXYZ& element)
  {
    return {element.getMinX(), element.getMinY(), element.getMinZ()};
  }
  static Sizes sizeOf(const StructuringElementXYZ& element)
  {
    return {element.getSizeX(), element.getSizeY(), element.getSizeZ()};
  }
};

using Places = std::vector<Coordinates>; ///< offsets, in an order

/// \brief Return the offsets of an element in the order in which they are walked.
template <class Element>
Places placesOf(const Element& element)
{
  Places places;
  for (const auto& offset : element.getDataColl())
    places.push_back(ElementTraits<Element>::placeOf(offset));
  return places;
}

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
ElementState stateOf(const Element& element)
{
  return {ElementTraits<Element>::minOf(element), ElementTraits<Element>::sizeOf(element), placesOf(element)};
}

/// \brief Put numbers into an archive, as many as the offsets of Element have axes.
template <class Element, class HandWritten, class Number>
void putNumbers(HandWritten& archive, const std::array<Number, 3>& numbers,
                const std::array<const char*, 3>& keys)
{
  for (std::size_t axis = 0; axis < ElementTraits<Element>::nbAxes; ++axis)
    archive.integer(keys[axis], numbers[axis]);
}

/// \brief Put the items of an element into an archive by hand, without class versions but that of the offsets.
/// \param isFirst whether these are the first offsets of the archive
template <class Element, class HandWritten>
void putElementItems(HandWritten& archive, const ElementState& state, bool isFirst = true)
{
  archive.openSection("_dataColl");
  archive.openSection("set");
  archive.integer("size", static_cast<std::int64_t>(state.places.size()));
  for (const Coordinates& place : state.places)
  {
    archive.openObject("key");
    if (isFirst)
      putVersion(archive, std::string("orvel::") + ElementTraits<Element>::offsetName, 1);
    isFirst = false;
    putNumbers<Element>(archive, place, {"_xOffset", "_yOffset", "_zOffset"});
    archive.close();
  }
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
