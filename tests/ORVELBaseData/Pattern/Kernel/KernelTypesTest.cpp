#include <vector>

#include <gtest/gtest.h>

#include "ORVELBaseData/Pattern/Kernel/KernelType.h"
#include "ORVELBaseData/Pattern/Kernel/SobelKernelType.h"
#include <support/EnumerationChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

struct KernelTypeTable
{
  using Enumeration = eKernelType;

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eKernelType::eKT_XY, 0, "eKT_XY"}, {eKernelType::eKT_XYZ, 1, "eKT_XYZ"}};
  }
};

struct SobelKernelTypeTable
{
  using Enumeration = eSobelKernelType;

  static std::vector<EnumerationRow<Enumeration>> rows()
  {
    return {{eSobelKernelType::eSKT_Scharr3, 0, "eSKT_Scharr3"},
            {eSobelKernelType::eSKT_Sobel3, 1, "eSKT_Sobel3"},
            {eSobelKernelType::eSKT_Sobel5, 2, "eSKT_Sobel5"},
            {eSobelKernelType::eSKT_Sobel7, 3, "eSKT_Sobel7"}};
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(KernelType, Enumeration, KernelTypeTable, );
INSTANTIATE_TYPED_TEST_SUITE_P(SobelKernelType, Enumeration, SobelKernelTypeTable, );

} // namespace
