#include "ORVELBaseData/Pattern/Private/KernelOperations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <new>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "../Kernel/KernelTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

// What KernelXY and KernelXYZ have in common, tested on both. Coordinates are given for x, y and z; a kernel
// of the plane takes the first two.
namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipInt32 g_highest = std::numeric_limits<ipInt32>::max();

using Sizes = std::array<ipUInt32, 3>;

/// Everything that can be seen of a kernel, to compare states by.
template <class KernelType>
auto stateOf(const KernelType& kernel)
{
  return std::make_tuple(tapsOf(kernel), boxOf(kernel), kernel.getCoefSum(), kernel.getAbsCoefSum());
}

template <class KernelType>
void expectBox(const KernelType& kernel, const Coordinates& min, const Sizes& size)
{
  constexpr auto nbAxes = KernelTraits<KernelType>::nbAxes;
  EXPECT_EQ(boxOf(kernel), Box(std::vector<int>(min.data(), min.data() + nbAxes),
                               std::vector<unsigned int>(size.data(), size.data() + nbAxes)));
}

template <class KernelType>
void expectSums(const KernelType& kernel, ipReal32 coefSum, ipReal32 absCoefSum)
{
  EXPECT_EQ(kernel.getCoefSum(), coefSum);
  EXPECT_EQ(kernel.getAbsCoefSum(), absCoefSum);
}

template <class KernelType>
void expectDefaultNaNSums(const KernelType& kernel)
{
  EXPECT_EQ(bitsOf(kernel.getCoefSum()), g_defaultNaNBits);
  EXPECT_EQ(bitsOf(kernel.getAbsCoefSum()), g_defaultNaNBits);
}

template <class Operation>
std::string failureOf(Operation operation)
{
  return messageOf<ORVELBaseDataException>(operation);
}

template <class KernelType>
class Kernel : public ::testing::Test
{
protected:
  using Offset = typename KernelType::OffsetType;

  static Offset at(ipInt32 x, ipInt32 y, ipInt32 z = 0) { return KernelTraits<KernelType>::at({x, y, z}); }

  /// Taps 2 at (0, 0, 0), -0.5 at (4, -1, 2).
  static KernelType makeKernel()
  {
    KernelType kernel;
    kernel.insert(at(0, 0, 0), 2);
    kernel.insert(at(4, -1, 2), -0.5);
    return kernel;
  }

  /// A kernel whose only tap was removed.
  static KernelType makeEmptied()
  {
    KernelType kernel;
    kernel.insert(at(1, 2, 3), 5);
    kernel.remove(at(1, 2, 3));
    return kernel;
  }
};

TYPED_TEST_SUITE(Kernel, Kernels, KernelNames);

TYPED_TEST(Kernel, IsFreshWithoutTapsAndWithZeroBoxAndSums)
{
  const TypeParam kernel;
  EXPECT_EQ(kernel.getNbData(), 0U);
  EXPECT_TRUE(kernel.getDataColl().empty());
  expectBox(kernel, {0, 0, 0}, {0, 0, 0});
  expectSums(kernel, 0, 0);
}

TYPED_TEST(Kernel, HasOperationsOfTheseTypes)
{
  using Place = typename TypeParam::OffsetType;
  EXPECT_TRUE((
      std::is_same<decltype(&TypeParam::insert), void (TypeParam::*)(const Place&, const ipReal32&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::replace),
                            void (TypeParam::*)(const Place&, const ipReal32&)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::remove), void (TypeParam::*)(const Place&)>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(&TypeParam::getValue), ipReal32 (TypeParam::*)(const Place&) const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::exists), ipBool (TypeParam::*)(const Place&) const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::multiply), void (TypeParam::*)(ipReal32)>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getNbData), ipUInt32 (TypeParam::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getDataColl),
                            const std::map<Place, ipReal32>& (TypeParam::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::clear), void (TypeParam::*)()>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getKernelType), eKernelType (TypeParam::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getMinX), ipInt32 (TypeParam::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getSizeX), ipUInt32 (TypeParam::*)() const>::value));
  EXPECT_TRUE((std::is_same<decltype(&TypeParam::getCoefSum), ipReal32 (TypeParam::*)() const>::value));
}

TYPED_TEST(Kernel, RaisesWhenFreshOnGetValueRemoveAndReplace)
{
  TypeParam kernel;
  EXPECT_EQ(failureOf([&] { kernel.getValue(this->at(0, 0)); }),
            "Can't get element value from kernel, it does not exists");
  EXPECT_EQ(failureOf([&] { kernel.remove(this->at(0, 0)); }),
            "Can't remove element from kernel, it does not exists");
  EXPECT_EQ(failureOf([&] { kernel.replace(this->at(0, 0), 1); }),
            "Can't remove element from kernel, it does not exists");
  EXPECT_EQ(stateOf(kernel), stateOf(TypeParam()));
}

