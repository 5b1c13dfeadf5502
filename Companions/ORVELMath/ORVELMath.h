#pragma once

/// \file
/// \brief All public headers of ORVELMath.

#include <ORVELMath/NormalDistribution.h>
#include <ORVELMath/NumericLimits.h>
#include <ORVELMath/ORVELMathExport.h>
#include <ORVELMath/RelativeComparison.h>
#include <ORVELMath/Round.h>
