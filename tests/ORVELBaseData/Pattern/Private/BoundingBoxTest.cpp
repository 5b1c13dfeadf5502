#include "ORVELBaseData/Pattern/Private/BoundingBox.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "../OffsetTesting.h"
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXY.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZ.h>

// The box of every holder of offsets, whatever else it keeps of them. Coordinates are given for x, y and z; a
// holder of the plane takes the first two.
namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipInt32 g_lowest = std::numeric_limits<ipInt32>::min();
constexpr ipInt32 g_highest = std::numeric_limits<ipInt32>::max();

using Sizes = std::array<ipUInt32, 3>;

template <class HolderType>
class BoundingBox : public ::testing::Test
{
protected:
  using Offset = typename HolderType::OffsetType;

  static constexpr bool isPlanar = OffsetTraits<Offset>::nbAxes == 2;
  static constexpr bool isElement = std::is_base_of<BaseStructuringElement, HolderType>::value;

  static void insert(HolderType& holder, const Coordinates& place)
  {
    if constexpr (isElement)
      holder.insert(OffsetTraits<Offset>::at(place));
    else
      holder.insert(OffsetTraits<Offset>::at(place), 1.5F);
  }

  static void remove(HolderType& holder, const Coordinates& place)
  {
    holder.remove(OffsetTraits<Offset>::at(place));
  }

  static HolderType makeOf(const std::vector<Coordinates>& places)
  {
    HolderType holder;
    for (const Coordinates& place : places)
      insert(holder, place);
    return holder;
  }

  /// A holder whose only offset was removed.
  static HolderType makeEmptied()
  {
    HolderType holder = makeOf({{1, 2, 3}});
    remove(holder, {1, 2, 3});
    return holder;
  }

  static void expectBox(const HolderType& holder, const Coordinates& min, const Sizes& size)
  {
    EXPECT_EQ(holder.getMinX(), min[0]);
    EXPECT_EQ(holder.getMinY(), min[1]);
    EXPECT_EQ(holder.getSizeX(), size[0]);
    EXPECT_EQ(holder.getSizeY(), size[1]);
    if constexpr (!isPlanar)
    {
      EXPECT_EQ(holder.getMinZ(), min[2]);
      EXPECT_EQ(holder.getSizeZ(), size[2]);
    }
  }

  static void expectEmptied(const HolderType& holder)
  {
    EXPECT_EQ(holder.getNbData(), 0U);
    expectBox(holder, {g_highest, g_highest, g_highest}, {2, 2, 2});
  }
};

using Holders = ::testing::Types<KernelXY, KernelXYZ, StructuringElementXY, StructuringElementXYZ>;

struct HolderNames
{
  template <class HolderType>
  static std::string GetName(int)
  {
    return HolderType::getTypeName().substr(std::string("orvel::").size());
  }
};

TYPED_TEST_SUITE(BoundingBox, Holders, HolderNames);

TYPED_TEST(BoundingBox, IsZeroWhenFresh)
{
  this->expectBox(TypeParam(), {0, 0, 0}, {0, 0, 0});
}

TYPED_TEST(BoundingBox, IsThatOfTheFirstOffset)
{
  this->expectBox(this->makeOf({{3, -2, 7}}), {3, -2, 7}, {1, 1, 1});
}

TYPED_TEST(BoundingBox, WidensToEitherSide)
{
  TypeParam holder = this->makeOf({{0, 0, 0}, {4, 1, 9}});
  this->expectBox(holder, {0, 0, 0}, {5, 2, 10});
  this->insert(holder, {-2, -3, -1});
  this->expectBox(holder, {-2, -3, -1}, {7, 5, 11});
}

TYPED_TEST(BoundingBox, MayHaveHoles)
{
  const TypeParam holder = this->makeOf({{0, 0, 0}, {4, 0, 0}});
  EXPECT_EQ(holder.getNbData(), 2U);
  EXPECT_FALSE(holder.exists(OffsetTraits<typename TestFixture::Offset>::at({2, 0, 0})));
  this->expectBox(holder, {0, 0, 0}, {5, 1, 1});
}

TYPED_TEST(BoundingBox, IsKeptForAnOffsetWithinIt)
{
  const TypeParam holder = this->makeOf({{-2, -2, -2}, {2, 2, 2}, {0, 1, -1}});
  EXPECT_EQ(holder.getNbData(), 3U);
  this->expectBox(holder, {-2, -2, -2}, {5, 5, 5});
}

TYPED_TEST(BoundingBox, ShrinksWhenAnOffsetIsRemoved)
{
  TypeParam holder = this->makeOf({{0, 0, 0}, {4, 0, 0}});
  this->remove(holder, {4, 0, 0});
  EXPECT_EQ(holder.getNbData(), 1U);
  this->expectBox(holder, {0, 0, 0}, {1, 1, 1});
}

