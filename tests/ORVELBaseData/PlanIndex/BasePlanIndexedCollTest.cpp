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

#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <ORVELUtil/ORVELUtilLog.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/ObjectCollArchive.h>
#include <support/RaisedFailure.h>
#include <support/SkeletonElement.h>

ORVEL_TEST_EXPOSE(PlanIndexedColl, &orvel::BasePlanIndexedColl::_planIndexedColl)

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

/// The least that a derived class supplies.
class PlanColl : public BasePlanIndexedColl
{
public:
  /// \param hasSkeletons whether its objects take the mode; they are SkeletonElements or the like then
  explicit PlanColl(bool hasSkeletons = false)
    : _hasSkeletons(hasSkeletons)
  {
  }

  BaseDynamicObject* createNew() const override { return new PlanColl; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<PlanColl>(); }
  const std::string& getElementTypeName() const override { return BaseSerializationObject::getTypeName(); }
  bool hasSkeletonElements() const override { return _hasSkeletons; }

private:
  bool _hasSkeletons;
};

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

struct Failing
{
  const char* function; // of the failure, as g++ spells it
  const char* name;
  const char* enumerator;
  const char* message;
  std::function<void(PlanColl&)> call;
};

const Failing g_failing[] = {
    {"orvel::SerializationObjectConstPtr orvel::BasePlanIndexedColl::getStorage(const orvel::PlanIndex&) "
     "const",
     "orvel::BasePlanIndexedColl::getStorage(", "ePlanNotFound",
     "Can't get element for plan index z=1, c=2, t=3, element not found",
     [](PlanColl& coll)
     {
       static_cast<const PlanColl&>(coll).getStorage(PlanIndex(1, 2, 3));
     }},
    {"const orvel::SerializationObjectPtr& orvel::BasePlanIndexedColl::getStorage(const orvel::PlanIndex&)",
     "orvel::BasePlanIndexedColl::getStorage(", "ePlanNotFound",
     "Can't get element for plan index z=1, c=2, t=3, element not found",
     [](PlanColl& coll)
     {
       coll.getStorage(PlanIndex(1, 2, 3));
     }},
    {"void orvel::BasePlanIndexedColl::insert(const orvel::PlanIndex&, const orvel::SerializationObjectPtr&)",
     "orvel::BasePlanIndexedColl::insert(", "ePlanAlreadyExists",
     "Can't insert element for plan index z=0, c=0, t=0, already exists",
     [](PlanColl& coll)
     {
       coll.insert(PlanIndex(0, 0, 0), makeElement());
     }},
    {"const orvel::PlanIndex& orvel::BasePlanIndexedColl::getPlanIndex(orvel::ipUInt64) const",
     "orvel::BasePlanIndexedColl::getPlanIndex(", "eInvalidPlanOffset",
     "Plan offset 1 is not valid given plan indexed data with 1 plans",
     [](PlanColl& coll)
     {
       coll.getPlanIndex(1);
     }},
    {"void orvel::BasePlanIndexedColl::insert(const orvel::PlanIndex&, const orvel::SerializationObjectPtr&)",
     "orvel::BasePlanIndexedColl::insert(", "eNullPlanPtr",
     "Null shared pointer for plan index z=1, c=2, t=3, can't insert it",
     [](PlanColl& coll)
     {
       coll.insert(PlanIndex(1, 2, 3), nullptr);
     }},
};

TEST(BasePlanIndexedColl, NamesThePlaceOfAFailureLogsItOnceAndStaysAsItWas)
{
  const SkeletonElementPtr element = makeElement();
  PlanColl coll;
  coll.insert(PlanIndex(0, 0, 0), element);
  for (const Failing& failing : g_failing)
  {
    SCOPED_TRACE(failing.function);
    const LogCapture log(getORVELBaseDataLogger());
    const auto failure = failureOf<ORVELBaseDataException>([&] { failing.call(coll); });
    EXPECT_EQ(failure.getMessage(), failing.message);
#if !defined(__clang__)
    EXPECT_EQ(failure.getFunction(), failing.function);
#else
    EXPECT_NE(failure.getFunction().find(failing.name), std::string::npos);
#endif
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/PlanIndex/BasePlanIndexedColl.cpp");
    EXPECT_NE(sourceLine(failure.getFile(), failure.getLine()).find(failing.enumerator), std::string::npos);
    EXPECT_EQ(failure.getCause(), nullptr);
    ASSERT_EQ(log.getRecords().size(), 1U);
    EXPECT_EQ(log.getRecords()[0].message, failing.message);
    EXPECT_EQ(log.getRecords()[0].level, log4cplus::ERROR_LOG_LEVEL);
    EXPECT_EQ(log.getRecords()[0].file, failure.getFile());
    EXPECT_EQ(log.getRecords()[0].line, static_cast<int>(failure.getLine()));
    EXPECT_EQ(coll.getNbPlans(), 1U);
    EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 0)), element);
  }
}

