#include "ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include "../KernelTesting.h"
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

using MakeXY = void (*)(ipReal32, ipReal32, ipReal32, ipUInt32, KernelXYPtr&, KernelXYPtr&);
using MakeXYZ = void (*)(ipReal32, ipReal32, ipReal32, ipReal32, ipUInt32, KernelXYZPtr&, KernelXYZPtr&,
                         KernelXYZPtr&);

/// A family with what is expected of it: its tap at i, computed in the simplest way.
struct Family
{
  std::string name;
  MakeXY makeXY;
  MakeXYZ makeXYZ;
  double (*sample)(double i, double stdDev);
  bool isScaled;
};

double density(double i, double stdDev)
{
  return std::exp(-(i * i) / (2 * stdDev * stdDev)) / (stdDev * std::sqrt(2 * std::acos(-1.0)));
}

double firstDerivative(double i, double stdDev)
{
  return -(i / std::pow(stdDev, 2)) * density(i, stdDev);
}

double secondDerivative(double i, double stdDev)
{
  return (i * i / std::pow(stdDev, 4) - 1 / std::pow(stdDev, 2)) * density(i, stdDev);
}

const Family g_families[] = {
    {"separableGaussianSmoothing", &separableGaussianSmoothing, &separableGaussianSmoothing, &density, false},
    {"separableGaussianGradient", &separableGaussianGradient, &separableGaussianGradient, &firstDerivative,
     true},
    {"separableGaussianHessian", &separableGaussianHessian, &separableGaussianHessian, &secondDerivative,
     true},
};

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

KernelsXY makeXY(const Family& family, float stdDevX, float stdDevY, float ratio, ipUInt32 minKernelSize)
{
  KernelsXY kernels;
  family.makeXY(stdDevX, stdDevY, ratio, minKernelSize, kernels.x, kernels.y);
  return kernels;
}

KernelsXYZ makeXYZ(const Family& family, float stdDevX, float stdDevY, float stdDevZ, float ratio,
                   ipUInt32 minKernelSize)
{
  KernelsXYZ kernels;
  family.makeXYZ(stdDevX, stdDevY, stdDevZ, ratio, minKernelSize, kernels.x, kernels.y, kernels.z);
  return kernels;
}

const Family& smoothing()
{
  return g_families[0];
}

const Family& gradient()
{
  return g_families[1];
}

const Family& hessian()
{
  return g_families[2];
}

/// The coefficients from -n to n of a kernel whose taps all lie on one axis of offsets at(i).
template <class Kernel, class At>
std::vector<float> coefficientsOf(const Kernel& kernel, At at)
{
  const auto nbTaps = static_cast<int>(kernel.getNbData());
  std::vector<float> coefficients;
  for (int i = -(nbTaps / 2); i <= nbTaps / 2; ++i)
    coefficients.push_back(kernel.getValue(at(i)));
  return coefficients;
}

std::vector<float> onX(const KernelXY& kernel)
{
  return coefficientsOf(kernel, [](int i) { return OffsetXY(i, 0); });
}

std::vector<float> onY(const KernelXY& kernel)
{
  return coefficientsOf(kernel, [](int i) { return OffsetXY(0, i); });
}

std::vector<float> onX(const KernelXYZ& kernel)
{
  return coefficientsOf(kernel, [](int i) { return OffsetXYZ(i, 0, 0); });
}

std::vector<float> onY(const KernelXYZ& kernel)
{
  return coefficientsOf(kernel, [](int i) { return OffsetXYZ(0, i, 0); });
}

std::vector<float> onZ(const KernelXYZ& kernel)
{
  return coefficientsOf(kernel, [](int i) { return OffsetXYZ(0, 0, i); });
}

using Floats = std::vector<float>;

/// The coefficients by the definition: walk outward, then sample and scale.
Floats expectedCoefficients(const Family& family, float stdDev, float ratio, int minHalfSize)
{
  const double s = static_cast<double>(stdDev);
  const auto mass = [s](int i)
  {
    return std::erf(i / (s * std::sqrt(2.0)));
  };
  int stop = 1;
  while (stop <= minHalfSize || static_cast<double>(ratio) > mass(stop))
    ++stop;
  const float divisor =
      family.isScaled ? std::max(std::numeric_limits<float>::epsilon(), static_cast<float>(mass(stop))) : 1;
  Floats coefficients;
  for (int i = 1 - stop; i < stop; ++i)
    coefficients.push_back(static_cast<float>(family.sample(i, s)) / divisor);
  return coefficients;
}

