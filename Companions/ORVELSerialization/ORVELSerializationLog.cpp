#include <ORVELSerialization/ORVELSerializationLog.h>

#include <log4cplus/logger.h>

#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ORVELUtilLog.h>

namespace orvel
{

log4cplus::Logger& getORVELSerializationLogger()
{
  static log4cplus::Logger g_logger =
      log4cplus::Logger::getInstance(getBaseLoggerName() + ".ORVELSerialization");
  return g_logger;
}

LogMessageManager& getORVELSerializationLogMessageManager()
{
  static LogMessageManager& g_manager = LogMessageManager::getInstance("ORVELSerialization");
  return g_manager;
}

} // namespace orvel