// The frame

TEST(BasePlanIndexedColl, HasItsNameAndVersion)
{
  EXPECT_EQ(BasePlanIndexedColl::getTypeName(), "orvel::BasePlanIndexedColl");
  EXPECT_EQ(PlanColl().getClassName(), "orvel::BasePlanIndexedColl"); // a derived class without its own name
  EXPECT_EQ(BasePlanIndexedColl::getVersion(), 1U);
  EXPECT_EQ(PlanColl().getSerializationMode(), eSklSrzMode::eSSM_Full);
}

TEST(BasePlanIndexedColl, IsNotRegistered)
{
  EXPECT_FALSE(DynamicObjectFactory::getInstance().isRegistered("orvel::BasePlanIndexedColl"));
}

struct WithoutCreateNew : BasePlanIndexedColl
{
  DynamicObjectPtr createShared() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return getTypeName(); }
  bool hasSkeletonElements() const override { return false; }
};

struct WithoutCreateShared : BasePlanIndexedColl
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return getTypeName(); }
  bool hasSkeletonElements() const override { return false; }
};

struct WithoutElementTypeName : BasePlanIndexedColl
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  bool hasSkeletonElements() const override { return false; }
};

struct WithoutSkeletonAnswer : BasePlanIndexedColl
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  const std::string& getElementTypeName() const override { return getTypeName(); }
};

TEST(BasePlanIndexedColl, LeavesFourOperationsToDerivedClasses)
{
  static_assert(std::is_base_of_v<BaseObjectWithSkeleton, BasePlanIndexedColl>);
  static_assert(std::is_abstract_v<BasePlanIndexedColl>);
  static_assert(std::is_abstract_v<WithoutCreateNew>);
  static_assert(std::is_abstract_v<WithoutCreateShared>);
  static_assert(std::is_abstract_v<WithoutElementTypeName>);
  static_assert(std::is_abstract_v<WithoutSkeletonAnswer>);
  static_assert(!std::is_abstract_v<PlanColl>);
}

TEST(BasePlanIndexedColl, CannotBeCopied)
{
  PlanColl coll;
  coll.insert(PlanIndex(1, 2, 3), makeElement());
  const PlanColl other;
  EXPECT_FALSE(coll.hasCopySupport());
  const std::pair<const char*, std::function<void()>> attempts[] = {
      {"orvel::BasePlanIndexedColl::copy(",
       [&]
       {
         coll.copy(other);
       }},
      {"orvel::BasePlanIndexedColl::copy(",
       [&]
       {
         coll.copy(coll);
       }},
      {"orvel::BasePlanIndexedColl::duplicate(",
       [&]
       {
         coll.duplicate();
       }},
      {"orvel::BasePlanIndexedColl::duplicateShared(",
       [&]
       {
         coll.duplicateShared();
       }},
  };
  for (const auto& attempt : attempts)
  {
    SCOPED_TRACE(attempt.first);
    const LogCapture log(getORVELUtilLogger());
    const auto failure = failureOf<ORVELUtilException>(attempt.second);
    EXPECT_EQ(failure.getMessage(), "Class orvel::BasePlanIndexedColl doesn't support copy");
    EXPECT_NE(failure.getFunction().find(attempt.first), std::string::npos);
    EXPECT_EQ(failure.getFile(), "ORVELBaseData/PlanIndex/BasePlanIndexedColl.cpp");
    ASSERT_EQ(log.getRecords().size(), 1U);
    EXPECT_EQ(log.getRecords()[0].message, failure.getMessage());
    EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{1, 2, 3}}));
  }
}

TEST(BasePlanIndexedColl, HasItsOperationsAndMemberInTheirOrder)
{
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::write), 10U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::read), 11U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::getElementTypeName), 12U);
  EXPECT_EQ(vtableIndexOf(&BasePlanIndexedColl::hasSkeletonElements), 13U);
  EXPECT_THROW(vtableIndexOf(&BasePlanIndexedColl::clear), std::invalid_argument);
  EXPECT_THROW(vtableIndexOf(&BasePlanIndexedColl::insert), std::invalid_argument);
  EXPECT_THROW(vtableIndexOf(&BasePlanIndexedColl::assign), std::invalid_argument);
  using Coll = std::map<PlanIndex, SerializationObjectPtr>;
  static_assert(std::is_same_v<decltype(memberOf(PlanIndexedColl())), Coll BasePlanIndexedColl::*>);
  EXPECT_EQ(offsetOf(memberOf(PlanIndexedColl())),
            static_cast<std::ptrdiff_t>(sizeof(BaseObjectWithSkeleton)));
  EXPECT_EQ(sizeof(BasePlanIndexedColl), sizeof(BaseObjectWithSkeleton) + sizeof(Coll));
}

// Archives

