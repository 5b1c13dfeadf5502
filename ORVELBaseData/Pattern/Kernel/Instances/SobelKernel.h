#pragma once

/// \file
/// \brief Separable Sobel kernels: one line of taps for each image axis, of fixed small integers.
///
/// | type | smoothing | gradient |
/// |---|---|---|
/// | eSKT_Scharr3 | 3, 10, 3 | -1, 0, 1 |
/// | eSKT_Sobel3 | 1, 2, 1 | -1, 0, 1 |
/// | eSKT_Sobel5 | 1, 4, 6, 4, 1 | -1, -2, 0, 2, 1 |
/// | eSKT_Sobel7 | 1, 6, 15, 20, 15, 6, 1 | -1, -4, -5, 0, 5, 4, 1 |
///
/// **Shape.** Taps on the kernel's axis around the centre; the table runs from the most negative offset to
/// the most positive. The 0 at the centre of a gradient is a tap like any other. The smoothing rows of Sobel
/// are binomial, and a gradient is the smoothing row two taps shorter, convolved with -1, 0, 1. Nothing is
/// normalised: the smoothing sums are 16, 4, 16 and 64. A gradient is positive at positive offsets, unlike
/// the Gaussian ones.
///
/// **Parameters.**
///  - \c type: the row of the table; a value that is not an enumerator is treated as eSKT_Scharr3.
///  - \c pKernelX, \c pKernelY, \c pKernelZ: the results; what they held is released first. One
///    pointer given for several axes holds the last kernel.
///
/// **Errors.** None for any argument. If memory runs out, the results are null.
///
/// \par Reference
/// I. Sobel, G. Feldman, A 3x3 isotropic gradient operator for image processing, 1968; H. Scharr, Optimal
/// operators in digital image processing, 2000.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELBaseData/Pattern/Kernel/SobelKernelType.h>

namespace orvel
{

/// \brief Make the 2-D smoothing kernels. \see SobelKernel.h
ORVELBASEDATA_EXPORT void separableSobelSmoothing(const eSobelKernelType& type, KernelXYPtr& pKernelX,
                                                  KernelXYPtr& pKernelY);

/// \brief Make the 2-D gradient kernels. \see SobelKernel.h
ORVELBASEDATA_EXPORT void separableSobelGradient(const eSobelKernelType& type, KernelXYPtr& pKernelX,
                                                 KernelXYPtr& pKernelY);

/// \brief Make the 3-D smoothing kernels. \see SobelKernel.h
ORVELBASEDATA_EXPORT void separableSobelSmoothing(const eSobelKernelType& type, KernelXYZPtr& pKernelX,
                                                  KernelXYZPtr& pKernelY, KernelXYZPtr& pKernelZ);

/// \brief Make the 3-D gradient kernels. \see SobelKernel.h
ORVELBASEDATA_EXPORT void separableSobelGradient(const eSobelKernelType& type, KernelXYZPtr& pKernelX,
                                                 KernelXYZPtr& pKernelY, KernelXYZPtr& pKernelZ);

} // namespace orvel
