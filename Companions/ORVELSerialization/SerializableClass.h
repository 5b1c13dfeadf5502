#pragma once

/// \file
/// \brief One line that declares the members every class of the frame has. The header of a class includes this.
///
/// A class takes two lines: one in its header, within the class, and one in its source, within the namespace
/// of the class (\see SerializableClassDefinitions.h).
///
/// | Your class | in its header | in its source |
/// |---|---|---|
/// | concrete: created by name, copied, stored | ORVEL_DECLARE_SERIALIZABLE(C) | ORVEL_DEFINE_SERIALIZABLE(C, Base, version) |
/// | concrete, derived from a class that is not copyable | ORVEL_DECLARE_SERIALIZABLE(C) | ORVEL_DEFINE_SERIALIZABLE_COPIED_BY(C, Base, CopyBase, version) |
/// | abstract, without data | ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(C) | ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(C, Base, version) |
/// | abstract, with data | ORVEL_DECLARE_ABSTRACT_SERIALIZABLE_WITH_MEMBERS(C) | ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(C, Base, version) |
/// | abstract, not copyable, without data | ORVEL_DECLARE_WITHOUT_COPY(C) | ORVEL_DEFINE_WITHOUT_COPY(C) |
/// | abstract, not copyable, with data | ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY(C) | ORVEL_DEFINE_SERIALIZABLE_WITHOUT_COPY(C, Base, version) |
/// | template, with a closed list of instances | ORVEL_DECLARE_SERIALIZABLE_TEMPLATE(C) | ORVEL_DEFINE_SERIALIZABLE_TEMPLATE(C, text, Base, version) |
///
/// The class is named by "orvel::C". A class of another namespace takes the form that ends in _AS and gives
/// the text itself: `ORVEL_DEFINE_SERIALIZABLE_AS(Exposure, "mylab::Exposure",
/// orvel::BaseSerializationObject, 1)`.
///
/// A class with data writes three functions, each for its own members only; those of its bases are called
/// before:
///
/// \code
/// class ORVELBASEDATA_EXPORT ElementsRange : public BaseSerializationObject
/// {
///   ORVEL_DECLARE_SERIALIZABLE(ElementsRange)
///
/// public:
///   ElementsRange(); // a default constructor: objects are created by name
///   ...
/// };
/// \endcode
/// \code
/// ORVEL_DEFINE_SERIALIZABLE(ElementsRange, BaseSerializationObject, 2)
///
/// void ElementsRange::copyMembers(const ElementsRange& other) { ... }
/// void ElementsRange::writeMembers(BaseOArchive& archive) const { ... }
/// void ElementsRange::readMembers(BaseIArchive& archive, ipUInt32 version) { ... }
/// \endcode
///
/// readMembers() gets the version that the archive holds. It should read a version without a layout of its
/// own, 0 included, in the newest layout.
///
/// All functions are members of the class itself, so that failures name them by their own signatures.
/// getTypeName() and getVersion() take a lock on each call; getClassName() keeps the text.

#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

template <class T>
class DynamicRegistrator;

namespace details
{
struct FrameAccess;
} // namespace details

} // namespace orvel

/// \name Each class has one of these
/// \{

/// Declares the members of a concrete class. The class writes copyMembers, writeMembers and readMembers.
#define ORVEL_DECLARE_SERIALIZABLE(Class)                                                                    \
  ORVEL_DECLARE_SERIALIZABLE_TEMPLATE(Class)                                                                 \
  ORVEL_DECLARE_REGISTRATOR(Class)

/// Declares the members of an abstract class that has an archive version and no data.
#define ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(Class)                                                           \
  ORVEL_DECLARE_NAME(Class)                                                                                  \
  ORVEL_DECLARE_COPY_AND_ARCHIVING(Class)                                                                    \
private:                                                                                                     \
  void copyMembers(const Class&)                                                                             \
  {                                                                                                          \
  }                                                                                                          \
  void writeMembers(::orvel::BaseOArchive&) const                                                            \
  {                                                                                                          \
  }                                                                                                          \
  void readMembers(::orvel::BaseIArchive&, ::orvel::ipUInt32)                                                \
  {                                                                                                          \
  }

