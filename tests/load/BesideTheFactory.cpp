// A program that has the factory, and nothing else of the kit, loads, uses and unloads a plug-in on all of
// it.
#include <iterator>
#include <set>
#include <string>

#include "Check.h"
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/LogMessageManager.h>
#include <support/ClassList.h>

int main(int argc, char** argv)
{
  using namespace orvel::test;
  require(argc == 2, "usage: LoadBesideTheFactory PLUGIN");
  const orvel::DynamicObjectFactory& factory = orvel::DynamicObjectFactory::getInstance();
  require(factory.getRegisteredClassNames().empty(), "no class is known at first");

  repeatAThousandTimes(
      [argv, &factory]
      {
        {
          const Plugin plugin(argv[1]);
          require(plugin.getFunction("useTheKit")() == 0, "the plug-in can use the kit");
          for (const char* name : {"KitPlugin::PluginObject", "orvel::ElementsRange", "orvel::KernelXY",
                                   "orvel::KernelXYZ", "orvel::OffsetXY", "orvel::OffsetXYZ"})
            require(factory.isRegistered(name), name);
          require(factory.getRegisteredClassNames().size() == std::size(g_classes) + 1,
                  "the classes of the kit and its own");
          require(factory.createShared("orvel::KernelXYZ")->getClassName() == "orvel::KernelXYZ",
                  "the program can create by name, too");
        }
        require(!isLoaded(argv[1]), "the plug-in is gone");
        for (const char* library :
             {"libORVELBaseData.so.1", "libORVELSerialization.so.1", "libORVELMath.so.1"})
          require(!isLoaded(library), library);
        require(isLoaded("libORVELUtil.so.1"), "the library of the program stays");
        require(factory.getRegisteredClassNames().empty(), "no class is left in the factory");
        require(orvel::LogMessageManager::getInstance("ORVELBaseData")
                        .getMessage("N5orvel21eORVELBaseDataMessage6domainE", 1) ==
                    "Buffer should be initialized before used",
                "the messages stay");
      });
  return 0;
}
