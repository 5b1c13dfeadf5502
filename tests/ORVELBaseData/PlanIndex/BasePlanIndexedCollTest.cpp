#include "ORVELBaseData/PlanIndex/BasePlanIndexedColl.h"

#include <functional>
#include <limits>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <support/FailingAllocation.h>
#include <support/LayoutChecks.h>
#include <support/ObjectCollArchive.h>
#include <support/RaisedFailure.h>

ORVEL_TEST_EXPOSE(PlanIndexedColl, &orvel::BasePlanIndexedColl::_planIndexedColl)

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

const SkeletonElement& elementOf(const BasePlanIndexedColl& coll, const PlanIndex& index)
{
  return dynamic_cast<const SkeletonElement&>(*coll.getStorage(index));
}

/// The keys of a collection in their order, each as z, c and t.
std::vector<std::vector<ipUInt64>> keysOf(const BasePlanIndexedColl& coll)
{
  std::vector<std::vector<ipUInt64>> keys;
  for (const auto& entry : coll.getBaseColl())
    keys.push_back({entry.first.getZPlanIdx(), entry.first.getCPlanIdx(), entry.first.getTPlanIdx()});
  return keys;
}

std::string messageOfFailure(const std::function<void()>& operation)
{
  return messageOf<ORVELBaseDataException>(operation);
}

// Sizes

TEST(BasePlanIndexedColl, IsEmptyAtFirst)
{
  const PlanColl coll;
  EXPECT_EQ(coll.getNbPlans(), 0U);
  EXPECT_TRUE(coll.getBaseColl().empty());
  EXPECT_EQ(coll.getMaxSizeZ(), 0U);
  EXPECT_EQ(coll.getMaxSizeC(), 0U);
  EXPECT_EQ(coll.getMaxSizeT(), 0U);
}

TEST(BasePlanIndexedColl, CountsItsPlansAndNotTheirExtent)
{
  PlanColl coll;
  coll.insert(PlanIndex(9, 0, 0), makeElement());
  coll.insert(PlanIndex(0, 8, 0), makeElement());
  EXPECT_EQ(coll.getNbPlans(), 2U);
}

TEST(BasePlanIndexedColl, CoversTheLargestKeyOfEachAxis)
{
  PlanColl coll; // the largest of an axis is neither the first nor the last key
  coll.insert(PlanIndex(0, 0, 0), makeElement());
  coll.insert(PlanIndex(9, 1, 1), makeElement());
  coll.insert(PlanIndex(2, 7, 1), makeElement());
  coll.insert(PlanIndex(1, 1, 4), makeElement());
  EXPECT_EQ(coll.getMaxSizeZ(), 10U);
  EXPECT_EQ(coll.getMaxSizeC(), 8U);
  EXPECT_EQ(coll.getMaxSizeT(), 5U);
}

TEST(BasePlanIndexedColl, WrapsTheSizeOfTheLargestIndexToZero)
{
  PlanColl coll;
  coll.insert(PlanIndex(g_largest, g_largest, g_largest), makeElement());
  EXPECT_EQ(coll.getMaxSizeZ(), 0U);
  EXPECT_EQ(coll.getMaxSizeC(), 0U);
  EXPECT_EQ(coll.getMaxSizeT(), 0U);
  EXPECT_FALSE(coll.isComplete());
  EXPECT_FALSE(coll.isComplete(0, 0, 0));
  EXPECT_FALSE(coll.isComplete(1, 1, 1));
}

TEST(BasePlanIndexedColl, CoversTheOtherIndexesBesideTheLargest)
{
  PlanColl coll;
  coll.insert(PlanIndex(g_largest, g_largest, g_largest), makeElement());
  coll.insert(PlanIndex(4, 5, 6), makeElement());
  EXPECT_EQ(coll.getMaxSizeZ(), 5U);
  EXPECT_EQ(coll.getMaxSizeC(), 6U);
  EXPECT_EQ(coll.getMaxSizeT(), 7U);
}

TEST(BasePlanIndexedColl, HasTheLargestSizeOneBelowTheLargestIndex)
{
  PlanColl coll;
  coll.insert(PlanIndex(g_largest - 1, g_largest - 1, g_largest - 1), makeElement());
  EXPECT_EQ(coll.getMaxSizeZ(), g_largest);
  EXPECT_EQ(coll.getMaxSizeC(), g_largest);
  EXPECT_EQ(coll.getMaxSizeT(), g_largest);
}