/// How the hand-written archives are put together; keeps in mind which versions they hold.
template <class HandWritten>
class BasePlanIndexedCollArchive : public ObjectCollArchive<HandWritten>
{
protected:
  /// The version record of the collection.
  static HandWritten begin()
  {
    HandWritten archive;
    putVersion(archive, "orvel::BasePlanIndexedColl", 1);
    return archive;
  }

  /// The start of the map item.
  static HandWritten beginMap(std::int64_t size)
  {
    HandWritten archive = begin();
    openMap(archive, size);
    return archive;
  }

  static void openMap(HandWritten& archive, std::int64_t size)
  {
    archive.openSection("_planIndexedColl");
    archive.openSection("map");
    archive.integer("size", size);
  }

  static void closeMap(HandWritten& archive)
  {
    archive.close();
    archive.close();
  }

  static std::string finishMap(HandWritten archive)
  {
    closeMap(archive);
    return archive.file();
  }

  /// A key; the first one of an archive brings the version of its class.
  static void putKey(HandWritten& archive, bool isFirst, const PlanIndex& index)
  {
    archive.openObject("key");
    if (isFirst)
      putVersion(archive, "orvel::PlanIndex", 2);
    archive.integer("_zPlanIdx", static_cast<std::int64_t>(index.getZPlanIdx()));
    archive.integer("_cPlanIdx", static_cast<std::int64_t>(index.getCPlanIdx()));
    archive.integer("_tPlanIdx", static_cast<std::int64_t>(index.getTPlanIdx()));
    archive.close();
  }
};

using Formats = testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(BasePlanIndexedCollArchive, Formats, );

/// Two elements: the one inserted first stands behind the other in the order of the keys.
void insertTwo(BasePlanIndexedColl& coll, const SkeletonElementPtr& second, const SkeletonElementPtr& first)
{
  coll.insert(PlanIndex(0, 1, 0), second);
  coll.insert(PlanIndex(7, 0, 0), first);
}

TYPED_TEST(BasePlanIndexedCollArchive, OfNoPlansHoldsTheirCount)
{
  const std::string file = this->finishMap(this->beginMap(0));
  for (const bool hasSkeletons : {false, true})
  {
    EXPECT_EQ(this->write(PlanColl(hasSkeletons)), file);
    PlanColl coll(hasSkeletons);
    coll.insert(PlanIndex(1, 2, 3), makeElement());
    this->read(coll, file);
    EXPECT_EQ(coll.getNbPlans(), 0U);
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, HoldsThePlansInTheOrderOfTheirKeys)
{
  TypeParam expected = this->beginMap(2);
  this->putKey(expected, true, PlanIndex(7, 0, 0));
  this->putElement(expected, true, g_full, 11, 12);
  this->putKey(expected, false, PlanIndex(0, 1, 0));
  this->putElement(expected, false, g_full, 21, 22);
  const std::string file = this->finishMap(expected);
  for (const bool hasSkeletons : {false, true})
  {
    PlanColl coll(hasSkeletons);
    insertTwo(coll, makeElement(21, 22), makeElement(11, 12));
    EXPECT_EQ(this->write(coll), file);

    PlanColl copy(hasSkeletons);
    copy.insert(PlanIndex(9, 9, 9), makeElement());
    this->read(copy, file);
    EXPECT_EQ(keysOf(copy), (std::vector<std::vector<ipUInt64>>{{7, 0, 0}, {0, 1, 0}}));
    EXPECT_EQ(elementOf(copy, PlanIndex(7, 0, 0)).structure, 11);
    EXPECT_EQ(elementOf(copy, PlanIndex(7, 0, 0)).data, 12);
    EXPECT_EQ(elementOf(copy, PlanIndex(0, 1, 0)).structure, 21);
    EXPECT_EQ(elementOf(copy, PlanIndex(0, 1, 0)).data, 22);
  }
}

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
  PlanColl coll(true);
  insertTwo(coll, makeElement(21, 22), makeElement(11, 12));
  coll.setSerializationMode(g_data);
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

TYPED_TEST(BasePlanIndexedCollArchive, HoldsTheVersionOnceForManyCollections)
{
  TypeParam expected = this->begin();
  for (int i = 0; i < 2; ++i)
  {
    this->openMap(expected, 0);
    this->closeMap(expected);
  }
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  PlanColl().write(archive);
                  PlanColl().write(archive);
                }),
            expected.file());
}

