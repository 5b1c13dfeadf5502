#include <ORVELUtil/ORVELUtilLogMessages.h>

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

const char* eORVELUtilErrors::findText(ipUInt32 value)
{
  return MessageTable(g_messages).findText(value);
}

LogMessageManager& details::MsgMapRegistratorDerived<eORVELUtilErrors, void>::getManager()
{
  return LogMessageManager::getInstance("ORVELUtil");
}

MessageTable details::MsgMapRegistratorDerived<eORVELUtilErrors, void>::getTable()
{
  return g_messages;
}

template class MsgMapRegistrator<eORVELUtilErrors, details::MsgMapRegistratorDerived<eORVELUtilErrors, void>>;

namespace
{
[[maybe_unused]] const bool g_messagesRegistered = MessageMapRegistrator<eORVELUtilErrors>::process();
}

} // namespace orvel
