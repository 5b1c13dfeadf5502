#include "SampleNode.h"

#include <boost/make_shared.hpp>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(SampleNode, BaseDataItemNode, 1)

SampleNode::SampleNode()
{
  _count.setValue(0);
}

const std::string& SampleNode::getNodeName() const
{
  static const std::string g_name = "Sample";
  return g_name;
}

const std::string& SampleNode::getNodeLibraryName() const
{
  static const std::string g_name = "Tests";
  return g_name;
}

const std::string& SampleNode::getToolTip() const
{
  static const std::string g_toolTip = "A sample";
  return g_toolTip;
}

const std::string& SampleNode::getLongToolTip() const
{
  static const std::string g_toolTip = "A sample of a node with two leaves";
  return g_toolTip;
}

const ItemNameColl& SampleNode::getItemKeys() const
{
  static const ItemNameColl g_keys = {"count", "label"};
  return g_keys;
}

ItemInfoConstPtr SampleNode::getItemInfo(const std::string& key) const
{
  static const std::string g_names[] = {"Count", "Label"};
  static const std::string g_toolTips[] = {"How many", "What they are called"};
  if (key == "count")
    return boost::make_shared<ItemInfo>(ItemInfo{&_count, &g_names[0], &g_toolTips[0]});
  if (key == "label")
    return boost::make_shared<ItemInfo>(ItemInfo{&_label, &g_names[1], &g_toolTips[1]});
  return nullptr;
}

void SampleNode::copyMembers(const SampleNode& other)
{
  _count.copy(other._count);
  _label.copy(other._label);
}

void SampleNode::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem<BaseSerializationObject>("count", _count);
  archive << SerializationOItem<BaseSerializationObject>("label", _label);
}

void SampleNode::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem<BaseSerializationObject>("count", _count);
  archive >> SerializationIItem<BaseSerializationObject>("label", _label);
}

boost::shared_ptr<SampleNode> makeSampleNode(ipInt32 count, const std::string& label)
{
  auto node = boost::make_shared<SampleNode>();
  node->accessCount().setValue(count);
  node->accessLabel().setValue(label);
  return node;
}

} // namespace orvel
