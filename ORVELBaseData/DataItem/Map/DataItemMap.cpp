#include "ORVELBaseData/DataItem/Map/DataItemMap.h"

#include <ORVELBaseData/DataItem/DataItemLogMessages.h>
#include <ORVELBaseData/Private/Prefetch.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(DataItemMap, BaseDataItem, 1)

DataItemMap::DataItemMap() = default;

eDataItemType DataItemMap::getDataItemType() const
{
  return eDataItemType::eDIT_Map;
}

bool DataItemMap::isEmpty() const
{
  return _itemMap.empty();
}

ipUInt32 DataItemMap::getSize() const
{
  return static_cast<ipUInt32>(_itemMap.size());
}

bool DataItemMap::existsItem(const std::string& name) const
{
  return _itemMap.count(name) != 0;
}

ItemNameColl DataItemMap::getItemNames() const
{
  ItemNameColl names;
  for (const auto& [name, item] : _itemMap)
    names.emplace_hint(names.end(), name);
  return names;
}

const DataItemPtr& DataItemMap::get(const std::string& name, const SourceLocation& here) const
{
  const auto found = _itemMap.find(name);
  if (found == _itemMap.end())
    raise(here, eDataItemMessage::eUnknownItem, name);
  return found->second;
}

const BaseDataItem& DataItemMap::getItem(const std::string& name) const
{
  return *get(name, ORVEL_HERE);
}

BaseDataItem& DataItemMap::getItem(const std::string& name)
{
  return *get(name, ORVEL_HERE);
}

DataItemConstPtr DataItemMap::getItemPtr(const std::string& name) const
{
  return get(name, ORVEL_HERE);
}

DataItemPtr DataItemMap::getItemPtr(const std::string& name)
{
  return get(name, ORVEL_HERE);
}

void DataItemMap::insertItem(const std::string& name, const DataItemPtr& item)
{
  if (!item)
    raise(ORVEL_HERE, eDataItemMessage::eNullItemPtr);
  if (!_itemMap.try_emplace(name, item).second)
    raise(ORVEL_HERE, eDataItemMessage::eItemAlreadyInMap, name);
}

void DataItemMap::removeItem(const std::string& name)
{
  const auto found = _itemMap.find(name);
  if (found == _itemMap.end())
    raise(ORVEL_HERE, eDataItemMessage::eItemNotInMap, name);
  _itemMap.erase(found);
}

void DataItemMap::clear()
{
  _itemMap.clear();
}

void DataItemMap::copyMembers(const DataItemMap& other)
{
  // Emptied even if other is this map: callers rely on that. The old items are released at the end, as other
  // may be one of them that nobody else holds.
  std::map<std::string, DataItemPtr> previous;
  previous.swap(_itemMap);
  const auto end = other._itemMap.end();
  for (auto next = other._itemMap.begin(); next != end;)
  {
    const auto& [name, item] = *next++;
    if (next != end)
      details::prefetch(next->second); // fetched while this item is copied
    _itemMap.emplace_hint(_itemMap.end(), name, DataItemPtr(static_cast<BaseDataItem*>(item->duplicate())));
  }
}

void DataItemMap::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_itemMap", _itemMap);
}

void DataItemMap::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  _itemMap.clear(); // even if the start of the new items cannot be read
  archive >> SerializationIItem("_itemMap", _itemMap);
}

} // namespace orvel
