#include "ORVELBaseData/DataItem/BaseDataItem.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/SampleNode.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

// The abstract roots: items, leaves and leaf collections

/// Implements the pure operations that all items have.
template <class Root>
struct WithFrame : Root
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return {}; }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
};

/// A root, a class that implements its pure operations, and a concrete class of the library.
struct ItemSubject
{
  using Root = BaseDataItem;
  using Base = BaseSerializationObject;
  using Concrete = DataItemMap;
  struct Whole : WithFrame<Root>
  {
    eDataItemType getDataItemType() const override { return eDataItemType::eDIT_Node; }
  };
  static constexpr const char* className = "orvel::BaseDataItem";
  static constexpr const char* table = "_ZTVN5orvel12BaseDataItemE";
  static constexpr std::size_t nbOperations = 13;
  static constexpr eDataItemType::domain kind = eDataItemType::eDIT_Node; // of Whole
  static constexpr bool isUnderAnotherRoot = false;
};

struct LeafSubject
{
  using Root = BaseDataItemLeaf;
  using Base = BaseDataItem;
  using Concrete = DataItemLeaf<ipInt32>;
  struct Whole : WithFrame<Root>
  {
    eDataItemValueType getDataItemValueType() const override { return eDataItemValueType::eDIVT_Path; }
  };
  static constexpr const char* className = "orvel::BaseDataItemLeaf";
  static constexpr const char* table = "_ZTVN5orvel16BaseDataItemLeafE";
  static constexpr std::size_t nbOperations = 14;
  static constexpr eDataItemType::domain kind = eDataItemType::eDIT_Leaf;
  static constexpr bool isUnderAnotherRoot = true;
};

struct LeafCollSubject
{
  using Root = BaseDataItemLeafColl;
  using Base = BaseDataItem;
  using Concrete = DataItemLeafColl<ipInt32>;
  struct Whole : WithFrame<Root>
  {
    eDataItemValueType getDataItemValueType() const override { return eDataItemValueType::eDIVT_Path; }
  };
  static constexpr const char* className = "orvel::BaseDataItemLeafColl";
  static constexpr const char* table = "_ZTVN5orvel20BaseDataItemLeafCollE";
  static constexpr std::size_t nbOperations = 14;
  static constexpr eDataItemType::domain kind = eDataItemType::eDIT_LeafColl;
  static constexpr bool isUnderAnotherRoot = true;
};

template <class Subject>
class DataItemRoot : public ::testing::Test
{
};

using Subjects = ::testing::Types<ItemSubject, LeafSubject, LeafCollSubject>;
TYPED_TEST_SUITE(DataItemRoot, Subjects, );

TYPED_TEST(DataItemRoot, IsAbstractAndHasNoFieldOfItsOwn)
{
  using Root = typename TypeParam::Root;
  EXPECT_TRUE(std::is_abstract<Root>::value);
  EXPECT_TRUE((std::is_base_of<typename TypeParam::Base, Root>::value));
  EXPECT_TRUE(std::has_virtual_destructor<Root>::value);
  EXPECT_EQ(sizeof(Root), sizeof(void*)); // the pointer to the virtual operations
}

TYPED_TEST(DataItemRoot, IsWholeWithThePureOperations)
{
  typename TypeParam::Whole item;
  item.copy(typename TypeParam::Whole()); // what a derived copy calls first
  EXPECT_EQ(item.getClassName(), TypeParam::className);
  EXPECT_EQ(item.getDataItemType(), TypeParam::kind);
}

TYPED_TEST(DataItemRoot, LeavesTheseOperationsPure)
{
  std::vector<std::size_t> pure = {0, 1, 3, 4, 5, 6, 7}; // the destructor, creation and duplication
  pure.push_back(TypeParam::nbOperations - 1);           // the one that the root adds
  const AbstractTable table(TypeParam::table);
  for (std::size_t index = 0; index < TypeParam::nbOperations; ++index)
    EXPECT_EQ(table.isPure(index), std::count(pure.begin(), pure.end(), index) == 1) << index;
}

template <class S, class F>
struct Case
{
  using Subject = S;
  using Format = F;
};

template <class Case>
class ArchivedDataItemRoot : public ::testing::Test
{
protected:
  static std::string archiveOfVersions()
  {
    typename Case::Format archive;
    putVersion(archive, "orvel::BaseDataItem", 1);
    if (Case::Subject::isUnderAnotherRoot)
      putVersion(archive, Case::Subject::className, 1);
    return archive.file();
  }
};

using Cases =
    ::testing::Types<Case<ItemSubject, HandWrittenXml>, Case<ItemSubject, HandWrittenBinary>,
                     Case<LeafSubject, HandWrittenXml>, Case<LeafSubject, HandWrittenBinary>,
                     Case<LeafCollSubject, HandWrittenXml>, Case<LeafCollSubject, HandWrittenBinary>>;
TYPED_TEST_SUITE(ArchivedDataItemRoot, Cases, );

TYPED_TEST(ArchivedDataItemRoot, StoresItsVersionsAndNothingElse)
{
  using Subject = typename TypeParam::Subject;
  EXPECT_EQ(fileOf<typename TypeParam::Format>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = typename Subject::Concrete().Subject::Root::write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                }),
            this->archiveOfVersions());
}

TYPED_TEST(ArchivedDataItemRoot, ReadsItsVersionsAndNothingElse)
{
  using Subject = typename TypeParam::Subject;
  readFile<typename TypeParam::Format>(this->archiveOfVersions(),
                                       [](BaseIArchive& archive)
                                       {
                                         typename Subject::Concrete item;
                                         const BoolResult read = item.Subject::Root::read(archive);
                                         EXPECT_TRUE(read);
                                         EXPECT_EQ(read.getMessage(), "");
                                         EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseDataItem"),
                                                   1U);
                                         EXPECT_EQ(archive.getRegisterClassVersion(Subject::className), 1U);
                                       });
}

// Archives

template <class HandWritten>
class ArchivedBaseDataItem : public ::testing::Test
{
};
TYPED_TEST_SUITE(ArchivedBaseDataItem, Formats, );

template <class HandWritten>
void putEmpty(HandWritten& archive, const std::string& key, const std::string& container)
{
  archive.openSection(key);
  archive.openSection(container);
  archive.integer("size", 0);
  archive.close();
  archive.close();
}

TYPED_TEST(ArchivedBaseDataItem, StoresItsVersionOnceForItemsOfAllKinds)
{
  TypeParam expected;
  putVersion(expected, "orvel::BaseDataItem", 1);
  putVersion(expected, "orvel::BaseDataItemLeaf", 1);
  putVersion(expected, "orvel::DataItemLeaf<ipInt32>", 1);
  expected.integer("_value", 3);
  putVersion(expected, "orvel::BaseDataItemNode", 1);
  putVersion(expected, "orvel::BaseDataItemLeafColl", 1);
  putVersion(expected, "orvel::DataItemLeafColl<std::string>", 1);
  putEmpty(expected, "_coll", "vector");
  putVersion(expected, "orvel::BaseDataItemNodeColl", 1);
  putEmpty(expected, "_coll", "vector");
  putVersion(expected, "orvel::DataItemMap", 1);
  putEmpty(expected, "_itemMap", "map");
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  DataItemLeaf<ipInt32> leaf;
                  leaf.setValue(3);
                  leaf.write(archive);
                  SampleNode().BaseDataItemNode::write(archive);
                  DataItemLeafColl<std::string>().write(archive);
                  BaseDataItemNodeColl().write(archive);
                  DataItemMap().write(archive);
                }),
            expected.file());
}

} // namespace
