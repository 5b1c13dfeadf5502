#include "ORVELBaseData/Calibration/GeometricCalibration.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using Limits = std::numeric_limits<ipReal32>;
const ipReal32 g_nan = Limits::quiet_NaN();
const ipReal32 g_infinity = Limits::infinity();

/// The three scales, the three components of the origin, the four of the rotation.
using Numbers = std::array<ipReal32, 10>;

Numbers numbersOf(const GeometricCalibration& calibration)
{
  const Quaternion& rotation = calibration.getRotation();
  return {calibration.getXScale(),
          calibration.getYScale(),
          calibration.getZScale(),
          calibration.getXOrigin(),
          calibration.getYOrigin(),
          calibration.getZOrigin(),
          rotation._qr,
          rotation._qi,
          rotation._qj,
          rotation._qk};
}

GeometricCalibration makeCalibration(const Numbers& numbers, const std::string& unitStr)
{
  GeometricCalibration calibration;
  calibration.init3d(numbers[0], numbers[1], numbers[2], unitStr, numbers[3], numbers[4], numbers[5],
                     numbers[6], numbers[7], numbers[8], numbers[9]);
  return calibration;
}

/// A different number in every field.
const Numbers g_numbers = {2.0F, 3.0F, 4.0F, -5.0F, 6.0F, 7.5F, 0.125F, -0.25F, 0.5F, 0.75F};

GeometricCalibration makeMillimetres()
{
  return makeCalibration(g_numbers, "mm");
}

void expectFields(const GeometricCalibration& calibration, const Numbers& numbers, const std::string& unitStr)
{
  EXPECT_EQ(numbersOf(calibration), numbers);
  EXPECT_EQ(calibration.getUnitStr(), unitStr);
}

std::string messageOfFailure(const std::function<void()>& operation)
{
  return messageOf<ORVELBaseDataException>(operation);
}

// Initialisation

TEST(GeometricCalibration, HasScales1InPixelsAndTheZeroQuaternionByDefault)
{
  expectFields(GeometricCalibration(), {1, 1, 1, 0, 0, 0, 0, 0, 0, 0}, "px");
}

TEST(GeometricCalibration, DiffersByItsUnitFromOneMadeWithScale1)
{
  const GeometricCalibrationPtr made = createGeometricCalibration2d(1.0F);
  EXPECT_TRUE(GeometricCalibration() != *made);
  made->setUnitStr("px");
  EXPECT_TRUE(GeometricCalibration() == *made);
}

TEST(GeometricCalibration, TakesThePlaneWhateverItHeldBefore)
{
  for (GeometricCalibration calibration : {GeometricCalibration(), makeMillimetres()})
  {
    calibration.init2d(2.0F, 3.0F, "um", 1.0F, 2.0F, 0.1F, 0.2F, 0.3F);
    expectFields(calibration, {2, 3, 1, 1, 2, 0, 0.1F, 0.2F, 0.3F, 0}, "um");
  }
}

TEST(GeometricCalibration, TakesTheSpaceWhateverItHeldBefore)
{
  for (GeometricCalibration calibration : {GeometricCalibration(), makeMillimetres()})
  {
    calibration.init3d(2.0F, 3.0F, 4.0F, "um", 1.0F, 2.0F, 3.0F, 0.1F, 0.2F, 0.3F, 0.4F);
    expectFields(calibration, {2, 3, 4, 1, 2, 3, 0.1F, 0.2F, 0.3F, 0.4F}, "um");
  }
}

