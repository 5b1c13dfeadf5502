#include "ORVELUtil/ORVELUtilLog.h"

#include <log4cplus/logger.h>
#include <log4cplus/nullappender.h>

#include <ORVELUtil/LateLogger.h>
#include <ORVELUtil/LogMessageManager.h>

namespace orvel
{

namespace
{

details::LateLogger& getLateBaseLogger()
{
  static details::LateLogger g_logger;
  return g_logger;
}

details::LateLogger& getLateORVELUtilLogger()
{
  static details::LateLogger g_logger;
  return g_logger;
}

[[maybe_unused]] const bool g_madeAtLoad =
    (getBaseLoggerName(), getLateBaseLogger(), getLateORVELUtilLogger(), true);

/// Gives the logger a null appender unless it has one, as from an earlier load of the library, which
/// log4cplus may outlive. Checked each time: all appenders are removed when the application shuts log4cplus
/// down.
void keepQuiet(log4cplus::Logger& logger)
{
  const log4cplus::tstring name = "ORVEL.Null";
  if (logger.getAppender(name))
    return;
  const log4cplus::SharedAppenderPtr appender(new log4cplus::NullAppender);
  appender->setName(name);
  logger.addAppender(appender);
}

} // namespace

const std::string& getBaseLoggerName()
{
  static const std::string g_baseLoggerName = "ORVEL";
  return g_baseLoggerName;
}

log4cplus::Logger& getBaseLogger()
{
  log4cplus::Logger& logger = getLateBaseLogger().get(getBaseLoggerName());
  keepQuiet(logger);
  return logger;
}

void logMessage(log4cplus::Logger& logger, const int& level, const std::string& message,
                const std::string& file, int line)
{
  getBaseLogger(); // adds its null appender before the event
  logger.forcedLog(level, message, file.c_str(), line);
}

log4cplus::Logger& getORVELUtilLogger()
{
  return getLateORVELUtilLogger().get(getBaseLoggerName() + ".ORVELUtil");
}

LogMessageManager& getORVELUtilLogMessageManager()
{
  static LogMessageManager& g_manager = LogMessageManager::getInstance("ORVELUtil");
  return g_manager;
}

} // namespace orvel