TEST(BasePlanIndexedColl, AnswersInSixtyFourBits)
{
  const PlanColl coll;
  static_assert(std::is_same_v<decltype(coll.getNbPlans()), ipUInt64>);
  static_assert(std::is_same_v<decltype(coll.getMaxSizeZ()), ipUInt64>);
  static_assert(std::is_same_v<decltype(coll.getMaxSizeC()), ipUInt64>);
  static_assert(std::is_same_v<decltype(coll.getMaxSizeT()), ipUInt64>);
  static_assert(
      std::is_same_v<decltype(coll.getBaseColl()), const std::map<PlanIndex, SerializationObjectPtr>&>);
}

TEST(BasePlanIndexedColl, IsWalkedThroughZFastestAndTSlowest)
{
  PlanColl coll;
  for (const PlanIndex& index :
       {PlanIndex(0, 0, 1), PlanIndex(0, 1, 0), PlanIndex(1, 0, 0), PlanIndex(1, 1, 0), PlanIndex(0, 0, 0)})
    coll.insert(index, makeElement());
  EXPECT_EQ(keysOf(coll),
            (std::vector<std::vector<ipUInt64>>{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {0, 0, 1}}));
}

// Completeness

TEST(BasePlanIndexedColl, IsCompleteWithoutPlansWhereASizeIsZero)
{
  const PlanColl coll;
  EXPECT_TRUE(coll.isComplete());
  EXPECT_TRUE(coll.isComplete(0, 3, 2));
  EXPECT_TRUE(coll.isComplete(3, 0, 2));
  EXPECT_TRUE(coll.isComplete(3, 2, 0));
  EXPECT_FALSE(coll.isComplete(1, 1, 1));
}

TEST(BasePlanIndexedColl, IsCompleteWhenTheCountAndTheLastKeyFit)
{
  PlanColl coll;
  coll.assign(ElementsRange(), 2, 3, 4);
  EXPECT_TRUE(coll.isComplete(2, 3, 4));
  EXPECT_FALSE(coll.isComplete(2, 3, 5)); // the count
  EXPECT_FALSE(coll.isComplete(3, 2, 4)); // the count fits, the last key does not
  EXPECT_FALSE(coll.isComplete(2, 4, 3));
  EXPECT_FALSE(coll.isComplete(4, 3, 2));
  EXPECT_FALSE(coll.isComplete(0, 3, 4));
}

TEST(BasePlanIndexedColl, LooksForALastKeyBeyondTheSizesOnEveryAxis)
{
  const PlanIndex lastKeys[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  for (const PlanIndex& last : lastKeys)
  {
    PlanColl coll;
    coll.insert(last, makeElement());
    EXPECT_EQ(coll.isComplete(1, 1, 1), last == PlanIndex(0, 0, 0));
  }
}

TEST(BasePlanIndexedColl, LooksForALastKeyShortOfTheSizesOnEveryAxis)
{
  struct Row
  {
    std::vector<PlanIndex> keys; // as many as the sizes ask for
    ipUInt64 sizeZ;
    ipUInt64 sizeC;
    ipUInt64 sizeT;
  };
  const Row rows[] = {{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}}, 2, 2, 1},  // z
                      {{{0, 0, 0}, {0, 1, 0}, {0, 2, 0}, {0, 0, 1}}, 1, 2, 2},  // c
                      {{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}}, 1, 2, 2}}; // t
  for (const Row& row : rows)
  {
    PlanColl coll;
    for (const PlanIndex& key : row.keys)
      coll.insert(key, makeElement());
    EXPECT_EQ(coll.getNbPlans(), row.sizeZ * row.sizeC * row.sizeT);
    EXPECT_FALSE(coll.isComplete(row.sizeZ, row.sizeC, row.sizeT));
  }
}

TEST(BasePlanIndexedColl, IsNotCompleteWithAKeyBeyondTheSizes)
{
  PlanColl coll;
  coll.assign(ElementsRange(), 2, 1, 1);
  coll.insert(PlanIndex(5, 0, 0), makeElement());
  EXPECT_FALSE(coll.isComplete(3, 1, 1)); // the last key
  EXPECT_FALSE(coll.isComplete());        // the sizes 6, 1 and 1 against 3 plans
}

TEST(BasePlanIndexedColl, TrustsTheKeysAheadOfTheLast)
{
  PlanColl coll;
  coll.insert(PlanIndex(5, 0, 0), makeElement());
  coll.insert(PlanIndex(0, 1, 0), makeElement());
  EXPECT_TRUE(coll.isComplete(1, 2, 1));
  EXPECT_FALSE(coll.isComplete()); // 6, 2 and 1
}

