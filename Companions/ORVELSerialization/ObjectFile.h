#pragma once

/// \file
/// \brief One object, one file.

#include <boost/filesystem/path.hpp>
#include <boost/shared_ptr.hpp>

#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELUtil/SourceLocation.h>

namespace orvel
{

/// \brief Tells whether the classes of a file's objects are taken on trust.
enum class ArchiveTrust
{
  trusted,  ///< written by this kit: pointers within objects are converted to their class on trust
  untrusted ///< from elsewhere: an object of a class that does not fit raises
};

/// \brief Save an object: XML if the extension is ".xml" (in any case of letters), else binary.
///
/// The file is replaced as a whole and brought to the disk; if that fails the old one stays as it is, with
/// the one exception of BinaryOArchive::close().
/// \throw ORVELSerializationException with the path, the place and the reason
ORVELSERIALIZATION_EXPORT void saveObject(const boost::filesystem::path& path,
                                          const BaseSerializationObject& object);

/// \brief Save a shared object; null is saved as such. \see saveObject
ORVELSERIALIZATION_EXPORT void saveObject(const boost::filesystem::path& path,
                                          const SerializationObjectConstPtr& object);

/// \brief Load the object of a file of either format, which is detected from the content.
///
/// The object is created by the class name that the file holds. The file is read to its end and checked
/// before the object is handed out.
/// \return null if null was saved
/// \throw ORVELSerializationException with the path, the place and the reason
ORVELSERIALIZATION_EXPORT SerializationObjectPtr loadObject(const boost::filesystem::path& path,
                                                            ArchiveTrust trust = ArchiveTrust::trusted);

namespace details
{

/// \brief What loadObject asks of the class of a file's object.
struct ExpectedClass
{
  bool (*fits)(const BaseSerializationObject* object);
  const std::string& (*getTypeName)();
};

/// \brief Load an object of a class that is expected; failures of its own are raised in the name of `here`.
ORVELSERIALIZATION_EXPORT SerializationObjectPtr loadObject(const boost::filesystem::path& path,
                                                            ArchiveTrust trust, const ExpectedClass& expected,
                                                            const SourceLocation& here);

} // namespace details

/// \brief Load the object of a file that must be a T or of a class derived from it. \see loadObject
/// \return null if null was saved
/// \throw ORVELSerializationException also if the object is of another class
template <class T>
boost::shared_ptr<T> loadObject(const boost::filesystem::path& path,
                                ArchiveTrust trust = ArchiveTrust::trusted)
{
  const details::ExpectedClass expected = {[](const BaseSerializationObject* object)
                                           { return dynamic_cast<const T*>(object) != nullptr; },
                                           &T::getTypeName};
  return boost::dynamic_pointer_cast<T>(details::loadObject(
      path, trust, expected,
      ORVEL_HERE_IN("boost::shared_ptr<T> orvel::loadObject<T>(const boost::filesystem::path&, "
                    "orvel::ArchiveTrust)")));
}

} // namespace orvel
