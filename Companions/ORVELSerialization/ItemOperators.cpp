#include "ORVELSerialization/ItemOperators.h"

#include <ORVELSerialization/DataType.h>

namespace orvel
{

BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<std::string>& item)
{
  archive.writeString(item.getKey(), item.getValue());
  return archive;
}

BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<std::string>& item)
{
  archive.readString(item.getKey(), item.getValue());
  return archive;
}

BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<boost::filesystem::path>& item)
{
  archive.writeString(item.getKey(), item.getValue().native());
  return archive;
}

BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<boost::filesystem::path>& item)
{
  std::string text;
  archive.readString(item.getKey(), text);
  item.getValue() = text;
  return archive;
}

ORVEL_DEFINE_ENUMERATION_ITEMS(eDataType)

std::string details::nameSharedPtrSection(const std::string& typeName)
{
  return "shared_ptr<" + typeName + ">";
}

} // namespace orvel
