#pragma once

/// \file
/// \brief Root of every class that can be stored in an archive.

#include <string>

#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/BaseDynamicObject.h>
#include <ORVELUtil/ProcessingResult.h>

namespace orvel
{

class BaseIArchive;
class BaseOArchive;

/// \brief Root of the classes that are written to and read from archives. Holds no data.
///
/// A derived `write`, `read` or `copy` calls that of its base first. Concrete classes get all of the
/// frame's members from one line: \see SerializableClass.h
class ORVELSERIALIZATION_EXPORT BaseSerializationObject : public BaseDynamicObject
{
public:
  ~BaseSerializationObject() override = default;

  static const std::string& getTypeName(); ///< "orvel::BaseSerializationObject"

  void copy(const BaseDynamicObject& /*other*/) override {} ///< takes nothing over

  /// \brief Write the object to an archive. This root writes nothing.
  /// \return true, or false with a message if a class reports a failure this way
  /// \throw ORVELSerializationException if the archive fails
  virtual BoolResult write(BaseOArchive& archive) const;

  /// \brief Read the object from an archive. This root reads nothing.
  /// \return true, or false with a message if a class reports a failure this way
  /// \throw ORVELSerializationException if the archive fails or holds a newer version of a class. The archive can't
  /// be used then; the members of that class are unchanged, and the versions of its bases stay recorded
  virtual BoolResult read(BaseIArchive& /*archive*/) { return BoolResult(true); }

protected:
  BaseSerializationObject() = default;
};

} // namespace orvel
