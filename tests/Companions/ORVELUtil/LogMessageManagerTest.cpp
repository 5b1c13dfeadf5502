#include "ORVELUtil/LogMessageManager.h"

#include <climits>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace
{

using orvel::LogMessageManager;

LogMessageManager& manager()
{
  return LogMessageManager::getInstance("LogMessageManagerTest");
}

TEST(LogMessageManager, IsOneForEachKey)
{
  EXPECT_EQ(&LogMessageManager::getInstance("LogMessageManagerTest"), &manager());
  EXPECT_NE(&LogMessageManager::getInstance("logmessagemanagertest"), &manager());
  EXPECT_NE(&LogMessageManager::getInstance(""), &manager());
  EXPECT_EQ(&LogMessageManager::getInstance(""), &LogMessageManager::getInstance(""));
}

TEST(LogMessageManager, CannotBeCopied)
{
  EXPECT_FALSE(std::is_copy_constructible_v<LogMessageManager>);
  EXPECT_FALSE(std::is_copy_assignable_v<LogMessageManager>);
}

TEST(LogMessageManager, GivesBackATextUnchanged)
{
  manager().addMessage("domain", 0, "Unknown %s, %d%% of %lld\n");
  EXPECT_EQ(manager().getMessage("domain", 0), "Unknown %s, %d%% of %lld\n");
  manager().addMessage("domain", 1, "");
  EXPECT_EQ(manager().getMessage("domain", 1), "");
}

TEST(LogMessageManager, TakesAnyId)
{
  manager().addMessage("ids", INT_MIN, "least");
  manager().addMessage("ids", -1, "negative");
  manager().addMessage("ids", INT_MAX, "greatest");
  EXPECT_EQ(manager().getMessage("ids", INT_MIN), "least");
  EXPECT_EQ(manager().getMessage("ids", -1), "negative");
  EXPECT_EQ(manager().getMessage("ids", INT_MAX), "greatest");
}

TEST(LogMessageManager, TellsIdsOfDifferentDomainsApart)
{
  manager().addMessage("one", 3, "of one");
  manager().addMessage("other", 3, "of the other");
  EXPECT_EQ(manager().getMessage("one", 3), "of one");
  EXPECT_EQ(manager().getMessage("other", 3), "of the other");
}

TEST(LogMessageManager, TellsTablesOfDifferentKeysApart)
{
  LogMessageManager& other = LogMessageManager::getInstance("LogMessageManagerTest other");
  manager().addMessage("tables", 0, "here");
  EXPECT_THROW(other.getMessage("tables", 0), std::out_of_range);
  other.addMessage("tables", 0, "there");
  EXPECT_EQ(manager().getMessage("tables", 0), "here");
}

TEST(LogMessageManager, ReplacesATextThatIsEnteredAgain)
{
  manager().addMessage("again", 0, "old");
  manager().addMessage("again", 0, "new");
  EXPECT_EQ(manager().getMessage("again", 0), "new");
}

TEST(LogMessageManager, StaysAsItWasIfMemoryEnds)
{
  const std::string domain = "a domain whose key needs memory of its own";
  const std::string first = "a text that needs memory of its own";
  const std::string second = "a longer text that needs more memory than the first one had";
  EXPECT_GT(orvel::test::failAtEachAllocation(
                [&] { manager().addMessage(domain, 0, first); },
                [&] { EXPECT_THROW(manager().getMessage(domain, 0), std::out_of_range); }),
            1U);
  EXPECT_GT(orvel::test::failAtEachAllocation([&] { manager().addMessage(domain, 0, second); },
                                              [&] { EXPECT_EQ(manager().getMessage(domain, 0), first); }),
            0U);
  EXPECT_EQ(manager().getMessage(domain, 0), second);
}

TEST(LogMessageManager, NamesWhatItDoesNotHold)
{
  const auto failure =
      orvel::test::failureOf<std::out_of_range>([] { manager().getMessage("no such domain", -12); });
  EXPECT_STREQ(failure.what(),
               "No message -12 of domain no such domain in the table of LogMessageManagerTest");
}

TEST(LogMessageManager, MayBeUsedFromSeveralThreads)
{
  std::vector<std::thread> threads;
  std::vector<int> nbWrong(8, -1);
  for (int thread = 0; thread < 8; ++thread)
    threads.emplace_back(
        [thread, &nbWrong]
        {
          int wrong = 0;
          for (int id = 0; id < 500; ++id)
          {
            LogMessageManager& shared = LogMessageManager::getInstance("threads " + std::to_string(id % 10));
            const std::string text = std::to_string(thread) + ":" + std::to_string(id);
            shared.addMessage("domain " + std::to_string(thread), id, text);
            shared.addMessage("all", 0, "the same");
            wrong += shared.getMessage("domain " + std::to_string(thread), id) != text;
            wrong += shared.getMessage("all", 0) != "the same";
          }
          nbWrong[static_cast<std::size_t>(thread)] = wrong;
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(nbWrong, std::vector<int>(8, 0));
}

} // namespace
