// A static object of the application creates by name and raises in its destructor, after the end of main.
#include <cstdio>
#include <memory>
#include <string>

#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>

#include "Check.h"
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ORVELUtilException.h>

namespace
{

using namespace orvel;
using orvel::test::require;

DynamicObjectPtr create()
{
  return DynamicObjectFactory::getInstance().createShared("orvel::ElementsRange");
}

std::string raiseFailure()
{
  try
  {
    DynamicObjectFactory::getInstance().createNew("UntilExit::Unknown");
  }
  catch (const ORVELUtilException& failure)
  {
    return failure.getMessage();
  }
  return "nothing";
}

bool g_asksForNames = false;

/// Constructed before main, so destroyed after all that main makes the libraries construct.
class AtExit
{
public:
  AtExit() = default;
  ~AtExit()
  {
    std::printf("created %s\n", create() ? "a range" : "nothing");
    std::printf("raised %s\n", raiseFailure().c_str());
    if (g_asksForNames)
      std::printf("named %s, %s, %s\n", create()->getClassName().c_str(),
                  getORVELBaseDataLoggerName().c_str(), getORVELBaseDataLogger().getName().c_str());
  }
  AtExit(const AtExit&) = delete;
  AtExit& operator=(const AtExit&) = delete;
};

const AtExit g_atExit;

} // namespace

int main(int argc, char** argv)
{
  require(argc == 2, "usage: LoadUntilExit first|again|shutDown|names");
  const std::string mode = argv[1];
  std::unique_ptr<log4cplus::Initializer> initializer;
  if (mode == "shutDown")
    initializer = std::make_unique<log4cplus::Initializer>();
  if (mode != "first")
  {
    require(create() != nullptr, "creation in main");
    require(raiseFailure() == "Unknown class name UntilExit::Unknown", "a failure in main");
  }
  if (mode == "names")
  {
    g_asksForNames = true;
    require(create()->getClassName() == "orvel::ElementsRange", "the class name in main");
    require(getORVELBaseDataLogger().getName() == "ORVEL.ORVELBaseData", "the logger in main");
  }
  return 0;
}
