#include "ORVELBaseData/Identifier/DoubleIdentifier.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(DoubleIdentifier, BaseIdentifier, 1)

DoubleIdentifier::DoubleIdentifier() // the values are not set
{
}

DoubleIdentifier::DoubleIdentifier(ipUInt32 highValue, ipUInt32 lowValue)
  : _highValue(highValue)
  , _lowValue(lowValue)
{
}

void DoubleIdentifier::setValue(ipUInt32 highValue, ipUInt32 lowValue)
{
  _highValue = highValue;
  _lowValue = lowValue;
}

void DoubleIdentifier::copyMembers(const DoubleIdentifier& other)
{
  setValue(other._highValue, other._lowValue);
}

void DoubleIdentifier::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_highValue", _highValue);
  archive << SerializationOItem("_lowValue", _lowValue);
}

void DoubleIdentifier::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  ipUInt32 highValue = 0;
  ipUInt32 lowValue = 0;
  archive >> SerializationIItem("_highValue", highValue);
  archive >> SerializationIItem("_lowValue", lowValue);
  setValue(highValue, lowValue); // together: a failure between the two leaves the old pair whole
}

} // namespace orvel
