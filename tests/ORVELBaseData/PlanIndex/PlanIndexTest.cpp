#include "ORVELBaseData/PlanIndex/PlanIndex.h"

#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/HandWrittenArchive.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

/// z, c and t.
using Coordinates = std::tuple<ipUInt64, ipUInt64, ipUInt64>;

Coordinates coordinatesOf(const PlanIndex& index)
{
  return {index.getZPlanIdx(), index.getCPlanIdx(), index.getTPlanIdx()};
}

/// Every index of coordinates 0, 1, one beyond the signed numbers and the largest of all.
std::vector<PlanIndex> manyIndexes()
{
  const ipUInt64 values[] = {0, 1, ipUInt64{1} << 63U, g_largest};
  std::vector<PlanIndex> indexes;
  for (const ipUInt64 z : values)
    for (const ipUInt64 c : values)
      for (const ipUInt64 t : values)
        indexes.emplace_back(z, c, t);
  return indexes;
}

TEST(PlanIndex, TakesZThenCThenT)
{
  const PlanIndex index(1, 2, 3);
  EXPECT_EQ(index.getZPlanIdx(), 1U);
  EXPECT_EQ(index.getCPlanIdx(), 2U);
  EXPECT_EQ(index.getTPlanIdx(), 3U);
}

TEST(PlanIndex, TakesAnyNumbers)
{
  EXPECT_EQ(coordinatesOf(PlanIndex(g_largest, 0, g_largest)), Coordinates(g_largest, 0, g_largest));
}

TEST(PlanIndex, GivesItsNumbersByValue)
{
  const PlanIndex index(1, 2, 3);
  static_assert(std::is_same_v<decltype(index.getZPlanIdx()), ipUInt64>);
  static_assert(std::is_same_v<decltype(index.getCPlanIdx()), ipUInt64>);
  static_assert(std::is_same_v<decltype(index.getTPlanIdx()), ipUInt64>);
}

TEST(PlanIndex, IsNotZeroedByItsDefaultConstructor)
{
  alignas(PlanIndex) unsigned char memory[sizeof(PlanIndex)];
  std::memset(memory, 0x5A, sizeof memory);
  asm volatile("" : : "r"(memory) : "memory"); // the compiler may not know what the memory holds
  PlanIndex* const index = new (memory) PlanIndex();
  asm volatile("" : : "r"(memory) : "memory");
  const ipUInt64 old = 0x5A5A5A5A5A5A5A5A;
  EXPECT_EQ(coordinatesOf(*index), Coordinates(old, old, old));
  index->~PlanIndex();
}

// Comparisons

TEST(PlanIndex, OrdersByCBeforeZ)
{
  const PlanIndex first(5, 0, 0);
  const PlanIndex second(0, 1, 0);
  EXPECT_TRUE(first < second);
  EXPECT_FALSE(second < first);
}

TEST(PlanIndex, OrdersByTBeforeCAndZ)
{
  const PlanIndex first(5, 5, 0);
  const PlanIndex second(0, 0, 1);
  EXPECT_TRUE(first < second);
  EXPECT_FALSE(second < first);
}

TEST(PlanIndex, OrdersByZWhereTheRestIsEqual)
{
  EXPECT_TRUE(PlanIndex(1, 7, 8) < PlanIndex(2, 7, 8));
  EXPECT_FALSE(PlanIndex(2, 7, 8) < PlanIndex(1, 7, 8));
}

TEST(PlanIndex, OrdersUnsignedNumbers)
{
  EXPECT_TRUE(PlanIndex(1, 0, 0) < PlanIndex(g_largest, 0, 0));
  EXPECT_TRUE(PlanIndex(0, 1, 0) < PlanIndex(0, g_largest, 0));
  EXPECT_TRUE(PlanIndex(0, 0, 1) < PlanIndex(0, 0, g_largest));
}

TEST(PlanIndex, HasAllComparisonsInOneOrder)
{
  const auto rankOf = [](const PlanIndex& index)
  {
    return std::make_tuple(index.getTPlanIdx(), index.getCPlanIdx(), index.getZPlanIdx());
  };
  for (const PlanIndex& left : manyIndexes())
    for (const PlanIndex& right : manyIndexes())
    {
      EXPECT_EQ(left < right, rankOf(left) < rankOf(right));
      EXPECT_EQ(left <= right, rankOf(left) <= rankOf(right));
      EXPECT_EQ(left > right, rankOf(left) > rankOf(right));
      EXPECT_EQ(left >= right, rankOf(left) >= rankOf(right));
      EXPECT_EQ(left == right, coordinatesOf(left) == coordinatesOf(right));
      EXPECT_EQ(left != right, coordinatesOf(left) != coordinatesOf(right));
    }
}

