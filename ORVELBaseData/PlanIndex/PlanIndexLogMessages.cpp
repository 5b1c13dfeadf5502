#include "ORVELBaseData/PlanIndex/PlanIndexLogMessages.h"

namespace orvel
{

namespace
{

constexpr MessageTableEntry g_messages[] = {
    {ePlanIndexMessage::ePlanNotFound, "ePlanNotFound",
     "Can't get element for plan index z=%d, c=%d, t=%d, element not found"},
    {ePlanIndexMessage::ePlanAlreadyExists, "ePlanAlreadyExists",
     "Can't insert element for plan index z=%d, c=%d, t=%d, already exists"},
    {ePlanIndexMessage::eInvalidPlanOffset, "eInvalidPlanOffset",
     "Plan offset %d is not valid given plan indexed data with %d plans"},
    {ePlanIndexMessage::eNullPlanPtr, "eNullPlanPtr",
     "Null shared pointer for plan index z=%d, c=%d, t=%d, can't insert it"},
};

} // namespace

ORVEL_DEFINE_MESSAGE_TABLE(ePlanIndexMessage, "ORVELBaseData", g_messages)

} // namespace orvel
