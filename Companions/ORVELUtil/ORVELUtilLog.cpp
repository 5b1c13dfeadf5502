#include <ORVELUtil/ORVELUtilLog.h>

#include <log4cplus/logger.h>
#include <log4cplus/nullappender.h>

#include <ORVELUtil/LogMessageManager.h>

namespace orvel
{

const std::string& getBaseLoggerName()
{
  static const std::string g_baseLoggerName = "ORVEL";
  return g_baseLoggerName;
}

log4cplus::Logger& getBaseLogger()
{
  static log4cplus::Logger g_baseLogger = []
  {
    log4cplus::Logger logger = log4cplus::Logger::getInstance(getBaseLoggerName());
    logger.addAppender(log4cplus::SharedAppenderPtr(new log4cplus::NullAppender));
    return logger;
  }();
  return g_baseLogger;
}

void logMessage(log4cplus::Logger& logger, const int& level, const std::string& message,
                const std::string& file, int line)
{
  getBaseLogger(); // its null appender must stand before the first event
  logger.forcedLog(level, message, file.c_str(), line);
}

log4cplus::Logger& getORVELUtilLogger()
{
  static log4cplus::Logger g_logger = log4cplus::Logger::getInstance(getBaseLoggerName() + ".ORVELUtil");
  return g_logger;
}

LogMessageManager& getORVELUtilLogMessageManager()
{
  static LogMessageManager& g_manager = LogMessageManager::getInstance("ORVELUtil");
  return g_manager;
}

} // namespace orvel
