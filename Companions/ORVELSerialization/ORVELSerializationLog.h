#pragma once

/// \file
/// \brief Logger and message table of ORVELSerialization.

#include <ORVELSerialization/ORVELSerializationExport.h>

namespace log4cplus
{
class Logger;
}

namespace orvel
{

class LogMessageManager;

ORVELSERIALIZATION_EXPORT log4cplus::Logger& getORVELSerializationLogger(); ///< a child of the base logger
ORVELSERIALIZATION_EXPORT LogMessageManager&
getORVELSerializationLogMessageManager(); ///< messages of the library

} // namespace orvel
