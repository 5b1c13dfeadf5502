#pragma once

#include "PlanColl.h"
#include "PreviewColl.h"
#include <ORVELBaseData/Calibration/GeometricCalibration.h>

namespace orvel
{

/// \brief An image of many plans: its extents, its calibration, its plans and a preview per channel.
///
/// Extents along x and y are in pixels. The serialization mode goes on to the plans and the previews; in mode
/// eSSM_Data an archive holds their pixels alone.
class IMAGE_STACK_EXPORT ImageStack : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_SERIALIZABLE(ImageStack)

public:
  ImageStack(); ///< without plans
  ImageStack(ipUInt64 sizeX, ipUInt64 sizeY);

  ipUInt64 getSizeX() const { return _sizeX; } ///< pixels along x
  ipUInt64 getSizeY() const { return _sizeY; } ///< pixels along y

  const GeometricCalibration& getCalibration() const { return _calibration; }
  const PlanColl& getPlans() const { return _plans; }
  const PreviewColl& getPreviews() const { return _previews; }

  GeometricCalibration& accessCalibration() { return _calibration; }
  PlanColl& accessPlans() { return _plans; }
  PreviewColl& accessPreviews() { return _previews; }

private:
  ipUInt64 _sizeX = 0;
  ipUInt64 _sizeY = 0;
  GeometricCalibration _calibration;
  PlanColl _plans;
  PreviewColl _previews;
};

} // namespace orvel
