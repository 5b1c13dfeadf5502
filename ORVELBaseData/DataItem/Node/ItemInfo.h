#pragma once

/// \file
/// \brief Description of an item of a node.

#include <string>

#include <boost/shared_ptr.hpp>

namespace orvel
{

class BaseDataItem;

/// \brief Description of an item of a node. It owns nothing.
///
/// The three targets must outlive the description, and should exist as long as the node: users keep
/// references to them after the description is gone.
struct ItemInfo
{
  const BaseDataItem* item;   ///< the item
  const std::string* name;    ///< its name, for users
  const std::string* toolTip; ///< its explanation, for users
};

using ItemInfoPtr = boost::shared_ptr<ItemInfo>;            ///< shared description
using ItemInfoConstPtr = boost::shared_ptr<const ItemInfo>; ///< shared constant description

} // namespace orvel