TYPED_TEST(BasePlanIndexedCollArchive, IsAlikeInEveryModeWithoutSkeletons)
{
  const SkeletonElementPtr first = makeElement(11, 12);
  const SkeletonElementPtr second = makeElement(21, 22);
  second->setSerializationMode(g_skeleton);
  PlanColl coll(false);
  insertTwo(coll, second, first);
  TypeParam expected = this->beginMap(2);
  this->putKey(expected, true, PlanIndex(7, 0, 0));
  this->putElement(expected, true, g_full, 11, 12);
  this->putKey(expected, false, PlanIndex(0, 1, 0));
  this->putElement(expected, false, g_skeleton, 21, 0);
  const std::string file = this->finishMap(expected);
  for (const auto mode : {g_full, g_skeleton, g_data})
  {
    coll.setSerializationMode(mode);
    EXPECT_EQ(this->write(coll), file);
    EXPECT_EQ(first->getSerializationMode(), g_full); // the objects keep theirs
    EXPECT_EQ(second->getSerializationMode(), g_skeleton);
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, IsReadAsAMapInEveryModeWithoutSkeletons)
{
  TypeParam archive = this->beginMap(1);
  this->putKey(archive, true, PlanIndex(1, 2, 3));
  this->putElement(archive, true, g_full, 11, 12);
  const std::string file = this->finishMap(archive);
  for (const auto mode : {g_full, g_skeleton, g_data})
  {
    PlanColl coll(false);
    coll.setSerializationMode(mode);
    this->read(coll, file);
    EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{1, 2, 3}}));
    EXPECT_EQ(elementOf(coll, PlanIndex(1, 2, 3)).data, 12);
    EXPECT_EQ(elementOf(coll, PlanIndex(1, 2, 3)).modesRead, (std::vector<ipUInt64>{0}));
    EXPECT_EQ(coll.getSerializationMode(), mode);
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, HandsItsModeToItsObjectsWhenWritten)
{
  const std::pair<eSklSrzMode::domain, ipUInt64> modes[] = {{g_skeleton, 1}, {g_data, 2}, {g_full, 0}};
  for (const auto& mode : modes)
  {
    const SkeletonElementPtr first = makeElement();
    const SkeletonElementPtr second = makeElement();
    second->setSerializationMode(g_skeleton);
    PlanColl coll(true);
    insertTwo(coll, second, first);
    coll.setSerializationMode(mode.first);
    this->write(coll);
    for (const SkeletonElementPtr& element : {first, second})
    {
      EXPECT_EQ(element->modesWritten, std::vector<ipUInt64>{mode.second});
      EXPECT_EQ(element->getSerializationMode(), mode.first); // and they keep it
    }
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, HandsItsModeToAllObjectsBeforeItWritesTheFirst)
{
  for (const auto mode : {g_skeleton, g_data})
  {
    const SkeletonElementPtr first = makeElement();
    const SkeletonElementPtr second = makeElement();
    PlanColl coll(true);
    insertTwo(coll, second, first);
    coll.setSerializationMode(mode);
    std::vector<ipUInt64> modesOfSecond;
    first->whenWritten = [&]
    {
      modesOfSecond.push_back(second->getSerializationMode().getValue());
    };
    this->write(coll);
    EXPECT_EQ(modesOfSecond, std::vector<ipUInt64>{eSklSrzMode(mode).getValue()});
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, LeavesTheModesHandedOnWhenAWriteFails)
{
  const SkeletonElementPtr first = makeElement();
  const SkeletonElementPtr second = makeElement();
  PlanColl coll(true);
  insertTwo(coll, second, first);
  coll.setSerializationMode(g_data);
  first->whenWritten = []
  {
    throw std::runtime_error("no");
  };
  EXPECT_THROW(fileOf<TypeParam>([&](BaseOArchive& archive) { coll.write(archive); }), std::runtime_error);
  EXPECT_EQ(first->getSerializationMode(), g_data);
  EXPECT_EQ(second->getSerializationMode(), g_data);
}

TYPED_TEST(BasePlanIndexedCollArchive, HandsItsModeDownThroughCollectionsOfCollections)
{
  const SkeletonElementPtr element = makeElement(11, 12);
  const auto inner = boost::make_shared<PlanColl>(true);
  inner->insert(PlanIndex(0, 0, 0), element);
  PlanColl coll(true);
  coll.insert(PlanIndex(0, 0, 0), inner);
  coll.setSerializationMode(g_data);
  TypeParam expected = this->begin();
  expected.openObject("curObject");
  this->putCurObject(expected, true, 12);
  expected.close();
  EXPECT_EQ(this->write(coll), expected.file());
  EXPECT_EQ(inner->getSerializationMode(), g_data);
  EXPECT_EQ(element->getSerializationMode(), g_data);
}

TYPED_TEST(BasePlanIndexedCollArchive, IsAMapOfSkeletonsInSkeletonMode)
{
  PlanColl coll(true);
  insertTwo(coll, makeElement(21, 22), makeElement(11, 12));
  coll.setSerializationMode(g_skeleton);
  TypeParam expected = this->beginMap(2);
  this->putKey(expected, true, PlanIndex(7, 0, 0));
  this->putElement(expected, true, g_skeleton, 11, 12);
  this->putKey(expected, false, PlanIndex(0, 1, 0));
  this->putElement(expected, false, g_skeleton, 21, 22);
  EXPECT_EQ(this->write(coll), this->finishMap(expected));
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataHoldsTheObjectsInTheOrderOfTheirKeys)
{
  PlanColl coll(true);
  insertTwo(coll, makeElement(21, 22), makeElement(11, 12));
  coll.setSerializationMode(g_data);
  TypeParam expected = this->begin();
  this->putCurObject(expected, true, 12);
  this->putCurObject(expected, false, 22);
  EXPECT_EQ(this->write(coll), expected.file());
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataWithoutPlansHoldsTheVersionAlone)
{
  PlanColl coll(true);
  coll.setSerializationMode(g_data);
  const std::string file = this->begin().file();
  EXPECT_EQ(this->write(coll), file);
  this->read(coll, file);
  EXPECT_EQ(coll.getNbPlans(), 0U);
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataFillsTheObjectsThatAreThere)
{
  PlanColl written(true);
  insertTwo(written, makeElement(21, 22), makeElement(11, 12));
  written.setSerializationMode(g_data);
  const std::string file = this->write(written);

  const SkeletonElementPtr first = makeElement(1, 2);
  const SkeletonElementPtr second = makeElement(3, 4);
  PlanColl coll(true);
  insertTwo(coll, second, first);
  coll.setSerializationMode(g_data);
  for (const SkeletonElementPtr& element : {first, second})
    element->setSerializationMode(g_data); // the collection does not do that
  this->read(coll, file);
  EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{7, 0, 0}, {0, 1, 0}}));
  EXPECT_EQ(coll.getStorage(PlanIndex(7, 0, 0)), first);
  EXPECT_EQ(coll.getStorage(PlanIndex(0, 1, 0)), second);
  EXPECT_EQ(first->structure, 1);
  EXPECT_EQ(first->data, 12);
  EXPECT_EQ(second->structure, 3);
  EXPECT_EQ(second->data, 22);
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataGoesToTheObjectsByTheirRanksWhateverTheKeys)
{
  TypeParam archive = this->begin();
  this->putCurObject(archive, true, 12);
  this->putCurObject(archive, false, 22);
  const SkeletonElementPtr elements[] = {makeElement(), makeElement()};
  PlanColl coll(true);
  coll.insert(PlanIndex(0, 0, 9), elements[1]);
  coll.insert(PlanIndex(5, 0, 8), elements[0]);
  coll.setSerializationMode(g_data);
  for (const SkeletonElementPtr& element : elements)
    element->setSerializationMode(g_data);
  this->read(coll, archive.file());
  EXPECT_EQ(elements[0]->data, 12);
  EXPECT_EQ(elements[1]->data, 22);
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataWithFewerObjectsThanAreThereFillsThoseAndIsRefused)
{
  TypeParam archive = this->begin();
  this->putCurObject(archive, true, 12);
  const SkeletonElementPtr first = makeElement();
  const SkeletonElementPtr second = makeElement(0, 4);
  PlanColl coll(true);
  insertTwo(coll, second, first);
  coll.setSerializationMode(g_data);
  first->setSerializationMode(g_data);
  second->setSerializationMode(g_data);
  this->expectRefused(coll, archive.file());
  EXPECT_EQ(first->data, 12);
  EXPECT_EQ(second->data, 4);
  EXPECT_EQ(coll.getNbPlans(), 2U);
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataWithMoreObjectsThanAreThereLeavesTheRestUnread)
{
  TypeParam archive = this->begin();
  this->putCurObject(archive, true, 12);
  this->putCurObject(archive, false, 22);
  const SkeletonElementPtr element = makeElement();
  element->setSerializationMode(g_data);
  PlanColl coll(true);
  coll.insert(PlanIndex(0, 0, 0), element);
  coll.setSerializationMode(g_data);
  readStart<TypeParam>(archive.file(),
                       [&](BaseIArchive& input)
                       {
                         EXPECT_TRUE(coll.read(input));
                         EXPECT_EQ(element->data, 12);
                         EXPECT_THROW(input.close(), ORVELSerializationException);
                       });
}

