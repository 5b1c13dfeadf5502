#include "ORVELBaseData/DataItem/Node/BaseDataItemNode.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include "../TestNodes.h"
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/HandWrittenArchive.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/SampleNode.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

// The class

TEST(BaseDataItemNode, IsAnAbstractItemWithToolTips)
{
  EXPECT_TRUE(std::is_abstract<BaseDataItemNode>::value);
  EXPECT_TRUE((std::is_base_of<BaseDataItem, BaseDataItemNode>::value));
  EXPECT_TRUE((std::is_base_of<BaseToolTip, BaseDataItemNode>::value));
  EXPECT_TRUE((std::is_same<DataItemNodePtr, boost::shared_ptr<BaseDataItemNode>>::value));
  EXPECT_TRUE((std::is_same<ItemInfoConstPtr, boost::shared_ptr<const ItemInfo>>::value));
}

TEST(BaseDataItemNode, HasTheItemFirstTheToolTipSecondAndNoData)
{
  const SampleNode node;
  const BaseDataItemNode& base = node;
  const auto address = reinterpret_cast<std::uintptr_t>(&base);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(static_cast<const BaseDataItem*>(&base)), address);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(static_cast<const BaseToolTip*>(&base)),
            address + sizeof(void*));
  EXPECT_EQ(sizeof(BaseDataItemNode), 2 * sizeof(void*)); // the pointers to both tables of operations
}

TEST(BaseDataItemNode, LooksItemsUpThroughOperationsThatAreNotVirtual)
{
  EXPECT_THROW(vtableIndexOf(&BaseDataItemNode::existsItem), std::invalid_argument);
  EXPECT_THROW(vtableIndexOf(&BaseDataItemNode::getItem), std::invalid_argument);
  EXPECT_THROW(vtableIndexOf(&BaseDataItemNode::getItemName), std::invalid_argument);
  EXPECT_THROW(vtableIndexOf(&BaseDataItemNode::getItemToolTip), std::invalid_argument);
}

TEST(BaseDataItemNode, LeavesTheseOperationsPure)
{
  const AbstractTable table("_ZTVN5orvel16BaseDataItemNodeE");
  for (const std::size_t index :
       {vtableIndexOf(&BaseDataItemNode::createNew), vtableIndexOf(&BaseDataItemNode::createShared),
        vtableIndexOf(&BaseDataItemNode::hasCopySupport), vtableIndexOf(&BaseDataItemNode::duplicate),
        vtableIndexOf(&BaseDataItemNode::duplicateShared), vtableIndexOf(&BaseDataItemNode::getNodeName),
        vtableIndexOf(&BaseDataItemNode::getNodeLibraryName), vtableIndexOf(&BaseDataItemNode::getItemKeys),
        vtableIndexOf(&BaseDataItemNode::getItemInfo)})
    EXPECT_TRUE(table.isPure(index)) << index;
  for (const std::size_t index :
       {vtableIndexOf(&BaseDataItemNode::getClassName), vtableIndexOf(&BaseDataItemNode::copy),
        vtableIndexOf(&BaseDataItemNode::write), vtableIndexOf(&BaseDataItemNode::read),
        vtableIndexOf(&BaseDataItemNode::getDataItemType)})
    EXPECT_FALSE(table.isPure(index)) << index;

  // Behind its own operations two words precede those of the tool tips: destructor, destructor, two texts.
  EXPECT_TRUE(table.isPure(17 + 2 + vtableIndexOf(&BaseToolTip::getToolTip)));
  EXPECT_TRUE(table.isPure(17 + 2 + vtableIndexOf(&BaseToolTip::getLongToolTip)));
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(table.getSize(), 17U + 2U + 4U);
  }
}

TEST(BaseDataItemNode, IsANode)
{
  EXPECT_EQ(SampleNode().getDataItemType(), eDataItemType::eDIT_Node);
}

TEST(BaseDataItemNode, GivesTheTextsOfTheDerivedClassForUsers)
{
  const SampleNode sample;
  const BaseDataItemNode& node = sample;
  EXPECT_EQ(node.getNodeName(), "Sample");
  EXPECT_EQ(node.getNodeLibraryName(), "Tests");
  EXPECT_EQ(node.getToolTip(), "A sample");
  EXPECT_EQ(node.getLongToolTip(), "A sample of a node with two leaves");
}

