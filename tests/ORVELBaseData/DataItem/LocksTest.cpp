#include <set>
#include <utility>

#include <gtest/gtest.h>

#include "ValueTesting.h"
#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/Node/DataItemNodeFactory.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <support/LockRecorder.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

class ItemLocks : public testing::Test
{
protected:
  void SetUp() override
  {
    if (!canRecordLocks)
      GTEST_SKIP() << "the sanitizers have their own mutexes";
  }
};

/// Checks that name and version of a class are read under a mutex each, on every call. Returns the two.
template <class Item>
std::pair<const void*, const void*> expectTwoMutexes()
{
  const void* const ofName = onlyLockOf([] { Item::getTypeName(); });
  const void* const ofVersion = onlyLockOf([] { Item::getVersion(); });
  EXPECT_NE(ofName, ofVersion) << Item::getTypeName();
  EXPECT_EQ(onlyLockOf([] { Item::getTypeName(); }), ofName) << Item::getTypeName();
  EXPECT_EQ(onlyLockOf([] { Item::getVersion(); }), ofVersion) << Item::getTypeName();
  return {ofName, ofVersion};
}

TEST_F(ItemLocks, GuardNameAndVersionOfEachClass)
{
  expectTwoMutexes<BaseDataItem>();
  expectTwoMutexes<BaseDataItemLeaf>();
  expectTwoMutexes<BaseDataItemEnumLeaf>();
  expectTwoMutexes<BaseDataItemLeafColl>();
  expectTwoMutexes<DataItemMap>();
  expectTwoMutexes<BaseDataItemNode>();
  expectTwoMutexes<BaseDataItemNodeColl>();
}

/// Checks that all instances of a template share the two mutexes of their source.
template <template <class> class Item, class... T>
void expectSharedMutexes(testing::Types<T...> /*types*/)
{
  const std::set<std::pair<const void*, const void*>> mutexes = {expectTwoMutexes<Item<T>>()...};
  EXPECT_EQ(mutexes.size(), 1U);
}

TEST_F(ItemLocks, AreSharedByTheInstancesOfATemplate)
{
  expectSharedMutexes<DataItemLeaf>(ValueTypes());
  expectSharedMutexes<DataItemLeafColl>(ValueTypes());
}

TEST_F(ItemLocks, GuardTheCreationOfTheCatalogueOfNodesAndNothingElseOfIt)
{
  const void* const mutex = onlyLockOf([] { DataItemNodeFactory::getInstance(); });
  EXPECT_EQ(onlyLockOf([] { DataItemNodeFactory::getInstance(); }), mutex);

  DataItemNodeFactory& factory = DataItemNodeFactory::getInstance();
  const auto createNothing = []() -> DataItemNodePtr
  {
    return nullptr;
  };
  const DataItemNodeFactory::NodeInfo info = {"Name", "Tip", "Library", "Header.h", createNothing};
  EXPECT_TRUE(locksOf(
                  [&]
                  {
                    factory.registerNode("key", info);
                    factory.isRegistredNode("key");
                    factory.getRegistredNodes();
                    factory.getNodeName("key");
                    factory.getNodeToolTip("key");
                    factory.getNodeLibraryName("key");
                    factory.getNodeHeaderPath("key");
                    factory.createNode("key");
                    factory.unRegisterNode("key");
                  })
                  .empty());
}

} // namespace