TYPED_TEST(BasePlanIndexedCollArchive, DoesNotHandItsModeToTheObjectsThatItFills)
{
  TypeParam archive = this->begin();
  this->putCurObject(archive, true, 12);
  const SkeletonElementPtr element = makeElement();
  PlanColl coll(true);
  coll.insert(PlanIndex(0, 0, 0), element);
  coll.setSerializationMode(g_data);
  this->expectRefused(coll, archive.file()); // the object looks for structure, too
  EXPECT_EQ(element->modesRead, std::vector<ipUInt64>{0});
  EXPECT_EQ(element->getSerializationMode(), g_full);
}

TYPED_TEST(BasePlanIndexedCollArchive, DoesNotHandItsModeToTheObjectsThatItMakes)
{
  TypeParam skeleton = this->beginMap(1);
  this->putKey(skeleton, true, PlanIndex(1, 2, 3));
  this->putElement(skeleton, true, g_skeleton, 11, 0);
  PlanColl coll(true);
  coll.setSerializationMode(g_skeleton);
  this->expectRefused(coll, this->finishMap(skeleton)); // the new object looks for data, too
  EXPECT_EQ(coll.getNbPlans(), 0U);

  TypeParam full = this->beginMap(1);
  this->putKey(full, true, PlanIndex(1, 2, 3));
  this->putElement(full, true, g_full, 11, 12);
  this->read(coll, this->finishMap(full));
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 2, 3)).modesRead, std::vector<ipUInt64>{0});
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 2, 3)).getSerializationMode(), g_full);
}

