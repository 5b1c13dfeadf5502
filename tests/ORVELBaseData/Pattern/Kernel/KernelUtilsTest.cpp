#include "ORVELBaseData/Pattern/Kernel/KernelUtils.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "KernelTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr float g_nan = std::numeric_limits<float>::quiet_NaN();
constexpr float g_infinity = std::numeric_limits<float>::infinity();
constexpr float g_pi = 3.14159265F;
constexpr int g_lowest = -2147483647 - 1;

TapsXYZ inSpace(const TapsXY& taps)
{
  TapsXYZ lifted;
  for (const TapXY& tap : taps)
    lifted.push_back({tap.x, tap.y, 0, tap.value});
  return lifted;
}

// --- Second computations, from the definitions ---------------------------------------------------------

bool isTap(float value, bool keepsZeros)
{
  return std::isnan(value) || value != 0 || keepsZeros;
}

ExpectedKernelXY expectedBox(int hx, int hy, const Real32Vector& values, bool keepsZeros)
{
  ExpectedKernelXY kernel;
  std::size_t next = 0;
  for (int y = -hy; y <= hy; ++y)
    for (int x = -hx; x <= hx; ++x)
    {
      const float value = values.at(next++);
      if (isTap(value, keepsZeros))
        kernel.insert({x, y}, value);
    }
  return kernel;
}

ExpectedKernelXYZ expectedBox(int hx, int hy, int hz, const Real32Vector& values, bool keepsZeros)
{
  ExpectedKernelXYZ kernel;
  std::size_t next = 0;
  for (int z = -hz; z <= hz; ++z)
    for (int y = -hy; y <= hy; ++y)
      for (int x = -hx; x <= hx; ++x)
      {
        const float value = values.at(next++);
        if (isTap(value, keepsZeros))
          kernel.insert({x, y, z}, value);
      }
  return kernel;
}

using DirectionXY = std::array<float, 2>;
using DirectionXYZ = std::array<float, 3>;

DirectionXY directionOf(float orientation)
{
  return {std::cos(orientation), std::sin(orientation)};
}

DirectionXYZ directionOf(float polarAngle, float azimuthAngle)
{
  return {std::sin(polarAngle) * std::cos(azimuthAngle), std::sin(polarAngle) * std::sin(azimuthAngle),
          std::cos(polarAngle)};
}

std::size_t dominantAxisOf(const DirectionXY& d)
{
  return std::fabs(d[0]) >= std::fabs(d[1]) ? 0 : 1;
}

std::size_t dominantAxisOf(const DirectionXYZ& d)
{
  if (std::fabs(d[0]) >= std::fabs(d[1]) && std::fabs(d[0]) >= std::fabs(d[2]))
    return 0;
  return std::fabs(d[1]) >= std::fabs(d[2]) ? 1 : 2;
}

int nearest(float coordinate)
{
  const double magnitude = std::floor(std::fabs(static_cast<double>(coordinate)) + 0.5);
  return static_cast<int>(coordinate < 0 ? -magnitude : magnitude);
}

template <std::size_t nbAxes>
ExpectedKernel<nbAxes> expectedSnappedLine(const std::array<float, nbAxes>& d, const Real32Vector& values,
                                           bool keepsZeros)
{
  const std::size_t dominant = dominantAxisOf(d);
  const int h = static_cast<int>(values.size()) / 2;
  ExpectedKernel<nbAxes> kernel;
  for (int i = -h; i <= h; ++i)
  {
    std::array<int, nbAxes> place = {};
    for (std::size_t axis = 0; axis < nbAxes; ++axis)
    {
      const float step = d[axis] / std::fabs(d[dominant]);
      place[axis] = nearest(step * static_cast<float>(i));
    }
    place[dominant] = d[dominant] > 0 ? i : -i;
    const float value = values.at(static_cast<std::size_t>(i + h));
    if (isTap(value, keepsZeros))
      kernel.insert(place, value);
  }
  return kernel;
}

template <std::size_t nbAxes>
void addExpectedShare(ExpectedKernel<nbAxes>& kernel, const std::array<int, nbAxes>& place, float share,
                      bool keepsZeros)
{
  if (!isTap(share, keepsZeros))
    return;
  if (kernel.has(place))
    kernel.replace(place, kernel.at(place) + share);
  else
    kernel.insert(place, share);
}

ExpectedKernelXY expectedInterpolatedLine(const DirectionXY& d, const Real32Vector& values, bool keepsZeros)
{
  ExpectedKernelXY kernel;
  const int h = static_cast<int>(values.size()) / 2;
  for (int i = -h; i <= h; ++i)
  {
    const float v = values.at(static_cast<std::size_t>(i + h));
    if (!isTap(v, keepsZeros))
      continue;
    const float fx = d[0] * static_cast<float>(i);
    const float fy = d[1] * static_cast<float>(i);
    const int ix = static_cast<int>(fx);
    const int iy = static_cast<int>(fy);
    const int jx = ix + 1;
    const int jy = iy + 1;
    const float ax = static_cast<float>(jx) - fx;
    const float ay = static_cast<float>(jy) - fy;
    const float bx = fx - static_cast<float>(ix);
    const float by = fy - static_cast<float>(iy);
    addExpectedShare<2>(kernel, {ix, iy}, v * (ax * ay), keepsZeros);
    addExpectedShare<2>(kernel, {ix, jy}, (ax * by) * v, keepsZeros);
    addExpectedShare<2>(kernel, {jx, iy}, (ay * bx) * v, keepsZeros);
    addExpectedShare<2>(kernel, {jx, jy}, (by * bx) * v, keepsZeros);
  }
  return kernel;
}

ExpectedKernelXYZ expectedInterpolatedLine(const DirectionXYZ& d, const Real32Vector& values, bool keepsZeros)
{
  ExpectedKernelXYZ kernel;
  const int h = static_cast<int>(values.size()) / 2;
  for (int i = -h; i <= h; ++i)
  {
    const float v = values.at(static_cast<std::size_t>(i + h));
    if (!isTap(v, keepsZeros))
      continue;
    int first[3];
    float a[3];
    float b[3];
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
      const float f = d[axis] * static_cast<float>(i);
      first[axis] = static_cast<int>(std::trunc(f));
      a[axis] = static_cast<float>(first[axis] + 1) - f;
      b[axis] = f - static_cast<float>(first[axis]);
    }
    const float shares[2][2][2] = {{{v * ((a[0] * a[1]) * a[2]), (a[2] * (a[1] * b[0])) * v},
                                    {(a[2] * (a[0] * b[1])) * v, (a[2] * (b[1] * b[0])) * v}},
                                   {{((a[0] * a[1]) * b[2]) * v, ((a[1] * b[0]) * b[2]) * v},
                                    {((a[0] * b[1]) * b[2]) * v, ((b[1] * b[0]) * b[2]) * v}}};
    for (int z = 0; z < 2; ++z)
      for (int x = 0; x < 2; ++x)
        for (int y = 0; y < 2; ++y)
          addExpectedShare<3>(kernel, {first[0] + x, first[1] + y, first[2] + z}, shares[z][y][x],
                              keepsZeros);
  }
  return kernel;
}

int roundedByHand(float coordinate)
{
  const double exact = static_cast<double>(coordinate);
  // Written out, as the library calls a rounding function. NOLINTNEXTLINE(bugprone-incorrect-roundings)
  return exact > 0 ? static_cast<int>(exact + 0.5) : static_cast<int>(exact - 0.5);
}

ExpectedKernelXY expectedRotation(float angle, const KernelXY& source)
{
  const float sine = std::sin(angle);
  const float cosine = std::cos(angle);
  std::map<std::array<int, 2>, std::vector<float>> arrivals; // y ahead of x
  ExpectedKernelXY kernel;
  for (const TapXY& tap : tapsOf(source))
  {
    const float x = static_cast<float>(tap.x);
    const float y = static_cast<float>(tap.y);
    const int turnedX = roundedByHand(cosine * x - sine * y);
    const int turnedY = roundedByHand(sine * x + cosine * y);
    std::vector<float>& values = arrivals[{turnedY, turnedX}];
    values.push_back(tap.value);
    if (values.size() == 1)
      kernel.insert({turnedX, turnedY}, tap.value);
    else
      kernel.replace({turnedX, turnedY}, (std::fabs(kernel.at({turnedX, turnedY})) + tap.value) * 0.5F);
  }
  for (const auto& [place, values] : arrivals)
    if (values.size() > 1)
      kernel.replace({place[1], place[0]},
                     kernel.at({place[1], place[0]}) / static_cast<float>(values.size()));
  return kernel;
}

// --- Random arguments ----------------------------------------------------------------------------------

class Random
{
public:
  explicit Random(unsigned int seed)
    : _engine(seed)
  {
  }

  int integer(int lowest, int highest)
  {
    return std::uniform_int_distribution<int>(lowest, highest)(_engine);
  }
  bool coin() { return integer(0, 1) == 1; }
  float real(float lowest, float highest)
  {
    return std::uniform_real_distribution<float>(lowest, highest)(_engine);
  }

