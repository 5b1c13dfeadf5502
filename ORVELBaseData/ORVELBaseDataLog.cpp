#include "ORVELBaseData/ORVELBaseDataLog.h"

#include <ORVELUtil/LateLogger.h>
#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <ORVELUtil/UnitMutex.h>

namespace orvel
{

namespace
{

class LoggerNameMutex : public UnitMutex<LoggerNameMutex>
{
};

class LoggerMutex : public UnitMutex<LoggerMutex> // taken before LoggerNameMutex where both are needed
{
};

class ManagerMutex : public UnitMutex<ManagerMutex>
{
};

[[maybe_unused]] const bool g_mutexesMade =
    LoggerNameMutex::touch() && LoggerMutex::touch() && ManagerMutex::touch();

details::LateLogger& getLateLogger()
{
  static details::LateLogger g_logger;
  return g_logger;
}

// Made before the static objects of the application, whose destructors may still raise.
[[maybe_unused]] const bool g_madeAtLoad = (getLateLogger(), getORVELBaseDataLoggerName(), true);

} // namespace

LogMessageManager& getORVELBaseDataLogMessageManager()
{
  const boost::mutex::scoped_lock lock(ManagerMutex::get());
  static LogMessageManager* const g_manager = &LogMessageManager::getInstance("ORVELBaseData");
  return *g_manager;
}

const std::string& getORVELBaseDataLoggerName()
{
  const boost::mutex::scoped_lock lock(LoggerNameMutex::get());
  static const std::string g_loggerName = getBaseLoggerName() + ".ORVELBaseData";
  return g_loggerName;
}

log4cplus::Logger& getORVELBaseDataLogger()
{
  const boost::mutex::scoped_lock lock(LoggerMutex::get());
  return getLateLogger().get(getORVELBaseDataLoggerName());
}

} // namespace orvel
