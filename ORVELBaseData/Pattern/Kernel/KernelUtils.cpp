#include "ORVELBaseData/Pattern/Kernel/KernelUtils.h"

#include <array>
#include <cmath>
#include <limits>
#include <math.h> // NOLINT(modernize-deprecated-headers): for sincosf

#include <boost/make_shared.hpp>

#include <ORVELBaseData/Pattern/Kernel/KernelLogMessages.h>
#include <ORVELBaseData/Pattern/Private/ComputedNaN.h>
#include <ORVELBaseData/Pattern/Private/OffsetCoordinates.h>
#include <ORVELMath/Round.h>

namespace orvel
{

namespace
{

/// Whether a coefficient becomes a tap; a NaN does.
bool isKept(ipReal32 value, ipBool keepNullCoefs)
{
  return value != 0 || keepNullCoefs;
}

ipInt32 roundToGrid(ipReal32 coordinate)
{
  return static_cast<ipInt32>(math::round<unsigned int, float>(coordinate));
}

/// As the truncating instructions of x86 do it: what does not fit is the lowest number.
ipInt32 truncateToGrid(ipReal32 coordinate)
{
  constexpr auto lowest = std::numeric_limits<ipInt32>::min();
  constexpr auto limit = -static_cast<ipReal32>(lowest); // 2^31
  return coordinate >= -limit && coordinate < limit ? static_cast<ipInt32>(coordinate) : lowest;
}

// Directions

using DirectionXY = std::array<ipReal32, 2>;
using DirectionXYZ = std::array<ipReal32, 3>;

struct SinCos
{
  ipReal32 sin;
  ipReal32 cos;
};

SinCos sinCosOf(ipReal32 angle)
{
  SinCos result;
  sincosf(angle, &result.sin, &result.cos);
  return result;
}

DirectionXY directionOf(ipReal32 orientation)
{
  const SinCos angle = sinCosOf(orientation);
  return {angle.cos, angle.sin};
}

DirectionXYZ directionOf(ipReal32 polarAngle, ipReal32 azimuthAngle)
{
  const SinCos polar = sinCosOf(polarAngle);
  const SinCos azimuth = sinCosOf(azimuthAngle);
  return {polar.sin * azimuth.cos, polar.sin * azimuth.sin, polar.cos};
}

// Boxes

template <std::size_t NB_AXES>
using Sizes = std::array<ipUInt32, NB_AXES>;

template <std::size_t NB_AXES>
bool isSizeOf(const Sizes<NB_AXES>& halfSizes, const Real32Vector& values)
{
  ipUInt32 size = 1; // meant to wrap, like its factors
  for (const ipUInt32 halfSize : halfSizes)
    size *= 2 * halfSize + 1;
  return size == static_cast<ipUInt32>(values.size());
}

template <class Kernel, std::size_t NB_AXES>
boost::shared_ptr<Kernel> makeBox(const Sizes<NB_AXES>& halfSizes, const Real32Vector& values,
                                  ipBool keepNullCoefs)
{
  auto kernel = boost::make_shared<Kernel>();
  Sizes<NB_AXES> steps = {}; // from the corner
  for (const ipReal32 value : values)
  {
    std::array<ipInt32, NB_AXES> place = {};
    for (std::size_t axis = 0; axis < NB_AXES; ++axis)
      place[axis] = static_cast<ipInt32>(steps[axis] - halfSizes[axis]);
    if (isKept(value, keepNullCoefs))
      kernel->insert(details::offsetAt(place), value); // in the order of the offsets, at the end of the map

    std::size_t axis = 0;
    while (axis < NB_AXES && ++steps[axis] == 2 * halfSizes[axis] + 1)
      steps[axis++] = 0;
    if (axis == NB_AXES) // the box is full: there are 2^32 values more than it holds
      break;
  }
  return kernel;
}

// Lines

/// Raises in the caller's name for an even number of values.
void requireOdd(const Real32Vector& values, const SourceLocation& here)
{
  if (values.size() % 2 == 0)
    raise(here, eKernelMessage::eEvenKernelSize, values.size());
}

/// Calls use(index, value) for each value, the index running from -h to h.
template <class Use>
void forEachIndex(const Real32Vector& values, Use use)
{
  const auto half = static_cast<ipInt64>(static_cast<ipUInt32>(values.size()) >> 1U);
  for (ipInt64 index = -half; index <= half; ++index)
    use(static_cast<ipReal32>(index), values[static_cast<std::size_t>(index + half)]);
}

template <class Direction>
std::size_t dominantAxisOf(const Direction& direction)
{
  const auto isAtLeastAllBehind = [&](std::size_t axis)
  {
    for (std::size_t other = axis + 1; other < direction.size(); ++other)
      if (!(std::abs(direction[axis]) >= std::abs(direction[other]))) // NaN is no dominant one
        return false;
    return true;
  };
  std::size_t axis = 0;
  while (axis + 1 < direction.size() && !isAtLeastAllBehind(axis))
    ++axis;
  return axis;
}

template <class Kernel, class Direction>
boost::shared_ptr<Kernel> makeLine(const Direction& direction, const Real32Vector& values,
                                   ipBool keepNullCoefs)
{
  const std::size_t dominantAxis = dominantAxisOf(direction);
  const ipReal32 length = std::abs(direction[dominantAxis]);
  Direction step = direction;
  for (std::size_t axis = 0; axis < step.size(); ++axis)
    step[axis] = axis == dominantAxis ? (direction[axis] > 0 ? 1.0F : -1.0F) : direction[axis] / length;

  auto kernel = boost::make_shared<Kernel>();
  forEachIndex(values,
               [&](ipReal32 index, ipReal32 value)
               {
                 std::array<ipInt32, std::tuple_size<Direction>::value> place;
                 for (std::size_t axis = 0; axis < step.size(); ++axis)
                   place[axis] = roundToGrid(step[axis] * index);
                 if (isKept(value, keepNullCoefs))
                   kernel->insert(details::offsetAt(place), value);
               });
  return kernel;
}

/// Adds a share to the tap at an offset.
template <class Kernel>
void addShare(Kernel& kernel, const typename Kernel::OffsetType& offset, ipReal32 share, ipBool keepNullCoefs)
{
  if (!isKept(share, keepNullCoefs))
    return;
  if (kernel.exists(offset))
    kernel.replace(offset, details::withDefaultNaN(kernel.getValue(offset) + share));
  else
    kernel.insert(offset, details::withDefaultNaN(share));
}

/// A coordinate between two of the grid: the one that it is truncated to, the next one, and their weights.
struct Between
{
  explicit Between(ipReal32 coordinate)
    : first(truncateToGrid(coordinate))
    , second(first + 1) // a coordinate in single precision is never the largest number
    , firstWeight(static_cast<ipReal32>(second) - coordinate)
    , secondWeight(coordinate - static_cast<ipReal32>(first))
  {
  }

