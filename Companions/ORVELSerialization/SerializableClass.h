#pragma once

/// \file
/// \brief The members that every class of the frame repeats, in one place.
///
/// A concrete class says in its header
/// \code
/// class ORVELBASEDATA_EXPORT ElementsRange : public BaseSerializationObject
/// {
///   ORVEL_DECLARE_SERIALIZABLE(ElementsRange)
/// public:
///   ElementsRange();
///   ...
/// };
/// \endcode
/// and in its source, within the namespace,
/// \code
/// ORVEL_DEFINE_SERIALIZABLE(ElementsRange, BaseSerializationObject, 2)
///
/// void ElementsRange::copyMembers(const ElementsRange& other) { ... }
/// void ElementsRange::writeMembers(BaseOArchive& archive) const { ... }
/// void ElementsRange::readMembers(BaseIArchive& archive, ipUInt32 version) { ... }
/// \endcode
/// The functions are those of the class itself, so that failures name them by their own signatures.

#include <memory>
#include <string>

#include <boost/make_shared.hpp>

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELUtil/DynamicRegistrator.h>
#include <ORVELUtil/ORVELUtilLogMessages.h>
#include <ORVELUtil/Raise.h>
#include <ORVELUtil/ScalarTypes.h>
#include <ORVELUtil/UnitMutex.h>

namespace orvel::details
{

/// \brief File the version record of a class the first time that it meets this archive.
ORVELSERIALIZATION_EXPORT void writeClassVersion(BaseOArchive& archive, const std::string& className,
                                                 ipUInt32 (*getVersion)());

/// \brief Return the version of a class in this archive; the first time it is read from there.
/// \throw ORVELSerializationException if it is above the class's own; it is not recorded then
ORVELSERIALIZATION_EXPORT ipUInt32 readClassVersion(BaseIArchive& archive, const std::string& className,
                                                    ipUInt32 (*getVersion)(), const SourceLocation& here);

/// \brief Make a copy of an object that the caller owns.
template <class T>
T* duplicate(const T& object)
{
  std::unique_ptr<T> duplicated(T::createNewObject());
  duplicated->copy(object);
  return duplicated.release();
}

/// \brief Make a copy of an object under a shared pointer.
template <class T>
boost::shared_ptr<T> duplicateShared(const T& object)
{
  boost::shared_ptr<T> duplicated = T::createSharedObject();
  duplicated->copy(object);
  return duplicated;
}

} // namespace orvel::details

/// Members of an abstract class of the frame that has an archive version and no data.
#define ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Class)                                                           \
public:                                                                                                      \
  static const std::string& getTypeName();                                                                   \
  static ::orvel::ipUInt32 getVersion();                                                                     \
  const std::string& getClassName() const override;                                                          \
  void copy(const ::orvel::BaseDynamicObject& other) override;                                               \
  ::orvel::BoolResult write(::orvel::BaseOArchive& archive) const override;                                  \
  ::orvel::BoolResult read(::orvel::BaseIArchive& archive) override;                                         \
                                                                                                             \
private:

/// Members of a concrete class of the frame that create objects.
#define ORVEL_DECLARE_CREATION(Class)                                                                        \
public:                                                                                                      \
  Class(const Class& other);                                                                                 \
  Class& operator=(const Class& other);                                                                      \
  static Class* createNewObject();                                                                           \
  static boost::shared_ptr<Class> createSharedObject();                                                      \
  ::orvel::BaseDynamicObject* createNew() const override;                                                    \
  ::orvel::DynamicObjectPtr createShared() const override;                                                   \
  bool hasCopySupport() const override;                                                                      \
  ::orvel::BaseDynamicObject* duplicate() const override;                                                    \
  ::orvel::DynamicObjectPtr duplicateShared() const override;                                                \
                                                                                                             \
private:

