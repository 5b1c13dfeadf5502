#include "ORVELMath/NormalDistribution.h"

#include <cmath>
#include <limits>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using orvel::math::cumulativeNormalDistribution;
using orvel::math::normalDistribution;
using orvel::math::normalDistributionFirstDerivative;
using orvel::math::normalDistributionSecondDerivative;

constexpr double g_infinity = std::numeric_limits<double>::infinity();

// Densities of the standard normal distribution, to 22 digits.
constexpr double g_density0 = 0.3989422804014326779399;
constexpr double g_density1 = 0.2419707245191433497978;
constexpr double g_density2 = 0.05399096651318805195056;

TEST(NormalDistribution, HasTheDensityOfTheTable)
{
  EXPECT_NEAR(normalDistribution(0, 1, 0), 0.39894228, 5e-9);
  EXPECT_DOUBLE_EQ(normalDistribution(0, 1, 0), g_density0);
  EXPECT_DOUBLE_EQ(normalDistribution(0.5, 1, 0), 0.3520653267642994777747);
  EXPECT_DOUBLE_EQ(normalDistribution(1, 1, 0), g_density1);
  EXPECT_DOUBLE_EQ(normalDistribution(2, 1, 0), g_density2);
  EXPECT_DOUBLE_EQ(normalDistribution(10, 1, 0), 7.694598626706419346339e-23);
}

TEST(NormalDistribution, TakesTheStandardDeviationBeforeTheMean)
{
  // One deviation from the mean: (5 - 3) / 2.
  EXPECT_DOUBLE_EQ(normalDistribution(5, 2, 3), g_density1 / 2);
  EXPECT_DOUBLE_EQ(normalDistributionFirstDerivative(5, 2, 3), -g_density1 / 4);
  EXPECT_DOUBLE_EQ(normalDistributionSecondDerivative(7, 2, 3), 3 * g_density2 / 8);
  EXPECT_DOUBLE_EQ(cumulativeNormalDistribution(5, 2, 3), 0.8413447460685429485852);
}

TEST(NormalDistribution, IsSymmetricAboutTheMean)
{
  for (const double x : {0.25, 1.0, 3.0, 20.0})
    EXPECT_EQ(normalDistribution(5 + x, 1.5, 5), normalDistribution(5 - x, 1.5, 5)) << x;
}

TEST(NormalDistribution, FadesToZeroFarOut)
{
  EXPECT_EQ(normalDistribution(100, 1, 0), 0);
  EXPECT_EQ(normalDistribution(1e300, 1, 0), 0);
  EXPECT_EQ(normalDistribution(-g_infinity, 1, 0), 0);
}

TEST(NormalDistributionFirstDerivative, HasTheValuesOfTheFormula)
{
  EXPECT_DOUBLE_EQ(normalDistributionFirstDerivative(1, 1, 0), -g_density1);
  EXPECT_DOUBLE_EQ(normalDistributionFirstDerivative(2, 1, 0), -2 * g_density2);
  EXPECT_DOUBLE_EQ(normalDistributionFirstDerivative(-2, 1, 0), 2 * g_density2);
  EXPECT_DOUBLE_EQ(normalDistributionFirstDerivative(1, 0.5, 0), -8 * g_density2);
}

TEST(NormalDistributionFirstDerivative, IsPositiveZeroAtTheMean)
{
  EXPECT_EQ(normalDistributionFirstDerivative(3, 2, 3), 0);
  EXPECT_FALSE(std::signbit(normalDistributionFirstDerivative(3, 2, 3)));
  for (const double x : {0.0, -0.0})
    for (const double mean : {0.0, -0.0})
      EXPECT_FALSE(std::signbit(normalDistributionFirstDerivative(x, 1, mean))) << x << " " << mean;
}

TEST(NormalDistributionFirstDerivative, IsNegativeZeroAboveTheMeanWhereItUnderflows)
{
  // The density of the first three, the product of the fourth, the factor of the others.
  const double arguments[][2] = {{0.4, 0.01}, {1e300, 1e-10}, {2e10, 1},
                                 {1, 1e120},  {1, 1e300},     {1, g_infinity}};
  for (const auto& [x, stdDev] : arguments)
  {
    const double above = normalDistributionFirstDerivative(5 + x, stdDev, 5);
    EXPECT_EQ(above, 0) << x << " " << stdDev;
    EXPECT_TRUE(std::signbit(above)) << x << " " << stdDev;
    const double below = normalDistributionFirstDerivative(5 - x, stdDev, 5);
    EXPECT_EQ(below, 0) << x << " " << stdDev;
    EXPECT_FALSE(std::signbit(below)) << x << " " << stdDev;
  }
}

TEST(NormalDistributionSecondDerivative, IsPositiveZeroFarOut)
{
  EXPECT_FALSE(std::signbit(normalDistributionSecondDerivative(100, 1, 0)));
  EXPECT_FALSE(std::signbit(normalDistributionSecondDerivative(-100, 1, 0)));
  EXPECT_FALSE(std::signbit(normalDistributionSecondDerivative(1, g_infinity, 0)));
}