// The numbers of a table, to the last digit.

TEST(GaussianKernel, SmoothsWithTheRawDensity)
{
  const KernelsXY kernels = makeXY(smoothing(), 1, 1, 0.9f, 0);
  EXPECT_EQ(onX(*kernels.x), (Floats{0.24197072f, 0.39894229f, 0.24197072f}));
  EXPECT_EQ(kernels.x->getCoefSum(), 0.8828837f); // not 1
  EXPECT_EQ(kernels.x->getAbsCoefSum(), 0.8828837f);
}

TEST(GaussianKernel, ScalesTheGradientByTheMassUpToTheFirstTapLeftOut)
{
  const KernelsXY kernels = makeXY(gradient(), 1, 1, 0.9f, 0);
  EXPECT_EQ(onX(*kernels.x), (Floats{0.25350529f, 0, -0.25350529f}));
  EXPECT_EQ(kernels.x->getValue(OffsetXY(-1, 0)), 0.24197072f / 0.95449972f);
}

TEST(GaussianKernel, KeepsTapsOfZeroInTheHessian)
{
  const KernelsXY kernels = makeXY(hessian(), 1, 1, 0.9f, 0);
  EXPECT_EQ(onX(*kernels.x), (Floats{0, -0.41795957f, 0}));
  EXPECT_TRUE(kernels.x->exists(OffsetXY(-1, 0)));
  EXPECT_TRUE(kernels.x->exists(OffsetXY(1, 0)));
}

TEST(GaussianKernel, HasAtLeastTheMinimumOnEachSide)
{
  for (const Family& family : g_families)
  {
    const KernelsXY kernels = makeXY(family, 1, 1, 0.9f, 3);
    EXPECT_EQ(kernels.x->getNbData(), 7U) << family.name;
    EXPECT_EQ(kernels.y->getNbData(), 7U) << family.name;
  }
  // -d(1) is the density at 1; the divisor is the mass up to 4.
  EXPECT_EQ(makeXY(gradient(), 1, 1, 0.9f, 3).x->getValue(OffsetXY(-1, 0)), 0.24197072f / 0.99993664f);
}

TEST(GaussianKernel, EndsBeforeTheTapWhoseMassReachesTheRatio)
{
  for (const Family& family : g_families)
    EXPECT_EQ(makeXY(family, 2, 2, 0.95f, 0).x->getNbData(), 7U)
        << family.name; // mass(3) 0.8664, mass(4) 0.9545
}

TEST(GaussianKernel, HasExactlyTheMinimumWithARatioOfZero)
{
  for (const Family& family : g_families)
    EXPECT_EQ(makeXY(family, 1.5f, 1.5f, 0, 2).x->getNbData(), 5U) << family.name;
}

TEST(GaussianKernel, MayHaveASmoothingCoefficientAboveOne)
{
  const KernelsXY kernels = makeXY(smoothing(), 0.3f, 0.3f, 0.9f, 0);
  // As a float the deviation is 0.300000012, which takes one from the last place of 1.3298076.
  const double stdDev = static_cast<double>(0.3f);
  const auto expected = static_cast<float>(1 / (stdDev * 2.506628274631000502));
  EXPECT_EQ(onX(*kernels.x), Floats{expected});
  EXPECT_NEAR(static_cast<double>(expected), 1.3298076, 1.3e-7);
  EXPECT_EQ(kernels.x->getCoefSum(), expected);
}

TEST(GaussianKernel, IsOneTapWhereTheFirstNeighbourReachesTheRatio)
{
  for (const Family& family : g_families)
    EXPECT_EQ(makeXY(family, 1, 1, 0.5f, 0).x->getNbData(), 1U) << family.name;
  EXPECT_EQ(onX(*makeXY(gradient(), 1, 1, 0.5f, 0).x), Floats{0});
}

TEST(GaussianKernel, IsNegativeAtPositiveOffsetsOfTheGradient)
{
  const KernelXYPtr kernel = makeXY(gradient(), 2, 2, 0.95f, 0).x;
  for (int i = 1; i <= 3; ++i)
  {
    EXPECT_LT(kernel->getValue(OffsetXY(i, 0)), 0) << i;
    EXPECT_GT(kernel->getValue(OffsetXY(-i, 0)), 0) << i;
  }
}

