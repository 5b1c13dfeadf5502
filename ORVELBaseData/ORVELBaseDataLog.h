#pragma once

/// \file
/// \brief Logger and message table of ORVELBaseData.

#include <string>

#include <ORVELBaseData/ORVELBaseDataExport.h>

namespace log4cplus
{
class Logger;
}

namespace orvel
{

class LogMessageManager;

/// \brief Return the table of the messages of all domains of the library; its key is "ORVELBaseData".
ORVELBASEDATA_EXPORT LogMessageManager& getORVELBaseDataLogMessageManager();

/// \brief Return the name of the library's logger: that of the base logger followed by ".ORVELBaseData".
ORVELBASEDATA_EXPORT const std::string& getORVELBaseDataLoggerName();

/// \brief Return the library's logger. The application sets its level and its appenders.
ORVELBASEDATA_EXPORT log4cplus::Logger& getORVELBaseDataLogger();

} // namespace orvel
