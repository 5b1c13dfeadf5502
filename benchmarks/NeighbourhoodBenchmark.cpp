// Structuring elements and kernels beside the naive way of making them: plain insertion, then a copy.
//
// Where they are installed, OpenCV and ITK make the same shapes. Theirs are masks, a byte or a truth value
// for each place of the box, ours are sets of offsets: what takes longer to make is shorter to walk.

#include <cstddef>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>

#include <boost/make_shared.hpp>

#include "BenchmarkSupport.h"

#ifdef ORVEL_BENCHMARK_ITK
#include <itkFlatStructuringElement.h>
#endif
#ifdef ORVEL_BENCHMARK_OPENCV
#include <opencv2/imgproc.hpp>
#endif

#include <ORVELBaseData/Pattern/Kernel/KernelUtils.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h>

namespace orvel::benchmarks
{

namespace
{

template <class IsKept>
StructuringElementXYPtr scanNaively(int halfSize, IsKept isKept)
{
  XYOffsetColl offsets;
  for (int y = -halfSize; y <= halfSize; ++y)
    for (int x = -halfSize; x <= halfSize; ++x)
      if (isKept(x, y))
        offsets.insert(OffsetXY(x, y));
  auto element = boost::make_shared<StructuringElementXY>();
  element->setDataColl(offsets);
  return element;
}

template <class IsKept>
StructuringElementXYZPtr scanNaively3d(int halfSize, IsKept isKept)
{
  XYZOffsetColl offsets;
  for (int z = -halfSize; z <= halfSize; ++z)
    for (int y = -halfSize; y <= halfSize; ++y)
      for (int x = -halfSize; x <= halfSize; ++x)
        if (isKept(x, y, z))
          offsets.insert(OffsetXYZ(x, y, z));
  auto element = boost::make_shared<StructuringElementXYZ>();
  element->setDataColl(offsets);
  return element;
}

/// The kernel of a square box, made and then copied.
std::map<OffsetXY, ipReal32> makeKernelNaively(int halfSize, const Real32Vector& values)
{
  std::map<OffsetXY, ipReal32> taps;
  ipReal32 sum = 0;
  std::size_t i = 0;
  for (int y = -halfSize; y <= halfSize; ++y)
    for (int x = -halfSize; x <= halfSize; ++x, ++i)
      if (values[i] != 0)
      {
        taps.insert({OffsetXY(x, y), values[i]});
        sum += values[i];
      }
  benchmark::DoNotOptimize(sum);
  return std::map<OffsetXY, ipReal32>(taps.begin(), taps.end());
}

Real32Vector makeValues(int halfSize)
{
  std::mt19937 random(20240229U);
  std::uniform_real_distribution<ipReal32> distribution(0.5F, 1.5F);
  const auto side = static_cast<std::size_t>(2 * halfSize + 1);
  Real32Vector values(side * side);
  for (ipReal32& value : values)
    value = distribution(random);
  return values;
}

/// Enters a case that makes something and throws it away.
/// \param count returns the number of offsets or taps of what make() made
template <class Make, class Count>
void addMaking(const std::string& group, const std::string& side, std::size_t expected, Make make,
               Count count)
{
  addCase(
      group, side,
      [=](benchmark::State& state)
      {
        std::size_t found = 0;
        for ([[maybe_unused]] auto _ : state)
        {
          auto made = make();
          benchmark::DoNotOptimize(made);
          state.PauseTiming();
          found = count(made);
          state.ResumeTiming();
        }
        check(state, found == expected, "another number of offsets");
      },
      benchmark::kMicrosecond);
}

template <class Make, class MakeNaively>
void addElement(const std::string& group, Make make, MakeNaively makeNaively)
{
  const auto count = [](const auto& element)
  {
    return static_cast<std::size_t>(element->getNbData());
  };
  const std::size_t expected = count(makeNaively());
  addMaking(group, "orvel", expected, make, count);
  addMaking(group, "naive", expected, makeNaively, count);
}

void addDiscs()
{
  for (const int radius : {1, 3, 10, 30, 50, 100})
  {
    const auto isKept = [=](int x, int y)
    {
      return x * x + y * y <= radius * radius;
    };
    const std::string group = "disc/" + std::to_string(radius);
    addElement(
        group, [=] { return circularSEXY(radius); }, [=] { return scanNaively(radius, isKept); });
#ifdef ORVEL_BENCHMARK_OPENCV
    const auto side = static_cast<std::size_t>(2 * radius + 1);
    addMaking(
        group, "opencv", side * side,
        [=] {
          return cv::getStructuringElement(cv::MORPH_ELLIPSE, {2 * radius + 1, 2 * radius + 1});
        },
        [](const cv::Mat& mask) { return mask.total(); });
#endif
  }
}

void addBalls()
{
  for (const int radius : {1, 3, 10, 30, 50, 100})
  {
    const auto isKept = [=](int x, int y, int z)
    {
      return x * x + y * y + z * z <= radius * radius;
    };
    const std::string group = "ball/" + std::to_string(radius);
    addElement(
        group, [=] { return sphericalSEXYZ(radius); }, [=] { return scanNaively3d(radius, isKept); });
#ifdef ORVEL_BENCHMARK_ITK
    using ItkElement = itk::FlatStructuringElement<3>;
    ItkElement::RadiusType size;
    size.Fill(static_cast<itk::SizeValueType>(radius));
    const auto side = static_cast<std::size_t>(2 * radius + 1);
    addMaking(
        group, "itk", side * side * side, [=] { return ItkElement::Ball(size); },
        [](const ItkElement& mask) { return static_cast<std::size_t>(mask.Size()); });
#endif
  }
}

void addOthers()
{
  addElement(
      "box/31x31x31", [] { return cubicSEXYZ(15); },
      [] { return scanNaively3d(15, [](int, int, int) { return true; }); });
  addElement(
      "segment/1000", [] { return linearSEXY(0.4, 1000.5); },
      []
      {
        const StructuringElementXYPtr walked = linearSEXY(0.4, 1000.5);
        auto element = boost::make_shared<StructuringElementXY>();
        for (const OffsetXY& offset : walked->getDataColl())
          element->insert(offset);
        return element;
      });

  constexpr int half = 500;
  const Real32Vector values = makeValues(half);
  addMaking(
      "dense_kernel/1M", "orvel", values.size(), [=] { return squareKernelXY(half, values, false); },
      [](const KernelXYPtr& kernel) { return kernel->getDataColl().size(); });
  addMaking(
      "dense_kernel/1M", "naive", values.size(), [=] { return makeKernelNaively(half, values); },
      [](const std::map<OffsetXY, ipReal32>& taps) { return taps.size(); });

  // Rotation beside the making of the kernel that is turned, a copy of a description beside that of its
  // element.
  const KernelXYPtr kernel = squareKernelXY(50, makeValues(50), false);
  const std::size_t nbTurned = rotate2dKernel(0.4F, kernel)->getDataColl().size();
  addMaking(
      "rotate/101x101", "orvel", nbTurned, [=] { return rotate2dKernel(0.4F, kernel); },
      [](const KernelXYPtr& turned) { return turned->getDataColl().size(); });
  addMaking(
      "rotate/101x101", "making", kernel->getDataColl().size(),
      [=, values50 = makeValues(50)] { return squareKernelXY(50, values50, false); },
      [](const KernelXYPtr& made) { return made->getDataColl().size(); });

  const StructuringElementXYZInfoPtr info = sphericalSEXYZInfo(20);
  const std::size_t nbOffsets = info->getDataColl().size();
  addMaking(
      "description_copy/ball_20", "orvel", nbOffsets,
      [=]
      {
        auto copy = boost::make_shared<StructuringElementXYZInfo>();
        *copy = *info;
        return copy;
      },
      [](const StructuringElementXYZInfoPtr& copy) { return copy->getDataColl().size(); });
  addMaking(
      "description_copy/ball_20", "set", nbOffsets, [=] { return XYZOffsetColl(info->getDataColl()); },
      [](const XYZOffsetColl& offsets) { return offsets.size(); });
}

} // namespace

void addNeighbourhoodCases()
{
  addDiscs();
  addBalls();
  addOthers();
}

} // namespace orvel::benchmarks
