#pragma once

/// \file
/// \brief The one way in which the libraries raise a failure.
///
/// \code
/// raise(ORVEL_HERE, eKernelMessage::eInvalidStdDevX, stdDevX);
/// \endcode
/// looks the text up, binds the arguments, logs the text at error level and throws the exception of the
/// library that owns the domain. Until a failure occurs, nothing is formatted or looked up.

#include <exception>
#include <string>

#include <ORVELUtil/LogMessageFormater.h>
#include <ORVELUtil/ORVELUtilExport.h>
#include <ORVELUtil/SourceLocation.h>

namespace log4cplus
{
class Logger;
}

namespace orvel
{

/// \brief What belongs to a message domain. Each domain specialises it for its nested type `domain`:
///  - `using Exception = ...`, the class that is thrown;
///  - `static log4cplus::Logger& getLogger()`, which logs the text;
///  - `static const LogMessageManager& getManager()`, which holds the text.
template <class Domain>
struct MessageOwner;

namespace details
{

/// \brief Log a failure at error level if the logger is enabled for it.
ORVELUTIL_EXPORT void logFailure(const log4cplus::Logger& ownersLogger, const LogMessageManager& manager,
                                 const std::string& text, const SourceLocation& here);

/// \brief Return whether a logger is enabled for warnings.
ORVELUTIL_EXPORT bool isWarningLogged(const log4cplus::Logger& ownersLogger);

/// \brief Log a warning.
ORVELUTIL_EXPORT void logWarning(const log4cplus::Logger& ownersLogger, const std::string& text,
                                 const SourceLocation& here);

/// \brief Report that a message could not be made because of the exception that is being handled.
///
/// Logs on the kit's root logger.
/// \throw BaseException always, "Exception thrown while processing message" with that exception as cause
[[noreturn]] ORVELUTIL_EXPORT void raiseBrokenMessage(const SourceLocation& here);

/// \brief Make the text of a failure and log it. \return the text
template <class Domain, class... Arguments>
std::string makeAndLogMessage(const SourceLocation& here, Domain id, const Arguments&... arguments)
{
  using Owner = MessageOwner<Domain>;
  const LogMessageManager& manager = Owner::getManager();
  LogMessageFormater message(manager);
  try
  {
    message[id];
    static_cast<void>((message % ... % arguments));
    std::string text = message.string(); // also without a log: too few arguments must be seen here
    logFailure(Owner::getLogger(), manager, text, here);
    return text;
  }
  catch (...)
  {
    raiseBrokenMessage(here);
  }
}

} // namespace details

/// \brief Raise a failure.
/// \param here the raising statement: ORVEL_HERE
/// \param id enumerator of a message domain
/// \param arguments values for the placeholders of its text, in order
/// \throw MessageOwner<Domain>::Exception in all other cases than these:
/// \throw BaseException if the message could not be made or logged; the reason is its cause
/// \throw std::bad_alloc if there is no memory for that either
template <class Domain, class... Arguments>
[[noreturn]] void raise(const SourceLocation& here, Domain id, const Arguments&... arguments)
{
  const std::string text = details::makeAndLogMessage(here, id, arguments...);
  throw typename MessageOwner<Domain>::Exception(text, here.function, here.file, here.line);
}

/// \brief Raise a failure that another one has caused. \see raise
/// \param cause kept in the exception that is thrown
template <class Domain, class... Arguments>
[[noreturn]] void raiseWithCause(const SourceLocation& here, const std::exception& cause, Domain id,
                                 const Arguments&... arguments)
{
  const std::string text = details::makeAndLogMessage(here, id, arguments...);
  throw typename MessageOwner<Domain>::Exception(text, here.function, here.file, here.line, cause);
}

/// \brief Log a warning, a message without arguments; nothing is raised.
/// \param here the warning statement: ORVEL_HERE
/// \throw BaseException if the message could not be made or logged; the reason is its cause
template <class Domain>
void warn(const SourceLocation& here, Domain id)
{
  using Owner = MessageOwner<Domain>;
  try
  {
    const log4cplus::Logger& logger = Owner::getLogger();
    if (!details::isWarningLogged(logger))
      return;
    LogMessageFormater message(Owner::getManager());
    message[id];
    details::logWarning(logger, message.string(), here);
  }
  catch (...)
  {
    details::raiseBrokenMessage(here);
  }
}

} // namespace orvel
