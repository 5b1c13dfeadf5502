#pragma once

/// \file
/// \brief Catches what a raised failure leaves: the exception, the log record, the raising line.

#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>

#include <log4cplus/appender.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

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
};

/// \brief Collects the records of the library's logger as long as it lives.
class LogCapture
{
public:
  /// \param level of the logger meanwhile
  explicit LogCapture(int level = log4cplus::ALL_LOG_LEVEL)
    : _logger(getORVELBaseDataLogger())
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
      _records.push_back(
          {event.getLogLevel(), event.getLoggerName(), event.getMessage(), event.getFile(), event.getLine()});
    }

  private:
    std::vector<LogRecord>& _records;
  };

  log4cplus::Logger _logger;
  int _oldLevel;
  std::vector<LogRecord> _records;
  log4cplus::SharedAppenderPtr _appender;
};

/// \brief Return the failure that an operation of ORVELBaseData raises.
/// \throw std::logic_error if it raises none
template <class Operation>
ORVELBaseDataException failureOf(Operation operation)
{
  try
  {
    operation();
  }
  catch (const ORVELBaseDataException& failure)
  {
    return failure;
  }
  throw std::logic_error("no failure was raised");
}

/// \brief Return a signature without blanks and without the qualifications that compilers spell differently.
inline std::string normalisedSignature(std::string signature)
{
  for (const char* const part : {" ", "orvel::", "KernelXY::OffsetType", "KernelXY::ValueType",
                                 "KernelXYZ::OffsetType", "KernelXYZ::ValueType"})
  {
    const std::string spelling = part;
    const std::size_t scope = spelling.find("::");
    const std::size_t kept = spelling.size() - (scope == std::string::npos ? spelling.size() : scope + 2);
    std::size_t place = 0;
    while ((place = signature.find(spelling, place)) != std::string::npos)
      signature.erase(place, spelling.size() - kept);
  }
  return signature;
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

} // namespace orvel::test
