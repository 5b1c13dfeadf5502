#include "ORVELSerialization/SerializableClassDefinitions.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>

namespace orvel::details
{

void writeClassVersion(BaseOArchive& archive, const std::string& className, ipUInt32 (*getVersion)())
{
  if (archive.findClassVersion(className) != nullptr)
    return;
  const ipUInt32 version = getVersion();
  ArchiveSectionManager section(archive, className);
  archive << SerializationOItem("version", version);
  archive.registerClassVersion(className, version);
  section.close();
}

ipUInt32 readClassVersion(BaseIArchive& archive, const std::string& className, ipUInt32 (*getVersion)(),
                          const SourceLocation& here)
{
  if (const ipUInt32* registered = archive.findClassVersion(className))
    return *registered;

  ArchiveSectionManager section(archive, className);
  ipUInt32 version = 0;
  archive >> SerializationIItem("version", version);
  const ipUInt32 supportedVersion = getVersion();
  if (version > supportedVersion)
    raise(here, eORVELSerializationMessage::eUnsupportedClassVersion, version, className, supportedVersion);
  archive.registerClassVersion(className, version);
  section.close();
  return version;
}

} // namespace orvel::details
