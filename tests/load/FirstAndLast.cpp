// The factory serves the very first initialiser of a process and the very last clean-up.
#include <cstring>
#include <memory>
#include <string>
#include <unistd.h>

#include "Check.h"
#include "NamedObject.h"
#include <ORVELUtil/DynamicObjectFactory.h>

extern "C" void cleanUpLast(void (*cleanUp)());

namespace
{

using orvel::BaseDynamicObject;
using orvel::DynamicObjectFactory;
using orvel::DynamicObjectPtr;
using orvel::test::require;

struct Name
{
  static constexpr const char* g_text = "FirstAndLast::Sample";
};
using Sample = orvel::test::NamedObject<Name>;

BaseDynamicObject* newSample()
{
  return Sample::createNewObject();
}

DynamicObjectPtr sharedSample()
{
  return Sample::createSharedObject();
}

void say(const char* text)
{
  // The streams need not be there yet, or any more.
  require(write(STDOUT_FILENO, text, std::strlen(text)) == static_cast<ssize_t>(std::strlen(text)), "write");
}

void enter(const char* name)
{
  DynamicObjectFactory::getInstance().registerClass(name, &newSample, &sharedSample);
}

void requireCreation(const char* name)
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  require(factory.isRegistered(name), name);
  const std::unique_ptr<BaseDynamicObject> object(factory.createNew(name));
  require(object->getClassName() == "FirstAndLast::Sample", name);
  require(factory.createShared(name)->getClassName() == "FirstAndLast::Sample", name);
}

void takeOut(const char* name)
{
  DynamicObjectFactory::getInstance().unRegisterClass(name);
  require(!DynamicObjectFactory::getInstance().isRegistered(name), name);
}

/// Runs before the initialisers of all libraries.
void preInitialise(int, char**, char**)
{
  require(DynamicObjectFactory::getInstance().getRegisteredClassNames().empty(), "nothing is known yet");
  enter("FirstAndLast::Pre");
  enter("FirstAndLast::Brief");
  requireCreation("FirstAndLast::Pre");
  takeOut("FirstAndLast::Brief");
  say("pre-initialiser\n");
}

/// Runs after the clean-up of the libraries of the kit.
void cleanUpAfterAll()
{
  requireCreation("FirstAndLast::First");
  takeOut("FirstAndLast::First");
  enter("FirstAndLast::Late");
  requireCreation("FirstAndLast::Late");
  takeOut("FirstAndLast::Late");
  require(DynamicObjectFactory::getInstance().getRegisteredClassNames().empty(), "nothing is left");
  say("last clean-up of all\n");
}

__attribute__((section(".preinit_array"), used)) void (*const g_preInitialise)(int, char**,
                                                                               char**) = &preInitialise;

/// Runs before all other initialisers of the program.
__attribute__((constructor(101))) void initialiseFirst()
{
  requireCreation("FirstAndLast::Pre");
  enter("FirstAndLast::First");
  requireCreation("FirstAndLast::First");
  cleanUpLast(&cleanUpAfterAll);
  say("first initialiser\n");
}

/// Runs after all other clean-ups of the program.
__attribute__((destructor(101))) void cleanUpOfTheProgram()
{
  requireCreation("FirstAndLast::Pre");
  takeOut("FirstAndLast::Pre");
  requireCreation("FirstAndLast::First");
  say("last clean-up of the program\n");
}

} // namespace

int main()
{
  requireCreation("FirstAndLast::Pre");
  requireCreation("FirstAndLast::First");
  say("main\n");
  return 0;
}
