#include "ORVELSerialization/SerializableClassDefinitions.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/ArchiveAccess.h>

namespace orvel::details
{

namespace
{

/// Writes the version record of a class that the archive meets first.
void putClassVersion(BaseOArchive& archive, const std::string& className, ipUInt32 version)
{
  SectionScope section(archive, className);
  archive << SerializationOItem("version", version);
  archive.registerClassVersion(className, version);
  section.finish();
}

/// Reads the version record of a class that the archive meets first.
ipUInt32 takeClassVersion(BaseIArchive& archive, const std::string& className, ipUInt32 (*getVersion)(),
                          const SourceLocation& here)
{
  SectionScope section(archive, className);
  ipUInt32 version = 0;
  archive >> SerializationIItem("version", version);
  const ipUInt32 supportedVersion = getVersion();
  if (version > supportedVersion)
    raise(here, eORVELSerializationMessage::eUnsupportedClassVersion, version, className, supportedVersion);
  archive.registerClassVersion(className, version);
  section.finish();
  return version;
}

} // namespace

void writeClassVersion(BaseOArchive& archive, const std::string& className, ipUInt32 (*getVersion)())
{
  if (ArchiveAccess::findClassVersion(archive, className) == nullptr)
    putClassVersion(archive, className, getVersion());
}

ipUInt32 readClassVersion(BaseIArchive& archive, const std::string& className, ipUInt32 (*getVersion)(),
                          const SourceLocation& here)
{
  const ipUInt32* const registered = ArchiveAccess::findClassVersion(archive, className);
  return registered != nullptr ? *registered : takeClassVersion(archive, className, getVersion, here);
}

} // namespace orvel::details
