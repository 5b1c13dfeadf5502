#pragma once

/// \file
/// \brief Builders of structuring elements: boxes, discs and balls, and straight segments.
///
/// **Parameters.** Half sizes and radii are in offset steps, angles in radians. A 2-D segment runs
/// towards (cos theta, sin theta), a 3-D one towards (sin theta cos phi, sin theta sin phi, cos theta),
/// with theta measured from +z and phi from +x towards +y. Angles may have any value; one that is NaN or
/// infinite leaves the origin alone.
///
/// **Boxes** hold every offset with |x| <= halfSizeX and so on: 2 halfSize + 1 along an axis. A half size of
/// 2147483649 or more is a negative number in 32 bits and gives an empty element; 2147483648 gives the one
/// coordinate -2147483648.
///
/// **Discs and balls** hold every offset with x^2 + y^2 [+ z^2] <= radius^2, the boundary included. For whole
/// radii a disc has the counts of Gauss's circle problem: 1, 5, 13, 29 for 0, 1, 2, 3; between them 9 for 1.5
/// and 21 for 2.5. The extent is the radius truncated to an integer. Squares are 32-bit integers that wrap
/// around, so that the working range ends where 2 [3] radius^2 reaches 2^31: 32767 for a disc, 26754 for a
/// ball. A radius beyond 32 bits is truncated to -2147483648.
///
/// **Segments** are the points at 0, 1, 2 ... steps of length 1 from the origin up to the radius, rounded to
/// the grid, halves away from zero. A step changes each coordinate by at most 1, and so the rounded one: a
/// segment has no gap. The points are running sums in double precision, and the first one beyond the radius
/// ends the walk. Both decide what a segment holds, so that one with a whole-number radius may miss its tip.
/// linear... holds each rounded point and its opposite, halfLinear... only one side.
///
/// Beyond a radius of some 1e16, infinity included, the walk has no end: the sums stop growing at 2^53.
/// Coordinates beyond 32 bits are -2147483648, so the set stops growing, too, after some 2^31 points. Such a
/// call ends with std::bad_alloc or, with enough memory, not at all.
///
/// **Errors.** ORVELBaseDataException (eInvalidRadius) if the radius is negative or NaN; -0 is accepted.
/// Builders of boxes raise nothing.
///
/// Complexity: linear in the box of the shape; n log n for a segment.
/// \par Reference
/// R. Klette, A. Rosenfeld, Digital Geometry, Morgan Kaufmann 2004, chapter 2 (which grid points a shape
/// holds).

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Build a rectangle. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr rectangularSEXY(ipUInt32 halfSizeX, ipUInt32 halfSizeY);

/// \brief Build a square. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr squareSEXY(ipUInt32 halfSize);

/// \brief Build a disc. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr circularSEXY(ipReal64 radius);

/// \brief Build a 2-D segment from the origin. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr halfLinearSEXY(ipReal64 theta, ipReal64 radius);

/// \brief Build a 2-D segment through the origin. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYPtr linearSEXY(ipReal64 theta, ipReal64 radius);

/// \brief Build a box. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr rectangularSEXYZ(ipUInt32 halfSizeX, ipUInt32 halfSizeY,
                                                               ipUInt32 halfSizeZ);

/// \brief Build a cube. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr cubicSEXYZ(ipUInt32 halfSize);

/// \brief Build a ball. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr sphericalSEXYZ(ipReal64 radius);

/// \brief Build a 3-D segment from the origin. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr halfLinearSEXYZ(ipReal64 theta, ipReal64 phi, ipReal64 radius);

/// \brief Build a 3-D segment through the origin. \see StructuringElementUtils.h
ORVELBASEDATA_EXPORT StructuringElementXYZPtr linearSEXYZ(ipReal64 theta, ipReal64 phi, ipReal64 radius);

} // namespace orvel