TYPED_TEST(Kernel, InsertsTheFirstTapWithABoxOfThatTap)
{
  TypeParam kernel;
  kernel.insert(this->at(3, -2, 7), 1.5);
  EXPECT_EQ(kernel.getNbData(), 1U);
  EXPECT_EQ(kernel.getValue(this->at(3, -2, 7)), 1.5f);
  expectBox(kernel, {3, -2, 7}, {1, 1, 1});
  expectSums(kernel, 1.5, 1.5);
}

TYPED_TEST(Kernel, AddsAnInsertedCoefficientToBothSums)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0), 1.5);
  kernel.insert(this->at(1, 0), -0.5);
  expectSums(kernel, 1, 2);
}

TYPED_TEST(Kernel, KeepsRunningSumsThatMayDifferFromAFreshSummation)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0), 1e8f); // the floats there are 8 apart
  kernel.insert(this->at(1, 0), 1);
  kernel.remove(this->at(0, 0));
  expectSums(kernel, 0, 0); // a fresh summation would give 1
}

TYPED_TEST(Kernel, RefusesATapThatExistsAndStaysUnchanged)
{
  TypeParam kernel = this->makeKernel();
  const auto before = stateOf(kernel);
  EXPECT_EQ(failureOf([&] { kernel.insert(this->at(0, 0, 0), 9); }),
            "Can't insert element into kernel, it already exists");
  EXPECT_EQ(failureOf([&] { kernel.insert(this->at(4, -1, 2), 9); }),
            "Can't insert element into kernel, it already exists");
  EXPECT_EQ(stateOf(kernel), before);
}

TYPED_TEST(Kernel, ReplacesACoefficientInBothSumsAndKeepsTheBox)
{
  TypeParam kernel = this->makeKernel();
  kernel.replace(this->at(0, 0, 0), -3);
  EXPECT_EQ(kernel.getValue(this->at(0, 0, 0)), -3.0f);
  EXPECT_EQ(kernel.getNbData(), 2U);
  expectBox(kernel, {0, -1, 0}, {5, 2, 3});
  expectSums(kernel, -3.5, 3.5);
}

TYPED_TEST(Kernel, SubtractsTheOldCoefficientBeforeItAddsTheNew)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0), 1e8f);
  kernel.replace(this->at(0, 0), 1);
  expectSums(kernel, 1, 1); // the other way round the 1 would be lost
}

TYPED_TEST(Kernel, ReportsAMissingTapOfReplaceWithTheTextOfRemove)
{
  TypeParam kernel = this->makeKernel();
  const auto before = stateOf(kernel);
  EXPECT_EQ(failureOf([&] { kernel.replace(this->at(1, 0, 0), 9); }),
            "Can't remove element from kernel, it does not exists");
  EXPECT_EQ(stateOf(kernel), before);
}

TYPED_TEST(Kernel, ShrinksTheBoxWhenATapIsRemoved)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0, 0), 1);
  kernel.insert(this->at(4, 0, 0), 2);
  kernel.remove(this->at(4, 0, 0));
  EXPECT_EQ(kernel.getNbData(), 1U);
  EXPECT_FALSE(kernel.exists(this->at(4, 0, 0)));
  expectBox(kernel, {0, 0, 0}, {1, 1, 1});
  expectSums(kernel, 1, 1);
}

TYPED_TEST(Kernel, ReportsAMissingTapOfRemoveAndStaysUnchanged)
{
  TypeParam kernel = this->makeKernel();
  const auto before = stateOf(kernel);
  EXPECT_EQ(failureOf([&] { kernel.remove(this->at(1, 0, 0)); }),
            "Can't remove element from kernel, it does not exists");
  EXPECT_EQ(stateOf(kernel), before);
}

TYPED_TEST(Kernel, KeepsTheRoundingResidueWhenEmptied)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0), 1e8f);
  kernel.insert(this->at(1, 0), 1); // lost in the sums
  kernel.remove(this->at(0, 0));
  kernel.remove(this->at(1, 0));
  expectSums(kernel, -1, -1);
}

TYPED_TEST(Kernel, AnswersAlikeInBothEmptyStates)
{
  TypeParam emptied = this->makeEmptied();
  TypeParam cleared = this->makeKernel();
  cleared.clear();
  for (const TypeParam* kernel : {&emptied, &cleared})
  {
    EXPECT_EQ(kernel->getNbData(), 0U);
    expectSums(*kernel, 0, 0);
    EXPECT_FALSE(kernel->exists(this->at(1, 2, 3)));
    EXPECT_EQ(failureOf([&] { kernel->getValue(this->at(1, 2, 3)); }),
              "Can't get element value from kernel, it does not exists");
  }
}

TYPED_TEST(Kernel, FindsTheValueOfATap)
{
  const TypeParam kernel = this->makeKernel();
  EXPECT_EQ(kernel.getValue(this->at(0, 0, 0)), 2.0f);
  EXPECT_EQ(kernel.getValue(this->at(4, -1, 2)), -0.5f);
}