TEST(BasePlanIndexedColl, OverlooksAnIndexThatNoSizeCoversAheadOfTheLastPlan)
{
  PlanColl alongZ;
  alongZ.insert(PlanIndex(g_largest, 0, 0), makeElement());
  alongZ.insert(PlanIndex(0, 1, 0), makeElement());
  EXPECT_EQ(alongZ.getMaxSizeZ(), 1U);
  EXPECT_EQ(alongZ.getMaxSizeC(), 2U);
  EXPECT_EQ(alongZ.getMaxSizeT(), 1U);
  EXPECT_TRUE(alongZ.isComplete(1, 2, 1));
  EXPECT_TRUE(alongZ.isComplete());

  PlanColl alongC;
  alongC.insert(PlanIndex(0, g_largest, 0), makeElement());
  alongC.insert(PlanIndex(0, 0, 1), makeElement());
  EXPECT_TRUE(alongC.isComplete());
}

TEST(BasePlanIndexedColl, IsNeverCompleteWithAnIndexOfTheLastPlanThatNoSizeCovers)
{
  for (const PlanIndex& last :
       {PlanIndex(g_largest, 1, 1), PlanIndex(1, g_largest, 1), PlanIndex(0, 0, g_largest)})
  {
    PlanColl coll;
    coll.insert(PlanIndex(0, 0, 0), makeElement());
    coll.insert(last, makeElement());
    EXPECT_FALSE(coll.isComplete());
  }
}

TEST(BasePlanIndexedColl, IsNotCompleteWithAHole)
{
  PlanColl coll;
  coll.insert(PlanIndex(0, 0, 0), makeElement());
  coll.insert(PlanIndex(1, 1, 0), makeElement());
  EXPECT_FALSE(coll.isComplete());
  EXPECT_FALSE(coll.isComplete(2, 2, 1));
}

TEST(BasePlanIndexedColl, MultipliesTheSizesIn64Bits)
{
  PlanColl coll;
  const ipUInt64 half = ipUInt64{1} << 32U;
  EXPECT_TRUE(coll.isComplete(half, half, 5)); // 2^64 * 5 wraps to 0
  EXPECT_TRUE(coll.isComplete(5, half, half));
  EXPECT_FALSE(coll.isComplete(half, 1, 1)); // does not fit 32 bits, where it would be 0

  const ipUInt64 thirdOf1 = 0xAAAAAAAAAAAAAAAB; // 3 times this is 2^65 + 1, which wraps to 1
  coll.insert(PlanIndex(2, thirdOf1 - 1, 0), makeElement());
  EXPECT_TRUE(coll.isComplete(3, thirdOf1, 1));
  EXPECT_TRUE(coll.isComplete());
  EXPECT_FALSE(coll.isComplete(thirdOf1, 3, 1)); // 1 plan, too, but another last key
}

// Look-ups

TEST(BasePlanIndexedColl, FindsKeysByIndexAndByCoordinates)
{
  PlanColl coll;
  coll.insert(PlanIndex(1, 2, 3), makeElement());
  EXPECT_TRUE(coll.exists(PlanIndex(1, 2, 3)));
  EXPECT_TRUE(coll.exists(1, 2, 3));
  for (const PlanIndex& other :
       {PlanIndex(0, 2, 3), PlanIndex(1, 0, 3), PlanIndex(1, 2, 0), PlanIndex(3, 2, 1), PlanIndex(2, 1, 3)})
  {
    EXPECT_FALSE(coll.exists(other));
    EXPECT_FALSE(coll.exists(other.getZPlanIdx(), other.getCPlanIdx(), other.getTPlanIdx()));
  }
}

TEST(BasePlanIndexedColl, RanksItsKeysInTheOrderOfThePlanIndexes)
{
  PlanColl coll;
  coll.insert(PlanIndex(0, 0, 1), makeElement());
  coll.insert(PlanIndex(0, 7, 0), makeElement());
  coll.insert(PlanIndex(9, 0, 0), makeElement());
  EXPECT_TRUE(coll.getPlanIndex(0) == PlanIndex(9, 0, 0));
  EXPECT_TRUE(coll.getPlanIndex(1) == PlanIndex(0, 7, 0));
  EXPECT_TRUE(coll.getPlanIndex(2) == PlanIndex(0, 0, 1));
}

TEST(BasePlanIndexedColl, GivesTheKeyItselfByRank)
{
  PlanColl coll;
  coll.insert(PlanIndex(1, 2, 3), makeElement());
  static_assert(std::is_same_v<decltype(std::declval<const PlanColl&>().getPlanIndex(0)), const PlanIndex&>);
  EXPECT_EQ(&coll.getPlanIndex(0), &coll.getBaseColl().begin()->first);
}

