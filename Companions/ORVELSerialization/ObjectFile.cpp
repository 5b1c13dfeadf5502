#include "ORVELSerialization/ObjectFile.h"

#include <memory>

#include <boost/algorithm/string/predicate.hpp>

#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELSerialization/XmlArchive.h>

namespace orvel
{

namespace
{

constexpr const char* objectKey = "object";

void save(BaseOArchive& archive, const SerializationObjectPtr& object)
{
  archive.writeObjectPtr(SerializationOItem<SerializationObjectPtr>(objectKey, object));
  archive.close();
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
  return details::loadObject(path, trust, any);
}

SerializationObjectPtr details::loadObject(const boost::filesystem::path& path, ArchiveTrust trust,
                                           const ExpectedClass& expected)
{
  const std::unique_ptr<BaseIArchive> archive = details::ArchiveAccess::open(path);
  archive->setUntrusted(trust == ArchiveTrust::untrusted);
  SerializationObjectPtr object;
  archive->readObjectPtr(SerializationIItem<SerializationObjectPtr>(objectKey, object));
  try
  {
    archive->close();
    if (object && !expected.fits(object.get()))
      raise(ORVEL_HERE, eORVELSerializationMessage::eWrongClass, path.string(), std::string("the object"),
            object->getClassName(), expected.getTypeName());
  }
  catch (...)
  {
    object.reset();
    archive->letObjectsGo();
    throw;
  }
  return object;
}

} // namespace orvel
