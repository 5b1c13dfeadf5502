#include "ORVELUtil/ORVELUtilLogMessages.h"

namespace orvel
{

namespace
{

constexpr MessageTableEntry g_messages[] = {
    {eORVELUtilErrors::eUnknownClassName, "eUnknownClassName", "Unknown class name %s"},
    {eORVELUtilErrors::eNoNewCreator, "eNoNewCreator", "Class %s is registered without a creator of objects"},
    {eORVELUtilErrors::eNoSharedCreator, "eNoSharedCreator",
     "Class %s is registered without a creator of shared objects"},
    {eORVELUtilErrors::eNoCopySupport, "eNoCopySupport", "Class %s doesn't support copy"},
};

} // namespace

ORVEL_DEFINE_MESSAGE_TABLE(eORVELUtilErrors, "ORVELUtil", g_messages)

} // namespace orvel
