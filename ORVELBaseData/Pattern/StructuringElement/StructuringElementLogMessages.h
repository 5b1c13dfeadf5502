#pragma once

/// \file
/// \brief Messages of the structuring elements, their builders and their descriptions.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

/// \brief Failures of the structuring elements, their builders and their descriptions. The texts stand in the
/// source.
class ORVELBASEDATA_EXPORT eStructuringElementMessage : public NamedEnumeration<eStructuringElementMessage>
{
public:
  enum domain
  {
    eInsertExistingSEElt,  ///< the offset is in the set
    eRemoveMissingSEElt,   ///< the offset is not in the set
    eInvalidRadius,        ///< not at least 0: the radius, with six decimals
    eSEInfoNotInitialized, ///< use of a description before its initialisation
    eInvalidSESubType      ///< a parameter that the shape does not have
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eStructuringElementMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