/// Declares the members of an abstract class that has data. The class writes copyMembers, writeMembers and
/// readMembers.
#define ORVEL_DECLARE_ABSTRACT_SERIALIZABLE_WITH_MEMBERS(Class)                                              \
  ORVEL_DECLARE_NAME(Class)                                                                                  \
  ORVEL_DECLARE_COPY_AND_ARCHIVING(Class)                                                                    \
  ORVEL_DECLARE_MEMBER_OPERATIONS(Class)

/// Declares the members of an abstract class without data whose objects cannot be copied through it: copy,
/// duplicate and duplicateShared raise ORVELUtilException (eNoCopySupport) with the name of this class, also
/// for a derived class that inherits them. It has no archive version.
#define ORVEL_DECLARE_WITHOUT_COPY(Class)                                                                    \
  ORVEL_DECLARE_NAME(Class)                                                                                  \
public:                                                                                                      \
  bool hasCopySupport() const override;                                                                      \
  ::orvel::BaseDynamicObject* duplicate() const override;                                                    \
  ::orvel::DynamicObjectPtr duplicateShared() const override;                                                \
  void copy(const ::orvel::BaseDynamicObject& other) override;                                               \
                                                                                                             \
private:

/// Declares the members of an abstract class that has data and whose objects cannot be copied through it. The
/// class writes writeMembers and readMembers.
#define ORVEL_DECLARE_SERIALIZABLE_WITHOUT_COPY(Class)                                                       \
  ORVEL_DECLARE_WITHOUT_COPY(Class)                                                                          \
public:                                                                                                      \
  static ::orvel::ipUInt32 getVersion();                                                                     \
  ::orvel::BoolResult write(::orvel::BaseOArchive& archive) const override;                                  \
  ::orvel::BoolResult read(::orvel::BaseIArchive& archive) override;                                         \
                                                                                                             \
private:                                                                                                     \
  void writeMembers(::orvel::BaseOArchive& archive) const;                                                   \
  void readMembers(::orvel::BaseIArchive& archive, ::orvel::ipUInt32 version);

/// Declares the members of a concrete class template. The class writes copyMembers, writeMembers and
/// readMembers; its source registers each instance.
#define ORVEL_DECLARE_SERIALIZABLE_TEMPLATE(Class)                                                           \
  ORVEL_DECLARE_NAME(Class)                                                                                  \
  ORVEL_DECLARE_COPY_AND_ARCHIVING(Class)                                                                    \
  ORVEL_DECLARE_CREATION(Class)                                                                              \
  ORVEL_DECLARE_MEMBER_OPERATIONS(Class)
/// \}

/// \name Building blocks of the above, for a class of another kind
/// \{

/// Declares the name of a class, as its type and as that of an object.
#define ORVEL_DECLARE_NAME(Class)                                                                            \
public:                                                                                                      \
  static const std::string& getTypeName();                                                                   \
  const std::string& getClassName() const override;                                                          \
                                                                                                             \
private:                                                                                                     \
  friend struct ::orvel::details::FrameAccess;                                                               \
  using FrameOwner = Class;

/// Declares the version of a class, its copying, writing and reading.
#define ORVEL_DECLARE_COPY_AND_ARCHIVING(Class)                                                              \
public:                                                                                                      \
  static ::orvel::ipUInt32 getVersion();                                                                     \
  void copy(const ::orvel::BaseDynamicObject& other) override;                                               \
  ::orvel::BoolResult write(::orvel::BaseOArchive& archive) const override;                                  \
  ::orvel::BoolResult read(::orvel::BaseIArchive& archive) override;                                         \
                                                                                                             \
private:

/// Declares what creates objects of a concrete class. The copy constructor calls the `copy` of this class on
/// a new object; `X x(x)` gives a default object.
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

/// Declares the object that keeps a concrete class in the factory.
#define ORVEL_DECLARE_REGISTRATOR(Class)                                                                     \
private:                                                                                                     \
  static const ::orvel::DynamicRegistrator<Class> g_classRegistrator;

/// Declares what copy, write and read do with the members of a class, for the class to write.
#define ORVEL_DECLARE_MEMBER_OPERATIONS(Class)                                                               \
private:                                                                                                     \
  void copyMembers(const Class& other);                                                                      \
  void writeMembers(::orvel::BaseOArchive& archive) const;                                                   \
  void readMembers(::orvel::BaseIArchive& archive, ::orvel::ipUInt32 version);
/// \}
