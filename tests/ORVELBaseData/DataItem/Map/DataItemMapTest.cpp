#include "ORVELBaseData/DataItem/Map/DataItemMap.h"

#include <functional>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
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

ORVEL_TEST_EXPOSE(ItemMap, &orvel::DataItemMap::_itemMap)

namespace
{

using namespace orvel;
using namespace orvel::test;

using Names = std::set<std::string>;
using NumberPtr = boost::shared_ptr<DataItemLeaf<ipInt32>>;

NumberPtr makeNumber(ipInt32 value)
{
  auto leaf = boost::make_shared<DataItemLeaf<ipInt32>>();
  leaf->setValue(value);
  return leaf;
}

ipInt32 numberOf(const BaseDataItem& item)
{
  return dynamic_cast<const DataItemLeaf<ipInt32>&>(item).getValue();
}

/// A map of numbers: 1 under the first name and so on.
DataItemMap mapOf(const std::vector<std::string>& names)
{
  DataItemMap map;
  ipInt32 number = 0;
  for (const std::string& name : names)
    map.insertItem(name, makeNumber(++number));
  return map;
}

TEST(DataItemMap, IsAnItemThatIsAMap)
{
  EXPECT_TRUE((std::is_base_of<BaseDataItem, DataItemMap>::value));
  EXPECT_EQ(DataItemMap().getDataItemType(), eDataItemType::eDIT_Map);
}

TEST(DataItemMap, HasItsNameAndVersion)
{
  EXPECT_EQ(DataItemMap::getTypeName(), "orvel::DataItemMap");
  EXPECT_EQ(DataItemMap().getClassName(), "orvel::DataItemMap");
  EXPECT_EQ(DataItemMap::getVersion(), 1U);
}

TEST(DataItemMap, IsCreatedEmptyByItsNameAndByItself)
{
  const DataItemMap map = mapOf({"a"});
  const std::unique_ptr<BaseDynamicObject> byName(
      DynamicObjectFactory::getInstance().createNew("orvel::DataItemMap"));
  EXPECT_TRUE(dynamic_cast<const DataItemMap&>(*byName).isEmpty());
  const std::unique_ptr<BaseDynamicObject> byItself(map.createNew());
  EXPECT_TRUE(dynamic_cast<const DataItemMap&>(*byItself).isEmpty());
  EXPECT_TRUE(dynamic_cast<const DataItemMap&>(*map.createShared()).isEmpty());
}

TEST(DataItemMap, AddsNoVirtualOperationAndOneField)
{
  EXPECT_EQ(vtableIndexOf(&DataItemMap::getDataItemType), 12U);
  if (!isSanitized) // the sanitizer widens the table
  {
    EXPECT_EQ(vtableSizeOf(DataItemMap()), 13U);
  }
  EXPECT_EQ(offsetOf(memberOf(ItemMap())), 8);
  EXPECT_EQ(sizeof(DataItemMap), 8 + sizeof(std::map<std::string, DataItemPtr>));
}

TEST(DataItemMap, IsEmptyAtFirst)
{
  const DataItemMap map;
  EXPECT_TRUE(map.isEmpty());
  EXPECT_EQ(map.getSize(), 0U);
  EXPECT_EQ(map.getItemNames(), Names());
  EXPECT_FALSE(map.existsItem(""));
}

TEST(DataItemMap, KnowsTheItemsThatWereInserted)
{
  const DataItemMap map = mapOf({"sigma", ""});
  EXPECT_FALSE(map.isEmpty());
  EXPECT_EQ(map.getSize(), 2U);
  EXPECT_TRUE(map.existsItem("sigma"));
  EXPECT_TRUE(map.existsItem("")); // a name as any other
  EXPECT_FALSE(map.existsItem("Sigma"));
  EXPECT_EQ(numberOf(map.getItem("sigma")), 1);
  EXPECT_EQ(numberOf(map.getItem("")), 2);
}

TEST(DataItemMap, GivesTheNamesInTheOrderOfTheirBytes)
{
  const DataItemMap map = mapOf({"a", "B", "\xC3\xA9", "z", "aa"});
  const ItemNameColl names = map.getItemNames();
  EXPECT_EQ(std::vector<std::string>(names.begin(), names.end()),
            (std::vector<std::string>{"B", "a", "aa", "z", "\xC3\xA9"})); // bytes count as unsigned
}

TEST(DataItemMap, GivesTheNamesByValue)
{
  const DataItemMap map = mapOf({"a", "b"});
  ItemNameColl names = map.getItemNames();
  names.clear();
  EXPECT_EQ(map.getItemNames(), (Names{"a", "b"}));
}

// Ownership

TEST(DataItemMap, KeepsThePointerThatItIsGiven)
{
  DataItemMap map;
  const NumberPtr number = makeNumber(3);
  map.insertItem("a", number);
  EXPECT_EQ(number.use_count(), 2);
  EXPECT_EQ(map.getItemPtr("a"), number);
  EXPECT_EQ(static_cast<const DataItemMap&>(map).getItemPtr("a"), number);
  EXPECT_EQ(&map.getItem("a"), number.get());
  EXPECT_EQ(&static_cast<const DataItemMap&>(map).getItem("a"), number.get());
}

TEST(DataItemMap, GivesConstantItemsWhenItIsConstant)
{
  using Map = DataItemMap;
  EXPECT_TRUE((std::is_same<decltype(std::declval<const Map&>().getItem("")), const BaseDataItem&>::value));
  EXPECT_TRUE((std::is_same<decltype(std::declval<Map&>().getItem("")), BaseDataItem&>::value));
  EXPECT_TRUE((std::is_same<decltype(std::declval<const Map&>().getItemPtr("")), DataItemConstPtr>::value));
  EXPECT_TRUE((std::is_same<decltype(std::declval<Map&>().getItemPtr("")), DataItemPtr>::value));
}

TEST(DataItemMap, SeesAChangeOfAnItemAndShowsItsOwn)
{
  DataItemMap map;
  const NumberPtr number = makeNumber(3);
  map.insertItem("a", number);
  number->setValue(4);
  EXPECT_EQ(numberOf(map.getItem("a")), 4);
  dynamic_cast<DataItemLeaf<ipInt32>&>(map.getItem("a")).setValue(5);
  EXPECT_EQ(number->getValue(), 5);
}

TEST(DataItemMap, DropsOnlyItsOwnReferenceWhenAnItemIsRemoved)
{
  DataItemMap map = mapOf({"a", "b"});
  DataItemPtr kept = map.getItemPtr("a");
  const boost::weak_ptr<BaseDataItem> other = map.getItemPtr("b");
  map.removeItem("a");
  map.removeItem("b");
  EXPECT_TRUE(map.isEmpty());
  EXPECT_EQ(numberOf(*kept), 1); // still valid
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_TRUE(other.expired());
}

TEST(DataItemMap, DropsOnlyItsOwnReferencesWhenItIsCleared)
{
  DataItemMap map = mapOf({"a", "b"});
  const DataItemPtr kept = map.getItemPtr("a");
  const boost::weak_ptr<BaseDataItem> other = map.getItemPtr("b");
  map.clear();
  EXPECT_TRUE(map.isEmpty());
  EXPECT_EQ(numberOf(*kept), 1);
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_TRUE(other.expired());
  map.clear(); // nothing left to do
  EXPECT_TRUE(map.isEmpty());
}

TEST(DataItemMap, SharesAnItemWithOtherMapsAndNames)
{
  DataItemMap first;
  DataItemMap second;
  const NumberPtr number = makeNumber(3);
  first.insertItem("a", number);
  first.insertItem("b", number);
  second.insertItem("a", number);
  number->setValue(4);
  EXPECT_EQ(numberOf(first.getItem("a")), 4);
  EXPECT_EQ(numberOf(first.getItem("b")), 4);
  EXPECT_EQ(numberOf(second.getItem("a")), 4);
  EXPECT_EQ(number.use_count(), 4);
}

TEST(DataItemMap, DoesNotLookForCycles)
{
  const auto map = boost::make_shared<DataItemMap>();
  map->insertItem("self", map);
  EXPECT_EQ(&map->getItem("self"), map.get());
  map->removeItem("self");
  EXPECT_EQ(map.use_count(), 1);
}

TEST(DataItemMap, ReplacesAnItemInTwoSteps)
{
  DataItemMap map = mapOf({"a"});
  map.removeItem("a");
  map.insertItem("a", makeNumber(9));
  EXPECT_EQ(numberOf(map.getItem("a")), 9);
}

// Failures

/// Checks the failure of an operation on mapOf({"known"}), which stays as it is.
void expectRefused(const std::function<void(DataItemMap&)>& operation, const std::string& message,
                   const std::string& function)
{
  DataItemMap map = mapOf({"known"});
  expectRaised<ORVELBaseDataException>([&] { operation(map); },
                                       {message, function, "ORVELBaseData/DataItem/Map/DataItemMap.cpp"});
  EXPECT_EQ(map.getItemNames(), Names{"known"});
  EXPECT_EQ(numberOf(map.getItem("known")), 1);
}

constexpr const char* g_unknown = "Item with name sigma does not exists for current item node";
constexpr const char* g_insertItem =
    "void orvel::DataItemMap::insertItem(const std::string&, const orvel::DataItemPtr&)";

TEST(DataItemMap, SpeaksOfAnItemNodeWhenItCannotGiveAnItem)
{
  expectRefused([](const DataItemMap& map) { map.getItem("sigma"); }, g_unknown,
                "const orvel::BaseDataItem& orvel::DataItemMap::getItem(const std::string&) const");
  expectRefused([](DataItemMap& map) { map.getItem("sigma"); }, g_unknown,
                "orvel::BaseDataItem& orvel::DataItemMap::getItem(const std::string&)");
}

TEST(DataItemMap, SpeaksOfAnItemNodeWhenItCannotGiveAPointer)
{
  expectRefused([](const DataItemMap& map) { map.getItemPtr("sigma"); }, g_unknown,
                "orvel::DataItemConstPtr orvel::DataItemMap::getItemPtr(const std::string&) const");
  expectRefused([](DataItemMap& map) { map.getItemPtr("sigma"); }, g_unknown,
                "orvel::DataItemPtr orvel::DataItemMap::getItemPtr(const std::string&)");
}

TEST(DataItemMap, SpeaksOfAnItemMapWhenItCannotRemoveAnItem)
{
  expectRefused([](DataItemMap& map) { map.removeItem("sigma"); },
                "Item with name sigma does not exist into item map, can't remove it",
                "void orvel::DataItemMap::removeItem(const std::string&)");
}

TEST(DataItemMap, KeepsTheFirstItemOfANameThatIsInsertedTwice)
{
  expectRefused([](DataItemMap& map) { map.insertItem("known", makeNumber(9)); },
                "Item with name known already exists into item map, can't insert it", g_insertItem);
}

TEST(DataItemMap, ReleasesAnItemThatItRefuses)
{
  DataItemMap map = mapOf({"known"});
  const NumberPtr number = makeNumber(9);
  EXPECT_THROW(map.insertItem("known", number), ORVELBaseDataException);
  EXPECT_EQ(number.use_count(), 1);
}

TEST(DataItemMap, RefusesANullPointerUnderANewNameAndUnderATakenOne)
{
  for (const char* const name : {"new", "known"})
    expectRefused([=](DataItemMap& map) { map.insertItem(name, DataItemPtr()); },
                  "Item shared pointer should not be null", g_insertItem);
}

// Copies

/// Checks that a copy of a tree equals it, holds new items that nobody else holds, and stays as it is.
template <class Copy>
void expectDeep(Copy copyOf)
{
  // A number, and a map that holds another number.
  const NumberPtr number = makeNumber(3);
  const auto inner = boost::make_shared<DataItemMap>();
  inner->insertItem("number", makeNumber(3));
  DataItemMap tree;
  tree.insertItem("inner", inner);
  tree.insertItem("number", number);

  const boost::shared_ptr<const DataItemMap> copied = copyOf(tree);
  EXPECT_TRUE(orvel::equal(tree, *copied, 0.0));
  EXPECT_EQ(copied->getItemNames(), (Names{"inner", "number"}));
  const auto& innerCopied = dynamic_cast<const DataItemMap&>(copied->getItem("inner"));
  EXPECT_NE(copied->getItemPtr("number"), number);
  EXPECT_NE(copied->getItemPtr("inner"), inner);
  EXPECT_NE(innerCopied.getItemPtr("number"), inner->getItemPtr("number"));
  EXPECT_EQ(copied->getItemPtr("number").use_count(), 2); // the map's and this one
  EXPECT_EQ(copied->getItemPtr("inner").use_count(), 2);
  EXPECT_EQ(innerCopied.getItemPtr("number").use_count(), 2);

  number->setValue(4);
  dynamic_cast<DataItemLeaf<ipInt32>&>(inner->getItem("number")).setValue(5);
  tree.removeItem("inner");
  EXPECT_EQ(copied->getSize(), 2U);
  EXPECT_EQ(numberOf(copied->getItem("number")), 3);
  EXPECT_EQ(numberOf(innerCopied.getItem("number")), 3);
}

TEST(DataItemMap, IsCopiedDeeply)
{
  expectDeep(
      [](const DataItemMap& tree)
      {
        auto copy = boost::make_shared<DataItemMap>();
        copy->copy(tree);
        return copy;
      });
}

TEST(DataItemMap, IsCopyConstructedDeeply)
{
  expectDeep([](const DataItemMap& tree) { return boost::make_shared<DataItemMap>(tree); });
}

TEST(DataItemMap, IsAssignedDeeply)
{
  expectDeep(
      [](const DataItemMap& tree)
      {
        auto copy = boost::make_shared<DataItemMap>();
        EXPECT_EQ(&(*copy = tree), copy.get());
        return copy;
      });
}

TEST(DataItemMap, IsDuplicatedDeeply)
{
  expectDeep([](const DataItemMap& tree)
             { return boost::shared_ptr<DataItemMap>(dynamic_cast<DataItemMap*>(tree.duplicate())); });
}

TEST(DataItemMap, IsDuplicatedDeeplyUnderASharedPointer)
{
  EXPECT_TRUE(DataItemMap().hasCopySupport());
  expectDeep([](const DataItemMap& tree)
             { return boost::dynamic_pointer_cast<DataItemMap>(tree.duplicateShared()); });
}

/// Replaces what makes new objects, but not what makes duplicates.
class DerivedMap : public DataItemMap
{
public:
  BaseDynamicObject* createNew() const override { return new DerivedMap; }
  DynamicObjectPtr createShared() const override { return boost::make_shared<DerivedMap>(); }
};

TEST(DataItemMap, IsDuplicatedAsItsOwnClass)
{
  DerivedMap map;
  map.insertItem("a", makeNumber(3));
  const std::unique_ptr<BaseDynamicObject> owned(map.duplicate());
  const DynamicObjectPtr shared = map.duplicateShared();
  for (const BaseDynamicObject* const duplicate : {owned.get(), shared.get()})
  {
    EXPECT_EQ(dynamic_cast<const DerivedMap*>(duplicate), nullptr);
    EXPECT_EQ(numberOf(dynamic_cast<const DataItemMap&>(*duplicate).getItem("a")), 3);
  }
}

TEST(DataItemMap, MakesTwoItemsOfOneUnderTwoNamesWhenItIsCopied)
{
  DataItemMap map;
  const NumberPtr number = makeNumber(3);
  map.insertItem("a", number);
  map.insertItem("b", number);
  const DataItemMap copy(map);
  EXPECT_NE(copy.getItemPtr("a"), copy.getItemPtr("b"));
}

TEST(DataItemMap, DropsWhatItHeldWhenItIsAssigned)
{
  DataItemMap map = mapOf({"a", "b"});
  const DataItemPtr kept = map.getItemPtr("a");
  const boost::weak_ptr<BaseDataItem> other = map.getItemPtr("b");
  map = mapOf({"b", "c"});
  EXPECT_EQ(map.getItemNames(), (Names{"b", "c"}));
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_TRUE(other.expired());
}

TEST(DataItemMap, IsEmptyAfterAnAssignmentToItself)
{
  DataItemMap map = mapOf({"a", "b"});
  const boost::weak_ptr<BaseDataItem> item = map.getItemPtr("a");
  const DataItemMap& same = map;
  map = same;
  EXPECT_TRUE(map.isEmpty());
  EXPECT_TRUE(item.expired());
}

TEST(DataItemMap, IsEmptyAfterACopyOfItself)
{
  DataItemMap map = mapOf({"a", "b"});
  map.copy(map);
  EXPECT_TRUE(map.isEmpty());
}

TEST(DataItemMap, IsEmptyWhenItIsConstructedFromItself)
{
  alignas(DataItemMap) unsigned char storage[sizeof(DataItemMap)] = {};
  auto* const place = reinterpret_cast<DataItemMap*>(storage);
  DataItemMap* const map = new (storage) DataItemMap(*place); // not looked at, as it is the same
  EXPECT_TRUE(map->isEmpty());
  map->~DataItemMap();
}

TEST(DataItemMap, BecomesAMapThatOnlyItHeld)
{
  DataItemMap map;
  auto inner = boost::make_shared<DataItemMap>(mapOf({"a"}));
  inner->insertItem("innermost", boost::make_shared<DataItemMap>(mapOf({"b", "c"})));
  map.insertItem("inner", inner);
  inner.reset();
  map.copy(map.getItem("inner"));
  EXPECT_EQ(map.getItemNames(), (Names{"a", "innermost"}));
  map.copy(map.getItem("innermost"));
  EXPECT_EQ(map.getItemNames(), (Names{"b", "c"}));
  EXPECT_EQ(numberOf(map.getItem("c")), 2);
}

TEST(DataItemMap, HoldsWhatItHeldAtItsTurnWhenItIsMadeACopyOfAMapAroundIt)
{
  DataItemMap outer = mapOf({"a", "z"});
  const auto inner = boost::make_shared<DataItemMap>(mapOf({"old"}));
  outer.insertItem("inner", inner);
  inner->copy(outer);
  EXPECT_EQ(inner->getItemNames(), (Names{"a", "inner", "z"}));
  const auto& innermost = dynamic_cast<const DataItemMap&>(inner->getItem("inner"));
  EXPECT_EQ(innermost.getItemNames(), Names{"a"}); // emptied, then given what comes before it
  EXPECT_EQ(numberOf(inner->getItem("z")), 2);
  EXPECT_EQ(outer.getItemPtr("inner"), inner);
}

/// Cannot be duplicated.
class Unique : public DataItemLeaf<ipInt32>
{
public:
  BaseDynamicObject* duplicate() const override { throw std::runtime_error("there is one only"); }
};

TEST(DataItemMap, HoldsWhatWasCopiedBeforeADuplicateThrew)
{
  DataItemMap source = mapOf({"a", "b", "d"});
  source.insertItem("c", boost::make_shared<Unique>());
  DataItemMap target = mapOf({"b", "x", "y"});
  EXPECT_THROW(target = source, std::runtime_error);
  EXPECT_EQ(target.getItemNames(), (Names{"a", "b"}));
  EXPECT_EQ(numberOf(target.getItem("b")), 2);
  EXPECT_EQ(source.getItemNames(), (Names{"a", "b", "c", "d"}));
}

TEST(DataItemMap, LeaksNothingWhenADuplicateThrows)
{
  DataItemMap source = mapOf({"a", "c"});
  source.insertItem("b", boost::make_shared<Unique>());
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  EXPECT_THROW(source.duplicate(), std::runtime_error);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_THROW(source.duplicateShared(), std::runtime_error);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
  EXPECT_THROW(const DataItemMap copy(source), std::runtime_error);
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

TEST(DataItemMap, LeaksNothingWhenACopyRunsOutOfMemory)
{
  const DataItemMap map = mapOf({"a", std::string(100, 'b')});
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  // The map; for each item a leaf, its count, an entry; a long name.
  EXPECT_EQ(
      failAtEachAllocation([&] { delete map.duplicate(); }, [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); }),
      8U);
}

TEST(DataItemMap, KeepsItsItemsWhenAnInsertionRunsOutOfMemory)
{
  DataItemMap map = mapOf({"a"});
  const NumberPtr number = makeNumber(3);
  const std::string name(100, 'b');
  failAtEachAllocation([&] { map.insertItem(name, number); },
                       [&]
                       {
                         EXPECT_EQ(map.getItemNames(), Names{"a"});
                         EXPECT_EQ(number.use_count(), 1);
                       });
  EXPECT_EQ(map.getItemNames(), (Names{"a", name}));
}

// Archives

template <class HandWritten>
class ArchivedDataItemMap : public ::testing::Test
{
};

using Formats = ::testing::Types<HandWrittenXml, HandWrittenBinary>;
TYPED_TEST_SUITE(ArchivedDataItemMap, Formats, );

template <class HandWritten>
void openMap(HandWritten& archive, ipUInt32 size)
{
  archive.openSection("_itemMap");
  archive.openSection("map");
  archive.integer("size", size);
}

template <class HandWritten>
void closeMap(HandWritten& archive)
{
  archive.close();
  archive.close();
}

/// The name of an entry and the sections around its pointer.
template <class HandWritten>
void openEntry(HandWritten& archive, const std::string& name)
{
  archive.text("key", name);
  archive.openSection("value");
  archive.openSection("shared_ptr<orvel::BaseDataItem>");
}

template <class HandWritten>
void closeEntry(HandWritten& archive)
{
  archive.close();
  archive.close();
}

/// What stands ahead of the entries in the first map of an archive.
template <class HandWritten>
HandWritten startOfFirst(ipUInt32 size)
{
  HandWritten archive;
  putVersion(archive, "orvel::BaseDataItem", 1);
  putVersion(archive, "orvel::DataItemMap", 1);
  openMap(archive, size);
  return archive;
}

/// An entry of a number; the first one of an archive brings the versions with it.
template <class HandWritten>
void putNumber(HandWritten& archive, const std::string& name, ipInt32 value, bool isFirst = false)
{
  openEntry(archive, name);
  archive.openPointer("pObject", "orvel::DataItemLeaf<ipInt32>");
  if (isFirst)
  {
    putVersion(archive, "orvel::BaseDataItemLeaf", 1);
    putVersion(archive, "orvel::DataItemLeaf<ipInt32>", 1);
  }
  archive.integer("_value", value);
  archive.close();
  closeEntry(archive);
}

template <class HandWritten>
std::string fileOfMap(const DataItemMap& map)
{
  return fileOf<HandWritten>(
      [&](BaseOArchive& archive)
      {
        const BoolResult written = map.write(archive);
        EXPECT_TRUE(written);
        EXPECT_EQ(written.getMessage(), "");
      });
}

template <class HandWritten>
void readMap(const std::string& file, DataItemMap& map)
{
  readFile<HandWritten>(file,
                        [&](BaseIArchive& archive)
                        {
                          const BoolResult read = map.read(archive);
                          EXPECT_TRUE(read);
                          EXPECT_EQ(read.getMessage(), "");
                        });
}

TYPED_TEST(ArchivedDataItemMap, FilesItsSizeAndItsItemsInTheOrderOfTheirNames)
{
  auto expected = startOfFirst<TypeParam>(3);
  putNumber(expected, "B", 2, true);
  putNumber(expected, "a", 1);
  putNumber(expected, "aa", 3);
  closeMap(expected);
  EXPECT_EQ(fileOfMap<TypeParam>(mapOf({"a", "B", "aa"})), expected.file());
}

TYPED_TEST(ArchivedDataItemMap, FilesASizeAloneWhenEmpty)
{
  auto expected = startOfFirst<TypeParam>(0);
  closeMap(expected);
  EXPECT_EQ(fileOfMap<TypeParam>(DataItemMap()), expected.file());
}

TYPED_TEST(ArchivedDataItemMap, FilesTheVersionsOnceForMapsWithinMaps)
{
  auto expected = startOfFirst<TypeParam>(1);
  openEntry(expected, "inner");
  expected.openPointer("pObject", "orvel::DataItemMap");
  openMap(expected, 1);
  putNumber(expected, "a", 1, true);
  closeMap(expected);
  expected.close();
  closeEntry(expected);
  closeMap(expected);
  DataItemMap map;
  map.insertItem("inner", boost::make_shared<DataItemMap>(mapOf({"a"})));
  EXPECT_EQ(fileOfMap<TypeParam>(map), expected.file());
}

TYPED_TEST(ArchivedDataItemMap, IsReadAsItIsFiled)
{
  auto file = startOfFirst<TypeParam>(2);
  putNumber(file, "a", 7, true);
  putNumber(file, "b", 8);
  closeMap(file);
  DataItemMap map;
  readMap<TypeParam>(file.file(), map);
  EXPECT_EQ(map.getItemNames(), (Names{"a", "b"}));
  EXPECT_EQ(numberOf(map.getItem("a")), 7);
  EXPECT_EQ(numberOf(map.getItem("b")), 8);
}

TYPED_TEST(ArchivedDataItemMap, ComesBackWithAllThatItHeld)
{
  const auto real = boost::make_shared<DataItemLeaf<ipReal64>>();
  real->setValue(0.1);
  const auto inner = boost::make_shared<DataItemMap>();
  inner->insertItem("sigma", real);
  inner->insertItem("node", makeSampleNode(7, "seven")); // known to the factory of objects only
  DataItemMap map;
  map.insertItem("inner", inner);
  map.insertItem("empty", boost::make_shared<DataItemMap>());
  DataItemMap found;
  readMap<TypeParam>(fileOfMap<TypeParam>(map), found);
  EXPECT_TRUE(orvel::equal(map, found, 0.0));
  const auto& innerFound = dynamic_cast<const DataItemMap&>(found.getItem("inner"));
  EXPECT_EQ(dynamic_cast<const DataItemLeaf<ipReal64>&>(innerFound.getItem("sigma")).getValue(), 0.1);
  EXPECT_EQ(innerFound.getItem("node").getClassName(), "orvel::SampleNode");
}

TYPED_TEST(ArchivedDataItemMap, ComesBackUnderNamesOfAnyBytes)
{
  const DataItemMap map = mapOf({"", " a b ", "<&\">", std::string("nul\0in", 6), "\xFF\xFE", "line\r\n"});
  DataItemMap found;
  readMap<TypeParam>(fileOfMap<TypeParam>(map), found);
  EXPECT_TRUE(orvel::equal(map, found, 0.0));
}

TYPED_TEST(ArchivedDataItemMap, BringsAnItemUnderTwoNamesBackAsOne)
{
  DataItemMap map;
  const NumberPtr number = makeNumber(3);
  map.insertItem("a", number);
  map.insertItem("b", number);
  auto expected = startOfFirst<TypeParam>(2);
  putNumber(expected, "a", 3, true);
  openEntry(expected, "b");
  expected.reference("pObject", 1);
  closeEntry(expected);
  closeMap(expected);
  EXPECT_EQ(fileOfMap<TypeParam>(map), expected.file());
  DataItemMap found;
  readMap<TypeParam>(expected.file(), found);
  EXPECT_EQ(found.getItemPtr("a"), found.getItemPtr("b"));
}

TYPED_TEST(ArchivedDataItemMap, ThatHoldsItselfComesBackThatWay)
{
  const auto map = boost::make_shared<DataItemMap>();
  map->insertItem("self", map);
  const std::string file =
      fileOf<TypeParam>([&](BaseOArchive& archive) { archive << SerializationOItem("map", map); });
  map->clear(); // cycles are opened by hand
  boost::shared_ptr<DataItemMap> found;
  readFile<TypeParam>(file, [&](BaseIArchive& archive) { archive >> SerializationIItem("map", found); });
  EXPECT_EQ(found->getItemPtr("self"), found);
  found->clear();
  EXPECT_EQ(found.use_count(), 1);
}

TYPED_TEST(ArchivedDataItemMap, DropsItsItemsBeforeItReads)
{
  auto file = startOfFirst<TypeParam>(1);
  putNumber(file, "a", 7, true);
  closeMap(file);
  DataItemMap map = mapOf({"a", "b"});
  const DataItemPtr kept = map.getItemPtr("a");
  const boost::weak_ptr<BaseDataItem> other = map.getItemPtr("b");
  readMap<TypeParam>(file.file(), map);
  EXPECT_EQ(map.getItemNames(), Names{"a"});
  EXPECT_EQ(numberOf(map.getItem("a")), 7);
  EXPECT_EQ(kept.use_count(), 1); // the reference of the map is gone
  EXPECT_EQ(numberOf(*kept), 1);
  EXPECT_TRUE(other.expired());
}

template <class HandWritten, class Put>
void expectEmptiedByAnArchive(Put put)
{
  HandWritten file;
  putVersion(file, "orvel::BaseDataItem", 1);
  putVersion(file, "orvel::DataItemMap", 1);
  put(file);
  DataItemMap map = mapOf({"a", "b"});
  EXPECT_THROW(readStart<HandWritten>(file.file(), [&](BaseIArchive& archive) { map.read(archive); }),
               ORVELSerializationException);
  EXPECT_TRUE(map.isEmpty());
}

TYPED_TEST(ArchivedDataItemMap, DropsItsItemsAlsoIfTheNewOnesCannotEvenBeCounted)
{
  expectEmptiedByAnArchive<TypeParam>([](TypeParam& file) { file.integer("_itemMap", 2); }); // no section
  expectEmptiedByAnArchive<TypeParam>(
      [](TypeParam& file)
      {
        file.openSection("_itemMap");
        file.openSection("map");
        file.text("size", "many");
        closeMap(file);
      });
}

TYPED_TEST(ArchivedDataItemMap, KeepsTheLastItemOfARepeatedName)
{
  auto file = startOfFirst<TypeParam>(4);
  putNumber(file, "b", 1, true);
  putNumber(file, "a", 2); // out of order too
  putNumber(file, "b", 3);
  putNumber(file, "b", 4);
  closeMap(file);
  DataItemMap map;
  readMap<TypeParam>(file.file(), map);
  EXPECT_EQ(map.getItemNames(), (Names{"a", "b"}));
  EXPECT_EQ(numberOf(map.getItem("a")), 2);
  EXPECT_EQ(numberOf(map.getItem("b")), 4);
}

TYPED_TEST(ArchivedDataItemMap, TakesANullPointerFromAnArchiveAndFilesItAgain)
{
  auto file = startOfFirst<TypeParam>(2);
  putNumber(file, "a", 7, true);
  openEntry(file, "null");
  file.nullPointer("pObject");
  closeEntry(file);
  closeMap(file);
  DataItemMap map;
  readMap<TypeParam>(file.file(), map);
  const DataItemMap& constant = map;
  EXPECT_EQ(map.getSize(), 2U);
  EXPECT_TRUE(map.existsItem("null"));
  EXPECT_EQ(map.getItemNames(), (Names{"a", "null"}));
  EXPECT_EQ(map.getItemPtr("null"), nullptr);
  EXPECT_EQ(constant.getItemPtr("null"), nullptr);
  EXPECT_EQ(fileOfMap<TypeParam>(map), file.file());
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { map.insertItem("null", makeNumber(1)); }),
            "Item with name null already exists into item map, can't insert it"); // the name is taken
  map.removeItem("null");
  EXPECT_EQ(map.getItemNames(), Names{"a"});
}

