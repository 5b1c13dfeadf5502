#include "ORVELBaseData/Pattern/Private/StructuringElementOperations.h"

#include <algorithm>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

#include "../StructuringElement/ElementTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

// What StructuringElementXY and StructuringElementXYZ have in common, tested on both.
namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr const char* g_exists = "Can't insert element into structuring element, it already exists";
constexpr const char* g_missing = "Can't remove element from structuring element, it does not exists";

template <class ElementType>
class StructuringElement : public ::testing::Test
{
protected:
  using Traits = ElementTraits<ElementType>;
  using Offset = typename ElementType::OffsetType;
  using Offsets = std::set<Offset>;

  static Offset at(ipInt32 x, ipInt32 y, ipInt32 z = 0) { return Traits::at(x, y, z); }
  static Offset at(const Coordinates& place) { return at(place[0], place[1], place[2]); }

  /// The offsets (0, 0, 0) and (4, -1, 2).
  static ElementType makeElement()
  {
    ElementType element;
    element.insert(at(0, 0, 0));
    element.insert(at(4, -1, 2));
    return element;
  }

  /// An element whose only offset was removed.
  static ElementType makeEmptied()
  {
    ElementType element;
    element.insert(at(1, 2, 3));
    element.remove(at(1, 2, 3));
    return element;
  }

  static void expectBox(const ElementType& element, Coordinates min, Sizes size)
  {
    for (std::size_t axis = Traits::nbAxes; axis < 3; ++axis)
    {
      min[axis] = 0;
      size[axis] = 0;
    }
    EXPECT_EQ(Traits::minOf(element), min);
    EXPECT_EQ(Traits::sizeOf(element), size);
  }

  static void expectEmptied(const ElementType& element)
  {
    EXPECT_EQ(element.getNbData(), 0U);
    expectBox(element, {g_highest, g_highest, g_highest}, {2, 2, 2});
  }
};

using Elements = ::testing::Types<StructuringElementXY, StructuringElementXYZ>;

struct ElementNames
{
  template <class ElementType>
  static std::string GetName(int)
  {
    return ElementTraits<ElementType>::name;
  }
};

TYPED_TEST_SUITE(StructuringElement, Elements, ElementNames);

TYPED_TEST(StructuringElement, OffersTheseOperations)
{
  using Place = typename TestFixture::Offset;
  using PlaceColl = typename TestFixture::Offsets;
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::insert), void (TypeParam::*)(const Place&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::remove), void (TypeParam::*)(const Place&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::exists), bool (TypeParam::*)(const Place&) const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getNbData), ipUInt64 (TypeParam::*)() const>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&TypeParam::getDataColl), const PlaceColl& (TypeParam::*)() const>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&TypeParam::setDataColl), void (TypeParam::*)(const PlaceColl&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::clear), void (TypeParam::*)()>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getStructuringElementType),
                            eStructuringElementType (TypeParam::*)() const>::value));
}

TYPED_TEST(StructuringElement, CreatesOthersThatAreFresh)
{
  const boost::scoped_ptr<TypeParam> made(TypeParam::createNewObject());
  const boost::shared_ptr<TypeParam> shared = TypeParam::createSharedObject();
  EXPECT_EQ(stateOf(*made), stateOf(TypeParam()));
  EXPECT_EQ(stateOf(*shared), stateOf(TypeParam()));

  const TypeParam element = this->makeElement();
  const boost::scoped_ptr<BaseDynamicObject> another(element.createNew());
  const DynamicObjectPtr sharedOther = element.createShared();
  ASSERT_NE(dynamic_cast<TypeParam*>(another.get()), nullptr);
  ASSERT_NE(dynamic_cast<TypeParam*>(sharedOther.get()), nullptr);
  EXPECT_EQ(stateOf(dynamic_cast<TypeParam&>(*another)), stateOf(TypeParam()));
  EXPECT_EQ(stateOf(dynamic_cast<TypeParam&>(*sharedOther)), stateOf(TypeParam()));
}

