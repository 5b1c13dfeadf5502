#include "ORVELBaseData/Pattern/Kernel/Instances/SobelKernel.h"

#include <cstddef>
#include <initializer_list>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Pattern/Private/SeparableKernels.h>

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

/// The body of all four functions.
template <class Kernel, std::size_t NB_AXES>
void makeKernels(const Coefficients& coefficients, boost::shared_ptr<Kernel>* const (&results)[NB_AXES])
{
  details::releaseAll(results);
  details::makeForEachAxis(results,
                           [&](Kernel& kernel, std::size_t axis)
                           {
                             ipInt32 i = -static_cast<ipInt32>(coefficients.size() / 2);
                             for (const ipReal32 coefficient : coefficients)
                               kernel.insert(details::offsetOnAxis<typename Kernel::OffsetType>(axis, i++),
                                             coefficient);
                           });
}

} // namespace

void separableSobelSmoothing(const eSobelKernelType& type, KernelXYPtr& pKernelX, KernelXYPtr& pKernelY)
{
  makeKernels(smoothingCoefficients(type), {&pKernelX, &pKernelY});
}

void separableSobelGradient(const eSobelKernelType& type, KernelXYPtr& pKernelX, KernelXYPtr& pKernelY)
{
  makeKernels(gradientCoefficients(type), {&pKernelX, &pKernelY});
}

void separableSobelSmoothing(const eSobelKernelType& type, KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                             KernelXYZPtr& pKernelZ)
{
  makeKernels(smoothingCoefficients(type), {&pKernelX, &pKernelY, &pKernelZ});
}

void separableSobelGradient(const eSobelKernelType& type, KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                            KernelXYZPtr& pKernelZ)
{
  makeKernels(gradientCoefficients(type), {&pKernelX, &pKernelY, &pKernelZ});
}

} // namespace orvel
