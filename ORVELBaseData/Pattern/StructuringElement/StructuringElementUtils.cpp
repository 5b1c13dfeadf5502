#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h"

#include <array>
#include <cstddef>
#include <limits>
#include <math.h> // NOLINT(modernize-deprecated-headers): for sincos
#include <utility>

#include <boost/make_shared.hpp>

#include <ORVELBaseData/Pattern/Private/OffsetCoordinates.h>
#include <ORVELBaseData/Pattern/Private/StructuringElementOperations.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementLogMessages.h>
#include <ORVELMath/Round.h>

namespace orvel
{

namespace
{

template <class Element, class Offsets>
boost::shared_ptr<Element> makeElement(Offsets offsets)
{
  auto element = boost::make_shared<Element>();
  details::StructuringElementOperations<Element>::setOffsets(*element, std::move(offsets));
  return element;
}

/// The coordinates of one axis of a box, from -halfSize to halfSize as numbers of 32 bits.
struct Range
{
  explicit Range(ipUInt32 halfSize)
    : first(static_cast<ipInt32>(0 - halfSize))
    , last(static_cast<ipInt32>(halfSize))
  {
  }

  bool isEmpty() const { return first > last; }

  ipInt64 first; // counted in 64 bits: the loop has to end also behind the largest number
  ipInt64 last;
};

// The scans come in the order of the offsets, so each one goes to the end of the set. An axis without
// coordinates ends them at once: the others may have billions.

/// \param isKept tells whether an offset at (x, y) belongs to the shape
template <class IsKept>
StructuringElementXYPtr scanXY(const Range& xs, const Range& ys, IsKept isKept)
{
  XYOffsetColl offsets;
  for (ipInt64 y = ys.first; y <= ys.last && !xs.isEmpty(); ++y)
    for (ipInt64 x = xs.first; x <= xs.last; ++x)
      if (isKept(static_cast<ipInt32>(x), static_cast<ipInt32>(y)))
        offsets.emplace_hint(offsets.end(), static_cast<ipInt32>(x), static_cast<ipInt32>(y));
  return makeElement<StructuringElementXY>(std::move(offsets));
}

template <class IsKept>
StructuringElementXYZPtr scanXYZ(const Range& xs, const Range& ys, const Range& zs, IsKept isKept)
{
  XYZOffsetColl offsets;
  for (ipInt64 z = zs.first; z <= zs.last && !xs.isEmpty() && !ys.isEmpty(); ++z)
    for (ipInt64 y = ys.first; y <= ys.last; ++y)
      for (ipInt64 x = xs.first; x <= xs.last; ++x)
        if (isKept(static_cast<ipInt32>(x), static_cast<ipInt32>(y), static_cast<ipInt32>(z)))
          offsets.emplace_hint(offsets.end(), static_cast<ipInt32>(x), static_cast<ipInt32>(y),
                               static_cast<ipInt32>(z));
  return makeElement<StructuringElementXYZ>(std::move(offsets));
}

// Discs and balls

bool isRadius(ipReal64 radius)
{
  return radius >= 0; // no NaN
}

/// The radius cut to an integer, as the truncating instructions of x86 do it: what does not fit is the lowest
/// number.
ipUInt32 extentOf(ipReal64 radius)
{
  constexpr ipReal64 limit = 2147483648.0;
  return radius < limit ? static_cast<ipUInt32>(radius) : static_cast<ipUInt32>(limit);
}

/// The square of a coordinate in 32 bits, meant to wrap.
ipUInt32 squareOf(ipInt32 coordinate)
{
  const auto bits = static_cast<ipUInt32>(coordinate);
  return bits * bits;
}

bool isWithin(ipUInt32 squaredDistance, ipReal64 squaredRadius)
{
  return static_cast<ipReal64>(static_cast<ipInt32>(squaredDistance)) <= squaredRadius;
}

// Segments

template <std::size_t NB_AXES>
using Vector = std::array<ipReal64, NB_AXES>;

Vector<2> stepTowards(ipReal64 theta)
{
  Vector<2> step;
  sincos(theta, &step[1], step.data());
  return step;
}

Vector<3> stepTowards(ipReal64 theta, ipReal64 phi)
{
  ipReal64 sinTheta = 0;
  ipReal64 cosTheta = 0;
  ipReal64 sinPhi = 0;
  ipReal64 cosPhi = 0;
  sincos(theta, &sinTheta, &cosTheta);
  sincos(phi, &sinPhi, &cosPhi);
  return {sinTheta * cosPhi, sinTheta * sinPhi, cosTheta};
}

enum class Sides
{
  one,
  both
};

/// Walks along a direction and takes the samples up to the radius.
template <class Element, std::size_t NB_AXES>
boost::shared_ptr<Element> walk(const Vector<NB_AXES>& step, ipReal64 radius, Sides sides)
{
  std::set<typename Element::OffsetType> offsets;
  Vector<NB_AXES> position = {};
  const ipReal64 squaredRadius = radius * radius;
  ipReal64 squaredDistance = 0;
  do
  {
    std::array<ipInt32, NB_AXES> place;
    std::array<ipInt32, NB_AXES> opposite;
    for (std::size_t axis = 0; axis < NB_AXES; ++axis)
    {
      place[axis] = math::round<int, double>(position[axis]);
      opposite[axis] = static_cast<ipInt32>(0 - static_cast<ipUInt32>(place[axis]));
    }
    offsets.insert(details::offsetAt(place));
    if (sides == Sides::both)
      offsets.insert(details::offsetAt(opposite));

    // A running sum: its drift is part of the shape.
    for (std::size_t axis = 0; axis < NB_AXES; ++axis)
      position[axis] += step[axis];
    squaredDistance = position[0] * position[0] + position[1] * position[1];
    if constexpr (NB_AXES == 3)
      squaredDistance += position[2] * position[2];
  } while (squaredRadius >= squaredDistance);
  return makeElement<Element>(std::move(offsets));
}

} // namespace

StructuringElementXYPtr rectangularSEXY(ipUInt32 halfSizeX, ipUInt32 halfSizeY)
{
  return scanXY(Range(halfSizeX), Range(halfSizeY), [](ipInt32, ipInt32) { return true; });
}

StructuringElementXYPtr squareSEXY(ipUInt32 halfSize)
{
  return rectangularSEXY(halfSize, halfSize);
}

StructuringElementXYPtr circularSEXY(ipReal64 radius)
{
  if (!isRadius(radius))
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidRadius, radius);
  const Range range(extentOf(radius));
  const ipReal64 squaredRadius = radius * radius;
  return scanXY(range, range,
                [=](ipInt32 x, ipInt32 y) { return isWithin(squareOf(x) + squareOf(y), squaredRadius); });
}