TEST(GaussianKernel, MirrorsEachCoefficientExactly)
{
  for (const Family& family : g_families)
  {
    const float sign = family.name == "separableGaussianGradient" ? -1.0f : 1.0f;
    const KernelXYPtr kernel = makeXY(family, 3.7f, 1, 0.999f, 0).x;
    for (int i = 1; i <= static_cast<int>(kernel->getNbData()) / 2; ++i)
      EXPECT_EQ(kernel->getValue(OffsetXY(-i, 0)), sign * kernel->getValue(OffsetXY(i, 0))) << family.name;
  }
}

TEST(GaussianKernel, ComparesTheRatioInDoublePrecision)
{
  // The ratios are the masses up to 1, 0.4950149249 and 0.3108434832, rounded up to float: only in double
  // precision is the mass still short of them.
  for (const Family& family : g_families)
  {
    EXPECT_EQ(makeXY(family, 1.5f, 1, 0.495014936f, 0).x->getNbData(), 3U) << family.name;
    EXPECT_EQ(makeXY(family, 2.5f, 1, 0.310843498f, 0).x->getNbData(), 3U) << family.name;
  }
}

TEST(GaussianKernel, RoundsSampleAndDivisorToFloatBeforeItDivides)
{
  // From an arithmetic of 60 digits. The last place of the gradient's differs for an unrounded divisor, that
  // of the Hessian's at 3 for an unrounded sample.
  const KernelsXY slopes = makeXY(gradient(), 2, 2, 0.95f, 0);
  EXPECT_EQ(slopes.x->getValue(OffsetXY(-1, 0)), 0.0440081656f / 0.954499722f);
  EXPECT_EQ(slopes.x->getValue(OffsetXY(1, 0)), -0.0440081656f / 0.954499722f);
  const KernelsXY bends = makeXY(hessian(), 2, 2, 0.95f, 0);
  EXPECT_EQ(bends.x->getValue(OffsetXY(3, 0)), 0.0202371236f / 0.954499722f);
  EXPECT_EQ(bends.x->getValue(OffsetXY(0, 0)), -0.0498677865f / 0.954499722f);
}

TEST(GaussianKernel, EndsForARatioRightBelowOne)
{
  // The largest float below 1; the mass up to 5420 is the first above it.
  for (const Family& family : g_families)
    EXPECT_EQ(makeXY(family, 1000, 1, 0.99999994f, 0).x->getNbData(), 2U * 5419 + 1) << family.name;
}

TEST(GaussianKernel, AgreesWithTheDefinitionForManyArguments)
{
  for (const Family& family : g_families)
    for (const float stdDev : {0.25f, 0.3f, 0.77f, 1.0f, 1.5f, 2.0f, 6.1f, 25.0f})
      for (const float ratio : {0.0f, 0.1f, 0.5f, 0.9f, 0.99f, 0.9999f, 0.99999994f})
        for (const int minHalfSize : {0, 1, 4, 30})
        {
          if (ratio == 0 && minHalfSize == 0)
            continue;
          const KernelXYPtr kernel = makeXY(family, stdDev, 1, ratio, static_cast<ipUInt32>(minHalfSize)).x;
          const Floats expected = expectedCoefficients(family, stdDev, ratio, minHalfSize);
          const Floats coefficients = onX(*kernel);
          ASSERT_EQ(coefficients.size(), expected.size())
              << family.name << " " << stdDev << " " << ratio << " " << minHalfSize;
          for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_NEAR(coefficients[i], expected[i], 1e-6f * std::abs(expected[i]) + 1e-30f)
                << family.name << " " << stdDev << " " << ratio << " " << minHalfSize << " " << i;
        }
}

TEST(GaussianKernel, ScalesByTheFloatEpsilonWhereTheMassIsLess)
{
  // The mass up to 2 is about 1.6e-10.
  const float stdDev = 1e10f;
  const double s = static_cast<double>(stdDev);
  const KernelXYPtr kernel = makeXY(hessian(), stdDev, 1, 0, 1).x;
  const auto sample = static_cast<float>(-0.39894228040143268 / (s * s * s));
  EXPECT_EQ(kernel->getValue(OffsetXY(0, 0)), sample / std::numeric_limits<float>::epsilon());
}