/// The object that keeps a concrete class in the factory.
#define ORVEL_DECLARE_REGISTRATOR(Class)                                                                     \
private:                                                                                                     \
  static const ::orvel::DynamicRegistrator<Class> g_classRegistrator;

/// What copy, write and read do with the members of a class, for the class to write.
#define ORVEL_DECLARE_MEMBER_OPERATIONS(Class)                                                               \
private:                                                                                                     \
  void copyMembers(const Class& other);                                                                      \
  void writeMembers(::orvel::BaseOArchive& archive) const;                                                   \
  void readMembers(::orvel::BaseIArchive& archive, ::orvel::ipUInt32 version);

/// Members of a concrete class of the frame; the three at the end are for the class to write.
#define ORVEL_DECLARE_SERIALIZABLE(Class)                                                                    \
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Class)                                                                 \
  ORVEL_DECLARE_CREATION(Class)                                                                              \
  ORVEL_DECLARE_REGISTRATOR(Class)                                                                           \
  ORVEL_DECLARE_MEMBER_OPERATIONS(Class)

/// Members of an abstract class of the frame whose objects can't be copied through it: copy, duplicate and
/// duplicateShared raise ORVELUtilException (eNoCopySupport).
#define ORVEL_DECLARE_WITHOUT_COPY(Class)                                                                    \
public:                                                                                                      \
  static const std::string& getTypeName();                                                                   \
  const std::string& getClassName() const override;                                                          \
  bool hasCopySupport() const override;                                                                      \
  ::orvel::BaseDynamicObject* duplicate() const override;                                                    \
  ::orvel::DynamicObjectPtr duplicateShared() const override;                                                \
  void copy(const ::orvel::BaseDynamicObject& other) override;                                               \
                                                                                                             \
private:

/// Members of an abstract class of the frame that has an archive version and data, and whose objects can't be
/// copied through it; the two at the end are for the class to write.
#define ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY(Class)                                                       \
  ORVEL_DECLARE_WITHOUT_COPY(Class)                                                                          \
public:                                                                                                      \
  static ::orvel::ipUInt32 getVersion();                                                                     \
  ::orvel::BoolResult write(::orvel::BaseOArchive& archive) const override;                                  \
  ::orvel::BoolResult read(::orvel::BaseIArchive& archive) override;                                         \
                                                                                                             \
private:                                                                                                     \
  void writeMembers(::orvel::BaseOArchive& archive) const;                                                   \
  void readMembers(::orvel::BaseIArchive& archive);

/// Defines the mutex of a source unit that guards the making of its type names: TypeNameMutex.
#define ORVEL_DEFINE_TYPE_NAME_MUTEX                                                                         \
  namespace                                                                                                  \
  {                                                                                                          \
  class TypeNameMutex : public ::orvel::UnitMutex<TypeNameMutex>                                             \
  {                                                                                                          \
  };                                                                                                         \
  [[maybe_unused]] const bool g_typeNameMutexMade = TypeNameMutex::touch();                                  \
  }

/// Defines getTypeName of a class or, with `template <class T>` ahead, of a template.
#define ORVEL_DEFINE_TYPE_NAME_OF(Template, Class, text)                                                     \
  Template const std::string& Class::getTypeName()                                                           \
  {                                                                                                          \
    const boost::mutex::scoped_lock lock(TypeNameMutex::get());                                              \
    static const std::string g_typeName = text;                                                              \
    return g_typeName;                                                                                       \
  }