  /// Coefficients among which there are zeros of both signs, integers, and now and then a NaN.
  Real32Vector values(int size)
  {
    const bool mayBeNaN = integer(0, 9) == 0;
    Real32Vector values;
    for (int i = 0; i < size; ++i)
      switch (integer(0, 7))
      {
      case 0:
        values.push_back(0.0F);
        break;
      case 1:
        values.push_back(-0.0F);
        break;
      case 2:
        values.push_back(static_cast<float>(integer(-5, 5)));
        break;
      case 3:
        values.push_back(mayBeNaN ? g_nan : 0.25F);
        break;
      default:
        values.push_back(real(-10, 10));
      }
    return values;
  }

  /// Of all sizes; multiples of pi / 8 more often than chance has them.
  float angle()
  {
    switch (integer(0, 4))
    {
    case 0:
      return static_cast<float>(integer(-40, 40)) * (g_pi / 8);
    case 1:
      return real(-1e6F, 1e6F);
    case 2:
      return real(-1e-3F, 1e-3F);
    default:
      return real(-7, 7);
    }
  }

private:
  std::mt19937 _engine;
};

// --- Boxes ---------------------------------------------------------------------------------------------

TEST(RectangularKernel, DropsZerosThatStillConsumeTheirValue)
{
  const KernelXYPtr kernel = rectangularKernelXY(1, 0, {1, 0, 2}, false);
  EXPECT_EQ(tapsOf(*kernel), (TapsXY{{-1, 0, 1}, {1, 0, 2}}));
  EXPECT_EQ(kernel->getNbData(), 2U);
  EXPECT_EQ(kernel->getSizeX(), 3U);
}

TEST(RectangularKernel, KeepsZerosWhereAsked)
{
  EXPECT_EQ(tapsOf(*rectangularKernelXY(1, 0, {1, 0, 2}, true)), (TapsXY{{-1, 0, 1}, {0, 0, 0}, {1, 0, 2}}));
  EXPECT_EQ(tapsOf(*rectangularKernelXYZ(1, 0, 0, {1, 0, 2}, true)),
            (TapsXYZ{{-1, 0, 0, 1}, {0, 0, 0, 0}, {1, 0, 0, 2}}));
}

TEST(RectangularKernel, LaysValuesInRasterOrderOfThePlane)
{
  const KernelXYPtr kernel =
      rectangularKernelXY(1, 2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, false);
  EXPECT_EQ(tapsOf(*kernel), (TapsXY{{-1, -2, 1},
                                     {0, -2, 2},
                                     {1, -2, 3},
                                     {-1, -1, 4},
                                     {0, -1, 5},
                                     {1, -1, 6},
                                     {-1, 0, 7},
                                     {0, 0, 8},
                                     {1, 0, 9},
                                     {-1, 1, 10},
                                     {0, 1, 11},
                                     {1, 1, 12},
                                     {-1, 2, 13},
                                     {0, 2, 14},
                                     {1, 2, 15}}));
  EXPECT_EQ(boxOf(*kernel), (Box{{-1, -2}, {3, 5}}));
  EXPECT_EQ(kernel->getCoefSum(), 120);
  EXPECT_EQ(kernel->getAbsCoefSum(), 120);
}

TEST(RectangularKernel, LaysValuesInRasterOrderOfSpace)
{
  const KernelXYZPtr kernel =
      rectangularKernelXYZ(0, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, -15}, false);
  EXPECT_EQ(tapsOf(*kernel), (TapsXYZ{{0, -1, -2, 1},
                                      {0, 0, -2, 2},
                                      {0, 1, -2, 3},
                                      {0, -1, -1, 4},
                                      {0, 0, -1, 5},
                                      {0, 1, -1, 6},
                                      {0, -1, 0, 7},
                                      {0, 0, 0, 8},
                                      {0, 1, 0, 9},
                                      {0, -1, 1, 10},
                                      {0, 0, 1, 11},
                                      {0, 1, 1, 12},
                                      {0, -1, 2, 13},
                                      {0, 0, 2, 14},
                                      {0, 1, 2, -15}}));
  EXPECT_EQ(boxOf(*kernel), (Box{{0, -1, -2}, {1, 3, 5}}));
  EXPECT_EQ(kernel->getCoefSum(), 90);
  EXPECT_EQ(kernel->getAbsCoefSum(), 120);
}

TEST(RectangularKernel, NeedsNineValuesForAFlatBoxOfSpace)
{
  const KernelXYZPtr kernel = rectangularKernelXYZ(1, 0, 1, {1, 2, 3, 4, 5, 6, 7, 8, 9}, false);
  EXPECT_EQ(tapsOf(*kernel), (TapsXYZ{{-1, 0, -1, 1},
                                      {0, 0, -1, 2},
                                      {1, 0, -1, 3},
                                      {-1, 0, 0, 4},
                                      {0, 0, 0, 5},
                                      {1, 0, 0, 6},
                                      {-1, 0, 1, 7},
                                      {0, 0, 1, 8},
                                      {1, 0, 1, 9}}));
  EXPECT_THROW(rectangularKernelXYZ(1, 0, 1, Real32Vector(27), false), ORVELBaseDataException);
}

TEST(RectangularKernel, KeepsNaNAlways)
{
  const KernelXYPtr kernel = rectangularKernelXY(1, 0, {1, g_nan, 0}, false);
  EXPECT_EQ(tapsOf(*kernel), (TapsXY{{-1, 0, 1}, {0, 0, g_nan}}));
  EXPECT_TRUE(std::isnan(kernel->getCoefSum()));
  EXPECT_EQ(cubicKernelXYZ(0, {g_nan}, false)->getNbData(), 1U);
}

TEST(RectangularKernel, TakesANegativeZeroForAZero)
{
  EXPECT_EQ(rectangularKernelXY(0, 0, {-0.0F}, false)->getNbData(), 0U);
  EXPECT_EQ(tapsOf(*rectangularKernelXY(0, 0, {-0.0F}, true)), (TapsXY{{0, 0, -0.0F}}));
}

TEST(RectangularKernel, KeepsInfinityAndTheSmallestNumber)
{
  const float smallest = std::numeric_limits<float>::denorm_min();
  EXPECT_EQ(tapsOf(*rectangularKernelXY(1, 0, {-g_infinity, smallest, 0}, false)),
            (TapsXY{{-1, 0, -g_infinity}, {0, 0, smallest}}));
}

TEST(RectangularKernel, AddsItsSumsUpInTheOrderOfTheValues)
{
  // In single precision 1e8 swallows what comes behind it, not what came before.
  const Real32Vector values = {3, 3, 3, 1e8F, 3, 3, 3, -1e8F, 3};
  float sum = 0;
  for (const float value : values)
    sum += value;
  ASSERT_EQ(sum, 11); // 100000008 from the fourth on, and the threes behind it are lost
  EXPECT_EQ(squareKernelXY(1, values, false)->getCoefSum(), 11);
}

TEST(RectangularKernel, OfNothingButZerosIsAsNew)
{
  const KernelXYPtr kernel = rectangularKernelXY(1, 1, Real32Vector(9), false);
  EXPECT_EQ(kernel->getNbData(), 0U);
  EXPECT_EQ(boxOf(*kernel), (Box{{0, 0}, {0, 0}}));
  EXPECT_EQ(kernel->getCoefSum(), 0);
  EXPECT_EQ(kernel->getAbsCoefSum(), 0);
}

TEST(RectangularKernel, HasABoxOfTheTapsThatAreLeft)
{
  const KernelXYPtr kernel = rectangularKernelXY(2, 1, {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 2, 0}, false);
  EXPECT_EQ(boxOf(*kernel), (Box{{0, 0}, {2, 2}}));
}

TEST(RectangularKernel, IsANewKernelEachTime)
{
  const Real32Vector values = {1, 2, 3};
  const KernelXYPtr one = rectangularKernelXY(1, 0, values, false);
  const KernelXYPtr other = rectangularKernelXY(1, 0, values, false);
  EXPECT_NE(one, other);
  EXPECT_EQ(one.use_count(), 1);
}

TEST(RectangularKernel, AgreesWithPlainLoopsForManyArguments)
{
  Random random(53);
  for (int i = 0; i < 3000; ++i)
  {
    const int hx = random.integer(0, 4);
    const int hy = random.integer(0, 4);
    const int hz = random.integer(0, 3);
    const bool keepsZeros = random.coin();
    const Real32Vector plane = random.values((2 * hx + 1) * (2 * hy + 1));
    ASSERT_EQ(expectedBox(hx, hy, plane, keepsZeros)
                  .differenceTo(*rectangularKernelXY(static_cast<ipUInt32>(hx), static_cast<ipUInt32>(hy),
                                                     plane, keepsZeros)),
              "")
        << hx << " " << hy << " " << keepsZeros;
    const Real32Vector space = random.values((2 * hx + 1) * (2 * hy + 1) * (2 * hz + 1));
    ASSERT_EQ(expectedBox(hx, hy, hz, space, keepsZeros)
                  .differenceTo(*rectangularKernelXYZ(static_cast<ipUInt32>(hx), static_cast<ipUInt32>(hy),
                                                      static_cast<ipUInt32>(hz), space, keepsZeros)),
              "")
        << hx << " " << hy << " " << hz << " " << keepsZeros;
  }
}