TEST(GaussianKernel, AcceptsAnInfiniteStandardDeviation)
{
  for (const Family& family : g_families)
  {
    const KernelsXY kernels = makeXY(family, g_infinity, g_infinity, 0, 2);
    EXPECT_EQ(onX(*kernels.x), Floats(5, 0.0f)) << family.name;
    EXPECT_EQ(onY(*kernels.y), Floats(5, 0.0f)) << family.name;
  }
}

/// "+" or "-" for each coefficient, by its sign bit.
std::string signsOf(const Floats& coefficients)
{
  std::string signs;
  for (const float coefficient : coefficients)
    signs += std::signbit(coefficient) ? '-' : '+';
  return signs;
}

TEST(GaussianKernel, HasOneSignOnEachSideWhereTheGradientUnderflows)
{
  // The density underflows from 4 on in double precision, from 2 on in single precision.
  const KernelsXY plane = makeXY(gradient(), 0.1f, 0.01f, 0, 5);
  EXPECT_EQ(signsOf(onX(*plane.x)), "++++++-----");
  EXPECT_EQ(signsOf(onY(*plane.y)), "++++++-----");
  EXPECT_NE(plane.x->getValue(OffsetXY(1, 0)), 0);
  for (const int i : {-5, -4, -3, -2, 0, 2, 3, 4, 5})
    EXPECT_EQ(plane.x->getValue(OffsetXY(i, 0)), 0) << i;

  const KernelsXYZ space = makeXYZ(gradient(), 0.1f, 1e-40f, g_infinity, 0, 5);
  EXPECT_EQ(signsOf(onX(*space.x)), "++++++-----");
  EXPECT_EQ(signsOf(onY(*space.y)), "++++++-----");
  EXPECT_EQ(signsOf(onZ(*space.z)), "++++++-----"); // no tap but zeros
  EXPECT_EQ(onZ(*space.z), Floats(11, 0.0f));
}

TEST(GaussianKernel, HasPositiveZerosWhereTheOtherFamiliesUnderflow)
{
  for (const Family* const family : {&smoothing(), &hessian()})
    for (const float stdDev : {0.1f, g_infinity})
    {
      const Floats coefficients = onX(*makeXY(*family, stdDev, 1, 0, 5).x);
      for (const int i : {0, 1, 2, 8, 9, 10})
        EXPECT_EQ(bitsOf(coefficients[static_cast<std::size_t>(i)]), 0U) << family->name << " " << i - 5;
    }
}

TEST(GaussianKernel, AcceptsTheSmallestStandardDeviation)
{
  const KernelsXY kernels = makeXY(smoothing(), std::numeric_limits<float>::denorm_min(), 1e-30f, 0.9f, 1);
  EXPECT_EQ(onX(*kernels.x), (Floats{0, g_infinity, 0})); // beyond the largest float
  EXPECT_EQ(onY(*kernels.y)[0], 0);
  EXPECT_NEAR(onY(*kernels.y)[1] / 3.9894228e29f, 1, 1e-6);
}

TEST(GaussianKernel, TakesAMinimumFromTheSignBitOnForNone)
{
  for (const ipUInt32 minKernelSize : {2147483648U, 4294967295U})
    for (const Family& family : g_families)
    {
      EXPECT_EQ(makeXY(family, 1, 1, 0.9f, minKernelSize).x->getNbData(), 3U) << family.name;
      EXPECT_EQ(makeXY(family, 1, 1, 0, minKernelSize).x->getNbData(), 1U) << family.name;
      EXPECT_EQ(makeXYZ(family, 1, 1, 1, 0.9f, minKernelSize).z->getNbData(), 3U) << family.name;
    }
}

TEST(GaussianKernel, AccumulatesTheSmoothingSumsOutwardFromTheCentre)
{
  const KernelXYPtr kernel = makeXY(smoothing(), 3.3f, 1, 0.999f, 0).x;
  const int halfSize = static_cast<int>(kernel->getNbData()) / 2;
  float sum = kernel->getValue(OffsetXY(0, 0));
  for (int i = 1; i <= halfSize; ++i)
  {
    sum += kernel->getValue(OffsetXY(i, 0));
    sum += kernel->getValue(OffsetXY(-i, 0));
  }
  float ascending = 0;
  for (const auto& tap : kernel->getDataColl())
    ascending += tap.second;
  ASSERT_NE(sum, ascending) << "these arguments do not tell the two orders apart";
  EXPECT_EQ(kernel->getCoefSum(), sum);
  EXPECT_EQ(kernel->getAbsCoefSum(), sum);
}