/// A number, then an entry "b" of a shared object that `put` files, then a number.
template <class HandWritten, class Put>
std::string archiveWithAStrangerOf(const std::string& className, Put put)
{
  auto file = startOfFirst<HandWritten>(3);
  putNumber(file, "a", 7, true);
  openEntry(file, "b");
  file.openPointer("pObject", className);
  put(file);
  file.close();
  closeEntry(file);
  putNumber(file, "c", 9);
  closeMap(file);
  return file.file();
}

void expectFirstNumberOnly(const DataItemMap& map)
{
  EXPECT_EQ(map.getItemNames(), Names{"a"});
  EXPECT_EQ(numberOf(map.getItem("a")), 7);
}

TYPED_TEST(ArchivedDataItemMap, NamesAnUnregisteredClassAndHoldsWhatWasReadBeforeIt)
{
  const std::string file = archiveWithAStrangerOf<TypeParam>("orvel::NobodyKnowsThis", [](TypeParam& archive)
                                                             { archive.integer("_value", 1); });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  DataItemMap map = mapOf({"x"});
  const auto failure = failureOf<ORVELSerializationException>([&] { map.read(archive); });
  EXPECT_NE(failure.getMessage().find("unknown class \"orvel::NobodyKnowsThis\""), std::string::npos)
      << failure.getMessage();
  expectFirstNumberOnly(map);
  EXPECT_TRUE(archive.isFailed());
}

