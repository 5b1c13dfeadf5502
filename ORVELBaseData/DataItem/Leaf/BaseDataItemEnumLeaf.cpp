#include "ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h"

#include <ORVELBaseData/DataItem/DataItemLogMessages.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(BaseDataItemEnumLeaf, BaseDataItemLeaf, 1)

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

void BaseDataItemEnumLeaf::copyMembers(const BaseDataItemEnumLeaf& other)
{
  _value = other._value;
}

// Failures name the operation that was called, not the part of it that raises.

void BaseDataItemEnumLeaf::writeMembers(BaseOArchive& archive) const
{
  constexpr const char* caller =
      "virtual orvel::BoolResult orvel::BaseDataItemEnumLeaf::write(orvel::BaseOArchive&) const";
  std::string text;
  if (!toString(_value, text))
    raise(ORVEL_HERE_IN(caller), eDataItemMessage::eInvalidEnumIntValue, _value, getEnumNameStr());
  archive << SerializationOItem("enumValue", text);
}

void BaseDataItemEnumLeaf::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  constexpr const char* caller =
      "virtual orvel::BoolResult orvel::BaseDataItemEnumLeaf::read(orvel::BaseIArchive&)";
  std::string text;
  archive >> SerializationIItem("enumValue", text);
  if (!fromString(text, _value))
    raise(ORVEL_HERE_IN(caller), eDataItemMessage::eInvalidEnumStrValue, text, getEnumNameStr());
}

} // namespace orvel
