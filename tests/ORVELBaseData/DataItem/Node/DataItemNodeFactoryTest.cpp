#include "ORVELBaseData/DataItem/Node/DataItemNodeFactory.h"

#include <functional>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "../TestNodes.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/FailingAllocation.h>
#include <support/LayoutChecks.h>
#include <support/RaisedFailure.h>
#include <support/SampleNode.h>

ORVEL_TEST_EXPOSE(NodeInfoMap, &orvel::DataItemNodeFactory::_nodeInfoMap)

namespace
{

using namespace orvel;
using namespace orvel::test;
using NodeInfo = DataItemNodeFactory::NodeInfo;

int g_nbCreated = 0;

DataItemNodePtr createSample()
{
  ++g_nbCreated;
  return boost::make_shared<SampleNode>();
}

DataItemNodePtr createNothing()
{
  return nullptr;
}

DataItemNodePtr createWithAFailure()
{
  throw std::bad_alloc();
}

NodeInfo makeInfo(const std::string& name = "Sample")
{
  return {name, "A sample", "Tests", "support/SampleNode.h", &createSample};
}

/// The catalogue of this process, empty before and after each test.
class DataItemNodeFactoryTest : public testing::Test
{
protected:
  void SetUp() override { ASSERT_EQ(_factory.getRegistredNodes(), ItemNameColl()); }
  void TearDown() override
  {
    for (const std::string& key : _factory.getRegistredNodes())
      _factory.unRegisterNode(key);
  }

  DataItemNodeFactory& _factory = DataItemNodeFactory::getInstance();
};

TEST_F(DataItemNodeFactoryTest, IsOne)
{
  EXPECT_EQ(&DataItemNodeFactory::getInstance(), &_factory);
}

TEST_F(DataItemNodeFactoryTest, IsAPlainClassThatNobodyElseMakes)
{
  EXPECT_FALSE(std::is_polymorphic<DataItemNodeFactory>::value);
  EXPECT_FALSE(std::is_default_constructible<DataItemNodeFactory>::value);
  EXPECT_FALSE(std::is_copy_constructible<DataItemNodeFactory>::value);
  EXPECT_FALSE(std::is_copy_assignable<DataItemNodeFactory>::value);
  EXPECT_FALSE(std::is_destructible<DataItemNodeFactory>::value);
}

TEST_F(DataItemNodeFactoryTest, HoldsAMapByKey)
{
  EXPECT_EQ(offsetOf(memberOf(NodeInfoMap())), 0);
  EXPECT_EQ(sizeof(DataItemNodeFactory), sizeof(std::map<std::string, NodeInfo>));
  _factory.registerNode("k", makeInfo("Name"));
  const std::map<std::string, NodeInfo>& entries = _factory.*memberOf(NodeInfoMap());
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries.begin()->first, "k");
  EXPECT_EQ(entries.begin()->second.name, "Name");
}

TEST_F(DataItemNodeFactoryTest, KeepsTheFieldsOfAnEntryInTheirOrder)
{
  const std::vector<std::ptrdiff_t> offsets = {
      offsetOf(&NodeInfo::name), offsetOf(&NodeInfo::toolTip), offsetOf(&NodeInfo::libraryName),
      offsetOf(&NodeInfo::headerPath), offsetOf(&NodeInfo::creatorFcn)};
  constexpr auto text = static_cast<std::ptrdiff_t>(sizeof(std::string)); // a path holds one
  EXPECT_EQ(offsets, (std::vector<std::ptrdiff_t>{0, text, 2 * text, 3 * text, 4 * text}));
  EXPECT_TRUE((std::is_same<DataItemNodeFactory::NodeCreatorFcn, DataItemNodePtr (*)()>::value));
}

TEST_F(DataItemNodeFactoryTest, HasNoCreatorInAnEntryThatNamesNone)
{
  const NodeInfo info{};
  EXPECT_EQ(info.creatorFcn, nullptr);
  const NodeInfo declared;
  EXPECT_EQ(declared.creatorFcn, nullptr);
}

TEST_F(DataItemNodeFactoryTest, IsEmptyAtFirst)
{
  // Nothing of the library enters itself; SetUp() looked before any test entered something.
  EXPECT_EQ(_factory.getRegistredNodes().size(), 0U);
}

TEST_F(DataItemNodeFactoryTest, TellsWhatWasEntered)
{
  _factory.registerNode("key", makeInfo());
  EXPECT_TRUE(_factory.isRegistredNode("key"));
  EXPECT_EQ(_factory.getNodeName("key"), "Sample");
  EXPECT_EQ(_factory.getNodeToolTip("key"), "A sample");
  EXPECT_EQ(_factory.getNodeLibraryName("key"), "Tests");
  EXPECT_EQ(_factory.getNodeHeaderPath("key"), "support/SampleNode.h");
}

TEST_F(DataItemNodeFactoryTest, KeepsCopiesOfKeyAndDescription)
{
  std::string key = "key";
  NodeInfo info = makeInfo();
  _factory.registerNode(key, info);
  key = "other";
  info.name = "Other";
  EXPECT_EQ(_factory.getNodeName("key"), "Sample");
  EXPECT_FALSE(_factory.isRegistredNode("other"));
}

