#include "RaisedFailure.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <fstream>
#include <new>

#include <gtest/gtest.h>
#include <log4cplus/appender.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

namespace orvel::test
{

namespace
{

#if defined(__clang__)
constexpr bool g_isClang = true;
#else
constexpr bool g_isClang = false;
#endif

/// Reads a source of the project; its lines count from 1.
std::vector<std::string> linesOf(const std::string& file)
{
  std::ifstream source(std::string(ORVEL_TEST_SOURCE_DIR) + "/" + file);
  std::vector<std::string> lines(1);
  for (std::string text; std::getline(source, text);)
    lines.push_back(text);
  return lines;
}

bool endsStatement(const std::string& line)
{
  const std::size_t last = line.find_last_not_of(" \\");
  return last == std::string::npos || line[last] == ';' || line[last] == '{' || line[last] == '}';
}

/// The whole statement that a line belongs to: the compilers count the lines of a macro's use in two ways.
std::string sourceStatement(const std::string& file, unsigned int line)
{
  const std::vector<std::string> lines = linesOf(file);
  if (line == 0 || line >= lines.size())
    return "";
  std::size_t first = line;
  while (first > 1 && !endsStatement(lines[first - 1]))
    --first;
  std::string text;
  for (std::size_t i = first; i < lines.size(); ++i)
  {
    text += lines[i] + "\n";
    if (i >= line && endsStatement(lines[i]))
      break;
  }
  return text;
}

bool isPartOfName(char character)
{
  return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

std::string withoutBlanks(const std::string& signature)
{
  std::string text;
  for (const char character : signature)
    if (character != ' ')
      text += character;
  return text;
}

/// What every compiler spells alike: the function with its scopes but no arguments of templates, and the
/// types without their scopes.
std::string commonPartOf(std::string signature)
{
  signature.erase(std::min(signature.find(" ["), signature.size())); // [with T = int]

  // The name reaches from the last blank, * or & to the parenthesis of the parameters.
  const std::size_t anOperator = signature.find("::operator");
  const std::size_t callOperator = signature.find("operator()");
  const std::size_t end = std::min(
      signature.find('(', callOperator == std::string::npos ? 0 : callOperator + 10), signature.size());
  std::size_t begin = std::min(anOperator, end);
  std::string name = signature.substr(begin, end - begin);
  std::size_t depth = 0;
  for (; begin > 0; --begin)
  {
    const char character = signature[begin - 1];
    if (character == '>')
      ++depth;
    else if (character == '<' && depth > 0)
      --depth;
    else if (depth == 0 && (character == ' ' || character == '*' || character == '&'))
      break;
    else if (depth == 0)
      name.insert(name.begin(), character);
  }

  const auto withoutScopes = [](const std::string& types)
  {
    std::string text;
    for (std::size_t i = 0; i < types.size(); ++i)
      if (types.compare(i, 2, "::") == 0)
      {
        while (!text.empty() && isPartOfName(text.back()))
          text.pop_back();
        ++i;
      }
      else
        text += types[i];
    return withoutBlanks(text);
  };
  return withoutScopes(signature.substr(0, begin)) + " " + name + withoutScopes(signature.substr(end));
}

std::string messageOfCause(const BaseException& failure)
{
  const std::exception* cause = failure.getCause();
  if (cause == nullptr)
    return "";
  const auto* ofTheKit = dynamic_cast<const BaseException*>(cause);
  return ofTheKit != nullptr ? ofTheKit->getMessage() : cause->what();
}

} // namespace

class LogCapture::Capture
{
public:
  Capture(const log4cplus::Logger& logger, int level)
    : _logger(logger)
    , _oldLevel(_logger.getLogLevel())
    , _appender(new Appender(_records))
  {
    _logger.setLogLevel(level);
    _logger.addAppender(_appender);
  }

  ~Capture()
  {
    _logger.removeAppender(_appender);
    _logger.setLogLevel(_oldLevel);
  }

  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

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

LogCapture::LogCapture(const log4cplus::Logger& logger, int level)
  : _capture(std::make_unique<Capture>(logger, level))
{
}

LogCapture::~LogCapture() = default;

const std::vector<LogRecord>& LogCapture::getRecords() const
{
  return _capture->getRecords();
}

std::string sourceLine(const std::string& file, unsigned int line)
{
  const std::vector<std::string> lines = linesOf(file);
  return line < lines.size() ? lines[line] : "";
}

void expectFunction(const std::string& function, const std::string& expected)
{
  if (g_isClang)
    EXPECT_EQ(commonPartOf(function), commonPartOf(expected)) << function;
  else
    EXPECT_EQ(function, expected);
}

BaseException checkRaised(const std::type_info& type, const char* loggerName,
                          const std::function<void()>& operation, const ExpectedFailure& expected)
{
  const LogCapture log(log4cplus::Logger::getInstance("ORVEL"));
  BaseException failure("", nullptr, nullptr, 0);
  try
  {
    operation();
    ADD_FAILURE() << "raised nothing instead of: " << expected.message;
    return failure;
  }
  catch (const BaseException& raised)
  {
    EXPECT_STREQ(typeid(raised).name(), type.name()) << raised.what();
    failure = raised;
  }
  catch (const std::exception& other)
  {
    ADD_FAILURE() << "threw " << typeid(other).name() << " instead of: " << expected.message << "\n"
                  << other.what();
    return failure;
  }
  EXPECT_EQ(failure.getMessage(), expected.message);
  expectFunction(failure.getFunction(), expected.function);
  EXPECT_EQ(failure.getFile(), expected.file);
  EXPECT_EQ(messageOfCause(failure), expected.cause);
  EXPECT_EQ(dynamic_cast<const std::bad_alloc*>(failure.getCause()) != nullptr,
            expected.cause == "std::bad_alloc" || expected.cause == "std::bad_array_new_length");

  const std::string statement = sourceStatement(failure.getFile(), failure.getLine());
  EXPECT_NE(statement.find("ORVEL_"), std::string::npos)
      << failure.getFile() << ":" << failure.getLine() << " raises nothing: " << statement;
  EXPECT_NE(statement.find(expected.statement), std::string::npos)
      << failure.getFile() << ":" << failure.getLine() << ": " << statement;

  EXPECT_EQ(log.getRecords().size(), 1U) << expected.message;
  if (!log.getRecords().empty())
  {
    const LogRecord& record = log.getRecords().front();
    EXPECT_EQ(record.level, log4cplus::ERROR_LOG_LEVEL);
    EXPECT_EQ(record.logger, loggerName);
    EXPECT_EQ(record.message, expected.message);
    EXPECT_EQ(record.file, failure.getFile());
    EXPECT_EQ(record.line, static_cast<int>(failure.getLine()));
  }
  return failure;
}

} // namespace orvel::test
