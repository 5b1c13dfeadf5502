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
/// The map shares its items with everybody who holds their pointers: insertItem() keeps the caller's pointer,
/// and getItemPtr() returns it. An item may be in several maps, or under several names; maps that hold
/// themselves are not detected. Time: O(log n) to find, insert or remove one of n items.
///
/// A copy is deep: every item is duplicated, and the copy shares nothing with its source. An item that is
/// held under two names becomes two (archives keep it one), so copying takes exponential time if the tree
/// shares much: n maps, each with the next one under two names, become 2^n. Beware of `map = map`: the target
/// is emptied first, so the map is empty afterwards. If an item cannot be duplicated, the target holds the
/// duplicates made so far. A map may become a copy of a map that it holds. If it becomes a copy of a map that
/// holds it, it holds a partial copy of itself.
///
/// Archive version 1: the item "_itemMap", in the form of maps (\see ItemOperators.h). A reader need not
/// know the items: each is created by its class name, which must be registered with DynamicObjectFactory, and
/// reads itself. Reading releases the old items first. If a name comes twice, the last item is kept. After a
/// failure the map holds the items read so far. An item may come back null; the caller must not pass its name
/// to getItem(), nor copy or compare the map.
class ORVELBASEDATA_EXPORT DataItemMap : public BaseDataItem
{
  ORVEL_DECLARE_SERIALIZABLE(DataItemMap)

public:
  DataItemMap(); ///< an empty map

  eDataItemType getDataItemType() const override; ///< eDIT_Map

  bool isEmpty() const;
  ipUInt32 getSize() const;                       ///< number of items
  bool existsItem(const std::string& name) const; ///< whether the name is in the map
  ItemNameColl getItemNames() const;              ///< all names, sorted by their bytes

  /// \brief Return an item. The reference is valid as long as the map or somebody else holds the item.
  /// \throw ORVELBaseDataException (eUnknownItem) if the name is not in the map
  const BaseDataItem& getItem(const std::string& name) const;
  BaseDataItem& getItem(const std::string& name); ///< \copydoc getItem(const std::string&) const

  /// \brief Return the pointer to an item.
  /// \throw ORVELBaseDataException (eUnknownItem) if the name is not in the map
  DataItemConstPtr getItemPtr(const std::string& name) const;
  DataItemPtr getItemPtr(const std::string& name); ///< \copydoc getItemPtr(const std::string&) const

  /// \brief Insert an item under a new name.
  /// \throw ORVELBaseDataException (eNullItemPtr) if the pointer is null, whatever the name
  /// \throw ORVELBaseDataException (eItemAlreadyInMap) if the name is taken; the item there stays
  void insertItem(const std::string& name, const DataItemPtr& item);

  /// \brief Remove an item from the map.
  /// \throw ORVELBaseDataException (eItemNotInMap) if the name is not in the map
  void removeItem(const std::string& name);

  void clear(); ///< remove all items

private:
  friend struct details::DataItemComparison;

  const DataItemPtr& get(const std::string& name, const SourceLocation& here) const;

  std::map<std::string, DataItemPtr> _itemMap;
};

using DataItemMapPtr = boost::shared_ptr<DataItemMap>;            ///< shared map
using DataItemMapConstPtr = boost::shared_ptr<const DataItemMap>; ///< shared constant map

} // namespace orvel
