#pragma once

// What the archives of both formats do alike.

#include <memory>
#include <string>

#include <boost/filesystem/path.hpp>

#include <ORVELSerialization/BaseArchive.h>
#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/ObjectTables.h>
#include <ORVELSerialization/Private/Text.h>

namespace orvel::details
{

struct ArchiveAccess
{
  /// Refuses every further use of an archive.
  static void markFailed(BaseArchive& archive) { archive.markFailed(); }

  /// Refuses every further use of an archive and raises a failure that names the archive and the place.
  template <class... Arguments>
  [[noreturn]] static void fail(BaseArchive& archive, const SourceLocation& here,
                                eORVELSerializationMessage::domain message, const Arguments&... arguments)
  {
    archive.markFailed();
    raise(here, message, archive.getName(), archive.getPlace(), arguments...);
  }

  /// Refuses every further use of an archive and raises what an object has reported. Out of line: what it
  /// needs of the stack is not needed again at every level of a deep tree.
  [[noreturn]] static void failObject(BaseArchive& archive, const SourceLocation& here,
                                      const BaseSerializationObject& object, const BoolResult& result);

  /// Writes an object through its own `write`; a failure that this reports is one of the archive.
  static void writeWhole(BaseOArchive& archive, const BaseSerializationObject& object)
  {
    const BoolResult result = object.write(archive);
    if (!result)
      failObject(archive, ORVEL_HERE, object, result);
    archive.checkOpen(); // a section may have failed to close, where nothing could be thrown
  }

  /// Reads an object through its own `read`; a failure that this reports is one of the archive.
  static void readWhole(BaseIArchive& archive, BaseSerializationObject& object)
  {
    const BoolResult result = object.read(archive);
    if (!result)
      failObject(archive, ORVEL_HERE, object, result);
    archive.checkOpen();
  }

  /// Opens a file of either format: its first byte tells, and is not lost if the file is a pipe.
  static std::unique_ptr<BaseIArchive> open(const boost::filesystem::path& path);

  /// Makes an object of a class that an archive names.
  static SerializationObjectPtr create(BaseIArchive& archive, ObjectClass& objectClass)
  {
    ObjectClass::Problem problem = ObjectClass::Problem::none;
    SerializationObjectPtr object = objectClass.create(problem);
    if (problem == ObjectClass::Problem::unknown)
      fail(archive, ORVEL_HERE, eORVELSerializationMessage::eUnknownClass, quoted(objectClass.getName()));
    if (problem == ObjectClass::Problem::notSerializable)
      archive.raiseWrongClass(objectClass.getName(), BaseSerializationObject::getTypeName());
    return object;
  }
};

} // namespace orvel::details
