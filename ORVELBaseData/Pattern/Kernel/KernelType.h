#pragma once

/// \file
/// \brief Kinds of kernels.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of a kernel, by the number of its axes.
class ORVELBASEDATA_EXPORT eKernelType : public NamedEnumeration<eKernelType>
{
public:
  enum domain
  {
    eKT_XY, ///< of the plane: KernelXY
    eKT_XYZ ///< of space: KernelXYZ
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
