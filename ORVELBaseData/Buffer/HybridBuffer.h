#pragma once

/// \file
/// \brief One block, owned or external.

#include <memory>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/Buffer/BaseBlockBuffer.h>
#include <ORVELBaseData/Buffer/ElementTypes.h>

namespace orvel
{

/// \brief Buffer that owns its block or views an external one: the form of `init` called last decides.
///
/// The target decides what a copy is: an owner takes the elements into its own block, a view becomes a view
/// on the memory of the source (docs/memory.md). A target that is not initialised is neither and raises
/// eBufferNotInitialized. So duplicate(), duplicateShared() and the copy constructor raise for every
/// initialised source. An owner may be given a view on its own block: if the sizes differ, the old block is
/// freed after it has been copied, and the view is left without memory.
///
/// Archive version 1, with the items and failures of BaseOwnBuffer; a view stores the elements that it views.
/// If size and type match, reading fills the present memory, owned or external; otherwise the buffer becomes
/// an owner. Data alone are read into the present memory.
class ORVELBASEDATA_EXPORT HybridBuffer : public BaseBlockBuffer
{
  ORVEL_DECLARE_SERIALIZABLE(HybridBuffer)

public:
  HybridBuffer(); ///< a buffer that is not initialised

  eBufferType getBufferType() const override; ///< eBT_Hybrid

  /// \brief Become the owner of a block. An owner keeps its block, with its contents, if that has the same
  /// size in bytes.
  ///
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) if there is no memory, with the std::bad_alloc
  /// as its cause. The buffer is then not initialised and owns nothing. A size in bytes beyond 64 bits is
  /// reported as 18446744073709551615
  ///
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None. The buffer then owns a block
  /// of 0 bytes. An initialised buffer still answers with its old size and type: clear() it, or
  /// initialise it with another size in bytes, before its elements are touched
  void init(ipUInt64 size, const eDataType& dataType);

  /// \brief Become a view on an external block, which its owner must keep alive. An owned block is freed
  /// first: an address in it is left without memory.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; an initialised buffer then
  /// has the new address with its old size and type
  void init(ipUInt64 size, const eDataType& dataType, void* dataPtr);

  /// \brief Become a view on a block of elements of one of the types of eDataType.
  template <class T>
  void init(ipUInt64 size, T* dataPtr)
  {
    init(size, ElementType<T>::dataType, dataPtr);
  }

  /// \brief Return whether the buffer owns its block.
  ///
  /// Beware: a view on a null pointer counts as an owner. It keeps the null pointer in an init() of the same
  /// size in bytes and in a copy of the same size, which then writes through it; a copy of another size is
  /// deep.
  ///
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised; it names
  /// getDataPtr()
  bool isBufferOwn() const;

protected:
  void clearDerived() override; ///< \brief Free an owned block; an external one is left alone.

private:
  std::unique_ptr<char[]> _block;
};

using HybridBufferPtr = boost::shared_ptr<HybridBuffer>;            ///< shared buffer
using HybridBufferConstPtr = boost::shared_ptr<const HybridBuffer>; ///< shared constant buffer

} // namespace orvel
