// Eight threads create by name, ask for type names, raise and log while a ninth loads and unloads plug-ins.
//
// No thread creates an object of a plug-in's own class: its code may go while the object is in use.
#include <atomic>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <log4cplus/appender.h>
#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

#include "Check.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <support/ClassList.h>

namespace
{

using namespace orvel;
using orvel::test::Plugin;
using orvel::test::require;
using orvel::test::versionOf;

class CountingAppender : public log4cplus::Appender
{
public:
  explicit CountingAppender(std::atomic<long>& nbRecords)
    : _nbRecords(nbRecords)
  {
  }
  ~CountingAppender() override { destructorImpl(); }
  void close() override {}

protected:
  void append(const log4cplus::spi::InternalLoggingEvent&) override { ++_nbRecords; }

private:
  std::atomic<long>& _nbRecords;
};

void requireFailures()
{
  try
  {
    DynamicObjectFactory::getInstance().createNew("WhileThreadsWork::Unknown");
    require(false, "an unknown name raises");
  }
  catch (const ORVELUtilException& failure)
  {
    require(failure.getMessage() == "Unknown class name WhileThreadsWork::Unknown",
            "the message of the factory");
  }
  try
  {
    KernelXY().remove(OffsetXY(0, 0));
    require(false, "removing what is not there raises");
  }
  catch (const ORVELBaseDataException& failure)
  {
    require(failure.getMessage() == "Can't remove element from kernel, it does not exists",
            "the message of the kernel");
  }
}

void work()
{
  const DynamicObjectFactory& factory = DynamicObjectFactory::getInstance();
  // The plug-ins register these two names as well: the older entry creates.
  const DynamicObjectPtr kernel = factory.createShared("orvel::KernelXY");
  require(kernel->getClassName() == "orvel::KernelXY", "the library's kernel is created");
  const std::unique_ptr<BaseDynamicObject> range(factory.createNew("orvel::ElementsRange"));
  require(range->getClassName() == "orvel::ElementsRange", "the library's range is created");
  require(factory.createShared("orvel::OffsetXYZ")->getClassName() == OffsetXYZ::getTypeName(), "OffsetXYZ");
  require(ElementsRange::getTypeName() == "orvel::ElementsRange" &&
              ElementsRange::getVersion() == versionOf("orvel::ElementsRange"),
          "ElementsRange");
  require(factory.getRegisteredClassNames().count("orvel::KernelXYZ") == 1, "the list of names");
  factory.isRegistered("KitPlugin::PluginObject"); // true or false
}

} // namespace

int main(int argc, char** argv)
{
  require(argc == 3, "usage: LoadWhileThreadsWork KIT_PLUGIN TWIN_PLUGIN");
  const log4cplus::Initializer initializer;
  std::atomic<long> nbRecords(0);
  getBaseLogger().addAppender(log4cplus::SharedAppenderPtr(new CountingAppender(nbRecords)));
  const std::set<std::string> before = DynamicObjectFactory::getInstance().getRegisteredClassNames();

  std::atomic<bool> stop(false);
  std::atomic<int> nbBusy(0);
  std::atomic<long> nbRounds(0);
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i)
    threads.emplace_back(
        [&]
        {
          ++nbBusy;
          do
          {
            work();
            requireFailures();
            ++nbRounds;
          } while (!stop);
        });
  while (nbBusy < 8)
    std::this_thread::yield();

  constexpr int nbLoads = 200;
  for (int i = 0; i < nbLoads; ++i)
  {
    const Plugin kitPlugin(argv[1]);
    const Plugin twinPlugin(argv[2]);
    require(kitPlugin.getFunction("useTheKit")() == 0, "the plug-in can use the kit");
  }
  stop = true;
  for (std::thread& thread : threads)
    thread.join();

  require(nbRecords == 2 * nbRounds + 2 * nbLoads, "each failure was logged once");
  require(DynamicObjectFactory::getInstance().getRegisteredClassNames() == before, "no class is left");
  getBaseLogger().removeAllAppenders();
  return 0;
}