TEST(BasePlanIndexedColl, HasNoRankAtOrBehindTheNumberOfPlans)
{
  PlanColl coll;
  EXPECT_EQ(messageOfFailure([&] { coll.getPlanIndex(0); }),
            "Plan offset 0 is not valid given plan indexed data with 0 plans");
  coll.assign(ElementsRange(), 2, 3, 4);
  EXPECT_NO_THROW(coll.getPlanIndex(23));
  EXPECT_EQ(messageOfFailure([&] { coll.getPlanIndex(24); }),
            "Plan offset 24 is not valid given plan indexed data with 24 plans");
  EXPECT_EQ(messageOfFailure([&] { coll.getPlanIndex(g_largest); }),
            "Plan offset 18446744073709551615 is not valid given plan indexed data with 24 plans");
  EXPECT_EQ(coll.getNbPlans(), 24U);
}

TEST(BasePlanIndexedColl, GivesAConstantPointerByValueAndTheStoredOneByReference)
{
  PlanColl coll;
  const PlanColl& constant = coll;
  static_assert(
      std::is_same_v<decltype(constant.getStorage(PlanIndex(0, 0, 0))), SerializationObjectConstPtr>);
  static_assert(std::is_same_v<decltype(coll.getStorage(PlanIndex(0, 0, 0))), const SerializationObjectPtr&>);
  const SkeletonElementPtr element = makeElement();
  coll.insert(PlanIndex(1, 2, 3), element);
  const SerializationObjectPtr& stored = coll.getStorage(PlanIndex(1, 2, 3));
  EXPECT_EQ(&stored, &coll.getBaseColl().at(PlanIndex(1, 2, 3)));
  EXPECT_EQ(stored.get(), element.get());
  EXPECT_EQ(element.use_count(), 2);
  const SerializationObjectConstPtr shared = constant.getStorage(PlanIndex(1, 2, 3));
  EXPECT_EQ(shared.get(), element.get());
  EXPECT_EQ(element.use_count(), 3);
}

TEST(BasePlanIndexedColl, FindsTheObjectOfEachKey)
{
  PlanColl coll;
  for (ipInt32 i = 0; i < 3; ++i)
    coll.insert(PlanIndex(static_cast<ipUInt64>(i), 0, 0), makeElement(i));
  for (ipInt32 i = 0; i < 3; ++i)
    EXPECT_EQ(elementOf(coll, PlanIndex(static_cast<ipUInt64>(i), 0, 0)).structure, i);
}

TEST(BasePlanIndexedColl, HasNoObjectForAnAbsentKey)
{
  PlanColl coll;
  const PlanColl& constant = coll;
  coll.insert(PlanIndex(1, 2, 3), makeElement());
  EXPECT_EQ(messageOfFailure([&] { coll.getStorage(PlanIndex(3, 2, 1)); }),
            "Can't get element for plan index z=3, c=2, t=1, element not found");
  EXPECT_EQ(messageOfFailure([&] { constant.getStorage(PlanIndex(g_largest, 0, 4294967296)); }),
            "Can't get element for plan index z=18446744073709551615, c=0, t=4294967296, element not found");
  EXPECT_EQ(coll.getNbPlans(), 1U); // the look-up enters nothing
}

// Insertion

TEST(BasePlanIndexedColl, SharesTheCallersPointer)
{
  const SkeletonElementPtr element = makeElement(1);
  PlanColl coll;
  coll.insert(PlanIndex(1, 2, 3), element);
  EXPECT_EQ(element.use_count(), 2);
  EXPECT_EQ(&elementOf(coll, PlanIndex(1, 2, 3)), element.get());
  element->structure = 7;
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 2, 3)).structure, 7);
  coll.clear();
  EXPECT_EQ(element.use_count(), 1);
}

TEST(BasePlanIndexedColl, TakesOneObjectUnderTwoKeys)
{
  PlanColl coll;
  coll.insert(PlanIndex(0, 0, 0), makeElement());
  coll.insert(PlanIndex(1, 0, 0), coll.getStorage(PlanIndex(0, 0, 0))); // a reference into the collection
  EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 0)), coll.getStorage(PlanIndex(1, 0, 0)));
  EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 0)).use_count(), 2);
}

TEST(BasePlanIndexedColl, KeepsTheFirstObjectOfAKey)
{
  const SkeletonElementPtr first = makeElement();
  const SkeletonElementPtr second = makeElement();
  PlanColl coll;
  coll.insert(PlanIndex(1, 2, 3), first);
  EXPECT_EQ(messageOfFailure([&] { coll.insert(PlanIndex(1, 2, 3), second); }),
            "Can't insert element for plan index z=1, c=2, t=3, already exists");
  EXPECT_EQ(messageOfFailure([&] { coll.insert(coll.getPlanIndex(0), coll.getStorage(PlanIndex(1, 2, 3))); }),
            "Can't insert element for plan index z=1, c=2, t=3, already exists");
  EXPECT_EQ(coll.getNbPlans(), 1U);
  EXPECT_EQ(coll.getStorage(PlanIndex(1, 2, 3)), first);
  EXPECT_EQ(first.use_count(), 2);
  EXPECT_EQ(second.use_count(), 1);
}

