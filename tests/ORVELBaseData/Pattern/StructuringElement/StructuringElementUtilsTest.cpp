#include "ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "ElementTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

const double g_pi = std::acos(-1.0);
constexpr double g_nan = std::numeric_limits<double>::quiet_NaN();
constexpr double g_infinity = std::numeric_limits<double>::infinity();
constexpr double g_angles[] = {0.0, -0.0, 0.5, -2.0, 100.0, -1e6, 1e22, g_nan, g_infinity, -g_infinity};

const ElementState g_emptied = {{g_highest, g_highest, g_highest}, {2, 2, 2}, {}};

/// The state of a set of positions, found in the simplest way.
/// \param isPlanar whether there is no z
ElementState stateOfPlaces(Places places, bool isPlanar)
{
  const auto comesFirst = [](const Coordinates& left, const Coordinates& right)
  {
    for (const std::size_t axis : {2U, 1U, 0U})
      if (left[axis] != right[axis])
        return left[axis] < right[axis];
    return false;
  };
  std::sort(places.begin(), places.end(), comesFirst);
  places.erase(std::unique(places.begin(), places.end()), places.end());

  ElementState state = g_emptied;
  for (std::size_t axis = 0; axis < 3 && !places.empty(); ++axis)
  {
    std::vector<std::int64_t> coordinates;
    for (const Coordinates& place : places)
      coordinates.push_back(place[axis]);
    const auto [min, max] = std::minmax_element(coordinates.begin(), coordinates.end());
    state.min[axis] = static_cast<ipInt32>(*min);
    state.size[axis] = static_cast<ipUInt32>(*max - *min + 1);
  }
  if (isPlanar)
  {
    state.min[2] = 0;
    state.size[2] = 0;
  }
  state.places = places;
  return state;
}

// Each shape by its definition, as a test of every position of a box around it or as a list of samples.

Places filter(int reach, bool isPlanar, const std::function<bool(int, int, int)>& isIn)
{
  Places places;
  for (int x = -reach; x <= reach; ++x)
    for (int y = -reach; y <= reach; ++y)
      for (int z = isPlanar ? 0 : -reach; z <= (isPlanar ? 0 : reach); ++z)
        if (isIn(x, y, z))
          places.push_back({x, y, z});
  return places;
}

ElementState ballState(double radius, bool isPlanar)
{
  return stateOfPlaces(filter(static_cast<int>(radius) + 2, isPlanar,
                              [=](int x, int y, int z) { return x * x + y * y + z * z <= radius * radius; }),
                       isPlanar);
}

ElementState boxState(int halfSizeX, int halfSizeY, int halfSizeZ, bool isPlanar)
{
  return stateOfPlaces(filter(std::max({halfSizeX, halfSizeY, halfSizeZ}) + 1, isPlanar,
                              [=](int x, int y, int z) {
                                return std::abs(x) <= halfSizeX && std::abs(y) <= halfSizeY &&
                                       std::abs(z) <= halfSizeZ;
                              }),
                       isPlanar);
}

using Point = std::array<double, 3>;

Point directionOf(double theta)
{
  return {std::cos(theta), std::sin(theta), 0};
}

Point directionOf(double theta, double phi)
{
  return {std::sin(theta) * std::cos(phi), std::sin(theta) * std::sin(phi), std::cos(theta)};
}

/// The rounded samples of a segment, in the order of the walk and with repetitions.
Places samplesOf(const Point& direction, double radius)
{
  std::vector<Point> samples = {{0, 0, 0}};
  for (;;)
  {
    Point next = samples.back();
    for (std::size_t axis = 0; axis < 3; ++axis)
      next[axis] += direction[axis];
    if (!(next[0] * next[0] + next[1] * next[1] + next[2] * next[2] <= radius * radius))
      break;
    samples.push_back(next);
  }
  Places places;
  for (const Point& sample : samples)
    places.push_back({static_cast<int>(std::round(sample[0])), static_cast<int>(std::round(sample[1])),
                      static_cast<int>(std::round(sample[2]))});
  return places;
}

Places withOpposites(Places places)
{
  const Places oneSide = places;
  for (const Coordinates& place : oneSide)
    places.push_back({-place[0], -place[1], -place[2]});
  return places;
}

/// The layer of an element at one z, row by row from the lowest y.
std::vector<std::string> pictureOf(const Places& places, int reach, int z = 0)
{
  const auto width = static_cast<std::size_t>(2 * reach + 1);
  std::vector<std::string> rows(width, std::string(width, '.'));
  for (const Coordinates& place : places)
    if (place[2] == z)
      rows.at(static_cast<std::size_t>(place[1] + reach)).at(static_cast<std::size_t>(place[0] + reach)) =
          '#';
  return rows;
}

