#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.h"

#include <ORVELBaseData/Pattern/Private/StructuringElementOperations.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementLogMessages.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(StructuringElementXYZ, BaseStructuringElement, 1)

using Operations = details::StructuringElementOperations<StructuringElementXYZ>;

StructuringElementXYZ::StructuringElementXYZ() = default;

void StructuringElementXYZ::insert(const OffsetType& offset)
{
  if (!Operations::insert(*this, offset))
    raise(ORVEL_HERE, eStructuringElementMessage::eInsertExistingSEElt);
}

void StructuringElementXYZ::remove(const OffsetType& offset)
{
  if (!Operations::remove(*this, offset))
    raise(ORVEL_HERE, eStructuringElementMessage::eRemoveMissingSEElt);
}

bool StructuringElementXYZ::exists(const OffsetType& offset) const
{
  return _dataColl.find(offset) != _dataColl.end();
}

ipUInt64 StructuringElementXYZ::getNbData() const
{
  return _dataColl.size();
}

void StructuringElementXYZ::setDataColl(const XYZOffsetColl& offsets)
{
  Operations::setOffsets(*this, offsets);
}

void StructuringElementXYZ::clear()
{
  Operations::clear(*this);
}

eStructuringElementType StructuringElementXYZ::getStructuringElementType() const
{
  return eStructuringElementType::eSET_XYZ;
}

void StructuringElementXYZ::copyMembers(const StructuringElementXYZ& other)
{
  Operations::copy(*this, other);
}

void StructuringElementXYZ::writeMembers(BaseOArchive& archive) const
{
  Operations::write(*this, archive);
}

void StructuringElementXYZ::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  Operations::read(*this, archive);
}

} // namespace orvel
