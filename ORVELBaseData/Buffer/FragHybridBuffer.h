#pragma once

/// \file
/// \brief Fragments of one block that is owned, or somebody else's.

#include <memory>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Buffer/BaseFragBuffer.h>

namespace orvel
{

/// \brief Buffer of fragments: slices of one block that it owns, or addresses given by the caller.
///
/// The slices of an owner follow each other without gaps, in order, until a roll changes their order; the
/// block stays as it is.
///
/// A copy goes by what the target is, not the source: an owner takes the elements into slices of its own,
/// fragment by fragment; any other target, a fresh one included, shares the fragments of the source. So
/// duplicate(), duplicateShared() and the copy constructor make views, which die with an owning source.
/// Copied onto itself an owner gets its fragments back into the order of the block. An owner may be given a
/// view on its own block: that is copied before it is freed, if the sizes differ, and the view is left
/// without memory; if they do not differ, one fragment after the other is overwritten.
///
/// Archive version 1. The items are "bInit" and, of an initialised buffer, "dataType", "nbFragments",
/// "fragmentsSize" and one raw block per fragment in their present order, none if they are empty. The
/// skeleton is all but the blocks, the data are the blocks alone. Reading a structure makes an owner of any
/// buffer; data without their structure go into the fragments that are there, in their present order, also
/// somebody else's; data that fail half way have filled the first fragments.
class ORVELBASEDATA_EXPORT FragHybridBuffer : public BaseFragBuffer
{
  ORVEL_DECLARE_SERIALIZABLE(FragHybridBuffer)

public:
  FragHybridBuffer(); ///< a buffer that is not initialised

  eBufferType getBufferType() const override; ///< eBT_FragHybrid

  /// \brief Become the owner of one block with all fragments. An owner keeps the block that it has, with its
  /// contents, if it fits to the byte; the fragments are laid out again. Empty braces for nbFragments are the
  /// number 0: write BufferPtrColl() for an empty list.
  ///
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) with the cause, if the block or the list of
  /// fragments finds no memory; the buffer is not initialised then and owns nothing. A size in bytes beyond
  /// 64 bits is told as 18446744073709551615
  ///
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None. The buffer then owns a block
  /// of 0 bytes and has the new fragments in it. If it was initialised it still answers with its old size and
  /// type, so clear it or initialise it with another size in bytes before its elements are touched
  void init(const eDataType& dataType, ipUInt64 nbFragments, ipUInt64 fragmentsSize);

  /// \brief Take the caller's fragments, who keeps them alive. An own block is freed first, so that its own
  /// fragments, given to an owner, are left without memory.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; the fragments and their size
  /// are stored already. An initialised buffer still answers with its old size and type
  void init(const eDataType& dataType, const BufferPtrColl& fragments, ipUInt64 fragmentsSize);

  /// \brief Tell whether the buffer has a block of its own. Answers in any state: false of a fresh or a
  /// cleared buffer, true also after eDT_None was refused by the owning init().
  bool isBufferOwn() const;

  /// \brief Replace the start of one fragment of the caller's. Hides the operation of the base, which does
  /// not ask who owns the fragments.
  ///
  /// \throw ORVELBaseDataException (eOwnFragmentDataPtr) if the buffer owns its fragments, whatever the index;
  /// nothing has changed
  ///
  /// \throw ORVELBaseDataException as getDataPtr(ipUInt64); nothing has changed
  void setDataPtr(ipUInt64 fragment, void* dataPtr);

protected:
  void clearDerived() override; ///< \brief Empty the list and free the block.

private:
  void readStructure(BaseIArchive& archive, bool isFollowedByData);

  std::unique_ptr<char[]> _block;
};

using FragHybridBufferPtr = boost::shared_ptr<FragHybridBuffer>;            ///< shared buffer
using FragHybridBufferConstPtr = boost::shared_ptr<const FragHybridBuffer>; ///< shared constant buffer

} // namespace orvel
