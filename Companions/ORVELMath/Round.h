#pragma once

/// \file
/// \brief Rounding to the nearest integer.

#include <ORVELMath/ORVELMathExport.h>

/// \brief Numeric helpers.
namespace orvel::math
{

/// \brief Return the integer nearest to \p value; exact halves go away from zero.
///
/// The result is the true nearest integer, also just below a half and where adding 0.5 would round. For a
/// NaN, and for a value that the result cannot hold, it is the bit pattern 0x80000000. The rounding mode has
/// no influence. Only the pairs of types below compile.
template <class Result, class Value>
Result round(Value value) = delete;

/// \brief Range: what rounds to -2147483648 up to 2147483647.
template <>
ORVELMATH_EXPORT int round<int, double>(double value);

/// \brief Range: what rounds to -2147483648 up to 4294967295.
///
/// A negative integer is returned as its two's-complement pattern, so that the result also serves as a signed
/// offset.
template <>
ORVELMATH_EXPORT unsigned int round<unsigned int, float>(float value);

} // namespace orvel::math
