#include "ORVELBaseData/Identifier/SingleIdentifier.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(SingleIdentifier, BaseIdentifier, 1)

SingleIdentifier::SingleIdentifier() // the value is not set
{
}

SingleIdentifier::SingleIdentifier(ipUInt32 value)
  : _value(value)
{
}

void SingleIdentifier::copyMembers(const SingleIdentifier& other)
{
  _value = other._value;
}

void SingleIdentifier::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_value", _value);
}

void SingleIdentifier::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_value", _value);
}

} // namespace orvel
