#pragma once

/// \file
/// \brief Gaussian kernels of the plane along turned axes.
///
/// Both functions make the two kernels of GaussianKernel.h, with its parameters and checks, and turn both by
/// one angle with rotate2dKernel(): two lines of taps along the turned axes, whose taps may have merged and
/// are not normalised anew.
///
/// \c orientation is in radians, from +x towards +y. Up to the square root of the float epsilon, and for NaN,
/// nothing is turned, and a warning is logged (eTooLowOrientation).
///
/// A warning that the standard deviations are close (eCloseStdDevXY), so that a rotation may not be visible,
/// is logged by the smoothing function where they differ by less than the square root of the double epsilon,
/// and by the gradient function where they differ by *more* than that. Applications know the two as they are.
///
/// The warning of the deviations comes before any check of the arguments. Both go to the library's logger at
/// WARN level, and stop nothing. A refused argument is reported by the function of GaussianKernel.h.
///
/// After a refused argument the result pointers are null. Where memory runs out while the kernels are turned
/// they hold the straight ones, the first of which may be turned already. Where the log fails they hold at
/// the first warning what they held, at the second the straight kernels. One pointer given for both kernels
/// is turned twice.

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
