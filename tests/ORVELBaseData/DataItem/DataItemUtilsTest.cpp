#include "ORVELBaseData/DataItem/DataItemUtils.h"

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "TestNodes.h"
#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <support/RaisedFailure.h>
#include <support/SampleNode.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using Path = boost::filesystem::path;

template <class T>
boost::shared_ptr<DataItemLeafColl<T>> makeLeafColl(const std::vector<T>& values)
{
  auto coll = boost::make_shared<DataItemLeafColl<T>>();
  coll->getColl() = values;
  return coll;
}

boost::shared_ptr<DataItemMap> makeMap(const std::map<std::string, DataItemPtr>& items)
{
  auto map = boost::make_shared<DataItemMap>();
  for (const auto& [name, item] : items)
    map->insertItem(name, item);
  return map;
}

boost::shared_ptr<BaseDataItemNodeColl> makeNodeColl(const std::vector<DataItemNodePtr>& nodes)
{
  auto coll = boost::make_shared<BaseDataItemNodeColl>();
  for (const DataItemNodePtr& node : nodes)
    coll->push_back(node);
  return coll;
}

template <class T>
bool areEqualLeaves(const T& left, const T& right, ipReal64 tolerance)
{
  return orvel::equal(*makeLeaf<T>(left), *makeLeaf<T>(right), tolerance);
}

template <class T>
bool areEqualColls(const std::vector<T>& left, const std::vector<T>& right, ipReal64 tolerance)
{
  return orvel::equal(*makeLeafColl<T>(left), *makeLeafColl<T>(right), tolerance);
}

/// Whether both a leaf and a collection of one of these values equal those of the other.
template <class T>
bool areEqual(const T& left, const T& right, ipReal64 tolerance)
{
  const bool equalLeaves = areEqualLeaves<T>(left, right, tolerance);
  EXPECT_EQ(areEqualColls<T>({left}, {right}, tolerance), equalLeaves);
  EXPECT_EQ(areEqualColls<T>({T(), left}, {T(), right}, tolerance), equalLeaves);
  return equalLeaves;
}

constexpr ipReal64 g_inf = std::numeric_limits<ipReal64>::infinity();
constexpr ipReal64 g_nan = std::numeric_limits<ipReal64>::quiet_NaN();

TEST(Equal, IsAFunctionOfTwoItemsAndATolerance)
{
  using Function = bool(const BaseDataItem&, const BaseDataItem&, const ipReal64&);
  EXPECT_TRUE((std::is_same<decltype(orvel::equal), Function>::value));
}

// Values of each type

/// Two values of a type that differ in their last bit or byte alone.
template <class T>
std::pair<T, T> valuesOf()
{
  return {std::numeric_limits<T>::max(), std::numeric_limits<T>::max() - T(1)};
}
template <>
std::pair<ipReal32, ipReal32> valuesOf()
{
  return {1.0F, std::nextafter(1.0F, 2.0F)};
}
template <>
std::pair<ipReal64, ipReal64> valuesOf()
{
  return {1.0, std::nextafter(1.0, 2.0)};
}
template <>
std::pair<ipBool, ipBool> valuesOf()
{
  return {true, false};
}
template <>
std::pair<std::string, std::string> valuesOf()
{
  return {std::string("a\0b", 3), std::string("a\0c", 3)};
}
template <>
std::pair<Path, Path> valuesOf()
{
  return {"folder/a", "folder/b"};
}

template <class T>
class EqualOf : public testing::Test
{
};

using ValueTypes = testing::Types<ipBool, ipInt8, ipUInt8, ipInt16, ipUInt16, ipInt32, ipUInt32, ipInt64,
                                  ipUInt64, ipReal32, ipReal64, std::string, Path>;
TYPED_TEST_SUITE(EqualOf, ValueTypes, );

TYPED_TEST(EqualOf, LeavesComparesTheirValues)
{
  const auto [a, b] = valuesOf<TypeParam>();
  EXPECT_TRUE(areEqualLeaves<TypeParam>(a, a, 0));
  EXPECT_FALSE(areEqualLeaves<TypeParam>(a, b, 0));
  EXPECT_FALSE(areEqualLeaves<TypeParam>(b, a, 0));
}

TYPED_TEST(EqualOf, LeavesWithAToleranceHelpsFloatingValuesOnly)
{
  const auto [a, b] = valuesOf<TypeParam>();
  EXPECT_EQ(areEqualLeaves<TypeParam>(a, b, 1000), std::is_floating_point<TypeParam>::value);
}

