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
using orvel::warn;

struct Box
{
  unsigned int width() const;
  void setWidth(float width);
  static int place(const char* name, int x, unsigned int y);
};

// Each statement that raises stands on the line behind the one that notes its number.
unsigned int g_line = 0;

unsigned int Box::width() const
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::ePlain);
}

void Box::setWidth(float width)
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::eWidth, width);
}

int Box::place(const char* name, int x, unsigned int y)
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::ePlace, name, x, y);
}

void tooFewArguments()
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::ePlace, "a", 1);
}

void noArguments()
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::eWidth);
}

void tooManyArguments()
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::eWidth, 1.0, 2.0);
}

void argumentForAPlainText()
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::ePlain, 1);
}

void unknownId()
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::eMissing);
}

void brokenText()
{
  g_line = __LINE__ + 1;
  raise(ORVEL_HERE, eSampleMessage::eBroken);
}

void withCause(const std::exception& cause)
{
  g_line = __LINE__ + 1;
  raiseWithCause(ORVEL_HERE, cause, eSampleMessage::eWidth, 2.5);
}

void warnPlain()
{
  g_line = __LINE__ + 1;
  warn(ORVEL_HERE, eSampleMessage::ePlain);
}

void warnWithoutArguments()
{
  g_line = __LINE__ + 1;
  warn(ORVEL_HERE, eSampleMessage::eWidth);
}

void warnOfUnknownId()
{
  g_line = __LINE__ + 1;
  warn(ORVEL_HERE, eSampleMessage::eMissing);
}

