#include "ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include "../TestNodes.h"
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Node/DataItemNodeFactory.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/SampleNode.h>
#include <support/Sanitizers.h>

ORVEL_TEST_EXPOSE(Coll, &orvel::BaseDataItemNodeColl::_coll)

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

// The class

TEST(BaseDataItemNodeColl, HasItsNameAndVersion)
{
  EXPECT_EQ(NodeColl::getTypeName(), "orvel::BaseDataItemNodeColl");
  EXPECT_EQ(NodeColl().getClassName(), "orvel::BaseDataItemNodeColl");
  EXPECT_EQ(NodeColl::getVersion(), 1U);
  EXPECT_TRUE(NodeColl().hasCopySupport());
  EXPECT_EQ(NodeColl().getDataItemType(), eDataItemType::eDIT_NodeColl);
}

TEST(BaseDataItemNodeColl, IsConcreteAndRegistered)
{
  EXPECT_FALSE(std::is_abstract<NodeColl>::value);
  const DynamicObjectPtr made =
      DynamicObjectFactory::getInstance().createShared("orvel::BaseDataItemNodeColl");
  EXPECT_TRUE(dynamic_cast<NodeColl&>(*made).isEmpty());
}

TEST(BaseDataItemNodeColl, AddsNoVirtualOperationAndHoldsOneVector)
{
  EXPECT_EQ(vtableIndexOf(&NodeColl::getDataItemType), 12U);
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(NodeColl()), 13U);
  }
  EXPECT_EQ(offsetOf(memberOf(Coll())), static_cast<std::ptrdiff_t>(sizeof(void*)));
  EXPECT_EQ(sizeof(NodeColl), sizeof(void*) + sizeof(std::vector<DataItemNodePtr>));
}

// Nodes

TEST(BaseDataItemNodeColl, IsEmptyAtFirst)
{
  const NodeColl coll;
  EXPECT_EQ(coll.getSize(), 0U);
  EXPECT_TRUE(coll.isEmpty());
  EXPECT_TRUE(coll.getColl().empty());
}