TYPED_TEST(EqualOf, CollectionsComparesTheirValues)
{
  const auto [a, b] = valuesOf<TypeParam>();
  EXPECT_TRUE(areEqualColls<TypeParam>({a, b, a}, {a, b, a}, 0));
  EXPECT_FALSE(areEqualColls<TypeParam>({a, b, a}, {a, b, b}, 0));
  EXPECT_FALSE(areEqualColls<TypeParam>({a, b, a}, {b, a, a}, 0)); // the order counts
  EXPECT_EQ(areEqualColls<TypeParam>({a, b, a}, {a, b, b}, 1000), std::is_floating_point<TypeParam>::value);
}

TYPED_TEST(EqualOf, CollectionsComparesTheirSizes)
{
  const TypeParam a = valuesOf<TypeParam>().first;
  EXPECT_FALSE(areEqualColls<TypeParam>({a, a}, {a}, 1000));
  EXPECT_FALSE(areEqualColls<TypeParam>({a}, {a, a}, 1000));
  EXPECT_FALSE(areEqualColls<TypeParam>({}, {a}, 1000));
  EXPECT_TRUE(areEqualColls<TypeParam>({}, {}, 0));
}

TYPED_TEST(EqualOf, AnItemAndItselfIsTrue)
{
  const auto [a, b] = valuesOf<TypeParam>();
  const auto leaf = makeLeaf<TypeParam>(a);
  EXPECT_TRUE(orvel::equal(*leaf, *leaf, 0));
  const auto coll = makeLeafColl<TypeParam>({a, b});
  EXPECT_TRUE(orvel::equal(*coll, *coll, 0));
}

TYPED_TEST(EqualOf, ALeafAndACollectionIsFalse)
{
  const TypeParam a = valuesOf<TypeParam>().first;
  EXPECT_FALSE(orvel::equal(*makeLeaf<TypeParam>(a), *makeLeafColl<TypeParam>({a}), 1000));
  EXPECT_FALSE(orvel::equal(*makeLeafColl<TypeParam>({a}), *makeLeaf<TypeParam>(a), 1000));
}

TEST(Equal, OfLeavesOfDifferentTypesIsFalse)
{
  EXPECT_FALSE(orvel::equal(*makeLeaf<ipInt32>(1), *makeLeaf<ipInt64>(1), 1000));
  EXPECT_FALSE(orvel::equal(*makeLeaf<ipInt32>(1), *makeLeaf<ipUInt32>(1), 1000));
  EXPECT_FALSE(orvel::equal(*makeLeaf<ipReal32>(1), *makeLeaf<ipReal64>(1), 1000));
  EXPECT_FALSE(orvel::equal(*makeLeaf<std::string>("a"), *makeLeaf<Path>("a"), 1000));
}

TEST(Equal, OfCollectionsOfDifferentTypesIsFalseAlsoWhenEmpty)
{
  EXPECT_FALSE(orvel::equal(*makeLeafColl<ipInt32>({}), *makeLeafColl<ipUInt32>({}), 1000));
  EXPECT_FALSE(orvel::equal(*makeLeafColl<ipReal32>({1}), *makeLeafColl<ipReal64>({1}), 1000));
}

TEST(Equal, OfSignedNumbersLooksAtTheSign)
{
  EXPECT_FALSE(areEqual<ipInt8>(-1, 1, 1000));
  EXPECT_FALSE(areEqual<ipInt64>(std::numeric_limits<ipInt64>::min(), 0, 1000));
  EXPECT_TRUE(areEqual<ipInt64>(std::numeric_limits<ipInt64>::min(), std::numeric_limits<ipInt64>::min(), 0));
}

TEST(Equal, OfStringsLooksAtLengthAndBytes)
{
  EXPECT_FALSE(areEqual<std::string>("a", "ab", 0));
  EXPECT_FALSE(areEqual<std::string>("a", std::string("a\0", 2), 0));
  EXPECT_FALSE(areEqual<std::string>("a", "A", 0));
  EXPECT_TRUE(areEqual<std::string>("", "", 0));
  EXPECT_TRUE(areEqual<std::string>("\xFF\xFE", "\xFF\xFE", 0));
}

TEST(Equal, OfPathsLooksAtTheirElements)
{
  EXPECT_TRUE(areEqual<Path>("folder//file", "folder/file", 0)); // as paths compare: another text, the same
  EXPECT_FALSE(areEqual<Path>("folder/file", "folder/./file", 0));
  EXPECT_FALSE(areEqual<Path>("/folder", "folder", 0));
  EXPECT_TRUE(areEqual<Path>("", "", 0));
}