TYPED_TEST(StructuringElement, IsFreshWithoutOffsetsAndWithAZeroBox)
{
  const TypeParam element;
  EXPECT_EQ(element.getNbData(), 0U);
  EXPECT_TRUE(element.getDataColl().empty());
  this->expectBox(element, {0, 0, 0}, {0, 0, 0});
}

TYPED_TEST(StructuringElement, HasNoOffsetWhenFresh)
{
  const TypeParam element;
  for (const Coordinates& place :
       {Coordinates{0, 0, 0}, Coordinates{1, -1, 1}, Coordinates{g_highest, g_highest, g_highest},
        Coordinates{g_lowest, g_lowest, g_lowest}})
    EXPECT_FALSE(element.exists(this->at(place)));
}

TYPED_TEST(StructuringElement, InsertsTheFirstOffsetWithABoxOfThatOffset)
{
  TypeParam element;
  element.insert(this->at(3, -2, 7));
  EXPECT_EQ(element.getNbData(), 1U);
  EXPECT_TRUE(element.exists(this->at(3, -2, 7)));
  this->expectBox(element, {3, -2, 7}, {1, 1, 1});
}

TYPED_TEST(StructuringElement, WidensTheBoxToEitherSide)
{
  TypeParam element;
  element.insert(this->at(0, 0, 0));
  element.insert(this->at(4, 1, 9));
  this->expectBox(element, {0, 0, 0}, {5, 2, 10});
  element.insert(this->at(-2, -3, -1));
  this->expectBox(element, {-2, -3, -1}, {7, 5, 11});
}

TYPED_TEST(StructuringElement, HasABoxOfPositionsThatMayHoldHoles)
{
  TypeParam element;
  element.insert(this->at(0, 0));
  element.insert(this->at(4, 0));
  EXPECT_EQ(element.getNbData(), 2U);
  this->expectBox(element, {0, 0, 0}, {5, 1, 1});
  EXPECT_FALSE(element.exists(this->at(2, 0)));
}

TYPED_TEST(StructuringElement, KeepsTheBoxForAnOffsetWithinIt)
{
  TypeParam element;
  element.insert(this->at(-2, -2, -2));
  element.insert(this->at(2, 2, 2));
  element.insert(this->at(0, 1, -1));
  EXPECT_EQ(element.getNbData(), 3U);
  this->expectBox(element, {-2, -2, -2}, {5, 5, 5});
}

TYPED_TEST(StructuringElement, RefusesAnOffsetThatExistsAndStaysUnchanged)
{
  TypeParam element = this->makeElement();
  const ElementState before = stateOf(element);
  for (const Coordinates& place : before.places) // the first and the last in order
  {
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { element.insert(this->at(place)); }), g_exists);
    EXPECT_EQ(stateOf(element), before);
  }
}

TYPED_TEST(StructuringElement, ShrinksTheBoxWhenAnOffsetIsRemoved)
{
  TypeParam element;
  element.insert(this->at(0, 0, 0));
  element.insert(this->at(4, 0, 0));
  element.remove(this->at(4, 0, 0));
  EXPECT_EQ(element.getNbData(), 1U);
  EXPECT_FALSE(element.exists(this->at(4, 0, 0)));
  this->expectBox(element, {0, 0, 0}, {1, 1, 1});
}

TYPED_TEST(StructuringElement, FindsTheBoxOfTheOffsetsLeftOnEveryAxis)
{
  TypeParam element;
  element.insert(this->at(-1, 8, 3));
  element.insert(this->at(5, -7, -4));
  element.insert(this->at(2, 2, 6));
  element.insert(this->at(100, -100, 50));
  element.remove(this->at(100, -100, 50));
  this->expectBox(element, {-1, -7, -4}, {7, 16, 11});
}

TYPED_TEST(StructuringElement, KeepsTheBoxWhenAnOffsetWithinItIsRemoved)
{
  TypeParam element;
  element.insert(this->at(-2, -2, -2));
  element.insert(this->at(0, 0, 0));
  element.insert(this->at(2, 2, 2));
  element.remove(this->at(0, 0, 0));
  this->expectBox(element, {-2, -2, -2}, {5, 5, 5});
}

