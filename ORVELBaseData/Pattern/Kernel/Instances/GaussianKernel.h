#pragma once

/// \file
/// \brief Separable Gaussian kernels: one line of taps for each image axis.
///
/// Three families, each for the plane and for space: samples of the normal density (smoothing), of its first
/// derivative (gradient) and of its second derivative (Hessian), with mean 0. What the six functions have in
/// common:
///
/// **Shape.** The kernel of an axis has taps at the offsets -n to n on that axis; each axis has its own half
/// size n. Let mass(i) be the share of the distribution between -i and i, erf(i / (stdDev sqrt(2))). Taps end
/// before the first i above \c minKernelSize whose mass reaches \c ratio, so the kernel itself may cover less
/// than the ratio: a ratio of 0.9 and a standard deviation of 1 give 3 taps that cover 68 %, since mass(1) is
/// 0.68 and mass(2) is 0.95. A ratio up to mass(1) without a minimum size gives one tap, which is 0 in a
/// gradient. There is no upper bound: time and memory grow with the standard deviation and with how near the
/// ratio is to 1.
///
/// **Coefficients.** Computed in double precision and rounded once to float. Smoothing kernels hold the raw
/// density: their sum is below 1 if the kernel is cut, and may be above 1 for a small standard deviation.
/// Gradient and Hessian coefficients are divided by mass(n + 1), or by the float epsilon if that is larger. A
/// coefficient of 0 is a tap like any other. The gradient is negative at positive offsets. It is +0 at the
/// centre, and if it underflows -0 at positive and +0 at negative offsets.
///
/// **Parameters.**
///  - \c stdDevX, \c stdDevY, \c stdDevZ: standard deviation along each axis, above 0, in offset steps.
///    Infinity is accepted, but then no number of taps reaches a ratio above 0.
///  - \c ratio: the share of the distribution before which taps end, from 0 included to 1 excluded.
///  - \c minKernelSize: smallest half size, in taps on each side of the centre. Values from 2147483648 on are
///    treated as 0.
///  - \c pKernelX, \c pKernelY, \c pKernelZ: the results; what they held is released first, before
///    any argument is checked. One pointer given for several axes holds the last kernel.
///
/// **Errors.** ORVELBaseDataException for, in this order, a standard deviation that is not above 0
/// (eInvalidStdDevX, eInvalidStdDevY, eInvalidStdDevZ), a ratio out of its range (eInvalidGaussianRatio), a
/// ratio and a minimum size that are both 0 (eNullGaussianRatioAndKernelSize). NaN is refused. The
/// messages name narrower ranges: a ratio of 0 with a minimum size and an infinite standard deviation are
/// accepted. After a failure the results are null.
///
/// Complexity: O(n log n) per axis. \see NormalDistribution.h for the formulas and their source

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Make the 2-D smoothing kernels. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianSmoothing(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio,
                                                     ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                                     KernelXYPtr& pKernelY);

/// \brief Make the 2-D gradient kernels. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianGradient(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio,
                                                    ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                                    KernelXYPtr& pKernelY);

/// \brief Make the 2-D Hessian kernels. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianHessian(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio,
                                                   ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                                   KernelXYPtr& pKernelY);

/// \brief Make the 3-D smoothing kernels. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianSmoothing(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ,
                                                     ipReal32 ratio, ipUInt32 minKernelSize,
                                                     KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                                                     KernelXYZPtr& pKernelZ);

/// \brief Make the 3-D gradient kernels. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianGradient(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ,
                                                    ipReal32 ratio, ipUInt32 minKernelSize,
                                                    KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                                                    KernelXYZPtr& pKernelZ);

/// \brief Make the 3-D Hessian kernels. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianHessian(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ,
                                                   ipReal32 ratio, ipUInt32 minKernelSize,
                                                   KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                                                   KernelXYZPtr& pKernelZ);

} // namespace orvel