TEST(Equal, OfPackedBooleansLooksAtEachBit)
{
  for (const std::size_t size : {1U, 63U, 64U, 65U, 128U})
  {
    const std::vector<bool> bits(size, true);
    EXPECT_TRUE(areEqualColls<ipBool>(bits, bits, 0)) << size;
    for (const std::size_t place : {std::size_t{0}, size / 2, size - 1})
    {
      std::vector<bool> other = bits;
      other[place] = false;
      EXPECT_FALSE(areEqualColls<ipBool>(bits, other, 1000)) << size << ", " << place;
    }
  }
}

TEST(Equal, OfPackedBooleansLooksAtTheirNumber)
{
  EXPECT_FALSE(areEqualColls<ipBool>(std::vector<bool>(65), std::vector<bool>(64), 1000));
  EXPECT_FALSE(areEqualColls<ipBool>(std::vector<bool>(64), std::vector<bool>(65), 1000));
  EXPECT_FALSE(areEqualColls<ipBool>(std::vector<bool>(1), std::vector<bool>(), 1000));
}

TEST(Equal, OfPackedBooleansLooksAtNothingBehindTheLast)
{
  const auto shrunk = boost::make_shared<DataItemLeafColl<ipBool>>();
  shrunk->getColl().assign(128, true); // bits stay in the last word
  shrunk->getColl().resize(65);
  const auto fresh = boost::make_shared<DataItemLeafColl<ipBool>>();
  for (int i = 0; i < 65; ++i)
    fresh->push_back(true);
  EXPECT_TRUE(orvel::equal(*shrunk, *fresh, 0));
}

// Floating values

TEST(Equal, OfDoublesTakesARelativeTolerance)
{
  // They differ by 1, of at most 1025: 1/1025 is enough.
  EXPECT_TRUE(areEqual<ipReal64>(1024, 1025, 1.0 / 1024));
  EXPECT_FALSE(areEqual<ipReal64>(1024, 1025, 1.0 / 1026));
  EXPECT_TRUE(areEqual<ipReal64>(-1024, -1025, 1.0 / 1024));
  EXPECT_FALSE(areEqual<ipReal64>(-1024, 1025, 1.0 / 1024));
  EXPECT_FALSE(areEqual<ipReal64>(0, 1e-300, 0.5)); // nothing is near zero
}

TEST(Equal, OfFloatsTakesARelativeTolerance)
{
  EXPECT_TRUE(areEqual<ipReal32>(1024, 1025, 1.0 / 1024));
  EXPECT_FALSE(areEqual<ipReal32>(1024, 1025, 1.0 / 1026));
  EXPECT_FALSE(areEqual<ipReal32>(-1024, 1025, 1.0 / 1024));
}

TEST(Equal, OfFloatsNarrowsTheTolerance)
{
  // In single precision this is a half, and the values differ by exactly that.
  const ipReal64 justBelowAHalf = 0.5 - std::ldexp(1.0, -40);
  EXPECT_TRUE(areEqual<ipReal32>(1.0F, 0.5F, justBelowAHalf));
  EXPECT_FALSE(areEqual<ipReal64>(1.0, 0.5, justBelowAHalf));
}

TEST(Equal, OfFloatsTakesAToleranceThatIsTooSmallForZero)
{
  EXPECT_FALSE(areEqual<ipReal32>(1.0F, std::nextafter(1.0F, 2.0F), 1e-300));
  EXPECT_TRUE(areEqual<ipReal32>(1.0F, 1.0F, 1e-300));
}

TEST(Equal, OfFloatsTakesAToleranceThatIsTooLargeForInfinite)
{
  EXPECT_TRUE(areEqual<ipReal32>(1.0F, -1e30F, 1e300));
}

TEST(Equal, OfFloatingValuesWithoutToleranceIsThatOfTheNumbers)
{
  EXPECT_TRUE(areEqual<ipReal64>(0.0, -0.0, 0)); // other bits: it is no comparison of bytes
  EXPECT_TRUE(areEqual<ipReal32>(0.0F, -0.0F, 0));
  EXPECT_FALSE(areEqual<ipReal64>(1.0, std::nextafter(1.0, 0.0), 0));
  EXPECT_FALSE(areEqual<ipReal32>(1.0F, std::nextafter(1.0F, 0.0F), 0));
}