TEST(RectangularKernel, FillsItsBox)
{
  for (ipUInt32 hx = 0; hx <= 6; ++hx)
    for (ipUInt32 hy = 0; hy <= 6; ++hy)
    {
      const KernelXYPtr plane =
          rectangularKernelXY(hx, hy, Real32Vector((2 * hx + 1) * (2 * hy + 1), 0.5F), false);
      EXPECT_EQ(plane->getNbData(), (2 * hx + 1) * (2 * hy + 1));
      EXPECT_EQ(boxOf(*plane),
                (Box{{-static_cast<int>(hx), -static_cast<int>(hy)}, {2 * hx + 1, 2 * hy + 1}}));
      EXPECT_EQ(plane->getCoefSum(), static_cast<float>(plane->getNbData()) / 2);
      const KernelXYZPtr space =
          rectangularKernelXYZ(hx, hy, 1, Real32Vector((2 * hx + 1) * (2 * hy + 1) * 3, 0.5F), false);
      EXPECT_EQ(space->getNbData(), 3 * plane->getNbData());
      EXPECT_EQ(boxOf(*space),
                (Box{{-static_cast<int>(hx), -static_cast<int>(hy), -1}, {2 * hx + 1, 2 * hy + 1, 3}}));
    }
}

TEST(SquareKernel, IsARectangularOneOfEqualHalfSizes)
{
  EXPECT_EQ(
      tapsOf(*squareKernelXY(1, {1, 2, 3, 4, 0, 6, 7, 8, 9}, false)),
      (TapsXY{{-1, -1, 1}, {0, -1, 2}, {1, -1, 3}, {-1, 0, 4}, {1, 0, 6}, {-1, 1, 7}, {0, 1, 8}, {1, 1, 9}}));
  EXPECT_EQ(squareKernelXY(1, Real32Vector(9), true)->getNbData(), 9U);
}

TEST(SquareKernel, OfOneValueIsItsCentre)
{
  EXPECT_EQ(tapsOf(*squareKernelXY(0, {5}, false)), (TapsXY{{0, 0, 5}}));
}

TEST(SquareKernel, OfOneZeroIsAsNew)
{
  const KernelXYPtr kernel = squareKernelXY(0, {0}, false);
  EXPECT_EQ(kernel->getNbData(), 0U);
  EXPECT_EQ(boxOf(*kernel), (Box{{0, 0}, {0, 0}}));
  EXPECT_EQ(kernel->getCoefSum(), 0);
  EXPECT_EQ(kernel->getAbsCoefSum(), 0);
}

TEST(CubicKernel, IsARectangularOneOfEqualHalfSizes)
{
  Real32Vector values;
  TapsXYZ taps;
  for (int z = -1; z <= 1; ++z)
    for (int y = -1; y <= 1; ++y)
      for (int x = -1; x <= 1; ++x)
      {
        const auto value = static_cast<float>(x + 10 * y + 100 * z); // 0 at the centre alone
        values.push_back(value);
        taps.push_back({x, y, z, value});
      }
  EXPECT_EQ(tapsOf(*cubicKernelXYZ(1, values, true)), taps);
  taps.erase(taps.begin() + 13);
  EXPECT_EQ(tapsOf(*cubicKernelXYZ(1, values, false)), taps);
}

// Sizes are counted in 32 bits.

TEST(RectangularKernel, OfTheLargestHalfSizesBeginsAtTheFarCorner)
{
  // 4294967295 squared is 1 in 32 bits, and so is its product with the 1 of no extent.
  EXPECT_EQ(tapsOf(*rectangularKernelXY(2147483647, 2147483647, {7}, false)),
            (TapsXY{{-2147483647, -2147483647, 7}}));
  EXPECT_EQ(tapsOf(*squareKernelXY(2147483647, {7}, false)), (TapsXY{{-2147483647, -2147483647, 7}}));
  EXPECT_EQ(tapsOf(*rectangularKernelXYZ(0, 2147483647, 2147483647, {7}, false)),
            (TapsXYZ{{0, -2147483647, -2147483647, 7}}));
}

TEST(RectangularKernel, EndsWithItsValuesWhereItsSizeWraps)
{
  // 3 x 2863311531 is 1 in 32 bits, so that 9 x 2863311531 is 3.
  EXPECT_EQ(tapsOf(*rectangularKernelXY(1, 1431655765, {7}, false)), (TapsXY{{-1, -1431655765, 7}}));
  EXPECT_EQ(tapsOf(*rectangularKernelXYZ(1431655765, 1, 1, {7, 8, 9}, false)),
            (TapsXYZ{{-1431655765, -1, -1, 7}, {-1431655764, -1, -1, 8}, {-1431655763, -1, -1, 9}}));
}

TEST(RectangularKernel, TakesAHalfSizeOfTwoToThe31ForTheLowestCoordinate)
{
  EXPECT_EQ(tapsOf(*rectangularKernelXY(2147483648U, 0, {7}, false)), (TapsXY{{g_lowest, 0, 7}}));
  EXPECT_EQ(tapsOf(*squareKernelXY(2147483648U, {7}, false)), (TapsXY{{g_lowest, g_lowest, 7}}));
  EXPECT_EQ(tapsOf(*cubicKernelXYZ(2147483648U, {7}, false)), (TapsXYZ{{g_lowest, g_lowest, g_lowest, 7}}));
  EXPECT_EQ(boxOf(*rectangularKernelXY(2147483648U, 0, {7}, false)), (Box{{g_lowest, 0}, {1, 1}}));
}

TEST(RectangularKernel, WrapsCoordinatesOfLargerHalfSizes)
{
  EXPECT_EQ(tapsOf(*rectangularKernelXY(2147483649U, 0, {7, 8, 9}, false)),
            (TapsXY{{g_lowest, 0, 8}, {-2147483647, 0, 9}, {2147483647, 0, 7}}));
}

// Failures of boxes.

TEST(RectangularKernel, RefusesAListOfAnotherSizeThanItsBox)
{
  EXPECT_EQ(
      messageOf<ORVELBaseDataException>([] { rectangularKernelXY(1, 1, Real32Vector(8, 1.0F), false); }),
      "Provided half kernel size X 1 and Y 1 mismatch with value collection size 8");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { rectangularKernelXY(2, 1, Real32Vector(16), true); }),
            "Provided half kernel size X 2 and Y 1 mismatch with value collection size 16");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { squareKernelXY(2, Real32Vector(9), true); }),
            "Provided half kernel size X 2 and Y 2 mismatch with value collection size 9");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { rectangularKernelXYZ(1, 2, 3, Real32Vector(15), true); }),
            "Provided half kernel size X 1, Y 2 and Z 3 mismatch with value collection size 15");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { cubicKernelXYZ(1, Real32Vector(9), true); }),
            "Provided half kernel size X 1, Y 1 and Z 1 mismatch with value collection size 9");
}

TEST(RectangularKernel, RefusesAnEmptyList)
{
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { rectangularKernelXY(0, 0, {}, true); }),
            "Provided half kernel size X 0 and Y 0 mismatch with value collection size 0");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { rectangularKernelXYZ(0, 0, 0, {}, true); }),
            "Provided half kernel size X 0, Y 0 and Z 0 mismatch with value collection size 0");
}

TEST(RectangularKernel, TellsTheLargestHalfSizesUnsigned)
{
  EXPECT_EQ(
      messageOf<ORVELBaseDataException>([] { rectangularKernelXY(4294967295U, 2147483648U, {1}, true); }),
      "Provided half kernel size X 4294967295 and Y 2147483648 mismatch with value collection size 1");
}

// --- Snapped lines -------------------------------------------------------------------------------------

TEST(LinearKernel, RunsAlongXAtOrientationZero)
{
  EXPECT_EQ(tapsOf(*linearKernelXY(0, {1, 2, 3}, false)), (TapsXY{{-1, 0, 1}, {0, 0, 2}, {1, 0, 3}}));
  EXPECT_EQ(tapsOf(*linearKernelXY(-0.0F, {1, 2, 3}, false)), (TapsXY{{-1, 0, 1}, {0, 0, 2}, {1, 0, 3}}));
}

TEST(LinearKernel, RunsAgainstXAtOrientationPi)
{
  EXPECT_EQ(tapsOf(*linearKernelXY(g_pi, {1, 2, 3}, false)), (TapsXY{{-1, 0, 3}, {0, 0, 2}, {1, 0, 1}}));
}

TEST(LinearKernel, LiesOnTheDiagonals)
{
  EXPECT_EQ(tapsOf(*linearKernelXY(g_pi / 4, {1, 2, 3}, false)), (TapsXY{{-1, -1, 1}, {0, 0, 2}, {1, 1, 3}}));
  EXPECT_EQ(tapsOf(*linearKernelXY(3 * g_pi / 4, {1, 2, 3}, false)),
            (TapsXY{{1, -1, 1}, {0, 0, 2}, {-1, 1, 3}}));
  EXPECT_EQ(tapsOf(*linearKernelXY(-g_pi / 4, {1, 2, 3}, false)),
            (TapsXY{{1, -1, 3}, {0, 0, 2}, {-1, 1, 1}}));
}

TEST(LinearKernel, TurnsFromXTowardsY)
{
  EXPECT_EQ(tapsOf(*linearKernelXY(g_pi / 2, {1, 2, 3}, false)), (TapsXY{{0, -1, 1}, {0, 0, 2}, {0, 1, 3}}));
  EXPECT_EQ(tapsOf(*linearKernelXY(-g_pi / 2, {1, 2, 3}, false)), (TapsXY{{0, -1, 3}, {0, 0, 2}, {0, 1, 1}}));
}