TYPED_TEST(StructuringElement, ReportsAMissingOffsetOfRemoveAndStaysUnchanged)
{
  for (TypeParam element : {this->makeElement(), TypeParam(), this->makeEmptied()})
  {
    const ElementState before = stateOf(element);
    EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { element.remove(this->at(1, 2, 3)); }), g_missing);
    EXPECT_EQ(stateOf(element), before);
  }
}

TYPED_TEST(StructuringElement, RemovesAnOffsetThatIsItsOwn)
{
  TypeParam element = this->makeElement();
  element.remove(*element.getDataColl().find(this->at(0, 0, 0))); // the argument dies with it
  EXPECT_EQ(element.getNbData(), 1U);
  this->expectBox(element, {4, -1, 2}, {1, 1, 1});
}

TYPED_TEST(StructuringElement, IsEmptiedByTheLastRemovalToTheLargestMinimumAndSizeTwo)
{
  this->expectEmptied(this->makeEmptied());
}

TYPED_TEST(StructuringElement, HasTheBoxOfTheNextOffsetAfterBeingEmptied)
{
  const Coordinates places[] = {{-5, 7, 1},
                                {0, 0, 0},
                                {-1, -1, -1},
                                {g_lowest, g_highest, g_lowest},
                                {g_highest, g_lowest, g_highest},
                                {g_lowest + 1, g_highest - 1, 2}};
  for (const Coordinates& place : places)
  {
    TypeParam element = this->makeEmptied();
    element.insert(this->at(place));
    this->expectBox(element, place, {1, 1, 1});
  }
}

TYPED_TEST(StructuringElement, HasTheBoxOfTheNextOffsetAfterAnEmptySet)
{
  TypeParam element = this->makeElement();
  element.setDataColl({});
  element.insert(this->at(-5, 7, 1));
  this->expectBox(element, {-5, 7, 1}, {1, 1, 1});
  element.insert(this->at(-4, 6, 3));
  this->expectBox(element, {-5, 6, 1}, {2, 2, 3});
}

TYPED_TEST(StructuringElement, HasTheBoxOfTheNextOffsetAfterBeingCleared)
{
  TypeParam element = this->makeElement();
  element.clear();
  element.insert(this->at(-5, 7, 1));
  this->expectBox(element, {-5, 7, 1}, {1, 1, 1});
}

TYPED_TEST(StructuringElement, IsClearedToTheFreshState)
{
  for (TypeParam element : {this->makeElement(), this->makeEmptied()})
  {
    element.clear();
    EXPECT_EQ(stateOf(element), stateOf(TypeParam()));
  }
}

TYPED_TEST(StructuringElement, AnswersAlikeInBothEmptyStates)
{
  TypeParam cleared = this->makeElement();
  cleared.clear();
  for (const TypeParam& element : {this->makeEmptied(), cleared})
  {
    EXPECT_EQ(element.getNbData(), 0U);
    EXPECT_TRUE(element.getDataColl().empty());
    EXPECT_FALSE(element.exists(this->at(1, 2, 3)));
  }
}

TYPED_TEST(StructuringElement, ComparesTheBoundsAsSignedNumbers)
{
  TypeParam element;
  element.insert(this->at(0, 0, 0));
  element.insert(this->at(-1, -1, -1));
  element.insert(this->at(1, 1, 1));
  this->expectBox(element, {-1, -1, -1}, {3, 3, 3});
}

TYPED_TEST(StructuringElement, HoldsABoxWiderThanTheSignedRange)
{
  TypeParam element;
  element.insert(this->at(-2000000000, -2000000000, -2000000000));
  element.insert(this->at(2000000000, 2000000000, 2000000000));
  this->expectBox(element, {-2000000000, -2000000000, -2000000000}, {4000000001U, 4000000001U, 4000000001U});
  element.insert(this->at(0, 0, 0));
  this->expectBox(element, {-2000000000, -2000000000, -2000000000}, {4000000001U, 4000000001U, 4000000001U});
}

