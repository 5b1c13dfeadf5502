#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementLogMessages.h"

namespace orvel
{

namespace
{

using M = eStructuringElementMessage;

constexpr MessageTableEntry g_messages[] = {
    {M::eInsertExistingSEElt, "eInsertExistingSEElt",
     "Can't insert element into structuring element, it already exists"},
    {M::eRemoveMissingSEElt, "eRemoveMissingSEElt",
     "Can't remove element from structuring element, it does not exists"},
    {M::eInvalidRadius, "eInvalidRadius", "Invalid radius value %f, should not be negative"},
    {M::eSEInfoNotInitialized, "eSEInfoNotInitialized",
     "Structuring element informations have not been initialized"},
    {M::eInvalidSESubType, "eInvalidSESubType",
     "Structuring element sub type do not allows to retrieve this kind of information"},
};

} // namespace

ORVEL_DEFINE_MESSAGE_TABLE(eStructuringElementMessage, "ORVELBaseData", g_messages)

} // namespace orvel