TYPED_TEST(BasePlanIndexedCollArchive, TakesAnyOtherModeForTheMap)
{
  TypeParam archive = this->beginMap(1);
  this->putKey(archive, true, PlanIndex(1, 2, 3));
  this->putElement(archive, true, g_full, 11, 12);
  const std::string file = this->finishMap(archive);
  for (const ipUInt64 mode : {ipUInt64{3}, ipUInt64{0x100000002}})
  {
    const SkeletonElementPtr element = makeElement(11, 12);
    PlanColl coll(true);
    coll.insert(PlanIndex(1, 2, 3), element);
    coll.setSerializationMode(eSklSrzMode(mode));
    EXPECT_EQ(this->write(coll), file);
    EXPECT_EQ(element->modesWritten, std::vector<ipUInt64>{mode});
    this->read(coll, file);
    EXPECT_NE(coll.getStorage(PlanIndex(1, 2, 3)), element); // made anew
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, FillsBuffersInASecondPass)
{
  const auto makeBuffer = [](ipUInt8 value)
  {
    const auto buffer = boost::make_shared<TypedOwnBuffer>();
    buffer->init(3, eDataType::eDT_UInt8);
    ipUInt8* const elements = static_cast<ipUInt8*>(buffer->getDataPtr());
    for (ipUInt8 i = 0; i < 3; ++i)
      elements[i] = static_cast<ipUInt8>(value + i);
    return buffer;
  };
  PlanColl written(true);
  written.insert(PlanIndex(0, 0, 0), makeBuffer(10));
  written.insert(PlanIndex(1, 0, 0), makeBuffer(20));
  written.setSerializationMode(g_data);

  const auto first = makeBuffer(0);
  const auto second = makeBuffer(0);
  first->setSerializationMode(g_data);
  second->setSerializationMode(g_data);
  PlanColl coll(true);
  coll.insert(PlanIndex(0, 0, 0), first);
  coll.insert(PlanIndex(1, 0, 0), second);
  coll.setSerializationMode(g_data);
  this->read(coll, this->write(written));
  EXPECT_EQ(static_cast<const ipUInt8*>(first->getDataPtr())[2], 12);
  EXPECT_EQ(static_cast<const ipUInt8*>(second->getDataPtr())[0], 20);
}

TYPED_TEST(BasePlanIndexedCollArchive, BringsNullsThatCanBeSeenAndWrittenAgain)
{
  TypeParam archive = this->beginMap(3);
  this->putKey(archive, true, PlanIndex(0, 0, 0));
  this->putNull(archive);
  this->putKey(archive, false, PlanIndex(1, 0, 0));
  this->putElement(archive, true, g_full, 11, 12);
  this->putKey(archive, false, PlanIndex(2, 0, 0));
  this->putNull(archive);
  const std::string file = this->finishMap(archive);
  for (const bool hasSkeletons : {false, true})
  {
    PlanColl coll(hasSkeletons);
    this->read(coll, file);
    EXPECT_EQ(coll.getNbPlans(), 3U);
    EXPECT_TRUE(coll.exists(0, 0, 0));
    EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 0)), nullptr);
    EXPECT_EQ(coll.getStorage(PlanIndex(2, 0, 0)), nullptr);
    EXPECT_EQ(this->write(coll), file);
    EXPECT_EQ(messageOfFailure([&] { coll.insert(PlanIndex(0, 0, 0), makeElement()); }),
              "Can't insert element for plan index z=0, c=0, t=0, already exists");
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataPassesNullsOverInBothDirections)
{
  TypeParam archive = this->beginMap(3);
  this->putKey(archive, true, PlanIndex(0, 0, 0));
  this->putNull(archive);
  this->putKey(archive, false, PlanIndex(1, 0, 0));
  this->putElement(archive, true, g_full, 11, 12);
  this->putKey(archive, false, PlanIndex(2, 0, 0));
  this->putNull(archive);
  PlanColl coll(true);
  this->read(coll, this->finishMap(archive));

  coll.setSerializationMode(g_data);
  TypeParam data = this->begin();
  this->putCurObject(data, true, 12);
  EXPECT_EQ(this->write(coll), data.file()); // which sets the mode of the element, too

  TypeParam other = this->begin();
  this->putCurObject(other, true, 99);
  this->read(coll, other.file());
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 0, 0)).data, 99);
  EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 0)), nullptr);
  EXPECT_EQ(coll.getNbPlans(), 3U);
}

