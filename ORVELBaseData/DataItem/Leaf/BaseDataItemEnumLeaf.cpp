#include "ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h"

#include <ORVELBaseData/DataItem/DataItemLogMessages.h>
#include <ORVELSerialization/SerializationItems.h>

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(BaseDataItemEnumLeaf)
ORVEL_DEFINE_VERSION(BaseDataItemEnumLeaf, 1)
ORVEL_DEFINE_LEVEL(BaseDataItemEnumLeaf, BaseDataItemLeaf,
                   _value = static_cast<const BaseDataItemEnumLeaf&>(other)._value,
                   if (!writeText(archive))
                       raise(ORVEL_HERE, eDataItemMessage::eInvalidEnumIntValue, _value, getEnumNameStr()),
                   std::string text;
                   if (!readText(archive, text))
                       raise(ORVEL_HERE, eDataItemMessage::eInvalidEnumStrValue, text, getEnumNameStr()))
ORVEL_DEFINE_CREATION(BaseDataItemEnumLeaf, BaseDataItemLeaf)

BaseDataItemEnumLeaf::BaseDataItemEnumLeaf() // the value is not set
{
}

eDataItemValueType BaseDataItemEnumLeaf::getDataItemValueType() const
{
  return eDataItemValueType::eDIVT_Enum;
}

std::string BaseDataItemEnumLeaf::getEnumNameStr() const
{
  return std::string();
}

std::string BaseDataItemEnumLeaf::getValueStr() const
{
  std::string text;
  return toString(_value, text) ? text : std::string();
}

bool BaseDataItemEnumLeaf::fromString(const std::string& /*text*/, ipUInt32& /*value*/) const
{
  return false;
}

bool BaseDataItemEnumLeaf::toString(const ipUInt32& /*value*/, std::string& /*text*/) const
{
  return false;
}

bool BaseDataItemEnumLeaf::writeText(BaseOArchive& archive) const
{
  std::string text;
  if (!toString(_value, text))
    return false;
  archive << SerializationOItem("enumValue", text);
  return true;
}

bool BaseDataItemEnumLeaf::readText(BaseIArchive& archive, std::string& text)
{
  archive >> SerializationIItem("enumValue", text);
  return fromString(text, _value);
}

} // namespace orvel
