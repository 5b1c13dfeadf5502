#pragma once

/// \file
/// \brief Deep copies of items.

#include <memory>

#include <boost/shared_ptr.hpp>

#include <ORVELUtil/BaseDynamicObject.h>

namespace orvel::details
{

/// \brief Duplicate an item; the duplicate is trusted to be an Item, too.
template <class Item>
boost::shared_ptr<Item> duplicateItem(const Item& item)
{
  std::unique_ptr<BaseDynamicObject> duplicated(item.duplicate());
  // If the shared pointer cannot be created, it deletes the object.
  return boost::shared_ptr<Item>(static_cast<Item*>(duplicated.release()));
}

} // namespace orvel::details
