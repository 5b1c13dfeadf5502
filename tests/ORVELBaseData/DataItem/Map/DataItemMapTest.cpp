#include "ORVELBaseData/DataItem/Map/DataItemMap.h"

#include <functional>
#include <map>
#include <set>
#include <sstream>
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
#include <support/FailingAllocation.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>
#include <support/SampleNode.h>

// What it shares with node collections is tested in ItemHolderTest.cpp.

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

/// Counts its duplicates.
class CountedLeaf : public DataItemLeaf<ipInt32>
{
public:
  BaseDynamicObject* duplicate() const override
  {
    ++nbDuplicates;
    return DataItemLeaf<ipInt32>::duplicate();
  }

  mutable int nbDuplicates = 0;
};

TEST(DataItemMap, DuplicatesASharedItemOnceForEachWayToIt)
{
  const auto leaf = boost::make_shared<CountedLeaf>();
  leaf->setValue(3);
  DataItemPtr tree = leaf;
  for (int i = 0; i < 5; ++i)
  {
    const auto map = boost::make_shared<DataItemMap>();
    map->insertItem("a", tree);
    map->insertItem("b", tree);
    tree = map;
  }
  const DynamicObjectPtr copy = tree->duplicateShared();
  EXPECT_EQ(leaf->nbDuplicates, 32);
  EXPECT_EQ(dynamic_cast<const DataItemMap&>(*copy).getSize(), 2U);
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

TYPED_TEST(ArchivedDataItemMap, StoresItsSizeAndItsItemsInTheOrderOfTheirNames)
{
  auto expected = startOfFirst<TypeParam>(3);
  putNumber(expected, "B", 2, true);
  putNumber(expected, "a", 1);
  putNumber(expected, "aa", 3);
  closeMap(expected);
  EXPECT_EQ(fileOfMap<TypeParam>(mapOf({"a", "B", "aa"})), expected.file());
}

TYPED_TEST(ArchivedDataItemMap, StoresTheVersionsOnceForMapsWithinMaps)
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

TYPED_TEST(ArchivedDataItemMap, TakesANullPointerFromAnArchiveAndStoresItAgain)
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

} // namespace