TYPED_TEST(Kernel, ReportsAMissingTapOfGetValue)
{
  const TypeParam kernel = this->makeKernel();
  EXPECT_EQ(failureOf([&] { kernel.getValue(this->at(-1, 4, 2)); }),
            "Can't get element value from kernel, it does not exists");
}

TYPED_TEST(Kernel, TellsWhichTapsExist)
{
  const TypeParam kernel = this->makeKernel();
  EXPECT_TRUE(kernel.exists(this->at(0, 0, 0)));
  EXPECT_TRUE(kernel.exists(this->at(4, -1, 2)));
  EXPECT_FALSE(kernel.exists(this->at(-1, 4, 2)));
}

TYPED_TEST(Kernel, MultipliesCoefficientsAndSumsAndKeepsTheBox)
{
  TypeParam kernel = this->makeKernel();
  kernel.multiply(4);
  EXPECT_EQ(kernel.getValue(this->at(0, 0, 0)), 8.0f);
  EXPECT_EQ(kernel.getValue(this->at(4, -1, 2)), -2.0f);
  expectSums(kernel, 6, 10);
  expectBox(kernel, {0, -1, 0}, {5, 2, 3});
}

TYPED_TEST(Kernel, TurnsTheSignOfTheAbsoluteSumByANegativeFactor)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0, 0), 2);
  kernel.multiply(-1);
  EXPECT_EQ(kernel.getValue(this->at(0, 0, 0)), -2.0f);
  expectSums(kernel, -2, -2);
}

TYPED_TEST(Kernel, MultipliesTheSumsThemselves)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0), 1e8f);
  kernel.insert(this->at(1, 0), 1);
  kernel.remove(this->at(0, 0)); // leaves the sums at 0
  kernel.multiply(3);
  EXPECT_EQ(kernel.getValue(this->at(1, 0)), 3.0f);
  expectSums(kernel, 0, 0);
}

TYPED_TEST(Kernel, KeepsTapsOfZero)
{
  TypeParam kernel = this->makeKernel();
  kernel.multiply(0);
  EXPECT_EQ(kernel.getNbData(), 2U);
  EXPECT_EQ(kernel.getValue(this->at(0, 0, 0)), 0.0f);
  expectSums(kernel, 0, 0);
}

TYPED_TEST(Kernel, IsClearedToTheFreshState)
{
  for (TypeParam kernel : {this->makeKernel(), this->makeEmptied()})
  {
    kernel.clear();
    EXPECT_EQ(stateOf(kernel), stateOf(TypeParam()));
  }
}

TYPED_TEST(Kernel, TakesInfinitiesAsCoefficients)
{
  TypeParam kernel = this->makeKernel();
  kernel.insert(this->at(1, 1, 1), -std::numeric_limits<float>::infinity());
  expectSums(kernel, -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity());
  kernel.remove(this->at(1, 1, 1)); // infinity minus infinity: the sums are running ones
  expectDefaultNaNSums(kernel);
}

TYPED_TEST(Kernel, KeepsNaNInTheSumsWhenItIsReplaced)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0), std::numeric_limits<float>::quiet_NaN());
  kernel.replace(this->at(0, 0), 1);
  EXPECT_EQ(kernel.getValue(this->at(0, 0)), 1.0f);
  expectDefaultNaNSums(kernel);
}

TYPED_TEST(Kernel, TakesArgumentsThatAreItsOwn)
{
  TypeParam kernel = this->makeKernel();
  const auto& own = *kernel.getDataColl().find(this->at(0, 0, 0));
  kernel.insert(this->at(1, 1, 1), own.second);
  EXPECT_EQ(kernel.getValue(this->at(1, 1, 1)), 2.0f);
  kernel.replace(own.first, own.second);
  EXPECT_EQ(kernel.getValue(this->at(0, 0, 0)), 2.0f);
  expectSums(kernel, 3.5, 4.5);
  kernel.remove(own.first); // the offset dies with its tap
  EXPECT_FALSE(kernel.exists(this->at(0, 0, 0)));
  expectBox(kernel, {1, -1, 1}, {4, 3, 2});
  expectSums(kernel, 1.5, 2.5);
}

TYPED_TEST(Kernel, TakesNaNAsACoefficientThatPoisonsBothSums)
{
  TypeParam kernel = this->makeKernel();
  kernel.insert(this->at(1, 1, 1), std::numeric_limits<float>::quiet_NaN());
  EXPECT_TRUE(std::isnan(kernel.getValue(this->at(1, 1, 1))));
  expectDefaultNaNSums(kernel);
  kernel.remove(this->at(1, 1, 1));
  expectDefaultNaNSums(kernel);
}

