#pragma once

#include "Plan.h"
#include <ORVELBaseData/PlanIndex/BasePlanIndexedColl.h>

namespace orvel
{

/// \brief The plans of an image along z, c and t.
///
/// The root keeps and archives them; this class says what they are, is created by name and makes deep copies.
class IMAGE_STACK_EXPORT PlanColl : public BasePlanIndexedColl
{
  ORVEL_DECLARE_SERIALIZABLE(PlanColl)

public:
  PlanColl();

  const std::string& getElementTypeName() const override; ///< "orvel::Plan"
  bool hasSkeletonElements() const override;              ///< true: plans take over the serialization mode

  /// \brief Return a plan. \throw ORVELBaseDataException (ePlanNotFound) if it is not there
  const Plan& getPlan(const PlanIndex& planIndex) const;
  Plan& getPlan(const PlanIndex& planIndex); ///< \copydoc getPlan(const PlanIndex&) const
};

} // namespace orvel