StructuringElementXYPtr halfLinearSEXY(ipReal64 theta, ipReal64 radius)
{
  if (!isRadius(radius))
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidRadius, radius);
  return walk<StructuringElementXY>(stepTowards(theta), radius, Sides::one);
}

StructuringElementXYPtr linearSEXY(ipReal64 theta, ipReal64 radius)
{
  if (!isRadius(radius))
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidRadius, radius);
  return walk<StructuringElementXY>(stepTowards(theta), radius, Sides::both);
}

StructuringElementXYZPtr rectangularSEXYZ(ipUInt32 halfSizeX, ipUInt32 halfSizeY, ipUInt32 halfSizeZ)
{
  return scanXYZ(Range(halfSizeX), Range(halfSizeY), Range(halfSizeZ),
                 [](ipInt32, ipInt32, ipInt32) { return true; });
}

StructuringElementXYZPtr cubicSEXYZ(ipUInt32 halfSize)
{
  return rectangularSEXYZ(halfSize, halfSize, halfSize);
}

StructuringElementXYZPtr sphericalSEXYZ(ipReal64 radius)
{
  if (!isRadius(radius))
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidRadius, radius);
  const Range range(extentOf(radius));
  const ipReal64 squaredRadius = radius * radius;
  return scanXYZ(range, range, range,
                 [=](ipInt32 x, ipInt32 y, ipInt32 z)
                 { return isWithin(squareOf(x) + squareOf(y) + squareOf(z), squaredRadius); });
}

StructuringElementXYZPtr halfLinearSEXYZ(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  if (!isRadius(radius))
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidRadius, radius);
  return walk<StructuringElementXYZ>(stepTowards(theta, phi), radius, Sides::one);
}

StructuringElementXYZPtr linearSEXYZ(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  if (!isRadius(radius))
    raise(ORVEL_HERE, eStructuringElementMessage::eInvalidRadius, radius);
  return walk<StructuringElementXYZ>(stepTowards(theta, phi), radius, Sides::both);
}

} // namespace orvel