TYPED_TEST(StructuringElement, WrapsTheSizeOfTheFullRangeToZero)
{
  TypeParam upwards;
  upwards.insert(this->at(g_lowest, g_lowest, g_lowest));
  upwards.insert(this->at(g_highest, g_highest, g_highest));
  this->expectBox(upwards, {g_lowest, g_lowest, g_lowest}, {0, 0, 0});

  TypeParam downwards;
  downwards.insert(this->at(g_highest, g_highest, g_highest));
  downwards.insert(this->at(g_lowest, g_lowest, g_lowest));
  this->expectBox(downwards, {g_lowest, g_lowest, g_lowest}, {0, 0, 0});

  TypeParam atOnce;
  atOnce.setDataColl(upwards.getDataColl());
  this->expectBox(atOnce, {g_lowest, g_lowest, g_lowest}, {0, 0, 0});
}

TYPED_TEST(StructuringElement, TakesAWrappedSizeForABoxWithoutOffsets)
{
  TypeParam element;
  element.insert(this->at(g_lowest, g_lowest, g_lowest));
  element.insert(this->at(g_highest, g_highest, g_highest));
  element.insert(this->at(5, 6, 7));
  this->expectBox(element, {5, 6, 7}, {1, 1, 1});
  element.remove(this->at(5, 6, 7)); // the walk finds the full range again
  this->expectBox(element, {g_lowest, g_lowest, g_lowest}, {0, 0, 0});
}

TYPED_TEST(StructuringElement, ReplacesTheWholeSetAndFindsItsBox)
{
  TypeParam element = this->makeElement();
  element.setDataColl({this->at(-1, 2, 5), this->at(3, -4, 5)});
  EXPECT_EQ(element.getNbData(), 2U);
  EXPECT_FALSE(element.exists(this->at(0, 0, 0)));
  EXPECT_TRUE(element.exists(this->at(-1, 2, 5)));
  EXPECT_TRUE(element.exists(this->at(3, -4, 5)));
  this->expectBox(element, {-1, -4, 5}, {5, 7, 1});
}

TYPED_TEST(StructuringElement, FindsTheBoxOfAnySetAgainstTheLimits)
{
  TypeParam element;
  element.setDataColl({this->at(g_lowest, g_lowest, g_lowest)});
  this->expectBox(element, {g_lowest, g_lowest, g_lowest}, {1, 1, 1});
  element.setDataColl({this->at(g_highest, g_highest, g_highest)});
  this->expectBox(element, {g_highest, g_highest, g_highest}, {1, 1, 1});
}

TYPED_TEST(StructuringElement, HasTheLargestMinimumAndSizeTwoForAnEmptySet)
{
  for (TypeParam element : {this->makeElement(), TypeParam(), this->makeEmptied()})
  {
    element.setDataColl({});
    this->expectEmptied(element);
  }
}

TYPED_TEST(StructuringElement, KeepsACopyOfTheSetThatItIsGiven)
{
  typename TestFixture::Offsets offsets = {this->at(1, 1, 1)};
  TypeParam element;
  element.setDataColl(offsets);
  offsets.insert(this->at(9, 9, 9));
  EXPECT_EQ(element.getNbData(), 1U);
  EXPECT_NE(&*element.getDataColl().begin(), &*offsets.begin());
  element.insert(this->at(2, 2, 2));
  EXPECT_EQ(offsets.count(this->at(2, 2, 2)), 0U);
}

TYPED_TEST(StructuringElement, TakesItsOwnSet)
{
  TypeParam element = this->makeElement();
  const ElementState before = stateOf(element);
  element.setDataColl(element.getDataColl());
  EXPECT_EQ(stateOf(element), before);
}

TYPED_TEST(StructuringElement, FindsTheBoxAnewForItsOwnSet)
{
  TypeParam element; // its box is that of a set of no offsets that was never walked
  element.setDataColl(element.getDataColl());
  this->expectEmptied(element);
}

TYPED_TEST(StructuringElement, IsWalkedInRows)
{
  TypeParam element;
  for (const Coordinates& place : {Coordinates{0, 1, 0}, Coordinates{1, 0, 0}, Coordinates{-1, 1, 0},
                                   Coordinates{5, -1, 0}, Coordinates{0, 0, 0}})
    element.insert(this->at(place));
  EXPECT_EQ(placesOf(element), (Places{{5, -1, 0}, {0, 0, 0}, {1, 0, 0}, {-1, 1, 0}, {0, 1, 0}}));
}