TEST(Equal, OfFloatingValuesLeavesEqualityAloneForANegativeTolerance)
{
  for (const ipReal64 tolerance : {-1.0, -g_inf, g_nan})
  {
    EXPECT_TRUE(areEqual<ipReal64>(1.5, 1.5, tolerance));
    EXPECT_FALSE(areEqual<ipReal64>(1.5, 1.25, tolerance));
    EXPECT_TRUE(areEqual<ipReal32>(1.5F, 1.5F, tolerance));
    EXPECT_FALSE(areEqual<ipReal32>(1.5F, 1.25F, tolerance));
  }
}

TEST(Equal, OfNaNIsFalseWhateverTheTolerance)
{
  for (const ipReal64 tolerance : {0.0, 1000.0, g_inf, g_nan})
  {
    EXPECT_FALSE(areEqual<ipReal64>(g_nan, g_nan, tolerance));
    EXPECT_FALSE(areEqual<ipReal64>(g_nan, 1, tolerance));
    EXPECT_FALSE(areEqual<ipReal64>(1, g_nan, tolerance));
    EXPECT_FALSE(areEqual<ipReal32>(std::nanf(""), std::nanf(""), tolerance));
    EXPECT_FALSE(areEqual<ipReal32>(std::nanf(""), 1, tolerance));
  }
}

TEST(Equal, OfAnItemWithNaNAndItselfIsFalse)
{
  const auto leaf = makeLeaf<ipReal64>(g_nan);
  EXPECT_FALSE(orvel::equal(*leaf, *leaf, 1000));
  const auto coll = makeLeafColl<ipReal32>({1, std::nanf("")});
  EXPECT_FALSE(orvel::equal(*coll, *coll, 1000));
}

TEST(Equal, OfInfinitiesLooksAtTheSign)
{
  constexpr ipReal32 inf = std::numeric_limits<ipReal32>::infinity();
  for (const ipReal64 tolerance : {0.0, 1000.0, g_inf})
  {
    EXPECT_TRUE(areEqual<ipReal64>(g_inf, g_inf, tolerance));
    EXPECT_TRUE(areEqual<ipReal64>(-g_inf, -g_inf, tolerance));
    EXPECT_FALSE(areEqual<ipReal64>(g_inf, -g_inf, tolerance));
    EXPECT_FALSE(areEqual<ipReal64>(g_inf, std::numeric_limits<ipReal64>::max(), tolerance));
    EXPECT_TRUE(areEqual<ipReal32>(inf, inf, tolerance));
    EXPECT_FALSE(areEqual<ipReal32>(inf, -inf, tolerance));
    EXPECT_FALSE(areEqual<ipReal32>(inf, std::numeric_limits<ipReal32>::max(), tolerance));
  }
}

// Enumerates

/// 0 is "red", 1 is "green", and so is 2; others have no text.
struct ColourLeaf : BaseDataItemEnumLeaf
{
  explicit ColourLeaf(ipUInt32 value) { setEnumValue(value); }
  const std::string& getClassName() const override
  {
    static const std::string g_name = "orvel::ColourLeaf";
    return g_name;
  }
  bool toString(const ipUInt32& value, std::string& text) const override
  {
    if (value > 2)
      return false;
    text = value == 0 ? "red" : "green";
    return true;
  }
};

TEST(Equal, OfEnumeratesLooksAtTheirTexts)
{
  EXPECT_TRUE(orvel::equal(ColourLeaf(0), ColourLeaf(0), 0));
  EXPECT_FALSE(orvel::equal(ColourLeaf(0), ColourLeaf(1), 1000));
  EXPECT_TRUE(orvel::equal(ColourLeaf(1), ColourLeaf(2), 0)); // other integers, one text
}

TEST(Equal, OfEnumeratesWithoutTextsIsTrue)
{
  EXPECT_TRUE(orvel::equal(ColourLeaf(7), ColourLeaf(8), 0));
  EXPECT_FALSE(orvel::equal(ColourLeaf(7), ColourLeaf(0), 0));
}

TEST(Equal, OfPlainEnumLeavesIsTrueWhateverTheirValues)
{
  BaseDataItemEnumLeaf left;
  BaseDataItemEnumLeaf right;
  left.setEnumValue(1);
  right.setEnumValue(2);
  EXPECT_TRUE(orvel::equal(left, right, 0));
}

TEST(Equal, OfEnumeratesOfTwoClassesIsFalse)
{
  BaseDataItemEnumLeaf plain;
  plain.setEnumValue(7);
  EXPECT_FALSE(orvel::equal(ColourLeaf(7), plain, 0)); // both without a text
}

// Classes, kinds and types from outside

