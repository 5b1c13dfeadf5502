#pragma once

/// \file
/// \brief Items of any kind by name.

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/DataItem/BaseDataItem.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

struct SourceLocation;

namespace details
{
struct DataItemComparison;
}

/// \brief Item that holds items of any kind by name, in the order of the bytes of their names.
///
/// Items are shared with whoever else holds their pointers: insertItem() keeps the caller's pointer, without
/// a copy of the item, and getItemPtr() gives it out again. An item may stand in several maps, or under
/// several names; nothing looks for maps that hold themselves. Time: O(log n) to find, to insert or to remove
/// one of n items.
///
/// A copy of a map is deep: every item is duplicated, so it shares nothing with its source; an item that
/// stands under two names becomes two, though archives keep it one. Beware of `map = map`: the target is
/// emptied first, so the map is empty afterwards. When an item can't be duplicated the target holds the
/// duplicates made so far. A map may become a copy of a map that it holds; a copy of a map around it holds a
/// half-made copy of itself.
///
/// Archive version 1: the item "_itemMap", in the form of maps (\see ItemOperators.h). A reader needs to
/// know nothing of the items: each is created by the name of its class, which has to be registered with
/// DynamicObjectFactory, and reads itself. Reading drops the old items first; a name that comes again keeps
/// its last item, and after a failure the map holds the items read so far. Null pointers can come from an
/// archive only; getItem() of one, copying and comparing it are up to the caller to avoid.
class ORVELBASEDATA_EXPORT DataItemMap : public BaseDataItem
{
  ORVEL_DECLARE_SERIALIZABLE(DataItemMap)

public:
  DataItemMap(); ///< an empty map

  eDataItemType getDataItemType() const override; ///< eDIT_Map

  bool isEmpty() const;
  ipUInt32 getSize() const;                       ///< number of items
  bool existsItem(const std::string& name) const; ///< whether the name is in the map
  ItemNameColl getItemNames() const;              ///< all names

  /// \brief Return an item, valid as long as somebody holds it.
  /// \throw ORVELBaseDataException (eUnknownItem) if the name is not in the map
  const BaseDataItem& getItem(const std::string& name) const;
  BaseDataItem& getItem(const std::string& name); ///< \copydoc getItem(const std::string&) const

  /// \brief Return the pointer to an item.
  /// \throw ORVELBaseDataException (eUnknownItem) if the name is not in the map
  DataItemConstPtr getItemPtr(const std::string& name) const;
  DataItemPtr getItemPtr(const std::string& name); ///< \copydoc getItemPtr(const std::string&) const

  /// \brief Enter an item under a new name.
  /// \throw ORVELBaseDataException (eNullItemPtr) if the pointer is null, whatever the name
  /// \throw ORVELBaseDataException (eItemAlreadyInMap) if the name is taken; the item there stays
  void insertItem(const std::string& name, const DataItemPtr& item);

  /// \brief Drop the map's hold of an item.
  /// \throw ORVELBaseDataException (eItemNotInMap) if the name is not in the map
  void removeItem(const std::string& name);

  void clear(); ///< drop all items

private:
  friend struct details::DataItemComparison;

  const DataItemPtr& get(const std::string& name, const SourceLocation& here) const;

  std::map<std::string, DataItemPtr> _itemMap;
};

using DataItemMapPtr = boost::shared_ptr<DataItemMap>;            ///< shared map
using DataItemMapConstPtr = boost::shared_ptr<const DataItemMap>; ///< shared constant map

} // namespace orvel