TYPED_TEST(StructuringElement, AgreesWithASimpleModelUnderRandomChanges)
{
  std::mt19937 random(20242);
  const auto draw = [&random](int lowest, int highest)
  {
    return std::uniform_int_distribution<int>(lowest, highest)(random);
  };
  TypeParam element;
  std::vector<Coordinates> model;
  for (int step = 0; step < 4000; ++step)
  {
    Coordinates place = {draw(-3, 3), draw(-3, 3), draw(-2, 2)};
    if (TestFixture::Traits::nbAxes == 2)
      place[2] = 0;
    const auto offset = this->at(place);
    const auto found = std::find(model.begin(), model.end(), place);
    ASSERT_EQ(element.exists(offset), found != model.end());
    if (found == model.end())
    {
      element.insert(offset);
      model.push_back(place);
    }
    else
    {
      element.remove(offset);
      model.erase(found);
    }

    ASSERT_EQ(element.getNbData(), model.size());
    if (model.empty())
      continue; // the box of an emptied element is another test's
    Sizes size = {};
    Coordinates min = model.front();
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
      int max = min[axis];
      for (const Coordinates& other : model)
      {
        min[axis] = std::min(min[axis], other[axis]);
        max = std::max(max, other[axis]);
      }
      size[axis] = static_cast<ipUInt32>(max - min[axis] + 1);
    }
    this->expectBox(element, min, size);
    TypeParam atOnce;
    atOnce.setDataColl(element.getDataColl());
    ASSERT_EQ(stateOf(atOnce), stateOf(element));
    ASSERT_FALSE(this->HasFailure()) << "step " << step;
  }
}

TYPED_TEST(StructuringElement, IsCopiedWithItsBoxAsItStands)
{
  for (const TypeParam& source : {TypeParam(), this->makeElement(), this->makeEmptied()})
  {
    const TypeParam constructed(source);
    TypeParam assigned = this->makeElement();
    assigned = source;
    TypeParam copied = this->makeElement();
    copied.copy(source);
    EXPECT_EQ(stateOf(constructed), stateOf(source));
    EXPECT_EQ(stateOf(assigned), stateOf(source));
    EXPECT_EQ(stateOf(copied), stateOf(source));
  }
}

template <class ElementType>
struct CountingElement : ElementType
{
  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    ElementType::copy(other);
  }

  int nbCopies = 0;
};

TYPED_TEST(StructuringElement, IsAssignedByItsVirtualCopy)
{
  CountingElement<TypeParam> derived;
  TypeParam& element = derived;
  EXPECT_EQ(&(element = this->makeElement()), &element);
  EXPECT_EQ(derived.nbCopies, 1);
  EXPECT_EQ(stateOf(element), stateOf(this->makeElement()));
}

TYPED_TEST(StructuringElement, SharesNothingWithItsCopy)
{
  const TypeParam source = this->makeElement();
  const ElementState before = stateOf(source);
  TypeParam copied(source);
  copied.remove(this->at(0, 0, 0));
  copied.insert(this->at(9, 9, 9));
  EXPECT_EQ(stateOf(source), before);
}

TYPED_TEST(StructuringElement, StandsACopyOfItself)
{
  for (TypeParam element : {TypeParam(), this->makeElement(), this->makeEmptied()})
  {
    const ElementState before = stateOf(element);
    const TypeParam& itself = element;
    element = itself;
    element.copy(itself);
    EXPECT_EQ(stateOf(element), before);
  }
}

TYPED_TEST(StructuringElement, LeavesItsOffsetsInPlaceWhenCopiedOntoItself)
{
  TypeParam element = this->makeElement();
  const auto& first = *element.getDataColl().begin();
  const TypeParam& itself = element;
  element = itself;
  EXPECT_EQ(&*element.getDataColl().begin(), &first);
}