template <class ElementPtr>
void expectOriginAlone(const ElementPtr& element)
{
  EXPECT_EQ(placesOf(*element), (Places{{0, 0, 0}}));
  EXPECT_EQ(element->getMinX(), 0);
  EXPECT_EQ(element->getMinY(), 0);
  EXPECT_EQ(element->getSizeX(), 1U);
  EXPECT_EQ(element->getSizeY(), 1U);
}

// Boxes

TEST(Boxes, OfHalfSizeZeroAreTheOrigin)
{
  expectOriginAlone(rectangularSEXY(0, 0));
  expectOriginAlone(squareSEXY(0));
  expectOriginAlone(rectangularSEXYZ(0, 0, 0));
  expectOriginAlone(cubicSEXYZ(0));
}

TEST(Boxes, OfThePlaneHoldEveryOffsetOfTheRectangle)
{
  const ElementState box = stateOf(*rectangularSEXY(2, 1));
  EXPECT_EQ(box.places, (Places{{-2, -1, 0},
                                {-1, -1, 0},
                                {0, -1, 0},
                                {1, -1, 0},
                                {2, -1, 0},
                                {-2, 0, 0},
                                {-1, 0, 0},
                                {0, 0, 0},
                                {1, 0, 0},
                                {2, 0, 0},
                                {-2, 1, 0},
                                {-1, 1, 0},
                                {0, 1, 0},
                                {1, 1, 0},
                                {2, 1, 0}}));
  EXPECT_EQ(box.min, (Coordinates{-2, -1, 0}));
  EXPECT_EQ(box.size, (Sizes{5, 3, 0}));
}

TEST(Boxes, OfSpaceHoldEveryOffsetOfTheBox)
{
  const ElementState box = stateOf(*rectangularSEXYZ(1, 0, 1));
  EXPECT_EQ(box.places, (Places{{-1, 0, -1},
                                {0, 0, -1},
                                {1, 0, -1},
                                {-1, 0, 0},
                                {0, 0, 0},
                                {1, 0, 0},
                                {-1, 0, 1},
                                {0, 0, 1},
                                {1, 0, 1}}));
  EXPECT_EQ(box.min, (Coordinates{-1, 0, -1}));
  EXPECT_EQ(box.size, (Sizes{3, 1, 3}));
}

TEST(Boxes, TakeEachHalfSizeForItsAxis)
{
  EXPECT_EQ(stateOf(*rectangularSEXY(0, 3)).size, (Sizes{1, 7, 0}));
  EXPECT_EQ(stateOf(*rectangularSEXYZ(1, 2, 3)).size, (Sizes{3, 5, 7}));
}

TEST(Boxes, WithOneHalfSizeAreThoseWithEqualOnes)
{
  EXPECT_EQ(stateOf(*squareSEXY(3)), stateOf(*rectangularSEXY(3, 3)));
  EXPECT_EQ(stateOf(*cubicSEXYZ(2)), stateOf(*rectangularSEXYZ(2, 2, 2)));
}

TEST(Boxes, AreThoseOfTheDefinition)
{
  for (ipUInt32 x = 0; x < 5; ++x)
    for (ipUInt32 y = 0; y < 5; ++y)
    {
      EXPECT_EQ(stateOf(*rectangularSEXY(x, y)), boxState(static_cast<int>(x), static_cast<int>(y), 0, true));
      for (ipUInt32 z = 0; z < 5; ++z)
        EXPECT_EQ(stateOf(*rectangularSEXYZ(x, y, z)),
                  boxState(static_cast<int>(x), static_cast<int>(y), static_cast<int>(z), false));
    }
}

TEST(Boxes, HaveTheCountOfTheirExtents)
{
  std::mt19937 random(31);
  std::uniform_int_distribution<ipUInt32> draw(0, 12);
  for (int i = 0; i < 200; ++i)
  {
    const ipUInt32 x = draw(random);
    const ipUInt32 y = draw(random);
    const ipUInt32 z = draw(random);
    EXPECT_EQ(rectangularSEXY(x, y)->getNbData(), (2 * x + 1) * (2 * y + 1));
    EXPECT_EQ(rectangularSEXYZ(x, y, z)->getNbData(), (2 * x + 1) * (2 * y + 1) * (2 * z + 1));
  }
}