/// A leaf of a bool that answers what it is told to.
struct TellingLeaf : DataItemLeaf<ipBool>
{
  TellingLeaf(bool value, ipUInt64 kind, ipUInt64 valueType)
    : _kind(kind)
    , _valueType(valueType)
  {
    setValue(value);
  }
  eDataItemType getDataItemType() const override
  {
    ++nbKindsTold;
    return eDataItemType(_kind);
  }
  eDataItemValueType getDataItemValueType() const override { return eDataItemValueType(_valueType); }

  mutable int nbKindsTold = 0;

private:
  ipUInt64 _kind;
  ipUInt64 _valueType;
};

TEST(Equal, TakesAnUnknownKindForALeaf)
{
  for (const ipUInt64 kind : {ipUInt64{5}, ipUInt64{4294967296}, std::numeric_limits<ipUInt64>::max()})
  {
    EXPECT_TRUE(orvel::equal(TellingLeaf(true, kind, 0), TellingLeaf(true, kind, 0), 0));
    EXPECT_FALSE(orvel::equal(TellingLeaf(true, kind, 0), TellingLeaf(false, kind, 0), 0));
  }
}

TEST(Equal, BranchesOnTheKindOfTheLeftSideAlone)
{
  const TellingLeaf left(true, 0, 0);
  const TellingLeaf right(true, eDataItemType(eDataItemType::eDIT_Node).getValue(), 0);
  EXPECT_TRUE(orvel::equal(left, right, 0));
  EXPECT_EQ(left.nbKindsTold, 1);
  EXPECT_EQ(right.nbKindsTold, 0);
}

TEST(Equal, TakesAnUnknownValueTypeForABool)
{
  EXPECT_TRUE(orvel::equal(TellingLeaf(true, 0, 14), TellingLeaf(true, 0, 14), 0));
  EXPECT_FALSE(orvel::equal(TellingLeaf(true, 0, 14), TellingLeaf(false, 0, 14), 0));
}

TEST(Equal, OfLeavesWithDifferentValueTypesIsFalse)
{
  EXPECT_FALSE(orvel::equal(TellingLeaf(true, 0, 0), TellingLeaf(true, 0, 14), 0));
  EXPECT_FALSE(orvel::equal(TellingLeaf(true, 0, 14), TellingLeaf(true, 0, 15), 0));
}

/// A collection of bits that answers what it is told to.
struct TellingColl : DataItemLeafColl<ipBool>
{
  TellingColl(const std::vector<bool>& bits, ipUInt64 valueType)
    : _valueType(valueType)
  {
    getColl() = bits;
  }
  eDataItemValueType getDataItemValueType() const override { return eDataItemValueType(_valueType); }

private:
  ipUInt64 _valueType;
};

TEST(Equal, TakesAnUnknownValueTypeOfACollectionForBits)
{
  for (const ipUInt64 valueType : {ipUInt64{14}, ipUInt64{4294967296}, std::numeric_limits<ipUInt64>::max()})
  {
    const TellingColl coll({true, false}, valueType);
    EXPECT_TRUE(orvel::equal(coll, TellingColl({true, false}, valueType), 0));
    EXPECT_FALSE(orvel::equal(coll, TellingColl({true, true}, valueType), 0));
    EXPECT_FALSE(orvel::equal(coll, TellingColl({true, false}, 0), 0)); // the types are compared as they are
  }
}

/// Has a class name of its own with the text of another class.
struct NamesakeLeaf : DataItemLeaf<ipInt32>
{
  explicit NamesakeLeaf(ipInt32 value) { setValue(value); }
  const std::string& getClassName() const override { return _name; }

private:
  std::string _name = "orvel::DataItemLeaf<ipInt32>";
};

TEST(Equal, ComparesTheTextsOfClassNames)
{
  EXPECT_TRUE(orvel::equal(NamesakeLeaf(3), *makeLeaf<ipInt32>(3), 0));
  EXPECT_FALSE(orvel::equal(NamesakeLeaf(3), *makeLeaf<ipInt32>(4), 0));
}

/// A collection of no values that answers any type of values.
struct OutsideColl : BaseDataItemLeafColl
{
  explicit OutsideColl(eDataItemValueType valueType)
    : _valueType(valueType)
  {
  }
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  bool hasCopySupport() const override { return false; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return nullptr; }
  eDataItemValueType getDataItemValueType() const override { return _valueType; }

private:
  eDataItemValueType _valueType;
};