TEST(LinearKernel, StepsOnTheDominantAxisAndRoundsTheOther)
{
  // tan 0.4 is 0.4228: y is 0.42, 0.85 and 1.27.
  EXPECT_EQ(tapsOf(*linearKernelXY(0.4F, {1, 2, 3, 4, 5, 6, 7}, false)),
            (TapsXY{{-3, -1, 1}, {-2, -1, 2}, {-1, 0, 3}, {0, 0, 4}, {1, 0, 5}, {2, 1, 6}, {3, 1, 7}}));
  // The same about the diagonal; y is the dominant axis.
  EXPECT_EQ(tapsOf(*linearKernelXY(g_pi / 2 - 0.4F, {1, 2, 3, 4, 5, 6, 7}, false)),
            (TapsXY{{-1, -3, 1}, {-1, -2, 2}, {0, -1, 3}, {0, 0, 4}, {0, 1, 5}, {1, 2, 6}, {1, 3, 7}}));
}

TEST(LinearKernel, RoundsHalvesAwayFromZero)
{
  const float orientation = 0.463647604F; // the step along y is exactly a half
  ASSERT_EQ(std::sin(orientation) / std::cos(orientation), 0.5F);
  EXPECT_EQ(tapsOf(*linearKernelXY(orientation, {1, 2, 3}, false)),
            (TapsXY{{-1, -1, 1}, {0, 0, 2}, {1, 1, 3}}));
}

TEST(LinearKernel, OfOneValueIsTheOrigin)
{
  for (const float angle : {0.0F, 1.0F, -2.5F, 1e6F})
  {
    EXPECT_EQ(tapsOf(*linearKernelXY(angle, {4}, false)), (TapsXY{{0, 0, 4}})) << angle;
    EXPECT_EQ(tapsOf(*linearKernelXYZ(angle, 1 - angle, {4}, false)), (TapsXYZ{{0, 0, 0, 4}})) << angle;
  }
}

TEST(LinearKernel, DropsZerosThatStillConsumeTheirValue)
{
  const KernelXYPtr kernel = linearKernelXY(0, {1, 0, -0.0F, 2, 3}, false);
  EXPECT_EQ(tapsOf(*kernel), (TapsXY{{-2, 0, 1}, {1, 0, 2}, {2, 0, 3}}));
  EXPECT_EQ(boxOf(*kernel), (Box{{-2, 0}, {5, 1}}));
  EXPECT_EQ(tapsOf(*linearKernelXYZ(0, 0, {0, 2, 0}, false)), (TapsXYZ{{0, 0, 0, 2}}));
}

TEST(LinearKernel, KeepsZerosWhereAskedAndNaNAlways)
{
  EXPECT_EQ(tapsOf(*linearKernelXY(0, {0, 1, -0.0F}, true)), (TapsXY{{-1, 0, 0}, {0, 0, 1}, {1, 0, -0.0F}}));
  EXPECT_EQ(tapsOf(*linearKernelXYZ(0, 0, {0, 1, 0}, true)),
            (TapsXYZ{{0, 0, -1, 0}, {0, 0, 0, 1}, {0, 0, 1, 0}}));
  EXPECT_EQ(tapsOf(*linearKernelXY(0, {0, g_nan, 0}, false)), (TapsXY{{0, 0, g_nan}}));
}

TEST(LinearKernel, OfNothingButZerosIsAsNew)
{
  EXPECT_EQ(boxOf(*linearKernelXY(1, Real32Vector(5), false)), (Box{{0, 0}, {0, 0}}));
  EXPECT_EQ(boxOf(*linearKernelXYZ(1, 1, Real32Vector(5), false)), (Box{{0, 0, 0}, {0, 0, 0}}));
}

TEST(LinearKernel, LiesOnTheAxesOfSpace)
{
  EXPECT_EQ(tapsOf(*linearKernelXYZ(0, 0, {1, 2, 3}, false)),
            (TapsXYZ{{0, 0, -1, 1}, {0, 0, 0, 2}, {0, 0, 1, 3}}));
  EXPECT_EQ(tapsOf(*linearKernelXYZ(g_pi, 0, {1, 2, 3}, false)),
            (TapsXYZ{{0, 0, -1, 3}, {0, 0, 0, 2}, {0, 0, 1, 1}}));
  EXPECT_EQ(tapsOf(*linearKernelXYZ(g_pi / 2, 0, {1, 2, 3}, false)),
            (TapsXYZ{{-1, 0, 0, 1}, {0, 0, 0, 2}, {1, 0, 0, 3}}));
  EXPECT_EQ(tapsOf(*linearKernelXYZ(g_pi / 2, g_pi / 2, {1, 2, 3}, false)),
            (TapsXYZ{{0, -1, 0, 1}, {0, 0, 0, 2}, {0, 1, 0, 3}}));
  EXPECT_EQ(tapsOf(*linearKernelXYZ(g_pi / 2, -g_pi / 2, {1, 2, 3}, false)),
            (TapsXYZ{{0, -1, 0, 3}, {0, 0, 0, 2}, {0, 1, 0, 1}}));
}

TEST(LinearKernel, LiesOnTheDiagonalOfSpace)
{
  EXPECT_EQ(tapsOf(*linearKernelXYZ(0.955316618F, g_pi / 4, {1, 2, 3}, false)), // arc cosine of 1 / sqrt 3
            (TapsXYZ{{-1, -1, -1, 1}, {0, 0, 0, 2}, {1, 1, 1, 3}}));
}

TEST(LinearKernel, StepsOnEachDominantAxisOfSpace)
{
  // z: the steps of x and y are 0.167 and 0.260.
  EXPECT_EQ(tapsOf(*linearKernelXYZ(0.3F, 1, {1, 2, 3, 4, 5, 6, 7}, false)), (TapsXYZ{{-1, -1, -3, 1},
                                                                                      {0, -1, -2, 2},
                                                                                      {0, 0, -1, 3},
                                                                                      {0, 0, 0, 4},
                                                                                      {0, 0, 1, 5},
                                                                                      {0, 1, 2, 6},
                                                                                      {1, 1, 3, 7}}));
  // y: those of x and z are 0.389 and 0.
  EXPECT_EQ(tapsOf(*linearKernelXYZ(g_pi / 2, 1.2F, {1, 2, 3, 4, 5}, false)),
            (TapsXYZ{{-1, -2, 0, 1}, {0, -1, 0, 2}, {0, 0, 0, 3}, {0, 1, 0, 4}, {1, 2, 0, 5}}));
  // x, against its direction: those of y and z are 0.3093 and 0.4559.
  EXPECT_EQ(tapsOf(*linearKernelXYZ(1.16F, g_pi - 0.3F, {1, 2, 3, 4, 5}, false)),
            (TapsXYZ{{2, -1, -1, 1}, {-1, 0, 0, 4}, {0, 0, 0, 3}, {1, 0, 0, 2}, {-2, 1, 1, 5}}));
}

TEST(LinearKernel, AgreesWithTheDefinitionForManyArguments)
{
  Random random(531);
  for (int i = 0; i < 4000; ++i)
  {
    const float angle = random.angle();
    const float azimuth = random.angle();
    const Real32Vector values = random.values(2 * random.integer(0, 20) + 1);
    const bool keepsZeros = random.coin();
    ASSERT_EQ(expectedSnappedLine(directionOf(angle), values, keepsZeros)
                  .differenceTo(*linearKernelXY(angle, values, keepsZeros)),
              "")
        << angle << " " << values.size() << " " << keepsZeros;
    ASSERT_EQ(expectedSnappedLine(directionOf(angle, azimuth), values, keepsZeros)
                  .differenceTo(*linearKernelXYZ(angle, azimuth, values, keepsZeros)),
              "")
        << angle << " " << azimuth << " " << values.size() << " " << keepsZeros;
  }
}

/// The places of a line's taps in the order of its values, which count up from 1.
template <class Tap>
std::vector<Tap> alongTheLine(std::vector<Tap> taps)
{
  std::sort(taps.begin(), taps.end(),
            [](const Tap& one, const Tap& other) { return one.value < other.value; });
  return taps;
}

TEST(LinearKernel, MovesOneGridStepAtMostOnEachAxisAndAlongItsDirection)
{
  Random random(532);
  for (int i = 0; i < 500; ++i)
  {
    const float polar = random.real(-10, 10);
    const float azimuth = random.real(-10, 10);
    const int size = 2 * random.integer(1, 30) + 1;
    Real32Vector values;
    for (int k = 1; k <= size; ++k)
      values.push_back(static_cast<float>(k));
    const TapsXYZ taps = alongTheLine(tapsOf(*linearKernelXYZ(polar, azimuth, values, false)));
    ASSERT_EQ(taps.size(), values.size());
    const DirectionXYZ d = directionOf(polar, azimuth);
    for (std::size_t k = 1; k < taps.size(); ++k)
    {
      const int step[3] = {taps[k].x - taps[k - 1].x, taps[k].y - taps[k - 1].y, taps[k].z - taps[k - 1].z};
      int longest = 0;
      float progress = 0;
      for (std::size_t axis = 0; axis < 3; ++axis)
      {
        longest = std::max(longest, std::abs(step[axis]));
        progress += static_cast<float>(step[axis]) * d[axis];
      }
      ASSERT_EQ(longest, 1) << polar << " " << azimuth;
      ASSERT_GT(progress, 0) << polar << " " << azimuth;
      const TapXYZ& mirrored = taps[taps.size() - 1 - k];
      ASSERT_EQ((TapXYZ{-mirrored.x, -mirrored.y, -mirrored.z, taps[k].value}), taps[k]);
    }
  }
}

