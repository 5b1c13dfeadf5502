#include "ORVELBaseData/PlanIndex/BasePlanIndexedColl.h"

#include <algorithm>
#include <iterator>

#include <ORVELBaseData/PlanIndex/PlanIndexLogMessages.h>
#include <ORVELBaseData/Private/ObjectColl.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE_WITHOUT_COPY(BasePlanIndexedColl, BaseObjectWithSkeleton, 1)

namespace
{

using PlanMap = std::map<PlanIndex, SerializationObjectPtr>;

ipUInt64 extentOf(const PlanMap& plans, ipUInt64 (PlanIndex::*getIndex)() const)
{
  ipUInt64 extent = 0;
  for (const PlanMap::value_type& plan : plans)
    extent = std::max(extent, (plan.first.*getIndex)() + 1); // the largest index wraps to 0
  return extent;
}

[[noreturn]] void raisePlan(const SourceLocation& here, ePlanIndexMessage::domain id,
                            const PlanIndex& planIndex)
{
  raise(here, id, planIndex.getZPlanIdx(), planIndex.getCPlanIdx(), planIndex.getTPlanIdx());
}

// The prototype if it is the object of a plan: it must outlive the removal of the plans.
SerializationObjectPtr findObject(const PlanMap& plans, const BaseSerializationObject& prototype)
{
  const auto found =
      std::find_if(plans.begin(), plans.end(),
                   [&](const PlanMap::value_type& plan) { return plan.second.get() == &prototype; });
  return found == plans.end() ? SerializationObjectPtr() : found->second;
}

} // namespace

BasePlanIndexedColl::BasePlanIndexedColl() = default;

BasePlanIndexedColl::~BasePlanIndexedColl() = default;

ipUInt64 BasePlanIndexedColl::getMaxSizeZ() const
{
  return extentOf(_planIndexedColl, &PlanIndex::getZPlanIdx);
}

ipUInt64 BasePlanIndexedColl::getMaxSizeC() const
{
  return extentOf(_planIndexedColl, &PlanIndex::getCPlanIdx);
}

ipUInt64 BasePlanIndexedColl::getMaxSizeT() const
{
  return extentOf(_planIndexedColl, &PlanIndex::getTPlanIdx);
}

bool BasePlanIndexedColl::exists(const PlanIndex& planIndex) const
{
  return _planIndexedColl.count(planIndex) != 0;
}

bool BasePlanIndexedColl::exists(ipUInt64 z, ipUInt64 c, ipUInt64 t) const
{
  return exists(PlanIndex(z, c, t));
}

bool BasePlanIndexedColl::isComplete(ipUInt64 sizeZ, ipUInt64 sizeC, ipUInt64 sizeT) const
{
  const ipUInt64 nbPlans = sizeZ * sizeC * sizeT; // may wrap
  if (nbPlans != getNbPlans())
    return false;
  if (nbPlans == 0)
    return true;
  const PlanIndex& last = _planIndexedColl.rbegin()->first;
  return sizeZ == last.getZPlanIdx() + 1 && sizeC == last.getCPlanIdx() + 1 &&
         sizeT == last.getTPlanIdx() + 1;
}

bool BasePlanIndexedColl::isComplete() const
{
  return isComplete(getMaxSizeZ(), getMaxSizeC(), getMaxSizeT());
}

const PlanIndex& BasePlanIndexedColl::getPlanIndex(ipUInt64 planOffset) const
{
  if (planOffset >= getNbPlans())
    raise(ORVEL_HERE, ePlanIndexMessage::eInvalidPlanOffset, planOffset, getNbPlans());
  return std::next(_planIndexedColl.begin(), static_cast<std::ptrdiff_t>(planOffset))->first;
}

const SerializationObjectPtr& BasePlanIndexedColl::find(const PlanIndex& planIndex,
                                                        const SourceLocation& here) const
{
  const auto found = _planIndexedColl.find(planIndex);
  if (found == _planIndexedColl.end())
    raisePlan(here, ePlanIndexMessage::ePlanNotFound, planIndex);
  return found->second;
}

SerializationObjectConstPtr BasePlanIndexedColl::getStorage(const PlanIndex& planIndex) const
{
  return find(planIndex, ORVEL_HERE);
}

const SerializationObjectPtr& BasePlanIndexedColl::getStorage(const PlanIndex& planIndex)
{
  return find(planIndex, ORVEL_HERE);
}

void BasePlanIndexedColl::insert(const PlanIndex& planIndex, const SerializationObjectPtr& object)
{
  if (!object)
    raisePlan(ORVEL_HERE, ePlanIndexMessage::eNullPlanPtr, planIndex);
  if (!_planIndexedColl.try_emplace(planIndex, object).second)
    raisePlan(ORVEL_HERE, ePlanIndexMessage::ePlanAlreadyExists, planIndex);
}

void BasePlanIndexedColl::assign(const BaseSerializationObject& prototype, ipUInt64 sizeZ, ipUInt64 sizeC,
                                 ipUInt64 sizeT)
{
  const SerializationObjectPtr held = findObject(_planIndexedColl, prototype);
  clear();
  if (sizeC == 0 || sizeT == 0)
    return; // spares a long walk along z that would enter nothing

  for (ipUInt64 z = 0; z < sizeZ; ++z)
  {
    for (ipUInt64 c = 0; c < sizeC; ++c)
    {
      for (ipUInt64 t = 0; t < sizeT; ++t)
        _planIndexedColl[PlanIndex(z, c, t)] =
            boost::static_pointer_cast<BaseSerializationObject>(prototype.duplicateShared());
    }
  }
}

void BasePlanIndexedColl::clear()
{
  _planIndexedColl.clear();
}

void BasePlanIndexedColl::writeMembers(BaseOArchive& archive) const
{
  details::writeObjectColl(archive, *this, "_planIndexedColl", _planIndexedColl);
}

void BasePlanIndexedColl::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  details::readObjectColl(archive, *this, "_planIndexedColl", _planIndexedColl);
}

} // namespace orvel