TEST(GeometricCalibration, IsLeftWithoutAUnitByAnEmptyOne)
{
  GeometricCalibration plane;
  plane.init2d(1, 1, "", 0, 0, 0, 0, 0);
  EXPECT_EQ(plane.getUnitStr(), "");
  GeometricCalibration space;
  space.init3d(1, 1, 1, "", 0, 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(space.getUnitStr(), "");
}

TEST(GeometricCalibration, TakesItsOwnUnit)
{
  GeometricCalibration calibration = makeCalibration(g_numbers, std::string(100, 'u'));
  calibration.init2d(1, 1, calibration.getUnitStr(), 0, 0, 0, 0, 0);
  EXPECT_EQ(calibration.getUnitStr(), std::string(100, 'u'));
  calibration.init3d(1, 1, 1, calibration.getUnitStr(), 0, 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(calibration.getUnitStr(), std::string(100, 'u'));
  calibration.setScale(2, calibration.getUnitStr());
  EXPECT_EQ(calibration.getUnitStr(), std::string(100, 'u'));
  calibration.setUnitStr(calibration.getUnitStr());
  EXPECT_EQ(calibration.getUnitStr(), std::string(100, 'u'));
}

TEST(GeometricCalibration, TakesAnyScaleAboveZero)
{
  GeometricCalibration calibration;
  calibration.init3d(Limits::denorm_min(), Limits::max(), g_infinity, "", 0, 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(calibration.getXScale(), Limits::denorm_min());
  EXPECT_EQ(calibration.getYScale(), Limits::max());
  EXPECT_EQ(calibration.getZScale(), g_infinity);
}

TEST(GeometricCalibration, TakesAnyOriginAndNormalisesNoRotation)
{
  GeometricCalibration calibration;
  calibration.init3d(1, 1, 1, "", -g_infinity, g_nan, Limits::lowest(), 30, 40, g_infinity, -50);
  EXPECT_EQ(calibration.getXOrigin(), -g_infinity);
  EXPECT_TRUE(std::isnan(calibration.getYOrigin()));
  EXPECT_EQ(calibration.getZOrigin(), Limits::lowest());
  EXPECT_EQ(calibration.getRotation()._qr, 30);
  EXPECT_EQ(calibration.getRotation()._qi, 40);
  EXPECT_EQ(calibration.getRotation()._qj, g_infinity);
  EXPECT_EQ(calibration.getRotation()._qk, -50);
}

/// The scales that are not above zero, and how they are told.
const std::pair<ipReal32, const char*> g_badScales[] = {
    {0.0F, "Scale value 0.000000 should be strictly positive"},
    {-0.0F, "Scale value -0.000000 should be strictly positive"},
    {-1.0F, "Scale value -1.000000 should be strictly positive"},
    {-Limits::denorm_min(), "Scale value -0.000000 should be strictly positive"},
    {-std::numeric_limits<ipReal32>::infinity(), "Scale value -inf should be strictly positive"},
    {std::numeric_limits<ipReal32>::quiet_NaN(), "Scale value nan should be strictly positive"}};

TEST(GeometricCalibration, RefusesAScaleThatIsNotAboveZeroAndKeepsItsFields)
{
  GeometricCalibration calibration = makeMillimetres();
  for (const auto& [scale, message] : g_badScales)
  {
    const ipReal32 bad = scale;
    EXPECT_EQ(messageOfFailure([&] { calibration.init2d(bad, 1, "um", 9, 9, 9, 9, 9); }), message);
    EXPECT_EQ(messageOfFailure([&] { calibration.init2d(1, bad, "um", 9, 9, 9, 9, 9); }), message);
    EXPECT_EQ(messageOfFailure([&] { calibration.init3d(bad, 1, 1, "um", 9, 9, 9, 9, 9, 9, 9); }), message);
    EXPECT_EQ(messageOfFailure([&] { calibration.init3d(1, bad, 1, "um", 9, 9, 9, 9, 9, 9, 9); }), message);
    EXPECT_EQ(messageOfFailure([&] { calibration.init3d(1, 1, bad, "um", 9, 9, 9, 9, 9, 9, 9); }), message);
    expectFields(calibration, g_numbers, "mm");
  }
}

TEST(GeometricCalibration, TellsTheFirstOfTwoBadScales)
{
  GeometricCalibration calibration;
  const std::string first = "Scale value -2.000000 should be strictly positive";
  EXPECT_EQ(messageOfFailure([&] { calibration.init2d(-2, -3, "", 0, 0, 0, 0, 0); }), first);
  EXPECT_EQ(messageOfFailure([&] { calibration.init3d(-2, -3, -4, "", 0, 0, 0, 0, 0, 0, 0); }), first);
  EXPECT_EQ(messageOfFailure([&] { calibration.init3d(-2, 1, -4, "", 0, 0, 0, 0, 0, 0, 0); }), first);
  EXPECT_EQ(messageOfFailure([&] { calibration.init3d(1, -2, -4, "", 0, 0, 0, 0, 0, 0, 0); }), first);
}

TEST(GeometricCalibration, NamesThePlaceOfARefusalAndLogsItOnce)
{
  const std::string message = "Scale value -0.500000 should be strictly positive";
  const std::string source = "ORVELBaseData/Calibration/GeometricCalibration.cpp";
  GeometricCalibration calibration;
  expectRaised<ORVELBaseDataException>(
      [&] { calibration.init2d(1, -0.5F, "", 0, 0, 0, 0, 0); },
      {message,
       "void orvel::GeometricCalibration::init2d(orvel::ipReal32, orvel::ipReal32, const std::string&, "
       "orvel::ipReal32, orvel::ipReal32, orvel::ipReal32, orvel::ipReal32, orvel::ipReal32)",
       source});
  expectRaised<ORVELBaseDataException>(
      [&] { calibration.init3d(1, 1, -0.5F, "", 0, 0, 0, 0, 0, 0, 0); },
      {message,
       "void orvel::GeometricCalibration::init3d(orvel::ipReal32, orvel::ipReal32, orvel::ipReal32, const "
       "std::string&, orvel::ipReal32, orvel::ipReal32, orvel::ipReal32, orvel::ipReal32, orvel::ipReal32, "
       "orvel::ipReal32, orvel::ipReal32)",
       source});
}

TEST(GeometricCalibration, StaysAsItWasIfThereIsNoMemoryForItsUnit)
{
  const std::string longUnit(100, 'u');
  const GeometricCalibration other = makeCalibration({9, 9, 9, 9, 9, 9, 9, 9, 9, 9}, longUnit);
  const std::function<void(GeometricCalibration&)> operations[] = {
      [&](GeometricCalibration& calibration) { calibration.init2d(9, 9, longUnit, 9, 9, 9, 9, 9); },
      [&](GeometricCalibration& calibration) { calibration.init3d(9, 9, 9, longUnit, 9, 9, 9, 9, 9, 9, 9); },
      [&](GeometricCalibration& calibration) { calibration.copy(other); },
  };
  for (const auto& operation : operations)
  {
    GeometricCalibration calibration = makeMillimetres();
    EXPECT_EQ(failAtEachAllocation([&] { operation(calibration); },
                                   [&] { expectFields(calibration, g_numbers, "mm"); }),
              1U);
    EXPECT_EQ(calibration.getUnitStr(), longUnit);
  }
}

// Setters

TEST(GeometricCalibration, HasItsOriginInThePlaneMovedToZ0)
{
  GeometricCalibration calibration = makeMillimetres();
  calibration.setOrigin(1.0F, 2.0F, 3.0F);
  expectFields(calibration, {2, 3, 4, 1, 2, 3, 0.125F, -0.25F, 0.5F, 0.75F}, "mm");
  calibration.setOrigin(8.0F, 9.0F);
  expectFields(calibration, {2, 3, 4, 8, 9, 0, 0.125F, -0.25F, 0.5F, 0.75F}, "mm");
}

TEST(GeometricCalibration, HasItsUnitReplacedAlsoByNone)
{
  GeometricCalibration calibration = makeMillimetres();
  calibration.setUnitStr("nm");
  expectFields(calibration, g_numbers, "nm");
  calibration.setUnitStr("");
  expectFields(calibration, g_numbers, "");
}

TEST(GeometricCalibration, HasAllScalesSetToOneAndKeepsItsUnitForAnEmptyOne)
{
  GeometricCalibration calibration = makeMillimetres();
  calibration.setScale(0.5F, "");
  expectFields(calibration, {0.5F, 0.5F, 0.5F, -5, 6, 7.5F, 0.125F, -0.25F, 0.5F, 0.75F}, "mm");
  calibration.setScale(0.25F, "um");
  expectFields(calibration, {0.25F, 0.25F, 0.25F, -5, 6, 7.5F, 0.125F, -0.25F, 0.5F, 0.75F}, "um");
}

TEST(GeometricCalibration, HasItsScalesInThePlaneSetAndKeepsThatOfZ)
{
  GeometricCalibration calibration = makeMillimetres();
  calibration.setScale(0.5F, 0.25F, "um");
  expectFields(calibration, {0.5F, 0.25F, 4, -5, 6, 7.5F, 0.125F, -0.25F, 0.5F, 0.75F}, "um");
  calibration.setScale(8.0F, 16.0F, "");
  expectFields(calibration, {8, 16, 4, -5, 6, 7.5F, 0.125F, -0.25F, 0.5F, 0.75F}, "um");
}

TEST(GeometricCalibration, HasEachScaleSet)
{
  GeometricCalibration calibration = makeMillimetres();
  calibration.setScale(0.5F, 0.25F, 0.125F, "um");
  expectFields(calibration, {0.5F, 0.25F, 0.125F, -5, 6, 7.5F, 0.125F, -0.25F, 0.5F, 0.75F}, "um");
  calibration.setScale(8.0F, 16.0F, 32.0F, "");
  expectFields(calibration, {8, 16, 32, -5, 6, 7.5F, 0.125F, -0.25F, 0.5F, 0.75F}, "um");
}

TEST(GeometricCalibration, HasItsOriginRoundedByADivisionAndAProductIn32Bits)
{
  // 31 / 7 is 9287387.43 * 2^-21, rounded to 9287387 * 2^-21; 7 times that is 31 - 3 * 2^-21, rounded to
  // 31 - 2^-19. 57 / 7 is 8538404.57 * 2^-20, rounded up; 7 times that is 57 + 3 * 2^-20, rounded to
  // 57 + 2^-18. In 64 bits, or with the product first, they would stay.
  GeometricCalibration calibration;
  calibration.setOrigin(31.0F, 57.0F, 3.0F);
  calibration.setScale(7.0F, "");
  EXPECT_EQ(calibration.getXOrigin(), 31.0F - 0x1p-19F);
  EXPECT_EQ(calibration.getYOrigin(), 57.0F + 0x1p-18F);
  EXPECT_EQ(calibration.getZOrigin(), 3.0F);

  calibration.setOrigin(57.0F, 31.0F, 31.0F);
  calibration.setScale(7.0F, 7.0F, "");
  EXPECT_EQ(calibration.getXOrigin(), 57.0F + 0x1p-18F);
  EXPECT_EQ(calibration.getYOrigin(), 31.0F - 0x1p-19F);
  EXPECT_EQ(calibration.getZOrigin(), 31.0F); // its scale was not set

  calibration.setOrigin(31.0F, 31.0F, 57.0F);
  calibration.setScale(1.0F, 7.0F, 7.0F, "");
  EXPECT_EQ(calibration.getXOrigin(), 31.0F);
  EXPECT_EQ(calibration.getYOrigin(), 31.0F - 0x1p-19F);
  EXPECT_EQ(calibration.getZOrigin(), 57.0F + 0x1p-18F);
}

TEST(GeometricCalibration, HasItsOriginRecomputedWithTheNewScaleAlone)
{
  GeometricCalibration calibration;
  calibration.setScale(7.0F, "");
  calibration.setOrigin(31.0F, 57.0F, 31.0F);
  calibration.setScale(2.0F, ""); // exact; the old scale has no part in it
  EXPECT_EQ(calibration.getXOrigin(), 31.0F);
  EXPECT_EQ(calibration.getYOrigin(), 57.0F);
  EXPECT_EQ(calibration.getZOrigin(), 31.0F);
}

TEST(GeometricCalibration, LosesAnOriginWhoseQuotientHasNo32BitNumber)
{
  GeometricCalibration calibration;
  calibration.setOrigin(1e30F, 1e-30F, -1e30F);
  calibration.setScale(1e-20F, 1e20F, 1e-20F, "");
  EXPECT_EQ(calibration.getXOrigin(), g_infinity);
  EXPECT_EQ(calibration.getYOrigin(), 0.0F);
  EXPECT_EQ(calibration.getZOrigin(), -g_infinity);
}

TEST(GeometricCalibration, TakesTheScaleZeroWhichMakesItsOriginNaN)
{
  GeometricCalibration calibration;
  calibration.setOrigin(1.0F, -2.0F, 0.0F);
  calibration.setScale(0.0F, "");
  EXPECT_EQ(calibration.getXScale(), 0.0F);
  EXPECT_EQ(calibration.getYScale(), 0.0F);
  EXPECT_EQ(calibration.getZScale(), 0.0F);
  EXPECT_TRUE(std::isnan(calibration.getXOrigin()));
  EXPECT_TRUE(std::isnan(calibration.getYOrigin()));
  EXPECT_TRUE(std::isnan(calibration.getZOrigin()));
  EXPECT_EQ(calibration.getUnitStr(), "px");
  EXPECT_FALSE(calibration == calibration);
  EXPECT_TRUE(calibration != calibration);
}

TEST(GeometricCalibration, TakesNegativeInfiniteAndNaNScales)
{
  GeometricCalibration calibration;
  calibration.setOrigin(3.0F, 4.0F, 5.0F);
  calibration.setScale(-0.5F, g_infinity, g_nan, "um");
  EXPECT_EQ(calibration.getXScale(), -0.5F);
  EXPECT_EQ(calibration.getYScale(), g_infinity);
  EXPECT_TRUE(std::isnan(calibration.getZScale()));
  EXPECT_EQ(calibration.getXOrigin(), 3.0F);
  EXPECT_TRUE(std::isnan(calibration.getYOrigin())); // 0 times infinity
  EXPECT_TRUE(std::isnan(calibration.getZOrigin()));
  EXPECT_EQ(calibration.getUnitStr(), "um");
}

TEST(GeometricCalibration, KeepsWhatBelongsToZWhenTheScaleOfThePlaneIsZero)
{
  GeometricCalibration calibration = makeMillimetres();
  calibration.setScale(0.0F, 0.0F, "");
  EXPECT_EQ(calibration.getZScale(), 4.0F);
  EXPECT_EQ(calibration.getZOrigin(), 7.5F);
  EXPECT_TRUE(std::isnan(calibration.getXOrigin()));
  EXPECT_TRUE(std::isnan(calibration.getYOrigin()));
}

// Comparison

TEST(GeometricCalibration, EqualsOneOfTheSameFields)
{
  EXPECT_TRUE(makeMillimetres() == makeMillimetres());
  EXPECT_FALSE(makeMillimetres() != makeMillimetres());
  EXPECT_FALSE(makeMillimetres() == GeometricCalibration());
  EXPECT_TRUE(makeMillimetres() != GeometricCalibration());
}

TEST(GeometricCalibration, DiffersByTheSmallestFloatInAnyField)
{
  const GeometricCalibration calibration = makeMillimetres();
  for (std::size_t i = 0; i < g_numbers.size(); ++i)
    for (const ipReal32 direction : {-g_infinity, g_infinity})
    {
      Numbers numbers = g_numbers;
      numbers[i] = std::nextafter(numbers[i], direction);
      const GeometricCalibration other = makeCalibration(numbers, "mm");
      EXPECT_FALSE(calibration == other) << i;
      EXPECT_TRUE(calibration != other) << i;
      EXPECT_FALSE(other == calibration) << i;
    }
}

TEST(GeometricCalibration, DiffersFromItselfWithANaNInAnyField)
{
  for (std::size_t i = 3; i < g_numbers.size(); ++i)
  {
    Numbers numbers = g_numbers;
    numbers[i] = g_nan;
    const GeometricCalibration calibration = makeCalibration(numbers, "mm");
    EXPECT_FALSE(calibration == calibration) << i;
    EXPECT_TRUE(calibration != calibration) << i;
    const GeometricCalibration copy(calibration);
    EXPECT_FALSE(calibration == copy) << i;
  }
  const std::array<ipReal32, 3> scales[] = {{g_nan, 1, 1}, {1, g_nan, 1}, {1, 1, g_nan}};
  for (const auto& scale : scales)
  {
    GeometricCalibration calibration;
    calibration.setScale(scale[0], scale[1], scale[2], "");
    calibration.setOrigin(0, 0, 0); // which was NaN, too
    EXPECT_FALSE(calibration == calibration);
  }
}

TEST(GeometricCalibration, EqualsOneWithTheOtherZero)
{
  for (std::size_t i = 3; i < g_numbers.size(); ++i)
  {
    Numbers zero = g_numbers;
    Numbers negativeZero = g_numbers;
    zero[i] = 0.0F;
    negativeZero[i] = -0.0F;
    EXPECT_TRUE(makeCalibration(zero, "mm") == makeCalibration(negativeZero, "mm")) << i;
    EXPECT_FALSE(makeCalibration(zero, "mm") != makeCalibration(negativeZero, "mm")) << i;
  }
}

TEST(GeometricCalibration, ComparesUnitsByLengthAndBytes)
{
  const auto named = [](const std::string& unitStr)
  {
    return makeCalibration(g_numbers, unitStr);
  };
  EXPECT_TRUE(named(std::string("m\0m", 3)) == named(std::string("m\0m", 3)));
  EXPECT_FALSE(named(std::string("m\0m", 3)) == named(std::string("m\0x", 3)));
  EXPECT_FALSE(named(std::string("m\0", 2)) == named("m"));
  EXPECT_FALSE(named("mm") == named("MM"));
  EXPECT_FALSE(named("mm") == named("mm "));
  EXPECT_FALSE(named("mm") == named(""));
}

// Makers

TEST(GeometricCalibration, IsMadeForThePlaneInFourWays)
{
  expectFields(*createGeometricCalibration2d(2), {2, 2, 1, 0, 0, 0, 0, 0, 0, 0}, "");
  expectFields(*createGeometricCalibration2d(2, 3, 4, 5, 6, 7, 8), {2, 3, 1, 4, 5, 0, 6, 7, 8, 0}, "");
  expectFields(*createGeometricCalibration2d(2, "mm", 4, 5, 6, 7, 8), {2, 2, 1, 4, 5, 0, 6, 7, 8, 0}, "mm");
  expectFields(*createGeometricCalibration2d(2, 3, "mm", 4, 5, 6, 7, 8), {2, 3, 1, 4, 5, 0, 6, 7, 8, 0},
               "mm");
}

TEST(GeometricCalibration, IsMadeForTheSpaceInFourWays)
{
  expectFields(*createGeometricCalibration3d(2), {2, 2, 2, 0, 0, 0, 0, 0, 0, 0}, "");
  expectFields(*createGeometricCalibration3d(2, 3, 4, 5, 6, 7, 8, 9, 10, 11),
               {2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, "");
  expectFields(*createGeometricCalibration3d(2, "mm", 5, 6, 7, 8, 9, 10, 11),
               {2, 2, 2, 5, 6, 7, 8, 9, 10, 11}, "mm");
  expectFields(*createGeometricCalibration3d(2, 3, 4, "mm", 5, 6, 7, 8, 9, 10, 11),
               {2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, "mm");
}

TEST(GeometricCalibration, IsMadeUnderAPointerThatNobodyElseHolds)
{
  static_assert(std::is_same_v<GeometricCalibrationPtr, boost::shared_ptr<GeometricCalibration>>);
  static_assert(std::is_same_v<decltype(createGeometricCalibration2d(1)), GeometricCalibrationPtr>);
  static_assert(std::is_same_v<decltype(createGeometricCalibration3d(1)), GeometricCalibrationPtr>);
  EXPECT_EQ(createGeometricCalibration2d(1).use_count(), 1);
  EXPECT_EQ(createGeometricCalibration3d(1).use_count(), 1);
}

TEST(GeometricCalibration, IsNotMadeWithAScaleThatIsNotAboveZeroAndLeaksNothing)
{
  const std::string message = "Scale value -2.000000 should be strictly positive";
  const std::function<void()> attempts[] = {
      [] { createGeometricCalibration2d(-2); },
      [] { createGeometricCalibration2d(-2, -3, 0, 0, 0, 0, 0); },
      [] { createGeometricCalibration2d(1, -2, 0, 0, 0, 0, 0); },
      [] { createGeometricCalibration2d(-2, "mm", 0, 0, 0, 0, 0); },
      [] { createGeometricCalibration2d(1, -2, "mm", 0, 0, 0, 0, 0); },
      [] { createGeometricCalibration3d(-2); },
      [] { createGeometricCalibration3d(1, 1, -2, 0, 0, 0, 0, 0, 0, 0); },
      [] { createGeometricCalibration3d(1, -2, -3, 0, 0, 0, 0, 0, 0, 0); },
      [] { createGeometricCalibration3d(-2, "mm", 0, 0, 0, 0, 0, 0, 0); },
      [] { createGeometricCalibration3d(1, 1, -2, "mm", 0, 0, 0, 0, 0, 0, 0); },
  };
  for (const auto& attempt : attempts)
  {
    EXPECT_EQ(messageOfFailure(attempt), message); // what is made on the first failure stays
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    EXPECT_EQ(messageOfFailure(attempt), message);
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  }
}

TEST(GeometricCalibration, LeaksNothingWhenMemoryEndsWhileItIsMade)
{
  const std::string longUnit(100, 'u');
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbFailures =
      failAtEachAllocation([&] { createGeometricCalibration3d(1, longUnit, 0, 0, 0, 0, 0, 0, 0); },
                           [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); });
  EXPECT_EQ(nbFailures, 2U); // the object and its unit
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

// The frame

TEST(GeometricCalibration, CopiesEveryField)
{
  const GeometricCalibration calibration = makeMillimetres();
  EXPECT_TRUE(calibration.hasCopySupport());
  GeometricCalibration copy;
  copy.copy(calibration);
  expectFields(copy, g_numbers, "mm");
  expectFields(GeometricCalibration(calibration), g_numbers, "mm");
  GeometricCalibration assigned;
  EXPECT_EQ(&(assigned = calibration), &assigned);
  expectFields(assigned, g_numbers, "mm");
  const std::unique_ptr<BaseDynamicObject> duplicate(calibration.duplicate());
  expectFields(dynamic_cast<GeometricCalibration&>(*duplicate), g_numbers, "mm");
  expectFields(dynamic_cast<GeometricCalibration&>(*calibration.duplicateShared()), g_numbers, "mm");
}

struct CountingCalibration : GeometricCalibration
{
  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    GeometricCalibration::copy(other);
  }

  int nbCopies = 0;
};

TEST(GeometricCalibration, IsAssignedByItsVirtualCopy)
{
  CountingCalibration derived;
  GeometricCalibration& calibration = derived;
  EXPECT_EQ(&(calibration = makeMillimetres()), &calibration);
  EXPECT_EQ(derived.nbCopies, 1);
  expectFields(calibration, g_numbers, "mm");
}

// Archives

/// The keys of an archive in their order; the fourth is the unit.
const char* const g_keys[] = {"_xScale",       "_yScale",       "_zScale",      "_unitStr",
                              "_xOrigin",      "_yOrigin",      "_zOrigin",     "_rotation._qr",
                              "_rotation._qi", "_rotation._qj", "_rotation._qk"};

/// The first items of an archive.
template <class HandWritten>
void putItems(HandWritten& archive, std::size_t nbItems, const Numbers& numbers, const std::string& unitStr)
{
  std::size_t next = 0;
  for (std::size_t i = 0; i < nbItems; ++i)
    if (i == 3)
      archive.text(g_keys[i], unitStr);
    else
      archive.real32(g_keys[i], numbers[next++]);
}

template <class HandWritten>
std::string archiveOf(ipUInt32 version, std::size_t nbItems, const Numbers& numbers,
                      const std::string& unitStr)
{
  HandWritten archive;
  putVersion(archive, "orvel::GeometricCalibration", version);
  putItems(archive, nbItems, numbers, unitStr);
  return archive.file();
}

const Numbers g_otherNumbers = {12, 13, 14, 15, 16, 17, 18, 19, 20, 21};

template <class HandWritten>
class GeometricCalibrationArchive : public testing::Test
{
protected:
  static std::string write(const GeometricCalibration& calibration)
  {
    return fileOf<HandWritten>(
        [&](BaseOArchive& archive)
        {
          const BoolResult result = calibration.write(archive);
          EXPECT_TRUE(result);
          EXPECT_EQ(result.getMessage(), "");
        });
  }

  static void read(GeometricCalibration& calibration, const std::string& file)
  {
    readFile<HandWritten>(file,
                          [&](BaseIArchive& archive)
                          {
                            const BoolResult result = calibration.read(archive);
                            EXPECT_TRUE(result);
                            EXPECT_EQ(result.getMessage(), "");
                          });
  }

  static void expectRefused(GeometricCalibration& calibration, const std::string& file)
  {
    EXPECT_THROW(readStart<HandWritten>(file, [&](BaseIArchive& archive) { calibration.read(archive); }),
                 ORVELSerializationException);
  }
};

TYPED_TEST_SUITE(GeometricCalibrationArchive, Formats, );

TYPED_TEST(GeometricCalibrationArchive, HoldsElevenItemsInOrder)
{
  EXPECT_EQ(this->write(makeMillimetres()), archiveOf<TypeParam>(2, 11, g_numbers, "mm"));
}

TEST(GeometricCalibrationFile, IsThisXmlText)
{
  EXPECT_EQ(fileOf<HandWrittenXml>([](BaseOArchive& archive) { makeMillimetres().write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::GeometricCalibration">
    <item key="version">2</item>
  </section>
  <item key="_xScale">2</item>
  <item key="_yScale">3</item>
  <item key="_zScale">4</item>
  <item key="_unitStr">mm</item>
  <item key="_xOrigin">-5</item>
  <item key="_yOrigin">6</item>
  <item key="_zOrigin">7.5</item>
  <item key="_rotation._qr">0.125</item>
  <item key="_rotation._qi">-0.25</item>
  <item key="_rotation._qj">0.5</item>
  <item key="_rotation._qk">0.75</item>
</orvelArchive>
)");
}

TYPED_TEST(GeometricCalibrationArchive, ComesBackEqual)
{
  const std::string unit("\xC2\xB5m \0 <&>", 9);
  const Numbers numbers = {Limits::denorm_min(), Limits::max(), 0.1F, -0.0F,       Limits::lowest(),
                           -g_infinity,          1.0F / 3.0F,   -2.0, 16777217.0F, -Limits::min()};
  const GeometricCalibration calibration = makeCalibration(numbers, unit);
  GeometricCalibration copy = makeMillimetres();
  this->read(copy, this->write(calibration));
  EXPECT_TRUE(copy == calibration);
  expectFields(copy, numbers, unit);
  EXPECT_TRUE(std::signbit(copy.getXOrigin()));
}

TYPED_TEST(GeometricCalibrationArchive, ComesBackWithItsNaNs)
{
  GeometricCalibration calibration = makeMillimetres();
  calibration.setScale(0.0F, "");
  GeometricCalibration copy;
  this->read(copy, this->write(calibration));
  EXPECT_EQ(copy.getXScale(), 0.0F);
  EXPECT_TRUE(std::isnan(copy.getXOrigin()));
  EXPECT_TRUE(std::isnan(copy.getZOrigin()));
}

TYPED_TEST(GeometricCalibrationArchive, IsReadWithScalesThatItWouldRefuseToBeInitialisedWith)
{
  const Numbers numbers = {0.0F, -1.0F, -2.0F, 4, 5, 6, 7, 8, 9, 10};
  GeometricCalibration calibration;
  this->read(calibration, archiveOf<TypeParam>(2, 11, numbers, ""));
  expectFields(calibration, numbers, "");
}

TYPED_TEST(GeometricCalibrationArchive, OfVersion1HasNoOriginAndNoRotation)
{
  for (GeometricCalibration calibration : {GeometricCalibration(), makeMillimetres()})
  {
    this->read(calibration, archiveOf<TypeParam>(1, 4, g_otherNumbers, "um"));
    expectFields(calibration, {12, 13, 14, 0, 0, 0, 0, 0, 0, 0}, "um");
  }
}

TYPED_TEST(GeometricCalibrationArchive, IsWrittenInFullAlsoIfItWasReadInVersion1)
{
  GeometricCalibration calibration = makeMillimetres();
  this->read(calibration, archiveOf<TypeParam>(1, 4, g_otherNumbers, "um"));
  EXPECT_EQ(this->write(calibration), archiveOf<TypeParam>(2, 11, {12, 13, 14, 0, 0, 0, 0, 0, 0, 0}, "um"));
}

TYPED_TEST(GeometricCalibrationArchive, TakesTheNewestLayoutForVersion0)
{
  GeometricCalibration calibration;
  this->read(calibration, archiveOf<TypeParam>(0, 11, g_otherNumbers, "um"));
  expectFields(calibration, g_otherNumbers, "um");
}

TYPED_TEST(GeometricCalibrationArchive, KeepsTheVersionOfTheFirstForAllThatFollow)
{
  TypeParam archive;
  putVersion(archive, "orvel::GeometricCalibration", 1);
  putItems(archive, 4, g_numbers, "mm");
  putItems(archive, 4, g_otherNumbers, "um");
  GeometricCalibration first;
  GeometricCalibration second = makeMillimetres();
  readFile<TypeParam>(archive.file(),
                      [&](BaseIArchive& input)
                      {
                        EXPECT_TRUE(first.read(input));
                        EXPECT_EQ(input.getRegisterClassVersion("orvel::GeometricCalibration"), 1U);
                        EXPECT_TRUE(second.read(input));
                      });
  expectFields(first, {2, 3, 4, 0, 0, 0, 0, 0, 0, 0}, "mm");
  expectFields(second, {12, 13, 14, 0, 0, 0, 0, 0, 0, 0}, "um");
}

TYPED_TEST(GeometricCalibrationArchive, KeepsWhatWasReadBeforeItEnds)
{
  for (std::size_t nbItems = 0; nbItems < 11; ++nbItems)
  {
    GeometricCalibration calibration = makeMillimetres();
    this->expectRefused(calibration, archiveOf<TypeParam>(2, nbItems, g_otherNumbers, "um"));
    Numbers expected = g_numbers;
    const std::size_t nbNumbers = nbItems > 3 ? nbItems - 1 : nbItems;
    std::copy_n(g_otherNumbers.begin(), nbNumbers, expected.begin());
    expectFields(calibration, expected, nbItems > 3 ? "um" : "mm");
  }
}

TYPED_TEST(GeometricCalibrationArchive, ComparesKeysWhereTheyAreStored)
{
  TypeParam archive;
  putVersion(archive, "orvel::GeometricCalibration", 2);
  archive.real32("_yScale", 2);
  GeometricCalibration calibration;
  this->expectRefused(calibration, archive.file());
  EXPECT_EQ(calibration.getXScale(), (std::is_same_v<TypeParam, HandWrittenXml> ? 1.0F : 2.0F));
}

} // namespace
