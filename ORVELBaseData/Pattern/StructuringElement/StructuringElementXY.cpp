#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h"

#include <ORVELBaseData/Pattern/Private/StructuringElementOperations.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementLogMessages.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(StructuringElementXY, BaseStructuringElement, 1)

using Operations = details::StructuringElementOperations<StructuringElementXY>;

StructuringElementXY::StructuringElementXY() = default;

void StructuringElementXY::insert(const OffsetType& offset)
{
  if (!Operations::insert(*this, offset))
    raise(ORVEL_HERE, eStructuringElementMessage::eInsertExistingSEElt);
}

void StructuringElementXY::remove(const OffsetType& offset)
{
  if (!Operations::remove(*this, offset))
    raise(ORVEL_HERE, eStructuringElementMessage::eRemoveMissingSEElt);
}

bool StructuringElementXY::exists(const OffsetType& offset) const
{
  return _dataColl.find(offset) != _dataColl.end();
}

ipUInt64 StructuringElementXY::getNbData() const
{
  return _dataColl.size();
}

void StructuringElementXY::setDataColl(const XYOffsetColl& offsets)
{
  Operations::setOffsets(*this, offsets);
}

void StructuringElementXY::clear()
{
  Operations::clear(*this);
}

eStructuringElementType StructuringElementXY::getStructuringElementType() const
{
  return eStructuringElementType::eSET_XY;
}

void StructuringElementXY::copyMembers(const StructuringElementXY& other)
{
  Operations::copy(*this, other);
}

void StructuringElementXY::writeMembers(BaseOArchive& archive) const
{
  Operations::write(*this, archive);
}

void StructuringElementXY::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  Operations::read(*this, archive);
}

} // namespace orvel
