#include "ORVELMath/Round.h"

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include <gtest/gtest.h>

namespace
{

using orvel::math::round;

constexpr unsigned int g_noResult = 0x80000000U;
constexpr double g_infinity = std::numeric_limits<double>::infinity();
constexpr float g_floatInfinity = std::numeric_limits<float>::infinity();

unsigned int patternOf(int value)
{
  return static_cast<unsigned int>(value);
}

TEST(RoundToInt, GivesTheNearestInteger)
{
  EXPECT_EQ((round<int, double>(2.4)), 2);
  EXPECT_EQ((round<int, double>(-2.6)), -3);
  EXPECT_EQ((round<int, double>(2.6)), 3);
  EXPECT_EQ((round<int, double>(-2.4)), -2);
  EXPECT_EQ((round<int, double>(0.0)), 0);
  EXPECT_EQ((round<int, double>(-0.0)), 0);
  EXPECT_EQ((round<int, double>(7.0)), 7);
}

TEST(RoundToInt, SendsHalvesAwayFromZero)
{
  EXPECT_EQ((round<int, double>(0.5)), 1);
  EXPECT_EQ((round<int, double>(-0.5)), -1);
  EXPECT_EQ((round<int, double>(1.5)), 2);
  EXPECT_EQ((round<int, double>(-1.5)), -2);
  EXPECT_EQ((round<int, double>(2.5)), 3);
  EXPECT_EQ((round<int, double>(-2.5)), -3);
  EXPECT_EQ((round<int, double>(2147483646.5)), 2147483647);
}

TEST(RoundToInt, StaysBelowAHalfRightBesideIt)
{
  EXPECT_EQ((round<int, double>(0.49999999999999994)), 0); // adding 0.5 would give 1
  EXPECT_EQ((round<int, double>(-0.49999999999999994)), 0);
  EXPECT_EQ((round<int, double>(std::nextafter(0.5, 1.0))), 1);
  EXPECT_EQ((round<int, double>(std::nextafter(2.5, 0.0))), 2);
  EXPECT_EQ((round<int, double>(std::numeric_limits<double>::denorm_min())), 0);
}

TEST(RoundToInt, ReachesBothEndsOfTheRange)
{
  EXPECT_EQ((round<int, double>(2147483647.0)), 2147483647);
  EXPECT_EQ((round<int, double>(2147483647.25)), 2147483647);
  EXPECT_EQ((round<int, double>(-2147483648.0)), -2147483647 - 1);
  EXPECT_EQ((round<int, double>(-2147483648.25)), -2147483647 - 1);
  EXPECT_EQ((round<int, double>(-2147483647.25)), -2147483647);
}

TEST(RoundToInt, AnswersWhatItCannotHoldWithTheTopBit)
{
  for (const double value :
       {2147483647.5, 2147483648.0, 4294967295.0, 4503599627370497.0, 1e300, g_infinity, -2147483648.5,
        -4503599627370497.0, -1e300, -g_infinity, std::nan(""), -std::nan("")})
    EXPECT_EQ(patternOf(round<int, double>(value)), g_noResult) << value;
}

TEST(RoundToUnsigned, GivesTheNearestInteger)
{
  EXPECT_EQ((round<unsigned int, float>(2.4f)), 2U);
  EXPECT_EQ((round<unsigned int, float>(2.6f)), 3U);
  EXPECT_EQ((round<unsigned int, float>(0.0f)), 0U);
  EXPECT_EQ((round<unsigned int, float>(-0.0f)), 0U);
}

TEST(RoundToUnsigned, GivesNegativeIntegersAsTheirTwosComplement)
{
  EXPECT_EQ((round<unsigned int, float>(-1.0f)), 0xFFFFFFFFU);
  EXPECT_EQ((round<unsigned int, float>(-2.4f)), 0xFFFFFFFEU);
  EXPECT_EQ((round<unsigned int, float>(-2.6f)), 0xFFFFFFFDU);
  EXPECT_EQ((round<unsigned int, float>(-0.4f)), 0U);
  EXPECT_EQ((round<unsigned int, float>(-2147483520.0f)), 0x80000080U);
  EXPECT_EQ((round<unsigned int, float>(-2147483648.0f)), 0x80000000U);
}

TEST(RoundToUnsigned, SendsHalvesAwayFromZero)
{
  EXPECT_EQ((round<unsigned int, float>(0.5f)), 1U);
  EXPECT_EQ((round<unsigned int, float>(2.5f)), 3U);
  EXPECT_EQ((round<unsigned int, float>(-0.5f)), patternOf(-1));
  EXPECT_EQ((round<unsigned int, float>(-2.5f)), patternOf(-3));
  EXPECT_EQ((round<unsigned int, float>(8388607.5f)), 8388608U);
}

TEST(RoundToUnsigned, StaysBelowAHalfRightBesideIt)
{
  EXPECT_EQ((round<unsigned int, float>(std::nextafter(0.5f, 0.0f))), 0U);
  EXPECT_EQ((round<unsigned int, float>(std::nextafter(-0.5f, 0.0f))), 0U);
}

TEST(RoundToUnsigned, KeepsIntegersThatAddingAHalfWouldMove)
{
  EXPECT_EQ((round<unsigned int, float>(8388609.0f)), 8388609U);
  EXPECT_EQ((round<unsigned int, float>(-8388609.0f)), patternOf(-8388609));
  EXPECT_EQ((round<unsigned int, float>(16777215.0f)), 16777215U);
}

TEST(RoundToUnsigned, ReachesTheUpperHalfOfTheRange)
{
  EXPECT_EQ((round<unsigned int, float>(2147483648.0f)), 2147483648U);
  EXPECT_EQ((round<unsigned int, float>(4294967040.0f)), 4294967040U); // the last float in range
}

TEST(RoundToUnsigned, AnswersWhatItCannotHoldWithTheTopBit)
{
  for (const float value : {4294967296.0f, 1e30f, g_floatInfinity, -2147483904.0f, -1e30f, -g_floatInfinity,
                            std::nanf(""), -std::nanf("")})
    EXPECT_EQ((round<unsigned int, float>(value)), g_noResult) << value;
}

template <class Result, class Value, class = void>
constexpr bool g_isThere = false;
template <class Result, class Value>
constexpr bool g_isThere<Result, Value, std::void_t<decltype(round<Result, Value>(Value()))>> = true;

TEST(Round, IsThereForItsTwoPairsOfTypesOnly)
{
  EXPECT_TRUE((g_isThere<int, double>));
  EXPECT_TRUE((g_isThere<unsigned int, float>));
  EXPECT_FALSE((g_isThere<int, float>));
  EXPECT_FALSE((g_isThere<unsigned int, double>));
  EXPECT_FALSE((g_isThere<long, double>));
}

TEST(Round, DoesNotDependOnTheRoundingMode)
{
  const int oldMode = std::fegetround();
  for (const int mode : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO})
  {
    std::fesetround(mode);
    volatile double value = 2.5; // computed at run time, under the mode
    volatile float negative = -2.5f;
    const int rounded = round<int, double>(value);
    const unsigned int roundedNegative = round<unsigned int, float>(negative);
    std::fesetround(oldMode);
    EXPECT_EQ(rounded, 3) << "mode " << mode;
    EXPECT_EQ(roundedNegative, patternOf(-3)) << "mode " << mode;
  }
}

TEST(Round, AgreesWithIntegerArithmeticOnQuarters)
{
  for (std::int64_t quarters = -40000; quarters <= 40000; ++quarters)
  {
    const std::int64_t magnitude = ((quarters < 0 ? -quarters : quarters) + 2) / 4;
    const int expected = static_cast<int>(quarters < 0 ? -magnitude : magnitude);
    ASSERT_EQ((round<int, double>(static_cast<double>(quarters) / 4)), expected) << quarters;
    ASSERT_EQ((round<unsigned int, float>(static_cast<float>(quarters) / 4)), patternOf(expected))
        << quarters;
  }
}

} // namespace