TEST_F(DataItemNodeFactoryTest, FindsByTheKeyAndNotByTheName)
{
  _factory.registerNode("key", makeInfo("Name"));
  EXPECT_FALSE(_factory.isRegistredNode("Name"));
  _factory.registerNode("other key", makeInfo("Name")); // the same name is no conflict
  EXPECT_EQ(_factory.getNodeName("other key"), "Name");
}

TEST_F(DataItemNodeFactoryTest, TakesAnyTextsAsTheyAre)
{
  _factory.registerNode("", NodeInfo{"", "", "", "", &createSample});
  EXPECT_TRUE(_factory.isRegistredNode(""));
  EXPECT_EQ(_factory.getNodeName(""), "");
  EXPECT_EQ(_factory.getNodeHeaderPath(""), boost::filesystem::path());
}

TEST_F(DataItemNodeFactoryTest, ListsKeysInTheOrderOfTheirBytes)
{
  for (const char* key : {"b", "\xC3\xA4", "B", "a", "ab"})
    _factory.registerNode(key, makeInfo());
  const ItemNameColl keys = _factory.getRegistredNodes();
  EXPECT_EQ(std::vector<std::string>(keys.begin(), keys.end()),
            (std::vector<std::string>{"B", "a", "ab", "b", "\xC3\xA4"}));
}

TEST_F(DataItemNodeFactoryTest, ListsKeysByValue)
{
  _factory.registerNode("a", makeInfo());
  const ItemNameColl keys = _factory.getRegistredNodes();
  _factory.registerNode("b", makeInfo());
  EXPECT_EQ(keys, ItemNameColl{"a"});
}

TEST_F(DataItemNodeFactoryTest, RefusesAKeyThatIsTakenAndKeepsTheFirstEntry)
{
  _factory.registerNode("key", makeInfo("First"));
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { _factory.registerNode("key", makeInfo("Second")); }),
            "Data item node key is already registred into factory, can't register more than once");
  EXPECT_EQ(_factory.getNodeName("key"), "First");
  EXPECT_EQ(_factory.getRegistredNodes().size(), 1U);
}

TEST_F(DataItemNodeFactoryTest, NamesThePlaceOfAFailureAndLogsItOnce)
{
  const std::string unknown =
      "Data item node x y is not registred into factory, can't access data item node informations";
  const auto check =
      [](const std::string& message, const std::string& function, const std::function<void()>& operation)
  {
    expectRaised<ORVELBaseDataException>(
        operation, {message, function, "ORVELBaseData/DataItem/Node/DataItemNodeFactory.cpp"});
  };
  _factory.registerNode("key", makeInfo());
  check("Data item node key is already registred into factory, can't register more than once",
        "void orvel::DataItemNodeFactory::registerNode(const std::string&, const NodeInfo&)",
        [&] { _factory.registerNode("key", makeInfo()); });
  check("Data item node x y is not registred into factory, can't remove from factory",
        "void orvel::DataItemNodeFactory::unRegisterNode(const std::string&)",
        [&] { _factory.unRegisterNode("x y"); });
  check(unknown, "const std::string& orvel::DataItemNodeFactory::getNodeName(const std::string&) const",
        [&] { _factory.getNodeName("x y"); });
  check(unknown, "const std::string& orvel::DataItemNodeFactory::getNodeToolTip(const std::string&) const",
        [&] { _factory.getNodeToolTip("x y"); });
  check(unknown,
        "const std::string& orvel::DataItemNodeFactory::getNodeLibraryName(const std::string&) const",
        [&] { _factory.getNodeLibraryName("x y"); });
  check(unknown,
        "const boost::filesystem::path& orvel::DataItemNodeFactory::getNodeHeaderPath(const std::string&) "
        "const",
        [&] { _factory.getNodeHeaderPath("x y"); });
  check(unknown, "orvel::DataItemNodePtr orvel::DataItemNodeFactory::createNode(const std::string&) const",
        [&] { _factory.createNode("x y"); });
  EXPECT_EQ(_factory.getRegistredNodes(), ItemNameColl{"key"});
}

TEST_F(DataItemNodeFactoryTest, DoesNotRaiseWhenAskedForAnUnknownKey)
{
  const LogCapture log(getORVELBaseDataLogger());
  EXPECT_FALSE(_factory.isRegistredNode("x"));
  EXPECT_TRUE(log.getRecords().empty());
}

TEST_F(DataItemNodeFactoryTest, TakesAKeyAgainThatWasRemoved)
{
  _factory.registerNode("key", makeInfo("First"));
  _factory.unRegisterNode("key");
  EXPECT_FALSE(_factory.isRegistredNode("key"));
  EXPECT_EQ(_factory.getRegistredNodes(), ItemNameColl());
  EXPECT_THROW(_factory.getNodeName("key"), ORVELBaseDataException);
  _factory.registerNode("key", makeInfo("Second"));
  EXPECT_EQ(_factory.getNodeName("key"), "Second");
  EXPECT_THROW(_factory.registerNode("key", makeInfo("Third")), ORVELBaseDataException);
}

