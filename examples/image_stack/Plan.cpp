#include "Plan.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(Plan, BaseObjectWithSkeleton, 1)

Plan::Plan() = default;

Plan::Plan(ipUInt64 nbPixels, const eDataType& dataType)
{
  _pixels.init(nbPixels, dataType);
}

TypedOwnBuffer& Plan::setPixels()
{
  _hasPixels = true;
  return _pixels;
}

void Plan::copyMembers(const Plan& other)
{
  _hasPixels = other._hasPixels;
  _pixels = other._pixels;
}

void Plan::writeMembers(BaseOArchive& archive) const
{
  eSklSrzMode mode = getSerializationMode();
  if (mode != eSklSrzMode::eSSM_Data)
  {
    const bool pixelsFollow = _hasPixels && mode == eSklSrzMode::eSSM_Full;
    archive << SerializationOItem("_hasPixels", pixelsFollow);
    mode = pixelsFollow ? eSklSrzMode::eSSM_Full : eSklSrzMode::eSSM_Skeleton;
  }
  _pixels.setSerializationMode(mode);
  archive << SerializationOItem("_pixels", _pixels);
}

void Plan::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  eSklSrzMode mode = getSerializationMode();
  bool pixelsFollow = true;
  if (mode != eSklSrzMode::eSSM_Data)
  {
    archive >> SerializationIItem("_hasPixels", pixelsFollow);
    mode = pixelsFollow ? eSklSrzMode::eSSM_Full : eSklSrzMode::eSSM_Skeleton;
  }
  _hasPixels = false; // until they are here
  _pixels.setSerializationMode(mode);
  archive >> SerializationIItem("_pixels", _pixels);
  _hasPixels = pixelsFollow;
}

} // namespace orvel
