#pragma once

/// \file
/// \brief The bounding box that kernels and structuring elements keep of their offsets, for any number of axes.

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <tuple>
#include <utility>

#include <ORVELBaseData/Pattern/Private/OffsetCoordinates.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief Operations on the fields `_minX`, `_sizeX` and so on of a Holder of offsets, which has it as a friend.
///
/// All arithmetic has 32 bits and is meant to wrap around.
template <class Holder>
struct BoundingBox
{
  using Offset = typename Holder::OffsetType;

  /// \brief Widen the box to one more offset.
  ///
  /// The box of no offsets, minimum 2147483647 and size 2, becomes that of the one offset across the wrap.
  static void include(Holder& holder, const Offset& offset)
  {
    const Coordinates coordinates = coordinatesOf(offset);
    for (std::size_t i = 0; i < g_nbAxes; ++i)
      extendRange(holder.*g_axes[i].min, holder.*g_axes[i].size, coordinates[i]);
  }

  /// \brief Make the box that of all offsets; without any it has minimum 2147483647 and size 2 on every axis.
  /// \param offsetOf returns the offset of an entry
  template <class Entries, class OffsetOf>
  static void fit(Holder& holder, const Entries& entries, OffsetOf offsetOf)
  {
    Coordinates min;
    Coordinates max;
    min.fill(std::numeric_limits<ipInt32>::max());
    max.fill(std::numeric_limits<ipInt32>::min());
    for (const auto& entry : entries)
    {
      const Coordinates coordinates = coordinatesOf(offsetOf(entry));
      for (std::size_t i = 0; i < g_nbAxes; ++i)
      {
        min[i] = std::min(min[i], coordinates[i]);
        max[i] = std::max(max[i], coordinates[i]);
      }
    }
    for (std::size_t i = 0; i < g_nbAxes; ++i)
    {
      holder.*g_axes[i].min = min[i];
      holder.*g_axes[i].size = distance(min[i], max[i]) + 1;
    }
  }

  static void clear(Holder& holder)
  {
    for (const Axis& axis : g_axes)
    {
      holder.*axis.min = 0;
      holder.*axis.size = 0;
    }
  }

  static void copy(Holder& holder, const Holder& other)
  {
    for (const Axis& axis : g_axes)
    {
      holder.*axis.min = other.*axis.min;
      holder.*axis.size = other.*axis.size;
    }
  }

  static void write(const Holder& holder, BaseOArchive& archive)
  {
    for (const Axis& axis : g_axes)
      archive << SerializationOItem(axis.minKey, holder.*axis.min);
    for (const Axis& axis : g_axes)
      archive << SerializationOItem(axis.sizeKey, holder.*axis.size);
  }

  static void read(Holder& holder, BaseIArchive& archive)
  {
    for (const Axis& axis : g_axes)
      archive >> SerializationIItem(axis.minKey, holder.*axis.min);
    for (const Axis& axis : g_axes)
      archive >> SerializationIItem(axis.sizeKey, holder.*axis.size);
  }

private:
  using Coordinates = decltype(coordinatesOf(std::declval<Offset>()));

  static constexpr std::size_t g_nbAxes = std::tuple_size<Coordinates>::value;

  /// The range of the box along one axis: its archive keys and its fields.
  struct Axis
  {
    const char* minKey;
    const char* sizeKey;
    ipInt32 Holder::*min;
    ipUInt32 Holder::*size;
  };

  static constexpr std::array<Axis, g_nbAxes> makeAxes()
  {
    constexpr Axis x = {"_minX", "_sizeX", &Holder::_minX, &Holder::_sizeX};
    constexpr Axis y = {"_minY", "_sizeY", &Holder::_minY, &Holder::_sizeY};
    if constexpr (g_nbAxes == 2)
      return {x, y};
    else
      return {x, y, Axis{"_minZ", "_sizeZ", &Holder::_minZ, &Holder::_sizeZ}};
  }

  static constexpr std::array<Axis, g_nbAxes> g_axes = makeAxes();

  static ipUInt32 distance(ipInt32 from, ipInt32 to)
  {
    return static_cast<ipUInt32>(to) - static_cast<ipUInt32>(from);
  }

  static void extendRange(ipInt32& min, ipUInt32& size, ipInt32 coordinate)
  {
    if (size == 0)
    {
      size = 1;
      min = coordinate;
      return;
    }
    if (min > coordinate)
    {
      size += distance(coordinate, min);
      min = coordinate;
    }
    const auto last = static_cast<ipInt32>(size + static_cast<ipUInt32>(min) - 1);
    if (last < coordinate)
      size += distance(last, coordinate);
  }
};

} // namespace orvel::details
