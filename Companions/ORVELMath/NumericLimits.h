#pragma once

/// \file
/// \brief Limits of the floating-point types.

namespace orvel
{

/// \brief Limits of a floating-point type, known at compile time.
///
/// Only \c float and \c double compile. \c s_eps is the machine epsilon, the distance from 1 to the next
/// larger number of the type; \c s_sqrt_eps is its square root, rounded to the type.
template <class T>
struct NumericLimits;

/// \brief Limits of the IEEE 754 single format, 24 bits of precision.
template <>
struct NumericLimits<float>
{
  static constexpr float s_eps = 0x1p-23f;             ///< 2^-23
  static constexpr float s_sqrt_eps = 0x1.6a09e6p-12f; ///< 2^-11.5, the nearest float
};

/// \brief Limits of the IEEE 754 double format, 53 bits of precision.
template <>
struct NumericLimits<double>
{
  static constexpr double s_eps = 0x1p-52;      ///< 2^-52
  static constexpr double s_sqrt_eps = 0x1p-26; ///< 2^-26, exact
};

} // namespace orvel
