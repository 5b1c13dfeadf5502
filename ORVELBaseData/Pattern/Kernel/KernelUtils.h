#pragma once

/// \file
/// \brief Kernels from lists of coefficients, and the rotation of kernels.
///
/// What the builders have in common:
///
/// **Parameters.** \c values are the coefficients, read from first to last. A coefficient of 0 becomes a tap
/// only where \c keepNullCoefs is true; NaN always does. Angles are in radians: \c orientation from +x
/// towards +y, \c polarAngle from +z, \c azimuthAngle from +x towards +y. A list that is too long for 32 bits
/// counts by its low 32 bits. A new kernel is returned.
///
/// **Boxes** have (2 hx + 1)(2 hy + 1)[(2 hz + 1)] values in raster order, x fastest, the first at (-hx, -hy
/// [, -hz]); these numbers and the coordinates are 32-bit ones that wrap around. A half size of 2147483648 so
/// stands for the one coordinate -2147483648.
///
/// **Lines** have an odd number n of values, which run along the direction from index -(n / 2) to n / 2, from
/// its negative end to its positive one, with the origin in the middle.
///  - *Snapped* lines move one grid step per index on the dominant axis, that of the largest component of the
///    unit direction (ties to x, then y), and round the other coordinates to the grid, halves away from zero:
///    a digital line, whose taps are up to sqrt(2), in space sqrt(3), apart.
///  - *Interpolated* lines step by the unit direction and share each value among the 4 (in space 8) grid
///    points next to it, with weights that are linear in the distance. The points are those of the coordinate
///    truncated toward zero and of one more, so that behind the origin the weights extrapolate, with values
///    outside 0 to 1, and the kernel is not symmetric. The shares add up to the value. A share of 0 is left
///    out as a coefficient would be. A NaN value gives NaN to all of them, an infinite one to those of weight
///    0.
///
/// All is computed in single precision. An angle that is NaN or infinite gives NaN coordinates, which round
/// and truncate to -2147483648. A snapped line takes its last axis for the dominant one then and steps on it;
/// in space that axis is still good where only the azimuth is not. NaN shares are the default quiet NaN.
///
/// **Errors.** ORVELBaseDataException for an even number of values of a line (eEvenKernelSize) and for a box
/// whose size is not that of the list (eKernelSizeMismatchXY, eKernelSizeMismatchXYZ). Snapped lines of more
/// than 33554433 values have indices that single precision cannot tell apart: two taps of one such index are
/// refused (eInsertExistingKernelElt).
///
/// Complexity: linear for boxes, n log n for lines.

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Make a box of the plane. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYPtr rectangularKernelXY(ipUInt32 halfKernelSizeX, ipUInt32 halfKernelSizeY,
                                                     const Real32Vector& values, ipBool keepNullCoefs);

/// \brief Make a box of the plane with one half size. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYPtr squareKernelXY(ipUInt32 halfKernelSize, const Real32Vector& values,
                                                ipBool keepNullCoefs);

/// \brief Make a snapped line of the plane. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYPtr linearKernelXY(ipReal32 orientation, const Real32Vector& values,
                                                ipBool keepNullCoefs);

/// \brief Make an interpolated line of the plane. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYPtr linearInterpolatedKernelXY(ipReal32 orientation, const Real32Vector& values,
                                                            ipBool keepNullCoefs);

/// \brief Make a box of space. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYZPtr rectangularKernelXYZ(ipUInt32 halfKernelSizeX, ipUInt32 halfKernelSizeY,
                                                       ipUInt32 halfKernelSizeZ, const Real32Vector& values,
                                                       ipBool keepNullCoefs);

/// \brief Make a box of space with one half size. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYZPtr cubicKernelXYZ(ipUInt32 halfKernelSize, const Real32Vector& values,
                                                 ipBool keepNullCoefs);

/// \brief Make a snapped line of space. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYZPtr linearKernelXYZ(ipReal32 polarAngle, ipReal32 azimuthAngle,
                                                  const Real32Vector& values, ipBool keepNullCoefs);

/// \brief Make an interpolated line of space. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYZPtr linearInterpolatedKernelXYZ(ipReal32 polarAngle, ipReal32 azimuthAngle,
                                                              const Real32Vector& values,
                                                              ipBool keepNullCoefs);

/// \brief Turn a kernel about its centre, tap by tap.
///
/// Each tap goes to its turned place, rounded to the grid, halves away from zero, all in single precision. A
/// tap that comes to a taken place changes the coefficient c there to (|c| + v) / 2, with v its own; in the
/// end such a coefficient is divided by the number of taps that have come. So of positive coefficients a
/// quarter of the sum is left where two meet, and an earlier negative one loses its sign. Nothing is
/// interpolated, filled or normalised; a place that no tap reaches stays empty. A coordinate beyond the 32
/// bits becomes -2147483648, and a NaN or infinite angle sends all taps to (-2147483648, -2147483648).
/// Complexity: n log n.
///
/// \param angle in radians, from +x towards +y
/// \param pKernel is not changed; must not be null
ORVELBASEDATA_EXPORT KernelXYPtr rotate2dKernel(ipReal32 angle, boost::shared_ptr<const KernelXY> pKernel);

} // namespace orvel
