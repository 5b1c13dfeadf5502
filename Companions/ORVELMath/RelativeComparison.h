#pragma once

/// \file
/// \brief Comparison of floating-point numbers within a relative tolerance.

#include <vector>

#include <ORVELMath/ORVELMathExport.h>

namespace orvel::math
{

/// \brief Return whether two numbers agree within a relative tolerance.
///
/// True if a == b, equal infinities included; false if either is NaN or infinite; else
/// abs(a - b) <= tolerance * max(abs(a), abs(b)), in the arithmetic of \c T. Consequences: with a
/// tolerance below 1, zero agrees only with zero; with a negative or NaN tolerance only equal numbers agree;
/// where both sides overflow, the numbers agree. Only \c float and \c double compile.
template <class T>
bool compareRelative(T a, T b, T tolerance) = delete;

/// \brief The instance for \c float.
template <>
ORVELMATH_EXPORT bool compareRelative<float>(float a, float b, float tolerance);

/// \brief The instance for \c double.
template <>
ORVELMATH_EXPORT bool compareRelative<double>(double a, double b, double tolerance);

/// \brief Return whether two vectors agree element by element within a relative tolerance.
///
/// False for vectors of different sizes, true for two empty ones. Only \c float and \c double compile.
template <class T>
bool compareRelative(const std::vector<T>& a, const std::vector<T>& b, T tolerance) = delete;

/// \brief The instance for \c float.
template <>
ORVELMATH_EXPORT bool compareRelative<float>(const std::vector<float>& a, const std::vector<float>& b,
                                             float tolerance);

/// \brief The instance for \c double.
template <>
ORVELMATH_EXPORT bool compareRelative<double>(const std::vector<double>& a, const std::vector<double>& b,
                                              double tolerance);

} // namespace orvel::math
