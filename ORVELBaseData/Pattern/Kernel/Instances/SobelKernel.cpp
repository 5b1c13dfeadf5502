#include "ORVELBaseData/Pattern/Kernel/Instances/SobelKernel.h"

#include <initializer_list>

#include <boost/make_shared.hpp>

namespace orvel
{

namespace
{

using Coefficients = std::initializer_list<ipReal32>;

Coefficients smoothingCoefficients(const eSobelKernelType& type)
{
  static constexpr Coefficients g_scharr3 = {3, 10, 3};
  static constexpr Coefficients g_sobel3 = {1, 2, 1};
  static constexpr Coefficients g_sobel5 = {1, 4, 6, 4, 1};
  static constexpr Coefficients g_sobel7 = {1, 6, 15, 20, 15, 6, 1};
  switch (type.getDomain())
  {
  case eSobelKernelType::eSKT_Sobel3:
    return g_sobel3;
  case eSobelKernelType::eSKT_Sobel5:
    return g_sobel5;
  case eSobelKernelType::eSKT_Sobel7:
    return g_sobel7;
  case eSobelKernelType::eSKT_Scharr3:
    break;
  }
  return g_scharr3;
}

Coefficients gradientCoefficients(const eSobelKernelType& type)
{
  static constexpr Coefficients g_three = {-1, 0, 1};
  static constexpr Coefficients g_sobel5 = {-1, -2, 0, 2, 1};
  static constexpr Coefficients g_sobel7 = {-1, -4, -5, 0, 5, 4, 1};
  switch (type.getDomain())
  {
  case eSobelKernelType::eSKT_Sobel5:
    return g_sobel5;
  case eSobelKernelType::eSKT_Sobel7:
    return g_sobel7;
  case eSobelKernelType::eSKT_Scharr3:
  case eSobelKernelType::eSKT_Sobel3:
    break;
  }
  return g_three;
}

void makeKernels(const Coefficients& coefficients, KernelXYPtr& pKernelX, KernelXYPtr& pKernelY)
{
  pKernelX.reset();
  pKernelY.reset();
  // Handed out when they are whole: memory may run out on the way, and one pointer may be given for both.
  const auto kernelX = boost::make_shared<KernelXY>();
  const auto kernelY = boost::make_shared<KernelXY>();
  ipInt32 place = -static_cast<ipInt32>(coefficients.size() / 2);
  for (const ipReal32 coefficient : coefficients)
  {
    kernelX->insert(OffsetXY(place, 0), coefficient);
    kernelY->insert(OffsetXY(0, place), coefficient);
    ++place;
  }
  pKernelX = kernelX;
  pKernelY = kernelY;
}

void makeKernels(const Coefficients& coefficients, KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                 KernelXYZPtr& pKernelZ)
{
  pKernelX.reset();
  pKernelY.reset();
  pKernelZ.reset();
  const auto kernelX = boost::make_shared<KernelXYZ>();
  const auto kernelY = boost::make_shared<KernelXYZ>();
  const auto kernelZ = boost::make_shared<KernelXYZ>();
  ipInt32 place = -static_cast<ipInt32>(coefficients.size() / 2);
  for (const ipReal32 coefficient : coefficients)
  {
    kernelX->insert(OffsetXYZ(place, 0, 0), coefficient);
    kernelY->insert(OffsetXYZ(0, place, 0), coefficient);
    kernelZ->insert(OffsetXYZ(0, 0, place), coefficient);
    ++place;
  }
  pKernelX = kernelX;
  pKernelY = kernelY;
  pKernelZ = kernelZ;
}

} // namespace

void separableSobelSmoothing(const eSobelKernelType& type, KernelXYPtr& pKernelX, KernelXYPtr& pKernelY)
{
  makeKernels(smoothingCoefficients(type), pKernelX, pKernelY);
}

void separableSobelGradient(const eSobelKernelType& type, KernelXYPtr& pKernelX, KernelXYPtr& pKernelY)
{
  makeKernels(gradientCoefficients(type), pKernelX, pKernelY);
}

void separableSobelSmoothing(const eSobelKernelType& type, KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                             KernelXYZPtr& pKernelZ)
{
  makeKernels(smoothingCoefficients(type), pKernelX, pKernelY, pKernelZ);
}

void separableSobelGradient(const eSobelKernelType& type, KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                            KernelXYZPtr& pKernelZ)
{
  makeKernels(gradientCoefficients(type), pKernelX, pKernelY, pKernelZ);
}

} // namespace orvel