TYPED_TEST(Kernel, KeepsAGivenNaNAndHasOneFormOfItInBothSums)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0), floatOf(0xFFC12345));
  expectDefaultNaNSums(kernel);
  kernel.insert(this->at(1, 0), floatOf(0xFFC00000));
  expectDefaultNaNSums(kernel);
  kernel.replace(this->at(1, 0), floatOf(0x7FC00001));
  expectDefaultNaNSums(kernel);
  EXPECT_EQ(bitsOf(kernel.getValue(this->at(0, 0))), 0xFFC12345U);
  EXPECT_EQ(bitsOf(kernel.getValue(this->at(1, 0))), 0x7FC00001U);
  kernel.remove(this->at(0, 0));
  expectDefaultNaNSums(kernel);
}

TYPED_TEST(Kernel, HasOneFormOfNaNForInfinityLessInfinity)
{
  constexpr float infinity = std::numeric_limits<float>::infinity();
  TypeParam kernel;
  kernel.insert(this->at(0, 0), infinity);
  kernel.insert(this->at(1, 0), -infinity);
  EXPECT_EQ(bitsOf(kernel.getCoefSum()), g_defaultNaNBits);
  EXPECT_EQ(kernel.getAbsCoefSum(), infinity);
  kernel.remove(this->at(1, 0));
  expectDefaultNaNSums(kernel);
}

TYPED_TEST(Kernel, HasOneFormOfNaNInProducts)
{
  TypeParam kernel;
  kernel.insert(this->at(0, 0), std::numeric_limits<float>::infinity());
  kernel.multiply(0);
  EXPECT_EQ(bitsOf(kernel.getValue(this->at(0, 0))), g_defaultNaNBits);
  expectDefaultNaNSums(kernel);
  kernel.insert(this->at(1, 0), floatOf(0xFFC12345));
  kernel.multiply(floatOf(0xFFC00001));
  EXPECT_EQ(bitsOf(kernel.getValue(this->at(0, 0))), g_defaultNaNBits);
  EXPECT_EQ(bitsOf(kernel.getValue(this->at(1, 0))), g_defaultNaNBits);
  expectDefaultNaNSums(kernel);
}

TYPED_TEST(Kernel, IsWalkedInAscendingOrderOfOffsets)
{
  TypeParam kernel;
  for (const int i : {3, 0, 4, 1, 2})
    kernel.insert(this->at(-i, i, 0), static_cast<float>(i));
  float expected = 0;
  for (const auto& tap : kernel.getDataColl())
    EXPECT_EQ(tap.second, expected++);
  EXPECT_EQ(expected, 5);
}

TYPED_TEST(Kernel, AgreesWithASimpleModelUnderRandomChanges)
{
  std::mt19937 random(20241);
  const auto draw = [&random](int lowest, int highest)
  {
    return std::uniform_int_distribution<int>(lowest, highest)(random);
  };
  TypeParam kernel;
  ExpectedKernel<KernelTraits<TypeParam>::nbAxes> model;
  for (int step = 0; step < 3000; ++step)
  {
    const Coordinates drawn = {draw(-3, 3), draw(-3, 3), draw(-2, 2)};
    const auto offset = this->at(drawn[0], drawn[1], drawn[2]);
    typename decltype(model)::Place place;
    std::copy_n(drawn.begin(), place.size(), place.begin());
    const auto value = static_cast<float>(draw(-900, 900)) / 7;
    ASSERT_EQ(kernel.exists(offset), model.has(place));
    if (!model.has(place))
    {
      kernel.insert(offset, value);
      model.insert(place, value);
    }
    else if (draw(0, 3) == 0)
    {
      kernel.replace(offset, value);
      model.replace(place, value);
    }
    else
    {
      kernel.remove(offset);
      model.remove(place);
    }
    if (kernel.getNbData() != 0) // the box of an emptied kernel has tests of its own
    {
      ASSERT_EQ(model.differenceTo(kernel), "") << "step " << step;
    }
  }
}

TYPED_TEST(Kernel, IsCopiedWithItsCachesAsTheyStand)
{
  for (TypeParam source : {TypeParam(), this->makeKernel(), this->makeEmptied()})
  {
    source.multiply(-1); // an absolute sum that no fresh summation gives
    const TypeParam constructed(source);
    TypeParam assigned = this->makeKernel();
    assigned = source;
    TypeParam copied = this->makeKernel();
    copied.copy(source);
    EXPECT_EQ(stateOf(constructed), stateOf(source));
    EXPECT_EQ(stateOf(assigned), stateOf(source));
    EXPECT_EQ(stateOf(copied), stateOf(source));
  }
}

template <class KernelType>
struct CountingKernel : KernelType
{
  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    KernelType::copy(other);
  }

  int nbCopies = 0;
};

TYPED_TEST(Kernel, IsAssignedByItsVirtualCopy)
{
  CountingKernel<TypeParam> derived;
  TypeParam& kernel = derived;
  EXPECT_EQ(&(kernel = this->makeKernel()), &kernel);
  EXPECT_EQ(derived.nbCopies, 1);
  EXPECT_EQ(stateOf(kernel), stateOf(this->makeKernel()));
}

