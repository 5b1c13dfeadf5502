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

/// \brief Item of a sequence of nodes of any classes. A concrete class in spite of its name.
///
/// The collection shares its nodes with everybody who holds their pointers: push_back() keeps the caller's
/// pointer.
///
/// A copy is deep: every node is duplicated, and the copy shares nothing with its source. A node that is held
/// twice becomes two (archives keep it one), so copying takes exponential time if the tree shares much: n
/// collections, each of two pointers to one node with the next collection, become 2^n. Beware of `coll =
/// coll`: the target is emptied first, so the collection is empty afterwards. If a node cannot be duplicated,
/// the target holds the duplicates made so far.
///
/// Archive version 1: the item "_coll", in the form of vectors of shared objects (\see ItemOperators.h).
/// Each node is created by its class name, which must be registered with DynamicObjectFactory, and reads
/// itself. Reading releases the old nodes first; after a failure the collection holds the nodes read so far,
/// and null pointers for the others. A node may come back null; the caller must not pass its index to
/// getNodeBase(), nor copy or compare the collection. Counts have 32 bits.
class ORVELBASEDATA_EXPORT BaseDataItemNodeColl : public BaseDataItem
{
  ORVEL_DECLARE_SERIALIZABLE(BaseDataItemNodeColl)

public:
  BaseDataItemNodeColl(); ///< an empty collection

  eDataItemType getDataItemType() const override; ///< eDIT_NodeColl

  ipUInt32 getSize() const;                                             ///< number of nodes
  bool isEmpty() const { return _coll.empty(); }                        ///< whether there are no nodes
  const std::vector<DataItemNodePtr>& getColl() const { return _coll; } ///< the nodes, in order

  /// \brief Return a node. The reference is valid as long as the collection or somebody else holds the node.
  /// \param index counted from 0
  /// \throw ORVELBaseDataException (eNodeIndexOutOfBounds) if there is no such node
  const BaseDataItemNode& getNodeBase(ipUInt32 index) const;
  BaseDataItemNode& getNodeBase(ipUInt32 index); ///< \copydoc getNodeBase(ipUInt32) const

  /// \brief Append a node.
  /// \throw ORVELBaseDataException (eNullItemPtr) if the pointer is null; the collection is unchanged
  void push_back(const DataItemNodePtr& node);

private:
  const DataItemNodePtr& get(ipUInt32 index, const SourceLocation& here) const;

  std::vector<DataItemNodePtr> _coll;
};

using DataItemNodeCollPtr = boost::shared_ptr<BaseDataItemNodeColl>; ///< shared collection
using DataItemNodeCollConstPtr =
    boost::shared_ptr<const BaseDataItemNodeColl>; ///< shared constant collection

} // namespace orvel
