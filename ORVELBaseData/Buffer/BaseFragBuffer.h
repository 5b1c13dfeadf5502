#pragma once

/// \file
/// \brief Root of the buffers whose elements lie in fragments.

#include <vector>

#include <ORVELBaseData/Buffer/BaseBuffer.h>

namespace orvel
{

using BufferPtrColl = std::vector<void*>; ///< first addresses of fragments, in order

/// \brief Root of the buffers whose elements lie in a list of equally long fragments.
///
/// The fragments need not touch each other. This class does not own them. The size of the buffer is the
/// number of fragments times the size of each; the product wraps around at 64 bits.
class ORVELBASEDATA_EXPORT BaseFragBuffer : public BaseBuffer
{
  ORVEL_DECLARE_WITHOUT_COPY(BaseFragBuffer)

public:
  ~BaseFragBuffer() override = 0;

  /// \brief Return the number of fragments.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  ipUInt64 getNbFragments() const;

  /// \brief Return the number of elements of each fragment.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  ipUInt64 getFragmentsSize() const;

  /// \brief Return the first addresses of the fragments, in order.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  const BufferPtrColl& getBufferPtrColl() const;

  /// \brief Return the first address of a fragment.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  /// \throw ORVELBaseDataException (eInvalidFragmentIndex) if there is no such fragment
  void* getDataPtr(ipUInt64 fragment);
  const void* getDataPtr(ipUInt64 fragment) const; ///< \copydoc getDataPtr(ipUInt64)

  /// \brief Return the address of an element of a fragment. The offset, in elements, is not compared with the
  /// size of the fragment.
  /// \throw ORVELBaseDataException as getDataPtr(ipUInt64)
  void* getDataPtr(ipUInt64 fragment, ipUInt64 offset);
  const void* getDataPtr(ipUInt64 fragment,
                         ipUInt64 offset) const; ///< \copydoc getDataPtr(ipUInt64, ipUInt64)

  /// \brief Replace the address of one fragment.
  /// \throw ORVELBaseDataException as getDataPtr(ipUInt64); nothing is changed
  void setDataPtr(ipUInt64 fragment, void* dataPtr);

  /// \brief Make the first fragment the last one; the others move up. Only their addresses move, not their
  /// elements. Time: O(number of fragments).
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  void rollUpFragments();

  /// \brief Make the last fragment the first one: the inverse of rollUpFragments().
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  void rollDownFragments();

protected:
  BaseFragBuffer() = default;

  /// \brief Initialise the buffer with a list, which may be its own.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; the list and the size of the
  /// fragments have been stored, the rest is unchanged
  /// \throw ORVELBaseDataException (eMemoryAllocationFailed) if there is no memory for the list; the buffer
  /// has been cleared
  void initBase(const eDataType& dataType, const BufferPtrColl& fragments, ipUInt64 fragmentsSize);

  void clearDerived() override; ///< \brief Empty the list, but keep its memory.

private:
  BufferPtrColl _fragments;
  ipUInt64 _fragmentsSize = 0;
};

} // namespace orvel