TEST(PlanIndex, ComparesToBool)
{
  const PlanIndex left(1, 2, 3);
  const PlanIndex right(1, 2, 3);
  static_assert(std::is_same_v<decltype(left == right), bool>);
  static_assert(std::is_same_v<decltype(left != right), bool>);
  static_assert(std::is_same_v<decltype(left < right), bool>);
  static_assert(std::is_same_v<decltype(left <= right), bool>);
  static_assert(std::is_same_v<decltype(left > right), bool>);
  static_assert(std::is_same_v<decltype(left >= right), bool>);
}

struct NamedPlanIndex : PlanIndex
{
  using PlanIndex::PlanIndex;

  int name = 0;
};

TEST(PlanIndex, ComparesNothingButItsNumbers)
{
  NamedPlanIndex named(1, 2, 3);
  named.name = 7;
  EXPECT_TRUE(static_cast<PlanIndex&>(named) == PlanIndex(1, 2, 3));
  EXPECT_FALSE(static_cast<PlanIndex&>(named) < PlanIndex(1, 2, 3));
}

TEST(PlanIndex, IsWalkedThroughZFastestAndTSlowest)
{
  const std::set<PlanIndex> indexes = {{1, 1, 1}, {0, 0, 1}, {1, 0, 0}, {0, 1, 1},
                                       {0, 0, 0}, {1, 1, 0}, {0, 1, 0}, {1, 0, 1}};
  std::vector<Coordinates> walked;
  for (const PlanIndex& index : indexes)
    walked.push_back(coordinatesOf(index));
  EXPECT_EQ(walked,
            (std::vector<Coordinates>{
                {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {1, 1, 1}}));
}

// The frame

TEST(PlanIndex, CopiesAllThreeNumbers)
{
  const PlanIndex index(1, g_largest, 3);
  EXPECT_TRUE(index.hasCopySupport());
  PlanIndex copy;
  copy.copy(index);
  EXPECT_TRUE(copy == index);
  EXPECT_TRUE(PlanIndex(index) == index);
  PlanIndex assigned(7, 8, 9);
  EXPECT_EQ(&(assigned = index), &assigned);
  EXPECT_TRUE(assigned == index);
  const std::unique_ptr<BaseDynamicObject> duplicate(index.duplicate());
  EXPECT_TRUE(dynamic_cast<PlanIndex&>(*duplicate) == index);
  EXPECT_TRUE(dynamic_cast<PlanIndex&>(*index.duplicateShared()) == index);
}

TEST(PlanIndex, StandsACopyOfItself)
{
  PlanIndex index(1, 2, 3);
  const PlanIndex& itself = index;
  index.copy(itself);
  index = itself;
  EXPECT_TRUE(index == PlanIndex(1, 2, 3));
}

struct CountingPlanIndex : PlanIndex
{
  using PlanIndex::PlanIndex;

  void copy(const BaseDynamicObject& other) override
  {
    ++nbCopies;
    PlanIndex::copy(other);
  }

  int nbCopies = 0;
};

TEST(PlanIndex, IsAssignedByItsVirtualCopy)
{
  CountingPlanIndex derived(0, 0, 0);
  PlanIndex& index = derived;
  EXPECT_EQ(&(index = PlanIndex(1, 2, 3)), &index);
  EXPECT_EQ(derived.nbCopies, 1);
  EXPECT_TRUE(index == PlanIndex(1, 2, 3));
}

// Archives

template <class HandWritten>
class PlanIndexArchive : public testing::Test
{
};

TYPED_TEST_SUITE(PlanIndexArchive, Formats, );

template <class HandWritten>
std::string archiveOf(ipUInt32 version, std::int64_t z, std::int64_t c, std::int64_t t)
{
  HandWritten archive;
  putVersion(archive, "orvel::PlanIndex", version);
  archive.integer("_zPlanIdx", z);
  archive.integer("_cPlanIdx", c);
  archive.integer("_tPlanIdx", t);
  return archive.file();
}

TYPED_TEST(PlanIndexArchive, IsWrittenInVersion2)
{
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult result = PlanIndex(3, 5000000000, 4).write(archive);
                  EXPECT_TRUE(result);
                  EXPECT_EQ(result.getMessage(), "");
                }),
            archiveOf<TypeParam>(2, 3, 5000000000, 4));
}

