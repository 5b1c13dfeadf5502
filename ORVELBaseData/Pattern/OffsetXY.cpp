#include "ORVELBaseData/Pattern/OffsetXY.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(OffsetXY, BaseSerializationObject, 1)

void OffsetXY::copyMembers(const OffsetXY& other)
{
  _xOffset = other._xOffset;
  _yOffset = other._yOffset;
}

void OffsetXY::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_xOffset", _xOffset);
  archive << SerializationOItem("_yOffset", _yOffset);
}

void OffsetXY::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_xOffset", _xOffset);
  archive >> SerializationIItem("_yOffset", _yOffset);
}

} // namespace orvel