TEST(BaseDataItemNodeColl, CountsIn32Bits)
{
  EXPECT_TRUE((std::is_same<decltype(NodeColl().getSize()), ipUInt32>::value));
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

TEST(BaseDataItemNodeColl, StaysAsItIsIfThereIsNoMemoryForANode)
{
  NodeColl coll;
  const auto node = makeSampleNode(1, "one");
  const std::size_t nbFailures = failAtEachAllocation([&] { coll.push_back(node); },
                                                      [&]
                                                      {
                                                        EXPECT_TRUE(coll.isEmpty());
                                                        EXPECT_EQ(node.use_count(), 1);
                                                      });
  EXPECT_EQ(nbFailures, 1U);
  EXPECT_EQ(coll.getSize(), 1U);
}

// Copies

TEST(BaseDataItemNodeColl, CopiesEveryNode)
{
  const NodeColl coll = makeColl(2);
  const auto check = [&](const BaseDynamicObject& copied)
  {
    const auto& copy = dynamic_cast<const NodeColl&>(copied);
    EXPECT_EQ(countsOf(copy), (std::vector<ipInt32>{1, 2}));
    for (ipUInt32 i = 0; i < 2; ++i)
    {
      EXPECT_NE(&copy.getNodeBase(i), &coll.getNodeBase(i));
      EXPECT_NE(&copy.getNodeBase(i).getItem("label"), &coll.getNodeBase(i).getItem("label"));
      EXPECT_EQ(copy.getColl()[i].use_count(), 1);
    }
    EXPECT_TRUE(orvel::equal(copy, coll, 0));
  };
  check(NodeColl(coll));
  NodeColl copy = makeColl(5);
  copy.copy(coll);
  check(copy);
  NodeColl assigned = makeColl(1);
  EXPECT_EQ(&(assigned = coll), &assigned);
  check(assigned);
  check(*std::unique_ptr<BaseDynamicObject>(coll.duplicate()));
  check(*coll.duplicateShared());
  EXPECT_EQ(countsOf(coll), (std::vector<ipInt32>{1, 2}));
}

TEST(BaseDataItemNodeColl, SharesNothingWithItsCopy)
{
  NodeColl coll = makeColl(1);
  const NodeColl copy(coll);
  EXPECT_TRUE(orvel::equal(coll, copy, 0));
  static_cast<SampleNode&>(coll.getNodeBase(0)).accessCount().setValue(8);
  EXPECT_FALSE(orvel::equal(coll, copy, 0));
  EXPECT_EQ(countsOf(copy), std::vector<ipInt32>{1});
}

TEST(BaseDataItemNodeColl, DropsItsOldNodesWhenItIsCopiedTo)
{
  const auto node = makeSampleNode(1, "one");
  NodeColl coll;
  coll.push_back(node);
  coll.copy(NodeColl());
  EXPECT_TRUE(coll.isEmpty());
  EXPECT_EQ(node.use_count(), 1);
}

TEST(BaseDataItemNodeColl, IsEmptyAfterAssignmentToItself)
{
  NodeColl coll = makeColl(2);
  const NodeColl& same = coll;
  coll = same;
  EXPECT_TRUE(coll.isEmpty());
}

TEST(BaseDataItemNodeColl, IsEmptyAfterBeingCopiedToItself)
{
  NodeColl coll = makeColl(2);
  coll.copy(coll);
  EXPECT_TRUE(coll.isEmpty());
}

TEST(BaseDataItemNodeColl, BecomesACopyOfACollectionThatOnlyItsOwnNodeHolds)
{
  NodeColl coll;
  {
    const auto inner = boost::make_shared<NodeColl>();
    inner->push_back(makeSampleNode(5, "five"));
    const auto node = boost::make_shared<AnyNode>();
    node->setItem("inner", inner);
    coll.push_back(node);
  }
  coll.copy(coll.getNodeBase(0).getItem("inner"));
  EXPECT_EQ(countsOf(coll), std::vector<ipInt32>{5});
}

TEST(BaseDataItemNodeColl, HoldsANodeTwiceUnderOnePointer)
{
  const auto node = makeSampleNode(1, "one");
  NodeColl coll;
  coll.push_back(node);
  coll.push_back(node);
  EXPECT_EQ(node.use_count(), 3);
  EXPECT_EQ(&coll.getNodeBase(0), &coll.getNodeBase(1));
  const DynamicObjectPtr duplicate = coll.duplicateShared();
  const auto& copy = dynamic_cast<const NodeColl&>(*duplicate);
  EXPECT_EQ(copy.getSize(), 2U);
  EXPECT_NE(&copy.getNodeBase(0), &copy.getNodeBase(1));
  EXPECT_EQ(node.use_count(), 3);
}

TEST(BaseDataItemNodeColl, TakesRoomForAllNodesOfItsSourceAtOnce)
{
  const NodeColl coll = makeColl(5);
  NodeColl copy;
  copy.copy(coll);
  EXPECT_EQ(copy.getColl().capacity(), 5U);
}

TEST(BaseDataItemNodeColl, DuplicatesNodesInTheirOwnClass)
{
  NodeColl coll;
  coll.push_back(makeNode<OtherNode, ipInt32>("a", 1));
  coll.push_back(makeSampleNode(1, "one"));
  const NodeColl copy(coll);
  EXPECT_EQ(copy.getNodeBase(0).getClassName(), "orvel::OtherNode");
  EXPECT_EQ(copy.getNodeBase(1).getClassName(), "orvel::SampleNode");
}

TEST(BaseDataItemNodeColl, KeepsWhatWasCopiedBeforeANodeThatCantBe)
{
  NodeColl coll = makeColl(2);
  coll.push_back(boost::make_shared<UnknownNode>());
  coll.push_back(makeSampleNode(4, "four"));
  NodeColl copy = makeColl(7);
  EXPECT_THROW(copy.copy(coll), std::runtime_error);
  EXPECT_EQ(countsOf(copy), (std::vector<ipInt32>{1, 2}));
  EXPECT_EQ(coll.getSize(), 4U);
}

TEST(BaseDataItemNodeColl, LeaksNothingWhenANodeCantBeCopied)
{
  NodeColl coll = makeColl(2);
  coll.push_back(boost::make_shared<UnknownNode>());
  EXPECT_THROW(coll.duplicate(), std::runtime_error); // what is made on the first throw stays
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  EXPECT_THROW(coll.duplicate(), std::runtime_error);
  EXPECT_THROW(coll.duplicateShared(), std::runtime_error);
  EXPECT_THROW(NodeColl{coll}, std::runtime_error);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(BaseDataItemNodeColl, LeaksNothingWhenMemoryEndsInACopy)
{
  const NodeColl coll = makeColl(3);
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbFailures = failAtEachAllocation([&] { delete coll.duplicate(); },
                                                      [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); });
  EXPECT_GE(nbFailures, 1U + 1U + 3U * 2U); // the copy, its vector, each node and its count of pointers
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

// Archives

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

  static void openValue(HandWritten& archive)
  {
    archive.openSection("value");
    archive.openSection("shared_ptr<orvel::BaseDataItemNode>");
  }

  static void closeValue(HandWritten& archive)
  {
    archive.close();
    archive.close();
  }

  static std::string finish(HandWritten archive)
  {
    archive.close();
    archive.close();
    return archive.file();
  }

  /// A sample node without version records but those that it brings for the first time.
  static void putSample(HandWritten& archive, bool isFirst, std::int64_t count, const std::string& label)
  {
    archive.openPointer("pObject", "orvel::SampleNode");
    if (isFirst)
    {
      putVersion(archive, "orvel::BaseDataItemNode", 1);
      putVersion(archive, "orvel::SampleNode", 1);
    }
    archive.openObject("count");
    if (isFirst)
    {
      putVersion(archive, "orvel::BaseDataItemLeaf", 1);
      putVersion(archive, "orvel::DataItemLeaf<ipInt32>", 1);
    }
    archive.integer("_value", count);
    archive.close();
    archive.openObject("label");
    if (isFirst)
      putVersion(archive, "orvel::DataItemLeaf<std::string>", 1);
    archive.text("_value", label);
    archive.close();
    archive.close();
  }

  static std::string fileOfColl(const NodeColl& coll)
  {
    return fileOf<HandWritten>([&](BaseOArchive& archive) { EXPECT_TRUE(coll.write(archive)); });
  }
};

using Formats = testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(BaseDataItemNodeCollArchive, Formats, );

TYPED_TEST(BaseDataItemNodeCollArchive, OfNoNodesHoldsTheirCount)
{
  const std::string file = this->finish(this->start(0));
  EXPECT_EQ(this->fileOfColl(NodeColl()), file);
  NodeColl coll = makeColl(2);
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(coll.read(archive)); });
  EXPECT_TRUE(coll.isEmpty());
}

