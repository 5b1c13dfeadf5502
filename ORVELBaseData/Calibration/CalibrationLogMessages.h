#pragma once

/// \file
/// \brief Messages of the calibration.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

/// \brief Failures of the calibration. The texts are in the source.
class ORVELBASEDATA_EXPORT eCalibrationMessage : public NamedEnumeration<eCalibrationMessage>
{
public:
  enum domain
  {
    eInvalidScale ///< not above 0: the scale, with six decimals
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eCalibrationMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
