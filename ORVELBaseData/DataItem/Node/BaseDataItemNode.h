#pragma once

/// \file
/// \brief Root of the nodes.

#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/DataItem/BaseDataItem.h>
#include <ORVELBaseData/DataItem/Node/BaseToolTip.h>
#include <ORVELBaseData/DataItem/Node/ItemInfo.h>

namespace orvel
{

struct SourceLocation;

/// \brief Root of the nodes, the records of a tree: classes with a fixed set of items, each with a key, a
/// name and a tool tip.
///
/// The concrete classes stand in other libraries. Such a class
///  - owns its items, as members or otherwise, and sets them up in its constructor;
///  - tells of them by getItemKeys() and getItemInfo(), which have to agree: each key has a description, and
///    nothing else has one;
///  - has the members of a concrete class (\see ORVEL_DECLARE_SERIALIZABLE). Its copy, write and read have to
///    move its items: this class moves none of them;
///  - may be entered into DataItemNodeFactory.
///
/// The tool tips are the second base, one pointer behind the first: convert to it by a cast, not through
/// `void*`.
///
/// Archive version 1, without items. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseDataItemNode : public BaseDataItem, public BaseToolTip
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(BaseDataItemNode)

public:
  ~BaseDataItemNode() override = 0;

  eDataItemType getDataItemType() const override; ///< eDIT_Node

  virtual const std::string& getNodeName() const = 0;        ///< the name of the node, for users
  virtual const std::string& getNodeLibraryName() const = 0; ///< the library in which the class stands

  virtual const ItemNameColl& getItemKeys() const = 0; ///< the keys of all items, in the order of their bytes

  /// \brief Return what there is to tell of an item, null if the key is that of none.
  virtual ItemInfoConstPtr getItemInfo(const std::string& key) const = 0;

  /// \brief Tell whether the key is that of an item. What getItemInfo() throws propagates.
  bool existsItem(const std::string& key) const;

  /// \brief Return an item, valid as long as the node has it.
  /// \throw ORVELBaseDataException (eUnknownItem) if the key is that of none
  const BaseDataItem& getItem(const std::string& key) const;

  /// \brief Return the name of an item, for users, valid as long as the node has it.
  /// \throw ORVELBaseDataException (eUnknownItem) if the key is that of none
  const std::string& getItemName(const std::string& key) const;

  /// \brief Return the tool tip of an item, valid as long as the node has it.
  /// \throw ORVELBaseDataException (eUnknownItem) if the key is that of none
  const std::string& getItemToolTip(const std::string& key) const;

protected:
  BaseDataItemNode() = default;

private:
  ItemInfoConstPtr getInfo(const std::string& key, const SourceLocation& here) const;
};

using DataItemNodePtr = boost::shared_ptr<BaseDataItemNode>;            ///< shared node
using DataItemNodeConstPtr = boost::shared_ptr<const BaseDataItemNode>; ///< shared constant node

} // namespace orvel
