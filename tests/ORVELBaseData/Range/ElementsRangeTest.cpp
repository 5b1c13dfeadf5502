#include "ORVELBaseData/Range/ElementsRange.h"

#include <limits>
#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/HandWrittenArchive.h>
#include <support/LockRecorder.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

TEST(ElementsRange, IsEmptyAtZeroByDefault)
{
  const ElementsRange range;
  EXPECT_EQ(range.getStartOffset(), 0U);
  EXPECT_EQ(range.getNbElements(), 0U);
  EXPECT_TRUE(range == ElementsRange(0, 0));
}

TEST(ElementsRange, TakesAnyTwoNumbers)
{
  const ElementsRange range(g_largest, g_largest); // its end is beyond 64 bits
  EXPECT_EQ(range.getStartOffset(), g_largest);
  EXPECT_EQ(range.getNbElements(), g_largest);
  const ElementsRange other(3, 4);
  EXPECT_EQ(other.getStartOffset(), 3U);
  EXPECT_EQ(other.getNbElements(), 4U);
}

TEST(ElementsRange, ComparesBothNumbers)
{
  const ElementsRange range(3, 4);
  EXPECT_TRUE(range == ElementsRange(3, 4));
  EXPECT_FALSE(range != ElementsRange(3, 4));
  for (const ElementsRange& other : {ElementsRange(3, 5), ElementsRange(2, 4), ElementsRange(4, 3)})
  {
    EXPECT_FALSE(range == other);
    EXPECT_TRUE(range != other);
  }
}

TEST(ElementsRange, TellsEmptyRunsOfDifferentStartsApart)
{
  EXPECT_FALSE(ElementsRange(1, 0) == ElementsRange(2, 0));
  EXPECT_TRUE(ElementsRange(1, 0) != ElementsRange(2, 0));
  EXPECT_TRUE(ElementsRange(1, 0) < ElementsRange(2, 0));
}

TEST(ElementsRange, OrdersByStartThenByLength)
{
  EXPECT_TRUE(ElementsRange(1, 5) < ElementsRange(2, 0));
  EXPECT_FALSE(ElementsRange(2, 0) < ElementsRange(1, 5));
  EXPECT_TRUE(ElementsRange(1, 5) < ElementsRange(1, 6));
  EXPECT_FALSE(ElementsRange(1, 6) < ElementsRange(1, 5));
  EXPECT_FALSE(ElementsRange(1, 5) < ElementsRange(1, 5));
  EXPECT_TRUE(ElementsRange(1, 0) < ElementsRange(g_largest, 0)); // unsigned
  EXPECT_FALSE(ElementsRange(g_largest, 0) < ElementsRange(1, 0));
}

// The frame

TEST(ElementsRange, TakesTheLocksOfItsUnitEachTimeThatItsNameOrVersionIsAskedFor)
{
  if (!canRecordLocks)
    GTEST_SKIP() << "the sanitizers have locks of their own";
  const void* const nameMutex = onlyLockOf([] { ElementsRange::getTypeName(); });
  EXPECT_EQ(onlyLockOf([] { ElementsRange::getTypeName(); }), nameMutex);
  const void* const versionMutex = onlyLockOf([] { ElementsRange::getVersion(); });
  EXPECT_EQ(onlyLockOf([] { ElementsRange::getVersion(); }), versionMutex);
  EXPECT_NE(versionMutex, nameMutex);
  EXPECT_NE(onlyLockOf([] { BaseSerializationObject::getTypeName(); }), nameMutex); // of another unit
}

TEST(ElementsRange, CopiesBothNumbers)
{
  const ElementsRange range(5, 6);
  EXPECT_TRUE(range.hasCopySupport());
  ElementsRange copy;
  copy.copy(range);
  EXPECT_TRUE(copy == range);
  EXPECT_TRUE(ElementsRange(range) == range);
  ElementsRange assigned;
  EXPECT_EQ(&(assigned = range), &assigned);
  EXPECT_TRUE(assigned == range);
  const std::unique_ptr<BaseDynamicObject> duplicate(range.duplicate());
  EXPECT_TRUE(dynamic_cast<ElementsRange&>(*duplicate) == range);
  EXPECT_TRUE(dynamic_cast<ElementsRange&>(*range.duplicateShared()) == range);
  copy.copy(copy);
  EXPECT_TRUE(copy == range);
}

// Archives

template <class HandWritten>
class ElementsRangeArchive : public testing::Test
{
};

TYPED_TEST_SUITE(ElementsRangeArchive, Formats, );

template <class HandWritten>
std::string archiveOf(ipUInt32 version, std::int64_t startOffset, std::int64_t nbElements)
{
  HandWritten archive;
  putVersion(archive, "orvel::ElementsRange", version);
  archive.integer("_startOffset", startOffset);
  archive.integer("_nbElements", nbElements);
  return archive.file();
}