TYPED_TEST(PlanIndexArchive, IsReadInVersion2)
{
  PlanIndex index(7, 8, 9);
  readFile<TypeParam>(archiveOf<TypeParam>(2, 5000000000, 6000000000, 7000000000),
                      [&](BaseIArchive& archive)
                      {
                        const BoolResult result = index.read(archive);
                        EXPECT_TRUE(result);
                        EXPECT_EQ(result.getMessage(), "");
                      });
  EXPECT_TRUE(index == PlanIndex(5000000000, 6000000000, 7000000000));
}

TYPED_TEST(PlanIndexArchive, KeepsSixtyFourBits)
{
  const PlanIndex largest(g_largest, g_largest - 1, g_largest - 2);
  const std::string file = fileOf<TypeParam>([&](BaseOArchive& archive) { largest.write(archive); });
  PlanIndex index(0, 0, 0);
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(index.read(archive)); });
  EXPECT_TRUE(index == largest);
}

TYPED_TEST(PlanIndexArchive, IsReadInVersion1AndWidened)
{
  PlanIndex index(g_largest, g_largest, g_largest);
  readFile<TypeParam>(archiveOf<TypeParam>(1, 4294967295, 3, 4294967294),
                      [&](BaseIArchive& archive) { EXPECT_TRUE(index.read(archive)); });
  EXPECT_TRUE(index == PlanIndex(4294967295, 3, 4294967294));
}

TYPED_TEST(PlanIndexArchive, HoldsThirtyTwoBitsOnlyInVersion1)
{
  PlanIndex index(7, 8, 9);
  const std::string files[] = {archiveOf<TypeParam>(1, 4294967296, 2, 3),
                               archiveOf<TypeParam>(1, 1, 4294967296, 3),
                               archiveOf<TypeParam>(1, 1, 2, 4294967296)};
  for (const std::string& file : files)
  {
    EXPECT_THROW(readStart<TypeParam>(file, [&](BaseIArchive& archive) { index.read(archive); }),
                 ORVELSerializationException);
    // The three are stored together: a failure between them leaves the old index whole.
    EXPECT_TRUE(index == PlanIndex(7, 8, 9));
  }
}

TYPED_TEST(PlanIndexArchive, TakesTheNewestLayoutForVersion0)
{
  PlanIndex index(7, 8, 9);
  readFile<TypeParam>(archiveOf<TypeParam>(0, 5000000000, 2, 3),
                      [&](BaseIArchive& archive) { EXPECT_TRUE(index.read(archive)); });
  EXPECT_TRUE(index == PlanIndex(5000000000, 2, 3));
}

TYPED_TEST(PlanIndexArchive, KeepsTheVersionOfTheFirstForAllThatFollow)
{
  TypeParam archive;
  putVersion(archive, "orvel::PlanIndex", 1);
  for (int i = 0; i < 2; ++i)
    for (const char* key : {"_zPlanIdx", "_cPlanIdx", "_tPlanIdx"})
      archive.integer(key, i == 0 ? 7 : 4294967296); // too large for the old layout
  readStart<TypeParam>(archive.file(),
                       [](BaseIArchive& input)
                       {
                         PlanIndex first(0, 0, 0);
                         PlanIndex second(0, 0, 0);
                         EXPECT_TRUE(first.read(input));
                         EXPECT_EQ(input.getRegisterClassVersion("orvel::PlanIndex"), 1U);
                         EXPECT_THROW(second.read(input), ORVELSerializationException);
                         EXPECT_TRUE(first == PlanIndex(7, 7, 7));
                         EXPECT_TRUE(second == PlanIndex(0, 0, 0));
                       });
}

TYPED_TEST(PlanIndexArchive, KeepsWhatWasReadBeforeAFailureInVersion2)
{
  TypeParam file;
  putVersion(file, "orvel::PlanIndex", 2);
  file.integer("_zPlanIdx", 77);
  PlanIndex index(7, 8, 9);
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { index.read(archive); }),
               ORVELSerializationException);
  EXPECT_TRUE(index == PlanIndex(77, 8, 9));
}

TEST(PlanIndexFile, IsThisXmlText)
{
  EXPECT_EQ(fileOf<HandWrittenXml>([](BaseOArchive& archive) { PlanIndex(3, 5000000000, 4).write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::PlanIndex">
    <item key="version">2</item>
  </section>
  <item key="_zPlanIdx">3</item>
  <item key="_cPlanIdx">5000000000</item>
  <item key="_tPlanIdx">4</item>
</orvelArchive>
)");
}

} // namespace