TEST(Boxes, AreEmptyForAHalfSizeThatIsNegativeInThirtyTwoBits)
{
  const ElementState emptiedXY = stateOf(*rectangularSEXY(2147483649U, 1));
  EXPECT_EQ(emptiedXY.places, Places());
  EXPECT_EQ(emptiedXY.min, (Coordinates{g_highest, g_highest, 0}));
  EXPECT_EQ(emptiedXY.size, (Sizes{2, 2, 0}));
  EXPECT_EQ(stateOf(*rectangularSEXY(1, 2147483649U)), emptiedXY);
  EXPECT_EQ(stateOf(*rectangularSEXY(4294967295U, 0)), emptiedXY);
  EXPECT_EQ(stateOf(*squareSEXY(4294967295U)), emptiedXY);
  EXPECT_EQ(stateOf(*rectangularSEXYZ(2147483649U, 1, 1)), g_emptied);
  EXPECT_EQ(stateOf(*rectangularSEXYZ(1, 3000000000U, 1)), g_emptied);
  EXPECT_EQ(stateOf(*rectangularSEXYZ(1, 1, 4294967295U)), g_emptied);
  EXPECT_EQ(stateOf(*cubicSEXYZ(2147483649U)), g_emptied);
}

TEST(Boxes, ThatAreEmptyAreMadeAtOnceWhateverTheOtherHalfSizes)
{
  constexpr ipUInt32 largest = 2147483647;
  constexpr ipUInt32 negative = 2147483649U;
  EXPECT_EQ(rectangularSEXY(negative, largest)->getNbData(), 0U);
  EXPECT_EQ(rectangularSEXY(largest, negative)->getNbData(), 0U);
  EXPECT_EQ(rectangularSEXYZ(negative, largest, largest)->getNbData(), 0U);
  EXPECT_EQ(rectangularSEXYZ(largest, negative, largest)->getNbData(), 0U);
  EXPECT_EQ(rectangularSEXYZ(largest, largest, negative)->getNbData(), 0U);
}

TEST(Boxes, HoldTheLowestCoordinateForTheHalfSizeThatIsItsOwnOpposite)
{
  constexpr ipUInt32 half = 2147483648U;
  EXPECT_EQ(stateOf(*rectangularSEXY(half, 0)),
            (ElementState{{g_lowest, 0, 0}, {1, 1, 0}, {{g_lowest, 0, 0}}}));
  EXPECT_EQ(stateOf(*squareSEXY(half)),
            (ElementState{{g_lowest, g_lowest, 0}, {1, 1, 0}, {{g_lowest, g_lowest, 0}}}));
  EXPECT_EQ(
      stateOf(*rectangularSEXYZ(0, half, 1)),
      (ElementState{{0, g_lowest, -1}, {1, 1, 3}, {{0, g_lowest, -1}, {0, g_lowest, 0}, {0, g_lowest, 1}}}));
}

// Discs and balls

TEST(Discs, LookLikeThis)
{
  const auto picture = [](double radius, int reach)
  {
    return pictureOf(placesOf(*circularSEXY(radius)), reach);
  };
  using Rows = std::vector<std::string>;
  EXPECT_EQ(picture(0.0, 1), (Rows{"...", ".#.", "..."}));
  EXPECT_EQ(picture(0.5, 1), (Rows{"...", ".#.", "..."}));
  EXPECT_EQ(picture(1.0, 1), (Rows{".#.", "###", ".#."}));
  EXPECT_EQ(picture(1.5, 1), (Rows{"###", "###", "###"}));
  EXPECT_EQ(picture(2.0, 2), (Rows{"..#..", ".###.", "#####", ".###.", "..#.."}));
  EXPECT_EQ(picture(2.5, 2), (Rows{".###.", "#####", "#####", "#####", ".###."}));
  EXPECT_EQ(picture(3.0, 3),
            (Rows{"...#...", ".#####.", ".#####.", "#######", ".#####.", ".#####.", "...#..."}));
}

TEST(Discs, HaveTheseCounts)
{
  const std::pair<double, ipUInt64> counts[] = {{0, 1},  {0.5, 1},  {1, 5},  {1.5, 9},
                                                {2, 13}, {2.5, 21}, {3, 29}, {50, 7845}};
  for (const auto& [radius, count] : counts)
    EXPECT_EQ(circularSEXY(radius)->getNbData(), count) << radius;
}

TEST(Balls, LookLikeThis)
{
  const Places places = placesOf(*sphericalSEXYZ(1.5));
  using Rows = std::vector<std::string>;
  EXPECT_EQ(pictureOf(places, 2, -2), (Rows{".....", ".....", ".....", ".....", "....."}));
  EXPECT_EQ(pictureOf(places, 2, -1), (Rows{".....", "..#..", ".###.", "..#..", "....."}));
  EXPECT_EQ(pictureOf(places, 2, 0), (Rows{".....", ".###.", ".###.", ".###.", "....."}));
  EXPECT_EQ(pictureOf(places, 2, 1), (Rows{".....", "..#..", ".###.", "..#..", "....."}));
  EXPECT_EQ(pictureOf(places, 2, 2), (Rows{".....", ".....", ".....", ".....", "....."}));
}