TEST(GaussianKernel, AccumulatesTheScaledSumsInAscendingOrder)
{
  for (const Family* family : {&gradient(), &hessian()})
  {
    const KernelXYPtr kernel = makeXY(*family, 3.3f, 1, 0.999f, 0).x;
    float sum = 0;
    float absSum = 0;
    for (const auto& tap : kernel->getDataColl())
    {
      sum += tap.second;
      absSum += std::abs(tap.second);
    }
    EXPECT_EQ(kernel->getCoefSum(), sum) << family->name;
    EXPECT_EQ(kernel->getAbsCoefSum(), absSum) << family->name;
  }
}

TEST(GaussianKernel, LaysEachKernelOfThePlaneOnItsOwnAxis)
{
  for (const Family& family : g_families)
  {
    const KernelsXY kernels = makeXY(family, 1, 2, 0.9f, 0);
    EXPECT_EQ(onX(*kernels.x).size(), 3U) << family.name;
    EXPECT_EQ(onY(*kernels.y).size(), 7U) << family.name;
    EXPECT_EQ(kernels.x->getMinX(), -1);
    EXPECT_EQ(kernels.x->getSizeX(), 3U);
    EXPECT_EQ(kernels.x->getMinY(), 0);
    EXPECT_EQ(kernels.x->getSizeY(), 1U);
    EXPECT_EQ(kernels.y->getMinX(), 0);
    EXPECT_EQ(kernels.y->getSizeX(), 1U);
    EXPECT_EQ(kernels.y->getMinY(), -3);
    EXPECT_EQ(kernels.y->getSizeY(), 7U);
  }
}

TEST(GaussianKernel, LaysEachKernelOfSpaceOnItsOwnAxis)
{
  for (const Family& family : g_families)
  {
    const KernelsXYZ kernels = makeXYZ(family, 1, 2, 0.3f, 0.9f, 0);
    EXPECT_EQ(onX(*kernels.x).size(), 3U) << family.name;
    EXPECT_EQ(onY(*kernels.y).size(), 7U) << family.name;
    EXPECT_EQ(onZ(*kernels.z).size(), 1U) << family.name;
    const KernelsXYZ turned = makeXYZ(family, 0.3f, 1, 2, 0.9f, 0);
    EXPECT_EQ(onX(*turned.x).size(), 1U) << family.name;
    EXPECT_EQ(onY(*turned.y).size(), 3U) << family.name;
    EXPECT_EQ(onZ(*turned.z).size(), 7U) << family.name;
  }
}

TEST(GaussianKernel, IsTheSameOnEveryAxisForEqualDeviations)
{
  for (const Family& family : g_families)
  {
    const KernelsXY plane = makeXY(family, 1.7f, 1.7f, 0.97f, 0);
    const KernelsXYZ space = makeXYZ(family, 1.7f, 1.7f, 1.7f, 0.97f, 0);
    const Floats coefficients = onX(*plane.x);
    EXPECT_EQ(onY(*plane.y), coefficients) << family.name;
    EXPECT_EQ(onX(*space.x), coefficients) << family.name;
    EXPECT_EQ(onY(*space.y), coefficients) << family.name;
    EXPECT_EQ(onZ(*space.z), coefficients) << family.name;
  }
}

TEST(GaussianKernel, ReleasesWhatThePointersHeld)
{
  for (const Family& family : g_families)
  {
    KernelXYPtr x = boost::make_shared<KernelXY>();
    KernelXYPtr y = boost::make_shared<KernelXY>();
    const boost::weak_ptr<KernelXY> oldX = x;
    const boost::weak_ptr<KernelXY> oldY = y;
    family.makeXY(1, 1, 0.9f, 0, x, y);
    EXPECT_TRUE(oldX.expired()) << family.name;
    EXPECT_TRUE(oldY.expired()) << family.name;
    EXPECT_NE(x, y) << family.name;
  }
}

