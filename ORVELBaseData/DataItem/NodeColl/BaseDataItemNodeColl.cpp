#include "ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h"

#include <ORVELBaseData/DataItem/DataItemLogMessages.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel
{

ORVEL_DEFINE_SERIALIZABLE(BaseDataItemNodeColl, BaseDataItem, 1)

BaseDataItemNodeColl::BaseDataItemNodeColl() = default;

eDataItemType BaseDataItemNodeColl::getDataItemType() const
{
  return eDataItemType::eDIT_NodeColl;
}

ipUInt32 BaseDataItemNodeColl::getSize() const
{
  return static_cast<ipUInt32>(_coll.size());
}

const DataItemNodePtr& BaseDataItemNodeColl::get(ipUInt32 index, const SourceLocation& here) const
{
  if (index >= getSize())
    raise(here, eDataItemMessage::eNodeIndexOutOfBounds, index, getSize());
  return _coll[index];
}

const BaseDataItemNode& BaseDataItemNodeColl::getNodeBase(ipUInt32 index) const
{
  return *get(index, ORVEL_HERE);
}

BaseDataItemNode& BaseDataItemNodeColl::getNodeBase(ipUInt32 index)
{
  return *get(index, ORVEL_HERE);
}

void BaseDataItemNodeColl::push_back(const DataItemNodePtr& node)
{
  if (!node)
    raise(ORVEL_HERE, eDataItemMessage::eNullItemPtr);
  _coll.push_back(node);
}

void BaseDataItemNodeColl::copyMembers(const BaseDataItemNodeColl& other)
{
  // Emptied even if other is this collection: callers rely on that. The old nodes are released at the end, as
  // other may be an item of one of them that nobody else holds.
  std::vector<DataItemNodePtr> previous;
  previous.swap(_coll);
  _coll.reserve(other._coll.size());
  for (const DataItemNodePtr& node : other._coll)
    _coll.push_back(DataItemNodePtr(static_cast<BaseDataItemNode*>(node->duplicate())));
}

void BaseDataItemNodeColl::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_coll", _coll);
}

void BaseDataItemNodeColl::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  _coll.clear(); // even if the number of the new nodes cannot be read
  archive >> SerializationIItem("_coll", _coll);
}

} // namespace orvel