TEST(NormalDistributionFirstDerivative, IsTheSlopeOfTheDensity)
{
  const double step = 1e-5;
  for (const double x : {-2.3, -0.4, 0.7, 1.9})
  {
    const double slope =
        (normalDistribution(x + step, 0.8, 0.1) - normalDistribution(x - step, 0.8, 0.1)) / (2 * step);
    EXPECT_NEAR(normalDistributionFirstDerivative(x, 0.8, 0.1), slope, 1e-9) << x;
  }
}

TEST(NormalDistributionFirstDerivative, FadesToZeroFarOut)
{
  EXPECT_EQ(normalDistributionFirstDerivative(1e300, 1e-10, 0), 0);
  EXPECT_EQ(normalDistributionFirstDerivative(-g_infinity, 1, 0), 0);
}

TEST(NormalDistributionSecondDerivative, HasTheValuesOfTheFormula)
{
  EXPECT_DOUBLE_EQ(normalDistributionSecondDerivative(0, 1, 0), -g_density0);
  EXPECT_DOUBLE_EQ(normalDistributionSecondDerivative(2, 1, 0), 3 * g_density2);
  EXPECT_DOUBLE_EQ(normalDistributionSecondDerivative(-2, 1, 0), 3 * g_density2);
  EXPECT_DOUBLE_EQ(normalDistributionSecondDerivative(0, 2, 0), -g_density0 / 8);
}

TEST(NormalDistributionSecondDerivative, IsExactlyZeroOneDeviationFromTheMean)
{
  EXPECT_EQ(normalDistributionSecondDerivative(1, 1, 0), 0);
  EXPECT_EQ(normalDistributionSecondDerivative(-3, 3, 0), 0);
}

TEST(NormalDistributionSecondDerivative, IsTheSlopeOfTheFirst)
{
  const double step = 1e-5;
  for (const double x : {-2.3, -0.4, 0.7, 1.9})
  {
    const double slope = (normalDistributionFirstDerivative(x + step, 0.8, 0.1) -
                          normalDistributionFirstDerivative(x - step, 0.8, 0.1)) /
                         (2 * step);
    EXPECT_NEAR(normalDistributionSecondDerivative(x, 0.8, 0.1), slope, 1e-8) << x;
  }
}

TEST(NormalDistributionSecondDerivative, FadesToZeroFarOut)
{
  EXPECT_EQ(normalDistributionSecondDerivative(1e300, 1e-10, 0), 0);
  EXPECT_EQ(normalDistributionSecondDerivative(-g_infinity, 1, 0), 0);
}

TEST(CumulativeNormalDistribution, IsExactlyOneHalfAtTheMean)
{
  for (const double stdDev : {std::numeric_limits<double>::denorm_min(), 1e-300, 0.3, 1.0, 1.5, 7.0, 1e300,
                              std::numeric_limits<double>::max(), g_infinity})
    EXPECT_EQ(cumulativeNormalDistribution(0, stdDev, 0), 0.5) << stdDev;
}

TEST(CumulativeNormalDistribution, HasTheValuesOfTheTable)
{
  EXPECT_DOUBLE_EQ(cumulativeNormalDistribution(0.5, 1, 0), 0.6914624612740131036377);
  EXPECT_DOUBLE_EQ(cumulativeNormalDistribution(1, 1, 0), 0.8413447460685429485852);
  EXPECT_DOUBLE_EQ(cumulativeNormalDistribution(1.96, 1, 0), 0.9750021048517795658634);
  EXPECT_DOUBLE_EQ(cumulativeNormalDistribution(2, 1, 0), 0.9772498680518207927997);
  EXPECT_DOUBLE_EQ(cumulativeNormalDistribution(3, 1, 0), 0.9986501019683699054733);
  EXPECT_DOUBLE_EQ(cumulativeNormalDistribution(-1, 1, 0), 0.1586552539314570514148);
}

TEST(CumulativeNormalDistribution, KeepsItsPrecisionInTheLowerTail)
{
  EXPECT_NEAR(cumulativeNormalDistribution(-6, 1, 0) / 9.865876450376981407009e-10, 1, 1e-14);
  EXPECT_NEAR(cumulativeNormalDistribution(-10, 1, 0) / 7.619853024160526065973e-24, 1, 1e-13);
  EXPECT_NEAR(cumulativeNormalDistribution(-37, 1, 0) / 5.725571222524576822683e-300, 1, 1e-12);
}

TEST(CumulativeNormalDistribution, RunsFromZeroToOne)
{
  EXPECT_EQ(cumulativeNormalDistribution(-g_infinity, 1, 0), 0);
  EXPECT_EQ(cumulativeNormalDistribution(-1e300, 1e-5, 0), 0);
  EXPECT_EQ(cumulativeNormalDistribution(1e300, 1e-5, 0), 1);
  EXPECT_EQ(cumulativeNormalDistribution(g_infinity, 1, 0), 1);
}

