#include "ORVELMath/NormalDistribution.h"

#include <cmath>

namespace orvel::math
{

namespace
{

constexpr double g_sqrtTwoPi = 2.50662827463100050241576528481;
constexpr double g_sqrtTwo = 1.41421356237309504880168872421;

/// A zero wins: far out the factor may be infinite, near the mean of a tiny standard deviation the density,
/// and infinity times zero is no number.
double timesDensity(double factor, double density)
{
  return factor == 0 || density == 0 ? 0.0 : factor * density;
}

} // namespace

double normalDistribution(double x, double stdDev, double mean)
{
  const double deviation = (x - mean) / stdDev;
  return std::exp(-0.5 * deviation * deviation) / (stdDev * g_sqrtTwoPi);
}

double normalDistributionFirstDerivative(double x, double stdDev, double mean)
{
  const double towardsMean = 0 - (x - mean); // at the mean +0, whatever the signs of two zeros
  const double slope = timesDensity(towardsMean / stdDev / stdDev, normalDistribution(x, stdDev, mean));
  // One sign for a slope of 0, whether the density, the factor or their product underflows.
  return slope == 0 ? std::copysign(slope, towardsMean) : slope;
}

double normalDistributionSecondDerivative(double x, double stdDev, double mean)
{
  const double deviation = (x - mean) / stdDev;
  // Divided twice: the square of a tiny standard deviation would vanish.
  return timesDensity((deviation - 1) * (deviation + 1) / stdDev / stdDev,
                      normalDistribution(x, stdDev, mean));
}

double cumulativeNormalDistribution(double x, double stdDev, double mean)
{
  // The complementary function, unlike 1 - erf, does not cancel in the lower tail.
  return 0.5 * std::erfc((mean - x) / (stdDev * g_sqrtTwo));
}

} // namespace orvel::math
