#include "ORVELBaseData/DataItem/BaseDataItem.h"

#include <cstddef>
#include <dlfcn.h>
#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/SampleNode.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BaseDataItem, IsTheAbstractRootOfDataItems)
{
  EXPECT_TRUE(std::is_abstract<BaseDataItem>::value);
  EXPECT_TRUE((std::is_base_of<BaseSerializationObject, BaseDataItem>::value));
  EXPECT_TRUE(std::has_virtual_destructor<BaseDataItem>::value);
}

/// Implements all pure operations.
struct WholeItem : BaseDataItem
{
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return {}; }
  bool hasCopySupport() const override { return true; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return {}; }
  eDataItemType getDataItemType() const override { return eDataItemType::eDIT_Node; }
};

TEST(BaseDataItem, IsWholeWithThePureOperations)
{
  EXPECT_FALSE(std::is_abstract<WholeItem>::value);
  WholeItem item;
  item.copy(WholeItem()); // what a derived copy calls first
  EXPECT_EQ(item.getClassName(), "orvel::BaseDataItem");
}

TEST(BaseDataItem, LeavesTheseOperationsPure)
{
  const auto table = static_cast<void* const*>(dlsym(RTLD_DEFAULT, "_ZTVN5orvel12BaseDataItemE"));
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // stands where an operation is pure
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  const auto isPure = [table, pure](std::size_t index)
  {
    return table[2 + index] == pure; // two words precede the operations
  };
  for (const std::size_t index :
       {std::size_t{0}, std::size_t{1}, // the destructor
        vtableIndexOf(&BaseDataItem::createNew), vtableIndexOf(&BaseDataItem::createShared),
        vtableIndexOf(&BaseDataItem::hasCopySupport), vtableIndexOf(&BaseDataItem::duplicate),
        vtableIndexOf(&BaseDataItem::duplicateShared), vtableIndexOf(&BaseDataItem::getDataItemType)})
    EXPECT_TRUE(isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&BaseDataItem::getClassName), vtableIndexOf(&BaseDataItem::initCtorCopy),
        vtableIndexOf(&BaseDataItem::copy), vtableIndexOf(&BaseDataItem::write),
        vtableIndexOf(&BaseDataItem::read)})
    EXPECT_FALSE(isPure(index)) << index;
}

TEST(BaseDataItem, HasItsNameAndVersion)
{
  EXPECT_EQ(BaseDataItem::getTypeName(), "orvel::BaseDataItem");
  EXPECT_EQ(BaseDataItem::getVersion(), 1U);
  EXPECT_EQ(DataItemMap().BaseDataItem::getClassName(), "orvel::BaseDataItem"); // each level has its own
}

TEST(BaseDataItem, IsNotKnownToTheFactory)
{
  EXPECT_FALSE(DynamicObjectFactory::getInstance().isRegistered("orvel::BaseDataItem"));
}

TEST(BaseDataItem, HasNoFieldOfItsOwn)
{
  EXPECT_EQ(sizeof(BaseDataItem), sizeof(void*)); // the pointer to the virtual operations
}

TEST(BaseDataItem, AddsOneVirtualOperationBehindThoseOfTheFrame)
{
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::getClassName), 2U); // behind the two of the destructor
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::write), 10U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::read), 11U);
  EXPECT_EQ(vtableIndexOf(&BaseDataItem::getDataItemType), 12U);
}

// Kinds and types that are none

/// A leaf of a class of its own that answers a kind above the last.
class LeafOfNoKind : public DataItemLeaf<ipInt32>
{
public:
  explicit LeafOfNoKind(ipInt32 value) { setValue(value); }
  eDataItemType getDataItemType() const override { return eDataItemType(ipUInt64(5)); }
};

TEST(BaseDataItem, OfAKindAboveTheLastIsComparedAsALeaf)
{
  const LeafOfNoKind three(3);
  EXPECT_TRUE(orvel::equal(three, LeafOfNoKind(3), 0.0));
  EXPECT_FALSE(orvel::equal(three, LeafOfNoKind(4), 0.0));
}

/// A leaf of a class of its own that answers a value type above the last.
class LeafOfNoType : public DataItemLeaf<ipBool>
{
public:
  explicit LeafOfNoType(bool value) { setValue(value); }
  eDataItemValueType getDataItemValueType() const override { return eDataItemValueType(ipUInt64(14)); }
};

TEST(BaseDataItem, OfAValueTypeAboveTheLastIsComparedAsALeafOfBool)
{
  EXPECT_TRUE(orvel::equal(LeafOfNoType(true), LeafOfNoType(true), 0.0));
  EXPECT_FALSE(orvel::equal(LeafOfNoType(true), LeafOfNoType(false), 0.0));
}

/// The same as a collection.
class CollOfNoType : public DataItemLeafColl<ipBool>
{
public:
  explicit CollOfNoType(bool value) { push_back(value); }
  eDataItemValueType getDataItemValueType() const override { return eDataItemValueType(ipUInt64(14)); }
};

TEST(BaseDataItem, OfAValueTypeAboveTheLastIsComparedAsACollectionOfBool)
{
  EXPECT_TRUE(orvel::equal(CollOfNoType(true), CollOfNoType(true), 0.0));
  EXPECT_FALSE(orvel::equal(CollOfNoType(true), CollOfNoType(false), 0.0));
}

// Archives

template <class HandWritten>
class ArchivedBaseDataItem : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedBaseDataItem, Formats, );

TYPED_TEST(ArchivedBaseDataItem, FilesItsVersionAndNothingElse)
{
  TypeParam expected;
  putVersion(expected, "orvel::BaseDataItem", 1);
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  const BoolResult written = DataItemMap().BaseDataItem::write(archive);
                  EXPECT_TRUE(written);
                  EXPECT_EQ(written.getMessage(), "");
                }),
            expected.file());
}

TYPED_TEST(ArchivedBaseDataItem, ReadsItsVersionAndNothingElse)
{
  TypeParam file;
  putVersion(file, "orvel::BaseDataItem", 1);
  readFile<TypeParam>(file.file(),
                      [](BaseIArchive& archive)
                      {
                        DataItemMap item;
                        const BoolResult read = item.BaseDataItem::read(archive);
                        EXPECT_TRUE(read);
                        EXPECT_EQ(read.getMessage(), "");
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseDataItem"), 1U);
                      });
}

template <class HandWritten>
void putEmpty(HandWritten& archive, const std::string& key, const std::string& container)
{
  archive.openSection(key);
  archive.openSection(container);
  archive.integer("size", 0);
  archive.close();
  archive.close();
}

TYPED_TEST(ArchivedBaseDataItem, FilesItsVersionOnceForItemsOfAllKinds)
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