TEST(CumulativeNormalDistribution, NeverFalls)
{
  double before = 0;
  for (int i = -4000; i <= 4000; ++i)
  {
    const double share = cumulativeNormalDistribution(i / 100.0, 1.3, 0.2);
    ASSERT_GE(share, before) << i;
    before = share;
  }
  EXPECT_EQ(before, 1);
}

TEST(NormalDistributionFunctions, TakeAnInfiniteStandardDeviationAsTheFlatLimit)
{
  for (const double x : {0.0, 1.0, -1e10})
  {
    EXPECT_EQ(normalDistribution(x, g_infinity, 0), 0);
    EXPECT_EQ(normalDistributionFirstDerivative(x, g_infinity, 0), 0);
    EXPECT_EQ(normalDistributionSecondDerivative(x, g_infinity, 0), 0);
    EXPECT_EQ(cumulativeNormalDistribution(x, g_infinity, 0), 0.5);
  }
}

TEST(NormalDistributionFunctions, StandATinyStandardDeviation)
{
  // The squares of these vanish; the densities of the last two at the mean are beyond the largest number.
  for (const double stdDev : {1e-170, 1e-200, 1e-310, std::numeric_limits<double>::denorm_min()})
  {
    EXPECT_EQ(normalDistributionFirstDerivative(0, stdDev, 0), 0) << stdDev;
    EXPECT_EQ(normalDistributionSecondDerivative(stdDev, stdDev, 0), 0) << stdDev;
    EXPECT_EQ(normalDistributionSecondDerivative(0, stdDev, 0), -g_infinity) << stdDev;
    EXPECT_EQ(normalDistribution(1, stdDev, 0), 0) << stdDev;
    EXPECT_EQ(normalDistributionFirstDerivative(1, stdDev, 0), 0) << stdDev;
    EXPECT_EQ(normalDistributionSecondDerivative(1, stdDev, 0), 0) << stdDev;
  }
}

TEST(NormalDistributionFunctions, TakeTheLargestStandardDeviationsForInfinity)
{
  for (const double stdDev : {1.3e308, std::numeric_limits<double>::max()})
  {
    EXPECT_EQ(normalDistribution(0, stdDev, 0), 0) << stdDev;
    EXPECT_EQ(normalDistributionFirstDerivative(stdDev, stdDev, 0), 0) << stdDev;
    EXPECT_EQ(normalDistributionSecondDerivative(0, stdDev, 0), 0) << stdDev;
    EXPECT_EQ(cumulativeNormalDistribution(stdDev, stdDev, 0), 0.5) << stdDev;
  }
}

TEST(NormalDistributionFunctions, StandTheLargestFloatAsStandardDeviation)
{
  const double largest = static_cast<double>(std::numeric_limits<float>::max());
  EXPECT_DOUBLE_EQ(normalDistribution(largest, largest, 0), g_density1 / largest);
  EXPECT_DOUBLE_EQ(normalDistributionFirstDerivative(largest, largest, 0), -g_density1 / largest / largest);
  EXPECT_DOUBLE_EQ(normalDistributionSecondDerivative(0, largest, 0),
                   -g_density0 / largest / largest / largest);
  EXPECT_DOUBLE_EQ(cumulativeNormalDistribution(largest, largest, 0), 0.8413447460685429485852);
}

TEST(NormalDistributionFunctions, GiveNaNForNaN)
{
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const auto function : {&normalDistribution, &normalDistributionFirstDerivative,
                              &normalDistributionSecondDerivative, &cumulativeNormalDistribution})
  {
    EXPECT_TRUE(std::isnan(function(nan, 1, 0)));
    EXPECT_TRUE(std::isnan(function(0, nan, 0)));
    EXPECT_TRUE(std::isnan(function(0, 1, nan)));
  }
}

TEST(NormalDistributionFunctions, AreReentrant)
{
  const auto sum = [](double stdDev)
  {
    double total = 0;
    for (int x = -2000; x <= 2000; ++x)
      total += normalDistribution(x, stdDev, 0) + normalDistributionFirstDerivative(x, stdDev, 1) +
               normalDistributionSecondDerivative(x, stdDev, 2) + cumulativeNormalDistribution(x, stdDev, 3);
    return total;
  };
  const std::vector<double> deviations = {0.5, 1, 3, 10, 30, 100, 300, 1000};
  std::vector<double> expected;
  for (const double stdDev : deviations)
    expected.push_back(sum(stdDev));

  std::vector<double> totals(deviations.size());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < deviations.size(); ++i)
    threads.emplace_back([&, i] { totals[i] = sum(deviations[i]); });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(totals, expected);
}

} // namespace
