#pragma once

/// \file
/// \brief Catches what a raised failure leaves: the exception, the log record, the raising line.
///
/// \code
/// expectRaised<ORVELBaseDataException>([&] { buffer.getSize(); },
///                                      {"Buffer should be initialized before used",
///                                       "orvel::ipUInt64 orvel::BaseBuffer::getSize() const",
///                                       "ORVELBaseData/Buffer/BaseBuffer.cpp"});
/// \endcode

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include <log4cplus/loglevel.h>

#include <ORVELUtil/BaseException.h>

namespace log4cplus
{
class Logger;
}

namespace orvel
{
class ORVELBaseDataException;
class ORVELSerializationException;
class ORVELUtilException;
} // namespace orvel

namespace orvel::test
{

/// \brief One record of the log.
struct LogRecord
{
  int level;
  std::string logger;
  std::string message;
  std::string file;
  int line;
  std::string function;
};

/// \brief Collects the records of a logger as long as it lives.
class LogCapture
{
public:
  /// \param level of the logger meanwhile
  explicit LogCapture(const log4cplus::Logger& logger, int level = log4cplus::ALL_LOG_LEVEL);
  ~LogCapture();

  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  const std::vector<LogRecord>& getRecords() const;

private:
  class Capture;

  std::unique_ptr<Capture> _capture;
};

/// \brief Return the failure of class Exception, exactly, that an operation raises.
/// \throw std::logic_error if it raises none
template <class Exception, class Operation>
Exception failureOf(Operation operation)
{
  try
  {
    operation();
  }
  catch (const Exception& failure)
  {
    if (typeid(failure) != typeid(Exception))
      throw std::logic_error(std::string("a failure of another class was raised: ") + typeid(failure).name());
    return failure;
  }
  throw std::logic_error("no failure was raised");
}

/// \brief Return a line of a source of the project, "" if it has none of that number.
std::string sourceLine(const std::string& file, unsigned int line);

/// \brief Return the message of the failure of class Exception that an operation raises. \see failureOf
template <class Exception, class Operation>
std::string messageOf(Operation operation)
{
  return failureOf<Exception>(operation).getMessage();
}

/// \brief What is to come of an operation that raises a failure.
struct ExpectedFailure
{
  std::string message;
  std::string function;       ///< the raising function's full signature, as g++ spells it
  std::string file;           ///< of the raising statement, from the root of the repository
  std::string cause = {};     ///< the text of the cause; empty: there is none
  std::string statement = {}; ///< what the raising statement holds besides its place
};

/// \brief Name of the logger on which the failures of class Exception are logged.
template <class Exception>
constexpr const char* g_loggerOf = nullptr;
template <>
inline constexpr const char* g_loggerOf<ORVELUtilException> = "ORVEL.ORVELUtil";
template <>
inline constexpr const char* g_loggerOf<ORVELSerializationException> = "ORVEL.ORVELSerialization";
template <>
inline constexpr const char* g_loggerOf<ORVELBaseDataException> = "ORVEL.ORVELBaseData";

/// \brief Check all that comes of an operation that raises: an exception of that type exactly, with these
/// texts, its place in that file, and one record of the kit's loggers, which has the same text and place.
/// \return the failure; one without texts if the operation raised nothing of the kind
BaseException checkRaised(const std::type_info& type, const char* loggerName,
                          const std::function<void()>& operation, const ExpectedFailure& expected);

/// \brief Check all that comes of an operation that raises a failure of class Exception. \see checkRaised
template <class Exception>
BaseException expectRaised(const std::function<void()>& operation, const ExpectedFailure& expected)
{
  static_assert(g_loggerOf<Exception> != nullptr, "this exception belongs to none of the libraries");
  return checkRaised(typeid(Exception), g_loggerOf<Exception>, operation, expected);
}

/// \brief Check that a failure names a function.
/// \param expected its full signature, as g++ spells it; clang++ leaves out the scopes of types and spells
///                  the arguments of templates in another way, which is not compared there
void expectFunction(const std::string& function, const std::string& expected);

} // namespace orvel::test
