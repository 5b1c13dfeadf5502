#include "ORVELMath/NumericLimits.h"

#include <limits>

#include <gtest/gtest.h>

namespace
{

using orvel::NumericLimits;

TEST(NumericLimits, EpsilonIsTheStepFromOneToTheNextNumber)
{
  EXPECT_EQ(NumericLimits<float>::s_eps, std::numeric_limits<float>::epsilon());
  EXPECT_EQ(NumericLimits<double>::s_eps, std::numeric_limits<double>::epsilon());
  EXPECT_EQ(NumericLimits<float>::s_eps, 1.1920928955078125e-7f);
  EXPECT_EQ(NumericLimits<double>::s_eps, 2.220446049250313080847263336181640625e-16);
}

TEST(NumericLimits, RootOfTheDoubleEpsilonIsExact)
{
  EXPECT_EQ(NumericLimits<double>::s_sqrt_eps * NumericLimits<double>::s_sqrt_eps,
            NumericLimits<double>::s_eps);
}

TEST(NumericLimits, RootOfTheFloatEpsilonIsTheNearestFloat)
{
  EXPECT_EQ(NumericLimits<float>::s_sqrt_eps, static_cast<float>(0.00034526698300124390839884978618));
}

TEST(NumericLimits, ConstantsAreKnownAtCompileTime)
{
  constexpr float floatLimits[] = {NumericLimits<float>::s_eps, NumericLimits<float>::s_sqrt_eps};
  constexpr double doubleLimits[] = {NumericLimits<double>::s_eps, NumericLimits<double>::s_sqrt_eps};
  EXPECT_LT(floatLimits[0], floatLimits[1]);
  EXPECT_LT(doubleLimits[0], doubleLimits[1]);
}

} // namespace
