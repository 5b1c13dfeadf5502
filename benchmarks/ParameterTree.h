#pragma once

/// \file
/// \brief The tree of parameters that is measured, for the library and its peers alike.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>

namespace orvel
{

/// \brief Leaf of what to do at the border of an image: one of four ways, 0 to 3.
class BenchmarkBorderLeaf : public BaseDataItemEnumLeaf
{
  ORVEL_DECLARE_SERIALIZABLE(BenchmarkBorderLeaf)

public:
  BenchmarkBorderLeaf(); ///< way 0

  std::string getEnumNameStr() const override;
  bool fromString(const std::string& text, ipUInt32& value) const override;
  bool toString(const ipUInt32& value, std::string& text) const override;
};

/// \brief Node of three leaves: "border", an enumerate, "count", a number, and "label", a string.
class BenchmarkFilterNode : public BaseDataItemNode
{
  ORVEL_DECLARE_SERIALIZABLE(BenchmarkFilterNode)

public:
  BenchmarkFilterNode(); ///< way 0, count 0, no label

  const std::string& getNodeName() const override;
  const std::string& getNodeLibraryName() const override;
  const std::string& getToolTip() const override;
  const std::string& getLongToolTip() const override;
  const ItemNameColl& getItemKeys() const override;
  ItemInfoConstPtr getItemInfo(const std::string& key) const override;

  BenchmarkBorderLeaf& accessBorder() { return _border; }
  DataItemLeaf<ipInt32>& accessCount() { return _count; }
  DataItemLeaf<std::string>& accessLabel() { return _label; }

private:
  BenchmarkBorderLeaf _border;
  DataItemLeaf<ipInt32> _count;
  DataItemLeaf<std::string> _label;
};

namespace benchmarks
{

/// \brief Hash of every name and every value of a tree in order: what tells trees of different libraries,
/// which hold the same, from those which do not.
class Checksum
{
public:
  template <class T>
  void add(const T& value)
  {
    static_assert(std::is_arithmetic_v<T>);
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(value));
    addBits(bits);
  }

  void add(const std::string& text)
  {
    addBits(text.size());
    for (const char letter : text)
      addBits(static_cast<unsigned char>(letter));
  }

  void add(const boost::filesystem::path& path) { add(path.native()); }

  template <class T>
  void add(const std::vector<T>& values)
  {
    addBits(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
    {
      if constexpr (std::is_same_v<T, bool>)
        add<bool>(values[i]);
      else
        add(values[i]);
    }
  }

  std::uint64_t get() const { return _hash; }

private:
  void addBits(std::uint64_t bits) { _hash = (_hash ^ bits) * 1099511628211U ^ (_hash >> 47U); }

  std::uint64_t _hash = 14695981039346656037U;
};

/// \brief What a walk that reads every value costs at least: it adds them up, texts by their lengths.
class Sum
{
public:
  template <class T>
  void add(const T& value)
  {
    if constexpr (std::is_arithmetic_v<T>)
      _sum += static_cast<std::uint64_t>(static_cast<std::int64_t>(value));
    else
      _sum += value.size();
  }

  void add(const ipReal32& value) { _realSum += static_cast<ipReal64>(value); }
  void add(const ipReal64& value) { _realSum += value; }
  void add(const ipUInt64& value) { _sum += value; }

  template <class T>
  void add(const std::vector<T>& values)
  {
    for (std::size_t i = 0; i < values.size(); ++i)
    {
      if constexpr (std::is_same_v<T, bool>)
        add<bool>(values[i]);
      else
        add(values[i]);
    }
  }

  std::uint64_t get() const { return _sum + (_realSum > 0 ? 1U : 0U); }

private:
  std::uint64_t _sum = 0;
  ipReal64 _realSum = 0;
};

/// \brief Walk over a tree by the public interface of the items, and read every value.
Checksum getChecksum(const BaseDataItem& tree);
Sum getSum(const BaseDataItem& tree); ///< \copydoc getChecksum

/// \brief Make the values of the tree: the same ones in every run.
class ParameterValues
{
public:
  template <class T>
  T make()
  {
    if constexpr (std::is_same_v<T, std::string>)
      return makeText(4 + _random() % 24);
    else if constexpr (std::is_same_v<T, boost::filesystem::path>)
      return "/" + makeText(8) + "/" + makeText(8 + _random() % 16) + ".tif";
    else if constexpr (std::is_same_v<T, bool>)
      return _random() % 2 != 0;
    else if constexpr (std::is_floating_point_v<T>)
      return makeReal<T>();
    else // of all magnitudes
      return static_cast<T>(_random() >> (64U - 8U * sizeof(T) + _random() % (8U * sizeof(T))));
  }

  /// \brief Make 0 to 15 values.
  template <class T>
  std::vector<T> makeColl()
  {
    std::vector<T> values(_random() % 16);
    for (std::size_t i = 0; i < values.size(); ++i)
      values[i] = make<T>();
    return values;
  }