TYPED_TEST(Kernel, SharesNothingWithItsCopy)
{
  const TypeParam source = this->makeKernel();
  const auto before = stateOf(source);
  TypeParam copied(source);
  copied.replace(this->at(0, 0, 0), 100);
  copied.insert(this->at(9, 9, 9), 1);
  EXPECT_EQ(stateOf(source), before);
}

TYPED_TEST(Kernel, KeepsItsVeryTapsInACopyOfItself)
{
  TypeParam kernel = this->makeKernel();
  const auto* const tap = &*kernel.getDataColl().begin();
  failAllocationAfter(0); // there is nothing to make
  kernel.copy(kernel);
  failNoAllocation();
  EXPECT_EQ(&*kernel.getDataColl().begin(), tap);
  EXPECT_EQ(stateOf(kernel), stateOf(this->makeKernel()));
}

TYPED_TEST(Kernel, IsFreshWhenItIsConstructedFromItself)
{
  alignas(TypeParam) unsigned char storage[sizeof(TypeParam)];
  std::memset(storage, 0x5A, sizeof storage);
  auto* const place = reinterpret_cast<TypeParam*>(storage);
  TypeParam* const kernel = new (storage) TypeParam(*place); // not looked at, as it is the same
  EXPECT_EQ(stateOf(*kernel), stateOf(TypeParam()));
  kernel->~TypeParam();
}

TYPED_TEST(Kernel, IsUnchangedWhenThereIsNoMemoryForACopy)
{
  TypeParam source;
  for (int i = 0; i < 3; ++i)
    source.insert(this->at(i, i, i), 1);
  TypeParam kernel = this->makeKernel();
  const auto before = stateOf(kernel);
  const std::size_t nbFailures =
      failAtEachAllocation([&] { kernel = source; }, [&] { EXPECT_EQ(stateOf(kernel), before); });
  EXPECT_EQ(nbFailures, 3U); // its taps
  EXPECT_EQ(stateOf(kernel), stateOf(source));
}

TYPED_TEST(Kernel, IsUnchangedWhenThereIsNoMemoryForATap)
{
  TypeParam kernel = this->makeKernel();
  const auto before = stateOf(kernel);
  const auto offset = this->at(9, 9, 9);
  const std::size_t nbFailures =
      failAtEachAllocation([&] { kernel.insert(offset, 7); }, [&] { EXPECT_EQ(stateOf(kernel), before); });
  EXPECT_EQ(nbFailures, 1U); // the tap itself
  EXPECT_EQ(kernel.getValue(offset), 7.0f);
}

TYPED_TEST(Kernel, LeaksNothingWhenItsDuplicateRunsOutOfMemory)
{
  const TypeParam source = this->makeKernel();
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const auto check = [nbBlocks]
  {
    EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  };
  // The kernel and two taps.
  EXPECT_EQ(failAtEachAllocation([&] { delete source.duplicate(); }, check), 3U);
  EXPECT_EQ(failAtEachAllocation([&] { source.duplicateShared(); }, check), 3U);
  check();
}

/// Puts kernels into archives by hand, in one of the formats.
template <class KernelAndFormat>
class ArchivedKernel : public ::testing::Test
{
protected:
  using KernelType = typename KernelAndFormat::first_type;
  using HandWritten = typename KernelAndFormat::second_type;
  using Names = KernelTraits<KernelType>;

  struct Tap
  {
    Coordinates place;
    ipReal32 value;
  };

  static typename KernelType::OffsetType at(ipInt32 x, ipInt32 y, ipInt32 z) { return Names::at({x, y, z}); }

  static KernelType makeKernel()
  {
    KernelType kernel;
    kernel.insert(at(0, 0, 0), 2);
    kernel.insert(at(4, -1, 2), -0.5);
    return kernel;
  }

  /// \return an archive that holds so far the versions of a kernel and of its base
  static HandWritten makeFile(ipUInt32 version, ipUInt32 baseVersion = 1)
  {
    HandWritten archive;
    putVersion(archive, "orvel::BaseKernel", baseVersion);
    putVersion(archive, std::string("orvel::") + Names::name, version);
    return archive;
  }

  /// \param version of the first offset of the archive; 0 for a later one, which has no record of it
  static void putTap(HandWritten& archive, const Tap& tap, ipUInt32 version)
  {
    archive.openObject("key");
    if (version != 0)
      putVersion(archive, std::string("orvel::") + Names::offsetName, version);
    put(archive, tap.place, {"_xOffset", "_yOffset", "_zOffset"});
    archive.close();
    archive.real32("value", tap.value);
  }

  static void openTaps(HandWritten& archive)
  {
    archive.openSection("_dataColl");
    archive.openSection("map");
  }

  static void closeTaps(HandWritten& archive)
  {
    archive.close();
    archive.close();
  }

  /// \param isFirst whether these are the first offsets of the archive
  static void putTaps(HandWritten& archive, const std::vector<Tap>& taps, bool isFirst = true)
  {
    openTaps(archive);
    archive.integer("size", static_cast<std::int64_t>(taps.size()));
    for (const Tap& tap : taps)
    {
      putTap(archive, tap, isFirst ? 1 : 0);
      isFirst = false;
    }
    closeTaps(archive);
  }