TEST(LinearKernel, TakesAnglesFarOutsideOneTurn)
{
  const KernelXYPtr kernel = linearKernelXY(100 * g_pi, {1, 2, 3}, false);
  EXPECT_EQ(tapsOf(*kernel), (TapsXY{{-1, 0, 1}, {0, 0, 2}, {1, 0, 3}}));
  EXPECT_EQ(linearKernelXY(std::numeric_limits<float>::max(), {1, 2, 3}, false)->getNbData(), 3U);
}

TEST(LinearKernel, StandsAcrossTheLowestCoordinatesForAnAngleThatIsNone)
{
  for (const float angle : {g_nan, g_infinity, -g_infinity})
  {
    EXPECT_EQ(tapsOf(*linearKernelXY(angle, {1, 2, 3}, false)),
              (TapsXY{{g_lowest, -1, 3}, {g_lowest, 0, 2}, {g_lowest, 1, 1}}))
        << angle;
    EXPECT_EQ(tapsOf(*linearKernelXYZ(angle, 0, {1, 2, 3}, false)),
              (TapsXYZ{{g_lowest, g_lowest, -1, 3}, {g_lowest, g_lowest, 0, 2}, {g_lowest, g_lowest, 1, 1}}))
        << angle;
    EXPECT_EQ(tapsOf(*linearKernelXYZ(0, angle, {1, 2, 3}, false)),
              (TapsXYZ{{g_lowest, g_lowest, -1, 1}, {g_lowest, g_lowest, 0, 2}, {g_lowest, g_lowest, 1, 3}}))
        << angle;
  }
}

TEST(LinearKernel, RefusesAnEvenNumberOfValues)
{
  const auto four = Real32Vector(4, 1.0F);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { linearKernelXY(0, four, false); }),
            "Input kernel size 4 must be odd");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { linearKernelXYZ(0, 0, four, false); }),
            "Input kernel size 4 must be odd");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { linearInterpolatedKernelXY(0, four, false); }),
            "Input kernel size 4 must be odd");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { linearInterpolatedKernelXYZ(0, 0, four, false); }),
            "Input kernel size 4 must be odd");
}

TEST(LinearKernel, RefusesAnEmptyList)
{
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { linearKernelXY(0, {}, true); }),
            "Input kernel size 0 must be odd");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { linearKernelXYZ(0, 0, {}, true); }),
            "Input kernel size 0 must be odd");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { linearInterpolatedKernelXY(0, {}, true); }),
            "Input kernel size 0 must be odd");
  EXPECT_EQ(messageOf<ORVELBaseDataException>([] { linearInterpolatedKernelXYZ(0, 0, {}, true); }),
            "Input kernel size 0 must be odd");
}

// --- Interpolated lines --------------------------------------------------------------------------------

TEST(LinearInterpolatedKernel, HasNoOtherTapsWhereItMeetsTheGrid)
{
  EXPECT_EQ(tapsOf(*linearInterpolatedKernelXY(0, {1, 2, 3}, false)),
            (TapsXY{{-1, 0, 1}, {0, 0, 2}, {1, 0, 3}}));
  EXPECT_EQ(tapsOf(*linearInterpolatedKernelXYZ(0, 0, {1, 2, 3}, false)),
            (TapsXYZ{{0, 0, -1, 1}, {0, 0, 0, 2}, {0, 0, 1, 3}}));
}

TEST(LinearInterpolatedKernel, HasTapsOfZeroBesideTheGridWhereZerosAreKept)
{
  // Behind the origin the coordinate -0 of y gives its corner the share -0.
  EXPECT_EQ(
      tapsOf(*linearInterpolatedKernelXY(0, {1, 2, 3}, true)),
      (TapsXY{{-1, 0, 1}, {0, 0, 2}, {1, 0, 3}, {2, 0, 0}, {-1, 1, -0.0F}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}}));
  EXPECT_EQ(tapsOf(*linearInterpolatedKernelXYZ(0, 0, {5}, true)), (TapsXYZ{{0, 0, 0, 5},
                                                                            {1, 0, 0, 0},
                                                                            {0, 1, 0, 0},
                                                                            {1, 1, 0, 0},
                                                                            {0, 0, 1, 0},
                                                                            {1, 0, 1, 0},
                                                                            {0, 1, 1, 0},
                                                                            {1, 1, 1, 0}}));
}

/// Expects taps at these places with these values to four digits.
template <class Tap>
void expectNear(const std::vector<Tap>& taps, const std::vector<Tap>& expected)
{
  ASSERT_EQ(taps.size(), expected.size());
  for (std::size_t i = 0; i < taps.size(); ++i)
  {
    EXPECT_NEAR(taps[i].value, expected[i].value, 6e-5F) << taps[i];
    Tap place = expected[i];
    place.value = taps[i].value;
    EXPECT_EQ(taps[i], place);
  }
}

TEST(LinearInterpolatedKernel, SharesAValueBeforeTheOriginAmongItsFourNeighbours)
{
  expectNear(tapsOf(*linearInterpolatedKernelXY(g_pi / 4, {0, 0, 1}, false)),
             {{0, 0, 0.0858F}, {1, 0, 0.2071F}, {0, 1, 0.2071F}, {1, 1, 0.5F}});
}

TEST(LinearInterpolatedKernel, ExtrapolatesBehindTheOrigin)
{
  expectNear(tapsOf(*linearInterpolatedKernelXY(g_pi / 4, {1, 0, 0}, false)),
             {{0, 0, 2.9142F}, {1, 0, -1.2071F}, {0, 1, -1.2071F}, {1, 1, 0.5F}});
  // (-2.2945, -1.9327): from -2 and -1 on, weights 1.2945 and -0.2945, 1.9327 and -0.9327.
  expectNear(tapsOf(*linearInterpolatedKernelXY(0.7F, {1, 0, 0, 0, 0, 0, 0}, false)),
             {{-2, -1, 2.5019F}, {-1, -1, -0.5692F}, {-2, 0, -1.2073F}, {-1, 0, 0.2747F}});
}

TEST(LinearInterpolatedKernel, SharesThreeOnesOfTheDiagonalAmongFourTaps)
{
  const KernelXYPtr kernel = linearInterpolatedKernelXY(g_pi / 4, {1, 1, 1}, false);
  expectNear(tapsOf(*kernel), {{0, 0, 4}, {1, 0, -1}, {0, 1, -1}, {1, 1, 1}});
  EXPECT_EQ(boxOf(*kernel), (Box{{0, 0}, {2, 2}}));
}

TEST(LinearInterpolatedKernel, LeavesTheCentreToTheOrigin)
{
  EXPECT_EQ(tapsOf(*linearInterpolatedKernelXY(g_pi / 4, {0, 3, 0}, false)), (TapsXY{{0, 0, 3}}));
  EXPECT_EQ(tapsOf(*linearInterpolatedKernelXYZ(1, 2, {0, 3, 0}, false)), (TapsXYZ{{0, 0, 0, 3}}));
}

TEST(LinearInterpolatedKernel, SharesAValueAmongItsEightNeighboursInSpace)
{
  // The point is (0.7385, 0.4034, 0.5403).
  expectNear(tapsOf(*linearInterpolatedKernelXYZ(1, 0.5F, {0, 0, 1}, false)), {{0, 0, 0, 0.0717F},
                                                                               {1, 0, 0, 0.2025F},
                                                                               {0, 1, 0, 0.0485F},
                                                                               {1, 1, 0, 0.1369F},
                                                                               {0, 0, 1, 0.0843F},
                                                                               {1, 0, 1, 0.2380F},
                                                                               {0, 1, 1, 0.0570F},
                                                                               {1, 1, 1, 0.1610F}});
}

TEST(LinearInterpolatedKernel, ExtrapolatesBehindTheOriginOfSpace)
{
  expectNear(tapsOf(*linearInterpolatedKernelXYZ(1, 0.5F, {1, 0, 0}, false)), {{0, 0, 0, 3.7580F},
                                                                               {1, 0, 0, -1.5963F},
                                                                               {0, 1, 0, -1.0803F},
                                                                               {1, 1, 0, 0.4589F},
                                                                               {0, 0, 1, -1.3182F},
                                                                               {1, 0, 1, 0.5600F},
                                                                               {0, 1, 1, 0.3789F},
                                                                               {1, 1, 1, -0.1610F}});
}

TEST(LinearInterpolatedKernel, SkipsAValueOfZeroUnlessZerosAreKept)
{
  EXPECT_EQ(linearInterpolatedKernelXY(0.7F, {0, 1, -0.0F}, false)->getNbData(), 1U);
  // The neighbours of the origin hold those of both ends.
  EXPECT_EQ(tapsOf(*linearInterpolatedKernelXY(0.7F, {0, 1, 0}, true)),
            (TapsXY{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}));
  EXPECT_EQ(boxOf(*linearInterpolatedKernelXY(0.7F, Real32Vector(5), false)), (Box{{0, 0}, {0, 0}}));
}