TEST_F(DataItemNodeFactoryTest, CreatesANewNodeEachTime)
{
  _factory.registerNode("key", makeInfo());
  g_nbCreated = 0;
  const DataItemNodePtr first = _factory.createNode("key");
  const DataItemNodePtr second = _factory.createNode("key");
  EXPECT_EQ(g_nbCreated, 2);
  ASSERT_TRUE(first && second);
  EXPECT_NE(first, second);
  EXPECT_EQ(first.use_count(), 1);
  EXPECT_EQ(first->getClassName(), "orvel::SampleNode");
}

TEST_F(DataItemNodeFactoryTest, HandsOnTheNullOfACreator)
{
  NodeInfo info = makeInfo();
  info.creatorFcn = &createNothing;
  _factory.registerNode("key", info);
  EXPECT_EQ(_factory.createNode("key"), nullptr);
}

TEST_F(DataItemNodeFactoryTest, LetsExceptionsOfACreatorPass)
{
  NodeInfo info = makeInfo();
  info.creatorFcn = &createWithAFailure;
  _factory.registerNode("key", info);
  EXPECT_THROW(_factory.createNode("key"), std::bad_alloc);
  EXPECT_TRUE(_factory.isRegistredNode("key"));
}

TEST_F(DataItemNodeFactoryTest, EntersAnEntryWithoutACreator)
{
  NodeInfo info = makeInfo();
  info.creatorFcn = nullptr; // to create one is the caller's fault, to enter and to describe it is none
  _factory.registerNode("key", info);
  EXPECT_EQ(_factory.getNodeName("key"), "Sample");
}

TEST_F(DataItemNodeFactoryTest, GivesReferencesThatLastAsLongAsTheEntry)
{
  _factory.registerNode("m", makeInfo("Middle"));
  const std::string& name = _factory.getNodeName("m");
  const boost::filesystem::path& path = _factory.getNodeHeaderPath("m");
  for (int i = 0; i < 100; ++i)
    _factory.registerNode(std::to_string(i), makeInfo());
  for (int i = 0; i < 100; ++i)
    _factory.unRegisterNode(std::to_string(i));
  EXPECT_EQ(&_factory.getNodeName("m"), &name);
  EXPECT_EQ(&_factory.getNodeHeaderPath("m"), &path);
  EXPECT_EQ(name, "Middle");
}

TEST_F(DataItemNodeFactoryTest, GivesItsTextsByReferenceFromAConstantCatalogue)
{
  using Catalogue = const DataItemNodeFactory&;
  const auto catalogue = []() -> Catalogue
  {
    return DataItemNodeFactory::getInstance();
  };
  EXPECT_TRUE((std::is_same<decltype(catalogue().getNodeName("")), const std::string&>::value));
  EXPECT_TRUE((std::is_same<decltype(catalogue().getNodeToolTip("")), const std::string&>::value));
  EXPECT_TRUE((std::is_same<decltype(catalogue().getNodeLibraryName("")), const std::string&>::value));
  EXPECT_TRUE(
      (std::is_same<decltype(catalogue().getNodeHeaderPath("")), const boost::filesystem::path&>::value));
  EXPECT_TRUE((std::is_same<decltype(catalogue().getRegistredNodes()), ItemNameColl>::value));
  EXPECT_TRUE((std::is_same<decltype(catalogue().createNode("")), DataItemNodePtr>::value));
  _factory.registerNode("key", makeInfo());
  EXPECT_TRUE(catalogue().isRegistredNode("key"));
}

TEST_F(DataItemNodeFactoryTest, RemovesAnEntryThatIsNamedByATextOfItsOwn)
{
  const std::string key = "A key that is too long to be held without memory of its own";
  _factory.registerNode(key, makeInfo(key));
  _factory.unRegisterNode(_factory.getNodeName(key));
  EXPECT_EQ(_factory.getRegistredNodes(), ItemNameColl());
}

TEST_F(DataItemNodeFactoryTest, HasNothingToDoWithTheFactoryOfArchives)
{
  EXPECT_TRUE(DynamicObjectFactory::getInstance().isRegistered("orvel::SampleNode"));
  EXPECT_FALSE(_factory.isRegistredNode("orvel::SampleNode"));
  _factory.registerNode("orvel::Unheard", makeInfo());
  EXPECT_FALSE(DynamicObjectFactory::getInstance().isRegistered("orvel::Unheard"));
}

TEST_F(DataItemNodeFactoryTest, EntersAllOrNothingWhenMemoryEnds)
{
  const NodeInfo info = makeInfo("A name that is too long to be held without memory of its own");
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  const std::size_t nbFailures = failAtEachAllocation([&] { _factory.registerNode("key", info); },
                                                      [&]
                                                      {
                                                        EXPECT_FALSE(_factory.isRegistredNode("key"));
                                                        EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
                                                      });
  EXPECT_GE(nbFailures, 2U); // the entry and the name
  EXPECT_TRUE(_factory.isRegistredNode("key"));
}

} // namespace
