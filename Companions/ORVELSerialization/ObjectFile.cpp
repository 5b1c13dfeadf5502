#include "ORVELSerialization/ObjectFile.h"

#include <memory>

#include <boost/algorithm/string/predicate.hpp>

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELSerialization/Private/Bytes/IoFailure.h>
#include <ORVELSerialization/Private/Bytes/OpenArchive.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel
{

namespace
{

constexpr const char* g_objectKey = "object";

void save(BaseOArchive& archive, const SerializationObjectPtr& object)
{
  archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>(g_objectKey, object));
  archive.close();
}

/// Opens a file of either format: its first byte tells, and is not lost if the file is a pipe.
std::unique_ptr<BaseIArchive> open(const boost::filesystem::path& path, const SourceLocation& here)
{
  using details::ArchiveAccess;
  constexpr int firstByteOfBinary = 0xd9; // no XML begins with it
  std::unique_ptr<details::InputOrigin> origin = details::openFileOrigin(path, here);
  int first = 0;
  try
  {
    first = origin->peek();
  }
  catch (const details::IoFailure& failure)
  {
    raise(here, eORVELSerializationMessage::eReadFailed, path.string(), "byte 0", failure.what());
  }
  return first == firstByteOfBinary
             ? ArchiveAccess::make<BinaryIArchive>(path.string(), std::move(origin), here)
             : ArchiveAccess::make<XmlIArchive>(path.string(), std::move(origin), here);
}

} // namespace

void saveObject(const boost::filesystem::path& path, const SerializationObjectConstPtr& object)
{
  const auto writable =
      boost::const_pointer_cast<BaseSerializationObject>(object); // archives have one pointer type
  if (boost::algorithm::iequals(path.extension().native(), ".xml", std::locale::classic()))
  {
    XmlOArchive archive(path);
    save(archive, writable);
  }
  else
  {
    BinaryOArchive archive(path);
    save(archive, writable);
  }
}

void saveObject(const boost::filesystem::path& path, const BaseSerializationObject& object)
{
  // A pointer that owns nothing: the caller's object outlives the call.
  saveObject(path, SerializationObjectConstPtr(SerializationObjectConstPtr(), &object));
}

SerializationObjectPtr loadObject(const boost::filesystem::path& path, ArchiveTrust trust)
{
  const details::ExpectedClass any = {[](const BaseSerializationObject*) { return true; },
                                      &BaseSerializationObject::getTypeName};
  return details::loadObject(path, trust, any,
                             ORVEL_HERE_IN("orvel::SerializationObjectPtr orvel::loadObject(const "
                                           "boost::filesystem::path&, orvel::ArchiveTrust)"));
}

SerializationObjectPtr details::loadObject(const boost::filesystem::path& path, ArchiveTrust trust,
                                           const ExpectedClass& expected, const SourceLocation& here)
{
  const std::unique_ptr<BaseIArchive> archive = open(path, here);
  archive->setUntrusted(trust == ArchiveTrust::untrusted);
  SerializationObjectPtr object;
  archive->readObjectPtr(SerializationIItem<SerializationObjectPtr>(g_objectKey, object));
  try
  {
    archive->close();
    if (object && !expected.fits(object.get()))
      raise(here, eORVELSerializationMessage::eWrongClass, path.string(), std::string("the object"),
            object->getClassName(), expected.getTypeName());
  }
  catch (...)
  {
    object.reset();
    archive->releaseObjects();
    throw;
  }
  return object;
}

} // namespace orvel