TEST(GaussianKernel, ReleasesInTheOrderOfTheAxesBeforeItChecksAnything)
{
  for (const Family& family : g_families)
  {
    std::string released;
    KernelXYPtr planeX = makeNoting<KernelXY>('x', released);
    KernelXYPtr planeY = makeNoting<KernelXY>('y', released);
    EXPECT_THROW(family.makeXY(0, 0, 2, 0, planeX, planeY), ORVELBaseDataException) << family.name;
    EXPECT_EQ(released, "xy") << family.name;

    released.clear();
    KernelXYZPtr x = makeNoting<KernelXYZ>('x', released);
    KernelXYZPtr y = makeNoting<KernelXYZ>('y', released);
    KernelXYZPtr z = makeNoting<KernelXYZ>('z', released);
    EXPECT_THROW(family.makeXYZ(0, 0, 0, 2, 0, x, y, z), ORVELBaseDataException) << family.name;
    EXPECT_EQ(released, "xyz") << family.name;
  }
}

TEST(GaussianKernel, KeepsNothingOfWhatItMakes)
{
  for (const Family& family : g_families)
  {
    const KernelsXY plane = makeXY(family, 1, 1, 0.9f, 0);
    const KernelsXYZ space = makeXYZ(family, 1, 1, 1, 0.9f, 0);
    for (const KernelXYPtr& kernel : {plane.x, plane.y})
      EXPECT_EQ(kernel.use_count(), 2) << family.name; // the list of the loop has one
    for (const KernelXYZPtr& kernel : {space.x, space.y, space.z})
      EXPECT_EQ(kernel.use_count(), 2) << family.name;
  }
}

TEST(GaussianKernel, LeavesTheLastAxisInAPointerGivenForAll)
{
  for (const Family& family : g_families)
  {
    KernelXYZPtr kernel = boost::make_shared<KernelXYZ>();
    family.makeXYZ(1, 1, 2, 0.9f, 0, kernel, kernel, kernel);
    EXPECT_EQ(onZ(*kernel).size(), 7U) << family.name;
    EXPECT_EQ(kernel.use_count(), 1) << family.name;
  }
}

TEST(GaussianKernel, IsReentrant)
{
  const auto make = [](std::size_t i)
  {
    Floats all;
    for (const Family& family : g_families)
    {
      const KernelsXYZ kernels = makeXYZ(family, 0.5f + static_cast<float>(i), 2, 30, 0.999f, 0);
      for (const Floats& coefficients : {onX(*kernels.x), onY(*kernels.y), onZ(*kernels.z)})
        all.insert(all.end(), coefficients.begin(), coefficients.end());
    }
    return all;
  };
  std::vector<Floats> expected;
  for (std::size_t i = 0; i < 4; ++i)
    expected.push_back(make(i));

  std::vector<Floats> made(expected.size());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < expected.size(); ++i)
    threads.emplace_back([&, i] { made[i] = make(i); });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(made, expected);
}

// Failures.

constexpr const char* g_invalidX =
    "Invalid value %s for input standard deviation along x axis, should be in ]0, inf[";
constexpr const char* g_invalidY =
    "Invalid value %s for input standard deviation along y axis, should be in ]0, inf[";
constexpr const char* g_invalidZ =
    "Invalid value %s for input standard deviation along z axis, should be in ]0, inf[";
constexpr const char* g_invalidRatio =
    "Invalid value %s for input gaussian distribution ratio, should be in ]0, 1[";
constexpr const char* g_bothNull = "Gaussian ratio and minimum kernel size can't be both null";

std::string textWith(std::string text, const std::string& value)
{
  const std::size_t place = text.find("%s");
  return place == std::string::npos ? text : text.replace(place, 2, value);
}

/// Expects a failure with that text from every function of the plane, with null pointers behind it.
void expectFailureXY(float stdDevX, float stdDevY, float ratio, ipUInt32 minKernelSize,
                     const std::string& text)
{
  for (const Family& family : g_families)
  {
    KernelXYPtr x = boost::make_shared<KernelXY>();
    KernelXYPtr y = boost::make_shared<KernelXY>();
    EXPECT_EQ(failureOf<ORVELBaseDataException>(
                  [&] { family.makeXY(stdDevX, stdDevY, ratio, minKernelSize, x, y); })
                  .getMessage(),
              text)
        << family.name;
    EXPECT_EQ(x, nullptr) << family.name;
    EXPECT_EQ(y, nullptr) << family.name;
  }
}

