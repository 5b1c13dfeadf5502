#include "ORVELBaseData/PlanIndex/PlanIndex.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(PlanIndex, BaseSerializationObject, 2)

void PlanIndex::copyMembers(const PlanIndex& other)
{
  _zPlanIdx = other._zPlanIdx;
  _cPlanIdx = other._cPlanIdx;
  _tPlanIdx = other._tPlanIdx;
}

void PlanIndex::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_zPlanIdx", _zPlanIdx);
  archive << SerializationOItem("_cPlanIdx", _cPlanIdx);
  archive << SerializationOItem("_tPlanIdx", _tPlanIdx);
}

void PlanIndex::readMembers(BaseIArchive& archive, ipUInt32 version)
{
  if (version == 1)
  {
    readVersion1(archive);
    return;
  }
  archive >> SerializationIItem("_zPlanIdx", _zPlanIdx);
  archive >> SerializationIItem("_cPlanIdx", _cPlanIdx);
  archive >> SerializationIItem("_tPlanIdx", _tPlanIdx);
}

void PlanIndex::readVersion1(BaseIArchive& archive)
{
  ipUInt32 z = 0;
  ipUInt32 c = 0;
  ipUInt32 t = 0;
  archive >> SerializationIItem("_zPlanIdx", z);
  archive >> SerializationIItem("_cPlanIdx", c);
  archive >> SerializationIItem("_tPlanIdx", t);

  // Stored together: a failure between the reads leaves the old index whole.
  _zPlanIdx = z;
  _cPlanIdx = c;
  _tPlanIdx = t;
}

} // namespace orvel
