#include "ORVELBaseData/Identifier/DataIdentifier.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(DataIdentifier, SerializationObjectWithGuid, 1)

DataIdentifier::DataIdentifier() = default;

void DataIdentifier::copyMembers(const DataIdentifier& other)
{
  _name = other._name;
}

void DataIdentifier::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_name", _name);
}

void DataIdentifier::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_name", _name);
}

} // namespace orvel
