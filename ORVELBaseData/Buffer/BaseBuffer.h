#pragma once

/// \file
/// \brief Root of the buffers.

#include <ORVELBaseData/Buffer/BufferType.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/DataType.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Root of the buffers: a run of elements of a type that is known at run time.
///
/// A new buffer is not initialised. The `init` of its class initialises it, from either state; clear() takes
/// it back. The accessors answer only for an initialised buffer. A buffer without elements is initialised
/// like any other.
///
/// A buffer has no lock: one thread changes it, or several read it. The concrete classes copy, each in its
/// own way (docs/memory.md); this class refuses to. The order of the virtual operations and of the fields is
/// part of the binary interface.
class ORVELBASEDATA_EXPORT BaseBuffer : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_WITHOUT_COPY(BaseBuffer)

public:
  ~BaseBuffer() override = 0;

  virtual eBufferType getBufferType() const = 0; ///< return the kind of buffer, in any state

  bool isInitialized() const { return _isInitialized; } ///< return whether the accessors answer

  /// \brief Return the number of elements.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  ipUInt64 getSize() const;

  /// \brief Return the size of one element, in bytes.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  ipUInt32 getBufferBaseSize() const;

  /// \brief Return the type of the elements.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised
  const eDataType& getDataType() const;

  /// \brief Return the size of all elements in bytes. The product wraps around at 64 bits.
  /// \throw ORVELBaseDataException (eBufferNotInitialized) if the buffer is not initialised; the failure
  /// names getSize()
  ipUInt64 getMemorySize() const;

  /// \brief Make the buffer not initialised and free what it owns. Valid in any state.
  void clear();

protected:
  BaseBuffer() = default;

  /// \brief Release what the derived class holds. clear() calls it; here it does nothing.
  virtual void clearDerived();

  /// \brief Initialise the buffer, or give an initialised one new values.
  ///
  /// A dataType that is not an enumerator is accepted, with elements of 0 bytes. XML archives cannot hold
  /// such a buffer (std::logic_error); binary ones hold it as eDT_None, which no buffer reads.
  /// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None; nothing is changed
  void initBase(ipUInt64 size, const eDataType& dataType);

private:
  ipUInt64 _size = 0;
  eDataType _dataType = eDataType::eDT_None;
  ipUInt32 _baseSize = 0; // bytes of one element
  bool _isInitialized = false;
};

} // namespace orvel
