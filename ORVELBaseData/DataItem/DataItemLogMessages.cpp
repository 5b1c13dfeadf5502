#include "ORVELBaseData/DataItem/DataItemLogMessages.h"

namespace orvel
{

namespace
{

using M = eDataItemMessage;

constexpr MessageTableEntry g_messages[] = {
    {M::eInvalidDataItemType, "eInvalidDataItemType", "Invalid data item type enumerate value %s"},
    {M::eInvalidDataItemValueType, "eInvalidDataItemValueType",
     "Invalid data item value type enumerate value %s"},
    {M::eInvalidEnumIntValue, "eInvalidEnumIntValue", "Invalid enumerate integer value %d for enumerate %s"},
    {M::eInvalidEnumStrValue, "eInvalidEnumStrValue", "Invalid enumerate string value %s for enumerate %s"},
    {M::eNodeIndexOutOfBounds, "eNodeIndexOutOfBounds", "Node with index %d is out of bounds [0; %d["},
    {M::eItemAlreadyInMap, "eItemAlreadyInMap",
     "Item with name %s already exists into item map, can't insert it"},
    {M::eItemNotInMap, "eItemNotInMap", "Item with name %s does not exist into item map, can't remove it"},
    {M::eNodeAlreadyRegistred, "eNodeAlreadyRegistred",
     "Data item node %s is already registred into factory, can't register more than once"},
    {M::eUnknownItem, "eUnknownItem", "Item with name %s does not exists for current item node"},
    {M::eNodeNotRegistred, "eNodeNotRegistred",
     "Data item node %s is not registred into factory, can't access data item node informations"},
    {M::eNodeNotRegistredForRemoval, "eNodeNotRegistredForRemoval",
     "Data item node %s is not registred into factory, can't remove from factory"},
    {M::eNullItemPtr, "eNullItemPtr", "Item shared pointer should not be null"},
};

} // namespace

ORVEL_DEFINE_MESSAGE_TABLE(eDataItemMessage, "ORVELBaseData", g_messages)

} // namespace orvel