TYPED_TEST(StructuringElement, IsDuplicated)
{
  const TypeParam source = this->makeElement();
  const boost::scoped_ptr<BaseDynamicObject> owned(source.duplicate());
  const DynamicObjectPtr shared = source.duplicateShared();
  ASSERT_NE(dynamic_cast<TypeParam*>(owned.get()), nullptr);
  ASSERT_NE(dynamic_cast<TypeParam*>(shared.get()), nullptr);
  EXPECT_EQ(stateOf(dynamic_cast<TypeParam&>(*owned)), stateOf(source));
  EXPECT_EQ(stateOf(dynamic_cast<TypeParam&>(*shared)), stateOf(source));
}

TYPED_TEST(StructuringElement, IsUnchangedWhenThereIsNoMemoryForAnOffset)
{
  TypeParam element = this->makeElement();
  const ElementState before = stateOf(element);
  const auto offset = this->at(9, 9, 9);
  const std::size_t nbFailures =
      failAtEachAllocation([&] { element.insert(offset); }, [&] { EXPECT_EQ(stateOf(element), before); });
  EXPECT_EQ(nbFailures, 1U); // the offset itself
  EXPECT_TRUE(element.exists(offset));
}

TYPED_TEST(StructuringElement, IsUnchangedWhenThereIsNoMemoryForASet)
{
  TypeParam element = this->makeElement();
  const ElementState before = stateOf(element);
  const typename TestFixture::Offsets offsets = {this->at(1, 1, 1), this->at(2, 2, 2), this->at(3, 3, 3)};
  const std::size_t nbFailures = failAtEachAllocation([&] { element.setDataColl(offsets); },
                                                      [&] { EXPECT_EQ(stateOf(element), before); });
  EXPECT_GE(nbFailures, 1U);
  EXPECT_EQ(element.getDataColl(), offsets);
}

TYPED_TEST(StructuringElement, IsUnchangedWhenThereIsNoMemoryForACopy)
{
  TypeParam source = this->makeElement();
  source.insert(this->at(7, 7, 7));
  TypeParam element = this->makeElement();
  const ElementState before = stateOf(element);
  const std::size_t nbFailures =
      failAtEachAllocation([&] { element = source; }, [&] { EXPECT_EQ(stateOf(element), before); });
  EXPECT_GE(nbFailures, 1U);
  EXPECT_EQ(stateOf(element), stateOf(source));
}

TYPED_TEST(StructuringElement, LeaksNothingWhenItsDuplicateRunsOutOfMemory)
{
  const TypeParam source = this->makeElement();
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const auto check = [nbBlocks]
  {
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  };
  // The element and two offsets.
  EXPECT_EQ(failAtEachAllocation([&] { delete source.duplicate(); }, check), 3U);
  EXPECT_EQ(failAtEachAllocation([&] { source.duplicateShared(); }, check), 3U);
  check();
}

/// Puts elements into archives by hand, in one of the formats.
template <class ElementAndFormat>
class ArchivedStructuringElement : public ::testing::Test
{
protected:
  using Element = typename ElementAndFormat::first_type;
  using HandWritten = typename ElementAndFormat::second_type;
  using Traits = ElementTraits<Element>;

  static typename Element::OffsetType at(ipInt32 x, ipInt32 y, ipInt32 z) { return Traits::at(x, y, z); }

  /// \param z is dropped in the plane
  static Coordinates place(ipInt32 x, ipInt32 y, ipInt32 z) { return {x, y, Traits::nbAxes == 3 ? z : 0}; }
  static Sizes sizes(ipUInt32 x, ipUInt32 y, ipUInt32 z) { return {x, y, Traits::nbAxes == 3 ? z : 0U}; }

  static Element makeElement()
  {
    Element element;
    element.insert(at(0, 0, 0));
    element.insert(at(4, -1, 2));
    return element;
  }

  /// The offsets (0, 0, 0) and (4, -1, 2) in their order: by z, then by y.
  static ElementState stateOfElement()
  {
    ElementState state = {place(0, -1, 0), sizes(5, 2, 3), {place(0, 0, 0), place(4, -1, 2)}};
    if (Traits::nbAxes == 2)
      std::swap(state.places[0], state.places[1]);
    return state;
  }

