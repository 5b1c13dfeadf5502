#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "TestNodes.h"
#include <ORVELBaseData/DataItem/BaseDataItem.h>
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/Node/DataItemNodeFactory.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ItemOperators.h>
#include <support/HandWrittenArchive.h>
#include <support/SampleNode.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr int g_nbThreads = 8;
constexpr int g_nbRounds = 20;

/// Calls an operation on all threads at once.
template <class Operation>
void callOnAllThreads(Operation operation)
{
  std::atomic<int> nbReady{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < g_nbThreads; ++i)
    threads.emplace_back(
        [&]
        {
          ++nbReady;
          while (nbReady != g_nbThreads)
            std::this_thread::yield();
          for (int round = 0; round < g_nbRounds; ++round)
            operation();
        });
  for (std::thread& thread : threads)
    thread.join();
}

template <class T>
void insertValues(DataItemMap& map, const T& value)
{
  const std::string type = DataItemValue<T>::name;
  map.insertItem("leaf of " + type, makeLeaf<T>(value));
  const auto coll = boost::make_shared<DataItemLeafColl<T>>();
  for (int i = 0; i < 3; ++i)
    coll->push_back(value);
  map.insertItem("collection of " + type, coll);
}

/// A tree of all kinds and types.
boost::shared_ptr<DataItemMap> makeTree()
{
  auto tree = boost::make_shared<DataItemMap>();
  insertValues<ipBool>(*tree, true);
  insertValues<ipInt8>(*tree, -8);
  insertValues<ipUInt8>(*tree, 8);
  insertValues<ipInt16>(*tree, -16);
  insertValues<ipUInt16>(*tree, 16);
  insertValues<ipInt32>(*tree, -32);
  insertValues<ipUInt32>(*tree, 32);
  insertValues<ipInt64>(*tree, -64);
  insertValues<ipUInt64>(*tree, 64);
  insertValues<ipReal32>(*tree, 0.5F);
  insertValues<ipReal64>(*tree, 0.25);
  insertValues<std::string>(*tree, "a text");
  insertValues<boost::filesystem::path>(*tree, "a/path");
  const auto nodes = boost::make_shared<BaseDataItemNodeColl>();
  nodes->push_back(makeSampleNode(1, "one"));
  nodes->push_back(makeNode<AnyNode, ipReal64>("ratio", 1.5));
  nodes->push_back(nodes->getColl()[0]); // shared: its count of pointers is changed by several threads
  tree->insertItem("nodes", nodes);
  return tree;
}

class ThreadsOnOneTree : public testing::Test
{
protected:
  const boost::shared_ptr<const DataItemMap> _tree = makeTree();
  std::atomic<int> _nbFailures{0}; // of expectations, counted as the threads meet them

  void expect(bool holds)
  {
    if (!holds)
      ++_nbFailures;
  }

  void TearDown() override { EXPECT_EQ(_nbFailures, 0); }
};

TEST_F(ThreadsOnOneTree, CompareIt)
{
  const auto other = makeTree();
  const auto different = makeTree();
  different->removeItem("nodes");
  different->insertItem("nodes", boost::make_shared<BaseDataItemNodeColl>());
  callOnAllThreads(
      [&]
      {
        expect(orvel::equal(*_tree, *_tree, 0));
        expect(orvel::equal(*_tree, *other, 1e-6));
        expect(!orvel::equal(*different, *_tree, 1e-6));
      });
}

TEST_F(ThreadsOnOneTree, ReadItsItems)
{
  callOnAllThreads(
      [&]
      {
        expect(_tree->getItemNames().size() == 27);
        for (const std::string& name : _tree->getItemNames())
        {
          const BaseDataItem& item = _tree->getItem(name);
          expect(!item.getClassName().empty());
          expect(_tree->getItemPtr(name).get() == &item);
          expect(_tree->existsItem(name));
        }
        const auto& number = static_cast<const DataItemLeaf<ipInt64>&>(_tree->getItem("leaf of ipInt64"));
        expect(number.getValue() == -64);
        expect(number.getDataItemValueType() == eDataItemValueType::eDIVT_Int64);
        const auto& bits =
            static_cast<const DataItemLeafColl<ipBool>&>(_tree->getItem("collection of ipBool"));
        expect(bits.getSize() == 3 && bits.getColl()[2]);
        const auto& nodes = static_cast<const BaseDataItemNodeColl&>(_tree->getItem("nodes"));
        expect(nodes.getSize() == 3);
        const BaseDataItemNode& node = nodes.getNodeBase(1);
        expect(node.getItemKeys() == ItemNameColl{"ratio"});
        expect(node.getItemName("ratio") == "Name of ratio");
        expect(node.getItemToolTip("ratio") == "Tip of ratio");
        expect(static_cast<const DataItemLeaf<ipReal64>&>(node.getItem("ratio")).getValue() == 1.5);
      });
}

TEST_F(ThreadsOnOneTree, CopyIt)
{
  callOnAllThreads([&] { expect(orvel::equal(DataItemMap(*_tree), *_tree, 0)); });
}

TEST_F(ThreadsOnOneTree, MeetItsFailures)
{
  callOnAllThreads(
      [&]
      {
        try
        {
          _tree->getItem("no such item");
          expect(false);
        }
        catch (const ORVELBaseDataException& failure)
        {
          expect(failure.getMessage() == "Item with name no such item does not exists for current item node");
        }
      });
}

template <class HandWritten>
class ThreadsOnOneTreeWithArchives : public ThreadsOnOneTree
{
};

TYPED_TEST_SUITE(ThreadsOnOneTreeWithArchives, Formats, );

TYPED_TEST(ThreadsOnOneTreeWithArchives, WriteItIntoTheirOwn)
{
  const DataItemPtr tree = makeTree();
  const auto write = [&]
  {
    return fileOf<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("tree", tree); });
  };
  const std::string file = write();
  callOnAllThreads([&] { this->expect(write() == file); });
}

TYPED_TEST(ThreadsOnOneTreeWithArchives, ReadItFromTheirOwn)
{
  const DataItemPtr tree = makeTree();
  const std::string file =
      fileOf<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("tree", tree); });
  callOnAllThreads(
      [&]
      {
        DataItemPtr copy;
        readFile<TypeParam>(file,
                            [&](BaseIArchive& archive) { archive >> SerializationIItem("tree", copy); });
        this->expect(orvel::equal(*copy, *tree, 0));
      });
}

TEST(ThreadsOnTheCatalogueOfNodes, MeetTheOneInstance)
{
  const DataItemNodeFactory* const instance = &DataItemNodeFactory::getInstance();
  std::atomic<int> nbOthers{0};
  callOnAllThreads(
      [&]
      {
        if (&DataItemNodeFactory::getInstance() != instance)
          ++nbOthers;
      });
  EXPECT_EQ(nbOthers, 0);
}

} // namespace