TEST(LinearInterpolatedKernel, GivesNaNToAllNeighbours)
{
  EXPECT_EQ(tapsOf(*linearInterpolatedKernelXY(0, {g_nan}, false)),
            (TapsXY{{0, 0, g_nan}, {1, 0, g_nan}, {0, 1, g_nan}, {1, 1, g_nan}}));
  EXPECT_EQ(linearInterpolatedKernelXYZ(0, 0, {g_nan}, false)->getNbData(), 8U);
}

TEST(LinearInterpolatedKernel, GivesNaNToTheNeighboursOfNoWeightOfAnInfiniteValue)
{
  EXPECT_EQ(tapsOf(*linearInterpolatedKernelXY(0, {-g_infinity}, false)),
            (TapsXY{{0, 0, -g_infinity}, {1, 0, g_nan}, {0, 1, g_nan}, {1, 1, g_nan}}));
}

TEST(LinearInterpolatedKernel, IsNaNAtTheLowestCoordinatesForAnAngleThatIsNone)
{
  constexpr int next = g_lowest + 1;
  for (const float angle : {g_nan, g_infinity, -g_infinity})
  {
    EXPECT_EQ(tapsOf(*linearInterpolatedKernelXY(angle, {1, 0, 2}, false)),
              (TapsXY{{g_lowest, g_lowest, g_nan},
                      {next, g_lowest, g_nan},
                      {g_lowest, next, g_nan},
                      {next, next, g_nan}}))
        << angle;
    EXPECT_EQ(linearInterpolatedKernelXY(angle, {0, 0, 0}, false)->getNbData(), 0U) << angle;
    EXPECT_EQ(boxOf(*linearInterpolatedKernelXYZ(angle, 0, {1, 0, 2}, false)),
              (Box{{g_lowest, g_lowest, g_lowest}, {2, 2, 2}}))
        << angle;
    EXPECT_EQ(boxOf(*linearInterpolatedKernelXYZ(0, angle, {1}, false)),
              (Box{{g_lowest, g_lowest, 0}, {2, 2, 2}}))
        << angle;
  }
}

TEST(LinearInterpolatedKernel, AgreesWithTheDefinitionForManyArguments)
{
  Random random(533);
  for (int i = 0; i < 4000; ++i)
  {
    const float angle = random.angle();
    const float azimuth = random.angle();
    const Real32Vector values = random.values(2 * random.integer(0, 12) + 1);
    const bool keepsZeros = random.coin();
    ASSERT_EQ(expectedInterpolatedLine(directionOf(angle), values, keepsZeros)
                  .differenceTo(*linearInterpolatedKernelXY(angle, values, keepsZeros)),
              "")
        << angle << " " << values.size() << " " << keepsZeros;
    ASSERT_EQ(expectedInterpolatedLine(directionOf(angle, azimuth), values, keepsZeros)
                  .differenceTo(*linearInterpolatedKernelXYZ(angle, azimuth, values, keepsZeros)),
              "")
        << angle << " " << azimuth << " " << values.size() << " " << keepsZeros;
  }
}

TEST(LinearInterpolatedKernel, HandsTheWholeOfEachValueOut)
{
  Random random(534);
  for (int i = 0; i < 500; ++i)
  {
    const int h = random.integer(0, 10);
    Real32Vector values(static_cast<std::size_t>(2 * h + 1));
    values[static_cast<std::size_t>(random.integer(0, 2 * h))] = 1;
    const float angle = random.angle();
    double plane = 0;
    for (const TapXY& tap : tapsOf(*linearInterpolatedKernelXY(angle, values, false)))
      plane += static_cast<double>(tap.value);
    EXPECT_NEAR(plane, 1, 1e-5) << angle;
    double space = 0;
    for (const TapXYZ& tap : tapsOf(*linearInterpolatedKernelXYZ(angle, angle / 3, values, false)))
      space += static_cast<double>(tap.value);
    EXPECT_NEAR(space, 1, 1e-5) << angle;
  }
}

/// Expects that every tap is the NaN that has one form on every build.
template <class Kernel>
void expectDefaultNaNs(const Kernel& kernel, std::size_t nbTaps)
{
  EXPECT_EQ(kernel.getNbData(), nbTaps);
  for (const auto& tap : kernel.getDataColl())
    EXPECT_EQ(bitsOf(tap.second), g_defaultNaNBits);
  EXPECT_EQ(bitsOf(kernel.getCoefSum()), g_defaultNaNBits);
  EXPECT_EQ(bitsOf(kernel.getAbsCoefSum()), g_defaultNaNBits);
}

TEST(LinearInterpolatedKernel, HasOneFormOfNaNForAnAngleThatIsNone)
{
  const float negativeNaN = floatOf(0xFFC12345);
  const Real32Vector lists[] = {{1, 0, 2}, {-1, negativeNaN, 2}, {g_nan, -g_infinity, negativeNaN}};
  for (const Real32Vector& values : lists)
    for (const float angle : {g_nan, negativeNaN, g_infinity, -g_infinity})
    {
      expectDefaultNaNs(*linearInterpolatedKernelXY(angle, values, false), 4);
      expectDefaultNaNs(*linearInterpolatedKernelXYZ(angle, angle, values, false), 8);
      expectDefaultNaNs(*linearInterpolatedKernelXYZ(angle, 0.5F, values, true), 8);
      expectDefaultNaNs(*linearInterpolatedKernelXYZ(0.5F, angle, {values[0]}, true), 8);
    }
}

TEST(LinearInterpolatedKernel, HasOneFormOfNaNForValuesThatAreNone)
{
  const float negativeNaN = floatOf(0xFFC12345);
  expectDefaultNaNs(*linearInterpolatedKernelXY(0.7F, {0, negativeNaN, 0}, false), 4);
  expectDefaultNaNs(*linearInterpolatedKernelXYZ(1, 2, {0, negativeNaN, 0}, false), 8);
  // Both ends have shares at the same four places.
  expectDefaultNaNs(*linearInterpolatedKernelXY(g_pi / 4, {negativeNaN, 0, g_nan}, false), 4);
  expectDefaultNaNs(*linearInterpolatedKernelXY(g_pi / 4, {g_nan, 0, negativeNaN}, false), 4);
  // Infinity less infinity at one of the four, infinity times no weight at three.
  expectDefaultNaNs(*linearInterpolatedKernelXY(g_pi / 4, {g_infinity, g_infinity, -g_infinity}, false), 4);
}

TEST(KernelBuilders, KeepAGivenNaNAsItIs)
{
  const float payload = floatOf(0xFFC12345);
  EXPECT_EQ(bitsOf(rectangularKernelXY(1, 0, {1, payload, 2}, false)->getValue(OffsetXY(0, 0))), 0xFFC12345U);
  EXPECT_EQ(bitsOf(cubicKernelXYZ(0, {payload}, false)->getValue(OffsetXYZ(0, 0, 0))), 0xFFC12345U);
  EXPECT_EQ(bitsOf(linearKernelXY(1, {payload}, false)->getValue(OffsetXY(0, 0))), 0xFFC12345U);
  EXPECT_EQ(bitsOf(linearKernelXYZ(1, 1, {payload}, false)->getValue(OffsetXYZ(0, 0, 0))), 0xFFC12345U);
}

// --- Rotation ------------------------------------------------------------------------------------------

KernelXYPtr makeKernel(const TapsXY& taps)
{
  auto kernel = boost::make_shared<KernelXY>();
  for (const TapXY& tap : taps)
    kernel->insert(OffsetXY(tap.x, tap.y), tap.value);
  return kernel;
}

TEST(Rotate2dKernel, ByZeroGivesAnEqualKernel)
{
  const KernelXYPtr source = makeKernel({{-3, 1, 2}, {0, 0, -1.5F}, {1, -4, 0}, {7, 2, 0.1F}});
  for (const float angle : {0.0F, -0.0F})
  {
    const KernelXYPtr rotated = rotate2dKernel(angle, source);
    EXPECT_NE(rotated, source);
    EXPECT_EQ(tapsOf(*rotated), tapsOf(*source));
    EXPECT_EQ(boxOf(*rotated), boxOf(*source));
    EXPECT_EQ(rotated->getAbsCoefSum(), 3.6F);
  }
}

TEST(Rotate2dKernel, TurnsXTowardsY)
{
  const KernelXYPtr source = makeKernel({{-1, 0, 1}, {0, 0, 2}, {1, 0, 3}});
  const KernelXYPtr quarter = rotate2dKernel(g_pi / 2, source);
  EXPECT_EQ(tapsOf(*quarter), (TapsXY{{0, -1, 1}, {0, 0, 2}, {0, 1, 3}}));
  EXPECT_EQ(boxOf(*quarter), (Box{{0, -1}, {1, 3}}));
  EXPECT_EQ(tapsOf(*rotate2dKernel(-g_pi / 2, source)), (TapsXY{{0, -1, 3}, {0, 0, 2}, {0, 1, 1}}));
}

TEST(Rotate2dKernel, TurnsYAwayFromX)
{
  EXPECT_EQ(tapsOf(*rotate2dKernel(g_pi / 2, makeKernel({{2, 1, 5}}))), (TapsXY{{-1, 2, 5}}));
  // By 0.5 radian: (3, 1) goes to (2.153, 2.316).
  EXPECT_EQ(tapsOf(*rotate2dKernel(0.5F, makeKernel({{3, 1, 5}}))), (TapsXY{{2, 2, 5}}));
}

