#include "ORVELMath/RelativeComparison.h"

#include <algorithm>
#include <cmath>

namespace orvel::math
{

namespace
{

template <class T>
bool agree(T a, T b, T tolerance)
{
  if (a == b)
    return true;
  if (!std::isfinite(a) || !std::isfinite(b))
    return false;
  return std::abs(a - b) <= tolerance * std::max(std::abs(a), std::abs(b));
}

template <class T>
bool agree(const std::vector<T>& a, const std::vector<T>& b, T tolerance)
{
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [tolerance](T left, T right) { return agree(left, right, tolerance); });
}

} // namespace

template <>
bool compareRelative<float>(float a, float b, float tolerance)
{
  return agree(a, b, tolerance);
}

template <>
bool compareRelative<double>(double a, double b, double tolerance)
{
  return agree(a, b, tolerance);
}

template <>
bool compareRelative<float>(const std::vector<float>& a, const std::vector<float>& b, float tolerance)
{
  return agree(a, b, tolerance);
}

template <>
bool compareRelative<double>(const std::vector<double>& a, const std::vector<double>& b, double tolerance)
{
  return agree(a, b, tolerance);
}

} // namespace orvel::math
