#include "ORVELUtil/Raise.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/format/exceptions.hpp>
#include <gtest/gtest.h>
#include <log4cplus/appender.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

#include <ORVELUtil/BaseException.h>
#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <ORVELUtil/UnHandleException.h>
#include <support/CommaLocale.h>
#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace sample
{

using orvel::BaseException;

std::vector<std::string> g_steps; // what the sequence has asked for, in order

class SampleException : public BaseException
{
public:
  SampleException(const std::string& message, const char* function, const char* file, unsigned int line)
    : BaseException(message, function, file, line)
  {
    g_steps.push_back("exception");
  }
  SampleException(const std::string& message, const char* function, const char* file, unsigned int line,
                  const std::exception& cause)
    : BaseException(message, function, file, line, cause)
  {
  }
};

struct eSampleMessage
{
  enum domain
  {
    ePlain,   // no argument
    eWidth,   // one number
    ePlace,   // a text and two numbers
    eMissing, // has no text
    eBroken,  // is no format
    eMemory   // a size
  };
};

const bool g_messagesEntered = []
{
  orvel::LogMessageManager& manager = orvel::LogMessageManager::getInstance("RaiseTest");
  const char* const key = "N6sample14eSampleMessage6domainE";
  manager.addMessage(key, eSampleMessage::ePlain, "The box is not set, 100%% sure");
  manager.addMessage(key, eSampleMessage::eWidth, "Invalid width %f");
  manager.addMessage(key, eSampleMessage::ePlace, "No element %s at (%d, %d)");
  manager.addMessage(key, eSampleMessage::eBroken, "100%");
  manager.addMessage(key, eSampleMessage::eMemory, "Memory allocation failed with requested size %lld");
  return true;
}();

log4cplus::Logger& logger()
{
  static log4cplus::Logger g_logger = log4cplus::Logger::getInstance("ORVEL.RaiseTest");
  return g_logger;
}

} // namespace sample

namespace orvel
{

template <>
struct MessageOwner<sample::eSampleMessage::domain>
{
  using Exception = sample::SampleException;
  static log4cplus::Logger& getLogger()
  {
    sample::g_steps.push_back("logger");
    return sample::logger();
  }
  static const LogMessageManager& getManager()
  {
    sample::g_steps.push_back("manager");
    return LogMessageManager::getInstance("RaiseTest");
  }
};

} // namespace orvel

namespace sample
{

using orvel::raise;
using orvel::raiseWithCause;
using orvel::SourceLocation;
using orvel::warn;

unsigned int g_line = 0; // of the last statement that raised

SourceLocation noted(const SourceLocation& here)
{
  g_line = here.line;
  return here;
}

struct Box
{
  unsigned int width() const;
  void setWidth(float width);
  static int place(const char* name, int x, unsigned int y);
};

unsigned int Box::width() const
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::ePlain);
}

void Box::setWidth(float width)
{
  raise(noted(ORVEL_HERE), eSampleMessage::eWidth, width);
}

int Box::place(const char* name, int x, unsigned int y)
{
  raise(noted(ORVEL_HERE), eSampleMessage::ePlace, name, x, y);
}

void tooManyArguments()
{
  raise(noted(ORVEL_HERE), eSampleMessage::eWidth, 1.0, 2.0);
}

void withCause(const std::exception& cause)
{
  raiseWithCause(noted(ORVEL_HERE), cause, eSampleMessage::eWidth, 2.5);
}

void warnPlain()
{
  g_line = __LINE__ + 1;
  warn(ORVEL_HERE, eSampleMessage::ePlain);
}

/// Raises, or warns, in the name of "void sample()".
template <class... Arguments>
void raiseSample(eSampleMessage::domain id, const Arguments&... arguments)
{
  raise(noted(ORVEL_HERE_IN("void sample()")), id, arguments...);
}

template <eSampleMessage::domain id>
void warnSample()
{
  warn(noted(ORVEL_HERE_IN("void sample()")), id);
}

} // namespace sample

namespace
{

using orvel::BaseException;
using orvel::UnHandleException;
using orvel::test::failureOf;
using orvel::test::LogCapture;
using orvel::test::LogRecord;
using sample::Box;
using sample::eSampleMessage;
using sample::raiseSample;
using sample::SampleException;

constexpr const char* g_file = "tests/Companions/ORVELUtil/RaiseTest.cpp";
constexpr const char* g_brokenText = "Exception thrown while processing message";

/// Calls a function with each event of a logger, as long as it lives.
class AppenderGuard
{
public:
  using Function = std::function<void(const log4cplus::spi::InternalLoggingEvent&)>;

