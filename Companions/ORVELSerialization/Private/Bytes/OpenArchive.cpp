#include "ORVELSerialization/Private/Bytes/OpenArchive.h"

#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/Bytes/IoFailure.h>

namespace orvel::details
{

std::unique_ptr<OutputTarget> openFileTarget(const boost::filesystem::path& path, const SourceLocation& here)
{
  try
  {
    return makeFileTarget(path);
  }
  catch (const IoFailure& failure)
  {
    raise(here, eORVELSerializationMessage::eCannotOpen, path.string(), failure.what());
  }
}

std::unique_ptr<InputOrigin> openFileOrigin(const boost::filesystem::path& path, const SourceLocation& here)
{
  try
  {
    return makeFileOrigin(path);
  }
  catch (const IoFailure& failure)
  {
    raise(here, eORVELSerializationMessage::eCannotOpen, path.string(), failure.what());
  }
}

std::unique_ptr<InputOrigin> openStreamOrigin(std::istream& stream, const SourceLocation& here)
{
  try
  {
    return makeStreamOrigin(stream);
  }
  catch (const IoFailure& failure)
  {
    raise(here, eORVELSerializationMessage::eCannotOpen, streamName, failure.what());
  }
}

} // namespace orvel::details
