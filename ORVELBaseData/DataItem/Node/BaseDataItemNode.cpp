#include "ORVELBaseData/DataItem/Node/BaseDataItemNode.h"

#include <ORVELBaseData/DataItem/DataItemLogMessages.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_ABSTRACT_SERIALIZABLE(BaseDataItemNode, BaseDataItem, 1)

BaseDataItemNode::~BaseDataItemNode() = default;

eDataItemType BaseDataItemNode::getDataItemType() const
{
  return eDataItemType::eDIT_Node;
}

bool BaseDataItemNode::existsItem(const std::string& key) const
{
  return getItemInfo(key) != nullptr;
}

ItemInfoConstPtr BaseDataItemNode::getInfo(const std::string& key, const SourceLocation& here) const
{
  ItemInfoConstPtr info = getItemInfo(key);
  if (!info)
    raise(here, eDataItemMessage::eUnknownItem, key);
  return info;
}

const BaseDataItem& BaseDataItemNode::getItem(const std::string& key) const
{
  return *getInfo(key, ORVEL_HERE)->item;
}

const std::string& BaseDataItemNode::getItemName(const std::string& key) const
{
  return *getInfo(key, ORVEL_HERE)->name;
}

const std::string& BaseDataItemNode::getItemToolTip(const std::string& key) const
{
  return *getInfo(key, ORVEL_HERE)->toolTip;
}

} // namespace orvel