TEST(BasePlanIndexedColl, RefusesANullPointerWhetherOrNotTheKeyExists)
{
  const std::string message = "Null shared pointer for plan index z=1, c=2, t=3, can't insert it";
  const SkeletonElementPtr first = makeElement();
  PlanColl coll;
  EXPECT_EQ(messageOfFailure([&] { coll.insert(PlanIndex(1, 2, 3), nullptr); }), message);
  EXPECT_EQ(coll.getNbPlans(), 0U);
  coll.insert(PlanIndex(1, 2, 3), first);
  EXPECT_EQ(messageOfFailure([&] { coll.insert(PlanIndex(1, 2, 3), nullptr); }), message);
  EXPECT_EQ(coll.getNbPlans(), 1U);
  EXPECT_EQ(coll.getStorage(PlanIndex(1, 2, 3)), first);
}

TEST(BasePlanIndexedColl, StaysAsItIsIfThereIsNoMemoryForAPlan)
{
  const SkeletonElementPtr element = makeElement();
  PlanColl coll;
  const std::size_t nbFailures = failAtEachAllocation([&] { coll.insert(PlanIndex(1, 2, 3), element); },
                                                      [&]
                                                      {
                                                        EXPECT_EQ(coll.getNbPlans(), 0U);
                                                        EXPECT_EQ(element.use_count(), 1);
                                                      });
  EXPECT_EQ(nbFailures, 1U);
  EXPECT_EQ(coll.getStorage(PlanIndex(1, 2, 3)), element);
}

TEST(BasePlanIndexedColl, IsEmptyOnceCleared)
{
  PlanColl coll;
  coll.clear();
  EXPECT_EQ(coll.getNbPlans(), 0U);
  coll.assign(ElementsRange(), 2, 2, 2);
  coll.clear();
  EXPECT_EQ(coll.getNbPlans(), 0U);
  EXPECT_FALSE(coll.exists(0, 0, 0));
  coll.insert(PlanIndex(0, 0, 0), makeElement());
  EXPECT_EQ(coll.getNbPlans(), 1U);
}

// Filling with copies of one object

TEST(BasePlanIndexedColl, IsDenseOnceAssigned)
{
  PlanColl coll;
  coll.assign(ElementsRange(7, 8), 2, 3, 4);
  EXPECT_EQ(coll.getNbPlans(), 24U);
  EXPECT_EQ(coll.getMaxSizeZ(), 2U);
  EXPECT_EQ(coll.getMaxSizeC(), 3U);
  EXPECT_EQ(coll.getMaxSizeT(), 4U);
  EXPECT_TRUE(coll.isComplete());
  EXPECT_TRUE(coll.getPlanIndex(0) == PlanIndex(0, 0, 0));
  EXPECT_TRUE(coll.getPlanIndex(1) == PlanIndex(1, 0, 0));
  EXPECT_TRUE(coll.getPlanIndex(2) == PlanIndex(0, 1, 0));
  EXPECT_TRUE(coll.getPlanIndex(23) == PlanIndex(1, 2, 3));
}

TEST(BasePlanIndexedColl, GivesEachPlanACopyOfItsOwn)
{
  const auto prototype = boost::make_shared<ElementsRange>(7, 8);
  PlanColl coll;
  coll.assign(*prototype, 2, 3, 4);
  std::set<const BaseSerializationObject*> objects;
  for (const auto& entry : coll.getBaseColl())
  {
    EXPECT_EQ(entry.second.use_count(), 1);
    EXPECT_TRUE(dynamic_cast<const ElementsRange&>(*entry.second) == ElementsRange(7, 8));
    objects.insert(entry.second.get());
  }
  EXPECT_EQ(objects.size(), 24U);
  EXPECT_EQ(objects.count(prototype.get()), 0U);
  EXPECT_EQ(prototype.use_count(), 1);
}

TEST(BasePlanIndexedColl, IsEmptyWhenAssignedWithASizeOfZero)
{
  const std::vector<ipUInt64> sizes[] = {{0, 3, 4},         {2, 0, 4},         {2, 3, 0},        {0, 0, 0},
                                         {0, g_largest, 4}, {g_largest, 0, 4}, {g_largest, 3, 0}};
  for (const auto& size : sizes)
  {
    PlanColl coll;
    coll.insert(PlanIndex(9, 9, 9), makeElement());
    coll.assign(ElementsRange(), size[0], size[1], size[2]);
    EXPECT_EQ(coll.getNbPlans(), 0U);
  }
}

