#include "PlanColl.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

// The direct base refuses to be copied: its own base is asked instead.
ORVEL_DEFINE_SERIALIZABLE_COPIED_BY(PlanColl, BasePlanIndexedColl, BaseObjectWithSkeleton, 1)

PlanColl::PlanColl() = default;

void PlanColl::copyMembers(const PlanColl& other)
{
  if (this == &other)
    return;
  clear();
  for (const auto& [planIndex, plan] : other.getBaseColl())
    insert(planIndex, boost::static_pointer_cast<BaseSerializationObject>(plan->duplicateShared()));
}

// The root writes and reads the plans; there are no other members.
void PlanColl::writeMembers(BaseOArchive& /*archive*/) const
{
}

void PlanColl::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

const std::string& PlanColl::getElementTypeName() const
{
  return Plan::getTypeName();
}

bool PlanColl::hasSkeletonElements() const
{
  return true;
}

const Plan& PlanColl::getPlan(const PlanIndex& planIndex) const
{
  return dynamic_cast<const Plan&>(*getStorage(planIndex));
}

Plan& PlanColl::getPlan(const PlanIndex& planIndex)
{
  return dynamic_cast<Plan&>(*getStorage(planIndex));
}

} // namespace orvel