TYPED_TEST(BasePlanIndexedCollArchive, BringsAnObjectUnderTwoKeysAsOne)
{
  TypeParam expected = this->beginMap(2);
  this->putKey(expected, true, PlanIndex(7, 0, 0));
  this->putElement(expected, true, g_full, 11, 12);
  this->putKey(expected, false, PlanIndex(0, 1, 0));
  this->openValue(expected);
  expected.reference("pObject", 1);
  this->closeValue(expected);
  const std::string file = this->finishMap(expected);

  const SkeletonElementPtr element = makeElement(11, 12);
  PlanColl coll(true);
  insertTwo(coll, element, element);
  EXPECT_EQ(this->write(coll), file);
  this->read(coll, file);
  EXPECT_EQ(coll.getStorage(PlanIndex(7, 0, 0)), coll.getStorage(PlanIndex(0, 1, 0)));
  EXPECT_NE(coll.getStorage(PlanIndex(7, 0, 0)), element);
}

TYPED_TEST(BasePlanIndexedCollArchive, OfDataFilesAnObjectUnderTwoKeysTwice)
{
  const SkeletonElementPtr element = makeElement(11, 12);
  PlanColl coll(true);
  insertTwo(coll, element, element);
  coll.setSerializationMode(g_data);
  TypeParam expected = this->begin();
  this->putCurObject(expected, true, 12);
  this->putCurObject(expected, false, 12);
  EXPECT_EQ(this->write(coll), expected.file());
}

TYPED_TEST(BasePlanIndexedCollArchive, KeepsTheLastValueOfAKeyThatComesTwice)
{
  TypeParam archive = this->beginMap(3);
  this->putKey(archive, true, PlanIndex(1, 2, 3));
  this->putElement(archive, true, g_full, 11, 12);
  this->putKey(archive, false, PlanIndex(0, 0, 0));
  this->putElement(archive, false, g_full, 21, 22);
  this->putKey(archive, false, PlanIndex(1, 2, 3));
  this->putElement(archive, false, g_full, 31, 32);
  PlanColl coll;
  this->read(coll, this->finishMap(archive));
  EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{0, 0, 0}, {1, 2, 3}}));
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 2, 3)).structure, 31);
}

TYPED_TEST(BasePlanIndexedCollArchive, ReadsKeysOfTheirVersion1)
{
  TypeParam archive = this->beginMap(1);
  archive.openObject("key");
  putVersion(archive, "orvel::PlanIndex", 1);
  archive.integer("_zPlanIdx", 4294967295);
  archive.integer("_cPlanIdx", 2);
  archive.integer("_tPlanIdx", 3);
  archive.close();
  this->putNull(archive);
  PlanColl coll;
  this->read(coll, this->finishMap(archive));
  EXPECT_TRUE(coll.exists(4294967295, 2, 3));
}

TYPED_TEST(BasePlanIndexedCollArchive, KeepsThePlansReadBeforeAFailure)
{
  TypeParam archive = this->beginMap(3);
  this->putKey(archive, true, PlanIndex(0, 0, 0));
  this->putElement(archive, true, g_full, 11, 12);
  this->putKey(archive, false, PlanIndex(1, 0, 0));
  this->putUnknownObject(archive);
  this->putKey(archive, false, PlanIndex(2, 0, 0));
  this->putElement(archive, false, g_full, 31, 32);
  const SkeletonElementPtr old = makeElement();
  PlanColl coll;
  coll.insert(PlanIndex(9, 9, 9), old);
  this->expectRefused(coll, this->finishMap(archive));
  EXPECT_EQ(old.use_count(), 1); // the map was emptied first
  EXPECT_EQ(keysOf(coll), (std::vector<std::vector<ipUInt64>>{{0, 0, 0}}));
  EXPECT_EQ(elementOf(coll, PlanIndex(0, 0, 0)).data, 12);
}

TYPED_TEST(BasePlanIndexedCollArchive, IsEmptiedBeforeTheFirstPlanIsRead)
{
  TypeParam archive = this->beginMap(1);
  this->putKey(archive, true, PlanIndex(0, 0, 0)); // and no value
  PlanColl coll;
  coll.insert(PlanIndex(9, 9, 9), makeElement());
  this->expectRefused(coll, this->finishMap(archive));
  EXPECT_EQ(coll.getNbPlans(), 0U);
}

TYPED_TEST(BasePlanIndexedCollArchive, WithMorePlansThanItCouldHoldIsRefused)
{
  PlanColl coll;
  this->expectRefused(coll, this->finishMap(this->beginMap(4294967295)));
  EXPECT_EQ(coll.getNbPlans(), 0U);
}