  ipUInt32 makeBorder() { return static_cast<ipUInt32>(_random() % 4); }

private:
  std::string makeText(std::size_t length)
  {
    std::string text(length, ' ');
    for (char& letter : text)
      letter = static_cast<char>('a' + _random() % 26);
    return text;
  }

  template <class T>
  T makeReal() // every other one as people enter them, with three decimals
  {
    if (_random() % 2 != 0)
      return static_cast<T>(static_cast<ipInt64>(_random() % 2000001U) - 1000000) / T(1000);
    return std::uniform_real_distribution<T>(T(-1), T(1))(_random);
  }

  std::mt19937_64 _random{20240229U};
};

constexpr std::size_t g_nbParametersPerMap = 100;

/// \brief Enter 100 parameters of all kinds into a map: 52 leaves of the 13 types of values, 8 enumerates, 13
/// leaf collections, three nodes and a collection of six nodes of three leaves each.
template <class Tree>
void addParameters(typename Tree::Map& map, ParameterValues& values)
{
  static constexpr const char* g_words[] = {"maximum_", "minimum_", "threshold_", "tolerance_"};
#define ORVEL_ADD_PARAMETERS(Type, Name, text)                                                               \
  for (const char* word : g_words)                                                                           \
    Tree::insert(map, std::string(word) + #Name, Tree::template makeLeaf<Type>(values.make<Type>()));        \
  Tree::insert(map, std::string("table_") + #Name, Tree::template makeColl<Type>(values.makeColl<Type>()));
  ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_ADD_PARAMETERS)
#undef ORVEL_ADD_PARAMETERS
  for (const char* number : {"0", "1", "2", "3", "4", "5", "6", "7"})
    Tree::insert(map, std::string("border_") + number, Tree::makeBorder(values.makeBorder()));

  const auto makeNode = [&values]
  {
    const auto border = values.makeBorder();
    const auto count = values.make<ipInt32>();
    return Tree::makeNode(border, count, values.make<std::string>());
  };
  for (const char* name : {"filter_before", "filter_after", "filter_between"})
    Tree::insert(map, name, makeNode());
  auto coll = Tree::makeNodeColl();
  for (int i = 0; i < 6; ++i)
    Tree::append(*coll, makeNode());
  Tree::insert(map, "filters", coll);
}

/// \brief Make a tree of maps of 100 parameters each. So many of them as `depth` says hold one another, and
/// the root, which has no parameters of its own, holds as many of these nests as it takes.
template <class Tree>
typename Tree::MapPtr makeTree(std::size_t nbParameters, std::size_t depth)
{
  ParameterValues values;
  typename Tree::MapPtr root = Tree::makeMap();
  typename Tree::MapPtr parent = root;
  for (std::size_t i = 0; i < nbParameters / g_nbParametersPerMap; ++i)
  {
    const bool startsNest = i % depth == 0;
    typename Tree::MapPtr map = Tree::makeMap();
    addParameters<Tree>(*map, values);
    Tree::insert(startsNest ? *root : *parent, startsNest ? "stage_" + std::to_string(i / depth) : "inner",
                 map);
    parent = map;
  }
  return root;
}

/// \brief The tree as the library's data items.
struct OrvelTree
{
  using Map = DataItemMap;
  using MapPtr = DataItemMapPtr;

  static MapPtr makeMap() { return boost::make_shared<DataItemMap>(); }
  static void insert(Map& map, const std::string& name, const DataItemPtr& item)
  {
    map.insertItem(name, item);
  }

  template <class T>
  static DataItemPtr makeLeaf(const T& value)
  {
    auto leaf = boost::make_shared<DataItemLeaf<T>>();
    leaf->setValue(value);
    return leaf;
  }

  template <class T>
  static DataItemPtr makeColl(std::vector<T> values)
  {
    auto coll = boost::make_shared<DataItemLeafColl<T>>();
    coll->getColl() = std::move(values);
    return coll;
  }

  static DataItemPtr makeBorder(ipUInt32 border)
  {
    auto leaf = boost::make_shared<BenchmarkBorderLeaf>();
    leaf->setEnumValue(border);
    return leaf;
  }

  static DataItemNodePtr makeNode(ipUInt32 border, ipInt32 count, const std::string& label)
  {
    auto node = boost::make_shared<BenchmarkFilterNode>();
    node->accessBorder().setEnumValue(border);
    node->accessCount().setValue(count);
    node->accessLabel().setValue(label);
    return node;
  }

  static DataItemNodeCollPtr makeNodeColl() { return boost::make_shared<BaseDataItemNodeColl>(); }
  static void append(BaseDataItemNodeColl& coll, const DataItemNodePtr& node) { coll.push_back(node); }
};

} // namespace benchmarks
} // namespace orvel
