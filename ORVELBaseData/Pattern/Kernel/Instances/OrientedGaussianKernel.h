#pragma once

/// \file
/// \brief Gaussian kernels of the plane along turned axes.
///
/// Both functions make the two kernels of GaussianKernel.h, with its parameters and checks, and turn both by
/// one angle with rotate2dKernel(): two lines of taps along the turned axes. Taps may have merged, by which
/// a gradient may lose signs, and are not normalised again. One pointer given for both kernels is turned
/// twice.
///
/// \c orientation is in radians, from +x towards +y. Up to the square root of the float epsilon, and for NaN,
/// nothing is turned and a warning is logged (eTooLowOrientation).
///
/// A warning that the standard deviations are close (eCloseStdDevXY) is logged before any argument is
/// checked: by the smoothing function if they differ by less than the square root of the double epsilon, by
/// the gradient function if they differ by *more* than that. The difference is kept for compatibility.
///
/// Warnings go to the library's logger at WARN level and stop nothing.
///
/// **Errors.** Those of GaussianKernel.h, in the name of its functions; the results are null then. If memory
/// runs out while the kernels are turned, the results hold the straight kernels, the first of which may be
/// turned already. BaseException if a warning cannot be logged: the results then hold what they held, or the
/// straight kernels.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Make the turned smoothing kernels. \see OrientedGaussianKernel.h
ORVELBASEDATA_EXPORT void createOrientedGaussianSmoothingKernel(ipReal32 orientation, ipReal32 stdDevX,
                                                                ipReal32 stdDevY, ipReal32 ratio,
                                                                ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                                                KernelXYPtr& pKernelY);

/// \brief Make the turned gradient kernels. \see OrientedGaussianKernel.h
ORVELBASEDATA_EXPORT void createOrientedGaussianGradientKernel(ipReal32 orientation, ipReal32 stdDevX,
                                                               ipReal32 stdDevY, ipReal32 ratio,
                                                               ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                                               KernelXYPtr& pKernelY);

} // namespace orvel
