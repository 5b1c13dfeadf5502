#include "ORVELMath/RelativeComparison.h"

#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using orvel::math::compareRelative;

template <class T>
class CompareRelative : public ::testing::Test
{
protected:
  static constexpr T g_nan = std::numeric_limits<T>::quiet_NaN();
  static constexpr T g_infinity = std::numeric_limits<T>::infinity();
  static constexpr T g_largest = std::numeric_limits<T>::max();
};

using FloatingTypes = ::testing::Types<float, double>;
TYPED_TEST_SUITE(CompareRelative, FloatingTypes, ); // the last, empty argument keeps clang++ quiet

TYPED_TEST(CompareRelative, IsTrueForEqualNumbers)
{
  using T = TypeParam;
  EXPECT_TRUE(compareRelative<T>(T(1.5), T(1.5), T(0)));
  EXPECT_TRUE(compareRelative<T>(T(0), T(-0.0), T(0)));
  EXPECT_TRUE(compareRelative<T>(T(2), T(2), T(-1)));
  EXPECT_TRUE(compareRelative<T>(T(2), T(2), this->g_nan));
}

TYPED_TEST(CompareRelative, TakesTheToleranceTimesTheLargerMagnitude)
{
  using T = TypeParam;
  // The limit is 0.25 * 8 = 2; with the smaller magnitude it would be 1.5.
  EXPECT_TRUE(compareRelative<T>(T(6), T(8), T(0.25)));
  EXPECT_TRUE(compareRelative<T>(T(8), T(6), T(0.25)));
  EXPECT_TRUE(compareRelative<T>(T(-6), T(-8), T(0.25)));
  EXPECT_FALSE(compareRelative<T>(T(5.875), T(8), T(0.25)));
  EXPECT_FALSE(compareRelative<T>(T(8), T(5.875), T(0.25)));
}

TYPED_TEST(CompareRelative, MeasuresTheDistanceAcrossZero)
{
  using T = TypeParam;
  EXPECT_FALSE(compareRelative<T>(T(1), T(-1), T(1)));
  EXPECT_TRUE(compareRelative<T>(T(1), T(-1), T(2)));
}

TYPED_TEST(CompareRelative, HasNoAbsoluteTolerance)
{
  using T = TypeParam;
  EXPECT_FALSE(compareRelative<T>(std::numeric_limits<T>::min(), T(0), T(0.5)));
  EXPECT_TRUE(compareRelative<T>(std::numeric_limits<T>::min(), T(0), T(1)));
}

TYPED_TEST(CompareRelative, IsTrueForEqualInfinities)
{
  using T = TypeParam;
  EXPECT_TRUE(compareRelative<T>(this->g_infinity, this->g_infinity, T(0)));
  EXPECT_TRUE(compareRelative<T>(-this->g_infinity, -this->g_infinity, T(0)));
}

TYPED_TEST(CompareRelative, IsFalseForAnInfinityBesideAnyOtherNumber)
{
  using T = TypeParam;
  EXPECT_FALSE(compareRelative<T>(this->g_infinity, -this->g_infinity, T(1)));
  EXPECT_FALSE(compareRelative<T>(this->g_infinity, this->g_largest, T(1)));
  EXPECT_FALSE(compareRelative<T>(T(1), -this->g_infinity, this->g_infinity));
}

TYPED_TEST(CompareRelative, IsFalseForNaN)
{
  using T = TypeParam;
  EXPECT_FALSE(compareRelative<T>(this->g_nan, this->g_nan, T(1)));
  EXPECT_FALSE(compareRelative<T>(this->g_nan, T(1), this->g_infinity));
  EXPECT_FALSE(compareRelative<T>(T(1), this->g_nan, this->g_infinity));
}

TYPED_TEST(CompareRelative, LeavesOnlyEqualityToANegativeOrNaNTolerance)
{
  using T = TypeParam;
  EXPECT_FALSE(compareRelative<T>(T(1), T(1.0001), T(-1)));
  EXPECT_FALSE(compareRelative<T>(T(1), T(1.0001), this->g_nan));
}

TYPED_TEST(CompareRelative, StandsTheLargestNumbers)
{
  using T = TypeParam;
  EXPECT_FALSE(compareRelative<T>(this->g_largest, -this->g_largest, T(1)));
  EXPECT_TRUE(compareRelative<T>(this->g_largest, this->g_largest / 2, T(0.5)));
}

TYPED_TEST(CompareRelative, TakesADistanceAndALimitThatBothOverflowForAgreement)
{
  using T = TypeParam;
  EXPECT_TRUE(compareRelative<T>(this->g_largest, -this->g_largest, T(1.5))); // infinity on both sides
  EXPECT_FALSE(compareRelative<T>(T(1), T(-1), T(1.5)));
}

TYPED_TEST(CompareRelative, ComparesVectorsElementByElement)
{
  using T = TypeParam;
  const std::vector<T> reference = {T(1), T(10), T(100)};
  EXPECT_TRUE(compareRelative<T>(reference, {T(1.0625), T(10), T(96)}, T(0.0625)));
  EXPECT_FALSE(compareRelative<T>(reference, {T(1.125), T(10), T(100)}, T(0.0625)));
  EXPECT_FALSE(compareRelative<T>(reference, {T(1), T(11), T(100)}, T(0.0625)));
  EXPECT_FALSE(compareRelative<T>(reference, {T(1), T(10), T(200)}, T(0.0625)));
  EXPECT_FALSE(compareRelative<T>(reference, {T(1), this->g_nan, T(100)}, T(0.0625)));
}

TYPED_TEST(CompareRelative, IsFalseForVectorsOfDifferentSizes)
{
  using T = TypeParam;
  EXPECT_FALSE(compareRelative<T>({T(1), T(2)}, std::vector<T>{T(1)}, T(1)));
  EXPECT_FALSE(compareRelative<T>(std::vector<T>{T(1)}, {T(1), T(2)}, T(1)));
  EXPECT_FALSE(compareRelative<T>(std::vector<T>(), std::vector<T>{T(1)}, T(1)));
}

TYPED_TEST(CompareRelative, IsTrueForTwoEmptyVectors)
{
  using T = TypeParam;
  EXPECT_TRUE(compareRelative<T>(std::vector<T>(), std::vector<T>(), T(0)));
}

template <class T, class = void>
constexpr bool g_comparesNumbers = false;
template <class T>
constexpr bool g_comparesNumbers<T, std::void_t<decltype(compareRelative<T>(T(), T(), T()))>> = true;

template <class T, class = void>
constexpr bool g_comparesVectors = false;
template <class T>
constexpr bool
    g_comparesVectors<T, std::void_t<decltype(compareRelative<T>(std::vector<T>(), std::vector<T>(), T()))>> =
        true;

TEST(CompareRelativeTypes, AreFloatAndDoubleOnly)
{
  EXPECT_TRUE(g_comparesNumbers<float> && g_comparesNumbers<double>);
  EXPECT_TRUE(g_comparesVectors<float> && g_comparesVectors<double>);
  EXPECT_FALSE(g_comparesNumbers<int> || g_comparesNumbers<long double>);
  EXPECT_FALSE(g_comparesVectors<int> || g_comparesVectors<long double>);
}

} // namespace
