#include "ORVELBaseData/Pattern/Kernel/Instances/SobelKernel.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "../KernelTesting.h"
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using Floats = std::vector<float>;
using MakeXY = void (*)(const eSobelKernelType&, KernelXYPtr&, KernelXYPtr&);
using MakeXYZ = void (*)(const eSobelKernelType&, KernelXYZPtr&, KernelXYZPtr&, KernelXYZPtr&);

struct Family
{
  std::string name;
  MakeXY makeXY;
  MakeXYZ makeXYZ;
};

const Family g_smoothing = {"separableSobelSmoothing", &separableSobelSmoothing, &separableSobelSmoothing};
const Family g_gradient = {"separableSobelGradient", &separableSobelGradient, &separableSobelGradient};

struct Row
{
  eSobelKernelType type;
  const Family* family;
  Floats coefficients; // from the most negative offset on
  float sum;
  float absSum;
};

const std::vector<Row>& rows()
{
  static const std::vector<Row> g_rows = {
      {eSobelKernelType::eSKT_Scharr3, &g_smoothing, {3, 10, 3}, 16, 16},
      {eSobelKernelType::eSKT_Sobel3, &g_smoothing, {1, 2, 1}, 4, 4},
      {eSobelKernelType::eSKT_Sobel5, &g_smoothing, {1, 4, 6, 4, 1}, 16, 16},
      {eSobelKernelType::eSKT_Sobel7, &g_smoothing, {1, 6, 15, 20, 15, 6, 1}, 64, 64},
      {eSobelKernelType::eSKT_Scharr3, &g_gradient, {-1, 0, 1}, 0, 2},
      {eSobelKernelType::eSKT_Sobel3, &g_gradient, {-1, 0, 1}, 0, 2},
      {eSobelKernelType::eSKT_Sobel5, &g_gradient, {-1, -2, 0, 2, 1}, 0, 6},
      {eSobelKernelType::eSKT_Sobel7, &g_gradient, {-1, -4, -5, 0, 5, 4, 1}, 0, 20},
  };
  return g_rows;
}

std::string nameOf(const Row& row)
{
  return row.family->name + " " + row.type.getText();
}

struct KernelsXY
{
  KernelXYPtr x;
  KernelXYPtr y;
};

struct KernelsXYZ
{
  KernelXYZPtr x;
  KernelXYZPtr y;
  KernelXYZPtr z;
};

KernelsXY makeXY(const Family& family, const eSobelKernelType& type)
{
  KernelsXY kernels;
  family.makeXY(type, kernels.x, kernels.y);
  return kernels;
}

KernelsXYZ makeXYZ(const Family& family, const eSobelKernelType& type)
{
  KernelsXYZ kernels;
  family.makeXYZ(type, kernels.x, kernels.y, kernels.z);
  return kernels;
}

// Whole kernels.

TEST(SobelKernel, SmoothsWithThreeTaps)
{
  const KernelsXY kernels = makeXY(g_smoothing, eSobelKernelType::eSKT_Sobel3);
  EXPECT_EQ(tapsOf(*kernels.x), (TapsXY{{-1, 0, 1}, {0, 0, 2}, {1, 0, 1}}));
  EXPECT_EQ(kernels.x->getCoefSum(), 4);
  EXPECT_EQ(kernels.x->getAbsCoefSum(), 4);
  EXPECT_EQ(boxOf(*kernels.x), (Box{{-1, 0}, {3, 1}}));
}

TEST(SobelKernel, HasTheSameGradientForTheTypesOfThreeTaps)
{
  for (const auto type : {eSobelKernelType::eSKT_Scharr3, eSobelKernelType::eSKT_Sobel3})
  {
    const KernelsXY kernels = makeXY(g_gradient, type);
    EXPECT_EQ(tapsOf(*kernels.x), (TapsXY{{-1, 0, -1}, {0, 0, 0}, {1, 0, 1}}));
    EXPECT_EQ(tapsOf(*kernels.y), (TapsXY{{0, -1, -1}, {0, 0, 0}, {0, 1, 1}}));
    EXPECT_EQ(kernels.x->getCoefSum(), 0);
    EXPECT_EQ(kernels.x->getAbsCoefSum(), 2);
  }
}

TEST(SobelKernel, HasAGradientOfSevenTapsWithAZeroAtTheCentre)
{
  const KernelsXY kernels = makeXY(g_gradient, eSobelKernelType::eSKT_Sobel7);
  EXPECT_EQ(tapsOf(*kernels.x),
            (TapsXY{{-3, 0, -1}, {-2, 0, -4}, {-1, 0, -5}, {0, 0, 0}, {1, 0, 5}, {2, 0, 4}, {3, 0, 1}}));
  EXPECT_TRUE(kernels.x->exists(OffsetXY(0, 0)));
}