  static void putBox(HandWritten& archive, const Coordinates& min, const Sizes& size)
  {
    put(archive, min, {"_minX", "_minY", "_minZ"});
    put(archive, size, {"_sizeX", "_sizeY", "_sizeZ"});
  }

  static void putVersion2(HandWritten& archive, const std::vector<Tap>& taps, const Coordinates& min,
                          const Sizes& size, ipReal32 coefSum, ipReal32 absCoefSum, bool isFirst = true)
  {
    putTaps(archive, taps, isFirst);
    putBox(archive, min, size);
    archive.real32("_coefSum", coefSum);
    archive.real32("_absCoefSum", absCoefSum);
  }

  /// The taps 1.5 and -0.5 in a layout without the sum of absolute values.
  static void putVersion1(HandWritten& archive, bool isFirst = true)
  {
    putTaps(archive, {{{0, 0, 0}, 1.5}, {{1, 0, 0}, -0.5}}, isFirst);
    putBox(archive, {0, 0, 0}, {2, 1, 1});
    archive.real32("_coefSum", 1);
  }

  static void expectReadFromVersion1(const KernelType& kernel)
  {
    EXPECT_EQ(kernel.getNbData(), 2U);
    EXPECT_EQ(kernel.getValue(at(0, 0, 0)), 3.0f);
    EXPECT_EQ(kernel.getValue(at(1, 0, 0)), 0.0f);
    expectSums(kernel, 1, 0); // the plain sum stays as it was stored
    expectBox(kernel, {0, 0, 0}, {2, 1, 1});
  }

  static std::string fileOf(const std::vector<KernelType>& kernels)
  {
    return test::fileOf<HandWritten>(
        [&](BaseOArchive& archive)
        {
          for (const KernelType& kernel : kernels)
            EXPECT_TRUE(kernel.write(archive));
        });
  }

  /// \return the kernels of a file that holds so many, read over kernels that have taps
  static std::vector<KernelType> readAll(const std::string& file, std::size_t nbKernels)
  {
    std::vector<KernelType> kernels(nbKernels, makeKernel());
    readFile<HandWritten>(file,
                          [&](BaseIArchive& archive)
                          {
                            for (KernelType& kernel : kernels)
                            {
                              const BoolResult read = kernel.read(archive);
                              EXPECT_TRUE(read);
                              EXPECT_EQ(read.getMessage(), "");
                            }
                          });
    return kernels;
  }

  static KernelType readOne(const HandWritten& file) { return readAll(file.file(), 1).front(); }

  /// \return what is left of makeKernel() after a file was refused
  static KernelType failToRead(const HandWritten& file)
  {
    KernelType kernel = makeKernel();
    readStart<HandWritten>(file.file(), [&](BaseIArchive& archive)
                           { EXPECT_THROW(kernel.read(archive), ORVELSerializationException); });
    return kernel;
  }

private:
  template <class Number>
  static void put(HandWritten& archive, const std::array<Number, 3>& numbers,
                  const std::array<const char*, 3>& keys)
  {
    for (std::size_t axis = 0; axis < Names::nbAxes; ++axis)
      archive.integer(keys[axis], numbers[axis]);
  }
};

using KernelsAndFormats =
    ::testing::Types<std::pair<KernelXY, HandWrittenXml>, std::pair<KernelXY, HandWrittenBinary>,
                     std::pair<KernelXYZ, HandWrittenXml>, std::pair<KernelXYZ, HandWrittenBinary>>;

struct KernelAndFormatNames
{
  template <class KernelAndFormat>
  static std::string GetName(int)
  {
    return std::string(KernelTraits<typename KernelAndFormat::first_type>::name) +
           (std::is_same<typename KernelAndFormat::second_type, HandWrittenXml>::value ? "Xml" : "Binary");
  }
};

TYPED_TEST_SUITE(ArchivedKernel, KernelsAndFormats, KernelAndFormatNames);

TYPED_TEST(ArchivedKernel, HoldsVersionsTapsBoxAndSumsInOrder)
{
  auto expected = this->makeFile(2);
  // In the order of the offsets: by z, then by y.
  if (TestFixture::Names::nbAxes == 2)
    this->putVersion2(expected, {{{4, -1, 2}, -0.5}, {{0, 0, 0}, 2}}, {0, -1, 0}, {5, 2, 3}, 1.5, 2.5);
  else
    this->putVersion2(expected, {{{0, 0, 0}, 2}, {{4, -1, 2}, -0.5}}, {0, -1, 0}, {5, 2, 3}, 1.5, 2.5);
  EXPECT_EQ(this->fileOf({this->makeKernel()}), expected.file());
}

