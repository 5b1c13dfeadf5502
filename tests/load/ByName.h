#pragma once

/// \file
/// \brief What the program and its plug-ins share that take a class out by its name alone.
///
/// Each module has all of this for itself, and creates objects that name it.

#include <string>

#include <boost/make_shared.hpp>

#include <ORVELUtil/DynamicObjectFactory.h>

namespace
{

class Sample : public orvel::BaseDynamicObject
{
public:
  const std::string& getClassName() const override
  {
    static const std::string g_maker = ORVEL_TEST_MODULE;
    return g_maker;
  }
  orvel::BaseDynamicObject* createNew() const override { return new Sample; }
  orvel::DynamicObjectPtr createShared() const override { return boost::make_shared<Sample>(); }
  bool hasCopySupport() const override { return false; }
  orvel::BaseDynamicObject* duplicate() const override { return nullptr; }
  orvel::DynamicObjectPtr duplicateShared() const override { return {}; }
  void copy(const orvel::BaseDynamicObject&) override {}
};

const std::string g_name = "ByName::Sample";

orvel::BaseDynamicObject* newSample()
{
  return new Sample;
}

orvel::DynamicObjectPtr sharedSample()
{
  return boost::make_shared<Sample>();
}

void enter()
{
  orvel::DynamicObjectFactory::getInstance().registerClass(g_name, &newSample, &sharedSample);
}

/// Ends with the call: where the compiler optimises, a jump that leaves the return address of the caller.
void takeOut()
{
  orvel::DynamicObjectFactory::getInstance().unRegisterClass(g_name);
}

using TakeOut = void (orvel::DynamicObjectFactory::*)(const std::string&);

/// Calls the function of the library itself.
void takeOutByPointer()
{
  const volatile TakeOut function = &orvel::DynamicObjectFactory::unRegisterClass;
  const volatile int afterwards = (((orvel::DynamicObjectFactory::getInstance().*function)(g_name)), 0);
  static_cast<void>(afterwards);
}

} // namespace