TEST(BasePlanIndexedColl, DropsItsOldPlansWhenAssigned)
{
  const SkeletonElementPtr old = makeElement();
  PlanColl coll;
  coll.insert(PlanIndex(0, 0, 0), old);
  coll.insert(PlanIndex(9, 9, 9), old);
  coll.assign(ElementsRange(), 1, 1, 1);
  EXPECT_EQ(coll.getNbPlans(), 1U);
  EXPECT_NE(coll.getStorage(PlanIndex(0, 0, 0)), old);
  EXPECT_EQ(old.use_count(), 1);
}

/// Numbers its shared copies from 0.
class NumberingPrototype : public SkeletonElement
{
public:
  DynamicObjectPtr duplicateShared() const override
  {
    if (nbCopies == nbAllowed)
      throw std::runtime_error("no more copies");
    return isNull ? nullptr : makeElement(nbCopies++);
  }

  mutable ipInt32 nbCopies = 0;
  ipInt32 nbAllowed = -1; ///< -1: all
  bool isNull = false;
};

TEST(BasePlanIndexedColl, IsAssignedWithZOutermostAndTInnermost)
{
  PlanColl coll;
  coll.assign(NumberingPrototype(), 2, 3, 4);
  ipInt32 number = 0;
  for (ipUInt64 z = 0; z < 2; ++z)
    for (ipUInt64 c = 0; c < 3; ++c)
      for (ipUInt64 t = 0; t < 4; ++t)
        EXPECT_EQ(elementOf(coll, PlanIndex(z, c, t)).structure, number++);
}

TEST(BasePlanIndexedColl, KeepsThePlansMadeBeforeACopyFails)
{
  NumberingPrototype prototype;
  prototype.nbAllowed = 3;
  PlanColl coll;
  coll.insert(PlanIndex(9, 9, 9), makeElement());
  EXPECT_THROW(coll.assign(prototype, 2, 1, 2), std::runtime_error);
  EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}}));
  EXPECT_EQ(elementOf(coll, PlanIndex(0, 0, 0)).structure, 0);
  EXPECT_EQ(elementOf(coll, PlanIndex(0, 0, 1)).structure, 1);
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 0, 0)).structure, 2);
}

TEST(BasePlanIndexedColl, StoresANullForACopyThatIsOne)
{
  NumberingPrototype prototype;
  prototype.isNull = true;
  PlanColl coll;
  coll.assign(prototype, 1, 1, 2);
  EXPECT_EQ(coll.getNbPlans(), 2U);
  EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 1)), nullptr);
}

TEST(BasePlanIndexedColl, IsAssignedFromAnObjectOfItsOwnThatTheCallerHolds)
{
  PlanColl coll;
  coll.insert(PlanIndex(5, 5, 5), makeElement(3, 4));
  const SerializationObjectPtr held = coll.getStorage(PlanIndex(5, 5, 5));
  coll.assign(*held, 1, 2, 1);
  EXPECT_EQ(held.use_count(), 1); // cleared first
  EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{0, 0, 0}, {0, 1, 0}}));
  EXPECT_EQ(elementOf(coll, PlanIndex(0, 1, 0)).structure, 3);
  EXPECT_EQ(elementOf(coll, PlanIndex(0, 1, 0)).data, 4);
}

TEST(BasePlanIndexedColl, IsAssignedFromAnObjectThatItAloneHolds)
{
  PlanColl coll;
  coll.insert(PlanIndex(4, 5, 5), makeElement(1, 2));
  coll.insert(PlanIndex(5, 5, 5), makeElement(3, 4));
  coll.assign(*coll.getStorage(PlanIndex(5, 5, 5)), 2, 1, 1);
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 0, 0)).structure, 3);
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 0, 0)).data, 4);
}

TEST(BasePlanIndexedColl, IsClearedAlsoForAPrototypeWithoutCopySupport)
{
  PlanColl coll;
  coll.insert(PlanIndex(5, 5, 5), makeElement());
  const PlanColl prototype;
  coll.assign(prototype, 0, 1, 1); // nothing to copy
  EXPECT_EQ(coll.getNbPlans(), 0U);
  coll.insert(PlanIndex(5, 5, 5), makeElement());
  EXPECT_EQ(messageOf<ORVELUtilException>([&] { coll.assign(prototype, 1, 1, 1); }),
            "Class orvel::BasePlanIndexedColl doesn't support copy");
  EXPECT_EQ(coll.getNbPlans(), 0U);
}