/// Expects a row of the table on an axis.
template <class Kernel>
void expectLine(const Kernel& kernel, std::size_t axis, const Row& row)
{
  const int h = static_cast<int>(row.coefficients.size()) / 2;
  ExpectedKernel<KernelTraits<Kernel>::nbAxes> expected;
  for (int i = -h; i <= h; ++i)
  {
    std::array<int, KernelTraits<Kernel>::nbAxes> place = {};
    place[axis] = i;
    expected.insert(place, row.coefficients[static_cast<std::size_t>(i + h)]);
  }
  EXPECT_EQ(expected.differenceTo(kernel), "") << nameOf(row) << " " << axis;
  EXPECT_EQ(kernel.getCoefSum(), row.sum) << nameOf(row);
  EXPECT_EQ(kernel.getAbsCoefSum(), row.absSum) << nameOf(row);
}

TEST(SobelKernel, LaysTheTableOnTheAxesOfThePlane)
{
  for (const Row& row : rows())
  {
    const KernelsXY kernels = makeXY(*row.family, row.type);
    expectLine(*kernels.x, 0, row);
    expectLine(*kernels.y, 1, row);
  }
}

TEST(SobelKernel, LaysTheTableOnTheAxesOfSpace)
{
  for (const Row& row : rows())
  {
    const KernelsXYZ kernels = makeXYZ(*row.family, row.type);
    expectLine(*kernels.x, 0, row);
    expectLine(*kernels.y, 1, row);
    expectLine(*kernels.z, 2, row);
  }
}

// The tables by their law: rows of binomials, and their differences two apart.

Floats convolved(const Floats& row, const Floats& by)
{
  Floats product(row.size() + by.size() - 1);
  for (std::size_t i = 0; i < row.size(); ++i)
    for (std::size_t k = 0; k < by.size(); ++k)
      product[i + k] += row[i] * by[k];
  return product;
}

TEST(SobelKernel, IsBinomialSmoothingWithADifference)
{
  Floats binomial = {1};
  for (const auto type :
       {eSobelKernelType::eSKT_Sobel3, eSobelKernelType::eSKT_Sobel5, eSobelKernelType::eSKT_Sobel7})
  {
    Floats smoothing;
    Floats gradient;
    for (const TapXY& tap : tapsOf(*makeXY(g_smoothing, type).x))
      smoothing.push_back(tap.value);
    for (const TapXY& tap : tapsOf(*makeXY(g_gradient, type).x))
      gradient.push_back(tap.value);
    EXPECT_EQ(gradient, convolved(binomial, {-1, 0, 1}));
    binomial = convolved(binomial, {1, 2, 1});
    EXPECT_EQ(smoothing, binomial);
  }
}

TEST(SobelKernel, IsPositiveAtPositiveOffsetsOfTheGradient)
{
  for (const auto type : {eSobelKernelType::eSKT_Scharr3, eSobelKernelType::eSKT_Sobel3,
                          eSobelKernelType::eSKT_Sobel5, eSobelKernelType::eSKT_Sobel7})
    for (const TapXY& tap : tapsOf(*makeXY(g_gradient, type).x))
      EXPECT_TRUE(tap.x > 0 ? tap.value > 0 : tap.x < 0 ? tap.value < 0 : tap.value == 0) << tap;
}

// The type.

TEST(SobelKernel, TakesAValueThatIsNoneForTheFirst)
{
  for (const ipUInt64 value : {ipUInt64(4), ipUInt64(0xFFFFFFFF), ipUInt64(0x100000007)})
  {
    EXPECT_EQ(tapsOf(*makeXY(g_smoothing, eSobelKernelType(value)).x),
              (TapsXY{{-1, 0, 3}, {0, 0, 10}, {1, 0, 3}}))
        << value;
    EXPECT_EQ(tapsOf(*makeXY(g_gradient, eSobelKernelType(value)).x),
              (TapsXY{{-1, 0, -1}, {0, 0, 0}, {1, 0, 1}}))
        << value;
    EXPECT_EQ(tapsOf(*makeXYZ(g_smoothing, eSobelKernelType(value)).z),
              (TapsXYZ{{0, 0, -1, 3}, {0, 0, 0, 10}, {0, 0, 1, 3}}))
        << value;
  }
}

TEST(SobelKernel, LooksAtTheLow32BitsOfTheTypeAlone)
{
  EXPECT_EQ(tapsOf(*makeXY(g_smoothing, eSobelKernelType(ipUInt64(0x700000001))).x),
            (TapsXY{{-1, 0, 1}, {0, 0, 2}, {1, 0, 1}}));
  EXPECT_EQ(makeXYZ(g_gradient, eSobelKernelType(ipUInt64(0x100000003))).y->getNbData(), 7U);
}

// The pointers.

