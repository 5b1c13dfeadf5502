#include "ORVELBaseData/Pattern/Kernel/Instances/OrientedGaussianKernel.h"

#include <cmath>

#include <ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.h>
#include <ORVELBaseData/Pattern/Kernel/KernelLogMessages.h>
#include <ORVELBaseData/Pattern/Kernel/KernelUtils.h>
#include <ORVELMath/NumericLimits.h>

namespace orvel
{

namespace
{

ipReal64 differenceOf(ipReal32 stdDevX, ipReal32 stdDevY)
{
  return std::abs(stdDevX - stdDevY);
}

/// Turns both kernels unless the angle is too low for that.
void rotateBoth(const SourceLocation& here, ipReal32 orientation, KernelXYPtr& pKernelX,
                KernelXYPtr& pKernelY)
{
  if (std::abs(orientation) > NumericLimits<float>::s_sqrt_eps)
  {
    pKernelX = rotate2dKernel(orientation, pKernelX);
    pKernelY = rotate2dKernel(orientation, pKernelY);
  }
  else
    warn(here, eKernelMessage::eTooLowOrientation);
}

} // namespace

void createOrientedGaussianSmoothingKernel(ipReal32 orientation, ipReal32 stdDevX, ipReal32 stdDevY,
                                           ipReal32 ratio, ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                           KernelXYPtr& pKernelY)
{
  if (NumericLimits<double>::s_sqrt_eps > differenceOf(stdDevX, stdDevY))
    warn(ORVEL_HERE, eKernelMessage::eCloseStdDevXY);
  separableGaussianSmoothing(stdDevX, stdDevY, ratio, minKernelSize, pKernelX, pKernelY);
  rotateBoth(ORVEL_HERE, orientation, pKernelX, pKernelY);
}

void createOrientedGaussianGradientKernel(ipReal32 orientation, ipReal32 stdDevX, ipReal32 stdDevY,
                                          ipReal32 ratio, ipUInt32 minKernelSize, KernelXYPtr& pKernelX,
                                          KernelXYPtr& pKernelY)
{
  // The opposite of the test above: callers know it so.
  if (differenceOf(stdDevX, stdDevY) > NumericLimits<double>::s_sqrt_eps)
    warn(ORVEL_HERE, eKernelMessage::eCloseStdDevXY);
  separableGaussianGradient(stdDevX, stdDevY, ratio, minKernelSize, pKernelX, pKernelY);
  rotateBoth(ORVEL_HERE, orientation, pKernelX, pKernelY);
}

} // namespace orvel
