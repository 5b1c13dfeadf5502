#pragma once

/// \file
/// \brief Deep copies of items.

#include <memory>

#include <boost/shared_ptr.hpp>

#include <ORVELUtil/BaseDynamicObject.h>

namespace orvel::details
{

/// \brief Return a duplicate of an item under a new shared pointer. A duplicate is trusted to be an Item.
template <class Item>
boost::shared_ptr<Item> duplicateItem(const Item& item)
{
  std::unique_ptr<BaseDynamicObject> duplicated(item.duplicate());
  // A shared pointer that can't be made frees what it was given.
  return boost::shared_ptr<Item>(static_cast<Item*>(duplicated.release()));
}

} // namespace orvel::details
