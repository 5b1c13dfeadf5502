#pragma once

/// \file
/// \brief The normal distribution: density, its first two derivatives, cumulative distribution.
///
/// The four functions share their arguments: the place \c x, the standard deviation \c stdDev and the mean
/// \c mean, all in the same unit. Range: \c x and \c mean finite with a finite difference; \c stdDev above 0,
/// infinity gives the limit value, and above 7e307 it may be treated as infinity. A NaN argument gives a NaN.
/// Nothing is checked and nothing is raised.
///
/// \par Reference
/// M. Abramowitz, I. A. Stegun, Handbook of Mathematical Functions: 26.2.1 and 26.2.8 (the density), 26.2.10
/// (its derivatives), 26.2.2 and 26.2.29 (the cumulative distribution and its form by the error function).

#include <ORVELMath/ORVELMathExport.h>

namespace orvel::math
{

/// \brief Return the density of the normal distribution at \p x, in 1 / (unit of x).
///
/// exp(-(x - mean)^2 / (2 stdDev^2)) / (stdDev sqrt(2 pi)).
ORVELMATH_EXPORT double normalDistribution(double x, double stdDev, double mean);

/// \brief Return the first derivative of the normal density with respect to \p x, in 1 / (unit of x)^2.
///
/// -((x - mean) / stdDev^2) times the density. At the mean it is +0. Where it underflows it is -0 above the
/// mean and +0 below.
ORVELMATH_EXPORT double normalDistributionFirstDerivative(double x, double stdDev, double mean);

/// \brief Return the second derivative of the normal density with respect to \p x, in 1 / (unit of x)^3.
///
/// ((x - mean)^2 / stdDev^4 - 1 / stdDev^2) times the density.
ORVELMATH_EXPORT double normalDistributionSecondDerivative(double x, double stdDev, double mean);

/// \brief Return the probability that a normal variable is at most \p x.
///
/// erfc(-(x - mean) / (stdDev sqrt(2))) / 2, exactly 0.5 at the mean. The lower tail keeps its relative
/// precision down to the smallest numbers.
ORVELMATH_EXPORT double cumulativeNormalDistribution(double x, double stdDev, double mean);

} // namespace orvel::math