void warnWithBrokenText()
{
  g_line = __LINE__ + 1;
  warn(ORVEL_HERE, eSampleMessage::eBroken);
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

void expectBrokenRecord(const LogRecord& record, const std::string& function)
{
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

  ASSERT_EQ(capture.getRecords().size(), 1U);
  const LogRecord& record = capture.getRecords()[0];
  EXPECT_EQ(record.level, 40000);
  EXPECT_EQ(record.logger, "ORVEL.RaiseTest");
  EXPECT_EQ(record.message, "No element a at (1, 2)");
  EXPECT_EQ(record.file, g_file);
  EXPECT_EQ(static_cast<unsigned int>(record.line), sample::g_line);
}

TEST(Raise, LogsOnceAlsoForTheAppendersOfTheBaseLogger)
{
  const LogCapture capture(orvel::getBaseLogger());
  failureOf<SampleException>(&getWidth);
  ASSERT_EQ(capture.getRecords().size(), 1U);
  EXPECT_EQ(capture.getRecords()[0].logger, "ORVEL.RaiseTest");
}

TEST(Raise, RelaysATextWithPercentSignsAsItIs)
{
  const LogCapture capture(sample::logger());
  failureOf<SampleException>([] { Box::place("%d%% %1%", 1, 2); });
  ASSERT_EQ(capture.getRecords().size(), 1U);
  EXPECT_EQ(capture.getRecords()[0].message, "No element %d%% %1% at (1, 2)");
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
  std::string function;
  std::string cause;
};

const BrokenCase g_brokenCases[] = {
    {"too few arguments", &sample::tooFewArguments, "void sample::tooFewArguments()",
     "boost::too_few_args: format-string referred to more arguments than were passed"},
    {"no arguments", &sample::noArguments, "void sample::noArguments()",
     "boost::too_few_args: format-string referred to more arguments than were passed"},
    {"too many arguments", &sample::tooManyArguments, "void sample::tooManyArguments()",
     "boost::too_many_args: format-string referred to fewer arguments than were passed"},
    {"argument for a plain text", &sample::argumentForAPlainText, "void sample::argumentForAPlainText()",
     "boost::too_many_args: format-string referred to fewer arguments than were passed"},
    {"unknown id", &sample::unknownId, "void sample::unknownId()",
     "No message 3 of domain N6sample14eSampleMessage6domainE in the table of RaiseTest"},
    {"broken text", &sample::brokenText, "void sample::brokenText()",
     "boost::bad_format_string: format-string is ill-formed"},
};

class RaiseOfABrokenMessage : public testing::TestWithParam<BrokenCase>
{
};

TEST_P(RaiseOfABrokenMessage, ThrowsAPlainBaseExceptionWithTheReasonAsCause)
{
  const auto failure = failureOf<BaseException>(GetParam().raise);
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  expectPlace(failure, GetParam().function);
  ASSERT_NE(failure.getCause(), nullptr);
  EXPECT_EQ(failure.getCause()->what(), GetParam().cause);
}

TEST_P(RaiseOfABrokenMessage, LogsTheConstantTextOnTheBaseLoggerAlone)
{
  const LogCapture base(orvel::getBaseLogger());
  const LogCapture own(sample::logger());
  failureOf<BaseException>(GetParam().raise);
  ASSERT_EQ(base.getRecords().size(), 1U);
  expectBrokenRecord(base.getRecords()[0], GetParam().function);
  EXPECT_EQ(own.getRecords().size(), 0U);
}

TEST_P(RaiseOfABrokenMessage, ThrowsTheSameWhenTheOwnersLoggerIsDisabled)
{
  const LevelGuard level(sample::logger(), log4cplus::OFF_LOG_LEVEL);
  const LogCapture base(orvel::getBaseLogger());
  const auto failure = failureOf<BaseException>(GetParam().raise);
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  EXPECT_EQ(failure.getCause()->what(), GetParam().cause);
  ASSERT_EQ(base.getRecords().size(), 1U);
  expectBrokenRecord(base.getRecords()[0], GetParam().function);
}

TEST_P(RaiseOfABrokenMessage, LogsNothingWhenTheBaseLoggerIsDisabled)
{
  const LogCapture base(orvel::getBaseLogger(), log4cplus::FATAL_LOG_LEVEL);
  const auto failure = failureOf<BaseException>(GetParam().raise);
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  expectPlace(failure, GetParam().function);
  EXPECT_EQ(failure.getCause()->what(), GetParam().cause);
  EXPECT_EQ(base.getRecords().size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(All, RaiseOfABrokenMessage, testing::ValuesIn(g_brokenCases),
                         [](const auto& each)
                         {
                           std::string name = each.param.description;
                           for (char& character : name)
                             if (character == ' ')
                               character = '_';
                           return name;
                         });

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
  ASSERT_EQ(base.getRecords().size(), 1U);
  expectBrokenRecord(base.getRecords()[0], "unsigned int sample::Box::width() const");
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
  const auto failure = failureOf<BaseException>(&sample::tooManyArguments);
  EXPECT_EQ(failure.getMessage(), g_brokenText);
  ASSERT_NE(failure.getCause(), nullptr);
  EXPECT_STREQ(failure.getCause()->what(),
               "boost::too_many_args: format-string referred to fewer arguments than were passed");
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
    const auto failure = failureOf<BaseException>(&sample::noArguments);
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
  ASSERT_EQ(capture.getRecords().size(), 1U);
  EXPECT_EQ(capture.getRecords()[0].message, "Invalid width 2.500000");
  EXPECT_EQ(capture.getRecords()[0].level, 40000);
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
  EXPECT_STREQ(failure.getCause()->what(),
               "boost::too_few_args: format-string referred to more arguments than were passed");
}

// --- Warnings -----------------------------------------------------------------------------------------

TEST(Warn, LogsTheTextAtTheLevelOfWarningsOnTheOwnersLogger)
{
  const LogCapture capture(sample::logger());
  sample::warnPlain();

  ASSERT_EQ(capture.getRecords().size(), 1U);
  const LogRecord& record = capture.getRecords()[0];
  EXPECT_EQ(record.level, 30000);
  EXPECT_EQ(record.logger, "ORVEL.RaiseTest");
  EXPECT_EQ(record.message, "The box is not set, 100% sure");
  EXPECT_EQ(record.file, g_file);
  EXPECT_EQ(static_cast<unsigned int>(record.line), sample::g_line);
}

TEST(Warn, LogsOnceAlsoForTheAppendersOfTheBaseLogger)
{
  const LogCapture capture(orvel::getBaseLogger());
  sample::warnPlain();
  ASSERT_EQ(capture.getRecords().size(), 1U);
  EXPECT_EQ(capture.getRecords()[0].logger, "ORVEL.RaiseTest");
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
    {"no arguments", &sample::warnWithoutArguments, "void sample::warnWithoutArguments()",
     "boost::too_few_args: format-string referred to more arguments than were passed"},
    {"unknown id", &sample::warnOfUnknownId, "void sample::warnOfUnknownId()",
     "No message 3 of domain N6sample14eSampleMessage6domainE in the table of RaiseTest"},
    {"broken text", &sample::warnWithBrokenText, "void sample::warnWithBrokenText()",
     "boost::bad_format_string: format-string is ill-formed"},
};

TEST(WarnOfABrokenMessage, ThrowsAPlainBaseExceptionWithTheReasonAsCause)
{
  const LevelGuard level(sample::logger(), log4cplus::WARN_LOG_LEVEL);
  for (const BrokenCase& each : g_brokenWarnings)
  {
    const auto failure = failureOf<BaseException>(each.raise);
    EXPECT_EQ(failure.getMessage(), g_brokenText) << each.description;
    expectPlace(failure, each.function);
    ASSERT_NE(failure.getCause(), nullptr) << each.description;
    EXPECT_EQ(failure.getCause()->what(), each.cause) << each.description;
  }
}

TEST(WarnOfABrokenMessage, LogsTheConstantTextAsAnErrorOnTheBaseLoggerAlone)
{
  for (const BrokenCase& each : g_brokenWarnings)
  {
    const LogCapture base(orvel::getBaseLogger());
    const LogCapture own(sample::logger());
    failureOf<BaseException>(each.raise);
    ASSERT_EQ(base.getRecords().size(), 1U) << each.description;
    expectBrokenRecord(base.getRecords()[0], each.function);
    EXPECT_EQ(own.getRecords().size(), 0U) << each.description;
  }
}

TEST(WarnOfABrokenMessage, LogsNothingWhenTheBaseLoggerIsDisabled)
{
  const LevelGuard level(sample::logger(), log4cplus::WARN_LOG_LEVEL);
  for (const BrokenCase& each : g_brokenWarnings)
  {
    const LogCapture base(orvel::getBaseLogger(), log4cplus::FATAL_LOG_LEVEL);
    EXPECT_EQ(failureOf<BaseException>(each.raise).getMessage(), g_brokenText) << each.description;
    EXPECT_EQ(base.getRecords().size(), 0U) << each.description;
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
  ASSERT_EQ(base.getRecords().size(), 1U);
  expectBrokenRecord(base.getRecords()[0], "void sample::warnPlain()");
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
