#pragma once

/// \file
/// \brief The archive operators of named enumerations: one form for all.
///
/// An element-wise archive stores the text of the enumerator, any other archive its number, as a 32-bit
/// integer. Neither texts nor numbers may change.
///
/// For each enumeration ORVEL_DECLARE_ENUMERATION_ITEMS declares and ORVEL_DEFINE_ENUMERATION_ITEMS defines
/// \code
/// BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<eColour>& item);
/// BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<eColour>& item);
/// \endcode
/// Both go by the low 32 bits of the value when they write. If these match no enumerator, an element-wise
/// archive gets nothing and std::logic_error is thrown; any other archive gets 0.
///
/// A text is compared exactly when it is read. A text (id 26) or a number (id 27) that matches no enumerator
/// raises ORVELSerializationException: the enumeration keeps its old value, the archive is marked as failed.
/// A number beyond 32 bits is the archive's own failure.

#include <string>

#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/ScalarTypes.h>
#include <ORVELUtil/SourceLocation.h>

/// Declares, within the namespace orvel, the two item operators of an enumeration.
/// \param EXPORT mark of the library that defines them
#define ORVEL_DECLARE_ENUMERATION_ITEMS(Enumeration, EXPORT)                                                 \
  EXPORT BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<Enumeration>& item);       \
  EXPORT BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<Enumeration>& item);

/// Defines, within the namespace orvel, what ORVEL_DECLARE_ENUMERATION_ITEMS declares. Failures name the
/// operator by its full signature.
#define ORVEL_DEFINE_ENUMERATION_ITEMS(Enumeration)                                                          \
  BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<Enumeration>& item)               \
  {                                                                                                          \
    details::writeEnumeration(archive, item.getKey(), item.getValue().getValue(), &Enumeration::findText);   \
    return archive;                                                                                          \
  }                                                                                                          \
  BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<Enumeration>& item)               \
  {                                                                                                          \
    item.getValue() = Enumeration(details::readEnumeration(                                                  \
        archive, item.getKey(), &Enumeration::findText,                                                      \
        ORVEL_HERE_IN("orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "                  \
                      "orvel::SerializationIItem<orvel::" #Enumeration ">&)")));                             \
    return archive;                                                                                          \
  }

namespace orvel
{

class BaseIArchive;
class BaseOArchive;

namespace details
{

using FindTextFunction = const char* (*)(ipUInt32 value);

/// \brief Write the value of an enumeration.
ORVELSERIALIZATION_EXPORT void writeEnumeration(BaseOArchive& archive, const std::string& key, ipUInt64 value,
                                                FindTextFunction findText);

/// \brief Read the value of an enumeration; failures are raised in the name of `here`.
ORVELSERIALIZATION_EXPORT ipUInt64 readEnumeration(BaseIArchive& archive, const std::string& key,
                                                   FindTextFunction findText, const SourceLocation& here);

} // namespace details

} // namespace orvel
