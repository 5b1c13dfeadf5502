#include "ORVELBaseData/Identifier/StringIdentifier.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(StringIdentifier, BaseIdentifier, 1)

StringIdentifier::StringIdentifier() = default;

StringIdentifier::StringIdentifier(const std::string& value)
  : _value(value)
{
}

void StringIdentifier::copyMembers(const StringIdentifier& other)
{
  _value = other._value;
}

void StringIdentifier::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_value", _value);
}

void StringIdentifier::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_value", _value);
}

} // namespace orvel
