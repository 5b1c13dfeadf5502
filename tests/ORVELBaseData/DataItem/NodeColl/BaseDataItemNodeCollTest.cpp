#include "ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h"

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>
#include <support/SampleNode.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using NodeColl = BaseDataItemNodeColl;

/// A collection of sample nodes that count from 1.
NodeColl makeColl(ipInt32 size)
{
  NodeColl coll;
  for (ipInt32 i = 1; i <= size; ++i)
    coll.push_back(makeSampleNode(i, "label"));
  return coll;
}

/// What the sample nodes of a collection count.
std::vector<ipInt32> countsOf(const NodeColl& coll)
{
  std::vector<ipInt32> counts;
  for (ipUInt32 i = 0; i < coll.getSize(); ++i)
    counts.push_back(
        static_cast<const DataItemLeaf<ipInt32>&>(coll.getNodeBase(i).getItem("count")).getValue());
  return counts;
}

// Nodes

TEST(BaseDataItemNodeColl, IsEmptyAtFirst)
{
  const NodeColl coll;
  EXPECT_EQ(coll.getSize(), 0U);
  EXPECT_TRUE(coll.isEmpty());
  EXPECT_TRUE(coll.getColl().empty());
}

TEST(BaseDataItemNodeColl, KeepsTheOrderOfInsertion)
{
  NodeColl coll;
  for (const ipInt32 count : {3, 1, 2})
    coll.push_back(makeSampleNode(count, ""));
  EXPECT_EQ(countsOf(coll), (std::vector<ipInt32>{3, 1, 2}));
  EXPECT_EQ(coll.getSize(), 3U);
  EXPECT_FALSE(coll.isEmpty());
}

TEST(BaseDataItemNodeColl, SharesTheCallersPointer)
{
  const auto node = makeSampleNode(1, "one");
  NodeColl coll;
  coll.push_back(node);
  EXPECT_EQ(node.use_count(), 2);
  EXPECT_EQ(&coll.getNodeBase(0), node.get());
  EXPECT_EQ(coll.getColl().at(0), node);
  node->accessCount().setValue(7);
  EXPECT_EQ(countsOf(coll), std::vector<ipInt32>{7});
}

TEST(BaseDataItemNodeColl, GivesNodesToBeChanged)
{
  NodeColl coll = makeColl(2);
  EXPECT_TRUE((std::is_same<decltype(coll.getNodeBase(0)), BaseDataItemNode&>::value));
  EXPECT_TRUE((std::is_same<decltype(std::declval<const NodeColl&>().getNodeBase(0)),
                            const BaseDataItemNode&>::value));
  static_cast<SampleNode&>(coll.getNodeBase(1)).accessCount().setValue(9);
  EXPECT_EQ(countsOf(coll), (std::vector<ipInt32>{1, 9}));
}

TEST(BaseDataItemNodeColl, GivesNodesThatLastAsLongAsSomebodyHoldsThem)
{
  const auto node = makeSampleNode(1, "one");
  const BaseDataItemNode* found = nullptr;
  {
    NodeColl coll;
    coll.push_back(node);
    for (ipInt32 i = 0; i < 100; ++i) // the vector moves
      coll.push_back(makeSampleNode(i, ""));
    found = &coll.getNodeBase(0);
  }
  EXPECT_EQ(found, node.get());
  EXPECT_EQ(node.use_count(), 1);
  EXPECT_EQ(found->getItemKeys().size(), 2U);
}

/// Checks the failure of an operation on makeColl(2), which stays as it is.
void expectRefused(const std::function<void(NodeColl&)>& operation, const std::string& message,
                   const std::string& function)
{
  NodeColl coll = makeColl(2);
  expectRaised<ORVELBaseDataException>(
      [&] { operation(coll); },
      {message, function, "ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.cpp"});
  EXPECT_EQ(countsOf(coll), (std::vector<ipInt32>{1, 2}));
}

TEST(BaseDataItemNodeColl, HasNoNodeWhenEmpty)
{
  NodeColl coll;
  const NodeColl& constant = coll;
  const std::string text = "Node with index 0 is out of bounds [0; 0[";
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { coll.getNodeBase(0); }), text);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { constant.getNodeBase(0); }), text);
}

