#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <math.h> // NOLINT(modernize-deprecated-headers): for sincos
#include <set>
#include <tuple>
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

template <class Element>
boost::shared_ptr<Element> makeElement(std::set<typename Element::OffsetType> offsets)
{
  auto element = boost::make_shared<Element>();
  details::StructuringElementOperations<Element>::setOffsets(*element, std::move(offsets));
  return element;
}

void requireRadius(ipReal64 radius, const SourceLocation& here)
{
  if (!(radius >= 0)) // refuses NaN, too
    raise(here, eStructuringElementMessage::eInvalidRadius, radius);
}

template <std::size_t NB_AXES>
using HalfSizes = std::array<ipUInt32, NB_AXES>;
template <std::size_t NB_AXES>
using Place = std::array<ipInt32, NB_AXES>;

/// Enters the places of a box that belong to a shape, along an axis and those before it. They come in the
/// order of the offsets, so each one goes to the end of the set.
template <std::size_t AXIS, std::size_t NB_AXES, class IsIn, class Offsets>
void scanAxis(const HalfSizes<NB_AXES>& halfSizes, Place<NB_AXES>& place, const IsIn& isIn, Offsets& offsets)
{
  // Numbers of 32 bits, counted in 64: the loop has to end also behind the largest one.
  const ipInt64 last = static_cast<ipInt32>(halfSizes[AXIS]);
  for (ipInt64 coordinate = static_cast<ipInt32>(0 - halfSizes[AXIS]); coordinate <= last; ++coordinate)
  {
    place[AXIS] = static_cast<ipInt32>(coordinate);
    if constexpr (AXIS > 0)
      scanAxis<AXIS - 1>(halfSizes, place, isIn, offsets);
    else if (isIn(place))
      std::apply([&offsets](auto... coordinates) { offsets.emplace_hint(offsets.end(), coordinates...); },
                 place);
  }
}

/// Makes a shape of the places of a box that belong to it.
template <class Element, std::size_t NB_AXES, class IsIn>
boost::shared_ptr<Element> scan(const HalfSizes<NB_AXES>& halfSizes, const IsIn& isIn)
{
  std::set<typename Element::OffsetType> offsets;
  // Above this one the limits cross. The scan ends at once then: the other axes may have billions of places.
  constexpr ipUInt32 largestHalfSize = 2147483648U;
  if (*std::max_element(halfSizes.begin(), halfSizes.end()) <= largestHalfSize)
  {
    Place<NB_AXES> place;
    scanAxis<NB_AXES - 1>(halfSizes, place, isIn, offsets);
  }
  return makeElement<Element>(std::move(offsets));
}

template <class Element, std::size_t NB_AXES>
boost::shared_ptr<Element> makeBox(const HalfSizes<NB_AXES>& halfSizes)
{
  return scan<Element>(halfSizes, [](const Place<NB_AXES>&) { return true; });
}

/// The radius truncated to an integer, as the truncating instructions of x86 do it: what does not fit is the
/// lowest number.
ipUInt32 extentOf(ipReal64 radius)
{
  constexpr ipReal64 limit = 2147483648.0;
  return radius < limit ? static_cast<ipUInt32>(radius) : static_cast<ipUInt32>(limit);
}

template <class Element, std::size_t NB_AXES>
boost::shared_ptr<Element> makeBall(ipReal64 radius)
{
  HalfSizes<NB_AXES> halfSizes;
  halfSizes.fill(extentOf(radius));
  return scan<Element>(halfSizes,
                       [squaredRadius = radius * radius](const Place<NB_AXES>& place)
                       {
                         ipUInt32 squaredDistance = 0; // meant to wrap
                         for (const ipInt32 coordinate : place)
                           squaredDistance +=
                               static_cast<ipUInt32>(coordinate) * static_cast<ipUInt32>(coordinate);
                         return static_cast<ipReal64>(static_cast<ipInt32>(squaredDistance)) <= squaredRadius;
                       });
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
    Place<NB_AXES> place;
    Place<NB_AXES> opposite;
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
  return makeBox<StructuringElementXY, 2>({halfSizeX, halfSizeY});
}

StructuringElementXYPtr squareSEXY(ipUInt32 halfSize)
{
  return rectangularSEXY(halfSize, halfSize);
}

StructuringElementXYPtr circularSEXY(ipReal64 radius)
{
  requireRadius(radius, ORVEL_HERE);
  return makeBall<StructuringElementXY, 2>(radius);
}

StructuringElementXYPtr halfLinearSEXY(ipReal64 theta, ipReal64 radius)
{
  requireRadius(radius, ORVEL_HERE);
  return walk<StructuringElementXY>(stepTowards(theta), radius, Sides::one);
}

StructuringElementXYPtr linearSEXY(ipReal64 theta, ipReal64 radius)
{
  requireRadius(radius, ORVEL_HERE);
  return walk<StructuringElementXY>(stepTowards(theta), radius, Sides::both);
}

StructuringElementXYZPtr rectangularSEXYZ(ipUInt32 halfSizeX, ipUInt32 halfSizeY, ipUInt32 halfSizeZ)
{
  return makeBox<StructuringElementXYZ, 3>({halfSizeX, halfSizeY, halfSizeZ});
}

StructuringElementXYZPtr cubicSEXYZ(ipUInt32 halfSize)
{
  return rectangularSEXYZ(halfSize, halfSize, halfSize);
}

StructuringElementXYZPtr sphericalSEXYZ(ipReal64 radius)
{
  requireRadius(radius, ORVEL_HERE);
  return makeBall<StructuringElementXYZ, 3>(radius);
}

StructuringElementXYZPtr halfLinearSEXYZ(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  requireRadius(radius, ORVEL_HERE);
  return walk<StructuringElementXYZ>(stepTowards(theta, phi), radius, Sides::one);
}

StructuringElementXYZPtr linearSEXYZ(ipReal64 theta, ipReal64 phi, ipReal64 radius)
{
  requireRadius(radius, ORVEL_HERE);
  return walk<StructuringElementXYZ>(stepTowards(theta, phi), radius, Sides::both);
}

} // namespace orvel