TEST(Balls, OfRadiusOneAreTheSixNeighboursAndTheOrigin)
{
  EXPECT_EQ(stateOf(*sphericalSEXYZ(1)),
            (ElementState{{-1, -1, -1},
                          {3, 3, 3},
                          {{0, 0, -1}, {0, -1, 0}, {-1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}));
}

TEST(Balls, HaveTheseCounts)
{
  const std::pair<double, ipUInt64> counts[] = {{0, 1},  {0.5, 1},  {1, 7},  {1.5, 19},
                                                {2, 33}, {2.5, 81}, {3, 123}};
  for (const auto& [radius, count] : counts)
    EXPECT_EQ(sphericalSEXYZ(radius)->getNbData(), count) << radius;
}

TEST(DiscsAndBalls, ReachToTheRadiusCutToAnInteger)
{
  EXPECT_EQ(stateOf(*circularSEXY(2.9)).size, (Sizes{5, 5, 0}));
  EXPECT_EQ(stateOf(*circularSEXY(2.9)).min, (Coordinates{-2, -2, 0}));
  EXPECT_EQ(stateOf(*sphericalSEXYZ(2.9)).size, (Sizes{5, 5, 5}));
  EXPECT_EQ(stateOf(*circularSEXY(std::nextafter(3.0, 0.0))).size, (Sizes{5, 5, 0}));
}

TEST(DiscsAndBalls, HoldTheirBoundary)
{
  EXPECT_TRUE(circularSEXY(5)->exists(OffsetXY(3, 4))); // 3, 4, 5
  EXPECT_FALSE(circularSEXY(std::nextafter(5.0, 0.0))->exists(OffsetXY(3, 4)));
  EXPECT_TRUE(sphericalSEXYZ(3)->exists(OffsetXYZ(1, -2, 2))); // 1 + 4 + 4 = 9
  EXPECT_FALSE(sphericalSEXYZ(std::nextafter(3.0, 0.0))->exists(OffsetXYZ(1, -2, 2)));
}

/// Radii of all kinds: any, whole, and roots of whole numbers, where the boundary is.
double drawRadius(std::mt19937& random, int largest)
{
  const double any = std::uniform_real_distribution<double>(0, largest)(random);
  switch (random() % 4)
  {
  case 0:
    return std::floor(any);
  case 1:
    return std::sqrt(std::floor(any * any));
  case 2:
    return std::floor(2 * any) / 2;
  default:
    return any;
  }
}

TEST(DiscsAndBalls, AreThoseOfTheDefinition)
{
  std::mt19937 random(41);
  for (int i = 0; i < 1500; ++i)
  {
    const double radius = drawRadius(random, 16);
    ASSERT_EQ(stateOf(*circularSEXY(radius)), ballState(radius, true)) << radius;
  }
  for (int i = 0; i < 400; ++i)
  {
    const double radius = drawRadius(random, 6);
    ASSERT_EQ(stateOf(*sphericalSEXYZ(radius)), ballState(radius, false)) << radius;
  }
}

TEST(Discs, AreSymmetricInBothAxesAndTheDiagonal)
{
  for (const double radius : {1.0, 2.7, 5.0, 9.9, 17.3})
  {
    const StructuringElementXYPtr disc = circularSEXY(radius);
    for (const OffsetXY& offset : disc->getDataColl())
    {
      EXPECT_TRUE(disc->exists(OffsetXY(-offset.getXOffset(), offset.getYOffset())));
      EXPECT_TRUE(disc->exists(OffsetXY(offset.getXOffset(), -offset.getYOffset())));
      EXPECT_TRUE(disc->exists(OffsetXY(offset.getYOffset(), offset.getXOffset())));
    }
  }
}

TEST(Balls, AreSymmetricInAllAxesAndDiagonals)
{
  for (const double radius : {1.0, 2.7, 5.0, 6.9})
  {
    const StructuringElementXYZPtr ball = sphericalSEXYZ(radius);
    for (const OffsetXYZ& offset : ball->getDataColl())
    {
      const auto [x, y, z] = OffsetTraits<OffsetXYZ>::placeOf(offset);
      EXPECT_TRUE(ball->exists(OffsetXYZ(-x, y, z)));
      EXPECT_TRUE(ball->exists(OffsetXYZ(y, x, z)));
      EXPECT_TRUE(ball->exists(OffsetXYZ(y, z, x)));
    }
  }
}

TEST(DiscsAndBalls, GrowWithTheirRadius)
{
  StructuringElementXYPtr disc = circularSEXY(0);
  StructuringElementXYZPtr ball = sphericalSEXYZ(0);
  for (int quarters = 1; quarters <= 28; ++quarters)
  {
    const double radius = quarters / 4.0;
    const StructuringElementXYPtr largerDisc = circularSEXY(radius);
    const StructuringElementXYZPtr largerBall = sphericalSEXYZ(radius);
    const auto& discOffsets = largerDisc->getDataColl();
    const auto& ballOffsets = largerBall->getDataColl();
    EXPECT_TRUE(std::includes(discOffsets.begin(), discOffsets.end(), disc->getDataColl().begin(),
                              disc->getDataColl().end()));
    EXPECT_TRUE(std::includes(ballOffsets.begin(), ballOffsets.end(), ball->getDataColl().begin(),
                              ball->getDataColl().end()));
    disc = largerDisc;
    ball = largerBall;
  }
}

TEST(Balls, HaveTheDiscOfTheirRadiusInTheMiddle)
{
  for (const double radius : {1.0, 2.5, 4.9})
  {
    Places middle;
    for (const Coordinates& place : placesOf(*sphericalSEXYZ(radius)))
      if (place[2] == 0)
        middle.push_back(place);
    EXPECT_EQ(middle, placesOf(*circularSEXY(radius)));
  }
}

TEST(DiscsAndBalls, OfARadiusThatThirtyTwoBitsDoNotHoldAreTheLowestCoordinate)
{
  for (const double radius : {2147483648.0, 1e300, g_infinity})
  {
    EXPECT_EQ(placesOf(*circularSEXY(radius)), (Places{{g_lowest, g_lowest, 0}}));
    EXPECT_EQ(placesOf(*sphericalSEXYZ(radius)), (Places{{g_lowest, g_lowest, g_lowest}}));
  }
}

// Segments

TEST(Segments, RunAlongXForThetaZero)
{
  EXPECT_EQ(stateOf(*halfLinearSEXY(0.0, 3.0)),
            (ElementState{{0, 0, 0}, {4, 1, 0}, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}}));
}

TEST(Segments, RunAlongYForThetaOfAQuarterTurn)
{
  EXPECT_EQ(stateOf(*halfLinearSEXY(g_pi / 2, 3.0)),
            (ElementState{{0, 0, 0}, {1, 4, 0}, {{0, 0, 0}, {0, 1, 0}, {0, 2, 0}, {0, 3, 0}}}));
}

TEST(Segments, RunBackwardsForHalfATurn)
{
  EXPECT_EQ(stateOf(*halfLinearSEXY(g_pi, 2.5)),
            (ElementState{{-2, 0, 0}, {3, 1, 0}, {{-2, 0, 0}, {-1, 0, 0}, {0, 0, 0}}}));
  EXPECT_EQ(stateOf(*halfLinearSEXY(-g_pi / 2, 2.5)),
            (ElementState{{0, -2, 0}, {1, 3, 0}, {{0, -2, 0}, {0, -1, 0}, {0, 0, 0}}}));
}

TEST(Segments, CountAnOffsetOnceThatTwoSamplesRoundTo)
{
  EXPECT_EQ(stateOf(*halfLinearSEXY(g_pi / 4, 2.0)),
            (ElementState{{0, 0, 0}, {2, 2, 0}, {{0, 0, 0}, {1, 1, 0}}}));
}

TEST(Segments, RoundEachSampleToTheGrid)
{
  // cos 0.5 = 0.878, sin 0.5 = 0.479: (0.88, 0.48), (1.76, 0.96), (2.63, 1.44)
  EXPECT_EQ(placesOf(*halfLinearSEXY(0.5, 3.5)), (Places{{0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {3, 1, 0}}));
  // (0.26, 0.40, 0.88), (0.52, 0.81, 1.76), (0.78, 1.21, 2.63)
  EXPECT_EQ(placesOf(*halfLinearSEXYZ(0.5, 1.0, 3.5)), (Places{{0, 0, 0}, {0, 0, 1}, {1, 1, 2}, {1, 1, 3}}));
}

TEST(Segments, RoundHalvesAwayFromZero)
{
  const double angle = std::asin(0.5);
  ASSERT_EQ(std::sin(angle), 0.5);
  EXPECT_EQ(placesOf(*halfLinearSEXY(angle, 1.5)), (Places{{0, 0, 0}, {1, 1, 0}}));
  EXPECT_EQ(placesOf(*halfLinearSEXY(-angle, 1.5)), (Places{{1, -1, 0}, {0, 0, 0}}));
}

TEST(Segments, OfBothSidesHoldTheOppositeOfEachOffset)
{
  EXPECT_EQ(stateOf(*linearSEXY(0.0, 3.0)),
            (ElementState{{-3, 0, 0},
                          {7, 1, 0},
                          {{-3, 0, 0}, {-2, 0, 0}, {-1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}}));
  EXPECT_EQ(placesOf(*linearSEXY(0.5, 3.5)),
            (Places{{-3, -1, 0}, {-2, -1, 0}, {-1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {3, 1, 0}}));
  EXPECT_EQ(placesOf(*linearSEXYZ(0.5, 1.0, 2.5)),
            (Places{{-1, -1, -2}, {0, 0, -1}, {0, 0, 0}, {0, 0, 1}, {1, 1, 2}}));
}

TEST(Segments, OfSpaceMeasureThetaFromZAndPhiFromX)
{
  for (const double phi : {0.0, 1.0, -2.0, 50.0})
    EXPECT_EQ(stateOf(*halfLinearSEXYZ(0.0, phi, 2.0)),
              (ElementState{{0, 0, 0}, {1, 1, 3}, {{0, 0, 0}, {0, 0, 1}, {0, 0, 2}}}));
  EXPECT_EQ(placesOf(*halfLinearSEXYZ(g_pi / 2, 0.0, 2.0)), (Places{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}));
  EXPECT_EQ(placesOf(*halfLinearSEXYZ(g_pi / 2, g_pi / 2, 2.0)), (Places{{0, 0, 0}, {0, 1, 0}, {0, 2, 0}}));
  EXPECT_EQ(placesOf(*halfLinearSEXYZ(g_pi, 0.0, 2.5)), (Places{{0, 0, -2}, {0, 0, -1}, {0, 0, 0}}));
}

TEST(Segments, TakeAnglesFarFromZero)
{
  EXPECT_EQ(placesOf(*halfLinearSEXY(200 * g_pi, 2.5)), (Places{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}));
  // cos 10^6 = 0.937, sin 10^6 = -0.350
  EXPECT_EQ(placesOf(*halfLinearSEXY(1e6, 2.5)), (Places{{2, -1, 0}, {0, 0, 0}, {1, 0, 0}}));
}

TEST(Segments, OfRadiusZeroAreTheOriginForEveryAngle)
{
  for (const double radius : {0.0, -0.0, std::numeric_limits<double>::denorm_min(), 1e-200, 0.5})
    for (const double theta : g_angles)
    {
      expectOriginAlone(halfLinearSEXY(theta, radius));
      expectOriginAlone(linearSEXY(theta, radius));
      for (const double phi : g_angles)
      {
        expectOriginAlone(halfLinearSEXYZ(theta, phi, radius));
        expectOriginAlone(linearSEXYZ(theta, phi, radius));
      }
    }
}

TEST(Segments, AreTheOriginForAnAngleThatIsNoFiniteNumber)
{
  for (const double angle : {g_nan, -g_nan, g_infinity, -g_infinity})
    for (const double radius : {1.0, 100.0, g_infinity})
    {
      expectOriginAlone(halfLinearSEXY(angle, radius));
      expectOriginAlone(linearSEXY(angle, radius));
      for (const double second : {0.0, 0.5, g_nan})
      {
        expectOriginAlone(halfLinearSEXYZ(angle, second, radius));
        expectOriginAlone(halfLinearSEXYZ(second, angle, radius));
        expectOriginAlone(linearSEXYZ(angle, second, radius));
        expectOriginAlone(linearSEXYZ(second, angle, radius));
      }
    }
}

/// Angles of all kinds: any, far ones, and parts of a turn.
double drawAngle(std::mt19937& random)
{
  const double any = std::uniform_real_distribution<double>(-7, 7)(random);
  switch (random() % 4)
  {
  case 0:
    return 1e5 * any;
  case 1:
    return std::round(any) * g_pi / 4;
  case 2:
    return std::round(any) * g_pi / 6;
  default:
    return any;
  }
}

TEST(Segments, AreThoseOfTheDefinition)
{
  std::mt19937 random(51);
  for (int i = 0; i < 3000; ++i)
  {
    const double theta = drawAngle(random);
    const double phi = drawAngle(random);
    const double radius = drawRadius(random, 40);
    const Places planar = samplesOf(directionOf(theta), radius);
    const Places spatial = samplesOf(directionOf(theta, phi), radius);
    ASSERT_EQ(stateOf(*halfLinearSEXY(theta, radius)), stateOfPlaces(planar, true)) << theta << " " << radius;
    ASSERT_EQ(stateOf(*linearSEXY(theta, radius)), stateOfPlaces(withOpposites(planar), true))
        << theta << " " << radius;
    ASSERT_EQ(stateOf(*halfLinearSEXYZ(theta, phi, radius)), stateOfPlaces(spatial, false))
        << theta << " " << phi << " " << radius;
    ASSERT_EQ(stateOf(*linearSEXYZ(theta, phi, radius)), stateOfPlaces(withOpposites(spatial), false))
        << theta << " " << phi << " " << radius;
  }
}

TEST(Segments, KeepTheDriftOfTheRunningSum)
{
  // Somewhere on a long way the sum and the product of step and number round apart, or end apart.
  int nbDifferences = 0;
  for (int degrees = 1; degrees < 90; ++degrees)
  {
    const double theta = degrees * g_pi / 180;
    Places products;
    for (int k = 0; k <= 1000; ++k)
      products.push_back({static_cast<int>(std::round(k * std::cos(theta))),
                          static_cast<int>(std::round(k * std::sin(theta))), 0});
    const ElementState segment = stateOf(*halfLinearSEXY(theta, 1000));
    EXPECT_EQ(segment, stateOfPlaces(samplesOf(directionOf(theta), 1000), true));
    nbDifferences += segment == stateOfPlaces(products, true) ? 0 : 1;
  }
  EXPECT_GT(nbDifferences, 0);
}

TEST(Segments, MayMissTheTipAtARadiusThatIsAWholeNumber)
{
  // Three steps of (0.825, 0.565) end at (2.476, 1.694); their sum lies beyond 3 by a rounding.
  EXPECT_EQ(placesOf(*halfLinearSEXY(0.6, 3.0)), (Places{{0, 0, 0}, {1, 1, 0}, {2, 1, 0}}));
  EXPECT_EQ(placesOf(*halfLinearSEXY(0.6, 3.5)), (Places{{0, 0, 0}, {1, 1, 0}, {2, 1, 0}, {2, 2, 0}}));
  // Three of (0.980, 0.199) end at (2.940, 0.596), within 3.
  EXPECT_EQ(placesOf(*halfLinearSEXY(0.2, 3.0)), (Places{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 1, 0}}));
}

TEST(Segments, HaveNoGap)
{
  std::mt19937 random(52);
  for (int i = 0; i < 500; ++i)
  {
    // In the order of their distance, each offset touches the one before.
    Places places = placesOf(*halfLinearSEXYZ(drawAngle(random), drawAngle(random), drawRadius(random, 60)));
    std::sort(places.begin(), places.end(),
              [](const Coordinates& left, const Coordinates& right)
              {
                const auto distanceOf = [](const Coordinates& place)
                {
                  return place[0] * place[0] + place[1] * place[1] + place[2] * place[2];
                };
                return distanceOf(left) < distanceOf(right);
              });
    for (std::size_t k = 1; k < places.size(); ++k)
      for (std::size_t axis = 0; axis < 3; ++axis)
        ASSERT_LE(std::abs(places[k][axis] - places[k - 1][axis]), 1);
  }
}

TEST(Segments, HaveAtMostOneOffsetPerSample)
{
  std::mt19937 random(53);
  for (int i = 0; i < 500; ++i)
  {
    const double theta = drawAngle(random);
    const double radius = drawRadius(random, 60);
    const auto nbSamples = static_cast<ipUInt64>(radius) + 1;
    EXPECT_LE(halfLinearSEXY(theta, radius)->getNbData(), nbSamples);
    EXPECT_GE(halfLinearSEXY(theta, radius)->getNbData(), nbSamples * 7 / 10); // 1 / sqrt(2) of them at least
    EXPECT_LE(linearSEXY(theta, radius)->getNbData(), 2 * nbSamples - 1);
  }
}

// Failures

TEST(StructuringElementUtils, RefuseARadiusThatIsNotAtLeastZero)
{
  const std::pair<void (*)(double), std::string> makers[] = {
      {[](double radius) { circularSEXY(radius); },
       "orvel::StructuringElementXYPtr orvel::circularSEXY(ipReal64)"},
      {[](double radius) { halfLinearSEXY(0.5, radius); },
       "orvel::StructuringElementXYPtr orvel::halfLinearSEXY(ipReal64, ipReal64)"},
      {[](double radius) { linearSEXY(0.5, radius); },
       "orvel::StructuringElementXYPtr orvel::linearSEXY(ipReal64, ipReal64)"},
      {[](double radius) { sphericalSEXYZ(radius); },
       "orvel::StructuringElementXYZPtr orvel::sphericalSEXYZ(ipReal64)"},
      {[](double radius) { halfLinearSEXYZ(0.5, 1, radius); },
       "orvel::StructuringElementXYZPtr orvel::halfLinearSEXYZ(ipReal64, ipReal64, ipReal64)"},
      {[](double radius) { linearSEXYZ(0.5, 1, radius); },
       "orvel::StructuringElementXYZPtr orvel::linearSEXYZ(ipReal64, ipReal64, ipReal64)"},
  };
  const std::pair<double, std::string> radii[] = {{-0.001, "-0.001000"},
                                                  {-1.0, "-1.000000"},
                                                  {-g_infinity, "-inf"},
                                                  {g_nan, "nan"},
                                                  {-std::numeric_limits<double>::denorm_min(), "-0.000000"}};
  for (const auto& [make, function] : makers)
    for (const auto& [radius, text] : radii)
      expectRaised<ORVELBaseDataException>(
          [make = make, radius = radius] { make(radius); },
          {"Invalid radius value " + text + ", should not be negative", function,
           "ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.cpp", "",
           "requireRadius(radius, ORVEL_HERE)"});
}

TEST(StructuringElementUtils, TakeNegativeZeroForARadius)
{
  expectOriginAlone(circularSEXY(-0.0));
  expectOriginAlone(sphericalSEXYZ(-0.0));
}

// What they take and give

TEST(StructuringElementUtils, TakeTheseArgumentsAndGiveSharedElements)
{
  EXPECT_TRUE((std::is_same<decltype(rectangularSEXY), StructuringElementXYPtr(ipUInt32, ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(squareSEXY), StructuringElementXYPtr(ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(circularSEXY), StructuringElementXYPtr(ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(halfLinearSEXY), StructuringElementXYPtr(ipReal64, ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(linearSEXY), StructuringElementXYPtr(ipReal64, ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(rectangularSEXYZ),
                            StructuringElementXYZPtr(ipUInt32, ipUInt32, ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(cubicSEXYZ), StructuringElementXYZPtr(ipUInt32)>::value));
  EXPECT_TRUE((std::is_same<decltype(sphericalSEXYZ), StructuringElementXYZPtr(ipReal64)>::value));
  EXPECT_TRUE((std::is_same<decltype(halfLinearSEXYZ),
                            StructuringElementXYZPtr(ipReal64, ipReal64, ipReal64)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(linearSEXYZ), StructuringElementXYZPtr(ipReal64, ipReal64, ipReal64)>::value));
}

TEST(StructuringElementUtils, GiveAnElementOfItsOwnAtEachCall)
{
  const StructuringElementXYPtr first = circularSEXY(1);
  const StructuringElementXYPtr second = circularSEXY(1);
  EXPECT_NE(first, second);
  EXPECT_EQ(first.use_count(), 1);
  first->clear();
  EXPECT_EQ(second->getNbData(), 5U);
  EXPECT_EQ(circularSEXY(1)->getNbData(), 5U);
}

TEST(StructuringElementUtils, GiveElementsThatCanBeChanged)
{
  const StructuringElementXYZPtr cube = cubicSEXYZ(1);
  cube->insert(OffsetXYZ(5, 0, 0));
  EXPECT_EQ(cube->getNbData(), 28U);
  EXPECT_EQ(cube->getSizeX(), 7U);
}

TEST(StructuringElementUtils, ReleaseWhatTheyHaveMadeWhenMemoryRunsOut)
{
  circularSEXY(1); // whatever is made once
  void (*const makers[])() = {[] { rectangularSEXY(1, 2); },
                              [] { circularSEXY(2); },
                              [] { halfLinearSEXY(0.5, 5); },
                              [] { linearSEXY(0.5, 5); },
                              [] { rectangularSEXYZ(1, 1, 0); },
                              [] { sphericalSEXYZ(1); },
                              [] { halfLinearSEXYZ(0.5, 1, 5); },
                              []
                              {
                                linearSEXYZ(0.5, 1, 5);
                              }};
  for (const auto make : makers)
  {
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    const std::size_t nbFailures =
        failAtEachAllocation(make, [nbBlocks] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); });
    EXPECT_GT(nbFailures, 4U); // each offset and the element
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  }
}

TEST(StructuringElementUtils, EndWithTheMemoryForShapesWithoutEnd)
{
  void (*const makers[])() = {[] { rectangularSEXY(2147483647, 2147483647); }, [] { cubicSEXYZ(2147483647); },
                              [] { halfLinearSEXY(0.5, g_infinity); },
                              []
                              {
                                linearSEXYZ(0.5, 1, g_infinity);
                              }};
  for (const auto make : makers)
  {
    const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
    failAllocationAfter(20000);
    EXPECT_THROW(make(), std::bad_alloc);
    failNoAllocation();
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  }
}

TEST(StructuringElementUtils, RunConcurrently)
{
  std::vector<std::thread> threads;
  std::vector<ElementState> states(4);
  for (ElementState& state : states)
    threads.emplace_back([&state] { state = stateOf(*sphericalSEXYZ(4.5)); });
  for (std::thread& thread : threads)
    thread.join();
  for (const ElementState& state : states)
    EXPECT_EQ(state, ballState(4.5, false));
}

} // namespace