  ipInt32 first;
  ipInt32 second;
  ipReal32 firstWeight;
  ipReal32 secondWeight;
};

} // namespace

KernelXYPtr rectangularKernelXY(ipUInt32 halfKernelSizeX, ipUInt32 halfKernelSizeY,
                                const Real32Vector& values, ipBool keepNullCoefs)
{
  const Sizes<2> halfSizes = {halfKernelSizeX, halfKernelSizeY};
  if (!isSizeOf(halfSizes, values))
    raise(ORVEL_HERE, eKernelMessage::eKernelSizeMismatchXY, halfKernelSizeX, halfKernelSizeY, values.size());
  return makeBox<KernelXY>(halfSizes, values, keepNullCoefs);
}

KernelXYPtr squareKernelXY(ipUInt32 halfKernelSize, const Real32Vector& values, ipBool keepNullCoefs)
{
  return rectangularKernelXY(halfKernelSize, halfKernelSize, values, keepNullCoefs);
}

KernelXYPtr linearKernelXY(ipReal32 orientation, const Real32Vector& values, ipBool keepNullCoefs)
{
  requireOdd(values, ORVEL_HERE);
  return makeLine<KernelXY>(directionOf(orientation), values, keepNullCoefs);
}

KernelXYPtr linearInterpolatedKernelXY(ipReal32 orientation, const Real32Vector& values, ipBool keepNullCoefs)
{
  requireOdd(values, ORVEL_HERE);
  const DirectionXY direction = directionOf(orientation);
  auto kernel = boost::make_shared<KernelXY>();
  forEachIndex(values,
               [&](ipReal32 index, ipReal32 v)
               {
                 if (!isKept(v, keepNullCoefs))
                   return;
                 const Between x(direction[0] * index);
                 const Between y(direction[1] * index);
                 const auto add = [&](ipInt32 placeX, ipInt32 placeY, ipReal32 share)
                 {
                   addShare(*kernel, OffsetXY(placeX, placeY), share, keepNullCoefs);
                 };
                 // The order of the products and of the corners decides the last bits.
                 add(x.first, y.first, v * (x.firstWeight * y.firstWeight));
                 add(x.first, y.second, (x.firstWeight * y.secondWeight) * v);
                 add(x.second, y.first, (y.firstWeight * x.secondWeight) * v);
                 add(x.second, y.second, (y.secondWeight * x.secondWeight) * v);
               });
  return kernel;
}

KernelXYZPtr rectangularKernelXYZ(ipUInt32 halfKernelSizeX, ipUInt32 halfKernelSizeY,
                                  ipUInt32 halfKernelSizeZ, const Real32Vector& values, ipBool keepNullCoefs)
{
  const Sizes<3> halfSizes = {halfKernelSizeX, halfKernelSizeY, halfKernelSizeZ};
  if (!isSizeOf(halfSizes, values))
    raise(ORVEL_HERE, eKernelMessage::eKernelSizeMismatchXYZ, halfKernelSizeX, halfKernelSizeY,
          halfKernelSizeZ, values.size());
  return makeBox<KernelXYZ>(halfSizes, values, keepNullCoefs);
}

KernelXYZPtr cubicKernelXYZ(ipUInt32 halfKernelSize, const Real32Vector& values, ipBool keepNullCoefs)
{
  return rectangularKernelXYZ(halfKernelSize, halfKernelSize, halfKernelSize, values, keepNullCoefs);
}

KernelXYZPtr linearKernelXYZ(ipReal32 polarAngle, ipReal32 azimuthAngle, const Real32Vector& values,
                             ipBool keepNullCoefs)
{
  requireOdd(values, ORVEL_HERE);
  return makeLine<KernelXYZ>(directionOf(polarAngle, azimuthAngle), values, keepNullCoefs);
}

KernelXYZPtr linearInterpolatedKernelXYZ(ipReal32 polarAngle, ipReal32 azimuthAngle,
                                         const Real32Vector& values, ipBool keepNullCoefs)
{
  requireOdd(values, ORVEL_HERE);
  const DirectionXYZ direction = directionOf(polarAngle, azimuthAngle);
  auto kernel = boost::make_shared<KernelXYZ>();
  forEachIndex(values,
               [&](ipReal32 index, ipReal32 v)
               {
                 if (!isKept(v, keepNullCoefs))
                   return;
                 const Between x(direction[0] * index);
                 const Between y(direction[1] * index);
                 const Between z(direction[2] * index);
                 const auto add = [&](ipInt32 placeX, ipInt32 placeY, ipInt32 placeZ, ipReal32 share)
                 {
                   addShare(*kernel, OffsetXYZ(placeX, placeY, placeZ), share, keepNullCoefs);
                 };
                 // The order of the products and of the corners decides the last bits.
                 const ipReal32 firsts = x.firstWeight * y.firstWeight;
                 const ipReal32 firstSecond = x.firstWeight * y.secondWeight;
                 const ipReal32 secondFirst = y.firstWeight * x.secondWeight;
                 const ipReal32 seconds = y.secondWeight * x.secondWeight;
                 add(x.first, y.first, z.first, v * (firsts * z.firstWeight));
                 add(x.first, y.second, z.first, (z.firstWeight * firstSecond) * v);
                 add(x.second, y.first, z.first, (z.firstWeight * secondFirst) * v);
                 add(x.second, y.second, z.first, (z.firstWeight * seconds) * v);
                 add(x.first, y.first, z.second, (firsts * z.secondWeight) * v);
                 add(x.first, y.second, z.second, (firstSecond * z.secondWeight) * v);
                 add(x.second, y.first, z.second, (secondFirst * z.secondWeight) * v);
                 add(x.second, y.second, z.second, (seconds * z.secondWeight) * v);
               });
  return kernel;
}

// The pointer by value is the interface. NOLINTNEXTLINE(performance-unnecessary-value-param)
KernelXYPtr rotate2dKernel(ipReal32 angle, boost::shared_ptr<const KernelXY> pKernel)
{
  const SinCos turn = sinCosOf(angle);
  auto rotated = boost::make_shared<KernelXY>();
  KernelXY counts; // of the taps that have come to an offset
  for (const auto& [offset, value] : pKernel->getDataColl())
  {
    const auto x = static_cast<ipReal32>(offset.getXOffset());
    const auto y = static_cast<ipReal32>(offset.getYOffset());
    const ipReal32 turnedX = turn.cos * x - turn.sin * y;
    const ipReal32 turnedY = turn.sin * x + turn.cos * y;
    const OffsetXY place(math::round<int, double>(turnedX), math::round<int, double>(turnedY));
    if (!rotated->exists(place))
    {
      rotated->insert(place, value);
      counts.insert(place, 1);
    }
    else
    {
      // The absolute value is that of the coefficient there alone, and the half comes before the division.
      rotated->replace(place, details::withDefaultNaN((std::abs(rotated->getValue(place)) + value) * 0.5F));
      counts.replace(place, counts.getValue(place) + 1);
    }
  }

  auto count = counts.getDataColl().begin();
  for (const auto& [offset, value] : rotated->getDataColl())
  {
    if (count->second > 1)
      rotated->replace(offset, value / count->second);
    ++count;
  }
  return rotated;
}

} // namespace orvel
