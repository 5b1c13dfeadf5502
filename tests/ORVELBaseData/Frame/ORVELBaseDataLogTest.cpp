#include "ORVELBaseData/ORVELBaseDataLog.h"

#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <log4cplus/logger.h>

#include <ORVELUtil/LogMessageManager.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <support/LockRecorder.h>
#include <support/RaisedFailure.h>

namespace
{

TEST(ORVELBaseDataLog, IsNamedBelowTheBaseLogger)
{
  EXPECT_EQ(orvel::getORVELBaseDataLoggerName(), "ORVEL.ORVELBaseData");
  EXPECT_EQ(orvel::getORVELBaseDataLoggerName(), orvel::getBaseLoggerName() + ".ORVELBaseData");
  EXPECT_EQ(orvel::getORVELBaseDataLogger().getName(), "ORVEL.ORVELBaseData");
}

TEST(ORVELBaseDataLog, HasItsMessagesUnderItsName)
{
  EXPECT_EQ(&orvel::getORVELBaseDataLogMessageManager(),
            &orvel::LogMessageManager::getInstance("ORVELBaseData"));
}

TEST(ORVELBaseDataLog, GivesTheSameObjectsOnEachCall)
{
  EXPECT_EQ(&orvel::getORVELBaseDataLoggerName(), &orvel::getORVELBaseDataLoggerName());
  EXPECT_EQ(&orvel::getORVELBaseDataLogger(), &orvel::getORVELBaseDataLogger());
  EXPECT_EQ(&orvel::getORVELBaseDataLogMessageManager(), &orvel::getORVELBaseDataLogMessageManager());
}

TEST(ORVELBaseDataLog, GivesTheSameObjectsToEachThread)
{
  constexpr std::size_t nbThreads = 8;
  std::vector<std::vector<const void*>> seen(nbThreads);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < nbThreads; ++i)
    threads.emplace_back(
        [&seen, i]
        {
          // Both orders, as one of the functions calls another under its own lock.
          for (int round = 0; round < 1000; ++round)
            if (i % 2 == 0)
              seen[i] = {&orvel::getORVELBaseDataLoggerName(), &orvel::getORVELBaseDataLogger(),
                         &orvel::getORVELBaseDataLogMessageManager()};
            else
            {
              const void* const manager = &orvel::getORVELBaseDataLogMessageManager();
              const void* const logger = &orvel::getORVELBaseDataLogger();
              seen[i] = {&orvel::getORVELBaseDataLoggerName(), logger, manager};
            }
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(std::set<std::vector<const void*>>(seen.begin(), seen.end()).size(), 1U);
}

TEST(ORVELBaseDataLog, TakesItsLocksOnEveryCall)
{
  using orvel::test::onlyLockOf;
  if (!orvel::test::canRecordLocks)
    GTEST_SKIP() << "the sanitizers have locks of their own";
  orvel::getORVELBaseDataLogMessageManager(); // the first call has the manager made
  const void* const managerMutex = onlyLockOf([] { orvel::getORVELBaseDataLogMessageManager(); });
  EXPECT_EQ(onlyLockOf([] { orvel::getORVELBaseDataLogMessageManager(); }), managerMutex);
  const void* const nameMutex = onlyLockOf([] { orvel::getORVELBaseDataLoggerName(); });
  EXPECT_EQ(onlyLockOf([] { orvel::getORVELBaseDataLoggerName(); }), nameMutex);
  EXPECT_NE(nameMutex, managerMutex);
}

TEST(ORVELBaseDataLog, AsksForItsNameWhileItHoldsTheLockOfTheLogger)
{
  using orvel::test::LockStep;
  if (!orvel::test::canRecordLocks)
    GTEST_SKIP() << "the sanitizers have locks of their own";
  orvel::getORVELBaseDataLogger(); // the first call gets the logger from log4cplus
  const void* const nameMutex = orvel::test::onlyLockOf([] { orvel::getORVELBaseDataLoggerName(); });
  const auto steps = orvel::test::locksOf([] { orvel::getORVELBaseDataLogger(); });
  ASSERT_GE(steps.size(), 4U);
  const void* const loggerMutex = steps.front().mutex;
  EXPECT_NE(loggerMutex, nameMutex);
  EXPECT_EQ(steps[0], (LockStep{loggerMutex, true}));
  EXPECT_EQ(steps[1], (LockStep{nameMutex, true}));
  EXPECT_EQ(steps[2], (LockStep{nameMutex, false}));
  EXPECT_EQ(steps.back(), (LockStep{loggerMutex, false}));
}

TEST(ORVELBaseDataLog, LeavesLevelAndAppendersToTheApplication)
{
  EXPECT_EQ(orvel::getORVELBaseDataLogger().getLogLevel(), log4cplus::NOT_SET_LOG_LEVEL);
  EXPECT_TRUE(orvel::getORVELBaseDataLogger().getAllAppenders().empty());
  EXPECT_TRUE(orvel::getORVELBaseDataLogger().getAdditivity());
}

TEST(ORVELBaseDataLog, ReachesTheAppendersOfTheBaseLogger)
{
  const orvel::test::LogCapture capture(orvel::getBaseLogger());
  orvel::logMessage(orvel::getORVELBaseDataLogger(), log4cplus::WARN_LOG_LEVEL, "text", "file", 1);
  ASSERT_EQ(capture.getRecords().size(), 1U);
  EXPECT_EQ(capture.getRecords()[0].logger, "ORVEL.ORVELBaseData");
}

} // namespace
