#pragma once

/// \file
/// \brief Messages of the kernels and their generators.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

/// \brief Failures and warnings of the kernels and their generators. The comments name the arguments of each text.
class ORVELBASEDATA_EXPORT eKernelMessage : public NamedEnumeration<eKernelMessage>
{
public:
  enum domain
  {
    eInsertExistingKernelElt,        ///< insert(): the offset already has a tap
    eReplaceMissingKernelElt,        ///< never raised: replace() raises eRemoveMissingKernelElt
    eRemoveMissingKernelElt,         ///< remove() or replace(): the offset has no tap
    eGetMissingKernelElt,            ///< getValue(): the offset has no tap
    eNullGaussianRatioAndKernelSize, ///< ratio and minimum size are both 0
    eInvalidGaussianRatio,           ///< the ratio, which is not in [0, 1[
    eInvalidStdDevX,                 ///< the standard deviation, which is not above 0
    eInvalidStdDevY,                 ///< the standard deviation, which is not above 0
    eInvalidStdDevZ,                 ///< the standard deviation, which is not above 0
    eEvenKernelSize,                 ///< the number of values of a line, which is even
    eKernelSizeMismatchXY,           ///< half sizes along x and y, and the number of values
    eKernelSizeMismatchXYZ,          ///< half sizes along x, y and z, and the number of values
    eCloseStdDevXY,                  ///< warning of an oriented Gaussian kernel
    eTooLowOrientation               ///< warning of an oriented Gaussian kernel: it is not turned
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eKernelMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
