#include "PreviewColl.h"

#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

// The direct base refuses to be copied: its own base is asked instead.
ORVEL_DEFINE_SERIALIZABLE_COPIED_BY(PreviewColl, BasePtrColl, BaseObjectWithSkeleton, 1)

PreviewColl::PreviewColl() = default;

void PreviewColl::copyMembers(const PreviewColl& other)
{
  if (this == &other)
    return;
  _coll.clear();
  for (const SerializationObjectPtr& preview : other._coll)
    _coll.push_back(preview ? boost::static_pointer_cast<BaseSerializationObject>(preview->duplicateShared())
                            : SerializationObjectPtr());
}

// The root writes and reads the previews; there are no other members.
void PreviewColl::writeMembers(BaseOArchive& /*archive*/) const
{
}

void PreviewColl::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
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
