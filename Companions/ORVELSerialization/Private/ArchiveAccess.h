#pragma once

// What the archives of both formats do alike.

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/Objects/ClassVersions.h>
#include <ORVELSerialization/Private/Objects/PointerKind.h>

namespace orvel::details
{

class InputOrigin;

struct ArchiveAccess
{
  /// Refuses every further use of an archive.
  static void markFailed(BaseArchive& archive) { archive.markFailed(); }

  /// Looks a class version up without a call.
  static const ipUInt32* findClassVersion(const BaseArchive& archive, const std::string& className)
  {
    return archive._classVersions->find(className);
  }

  /// Refuses every further use of an archive and raises a failure that names the archive and the place.
  template <class... Arguments>
  [[noreturn]] static void fail(BaseArchive& archive, const SourceLocation& here,
                                eORVELSerializationMessage::domain message, const Arguments&... arguments)
  {
    archive.markFailed();
    raise(here, message, archive.getName(), archive.getPlace(), arguments...);
  }

  /// Runs a part of an operation of an archive. Whatever it throws marks the archive as failed, as part of an
  /// item may have been moved; failures of the archive's parts are raised in the name of `here`.
  /// \param ioMessage of a refusal of the system
  template <class Operation>
  static auto guard(BaseArchive& archive, const SourceLocation& here,
                    eORVELSerializationMessage::domain ioMessage, Operation operation)
  {
    try
    {
      return operation();
    }
    catch (...)
    {
      raiseCurrent(archive, here, ioMessage);
    }
  }

  /// Runs an operation that an open archive writes by. \see guard
  template <class Operation>
  static void write(BaseOArchive& archive, const SourceLocation& here, Operation operation)
  {
    archive.checkOpen(here);
    guard(archive, here, eORVELSerializationMessage::eWriteFailed, operation);
  }

  /// Runs an operation that an open archive reads an item by, at the cost of a unit of work. \see guard
  template <class Reader, class Operation>
  static auto read(BaseIArchive& archive, const SourceLocation& here, Reader& reader, Operation operation)
  {
    archive.checkOpen(here);
    archive.spendWork(1, here);
    reader.beginItem();
    return guard(archive, here, eORVELSerializationMessage::eReadFailed, operation);
  }

  /// Writes a pointer: null, a reference to an object that was written before, or a new object.
  template <class Writer>
  static void writePointer(BaseOArchive& archive, const SourceLocation& here, Writer& writer,
                           const SerializationOItem<SerializationObjectPtr>& item)
  {
    write(archive, here,
          [&]
          {
            const BaseSerializationObject* const object = item.getValue().get(); // `objects` keeps it alive
            if (object == nullptr)
            {
              writer.putNull(item.getKey());
              return;
            }
            bool isNew = false;
            const ipUInt64 number = writer.objects.enter(item.getValue(), isNew);
            if (!isNew)
            {
              countReference(archive, writer.objects.getHeight(number));
              writer.putReference(item.getKey(), number);
              return;
            }
            ObjectScope scope(archive);
            writer.openPointer(item.getKey(), number, object->getClassName());
            writeWhole(archive, here, *object);
            writer.closePointer();
            writer.objects.setHeight(number, scope.getHeight());
          });
  }

  /// Reads a pointer. The target is assigned when the object has been read whole.
  template <class Reader>
  static void readPointer(BaseIArchive& archive, const SourceLocation& here, Reader& reader,
                          const SerializationIItem<SerializationObjectPtr>& item)
  {
    const auto readOne = [&]
    {
      ipUInt64 number = 0;
      switch (reader.takePointer(item.getKey(), number))
      {
      case PointerKind::null:
        item.getValue().reset();
        return;
      case PointerKind::reference:
        countReference(archive, reader.objects.getHeight(number));
        item.getValue() = reader.objects[number];
        return;
      case PointerKind::object:
        break;
      }
      ObjectScope scope(archive);
      const SerializationObjectPtr object = reader.openPointer().create();
      number = reader.objects.enter(object); // before its content: a cycle leads back to it
      readWhole(archive, here, *object);
      reader.closePointer();
      reader.objects.setHeight(number, scope.getHeight());
      item.getValue() = object;
    };
    reader.objects.readShared([&] { read(archive, here, reader, readOne); });
  }

