#pragma once

/// \file
/// \brief Archive that objects are written to.

#include <string>
#include <string_view>

#include <ORVELSerialization/BaseArchive.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Archive that objects are written to: a typed, ordered stream of items.
///
/// Classes write their members with `archive << SerializationOItem(key, value)` (\see ItemOperators.h); the
/// operations below are what those operators call and what a concrete archive supplies. All of them raise
/// ORVELSerializationException if the archive is not open or cannot take the value.
class ORVELSERIALIZATION_EXPORT BaseOArchive : public BaseArchive
{
public:
  /// \brief Write raw bytes, in the byte order of the machine; sizeInBytes may be 0.
  virtual void writeBlock(const void* data, ipUInt64 sizeInBytes) = 0;

  /// \brief Write a shared object under the item's key: its class name and, through its `write`, its
  /// content. A second pointer to an object becomes a reference to the first, even if the object has changed
  /// meanwhile; null is stored as such.
  ///
  /// Every shared pointer passes through here, also those in containers. The archive keeps every object alive
  /// that it has written, so that no address is met twice.
  virtual void writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item) = 0;

  /// \brief Write an object in place, through its own `write`: no class name, no identity.
  virtual void writeObject(const std::string& key, const BaseSerializationObject& object) = 0;

  virtual void writeBool(const std::string& key, bool value) = 0;
  virtual void writeInteger(const std::string& key, ipInt64 value) = 0;         ///< any signed width
  virtual void writeUnsigned(const std::string& key, ipUInt64 value) = 0;       ///< any unsigned width
  virtual void writeReal32(const std::string& key, ipReal32 value) = 0;         ///< keeps every bit
  virtual void writeReal64(const std::string& key, ipReal64 value) = 0;         ///< keeps every bit
  virtual void writeString(const std::string& key, std::string_view value) = 0; ///< any bytes

  /// \brief Finish the archive and report; without it nothing is published.
  /// \throw ORVELSerializationException if anything could not be written, or a section is still open
  virtual void close() = 0;

protected:
  using BaseArchive::BaseArchive;
};

} // namespace orvel
