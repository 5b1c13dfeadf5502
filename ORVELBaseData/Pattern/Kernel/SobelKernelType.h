#pragma once

/// \file
/// \brief Kinds of Sobel kernels.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of a pair of Sobel kernels: the operator and the number of taps of a kernel.
///
/// A value that is not an enumerator is treated as eSKT_Scharr3.
class ORVELBASEDATA_EXPORT eSobelKernelType : public NamedEnumeration<eSobelKernelType>
{
public:
  enum domain
  {
    eSKT_Scharr3, ///< 3 taps, with the smoothing weights of the Scharr operator
    eSKT_Sobel3,  ///< 3 taps
    eSKT_Sobel5,  ///< 5 taps
    eSKT_Sobel7   ///< 7 taps
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
