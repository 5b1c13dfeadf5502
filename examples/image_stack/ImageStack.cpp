#include "ImageStack.h"

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(ImageStack, BaseObjectWithSkeleton, 1)

ImageStack::ImageStack() = default;

ImageStack::ImageStack(ipUInt64 sizeX, ipUInt64 sizeY)
  : _sizeX(sizeX)
  , _sizeY(sizeY)
{
}

void ImageStack::copyMembers(const ImageStack& other)
{
  _sizeX = other._sizeX;
  _sizeY = other._sizeY;
  _calibration = other._calibration;
  _plans = other._plans;
  _previews = other._previews;
}

void ImageStack::writeMembers(BaseOArchive& archive) const
{
  if (getSerializationMode() != eSklSrzMode::eSSM_Data)
  {
    archive << SerializationOItem("_sizeX", _sizeX);
    archive << SerializationOItem("_sizeY", _sizeY);
    archive << SerializationOItem("_calibration", _calibration);
  }
  _plans.setSerializationMode(getSerializationMode());
  archive << SerializationOItem("_plans", _plans);
  _previews.setSerializationMode(getSerializationMode());
  archive << SerializationOItem("_previews", _previews);
}

void ImageStack::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  if (getSerializationMode() != eSklSrzMode::eSSM_Data)
  {
    archive >> SerializationIItem("_sizeX", _sizeX);
    archive >> SerializationIItem("_sizeY", _sizeY);
    archive >> SerializationIItem("_calibration", _calibration);
  }
  _plans.setSerializationMode(getSerializationMode());
  archive >> SerializationIItem("_plans", _plans);
  _previews.setSerializationMode(getSerializationMode());
  archive >> SerializationIItem("_previews", _previews);
}

} // namespace orvel
