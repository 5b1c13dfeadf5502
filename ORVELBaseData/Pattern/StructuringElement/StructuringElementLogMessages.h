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

/// \brief Failures of the structuring elements, their builders and their descriptions. The texts are in the
/// source.
class ORVELBASEDATA_EXPORT eStructuringElementMessage : public NamedEnumeration<eStructuringElementMessage>
{
public:
  enum domain
  {
    eInsertExistingSEElt,  ///< insert() of an element: the offset is there already
    eRemoveMissingSEElt,   ///< remove() of an element: the offset is not there
    eInvalidRadius,        ///< negative or NaN: the radius, with six decimals
    eSEInfoNotInitialized, ///< query or change of a description that is not initialised
    eInvalidSESubType      ///< query for a parameter that the shape of a description does not have
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(eStructuringElementMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
