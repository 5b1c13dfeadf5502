// An application that never sets log4cplus up: failures arrive, nothing is printed, no logger is made at
// load.
#include <string>
#include <vector>

#include <log4cplus/logger.h>

#include "Check.h"
#include <ORVELBaseData/ORVELBaseDataLogMessages.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/Raise.h>

namespace
{

using namespace orvel;
using orvel::test::require;

template <class Exception, class Operation>
void requireFailure(Operation operation, const std::string& message)
{
  try
  {
    operation();
  }
  catch (const Exception& failure)
  {
    require(failure.getMessage().find(message) == 0, failure.what());
    return;
  }
  require(false, message.c_str());
}

} // namespace

int main()
{
  require(log4cplus::Logger::getCurrentLoggers().empty(), "no logger is made at load");
  require(log4cplus::Logger::getRoot().getAllAppenders().empty(), "no appender is added at load");

  // A failure of each library, then a message that can't be made.
  requireFailure<ORVELUtilException>([]
                                     { DynamicObjectFactory::getInstance().createNew("Silently::Unknown"); },
                                     "Unknown class name Silently::Unknown");
  requireFailure<ORVELSerializationException>(
      [] { BinaryIArchive archive(boost::filesystem::path("/no/such/file")); }, "Archive /no/such/file");
  requireFailure<ORVELBaseDataException>([] { KernelXY().getValue(OffsetXY(0, 0)); },
                                         "Can't get element value from kernel, it does not exists");
  requireFailure<BaseException>([] { raise(ORVEL_HERE, eORVELBaseDataMessage::eUnknownKey); },
                                "Exception thrown while processing message");

  require(log4cplus::Logger::getRoot().getAllAppenders().empty(), "the root logger is the application's");
  require(log4cplus::Logger::exists("ORVEL.ORVELBaseData"), "the library has logged");
  return 0;
}
