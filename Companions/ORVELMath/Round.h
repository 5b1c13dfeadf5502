#pragma once

/// \file
/// \brief Rounding to the nearest integer.

#include <ORVELMath/ORVELMathExport.h>

/// \brief Numeric helpers.
namespace orvel::math
{

/// \brief Return the integer nearest to \p value; exact halves go away from zero.
///
/// The true nearest integer for every value: just below a half, and where adding 0.5 would round. A NaN and a
/// value that the result cannot hold give the bit pattern 0x80000000. The current rounding mode has no
/// influence. Exists for the pairs of types below; any other pair does not compile.
template <class Result, class Value>
Result round(Value value) = delete;

/// \brief Range: what rounds to -2147483648 up to 2147483647.
template <>
ORVELMATH_EXPORT int round<int, double>(double value);

/// \brief Range: what rounds to -2147483648 up to 4294967295; a negative integer comes as its
/// two's-complement pattern, so that the result also serves as a signed offset.
template <>
ORVELMATH_EXPORT unsigned int round<unsigned int, float>(float value);

} // namespace orvel::math