  /// Writes an object in place.
  template <class Writer>
  static void writeInPlace(BaseOArchive& archive, const SourceLocation& here, Writer& writer,
                           const std::string& key, const BaseSerializationObject& object)
  {
    write(archive, here,
          [&]
          {
            ObjectScope scope(archive);
            writer.openObject(key);
            writeWhole(archive, here, object);
            writer.closeObject();
          });
  }

  /// Reads an object in place.
  template <class Reader>
  static void readInPlace(BaseIArchive& archive, const SourceLocation& here, Reader& reader,
                          const std::string& key, BaseSerializationObject& object)
  {
    read(archive, here, reader,
         [&]
         {
           ObjectScope scope(archive);
           reader.openObject(key);
           readWhole(archive, here, object);
           reader.closeObject();
         });
  }

  /// Skips what is left of a section that an exception leaves, item by item.
  template <class Reader>
  static void skipSection(BaseIArchive& archive, const SourceLocation& here, Reader& reader)
  {
    if (archive.isFailed() || archive.isClosed())
      return;
    const ipUInt64 nbOpen = reader.getNbOpen();
    while (reader.getNbOpen() >= nbOpen)
      read(archive, here, reader, [&] { reader.skipItem(); });
  }

  /// Makes an archive of an origin that is open already.
  template <class Archive>
  static std::unique_ptr<BaseIArchive> make(const std::string& name, std::unique_ptr<InputOrigin> origin,
                                            const SourceLocation& here)
  {
    return std::unique_ptr<BaseIArchive>(new Archive(name, std::move(origin), here));
  }

private:
  /// Counts an object as long as it is being moved; marks the archive as failed if that throws.
  class ObjectScope
  {
  public:
    explicit ObjectScope(BaseArchive& archive)
      : _archive(archive)
    {
      if (archive._depth >= archive._limits.maxDepth)
        throwTooDeep(archive);
      ++archive._depth;
      _deepestBefore = std::exchange(archive._deepest, archive._depth);
    }
    ~ObjectScope()
    {
      --_archive._depth;
      _archive._deepest = std::max(_archive._deepest, _deepestBefore);
    }
    ObjectScope(const ObjectScope&) = delete;
    ObjectScope& operator=(const ObjectScope&) = delete;

    /// Tells how many objects there are within each other from this one down.
    ipUInt32 getHeight() const { return _archive._deepest - _archive._depth + 1; }

  private:
    BaseArchive& _archive;
    ipUInt32 _deepestBefore;
  };

  /// Counts an object that a reference brings into the present one, with all that it holds. So references do
  /// not make deeper objects than those that lie within each other.
  /// \param height of the object; 0 while it is being moved: a cycle has no depth
  static void countReference(BaseArchive& archive, ipUInt32 height)
  {
    if (height > archive._limits.maxDepth - std::min(archive._depth, archive._limits.maxDepth))
      throwTooDeep(archive);
    archive._deepest = std::max(archive._deepest, archive._depth + height);
  }

  /// Writes an object through its own `write`; a failure that this reports is one of the archive.
  static void writeWhole(BaseOArchive& archive, const SourceLocation& here,
                         const BaseSerializationObject& object)
  {
    const BoolResult result = object.write(archive);
    if (!result)
      throwObjectFailed(object, result);
    archive.checkOpen(here); // a section may have failed to close, where nothing could be thrown
  }

  /// Reads an object through its own `read`; a failure that this reports is one of the archive.
  static void readWhole(BaseIArchive& archive, const SourceLocation& here, BaseSerializationObject& object)
  {
    const BoolResult result = object.read(archive);
    if (!result)
      throwObjectFailed(object, result);
    archive.checkOpen(here);
  }

  // Out of line: what these need of the stack is not needed again at every level of a deep tree.

  [[noreturn]] static void throwTooDeep(const BaseArchive& archive);
  [[noreturn]] static void throwObjectFailed(const BaseSerializationObject& object, const BoolResult& result);
  [[noreturn]] static void raiseCurrent(BaseArchive& archive, const SourceLocation& here,
                                        eORVELSerializationMessage::domain ioMessage);
};

} // namespace orvel::details
