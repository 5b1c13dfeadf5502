#pragma once

/// \file
/// \brief Node classes that are filled at run time, for trees of any shape.

#include <atomic>
#include <map>
#include <string>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/Node/BaseDataItemNode.h>

namespace orvel
{

/// \brief Node of any items: the name of item "a" is "Name of a", its tool tip "Tip of a". Version 1.
class AnyNode : public BaseDataItemNode
{
  ORVEL_DECLARE_SERIALIZABLE(AnyNode)

public:
  AnyNode(); ///< without items

  const std::string& getNodeName() const override;
  const std::string& getNodeLibraryName() const override;
  const std::string& getToolTip() const override;
  const std::string& getLongToolTip() const override;
  const ItemNameColl& getItemKeys() const override;
  ItemInfoConstPtr getItemInfo(const std::string& key) const override;

  void setItem(const std::string& key, const DataItemPtr& item);
  void listKey(const std::string& key); ///< the key is listed, but stands for no item: a node with a fault
  BaseDataItem& accessItem(const std::string& key) { return *_entries.at(key).item; }

  int getNbLookUps() const { return _nbLookUps; } ///< calls of getItemInfo() so far

private:
  struct Entry
  {
    DataItemPtr item;
    std::string name;
    std::string toolTip;
  };

  std::map<std::string, Entry> _entries;
  ItemNameColl _keys;
  mutable std::atomic<int> _nbLookUps{0};
};

/// \brief The same under another class name.
class OtherNode : public AnyNode
{
  ORVEL_DECLARE_SERIALIZABLE(OtherNode)

public:
  OtherNode();
};

/// \brief Node of one leaf "value", 5 in a new node, that write() and read() leave out.
class ForgetfulNode : public BaseDataItemNode
{
  ORVEL_DECLARE_SERIALIZABLE(ForgetfulNode)

public:
  ForgetfulNode();

  const std::string& getNodeName() const override;
  const std::string& getNodeLibraryName() const override;
  const std::string& getToolTip() const override;
  const std::string& getLongToolTip() const override;
  const ItemNameColl& getItemKeys() const override;
  ItemInfoConstPtr getItemInfo(const std::string& key) const override;

  DataItemLeaf<ipInt32>& accessValue() { return _value; }

private:
  DataItemLeaf<ipInt32> _value;
};

/// \brief Node of an item "inner", a node of its own class in place, or of none.
class NestNode : public BaseDataItemNode
{
  ORVEL_DECLARE_SERIALIZABLE(NestNode)

public:
  NestNode();

  const std::string& getNodeName() const override;
  const std::string& getNodeLibraryName() const override;
  const std::string& getToolTip() const override;
  const std::string& getLongToolTip() const override;
  const ItemNameColl& getItemKeys() const override;
  ItemInfoConstPtr getItemInfo(const std::string& key) const override;

  void setInner(const boost::shared_ptr<NestNode>& inner) { _inner = inner; }

private:
  boost::shared_ptr<NestNode> _inner;
};

/// \brief Node that no factory knows, without items; its duplicates throw std::runtime_error.
class UnknownNode : public AnyNode
{
public:
  static const std::string& getTypeName();
  const std::string& getClassName() const override { return getTypeName(); }
  BaseDynamicObject* duplicate() const override;
};

/// \brief Return a new leaf.
template <class T>
boost::shared_ptr<DataItemLeaf<T>> makeLeaf(const T& value)
{
  auto leaf = boost::make_shared<DataItemLeaf<T>>();
  leaf->setValue(value);
  return leaf;
}

/// \brief Return a new node of class Node with a leaf.
template <class Node, class T>
boost::shared_ptr<Node> makeNode(const std::string& key, const T& value)
{
  auto node = boost::make_shared<Node>();
  node->setItem(key, makeLeaf<T>(value));
  return node;
}

} // namespace orvel
