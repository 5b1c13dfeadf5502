#include "ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>

#include <ORVELBaseData/Pattern/Kernel/KernelLogMessages.h>
#include <ORVELBaseData/Pattern/Private/SeparableKernels.h>
#include <ORVELMath/NormalDistribution.h>
#include <ORVELMath/NumericLimits.h>
#include <ORVELUtil/Raise.h>

namespace orvel
{

namespace
{

/// What the three families differ in.
struct Family
{
  double (*sample)(double x, double stdDev, double mean);
  bool isOdd;    ///< the coefficient at -i is the negated one of i
  bool isScaled; ///< coefficients are divided by the mass up to the first tap left out
};

constexpr Family g_smoothing = {&math::normalDistribution, false, false};
constexpr Family g_gradient = {&math::normalDistributionFirstDerivative, true, true};
constexpr Family g_hessian = {&math::normalDistributionSecondDerivative, false, true};

constexpr eKernelMessage::domain g_invalidStdDev[] = {
    eKernelMessage::eInvalidStdDevX, eKernelMessage::eInvalidStdDevY, eKernelMessage::eInvalidStdDevZ};

/// How far a kernel has to reach.
struct Reach
{
  ipReal32 ratio;
  ipUInt32 minKernelSize;
};

/// The line of taps on one axis.
template <class Kernel>
class Line
{
public:
  Line(const Family& family, std::size_t axis, double stdDev, const Reach& reach)
    : _family(family)
    , _axis(axis)
    , _stdDev(stdDev)
    , _halfSize(findHalfSize(reach))
  {
  }

  void fill(Kernel& kernel) const
  {
    if (_family.isScaled)
      insertScaled(kernel);
    else
      insertRaw(kernel);
  }

private:
  /// Share of the distribution between -i and i.
  double mass(double i) const { return 2 * (math::cumulativeNormalDistribution(i, _stdDev, 0) - 0.5); }

  ipInt32 findHalfSize(const Reach& reach) const
  {
    // As a signed number: a minimum from 2147483648 on counts as 0.
    auto halfSize = std::max(static_cast<ipInt32>(reach.minKernelSize), 0);
    while (halfSize < std::numeric_limits<ipInt32>::max() && // beyond lies no offset
           static_cast<double>(reach.ratio) > mass(halfSize + 1.0))
      ++halfSize;
    return halfSize;
  }

  ipReal32 coefficientAt(ipInt32 i) const
  {
    const auto sample = static_cast<ipReal32>(_family.sample(std::abs(i), _stdDev, 0));
    return i < 0 && _family.isOdd ? -sample : sample;
  }

  typename Kernel::OffsetType offsetAt(ipInt32 i) const
  {
    return details::offsetOnAxis<typename Kernel::OffsetType>(_axis, i);
  }

  // The sums of a kernel depend on the order of its taps: outward from the centre here, ascending below.
  void insertRaw(Kernel& kernel) const
  {
    kernel.insert(offsetAt(0), coefficientAt(0));
    for (ipInt64 distance = 1; distance <= _halfSize; ++distance)
    {
      const auto i = static_cast<ipInt32>(distance);
      kernel.insert(offsetAt(i), coefficientAt(i));
      kernel.insert(offsetAt(-i), coefficientAt(-i));
    }
  }

  void insertScaled(Kernel& kernel) const
  {
    const ipReal32 divisor =
        std::max(NumericLimits<ipReal32>::s_eps, static_cast<ipReal32>(mass(_halfSize + 1.0)));
    for (ipInt64 coordinate = -ipInt64(_halfSize); coordinate <= _halfSize; ++coordinate)
    {
      const auto i = static_cast<ipInt32>(coordinate);
      kernel.insert(offsetAt(i), coefficientAt(i) / divisor);
    }
  }

  Family _family;
  std::size_t _axis;
  double _stdDev;
  ipInt32 _halfSize;
};

/// The body of all six functions, for the axes of a kernel's space.
template <class Kernel, std::size_t NB_AXES>
void makeSeparable(const SourceLocation& here, const Family& family, const ipReal32 (&stdDevs)[NB_AXES],
                   const Reach& reach, boost::shared_ptr<Kernel>* const (&results)[NB_AXES])
{
  details::releaseAll(results);

  // Written so that a NaN fails each check.
  for (std::size_t axis = 0; axis < NB_AXES; ++axis)
    if (!(stdDevs[axis] > 0))
      raise(here, g_invalidStdDev[axis], stdDevs[axis]);
  if (!(reach.ratio >= 0 && reach.ratio < 1))
    raise(here, eKernelMessage::eInvalidGaussianRatio, reach.ratio);
  if (reach.ratio == 0 && reach.minKernelSize == 0)
    raise(here, eKernelMessage::eNullGaussianRatioAndKernelSize);

  details::makeForEachAxis(
      results, [&](Kernel& kernel, std::size_t axis)
      { Line<Kernel>(family, axis, static_cast<double>(stdDevs[axis]), reach).fill(kernel); });
}

} // namespace

void separableGaussianSmoothing(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio, ipUInt32 minKernelSize,
                                KernelXYPtr& pKernelX, KernelXYPtr& pKernelY)
{
  makeSeparable(ORVEL_HERE, g_smoothing, {stdDevX, stdDevY}, {ratio, minKernelSize}, {&pKernelX, &pKernelY});
}

void separableGaussianGradient(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio, ipUInt32 minKernelSize,
                               KernelXYPtr& pKernelX, KernelXYPtr& pKernelY)
{
  makeSeparable(ORVEL_HERE, g_gradient, {stdDevX, stdDevY}, {ratio, minKernelSize}, {&pKernelX, &pKernelY});
}

void separableGaussianHessian(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 ratio, ipUInt32 minKernelSize,
                              KernelXYPtr& pKernelX, KernelXYPtr& pKernelY)
{
  makeSeparable(ORVEL_HERE, g_hessian, {stdDevX, stdDevY}, {ratio, minKernelSize}, {&pKernelX, &pKernelY});
}

void separableGaussianSmoothing(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ, ipReal32 ratio,
                                ipUInt32 minKernelSize, KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                                KernelXYZPtr& pKernelZ)
{
  makeSeparable(ORVEL_HERE, g_smoothing, {stdDevX, stdDevY, stdDevZ}, {ratio, minKernelSize},
                {&pKernelX, &pKernelY, &pKernelZ});
}

void separableGaussianGradient(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ, ipReal32 ratio,
                               ipUInt32 minKernelSize, KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                               KernelXYZPtr& pKernelZ)
{
  makeSeparable(ORVEL_HERE, g_gradient, {stdDevX, stdDevY, stdDevZ}, {ratio, minKernelSize},
                {&pKernelX, &pKernelY, &pKernelZ});
}

void separableGaussianHessian(ipReal32 stdDevX, ipReal32 stdDevY, ipReal32 stdDevZ, ipReal32 ratio,
                              ipUInt32 minKernelSize, KernelXYZPtr& pKernelX, KernelXYZPtr& pKernelY,
                              KernelXYZPtr& pKernelZ)
{
  makeSeparable(ORVEL_HERE, g_hessian, {stdDevX, stdDevY, stdDevZ}, {ratio, minKernelSize},
                {&pKernelX, &pKernelY, &pKernelZ});
}

} // namespace orvel
