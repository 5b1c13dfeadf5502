#include "ORVELUtil/DynamicRegistrator.h"

#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace
{

using orvel::BaseDynamicObject;
using orvel::DynamicObjectFactory;
using orvel::DynamicObjectPtr;
using orvel::DynamicRegistrator;

template <int number>
class Sample : public BaseDynamicObject
{
public:
  static Sample* createNewObject()
  {
    ++g_nbNew;
    return new Sample;
  }
  static boost::shared_ptr<Sample> createSharedObject()
  {
    ++g_nbShared;
    return boost::make_shared<Sample>();
  }

  const std::string& getClassName() const override
  {
    static const std::string g_name = "Sample";
    return g_name;
  }
  BaseDynamicObject* createNew() const override { return new Sample; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<Sample>(); }
  bool hasCopySupport() const override { return false; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  void copy(const BaseDynamicObject&) override {}

  static int g_nbNew;
  static int g_nbShared;
};

template <int number>
int Sample<number>::g_nbNew = 0;
template <int number>
int Sample<number>::g_nbShared = 0;

const DynamicRegistrator<Sample<0>> g_classRegistrator("DynamicRegistratorTest::Sample0");

const DynamicObjectFactory& factory()
{
  return DynamicObjectFactory::getInstance();
}

TEST(DynamicRegistrator, RegistersAtLoad)
{
  EXPECT_TRUE(factory().isRegistered("DynamicRegistratorTest::Sample0"));
}

TEST(DynamicRegistrator, CreatesThroughTheStaticFunctionsOfTheClass)
{
  const int nbNew = Sample<0>::g_nbNew;
  const int nbShared = Sample<0>::g_nbShared;
  const std::unique_ptr<BaseDynamicObject> object(factory().createNew("DynamicRegistratorTest::Sample0"));
  EXPECT_NE(dynamic_cast<const Sample<0>*>(object.get()), nullptr);
  EXPECT_EQ(Sample<0>::g_nbNew, nbNew + 1);
  EXPECT_EQ(Sample<0>::g_nbShared, nbShared);

  const DynamicObjectPtr shared = factory().createShared("DynamicRegistratorTest::Sample0");
  EXPECT_NE(dynamic_cast<const Sample<0>*>(shared.get()), nullptr);
  EXPECT_EQ(Sample<0>::g_nbNew, nbNew + 1);
  EXPECT_EQ(Sample<0>::g_nbShared, nbShared + 1);
}

TEST(DynamicRegistrator, RegistersForAsLongAsItLives)
{
  EXPECT_FALSE(factory().isRegistered("DynamicRegistratorTest::Sample1"));
  {
    const DynamicRegistrator<Sample<1>> registrator("DynamicRegistratorTest::Sample1");
    EXPECT_TRUE(factory().isRegistered("DynamicRegistratorTest::Sample1"));
  }
  EXPECT_FALSE(factory().isRegistered("DynamicRegistratorTest::Sample1"));
}

TEST(DynamicRegistrator, TakesItsOwnEntryOutAndLeavesTheOther)
{
  const std::string name = "DynamicRegistratorTest::Twice";
  std::optional<DynamicRegistrator<Sample<1>>> first(name.c_str());
  std::optional<DynamicRegistrator<Sample<2>>> second(name.c_str());
  first.reset();
  EXPECT_NE(dynamic_cast<const Sample<2>*>(factory().createShared(name).get()), nullptr);
  first.emplace(name.c_str());
  EXPECT_NE(dynamic_cast<const Sample<2>*>(factory().createShared(name).get()), nullptr);
  second.reset();
  EXPECT_NE(dynamic_cast<const Sample<1>*>(factory().createShared(name).get()), nullptr);
  first.reset();
  EXPECT_FALSE(factory().isRegistered(name));
}

TEST(DynamicRegistrator, TakesOutNothingWhenItsEntryIsGone)
{
  const std::string name = "DynamicRegistratorTest::Gone";
  const DynamicRegistrator<Sample<1>> other(name.c_str());
  {
    const DynamicRegistrator<Sample<2>> registrator(name.c_str());
    DynamicObjectFactory::getInstance().unRegisterClass(name, &DynamicRegistrator<Sample<2>>::newCreatorFcn);
  }
  EXPECT_TRUE(factory().isRegistered(name));
}

TEST(DynamicRegistrator, OffersItsCreatorFunctions)
{
  EXPECT_TRUE(
      (std::is_same_v<decltype(&DynamicRegistrator<Sample<1>>::newCreatorFcn), BaseDynamicObject* (*)()>));
  EXPECT_TRUE((std::is_same_v<decltype(&DynamicRegistrator<Sample<1>>::sharedCreatorFcn),
                              boost::shared_ptr<BaseDynamicObject> (*)()>));
  const std::unique_ptr<BaseDynamicObject> object(DynamicRegistrator<Sample<3>>::newCreatorFcn());
  EXPECT_EQ(Sample<3>::g_nbNew, 1);
  EXPECT_NE(DynamicRegistrator<Sample<3>>::sharedCreatorFcn(), nullptr);
  EXPECT_EQ(Sample<3>::g_nbShared, 1);
}

TEST(DynamicRegistrator, LetsNoExceptionOutOfItsDestructor)
{
  EXPECT_TRUE(std::is_nothrow_destructible_v<DynamicRegistrator<Sample<1>>>);
  EXPECT_FALSE(std::is_copy_constructible_v<DynamicRegistrator<Sample<1>>>);
  EXPECT_FALSE(std::is_copy_assignable_v<DynamicRegistrator<Sample<1>>>);
}

} // namespace
