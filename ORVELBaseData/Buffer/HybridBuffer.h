#pragma once

/// \file
/// \brief One block, owned or looked at.

#include <memory>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>
#include <ORVELBaseData/Buffer/ElementTypes.h>

namespace orvel
{

/// \brief Buffer that owns its block or looks at somebody else's: the form of `init` called last decides.
///
/// A copy goes by what the target is, not the source: an owner takes the elements into its own block, a view
/// becomes a view on the memory of the source. A target that is not initialised is neither and raises, so
/// duplicate(), duplicateShared() and the copy constructor raise for every initialised source and make an
/// empty buffer of any other. An owner may be given a view on its own block: that is copied before it is
/// freed, if the sizes differ, and the view is left without memory.
///
/// Archive version 1, with the items of BaseOwnBuffer; a view files the elements that it looks at. Reading
/// keeps a view, or an owner, that has just the size and the type that come, and fills its memory; any other
/// buffer becomes an owner. Data without their structure go into the memory that is there.
class ORVELBASEDATA_EXPORT HybridBuffer : public BaseBlockBuffer
{
  ORVEL_DECLARE_SERIALIZABLE(HybridBuffer)

public:
  HybridBuffer(); ///< a buffer that is not initialised

  eBufferType getBufferType() const override; ///< eBT_Hybrid

  /// \brief Become the owner of a block. An owner keeps the block that it has, with its contents, if it fits
  /// to the byte.
  ///
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) with the std::bad_alloc as its cause; the buffer
  /// is not initialised then and owns nothing. A size in bytes beyond 64 bits is told as 18446744073709551615
  ///
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None. The buffer then owns a block
  /// of 0 bytes. If it was initialised it still answers with its old size and type, so clear it or initialise
  /// it with another size in bytes before its elements are touched
  void init(ipUInt64 size, const eDataType& dataType);

  /// \brief Become a view on a block of somebody else's, who keeps it alive. An own block is freed first, so
  /// that an address in it, given to the owner, is left without memory.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; an initialised buffer then
  /// has the new address with its old size and type
  void init(ipUInt64 size, const eDataType& dataType, void* dataPtr);

  /// \brief Become a view on a block of elements of one of the types of eDataType.
  template <class T>
  void init(ipUInt64 size, T* dataPtr)
  {
    init(size, ElementType<T>::dataType, dataPtr);
  }

  /// \brief Tell whether the elements lie in a block of the buffer's own.
  ///
  /// A view on a null pointer counts as an owner, of no block. Taken for an owner it keeps that null "block"
  /// in an init() of the same size in bytes, and in a copy of the same size, which then writes through it; a
  /// copy of any other size is deep.
  ///
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised; it names
  /// getDataPtr()
  bool isBufferOwn() const;

protected:
  void clearDerived() override; ///< \brief Free the block; somebody else's is left alone.

private:
  std::unique_ptr<char[]> _block;
};

using HybridBufferPtr = boost::shared_ptr<HybridBuffer>;            ///< shared buffer
using HybridBufferConstPtr = boost::shared_ptr<const HybridBuffer>; ///< shared constant buffer

} // namespace orvel
