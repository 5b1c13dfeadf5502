#include "ORVELUtil/ORVELUtilLog.h"

#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <log4cplus/logger.h>
#include <log4cplus/nullappender.h>

#include <ORVELUtil/LogMessageManager.h>
#include <support/RaisedFailure.h>

namespace
{

using log4cplus::Logger;
using orvel::test::LogCapture;

TEST(ORVELUtilLog, HasABaseLogger)
{
  EXPECT_EQ(orvel::getBaseLoggerName(), "ORVEL");
  EXPECT_EQ(orvel::getBaseLogger().getName(), "ORVEL");
}

TEST(ORVELUtilLog, HasALoggerBelowTheBaseLogger)
{
  EXPECT_EQ(orvel::getORVELUtilLogger().getName(), "ORVEL.ORVELUtil");
}

TEST(ORVELUtilLog, GivesTheSameObjectsOnEachCall)
{
  EXPECT_EQ(&orvel::getBaseLoggerName(), &orvel::getBaseLoggerName());
  EXPECT_EQ(&orvel::getBaseLogger(), &orvel::getBaseLogger());
  EXPECT_EQ(&orvel::getORVELUtilLogger(), &orvel::getORVELUtilLogger());
  EXPECT_EQ(&orvel::getORVELUtilLogMessageManager(), &orvel::getORVELUtilLogMessageManager());
}

TEST(ORVELUtilLog, GivesTheSameObjectsToEachThread)
{
  constexpr std::size_t nbThreads = 8;
  std::vector<std::vector<const void*>> seen(nbThreads);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < nbThreads; ++i)
    threads.emplace_back(
        [&seen, i]
        {
          seen[i] = {&orvel::getBaseLoggerName(), &orvel::getBaseLogger(), &orvel::getORVELUtilLogger(),
                     &orvel::getORVELUtilLogMessageManager()};
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(std::set<std::vector<const void*>>(seen.begin(), seen.end()).size(), 1U);
}

TEST(ORVELUtilLog, HasItsMessagesUnderItsName)
{
  EXPECT_EQ(&orvel::getORVELUtilLogMessageManager(), &orvel::LogMessageManager::getInstance("ORVELUtil"));
}

TEST(ORVELUtilLog, PutsANullAppenderOnItsOwnBaseLoggerOnly)
{
  const log4cplus::SharedAppenderPtrList appenders = orvel::getBaseLogger().getAllAppenders();
  ASSERT_EQ(appenders.size(), 1U);
  EXPECT_NE(dynamic_cast<const log4cplus::NullAppender*>(appenders[0].get()), nullptr);
  EXPECT_TRUE(Logger::getRoot().getAllAppenders().empty());
  EXPECT_TRUE(orvel::getORVELUtilLogger().getAllAppenders().empty());
}

TEST(ORVELUtilLog, StaysQuietWhenTheApplicationHasTakenAllAppendersAway)
{
  log4cplus::Logger::shutdown();
  EXPECT_EQ(orvel::getBaseLogger().getAllAppenders().size(), 1U);
  orvel::getBaseLogger().removeAllAppenders();
  testing::internal::CaptureStderr();
  orvel::logMessage(orvel::getORVELUtilLogger(), log4cplus::ERROR_LOG_LEVEL, "text", "file", 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(orvel::getBaseLogger().getAllAppenders().size(), 1U);
}

TEST(ORVELUtilLog, LeavesTheAppendersOfTheApplication)
{
  const LogCapture capture(orvel::getBaseLogger());
  EXPECT_EQ(orvel::getBaseLogger().getAllAppenders().size(), 2U);
  orvel::logMessage(orvel::getBaseLogger(), log4cplus::ERROR_LOG_LEVEL, "text", "file", 1);
  EXPECT_EQ(capture.getRecords().size(), 1U);
}

TEST(ORVELUtilLog, LeavesTheLevelToTheApplication)
{
  EXPECT_EQ(orvel::getBaseLogger().getLogLevel(), log4cplus::NOT_SET_LOG_LEVEL);
  EXPECT_EQ(orvel::getORVELUtilLogger().getLogLevel(), log4cplus::NOT_SET_LOG_LEVEL);
  EXPECT_TRUE(orvel::getORVELUtilLogger().getAdditivity());
}

TEST(LogMessage, EmitsOneEventWithLevelFileAndLine)
{
  Logger logger = Logger::getInstance("ORVEL.LogMessageTest");
  const LogCapture capture(logger);
  orvel::logMessage(logger, log4cplus::WARN_LOG_LEVEL, "50% of %d", "dir/file.cpp", 1234);

  ASSERT_EQ(capture.getRecords().size(), 1U);
  const orvel::test::LogRecord& record = capture.getRecords()[0];
  EXPECT_EQ(record.level, log4cplus::WARN_LOG_LEVEL);
  EXPECT_EQ(record.logger, "ORVEL.LogMessageTest");
  EXPECT_EQ(record.message, "50% of %d");
  EXPECT_EQ(record.file, "dir/file.cpp");
  EXPECT_EQ(record.line, 1234);
}

TEST(LogMessage, EmitsWhateverLevelTheLoggerIsSetTo)
{
  Logger logger = Logger::getInstance("ORVEL.LogMessageTest");
  const LogCapture capture(logger, log4cplus::OFF_LOG_LEVEL);
  orvel::logMessage(logger, log4cplus::DEBUG_LOG_LEVEL, "text", "file", 1);
  EXPECT_EQ(capture.getRecords().size(), 1U);
}

TEST(LogMessage, TakesAnyLevel)
{
  Logger logger = Logger::getInstance("ORVEL.LogMessageTest");
  const LogCapture capture(logger);
  orvel::logMessage(logger, 12345, "", "", 0);
  ASSERT_EQ(capture.getRecords().size(), 1U);
  EXPECT_EQ(capture.getRecords()[0].level, 12345);
  EXPECT_EQ(capture.getRecords()[0].message, "");
  EXPECT_EQ(capture.getRecords()[0].file, "");
}

TEST(LogMessage, ReachesTheAppendersOfTheBaseLogger)
{
  const LogCapture capture(orvel::getBaseLogger());
  orvel::logMessage(orvel::getORVELUtilLogger(), log4cplus::ERROR_LOG_LEVEL, "text", "file", 1);
  ASSERT_EQ(capture.getRecords().size(), 1U);
  EXPECT_EQ(capture.getRecords()[0].logger, "ORVEL.ORVELUtil");
}

} // namespace
