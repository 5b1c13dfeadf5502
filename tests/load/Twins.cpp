// Two plug-ins register a class under one name. Whoever goes first leaves the other's.
#include <memory>
#include <optional>
#include <string>

#include "Check.h"
#include <ORVELUtil/DynamicObjectFactory.h>

namespace
{

using orvel::DynamicObjectFactory;
using orvel::test::Plugin;
using orvel::test::require;

void requireTwinOf(int plugin)
{
  const std::string expected = "the twin of plug-in " + std::to_string(plugin);
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  const std::unique_ptr<orvel::BaseDynamicObject> object(factory.createNew("TwinPlugin::Twin"));
  require(object->getClassName() == expected, expected.c_str());
  require(factory.createShared("TwinPlugin::Twin")->getClassName() == expected, expected.c_str());
}

void loadAndUnload(const char* const* files, int loadedFirst, int unloadedFirst)
{
  std::optional<Plugin> plugins[2];
  const int loadedSecond = 3 - loadedFirst;
  const int unloadedSecond = 3 - unloadedFirst;

  plugins[loadedFirst - 1].emplace(files[loadedFirst - 1]);
  requireTwinOf(loadedFirst);
  plugins[loadedSecond - 1].emplace(files[loadedSecond - 1]);
  requireTwinOf(loadedFirst); // the second is harmless
  plugins[unloadedFirst - 1].reset();
  requireTwinOf(unloadedSecond);
  plugins[unloadedSecond - 1].reset();
  require(!DynamicObjectFactory::getInstance().isRegistered("TwinPlugin::Twin"), "both are gone");
  require(!orvel::test::isLoaded(files[0]) && !orvel::test::isLoaded(files[1]), "both are unloaded");
}

} // namespace

int main(int argc, char** argv)
{
  require(argc == 3, "usage: LoadTwins PLUGIN PLUGIN");
  for (const int loadedFirst : {1, 2})
    for (const int unloadedFirst : {1, 2})
      loadAndUnload(argv + 1, loadedFirst, unloadedFirst);
  require(DynamicObjectFactory::getInstance().getRegisteredClassNames().empty(), "nothing is left");
  return 0;
}
