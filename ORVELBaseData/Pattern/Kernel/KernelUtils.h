#pragma once

/// \file
/// \brief Kernels from lists of coefficients, and the rotation of kernels.
///
/// What the builders have in common:
///
/// **Parameters.** \c values are the coefficients, read from first to last. A coefficient of 0 becomes a tap
/// only if \c keepNullCoefs is true; NaN always does. Angles are in radians; any number is accepted.
/// `orientation` runs from +x towards +y, `polarAngle` from +z, `azimuthAngle` from +x towards +y. The size
/// of a list is truncated to 32 bits. A new kernel is returned.
///
/// **Boxes** have (2 hx + 1)(2 hy + 1)[(2 hz + 1)] values in raster order, x fastest, the first at (-hx, -hy
/// [, -hz]). Sizes and coordinates are 32-bit numbers that wrap around: a half size of 2147483648 gives the
/// one coordinate -2147483648.
///
/// **Lines** have an odd number n of values. They run along the direction from its negative end to its
/// positive end, index -(n / 2) to n / 2, with the origin in the middle. The unit direction is (cos
/// orientation, sin orientation) in the plane, and (sin polar cos azimuth, sin polar sin azimuth, cos polar)
/// in space.
///  - *Snapped* lines move one grid step per index on the dominant axis, the one with the largest component
///    of the direction (ties go to x, then y). The other coordinates are rounded, halves away from zero. Taps
///    are up to sqrt(2) apart, in space sqrt(3).
///  - *Interpolated* lines step by the unit direction and share each value among the 4 (in space 8) grid
///    points next to it. Along an axis, a coordinate f lies between i, which is f truncated toward zero, and
///    i + 1; these have the weights i + 1 - f and f - i, which add up to 1, and a share is the value times
///    the weights of its point. Behind the origin f is below i: the weights leave the range 0 to 1, and the
///    kernel is not symmetric. A share of 0 is left out as a coefficient is. A NaN value reaches all points;
///    an infinite one gives NaN to those of weight 0.
///
/// All is computed in single precision. An angle that is NaN or infinite gives NaN coordinates, which round
/// and truncate to -2147483648, and NaN shares. A snapped line then takes its last axis as the dominant one
/// and steps on it; in space that axis is still right if only the azimuth is not finite.
///
/// **Errors.** ORVELBaseDataException for a line with an even number of values, 0 included (eEvenKernelSize),
/// and for a box whose size is not that of the list (eKernelSizeMismatchXY, eKernelSizeMismatchXYZ). The
/// outer indices of a snapped line of more than 33554433 values are not distinct in single precision: two
/// taps of one index are refused (eInsertExistingKernelElt).
///
/// Complexity: O(n) for boxes, O(n log n) for lines.
///
/// \par Reference
/// R. Klette, A. Rosenfeld, Digital straightness - a review, Discrete Applied Mathematics 139, 2004 (the
/// rounding of snapped lines is their grid-intersection digitization).

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Make a 2-D box. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYPtr rectangularKernelXY(ipUInt32 halfKernelSizeX, ipUInt32 halfKernelSizeY,
                                                     const Real32Vector& values, ipBool keepNullCoefs);

/// \brief Make a 2-D box with one half size. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYPtr squareKernelXY(ipUInt32 halfKernelSize, const Real32Vector& values,
                                                ipBool keepNullCoefs);

/// \brief Make a 2-D snapped line. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYPtr linearKernelXY(ipReal32 orientation, const Real32Vector& values,
                                                ipBool keepNullCoefs);

/// \brief Make a 2-D interpolated line. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYPtr linearInterpolatedKernelXY(ipReal32 orientation, const Real32Vector& values,
                                                            ipBool keepNullCoefs);

/// \brief Make a 3-D box. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYZPtr rectangularKernelXYZ(ipUInt32 halfKernelSizeX, ipUInt32 halfKernelSizeY,
                                                       ipUInt32 halfKernelSizeZ, const Real32Vector& values,
                                                       ipBool keepNullCoefs);

/// \brief Make a 3-D box with one half size. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYZPtr cubicKernelXYZ(ipUInt32 halfKernelSize, const Real32Vector& values,
                                                 ipBool keepNullCoefs);

/// \brief Make a 3-D snapped line. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYZPtr linearKernelXYZ(ipReal32 polarAngle, ipReal32 azimuthAngle,
                                                  const Real32Vector& values, ipBool keepNullCoefs);

/// \brief Make a 3-D interpolated line. \see KernelUtils.h
ORVELBASEDATA_EXPORT KernelXYZPtr linearInterpolatedKernelXYZ(ipReal32 polarAngle, ipReal32 azimuthAngle,
                                                              const Real32Vector& values,
                                                              ipBool keepNullCoefs);

/// \brief Turn a kernel about its centre, tap by tap.
///
/// A tap at (x, y) goes to (cos a x - sin a y, sin a x + cos a y) for the angle a, rounded to the grid,
/// halves away from zero, all in single precision: beyond 2^24 neighbours may meet.
///
/// A tap v that meets a coefficient c changes it to (|c| + v) / 2; at the end such a coefficient is divided
/// by the number of taps that met there. So two positive taps leave a quarter of their sum, and a negative
/// one that came earlier loses its sign. The rule is kept for compatibility.
///
/// Nothing is interpolated, filled or normalised; a place that no tap reaches stays empty. A coordinate
/// beyond 32 bits becomes -2147483648, and a NaN or infinite angle sends all taps to (-2147483648,
/// -2147483648). Complexity: O(n log n).
///
/// \param angle in radians, from +x towards +y
/// \param pKernel is not changed; must not be null, which is not checked
/// \return a new kernel
ORVELBASEDATA_EXPORT KernelXYPtr rotate2dKernel(ipReal32 angle, boost::shared_ptr<const KernelXY> pKernel);

} // namespace orvel