void expectFailureXYZ(float stdDevX, float stdDevY, float stdDevZ, float ratio, ipUInt32 minKernelSize,
                      const std::string& text)
{
  for (const Family& family : g_families)
  {
    KernelXYZPtr x = boost::make_shared<KernelXYZ>();
    KernelXYZPtr y = boost::make_shared<KernelXYZ>();
    KernelXYZPtr z = boost::make_shared<KernelXYZ>();
    EXPECT_EQ(failureOf<ORVELBaseDataException>(
                  [&] { family.makeXYZ(stdDevX, stdDevY, stdDevZ, ratio, minKernelSize, x, y, z); })
                  .getMessage(),
              text)
        << family.name;
    EXPECT_EQ(x, nullptr) << family.name;
    EXPECT_EQ(y, nullptr) << family.name;
    EXPECT_EQ(z, nullptr) << family.name;
  }
}

TEST(GaussianKernel, RefusesADeviationAlongXThatIsNotAboveZero)
{
  expectFailureXY(0, 1, 0.9f, 0, textWith(g_invalidX, "0.000000"));
  expectFailureXY(-1.5f, 1, 0.9f, 0, textWith(g_invalidX, "-1.500000"));
  expectFailureXY(-g_infinity, 1, 0.9f, 0, textWith(g_invalidX, "-inf"));
  expectFailureXYZ(0, 1, 1, 0.9f, 0, textWith(g_invalidX, "0.000000"));
}

TEST(GaussianKernel, RefusesADeviationAlongYThatIsNotAboveZero)
{
  expectFailureXY(1, 0, 0.9f, 0, textWith(g_invalidY, "0.000000"));
  expectFailureXY(1, -2, 0.9f, 0, textWith(g_invalidY, "-2.000000"));
  expectFailureXYZ(1, -2, 1, 0.9f, 0, textWith(g_invalidY, "-2.000000"));
}

TEST(GaussianKernel, RefusesADeviationAlongZThatIsNotAboveZero)
{
  expectFailureXYZ(1, 1, 0, 0.9f, 0, textWith(g_invalidZ, "0.000000"));
  expectFailureXYZ(1, 1, -3, 0.9f, 0, textWith(g_invalidZ, "-3.000000"));
}

TEST(GaussianKernel, RefusesARatioOutOfItsRangeWhateverTheMinimum)
{
  for (const ipUInt32 minKernelSize : {0U, 5U, 1000U})
  {
    expectFailureXY(1, 1, 1, minKernelSize, textWith(g_invalidRatio, "1.000000"));
    expectFailureXY(1, 1, -0.1f, minKernelSize, textWith(g_invalidRatio, "-0.100000"));
    expectFailureXYZ(1, 1, 1, 1, minKernelSize, textWith(g_invalidRatio, "1.000000"));
    expectFailureXYZ(1, 1, 1, -0.1f, minKernelSize, textWith(g_invalidRatio, "-0.100000"));
  }
  expectFailureXY(1, 1, g_infinity, 0, textWith(g_invalidRatio, "inf"));
}

TEST(GaussianKernel, RefusesARatioOfZeroWithoutAMinimum)
{
  expectFailureXY(1, 1, 0, 0, g_bothNull);
  expectFailureXY(1, 1, -0.0f, 0, g_bothNull);
  expectFailureXYZ(1, 1, 1, 0, 0, g_bothNull);
}

TEST(GaussianKernel, RefusesNaN)
{
  expectFailureXY(g_nan, 1, 0.9f, 0, textWith(g_invalidX, "nan"));
  expectFailureXY(1, g_nan, 0.9f, 0, textWith(g_invalidY, "nan"));
  expectFailureXY(1, 1, g_nan, 3, textWith(g_invalidRatio, "nan"));
  expectFailureXYZ(g_nan, 1, 1, 0.9f, 0, textWith(g_invalidX, "nan"));
  expectFailureXYZ(1, g_nan, 1, 0.9f, 0, textWith(g_invalidY, "nan"));
  expectFailureXYZ(1, 1, g_nan, 0.9f, 0, textWith(g_invalidZ, "nan"));
  expectFailureXYZ(1, 1, 1, g_nan, 3, textWith(g_invalidRatio, "nan"));
}

