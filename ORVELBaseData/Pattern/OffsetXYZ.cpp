#include "ORVELBaseData/Pattern/OffsetXYZ.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(OffsetXYZ, BaseSerializationObject, 1)

void OffsetXYZ::copyMembers(const OffsetXYZ& other)
{
  _xOffset = other._xOffset;
  _yOffset = other._yOffset;
  _zOffset = other._zOffset;
}

void OffsetXYZ::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_xOffset", _xOffset);
  archive << SerializationOItem("_yOffset", _yOffset);
  archive << SerializationOItem("_zOffset", _zOffset);
}

void OffsetXYZ::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_xOffset", _xOffset);
  archive >> SerializationIItem("_yOffset", _yOffset);
  archive >> SerializationIItem("_zOffset", _zOffset);
}

} // namespace orvel
