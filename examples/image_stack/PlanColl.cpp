#include "PlanColl.h"

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(PlanColl)
ORVEL_DEFINE_CLASS_NAME_OF(, PlanColl)
ORVEL_DEFINE_VERSION(PlanColl, 1)
ORVEL_DEFINE_ARCHIVING_OF(, PlanColl, BasePlanIndexedColl, , )
ORVEL_DEFINE_CREATION(PlanColl, BasePlanIndexedColl)

PlanColl::PlanColl() = default;

// The direct base refuses to be copied: the plans are copied here, and its own base is asked instead.
void PlanColl::copy(const BaseDynamicObject& other)
{
  if (this == &other)
    return;
  BaseObjectWithSkeleton::copy(other);
  clear();
  for (const auto& [planIndex, plan] : static_cast<const PlanColl&>(other).getBaseColl())
    insert(planIndex, boost::static_pointer_cast<BaseSerializationObject>(plan->duplicateShared()));
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