TEST(BasePlanIndexedColl, HoldsWholePlansOnlyWhenMemoryEndsInAnAssignment)
{
  const ElementsRange prototype(7, 8);
  const std::vector<PlanIndex> order = {{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, {1, 0, 1}};
  PlanColl coll;
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbFailures = failAtEachAllocation([&] { coll.assign(prototype, 2, 1, 2); },
                                                      [&]
                                                      {
                                                        const std::size_t nbMade = coll.getNbPlans();
                                                        ASSERT_LT(nbMade, order.size());
                                                        for (std::size_t i = 0; i < nbMade; ++i)
                                                          EXPECT_NE(coll.getStorage(order[i]), nullptr);
                                                      });
  EXPECT_EQ(nbFailures, 8U); // each plan takes its object and its place in the map
  EXPECT_EQ(coll.getNbPlans(), 4U);
  coll.clear();
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

// Failures

TEST(BasePlanIndexedColl, NamesThePlaceOfAFailureLogsItOnceAndStaysAsItWas)
{
  const SkeletonElementPtr element = makeElement();
  PlanColl coll;
  const PlanColl& constant = coll;
  coll.insert(PlanIndex(0, 0, 0), element);
  const auto check =
      [&](const std::string& message, const std::string& function, const std::function<void()>& operation)
  {
    expectRaised<ORVELBaseDataException>(
        operation, {message, function, "ORVELBaseData/PlanIndex/BasePlanIndexedColl.cpp"});
    EXPECT_EQ(coll.getNbPlans(), 1U);
    EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 0)), element);
  };
  const std::string insert = "void orvel::BasePlanIndexedColl::insert(const orvel::PlanIndex&, const "
                             "orvel::SerializationObjectPtr&)";
  check("Can't get element for plan index z=1, c=2, t=3, element not found",
        "orvel::SerializationObjectConstPtr orvel::BasePlanIndexedColl::getStorage(const orvel::PlanIndex&) "
        "const",
        [&] { constant.getStorage(PlanIndex(1, 2, 3)); });
  check("Can't get element for plan index z=1, c=2, t=3, element not found",
        "const orvel::SerializationObjectPtr& orvel::BasePlanIndexedColl::getStorage("
        "const orvel::PlanIndex&)",
        [&] { coll.getStorage(PlanIndex(1, 2, 3)); });
  check("Can't insert element for plan index z=0, c=0, t=0, already exists", insert,
        [&] { coll.insert(PlanIndex(0, 0, 0), makeElement()); });
  check("Null shared pointer for plan index z=1, c=2, t=3, can't insert it", insert,
        [&] { coll.insert(PlanIndex(1, 2, 3), nullptr); });
  check("Plan offset 1 is not valid given plan indexed data with 1 plans",
        "const orvel::PlanIndex& orvel::BasePlanIndexedColl::getPlanIndex(orvel::ipUInt64) const",
        [&] { coll.getPlanIndex(1); });
}

// The class: what it shares with collections of pointers is tested in ObjectCollTest.cpp.

TEST(BasePlanIndexedColl, HasOneMemberBehindThoseOfItsBase)
{
  EXPECT_THROW(vtableIndexOf(&BasePlanIndexedColl::clear), std::invalid_argument);
  EXPECT_THROW(vtableIndexOf(&BasePlanIndexedColl::insert), std::invalid_argument);
  EXPECT_THROW(vtableIndexOf(&BasePlanIndexedColl::assign), std::invalid_argument);
  using Coll = std::map<PlanIndex, SerializationObjectPtr>;
  static_assert(std::is_same_v<decltype(memberOf(PlanIndexedColl())), Coll BasePlanIndexedColl::*>);
  EXPECT_EQ(offsetOf(memberOf(PlanIndexedColl())),
            static_cast<std::ptrdiff_t>(sizeof(BaseObjectWithSkeleton)));
  EXPECT_EQ(sizeof(BasePlanIndexedColl), sizeof(BaseObjectWithSkeleton) + sizeof(Coll));
}

// Archives: where plans matter

