#pragma once

/// \file
/// \brief One form of the NaNs that arithmetic makes of coefficients.

#include <cmath>
#include <limits>

#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// \brief Return a computed coefficient or sum; a NaN as the default quiet one, which is positive.
///
/// Of two NaN operands the processor returns the first one, and which one is the first the compiler chooses.
inline ipReal32 withDefaultNaN(ipReal32 computed)
{
  return std::isnan(computed) ? std::numeric_limits<ipReal32>::quiet_NaN() : computed;
}

} // namespace orvel::details
