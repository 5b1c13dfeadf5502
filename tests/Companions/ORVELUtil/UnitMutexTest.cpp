#include "ORVELUtil/UnitMutex.h"

#include <mutex>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

class FirstMutex : public orvel::UnitMutex<FirstMutex>
{
};

class SecondMutex : public orvel::UnitMutex<SecondMutex>
{
};

const bool g_made = FirstMutex::touch(); // as the units do it

TEST(UnitMutex, IsMadeByALoadTimeInitialiser)
{
  EXPECT_TRUE(g_made);
  EXPECT_TRUE(FirstMutex::touch());
}

TEST(UnitMutex, IsOneForEachUnit)
{
  EXPECT_EQ(&FirstMutex::get(), &FirstMutex::get());
  EXPECT_NE(&FirstMutex::get(), &SecondMutex::get());
}

TEST(UnitMutex, LocksApartFromThoseOfOtherUnits)
{
  const boost::mutex::scoped_lock lock(FirstMutex::get());
  bool locked = true;
  bool otherLocked = false;
  // std::mutex and its like may not be tried by the thread that holds them.
  std::thread(
      [&]
      {
        locked = FirstMutex::get().try_lock();
        otherLocked = SecondMutex::get().try_lock();
        if (otherLocked)
          SecondMutex::get().unlock();
      })
      .join();
  EXPECT_FALSE(locked);
  EXPECT_TRUE(otherLocked);
}

TEST(UnitMutex, GuardsWhatThreadsShare)
{
  long counter = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i)
    threads.emplace_back(
        [&counter]
        {
          for (int round = 0; round < 10000; ++round)
          {
            const boost::mutex::scoped_lock lock(SecondMutex::get());
            ++counter;
          }
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(counter, 80000);
}

} // namespace
