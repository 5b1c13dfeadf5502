#pragma once

/// \file
/// \brief Root of the objects that carry a globally unique identifier.

#include <string>

#include <boost/uuid/uuid.hpp>

#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/ORVELSerializationExport.h>

namespace orvel
{

/// \brief Root of the objects that carry a globally unique identifier of 16 bytes.
///
/// A new object has a new random identifier; a copy and an object that is read have that of the original.
/// It is stored as one item "_guid", the text form of the identifier: 32 lower-case hexadecimal digits in
/// groups of 8, 4, 4, 4 and 12 with hyphens between them; no other form is read. There is no version record;
/// that of a derived class follows.
class ORVELSERIALIZATION_EXPORT SerializationObjectWithGuid : public BaseSerializationObject
{
public:
  ~SerializationObjectWithGuid() override;

  static const std::string& getTypeName(); ///< "orvel::SerializationObjectWithGuid"

  void copy(const BaseDynamicObject& other) override; ///< takes the identifier over
  BoolResult write(BaseOArchive& archive) const override;

  /// \brief Read the identifier.
  /// \throw ORVELSerializationException if the text is none; the object keeps its own
  BoolResult read(BaseIArchive& archive) override;

  const boost::uuids::uuid& getGuid() const { return _guid; }

protected:
  /// \throw boost::uuids::entropy_error if the system gives no random numbers
  SerializationObjectWithGuid();

private:
  boost::uuids::uuid _guid;
};

} // namespace orvel
