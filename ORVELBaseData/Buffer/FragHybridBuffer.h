#pragma once

/// \file
/// \brief Fragments of an owned block, or external ones.

#include <memory>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Buffer/BaseFragBuffer.h>

namespace orvel
{

/// \brief Buffer of fragments: slices of one block that it owns, or external addresses.
///
/// The slices of an owner follow each other without gaps, in order, until a roll changes their order; the
/// block itself stays as it is.
///
/// The target decides what a copy is: an owner takes the elements into its own slices, fragment by fragment;
/// any other target, a new one included, shares the fragments of the source (docs/memory.md). So duplicate(),
/// duplicateShared() and the copy constructor make views, which must not outlive an owning source. An owner
/// that is copied onto itself gets its fragments back into the order of the block. An owner may be given a
/// view on its own block: if the sizes differ, the old block is freed after it has been copied, and the view
/// is left without memory; if not, the fragments are overwritten one after the other.
///
/// Archive version 1. The items are "bInit" and, if the buffer is initialised, "dataType", "nbFragments",
/// "fragmentsSize" and one raw block per fragment in their present order, none if they are empty. The
/// skeleton is everything but the blocks, the data are the blocks alone. Reading a structure makes an owner
/// of any buffer. Data alone are read into the present fragments, owned or external, in their present order;
/// data that fail half way have filled the first of them.
///
/// Reading raises ORVELSerializationException, before it allocates, if the rest of the archive cannot hold
/// the blocks. Empty fragments have no blocks, but their list takes memory: in full mode an archive accepts
/// as many as ArchiveLimits::maxUnfilledBytes allows at 8 bytes each, by default 8388608 in all its buffers
/// together, and raises ORVELSerializationException beyond, on writing as on reading. So what can be written
/// can be read. A skeleton is not limited: reading one allocates what it names. eDT_None raises as in `init`,
/// but changes nothing.
class ORVELBASEDATA_EXPORT FragHybridBuffer : public BaseFragBuffer
{
  ORVEL_DECLARE_SERIALIZABLE(FragHybridBuffer)

public:
  FragHybridBuffer(); ///< a buffer that is not initialised

  eBufferType getBufferType() const override; ///< eBT_FragHybrid

  /// \brief Become the owner of one block with all fragments, in order. An owner keeps its block, with its
  /// contents, if that has the same size in bytes.
  ///
  /// Beware: empty braces are the number 0. Write BufferPtrColl() for an empty list.
  ///
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) if there is no memory for the block or for the
  /// list of fragments, with its cause. The buffer is then not initialised and owns nothing. A size in bytes
  /// beyond 64 bits is reported as 18446744073709551615
  ///
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None. The buffer then owns a block
  /// of 0 bytes and has the new fragments in it. An initialised buffer still answers with its old size and
  /// type: clear() it, or initialise it with another size in bytes, before its elements are touched
  void init(const eDataType& dataType, ipUInt64 nbFragments, ipUInt64 fragmentsSize);

  /// \brief Become a view on external fragments, which their owner must keep alive. An owned block is freed
  /// first: addresses in it are left without memory.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; the list and the size of the
  /// fragments have been stored. An initialised buffer still answers with its old size and type
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) if there is no memory for the list; the buffer
  /// has been cleared
  void init(const eDataType& dataType, const BufferPtrColl& fragments, ipUInt64 fragmentsSize);

  /// \brief Return whether the buffer owns a block. Answers in any state: false for a new or cleared buffer,
  /// true also after the owning init() has refused eDT_None.
  bool isBufferOwn() const;

  /// \brief Replace the address of one external fragment. Hides the operation of the base, which does not
  /// check who owns the fragments.
  ///
  /// \throw ORVELBaseDataException (eOwnFragmentDataPtr) if the buffer owns its fragments, whatever the
  /// index; nothing is changed
  ///
  /// \throw ORVELBaseDataException as getDataPtr(ipUInt64); nothing is changed
  void setDataPtr(ipUInt64 fragment, void* dataPtr);

protected:
  void clearDerived() override; ///< \brief Empty the list and free the block.

private:
  void readStructure(BaseIArchive& archive);

  std::unique_ptr<char[]> _block;
};

using FragHybridBufferPtr = boost::shared_ptr<FragHybridBuffer>;            ///< shared buffer
using FragHybridBufferConstPtr = boost::shared_ptr<const FragHybridBuffer>; ///< shared constant buffer

} // namespace orvel