TEST(ItemInfo, HoldsThePointersToTheItemItsNameAndItsToolTipInThatOrder)
{
  EXPECT_EQ(offsetof(ItemInfo, item), 0U);
  EXPECT_EQ(offsetof(ItemInfo, name), sizeof(void*));
  EXPECT_EQ(offsetof(ItemInfo, toolTip), 2 * sizeof(void*));
  EXPECT_EQ(sizeof(ItemInfo), 3 * sizeof(void*));
  EXPECT_TRUE((std::is_same<decltype(ItemInfo::item), const BaseDataItem*>::value));
  EXPECT_TRUE((std::is_same<decltype(ItemInfo::name), const std::string*>::value));
  EXPECT_TRUE((std::is_same<decltype(ItemInfo::toolTip), const std::string*>::value));
}

TEST(ItemInfo, IsAnAggregate)
{
  const auto leaf = makeLeaf<ipInt32>(1);
  const std::string name = "name";
  const std::string toolTip = "tool tip";
  const ItemInfo info{leaf.get(), &name, &toolTip};
  EXPECT_EQ(info.item, leaf.get());
  EXPECT_EQ(info.name, &name);
  EXPECT_EQ(info.toolTip, &toolTip);
}

// Items

TEST(BaseDataItemNode, DescribesItsItems)
{
  const auto a = makeLeaf<ipInt32>(1);
  const auto b = makeLeaf<std::string>("two");
  AnyNode node;
  node.setItem("b", b);
  node.setItem("a", a);
  EXPECT_EQ(&node.getItem("a"), a.get());
  EXPECT_EQ(&node.getItem("b"), b.get());
  EXPECT_EQ(node.getItemName("a"), "Name of a");
  EXPECT_EQ(node.getItemToolTip("b"), "Tip of b");
  EXPECT_TRUE(node.existsItem("a"));
  EXPECT_EQ(node.getItemKeys(), (ItemNameColl{"a", "b"}));
}

TEST(BaseDataItemNode, GivesItemsThatCantBeChanged)
{
  using Item = decltype(std::declval<AnyNode&>().getItem(""));
  EXPECT_TRUE((std::is_same<Item, const BaseDataItem&>::value));
}

TEST(BaseDataItemNode, HasNoItemUnderAnUnknownKey)
{
  const auto node = makeNode<AnyNode, ipInt32>("a", 1);
  EXPECT_FALSE(node->existsItem("b"));
  EXPECT_FALSE(node->existsItem(""));
  EXPECT_FALSE(node->existsItem("A"));
  EXPECT_FALSE(node->existsItem(std::string("a\0", 2)));
  const LogCapture log(getORVELBaseDataLogger());
  EXPECT_FALSE(node->existsItem("b"));
  EXPECT_TRUE(log.getRecords().empty());
}

TEST(BaseDataItemNode, RaisesOnAnUnknownKeyInTheNameOfTheOperation)
{
  const auto node = makeNode<AnyNode, ipInt32>("a", 1);
  const auto check = [](const std::string& function, const std::function<void()>& operation)
  {
    expectRaised<ORVELBaseDataException>(operation,
                                         {"Item with name b c does not exists for current item node",
                                          function, "ORVELBaseData/DataItem/Node/BaseDataItemNode.cpp"});
  };
  check("const orvel::BaseDataItem& orvel::BaseDataItemNode::getItem(const std::string&) const",
        [&] { node->getItem("b c"); });
  check("const std::string& orvel::BaseDataItemNode::getItemName(const std::string&) const",
        [&] { node->getItemName("b c"); });
  check("const std::string& orvel::BaseDataItemNode::getItemToolTip(const std::string&) const",
        [&] { node->getItemToolTip("b c"); });
}

