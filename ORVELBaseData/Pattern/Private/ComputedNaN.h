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
/// The sign of a computed NaN depends on the processor, and for two NaN operands on the order in which the
/// compiler puts them.
inline ipReal32 withDefaultNaN(ipReal32 computed)
{
  return std::isnan(computed) ? std::numeric_limits<ipReal32>::quiet_NaN() : computed;
}

} // namespace orvel::details
