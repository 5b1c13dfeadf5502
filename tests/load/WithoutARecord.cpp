// The application has set log4cplus up to take every record: loading and unloading the kit makes none.
#include <string>
#include <vector>

#include <log4cplus/appender.h>
#include <log4cplus/initializer.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

#include "Check.h"

namespace
{

using orvel::test::Plugin;
using orvel::test::require;

class CountingAppender : public log4cplus::Appender
{
public:
  explicit CountingAppender(int& nbRecords)
    : _nbRecords(nbRecords)
  {
  }
  ~CountingAppender() override { destructorImpl(); }
  void close() override {}

protected:
  void append(const log4cplus::spi::InternalLoggingEvent&) override { ++_nbRecords; }

private:
  int& _nbRecords;
};

} // namespace

int main(int argc, char** argv)
{
  require(argc == 2, "usage: LoadWithoutARecord PLUGIN");
  const log4cplus::Initializer initializer;
  int nbRecords = 0;
  log4cplus::Logger root = log4cplus::Logger::getRoot();
  root.setLogLevel(log4cplus::ALL_LOG_LEVEL);
  root.addAppender(log4cplus::SharedAppenderPtr(new CountingAppender(nbRecords)));

  {
    const Plugin plugin(argv[1]);
    require(nbRecords == 0, "nothing is logged at load");
    require(log4cplus::Logger::getCurrentLoggers().empty(), "no logger is made at load");
  }
  require(nbRecords == 0, "nothing is logged at unload");
  {
    const Plugin plugin(argv[1]);
    require(plugin.getFunction("useTheKit")() == 0, "the plug-in can use the kit");
    require(nbRecords == 2, "its two failures are logged");
  }
  require(nbRecords == 2, "nothing is logged at unload after use");
  {
    const Plugin plugin(argv[1]);
    require(plugin.getFunction("useTheKit")() == 0, "the plug-in can use the kit again");
  }
  require(nbRecords == 4, "its failures are logged again, once");
  require(log4cplus::Logger::getInstance("ORVEL").getAllAppenders().size() <= 1,
          "each load leaves no appender of its own");
  root.removeAllAppenders();
  return 0;
}
