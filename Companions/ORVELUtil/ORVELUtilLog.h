#pragma once

/// \file
/// \brief Loggers and message tables of the kit and of ORVELUtil.
///
/// The application owns log4cplus: it sets levels, appenders and layouts. Until it does, nothing is printed.
/// The libraries log failures when they raise them, and nothing at load or unload.

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
/// It has a null appender: without one, log4cplus complains on the standard error stream until the
/// application sets it up. If the application removes the null appender, the next message adds it again.
ORVELUTIL_EXPORT log4cplus::Logger& getBaseLogger();

/// \brief Return the name of the kit's root logger, "ORVEL".
ORVELUTIL_EXPORT const std::string& getBaseLoggerName();

/// \brief Emit one event with its level, file and line, whatever level the logger is set to.
ORVELUTIL_EXPORT void logMessage(log4cplus::Logger& logger, const int& level, const std::string& message,
                                 const std::string& file, int line);

ORVELUTIL_EXPORT log4cplus::Logger& getORVELUtilLogger();            ///< logger of ORVELUtil
ORVELUTIL_EXPORT LogMessageManager& getORVELUtilLogMessageManager(); ///< messages of ORVELUtil

} // namespace orvel
