#include "ORVELUtil/Raise.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

#include <ORVELUtil/ORVELUtilLog.h>
#include <ORVELUtil/UnHandleException.h>

namespace orvel::details
{

namespace
{

constexpr const char* g_brokenMessageText = "Exception thrown while processing message";

void logBrokenMessage(const SourceLocation& here)
{
  try
  {
    log4cplus::Logger& logger = getBaseLogger();
    if (logger.isEnabledFor(log4cplus::ERROR_LOG_LEVEL))
      log4cplus::detail::macro_forced_log(logger, log4cplus::ERROR_LOG_LEVEL,
                                          log4cplus::tstring(g_brokenMessageText), here.file,
                                          static_cast<int>(here.line), here.function);
  }
  catch (...)
  {
    // A failing appender must not hide the failure that is being reported.
  }
}

template <class Cause>
[[noreturn]] void raiseBrokenMessage(const SourceLocation& here, const Cause& cause)
{
  logBrokenMessage(here);
  throw BaseException(g_brokenMessageText, here.function, here.file, here.line, cause);
}

} // namespace

void logFailure(const log4cplus::Logger& ownersLogger, const LogMessageManager& manager,
                const std::string& text, const SourceLocation& here)
{
  log4cplus::Logger logger = ownersLogger;
  if (!logger.isEnabledFor(log4cplus::ERROR_LOG_LEVEL))
    return;
  LogMessageFormater relay(manager);
  relay << text;
  logMessage(logger, log4cplus::ERROR_LOG_LEVEL, relay.string(), here.file, static_cast<int>(here.line));
}

bool isWarningLogged(const log4cplus::Logger& ownersLogger)
{
  return ownersLogger.isEnabledFor(log4cplus::WARN_LOG_LEVEL);
}

void logWarning(const log4cplus::Logger& ownersLogger, const std::string& text, const SourceLocation& here)
{
  log4cplus::Logger logger = ownersLogger;
  logMessage(logger, log4cplus::WARN_LOG_LEVEL, text, here.file, static_cast<int>(here.line));
}

void raiseBrokenMessage(const SourceLocation& here)
{
  try
  {
    throw;
  }
  catch (const BaseException& cause)
  {
    raiseBrokenMessage(here, cause);
  }
  catch (const std::exception& cause)
  {
    raiseBrokenMessage(here, cause);
  }
  catch (...)
  {
    raiseBrokenMessage(here, UnHandleException());
  }
}

} // namespace orvel::details
