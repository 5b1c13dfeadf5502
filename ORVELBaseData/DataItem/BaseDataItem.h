#pragma once

/// \file
/// \brief Root of the data items.

#include <set>
#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/DataItem/DataItemType.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializableClass.h>

namespace orvel
{

/// \brief Root of the data items, of which trees of parameters are built.
///
/// A leaf holds one value, a leaf collection a sequence of values, a map any items by name, a node a fixed
/// set of named items, a node collection a sequence of nodes. Items are held by shared pointers. An item has
/// no lock: one thread may change it, or several may read it.
///
/// Copying and comparing trees is recursive, so very deep trees need a large stack: some 30,000 levels of
/// maps fit into 8 MB. Archives have a limit of their own (\see ArchiveLimits).
///
/// Archive version 1, without items. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseDataItem : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(BaseDataItem)

public:
  ~BaseDataItem() override = 0;

  virtual eDataItemType getDataItemType() const = 0; ///< the kind of the item

protected:
  BaseDataItem() = default;
};

using DataItemPtr = boost::shared_ptr<BaseDataItem>;            ///< shared item
using DataItemConstPtr = boost::shared_ptr<const BaseDataItem>; ///< shared constant item

using ItemNameColl = std::set<std::string>; ///< names or keys of items, sorted by their bytes

} // namespace orvel
