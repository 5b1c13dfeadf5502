#pragma once

/// \file
/// \brief One line that defines the members every class of the frame has. The source of a class includes this.
///
/// Which line for which class: \see SerializableClass.h. It stands within the namespace of the class, at most
/// once per class. Base is the direct base class, version the number that rises when the archive layout
/// changes.
///
/// What a class lacks is reported by a static_assert that names it. An operation that is declared but not
/// written is named by the linker; link libraries with `-Wl,-z,defs` to hear of it when they are built.

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <boost/make_shared.hpp>

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/DynamicRegistrator.h>
#include <ORVELUtil/ORVELUtilLogMessages.h>
#include <ORVELUtil/Raise.h>
#include <ORVELUtil/ScalarTypes.h>
#include <ORVELUtil/UnitMutex.h>

namespace orvel::details
{

/// \brief Write the version record of a class the first time that the archive meets the class.
ORVELSERIALIZATION_EXPORT void writeClassVersion(BaseOArchive& archive, const std::string& className,
                                                 ipUInt32 (*getVersion)());

/// \brief Return the version of a class in this archive; the first time it is read from there.
/// \throw ORVELSerializationException if it is above the class's own; it is not recorded then
ORVELSERIALIZATION_EXPORT ipUInt32 readClassVersion(BaseIArchive& archive, const std::string& className,
                                                    ipUInt32 (*getVersion)(), const SourceLocation& here);

/// \brief Looks at classes of the frame with the rights of their own members.
struct FrameAccess
{
  /// \brief Return whether T has its own line ORVEL_DECLARE_...; that of a base does not count.
  template <class T>
  static constexpr auto isDeclared(int) -> decltype(std::declval<typename T::FrameOwner*>(), true)
  {
    return std::is_same_v<typename T::FrameOwner, T>;
  }
  template <class T>
  static constexpr bool isDeclared(long)
  {
    return false;
  }

  template <class T>
  static constexpr auto hasDefaultConstructor(int) -> decltype(T(), true)
  {
    return true;
  }
  template <class T>
  static constexpr bool hasDefaultConstructor(long)
  {
    return false;
  }

  template <class T>
  static constexpr auto hasCopyMembers(int)
      -> decltype(std::declval<T&>().copyMembers(std::declval<const T&>()), true)
  {
    return true;
  }
  template <class T>
  static constexpr bool hasCopyMembers(long)
  {
    return false;
  }

  // The two creators say nothing of a class that cannot be created: a static_assert has done so.
  template <class T>
  static T* createNew()
  {
    if constexpr (hasDefaultConstructor<T>(0))
      return new T;
    else
      return nullptr;
  }
  template <class T>
  static boost::shared_ptr<T> createShared()
  {
    if constexpr (hasDefaultConstructor<T>(0))
      return boost::make_shared<T>();
    else
      return nullptr;
  }

  /// \brief Make a copy of an object that the caller owns.
  template <class T>
  static T* duplicate(const T& object)
  {
    std::unique_ptr<T> duplicated(T::createNewObject());
    duplicated->copy(object);
    return duplicated.release();
  }
  template <class T>
  static boost::shared_ptr<T> duplicateShared(const T& object)
  {
    boost::shared_ptr<T> duplicated = T::createSharedObject();
    duplicated->copy(object);
    return duplicated;
  }
};

/// \brief Return whether T is the class of that name, spelled in full.
template <class T>
constexpr bool isNamed(std::string_view name)
{
  constexpr std::string_view start =
      "T = "; // "... [with T = orvel::KernelXY; ...]" or "... [T = orvel::KernelXY]"
  std::string_view text = __PRETTY_FUNCTION__;
  text.remove_prefix(text.find(start) + start.size());
  return text.substr(0, text.find_first_of(";]")) == name;
}

} // namespace orvel::details

/// \name The source of each class has one of these
/// \{

