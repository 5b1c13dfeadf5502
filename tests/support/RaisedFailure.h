#pragma once

/// \file
/// \brief Catches what a raised failure leaves: the exception, the log record, the raising line.

#include <fstream>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include <log4cplus/appender.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

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
  explicit LogCapture(const log4cplus::Logger& logger, int level = log4cplus::ALL_LOG_LEVEL)
    : _logger(logger)
    , _oldLevel(_logger.getLogLevel())
    , _appender(new Appender(_records))
  {
    _logger.setLogLevel(level);
    _logger.addAppender(_appender);
  }

  ~LogCapture()
  {
    _logger.removeAppender(_appender);
    _logger.setLogLevel(_oldLevel);
  }

  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  const std::vector<LogRecord>& getRecords() const { return _records; }

private:
  class Appender : public log4cplus::Appender
  {
  public:
    explicit Appender(std::vector<LogRecord>& records)
      : _records(records)
    {
    }
    ~Appender() override { destructorImpl(); }
    void close() override {}

  protected:
    void append(const log4cplus::spi::InternalLoggingEvent& event) override
    {
      _records.push_back({event.getLogLevel(), event.getLoggerName(), event.getMessage(), event.getFile(),
                          event.getLine(), event.getFunction()});
    }

  private:
    std::vector<LogRecord>& _records;
  };

  log4cplus::Logger _logger;
  int _oldLevel;
  std::vector<LogRecord> _records;
  log4cplus::SharedAppenderPtr _appender;
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

/// \brief Return a line of a source of the project.
inline std::string sourceLine(const std::string& file, unsigned int line)
{
  std::ifstream source(std::string(ORVEL_TEST_SOURCE_DIR) + "/" + file);
  std::string text;
  for (unsigned int i = 0; i < line; ++i)
    std::getline(source, text);
  return source ? text : "";
}

/// \brief Return the message of the failure of class Exception that an operation raises. \see failureOf
template <class Exception, class Operation>
std::string messageOf(Operation operation)
{
  return failureOf<Exception>(operation).getMessage();
}

} // namespace orvel::test
