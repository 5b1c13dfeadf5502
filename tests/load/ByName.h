#pragma once

/// \file
/// \brief What the program and its plug-ins share that take a class out by its name alone.
///
/// Each module has all of this for itself, and creates objects that name it.

#include <string>

#include "NamedObject.h"
#include <ORVELUtil/DynamicObjectFactory.h>

namespace
{

struct Name
{
  static constexpr const char* g_text = ORVEL_TEST_MODULE;
};
using Sample = orvel::test::NamedObject<Name>;

const std::string g_name = "ByName::Sample";

orvel::BaseDynamicObject* newSample()
{
  return Sample::createNewObject();
}

orvel::DynamicObjectPtr sharedSample()
{
  return Sample::createSharedObject();
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
