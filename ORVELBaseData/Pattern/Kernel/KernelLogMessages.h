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

/// \brief Failures and warnings of the kernels and their generators. The texts stand in the source.
class ORVELBASEDATA_EXPORT eKernelMessage : public NamedEnumeration<eKernelMessage>
{
public:
  enum domain
  {
    eInsertExistingKernelElt,        ///< the offset has a tap
    eReplaceMissingKernelElt,        ///< registered, but raised by nobody: replace raises the next one
    eRemoveMissingKernelElt,         ///< remove or replace: the offset has no tap
    eGetMissingKernelElt,            ///< the offset has no tap
    eNullGaussianRatioAndKernelSize, ///< neither a ratio nor a minimum size asks for any tap
    eInvalidGaussianRatio,           ///< not in [0, 1[: the ratio
    eInvalidStdDevX,                 ///< not above 0: the standard deviation
    eInvalidStdDevY,                 ///< not above 0: the standard deviation
    eInvalidStdDevZ,                 ///< not above 0: the standard deviation
    eEvenKernelSize,                 ///< the number of values
    eKernelSizeMismatchXY,           ///< half sizes along x and y, and the number of values
    eKernelSizeMismatchXYZ,          ///< half sizes along x, y and z, and the number of values
    eCloseStdDevXY,                  ///< a warning
    eTooLowOrientation               ///< a warning
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eKernelMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