TEST(Equal, OfCollectionsOfEnumeratesRaises)
{
  const OutsideColl coll(eDataItemValueType::eDIVT_Enum);
  expectRaised<ORVELBaseDataException>([&] { orvel::equal(coll, coll, 0); },
                                       {"Invalid data item value type enumerate value eDIVT_Enum",
                                        "bool orvel::equal(const orvel::BaseDataItem&, "
                                        "const orvel::BaseDataItem&, const orvel::ipReal64&)",
                                        "ORVELBaseData/DataItem/DataItemUtils.cpp"});
}

TEST(Equal, OfCollectionsWithDifferentValueTypesIsFalse)
{
  EXPECT_FALSE(orvel::equal(OutsideColl(eDataItemValueType::eDIVT_Enum),
                            OutsideColl(eDataItemValueType::eDIVT_String), 0));
  EXPECT_FALSE(orvel::equal(OutsideColl(eDataItemValueType::eDIVT_String),
                            OutsideColl(eDataItemValueType::eDIVT_Enum), 0));
}

TEST(Equal, OfDifferentKindsIsFalse)
{
  const std::vector<DataItemPtr> items = {makeLeaf<ipInt32>(0), makeLeafColl<ipInt32>({}), makeMap({}),
                                          makeNodeColl({}), boost::make_shared<AnyNode>()};
  for (const DataItemPtr& left : items)
    for (const DataItemPtr& right : items)
      EXPECT_EQ(orvel::equal(*left, *right, 1000), left == right)
          << left->getClassName() << ", " << right->getClassName();
}

// Maps

TEST(Equal, OfMapsLooksAtNamesAndItems)
{
  const auto map = [](const std::string& name, ipInt32 value)
  {
    return makeMap({{"a", makeLeaf<ipInt32>(1)}, {name, makeLeaf<ipInt32>(value)}});
  };
  EXPECT_TRUE(orvel::equal(*map("b", 2), *map("b", 2), 0));
  EXPECT_FALSE(orvel::equal(*map("b", 2), *map("b", 3), 0));
  EXPECT_FALSE(orvel::equal(*map("b", 2), *map("B", 2), 0));
  EXPECT_FALSE(orvel::equal(*map("b", 2), *map(std::string("b\0", 2), 2), 0));
}

TEST(Equal, OfMapsLooksAtTheirSizes)
{
  const auto one = makeMap({{"a", makeLeaf<ipInt32>(1)}});
  const auto two = makeMap({{"a", makeLeaf<ipInt32>(1)}, {"b", makeLeaf<ipInt32>(2)}});
  EXPECT_FALSE(orvel::equal(*one, *two, 0));
  EXPECT_FALSE(orvel::equal(*two, *one, 0));
  EXPECT_FALSE(orvel::equal(*one, *makeMap({}), 0));
  EXPECT_TRUE(orvel::equal(*makeMap({}), *makeMap({}), 0));
}

TEST(Equal, OfMapsLooksAtNoItemWhoseNamesDiffer)
{
  const auto left = makeNode<AnyNode, ipInt32>("k", 1);
  const auto right = makeNode<AnyNode, ipInt32>("k", 1);
  const auto leftSecond = makeNode<AnyNode, ipInt32>("k", 1);
  const auto rightSecond = makeNode<AnyNode, ipInt32>("k", 1);
  EXPECT_FALSE(orvel::equal(*makeMap({{"a", left}, {"b", leftSecond}}),
                            *makeMap({{"a", right}, {"c", rightSecond}}), 0));
  EXPECT_EQ(left->getNbLookUps(), 1); // the first items were compared, side by side with the names
  EXPECT_EQ(right->getNbLookUps(), 1);
  EXPECT_EQ(leftSecond->getNbLookUps(), 0);
  EXPECT_EQ(rightSecond->getNbLookUps(), 0);
}

TEST(Equal, OfMapsOfDifferentSizesLooksAtNoItem)
{
  const auto node = makeNode<AnyNode, ipInt32>("k", 1);
  EXPECT_FALSE(orvel::equal(*makeMap({{"a", node}}), *makeMap({{"a", node}, {"b", node}}), 0));
  EXPECT_EQ(node->getNbLookUps(), 0);
}

TEST(Equal, OfMapsEndsAtTheFirstDifference)
{
  const auto node = makeNode<AnyNode, ipInt32>("k", 1);
  EXPECT_FALSE(orvel::equal(*makeMap({{"a", makeLeaf<ipInt32>(1)}, {"b", node}}),
                            *makeMap({{"a", makeLeaf<ipInt32>(2)}, {"b", node}}), 0));
  EXPECT_EQ(node->getNbLookUps(), 0);
}

// Nodes

TEST(Equal, OfNodesWithoutItemsIsTrue)
{
  EXPECT_TRUE(orvel::equal(AnyNode(), AnyNode(), 0));
}