TEST(BasePlanIndexedCollFile, IsThisXmlText)
{
  PlanColl coll;
  coll.insert(PlanIndex(1, 2, 5000000000), boost::make_shared<ElementsRange>(3, 4));
  EXPECT_EQ(fileOf<HandWrittenXml>([&](BaseOArchive& archive) { coll.write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BasePlanIndexedColl">
    <item key="version">1</item>
  </section>
  <section name="_planIndexedColl">
    <section name="map">
      <item key="size">1</item>
      <object key="key">
        <section name="orvel::PlanIndex">
          <item key="version">2</item>
        </section>
        <item key="_zPlanIdx">1</item>
        <item key="_cPlanIdx">2</item>
        <item key="_tPlanIdx">5000000000</item>
      </object>
      <section name="value">
        <section name="shared_ptr&lt;orvel::BaseSerializationObject&gt;">
          <pointer key="pObject" id="1" class="orvel::ElementsRange">
            <section name="orvel::ElementsRange">
              <item key="version">2</item>
            </section>
            <item key="_startOffset">3</item>
            <item key="_nbElements">4</item>
          </pointer>
        </section>
      </section>
    </section>
  </section>
</orvelArchive>
)");
}

TEST(BasePlanIndexedCollFile, OfDataIsThisXmlText)
{
  const PlanColl coll(true, {makeElement(11, 12), nullptr, makeElement(21, 22)}, g_data);
  EXPECT_EQ(fileOf<HandWrittenXml>([&](BaseOArchive& archive) { coll.write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BasePlanIndexedColl">
    <item key="version">1</item>
  </section>
  <object key="curObject">
    <section name="orvel::SkeletonElement">
      <item key="version">1</item>
    </section>
    <item key="_data">12</item>
  </object>
  <object key="curObject">
    <item key="_data">22</item>
  </object>
</orvelArchive>
)");
}

template <class HandWritten>
class BasePlanIndexedCollArchive : public testing::Test
{
protected:
  using Archive = ObjectCollArchive<PlanColl, HandWritten>;

  static void read(PlanColl& coll, const std::string& file)
  {
    readFile<HandWritten>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(coll.read(archive)); });
  }
};
TYPED_TEST_SUITE(BasePlanIndexedCollArchive, Formats, );

TYPED_TEST(BasePlanIndexedCollArchive, BringsEachPlanUnderItsKeyInPlaceOfAllOthers)
{
  PlanColl coll;
  coll.insert(PlanIndex(9, 9, 9), makeElement());
  this->read(coll, typename TestFixture::Archive().open(2).element(11, 12).element(21, 22).file());
  EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{7, 0, 0}, {0, 1, 0}}));
  EXPECT_EQ(elementOf(coll, PlanIndex(7, 0, 0)).data, 12);
  EXPECT_EQ(elementOf(coll, PlanIndex(0, 1, 0)).data, 22);
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataGoesToTheObjectsByTheirRanksWhateverTheKeys)
{
  const SkeletonElementPtr first = makeElement();
  const SkeletonElementPtr second = makeElement();
  PlanColl coll(true);
  coll.insert(PlanIndex(0, 0, 9), second);
  coll.insert(PlanIndex(5, 0, 8), first);
  coll.setSerializationMode(g_data);
  first->setSerializationMode(g_data);
  second->setSerializationMode(g_data);
  this->read(coll, typename TestFixture::Archive().curObject(12).curObject(22).file());
  EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{5, 0, 8}, {0, 0, 9}}));
  EXPECT_EQ(first->data, 12);
  EXPECT_EQ(second->data, 22);
}

TYPED_TEST(BasePlanIndexedCollArchive, BringsNullsThatTakeTheirKeys)
{
  PlanColl coll;
  this->read(coll, typename TestFixture::Archive().open(1).null().file());
  EXPECT_TRUE(coll.exists(7, 0, 0));
  EXPECT_EQ(coll.getStorage(PlanIndex(7, 0, 0)), nullptr);
  EXPECT_EQ(messageOfFailure([&] { coll.insert(PlanIndex(7, 0, 0), makeElement()); }),
            "Can't insert element for plan index z=7, c=0, t=0, already exists");
}

TYPED_TEST(BasePlanIndexedCollArchive, KeepsTheLastValueOfAKeyThatComesTwice)
{
  typename TestFixture::Archive archive;
  PlanColl coll;
  this->read(coll, archive.open(3).element(11, 12).element(21, 22).at(1).element(31, 32).file());
  EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{7, 0, 0}, {0, 1, 0}}));
  EXPECT_EQ(elementOf(coll, PlanIndex(7, 0, 0)).structure, 11);
  EXPECT_EQ(elementOf(coll, PlanIndex(0, 1, 0)).structure, 31);
}

TYPED_TEST(BasePlanIndexedCollArchive, ReadsKeysOfTheirVersion1)
{
  typename TestFixture::Archive archive;
  TypeParam& content = archive.open(1).access();
  content.openObject("key");
  putVersion(content, "orvel::PlanIndex", 1);
  content.integer("_zPlanIdx", 4294967295);
  content.integer("_cPlanIdx", 2);
  content.integer("_tPlanIdx", 3);
  content.close();
  archive.openValue();
  content.nullPointer("pObject");
  PlanColl coll;
  this->read(coll, archive.closeEntry().file());
  EXPECT_TRUE(coll.exists(4294967295, 2, 3));
}

} // namespace
