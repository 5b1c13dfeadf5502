#include "PreviewColl.h"

namespace orvel
{

ORVEL_DEFINE_TYPE_NAME(PreviewColl)
ORVEL_DEFINE_CLASS_NAME_OF(, PreviewColl)
ORVEL_DEFINE_VERSION(PreviewColl, 1)
ORVEL_DEFINE_ARCHIVING_OF(, PreviewColl, BasePtrColl, , )
ORVEL_DEFINE_CREATION(PreviewColl, BasePtrColl)

PreviewColl::PreviewColl() = default;

// The direct base refuses to be copied: the previews are copied here, and its own base is asked instead.
void PreviewColl::copy(const BaseDynamicObject& other)
{
  if (this == &other)
    return;
  BaseObjectWithSkeleton::copy(other);
  _coll.clear();
  for (const SerializationObjectPtr& preview : static_cast<const PreviewColl&>(other)._coll)
    _coll.push_back(preview ? boost::static_pointer_cast<BaseSerializationObject>(preview->duplicateShared())
                            : SerializationObjectPtr());
}

const std::string& PreviewColl::getElementTypeName() const
{
  return Plan::getTypeName();
}

bool PreviewColl::hasSkeletonElements() const
{
  return true;
}

PlanPtr PreviewColl::getPreview(std::size_t channel) const
{
  return boost::dynamic_pointer_cast<Plan>(_coll.at(channel));
}

void PreviewColl::push_back(const PlanPtr& preview)
{
  _coll.emplace_back(preview);
}

} // namespace orvel
