// Samples of kernels, for the checks that all classes share.

#include <map>
#include <tuple>

#include "../../Classes/Samples.h"
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

// Kernels have no comparison of their own.

auto valuesOf(const KernelXY& kernel)
{
  return std::make_tuple(kernel.getDataColl(), kernel.getMinX(), kernel.getMinY(), kernel.getSizeX(),
                         kernel.getSizeY(), kernel.getCoefSum(), kernel.getAbsCoefSum());
}

auto valuesOf(const KernelXYZ& kernel)
{
  return std::make_tuple(kernel.getDataColl(), kernel.getMinX(), kernel.getMinY(), kernel.getMinZ(),
                         kernel.getSizeX(), kernel.getSizeY(), kernel.getSizeZ(), kernel.getCoefSum(),
                         kernel.getAbsCoefSum());
}

template <class Kernel>
Sample makeKernelSample(const Kernel& kernel)
{
  return makeSample(kernel, [](const Kernel& left, const Kernel& right)
                    { return valuesOf(left) == valuesOf(right); });
}

KernelXY makeKernelXY()
{
  KernelXY kernel;
  kernel.insert(OffsetXY(0, 0), 0.5F);
  kernel.insert(OffsetXY(-1, 2), -1.25F);
  kernel.insert(OffsetXY(3, 0), 2.0F);
  return kernel;
}

KernelXYZ makeKernelXYZ()
{
  KernelXYZ kernel;
  kernel.insert(OffsetXYZ(0, 0, 0), 0.5F);
  kernel.insert(OffsetXYZ(-1, 2, 1), -1.25F);
  kernel.insert(OffsetXYZ(3, 0, -2), 2.0F);
  return kernel;
}

template <class Kernel>
std::vector<Sample> makeKernelSamples(const Kernel& kernel)
{
  Kernel emptied = kernel; // minimum 2147483647 and size 2 on every axis
  while (emptied.getNbData() != 0)
    emptied.remove(emptied.getDataColl().begin()->first);
  return {makeKernelSample(kernel), asNew(makeKernelSample(Kernel())), makeKernelSample(emptied)};
}

// Version 1 had no sum of absolute values.

void writeVersion1XY(BaseOArchive& archive)
{
  writeVersion(archive, "orvel::BaseKernel", 1);
  writeVersion(archive, "orvel::KernelXY", 1);
  writeItem(archive, "_dataColl",
            std::map<OffsetXY, ipReal32>{{OffsetXY(0, 0), 1.5F}, {OffsetXY(1, 0), -0.5F}});
  writeItem<ipInt32>(archive, "_minX", 0);
  writeItem<ipInt32>(archive, "_minY", 0);
  writeItem<ipUInt32>(archive, "_sizeX", 2);
  writeItem<ipUInt32>(archive, "_sizeY", 1);
  writeItem<ipReal32>(archive, "_coefSum", 1.0F);
}

void writeVersion1XYZ(BaseOArchive& archive)
{
  writeVersion(archive, "orvel::BaseKernel", 1);
  writeVersion(archive, "orvel::KernelXYZ", 1);
  writeItem(archive, "_dataColl",
            std::map<OffsetXYZ, ipReal32>{{OffsetXYZ(0, 0, 0), 1.5F}, {OffsetXYZ(1, 0, 0), -0.5F}});
  writeItem<ipInt32>(archive, "_minX", 0);
  writeItem<ipInt32>(archive, "_minY", 0);
  writeItem<ipInt32>(archive, "_minZ", 0);
  writeItem<ipUInt32>(archive, "_sizeX", 2);
  writeItem<ipUInt32>(archive, "_sizeY", 1);
  writeItem<ipUInt32>(archive, "_sizeZ", 1);
  writeItem<ipReal32>(archive, "_coefSum", 1.0F);
}

/// What a kernel of version 1 with the coefficients 1.5 and -0.5 becomes: |v| + v each, the sum as it was
/// stored, no sum of absolute values.
template <class Kernel, class Values>
Sample makeKernelOfVersion1(Values values)
{
  Sample sample = makeKernelSample(Kernel());
  sample.equals = [=](const BaseSerializationObject& other)
  {
    const auto* const kernel = dynamic_cast<const Kernel*>(&other);
    return kernel != nullptr && valuesOf(*kernel) == values;
  };
  return sample;
}

std::vector<OldSample> makeOldKernelXYSamples()
{
  return {{1, writeVersion1XY,
           makeKernelOfVersion1<KernelXY>(
               std::make_tuple(std::map<OffsetXY, ipReal32>{{OffsetXY(0, 0), 3.0F}, {OffsetXY(1, 0), 0.0F}},
                               0, 0, 2U, 1U, 1.0F, 0.0F))}};
}

std::vector<OldSample> makeOldKernelXYZSamples()
{
  return {{1, writeVersion1XYZ,
           makeKernelOfVersion1<KernelXYZ>(std::make_tuple(
               std::map<OffsetXYZ, ipReal32>{{OffsetXYZ(0, 0, 0), 3.0F}, {OffsetXYZ(1, 0, 0), 0.0F}}, 0, 0, 0,
               2U, 1U, 1U, 1.0F, 0.0F))}};
}

const ClassSamples g_kernelXY(
    "orvel::KernelXY", [] { return makeKernelSamples(makeKernelXY()); }, makeOldKernelXYSamples);
const ClassSamples g_kernelXYZ(
    "orvel::KernelXYZ", [] { return makeKernelSamples(makeKernelXYZ()); }, makeOldKernelXYZSamples);

} // namespace
