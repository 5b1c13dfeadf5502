#include "ORVELSerialization/Private/ArchiveAccess.h"

#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Bytes/IoFailure.h>

namespace orvel::details
{

void ArchiveAccess::throwTooDeep(const BaseArchive& archive)
{
  throw ArchiveFailure(eORVELSerializationMessage::eTooDeep, archive._limits.maxDepth);
}

void ArchiveAccess::throwObjectFailed(const BaseSerializationObject& object, const BoolResult& result)
{
  throw ArchiveFailure(eORVELSerializationMessage::eObjectFailed, object.getClassName(), result.getMessage());
}

void ArchiveAccess::raiseCurrent(BaseArchive& archive, const SourceLocation& here,
                                 eORVELSerializationMessage::domain ioMessage)
{
  archive.markFailed();
  try
  {
    throw;
  }
  catch (const ArchiveFailure& failure)
  {
    failure.raise(here, archive.getName(), archive.getPlace());
    throw; // not reached
  }
  catch (const IoFailure& failure)
  {
    fail(archive, here, ioMessage, failure.what());
  }
}

} // namespace orvel::details
