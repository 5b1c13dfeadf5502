#include "ORVELSerialization/Private/OpenArchive.h"

#include <ORVELSerialization/ORVELSerializationLogMessages.h>

namespace orvel::details
{

std::unique_ptr<OutputTarget> openFileTarget(const boost::filesystem::path& path)
{
  try
  {
    return makeFileTarget(path);
  }
  catch (const IoFailure& failure)
  {
    raise(ORVEL_HERE, eORVELSerializationMessage::eCannotOpen, path.string(), failure.what());
  }
}

std::unique_ptr<InputOrigin> openFileOrigin(const boost::filesystem::path& path)
{
  try
  {
    return makeFileOrigin(path);
  }
  catch (const IoFailure& failure)
  {
    raise(ORVEL_HERE, eORVELSerializationMessage::eCannotOpen, path.string(), failure.what());
  }
}

std::unique_ptr<InputOrigin> openStreamOrigin(std::istream& stream)
{
  try
  {
    return makeStreamOrigin(stream);
  }
  catch (const IoFailure& failure)
  {
    raise(ORVEL_HERE, eORVELSerializationMessage::eCannotOpen, streamName, failure.what());
  }
}

} // namespace orvel::details
