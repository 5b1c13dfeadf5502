#pragma once

/// \file
/// \brief Sequences of nodes.

#include <vector>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/DataItem/Node/BaseDataItemNode.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

struct SourceLocation;

/// \brief Item of a sequence of nodes of any classes. Concrete in spite of its name.
///
/// Nodes are shared with whoever else holds their pointers: push_back() keeps the caller's pointer, without a
/// copy of the node.
///
/// A copy of a collection is deep: every node is duplicated, so it shares nothing with its source; a node
/// that is held twice becomes two, though archives keep it one. Beware of `coll = coll`: the target is
/// emptied first, so the collection is empty afterwards. When a node can't be duplicated the target holds the
/// duplicates made so far.
///
/// Archive version 1: the item "_coll", in the form of vectors of shared objects (\see ItemOperators.h).
/// Each node is created by the name of its class, which has to be registered with DynamicObjectFactory, and
/// reads itself. Reading drops the old nodes first; after a failure the collection holds the nodes read so
/// far, and null pointers in place of the others. Null pointers can come from an archive only, also from a
/// whole one; getNodeBase() of one, copying and comparing it are up to the caller to avoid. Counts have 32
/// bits.
class ORVELBASEDATA_EXPORT BaseDataItemNodeColl : public BaseDataItem
{
  ORVEL_DECLARE_SERIALIZABLE(BaseDataItemNodeColl)

public:
  BaseDataItemNodeColl(); ///< an empty collection

  eDataItemType getDataItemType() const override; ///< eDIT_NodeColl

  ipUInt32 getSize() const;                                             ///< number of nodes
  bool isEmpty() const { return _coll.empty(); }                        ///< whether there are no nodes
  const std::vector<DataItemNodePtr>& getColl() const { return _coll; } ///< the nodes, in order

  /// \brief Return a node, valid as long as somebody holds it.
  /// \param index counted from 0
  /// \throw ORVELBaseDataException (eNodeIndexOutOfBounds) if there is no such node
  const BaseDataItemNode& getNodeBase(ipUInt32 index) const;
  BaseDataItemNode& getNodeBase(ipUInt32 index); ///< \copydoc getNodeBase(ipUInt32) const

  /// \brief Append a node.
  /// \throw ORVELBaseDataException (eNullItemPtr) if the pointer is null; nothing has changed
  void push_back(const DataItemNodePtr& node);

private:
  const DataItemNodePtr& get(ipUInt32 index, const SourceLocation& here) const;

  std::vector<DataItemNodePtr> _coll;
};

using DataItemNodeCollPtr = boost::shared_ptr<BaseDataItemNodeColl>; ///< shared collection
using DataItemNodeCollConstPtr =
    boost::shared_ptr<const BaseDataItemNodeColl>; ///< shared constant collection

} // namespace orvel