  static std::string fileOfElements(const std::vector<Element>& elements)
  {
    return fileOf<HandWritten>(
        [&](BaseOArchive& archive)
        {
          for (const Element& element : elements)
          {
            const BoolResult written = element.write(archive);
            EXPECT_TRUE(written);
            EXPECT_EQ(written.getMessage(), "");
          }
        });
  }

  static void readElement(const std::string& file, Element& element)
  {
    readFile<HandWritten>(file,
                          [&](BaseIArchive& archive)
                          {
                            const BoolResult read = element.read(archive);
                            EXPECT_TRUE(read);
                            EXPECT_EQ(read.getMessage(), "");
                          });
  }

  static std::string failureOfReading(const std::string& file, Element& element)
  {
    return messageOf<ORVELSerializationException>(
        [&] { readStart<HandWritten>(file, [&](BaseIArchive& archive) { element.read(archive); }); });
  }
};

using ElementsAndFormats = ::testing::Types<
    std::pair<StructuringElementXY, HandWrittenXml>, std::pair<StructuringElementXY, HandWrittenBinary>,
    std::pair<StructuringElementXYZ, HandWrittenXml>, std::pair<StructuringElementXYZ, HandWrittenBinary>>;

struct ElementAndFormatNames
{
  template <class ElementAndFormat>
  static std::string GetName(int)
  {
    return std::string(ElementTraits<typename ElementAndFormat::first_type>::name) +
           (std::is_same<typename ElementAndFormat::second_type, HandWrittenXml>::value ? "Xml" : "Binary");
  }
};

TYPED_TEST_SUITE(ArchivedStructuringElement, ElementsAndFormats, ElementAndFormatNames);

TYPED_TEST(ArchivedStructuringElement, HoldsVersionsOffsetsAndBoxInOrder)
{
  typename TestFixture::HandWritten expected;
  putElementVersions<typename TestFixture::Element>(expected);
  putElementItems<typename TestFixture::Element>(expected, this->stateOfElement());
  EXPECT_EQ(this->fileOfElements({this->makeElement()}), expected.file());
}

TYPED_TEST(ArchivedStructuringElement, HoldsTheTwoEmptyStatesApart)
{
  using ElementType = typename TestFixture::Element;
  typename TestFixture::HandWritten fresh;
  putElementVersions<ElementType>(fresh);
  putElementItems<ElementType>(fresh, {{0, 0, 0}, {0, 0, 0}, {}});
  EXPECT_EQ(this->fileOfElements({ElementType()}), fresh.file());

  ElementType element;
  element.setDataColl({});
  typename TestFixture::HandWritten emptied;
  putElementVersions<ElementType>(emptied);
  putElementItems<ElementType>(emptied, {{g_highest, g_highest, g_highest}, {2, 2, 2}, {}});
  EXPECT_EQ(this->fileOfElements({element}), emptied.file());
}

TYPED_TEST(ArchivedStructuringElement, ComesBackAsItWasInEveryState)
{
  using ElementType = typename TestFixture::Element;
  ElementType emptied;
  emptied.setDataColl({});
  for (const ElementType& written : {this->makeElement(), ElementType(), emptied})
  {
    ElementType element = this->makeElement();
    element.insert(this->at(9, 9, 9));
    this->readElement(this->fileOfElements({written}), element);
    EXPECT_EQ(stateOf(element), stateOf(written));
  }
}

TYPED_TEST(ArchivedStructuringElement, TakesABoxThatDoesNotFitItsOffsets)
{
  using ElementType = typename TestFixture::Element;
  const ElementState states[] = {
      {this->place(100, -200, 300), this->sizes(4294967295U, 0, 7), {this->place(1, 2, 3)}},
      {this->place(-1, -2, -3), this->sizes(5, 6, 7), {}},
      {this->place(0, 0, 0), this->sizes(0, 0, 0), {this->place(1, 2, 3)}},
  };
  for (const ElementState& state : states)
  {
    typename TestFixture::HandWritten file;
    putElementVersions<ElementType>(file);
    putElementItems<ElementType>(file, state);
    ElementType element;
    this->readElement(file.file(), element);
    EXPECT_EQ(stateOf(element), state);
    EXPECT_EQ(this->fileOfElements({element}), file.file());
  }
}

