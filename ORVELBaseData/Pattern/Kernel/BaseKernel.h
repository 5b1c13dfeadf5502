#pragma once

/// \file
/// \brief Root of the kernels.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/Kernel/KernelType.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Root of the kernels, the sparse sets of weighted taps around a centre.
///
/// Archive version 1, without items. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseKernel : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(BaseKernel)

public:
  ~BaseKernel() override = 0;

  virtual eKernelType getKernelType() const = 0; ///< kind of the kernel: plane or space
  virtual ipUInt32 getNbData() const = 0;        ///< number of taps
  virtual void clear() = 0;                      ///< remove all taps, back to the state of a new kernel

protected:
  BaseKernel() = default;
};

} // namespace orvel
