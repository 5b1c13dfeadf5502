#include "ORVELUtil/BaseDynamicObject.h"

#include <dlfcn.h>
#include <link.h>
#include <memory>
#include <string>
#include <type_traits>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <support/LayoutChecks.h>

namespace
{

using orvel::BaseDynamicObject;
using orvel::DynamicObjectConstPtr;
using orvel::DynamicObjectPtr;
using orvel::test::vtableIndexOf;

/// The least that a class has to bring.
class Sample : public BaseDynamicObject
{
public:
  explicit Sample(int value = 0)
    : _value(value)
  {
  }
  Sample(const Sample& other)
    : BaseDynamicObject()
    , _value(other._value)
  {
  }
  ~Sample() override { ++g_nbDestroyed; }

  const std::string& getClassName() const override
  {
    static const std::string g_name = "Sample";
    return g_name;
  }
  BaseDynamicObject* createNew() const override { return new Sample; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<Sample>(); }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return new Sample(_value); }
  DynamicObjectPtr duplicateShared() const override { return boost::make_shared<Sample>(_value); }
  void copy(const BaseDynamicObject& other) override { _value = static_cast<const Sample&>(other)._value; }

  int getValue() const { return _value; }

  static int g_nbDestroyed;

private:
  int _value;
};

int Sample::g_nbDestroyed = 0;

TEST(BaseDynamicObject, HasItsVirtualOperationsInOrder)
{
  // The destructor comes first and has two entries.
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&BaseDynamicObject::copy), 9U);
}

TEST(BaseDynamicObject, HasNoOtherVirtualOperations)
{
  void* const table = dlsym(RTLD_DEFAULT, "_ZTVN5orvel17BaseDynamicObjectE");
  ASSERT_NE(table, nullptr);
  Dl_info info = {};
  void* symbol = nullptr;
  ASSERT_NE(dladdr1(table, &info, &symbol, RTLD_DL_SYMENT), 0);
  ASSERT_NE(symbol, nullptr);
  // Two words ahead of the operations, then two for the destructor and one for each of the other eight.
  EXPECT_EQ(static_cast<const ElfW(Sym)*>(symbol)->st_size, (2 + 2 + 8) * sizeof(void*));
}

TEST(BaseDynamicObject, HoldsNoData)
{
  EXPECT_EQ(sizeof(BaseDynamicObject), sizeof(void*));
}

TEST(BaseDynamicObject, HasTheRequiredSignatures)
{
  EXPECT_TRUE((std::is_same_v<decltype(&BaseDynamicObject::getClassName),
                              const std::string& (BaseDynamicObject::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&BaseDynamicObject::createNew),
                              BaseDynamicObject* (BaseDynamicObject::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&BaseDynamicObject::createShared),
                              boost::shared_ptr<BaseDynamicObject> (BaseDynamicObject::*)() const>));
  EXPECT_TRUE(
      (std::is_same_v<decltype(&BaseDynamicObject::hasCopySupport), bool (BaseDynamicObject::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&BaseDynamicObject::duplicate),
                              BaseDynamicObject* (BaseDynamicObject::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&BaseDynamicObject::duplicateShared),
                              boost::shared_ptr<BaseDynamicObject> (BaseDynamicObject::*)() const>));
  EXPECT_TRUE((std::is_same_v<decltype(&BaseDynamicObject::initCtorCopy),
                              void (BaseDynamicObject::*)(const BaseDynamicObject&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&BaseDynamicObject::copy),
                              void (BaseDynamicObject::*)(const BaseDynamicObject&)>));
}

TEST(BaseDynamicObject, LeavesTheClassesTheirOperations)
{
  EXPECT_TRUE(std::is_abstract_v<BaseDynamicObject>);
}

TEST(BaseDynamicObject, DestroysTheDynamicClass)
{
  const int before = Sample::g_nbDestroyed;
  std::unique_ptr<BaseDynamicObject> object = std::make_unique<Sample>();
  object.reset();
  EXPECT_EQ(Sample::g_nbDestroyed, before + 1);
}

TEST(BaseDynamicObject, HasACopyHookThatDoesNothing)
{
  Sample sample(1);
  const Sample other(2);
  sample.initCtorCopy(other);
  EXPECT_EQ(sample.getValue(), 1);
}

TEST(BaseDynamicObject, CannotBeCopiedBesideTheVirtualCopy)
{
  EXPECT_FALSE(std::is_copy_assignable_v<BaseDynamicObject>);
  EXPECT_FALSE(std::is_copy_assignable_v<Sample>);
}

TEST(BaseDynamicObject, HasPointerAliases)
{
  EXPECT_TRUE((std::is_same_v<DynamicObjectPtr, boost::shared_ptr<BaseDynamicObject>>));
  EXPECT_TRUE((std::is_same_v<DynamicObjectConstPtr, boost::shared_ptr<const BaseDynamicObject>>));
}

} // namespace