TYPED_TEST(ArchivedDataItemMap, NamesAClassThatDoesNotFitWhenUntrusted)
{
  const std::string file =
      archiveWithAStrangerOf<TypeParam>("orvel::SingleIdentifier",
                                        [](TypeParam& archive)
                                        {
                                          putVersion(archive, "orvel::BaseIdentifier", 1);
                                          putVersion(archive, "orvel::SingleIdentifier", 1);
                                          archive.integer("_value", 1);
                                        });
  std::istringstream stream(file);
  typename TypeParam::IArchive archive(stream);
  archive.setUntrusted(true);
  DataItemMap map = mapOf({"x"});
  const auto failure = failureOf<ORVELSerializationException>([&] { map.read(archive); });
  EXPECT_NE(failure.getMessage().find(
                "an object of class orvel::SingleIdentifier can't stand for class orvel::BaseDataItem"),
            std::string::npos)
      << failure.getMessage();
  expectFirstNumberOnly(map);
  EXPECT_TRUE(archive.isFailed());
}

TYPED_TEST(ArchivedDataItemMap, TakesAllKindsOfItemsWhenUntrusted)
{
  DataItemMap map = mapOf({"a"});
  map.insertItem("map", boost::make_shared<DataItemMap>());
  map.insertItem("node", makeSampleNode(7, "seven"));
  std::istringstream stream(fileOfMap<TypeParam>(map));
  typename TypeParam::IArchive archive(stream);
  archive.setUntrusted(true);
  DataItemMap found;
  EXPECT_TRUE(found.read(archive));
  archive.close();
  EXPECT_TRUE(orvel::equal(map, found, 0.0));
}

