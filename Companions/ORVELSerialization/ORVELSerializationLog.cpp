#include "ORVELSerialization/ORVELSerializationLog.h"

#include <ORVELUtil/LateLogger.h>
#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ORVELUtilLog.h>

namespace orvel
{

namespace
{

details::LateLogger& getLateLogger()
{
  static details::LateLogger g_logger;
  return g_logger;
}

[[maybe_unused]] const bool g_madeAtLoad = (getLateLogger(), true);

} // namespace

log4cplus::Logger& getORVELSerializationLogger()
{
  return getLateLogger().get(getBaseLoggerName() + ".ORVELSerialization");
}

LogMessageManager& getORVELSerializationLogMessageManager()
{
  static LogMessageManager& g_manager = LogMessageManager::getInstance("ORVELSerialization");
  return g_manager;
}

} // namespace orvel