TYPED_TEST(BaseDataItemNodeCollArchive, HoldsTheNodesInOrder)
{
  TypeParam expected = this->start(2);
  this->openValue(expected);
  this->putSample(expected, true, 1, "label");
  this->closeValue(expected);
  this->openValue(expected);
  this->putSample(expected, false, 2, "label");
  this->closeValue(expected);
  const std::string file = this->finish(expected);
  EXPECT_EQ(this->fileOfColl(makeColl(2)), file);
  NodeColl coll;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(coll.read(archive)); });
  EXPECT_EQ(countsOf(coll), (std::vector<ipInt32>{1, 2}));
}

TYPED_TEST(BaseDataItemNodeCollArchive, HoldsTheVersionsOnce)
{
  TypeParam expected = this->start(0);
  expected.close();
  expected.close();
  expected.openSection("_coll");
  expected.openSection("vector");
  expected.integer("size", 0);
  EXPECT_EQ(fileOf<TypeParam>(
                [](BaseOArchive& archive)
                {
                  NodeColl().write(archive);
                  NodeColl().write(archive);
                }),
            this->finish(expected));
}

TYPED_TEST(BaseDataItemNodeCollArchive, BringsNodesOfSeveralClassesInOrder)
{
  NodeColl coll;
  coll.push_back(makeNode<OtherNode, ipReal64>("a", 0.5));
  coll.push_back(makeSampleNode(1, "one"));
  coll.push_back(makeNode<AnyNode, ipReal64>("a", 0.5));
  coll.push_back(makeNode<OtherNode, std::string>("b", "text"));
  NodeColl copy;
  readFile<TypeParam>(this->fileOfColl(coll), [&](BaseIArchive& archive) { copy.read(archive); });
  ASSERT_EQ(copy.getSize(), 4U);
  EXPECT_EQ(copy.getNodeBase(0).getClassName(), "orvel::OtherNode");
  EXPECT_EQ(copy.getNodeBase(1).getClassName(), "orvel::SampleNode");
  EXPECT_EQ(copy.getNodeBase(2).getClassName(), "orvel::AnyNode");
  EXPECT_EQ(copy.getNodeBase(3).getClassName(), "orvel::OtherNode");
  EXPECT_TRUE(orvel::equal(copy, coll, 0));
}