TYPED_TEST(BoundingBox, IsFoundOnEveryAxisForTheOffsetsLeft)
{
  TypeParam holder = this->makeOf({{-1, 8, 3}, {5, -7, -4}, {2, 2, 6}, {100, -100, 50}});
  this->remove(holder, {100, -100, 50});
  this->expectBox(holder, {-1, -7, -4}, {7, 16, 11});
}

TYPED_TEST(BoundingBox, IsKeptWhenAnOffsetWithinItIsRemoved)
{
  TypeParam holder = this->makeOf({{-2, -2, -2}, {0, 0, 0}, {2, 2, 2}});
  this->remove(holder, {0, 0, 0});
  this->expectBox(holder, {-2, -2, -2}, {5, 5, 5});
}

TYPED_TEST(BoundingBox, HasTheLargestMinimumAndSizeTwoAfterTheLastRemoval)
{
  this->expectEmptied(this->makeEmptied());
}

TYPED_TEST(BoundingBox, IsThatOfTheNextOffsetAfterTheLastRemoval)
{
  const Coordinates places[] = {{-5, 7, 1},
                                {0, 0, 0},
                                {-1, -1, -1},
                                {g_lowest, g_highest, g_lowest},
                                {g_highest, g_lowest, g_highest},
                                {g_lowest + 1, g_highest - 1, 2}};
  for (const Coordinates& place : places)
  {
    TypeParam holder = this->makeEmptied();
    this->insert(holder, place);
    this->expectBox(holder, place, {1, 1, 1});
  }
}

TYPED_TEST(BoundingBox, IsZeroWhenClearedAndThenThatOfTheNextOffset)
{
  for (TypeParam holder : {this->makeOf({{0, 0, 0}, {4, -1, 2}}), this->makeEmptied()})
  {
    holder.clear();
    this->expectBox(holder, {0, 0, 0}, {0, 0, 0});
    this->insert(holder, {-5, 7, 1});
    this->expectBox(holder, {-5, 7, 1}, {1, 1, 1});
  }
}

TYPED_TEST(BoundingBox, ComparesCoordinatesAsSignedNumbers)
{
  this->expectBox(this->makeOf({{0, 0, 0}, {-1, -1, -1}, {1, 1, 1}}), {-1, -1, -1}, {3, 3, 3});
}

TYPED_TEST(BoundingBox, MayBeWiderThanTheSignedRange)
{
  const Coordinates min = {-2000000000, -2000000000, -2000000000};
  const Sizes size = {4000000001U, 4000000001U, 4000000001U};
  TypeParam holder = this->makeOf({min, {2000000000, 2000000000, 2000000000}});
  this->expectBox(holder, min, size);
  this->insert(holder, {0, 0, 0});
  this->expectBox(holder, min, size);
}

TYPED_TEST(BoundingBox, WrapsToSizeZeroForTheFullRange)
{
  const Coordinates lowest = {g_lowest, g_lowest, g_lowest};
  const Coordinates highest = {g_highest, g_highest, g_highest};
  this->expectBox(this->makeOf({lowest, highest}), lowest, {0, 0, 0});
  this->expectBox(this->makeOf({highest, lowest}), lowest, {0, 0, 0});
}

TYPED_TEST(BoundingBox, OfAWrappedSizeCountsAsThatOfNoOffsets)
{
  TypeParam holder = this->makeOf({{g_lowest, g_lowest, g_lowest}, {g_highest, g_highest, g_highest}});
  this->insert(holder, {5, 6, 7});
  this->expectBox(holder, {5, 6, 7}, {1, 1, 1});
  this->remove(holder, {5, 6, 7}); // the walk finds the full range again
  this->expectBox(holder, {g_lowest, g_lowest, g_lowest}, {0, 0, 0});
}

TYPED_TEST(BoundingBox, AgreesWithASimpleModelUnderRandomChanges)
{
  std::mt19937 random(20242);
  const auto draw = [&random](int lowest, int highest)
  {
    return std::uniform_int_distribution<int>(lowest, highest)(random);
  };
  TypeParam holder;
  std::vector<Coordinates> model;
  for (int step = 0; step < 4000; ++step)
  {
    const Coordinates place = {draw(-3, 3), draw(-3, 3), this->isPlanar ? 0 : draw(-2, 2)};
    const auto found = std::find(model.begin(), model.end(), place);
    if (found == model.end())
    {
      this->insert(holder, place);
      model.push_back(place);
    }
    else
    {
      this->remove(holder, place);
      model.erase(found);
    }
    if (model.empty())
    {
      this->expectEmptied(holder);
      continue;
    }
    Coordinates min = model.front();
    Coordinates max = min;
    for (const Coordinates& other : model)
      for (std::size_t axis = 0; axis < 3; ++axis)
      {
        min[axis] = std::min(min[axis], other[axis]);
        max[axis] = std::max(max[axis], other[axis]);
      }
    Sizes size = {};
    for (std::size_t axis = 0; axis < 3; ++axis)
      size[axis] = static_cast<ipUInt32>(max[axis] - min[axis] + 1);
    this->expectBox(holder, min, size);
    ASSERT_FALSE(this->HasFailure()) << "step " << step;
  }
}

} // namespace
