#include "ORVELUtil/DynamicObjectFactory.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>
#include <log4cplus/appender.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace
{

using orvel::BaseDynamicObject;
using orvel::DynamicObjectFactory;
using orvel::DynamicObjectPtr;
using orvel::ORVELUtilException;
using orvel::test::messageOf;

/// An object that says which creator made it.
class Sample : public BaseDynamicObject
{
public:
  explicit Sample(int maker)
    : _maker(maker)
  {
  }

  const std::string& getClassName() const override
  {
    static const std::string g_name = "Sample";
    return g_name;
  }
  BaseDynamicObject* createNew() const override { return new Sample(_maker); }
  DynamicObjectPtr createShared() const override { return boost::make_shared<Sample>(_maker); }
  bool hasCopySupport() const override { return false; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  void copy(const BaseDynamicObject&) override {}

  int getMaker() const { return _maker; }

private:
  int _maker;
};

template <int maker>
BaseDynamicObject* newSample()
{
  return new Sample(maker);
}

template <int maker>
DynamicObjectPtr sharedSample()
{
  return boost::make_shared<Sample>(maker + 100);
}

DynamicObjectFactory& factory()
{
  return DynamicObjectFactory::getInstance();
}

template <int maker>
void enter(const std::string& name)
{
  factory().registerClass(name, &newSample<maker>, &sharedSample<maker>);
}

int newMakerOf(const std::string& name)
{
  const std::unique_ptr<BaseDynamicObject> object(factory().createNew(name));
  return dynamic_cast<const Sample&>(*object).getMaker();
}

int sharedMakerOf(const std::string& name)
{
  return dynamic_cast<const Sample&>(*factory().createShared(name)).getMaker();
}

// Runs before main, in no known order against the initialisers of other units.
const bool g_registeredAtLoad = []
{
  enter<7>("FactoryTest::AtLoad");
  return newMakerOf("FactoryTest::AtLoad") == 7;
}();

TEST(DynamicObjectFactory, IsOne)
{
  EXPECT_EQ(&DynamicObjectFactory::getInstance(), &DynamicObjectFactory::getInstance());
  EXPECT_FALSE(std::is_copy_constructible_v<DynamicObjectFactory>);
  EXPECT_FALSE(std::is_copy_assignable_v<DynamicObjectFactory>);
  EXPECT_FALSE(std::is_default_constructible_v<DynamicObjectFactory>);
}

TEST(DynamicObjectFactory, ServesLoadTimeInitialisers)
{
  EXPECT_TRUE(g_registeredAtLoad);
  EXPECT_TRUE(factory().isRegistered("FactoryTest::AtLoad"));
}

TEST(DynamicObjectFactory, CreatesBothWays)
{
  enter<1>("FactoryTest::Both");
  EXPECT_EQ(newMakerOf("FactoryTest::Both"), 1);
  EXPECT_EQ(sharedMakerOf("FactoryTest::Both"), 101);
  factory().unRegisterClass("FactoryTest::Both");
}

TEST(DynamicObjectFactory, CreatesANewObjectEachTime)
{
  enter<1>("FactoryTest::Each");
  const DynamicObjectPtr first = factory().createShared("FactoryTest::Each");
  const DynamicObjectPtr second = factory().createShared("FactoryTest::Each");
  EXPECT_NE(first, second);
  EXPECT_EQ(first.use_count(), 1);
  factory().unRegisterClass("FactoryTest::Each");
}

TEST(DynamicObjectFactory, ForgetsAClassThatIsTakenOut)
{
  enter<1>("FactoryTest::Forgotten");
  EXPECT_TRUE(factory().isRegistered("FactoryTest::Forgotten"));
  factory().unRegisterClass("FactoryTest::Forgotten");
  EXPECT_FALSE(factory().isRegistered("FactoryTest::Forgotten"));
  EXPECT_THROW(factory().createNew("FactoryTest::Forgotten"), ORVELUtilException);
}

TEST(DynamicObjectFactory, TakesAClassThatWasTakenOut)
{
  enter<1>("FactoryTest::Again");
  factory().unRegisterClass("FactoryTest::Again");
  enter<2>("FactoryTest::Again");
  EXPECT_EQ(newMakerOf("FactoryTest::Again"), 2);
  factory().unRegisterClass("FactoryTest::Again");
}

TEST(DynamicObjectFactory, TakesAnyText)
{
  const std::string name("\0 \xFF name", 8);
  enter<1>(name);
  enter<2>("");
  EXPECT_EQ(newMakerOf(name), 1);
  EXPECT_EQ(newMakerOf(""), 2);
  EXPECT_FALSE(factory().isRegistered(std::string("\0", 1)));
  factory().unRegisterClass(name);
  factory().unRegisterClass("");
  EXPECT_FALSE(factory().isRegistered(""));
}

TEST(DynamicObjectFactory, ComparesNamesExactly)
{
  enter<1>("FactoryTest::Exact");
  EXPECT_FALSE(factory().isRegistered("factorytest::exact"));
  EXPECT_FALSE(factory().isRegistered("FactoryTest::Exact "));
  EXPECT_FALSE(factory().isRegistered("FactoryTest::Exac"));
  factory().unRegisterClass("FactoryTest::Exact");
}

TEST(DynamicObjectFactory, ListsTheNamesSortedAndOnce)
{
  const std::set<std::string> before = factory().getRegisteredClassNames();
  enter<1>("FactoryTest::B");
  enter<1>("FactoryTest::A");
  enter<2>("FactoryTest::B");
  std::set<std::string> expected = before;
  expected.insert("FactoryTest::A");
  expected.insert("FactoryTest::B");
  EXPECT_EQ(factory().getRegisteredClassNames(), expected);
  factory().unRegisterClass("FactoryTest::B");
  EXPECT_EQ(factory().getRegisteredClassNames(), expected);
  factory().unRegisterClass("FactoryTest::B");
  factory().unRegisterClass("FactoryTest::A");
  EXPECT_EQ(factory().getRegisteredClassNames(), before);
}

TEST(DynamicObjectFactory, CreatesByTheOldestEntry)
{
  const std::string name = "FactoryTest::Oldest";
  enter<1>(name);
  enter<2>(name);
  enter<3>(name);
  EXPECT_EQ(newMakerOf(name), 1);
  EXPECT_EQ(sharedMakerOf(name), 101);
  for (int i = 0; i < 3; ++i)
    factory().unRegisterClass(name);
}

TEST(DynamicObjectFactory, TakesTheNewestEntryOutByNameAlone)
{
  const std::string name = "FactoryTest::Newest";
  enter<1>(name);
  enter<2>(name);
  factory().unRegisterClass(name);
  factory().unRegisterClass(name, &newSample<2>); // is gone already
  EXPECT_EQ(newMakerOf(name), 1);
  factory().unRegisterClass(name);
  EXPECT_FALSE(factory().isRegistered(name));
}

/// Takes three entries out one by one, by their creators, and says who creates after each.
template <int first, int second, int third>
std::vector<int> makersAfterRemoving()
{
  const std::string name = "FactoryTest::Order";
  enter<1>(name);
  enter<2>(name);
  enter<3>(name);
  std::vector<int> makers;
  factory().unRegisterClass(name, &newSample<first>);
  makers.push_back(newMakerOf(name));
  factory().unRegisterClass(name, &newSample<second>);
  makers.push_back(newMakerOf(name));
  factory().unRegisterClass(name, &newSample<third>);
  EXPECT_FALSE(factory().isRegistered(name));
  return makers;
}

TEST(DynamicObjectFactory, LeavesTheOtherEntriesInEveryOrderOfRemoval)
{
  using Makers = std::vector<int>;
  EXPECT_EQ((makersAfterRemoving<1, 2, 3>()), (Makers{2, 3}));
  EXPECT_EQ((makersAfterRemoving<1, 3, 2>()), (Makers{2, 2}));
  EXPECT_EQ((makersAfterRemoving<2, 1, 3>()), (Makers{1, 3}));
  EXPECT_EQ((makersAfterRemoving<2, 3, 1>()), (Makers{1, 1}));
  EXPECT_EQ((makersAfterRemoving<3, 1, 2>()), (Makers{1, 2}));
  EXPECT_EQ((makersAfterRemoving<3, 2, 1>()), (Makers{1, 1}));
}

TEST(DynamicObjectFactory, CountsRegistrationsOfOneCreator)
{
  const std::string name = "FactoryTest::Counted";
  enter<1>(name);
  enter<1>(name);
  factory().unRegisterClass(name, &newSample<1>);
  EXPECT_TRUE(factory().isRegistered(name));
  factory().unRegisterClass(name, &newSample<1>);
  EXPECT_FALSE(factory().isRegistered(name));
}

TEST(DynamicObjectFactory, StaysAsItWasIfMemoryEndsDuringARegistration)
{
  const std::string name = "FactoryTest::ANameThatNeedsMemoryOfItsOwn";
  const std::set<std::string> before = factory().getRegisteredClassNames();
  const std::uint64_t nbChanges = factory().getChangeCount();
  EXPECT_GT(orvel::test::failAtEachAllocation([&name] { enter<1>(name); },
                                              [&before, nbChanges]
                                              {
                                                EXPECT_EQ(factory().getRegisteredClassNames(), before);
                                                EXPECT_EQ(factory().getChangeCount(), nbChanges);
                                              }),
            1U);
  EXPECT_EQ(factory().getChangeCount(), nbChanges + 1);
  // One more entry of a name that is known.
  EXPECT_GT(orvel::test::failAtEachAllocation([&name] { enter<2>(name); }, [] {}), 0U);
  factory().unRegisterClass(name, &newSample<1>);
  EXPECT_EQ(newMakerOf(name), 2);
  factory().unRegisterClass(name);
  EXPECT_EQ(factory().getRegisteredClassNames(), before);
}

TEST(DynamicObjectFactory, LeavesAnUnknownNameAsItIs)
{
  const std::set<std::string> before = factory().getRegisteredClassNames();
  EXPECT_NO_THROW(factory().unRegisterClass("FactoryTest::Unknown"));
  EXPECT_NO_THROW(factory().unRegisterClass("FactoryTest::Unknown", &newSample<1>));
  EXPECT_EQ(factory().getRegisteredClassNames(), before);
}

TEST(DynamicObjectFactory, LeavesEntriesOfOtherCreators)
{
  enter<1>("FactoryTest::Other");
  factory().unRegisterClass("FactoryTest::Other", &newSample<2>);
  EXPECT_EQ(newMakerOf("FactoryTest::Other"), 1);
  factory().unRegisterClass("FactoryTest::Other");
}

constexpr const char* g_createNew =
    "orvel::BaseDynamicObject* orvel::DynamicObjectFactory::createNew(const std::string&) const";
constexpr const char* g_createShared =
    "orvel::DynamicObjectPtr orvel::DynamicObjectFactory::createShared(const std::string&) const";

/// Checks the failure of createNew or createShared.
void expectRefusal(const std::function<void()>& create, const std::string& message, const char* function,
                   const std::string& id)
{
  orvel::test::expectRaised<ORVELUtilException>(
      create, {message, function, "Companions/ORVELUtil/DynamicObjectFactory.cpp", {}, id});
}

TEST(DynamicObjectFactory, RaisesOnANameThatNobodyHasRegistered)
{
  for (const std::string name : {"FactoryTest::Nobody", "", "%s %1%"})
  {
    expectRefusal([&name] { factory().createNew(name); }, "Unknown class name " + name, g_createNew,
                  "eUnknownClassName");
    expectRefusal([&name] { factory().createShared(name); }, "Unknown class name " + name, g_createShared,
                  "eUnknownClassName");
  }
}

TEST(DynamicObjectFactory, RaisesWhereACreatorIsNull)
{
  factory().registerClass("FactoryTest::NoNew", nullptr, &sharedSample<1>);
  EXPECT_EQ(sharedMakerOf("FactoryTest::NoNew"), 101);
  expectRefusal([] { factory().createNew("FactoryTest::NoNew"); },
                "Class FactoryTest::NoNew is registered without a creator of objects", g_createNew,
                "eNoNewCreator");
  factory().unRegisterClass("FactoryTest::NoNew", nullptr);
  EXPECT_FALSE(factory().isRegistered("FactoryTest::NoNew"));

  factory().registerClass("FactoryTest::NoShared", &newSample<1>, nullptr);
  EXPECT_EQ(newMakerOf("FactoryTest::NoShared"), 1);
  expectRefusal([] { factory().createShared("FactoryTest::NoShared"); },
                "Class FactoryTest::NoShared is registered without a creator of shared objects",
                g_createShared, "eNoSharedCreator");
  factory().unRegisterClass("FactoryTest::NoShared");
}

TEST(DynamicObjectFactory, TakesAnEntryWithoutCreatorsOutByNameAlone)
{
  factory().registerClass("FactoryTest::None", nullptr, nullptr);
  EXPECT_TRUE(factory().isRegistered("FactoryTest::None"));
  factory().unRegisterClass("FactoryTest::None");
  EXPECT_FALSE(factory().isRegistered("FactoryTest::None"));
}

TEST(DynamicObjectFactory, GivesTheFunctionOfSharedObjects)
{
  enter<1>("FactoryTest::Function");
  EXPECT_EQ(factory().findSharedFunction("FactoryTest::Function"), &sharedSample<1>);
  factory().unRegisterClass("FactoryTest::Function");
  EXPECT_EQ(factory().findSharedFunction("FactoryTest::Function"), nullptr);
}

TEST(DynamicObjectFactory, CountsItsChanges)
{
  const std::string name = "FactoryTest::Changes";
  const std::uint64_t before = factory().getChangeCount();
  enter<1>(name);
  EXPECT_EQ(factory().getChangeCount(), before + 1);
  enter<2>(name); // a second entry of the name
  EXPECT_EQ(factory().getChangeCount(), before + 2);
  factory().unRegisterClass(name, &newSample<2>);
  EXPECT_EQ(factory().getChangeCount(), before + 3);
  factory().unRegisterClass(name);
  EXPECT_EQ(factory().getChangeCount(), before + 4);
}

TEST(DynamicObjectFactory, CountsNothingThatChangesNothing)
{
  const std::string name = "FactoryTest::NoChange";
  enter<1>(name);
  const std::uint64_t before = factory().getChangeCount();
  factory().unRegisterClass("FactoryTest::Unknown");
  factory().unRegisterClass("FactoryTest::Unknown", &newSample<1>);
  factory().unRegisterClass(name, &newSample<2>);
  EXPECT_EQ(newMakerOf(name), 1);
  EXPECT_EQ(sharedMakerOf(name), 101);
  EXPECT_THROW(factory().createNew("FactoryTest::Unknown"), ORVELUtilException);
  EXPECT_EQ(factory().getChangeCount(), before);
  factory().unRegisterClass(name);
}

TEST(DynamicObjectFactory, CountsTheChangesOfAllThreads)
{
  const std::uint64_t before = factory().getChangeCount();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread)
    threads.emplace_back(
        [thread]
        {
          const std::string name = "FactoryTest::Counting" + std::to_string(thread);
          for (int round = 0; round < 500; ++round)
          {
            const std::uint64_t unchanged = factory().getChangeCount();
            enter<1>(name);
            factory().unRegisterClass(name);
            EXPECT_GE(factory().getChangeCount(), unchanged + 2);
          }
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(factory().getChangeCount(), before + 4U * 500 * 2);
}

BaseDynamicObject* throwingNew()
{
  throw std::runtime_error("no memory left for this class");
}

TEST(DynamicObjectFactory, LetsTheCreatorsFailureOut)
{
  factory().registerClass("FactoryTest::Throwing", &throwingNew, nullptr);
  EXPECT_THROW(factory().createNew("FactoryTest::Throwing"), std::runtime_error);
  EXPECT_THROW(factory().createNew("FactoryTest::Throwing"), std::runtime_error); // nothing is locked
  factory().unRegisterClass("FactoryTest::Throwing");
}

BaseDynamicObject* nestedNew()
{
  enter<5>("FactoryTest::Inner");
  std::unique_ptr<BaseDynamicObject> inner(factory().createNew("FactoryTest::Inner"));
  factory().unRegisterClass("FactoryTest::Inner");
  factory().unRegisterClass("FactoryTest::Nested"); // its own entry
  return inner.release();
}

TEST(DynamicObjectFactory, MayBeUsedByACreator)
{
  factory().registerClass("FactoryTest::Nested", &nestedNew, nullptr);
  EXPECT_EQ(newMakerOf("FactoryTest::Nested"), 5);
  EXPECT_FALSE(factory().isRegistered("FactoryTest::Nested"));
  EXPECT_FALSE(factory().isRegistered("FactoryTest::Inner"));
}

/// An appender that creates by name, a known class and, once, an unknown one.
class CreatingAppender : public log4cplus::Appender
{
public:
  explicit CreatingAppender(std::vector<std::string>& seen)
    : _seen(seen)
  {
  }
  ~CreatingAppender() override { destructorImpl(); }
  void close() override {}

protected:
  void append(const log4cplus::spi::InternalLoggingEvent& event) override
  {
    _seen.push_back(event.getMessage());
    if (_seen.size() > 1)
      return;
    _seen.push_back("made by " + std::to_string(newMakerOf("FactoryTest::ByAppender")));
    try
    {
      factory().createNew("FactoryTest::UnknownToo");
    }
    catch (const ORVELUtilException& failure)
    {
      _seen.push_back("caught " + failure.getMessage());
    }
  }

private:
  std::vector<std::string>& _seen;
};

TEST(DynamicObjectFactory, MayBeUsedByAnAppenderThatLogsItsFailure)
{
  enter<4>("FactoryTest::ByAppender");
  std::vector<std::string> seen;
  const log4cplus::SharedAppenderPtr appender(new CreatingAppender(seen));
  log4cplus::Logger logger = orvel::getORVELUtilLogger();
  logger.addAppender(appender);
  const std::string message =
      messageOf<ORVELUtilException>([] { factory().createShared("FactoryTest::Unknown"); });
  logger.removeAppender(appender);
  factory().unRegisterClass("FactoryTest::ByAppender");

  EXPECT_EQ(message, "Unknown class name FactoryTest::Unknown");
  EXPECT_EQ(seen, (std::vector<std::string>{"Unknown class name FactoryTest::Unknown", "made by 4",
                                            "Unknown class name FactoryTest::UnknownToo",
                                            "caught Unknown class name FactoryTest::UnknownToo"}));
}

TEST(DynamicObjectFactory, MayBeUsedFromSeveralThreads)
{
  const std::set<std::string> before = factory().getRegisteredClassNames();
  enter<1>("FactoryTest::Shared");
  std::atomic<int> nbWrong(0);
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 8; ++thread)
    threads.emplace_back(
        [thread, &nbWrong]
        {
          const std::string own = "FactoryTest::Thread" + std::to_string(thread);
          for (int round = 0; round < 500; ++round)
          {
            enter<2>(own);
            enter<3>("FactoryTest::Shared");
            nbWrong += newMakerOf(own) != 2;
            nbWrong += sharedMakerOf("FactoryTest::Shared") != 101; // the oldest entry stays
            nbWrong += factory().getRegisteredClassNames().count(own) != 1;
            factory().unRegisterClass("FactoryTest::Shared", &newSample<3>);
            factory().unRegisterClass(own);
            nbWrong += factory().isRegistered(own);
            nbWrong += factory().findSharedFunction("FactoryTest::Shared") != &sharedSample<1>;
            nbWrong += messageOf<ORVELUtilException>([&own] { factory().createNew(own); }) !=
                       "Unknown class name " + own;
          }
        });
  for (std::thread& thread : threads)
    thread.join();
  factory().unRegisterClass("FactoryTest::Shared");
  EXPECT_EQ(nbWrong, 0);
  EXPECT_EQ(factory().getRegisteredClassNames(), before);
}

} // namespace