TEST(BaseDataItemNode, AsksTheDerivedClassOnce)
{
  const auto node = makeNode<AnyNode, ipInt32>("a", 1);
  node->existsItem("a");
  EXPECT_EQ(node->getNbLookUps(), 1);
  node->getItem("a");
  EXPECT_EQ(node->getNbLookUps(), 2);
  node->getItemName("a");
  EXPECT_EQ(node->getNbLookUps(), 3);
  node->getItemToolTip("a");
  EXPECT_EQ(node->getNbLookUps(), 4);
}

/// Watches the description that it gave last.
struct WatchedNode : SampleNode
{
  ItemInfoConstPtr getItemInfo(const std::string& key) const override
  {
    ItemInfoConstPtr info = SampleNode::getItemInfo(key);
    latest = info;
    return info;
  }
  mutable boost::weak_ptr<const ItemInfo> latest;
};

TEST(BaseDataItemNode, GivesReferencesThatOutliveTheDescription)
{
  WatchedNode node;
  node.accessCount().setValue(17);
  const BaseDataItem& item = node.getItem("count");
  EXPECT_TRUE(node.latest.expired());
  EXPECT_EQ(&item, &node.accessCount());

  const std::string& name = node.getItemName("count");
  EXPECT_TRUE(node.latest.expired());
  EXPECT_EQ(name, "Count");

  const std::string& toolTip = node.getItemToolTip("count");
  EXPECT_TRUE(node.latest.expired());
  EXPECT_EQ(toolTip, "How many");
}

/// Throws instead of describing.
struct ThrowingNode : SampleNode
{
  ItemInfoConstPtr getItemInfo(const std::string& key) const override { throw std::out_of_range(key); }
};

TEST(BaseDataItemNode, LetsExceptionsOfTheDerivedClassPass)
{
  const ThrowingNode node;
  const LogCapture log(getORVELBaseDataLogger());
  const auto textOf = [](auto operation) -> std::string
  {
    try
    {
      operation();
    }
    catch (const std::out_of_range& failure)
    {
      return failure.what();
    }
    return "nothing was thrown";
  };
  EXPECT_EQ(textOf([&] { node.existsItem("k1"); }), "k1");
  EXPECT_EQ(textOf([&] { node.getItem("k2"); }), "k2");
  EXPECT_EQ(textOf([&] { node.getItemName("k3"); }), "k3");
  EXPECT_EQ(textOf([&] { node.getItemToolTip("k4"); }), "k4");
  EXPECT_TRUE(log.getRecords().empty());
}

TEST(BaseDataItemNode, IsEqualToAnotherOfItsClassWithoutItems)
{
  EXPECT_TRUE(orvel::equal(AnyNode(), AnyNode(), 0));
}

TEST(BaseDataItemNode, IsEqualWithinTheToleranceOfItsFloatingLeaves)
{
  const auto left = makeNode<AnyNode, ipReal64>("a", 1.0);
  const auto right = makeNode<AnyNode, ipReal64>("a", 1.0 + 1.0 / 1024);
  EXPECT_TRUE(orvel::equal(*left, *right, 1.0 / 512));
  EXPECT_FALSE(orvel::equal(*left, *right, 1.0 / 2048));
}

// Copies

TEST(BaseDataItemNode, CopiesNothingOfItsOwn)
{
  SampleNode node;
  const auto other = makeSampleNode(3, "three");
  node.BaseDataItemNode::copy(*other);
  EXPECT_EQ(node.accessCount().getValue(), 0);
  EXPECT_EQ(node.accessLabel().getValue(), "");
}

TEST(BaseDataItemNode, IsCopiedWithItsItemsByTheDerivedClass)
{
  const auto node = makeSampleNode(3, "three");
  const std::unique_ptr<BaseDynamicObject> duplicate(node->duplicate());
  auto& copy = dynamic_cast<SampleNode&>(*duplicate);
  EXPECT_EQ(copy.accessCount().getValue(), 3);
  node->accessCount().setValue(4);
  EXPECT_EQ(copy.accessCount().getValue(), 3);
  EXPECT_NE(&copy.getItem("count"), &node->getItem("count"));
}

// Archives

template <class HandWritten>
class BaseDataItemNodeArchive : public testing::Test
{
};

TYPED_TEST_SUITE(BaseDataItemNodeArchive, Formats, );