/// Defines and registers a concrete class.
#define ORVEL_DEFINE_SERIALIZABLE(Class, Base, classVersion)                                                 \
  ORVEL_CHECK_NAMESPACE(Class, ORVEL_DEFINE_SERIALIZABLE_AS)                                                 \
  ORVEL_DEFINE_SERIALIZABLE_AS(Class, "orvel::" #Class, Base, classVersion)
#define ORVEL_DEFINE_SERIALIZABLE_AS(Class, text, Base, classVersion)                                        \
  ORVEL_DEFINE_SERIALIZABLE_COPIED_BY_AS(Class, text, Base, Base, classVersion)

/// Defines and registers a concrete class whose direct base is not copyable. CopyBase is the nearest one that
/// is.
#define ORVEL_DEFINE_SERIALIZABLE_COPIED_BY(Class, Base, CopyBase, classVersion)                             \
  ORVEL_CHECK_NAMESPACE(Class, ORVEL_DEFINE_SERIALIZABLE_COPIED_BY_AS)                                       \
  ORVEL_DEFINE_SERIALIZABLE_COPIED_BY_AS(Class, "orvel::" #Class, Base, CopyBase, classVersion)
#define ORVEL_DEFINE_SERIALIZABLE_COPIED_BY_AS(Class, text, Base, CopyBase, classVersion)                    \
  ORVEL_CHECK_CLASS(Class, Base)                                                                             \
  ORVEL_CHECK_CREATION(Class)                                                                                \
  ORVEL_DEFINE_NAME_AS(Class, text)                                                                          \
  ORVEL_DEFINE_VERSION(Class, classVersion)                                                                  \
  ORVEL_DEFINE_COPY_OF(, Class, CopyBase)                                                                    \
  ORVEL_DEFINE_ARCHIVING_OF(, Class, Base)                                                                   \
  ORVEL_DEFINE_CREATION_AS(Class, text, Base)

/// Defines an abstract class, with data or without.
#define ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(Class, Base, classVersion)                                        \
  ORVEL_CHECK_NAMESPACE(Class, ORVEL_DEFINE_ABSTRACT_SERIALIZABLE_AS)                                        \
  ORVEL_DEFINE_ABSTRACT_SERIALIZABLE_AS(Class, "orvel::" #Class, Base, classVersion)
#define ORVEL_DEFINE_ABSTRACT_SERIALIZABLE_AS(Class, text, Base, classVersion)                               \
  ORVEL_CHECK_CLASS(Class, Base)                                                                             \
  ORVEL_DEFINE_NAME_AS(Class, text)                                                                          \
  ORVEL_DEFINE_VERSION(Class, classVersion)                                                                  \
  ORVEL_DEFINE_COPY_OF(, Class, Base)                                                                        \
  ORVEL_DEFINE_ARCHIVING_OF(, Class, Base)

/// Defines an abstract class without data that is not copyable.
#define ORVEL_DEFINE_WITHOUT_COPY(Class)                                                                     \
  ORVEL_CHECK_NAMESPACE(Class, ORVEL_DEFINE_WITHOUT_COPY_AS)                                                 \
  ORVEL_DEFINE_WITHOUT_COPY_AS(Class, "orvel::" #Class)
#define ORVEL_DEFINE_WITHOUT_COPY_AS(Class, text)                                                            \
  ORVEL_DEFINE_NAME_AS(Class, text)                                                                          \
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

/// Defines an abstract class with data that is not copyable.
#define ORVEL_DEFINE_SERIALIZABLE_WITHOUT_COPY(Class, Base, classVersion)                                    \
  ORVEL_CHECK_NAMESPACE(Class, ORVEL_DEFINE_SERIALIZABLE_WITHOUT_COPY_AS)                                    \
  ORVEL_DEFINE_SERIALIZABLE_WITHOUT_COPY_AS(Class, "orvel::" #Class, Base, classVersion)
#define ORVEL_DEFINE_SERIALIZABLE_WITHOUT_COPY_AS(Class, text, Base, classVersion)                           \
  ORVEL_CHECK_CLASS(Class, Base)                                                                             \
  ORVEL_DEFINE_WITHOUT_COPY_AS(Class, text)                                                                  \
  ORVEL_DEFINE_VERSION(Class, classVersion)                                                                  \
  ORVEL_DEFINE_ARCHIVING_OF(, Class, Base)
/// \}

/// \name Templates
///
/// A template is closed over a list of element types: its source instantiates and registers each.
/// \code
/// ORVEL_DEFINE_SERIALIZABLE_TEMPLATE(TOwnBuffer, std::string("orvel::TOwnBuffer<") + nameOf<T> + ">",
/// BaseOwnBuffer, 1)
/// ...
/// template class TOwnBuffer<ipInt8>;
/// } // namespace orvel
/// ORVEL_DEFINE_TEMPLATE_REGISTRATOR(TOwnBuffer)
/// const TOwnBufferDynamicRegistrator<orvel::ipInt8> g_int8Registrator("orvel::TOwnBuffer<orvel::ipInt8>");
/// \endcode
/// \{

/// Defines the members of a class template; text is an expression in T, the element type.
#define ORVEL_DEFINE_SERIALIZABLE_TEMPLATE(Class, text, Base, classVersion)                                  \
  ORVEL_DEFINE_SERIALIZABLE_TEMPLATE_BUT_DUPLICATE(Class, text, Base, classVersion)                          \
  ORVEL_DEFINE_DUPLICATE_OF(template <class T>, Class<T>)

/// The same for a template that writes its own duplicate().
#define ORVEL_DEFINE_SERIALIZABLE_TEMPLATE_BUT_DUPLICATE(Class, text, Base, classVersion)                    \
  ORVEL_DEFINE_UNIT_MUTEX(TypeNameMutexOf##Class)                                                            \
  ORVEL_DEFINE_NAME_OF(template <class T>, Class<T>, text, TypeNameMutexOf##Class)                           \
  ORVEL_DEFINE_UNIT_MUTEX(VersionMutexOf##Class)                                                             \
  ORVEL_DEFINE_VERSION_OF(template <class T>, Class<T>, classVersion, VersionMutexOf##Class)                 \
  ORVEL_DEFINE_COPY_OF(template <class T>, Class<T>, Base)                                                   \
  ORVEL_DEFINE_ARCHIVING_OF(template <class T>, Class<T>, Base)                                              \
  ORVEL_DEFINE_CREATORS_OF(template <class T>, Class<T>, Class, Base)

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
/// \}

/// \name Building blocks of the above, for a class of another kind
///
/// Those that end in _OF take what stands ahead of a member of a template (`template <class T>`, or nothing)
/// and the class with its parameters (`DataItemLeaf<T>`).
/// \{

/// Defines getTypeName and getClassName.
#define ORVEL_DEFINE_NAME(Class)                                                                             \
  ORVEL_CHECK_NAMESPACE(Class, ORVEL_DEFINE_NAME_AS)                                                         \
  ORVEL_DEFINE_NAME_AS(Class, "orvel::" #Class)
#define ORVEL_DEFINE_NAME_AS(Class, text)                                                                    \
  ORVEL_DEFINE_TYPE_NAME_AS(Class, text)                                                                     \
  ORVEL_DEFINE_CLASS_NAME_OF(, Class)

/// Defines getTypeName alone, for the roots of hierarchies.
#define ORVEL_DEFINE_TYPE_NAME(Class)                                                                        \
  ORVEL_CHECK_NAMESPACE(Class, ORVEL_DEFINE_TYPE_NAME_AS)                                                    \
  ORVEL_DEFINE_TYPE_NAME_AS(Class, "orvel::" #Class)
#define ORVEL_DEFINE_TYPE_NAME_AS(Class, text)                                                               \
  ORVEL_DEFINE_UNIT_MUTEX(TypeNameMutexOf##Class)                                                            \
  ORVEL_DEFINE_TYPE_NAME_OF(, Class, text, TypeNameMutexOf##Class)                                           \
  namespace                                                                                                  \
  {                                                                                                          \
  /* Made before the application's statics, whose destructors may still ask for it. */                       \
  [[maybe_unused]] const bool g_typeNameOf##Class##Made = !Class::getTypeName().empty();                     \
  }

/// Defines getVersion.
#define ORVEL_DEFINE_VERSION(Class, classVersion)                                                            \
  ORVEL_DEFINE_UNIT_MUTEX(VersionMutexOf##Class)                                                             \
  ORVEL_DEFINE_VERSION_OF(, Class, classVersion, VersionMutexOf##Class)

/// Defines what ORVEL_DECLARE_CREATION and ORVEL_DECLARE_REGISTRATOR declare.
#define ORVEL_DEFINE_CREATION(Class, Base)                                                                   \
  ORVEL_CHECK_NAMESPACE(Class, ORVEL_DEFINE_CREATION_AS)                                                     \
  ORVEL_DEFINE_CREATION_AS(Class, "orvel::" #Class, Base)
#define ORVEL_DEFINE_CREATION_AS(Class, text, Base)                                                          \
  const ::orvel::DynamicRegistrator<Class> Class::g_classRegistrator(text);                                  \
  ORVEL_DEFINE_CREATORS_OF(, Class, Class, Base)                                                             \
  ORVEL_DEFINE_DUPLICATE_OF(, Class)

/// Defines a mutex of the source unit, made at load.
#define ORVEL_DEFINE_UNIT_MUTEX(Name)                                                                        \
  namespace                                                                                                  \
  {                                                                                                          \
  class Name : public ::orvel::UnitMutex<Name>                                                               \
  {                                                                                                          \
  };                                                                                                         \
  [[maybe_unused]] const bool g_made##Name = Name::touch();                                                  \
  }

#define ORVEL_DEFINE_NAME_OF(Template, Class, text, Mutex)                                                   \
  ORVEL_DEFINE_TYPE_NAME_OF(Template, Class, text, Mutex)                                                    \
  ORVEL_DEFINE_CLASS_NAME_OF(Template, Class)

#define ORVEL_DEFINE_TYPE_NAME_OF(Template, Class, text, Mutex)                                              \
  Template const std::string& Class::getTypeName()                                                           \
  {                                                                                                          \
    const boost::mutex::scoped_lock lock(Mutex::get());                                                      \
    static const std::string g_typeName = text;                                                              \
    return g_typeName;                                                                                       \
  }

#define ORVEL_DEFINE_CLASS_NAME_OF(Template, Class)                                                          \
  Template const std::string& Class::getClassName() const                                                    \
  {                                                                                                          \
    static const std::string& g_className = getTypeName(); /* saves the lock of every other call */          \
    return g_className;                                                                                      \
  }

#define ORVEL_DEFINE_VERSION_OF(Template, Class, classVersion, Mutex)                                        \
  Template ::orvel::ipUInt32 Class::getVersion()                                                             \
  {                                                                                                          \
    const boost::mutex::scoped_lock lock(Mutex::get());                                                      \
    static const ::orvel::ipUInt32 g_version = classVersion;                                                 \
    return g_version;                                                                                        \
  }

/// Defines copy: Base's, then copyMembers.
#define ORVEL_DEFINE_COPY_OF(Template, Class, Base)                                                          \
  Template void Class::copy(const ::orvel::BaseDynamicObject& other)                                         \
  {                                                                                                          \
    Base::copy(other);                                                                                       \
    copyMembers(static_cast<const Class&>(other));                                                           \
  }

/// Defines write and read: Base's, then the version record, then writeMembers or readMembers. A failure marks
/// the archive as failed: part of an object may have been moved.
#define ORVEL_DEFINE_ARCHIVING_OF(Template, Class, Base)                                                     \
  Template ::orvel::BoolResult Class::write(::orvel::BaseOArchive& archive) const                            \
  {                                                                                                          \
    ::orvel::details::ObjectGuard guard(archive);                                                            \
    const ::orvel::BoolResult baseResult = Base::write(archive);                                             \
    if (!baseResult)                                                                                         \
      return ::orvel::BoolResult(false, baseResult.getMessage());                                            \
    ::orvel::details::writeClassVersion(archive, Class::getClassName(), &Class::getVersion);                 \
    writeMembers(archive);                                                                                   \
    guard.finish();                                                                                          \
    return ::orvel::BoolResult(true);                                                                        \
  }                                                                                                          \
  Template ::orvel::BoolResult Class::read(::orvel::BaseIArchive& archive)                                   \
  {                                                                                                          \
    ::orvel::details::ObjectGuard guard(archive);                                                            \
    const ::orvel::BoolResult baseResult = Base::read(archive);                                              \
    if (!baseResult)                                                                                         \
      return ::orvel::BoolResult(false, baseResult.getMessage());                                            \
    readMembers(archive, ::orvel::details::readClassVersion(archive, Class::getClassName(),                  \
                                                            &Class::getVersion, ORVEL_HERE));                \
    guard.finish();                                                                                          \
    return ::orvel::BoolResult(true);                                                                        \
  }

/// Defines what ORVEL_DECLARE_CREATION declares but duplicate(); Name is the name of the constructor.
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
    return ::orvel::details::FrameAccess::createNew<Class>();                                                \
  }                                                                                                          \
  Template boost::shared_ptr<Class> Class::createSharedObject()                                              \
  {                                                                                                          \
    return ::orvel::details::FrameAccess::createShared<Class>();                                             \
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
    return ::orvel::details::FrameAccess::duplicateShared(*this);                                            \
  }

#define ORVEL_DEFINE_DUPLICATE_OF(Template, Class)                                                           \
  Template ::orvel::BaseDynamicObject* Class::duplicate() const                                              \
  {                                                                                                          \
    return ::orvel::details::FrameAccess::duplicate(*this);                                                  \
  }
/// \}

/// \name Checks
/// \{

/// Refuses a class that is not in the namespace orvel, as the plain forms name it "orvel::Class".
#define ORVEL_CHECK_NAMESPACE(Class, FORM)                                                                   \
  static_assert(::orvel::details::isNamed<Class>("orvel::" #Class),                                          \
                #Class " is not in the namespace orvel: name it with " #FORM);

/// Refuses a class that lacks its line in the header, or that is not derived from Base.
#define ORVEL_CHECK_CLASS(Class, Base)                                                                       \
  static_assert(::orvel::details::FrameAccess::isDeclared<Class>(0),                                         \
                #Class " lacks its ORVEL_DECLARE_... line in the header");                                   \
  static_assert(std::is_base_of_v<Base, Class>, #Class " is not derived from " #Base);                       \
  ORVEL_CHECK_EXPORT(Class, Base)

/// Refuses a concrete class of which no object can be made.
#define ORVEL_CHECK_CREATION(Class)                                                                          \
  static_assert(!std::is_abstract_v<Class>,                                                                  \
                #Class " has pure virtual operations: a concrete class overrides them all");                 \
  static_assert(std::is_abstract_v<Class> || ::orvel::details::FrameAccess::hasDefaultConstructor<Class>(0), \
                #Class " lacks a default constructor: objects are created by class name");                   \
  static_assert(::orvel::details::FrameAccess::hasCopyMembers<Class>(0),                                     \
                #Class " lacks copyMembers(const " #Class "&)");

/// Refuses an exported class whose base is not exported: other libraries could not link it. Only g++ can
/// tell.
#if defined(__GNUC__) && !defined(__clang__)
#define ORVEL_CHECK_EXPORT(Class, Base)                                                                      \
  _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wattributes\"") static_assert(           \
      !__builtin_has_attribute(Class, visibility("default")) ||                                              \
          __builtin_has_attribute(Base, visibility("default")),                                              \
      #Class " is exported, so its base " #Base " has to be exported, too");                                 \
  _Pragma("GCC diagnostic pop")
#else
#define ORVEL_CHECK_EXPORT(Class, Base)
#endif
/// \}