TYPED_TEST(BaseDataItemNodeCollArchive, NeedsNoEntryInTheCatalogueOfNodes)
{
  ASSERT_EQ(DataItemNodeFactory::getInstance().getRegistredNodes(), ItemNameColl());
  NodeColl coll;
  readFile<TypeParam>(this->fileOfColl(makeColl(1)), [&](BaseIArchive& archive) { coll.read(archive); });
  EXPECT_EQ(countsOf(coll), std::vector<ipInt32>{1});
}

TYPED_TEST(BaseDataItemNodeCollArchive, BringsANodeThatIsHeldTwiceAsOne)
{
  TypeParam expected = this->start(2);
  this->openValue(expected);
  this->putSample(expected, true, 3, "x");
  this->closeValue(expected);
  this->openValue(expected);
  expected.reference("pObject", 1);
  this->closeValue(expected);
  const std::string file = this->finish(expected);

  const auto node = makeSampleNode(3, "x");
  NodeColl coll;
  coll.push_back(node);
  coll.push_back(node);
  EXPECT_EQ(this->fileOfColl(coll), file);
  NodeColl copy;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { copy.read(archive); });
  ASSERT_EQ(copy.getSize(), 2U);
  EXPECT_EQ(&copy.getNodeBase(0), &copy.getNodeBase(1));
}

