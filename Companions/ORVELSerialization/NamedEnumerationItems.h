#pragma once

/// \file
/// \brief The archive operators of named enumerations: one form for all.
///
/// An archive that files every element under its own key holds the text of the enumerator, any other
/// archive its number. Neither texts nor numbers may change.

#include <string>

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELSerialization/SerializationItem.h>
#include <ORVELUtil/Raise.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

using FindTextFunction = const char* (*)(ipUInt32 value);

/// \brief File an enumeration: the text of its low 32 bits where the archive is element-wise, else the
/// number, 0 for a value that is no enumerator.
/// \throw std::logic_error where a text is needed and there is none; nothing has been filed
ORVELSERIALIZATION_EXPORT void writeEnumeration(BaseOArchive& archive, const std::string& key, ipUInt64 value,
                                                FindTextFunction findText);

/// \brief Read the value of an enumeration: a text compared exactly, or a number.
/// \throw ORVELSerializationException in the name of `here` for a text (id 26) or a number (id 27) of none;
/// the archive is marked as failed. A number beyond 32 bits is the archive's own failure
ORVELSERIALIZATION_EXPORT ipUInt64 readEnumeration(BaseIArchive& archive, const std::string& key,
                                                   FindTextFunction findText, const SourceLocation& here);

} // namespace orvel::details

/// Defines the two item operators of an enumeration, within the namespace.
///
/// Failures name the operator by its full signature. It is spelled out here: compilers leave the namespace
/// out of the parameters of a function that is no member.
#define ORVEL_DEFINE_ENUMERATION_ITEMS(Enumeration)                                                          \
  BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<Enumeration>& item)               \
  {                                                                                                          \
    ::orvel::details::writeEnumeration(archive, item.getKey(), item.getValue().getValue(),                   \
                                       &Enumeration::findText);                                              \
    return archive;                                                                                          \
  }                                                                                                          \
  BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<Enumeration>& item)               \
  {                                                                                                          \
    const ::orvel::SourceLocation here = {                                                                   \
        "orvel::BaseIArchive& orvel::operator>>(orvel::BaseIArchive&, const "                                \
        "orvel::SerializationIItem<orvel::" #Enumeration ">&)",                                              \
        __FILE__, __LINE__};                                                                                 \
    item.getValue() = Enumeration(                                                                           \
        ::orvel::details::readEnumeration(archive, item.getKey(), &Enumeration::findText, here));            \
    return archive;                                                                                          \
  }
