#include "ParameterTree.h"

#include <algorithm>
#include <iterator>

#include <boost/make_shared.hpp>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

// ------------------------------------------------------------------------------------ the enumerate leaf

ORVEL_DEFINE_SERIALIZABLE(BenchmarkBorderLeaf, BaseDataItemEnumLeaf, 1)

namespace
{

constexpr const char* g_borders[] = {"eBorder_Constant", "eBorder_Mirror", "eBorder_Repeat", "eBorder_Wrap"};

} // namespace

BenchmarkBorderLeaf::BenchmarkBorderLeaf()
{
  setEnumValue(0);
}

std::string BenchmarkBorderLeaf::getEnumNameStr() const
{
  return "eBorder";
}

bool BenchmarkBorderLeaf::fromString(const std::string& text, ipUInt32& value) const
{
  const auto* const found = std::find(std::begin(g_borders), std::end(g_borders), text);
  if (found == std::end(g_borders))
    return false;
  value = static_cast<ipUInt32>(found - g_borders);
  return true;
}

bool BenchmarkBorderLeaf::toString(const ipUInt32& value, std::string& text) const
{
  if (value >= std::size(g_borders))
    return false;
  text = g_borders[value];
  return true;
}

void BenchmarkBorderLeaf::copyMembers(const BenchmarkBorderLeaf&)
{
}

void BenchmarkBorderLeaf::writeMembers(BaseOArchive&) const
{
}

void BenchmarkBorderLeaf::readMembers(BaseIArchive&, ipUInt32)
{
}

// ---------------------------------------------------------------------------------------------- the node

ORVEL_DEFINE_SERIALIZABLE(BenchmarkFilterNode, BaseDataItemNode, 1)

BenchmarkFilterNode::BenchmarkFilterNode()
{
  _count.setValue(0);
}

const std::string& BenchmarkFilterNode::getNodeName() const
{
  static const std::string g_name = "Filter";
  return g_name;
}

const std::string& BenchmarkFilterNode::getNodeLibraryName() const
{
  static const std::string g_name = "Benchmarks";
  return g_name;
}

const std::string& BenchmarkFilterNode::getToolTip() const
{
  static const std::string g_toolTip = "A filter";
  return g_toolTip;
}

const std::string& BenchmarkFilterNode::getLongToolTip() const
{
  static const std::string g_toolTip = "A filter with its border, count and label";
  return g_toolTip;
}

const ItemNameColl& BenchmarkFilterNode::getItemKeys() const
{
  static const ItemNameColl g_keys = {"border", "count", "label"};
  return g_keys;
}

ItemInfoConstPtr BenchmarkFilterNode::getItemInfo(const std::string& key) const
{
  static const std::string g_names[] = {"Border", "Count", "Label"};
  static const std::string g_toolTips[] = {"What is beyond", "How many", "What it is called"};
  if (key == "border")
    return boost::make_shared<ItemInfo>(ItemInfo{&_border, &g_names[0], &g_toolTips[0]});
  if (key == "count")
    return boost::make_shared<ItemInfo>(ItemInfo{&_count, &g_names[1], &g_toolTips[1]});
  if (key == "label")
    return boost::make_shared<ItemInfo>(ItemInfo{&_label, &g_names[2], &g_toolTips[2]});
  return nullptr;
}

void BenchmarkFilterNode::copyMembers(const BenchmarkFilterNode& other)
{
  _border.copy(other._border);
  _count.copy(other._count);
  _label.copy(other._label);
}

void BenchmarkFilterNode::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem<BaseSerializationObject>("border", _border);
  archive << SerializationOItem<BaseSerializationObject>("count", _count);
  archive << SerializationOItem<BaseSerializationObject>("label", _label);
}

void BenchmarkFilterNode::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem<BaseSerializationObject>("border", _border);
  archive >> SerializationIItem<BaseSerializationObject>("count", _count);
  archive >> SerializationIItem<BaseSerializationObject>("label", _label);
}

// ---------------------------------------------------------------------------------------------- the walk

namespace benchmarks
{

namespace
{

/// Names are values for a checksum; a walk that reads values has no use for them.
void addName(Checksum& result, const std::string& name)
{
  result.add(name);
}

void addName(Sum&, const std::string&)
{
}

template <class Result>
void walkLeaf(const BaseDataItemLeaf& leaf, Result& result)
{
  switch (leaf.getDataItemValueType().getDomain())
  {
#define ORVEL_READ_LEAF(Type, Name, text)                                                                    \
  case eDataItemValueType::eDIVT_##Name:                                                                     \
    result.add(static_cast<const DataItemLeaf<Type>&>(leaf).getValue());                                     \
    break;
    ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_READ_LEAF)
#undef ORVEL_READ_LEAF
  case eDataItemValueType::eDIVT_Enum:
    result.add(static_cast<const BaseDataItemEnumLeaf&>(leaf).getEnumValue());
    break;
  }
}

template <class Result>
void walkLeafColl(const BaseDataItemLeafColl& coll, Result& result)
{
  switch (coll.getDataItemValueType().getDomain())
  {
#define ORVEL_READ_LEAF_COLL(Type, Name, text)                                                               \
  case eDataItemValueType::eDIVT_##Name:                                                                     \
    result.add(static_cast<const DataItemLeafColl<Type>&>(coll).getColl());                                  \
    break;
    ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_READ_LEAF_COLL)
#undef ORVEL_READ_LEAF_COLL
  case eDataItemValueType::eDIVT_Enum:
    break; // there is none
  }
}

template <class Result>
void walk(const BaseDataItem& item, Result& result)
{
  switch (item.getDataItemType().getDomain())
  {
  case eDataItemType::eDIT_Leaf:
    walkLeaf(static_cast<const BaseDataItemLeaf&>(item), result);
    break;
  case eDataItemType::eDIT_LeafColl:
    walkLeafColl(static_cast<const BaseDataItemLeafColl&>(item), result);
    break;
  case eDataItemType::eDIT_Node:
  {
    const auto& node = static_cast<const BaseDataItemNode&>(item);
    for (const std::string& key : node.getItemKeys())
    {
      walk(node.getItem(key), result);
    }
    break;
  }
  case eDataItemType::eDIT_NodeColl:
    for (const DataItemNodePtr& node : static_cast<const BaseDataItemNodeColl&>(item).getColl())
    {
      walk(*node, result);
    }
    break;
  case eDataItemType::eDIT_Map:
  {
    const auto& map = static_cast<const DataItemMap&>(item);
    for (const std::string& name : map.getItemNames())
    {
      addName(result, name);
      walk(map.getItem(name), result);
    }
    break;
  }
  }
}

} // namespace

Checksum getChecksum(const BaseDataItem& tree)
{
  Checksum result;
  walk(tree, result);
  return result;
}

Sum getSum(const BaseDataItem& tree)
{
  Sum result;
  walk(tree, result);
  return result;
}

} // namespace benchmarks
} // namespace orvel