TYPED_TEST(ArchivedKernel, ComesBackInBothEmptyStatesAndWithManyTaps)
{
  typename TypeParam::first_type emptied;
  emptied.insert(this->at(1, 2, 3), 1e8f);
  emptied.insert(this->at(4, 5, 6), 1);
  emptied.remove(this->at(1, 2, 3));
  emptied.remove(this->at(4, 5, 6)); // leaves a residue in the sums
  typename TypeParam::first_type large;
  for (int y = -50; y < 50; ++y)
    for (int x = -50; x < 50; ++x)
      large.insert(this->at(x, y, 0), static_cast<float>(x) / 3 + static_cast<float>(y) / 7);
  const std::vector<typename TypeParam::first_type> written = {{}, emptied, this->makeKernel(), large};
  const auto read = this->readAll(this->fileOf(written), written.size());
  for (std::size_t i = 0; i < written.size(); ++i)
    EXPECT_TRUE(stateOf(read[i]) == stateOf(written[i])) << i;
  EXPECT_EQ(read.back().getNbData(), 10000U);
}

TYPED_TEST(ArchivedKernel, HoldsTheTwoEmptyStatesApart)
{
  auto fresh = this->makeFile(2);
  this->putVersion2(fresh, {}, {0, 0, 0}, {0, 0, 0}, 0, 0);
  EXPECT_EQ(this->fileOf({typename TypeParam::first_type()}), fresh.file());

  auto emptied = this->makeFile(2);
  this->putVersion2(emptied, {}, {g_highest, g_highest, g_highest}, {2, 2, 2}, 0, 0);
  typename TypeParam::first_type kernel;
  kernel.insert(this->at(1, 2, 3), 5);
  kernel.remove(this->at(1, 2, 3));
  EXPECT_EQ(this->fileOf({kernel}), emptied.file());
}

TYPED_TEST(ArchivedKernel, LosesWhatItHeldWhenItIsRead)
{
  auto file = this->makeFile(2);
  this->putVersion2(file, {{{7, 8, 9}, 1}}, {7, 8, 9}, {1, 1, 1}, 1, 1);
  const auto kernel = this->readOne(file);
  EXPECT_EQ(kernel.getNbData(), 1U);
  EXPECT_EQ(kernel.getValue(this->at(7, 8, 9)), 1.0f);
}

TYPED_TEST(ArchivedKernel, TakesTheCachesAsTheyAreStored)
{
  auto file = this->makeFile(2);
  this->putVersion2(file, {{{7, 8, 9}, 1}}, {-1, -2, -3}, {40, 50, 60}, 17, -18);
  const auto kernel = this->readOne(file);
  expectBox(kernel, {-1, -2, -3}, {40, 50, 60});
  expectSums(kernel, 17, -18);
}

TYPED_TEST(ArchivedKernel, GoesOnFromTheCachesAsTheyAreStored)
{
  auto file = this->makeFile(2);
  this->putVersion2(file, {{{7, 8, 9}, 1}}, {-1, -2, -3}, {40, 50, 60}, 17, -18);
  auto kernel = this->readOne(file);
  kernel.insert(this->at(100, -10, 5), -4);
  expectBox(kernel, {-1, -10, -3}, {102, 58, 60});
  expectSums(kernel, 13, -14);
  kernel.remove(this->at(100, -10, 5)); // finds the true box
  expectBox(kernel, {7, 8, 9}, {1, 1, 1});
  expectSums(kernel, 17, -18);
}

TYPED_TEST(ArchivedKernel, CountsARepeatedOffsetAsOneTapWithTheLaterCoefficient)
{
  auto file = this->makeFile(2);
  this->putVersion2(file, {{{1, 1, 1}, 4}, {{2, 2, 2}, 5}, {{1, 1, 1}, 6}}, {1, 1, 1}, {2, 2, 2}, 15, 15);
  const auto kernel = this->readOne(file);
  EXPECT_EQ(kernel.getNbData(), 2U);
  EXPECT_EQ(kernel.getValue(this->at(1, 1, 1)), 6.0f);
  EXPECT_EQ(kernel.getValue(this->at(2, 2, 2)), 5.0f);
}

TYPED_TEST(ArchivedKernel, SortsTapsThatAreStoredInAnotherOrder)
{
  auto file = this->makeFile(2);
  this->putVersion2(file, {{{2, 2, 2}, 3}, {{1, 1, 1}, 2}, {{0, 0, 0}, 1}}, {0, 0, 0}, {3, 3, 3}, 6, 6);
  const auto kernel = this->readOne(file);
  float expected = 1;
  for (const auto& tap : kernel.getDataColl())
    EXPECT_EQ(tap.second, expected++);
  EXPECT_EQ(expected, 4);
}

TYPED_TEST(ArchivedKernel, RewritesTheCoefficientsOfOldVersions)
{
  for (const ipUInt32 version : {0U, 1U})
  {
    auto file = this->makeFile(version);
    this->putVersion1(file);
    this->expectReadFromVersion1(this->readOne(file));
  }
}

TYPED_TEST(ArchivedKernel, ReadsLaterKernelsUnderTheOldVersionOfTheFirst)
{
  auto file = this->makeFile(1);
  this->putVersion1(file);
  this->putVersion1(file, false);
  for (const auto& kernel : this->readAll(file.file(), 2))
    this->expectReadFromVersion1(kernel);
}

