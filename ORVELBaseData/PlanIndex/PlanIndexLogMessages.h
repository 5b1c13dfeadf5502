#pragma once

/// \file
/// \brief Messages of the plan-indexed collections.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELUtil/MsgMapRegistrator.h>
#include <ORVELUtil/NamedEnumeration.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

/// \brief Failures of the plan-indexed collections. Their texts are in the source.
class ORVELBASEDATA_EXPORT ePlanIndexMessage : public NamedEnumeration<ePlanIndexMessage>
{
public:
  enum domain
  {
    ePlanNotFound,      ///< the collection has no such plan: z, c, t
    ePlanAlreadyExists, ///< the collection has the plan already: z, c, t
    eInvalidPlanOffset, ///< no such rank: the rank, the number of plans
    eNullPlanPtr        ///< a null pointer in place of an object: z, c, t
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

ORVEL_DECLARE_MESSAGE_TABLE(ePlanIndexMessage, ORVELBaseDataMessageOwner, ORVELBASEDATA_EXPORT)

} // namespace orvel
