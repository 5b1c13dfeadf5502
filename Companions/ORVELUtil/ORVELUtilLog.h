#pragma once

/// \file
/// \brief Loggers and message tables of the kit and of ORVELUtil.
///
/// The application owns log4cplus: it sets levels, appenders and layouts. Until it does, nothing is
/// printed. The libraries log failures when they raise them and never at load or unload.

#include <string>

#include <ORVELUtil/ORVELUtilExport.h>

namespace log4cplus
{
class Logger;
}

namespace orvel
{

class LogMessageManager;

/// \brief Return the kit's root logger; the loggers of the libraries are its children.
///
/// It carries a null appender, so that log4cplus does not complain on the standard error stream about an
/// application that has not set it up. The next message puts one back that the application has removed.
ORVELUTIL_EXPORT log4cplus::Logger& getBaseLogger();

/// \brief Return the name of the kit's root logger, "ORVEL".
ORVELUTIL_EXPORT const std::string& getBaseLoggerName();

/// \brief Emit one event at a level with a file and a line, whatever level the logger is set to.
ORVELUTIL_EXPORT void logMessage(log4cplus::Logger& logger, const int& level, const std::string& message,
                                 const std::string& file, int line);

ORVELUTIL_EXPORT log4cplus::Logger& getORVELUtilLogger();            ///< logger of ORVELUtil
ORVELUTIL_EXPORT LogMessageManager& getORVELUtilLogMessageManager(); ///< messages of ORVELUtil

} // namespace orvel