TEST(Equal, OfNodesLooksAtTheirItems)
{
  EXPECT_TRUE(orvel::equal(*makeSampleNode(1, "a"), *makeSampleNode(1, "a"), 0));
  EXPECT_FALSE(orvel::equal(*makeSampleNode(1, "a"), *makeSampleNode(2, "a"), 0));
  EXPECT_FALSE(orvel::equal(*makeSampleNode(1, "a"), *makeSampleNode(1, "b"), 0));
}

TEST(Equal, OfNodesOfDifferentClassesIsFalse)
{
  EXPECT_FALSE(orvel::equal(*makeNode<AnyNode, ipInt32>("k", 1), *makeNode<OtherNode, ipInt32>("k", 1), 0));
  EXPECT_FALSE(orvel::equal(AnyNode(), OtherNode(), 0));
}

TEST(Equal, OfNodesLooksAtNoItemBeforeAllKeysHaveMatched)
{
  const auto left = makeNode<AnyNode, ipInt32>("a", 1);
  const auto right = makeNode<AnyNode, ipInt32>("a", 2); // a difference, if somebody looked
  left->setItem("b", makeLeaf<ipInt32>(1));
  right->setItem("c", makeLeaf<ipInt32>(1));
  EXPECT_FALSE(orvel::equal(*left, *right, 0));
  EXPECT_EQ(left->getNbLookUps(), 0);
  EXPECT_EQ(right->getNbLookUps(), 0);
}

TEST(Equal, OfNodesOfDifferentSizesLooksAtNoItem)
{
  const auto left = makeNode<AnyNode, ipInt32>("a", 1);
  const auto right = makeNode<AnyNode, ipInt32>("a", 1);
  right->setItem("b", makeLeaf<ipInt32>(1));
  EXPECT_FALSE(orvel::equal(*left, *right, 0));
  EXPECT_FALSE(orvel::equal(*right, *left, 0));
  EXPECT_EQ(left->getNbLookUps() + right->getNbLookUps(), 0);
}

TEST(Equal, OfNodesEndsAtTheFirstDifference)
{
  const auto left = makeNode<AnyNode, ipInt32>("a", 1);
  const auto right = makeNode<AnyNode, ipInt32>("a", 2);
  left->setItem("b", makeLeaf<ipInt32>(1));
  right->setItem("b", makeLeaf<ipInt32>(1));
  EXPECT_FALSE(orvel::equal(*left, *right, 0));
  EXPECT_EQ(left->getNbLookUps(), 1);
  EXPECT_EQ(right->getNbLookUps(), 1);
}

TEST(Equal, RaisesForAKeyThatTheNodeListsAndDoesNotKnow)
{
  const auto whole = makeNode<AnyNode, ipInt32>("ghost", 1);
  AnyNode broken;
  broken.listKey("ghost");
  const std::string text = "Item with name ghost does not exists for current item node";
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { orvel::equal(*whole, broken, 0); }), text);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { orvel::equal(broken, *whole, 0); }), text);
  EXPECT_EQ(messageOf<ORVELBaseDataException>([&] { orvel::equal(broken, broken, 0); }), text);
}

// Node collections

TEST(Equal, OfNodeCollectionsLooksAtEachPairOfNodes)
{
  const auto coll = [](ipInt32 first, ipInt32 second)
  {
    return makeNodeColl({makeSampleNode(first, ""), makeSampleNode(second, "")});
  };
  EXPECT_TRUE(orvel::equal(*coll(1, 2), *coll(1, 2), 0));
  EXPECT_FALSE(orvel::equal(*coll(1, 2), *coll(1, 3), 0));
  EXPECT_FALSE(orvel::equal(*coll(1, 2), *coll(2, 1), 0));
}

TEST(Equal, OfNodeCollectionsLooksAtTheirSizes)
{
  const auto node = makeNode<AnyNode, ipInt32>("k", 1);
  EXPECT_FALSE(orvel::equal(*makeNodeColl({node}), *makeNodeColl({node, node}), 0));
  EXPECT_FALSE(orvel::equal(*makeNodeColl({node}), *makeNodeColl({}), 0));
  EXPECT_TRUE(orvel::equal(*makeNodeColl({}), *makeNodeColl({}), 0));
  EXPECT_EQ(node->getNbLookUps(), 0);
}