TYPED_TEST(ArchivedDataItemMap, LetsTheFailureOfAnItemOutAndHoldsWhatWasReadBeforeIt)
{
  const std::string file =
      archiveWithAStrangerOf<TypeParam>("orvel::BaseDataItemEnumLeaf",
                                        [](TypeParam& archive)
                                        {
                                          putVersion(archive, "orvel::BaseDataItemEnumLeaf", 1);
                                          archive.text("enumValue", "eC_Red");
                                        });
  DataItemMap map = mapOf({"x"});
  EXPECT_EQ(messageOf<ORVELBaseDataException>(
                [&] { readStart<TypeParam>(file, [&](BaseIArchive& archive) { map.read(archive); }); }),
            "Invalid enumerate string value eC_Red for enumerate ");
  expectFirstNumberOnly(map);
}

TYPED_TEST(ArchivedDataItemMap, RefusesANewerVersionAndKeepsItsItems)
{
  TypeParam file;
  putVersion(file, "orvel::BaseDataItem", 1);
  putVersion(file, "orvel::DataItemMap", 2);
  openMap(file, 0);
  closeMap(file);
  DataItemMap map = mapOf({"x"});
  EXPECT_EQ(messageOf<ORVELSerializationException>(
                [&]
                { readStart<TypeParam>(file.file(), [&](BaseIArchive& archive) { map.read(archive); }); }),
            "Version 2 of class orvel::DataItemMap is not supported, the highest supported version is 1");
  EXPECT_EQ(map.getItemNames(), Names{"x"});
}

TYPED_TEST(ArchivedDataItemMap, LeaksNothingWhenReadingRunsOutOfMemory)
{
  const std::string file = fileOfMap<TypeParam>(mapOf({"a", std::string(100, 'b')}));
  const auto read = [&]
  {
    DataItemMap map;
    std::istringstream stream(file);
    typename TypeParam::IArchive archive(stream);
    map.read(archive);
  };
  read(); // what is made once and kept
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  EXPECT_GT(failAtEachAllocation(read, [&] { EXPECT_EQ(getNbBlocksInUse(), nbBlocks); }), 8U);
}

} // namespace