TYPED_TEST(BaseDataItemNodeCollArchive, LetsItsOldNodesGoBeforeNewOnesAreMade)
{
  const auto node = makeSampleNode(1, "one");
  NodeColl coll;
  coll.push_back(node);
  TypeParam broken = this->start(1);
  broken.text("value", "no section"); // the first node can't be read
  EXPECT_THROW(readStart<TypeParam>(this->finish(broken), [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(node.use_count(), 1);
}

TYPED_TEST(BaseDataItemNodeCollArchive, LetsItsOldNodesGoEvenIfTheirNewNumberCannotBeRead)
{
  TypeParam file;
  putVersion(file, "orvel::BaseDataItem", 1);
  putVersion(file, "orvel::BaseDataItemNodeColl", 1);
  file.text("_coll", "no section");
  NodeColl coll = makeColl(2);
  EXPECT_THROW(readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
  EXPECT_TRUE(coll.isEmpty());
}

TYPED_TEST(BaseDataItemNodeCollArchive, CanBringANullThatCanBeSeenAndWrittenAgain)
{
  TypeParam archive = this->start(2);
  this->openValue(archive);
  archive.nullPointer("pObject");
  this->closeValue(archive);
  this->openValue(archive);
  this->putSample(archive, true, 4, "four");
  this->closeValue(archive);
  const std::string file = this->finish(archive);
  NodeColl coll;
  readFile<TypeParam>(file, [&](BaseIArchive& input) { EXPECT_TRUE(coll.read(input)); });
  ASSERT_EQ(coll.getSize(), 2U);
  EXPECT_EQ(coll.getColl()[0], nullptr);
  EXPECT_EQ(coll.getColl()[1]->getClassName(), "orvel::SampleNode");
  EXPECT_EQ(this->fileOfColl(coll), file);
}

TYPED_TEST(BaseDataItemNodeCollArchive, BringsANullAlsoWhenNotTrusted)
{
  TypeParam archive = this->start(1);
  this->openValue(archive);
  archive.nullPointer("pObject");
  this->closeValue(archive);
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

/// Checks that a collection whose second of three nodes fails holds the first.
void expectTheFirstOfThree(const NodeColl& coll)
{
  ASSERT_EQ(coll.getSize(), 3U); // made to measure before the nodes are read into their places
  ASSERT_NE(coll.getColl()[0], nullptr);
  EXPECT_EQ(coll.getColl()[0]->getClassName(), "orvel::SampleNode");
  EXPECT_EQ(coll.getColl()[1], nullptr);
  EXPECT_EQ(coll.getColl()[2], nullptr);
}

TYPED_TEST(BaseDataItemNodeCollArchive, WithANodeOfAnUnregisteredClassIsRefused)
{
  NodeColl coll;
  coll.push_back(makeSampleNode(1, "one"));
  coll.push_back(boost::make_shared<UnknownNode>()); // writes itself, but nobody can make one by its name
  coll.push_back(makeSampleNode(3, "three"));
  const std::string file = this->fileOfColl(coll);
  NodeColl copy = makeColl(7);
  const std::string message = messageOf<ORVELSerializationException>(
      [&] { readStart<TypeParam>(file, [&](BaseIArchive& archive) { copy.read(archive); }); });
  EXPECT_NE(message.find(": unknown class \"orvel::UnknownNode\""), std::string::npos) << message;
  expectTheFirstOfThree(copy);
}

TYPED_TEST(BaseDataItemNodeCollArchive, WithAnItemThatIsNoNodeIsRefusedWhenNotTrusted)
{
  TypeParam archive = this->start(3);
  this->openValue(archive);
  this->putSample(archive, true, 1, "one");
  this->closeValue(archive);
  this->openValue(archive);
  archive.openPointer("pObject", "orvel::DataItemLeaf<ipInt32>"); // an item, but no node
  archive.integer("_value", 5);
  archive.close();
  this->closeValue(archive);
  this->openValue(archive);
  archive.nullPointer("pObject");
  this->closeValue(archive);
  NodeColl coll;
  const std::string message = messageOf<ORVELSerializationException>(
      [&]
      {
        readStart<TypeParam>(this->finish(archive),
                             [&](BaseIArchive& input)
                             {
                               input.setUntrusted(true);
                               coll.read(input);
                             });
      });
  EXPECT_NE(message.find(": an object of class orvel::DataItemLeaf<ipInt32> can't stand for class "
                         "orvel::BaseDataItemNode"),
            std::string::npos)
      << message;
  expectTheFirstOfThree(coll);
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

TYPED_TEST(BaseDataItemNodeCollArchive, OfANewerVersionIsRefused)
{
  TypeParam file;
  putVersion(file, "orvel::BaseDataItem", 1);
  putVersion(file, "orvel::BaseDataItemNodeColl", 2);
  NodeColl coll = makeColl(2);
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&]
                { readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { coll.read(archive); }); }),
            "Version 2 of class orvel::BaseDataItemNodeColl is not supported, the highest supported version "
            "is 1");
  EXPECT_EQ(countsOf(coll), (std::vector<ipInt32>{1, 2}));
}

} // namespace
