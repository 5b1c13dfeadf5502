#pragma once

/// \file
/// \brief Builders of structuring elements: boxes, discs and balls, and straight segments.
///
/// **Parameters.** Half sizes and radii are in offset steps, angles in radians. A segment of the plane runs
/// towards (cos theta, sin theta); one of space towards (sin theta cos phi, sin theta sin phi, cos theta),
/// with theta measured from +z and phi from +x towards +y. Angles may have any value; one that is NaN or
/// infinite leaves the origin alone.
///
/// **Boxes** hold every offset with |x| <= halfSizeX and so on: 2 halfSize + 1 along an axis. From 2147483649
/// on a half size is a negative number of 32 bits and the element is empty; 2147483648 is the one coordinate
/// -2147483648.
///
/// **Discs and balls** hold every offset with x^2 + y^2 [+ z^2] <= radius^2, the boundary included: 1, 5, 9,
/// 13, 21, 29 offsets for the radii 0, 1, 1.5, 2, 2.5, 3 of a disc. The extent is the radius cut to an
/// integer. Squares are those of 32-bit integers that wrap around, so the working range ends where 2 [3]
/// radius^2 reaches 2^31: 32767 for a disc, 26754 for a ball. A radius that 32 bits do not hold is cut to
/// -2147483648.
///
/// **Segments** are the points at 0, 1, 2 ... steps of length 1 from the origin up to the radius, rounded to
/// the grid, halves away from zero. The points are running sums in double precision, and the first one beyond
/// the radius ends the walk; both decide what a segment holds, so that a whole-number radius may miss its
/// tip. linear... holds each rounded point and its opposite, halfLinear... only one side. Neighbours along a
/// segment differ by at most 1 on each axis. For an infinite radius the walk does not end, or ends with the
/// memory.
///
/// **Errors.** ORVELBaseDataException (eInvalidRadius) for a radius that is not at least 0, NaN included; -0
/// is. Boxes have none.
///
/// Complexity: linear in the box of the shape; n log n for a segment.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Make a box of the plane. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr rectangularSEXY(ipUInt32 halfSizeX, ipUInt32 halfSizeY);

/// \brief Make a box of the plane with one half size. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr squareSEXY(ipUInt32 halfSize);

/// \brief Make a disc. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr circularSEXY(ipReal64 radius);

/// \brief Make a segment of the plane from the origin. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr halfLinearSEXY(ipReal64 theta, ipReal64 radius);

/// \brief Make a segment of the plane through the origin. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr linearSEXY(ipReal64 theta, ipReal64 radius);

/// \brief Make a box of space. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr rectangularSEXYZ(ipUInt32 halfSizeX, ipUInt32 halfSizeY,
                                                               ipUInt32 halfSizeZ);

/// \brief Make a box of space with one half size. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr cubicSEXYZ(ipUInt32 halfSize);

/// \brief Make a ball. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr sphericalSEXYZ(ipReal64 radius);

/// \brief Make a segment of space from the origin. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr halfLinearSEXYZ(ipReal64 theta, ipReal64 phi, ipReal64 radius);

/// \brief Make a segment of space through the origin. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr linearSEXYZ(ipReal64 theta, ipReal64 phi, ipReal64 radius);

} // namespace orvel