/// Defines getTypeName; one class per source unit, as the unit's TypeNameMutex guards it.
#define ORVEL_DEFINE_TYPE_NAME(Class)                                                                        \
  ORVEL_DEFINE_TYPE_NAME_MUTEX                                                                               \
  ORVEL_DEFINE_TYPE_NAME_OF(, Class, "orvel::" #Class)                                                       \
  namespace                                                                                                  \
  {                                                                                                          \
  /* Made before the application's statics, whose destructors may still ask for it. */                       \
  [[maybe_unused]] const bool g_typeNameMade = !Class::getTypeName().empty();                                \
  }

/// Defines the mutex of a source unit that guards its versions, VersionMutex.
#define ORVEL_DEFINE_VERSION_MUTEX                                                                           \
  namespace                                                                                                  \
  {                                                                                                          \
  class VersionMutex : public ::orvel::UnitMutex<VersionMutex>                                               \
  {                                                                                                          \
  };                                                                                                         \
  [[maybe_unused]] const bool g_versionMutexMade = VersionMutex::touch();                                    \
  }

/// Defines getVersion of a class or, with `template <class T>` ahead, of a template.
#define ORVEL_DEFINE_VERSION_OF(Template, Class, classVersion)                                               \
  Template ::orvel::ipUInt32 Class::getVersion()                                                             \
  {                                                                                                          \
    const boost::mutex::scoped_lock lock(VersionMutex::get());                                               \
    static const ::orvel::ipUInt32 g_version = classVersion;                                                 \
    return g_version;                                                                                        \
  }

/// Defines getVersion, guarded by the unit's VersionMutex.
#define ORVEL_DEFINE_VERSION(Class, classVersion)                                                            \
  ORVEL_DEFINE_VERSION_MUTEX                                                                                 \
  ORVEL_DEFINE_VERSION_OF(, Class, classVersion)

/// Defines getClassName of a class or, with `template <class T>` ahead, of a template.
#define ORVEL_DEFINE_CLASS_NAME_OF(Template, Class)                                                          \
  Template const std::string& Class::getClassName() const                                                    \
  {                                                                                                          \
    static const std::string& g_className = getTypeName(); /* spares the lock of every other call */         \
    return g_className;                                                                                      \
  }

/// Defines write and read of one level of a hierarchy, of a class or, with `template <class T>` ahead, of a
/// template. Base is the class whose operations come first; the last two arguments are what the level does
/// with its own members.
#define ORVEL_DEFINE_ARCHIVING_OF(Template, Class, Base, writeOwn, readOwn)                                  \
  Template ::orvel::BoolResult Class::write(::orvel::BaseOArchive& archive) const                            \
  {                                                                                                          \
    const ::orvel::BoolResult baseResult = Base::write(archive);                                             \
    if (!baseResult)                                                                                         \
      return ::orvel::BoolResult(false, baseResult.getMessage());                                            \
    ::orvel::details::writeClassVersion(archive, Class::getClassName(), &Class::getVersion);                 \
    writeOwn;                                                                                                \
    return ::orvel::BoolResult(true);                                                                        \
  }                                                                                                          \
  Template ::orvel::BoolResult Class::read(::orvel::BaseIArchive& archive)                                   \
  {                                                                                                          \
    const ::orvel::BoolResult baseResult = Base::read(archive);                                              \
    if (!baseResult)                                                                                         \
      return ::orvel::BoolResult(false, baseResult.getMessage());                                            \
    [[maybe_unused]] const ::orvel::ipUInt32 version =                                                       \
        ::orvel::details::readClassVersion(archive, Class::getClassName(), &Class::getVersion, ORVEL_HERE);  \
    readOwn;                                                                                                 \
    return ::orvel::BoolResult(true);                                                                        \
  }

/// Defines copy, write and read of one level of a hierarchy. \see ORVEL_DEFINE_ARCHIVING_OF
#define ORVEL_DEFINE_LEVEL_OF(Template, Class, Base, copyOwn, writeOwn, readOwn)                             \
  ORVEL_DEFINE_CLASS_NAME_OF(Template, Class)                                                                \
  Template void Class::copy(const ::orvel::BaseDynamicObject& other)                                         \
  {                                                                                                          \
    Base::copy(other);                                                                                       \
    copyOwn;                                                                                                 \
  }                                                                                                          \
  ORVEL_DEFINE_ARCHIVING_OF(Template, Class, Base, writeOwn, readOwn)

/// Defines copy, write and read of one level of a hierarchy of classes. \see ORVEL_DEFINE_LEVEL_OF
#define ORVEL_DEFINE_LEVEL(Class, Base, copyOwn, writeOwn, readOwn)                                          \
  ORVEL_DEFINE_LEVEL_OF(, Class, Base, copyOwn, writeOwn, readOwn)

/// The same for a level that writes the operations of ORVEL_DECLARE_MEMBER_OPERATIONS.
#define ORVEL_DEFINE_LEVEL_WITH_MEMBERS_OF(Template, Class, Base)                                            \
  ORVEL_DEFINE_LEVEL_OF(Template, Class, Base, copyMembers(static_cast<const Class&>(other)),                \
                        writeMembers(archive), readMembers(archive, version))
#define ORVEL_DEFINE_LEVEL_WITH_MEMBERS(Class, Base) ORVEL_DEFINE_LEVEL_WITH_MEMBERS_OF(, Class, Base)

/// Defines what ORVEL_DECLARE_ABSTRACT_SERIALIZABLE declares.
#define ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(Class, Base, classVersion)                                        \
  ORVEL_DEFINE_TYPE_NAME(Class)                                                                              \
  ORVEL_DEFINE_VERSION(Class, classVersion)                                                                  \
  ORVEL_DEFINE_LEVEL(Class, Base, , , )

/// Defines what ORVEL_DECLARE_WITHOUT_COPY declares.
#define ORVEL_DEFINE_WITHOUT_COPY(Class)                                                                     \
  ORVEL_DEFINE_TYPE_NAME(Class)                                                                              \
  ORVEL_DEFINE_CLASS_NAME_OF(, Class)                                                                        \
  bool Class::hasCopySupport() const                                                                         \
  {                                                                                                          \
    return false;                                                                                            \
  }                                                                                                          \
  ::orvel::BaseDynamicObject* Class::duplicate() const                                                       \
  {                                                                                                          \
    ::orvel::raise(ORVEL_HERE, ::orvel::eORVELUtilErrors::eNoCopySupport, getTypeName());                    \
  }                                                                                                          \
  ::orvel::DynamicObjectPtr Class::duplicateShared() const                                                   \
  {                                                                                                          \
    ::orvel::raise(ORVEL_HERE, ::orvel::eORVELUtilErrors::eNoCopySupport, getTypeName());                    \
  }                                                                                                          \
  void Class::copy(const ::orvel::BaseDynamicObject&)                                                        \
  {                                                                                                          \
    ::orvel::raise(ORVEL_HERE, ::orvel::eORVELUtilErrors::eNoCopySupport, getTypeName());                    \
  }

/// Defines what ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY declares.
#define ORVEL_DEFINE_SERIALIZABLE_WITHOUT_COPY(Class, Base, classVersion)                                    \
  ORVEL_DEFINE_WITHOUT_COPY(Class)                                                                           \
  ORVEL_DEFINE_VERSION(Class, classVersion)                                                                  \
  ORVEL_DEFINE_ARCHIVING_OF(, Class, Base, writeMembers(archive), readMembers(archive))

/// Defines what ORVEL_DECLARE_CREATION declares but duplicate(), of a class or, with `template <class T>`
/// ahead, of a template: Class is T<...> then, and Name the name of its constructor.
#define ORVEL_DEFINE_CREATORS_OF(Template, Class, Name, Base)                                                \
  Template Class::Name(const Class& other)                                                                   \
    : Base()                                                                                                 \
  {                                                                                                          \
    if (this != &other)                                                                                      \
      Class::copy(other);                                                                                    \
  }                                                                                                          \
  Template Class& Class::operator=(const Class& other)                                                       \
  {                                                                                                          \
    copy(other);                                                                                             \
    return *this;                                                                                            \
  }                                                                                                          \
  Template Class* Class::createNewObject()                                                                   \
  {                                                                                                          \
    return new Class;                                                                                        \
  }                                                                                                          \
  Template boost::shared_ptr<Class> Class::createSharedObject()                                              \
  {                                                                                                          \
    return boost::make_shared<Class>();                                                                      \
  }                                                                                                          \
  Template ::orvel::BaseDynamicObject* Class::createNew() const                                              \
  {                                                                                                          \
    return createNewObject();                                                                                \
  }                                                                                                          \
  Template ::orvel::DynamicObjectPtr Class::createShared() const                                             \
  {                                                                                                          \
    return createSharedObject();                                                                             \
  }                                                                                                          \
  Template bool Class::hasCopySupport() const                                                                \
  {                                                                                                          \
    return true;                                                                                             \
  }                                                                                                          \
  Template ::orvel::DynamicObjectPtr Class::duplicateShared() const                                          \
  {                                                                                                          \
    return ::orvel::details::duplicateShared(*this);                                                         \
  }

/// Defines what ORVEL_DECLARE_CREATION declares, of a class or a template as above.
#define ORVEL_DEFINE_CREATION_OF(Template, Class, Name, Base)                                                \
  ORVEL_DEFINE_CREATORS_OF(Template, Class, Name, Base)                                                      \
  Template ::orvel::BaseDynamicObject* Class::duplicate() const                                              \
  {                                                                                                          \
    return ::orvel::details::duplicate(*this);                                                               \
  }

/// Defines what ORVEL_DECLARE_CREATION and ORVEL_DECLARE_REGISTRATOR declare.
#define ORVEL_DEFINE_CREATION(Class, Base)                                                                   \
  const ::orvel::DynamicRegistrator<Class> Class::g_classRegistrator("orvel::" #Class);                      \
  ORVEL_DEFINE_CREATION_OF(, Class, Class, Base)

/// Defines, at global scope, the registrator of a template, `Class##DynamicRegistrator<T>`, made with the
/// class-name text of Class<T>, and its two creator functions.
#define ORVEL_DEFINE_TEMPLATE_REGISTRATOR(Class)                                                             \
  namespace orvel                                                                                            \
  {                                                                                                          \
  template <class T>                                                                                         \
  BaseDynamicObject* Class##NewCreatorFcn()                                                                  \
  {                                                                                                          \
    return Class<T>::createNewObject();                                                                      \
  }                                                                                                          \
  template <class T>                                                                                         \
  boost::shared_ptr<BaseDynamicObject> Class##SharedCreatorFcn()                                             \
  {                                                                                                          \
    return Class<T>::createSharedObject();                                                                   \
  }                                                                                                          \
  }                                                                                                          \
  template <class T>                                                                                         \
  class Class##DynamicRegistrator : public ::orvel::BaseDynamicRegistrator                                   \
  {                                                                                                          \
  public:                                                                                                    \
    explicit Class##DynamicRegistrator(const char* className)                                                \
      : BaseDynamicRegistrator(className, &::orvel::Class##NewCreatorFcn<T>,                                 \
                               &::orvel::Class##SharedCreatorFcn<T>)                                         \
    {                                                                                                        \
      /* Made before the application's statics, whose destructors may still ask for it. */                   \
      ::orvel::Class<T>::getTypeName();                                                                      \
    }                                                                                                        \
  };

/// Defines what ORVEL_DECLARE_SERIALIZABLE declares, and registers the class.
#define ORVEL_DEFINE_SERIALIZABLE(Class, Base, classVersion)                                                 \
  ORVEL_DEFINE_TYPE_NAME(Class)                                                                              \
  ORVEL_DEFINE_VERSION(Class, classVersion)                                                                  \
  ORVEL_DEFINE_LEVEL_WITH_MEMBERS(Class, Base)                                                               \
  ORVEL_DEFINE_CREATION(Class, Base)