TEST(Rotate2dKernel, LeavesAQuarterOfTheSumWhereTwoPositiveTapsMeet)
{
  const KernelXYPtr rotated = rotate2dKernel(g_pi / 4, makeKernel({{1, 0, 3}, {2, 0, 5}}));
  EXPECT_EQ(tapsOf(*rotated), (TapsXY{{1, 1, 2}}));
  EXPECT_EQ(boxOf(*rotated), (Box{{1, 1}, {1, 1}}));
}

TEST(Rotate2dKernel, TakesTheSignOfTheEarlierTapAlone)
{
  EXPECT_EQ(tapsOf(*rotate2dKernel(g_pi / 4, makeKernel({{1, 0, -3}, {2, 0, 5}}))), (TapsXY{{1, 1, 2}}));
  EXPECT_EQ(tapsOf(*rotate2dKernel(g_pi / 4, makeKernel({{1, 0, 3}, {2, 0, -5}}))), (TapsXY{{1, 1, -0.5F}}));
  EXPECT_EQ(tapsOf(*rotate2dKernel(g_pi / 4, makeKernel({{1, 0, -3}, {2, 0, -5}}))), (TapsXY{{1, 1, -0.5F}}));
}

TEST(Rotate2dKernel, MeetsTapsInTheOrderOfTheMap)
{
  // Of (-2, 0) and (-1, 0) the first is the earlier one.
  EXPECT_EQ(tapsOf(*rotate2dKernel(g_pi / 4, makeKernel({{-1, 0, 4}, {-2, 0, -2}}))),
            (TapsXY{{-1, -1, 1.5F}}));
}

TEST(Rotate2dKernel, HalvesAtEachMeetingAndDividesOnceByTheNumberOfTaps)
{
  // Above 2^25 single precision has steps of 4: 33554433 and 33554434 are 33554432, the latter a tie.
  const KernelXYPtr source = makeKernel({{33554432, 0, 2}, {33554433, 0, -8}, {33554434, 0, 9}});
  // ((|(2 - 8) / 2|) + 9) / 2 is 6, a third of which is 2.
  EXPECT_EQ(tapsOf(*rotate2dKernel(0, source)), (TapsXY{{33554432, 0, 2}}));
}

TEST(Rotate2dKernel, KeepsTheSumsThatItsStepsLeave)
{
  const KernelXYPtr rotated = rotate2dKernel(g_pi / 4, makeKernel({{1, 0, -3}, {2, 0, 5}, {0, 1, 7}}));
  // (0, 1) goes to (-0.7, 0.7).
  EXPECT_EQ(tapsOf(*rotated), (TapsXY{{-1, 1, 7}, {1, 1, 2}}));
  EXPECT_EQ(rotated->getCoefSum(), 9);
  EXPECT_EQ(rotated->getAbsCoefSum(), 9);
}

TEST(Rotate2dKernel, RoundsHalvesAwayFromZero)
{
  const float angle = 0.523598776F; // its sine is exactly a half
  ASSERT_EQ(std::sin(angle), 0.5F);
  EXPECT_EQ(tapsOf(*rotate2dKernel(angle, makeKernel({{0, -1, 5}}))), (TapsXY{{1, -1, 5}})); // (0.5, -0.87)
  EXPECT_EQ(tapsOf(*rotate2dKernel(angle, makeKernel({{0, 1, 5}}))), (TapsXY{{-1, 1, 5}}));  // (-0.5, 0.87)
}

TEST(Rotate2dKernel, RoundsWhatIsJustBelowAHalfToZero)
{
  const float angle = 0.523598731F;
  ASSERT_EQ(std::sin(angle), 0.49999997F); // to which a half added in single precision gives 1
  EXPECT_EQ(tapsOf(*rotate2dKernel(angle, makeKernel({{0, -1, 5}}))), (TapsXY{{0, -1, 5}}));
  EXPECT_EQ(tapsOf(*rotate2dKernel(angle, makeKernel({{0, 1, 5}}))), (TapsXY{{0, 1, 5}}));
}

TEST(Rotate2dKernel, MergesTapsAndNormalisesNothing)
{
  // 2 and 3 steps along the diagonal are 1.41 and 2.12 along each axis.
  const KernelXYPtr line = rotate2dKernel(g_pi / 4, rectangularKernelXY(3, 0, Real32Vector(7, 1.0F), false));
  EXPECT_EQ(tapsOf(*line), (TapsXY{{-2, -2, 1}, {-1, -1, 0.5F}, {0, 0, 1}, {1, 1, 0.5F}, {2, 2, 1}}));
  EXPECT_EQ(line->getCoefSum(), 4);
  EXPECT_EQ(line->getAbsCoefSum(), 4);
}

TEST(Rotate2dKernel, LeavesHolesWhereNoTapComesTo)
{
  // By pi / 4 (1, -1) goes to (1.41, 0) and (2, -2) to (2.83, 0); between them there is none.
  const KernelXYPtr rotated = rotate2dKernel(g_pi / 4, squareKernelXY(3, Real32Vector(49, 1.0F), false));
  EXPECT_TRUE(rotated->exists(OffsetXY(1, 0)));
  EXPECT_FALSE(rotated->exists(OffsetXY(2, 0)));
  EXPECT_TRUE(rotated->exists(OffsetXY(3, 0)));
}

TEST(Rotate2dKernel, OfNoTapsIsAsNew)
{
  const KernelXYPtr rotated = rotate2dKernel(1, boost::make_shared<KernelXY>());
  EXPECT_EQ(rotated->getNbData(), 0U);
  EXPECT_EQ(boxOf(*rotated), (Box{{0, 0}, {0, 0}}));
  EXPECT_EQ(rotated->getCoefSum(), 0);
}

TEST(Rotate2dKernel, ChangesNothingInItsSource)
{
  const KernelXYPtr source = makeKernel({{-2, 0, 1}, {-1, 0, -2}, {0, 0, 3}, {1, 0, 4}, {2, 0, 5}});
  const TapsXY taps = tapsOf(*source);
  rotate2dKernel(g_pi / 4, source);
  EXPECT_EQ(tapsOf(*source), taps);
  EXPECT_EQ(boxOf(*source), (Box{{-2, 0}, {5, 1}}));
  EXPECT_EQ(source->getCoefSum(), 11);
  EXPECT_EQ(source.use_count(), 1);
}

TEST(Rotate2dKernel, KeepsTheCentre)
{
  for (const float angle : {0.1F, 1.0F, -3.0F, 1e6F})
    EXPECT_EQ(tapsOf(*rotate2dKernel(angle, makeKernel({{0, 0, -2}}))), (TapsXY{{0, 0, -2}})) << angle;
}

TEST(Rotate2dKernel, ByQuarterTurnsLeavesASymmetricKernelAsItIs)
{
  TapsXY taps;
  for (int y = -6; y <= 6; ++y)
    for (int x = -6; x <= 6; ++x)
      if (x * x + y * y <= 40)
        taps.push_back({x, y, 1 / (1 + static_cast<float>(x * x + y * y))});
  const KernelXYPtr source = makeKernel(taps);
  for (int quarters = -40; quarters <= 40; ++quarters)
  {
    const KernelXYPtr rotated = rotate2dKernel(static_cast<float>(quarters) * (g_pi / 2), source);
    EXPECT_EQ(tapsOf(*rotated), taps) << quarters;
    EXPECT_EQ(boxOf(*rotated), boxOf(*source)) << quarters;
  }
}

TEST(Rotate2dKernel, AgreesWithTheDefinitionForManyArguments)
{
  Random random(55);
  for (int i = 0; i < 4000; ++i)
  {
    KernelXY source;
    for (const float value : random.values(random.integer(0, 60)))
    {
      const OffsetXY place(random.integer(-9, 9), random.integer(-9, 9));
      if (!source.exists(place))
        source.insert(place, value);
    }
    const float angle = random.angle();
    ASSERT_EQ(expectedRotation(angle, source)
                  .differenceTo(*rotate2dKernel(angle, boost::make_shared<KernelXY>(source))),
              "")
        << angle;
  }
}

TEST(Rotate2dKernel, SendsAllTapsToTheLowestPlaceForAnAngleThatIsNone)
{
  // ((1 + 2) / 2 + 4.5) / 2 is 3, a third of which is 1.
  for (const float angle : {g_nan, g_infinity, -g_infinity})
    EXPECT_EQ(tapsOf(*rotate2dKernel(angle, makeKernel({{-1, 0, 1}, {0, 0, 2}, {1, 0, 4.5F}}))),
              (TapsXY{{g_lowest, g_lowest, 1}}))
        << angle;
}

TEST(Rotate2dKernel, HasOneFormOfNaNWhereTapsMeet)
{
  const float negativeNaN = floatOf(0xFFC12345);
  for (const auto& [first, second] :
       {std::pair(g_nan, negativeNaN), std::pair(negativeNaN, g_nan), std::pair(negativeNaN, 5.0F),
        std::pair(5.0F, negativeNaN), std::pair(g_infinity, -g_infinity)})
  {
    const KernelXYPtr rotated = rotate2dKernel(g_pi / 4, makeKernel({{1, 0, first}, {2, 0, second}}));
    EXPECT_EQ(rotated->getNbData(), 1U);
    EXPECT_EQ(bitsOf(rotated->getValue(OffsetXY(1, 1))), g_defaultNaNBits) << first << " " << second;
  }
  EXPECT_EQ(bitsOf(rotate2dKernel(g_pi, makeKernel({{1, 0, negativeNaN}}))->getValue(OffsetXY(-1, 0))),
            0xFFC12345U); // met by none
}

