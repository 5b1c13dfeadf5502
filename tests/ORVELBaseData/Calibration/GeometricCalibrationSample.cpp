// Samples of calibrations, for the checks that all classes share.

#include <limits>

#include "../Classes/Samples.h"
#include <ORVELBaseData/Calibration/GeometricCalibration.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

std::vector<Sample> makeCalibrationSamples()
{
  constexpr ipReal32 largest = std::numeric_limits<ipReal32>::max();
  constexpr ipReal32 smallest = std::numeric_limits<ipReal32>::denorm_min();
  return {makeSample(*createGeometricCalibration3d(0.5F, 0.25F, 2.0F, "mm", -1.5F, 2.25F, 1000.0F, 0.5F,
                                                   -0.5F, 0.25F, 0.75F)),
          asNew(makeSample(GeometricCalibration())), // no rotation at all
          makeSample(*createGeometricCalibration3d(largest, smallest, 0.1F, "\xC2\xB5m", -largest, -smallest,
                                                   -0.0F, 1.0F / 3.0F, 0.0F, -1.0F, 2.0F))};
}

// Version 1 had neither origin nor rotation.

void writeVersion1(BaseOArchive& archive)
{
  writeVersion(archive, "orvel::GeometricCalibration", 1);
  writeItem<ipReal32>(archive, "_xScale", 0.5F);
  writeItem<ipReal32>(archive, "_yScale", 0.25F);
  writeItem<ipReal32>(archive, "_zScale", 2.0F);
  writeItem<std::string>(archive, "_unitStr", "mm");
}

std::vector<OldSample> makeOldCalibrationSamples()
{
  return {{1, writeVersion1,
           makeSample(*createGeometricCalibration3d(0.5F, 0.25F, 2.0F, "mm", 0, 0, 0, 0, 0, 0, 0))}};
}

const ClassSamples g_calibration("orvel::GeometricCalibration", makeCalibrationSamples,
                                 makeOldCalibrationSamples);

} // namespace
