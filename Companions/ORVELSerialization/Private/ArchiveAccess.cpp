#include "ORVELSerialization/Private/ArchiveAccess.h"

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/Private/OpenArchive.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel::details
{

void ArchiveAccess::failObject(BaseArchive& archive, const SourceLocation& here,
                               const BaseSerializationObject& object, const BoolResult& result)
{
  fail(archive, here, eORVELSerializationMessage::eObjectFailed, object.getClassName(), result.getMessage());
}

std::unique_ptr<BaseIArchive> ArchiveAccess::open(const boost::filesystem::path& path)
{
  constexpr int firstByteOfBinary = 0xd9; // no XML begins with it
  std::unique_ptr<InputOrigin> origin = openFileOrigin(path);
  int first = 0;
  try
  {
    first = origin->peek();
  }
  catch (const IoFailure& failure)
  {
    raise(ORVEL_HERE, eORVELSerializationMessage::eReadFailed, path.string(), "byte 0", failure.what());
  }
  if (first == firstByteOfBinary)
    return std::unique_ptr<BaseIArchive>(new BinaryIArchive(path.string(), std::move(origin)));
  return std::unique_ptr<BaseIArchive>(new XmlIArchive(path.string(), std::move(origin)));
}

} // namespace orvel::details