TYPED_TEST(ArchivedKernel, TurnsOldNaNCoefficientsIntoNaN)
{
  auto file = this->makeFile(1);
  this->putTaps(file, {{{0, 0, 0}, std::numeric_limits<float>::quiet_NaN()}});
  this->putBox(file, {0, 0, 0}, {1, 1, 1});
  file.real32("_coefSum", 1);
  const auto kernel = this->readOne(file);
  EXPECT_EQ(bitsOf(kernel.getValue(this->at(0, 0, 0))), g_defaultNaNBits);
  expectSums(kernel, 1, 0);
}

TYPED_TEST(ArchivedKernel, IsReadUnderALowerVersionOfItsBase)
{
  auto file = this->makeFile(2, 0);
  this->putVersion2(file, {{{7, 8, 9}, 1}}, {7, 8, 9}, {1, 1, 1}, 1, 1);
  EXPECT_TRUE(this->readOne(file).exists(this->at(7, 8, 9)));
}

TYPED_TEST(ArchivedKernel, KeepsWhatWasReadBeforeAFailure)
{
  auto file = this->makeFile(2);
  this->putTaps(file, {{{7, 8, 9}, 1}});
  file.integer("_minX", 7);
  const auto kernel = this->failToRead(file);
  EXPECT_EQ(kernel.getNbData(), 1U);
  EXPECT_TRUE(kernel.exists(this->at(7, 8, 9)));
  expectBox(kernel, {7, -1, 0}, {5, 2, 3});
  expectSums(kernel, 1.5, 2.5);
}

TYPED_TEST(ArchivedKernel, HasLostItsTapsWhenTheirNumberIsMissing)
{
  auto file = this->makeFile(2);
  this->openTaps(file);
  this->closeTaps(file);
  const auto kernel = this->failToRead(file);
  EXPECT_EQ(kernel.getNbData(), 0U);
  expectBox(kernel, {0, -1, 0}, {5, 2, 3});
  expectSums(kernel, 1.5, 2.5);
}

TYPED_TEST(ArchivedKernel, KeepsTheTapsReadBeforeAFailure)
{
  auto file = this->makeFile(2);
  this->openTaps(file);
  file.integer("size", 2);
  this->putTap(file, {{7, 8, 9}, 4}, 1);
  this->closeTaps(file); // the second tap is missing
  const auto kernel = this->failToRead(file);
  EXPECT_EQ(kernel.getNbData(), 1U);
  EXPECT_EQ(kernel.getValue(this->at(7, 8, 9)), 4.0f);
  expectBox(kernel, {0, -1, 0}, {5, 2, 3});
  expectSums(kernel, 1.5, 2.5);
}

TYPED_TEST(ArchivedKernel, RefusesOffsetsOfAHigherVersion)
{
  auto file = this->makeFile(2);
  this->openTaps(file);
  file.integer("size", 1);
  this->putTap(file, {{7, 8, 9}, 4}, 2);
  this->closeTaps(file);
  const auto kernel = this->failToRead(file);
  EXPECT_EQ(kernel.getNbData(), 0U);
  expectSums(kernel, 1.5, 2.5);
}

TYPED_TEST(ArchivedKernel, KeepsOldCoefficientsAsTheyAreUntilItsSumIsRead)
{
  auto file = this->makeFile(1);
  this->putTaps(file, {{{0, 0, 0}, 1.5}, {{1, 0, 0}, -0.5}});
  this->putBox(file, {0, 0, 0}, {2, 1, 1});
  const auto kernel = this->failToRead(file);
  EXPECT_EQ(kernel.getValue(this->at(0, 0, 0)), 1.5f);
  EXPECT_EQ(kernel.getValue(this->at(1, 0, 0)), -0.5f);
  expectBox(kernel, {0, 0, 0}, {2, 1, 1});
  expectSums(kernel, 1.5, 2.5);
}

TYPED_TEST(ArchivedKernel, KeepsItsAbsoluteSumWhenThatAloneIsMissing)
{
  auto file = this->makeFile(2);
  this->putTaps(file, {{{7, 8, 9}, 1}});
  this->putBox(file, {7, 8, 9}, {1, 1, 1});
  file.real32("_coefSum", 1);
  const auto kernel = this->failToRead(file);
  EXPECT_EQ(kernel.getValue(this->at(7, 8, 9)), 1.0f);
  expectBox(kernel, {7, 8, 9}, {1, 1, 1});
  expectSums(kernel, 1, 2.5);
}

TYPED_TEST(ArchivedKernel, RefusesASizeBeyondWhatTheArchiveHolds)
{
  auto file = this->makeFile(2);
  this->openTaps(file);
  file.integer("size", 4294967295);
  this->closeTaps(file);
  EXPECT_EQ(this->failToRead(file).getNbData(), 0U);
}

} // namespace