TYPED_TEST(ArchivedStructuringElement, WidensTheBoxThatWasReadUntilARemovalFindsItAnew)
{
  using ElementType = typename TestFixture::Element;
  typename TestFixture::HandWritten file;
  putElementVersions<ElementType>(file);
  putElementItems<ElementType>(file, {{-9, -9, -9}, {10, 10, 10}, {this->place(1, 2, 3)}});
  ElementType element;
  this->readElement(file.file(), element);
  element.insert(this->at(5, 5, 5));
  EXPECT_EQ(stateOf(element).min, this->place(-9, -9, -9));
  EXPECT_EQ(stateOf(element).size, this->sizes(15, 15, 15));
  element.remove(this->at(5, 5, 5));
  EXPECT_EQ(stateOf(element),
            (ElementState{this->place(1, 2, 3), this->sizes(1, 1, 1), {this->place(1, 2, 3)}}));
}

TYPED_TEST(ArchivedStructuringElement, DropsARepeatedOffset)
{
  using ElementType = typename TestFixture::Element;
  ElementState state = this->stateOfElement();
  state.places.push_back(state.places[0]);
  state.places.push_back(state.places[1]);
  typename TestFixture::HandWritten file;
  putElementVersions<ElementType>(file);
  putElementItems<ElementType>(file, state);
  ElementType element;
  this->readElement(file.file(), element);
  EXPECT_EQ(stateOf(element), this->stateOfElement());
}

TYPED_TEST(ArchivedStructuringElement, ReadsOffsetsInAnyOrder)
{
  using ElementType = typename TestFixture::Element;
  ElementState state = this->stateOfElement();
  std::swap(state.places[0], state.places[1]);
  typename TestFixture::HandWritten file;
  putElementVersions<ElementType>(file);
  putElementItems<ElementType>(file, state);
  ElementType element;
  this->readElement(file.file(), element);
  EXPECT_EQ(stateOf(element), this->stateOfElement());
}

TYPED_TEST(ArchivedStructuringElement, ReadsOldVersionsAlike)
{
  using ElementType = typename TestFixture::Element;
  typename TestFixture::HandWritten file;
  putElementVersions<ElementType>(file, 0, 0);
  putElementItems<ElementType>(file, this->stateOfElement());
  ElementType element;
  this->readElement(file.file(), element);
  EXPECT_EQ(stateOf(element), this->stateOfElement());
}

TYPED_TEST(ArchivedStructuringElement, KeepsWhatWasReadWhenTheArchiveEnds)
{
  using ElementType = typename TestFixture::Element;
  typename TestFixture::HandWritten file;
  putElementVersions<ElementType>(file);
  file.openSection("_dataColl");
  file.openSection("set");
  file.integer("size", 0);
  file.close();
  file.close();
  file.integer("_minX", 77);
  ElementType element = this->makeElement();
  this->failureOfReading(file.file(), element);
  EXPECT_EQ(element.getNbData(), 0U);
  EXPECT_EQ(element.getMinX(), 77);
  EXPECT_EQ(element.getMinY(), -1); // the old ones
  EXPECT_EQ(element.getSizeX(), 5U);
  EXPECT_EQ(element.getSizeY(), 2U);
}

TYPED_TEST(ArchivedStructuringElement, KeepsTheOffsetsReadSoFarWhenTheSetIsCut)
{
  using ElementType = typename TestFixture::Element;
  typename TestFixture::HandWritten file;
  putElementVersions<ElementType>(file);
  file.openSection("_dataColl");
  file.openSection("set");
  file.integer("size", 2);
  file.openObject("key");
  putVersion(file, std::string("orvel::") + TestFixture::Traits::offsetName, 1);
  putNumbers<ElementType>(file, Coordinates{7, 8, 9}, {"_xOffset", "_yOffset", "_zOffset"});
  file.close();
  file.close();
  file.close();
  ElementType element = this->makeElement();
  this->failureOfReading(file.file(), element);
  EXPECT_EQ(placesOf(element), Places{this->place(7, 8, 9)});
  EXPECT_EQ(element.getSizeX(), 5U); // the old box
}

} // namespace
