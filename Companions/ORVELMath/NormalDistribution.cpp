#include <ORVELMath/NormalDistribution.h>

#include <cmath>

namespace orvel::math
{

namespace
{

constexpr double g_sqrtTwoPi = 2.50662827463100050241576528481;
constexpr double g_sqrtTwo = 1.41421356237309504880168872421;

} // namespace

double normalDistribution(double x, double stdDev, double mean)
{
  const double deviation = (x - mean) / stdDev;
  return std::exp(-0.5 * deviation * deviation) / (stdDev * g_sqrtTwoPi);
}

double normalDistributionFirstDerivative(double x, double stdDev, double mean)
{
  const double density = normalDistribution(x, stdDev, mean);
  if (density == 0) // far out the factor may be infinite, and infinity times zero is no number
    return 0;
  const double deviation = (mean - x) / stdDev;
  return deviation / stdDev * density;
}

double normalDistributionSecondDerivative(double x, double stdDev, double mean)
{
  const double density = normalDistribution(x, stdDev, mean);
  if (density == 0) // as above
    return 0;
  const double deviation = (x - mean) / stdDev;
  return (deviation - 1) * (deviation + 1) / (stdDev * stdDev) * density;
}

double cumulativeNormalDistribution(double x, double stdDev, double mean)
{
  // The complementary function, unlike 1 - erf, does not cancel in the lower tail.
  return 0.5 * std::erfc((mean - x) / (stdDev * g_sqrtTwo));
}

} // namespace orvel::math