TEST(Equal, OfNodeCollectionsDoesNotLookAtTheClassesOfTheirNodes)
{
  const auto any = makeNode<AnyNode, ipInt32>("k", 1);
  EXPECT_TRUE(orvel::equal(*makeNodeColl({any}), *makeNodeColl({makeNode<OtherNode, ipInt32>("k", 1)}), 0));
  EXPECT_FALSE(orvel::equal(*makeNodeColl({any}), *makeNodeColl({makeNode<OtherNode, ipInt32>("k", 2)}), 0));
  EXPECT_FALSE(orvel::equal(*makeNodeColl({any}), *makeNodeColl({makeNode<OtherNode, ipInt32>("l", 1)}), 0));
}

TEST(Equal, OfNodeCollectionsLooksAtTheClassesOfTheItemsOfTheirNodes)
{
  const auto coll = [](const DataItemPtr& item)
  {
    const auto node = boost::make_shared<AnyNode>();
    node->setItem("k", item);
    return makeNodeColl({node});
  };
  EXPECT_FALSE(orvel::equal(*coll(boost::make_shared<AnyNode>()), *coll(boost::make_shared<OtherNode>()), 0));
}

TEST(Equal, OfNodeCollectionsEndsAtTheFirstDifference)
{
  const auto node = makeNode<AnyNode, ipInt32>("k", 1);
  EXPECT_FALSE(orvel::equal(*makeNodeColl({makeSampleNode(1, ""), node}),
                            *makeNodeColl({makeSampleNode(2, ""), node}), 0));
  EXPECT_EQ(node->getNbLookUps(), 0);
}

// Trees

/// A map of a collection of nodes of maps of all kinds, around a double and a float.
DataItemPtr makeTree(ipReal64 real64, ipReal32 real32)
{
  const auto node = boost::make_shared<AnyNode>();
  node->setItem("map", makeMap({{"real64", makeLeaf<ipReal64>(real64)},
                                {"reals32", makeLeafColl<ipReal32>({0, real32})},
                                {"text", makeLeaf<std::string>("text")},
                                {"colour", boost::make_shared<ColourLeaf>(1)}}));
  return makeMap({{"nodes", makeNodeColl({makeSampleNode(1, "one"), node})}});
}

TEST(Equal, OfATreeAndItselfIsTrue)
{
  const DataItemPtr tree = makeTree(1, 2);
  EXPECT_TRUE(orvel::equal(*tree, *tree, 0));
  EXPECT_TRUE(orvel::equal(*tree, *makeTree(1, 2), 0));
}

TEST(Equal, OfATreeWithNaNAndItselfIsFalse)
{
  const DataItemPtr tree = makeTree(g_nan, 2);
  EXPECT_FALSE(orvel::equal(*tree, *tree, 1000));
}

TEST(Equal, OfATreeAndAPartOfItLooksAtThatPart)
{
  const auto inner = makeMap({{"a", makeMap({})}});
  const auto outer = makeMap({{"a", inner}});
  EXPECT_FALSE(orvel::equal(*outer, outer->getItem("a"), 0));
  EXPECT_FALSE(orvel::equal(outer->getItem("a"), *outer, 0));
  EXPECT_TRUE(orvel::equal(outer->getItem("a"), *inner, 0));
}

TEST(Equal, LooksAtASharedItemInEachOfItsPlaces)
{
  const auto node = makeNode<AnyNode, ipInt32>("k", 1);
  const auto inner = makeMap({{"a", node}, {"b", node}});
  const auto outer = makeMap({{"a", inner}, {"b", inner}});
  EXPECT_TRUE(orvel::equal(*outer, *outer, 0));
  EXPECT_EQ(node->getNbLookUps(), 2 * 2 * 2); // both sides, and two places in each of two
}

TEST(Equal, OfTreesTakesTheToleranceToEveryLevel)
{
  EXPECT_TRUE(orvel::equal(*makeTree(1024, 1024), *makeTree(1025, 1025), 1.0 / 1024));
  EXPECT_FALSE(orvel::equal(*makeTree(1024, 1024), *makeTree(1025, 1024), 1.0 / 1026));
  EXPECT_FALSE(orvel::equal(*makeTree(1024, 1024), *makeTree(1024, 1025), 1.0 / 1026));
}

TEST(Equal, ChangesNothingWhenItFails)
{
  AnyNode broken;
  broken.setItem("a", makeTree(1, 2));
  broken.listKey("ghost");
  EXPECT_THROW(orvel::equal(broken, broken, 0), ORVELBaseDataException);
  EXPECT_EQ(broken.getItemKeys(), (ItemNameColl{"a", "ghost"}));
  EXPECT_TRUE(orvel::equal(broken.getItem("a"), *makeTree(1, 2), 0));
}

} // namespace
