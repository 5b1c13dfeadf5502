#include "TestNodes.h"

#include <stdexcept>

#include <boost/make_shared.hpp>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

namespace
{

const std::string& getText()
{
  static const std::string g_text = "of the tests";
  return g_text;
}

} // namespace

#define ORVEL_TEST_DEFINE_NODE_TEXTS(Class)                                                                  \
  const std::string& Class::getNodeName() const                                                              \
  {                                                                                                          \
    return getText();                                                                                        \
  }                                                                                                          \
  const std::string& Class::getNodeLibraryName() const                                                       \
  {                                                                                                          \
    return getText();                                                                                        \
  }                                                                                                          \
  const std::string& Class::getToolTip() const                                                               \
  {                                                                                                          \
    return getText();                                                                                        \
  }                                                                                                          \
  const std::string& Class::getLongToolTip() const                                                           \
  {                                                                                                          \
    return getText();                                                                                        \
  }

// AnyNode

ORVEL_DEFINE_SERIALIZABLE(AnyNode, BaseDataItemNode, 1)
ORVEL_TEST_DEFINE_NODE_TEXTS(AnyNode)

AnyNode::AnyNode() = default;

const ItemNameColl& AnyNode::getItemKeys() const
{
  return _keys;
}

ItemInfoConstPtr AnyNode::getItemInfo(const std::string& key) const
{
  ++_nbLookUps;
  const auto found = _entries.find(key);
  if (found == _entries.end())
    return nullptr;
  const Entry& entry = found->second;
  return boost::make_shared<ItemInfo>(ItemInfo{entry.item.get(), &entry.name, &entry.toolTip});
}

void AnyNode::setItem(const std::string& key, const DataItemPtr& item)
{
  _entries[key] = {item, "Name of " + key, "Tip of " + key};
  _keys.insert(key);
}

void AnyNode::listKey(const std::string& key)
{
  _keys.insert(key);
}

void AnyNode::copyMembers(const AnyNode& other)
{
  if (this == &other)
    return;
  _entries.clear();
  _keys.clear();
  for (const auto& [key, entry] : other._entries)
    setItem(key, DataItemPtr(static_cast<BaseDataItem*>(entry.item->duplicate())));
}

void AnyNode::writeMembers(BaseOArchive& archive) const
{
  std::map<std::string, DataItemPtr> items;
  for (const auto& [key, entry] : _entries)
    items[key] = entry.item;
  archive << SerializationOItem("items", items);
}

void AnyNode::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  std::map<std::string, DataItemPtr> items;
  archive >> SerializationIItem("items", items);
  _entries.clear();
  _keys.clear();
  for (const auto& [key, item] : items)
    setItem(key, item);
}

// OtherNode

ORVEL_DEFINE_SERIALIZABLE(OtherNode, AnyNode, 1)

OtherNode::OtherNode() = default;

void OtherNode::copyMembers(const OtherNode& /*other*/)
{
}

void OtherNode::writeMembers(BaseOArchive& /*archive*/) const
{
}

void OtherNode::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

// ForgetfulNode

ORVEL_DEFINE_SERIALIZABLE(ForgetfulNode, BaseDataItemNode, 1)
ORVEL_TEST_DEFINE_NODE_TEXTS(ForgetfulNode)

ForgetfulNode::ForgetfulNode()
{
  _value.setValue(5);
}

const ItemNameColl& ForgetfulNode::getItemKeys() const
{
  static const ItemNameColl g_keys = {"value"};
  return g_keys;
}

ItemInfoConstPtr ForgetfulNode::getItemInfo(const std::string& key) const
{
  return key == "value" ? boost::make_shared<ItemInfo>(ItemInfo{&_value, &getText(), &getText()}) : nullptr;
}

void ForgetfulNode::copyMembers(const ForgetfulNode& other)
{
  _value.copy(other._value);
}

void ForgetfulNode::writeMembers(BaseOArchive& /*archive*/) const
{
}

void ForgetfulNode::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

// NestNode

ORVEL_DEFINE_SERIALIZABLE(NestNode, BaseDataItemNode, 1)
ORVEL_TEST_DEFINE_NODE_TEXTS(NestNode)

NestNode::NestNode() = default;

const ItemNameColl& NestNode::getItemKeys() const
{
  static const ItemNameColl g_keys = {"inner"};
  static const ItemNameColl g_none;
  return _inner ? g_keys : g_none;
}

ItemInfoConstPtr NestNode::getItemInfo(const std::string& key) const
{
  return _inner && key == "inner"
             ? boost::make_shared<ItemInfo>(ItemInfo{_inner.get(), &getText(), &getText()})
             : nullptr;
}

void NestNode::copyMembers(const NestNode& other)
{
  _inner =
      other._inner ? boost::shared_ptr<NestNode>(static_cast<NestNode*>(other._inner->duplicate())) : nullptr;
}

void NestNode::writeMembers(BaseOArchive& archive) const
{
  const bool hasInner = _inner != nullptr;
  archive << SerializationOItem("hasInner", hasInner);
  if (hasInner)
    archive << SerializationOItem<BaseSerializationObject>("inner", *_inner);
}

void NestNode::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  bool hasInner = false;
  archive >> SerializationIItem("hasInner", hasInner);
  _inner = hasInner ? boost::make_shared<NestNode>() : nullptr;
  if (hasInner)
    archive >> SerializationIItem<BaseSerializationObject>("inner", *_inner);
}

// UnknownNode

const std::string& UnknownNode::getTypeName()
{
  static const std::string g_typeName = "orvel::UnknownNode";
  return g_typeName;
}

BaseDynamicObject* UnknownNode::duplicate() const
{
  throw std::runtime_error("no duplicates");
}

} // namespace orvel
