#pragma once

/// \file
/// \brief What KernelXY and KernelXYZ do alike, written once for any number of axes.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <tuple>
#include <utility>

#include <ORVELBaseData/Pattern/Private/OffsetCoordinates.h>
#include <ORVELSerialization/SerializationItems.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief The operations of a kernel. Those that may fail answer false and leave the kernel unchanged, so
/// that the public operation raises the failure in its own name.
template <class Kernel>
struct KernelOperations
{
  using Offset = typename Kernel::OffsetType;
  using Value = typename Kernel::ValueType;

  static bool insert(Kernel& kernel, const Offset& offset, Value value)
  {
    // A kernel is mostly built in the order of its taps: the hint saves the lookup then, and costs one
    // comparison otherwise.
    auto& taps = kernel._dataColl;
    const auto nbTapsBefore = taps.size();
    taps.try_emplace(taps.end(), offset, value);
    if (taps.size() == nbTapsBefore)
      return false;
    addToSums(kernel, value);
    const auto coordinates = coordinatesOf(offset);
    for (std::size_t i = 0; i < g_nbAxes; ++i)
      extendRange(kernel.*g_axes[i].min, kernel.*g_axes[i].size, coordinates[i]);
    return true;
  }

  static bool replace(Kernel& kernel, const Offset& offset, Value value)
  {
    const auto tap = kernel._dataColl.find(offset);
    if (tap == kernel._dataColl.end())
      return false;
    subtractFromSums(kernel, tap->second);
    tap->second = value;
    addToSums(kernel, value);
    return true;
  }

  static bool remove(Kernel& kernel, const Offset& offset)
  {
    const auto tap = kernel._dataColl.find(offset);
    if (tap == kernel._dataColl.end())
      return false;
    subtractFromSums(kernel, tap->second);
    kernel._dataColl.erase(tap);

    Coordinates min;
    Coordinates max;
    min.fill(std::numeric_limits<ipInt32>::max());
    max.fill(std::numeric_limits<ipInt32>::min());
    for (const auto& tapLeft : kernel._dataColl)
    {
      const Coordinates coordinates = coordinatesOf(tapLeft.first);
      for (std::size_t i = 0; i < g_nbAxes; ++i)
      {
        min[i] = std::min(min[i], coordinates[i]);
        max[i] = std::max(max[i], coordinates[i]);
      }
    }
    for (std::size_t i = 0; i < g_nbAxes; ++i)
    {
      kernel.*g_axes[i].min = min[i];
      kernel.*g_axes[i].size = distance(min[i], max[i]) + 1; // without taps the wrap makes it 2
    }
    return true;
  }

  /// \brief Return the coefficient of a tap, null without one.
  static const Value* find(const Kernel& kernel, const Offset& offset)
  {
    const auto tap = kernel._dataColl.find(offset);
    return tap == kernel._dataColl.end() ? nullptr : &tap->second;
  }

  static void multiply(Kernel& kernel, ipReal32 factor)
  {
    for (auto& tap : kernel._dataColl)
      tap.second *= factor;
    kernel._coefSum *= factor;
    kernel._absCoefSum *= factor;
  }

  static void clear(Kernel& kernel)
  {
    kernel._dataColl.clear();
    for (const Axis& axis : g_axes)
    {
      kernel.*axis.min = 0;
      kernel.*axis.size = 0;
    }
    kernel._coefSum = 0;
    kernel._absCoefSum = 0;
  }

  static ipReal32 computeAbsCoefSum(Kernel& kernel)
  {
    for (auto& tap : kernel._dataColl)
      tap.second = std::abs(tap.second) + tap.second;
    return 0;
  }

  static void copy(Kernel& kernel, const Kernel& other)
  {
    kernel._dataColl = other._dataColl;
    for (const Axis& axis : g_axes)
    {
      kernel.*axis.min = other.*axis.min;
      kernel.*axis.size = other.*axis.size;
    }
    kernel._coefSum = other._coefSum;
    kernel._absCoefSum = other._absCoefSum;
  }

  static void write(const Kernel& kernel, BaseOArchive& archive)
  {
    archive << SerializationOItem("_dataColl", kernel._dataColl);
    for (const Axis& axis : g_axes)
      archive << SerializationOItem(axis.minKey, kernel.*axis.min);
    for (const Axis& axis : g_axes)
      archive << SerializationOItem(axis.sizeKey, kernel.*axis.size);
    archive << SerializationOItem("_coefSum", kernel._coefSum);
    archive << SerializationOItem("_absCoefSum", kernel._absCoefSum);
  }

  static void read(Kernel& kernel, BaseIArchive& archive, ipUInt32 version)
  {
    archive >> SerializationIItem("_dataColl", kernel._dataColl);
    for (const Axis& axis : g_axes)
      archive >> SerializationIItem(axis.minKey, kernel.*axis.min);
    for (const Axis& axis : g_axes)
      archive >> SerializationIItem(axis.sizeKey, kernel.*axis.size);
    archive >> SerializationIItem("_coefSum", kernel._coefSum);
    if (version < 2)
      kernel._absCoefSum = kernel.computeAbsCoefSum();
    else
      archive >> SerializationIItem("_absCoefSum", kernel._absCoefSum);
  }

private:
  using Coordinates = decltype(coordinatesOf(std::declval<Offset>()));

  static constexpr std::size_t g_nbAxes = std::tuple_size<Coordinates>::value;

  /// \brief The range of a kernel's box along one axis: its archive keys and its fields.
  struct Axis
  {
    const char* minKey;
    const char* sizeKey;
    ipInt32 Kernel::*min;
    ipUInt32 Kernel::*size;
  };

  static constexpr std::array<Axis, g_nbAxes> makeAxes()
  {
    constexpr Axis x = {"_minX", "_sizeX", &Kernel::_minX, &Kernel::_sizeX};
    constexpr Axis y = {"_minY", "_sizeY", &Kernel::_minY, &Kernel::_sizeY};
    if constexpr (g_nbAxes == 2)
      return {x, y};
    else
      return {x, y, Axis{"_minZ", "_sizeZ", &Kernel::_minZ, &Kernel::_sizeZ}};
  }

  static constexpr std::array<Axis, g_nbAxes> g_axes = makeAxes();

  /// \brief Return to - from, meant to wrap.
  static ipUInt32 distance(ipInt32 from, ipInt32 to)
  {
    return static_cast<ipUInt32>(to) - static_cast<ipUInt32>(from);
  }

  /// \brief Widen the range of one axis to a coordinate.
  ///
  /// The arithmetic is meant to wrap: only so does the range that remove leaves behind, minimum 2147483647
  /// and size 2, become that of the one new tap.
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

  static void addToSums(Kernel& kernel, Value value)
  {
    kernel._coefSum += value;
    kernel._absCoefSum += std::abs(value);
  }

  static void subtractFromSums(Kernel& kernel, Value value)
  {
    kernel._coefSum -= value;
    kernel._absCoefSum -= std::abs(value);
  }
};

} // namespace orvel::details
