#pragma once

/// \file
/// \brief Separable Gaussian kernels: one line of taps for each image axis.
///
/// Three families, each for the plane and for space: the samples of the normal density (smoothing), of its
/// first derivative (gradient) and of its second derivative (Hessian), with mean 0. What the six functions
/// have in common:
///
/// **Shape.** The kernel of an axis has its taps on that axis, at the offsets -n to n; each axis finds its
/// own half size n. With mass(i) the share of the distribution between -i and i, n is the largest i that is
/// either not above \c minKernelSize or has a mass(i) below \c ratio. So tap n is the last one whose own mass
/// falls short of the ratio, and the finished kernel may cover less than it: a ratio of 0.9 and a standard
/// deviation of 1, where mass(1) is 0.68 and mass(2) is 0.95, give 3 taps. A ratio up to mass(1), without a
/// minimum size, gives one tap, which is 0 in a gradient. There is no upper bound: time and memory grow with
/// the standard deviation and with how near the ratio is to 1.
///
/// **Coefficients.** Computed in double precision and rounded once to float. The smoothing kernels hold the
/// raw density: their sum is below 1 where the kernel is cut, and may be above 1 for a small standard
/// deviation. The gradient and Hessian coefficients are divided by mass(n + 1), or by the float epsilon where
/// that is larger. A coefficient of 0 is a tap like any other. The gradient is negative at positive offsets;
/// it is +0 at the centre, and where it underflows -0 at positive and +0 at negative offsets.
///
/// **Parameters.**
///  - \c stdDevX, \c stdDevY, \c stdDevZ: standard deviation along each axis, above 0, in offset steps;
///    infinity is accepted, though no number of taps then reaches a ratio above 0.
///  - \c ratio: the share of the distribution to reach, from 0 included to 1 excluded.
///  - \c minKernelSize: half size that a kernel has at least, in taps on each side of the centre. From
///    2147483648 on it asks for nothing.
///  - \c pKernelX, \c pKernelY, \c pKernelZ: the results; what they held is released first. One pointer
///    given for several axes holds the last kernel.
///
/// **Errors.** ORVELBaseDataException for, in the order of the checks, a standard deviation that is not above
/// 0 (eInvalidStdDevX, eInvalidStdDevY, eInvalidStdDevZ), a ratio out of its range (eInvalidGaussianRatio), a
/// ratio and a minimum size that are both 0 (eNullGaussianRatioAndKernelSize). A NaN fails its check. The
/// messages name open ranges although 0 and infinity are accepted. After any failure the result pointers are
/// null.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Make the smoothing kernels of the plane. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianSmoothing(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio,
                                                     ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                                     KernelXYPtr& pKernelY);

/// \brief Make the gradient kernels of the plane. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianGradient(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio,
                                                    ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                                    KernelXYPtr& pKernelY);

/// \brief Make the Hessian kernels of the plane. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianHessian(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio,
                                                   ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                                   KernelXYPtr& pKernelY);

/// \brief Make the smoothing kernels of space. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianSmoothing(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ,
                                                     ipReal32 ratio, ipUInt32 minKernelSize,
                                                     KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                                                     KernelXYZPtr& pKernelZ);

/// \brief Make the gradient kernels of space. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianGradient(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ,
                                                    ipReal32 ratio, ipUInt32 minKernelSize,
                                                    KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                                                    KernelXYZPtr& pKernelZ);

/// \brief Make the Hessian kernels of space. \see GaussianKernel.h
ORVELBASEDATA_EXPORT void separableGaussianHessian(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ,
                                                   ipReal32 ratio, ipUInt32 minKernelSize,
                                                   KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                                                   KernelXYZPtr& pKernelZ);

} // namespace orvel
