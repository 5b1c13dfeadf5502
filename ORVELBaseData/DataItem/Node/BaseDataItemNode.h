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

/// \brief Root of the nodes: classes with a fixed set of items, each with a key, a name and a tool tip.
///
/// Other libraries define the concrete classes. Such a class
///  - owns its items, as members or otherwise, and sets them up in its constructor;
///  - describes them by getItemKeys() and getItemInfo(), which must agree: exactly these keys have a
///    description;
///  - declares the members of a concrete class (\see ORVEL_DECLARE_SERIALIZABLE);
///  - copies, writes and reads its items, as this class does not;
///  - may be registered with DataItemNodeFactory.
///
/// BaseToolTip is the second base and has another address than the node: convert by a cast, not by `void*`.
///
/// Archive version 1, without items. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseDataItemNode : public BaseDataItem, public BaseToolTip
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(BaseDataItemNode)

public:
  ~BaseDataItemNode() override = 0;

  eDataItemType getDataItemType() const override; ///< eDIT_Node

  virtual const std::string& getNodeName() const = 0;        ///< name of the node, for users
  virtual const std::string& getNodeLibraryName() const = 0; ///< library that contains the class

  virtual const ItemNameColl& getItemKeys() const = 0; ///< keys of all items, sorted by their bytes

  /// \brief Return an item's description, null for an unknown key.
  virtual ItemInfoConstPtr getItemInfo(const std::string& key) const = 0;

  bool existsItem(const std::string& key) const; ///< whether getItemInfo() knows the key

  /// \brief Return an item, valid as long as the node has it.
  /// \throw ORVELBaseDataException (eUnknownItem) if the key is unknown
  const BaseDataItem& getItem(const std::string& key) const;

  /// \brief Return the name of an item, for users, valid as long as the node has it.
  /// \throw ORVELBaseDataException (eUnknownItem) if the key is unknown
  const std::string& getItemName(const std::string& key) const;

  /// \brief Return the tool tip of an item, valid as long as the node has it.
  /// \throw ORVELBaseDataException (eUnknownItem) if the key is unknown
  const std::string& getItemToolTip(const std::string& key) const;

protected:
  BaseDataItemNode() = default;

private:
  ItemInfoConstPtr getInfo(const std::string& key, const SourceLocation& here) const;
};

using DataItemNodePtr = boost::shared_ptr<BaseDataItemNode>;            ///< shared node
using DataItemNodeConstPtr = boost::shared_ptr<const BaseDataItemNode>; ///< shared constant node

} // namespace orvel