TEST(BaseDataItemNodeColl, HasNoNodeBehindTheLast)
{
  NodeColl coll = makeColl(2);
  EXPECT_NO_THROW(coll.getNodeBase(1));
  EXPECT_NO_THROW(static_cast<const NodeColl&>(coll).getNodeBase(1));
  expectRefused([](NodeColl& refusing) { refusing.getNodeBase(2); },
                "Node with index 2 is out of bounds [0; 2[",
                "orvel::BaseDataItemNode& orvel::BaseDataItemNodeColl::getNodeBase(orvel::ipUInt32)");
  expectRefused([](const NodeColl& refusing) { refusing.getNodeBase(4294967295); },
                "Node with index 4294967295 is out of bounds [0; 2[",
                "const orvel::BaseDataItemNode& orvel::BaseDataItemNodeColl::getNodeBase(orvel::ipUInt32) "
                "const");
}

TEST(BaseDataItemNodeColl, RefusesANullPointer)
{
  expectRefused([](NodeColl& coll) { coll.push_back(nullptr); }, "Item shared pointer should not be null",
                "void orvel::BaseDataItemNodeColl::push_back(const orvel::DataItemNodePtr&)");
}

TEST(BaseDataItemNodeColl, TakesANodeOfItsOwnAgain)
{
  NodeColl coll = makeColl(1);
  for (int i = 0; i < 40; ++i)
    coll.push_back(coll.getColl()[0]);
  EXPECT_EQ(countsOf(coll), std::vector<ipInt32>(41, 1));
}

TEST(BaseDataItemNodeColl, TakesRoomForAllNodesOfItsSourceAtOnce)
{
  const NodeColl coll = makeColl(5);
  NodeColl copy;
  copy.copy(coll);
  EXPECT_EQ(copy.getColl().capacity(), 5U);
}

// Archives: what it shares with maps is tested in ItemHolderTest.cpp

template <class HandWritten>
class BaseDataItemNodeCollArchive : public testing::Test
{
protected:
  /// The start of an archive of a collection, to the items of its vector.
  static HandWritten start(std::int64_t size)
  {
    HandWritten archive;
    putVersion(archive, "orvel::BaseDataItem", 1);
    putVersion(archive, "orvel::BaseDataItemNodeColl", 1);
    archive.openSection("_coll");
    archive.openSection("vector");
    archive.integer("size", size);
    return archive;
  }

  static std::string finish(HandWritten archive)
  {
    archive.close();
    archive.close();
    return archive.file();
  }
};
TYPED_TEST_SUITE(BaseDataItemNodeCollArchive, Formats, );

TYPED_TEST(BaseDataItemNodeCollArchive, BringsANullAlsoWhenNotTrusted)
{
  TypeParam archive = this->start(1);
  archive.openSection("value");
  archive.openSection("shared_ptr<orvel::BaseDataItemNode>");
  archive.nullPointer("pObject");
  archive.close();
  archive.close();
  NodeColl coll;
  readFile<TypeParam>(this->finish(archive),
                      [&](BaseIArchive& input)
                      {
                        input.setUntrusted(true);
                        coll.read(input);
                      });
  ASSERT_EQ(coll.getSize(), 1U);
  EXPECT_EQ(coll.getColl()[0], nullptr);
}

TYPED_TEST(BaseDataItemNodeCollArchive, WithMoreNodesThanItCouldHoldIsRefusedBeforeMemoryIsTaken)
{
  NodeColl coll;
  const std::string message = messageOf<ORVELSerializationException>(
      [&]
      {
        readStart<TypeParam>(this->finish(this->start(4294967295)),
                             [&](BaseIArchive& archive) { coll.read(archive); });
      });
  EXPECT_NE(message.find(": the rest of the archive can't hold 4294967295 elements"), std::string::npos)
      << message;
  EXPECT_EQ(coll.getColl().capacity(), 0U);
}

} // namespace
