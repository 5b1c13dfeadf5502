#include "ORVELBaseData/PtrColl/BasePtrColl.h"

#include <ORVELBaseData/Private/ObjectColl.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE_WITHOUT_COPY(BasePtrColl, BaseObjectWithSkeleton, 1)

BasePtrColl::BasePtrColl() = default;

BasePtrColl::~BasePtrColl() = default;

void BasePtrColl::writeMembers(BaseOArchive& archive) const
{
  details::writeObjectColl(archive, *this, "_coll", _coll);
}

void BasePtrColl::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  details::readObjectColl(archive, *this, "_coll", _coll);
}

} // namespace orvel