TEST(Rotate2dKernel, SendsATapBeyondTheGridToTheLowestCoordinate)
{
  // In single precision 2147483647 is 2147483648.
  EXPECT_EQ(tapsOf(*rotate2dKernel(0, makeKernel({{2147483647, 3, 5}}))), (TapsXY{{g_lowest, 3, 5}}));
  EXPECT_EQ(tapsOf(*rotate2dKernel(0, makeKernel({{g_lowest, 3, 5}}))), (TapsXY{{g_lowest, 3, 5}}));
  EXPECT_EQ(tapsOf(*rotate2dKernel(g_pi / 4, makeKernel({{g_lowest, g_lowest, 5}}))),
            (TapsXY{{0, g_lowest, 5}}));
}

TEST(Rotate2dKernel, MayTurnOneKernelOnSeveralThreads)
{
  const KernelXYPtr source = squareKernelXY(5, Real32Vector(121, 0.5F), false);
  std::vector<KernelXYPtr> rotated(4);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < rotated.size(); ++i)
    threads.emplace_back([&, i] { rotated[i] = rotate2dKernel(0.3F + static_cast<float>(i), source); });
  for (std::thread& thread : threads)
    thread.join();
  for (std::size_t i = 0; i < rotated.size(); ++i)
    EXPECT_EQ(expectedRotation(0.3F + static_cast<float>(i), *source).differenceTo(*rotated[i]), "") << i;
}

// --- What all builders have in common ------------------------------------------------------------------

TEST(KernelBuilders, TakeAndReturnTheseTypes)
{
  using InPlane = KernelXYPtr(ipUInt32, ipUInt32, const Real32Vector&, ipBool);
  using InSpace = KernelXYZPtr(ipUInt32, ipUInt32, ipUInt32, const Real32Vector&, ipBool);
  using LineInPlane = KernelXYPtr(ipReal32, const Real32Vector&, ipBool);
  using LineInSpace = KernelXYZPtr(ipReal32, ipReal32, const Real32Vector&, ipBool);
  EXPECT_TRUE((std::is_same<decltype(rectangularKernelXY), InPlane>::value));
  EXPECT_TRUE((std::is_same<decltype(rectangularKernelXYZ), InSpace>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(squareKernelXY), KernelXYPtr(ipUInt32, const Real32Vector&, ipBool)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(cubicKernelXYZ), KernelXYZPtr(ipUInt32, const Real32Vector&, ipBool)>::value));
  EXPECT_TRUE((std::is_same<decltype(linearKernelXY), LineInPlane>::value));
  EXPECT_TRUE((std::is_same<decltype(linearInterpolatedKernelXY), LineInPlane>::value));
  EXPECT_TRUE((std::is_same<decltype(linearKernelXYZ), LineInSpace>::value));
  EXPECT_TRUE((std::is_same<decltype(linearInterpolatedKernelXYZ), LineInSpace>::value));
  EXPECT_TRUE((std::is_same<decltype(rotate2dKernel),
                            KernelXYPtr(ipReal32, boost::shared_ptr<const KernelXY>)>::value));
}

TEST(KernelBuilders, AreReentrant)
{
  const auto make = [](std::size_t i)
  {
    const float angle = static_cast<float>(i) + 0.5F;
    Real32Vector values(27);
    for (std::size_t k = 0; k < values.size(); ++k)
      values[k] = static_cast<float>(k + i);
    TapsXYZ taps = tapsOf(*cubicKernelXYZ(1, values, true));
    for (const TapsXYZ& more : {inSpace(tapsOf(*rectangularKernelXY(4, 1, values, true))),
                                inSpace(tapsOf(*linearKernelXY(angle, values, true))),
                                inSpace(tapsOf(*linearInterpolatedKernelXY(angle, values, true))),
                                tapsOf(*linearKernelXYZ(angle, 1, values, true)),
                                tapsOf(*linearInterpolatedKernelXYZ(angle, 1, values, true))})
      taps.insert(taps.end(), more.begin(), more.end());
    return taps;
  };
  std::vector<TapsXYZ> expected;
  for (std::size_t i = 0; i < 4; ++i)
    expected.push_back(make(i));

  std::vector<TapsXYZ> made(expected.size());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < expected.size(); ++i)
    threads.emplace_back([&, i] { made[i] = make(i); });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(made, expected);
}

struct FailingCall
{
  std::string function;
  std::function<void()> call;
  std::string text;
};

std::vector<FailingCall> failingCalls()
{
  const Real32Vector two = {1, 2};
  const std::string inPlane = "Provided half kernel size X 1 and Y 1 mismatch with value collection size 2";
  const std::string inSpace =
      "Provided half kernel size X 1, Y 1 and Z 1 mismatch with value collection size 2";
  const std::string even = "Input kernel size 2 must be odd";
  const std::string boxXY =
      "orvel::KernelXYPtr orvel::rectangularKernelXY(ipUInt32, ipUInt32, const Real32Vector&, ipBool)";
  const std::string boxXYZ = "orvel::KernelXYZPtr orvel::rectangularKernelXYZ(ipUInt32, ipUInt32, ipUInt32, "
                             "const Real32Vector&, ipBool)";
  return {
      {boxXY, [=] { rectangularKernelXY(1, 1, two, false); }, inPlane},
      {boxXY, [=] { squareKernelXY(1, two, false); }, inPlane},
      {boxXYZ, [=] { rectangularKernelXYZ(1, 1, 1, two, false); }, inSpace},
      {boxXYZ, [=] { cubicKernelXYZ(1, two, false); }, inSpace},
      {"orvel::KernelXYPtr orvel::linearKernelXY(ipReal32, const Real32Vector&, ipBool)",
       [=] { linearKernelXY(1, two, false); }, even},
      {"orvel::KernelXYPtr orvel::linearInterpolatedKernelXY(ipReal32, const Real32Vector&, ipBool)",
       [=] { linearInterpolatedKernelXY(1, two, false); }, even},
      {"orvel::KernelXYZPtr orvel::linearKernelXYZ(ipReal32, ipReal32, const Real32Vector&, ipBool)",
       [=] { linearKernelXYZ(1, 1, two, false); }, even},
      {"orvel::KernelXYZPtr orvel::linearInterpolatedKernelXYZ(ipReal32, ipReal32, const Real32Vector&, "
       "ipBool)",
       [=] { linearInterpolatedKernelXYZ(1, 1, two, false); }, even},
  };
}

TEST(KernelBuilders, RaiseEachFailureInTheNameOfTheirFunction)
{
  for (const FailingCall& each : failingCalls())
    expectRaised<ORVELBaseDataException>(
        each.call,
        {each.text, each.function, "ORVELBaseData/Pattern/Kernel/KernelUtils.cpp", "", "ORVEL_HERE"});
}

TEST(KernelBuilders, LogNothingWhenTheySucceed)
{
  const LogCapture log(getORVELBaseDataLogger());
  squareKernelXY(1, Real32Vector(9, 1.0F), false);
  cubicKernelXYZ(0, {1}, false);
  linearKernelXY(1, {1, 2, 3}, false);
  linearKernelXYZ(1, 1, {1, 2, 3}, false);
  linearInterpolatedKernelXY(1, {1, 2, 3}, false);
  linearInterpolatedKernelXYZ(1, 1, {1, 2, 3}, false);
  rotate2dKernel(1, makeKernel({{1, 0, 3}, {2, 0, 5}}));
  EXPECT_TRUE(log.getRecords().empty());
}

TEST(KernelBuilders, LeakNothingWhenMemoryRunsOut)
{
  const Real32Vector values = {1, 2, 3};
  const KernelXYPtr source = makeKernel({{-1, 0, 1}, {0, 0, 2}, {1, 0, 3}});
  const std::function<void()> calls[] = {
      [&] { rectangularKernelXY(1, 0, values, false); },
      [&] { rectangularKernelXYZ(1, 0, 0, values, false); },
      [&] { linearKernelXY(1, values, false); },
      [&] { linearKernelXYZ(1, 1, values, false); },
      [&] { linearInterpolatedKernelXY(1, values, false); },
      [&] { linearInterpolatedKernelXYZ(1, 1, values, false); },
      [&] { rotate2dKernel(1, source); },
  };
  for (const std::function<void()>& call : calls)
  {
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    const std::size_t nbFailures =
        failAtEachAllocation(call, [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); });
    EXPECT_GE(nbFailures, 1U + 3U); // the kernel and its taps
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  }
  EXPECT_EQ(source.use_count(), 1);
}

TEST(LinearKernel, RefusesTwoTapsWhoseIndicesAreOneInSinglePrecision)
{
  // 16777216 and 16777217 are one float; only a tap from one of the two has the place for itself.
  Real32Vector values(2 * std::size_t{16777217} + 1);
  values.back() = 2;
  EXPECT_EQ(tapsOf(*linearKernelXY(0, values, false)), (TapsXY{{16777216, 0, 2}}));
  values[values.size() - 2] = 1;
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { linearKernelXY(0, values, false); }),
            "Can't insert element into kernel, it already exists");
}

} // namespace
