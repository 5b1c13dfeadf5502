#pragma once

/// \file
/// \brief Kinds of kernels.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of a kernel: the space in which its taps lie.
class ORVELBASEDATA_EXPORT eKernelType : public NamedEnumeration<eKernelType>
{
public:
  enum domain
  {
    eKT_XY, ///< the plane: KernelXY
    eKT_XYZ ///< space: KernelXYZ
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