TEST(SobelKernel, MakesANewKernelForEachPointer)
{
  for (const Row& row : rows())
  {
    const KernelsXYZ kernels = makeXYZ(*row.family, row.type);
    EXPECT_NE(kernels.x, kernels.y) << nameOf(row);
    EXPECT_NE(kernels.y, kernels.z) << nameOf(row);
    for (const KernelXYZPtr* kernel : {&kernels.x, &kernels.y, &kernels.z})
      EXPECT_EQ(kernel->use_count(), 1) << nameOf(row);
    const KernelsXY plane = makeXY(*row.family, row.type);
    EXPECT_NE(plane.x, plane.y) << nameOf(row);
    for (const KernelXYPtr* kernel : {&plane.x, &plane.y})
      EXPECT_EQ(kernel->use_count(), 1) << nameOf(row);
  }
}

TEST(SobelKernel, ReleasesWhatThePointersHeldInTheOrderOfTheAxes)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    std::string released;
    KernelXYPtr planeX = makeNoting<KernelXY>('x', released);
    KernelXYPtr planeY = makeNoting<KernelXY>('y', released);
    family->makeXY(eSobelKernelType::eSKT_Sobel3, planeX, planeY);
    EXPECT_EQ(released, "xy") << family->name;
    EXPECT_EQ(planeX->getNbData(), 3U) << family->name;

    released.clear();
    KernelXYZPtr x = makeNoting<KernelXYZ>('x', released);
    KernelXYZPtr y = makeNoting<KernelXYZ>('y', released);
    KernelXYZPtr z = makeNoting<KernelXYZ>('z', released);
    family->makeXYZ(eSobelKernelType::eSKT_Sobel3, x, y, z);
    EXPECT_EQ(released, "xyz") << family->name;
    EXPECT_EQ(z->getNbData(), 3U) << family->name;
  }
}

TEST(SobelKernel, LeavesTheLastAxisInAPointerGivenForAll)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    KernelXYPtr plane;
    family->makeXY(eSobelKernelType::eSKT_Sobel3, plane, plane);
    EXPECT_EQ(boxOf(*plane), (Box{{0, -1}, {1, 3}})) << family->name;
    KernelXYZPtr space;
    family->makeXYZ(eSobelKernelType::eSKT_Sobel3, space, space, space);
    EXPECT_EQ(boxOf(*space), (Box{{0, 0, -1}, {1, 1, 3}})) << family->name;
  }
}

TEST(SobelKernel, LeavesNullPointersAndNoLeakWhenMemoryRunsOut)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    const auto old = boost::make_shared<KernelXYZ>();
    const auto oldPlane = boost::make_shared<KernelXY>();
    KernelsXYZ space;
    KernelsXY plane;
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    std::size_t nbFailures = failAtEachAllocation(
        [&]
        {
          space = {old, old, old};
          family->makeXYZ(eSobelKernelType::eSKT_Sobel3, space.x, space.y, space.z);
        },
        [&]
        {
          EXPECT_EQ(space.x, nullptr) << family->name;
          EXPECT_EQ(space.y, nullptr) << family->name;
          EXPECT_EQ(space.z, nullptr) << family->name;
          EXPECT_EQ(getNbBlocksInUse(), nbBlocks) << family->name;
        });
    EXPECT_GE(nbFailures, 3U * (1 + 3)) << family->name; // a kernel and its taps, for each axis
    space = {};
    nbFailures = failAtEachAllocation(
        [&]
        {
          plane = {oldPlane, oldPlane};
          family->makeXY(eSobelKernelType::eSKT_Sobel3, plane.x, plane.y);
        },
        [&]
        {
          EXPECT_EQ(plane.x, nullptr) << family->name;
          EXPECT_EQ(plane.y, nullptr) << family->name;
          EXPECT_EQ(getNbBlocksInUse(), nbBlocks) << family->name;
        });
    EXPECT_GE(nbFailures, 2U * (1 + 3)) << family->name;
  }
}

TEST(SobelKernel, IsReentrant)
{
  std::vector<TapsXYZ> made(rows().size());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < made.size(); ++i)
    threads.emplace_back([&, i] { made[i] = tapsOf(*makeXYZ(*rows()[i].family, rows()[i].type).z); });
  for (std::thread& thread : threads)
    thread.join();
  for (std::size_t i = 0; i < made.size(); ++i)
  {
    Floats coefficients;
    for (const TapXYZ& tap : made[i])
      coefficients.push_back(tap.value);
    EXPECT_EQ(coefficients, rows()[i].coefficients) << nameOf(rows()[i]);
  }
}

TEST(SobelKernel, LogsNothing)
{
  const LogCapture log(getORVELBaseDataLogger());
  for (const Row& row : rows())
  {
    makeXY(*row.family, row.type);
    makeXYZ(*row.family, row.type);
  }
  makeXY(g_smoothing, eSobelKernelType(ipUInt64(99)));
  EXPECT_TRUE(log.getRecords().empty());
}

} // namespace