  AppenderGuard(const log4cplus::Logger& logger, Function function)
    : _logger(logger)
    , _appender(new Appender(std::move(function)))
  {
    _logger.addAppender(_appender);
  }
  ~AppenderGuard() { _logger.removeAppender(_appender); }
  AppenderGuard(const AppenderGuard&) = delete;
  AppenderGuard& operator=(const AppenderGuard&) = delete;

private:
  class Appender : public log4cplus::Appender
  {
  public:
    explicit Appender(Function function)
      : _function(std::move(function))
    {
    }
    ~Appender() override { destructorImpl(); }
    void close() override {}

  protected:
    void append(const log4cplus::spi::InternalLoggingEvent& event) override { _function(event); }

  private:
    Function _function;
  };

  log4cplus::Logger _logger;
  log4cplus::SharedAppenderPtr _appender;
};

/// Sets the level of a logger as long as it lives.
class LevelGuard
{
public:
  LevelGuard(const log4cplus::Logger& logger, int level)
    : _logger(logger)
    , _oldLevel(_logger.getLogLevel())
  {
    _logger.setLogLevel(level);
  }
  ~LevelGuard() { _logger.setLogLevel(_oldLevel); }
  LevelGuard(const LevelGuard&) = delete;
  LevelGuard& operator=(const LevelGuard&) = delete;

private:
  log4cplus::Logger _logger;
  int _oldLevel;
};

void getWidth()
{
  Box().width();
}

/// The compilers differ in the blank ahead of * and &.
std::string withoutBlanks(std::string signature)
{
  signature.erase(std::remove(signature.begin(), signature.end(), ' '), signature.end());
  return signature;
}

void expectPlace(const BaseException& failure, const std::string& function)
{
  EXPECT_EQ(withoutBlanks(failure.getFunction()), withoutBlanks(function));
  EXPECT_EQ(failure.getFile(), g_file);
  EXPECT_EQ(failure.getLine(), sample::g_line);
}

/// Checks that a message of the domain is all that was logged.
void expectRecord(const LogCapture& log, int level, const std::string& message)
{
  ASSERT_EQ(log.getRecords().size(), 1U);
  const LogRecord& record = log.getRecords()[0];
  EXPECT_EQ(record.level, level);
  EXPECT_EQ(record.logger, "ORVEL.RaiseTest");
  EXPECT_EQ(record.message, message);
  EXPECT_EQ(record.file, g_file);
  EXPECT_EQ(static_cast<unsigned int>(record.line), sample::g_line);
}

/// Checks that all that was logged is the constant text.
void expectBrokenRecord(const LogCapture& log, const std::string& function)
{
  ASSERT_EQ(log.getRecords().size(), 1U);
  const LogRecord& record = log.getRecords()[0];
  EXPECT_EQ(record.level, 40000);
  EXPECT_EQ(record.logger, "ORVEL");
  EXPECT_EQ(record.message, g_brokenText);
  EXPECT_EQ(record.file, g_file);
  EXPECT_EQ(static_cast<unsigned int>(record.line), sample::g_line);
  EXPECT_EQ(record.function, function);
}

// --- What is thrown -----------------------------------------------------------------------------------

TEST(Raise, ThrowsTheExceptionOfTheDomainsOwner)
{
  const auto failure = failureOf<SampleException>(&getWidth);
  EXPECT_EQ(failure.getMessage(), "The box is not set, 100% sure");
  EXPECT_EQ(failure.getCause(), nullptr);
}

TEST(Raise, TellsTheSignatureOfTheRaisingFunctionItsFileAndLine)
{
  expectPlace(failureOf<SampleException>(&getWidth), "unsigned int sample::Box::width() const");
  expectPlace(failureOf<SampleException>([] { Box().setWidth(1); }), "void sample::Box::setWidth(float)");
}

TEST(Raise, BindsTheArgumentsInOrder)
{
  EXPECT_EQ(failureOf<SampleException>([] { Box::place("x.y", -3, 4); }).getMessage(),
            "No element x.y at (-3, 4)");
  EXPECT_EQ(failureOf<SampleException>([] { Box().setWidth(-0.5F); }).getMessage(),
            "Invalid width -0.500000");
}

TEST(Raise, HasTheMessageInItsWhat)
{
  EXPECT_EQ(std::string(failureOf<SampleException>(&getWidth).what()).find("The box is not set, 100% sure"),
            0U);
}

TEST(Raise, WritesNumbersTheSameInEveryLocale)
{
  const orvel::test::CommaLocale commas;
  const auto failure = failureOf<SampleException>([] { Box().setWidth(1234567.5F); });
  EXPECT_EQ(failure.getMessage(), "Invalid width 1234567.500000");
  EXPECT_NE(std::string(failure.what()).find("RaiseTest.cpp:" + std::to_string(sample::g_line) + "]"),
            std::string::npos);
}

// --- What is logged -----------------------------------------------------------------------------------

TEST(Raise, LogsOnTheOwnersLogger)
{
  const LogCapture capture(sample::logger());
  failureOf<SampleException>([] { Box::place("a", 1, 2); });
  expectRecord(capture, 40000, "No element a at (1, 2)");
}

TEST(Raise, LogsOnceAlsoForTheAppendersOfTheBaseLogger)
{
  const LogCapture capture(orvel::getBaseLogger());
  failureOf<SampleException>(&getWidth);
  expectRecord(capture, 40000, "The box is not set, 100% sure");
}

TEST(Raise, RelaysATextWithPercentSignsAsItIs)
{
  const LogCapture capture(sample::logger());
  failureOf<SampleException>([] { Box::place("%d%% %1%", 1, 2); });
  expectRecord(capture, 40000, "No element %d%% %1% at (1, 2)");
}

TEST(Raise, LogsAtTheLevelOfErrors)
{
  const LogCapture capture(sample::logger(), log4cplus::ERROR_LOG_LEVEL);
  failureOf<SampleException>(&getWidth);
  EXPECT_EQ(capture.getRecords().size(), 1U);
}

TEST(Raise, LogsNothingOnADisabledLoggerAndThrowsTheSame)
{
  for (const int level : {log4cplus::FATAL_LOG_LEVEL, log4cplus::OFF_LOG_LEVEL})
  {
    const LogCapture capture(sample::logger(), level);
    const auto failure = failureOf<SampleException>([] { Box::place("a", 1, 2); });
    EXPECT_EQ(failure.getMessage(), "No element a at (1, 2)");
    expectPlace(failure, "static int sample::Box::place(const char*, int, unsigned int)");
    EXPECT_EQ(capture.getRecords().size(), 0U);
  }
}

TEST(Raise, TakesItsStepsInOrder)
{
  const AppenderGuard appender(sample::logger(), [](const auto& event)
                               { sample::g_steps.push_back("record " + event.getMessage()); });
  sample::g_steps.clear();
  failureOf<SampleException>(&getWidth);
  EXPECT_EQ(sample::g_steps, (std::vector<std::string>{"manager", "logger",
                                                       "record The box is not set, 100% sure", "exception"}));
}

TEST(Raise, AsksForTheLoggerOnlyWhenTheTextIsMade)
{
  sample::g_steps.clear();
  failureOf<BaseException>(&sample::tooManyArguments);
  EXPECT_EQ(sample::g_steps, std::vector<std::string>{"manager"});
}

// --- A message that can't be made ---------------------------------------------------------------------

struct BrokenCase
{
  const char* description;
  void (*raise)();
  const char* cause;
};

constexpr const char* g_tooFew =
    "boost::too_few_args: format-string referred to more arguments than were passed";
constexpr const char* g_tooMany =
    "boost::too_many_args: format-string referred to fewer arguments than were passed";
constexpr const char* g_unknownId =
    "No message 3 of domain N6sample14eSampleMessage6domainE in the table of RaiseTest";
constexpr const char* g_illFormed = "boost::bad_format_string: format-string is ill-formed";

const BrokenCase g_brokenCases[] = {
    {"too_few_arguments", [] { raiseSample(eSampleMessage::ePlace, "a", 1); }, g_tooFew},
    {"no_arguments", [] { raiseSample(eSampleMessage::eWidth); }, g_tooFew},
    {"too_many_arguments", [] { raiseSample(eSampleMessage::eWidth, 1.0, 2.0); }, g_tooMany},
    {"argument_for_a_plain_text", [] { raiseSample(eSampleMessage::ePlain, 1); }, g_tooMany},
    {"unknown_id", [] { raiseSample(eSampleMessage::eMissing); }, g_unknownId},
    {"broken_text", [] { raiseSample(eSampleMessage::eBroken); }, g_illFormed},
};

/// Checks what is thrown where the message of a failure or a warning can't be made.
void expectBroken(const BaseException& failure, const std::string& function, const std::string& cause)
{
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  expectPlace(failure, function);
  ASSERT_NE(failure.getCause(), nullptr);
  EXPECT_EQ(failure.getCause()->what(), cause);
}

class RaiseOfABrokenMessage : public testing::TestWithParam<BrokenCase>
{
};

TEST_P(RaiseOfABrokenMessage, ThrowsAPlainBaseExceptionWithTheReasonAsCause)
{
  expectBroken(failureOf<BaseException>(GetParam().raise), "void sample()", GetParam().cause);
}

TEST_P(RaiseOfABrokenMessage, LogsTheConstantTextOnTheBaseLoggerAlone)
{
  const LogCapture base(orvel::getBaseLogger());
  const LogCapture own(sample::logger());
  failureOf<BaseException>(GetParam().raise);
  expectBrokenRecord(base, "void sample()");
  EXPECT_EQ(own.getRecords().size(), 0U);
}

TEST_P(RaiseOfABrokenMessage, ThrowsTheSameWhenTheOwnersLoggerIsDisabled)
{
  const LevelGuard level(sample::logger(), log4cplus::OFF_LOG_LEVEL);
  const LogCapture base(orvel::getBaseLogger());
  expectBroken(failureOf<BaseException>(GetParam().raise), "void sample()", GetParam().cause);
  expectBrokenRecord(base, "void sample()");
}

TEST_P(RaiseOfABrokenMessage, LogsNothingWhenTheBaseLoggerIsDisabled)
{
  const LogCapture base(orvel::getBaseLogger(), log4cplus::FATAL_LOG_LEVEL);
  expectBroken(failureOf<BaseException>(GetParam().raise), "void sample()", GetParam().cause);
  EXPECT_EQ(base.getRecords().size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(All, RaiseOfABrokenMessage, testing::ValuesIn(g_brokenCases),
                         [](const auto& each) { return std::string(each.param.description); });

TEST(Raise, EndsInAFailureWhereverMemoryEnds)
{
  const LevelGuard quietBase(orvel::getBaseLogger(), log4cplus::OFF_LOG_LEVEL); // the kit's own steps alone
  const LevelGuard quiet(sample::logger(), log4cplus::OFF_LOG_LEVEL);
  sample::g_steps.reserve(sample::g_steps.size() + 1000);
  int nbBroken = 0;
  bool isRaised = false;
  for (std::size_t nbAllowed = 0; !isRaised; ++nbAllowed)
  {
    orvel::test::failAllocationAfter(nbAllowed);
    try
    {
      getWidth();
    }
    catch (const SampleException& failure)
    {
      orvel::test::failNoAllocation();
      isRaised = true;
      EXPECT_EQ(failure.getMessage(), "The box is not set, 100% sure");
    }
    catch (const BaseException& failure) // the text could not be made
    {
      orvel::test::failNoAllocation();
      ++nbBroken;
      EXPECT_EQ(failure.getMessage(), g_brokenText);
      EXPECT_NE(dynamic_cast<const std::bad_alloc*>(failure.getCause()), nullptr);
    }
    catch (const std::bad_alloc&) // there was not even a formatter or an exception
    {
      orvel::test::failNoAllocation();
    }
  }
  EXPECT_GT(nbBroken, 3);
}

// --- A record that can't be written -------------------------------------------------------------------

/// What an appender throws, and what is then the cause: one for each handler of the sequence.
struct ThrownCase
{
  const char* description;
  void (*throwIt)();
  void (*expectCause)(const std::exception& cause);
};

const ThrownCase g_thrownCases[] = {
    {"BaseException", [] { throw BaseException("appender", "append()", "a.cpp", 5); },
     [](const std::exception& cause)
     {
       const auto* ours = dynamic_cast<const BaseException*>(&cause);
       ASSERT_NE(ours, nullptr);
       EXPECT_EQ(ours->getMessage(), "appender");
       EXPECT_EQ(ours->getFunction(), "append()");
       EXPECT_EQ(ours->getFile(), "a.cpp");
       EXPECT_EQ(ours->getLine(), 5U);
     }},
    {"standard", [] { throw std::runtime_error("disk full"); },
     [](const std::exception& cause)
     {
       EXPECT_EQ(dynamic_cast<const BaseException*>(&cause), nullptr);
       EXPECT_STREQ(cause.what(), "disk full");
     }},
    {"unknown", [] { throw 42; },
     [](const std::exception& cause)
     {
       EXPECT_NE(dynamic_cast<const UnHandleException*>(&cause), nullptr);
     }},
};

class RaiseWithAThrowingAppender : public testing::TestWithParam<ThrownCase>
{
};

TEST_P(RaiseWithAThrowingAppender, ThrowsAPlainBaseExceptionWithWhatWasThrownAsCause)
{
  const AppenderGuard appender(sample::logger(), [](const auto&) { GetParam().throwIt(); });
  const auto failure = failureOf<BaseException>(&getWidth);
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  expectPlace(failure, "unsigned int sample::Box::width() const");
  ASSERT_NE(failure.getCause(), nullptr);
  GetParam().expectCause(*failure.getCause());
}

TEST_P(RaiseWithAThrowingAppender, LogsTheConstantTextOnTheBaseLogger)
{
  const AppenderGuard appender(sample::logger(), [](const auto&) { GetParam().throwIt(); });
  const LogCapture base(orvel::getBaseLogger());
  failureOf<BaseException>(&getWidth);
  expectBrokenRecord(base, "unsigned int sample::Box::width() const");
}

TEST_P(RaiseWithAThrowingAppender, DoesNotMeetItWhenTheLoggerIsDisabled)
{
  const LevelGuard level(sample::logger(), log4cplus::OFF_LOG_LEVEL);
  const AppenderGuard appender(sample::logger(), [](const auto&) { GetParam().throwIt(); });
  EXPECT_EQ(failureOf<SampleException>(&getWidth).getMessage(), "The box is not set, 100% sure");
}

// The appender meets the record of the failure, then that of the broken message.
TEST_P(RaiseWithAThrowingAppender, IsNotHiddenByOneOnTheBaseLogger)
{
  int nbEvents = 0;
  const AppenderGuard appender(orvel::getBaseLogger(),
                               [&nbEvents](const auto&)
                               {
                                 ++nbEvents;
                                 GetParam().throwIt();
                               });
  const auto failure = failureOf<BaseException>(&getWidth);
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  expectPlace(failure, "unsigned int sample::Box::width() const");
  ASSERT_NE(failure.getCause(), nullptr);
  GetParam().expectCause(*failure.getCause());
  EXPECT_EQ(nbEvents, 2);
}

TEST_P(RaiseWithAThrowingAppender, IsNotHiddenWhenTheMessageIsBrokenToo)
{
  const AppenderGuard appender(orvel::getBaseLogger(), [](const auto&) { GetParam().throwIt(); });
  expectBroken(failureOf<BaseException>(&sample::tooManyArguments), "void sample::tooManyArguments()",
               g_tooMany);
}

INSTANTIATE_TEST_SUITE_P(All, RaiseWithAThrowingAppender, testing::ValuesIn(g_thrownCases),
                         [](const auto& each) { return std::string(each.param.description); });

TEST(Raise, KeepsTheWholeFailureThatAnAppenderRaised)
{
  bool raised = false;
  const AppenderGuard appender(sample::logger(),
                               [&raised](const auto&)
                               {
                                 if (!raised)
                                 {
                                   raised = true;
                                   Box().setWidth(3);
                                 }
                               });
  const auto failure = failureOf<BaseException>(&getWidth);
  const auto* cause = dynamic_cast<const BaseException*>(failure.getCause());
  ASSERT_NE(cause, nullptr);
  EXPECT_EQ(cause->getMessage(), "Invalid width 3.000000");
  EXPECT_EQ(cause->getFunction(), "void sample::Box::setWidth(float)");
}

TEST(Raise, WorksWhileAnotherFailureIsHandled)
{
  try
  {
    throw std::runtime_error("other");
  }
  catch (const std::runtime_error& other)
  {
    const auto failure = failureOf<BaseException>(g_brokenCases[1].raise);
    EXPECT_NE(std::string(failure.getCause()->what()), other.what());
    EXPECT_EQ(failureOf<SampleException>(&getWidth).getCause(), nullptr);
    EXPECT_STREQ(other.what(), "other");
  }
}

// --- With a cause -------------------------------------------------------------------------------------

TEST(RaiseWithCause, KeepsTheCause)
{
  auto cause = std::make_unique<std::runtime_error>("root");
  const auto failure = failureOf<SampleException>([&cause] { sample::withCause(*cause); });
  cause.reset();
  EXPECT_EQ(failure.getMessage(), "Invalid width 2.500000");
  expectPlace(failure, "void sample::withCause(const std::exception&)");
  ASSERT_NE(failure.getCause(), nullptr);
  EXPECT_STREQ(failure.getCause()->what(), "root");
}

TEST(RaiseWithCause, KeepsABaseExceptionWhole)
{
  const BaseException cause("inner", "f()", "a.cpp", 1, std::runtime_error("root"));
  const auto failure = failureOf<SampleException>([&cause] { sample::withCause(cause); });
  const auto* kept = dynamic_cast<const BaseException*>(failure.getCause());
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->getMessage(), "inner");
  ASSERT_NE(kept->getCause(), nullptr);
  EXPECT_STREQ(kept->getCause()->what(), "root");
}

TEST(RaiseWithCause, LogsTheMessageWithoutTheCause)
{
  const LogCapture capture(sample::logger());
  failureOf<SampleException>([] { sample::withCause(std::runtime_error("root")); });
  expectRecord(capture, 40000, "Invalid width 2.500000");
}

std::unique_ptr<char[]> allocate(unsigned long size)
{
  try
  {
    return std::unique_ptr<char[]>(new char[size]);
  }
  catch (const std::bad_alloc& cause)
  {
    orvel::raiseWithCause(ORVEL_HERE, cause, sample::eSampleMessage::eMemory, size);
  }
}

TEST(RaiseWithCause, ReportsAnAllocationThatFailed)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  const unsigned long size = 0; // the sanitizers end the process at a size that can't be had
#else
  const unsigned long size = 0x7FFFFFFFFFFFFF00UL;
#endif
  const auto failure = failureOf<SampleException>(
      []
      {
        if (size != 0)
          allocate(size);
        orvel::raiseWithCause(ORVEL_HERE, std::bad_alloc(), sample::eSampleMessage::eMemory,
                              0x7FFFFFFFFFFFFF00UL);
      });
  EXPECT_EQ(failure.getMessage(), "Memory allocation failed with requested size 9223372036854775552");
  EXPECT_NE(dynamic_cast<const std::bad_alloc*>(failure.getCause()), nullptr);
}

TEST(RaiseWithCause, ReportsABrokenMessageByItsOwnReason)
{
  const auto failure = failureOf<BaseException>(
      [] { orvel::raiseWithCause(ORVEL_HERE, std::runtime_error("root"), sample::eSampleMessage::eWidth); });
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  EXPECT_STREQ(failure.getCause()->what(), g_tooFew);
}

// --- Warnings -----------------------------------------------------------------------------------------

TEST(Warn, LogsTheTextAtTheLevelOfWarningsOnTheOwnersLogger)
{
  const LogCapture capture(sample::logger());
  sample::warnPlain();
  expectRecord(capture, 30000, "The box is not set, 100% sure");
}

TEST(Warn, LogsOnceAlsoForTheAppendersOfTheBaseLogger)
{
  const LogCapture capture(orvel::getBaseLogger());
  sample::warnPlain();
  expectRecord(capture, 30000, "The box is not set, 100% sure");
}

TEST(Warn, LogsAtTheLevelOfWarnings)
{
  const LogCapture capture(sample::logger(), log4cplus::WARN_LOG_LEVEL);
  sample::warnPlain();
  EXPECT_EQ(capture.getRecords().size(), 1U);
}

TEST(Warn, LogsNothingOnADisabledLogger)
{
  for (const int level : {log4cplus::ERROR_LOG_LEVEL, log4cplus::FATAL_LOG_LEVEL, log4cplus::OFF_LOG_LEVEL})
  {
    const LogCapture capture(sample::logger(), level);
    EXPECT_NO_THROW(sample::warnPlain());
    EXPECT_EQ(capture.getRecords().size(), 0U);
  }
}

TEST(Warn, TakesItsStepsInOrder)
{
  const LevelGuard level(sample::logger(), log4cplus::WARN_LOG_LEVEL);
  const AppenderGuard appender(sample::logger(), [](const auto& event)
                               { sample::g_steps.push_back("record " + event.getMessage()); });
  sample::g_steps.clear();
  sample::warnPlain();
  EXPECT_EQ(sample::g_steps,
            (std::vector<std::string>{"logger", "manager", "record The box is not set, 100% sure"}));
}

TEST(Warn, LooksNothingUpForADisabledLogger)
{
  const LevelGuard level(sample::logger(), log4cplus::ERROR_LOG_LEVEL);
  sample::g_steps.clear();
  sample::warnPlain();
  EXPECT_EQ(sample::g_steps, std::vector<std::string>{"logger"});
}

const BrokenCase g_brokenWarnings[] = {
    {"no_arguments", &sample::warnSample<eSampleMessage::eWidth>, g_tooFew},
    {"unknown_id", &sample::warnSample<eSampleMessage::eMissing>, g_unknownId},
    {"broken_text", &sample::warnSample<eSampleMessage::eBroken>, g_illFormed},
};

TEST(WarnOfABrokenMessage, ThrowsAPlainBaseExceptionWithTheReasonAsCause)
{
  const LevelGuard level(sample::logger(), log4cplus::WARN_LOG_LEVEL);
  for (const BrokenCase& each : g_brokenWarnings)
  {
    SCOPED_TRACE(each.description);
    expectBroken(failureOf<BaseException>(each.raise), "void sample()", each.cause);
  }
}

TEST(WarnOfABrokenMessage, LogsTheConstantTextAsAnErrorOnTheBaseLoggerAlone)
{
  for (const BrokenCase& each : g_brokenWarnings)
  {
    SCOPED_TRACE(each.description);
    const LogCapture base(orvel::getBaseLogger());
    const LogCapture own(sample::logger());
    failureOf<BaseException>(each.raise);
    expectBrokenRecord(base, "void sample()");
    EXPECT_EQ(own.getRecords().size(), 0U);
  }
}

TEST(WarnOfABrokenMessage, LogsNothingWhenTheBaseLoggerIsDisabled)
{
  const LevelGuard level(sample::logger(), log4cplus::WARN_LOG_LEVEL);
  for (const BrokenCase& each : g_brokenWarnings)
  {
    SCOPED_TRACE(each.description);
    const LogCapture base(orvel::getBaseLogger(), log4cplus::FATAL_LOG_LEVEL);
    expectBroken(failureOf<BaseException>(each.raise), "void sample()", each.cause);
    EXPECT_EQ(base.getRecords().size(), 0U);
  }
}

TEST(WarnOfABrokenMessage, IsNotNoticedOnADisabledLogger)
{
  const LogCapture base(orvel::getBaseLogger());
  const LevelGuard level(sample::logger(), log4cplus::ERROR_LOG_LEVEL);
  for (const BrokenCase& each : g_brokenWarnings)
    EXPECT_NO_THROW(each.raise()) << each.description;
  EXPECT_EQ(base.getRecords().size(), 0U);
}

class WarnWithAThrowingAppender : public testing::TestWithParam<ThrownCase>
{
};

TEST_P(WarnWithAThrowingAppender, ThrowsAPlainBaseExceptionWithWhatWasThrownAsCause)
{
  const LevelGuard level(sample::logger(), log4cplus::WARN_LOG_LEVEL);
  const AppenderGuard appender(sample::logger(), [](const auto&) { GetParam().throwIt(); });
  const LogCapture base(orvel::getBaseLogger());
  const auto failure = failureOf<BaseException>(&sample::warnPlain);
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  expectPlace(failure, "void sample::warnPlain()");
  ASSERT_NE(failure.getCause(), nullptr);
  GetParam().expectCause(*failure.getCause());
  expectBrokenRecord(base, "void sample::warnPlain()");
}

TEST_P(WarnWithAThrowingAppender, DoesNotMeetItWhenTheLoggerIsDisabled)
{
  const LevelGuard level(sample::logger(), log4cplus::ERROR_LOG_LEVEL);
  const AppenderGuard appender(sample::logger(), [](const auto&) { GetParam().throwIt(); });
  EXPECT_NO_THROW(sample::warnPlain());
}

INSTANTIATE_TEST_SUITE_P(All, WarnWithAThrowingAppender, testing::ValuesIn(g_thrownCases),
                         [](const auto& each) { return std::string(each.param.description); });

} // namespace
