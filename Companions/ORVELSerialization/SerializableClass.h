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

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELUtil/DynamicRegistrator.h>
#include <ORVELUtil/Raise.h>
#include <ORVELUtil/ScalarTypes.h>
#include <ORVELUtil/UnitMutex.h>

#include <boost/make_shared.hpp>

#include <memory>
#include <string>

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

/// Members of a concrete class of the frame; the three at the end are for the class to write.
#define ORVEL_DECLARE_SERIALIZABLE(Class)                                                                    \
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Class)                                                                 \
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
private:                                                                                                     \
  static const ::orvel::DynamicRegistrator<Class> g_classRegistrator;                                        \
  void copyMembers(const Class& other);                                                                      \
  void writeMembers(::orvel::BaseOArchive& archive) const;                                                   \
  void readMembers(::orvel::BaseIArchive& archive, ::orvel::ipUInt32 version);

/// Defines getTypeName; one class per source unit, as the unit's TypeNameMutex guards it.
#define ORVEL_DEFINE_TYPE_NAME(Class)                                                                        \
  namespace                                                                                                  \
  {                                                                                                          \
  class TypeNameMutex : public ::orvel::UnitMutex<TypeNameMutex>                                             \
  {                                                                                                          \
  };                                                                                                         \
  }                                                                                                          \
  const std::string& Class::getTypeName()                                                                    \
  {                                                                                                          \
    const boost::mutex::scoped_lock lock(TypeNameMutex::get());                                              \
    static const std::string g_typeName = "orvel::" #Class;                                                  \
    return g_typeName;                                                                                       \
  }                                                                                                          \
  namespace                                                                                                  \
  {                                                                                                          \
  /* The mutex is made before a second thread can come, and the text before the application's statics, whose \
   */                                                                                                        \
  /* destructors may still ask for it. */                                                                    \
  [[maybe_unused]] const bool g_typeNameMade = TypeNameMutex::touch() && !Class::getTypeName().empty();      \
  }

/// Defines getVersion, guarded by the unit's VersionMutex.
#define ORVEL_DEFINE_VERSION(Class, classVersion)                                                            \
  namespace                                                                                                  \
  {                                                                                                          \
  class VersionMutex : public ::orvel::UnitMutex<VersionMutex>                                               \
  {                                                                                                          \
  };                                                                                                         \
  [[maybe_unused]] const bool g_versionMutexMade = VersionMutex::touch();                                    \
  }                                                                                                          \
  ::orvel::ipUInt32 Class::getVersion()                                                                      \
  {                                                                                                          \
    const boost::mutex::scoped_lock lock(VersionMutex::get());                                               \
    static const ::orvel::ipUInt32 g_version = classVersion;                                                 \
    return g_version;                                                                                        \
  }

/// Defines copy, write and read of one level of a hierarchy. The last three arguments are what the level
/// does with its own members.
#define ORVEL_DEFINE_LEVEL(Class, Base, copyOwn, writeOwn, readOwn)                                          \
  const std::string& Class::getClassName() const                                                             \
  {                                                                                                          \
    return getTypeName();                                                                                    \
  }                                                                                                          \
  void Class::copy(const ::orvel::BaseDynamicObject& other)                                                  \
  {                                                                                                          \
    Base::copy(other);                                                                                       \
    copyOwn;                                                                                                 \
  }                                                                                                          \
  ::orvel::BoolResult Class::write(::orvel::BaseOArchive& archive) const                                     \
  {                                                                                                          \
    const ::orvel::BoolResult baseResult = Base::write(archive);                                             \
    if (!baseResult)                                                                                         \
      return ::orvel::BoolResult(false, baseResult.getMessage());                                            \
    static const std::string& g_className = getTypeName();                                                   \
    ::orvel::details::writeClassVersion(archive, g_className, &Class::getVersion);                           \
    writeOwn;                                                                                                \
    return ::orvel::BoolResult(true);                                                                        \
  }                                                                                                          \
  ::orvel::BoolResult Class::read(::orvel::BaseIArchive& archive)                                            \
  {                                                                                                          \
    const ::orvel::BoolResult baseResult = Base::read(archive);                                              \
    if (!baseResult)                                                                                         \
      return ::orvel::BoolResult(false, baseResult.getMessage());                                            \
    static const std::string& g_className = getTypeName();                                                   \
    [[maybe_unused]] const ::orvel::ipUInt32 version =                                                       \
        ::orvel::details::readClassVersion(archive, g_className, &Class::getVersion, ORVEL_HERE);            \
    readOwn;                                                                                                 \
    return ::orvel::BoolResult(true);                                                                        \
  }

/// Defines what ORVEL_DECLARE_ABSTRACT_SERIALIZABLE declares.
#define ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(Class, Base, classVersion)                                        \
  ORVEL_DEFINE_TYPE_NAME(Class)                                                                              \
  ORVEL_DEFINE_VERSION(Class, classVersion)                                                                  \
  ORVEL_DEFINE_LEVEL(Class, Base, , , )

/// Defines what ORVEL_DECLARE_SERIALIZABLE declares, and registers the class.
#define ORVEL_DEFINE_SERIALIZABLE(Class, Base, classVersion)                                                 \
  ORVEL_DEFINE_TYPE_NAME(Class)                                                                              \
  ORVEL_DEFINE_VERSION(Class, classVersion)                                                                  \
  ORVEL_DEFINE_LEVEL(Class, Base, copyMembers(static_cast<const Class&>(other)), writeMembers(archive),      \
                     readMembers(archive, version))                                                          \
  const ::orvel::DynamicRegistrator<Class> Class::g_classRegistrator("orvel::" #Class);                      \
  Class::Class(const Class& other)                                                                           \
    : Base()                                                                                                 \
  {                                                                                                          \
    if (this != &other)                                                                                      \
      Class::copy(other);                                                                                    \
  }                                                                                                          \
  Class& Class::operator=(const Class& other)                                                                \
  {                                                                                                          \
    copy(other);                                                                                             \
    return *this;                                                                                            \
  }                                                                                                          \
  Class* Class::createNewObject()                                                                            \
  {                                                                                                          \
    return new Class;                                                                                        \
  }                                                                                                          \
  boost::shared_ptr<Class> Class::createSharedObject()                                                       \
  {                                                                                                          \
    return boost::make_shared<Class>();                                                                      \
  }                                                                                                          \
  ::orvel::BaseDynamicObject* Class::createNew() const                                                       \
  {                                                                                                          \
    return createNewObject();                                                                                \
  }                                                                                                          \
  ::orvel::DynamicObjectPtr Class::createShared() const                                                      \
  {                                                                                                          \
    return createSharedObject();                                                                             \
  }                                                                                                          \
  bool Class::hasCopySupport() const                                                                         \
  {                                                                                                          \
    return true;                                                                                             \
  }                                                                                                          \
  ::orvel::BaseDynamicObject* Class::duplicate() const                                                       \
  {                                                                                                          \
    return ::orvel::details::duplicate(*this);                                                               \
  }                                                                                                          \
  ::orvel::DynamicObjectPtr Class::duplicateShared() const                                                   \
  {                                                                                                          \
    return ::orvel::details::duplicateShared(*this);                                                         \
  }