TYPED_TEST(BasePlanIndexedCollArchive, WithObjectsThatHaveNoSkeletonIsRefusedWhenNotTrusted)
{
  TypeParam archive = this->beginMap(2);
  this->putKey(archive, true, PlanIndex(0, 0, 0));
  this->putPlainObject(archive);
  this->putKey(archive, false, PlanIndex(1, 0, 0));
  this->putElement(archive, true, g_full, 11, 12);
  const std::string file = this->finishMap(archive);
  PlanColl coll(true);
  const std::string message =
      messageOf<ORVELSerializationException>([&] { this->readUntrusted(coll, file); });
  EXPECT_NE(message.find(": an object of class orvel::ElementsRange can't stand for class "
                         "orvel::BaseObjectWithSkeleton"),
            std::string::npos)
      << message;
  EXPECT_EQ(coll.getNbPlans(), 2U);
  EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 0)), nullptr);
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 0, 0)).data, 12);

  PlanColl plain(false); // takes any object
  this->readUntrusted(plain, file);
  EXPECT_EQ(plain.getStorage(PlanIndex(0, 0, 0))->getClassName(), "orvel::ElementsRange");
}

TYPED_TEST(BasePlanIndexedCollArchive, HoldsNoObjectWithoutASkeletonWhereAnUntrustedReadFails)
{
  TypeParam archive = this->beginMap(3);
  this->putKey(archive, true, PlanIndex(0, 0, 0));
  this->putPlainObject(archive);
  this->putKey(archive, false, PlanIndex(1, 0, 0));
  this->putElement(archive, true, g_full, 11, 12);
  this->putKey(archive, false, PlanIndex(2, 0, 0));
  this->putUnknownObject(archive);
  const std::string file = this->finishMap(archive);
  PlanColl coll(true);
  EXPECT_THROW(this->readUntrusted(coll, file), ORVELSerializationException);
  EXPECT_EQ(coll.getNbPlans(), 2U);
  EXPECT_EQ(coll.getStorage(PlanIndex(0, 0, 0)), nullptr);
  EXPECT_EQ(elementOf(coll, PlanIndex(1, 0, 0)).data, 12);
}

TYPED_TEST(BasePlanIndexedCollArchive, CutAnywhereIsRefusedWithWholePlansOnly)
{
  PlanColl written;
  insertTwo(written, makeElement(21, 22), makeElement(11, 12));
  const std::string file = this->write(written);
  const std::size_t end = file.find_last_not_of('\n') + 1; // the end of the last line may be missing
  for (std::size_t length = 0; length < end; ++length)
  {
    PlanColl coll;
    EXPECT_THROW(readFile<TypeParam>(file.substr(0, length),
                                     [&](BaseIArchive& archive)
                                     {
                                       coll.read(archive);
                                       EXPECT_EQ(coll.getNbPlans(), 2U);
                                     }),
                 ORVELSerializationException)
        << length;
    for (const auto& entry : coll.getBaseColl())
      EXPECT_NE(entry.second, nullptr) << length;
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, IsReadUnderItsOwnAndALowerVersion)
{
  for (const ipUInt32 version : {0U, 1U})
  {
    TypeParam archive;
    putVersion(archive, "orvel::BasePlanIndexedColl", version);
    this->openMap(archive, 1);
    this->putKey(archive, true, PlanIndex(1, 2, 3));
    this->putElement(archive, true, g_full, 11, 12);
    PlanColl coll;
    readFile<TypeParam>(this->finishMap(archive),
                        [&](BaseIArchive& input)
                        {
                          EXPECT_TRUE(coll.read(input));
                          EXPECT_EQ(input.getRegisterClassVersion("orvel::BasePlanIndexedColl"), version);
                        });
    EXPECT_EQ(elementOf(coll, PlanIndex(1, 2, 3)).data, 12);
  }
}

TYPED_TEST(BasePlanIndexedCollArchive, OfANewerVersionIsRefusedAndChangesNothing)
{
  TypeParam archive;
  putVersion(archive, "orvel::BasePlanIndexedColl", 2);
  this->openMap(archive, 0);
  const std::string file = this->finishMap(archive);
  for (const auto mode : {g_full, g_data})
  {
    const SkeletonElementPtr element = makeElement();
    PlanColl coll(true);
    coll.insert(PlanIndex(1, 2, 3), element);
    coll.setSerializationMode(mode);
    readStart<TypeParam>(
        file,
        [&](BaseIArchive& input)
        {
          const auto failure = failureOf<ORVELSerializationException>([&] { coll.read(input); });
          EXPECT_EQ(failure.getMessage(),
                    "Version 2 of class orvel::BasePlanIndexedColl is not supported, the highest "
                    "supported version is 1");
          EXPECT_NE(failure.getFunction().find("orvel::BasePlanIndexedColl::read("), std::string::npos);
          EXPECT_FALSE(input.isClassVersionRegistred("orvel::BasePlanIndexedColl"));
        });
    EXPECT_EQ(coll.getNbPlans(), 1U);
    EXPECT_EQ(coll.getStorage(PlanIndex(1, 2, 3)), element);
  }
}

} // namespace