TEST(GaussianKernel, ChecksItsArgumentsInOrder)
{
  expectFailureXY(0, 0, 2, 0, textWith(g_invalidX, "0.000000"));
  expectFailureXY(1, 0, 2, 0, textWith(g_invalidY, "0.000000"));
  expectFailureXYZ(0, 0, 0, 2, 0, textWith(g_invalidX, "0.000000"));
  expectFailureXYZ(1, 0, 0, 2, 0, textWith(g_invalidY, "0.000000"));
  expectFailureXYZ(1, 1, 0, 2, 0, textWith(g_invalidZ, "0.000000"));
}

TEST(GaussianKernel, RaisesEachFailureInTheNameOfItsFunction)
{
  const std::string file = "ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.cpp";
  for (const Family& family : g_families)
  {
    const std::string inPlane =
        "void orvel::" + family.name + "(ipReal32, ipReal32, ipReal32, ipUInt32, KernelXYPtr&, KernelXYPtr&)";
    const auto expectXY = [&](const auto& operation, const std::string& text)
    {
      expectRaised<ORVELBaseDataException>(operation, {text, inPlane, file, "", "ORVEL_HERE"});
    };
    expectXY([&] { makeXY(family, 0, 1, 0.9f, 0); }, textWith(g_invalidX, "0.000000"));
    expectXY([&] { makeXY(family, 1, 0, 0.9f, 0); }, textWith(g_invalidY, "0.000000"));
    expectXY([&] { makeXY(family, 1, 1, 1, 0); }, textWith(g_invalidRatio, "1.000000"));
    expectXY([&] { makeXY(family, 1, 1, 0, 0); }, g_bothNull);

    const std::string inSpace = "void orvel::" + family.name +
                                "(ipReal32, ipReal32, ipReal32, ipReal32, ipUInt32, KernelXYZPtr&, "
                                "KernelXYZPtr&, KernelXYZPtr&)";
    const auto expectXYZ = [&](const auto& operation, const std::string& text)
    {
      expectRaised<ORVELBaseDataException>(operation, {text, inSpace, file, "", "ORVEL_HERE"});
    };
    expectXYZ([&] { makeXYZ(family, 0, 1, 1, 0.9f, 0); }, textWith(g_invalidX, "0.000000"));
    expectXYZ([&] { makeXYZ(family, 1, 0, 1, 0.9f, 0); }, textWith(g_invalidY, "0.000000"));
    expectXYZ([&] { makeXYZ(family, 1, 1, 0, 0.9f, 0); }, textWith(g_invalidZ, "0.000000"));
    expectXYZ([&] { makeXYZ(family, 1, 1, 1, 1, 0); }, textWith(g_invalidRatio, "1.000000"));
    expectXYZ([&] { makeXYZ(family, 1, 1, 1, 0, 0); }, g_bothNull);
  }
}

TEST(GaussianKernel, LeavesNullPointersAndNoLeakWhenMemoryRunsOut)
{
  for (const Family& family : g_families)
  {
    const auto old = boost::make_shared<KernelXYZ>();
    KernelXYZPtr x;
    KernelXYZPtr y;
    KernelXYZPtr z;
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    const std::size_t nbFailures = failAtEachAllocation(
        [&]
        {
          x = y = z = old;
          family.makeXYZ(1, 1, 1, 0.9f, 0, x, y, z);
        },
        [&]
        {
          EXPECT_EQ(x, nullptr) << family.name;
          EXPECT_EQ(y, nullptr) << family.name;
          EXPECT_EQ(z, nullptr) << family.name;
          EXPECT_EQ(getNbBlocksInUse(), nbBlocks) << family.name;
        });
    EXPECT_GE(nbFailures, 3U * (1 + 3)) << family.name; // a kernel and its taps, for each axis
    EXPECT_EQ(x->getNbData(), 3U) << family.name;
    EXPECT_EQ(z->getNbData(), 3U) << family.name;
  }
}

TEST(GaussianKernel, LogsNothingWhenItSucceeds)
{
  const LogCapture log(getORVELBaseDataLogger());
  for (const Family& family : g_families)
    makeXY(family, 1, 1, 0.9f, 0);
  EXPECT_TRUE(log.getRecords().empty());
}

} // namespace
