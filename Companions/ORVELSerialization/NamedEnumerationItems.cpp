#include "ORVELSerialization/NamedEnumerationItems.h"

#include <limits>
#include <stdexcept>

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELUtil/Raise.h>

namespace orvel::details
{

void writeEnumeration(BaseOArchive& archive, const std::string& key, ipUInt64 value,
                      FindTextFunction findText)
{
  const auto enumerator = static_cast<ipUInt32>(value); // the low 32 bits
  const char* text = findText(enumerator);
  if (!archive.isElementWise())
  {
    archive.writeInteger(key, text == nullptr ? 0 : static_cast<ipInt32>(enumerator));
    return;
  }
  if (text == nullptr)
    throw std::logic_error("basic_string: construction from null is not valid");
  archive.writeString(key, text);
}

ipUInt64 readEnumeration(BaseIArchive& archive, const std::string& key, FindTextFunction findText,
                         const SourceLocation& here)
{
  if (archive.isElementWise())
  {
    std::string text;
    archive.readString(key, text);
    for (ipUInt32 value = 0; findText(value) != nullptr; ++value)
      if (text == findText(value))
        return value;
    ArchiveAccess::markFailed(archive);
    raise(here, eORVELSerializationMessage::eUnknownEnumerationText, text);
  }
  const auto number = static_cast<ipInt32>(
      archive.readInteger(key, std::numeric_limits<ipInt32>::min(), std::numeric_limits<ipInt32>::max()));
  if (number >= 0 && findText(static_cast<ipUInt32>(number)) != nullptr)
    return static_cast<ipUInt64>(number);
  ArchiveAccess::markFailed(archive);
  raise(here, eORVELSerializationMessage::eUnknownEnumerationValue, number);
}

} // namespace orvel::details