TYPED_TEST(ElementsRangeArchive, IsWrittenInVersion2)
{
  EXPECT_EQ(fileOf<TypeParam>([](BaseOArchive& archive) { EXPECT_TRUE(ElementsRange(3, 4).write(archive)); }),
            archiveOf<TypeParam>(2, 3, 4));
}

TYPED_TEST(ElementsRangeArchive, IsReadInVersion2)
{
  ElementsRange range(8, 9);
  readFile<TypeParam>(archiveOf<TypeParam>(2, 5000000000, 4),
                      [&](BaseIArchive& archive)
                      {
                        const BoolResult result = range.read(archive);
                        EXPECT_TRUE(result);
                        EXPECT_EQ(result.getMessage(), "");
                      });
  EXPECT_TRUE(range == ElementsRange(5000000000, 4));
}

TYPED_TEST(ElementsRangeArchive, KeepsSixtyFourBits)
{
  const ElementsRange largest(g_largest, g_largest - 1);
  const std::string file = fileOf<TypeParam>([&](BaseOArchive& archive) { largest.write(archive); });
  ElementsRange range;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(range.read(archive)); });
  EXPECT_TRUE(range == largest);
}

TYPED_TEST(ElementsRangeArchive, IsReadInVersion1AndWidened)
{
  ElementsRange range(8, 9);
  readFile<TypeParam>(archiveOf<TypeParam>(1, 3, 4),
                      [&](BaseIArchive& archive) { EXPECT_TRUE(range.read(archive)); });
  EXPECT_TRUE(range == ElementsRange(3, 4));
  readFile<TypeParam>(archiveOf<TypeParam>(1, 4294967295, 4294967295),
                      [&](BaseIArchive& archive) { EXPECT_TRUE(range.read(archive)); });
  EXPECT_TRUE(range == ElementsRange(4294967295, 4294967295));
}

TYPED_TEST(ElementsRangeArchive, HoldsThirtyTwoBitsOnlyInVersion1)
{
  ElementsRange range(8, 9);
  EXPECT_THROW(readStart<TypeParam>(archiveOf<TypeParam>(1, 4294967296, 4),
                                    [&](BaseIArchive& archive) { range.read(archive); }),
               ORVELSerializationException);
  EXPECT_THROW(readStart<TypeParam>(archiveOf<TypeParam>(1, 3, 4294967296),
                                    [&](BaseIArchive& archive) { range.read(archive); }),
               ORVELSerializationException);
  // Both are stored together: the failure between them leaves the old range whole.
  EXPECT_TRUE(range == ElementsRange(8, 9));
}

TYPED_TEST(ElementsRangeArchive, HasTheNewStartAndTheOldLengthIfVersion2FailsBetweenThem)
{
  TypeParam archive;
  putVersion(archive, "orvel::ElementsRange", 2);
  archive.integer("_startOffset", 3);
  archive.text("_nbElements", "four");
  ElementsRange range(8, 9);
  EXPECT_THROW(readStart<TypeParam>(archive.file(), [&](BaseIArchive& input) { range.read(input); }),
               ORVELSerializationException);
  EXPECT_TRUE(range == ElementsRange(3, 9)); // each is read straight into its member
}

TYPED_TEST(ElementsRangeArchive, TakesTheNewestLayoutForVersion0)
{
  ElementsRange range;
  readFile<TypeParam>(archiveOf<TypeParam>(0, 5000000000, 4),
                      [&](BaseIArchive& archive) { EXPECT_TRUE(range.read(archive)); });
  EXPECT_TRUE(range == ElementsRange(5000000000, 4));
}

TYPED_TEST(ElementsRangeArchive, KeepsTheVersionOfTheFirstForAllThatFollow)
{
  TypeParam archive;
  putVersion(archive, "orvel::ElementsRange", 1);
  for (const char* key : {"_startOffset", "_nbElements", "_startOffset", "_nbElements"})
    archive.integer(key, 7);
  std::istringstream stream(archive.file());
  typename TypeParam::IArchive input(stream);
  ElementsRange first;
  ElementsRange second;
  EXPECT_TRUE(first.read(input));
  EXPECT_EQ(input.getRegisterClassVersion("orvel::ElementsRange"), 1U);
  EXPECT_TRUE(second.read(input));
  input.close();
  EXPECT_TRUE(second == ElementsRange(7, 7));
}

TYPED_TEST(ElementsRangeArchive, ComparesKeysWhereTheyAreStored)
{
  TypeParam archive;
  putVersion(archive, "orvel::ElementsRange", 2);
  archive.integer("_nbElements", 3);
  archive.integer("_startOffset", 4);
  ElementsRange range;
  const auto read = [&]
  {
    readFile<TypeParam>(archive.file(), [&](BaseIArchive& input) { range.read(input); });
  };
  if (std::is_same_v<TypeParam, HandWrittenXml>)
    EXPECT_THROW(read(), ORVELSerializationException);
  else
    EXPECT_NO_THROW(read());
}

} // namespace