TYPED_TEST(BaseDataItemNodeArchive, HoldsVersionRecordsAlone)
{
  TypeParam expected;
  putVersion(expected, "orvel::BaseDataItem", 1);
  putVersion(expected, "orvel::BaseDataItemNode", 1);
  const auto node = makeSampleNode(3, "three");
  EXPECT_EQ(fileOf<TypeParam>(
                [&](BaseOArchive& archive)
                {
                  for (int i = 0; i < 2; ++i) // the records stand once
                  {
                    const BoolResult written = node->BaseDataItemNode::write(archive);
                    EXPECT_TRUE(written);
                    EXPECT_EQ(written.getMessage(), "");
                  }
                }),
            expected.file());

  readFile<TypeParam>(expected.file(),
                      [&](BaseIArchive& archive)
                      {
                        for (int i = 0; i < 2; ++i)
                        {
                          const BoolResult read = node->BaseDataItemNode::read(archive);
                          EXPECT_TRUE(read);
                          EXPECT_EQ(read.getMessage(), "");
                        }
                        EXPECT_EQ(archive.getRegisterClassVersion("orvel::BaseDataItemNode"), 1U);
                      });
  EXPECT_EQ(node->accessCount().getValue(), 3);
}

TYPED_TEST(BaseDataItemNodeArchive, HoldsTheItemsOfTheDerivedClassBehindTheRecords)
{
  TypeParam expected;
  putVersion(expected, "orvel::BaseDataItem", 1);
  putVersion(expected, "orvel::BaseDataItemNode", 1);
  putVersion(expected, "orvel::SampleNode", 1);
  expected.openObject("count");
  putVersion(expected, "orvel::BaseDataItemLeaf", 1);
  putVersion(expected, "orvel::DataItemLeaf<ipInt32>", 1);
  expected.integer("_value", 3);
  expected.close();
  expected.openObject("label");
  putVersion(expected, "orvel::DataItemLeaf<std::string>", 1);
  expected.text("_value", "three");
  expected.close();
  const auto node = makeSampleNode(3, "three");
  EXPECT_EQ(fileOf<TypeParam>([&](BaseOArchive& archive) { node->write(archive); }), expected.file());

  SampleNode copy;
  readFile<TypeParam>(expected.file(), [&](BaseIArchive& archive) { EXPECT_TRUE(copy.read(archive)); });
  EXPECT_TRUE(orvel::equal(copy, *node, 0));
}

TYPED_TEST(BaseDataItemNodeArchive, OfANewerVersionIsRefused)
{
  for (const ipUInt32 version : {2U, 4294967295U})
  {
    TypeParam file;
    putVersion(file, "orvel::BaseDataItem", 1);
    putVersion(file, "orvel::BaseDataItemNode", version);
    std::istringstream stream(file.file());
    typename TypeParam::IArchive archive(stream);
    const auto node = makeSampleNode(3, "three");
    expectRaised<ORVELSerializationException>(
        [&] { node->read(archive); },
        {"Version " + std::to_string(version) +
             " of class orvel::BaseDataItemNode is not supported, the highest supported version is 1",
         "virtual orvel::BoolResult orvel::BaseDataItemNode::read(orvel::BaseIArchive&)",
         "ORVELBaseData/DataItem/Node/BaseDataItemNode.cpp"});
    EXPECT_EQ(node->accessCount().getValue(), 3);
    EXPECT_EQ(node->accessLabel().getValue(), "three");
    EXPECT_FALSE(archive.isClassVersionRegistred("orvel::BaseDataItemNode"));
    EXPECT_TRUE(archive.isFailed());
  }
}

TYPED_TEST(BaseDataItemNodeArchive, OfAClassThatForgetsItsItemsBringsTheDefaults)
{
  ForgetfulNode node;
  node.accessValue().setValue(8);
  const std::string file =
      fileOf<TypeParam>([&](BaseOArchive& archive) { EXPECT_TRUE(node.write(archive)); });
  ForgetfulNode copy;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { EXPECT_TRUE(copy.read(archive)); });
  EXPECT_EQ(copy.accessValue().getValue(), 5);
}

} // namespace
