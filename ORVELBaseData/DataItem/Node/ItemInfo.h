#pragma once

/// \file
/// \brief What a node tells of one of its items.

#include <string>

#include <boost/shared_ptr.hpp>

namespace orvel
{

class BaseDataItem;

/// \brief What a node tells of one of its items: a view, not an owner.
///
/// The three targets have to outlive the view, as long as the node at best: users of a node keep references
/// to them when the view is gone.
struct ItemInfo
{
  const BaseDataItem* item;   ///< the item
  const std::string* name;    ///< its name, for users
  const std::string* toolTip; ///< what it is, for users
};

using ItemInfoPtr = boost::shared_ptr<ItemInfo>;            ///< shared description
using ItemInfoConstPtr = boost::shared_ptr<const ItemInfo>; ///< shared constant description

} // namespace orvel
