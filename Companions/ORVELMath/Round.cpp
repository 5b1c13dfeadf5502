#include "ORVELMath/Round.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace orvel::math
{

namespace
{

template <class Result, class Value>
Result roundHalfAwayFromZero(Value value)
{
  const double rounded = std::round(value);
  constexpr double lowest = -2147483648.0; // negative integers have a pattern in the unsigned form too
  constexpr double highest = std::numeric_limits<Result>::max();
  if (!(rounded >= lowest && rounded <= highest)) // refuses NaN too
    return static_cast<Result>(0x80000000U);
  return static_cast<Result>(static_cast<std::int64_t>(rounded));
}

} // namespace

template <>
int round<int, double>(double value)
{
  return roundHalfAwayFromZero<int>(value);
}

template <>
unsigned int round<unsigned int, float>(float value)
{
  return roundHalfAwayFromZero<unsigned int>(value);
}

} // namespace orvel::math
